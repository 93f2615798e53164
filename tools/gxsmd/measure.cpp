#include "dispc/wrfm/polyprivate.h"
#include "footprint/edges.h"
#include "tools/gxsmd/commands.h"
#include "tools/gxsmd/device.h"
#include "tools/gxsmd/pose.h"
#include "tools/support/errors.h"
#include "tools/support/output.h"
#include "tools/support/picture.h"
#include "tools/support/render.h"

#include <cmath>
#include <cstdio>
#include <iostream>

namespace
{

std::string nameOf(Device const &device, gxSegmentEdges const &s)
{
  auto const outline = static_cast<std::size_t>(s.outline);
  if (s.isBody)
    return "body " + std::to_string(outline);
  return outline < device.models.padOf.size() ? "pad " + device.footprint.pads[device.models.padOf[outline]].number
                                              : "pad outline " + std::to_string(outline);
}

char const *kindOf(gxSegmentEdges const &s)
{
  constexpr char const *names[] = {"line", "arc", "fillet"};
  return names[s.kind];
}

void printRow(std::string const &what, std::string const &part, int looked, int found, double mean, double spread,
              double worst)
{
  char text[200];
  std::snprintf(text, sizeof text, "%-14s %-10s %6d %6d %8.3f %8.3f %8.3f\n", what.substr(0, 60).c_str(), part.c_str(),
                looked, found, mean, spread, worst);
  std::cout << text;
}

void print(Device const &device, gxEdgeReport const &report)
{
  char head[120];
  std::snprintf(head, sizeof head, "%-14s %-10s %6s %6s %8s %8s %8s\n", "outline", "segment", "looked", "found", "mean",
                "spread", "worst");
  std::cout << head;
  for (gxSegmentEdges const &s : report.segments)
    if (s.looked > 0)
      printRow(nameOf(device, s), kindOf(s) + (' ' + std::to_string(s.vertex)), s.looked,
               static_cast<int>(s.points.size()), s.mean(), s.spread(), s.worst());
  printRow("all", "", report.looked(), report.found(), report.mean(), report.spread(), report.worst());
  if (report.found() == 0)
    return;
  char pose[160];
  std::snprintf(pose, sizeof pose, "the pose is off by (%.3f, %.3f) pels and %.3f degrees\n", report.poseShift.x(),
                report.poseShift.y(), report.poseTurn.value());
  std::cout << pose;
}

void writeTable(std::string const &path, Device const &device, gxEdgeReport const &report)
{
  OutputFile file(path);
  std::ostream &os = file.stream();
  os << "outline,segment,vertex,looked,found,mean,spread,worst\n";
  for (gxSegmentEdges const &s : report.segments)
    os << quotedField(nameOf(device, s)) << ',' << kindOf(s) << ',' << s.vertex << ',' << s.looked << ','
       << s.points.size() << ',' << s.mean() << ',' << s.spread() << ',' << s.worst() << '\n';
  file.finish();
}

/// The image, 4 times as large, the outlines where the pose puts them, and the offsets 40 times as long as they are.
void writePicture(std::string const &path, gxPelBuffer<unsigned char> const &image, Device const &device,
                  gxXform<2> const &pose, gxEdgeReport const &report)
{
  gxUITablet recorder;
  recorder.recordOn().push(true);
  recorder.draw(image, gxPoint(0, 0), false, 0, false, gxUITablet::image);
  for (gxSMDGDModel const *const model : {&device.models.pads, &device.models.body})
    for (gxSMDGDPoly const &poly : model->polys())
      gxSMDGDPolyPrivate::drawWireframe(poly, pose, recorder, gxColor::yellowColor(), gxUITablet::overlay);
  constexpr double magnify = 40.0, good = 0.1;
  gfDrawEdges(report, recorder, magnify, good, gxUITablet::overlay);
  View view;
  view.scale = 4.0;
  view.size = gxPair<long>(4 * image.width(), 4 * image.height());
  render(recorder.sketch(), view, path);
}

}  // namespace

void measureCommand(ToolWords const &words)
{
  CommandLine const line(words, {"--pose", "--scale", "--reach", "--corner", "--csv", "--picture", "--limit"});
  if (line.operands().size() != 2)
    throw UsageError("measure takes a picture and a footprint");
  Pose const pose = poseIn(line.needed("--pose"), scaleOf(line));
  auto const number = [&](char const *option, double otherwise, double least, double most) {
    std::string const *const text = line.option(option);
    double const v = text ? numberIn(*text, option + 2) : otherwise;
    if (!(v >= least && v <= most)) {
      char says[120];
      std::snprintf(says, sizeof says, "%s is from %g to %g pels", option, least, most);
      throw UsageError(says);
    }
    return v;
  };
  gxEdgeSearch search;
  search.reach = number("--reach", search.reach, 2.0, 50.0);
  search.corner = number("--corner", search.corner, 0.0, 1000.0);
  double const limit = number("--limit", 1e9, 0.0, 1e9);
  std::string const &path = line.operands()[0];
  Device const device = readDevice(line.operands()[1]);
  auto const image = readGreyPicture(path);
  gxEdgeReport const report = gfMeasureEdges(device.models, pose.xform(), image, search);
  print(device, report);
  if (std::string const *const csv = line.option("--csv"))
    writeTable(*csv, device, report);
  if (std::string const *const picture = line.option("--picture"))
    writePicture(*picture, image, device, pose.xform(), report);
  if (report.found() == 0)
    throw FileError(path + ": there is no edge where the pose puts the device; see --pose, --scale and --reach");
  for (gxSegmentEdges const &s : report.segments)
    if (std::abs(s.mean()) > limit)
      throw FileError(path + ": an edge lies farther off than the --limit: that of " + nameOf(device, s) + ", " +
                      kindOf(s) + ' ' + std::to_string(s.vertex));
}
