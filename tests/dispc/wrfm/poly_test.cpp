#include "dispc/wrfm/poly.h"

#include "foundation/shapeserror.h"
#include "tests/support/outlines.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <numbers>
#include <tuple>
#include <vector>

namespace
{
using Poly = gxSMDGDPoly;
double const inf = std::numeric_limits<double>::infinity();
double const noNumber = std::numeric_limits<double>::quiet_NaN();

gxSMDGDPolyVertex at(double x, double y, double radius = 0.0, double span = 0.0, long label = -1)
{
  return Corner{x, y, radius, span, label}.vertex();
}

/// The name of the exception that @p edit throws, or ""; a refused edit must leave the outline as it was.
std::string refusal(Outline &poly, std::function<void(Outline &)> const &edit)
{
  std::string const before = poly.allFields();
  try {
    edit(poly);
    return "";
  } catch (gxException const &e) {
    EXPECT_EQ(poly.allFields(), before) << e.what() << ' ' << asCode(poly);
    return e.className();
  }
}

Outline square(double side, double radius = 0.0)
{
  return Outline(true, {{side, side, radius, 0, 0}, {0, side, 0, 0, 1}, {0, 0, 0, 0, 2}, {side, 0, 0, 0, 3}});
}
}  // namespace

TEST(PolyIndices, OpenAndClosed)
{
  struct Row {
    int n;
    bool closed;
    int segments, first, last, before0, afterLast;
  };
  for (Row const &r : std::vector<Row>{
           {1, false, 0, -1, -1, -1, -1},
           {2, false, 1, 1, 1, -1, -1},
           {4, false, 3, 1, 3, -1, -1},
           {2, true, 2, 1, 0, 0, 0},
           {4, true, 4, 1, 0, 0, 0},
       }) {
    Outline p;
    std::vector<gxVector<2>> const points = {{0, 0}, {10, 0}, {10, 10}, {0, 10}};
    for (int i = 0; i < r.n; ++i)
      p << at(points[i].x(), points[i].y(), 0, r.n == 2 ? 180 : 0);
    if (r.closed)
      p.close();
    SCOPED_TRACE(asCode(p));
    EXPECT_EQ(p.numSegments(), r.segments);
    EXPECT_EQ(p.firstSegmentIndex_(), r.first);
    EXPECT_EQ(p.lastSegmentIndex_(), r.last);
    EXPECT_EQ(p.previousSegmentIndex_(0), r.before0);
    EXPECT_EQ(p.nextSegmentIndex_(r.n - 1), r.afterLast);
    EXPECT_EQ(p.vertexIndex_(-1, true), r.n - 1);
    EXPECT_EQ(p.vertexIndex_(-7 * r.n, true), 0);
    EXPECT_EQ(&p.vertex(5L * r.n, true), &p.vertices().front());
    for (int const v : {-1, r.n}) {
      EXPECT_THROW(p.vertex(v, false), Poly::invalidIndex);
      EXPECT_THROW(p.nextSegmentIndex_(v), Poly::invalidIndex);
      EXPECT_THROW(p.isEndVertex(v), Poly::invalidIndex);
      EXPECT_THROW(p.segmentDimension(v), Poly::invalidIndex);
    }
    if (r.closed) {
      EXPECT_EQ(p.previousVertexIndex_(0), r.n - 1);
    } else {
      EXPECT_THROW(p.previousVertexIndex_(0), Poly::invalidIndex);
      EXPECT_THROW(p.segmentIndex_(0, false), Poly::invalidIndex);
      EXPECT_TRUE(p.isEndVertex(0) && p.isEndVertex(r.n - 1));
    }
  }
  Outline const none;
  EXPECT_THROW(none.vertex(0, true), Poly::invalidIndex);
  EXPECT_THROW(none.firstSegmentIndex_(), Poly::invalidIndex);
  EXPECT_THROW(none.isEndVertex(0), Poly::invalidIndex);
}

