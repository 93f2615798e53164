#include "backends/pels/detail/pelpainter.h"

#include "backends/pels/detail/pelcurve.h"
#include "backends/pels/detail/pelfill.h"
#include "backends/pels/detail/pelstroke.h"
#include "dispc/dispprop.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{

/// Coordinates beyond this have no pel number of 32 bits.
constexpr double numbered = 0x1p31;

/// The smallest rectangle round points. Points that are not finite do not count.
class Extremes
{
 public:
  Extremes() = default;
  explicit Extremes(std::span<gxVector<2> const> points)
  {
    for (gxVector<2> const &p : points)
      add(p);
  }
  explicit Extremes(gxRect const &rect)
  {
    add(rect.origin());
    add(rect.origin() + rect.size());
  }

  void add(gxVector<2> const &p)
  {
    if (!p.isFinite())
      return;
    low_ = {std::min(low_.x(), p.x()), std::min(low_.y(), p.y())};
    high_ = {std::max(high_.x(), p.x()), std::max(high_.y(), p.y())};
  }

  /// What a pen reaches whose path has these extremes, as pels.
  gx_PelBox penBox(gx_PelPen const &pen) const
  {
    if (pen.isThin())
      return gf_pelBox(std::floor(low_.x() + 0.5), std::floor(low_.y() + 0.5), std::floor(high_.x() + 0.5) + 1.0,
                       std::floor(high_.y() + 0.5) + 1.0);
    gxVector<2> const reach(pen.reach(), pen.reach());
    return areaBox(low_ + pen.shift() - reach, high_ + pen.shift() + reach);
  }
  /// The pels of an area with these extremes, as places.
  gx_PelBox areaBox() const { return areaBox(low_, high_); }

 private:
  static gx_PelBox areaBox(gxVector<2> const &low, gxVector<2> const &high)
  {
    return gf_pelBox(std::ceil(low.x() - 0.5), std::ceil(low.y() - 0.5), std::ceil(high.x() - 0.5),
                     std::ceil(high.y() - 0.5));
  }

  static constexpr double inf = std::numeric_limits<double>::infinity();
  gxVector<2> low_{inf, inf};
  gxVector<2> high_{-inf, -inf};
};

gx_ArcPiece movedTo(gx_ArcPiece piece, gxVector<2> const &center)
{
  piece.center = center;
  return piece;
}

}  // namespace

gx_PelBox gf_pelBox(double left, double top, double right, double bottom)
{
  static constexpr double most = 0x1p30 - 1.0;
  auto const cut = [](double v) { return static_cast<std::int32_t>(std::clamp(v, -most, most)); };
  if (!(left < right && top < bottom))
    return {};
  return {cut(left), cut(top), cut(right), cut(bottom)};
}

gxPackedRGB32Pel gxPelScope::Painter::ink(gxColor const &color) const
{
  bool const canBeTransparent = scope_.layer_ != 0 || (scope_.screen_ && scope_.layer().isDragging());
  if (canBeTransparent && color.isIndexColor() && color.index() == gxColor::passColor().index())
    return {};
  return ink(color.isRGBColor() ? color.rgbStruct() : paletteColor(color.index()));
}

gxRGB gxPelScope::Painter::paletteColor(unsigned char index) const
{
  return scope_.screen_ ? scope_.layer().paletteColor(index) : gxRGB();
}

gxVector<2> gxPelScope::Painter::pelOf(gxPoint const &p) const
{
  if (!(std::abs(p.x()) < numbered && std::abs(p.y()) < numbered))
    return placeOf(p);
  // As xCoord() and yCoord() do, without two calls.
  if (&p == &scope_.drawPoint())
    return {static_cast<double>(scope_.drawX()), static_cast<double>(scope_.drawY())};
  return {static_cast<double>(gf_nudgedFloor(p.x()) - scope_.org().x()),
          static_cast<double>(gf_nudgedFloor(p.y()) - scope_.org().y())};
}

gxVector<2> gxPelScope::Painter::placeOf(gxVector<2> const &p) const
{
  return p - gxVector<2>(scope_.org());
}

std::vector<gxVector<2>> gxPelScope::Painter::pelsOf(std::span<gxVector<2> const> points) const
{
  std::vector<gxVector<2>> pels;
  pels.reserve(points.size());
  for (gxVector<2> const &p : points)
    pels.push_back(pelOf(p));
  return pels;
}

std::vector<gxVector<2>> gxPelScope::Painter::placesOf(std::span<gxVector<2> const> points) const
{
  std::vector<gxVector<2>> places;
  places.reserve(points.size());
  for (gxVector<2> const &p : points)
    places.push_back(placeOf(p));
  return places;
}

gx_PelBox gxPelScope::Painter::clip() const
{
  if (!scope_.screen_)
    return {};
  gx_PelBox const whole{0, 0, static_cast<std::int32_t>(scope_.size_.x()), static_cast<std::int32_t>(scope_.size_.y())};
  if (scope_.displayClipRect().isNull())
    return whole;
  return whole & gf_pelBox(scope_.displayClipRect() - scope_.org());
}

