#include "tools/gxsmd/report.h"

#include "foundation/exception.h"
#include "foundation/rigid.h"
#include "tools/gxsmd/drawing.h"
#include "tools/support/svglines.h"
#include "tools/support/text.h"

#include <algorithm>

namespace
{

constexpr char const *head = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width">
<title>gxsmd check</title>
<style>
body { display: flex; flex-direction: column; max-width: 60em; margin: 2em auto; padding: 0 1em;
  font: 15px/1.4 sans-serif; color: #222; background: #fff; }
#summary { order: -1; }
table { border-collapse: collapse; }
td, th { padding: .1em 1em .1em 0; text-align: left; font-weight: normal; }
td { text-align: right; font-variant-numeric: tabular-nums; }
section { border-top: 1px solid #ccc; padding: .6em 0; overflow-wrap: anywhere; }
h2 { font-size: 1em; margin: 0; }
p, ul { margin: .3em 0; }
b { color: #b00020; font-weight: 600; }
svg { display: block; max-width: 100%; height: auto; margin: .5em 0; border: 1px solid #ddd; }
i { font-style: normal; font-weight: 600; }
</style>
</head>
<body>
)";

gxColor const padColor(0xC8, 0x6A, 0x00), bodyColor(0x2E, 0x7D, 0x32), courtyardColor(0x8E, 0x5B, 0xB5),
    rawColor(0xBB, 0xBB, 0xBB), markColor(0xE0, 0x00, 0x30);

constexpr char const *legend =
    "<p><i style=\"color:#c86a00\">pads</i>, <i style=\"color:#2e7d32\">body</i>, "
    "<i style=\"color:#8e5bb5\">courtyard</i>, <i style=\"color:#888\">lines of a layer that make no outline</i>, "
    "<i style=\"color:#e00030\">what deviates</i>; dashed: the gap, the distance, or the size that the name "
    "tells</p>\n";

/// The box of what pictures show, in millimetres.
gxRect shownOf(Device const &device, std::vector<Finding> const &findings)
{
  gxFootprintModels const &m = device.models;
  gxRect box;
  for (gxSMDGDModel const *const model : {&m.pads, &m.body, &m.courtyard})
    box = box.enclose(model->boundingBox({}));
  auto const add = [&](gxVector<2> const &p) { box = box.enclose(gxRect(p, gxVector<2>())); };
  gx2Rigid const place(-device.footprint.angle, device.footprint.at);
  for (Finding const &finding : findings) {
    std::ranges::for_each(finding.places, add);
    for (gxRect const &r : finding.boxes)
      box = box.enclose(r);
    for (gxFootprint::Graphic const &g : device.footprint.graphics)
      if (!finding.layer.empty() && g.layer == finding.layer)
        for (gxVector<2> const &p : g.points)
          add(place * p);
  }
  return box;
}

long cornersOf(Device const &device)
{
  gxFootprintModels const &m = device.models;
  auto n = static_cast<long>(device.footprint.graphics.size());
  for (gxSMDGDModel const *const model : {&m.pads, &m.body, &m.courtyard})
    n += model->numVertices();
  return n;
}

/// Lines of layers lie below the outlines that are made of them, so that those show of which none was made.
void draw(Device const &device, std::vector<Finding> const &findings, double scale, gxUITablet &tablet)
{
  DeviceDrawing const drawing(device, gxXform<2>(gxMatrix<2>(scale, 0, 0, scale), {}), tablet);
  for (char const *const layer : {"F.CrtYd", "B.CrtYd", "F.Fab", "B.Fab"})
    drawing.layer(layer, std::ranges::any_of(findings, [&](Finding const &f) { return f.layer == layer; }) ? markColor
                                                                                                           : rawColor);
  drawing.outlines(device.models.courtyard, courtyardColor);
  drawing.outlines(device.models.body, bodyColor);
  drawing.outlines(device.models.pads, padColor);
  constexpr std::size_t mostMarks = 200;
  for (std::size_t i = 0; i < std::min(findings.size(), mostMarks); ++i)
    drawing.mark(findings[i], markColor);
}

}  // namespace

HtmlReport::HtmlReport(std::string const &path, long mostPictures)
    : file_(path), os_(file_.stream()), mostPictures_(mostPictures)
{
  os_ << head;
}

void HtmlReport::add(std::string const &path, Device const *device, std::vector<Finding> const &findings)
{
  os_ << "<section>\n<h2>" << htmlText(path) << "</h2>\n";
  if (device && !device->footprint.name.empty())
    os_ << "<p>" << htmlText(device->footprint.name) << "</p>\n";
  os_ << "<ul>\n";
  constexpr std::size_t most = 100;
  for (std::size_t i = 0; i < std::min(findings.size(), most); ++i)
    os_ << "<li><b>" << findings[i].name() << "</b> " << htmlText(findings[i].text) << "</li>\n";
  if (findings.size() > most)
    os_ << "<li>and " << findings.size() - most << " more</li>\n";
  os_ << "</ul>\n";
  if (device && pictures_ < mostPictures_ && picture(*device, findings))
    ++pictures_;
  os_ << "</section>\n";
}

bool HtmlReport::picture(Device const &device, std::vector<Finding> const &findings)
{
  gxRect const box = shownOf(device, findings);
  constexpr long mostCorners = 20'000;
  if (box.isEmpty() || cornersOf(device) > mostCorners) {
    os_ << (box.isEmpty() ? "<p>There is nothing to draw.</p>\n" : "<p>There is too much of it for a picture.</p>\n");
    return false;
  }
  constexpr double width = 560.0, height = 400.0, coarsest = 1e-3, finest = 100.0;
  double const scale = std::clamp(
      std::min(width / std::max(box.size().x(), 1e-6), height / std::max(box.size().y(), 1e-6)), coarsest, finest);
  gxUITablet recorder;
  recorder.recordOn().push(true);
  draw(device, findings, scale, recorder);
  os_ << svgLines(recorder.sketch());
  return true;
}

void HtmlReport::finish(SweepCounts const &counts)
{
  os_ << "<div id=\"summary\">\n<h1>gxsmd check</h1>\n<table>\n";
  auto const row = [&](char const *what, long n) { os_ << "<tr><th>" << what << "</th><td>" << n << "</td></tr>\n"; };
  row("files", counts.files);
  row("sound", counts.sound());
  row("with faults", counts.faulty);
  row("not read", counts.refused);
  os_ << "</table>\n<p>Findings:</p>\n<table>\n";
  for (std::size_t kind = 0; kind < counts.kinds.size(); ++kind)
    if (counts.kinds[kind] > 0)
      row(Finding::names[kind], counts.kinds[kind]);
  os_ << "</table>\n" << legend;
  if (pictures_ >= mostPictures_)
    os_ << "<p>The first " << mostPictures_ << " files have pictures; --pictures N draws more.</p>\n";
  os_ << "</div>\n</body>\n</html>\n";
  file_.finish();
}
