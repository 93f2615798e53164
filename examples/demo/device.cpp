#include "backends/pels/pelsurface.h"
#include "dispc/wrfm/polyprivate.h"
#include "examples/demo/pages.h"
#include "examples/demo/sheet.h"
#include "footprint/camera.h"
#include "footprint/edges.h"
#include "footprint/models.h"
#ifdef GXDISPLAY_HAVE_CAIRO
#include "backends/cairo/cairosurface.h"
#endif

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

// A device out of a file: its outlines, an overlay on a camera image, and how well an overlay lies on one.

namespace
{

using Buffer = gxPelBuffer<unsigned char>;

std::string said(char const *format, auto... values)
{
  char words[160];
  std::snprintf(words, sizeof words, format, values...);
  return words;
}

/// To three digits behind the point, without a zero below zero.
double shown(double v)
{
  return std::round(v * 1000.0) / 1000.0 + 0.0;
}

std::string sizeOf(gxSMDGDModel const &model)
{
  gxRect const box = model.boundingBox({});
  return box.isEmpty() ? "none" : said("%.3g x %.3g mm", box.size().x(), box.size().y());
}

gxRect extentOf(gxFootprintModels const &models)
{
  return models.pads.boundingBox({}).enclose(models.body.boundingBox({})).enclose(models.courtyard.boundingBox({}));
}

/// The middle of a device at a place of a picture.
gxXform<2> poseAt(gxVector<2> const &place, double degrees, double scale, gxVector<2> const &middle)
{
  gxRadian const turn{gxDegree(-degrees)};  // y points down
  gxMatrix<2> const matrix(turn, turn, scale, scale);
  return {matrix, place - matrix * middle};
}

gxVector<2> middleOf(gxRect const &box)
{
  return box.origin() + box.size() * 0.5;
}

void drawOutlines(gxUITablet &tablet, gxSMDGDModel const &model, gxXform<2> const &pose, gxColor const &color)
{
  for (gxSMDGDPoly const &poly : model.polys())
    gxSMDGDPolyPrivate::drawWireframe(poly, pose, tablet, color, gxUITablet::overlay);
}

void drawDevice(gxUITablet &tablet, gxFootprintModels const &models, gxXform<2> const &pose)
{
  drawOutlines(tablet, models.body, pose, gxColor::greenColor());
  drawOutlines(tablet, models.pads, pose, gxColor::orangeColor());
}

void drawImage(gxUITablet &tablet, Buffer const &image)
{
  tablet.draw(image, gxPoint(0, 0), false, 0, false, gxUITablet::image);
}

/// Outlines in millimetres, with the numbers of the pads.
void drawPlan(Sheet &sheet, gxFootprint const &footprint, gxFootprintModels const &models)
{
  gxRect const box = extentOf(models);
  double const scale = std::min(600.0 / box.size().x(), 400.0 / box.size().y());
  sheet.panel(gxVector<2>(320, 235) - middleOf(box) * scale, scale);
  drawOutlines(sheet.tablet, models.courtyard, {}, gxColor::magentaColor());
  drawDevice(sheet.tablet, models, {});
  for (std::size_t i = 0; i < models.padOf.size(); ++i) {
    gxRect const pad = models.pads.poly(static_cast<int>(i)).boundingBox({});
    std::string const &number = footprint.pads[models.padOf[i]].number;
    if (std::min(pad.size().x(), pad.size().y()) * scale > 10.0)
      sheet.text(number, middleOf(pad), gxColor::whiteColor(), gxUIFormat::center);
  }
  sheet.panel({}, 1.0);
  sheet.text(footprint.name, {320, 8}, gxColor::whiteColor(), gxUIFormat::topCenter);
  sheet.text("pads " + sizeOf(models.pads), {8, 472}, gxColor::orangeColor(), gxUIFormat::bottomLeft);
  sheet.text("body " + sizeOf(models.body), {320, 472}, gxColor::greenColor(), gxUIFormat::bottomCenter);
  sheet.text("courtyard " + sizeOf(models.courtyard), {632, 472}, gxColor::magentaColor(), gxUIFormat::bottomRight);
}

/// As a page of vectors, where that is built in.
void storeVectors(Pages &pages, [[maybe_unused]] gxUISketch const &sketch)
{
#ifdef GXDISPLAY_HAVE_CAIRO
  gxCairoSurface page(640, 480, gxCairoSurface::vectors);
  gxUITablet tablet(&page.imageScope(), &page.overlayScope());
  tablet.visible(true);
  tablet.draw(sketch, {}, gxUITablet::both);
  std::string const file = (pages.folder() / "device.svg").string();
  page.writeSvg(file);
  pages.remark("and drawn from them as vectors: " + file);
#else
  pages.remark("cairo is not there, so no page of vectors is written");
#endif
}

/// A panel with an image of 200 x 280, and the outlines of a device where a pose puts them.
void drawPanel(Sheet &sheet, double x, Buffer const &image, gxFootprintModels const &models, gxXform<2> const *pose,
               gxEdgeReport const *report, std::vector<std::string> const &words)
{
  sheet.panel({x, 20}, 1.0);
  drawImage(sheet.tablet, image);
  if (pose)
    drawDevice(sheet.tablet, models, *pose);
  if (report)
    gfDrawEdges(*report, sheet.tablet, 20.0, 0.05, gxUITablet::overlay);
  double y = 300.0;
  for (std::string const &line : words) {
    sheet.text(line, {0, y}, gxColor::whiteColor(), gxUIFormat::topLeft);
    y += 16.0;
  }
}

std::vector<std::string> figuresOf(char const *title, gxEdgeReport const &report)
{
  return {title,
          said("%d places, %d edges", report.looked(), report.found()),
          said("mean   %7.3f pel", shown(report.mean())),
          said("spread %7.3f pel", shown(report.spread())),
          said("worst  %7.3f pel", shown(report.worst())),
          "the pose is off by",
          said("%.3f, %.3f pel, %.3f deg", shown(report.poseShift.x()), shown(report.poseShift.y()),
               shown(report.poseTurn.value()))};
}

}  // namespace

