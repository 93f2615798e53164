#include "tools/support/render.h"
#include "dispc/wrfm/polyprivate.h"
#include "tools/gxsmd/commands.h"
#include "tools/gxsmd/device.h"
#include "tools/support/errors.h"

double scaleOf(CommandLine const &line)
{
  std::string const *const text = line.option("--scale");
  return text ? scaleIn(*text) : 40.0;
}

namespace
{

void addOutlines(gxUITablet &tablet, gxSMDGDModel const &model, gxColor const &color)
{
  for (gxSMDGDPoly const &poly : model.polys())
    gxSMDGDPolyPrivate::drawWireframe(poly, gxXform<2>(), tablet, color, gxUITablet::overlay);
}

}  // namespace

void renderCommand(ToolWords const &words)
{
  CommandLine const line(words, {"--scale", "--layers"});
  if (line.operands().size() != 2)
    throw UsageError("render takes a footprint and a picture");
  std::string const layers = ',' + (line.option("--layers") ? *line.option("--layers") : "pads,body,courtyard") + ',';
  Device const device = readDevice(line.operands()[0]);
  gxUITablet recorder;
  recorder.recordOn().push(true);
  std::size_t known = 0;
  auto const add = [&](std::string const &name, gxSMDGDModel const &model, gxColor const &color) {
    if (layers.find(',' + name + ',') == std::string::npos)
      return;
    known += name.size() + 1;
    addOutlines(recorder, model, color);
  };
  add("courtyard", device.models.courtyard, gxColor::magentaColor());
  add("body", device.models.body, gxColor::greenColor());
  add("pads", device.models.pads, gxColor::orangeColor());
  if (known + 1 != layers.size())
    throw UsageError("'" + *line.option("--layers") + "' are no layers; give some of pads, body, courtyard");
  View view;
  view.scale = scaleOf(line);
  render(recorder.sketch(), view, line.operands()[1]);
}
