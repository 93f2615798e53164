#pragma once

/// @file
/// What the rules look at surfaces with.

#include "conformance/surfacecheck.h"
#include "dispc/uirect.h"
#include "foundation/point.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

/// The ground on which the rules draw, and what they draw with. None of them is a grey, or close to a stock color.
inline gxColor const gx_groundColor(10, 20, 40);
inline gxColor const gx_penColor(240, 70, 20);

/// The pels of a surface at one time.
class gx_Picture
{
 public:
  /// Throws gxPel::BadCoord if the surface shows less than @p size.
  gx_Picture(gxCheckedSurface const &surface, gxPair<long> const &size);

  gxUIRect whole() const { return {gxPair<long>(), size_}; }
  gxRGB at(long x, long y) const
  {
    gxPackedRGB32Pel const pel(static_cast<unsigned long>(pels_[static_cast<std::size_t>(y * size_.x() + x)]));
    return {pel.red(), pel.green(), pel.blue()};
  }
  gxRGB at(gxPair<long> const &p) const { return at(p.x(), p.y()); }

  /// The first pel that differs in @p inside, but outside of @p outside.
  std::optional<gxPair<long>> difference(gx_Picture const &other, gxUIRect const &inside,
                                         gxUIRect const &outside = gxUIRect::null) const;
  /// The first pel of a rectangle that is not like @p color, give or take rounding.
  std::optional<gxPair<long>> unlike(gxColor const &color, gxUIRect const &inside) const;
  /// The first pel of a rectangle that is like @p color.
  std::optional<gxPair<long>> like(gxColor const &color, gxUIRect const &inside) const;

 private:
  gxPair<long> size_;
  std::vector<std::uint32_t> pels_;
};

/// A new surface, wholly painted in the color of the ground; nothing is noted as changed or modified.
class gx_Probe
{
 public:
  static constexpr gxPair<long> usualSize{64, 64};

  explicit gx_Probe(gxSurfaceFactory const &factory, gxPair<long> const &size = usualSize);

  gxUIScope &scope() { return *surface_.scope; }
  bool readsPels() const { return static_cast<bool>(surface_.picture); }
  gx_Picture picture() const { return {surface_, size_}; }
  gxUIRect whole() const { return {gxPair<long>(), size_}; }
  std::unique_ptr<gxUIScope> part(gxUIRect const &rect, bool temporary);
  /// Lets the surface go, as far as this probe holds it.
  void drop() { surface_ = {}; }

 private:
  gxCheckedSurface surface_;
  gxPair<long> size_;
};

/// Forgets what was noted of the drawings so far.
void gf_settle(gxUIScope &scope);
/// The pen in pels of the scope, which only back ends see.
gxPair<long> gf_penPel(gxUIScope const &scope);

/// One rule being checked.
class gx_Check
{
 public:
  gx_Check(gxSurfaceFactory const &factory, std::string rule, gxConformanceReport &report)
      : factory_(factory), rule_(std::move(rule)), report_(report)
  {
  }

  gx_Probe probe() const { return gx_Probe(factory_); }
  gxCheckedSurface surface(gxPair<long> const &size) const { return factory_(size); }

  void found(std::string expected, std::string seen);
  /// A finding unless @p holds; both texts are put together from their parts.
  template <class... Expected>
  void expect(bool holds, std::string const &seen, Expected const &...expected)
  {
    if (!holds)
      found(text(expected...), seen);
  }
  /// A finding if there is such a pel.
  template <class... Expected>
  void expectNone(std::optional<gxPair<long>> const &pel, gx_Picture const &seen, Expected const &...expected)
  {
    if (pel)
      found(text(expected...), pelText(*pel, seen));
  }

  template <class... Parts>
  static std::string text(Parts const &...parts)
  {
    std::ostringstream os;
    (os << ... << parts);
    return os.str();
  }

 private:
  static std::string pelText(gxPair<long> const &pel, gx_Picture const &seen);

  gxSurfaceFactory const &factory_;
  std::string rule_;
  gxConformanceReport &report_;
};
