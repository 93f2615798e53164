#include "conformance/detail/probe.h"

#include <cstdlib>

namespace
{

/// What rounding and the depth of a surface may change of a component.
constexpr int colorTolerance = 8;

bool isLike(gxRGB const &a, gxRGB const &b)
{
  return std::abs(a.r() - b.r()) <= colorTolerance && std::abs(a.g() - b.g()) <= colorTolerance &&
         std::abs(a.b() - b.b()) <= colorTolerance;
}

/// The first pel of a rectangle for which something holds.
template <class Holds>
std::optional<gxPair<long>> firstPel(gxUIRect const &rect, Holds holds)
{
  for (long y = rect.top(); y < rect.bottom(); ++y)
    for (long x = rect.left(); x < rect.right(); ++x)
      if (holds(gxPair<long>(x, y)))
        return gxPair<long>(x, y);
  return {};
}

/// Opens to the rules what back ends see.
class Insight : public gxUIScope
{
 public:
  static gxPair<long> pen(gxUIScope const &scope) { return {(scope.*&Insight::drawX)(), (scope.*&Insight::drawY)()}; }
};

}  // namespace

gx_Picture::gx_Picture(gxCheckedSurface const &surface, gxPair<long> const &size) : size_(size)
{
  pels_.reserve(static_cast<std::size_t>(size.x() * size.y()));
  auto const picture = surface.picture();
  for (long y = 0; y < size.y(); ++y) {
    gxPackedRGB32Pel const *const row = picture.pointToPel(picture.window().x(), picture.window().y() + y);
    for (long x = 0; x < size.x(); ++x)
      pels_.push_back(gxPackedRGB32Pel(row[x].red(), row[x].green(), row[x].blue()).value());
  }
}

std::optional<gxPair<long>> gx_Picture::difference(gx_Picture const &other, gxUIRect const &inside,
                                                   gxUIRect const &outside) const
{
  if (pels_ == other.pels_)
    return {};
  return firstPel(inside & whole(),
                  [&](gxPair<long> const &p) { return !(at(p) == other.at(p)) && !outside.within(p); });
}

std::optional<gxPair<long>> gx_Picture::unlike(gxColor const &color, gxUIRect const &inside) const
{
  return firstPel(inside & whole(), [&](gxPair<long> const &p) { return !isLike(at(p), color.rgbStruct()); });
}

std::optional<gxPair<long>> gx_Picture::like(gxColor const &color, gxUIRect const &inside) const
{
  return firstPel(inside & whole(), [&](gxPair<long> const &p) { return isLike(at(p), color.rgbStruct()); });
}

gx_Probe::gx_Probe(gxSurfaceFactory const &factory, gxPair<long> const &size) : surface_(factory(size)), size_(size)
{
  scope().set(gx_groundColor);
  gf_settle(scope());
}

std::unique_ptr<gxUIScope> gx_Probe::part(gxUIRect const &rect, bool temporary)
{
  return std::unique_ptr<gxUIScope>(scope().newSubScope(rect, temporary));
}

void gf_settle(gxUIScope &scope)
{
  scope.noChange();
  scope.clearAnyChanged();
  scope.modified(false);
  scope.opaque(false);
}

gxPair<long> gf_penPel(gxUIScope const &scope)
{
  return Insight::pen(scope);
}

void gx_Check::found(std::string expected, std::string seen)
{
  report_.findings.push_back({rule_, std::move(expected), std::move(seen)});
}

std::string gx_Check::pelText(gxPair<long> const &pel, gx_Picture const &seen)
{
  gxRGB const color = seen.at(pel);
  return text("pel (", pel.x(), ", ", pel.y(), ") is (", int(color.r()), ", ", int(color.g()), ", ", int(color.b()),
              ")");
}