TEST(Poly, FactoriesAndMeasures)
{
  Outline const circle = Poly::circle(3, {1, 2});
  EXPECT_TRUE(gxSMDGDPolyPrivate::isCircle(circle));
  EXPECT_NEAR(circle.perimeter_(0.0), 2.0 * std::numbers::pi * 3.0, 1e-12);
  EXPECT_NEAR(circle.perimeter_(gxXform<2>(gxMatrix<2>(0, -2, 2, 0), {5, 5})), 4.0 * std::numbers::pi * 3.0, 1e-12);

  Outline const rect = Poly::rectangle(4, 2, {1, 2});
  EXPECT_EQ(rect, Outline(true, {{3, 3, 0, 0, 0}, {-1, 3, 0, 0, 1}, {-1, 1, 0, 0, 2}, {3, 1, 0, 0, 3}}));
  EXPECT_EQ(rect.perimeter_(0.0), 12.0);
  EXPECT_EQ(rect.perimeter_(2.0), 8.0);
  EXPECT_EQ(rect.centerOfMass_(), gxVector<2>(1, 2));
  EXPECT_EQ(gxDegree(rect.orientation_()), gxDegree(180));
  EXPECT_EQ(gxSMDGDPolyPrivate::vertexAngle(rect, -1, true), gxDegree(90));
  EXPECT_EQ(gxSMDGDPolyPrivate::subModelLabels(rect), (std::vector<long>{0, 1, 2, 3}));
  EXPECT_FALSE(gxSMDGDPolyPrivate::isCircle(rect));
  EXPECT_FALSE(gxSMDGDPolyPrivate::isCircle(Outline()));

  Poly const triangle = Poly::triangle(6, 9, {0, 0});
  EXPECT_EQ(triangle.vertex(0, false).point(), gxVector<2>(0, 6));
  EXPECT_EQ(triangle.vertex(2, false).point(), gxVector<2>(3, -3));
  for (double const bad : {0.0, inf, noNumber})
    EXPECT_THROW(Poly::circle(bad, {0, 0}), gxException) << bad;

  Outline rounded = square(10, 2);
  std::vector<double> lengths;
  rounded.appendSegmentLengths_(lengths);
  EXPECT_NEAR(lengths[0], 8.0 + std::numbers::pi, 1e-12);
  EXPECT_NEAR(lengths[1], 8.0, 1e-12);
  rounded.forwardPercExtension_(1, 0.5);
  rounded.backwardPercExtension_(1, 0.25);
  EXPECT_NEAR(rounded.extensionPerimeter_(), 7.5, 1e-12);
  gxSMDDimension const dimension(10, 9, 12, gxSMDDimension::scaleAll);
  gxDimTol const fractions = gxSMDGDPolyPrivate::dimTol(dimension);
  EXPECT_EQ(fractions.tolType(), gxDimTol::Percentages);
  EXPECT_EQ(gxSMDDimension(fractions), dimension);
}

TEST(Poly, BoxesUnderMaps)
{
  // A half disc: the box of the arc, not of its ends, and of the corner, not of its fillet.
  Outline const disc(true, {{0, 0, 1, 180}, {10, 0}});
  for (auto const &[xform, origin, size] : std::vector<std::tuple<gxXform<2>, gxVector<2>, gxVector<2>>>{
           {gxXform<2>(), {0, 0}, {10, 5}},
           {gxXform<2>(gxMatrix<2>(0, -2, 2, 0), {1, 1}), {-9, 1}, {10, 20}},
           {gxXform<2>(gxMatrix<2>(-1, 0, 0, 1), {0, 7}), {-10, 7}, {10, 5}},
       }) {
    gxRect const box = disc.boundingBox(xform);
    EXPECT_LT(box.origin().distance(origin), 1e-12) << box;
    EXPECT_LT(box.size().distance(size), 1e-12) << box;
  }
  EXPECT_TRUE(Outline(false, {{1, 1}}).boundingBox(gxXform<2>()).isEmpty());
  EXPECT_THROW(square(10).boundingBox(gxXform<2>(gxMatrix<2>(1, 0, 0, 0), {})), gxShapesError::DegenerateShape);
}

TEST(Poly, Errors)
{
  auto const expect = [](auto const &e, long number, char const *name, char const *text) {
    EXPECT_EQ(e.errorNumber(), number);
    EXPECT_STREQ(e.className(), name);
    EXPECT_EQ(throughArchive(e).message(), text);
  };
  expect(gxSMDGDPolyVertex::invalidSegmentLength(), 0x11000350, "gxSMDGDPolyVertex::invalidSegmentLength",
         "Invalid poly segment length specified at vertex.");
  expect(Poly::invalidVertices(), 0x11000360, "gxSMDGDPoly::invalidVertices", "Invalid poly vertices.");
  expect(Poly::crossingSegments(), 0x11000361, "gxSMDGDPoly::crossingSegments", "Two or more poly segments cross.");
  expect(Poly::invalidIndex(), 0x11000362, "gxSMDGDPoly::invalidIndex", "Invalid index for poly vertex or segment.");
  expect(Poly::invalidRounding(), 0x11000363, "gxSMDGDPoly::invalidRounding",
         "Invalid radius for poly vertex rounding.");
  expect(Poly::noPelBuffer(), 0x11000364, "gxSMDGDPoly::noPelBuffer", "No pel buffer to draw on.");
  expect(Poly::badSubModel(), 0x11000365, "gxSMDGDPoly::badSubModel", "The specified sub-model is not 2D");
  expect(Poly::notClosed(), 0x11000366, "gxSMDGDPoly::notClosed",
         "An operation was performed which requires a closed poly.");
}

