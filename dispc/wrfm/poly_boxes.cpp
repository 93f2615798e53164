// The boxes round the pieces of an outline: roughly, as they only say where to look. Whatever could meet anything, or
// be refused when it is made, lies within.

#include "dispc/wrfm/poly.h"
#include "dispc/wrfm/polyprivate.h"

#include <algorithm>
#include <cmath>

namespace
{

using Box = gx_PolyBoxes::Box;

/// Room for the rounding of what is computed from numbers of a size, and for the tolerances at the ends of pieces.
constexpr double relativeMargin = 4e-12;

double largest(gxVector<2> const &a, gxVector<2> const &b)
{
  return std::max({std::abs(a.x()), std::abs(a.y()), std::abs(b.x()), std::abs(b.y())});
}

Box around(gxVector<2> const &a, gxVector<2> const &b, double margin)
{
  return {std::min(a.x(), b.x()) - margin, std::min(a.y(), b.y()) - margin, std::max(a.x(), b.x()) + margin,
          std::max(a.y(), b.y()) + margin};
}

Box aroundLine(gxVector<2> const &a, gxVector<2> const &b)
{
  bool const canBeMade = !(a == b) && std::isfinite((b - a) * (b - a));
  return canBeMade ? around(a, b, relativeMargin * largest(a, b)) : Box::everything();
}

/// Round an arc between two points: no part of it is further from the chord than its height, nor are its sides.
Box aroundArc(gxVector<2> const &a, gxVector<2> const &b, double span)
{
  double const chord = a.distance(b);
  double const height = 0.5 * chord * std::tan(gxRadian(gxDegree(std::abs(span))).value() / 4.0);
  double const radius = (0.25 * chord * chord + height * height) / (2.0 * height);
  double const margin = height + relativeMargin * (radius + largest(a, b));
  bool const canBeMade = chord > 0.0 && std::abs(span) > 1e-15 && std::abs(span) <= 360.0 && std::isfinite(margin);
  return canBeMade ? around(a, b, margin) : Box::everything();
}

}  // namespace

gx_PolyBoxes::Box gxSMDGDPoly::boxAt_(int i) const
{
  auto const at = static_cast<std::size_t>(i);
  Box box;
  if (previousSegmentIndex_(i) != -1) {
    int const before = i == 0 ? static_cast<int>(numVertices()) - 1 : i - 1;
    gxVector<2> const from = nextRoundPoints_[static_cast<std::size_t>(before)], to = prevRoundPoints_[at];
    if (isUsedUp_(i)) {
      box = around(from, to, relativeMargin * largest(from, to));
    } else if (isLineSegment_(i)) {
      box = aroundLine(from, to);
    } else {
      // A part of an arc lies within the whole. It may be no arc any more, which is for the one to find who asks for
      // it.
      gxVector<2> const start = vertexPoint_(before), end = vertexPoint_(i);
      bool const isWhole = from == start && to == end;
      box = isWhole || segmentIsSound_(i) ? aroundArc(start, end, segmentAngleSpan_(i).value()) : Box::everything();
    }
  }
  if (hasFillet_(i))
    box.add(aroundArc(prevRoundPoints_[at], nextRoundPoints_[at], roundSpans_[at]));
  return box;
}

bool gxSMDGDPoly::segmentIsSound_(int s) const
{
  try {
    gxSMDGDPolyPrivate::roundedArcSegment_(*this, s);
    return true;
  } catch (gxException const &) {
    return false;
  }
}

void gxSMDGDPoly::markBoxesStale_(int v) noexcept
{
  auto const at = static_cast<std::size_t>(v);
  boxes_.markStale(at);
  boxes_.markStale(at + 1 < vertices_.size() ? at + 1 : 0);
}

void gxSMDGDPoly::refreshBoxes_()
{
  boxes_.refresh(vertices_.size(), [this](std::size_t i) { return boxAt_(static_cast<int>(i)); });
}
