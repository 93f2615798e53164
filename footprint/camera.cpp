#include "footprint/camera.h"

#include "dispc/wrfm/polyprivate.h"
#include "foundation/shapeserror.h"

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

namespace
{

using Buffer = gxPelBuffer<unsigned char>;

/// Light on the pels of an image, row by row.
struct Light {
  long width, height;
  std::vector<double> values;

  double &at(long x, long y) { return values[static_cast<std::size_t>(y * width + x)]; }
};

void paint(gxSMDGDModel const &model, gxXform<2> const &pose, Buffer const &buffer, unsigned char grey)
{
  for (gxSMDGDPoly const &poly : model.polys())
    gxSMDGDPolyPrivate::drawSynthetic(poly, pose, buffer, grey, true, true);
}

/// How many times as large an image can be painted.
long finenessOf(long width, long height)
{
  constexpr double most = 64e6;
  long fineness = 8;
  while (fineness > 1 && double(width) * double(height) * double(fineness * fineness) > most)
    fineness /= 2;
  return fineness;
}

Light exposed(gxFootprintModels const &models, gxXform<2> const &pose, gxCameraLook const &look, long width,
              long height)
{
  long const n = finenessOf(width, height);
  constexpr long border = 8;  // the rasteriser leaves the outermost pels of a window alone
  Buffer const fine(n * width + 2 * border, n * height + 2 * border);
  for (long y = 0; y < fine.height(); ++y)
    std::fill_n(fine.pointToRow(y), fine.width(), look.background);
  double const scale = double(n);
  gxXform<2> const enlarged =
      gxXform<2>(gxMatrix<2>(scale, 0, 0, scale), gxVector<2>(double(border), double(border))) * pose;
  paint(models.pads, enlarged, fine, look.pads);
  paint(models.body, enlarged, fine, look.body);
  Light light{width, height, std::vector<double>(static_cast<std::size_t>(width * height))};
  std::vector<long> sums(static_cast<std::size_t>(width));
  for (long y = 0; y < height; ++y) {
    std::fill(sums.begin(), sums.end(), 0L);
    for (long k = 0; k < n; ++k) {
      unsigned char const *pel = fine.pointToRow(border + y * n + k) + border;
      for (long &sum : sums)
        for (long i = 0; i < n; ++i)
          sum += *pel++;
    }
    for (long x = 0; x < width; ++x)
      light.at(x, y) = double(sums[static_cast<std::size_t>(x)]) / double(n * n);
  }
  return light;
}

/// By a Gaussian; the pels at the borders stand for those beyond.
void blur(Light &light, double deviation)
{
  if (deviation <= 0.0)
    return;
  long const reach = static_cast<long>(std::ceil(4.0 * deviation));
  std::vector<double> weights;
  double sum = 0.0;
  for (long i = -reach; i <= reach; ++i) {
    weights.push_back(std::exp(-0.5 * double(i * i) / (deviation * deviation)));
    sum += weights.back();
  }
  std::vector<double> line;
  auto const pass = [&](long length, auto const &value) {
    line.resize(static_cast<std::size_t>(length + 2 * reach));
    for (long i = -reach; i < length + reach; ++i)
      line[static_cast<std::size_t>(i + reach)] = value(std::clamp(i, 0L, length - 1));
    for (long i = 0; i < length; ++i) {
      double mean = 0.0;
      for (std::size_t k = 0; k < weights.size(); ++k)
        mean += weights[k] * line[static_cast<std::size_t>(i) + k];
      value(i) = mean / sum;
    }
  };
  for (long y = 0; y < light.height; ++y)
    pass(light.width, [&](long x) -> double & { return light.at(x, y); });
  for (long x = 0; x < light.width; ++x)
    pass(light.height, [&](long y) -> double & { return light.at(x, y); });
}

/// By the square of the distance from the middle.
void shade(Light &light, double part)
{
  double const x0 = 0.5 * double(light.width), y0 = 0.5 * double(light.height), corner = x0 * x0 + y0 * y0;
  for (long y = 0; y < light.height; ++y)
    for (long x = 0; x < light.width; ++x) {
      double const dx = double(x) + 0.5 - x0, dy = double(y) + 0.5 - y0;
      light.at(x, y) *= 1.0 - part * (dx * dx + dy * dy) / corner;
    }
}

void addNoise(Light &light, double deviation, unsigned long seed)
{
  // The sum of twelve: the same on every machine, which a distribution of the standard library need not be.
  std::mt19937 random(static_cast<std::mt19937::result_type>(seed));
  for (double &v : light.values) {
    double sum = -6.0;
    for (int i = 0; i < 12; ++i)
      sum += static_cast<double>(random()) * 0x1p-32;
    v += sum * deviation;
  }
}

bool isWithin(double v, double most)
{
  return v >= 0.0 && v <= most;
}

}  // namespace

void gfCameraImage(gxFootprintModels const &models, gxXform<2> const &pose, gxCameraLook const &look,
                   Buffer const &image)
{
  image.checkBound();
  pose.inverse();
  if (!isWithin(look.blur, 50.0) || !isWithin(look.noise, 1e6) || !isWithin(look.shading, 1.0))
    throw gxShapesError::BadCoef();
  if (image.width() == 0 || image.height() == 0)
    return;
  gxPelRect const &window = image.window();
  gxXform<2> const inWindow(pose.matrix(), pose.translation() - gxVector<2>(double(window.x()), double(window.y())));
  Light light = exposed(models, inWindow, look, image.width(), image.height());
  blur(light, look.blur);
  if (look.shading > 0.0)
    shade(light, look.shading);
  if (look.noise > 0.0)
    addNoise(light, look.noise, look.seed);
  for (long y = 0; y < image.height(); ++y)
    for (long x = 0; x < image.width(); ++x)
      image.put(x + window.x(), y + window.y(),
                static_cast<unsigned char>(std::lround(std::clamp(light.at(x, y), 0.0, 255.0))));
}