TEST(Poly, RefusedEditsChangeNothing)
{
  Outline const closed = square(10, 2);
  Outline const chain(false, {{0, 0, 0, 0, 4}, {10, 0, 0, 0, 4}, {10, 10, 3, 0, -1}, {0, 10, 0, 90, 5}});
  struct Row {
    Outline const &poly;
    char const *what;
    std::function<void(Outline &)> edit;
    char const *exception;
  };
  auto const replace = [](int i, gxSMDGDPolyVertex const &v) { return [=](Outline &p) { p.replaceVertex(i, v); }; };
  auto const insert = [](int i, gxSMDGDPolyVertex const &v) { return [=](Outline &p) { p.insertVertex(i, v); }; };
  auto withTol = [](gxSMDGDPolyVertex v, gxDimTol const &tol) {
    v.segmentLengthTol(tol);
    return v;
  };
  auto greedy = at(5, 5, 0, 0, 1);
  greedy.percentPrevSegment(0.75);
  for (Row const &r : std::vector<Row>{
           {closed, "crossing", replace(0, at(-5, 5)), "gxSMDGDPoly::crossingSegments"},
           {closed, "arc across", replace(3, at(10, 0, 0, -240)), "gxSMDGDPoly::crossingSegments"},
           {closed, "radius", replace(0, at(10, 10, 6)), "gxSMDGDPoly::invalidRounding"},
           {closed, "used up", replace(1, at(0, 10, 8)), "gxSMDGDPoly::invalidRounding"},
           {closed, "span", replace(0, at(10, 10, 0, 400)), "gxShapesError::DegenerateShape"},
           {closed, "NaN point", replace(0, at(noNumber, 10)), "gxShapesError::BadGeom"},
           {closed, "infinite point", insert(0, at(0, inf)), "gxShapesError::BadGeom"},
           {closed, "NaN span", replace(0, at(10, 10, 0, noNumber)), "gxShapesError::BadGeom"},
           {closed, "infinite radius", replace(0, at(10, 10, -inf)), "gxSMDGDPoly::invalidRounding"},
           {closed, "tolerance", replace(1, withTol(at(0, 10), gxDimTol(20, 15, 25))), "gxShapesError::BadGeom"},
           {closed, "label claimed twice", insert(1, greedy), "gxSMDGDPoly::crossingSegments"},
           {closed, "index", replace(4, at(0, 0)), "gxSMDGDPoly::invalidIndex"},
           {closed, "index", replace(-1, at(0, 0)), "gxSMDGDPoly::invalidIndex"},
           {closed, "index", insert(-2, at(5, 0)), "gxSMDGDPoly::invalidIndex"},
           {closed, "index", insert(4, at(5, 0)), "gxSMDGDPoly::invalidIndex"},
           {closed, "index", [](Outline &p) { p.deleteVertex(4); }, "gxSMDGDPoly::invalidIndex"},
           {closed, "all", [](Outline &p) { p.deleteAllVertices(); }, "gxSMDGDPoly::invalidVertices"},
           {closed, "bow tie",
            [](Outline &p) {
              p.vertices({at(0, 0), at(9, 9), at(9, 0), at(0, 9)});
            },
            "gxSMDGDPoly::crossingSegments"},
           {chain, "append crossing", insert(3, at(5, -5)), "gxSMDGDPoly::crossingSegments"},
           {chain, "front coincident", insert(-1, at(0, 0)), "gxShapesError::DegenerateShape"},
           {chain, "radius", replace(2, at(10, 10, 11)), "gxSMDGDPoly::invalidRounding"},
           {chain, "NaN first", insert(-1, at(noNumber, 0)), "gxShapesError::BadGeom"},
           {chain, "closing segment", [](Outline &p) { p.replaceVertex(0, at(0, 0, 0, 200)), p.close(); }, ""},
       }) {
    Outline poly = r.poly;
    poly.forwardPercExtension_(0, 0.125);
    EXPECT_EQ(refusal(poly, r.edit), r.exception) << r.what;
  }

  Outline one(false, {{1, 1, 5}});
  EXPECT_EQ(refusal(one, [](Outline &p) { p.close(); }), "gxSMDGDPoly::invalidVertices");
  EXPECT_EQ(refusal(one, [](Outline &p) { p << at(noNumber, 0); }), "gxShapesError::BadGeom");
  EXPECT_EQ(refusal(one, [](Outline &p) { p.deleteVertex(0); }), "");
  EXPECT_EQ(one.numVertices(), 0);
  EXPECT_EQ(refusal(one, [](Outline &p) { p.close(); }), "gxSMDGDPoly::invalidVertices");
  Outline pair = Poly::circle(2, {0, 0});
  EXPECT_EQ(refusal(pair, [](Outline &p) { p.deleteVertex(1); }), "gxSMDGDPoly::invalidVertices");
}

