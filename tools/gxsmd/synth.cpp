#include "dispc/wrfm/polyprivate.h"
#include "foundation/pelbuf.h"
#include "tools/gxsmd/commands.h"
#include "tools/gxsmd/device.h"
#include "tools/support/errors.h"
#include "tools/support/render.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace
{

using Buffer = gxPelBuffer<unsigned char>;

/// Repeated means of three pels each way come near to a Gaussian; its variance is 2 / 3 for each pass.
void blur(Buffer const &buffer, double radius)
{
  long const passes = std::lround(std::min(radius, 50.0) * std::min(radius, 50.0) * 1.5);
  // The pels at the borders stand for those beyond.
  auto const indexOf = [&](long x, long y) {
    return static_cast<std::size_t>(std::clamp(y, 0L, buffer.height() - 1) * buffer.width() +
                                    std::clamp(x, 0L, buffer.width() - 1));
  };
  std::vector<double> pels(static_cast<std::size_t>(buffer.width() * buffer.height()));
  auto const at = [&](long x, long y) -> double & { return pels[indexOf(x, y)]; };
  for (long y = 0; y < buffer.height(); ++y)
    for (long x = 0; x < buffer.width(); ++x)
      at(x, y) = buffer.get(x, y);
  for (long pass = 0; pass < passes; ++pass)
    for (bool const along : {true, false}) {
      std::vector<double> const before = pels;
      auto const old = [&](long x, long y) { return before[indexOf(x, y)]; };
      for (long y = 0; y < buffer.height(); ++y)
        for (long x = 0; x < buffer.width(); ++x)
          at(x, y) = along ? (old(x - 1, y) + old(x, y) + old(x + 1, y)) / 3.0
                           : (old(x, y - 1) + old(x, y) + old(x, y + 1)) / 3.0;
    }
  for (long y = 0; y < buffer.height(); ++y)
    for (long x = 0; x < buffer.width(); ++x)
      buffer.put(x, y, static_cast<unsigned char>(std::lround(at(x, y))));
}

void addNoise(Buffer const &buffer, double deviation, unsigned long seed)
{
  // The sum of twelve: the same on every machine, which a distribution of the standard library need not be.
  std::mt19937 random(static_cast<std::mt19937::result_type>(seed));
  for (long y = 0; y < buffer.height(); ++y)
    for (long x = 0; x < buffer.width(); ++x) {
      double sum = -6.0;
      for (int i = 0; i < 12; ++i)
        sum += static_cast<double>(random()) * 0x1p-32;
      buffer.put(x, y,
                 static_cast<unsigned char>(std::lround(std::clamp(buffer.get(x, y) + sum * deviation, 0.0, 255.0))));
    }
}

}  // namespace

void synthCommand(ToolWords const &words)
{
  CommandLine const line(words, {"--scale", "--blur", "--noise", "--seed"});
  if (line.operands().size() != 2)
    throw UsageError("synth takes a footprint and a picture");
  auto const number = [&](char const *option, char const *what) {
    std::string const *const text = line.option(option);
    return text ? numberIn(*text, what) : 0.0;
  };
  double const scale = scaleOf(line), radius = number("--blur", "radius"), noise = number("--noise", "deviation");
  auto const seed = static_cast<unsigned long>(std::min(number("--seed", "seed"), 4e9));
  std::string const &path = line.operands()[0];
  Device const device = readDevice(path);
  gxRect const box = device.models.pads.boundingBox({}).enclose(device.models.body.boundingBox({}));
  if (box.isEmpty())
    throw FileError(path + ": there is nothing to be seen of it");
  constexpr double margin = 10.0;
  gxVector<2> const pels = box.size() * scale + gxVector<2>(2 * margin, 2 * margin);
  if (pels.x() * pels.y() > 1e8)
    throw FileError(path + ": a picture of more than 100 million pels; give a smaller --scale");
  Buffer const buffer(std::lround(std::ceil(pels.x())), std::lround(std::ceil(pels.y())));
  for (long y = 0; y < buffer.height(); ++y)
    std::fill_n(buffer.pointToRow(y), buffer.width(), static_cast<unsigned char>(90));
  gxXform<2> const pose(gxMatrix<2>(scale, 0, 0, scale), gxVector<2>(margin, margin) - box.origin() * scale);
  for (gxSMDGDPoly const &poly : device.models.pads.polys())
    gxSMDGDPolyPrivate::drawSynthetic(poly, pose, buffer, 210, true, true);
  for (gxSMDGDPoly const &poly : device.models.body.polys())
    gxSMDGDPolyPrivate::drawSynthetic(poly, pose, buffer, 40, true, true);
  blur(buffer, radius);
  if (noise > 0.0)
    addNoise(buffer, noise, seed);
  gxUITablet recorder;
  recorder.recordOn().push(true);
  recorder.draw(buffer, gxPoint(0, 0), false, 0, false, gxUITablet::image);
  render(recorder.sketch(), View(), line.operands()[1]);
}
