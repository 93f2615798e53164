// Whatever outline is accepted has its pieces: it can be measured, taken apart, drawn and filled. The outlines here are
// those where fillets use up lines and arcs, in full or but for a rounding error, and where they are tiny.

#include "dispc/uitablet.h"
#include "dispc/wrfm/wirefrm.h"
#include "foundation/shapeserror.h"
#include "foundation/shapetree.h"
#include "tests/support/logscope.h"
#include "tests/support/outlinevariants.h"

#include <gtest/gtest.h>

#include <optional>

namespace
{

using Private = gxSMDGDPolyPrivate;
using V = gxVector<2>;

double turnAt(Corners const &c, std::size_t i)
{
  auto const at = [&](std::size_t k) { return V(c[k % c.size()].x, c[k % c.size()].y); };
  V const in = at(i) - at(i + c.size() - 1), out = at(i + 1) - at(i);
  return std::abs(std::atan2(in.cross(out), in * out));
}

/// A radius whose fillet takes a share of the sides that is likely to cause trouble.
double trickyRadius(Random &random, double side, double turn)
{
  double const shares[] = {0.5, 0.5, 0.5, 1.0, 1.0, 0.25, 0.4, 0.6, 0.5 - 1e-15, 0.5 - 1e-9, 1 - 1e-12, 1e-12, 1e-15};
  return shares[random.below(13)] * side / std::tan(turn / 2) * (random.one(5) ? -1 : 1);
}

/// A walk of sides that are often alike, along directions that often are at right angles; or a regular polygon.
Corners trickyCorners(Random &random)
{
  double const sides[] = {10, 10, 10, 20, 5}, turns[] = {90, 90, -90, -90, 60, -60, 120, 30};
  int const n = 3 + random.below(4);
  bool const isRegular = random.one(3), isArched = random.one(3);
  Corners corners;
  V at;
  double direction = 0, side = 10;
  for (int i = 0; i < n; ++i) {
    corners.push_back({at.x(), at.y()});
    side = isRegular ? 10 : sides[random.below(5)];
    direction += isRegular ? 360.0 / n : turns[random.below(8)];
    at += V(side, gxDegree(direction));
  }
  for (std::size_t i = 0; i < corners.size(); ++i) {
    double const spans[] = {90, -90, 180, -60, 1e-3, -1e-7};
    if (isArched && random.one(3))
      corners[i].span = spans[random.below(6)];
    if (!random.one(4))
      corners[i].radius = trickyRadius(random, random.one(6) ? 20 : 10, turnAt(corners, i));
  }
  bool const isTurned = random.one(2);
  return isTurned ? mapped(corners, gxDegree(random.in(0, 360)), random.in(0.5, 2), V(random.in(-9, 9), 3)) : corners;
}

/// What fails of all that is done with an outline; "" if nothing does.
std::string failureOf(Outline const &poly)
{
  std::string step;
  try {
    step = "inner pieces";
    long const n = poly.numVertices();
    for (int i = 0; i < n; ++i) {
      if (poly.isRounded(i))
        poly.fillet(i);
      bool const isEnd = poly.isOpen() && (i == 1 || i == n - 1);
      if (poly.previousSegmentIndex_(i) != -1 && !isEnd)
        poly.roundedEnds(i);
    }
    step = "measures";
    double const length = Private::perimeter(poly, 0.0);
    EXPECT_NEAR(Private::perimeter(poly, gxXform<2>()), length, 1e-9 * length);
    V const middle = poly.centerOfMass_();
    EXPECT_LE(Private::distToPoint(poly, middle), 2 * length);
    Private::ranges_(poly, middle, -1);
    Private::isCircle(poly);
    step = "meeting";
    Private::intersection(poly, gxSMDGDPoly::rectangle(4, 60, middle));
    Private::intersection(gxSMDGDPoly::rectangle(60, 4, middle), poly);
    if (poly.isClosed()) {
      poly.isDirectionPositive();
      Private::inside(poly, middle);
    }

    step = "shape";
    gx2Wireframe const polygon = Private::wireframe(poly);
    gxRect const box = polygon.decompose()->boundingBox();
    EXPECT_FALSE(box.isEmpty());
    polygon.nearestPoint(middle);

    step = "drawing";
    ScopeLog log;
    LogScope scope(log, "image", {100, 100});
    gxUITablet tablet(&scope, nullptr);
    tablet.visible(true);
    gxGraphicProps props;
    props.arrowHead(true);
    tablet.draw(polygon, props, gxUITablet::image);
    EXPECT_GE(log.lines.size(), 1U);
    poly.drawDirectionArrows(gxXform<2>(), tablet, 2.0);

    step = "synthetic images";
    gxXform<2> const view(gxMatrix<2>(1.7, 0, 0, 1.7), V(60, 60) - middle * 1.7);
    gxPelBuffer<unsigned char> const image(120, 120);
    for (bool const edges : {false, true})
      Private::drawSynthetic(poly, view, image, 200, edges, true);
    Private::drawSynthetic(poly, view, image, 100, true, false);
  } catch (gxException const &e) {
    return step + ": " + e.className();
  }
  return "";
}

bool anyUsedUp(gxSMDGDPoly const &poly)
{
  for (int s = 1; s < poly.numVertices(); ++s)
    if (Private::isUsedUp_(poly, s))
      return true;
  return false;
}

}  // namespace

