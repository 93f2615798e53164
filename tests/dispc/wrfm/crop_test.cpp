// Crop, held against samples of the outline: what of it runs inside the mask.

#include "dispc/wrfm/modelprivate.h"
#include "foundation/polygon.h"
#include "foundation/shapeserror.h"
#include "tests/support/outlinevariants.h"

#include <gtest/gtest.h>

#include <functional>

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

double length(Model const &model)
{
  return gxSMDGDModelPrivate::perimeter(model, 0.0);
}

std::string textOf(Poly const &poly, Poly const &mask)
{
  return "outline " + asCode(poly) + "\nmask " + asCode(mask);
}

/// Of the outlines here, roughly.
constexpr double size = 20;

/// How much there was to see.
struct Seen {
  int kept = 0, cutAway = 0, pieces = 0;
};

/// Both crops of an outline: samples of it are on what is kept or on the other one, and together they are as long as
/// the outline.
void expectCropAsSampled(Poly const &poly, Poly const &mask, Seen &seen)
{
  SCOPED_TRACE(textOf(poly, mask));
  std::string const before = archivedBytes<Poly>(poly), maskBefore = archivedBytes<Poly>(mask);
  Model const inside = Private::crop(poly, mask, true), outside = Private::crop(poly, mask, false);
  ASSERT_EQ(archivedBytes<Poly>(poly), before);
  ASSERT_EQ(archivedBytes<Poly>(mask), maskBefore);

  double const perimeter = Private::perimeter(poly, 0.0);
  ASSERT_NEAR(length(inside) + length(outside), perimeter, 1e-9 * size);
  std::vector<V> const maskPoints = flattened(mask, 150), points = flattened(poly, 12);
  for (V const p : points) {
    if (Private::distToPoint(mask, p) < 1e-3 * size)
      continue;
    bool const expected = isInside(maskPoints, p);
    (expected ? seen.kept : seen.cutAway)++;
    ASSERT_LT(distance(expected ? inside : outside, p), 1e-9 * size) << p;
    ASSERT_GT(distance(expected ? outside : inside, p), 1e-9 * size) << p;
  }
  for (Model const *const model : {&inside, &outside})
    for (Poly const &piece : model->polys()) {
      ++seen.pieces;
      ASSERT_EQ(piece.name(), "poly");
      ASSERT_GT(piece.numVertices(), 1);
      if (piece.isClosed()) {
        ASSERT_EQ(piece.numVertices(), poly.numVertices());
        continue;
      }
      for (V const end : {piece.vertex(0, false).point(), piece.vertex(-1, true).point()}) {
        bool const isOwnEnd =
            poly.isOpen() && (end == poly.vertex(0, false).point() || end == poly.vertex(-1, true).point());
        ASSERT_TRUE(isOwnEnd || Private::distToPoint(mask, end) < 1e-9 * size) << end;
      }
    }
}

gxSMDGDPoly opened(Poly poly)
{
  poly.open();
  return poly;
}

TEST(Crop, keepsWhatSamplesOfRandomOutlinesSay)
{
  RandomOutlines random(7701);
  Seen seen;
  int models = 0;
  for (int i = 0; i < 250; ++i) {
    Outline const poly = random.sound(3, 12);
    Corners const corners = cornersOf(random.sound(3, 12));
    Outline mask;
    try {
      mask = outlineOf(
          mapped(corners, gxDegree(random.in(0, 360)), random.in(0.2, 1.3), V(random.in(-5, 5), random.in(-5, 5))));
    } catch (gxException const &) {
      continue;
    }
    Corners const own = cornersOf(poly);
    std::vector<Outline> rows = {poly, outlineOf(startingAt(own, own.size() / 2))};
    try {
      rows.push_back(outlineOf(reversed(own)));
      rows.push_back(opened(poly));
    } catch (gxException const &) {
    }
    for (Outline const &row : rows)
      try {
        expectCropAsSampled(row, mask, seen);
        ++models;
      } catch (gxException const &e) {
        FAIL() << e.what() << textOf(row, mask);
      }
    if (HasFatalFailure())
      return;
  }
  EXPECT_GT(models, 800);
  EXPECT_GT(seen.kept, 5000);
  EXPECT_GT(seen.cutAway, 5000);
  EXPECT_GT(seen.pieces, 2000);
}

}  // namespace
