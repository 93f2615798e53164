#include "tools/support/render.h"
#include "tools/gxsmd/commands.h"
#include "tools/gxsmd/device.h"
#include "tools/gxsmd/drawing.h"
#include "tools/gxsmd/pose.h"
#include "tools/support/errors.h"
#include "tools/support/picture.h"

#include <algorithm>
#include <array>
#include <string_view>

double scaleOf(CommandLine const &line)
{
  std::string const *const text = line.option("--scale");
  double const scale = text ? scaleIn(*text) : 40.0;
  if (scale < 1e-3 || scale > 1e6)
    throw UsageError("--scale is from 0.001 to 1000000 pels per millimetre");
  return scale;
}

namespace
{

using Names = std::vector<std::string>;

Names namesIn(std::string const &text)
{
  Names names(1);
  for (char const c : text) {
    if (c == ',')
      names.emplace_back();
    else
      names.back() += c;
  }
  return names;
}

/// Layers of the file have a point in their names; of others there are four.
Names layersOf(CommandLine const &line)
{
  std::string const *const text = line.option("--layers");
  Names const names = namesIn(text ? *text : "pads,body,courtyard");
  for (std::string const &name : names)
    if (name != "pads" && name != "body" && name != "courtyard" && name != "silk" &&
        name.find('.') == std::string::npos)
      throw UsageError("'" + name + "' is no layer; give some of pads, body, courtyard, silk, or layers of the file");
  return names;
}

bool onOf(CommandLine const &line, char const *name)
{
  std::string const *const text = line.option(name);
  if (text && *text != "on" && *text != "off")
    throw UsageError("'" + *text + "' makes no sense for " + name + "; give on or off");
  return !text || *text == "on";
}

void drawFileLayer(DeviceDrawing const &drawing, Device const &device, std::string const &name, gxColor const &color,
                   double scale)
{
  if (drawing.layer(name, color, scale))
    return;
  std::string others;
  for (std::string const &layer : drawnLayers(device.footprint))
    others += (others.empty() ? "" : ", ") + layer;
  throw FileError(device.path + ": nothing is drawn on " + name + "; " +
                  (others.empty() ? "no layer of it has drawings" : "there are drawings on " + others));
}

/// What was named, what lies on top last.
void draw(DeviceDrawing const &drawing, Device const &device, Names const &layers, double scale)
{
  static std::array const colors = {gxColor::cyanColor(), gxColor::yellowColor(), gxColor::ltGreyColor(),
                                    gxColor::blueColor(), gxColor::purpleColor()};
  auto const has = [&](char const *name) { return std::ranges::find(layers, name) != layers.end(); };
  std::size_t next = 0;
  for (std::string const &name : layers)
    if (name.find('.') != std::string::npos)
      drawFileLayer(drawing, device, name, colors[next++ % colors.size()], scale);
  if (has("silk"))
    for (char const *const name : {"B.SilkS", "F.SilkS"})
      drawing.layer(name, gxColor::whiteColor(), scale);
  if (has("courtyard"))
    drawing.outlines(device.models.courtyard, gxColor::magentaColor());
  if (has("body"))
    drawing.outlines(device.models.body, gxColor::greenColor());
  if (has("pads"))
    drawing.outlines(device.models.pads, gxColor::orangeColor());
}

}  // namespace

void renderCommand(ToolWords const &words)
{
  CommandLine const line(words, {"--scale", "--layers", "--fillets", "--over", "--at"});
  if (line.operands().size() != 2)
    throw UsageError("render takes a footprint and a picture");
  needPictureKind(line.operands()[1]);
  Names const layers = layersOf(line);
  bool const isRounded = onOf(line, "--fillets");
  std::string const *const over = line.option("--over"), *const at = line.option("--at");
  if (at && !over)
    throw UsageError("--at needs a picture to place the device in; give it by --over");
  double const scale = scaleOf(line);
  Pose pose{0.0, 0.0, 0.0, scale};
  if (at)
    pose = poseIn(*at, scale);

  Device const device = readDevice(line.operands()[0]);
  View view;
  if (over) {
    view.under = readColorPicture(*over);
    view.size = view.under.size();
    if (!at) {
      pose.x = static_cast<double>(view.size->x()) / 2.0;
      pose.y = static_cast<double>(view.size->y()) / 2.0;
    }
  }
  gxUITablet recorder;
  recorder.recordOn().push(true);
  DeviceDrawing drawing(device, pose.xform(), recorder);
  drawing.sharp(!isRounded);
  draw(drawing, device, layers, scale);
  if (!over && extentOf(recorder.sketch(), 1.0, gxUITablet::overlay).isNull())
    throw FileError(device.path + ": there is nothing to draw on these layers; see --layers and gxsmd info");
  render(recorder.sketch(), view, line.operands()[1]);
}