void deviceChapter(Pages &pages, gxFootprint const &footprint)
{
  gxFootprintModels const models = gfFootprintModels(footprint);
  gxRect const box = extentOf(models);
  if (box.isEmpty()) {
    pages.remark(footprint.name + " has no outlines to be drawn");
    return;
  }
  Sheet plan;
  pages.show("device", "a device out of a file: outlines in millimetres", plan.surface, &plan.tablet.sketch(),
             [&] { drawPlan(plan, footprint, models); });
  for (gxFootprintProblem const &problem : models.problems)
    pages.remark(problem.text());
  pages.store("device", plan.tablet.sketch());
  storeVectors(pages, plan.tablet.sketch());

  Sheet camera;
  double const scale = 0.92 * std::min(640.0, 480.0) / box.size().len();
  gxXform<2> const pose = poseAt({320, 240}, 13.0, scale * 1.1, middleOf(box));
  Buffer const image(640, 480);
  gxCameraLook look;
  look.blur = 0.8;
  look.shading = 0.35;
  gfCameraImage(models, pose, look, image);
  pages.show("device_overlay", "its synthetic camera image, and the overlay on it", camera.surface,
             &camera.tablet.sketch(), [&] {
               drawImage(camera.tablet, image);
               drawDevice(camera.tablet, models, pose);
             });
}

void knownTruthChapter(Pages &pages, gxFootprint const &footprint)
{
  gxFootprintModels const models = gfFootprintModels(footprint);
  gxRect const box = extentOf(models);
  if (box.isEmpty())
    return;
  Buffer const image(200, 280);
  double const scale = 255.0 / box.size().len();
  gxVector<2> const place(100.37, 140.21), off(0.3, -0.2);
  gxXform<2> const truth = poseAt(place, 67.0, scale, middleOf(box)),
                   beside = poseAt(place + off, 67.0, scale, middleOf(box));
  gfCameraImage(models, truth, {}, image);
  gxEdgeReport const onIt = gfMeasureEdges(models, truth, image), besideIt = gfMeasureEdges(models, beside, image);
  Sheet sheet;
  pages.show("known_truth", "edges measured under an overlay in place, and under one beside it", sheet.surface,
             &sheet.tablet.sketch(), [&] {
               drawPanel(sheet, 10, image, models, nullptr, nullptr,
                         {"camera image", "at a known pose,", said("%.1f pels per mm", scale)});
               drawPanel(sheet, 220, image, models, &truth, &onIt, figuresOf("overlay in place", onIt));
               drawPanel(sheet, 430, image, models, &beside, &besideIt,
                         figuresOf("overlay off by 0.3, -0.2", besideIt));
               sheet.panel({}, 1.0);
               sheet.text("whiskers: 20 times the way from the outline to the edge, red from 0.05 pel on", {320, 472},
                          gxColor::greyColor(), gxUIFormat::bottomCenter);
             });
  pages.remark(said("worst edge %.3f pel from the outline; told of the other overlay: off by %.3f, %.3f", onIt.worst(),
                    besideIt.poseShift.x(), besideIt.poseShift.y()));
}
