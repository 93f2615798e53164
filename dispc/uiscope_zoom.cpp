#include "dispc/uiscope.h"

// The whole-number forms of `sample` and `expand`: each brings its factors to doubles and calls the form that does the
// work. A reduction by n is the scale 1 / n; a factor of 0 gives an infinite scale, of which nothing is drawn.

namespace
{

gxPair<double> reduction(gxPair<long> const &n)
{
  return {1.0 / static_cast<double>(n.x()), 1.0 / static_cast<double>(n.y())};
}

gxPair<double> enlargement(gxPair<long> const &n)
{
  return gxPair<double>(n);
}

}  // namespace

void gxUIScope::sample(gxPelBuffer_const<gxPackedRGB32Pel> const &buffer, gxPoint const &topLeft, gxPair<long> const &n,
                       bool pass, unsigned long passPel)
{
  sample(buffer, topLeft, reduction(n), pass, passPel);
}

void gxUIScope::sample(gxPelBuffer_const<gxPackedRGB16Pel> const &buffer, gxPoint const &topLeft, gxPair<long> const &n,
                       bool pass, unsigned short passPel)
{
  sample(buffer, topLeft, reduction(n), pass, passPel);
}

void gxUIScope::sample(gxPelBuffer_const<unsigned short> const &buffer, gxPoint const &topLeft, gxPair<long> const &n,
                       bool pass, unsigned short passPel)
{
  sample(buffer, topLeft, reduction(n), pass, passPel);
}

void gxUIScope::sample(gxPelBuffer_const<unsigned char> const &buffer, gxPoint const &topLeft, gxPair<long> const &n,
                       bool pass, unsigned char passPel, bool flag)
{
  sample(buffer, topLeft, reduction(n), pass, passPel, flag);
}

void gxUIScope::expand(gxPelBuffer_const<gxPackedRGB32Pel> const &buffer, gxPoint const &topLeft, gxPair<long> const &n,
                       bool pass, unsigned long passPel, InterpolationModes mode)
{
  expand(buffer, topLeft, enlargement(n), pass, passPel, mode);
}

void gxUIScope::expand(gxPelBuffer_const<gxPackedRGB16Pel> const &buffer, gxPoint const &topLeft, gxPair<long> const &n,
                       bool pass, unsigned short passPel, InterpolationModes mode)
{
  expand(buffer, topLeft, enlargement(n), pass, passPel, mode);
}

void gxUIScope::expand(gxPelBuffer_const<unsigned short> const &buffer, gxPoint const &topLeft, gxPair<long> const &n,
                       bool pass, unsigned short passPel, InterpolationModes mode)
{
  expand(buffer, topLeft, enlargement(n), pass, passPel, mode);
}

void gxUIScope::expand(gxPelBuffer_const<unsigned char> const &buffer, gxPoint const &topLeft, gxPair<long> const &n,
                       bool pass, unsigned char passPel, bool flag, InterpolationModes mode)
{
  expand(buffer, topLeft, enlargement(n), pass, passPel, flag, mode);
}

void gxUIScope::sample(gxRLEBuffer const &buffer, gxPoint const &topLeft, std::vector<unsigned char> const &colorMap,
                       gxPair<long> const &n, bool pass, unsigned char passPel)
{
  sample(buffer, topLeft, colorMap, reduction(n), pass, passPel);
}

void gxUIScope::expand(gxRLEBuffer const &buffer, gxPoint const &topLeft, std::vector<unsigned char> const &colorMap,
                       gxPair<long> const &n, bool pass, unsigned char passPel)
{
  expand(buffer, topLeft, colorMap, enlargement(n), pass, passPel);
}
