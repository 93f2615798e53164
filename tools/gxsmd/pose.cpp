#include "tools/gxsmd/pose.h"

#include "foundation/angle.h"
#include "tools/support/errors.h"

#include <array>
#include <charconv>
#include <cmath>

gxXform<2> Pose::xform() const
{
  gxRadian const turn{gxDegree(-degrees)};  // y points down
  return {gxMatrix<2>(turn, turn, scale, scale), gxVector<2>(x, y)};
}

Pose poseIn(std::string const &text, double scale)
{
  std::array<double, 3> v{};
  std::size_t n = 0;
  char const *at = text.data(), *const end = at + text.size();
  while (n < v.size()) {
    auto const [stop, failure] = std::from_chars(at, end, v[n]);
    if (failure != std::errc() || !(std::abs(v[n]) <= 1e6))
      break;
    ++n;
    at = stop;
    if (at == end || *at != ',')
      break;
    ++at;
  }
  if (n < 2 || at != end || text.back() == ',')
    throw UsageError("'" + text + "' is no pose; give X,Y or X,Y,DEGREES, in pels");
  return {v[0], v[1], v[2], scale};
}
