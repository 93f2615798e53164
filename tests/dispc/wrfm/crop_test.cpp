// Crop, held against samples of the outline: what of it runs inside the mask.

#include "dispc/wrfm/modelprivate.h"
#include "foundation/polygon.h"
#include "foundation/shapeserror.h"
#include "tests/support/outlinevariants.h"

#include <gtest/gtest.h>

namespace
{

using V = gxVector<2>;
using Private = gxSMDGDPolyPrivate;
using Poly = gxSMDGDPoly;
using Model = gxSMDGDModel;

/// By counting how often a ray from the point crosses the points of an outline.
bool isInside(std::vector<V> const &outline, V p)
{
  bool inside = false;
  for (std::size_t i = 0; i < outline.size(); ++i) {
    V const a = outline[i], b = outline[(i + 1) % outline.size()];
    if ((a.y() > p.y()) != (b.y() > p.y()))
      inside ^= p.x() < a.x() + (b.x() - a.x()) * (p.y() - a.y()) / (b.y() - a.y());
  }
  return inside;
}

double distance(Model const &model, V p)
{
  double nearest = 1e300;
  for (Poly const &poly : model.polys())
    nearest = std::min(nearest, Private::distToPoint(poly, p));
  return nearest;
}

std::string textOf(Poly const &poly, Poly const &mask)
{
  return "outline " + asCode(poly) + "\nmask " + asCode(mask);
}

/// True if a sharp vertex of the outline touches the mask from the side that is not kept: that marks a piece by rule.
bool isMarked(Poly const &poly, Poly const &mask, std::vector<V> const &maskPoints, bool keepInside, double size)
{
  int const n = static_cast<int>(poly.numVertices());
  for (int v = 0; v < n; ++v) {
    V const at = poly.vertex(v, false).point();
    if (Private::isEndVertex(poly, v) || poly.vertex(v, false).vertexRadius() != 0 ||
        Private::distToPoint(mask, at) > 1e-9 * size)
      continue;
    int lost = 0;
    for (int const s : {v, (v + 1) % n}) {
      double const t = s == v ? 1 - 1e-3 : 1e-3;
      V const beside = Private::isLineSegment_(poly, s) ? Private::lineSegment_(poly, s).segPoint(t)
                                                        : Private::arcSegment_(poly, s).segPoint(t);
      lost += Private::distToPoint(mask, beside) > 1e-9 * size && isInside(maskPoints, beside) != keepInside;
    }
    if (lost == 2)
      return true;
  }
  return false;
}

/// How much there was to see.
struct Seen {
  int kept = 0, cutAway = 0, pieces = 0, models = 0;
};

/// The crops of an outline, to be the same in any frame of a @p size: samples of it are on what is kept or on the other
/// one, and together they are as long as the outline.
void expectCropAsSampled(Poly const &poly, Poly const &mask, double size, Seen &seen)
{
  SCOPED_TRACE(textOf(poly, mask));
  std::string const before = archivedBytes<Poly>(poly), maskBefore = archivedBytes<Poly>(mask);
  std::vector<V> const maskPoints = flattened(mask, 150), points = flattened(poly, 12);
  double length = 0;
  bool areBoth = true;
  for (bool const keepInside : {true, false}) {
    if (isMarked(poly, mask, maskPoints, keepInside, size)) {
      areBoth = false;
      continue;
    }
    Model kept;
    ASSERT_NO_THROW(kept = Private::crop(poly, mask, keepInside)) << keepInside;
    length += gxSMDGDModelPrivate::perimeter(kept, 0.0);
    ++seen.models;
    for (std::size_t k = 0; k + 1 < points.size(); ++k)
      for (double const t : {0.0, 0.13, 0.45, 0.8}) {
        V const p = points[k] + (points[k + 1] - points[k]) * t;
        bool const isOnArc = t > 0 && Private::distToPoint(poly, p) > 1e-10 * size;  // and not on its chord
        if (isOnArc || Private::distToPoint(mask, p) < 2e-3 * size)
          continue;
        bool const isKept = isInside(maskPoints, p) == keepInside;
        (isKept ? seen.kept : seen.cutAway)++;
        ASSERT_EQ(distance(kept, p) < 1e-9 * size, isKept) << p << " keepInside " << keepInside;
      }
    for (Poly const &piece : kept.polys()) {
      ++seen.pieces;
      ASSERT_GT(piece.numVertices(), 1);
      if (piece.isClosed())
        ASSERT_EQ(cornersOf(piece).size(), cornersOf(poly).size());
      else
        for (V const end : {piece.vertex(0, false).point(), piece.vertex(-1, true).point()})
          ASSERT_TRUE(
              (poly.isOpen() && (end == poly.vertex(0, false).point() || end == poly.vertex(-1, true).point())) ||
              Private::distToPoint(mask, end) < 1e-9 * size)
              << end;
    }
  }
  if (areBoth) {
    ASSERT_NEAR(length, Private::perimeter(poly, 0.0), 1e-8 * size);
  }
  ASSERT_EQ(archivedBytes<Poly>(poly), before);
  ASSERT_EQ(archivedBytes<Poly>(mask), maskBefore);
}

/// The outline as given, begun elsewhere, run the other way, and opened, as far as these are sound.
std::vector<Outline> variants(Corners const &corners, std::size_t start)
{
  std::vector<Outline> rows;
  for (Corners const &row : {corners, reversed(startingAt(corners, start))})
    for (bool const closed : {true, false})
      try {
        Outline const outline = outlineOf(row, closed);
        (void)flattened(outline, 1);  // fillets may use up a line between lines, which has no pieces then
        rows.push_back(outline);
      } catch (gxException const &) {
      }
  return rows;
}

TEST(Crop, keepsWhatSamplesOfRandomOutlinesSay)
{
  RandomOutlines random(7701);
  Seen seen;
  for (int i = 0; i < 60; ++i) {
    Corners const corners = cornersOf(random.sound(3, 12));
    gxSMDGDPoly const mask = gx2Rigid(gxDegree(random.in(0, 360)), V(random.in(-5, 5), random.in(-5, 5))) *
                             (random.in(0.2, 1.3) * static_cast<Poly const &>(random.sound(3, 12)));
    for (Outline const &row : variants(corners, corners.size() / 2)) {
      expectCropAsSampled(row, mask, 20, seen);
      if (HasFatalFailure())
        return;
    }
  }
  EXPECT_GT(seen.models, 350);
  EXPECT_GT(seen.kept, 10000);
  EXPECT_GT(seen.cutAway, 10000);
  EXPECT_GT(seen.pieces, 500);
}

/// Shapes on a lattice: they share sides, touch with corners and arcs, and cross at vertices and joints of fillets.
Corners onLattice(Random &random)
{
  auto const whole = [&](int low, int high) { return double(low + random.below(high - low + 1)); };
  double const a = whole(2, 4) * 2, b = whole(1, 3) * 2, c = whole(1, 2) * 2, d = b + whole(1, 2) * 2;
  double const r = whole(1, 3);
  Corners corners;
  switch (random.below(5)) {
    case 0:
      corners = {{a, 0}, {a, b}, {0, b}, {0, 0}};
      break;
    case 1:
      corners = {{a + c, 0}, {a + c, b}, {c, b}, {c, d}, {0, d}, {0, 0}};
      break;
    case 2:
      corners = {{2 * r, 0}, {4 * r, 2 * r}, {2 * r, 4 * r}, {0, 2 * r}};
      break;
    case 3:
      corners = {{0, 0, 0, 180}, {2 * r, 0, 0, 180}};
      break;
    default:
      corners = {{0, 0}, {a, 0}, {a, b, 0, 180}, {0, b}};
      break;
  }
  bool const isSharp = corners.size() == 2 || random.one(3);
  std::size_t const n = corners.size();
  for (std::size_t i = 0; i < n && !isSharp; ++i) {
    Corner const &before = corners[(i + n - 1) % n], &next = corners[(i + 1) % n];
    bool const isSmooth = corners[i].span != 0 || next.span != 0;
    V const p(corners[i].x, corners[i].y);
    // A cut fillet leaves less of its sides, half of which is for the fillets at their other ends.
    bool const isLong = p.distance(V(before.x, before.y)) > 3 && p.distance(V(next.x, next.y)) > 3;
    if (!isSmooth && !random.one(3))
      corners[i].radius = isLong ? 1 : 0.5;
  }
  Corners const moved = mapped(corners, gxDegree(90.0 * random.below(4)), 1, V(whole(-4, 4), whole(-4, 4)));
  return random.one(2) ? reversed(moved) : moved;
}

TEST(Crop, keepsWhatSamplesSayWhereOutlinesTouchAndRunAlongEachOther)
{
  Random random(7702);
  Seen seen;
  for (int i = 0; i < 700; ++i) {
    gxDegree const turn(i % 3 ? random.in(0, 360) : 0);
    double const scale = i % 3 == 2 ? 1e-3 : 1;
    V const move = i % 3 == 1 ? V(1000, -70) : V(0, 0);
    Corners const corners = mapped(onLattice(random), turn, scale, move);
    auto const masks = variants(mapped(onLattice(random), turn, scale, move), 0);
    if (masks.empty() || masks[0].isOpen())
      continue;  // fillets that use up a side
    for (Outline const &row : variants(corners, static_cast<std::size_t>(random.below(3)) % corners.size()))
      expectCropAsSampled(row, masks[0], 10 * scale, seen);
    if (HasFatalFailure())
      return;
  }
  EXPECT_GT(seen.models, 2000);
  EXPECT_GT(seen.kept, 20000);
  EXPECT_GT(seen.cutAway, 20000);
}

}  // namespace
