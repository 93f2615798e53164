#include "footprint/edges.h"
#include "dispc/wrfm/polyprivate.h"
#include "footprint/camera.h"
#include "foundation/matherror.h"
#include "foundation/pelerror.h"
#include "foundation/shapeserror.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

// Images whose truth is known: what a camera sees of a device, and where its edges are found again.

namespace
{

using Buffer = gxPelBuffer<unsigned char>;
using Point = gxVector<2>;

double const pi = std::acos(-1.0);

/// Lines, fillets, half circles and a circle; the body hides parts of two pads.
gxFootprintModels device()
{
  return gfFootprintModels(gxFootprint::read(R"((footprint ours (layer F.Cu)
    (fp_rect (start -1 -0.5) (end 1 0.5) (layer F.Fab) (width 0.1))
    (fp_line (start -0.9 0) (end 0.9 0) (layer F.Fab) (width 0.1))
    (pad 1 smd roundrect (at -1.1 0) (size 1 1.6) (layers F.Cu) (roundrect_rratio 0.25))
    (pad 2 smd oval (at 1.1 0) (size 1.2 0.9) (layers F.Cu))
    (pad 3 smd circle (at 0 1.4) (size 0.7 0.7) (layers F.Cu))
    (pad 4 smd custom (at 0 -1.3) (size 0.6 0.5) (layers F.Cu)
      (primitives (gr_poly (pts (xy 0.8 -0.4) (arc (start 0.8 -0.4) (mid 1.2 0) (end 0.8 0.4)) (xy 0.6 0))))) ))"));
}

gxXform<2> pose(double x, double y, double degrees, double scale = 40.0)
{
  gxRadian const turn{gxDegree(-degrees)};
  return {gxMatrix<2>(turn, turn, scale, scale), Point(x, y)};
}

Buffer imageOf(gxFootprintModels const &models, gxXform<2> const &at, gxCameraLook const &look = {})
{
  Buffer const image(200, 200);
  gfCameraImage(models, at, look, image);
  return image;
}

double meanOf(Buffer const &image)
{
  double sum = 0.0;
  for (long y = 0; y < image.height(); ++y)
    for (long x = 0; x < image.width(); ++x)
      sum += image.get(x, y);
  return sum / double(image.width() * image.height());
}

TEST(CameraImages, EachPelTakesItsPartOfTheLight)
{
  gxFootprintModels models;
  models.pads << gxSMDGDPoly::circle(0.5, {0, 0});
  double const area = pi * 0.25 * 60 * 60 / (200.0 * 200.0);
  gxCameraLook look;
  look.background = 20;
  look.pads = 220;
  for (double const shift : {0.0, 0.25, 0.4, 0.77}) {
    Buffer const image = imageOf(models, pose(100 + shift, 99.3 - shift, 0, 60), look);
    EXPECT_NEAR((meanOf(image) - 20) / 200, area, 2e-4) << shift;
  }
  // Blur moves light about and loses none; shading takes half of it in the corners and none in the middle.
  look.blur = 2.5;
  EXPECT_NEAR((meanOf(imageOf(models, pose(100, 100, 0, 60), look)) - 20) / 200, area, 2e-4);
  look = {};
  look.shading = 0.5;
  Buffer const shaded = imageOf({}, pose(0, 0, 0), look);
  EXPECT_NEAR(shaded.get(0, 199), 60, 1);
  EXPECT_EQ(shaded.get(100, 100), 120);
  EXPECT_NEAR(shaded.get(100, 0), 90, 1);
}

TEST(CameraImages, NoiseAndWindows)
{
  gxCameraLook look;
  look.noise = 6.0;
  look.seed = 11;
  Buffer const noisy = imageOf({}, pose(0, 0, 0), look), again = imageOf({}, pose(0, 0, 0), look);
  double squares = 0.0;
  for (long y = 0; y < 200; ++y)
    for (long x = 0; x < 200; ++x) {
      ASSERT_EQ(noisy.get(x, y), again.get(x, y));
      squares += std::pow(noisy.get(x, y) - 120.0, 2);
    }
  EXPECT_NEAR(meanOf(noisy), 120, 0.1);
  EXPECT_NEAR(std::sqrt(squares / 40000), 6, 0.1);

  // A window shows its part, and nothing else is touched.
  gxFootprintModels const models = device();
  Buffer const whole = imageOf(models, pose(100.3, 90.6, 20));
  Buffer const root(200, 200);
  Buffer part = root;
  ASSERT_TRUE(part.window(50, 60, 80, 40));
  gfCameraImage(models, pose(100.3, 90.6, 20), {}, part);
  for (long y = 0; y < 200; ++y)
    for (long x = 0; x < 200; ++x) {
      bool const isInside = x >= 50 && x < 130 && y >= 60 && y < 100;
      ASSERT_EQ(root.get(x, y), isInside ? whole.get(x, y) : 0) << x << ' ' << y;
    }
}

// Without noise every point of every edge is within 0.02 pel of the truth, and on the average far closer.
TEST(Edges, LieWhereTheyAre)
{
  gxFootprintModels const models = device();
  for (int i = 0; i < 12; ++i) {
    double const degrees = 31.0 * i, x = 100.0 + 0.37 * i, y = 80.0 + 0.21 * i;
    gxXform<2> at = pose(x, y, degrees);
    if (i % 4 == 3)  // seen from behind
      at = at * gxXform<2>(gxMatrix<2>(-1, 0, 0, 1), Point());
    Buffer const image = imageOf(models, at);
    gxEdgeReport const report = gfMeasureEdges(models, at, image);
    EXPECT_EQ(report.found(), report.looked()) << degrees;
    EXPECT_GT(report.found(), 350) << degrees;
    EXPECT_LT(std::abs(report.worst()), 0.02) << degrees;
    EXPECT_LT(std::abs(report.mean()), 0.006) << degrees;
    EXPECT_LT(report.spread(), 0.008) << degrees;
    EXPECT_LT(report.poseShift.len() + std::abs(report.poseTurn.value()), 0.005) << degrees;
    int fillets = 0, arcs = 0;
    for (gxSegmentEdges const &s : report.segments) {
      EXPECT_LT(std::abs(s.mean()), 0.012) << degrees << ' ' << s.outline << ' ' << s.vertex;
      gxSMDGDPoly const &poly = (s.isBody ? models.body : models.pads).poly(s.outline);
      for (gxEdgePoint const &p : s.points)
        for (double const step : {-0.5, 0.5})
          EXPECT_EQ(gxSMDGDPolyPrivate::inside(poly, at.invMapPoint(p.place + p.outward * step)), step < 0) << degrees;
      fillets += s.kind == gxSegmentEdges::fillet && !s.points.empty();
      arcs += s.kind == gxSegmentEdges::arc && !s.points.empty();
    }
    EXPECT_GE(fillets, 2);
    EXPECT_GE(arcs, 3);
  }
}

TEST(Edges, PosesThatAreOffAreToldBy)
{
  gxFootprintModels const models = device();
  gxXform<2> const at = pose(100.4, 80.7, 17);
  Buffer const image = imageOf(models, at);
  for (Point const &off : {Point(0.3, -0.2), Point(-1.4, 0.9), Point(0, 0.05)})
    for (double const degrees : {0.0, 0.5, -0.8}) {
      gxEdgeReport const report = gfMeasureEdges(models, pose(100.4 + off.x(), 80.7 + off.y(), 17 + degrees), image);
      // The device turns about the middle of its points, which is not its origin.
      double const lever = 20.0 * std::abs(degrees) * pi / 180.0;
      EXPECT_LT(report.poseShift.distance(off), 0.02 + lever) << off << degrees;
      EXPECT_NEAR(report.poseTurn.value(), degrees, 0.03) << off;
      EXPECT_GT(report.spread(), 0.6 * off.len());
    }
  // Outward counts as more: a device that is larger than it should be.
  gxEdgeReport const larger = gfMeasureEdges(models, pose(100.4, 80.7, 17, 39.6), image);
  EXPECT_NEAR(larger.mean(), 0.25, 0.1);
  EXPECT_LT(larger.poseShift.len(), 0.25);
}

TEST(Edges, BlurNoiseAndLightDoNotMoveThem)
{
  gxFootprintModels const models = device();
  gxXform<2> const at = pose(100.4, 80.7, 17);
  gxCameraLook look;
  look.blur = 1.2;
  gxEdgeSearch search;
  search.corner = 6.0;
  gxEdgeReport const blurred = gfMeasureEdges(models, at, imageOf(models, at, look), search);
  EXPECT_GT(blurred.found(), 200);
  EXPECT_LT(std::abs(blurred.worst()), 0.05);
  for (gxSegmentEdges const &s : blurred.segments)
    EXPECT_LT(std::abs(s.mean()), 0.02) << s.isBody << ' ' << s.outline << ' ' << s.vertex << ' ' << s.kind << ' '
                                        << s.points.size() << " (a blurred arc is not to look smaller)";

  look.noise = 3.0;
  look.shading = 0.5;
  gxEdgeReport const poor = gfMeasureEdges(models, at, imageOf(models, at, look), search);
  EXPECT_GT(poor.found(), 0.95 * poor.looked());
  EXPECT_LT(std::abs(poor.mean()), 0.03);
  EXPECT_LT(poor.poseShift.len(), 0.04);
}

TEST(Edges, WhatIsNotSeenDoesNotCount)
{
  gxFootprintModels models = device();
  gxXform<2> const at = pose(100.4, 80.7, 17);
  EXPECT_EQ(gfMeasureEdges(models, at, imageOf({}, at)).found(), 0) << "an empty picture has no edges";
  EXPECT_EQ(gfMeasureEdges(models, pose(900, 80, 17), imageOf(models, at)).looked(), 0) << "outside of the picture";
  EXPECT_EQ(gfMeasureEdges({}, at, imageOf(models, at)).segments.size(), 0u);
  // Below the body, and where the body ends above it, nothing of a pad is looked at.
  gxEdgeReport const report = gfMeasureEdges(models, at, imageOf(models, at));
  for (gxSegmentEdges const &s : report.segments)
    for (gxEdgePoint const &p : s.points) {
      Point const q = at.inverse().mapPoint(p.place);
      bool const isHidden = std::abs(q.x()) < 1.0 && std::abs(q.y()) < 0.5;
      EXPECT_TRUE(s.isBody || !isHidden) << q;
    }
}

TEST(Edges, Refusals)
{
  gxFootprintModels const models = device();
  gxXform<2> const at = pose(100, 80, 0), skewed(gxMatrix<2>(40, 4, 0, 40), Point(100, 80)),
                   stretched(gxMatrix<2>(40, 0, 0, 41), Point(100, 80)), flat(gxMatrix<2>(40, 0, 0, 0), Point());
  Buffer const image = imageOf(models, at);
  EXPECT_THROW(gfMeasureEdges(models, at, Buffer()), gxPel::UnboundWindow);
  EXPECT_THROW(gfMeasureEdges(models, flat, image), gxMathError::Singular);
  EXPECT_THROW(gfMeasureEdges(models, skewed, image), gxShapesError::BadCoef);
  EXPECT_THROW(gfMeasureEdges(models, stretched, image), gxShapesError::BadCoef);
  gxEdgeSearch search;
  search.spacing = 0.0;
  EXPECT_THROW(gfMeasureEdges(models, at, image, search), gxShapesError::BadCoef);
  EXPECT_THROW(gfCameraImage(models, at, {}, Buffer()), gxPel::UnboundWindow);
  gxCameraLook look;
  look.shading = std::nan("");
  double const before = meanOf(image);
  EXPECT_THROW(gfCameraImage(models, at, look, image), gxShapesError::BadCoef);
  EXPECT_THROW(gfCameraImage(models, flat, {}, image), gxMathError::Singular);
  EXPECT_EQ(meanOf(image), before);
}

}  // namespace