TEST(PolyPieces, OfWhateverIsAcceptedCanBeMadeAndDrawn)
{
  int accepted[2] = {}, usedUp = 0, without = 0;
  for (unsigned seed = 0; seed < 3000; ++seed) {
    Random random(seed);
    Corners const corners = trickyCorners(random);
    bool const closed = random.one(2);
    std::optional<Outline> poly;
    try {
      if (random.one(2))
        poly = outlineOf(corners, closed);
      else
        poly.emplace(closed, corners);
    } catch (gxShapesError::DegenerateShape const &) {
      ++without;
      continue;
    } catch (gxException const &) {
      continue;
    }
    for (int edit = 0; edit < 3; ++edit) {
      ++accepted[closed];
      usedUp += anyUsedUp(*poly);
      ASSERT_EQ(failureOf(*poly), "") << "seed " << seed << ' ' << asCode(*poly);
      try {
        int const v = random.below(static_cast<int>(poly->numVertices()));
        gxSMDGDPolyVertex vertex = poly->vertex(v, false);
        vertex.vertexRadius(trickyRadius(random, 10, std::numbers::pi / 2));
        poly->replaceVertex(v, vertex);
      } catch (gxException const &) {
      }
    }
  }
  EXPECT_GT(accepted[0], 1000);
  EXPECT_GT(accepted[1], 300);
  EXPECT_GT(usedUp, 50);
  EXPECT_GT(without, 50);
}

// Between two fillets there must be something, whichever way they turn; at an open end there need not.
TEST(PolyPieces, OfUsedUpLines)
{
  for (double const angle : {0.0, 0.3, 47.0, 160.0})
    for (double const up : {20.0, -20.0}) {
      auto const chain = [&](double first, double second) {
        return mapped({{0, 20}, {0, 0, first}, {10, 0, second}, {10, up}}, gxDegree(angle), 1, {3, 7});
      };
      EXPECT_THROW(outlineOf(chain(5, 5), false), gxException) << angle << ' ' << up;
      EXPECT_THROW(Outline(false, chain(5, 5)), gxException) << angle << ' ' << up;
      EXPECT_NO_THROW(Outline(false, chain(4.999999, 5))) << angle << ' ' << up;

      Outline const corner(false, mapped({{10, 0}, {0, 0, 10}, {0, up / 2}}, gxDegree(angle), 1, {3, 7}));
      EXPECT_TRUE(anyUsedUp(corner));
      EXPECT_NEAR(Private::perimeter(corner, 0.0), 5 * std::numbers::pi, 1e-9);
      EXPECT_EQ(corner.roundedSegmentLength_(1), 0.0);
      gx2Wireframe const polygon = Private::wireframe(corner);
      auto const parts = polygon.decompose();
      EXPECT_EQ(dynamic_cast<gxContourTree const &>(*parts).children().size(), 1U);
      Outline longer = corner;
      EXPECT_THROW(longer << longer.vertex(0, false), gxException) << "the line becomes an inner one";
      EXPECT_EQ(longer.allFields(), corner.allFields());
    }
}