TEST(Poly, LabelsFollowTheVertices)
{
  auto const labels = [](Poly const &p) { return gxSMDGDPolyPrivate::subModelLabels(p); };
  Outline p(false, {{0, 0, 0, 0, 7}, {10, 0, 0, 0, -1}, {10, 10, 0, 0, 3}});
  EXPECT_EQ(labels(p), (std::vector<long>{7, 3}));
  p.insertVertex(-1, at(-5, -5, 0, 0, 9));  // an insertion only adds its label, at the end
  EXPECT_EQ(labels(p), (std::vector<long>{7, 3, 9}));
  p.replaceVertex(2, at(10, 1));  // any other edit puts them in order
  EXPECT_EQ(labels(p), (std::vector<long>{9, 7, 3}));
  p.insertVertex(-1, at(-5, -9, 0, 0, 3));
  EXPECT_EQ(labels(p), (std::vector<long>{9, 7, 3}));
  EXPECT_THROW(p.replaceVertex(2, at(-5, -5)), gxException);
  EXPECT_EQ(labels(p), (std::vector<long>{9, 7, 3}));
  p.deleteVertex(1);
  EXPECT_EQ(labels(p), (std::vector<long>{3, 7}));
}

TEST(Poly, VerticesOfItsOwn)
{
  Outline p = square(10);
  p.replaceVertex(1, p.vertex(1, false));
  EXPECT_EQ(p, square(10));
  p.deleteVertex(3);
  Outline q(false, {{0, 0}, {10, 0}, {10, 10}});
  for (int i = 0; i < 40; ++i) {  // each reallocates sooner or later
    Poly moved = q;
    EXPECT_THROW(moved << moved.vertex(2, false), gxException);
    q << at(9.0 - i, 10.0 + i);
  }
  q.vertices(q.vertices());
  EXPECT_EQ(q.numVertices(), 43);
  q.reset();
  EXPECT_EQ(q, Poly());
  EXPECT_EQ(q.name(), "poly");
}

TEST(Poly, OpensAndStaysOpen)
{
  Outline p = square(10, 2);
  p.open();
  EXPECT_EQ(p.numSegments(), 3);
  EXPECT_EQ(p.vertex(0, false).vertexRadius(), 2.0);  // kept, and without effect at an end
  EXPECT_DOUBLE_EQ(p.roundedSegmentLength_(1), 10.0);
  p.close();
  EXPECT_EQ(p.allFields(), square(10, 2).allFields());

  Outline toleranced = square(10);
  auto v = toleranced.vertex(1, false);
  v.segmentLengthTol(gxDimTol(10, 9, 11));
  toleranced.replaceVertex(1, v);
  EXPECT_EQ(toleranced.segmentDimension(1), gxSMDDimension(10, 9, 11));
  EXPECT_NO_THROW(toleranced.open());
  EXPECT_TRUE(toleranced.isOpen());
}