gx_PelCanvas gxPelScope::Painter::canvas(gxPackedRGB32Pel value) const
{
  gx_PelBox const box = clip();
  if (box.isEmpty())
    return {nullptr, 0, {}, value};
  gx_PelLayer::Pels const &pels = scope_.layer().target();
  std::ptrdiff_t const stride = pels.rowStep() / static_cast<long>(sizeof(gxPackedRGB32Pel));
  return {pels.pointToOffset() + scope_.origin_.y() * stride + scope_.origin_.x(), stride, box, value};
}

void gxPelScope::Painter::finish(gx_PelCanvas const &canvas, bool opaqueFill, gx_PelBox const &extent)
{
  gx_PelBox const &touched = canvas.touched();
  bool const covers = canvas.value().spare() != 0;
  // The opaque flag is never cleared here: an application sets it on an overlay too, to say who repaints what goes.
  if (!touched.isEmpty()) {
    auto const x = static_cast<std::int32_t>(scope_.origin_.x());
    auto const y = static_cast<std::int32_t>(scope_.origin_.y());
    scope_.screen_->damage({touched.left + x, touched.top + y, touched.right + x, touched.bottom + y});
  }
  if (!scope_.trackChanges())
    return;
  if (scope_.clientChangeEnable()) {
    gx_PelBox const whole = gf_pelBox(gxUIRect(gxPair<long>(), scope_.size_));
    scope_.change(extent.rect(), opaqueFill && covers && touched == (extent & whole));
  } else if (!touched.isEmpty()) {
    scope_.change(touched.rect(), opaqueFill && covers);
  }
}

void gxPelScope::Painter::dot(gxVector<2> const &pel, gxGraphicProps const &props)
{
  gx_PelPen const pen(props);
  paint(
      props.penColor(), false, [&](gx_PelCanvas &canvas) { gf_drawDot(canvas, pel, pen); },
      [&] { return Extremes(std::span(&pel, 1)).penBox(pen); });
}

void gxPelScope::Painter::lines(std::span<gxVector<2> const> pels, bool closed, gxGraphicProps const &props)
{
  gx_PelPen const pen(props);
  paint(
      props.penColor(), false, [&](gx_PelCanvas &canvas) { gf_strokeLines(canvas, pels, closed, pen); },
      [&] { return Extremes(pels).penBox(pen); });
}

void gxPelScope::Painter::arc(gx_ArcPiece const &piece, gxGraphicProps const &props)
{
  gx_PelPen const pen(props);
  gx_ArcPiece const moved = movedTo(piece, pelOf(piece.center));
  paint(
      props.penColor(), false, [&](gx_PelCanvas &canvas) { gf_strokeArc(canvas, moved, pen); },
      [&] { return Extremes(moved.bounds()).penBox(pen); });
}

void gxPelScope::Painter::contour(std::vector<gx_Piece> const &pieces, gxVector<2> const &anchor,
                                  gxGraphicProps const &props)
{
  gx_PelPen const pen(props);
  gxXform<2> const toPels(gxMatrix<2>(), pelOf(anchor) - anchor);
  std::vector<gx_Piece> moved;
  Extremes extremes;
  for (gx_Piece const &piece : pieces) {
    moved.push_back(piece.mapped(toPels));
    extremes.add(moved.back().bounds().origin());
    extremes.add(moved.back().bounds().origin() + moved.back().bounds().size());
  }
  paint(
      props.penColor(), false, [&](gx_PelCanvas &canvas) { gf_strokeContour(canvas, moved, pen); },
      [&] { return extremes.penBox(pen); });
}

void gxPelScope::Painter::area(std::span<gxVector<2> const> places, gx_PelFillRule rule, gxColor const &color)
{
  paint(
      color, true, [&](gx_PelCanvas &canvas) { gf_fillPolygon(canvas, places, rule); },
      [&] { return Extremes(places).areaBox(); });
}

void gxPelScope::Painter::rectangle(gxUIRect const &rect, gxColor const &color)
{
  gx_PelBox const box = gf_pelBox(rect);
  paint(
      color, true,
      [&](gx_PelCanvas &canvas) {
        gx_PelBox const seen = box & canvas.clip();
        for (std::int32_t y = seen.top; y < seen.bottom; ++y)
          canvas.span(y, seen.left, seen.right);
      },
      [&] { return box; });
}

void gxPelScope::Painter::ellipse(gx_ArcPiece const &piece, gxGraphicProps const &props)
{
  if (!props.fill() || gf_isFlat(piece))
    return arc(piece, props);
  gx_ArcPiece const moved = movedTo(piece, placeOf(piece.center));
  paint(
      props.penColor(), true, [&](gx_PelCanvas &canvas) { gf_fillEllipse(canvas, moved.center, moved.u, moved.v); },
      [&] { return Extremes(moved.bounds()).areaBox(); });
}
