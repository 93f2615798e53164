#include "footprint/camera.h"
#include "tools/gxsmd/commands.h"
#include "tools/gxsmd/device.h"
#include "tools/gxsmd/pose.h"
#include "tools/support/errors.h"
#include "tools/support/render.h"

#include <algorithm>
#include <cmath>

namespace
{

using Buffer = gxPelBuffer<unsigned char>;

/// The whole device with a margin round it, where it is not told where it lies.
struct Frame {
  Pose pose;
  gxPair<long> size;
};

Frame frameOf(CommandLine const &line, Device const &device)
{
  gxRect const box = device.models.pads.boundingBox({}).enclose(device.models.body.boundingBox({}));
  if (box.isEmpty())
    throw FileError(device.path + ": there is nothing to be seen of it");
  constexpr double margin = 10.0;
  double const scale = scaleOf(line);
  std::string const *const at = line.option("--at"), *const size = line.option("--size");
  gxVector<2> const corner = gxVector<2>(margin, margin) - box.origin() * scale;
  Frame frame{at ? poseIn(*at, scale) : Pose{corner.x(), corner.y(), 0.0, scale}, {}};
  gxVector<2> end;
  for (gxVector<2> const &p : {gxVector<2>(0, 0), gxVector<2>(1, 0), gxVector<2>(0, 1), gxVector<2>(1, 1)}) {
    gxVector<2> const q =
        frame.pose.xform() * (box.origin() + gxVector<2>(p.x() * box.size().x(), p.y() * box.size().y()));
    end = gxVector<2>(std::max(end.x(), q.x() + margin), std::max(end.y(), q.y() + margin));
  }
  if (!size && !(end.x() * end.y() <= 1e8))
    throw FileError(device.path + ": a picture of more than 100 million pels; give a smaller --scale");
  if (!size && (end.x() < 1.0 || end.y() < 1.0))
    throw FileError(device.path + ": it lies outside of the picture; give another --at, or a --size");
  auto const [width, height] =
      size ? sizeIn(*size) : std::pair(std::lround(std::ceil(end.x())), std::lround(std::ceil(end.y())));
  if (double(width) * double(height) > 1e8)
    throw UsageError("a picture of more than 100 million pels; give a smaller --size");
  frame.size = {width, height};
  return frame;
}

}  // namespace

void synthCommand(ToolWords const &words)
{
  CommandLine const line(words, {"--scale", "--at", "--size", "--blur", "--noise", "--shading", "--seed"});
  if (line.operands().size() != 2)
    throw UsageError("synth takes a footprint and a picture");
  auto const number = [&](char const *option, char const *what, double most) {
    std::string const *const text = line.option(option);
    double const v = text ? numberIn(*text, what) : 0.0;
    if (v > most)
      throw UsageError("'" + *text + "' is too large a " + what);
    return v;
  };
  gxCameraLook look;
  look.blur = number("--blur", "radius", 50.0);
  look.noise = number("--noise", "deviation", 1000.0);
  look.shading = number("--shading", "part", 1.0);
  look.seed = static_cast<unsigned long>(number("--seed", "seed", 4294967295.0));
  Device const device = readDevice(line.operands()[0]);
  Frame const frame = frameOf(line, device);
  Buffer const buffer(frame.size.x(), frame.size.y());
  gfCameraImage(device.models, frame.pose.xform(), look, buffer);
  gxUITablet recorder;
  recorder.recordOn().push(true);
  recorder.draw(buffer, gxPoint(0, 0), false, 0, false, gxUITablet::image);
  render(recorder.sketch(), View(), line.operands()[1]);
}