TEST(PolyVertex, PercentagesAndComparison)
{
  gxSMDGDPolyVertex v = at(1, 2, -3, 10, 4);
  for (double const bad : {0.005, 1.0000001, -1.0, noNumber}) {
    EXPECT_THROW(v.percentPrevSegment(bad), gxSMDGDPolyVertex::invalidSegmentLength);
    EXPECT_THROW(v.percentNextSegment(bad), gxSMDGDPolyVertex::invalidSegmentLength);
    EXPECT_THROW(gxSMDGDPolyVertex({0, 0}, 0.5, bad, -1), gxSMDGDPolyVertex::invalidSegmentLength);
  }
  EXPECT_EQ(v.percentPrevSegment(), 0.5);
  v.percentPrevSegment(1.0);

  gxSMDGDPolyVertex turned = v;
  turned.segmentAngleSpan(gxDegree(370));
  EXPECT_TRUE(gfRealEq(v, turned, 1e-12));
  std::vector<std::function<void(gxSMDGDPolyVertex &)>> const changes = {
      [](auto &w) {
        w.point({1, 2.1});
      },
      [](auto &w) { w.vertexRadius(3); },
      [](auto &w) { w.segmentAngleSpan(gxDegree(11)); },
      [](auto &w) { w.percentPrevSegment(0.9); },
      [](auto &w) { w.percentNextSegment(0.9); },
      [](auto &w) { w.subModelLabel(5); },
      [](auto &w) { w.segmentLengthTol(gxDimTol(1)); },
  };
  for (auto const &change : changes) {
    gxSMDGDPolyVertex other = v;
    change(other);
    EXPECT_TRUE(other != v) << other;
    Outline p(false, {{-50, 0}}), q = p;
    p << v;
    q << other;
    EXPECT_NE(p, q) << q;
  }
  gxSMDGDPolyVertex const scaled = 2.0 * v;
  EXPECT_EQ(scaled, [] {
    auto w = at(2, 4, -6, 10, 4);
    w.percentPrevSegment(1.0);
    return w;
  }());
}

TEST(Poly, Mapping)
{
  Outline p(false, {{0, 0, 0, 0, 1}, {10, 0, 2, 0, 2}, {10, 10, -1, 30, 3}, {0, 20}});
  p.weight(0.5);
  p.toggleDirection();
  gx2Rigid const turn(gxDegree(30), {5, -7});
  Outline const turned = turn * p;
  EXPECT_TRUE(gfRealEq(turn.inverse() * turned, p, 1e-12));
  Outline const doubled = 2.0 * p;
  EXPECT_NEAR(doubled.perimeter_(0.0), 2.0 * p.perimeter_(0.0), 1e-12);
  EXPECT_NEAR(turned.perimeter_(0.0), p.perimeter_(0.0), 1e-12);
  EXPECT_TRUE(doubled.isDirectionReversed());
  EXPECT_TRUE(doubled.roundingIsUncertain_(2));
  EXPECT_EQ(0.5 * doubled, p);
  EXPECT_THROW(0.0 * p, gxException);
  Outline weighted = p;
  weighted.weight(0.5 + 1e-14);
  EXPECT_NE(weighted, p);
  EXPECT_TRUE(gfRealEq(weighted, p, 1e-12));
}

// What is moved or made in one go without being checked again is what checking gives.
TEST(Poly, MovedAndMadeInOneGo)
{
  using P = gxSMDGDPolyPrivate;
  Random random(71);
  int sound = 0;
  for (int round = 0; round < 300; ++round) {
    std::vector<gxSMDGDPolyVertex> vertices;
    for (Corner const &c : star(random, 3 + random.below(8)))
      vertices.push_back(c.vertex());
    bool const isClosed = !random.one(3);
    try {
      Outline reference;
      reference.vertices(vertices);
      if (isClosed)
        reference.close();
      ++sound;
      Outline const whole = P::outline(vertices, isClosed);
      EXPECT_EQ(whole.allFields(), reference.allFields()) << asCode(reference);
      gxVector<2> const offset(random.in(-50, 50), random.in(-50, 50));
      Outline const moved = P::moved(whole, offset), mapped = gx2Rigid(gxDegree(), offset) * whole;
      EXPECT_TRUE(gfRealEq(moved, mapped, 1e-12)) << asCode(reference);
      EXPECT_EQ(P::subModelLabels(moved), P::subModelLabels(mapped));
      for (int v = 0; v < moved.numVertices(); ++v)
        EXPECT_TRUE(!moved.isRounded(v) || moved.fillet(v).p1().distance(mapped.fillet(v).p1()) < 1e-11);
      Outline edited = moved, expected = mapped;  // the boxes that edits look at are its own
      edited.deleteVertex(0);
      expected.deleteVertex(0);
      EXPECT_TRUE(gfRealEq(edited, expected, 1e-12));
    } catch (gxException const &) {
    }
  }
  EXPECT_GT(sound, 100);
}
