#include "tests/support/outlines.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <sstream>
#include <vector>

// Random edits of random outlines: a refused one changes no field, and an accepted one leaves what the same vertices
// give when an outline is built of them as a whole.

namespace
{
using Poly = gxSMDGDPoly;

struct Edit {
  std::string what;
  std::function<void(Outline &)> run;
};

/// A vertex that is likely to cause trouble.
gxSMDGDPolyVertex anyVertex(Random &random, Outline const &poly)
{
  long const n = poly.numVertices();
  gxVector<2> point{random.in(2, 11), gxDegree(random.in(0, 360))};  // braces: from left to right everywhere
  if (n > 0 && random.one(2)) {                                      // near another one, on it, or between two
    gxVector<2> const p = poly.vertex(random.below(1000), true).point();
    gxVector<2> const q = poly.vertex(random.below(1000), true).point();
    double const shifts[] = {0.0, 1e-12, 1e-9, 0.1, 1.0};
    point = random.one(3) ? p + (q - p) * 0.5 : p + gxVector<2>{shifts[random.below(5)], gxDegree(random.in(0, 360))};
  }
  double const spans[] = {180, -180, 1e-16, 359, 300, -90, 20, -5};
  Corner const corner{point.x(), point.y(), random.one(2) ? random.in(-3, 3) : 0,
                      random.one(3) ? spans[random.below(8)] : 0, random.below(5) - 1};
  gxSMDGDPolyVertex v = corner.vertex();
  if (n > 0 && random.one(8))
    v = poly.vertex(random.below(1000), true);
  if (random.one(8))
    v.segmentLengthTol(gxDimTol(5, 4, 6));
  return v;
}

Edit anyEdit(Random &random, Outline const &poly)
{
  int const n = static_cast<int>(poly.numVertices());
  bool const before = random.one(10);
  int const i = random.below(n + 1) - before;
  gxSMDGDPolyVertex const v = anyVertex(random, poly);
  std::ostringstream os;
  os << " at " << i << " of " << v;
  switch (random.below(9)) {
    case 0:
    case 1:
      return {"insertion" + os.str(), [=](Outline &p) { p.insertVertex(i - 1, v); }};
    case 2:
      return {"append" + os.str(), [=](Outline &p) { p << v; }};
    case 3:
      return {"deletion" + os.str(), [=](Outline &p) { p.deleteVertex(i); }};
    case 4:
      return {"close", [](Outline &p) { p.close(); }};
    case 5: {
      auto vertices = poly.vertices();
      if (n > 1 && random.one(2))
        std::swap(vertices[static_cast<std::size_t>(random.below(n))], vertices.front());
      return {"all", [=](Outline &p) { p.vertices(vertices); }};
    }
    case 6:
      return {"own vertex" + os.str(), [=](Outline &p) { p.replaceVertex(i, p.vertex(i / 2, true)); }};
    default:
      return {"replacement" + os.str(), [=](Outline &p) { p.replaceVertex(i, v); }};
  }
}

/// Where two outlines of the same vertices differ in what is derived from these, or "". A fillet that was found while
/// its segment was the last one, and found again along half of that segment, differs by rounding.
std::string difference(Outline const &a, Outline const &b)
{
  auto const labels = [](Outline const &p) {
    auto sorted = gxSMDGDPolyPrivate::subModelLabels(p);
    std::sort(sorted.begin(), sorted.end());
    return sorted;
  };
  if (a.vertices() != b.vertices() || a.isOpen() != b.isOpen() || labels(a) != labels(b))
    return "vertices, labels or flags";
  double const near = 1e-9;
  for (int i = 0; i < a.numVertices(); ++i) {
    std::string const number = " " + std::to_string(i);
    if (a.previousSegmentIndex_(i) != -1) {
      auto const [a1, a2] = a.roundedEnds(i);
      auto const [b1, b2] = b.roundedEnds(i);
      if (!gfRealEq(a1, b1, near) || !gfRealEq(a2, b2, near))
        return "segment" + number;
    }
    if (a.isRounded(i) && !gfRealEq(a.fillet(i).angleSpan().value(), b.fillet(i).angleSpan().value(), near))
      return "fillet" + number;
  }
  return "";
}

/// What the edit throws, or "".
std::string outcomeOf(Edit const &edit, Outline &poly)
{
  try {
    edit.run(poly);
    return "";
  } catch (gxException const &e) {
    return e.className();
  }
}

/// An outline of the same vertices that was checked as a whole.
Outline builtAfresh(Outline const &poly)
{
  Outline fresh = poly.isClosed() ? Poly::circle(1, {0, 0}) : Poly();
  fresh.vertices(poly.vertices());
  return fresh;
}
}  // namespace

TEST(PolyEdits, RefusedOnesLeaveNoTraceAndOthersNoStaleField)
{
  std::map<std::string, int> outcomes;
  int compared = 0;
  int unseen = 0;
  for (unsigned seed = 0; seed < 150; ++seed) {
    Random random(seed);
    Outline poly;
    try {
      poly = Outline{random.one(2), star(random, 3 + random.below(10))};
    } catch (gxException const &) {
    }
    for (int step = 0; step < 40; ++step) {
      Edit const edit = anyEdit(random, poly);
      Outline const before = poly;
      std::string const fields = poly.allFields();
      SCOPED_TRACE(testing::Message() << "seed " << seed << " step " << step << ": " << edit.what << "\non "
                                      << asCode(before));
      // One that has just come out of an archive knows no more of itself than its fields, and must decide alike.
      Outline reloaded = throughArchive<Poly>(poly);
      std::string const outcome = outcomeOf(edit, poly);
      ASSERT_EQ(outcome, outcomeOf(edit, reloaded));
      if (!outcome.empty()) {
        ASSERT_EQ(poly.allFields(), fields) << outcome;
        ++outcomes[outcome];
        continue;
      }
      ASSERT_EQ(poly.allFields(), reloaded.allFields());
      // An edit looks at the vertex, its neighbours and their segments; that the segment beyond a neighbour has become
      // longer, as the fillet there has changed, is seen by a check of the whole alone.
      try {
        ASSERT_EQ(difference(poly, builtAfresh(poly)), "");
        ++compared;
      } catch (Poly::Errors const &e) {
        // A chain that grows may keep a fillet that took more than half of what was its last segment.
        EXPECT_TRUE(dynamic_cast<Poly::crossingSegments const *>(&e) ||
                    dynamic_cast<Poly::invalidRounding const *>(&e));
        ++unseen;
        poly = before;
      }
    }
  }
  EXPECT_GT(compared, 2000);
  EXPECT_LT(unseen, compared / 100);
  for (char const *name : {"crossingSegments", "invalidIndex", "invalidRounding", "invalidVertices"})
    EXPECT_GT(outcomes[std::string("gxSMDGDPoly::") + name], 5) << name;
  for (char const *name : {"BadGeom", "DegenerateShape"})
    EXPECT_GT(outcomes[std::string("gxShapesError::") + name], 10) << name;
}
