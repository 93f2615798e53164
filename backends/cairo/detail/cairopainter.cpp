#include "backends/cairo/detail/cairopainter.h"

#include "backends/cairo/detail/cairopath.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace
{

using V = gxVector<2>;
using Props = gxGraphicProps;

V const half(0.5, 0.5);
constexpr double miterLimit = 4.0;

/// As far as cairo's numbers go, a wider pen covers everything anyway.
double widthOf(Props const &props)
{
  constexpr long most = 1L << 16;
  return static_cast<double>(std::clamp(props.penWidth(), 1L, most));
}

/// How far from its path a pen reaches.
double reachOf(Props const &props)
{
  double const corner = props.penJoin() == Props::joinMiter ? miterLimit : 1.0;
  double const end = props.penEndCap() == Props::capSquare ? std::sqrt(2.0) : 1.0;
  return 0.5 * widthOf(props) * std::max(corner, end);
}

/// Lengths of the pattern, for a pen of width 1.
std::vector<double> patternOf(Props::gePenStyle style)
{
  switch (style) {
    case Props::penDash:
      return {6, 3};
    case Props::penDot:
      return {1, 2};
    case Props::penDashDot:
      return {6, 2, 1, 2};
    case Props::penDashDotDot:
      return {6, 2, 1, 2, 1, 2};
    default:
      return {};
  }
}

void setPen(cairo_t *context, Props const &props)
{
  double const width = widthOf(props);
  std::vector<double> pattern = patternOf(props.penStyle());
  for (double &length : pattern)
    length *= width;
  cairo_set_line_width(context, width);
  cairo_set_dash(context, pattern.data(), static_cast<int>(pattern.size()), 0.0);
  cairo_set_miter_limit(context, miterLimit);
  cairo_set_line_join(context, props.penJoin() == Props::joinBevel   ? CAIRO_LINE_JOIN_BEVEL
                               : props.penJoin() == Props::joinMiter ? CAIRO_LINE_JOIN_MITER
                                                                     : CAIRO_LINE_JOIN_ROUND);
  // Caps of dots would close the gaps of the pattern.
  bool const isFlat = props.penEndCap() == Props::capFlat || !pattern.empty();
  cairo_set_line_cap(context, isFlat                                  ? CAIRO_LINE_CAP_BUTT
                              : props.penEndCap() == Props::capSquare ? CAIRO_LINE_CAP_SQUARE
                                                                      : CAIRO_LINE_CAP_ROUND);
}

void addRectangle(cairo_t *context, gxUIRect const &rect)
{
  cairo_rectangle(context, static_cast<double>(rect.left()), static_cast<double>(rect.top()),
                  static_cast<double>(rect.width()), static_cast<double>(rect.height()));
}

gxRect boundsOf(std::vector<gx_Contour> const &contours, gxXform<2> const &xform)
{
  gx_Outline outline;
  for (gx_Contour const &contour : contours) {
    gx_Contour &to = outline.addContour(contour.closed);
    for (gx_Piece const &piece : contour.pieces)
      to.pieces.push_back(piece.mapped(xform));
  }
  return outline.bounds();
}

}  // namespace

std::vector<gx_Contour> gf_cairoLines(std::span<V const> points, bool closed)
{
  gx_Contour contour{{}, closed};
  if (points.size() == 1)
    contour.pieces.push_back(gx_LinePiece{points[0], points[0]});
  for (std::size_t i = 1; i < points.size(); ++i)
    contour.pieces.push_back(gx_LinePiece{points[i - 1], points[i]});
  if (closed && points.size() > 2)
    contour.pieces.push_back(gx_LinePiece{points.back(), points.front()});
  return {contour};
}

gxUIRect gf_cairoPels(gxRect const &box, double around)
{
  static constexpr double most = 0x1p30 - 1.0;
  auto const cut = [](double v) { return static_cast<long>(std::clamp(v, -most, most)); };
  V const low = box.origin() - V(around, around), high = box.origin() + box.size() + V(around, around);
  if (!low.isFinite() || !high.isFinite())
    return {};
  long const left = cut(std::floor(low.x())), top = cut(std::floor(low.y()));
  return {left, top, std::max(left + 1, cut(std::ceil(high.x()))) - left,
          std::max(top + 1, cut(std::ceil(high.y()))) - top};
}

V gxCairoScope::Painter::placeOf(V const &p) const
{
  return p - V(scope_.org());
}

V gxCairoScope::Painter::pelCenterOf(gxPoint const &p) const
{
  if (!p.isFinite())
    return placeOf(p);
  return V(gxPair<long>(scope_.xCoord(p), scope_.yCoord(p))) + half;
}

gxXform<2> gxCairoScope::Painter::outlineXform() const
{
  return {gxMatrix<2>(), half - V(scope_.org())};
}

gxXform<2> gxCairoScope::Painter::areaXform() const
{
  return {gxMatrix<2>(), -V(scope_.org())};
}

gxUIRect gxCairoScope::Painter::shows() const
{
  if (scope_.isNull())
    return {};
  gxUIRect const whole(gxPair<long>(), scope_.size_);
  return scope_.displayClipRect().isNull() ? whole : whole & (scope_.displayClipRect() - scope_.org());
}

gxRGB gxCairoScope::Painter::paletteColor(unsigned char index) const
{
  return scope_.screen_ ? scope_.screen_->layer(scope_.layer_).paletteColor(index) : gxRGB();
}

gxRGB gxCairoScope::Painter::rgbOf(gxColor const &color) const
{
  return color.isRGBColor() ? color.rgbStruct() : paletteColor(color.index());
}

bool gxCairoScope::Painter::isPass(gxColor const &color) const
{
  bool const canBe = scope_.layer_ != 0 || (scope_.screen_ && scope_.screen_->layer(scope_.layer_).isDragging());
  return canBe && color.isIndexColor() && color.index() == gxColor::passColor().index();
}

/// Draws where the scope shows, with its first pel at (0, 0). Null if it shows nowhere.
gx_CairoContext gxCairoScope::Painter::context() const
{
  gxUIRect const clip = shows();
  if (clip.isNull())
    return {};
  gx_CairoContext context(cairo_create(scope_.screen_->layer(scope_.layer_).target()));
  cairo_translate(context.get(), static_cast<double>(scope_.origin_.x()), static_cast<double>(scope_.origin_.y()));
  addRectangle(context.get(), clip);
  cairo_clip(context.get());
  return context;
}

gx_CairoContext gxCairoScope::Painter::context(gxColor const &color) const
{
  gx_CairoContext to = context();
  if (!to)
    return to;
  gxRGB const rgb = rgbOf(color);
  cairo_set_source_rgb(to.get(), rgb.r() / 255.0, rgb.g() / 255.0, rgb.b() / 255.0);
  if (isPass(color))
    cairo_set_operator(to.get(), CAIRO_OPERATOR_CLEAR);
  return to;
}

void gxCairoScope::Painter::report(gxUIRect const &rect, bool opaque)
{
  scope_.modified(true);
  if (scope_.isTemporary_ && scope_.parent())
    scope_.parent()->modified(true);
  if (scope_.screen_)
    scope_.screen_->changed();
  if (!scope_.trackChanges() || rect.isNull())
    return;
  bool const isCut = !scope_.displayClipRect().isNull();
  bool const collects = scope_.clientChangeEnable();
  scope_.change(collects || !isCut ? rect : rect & shows(), opaque && !(isCut && collects));
}

void gxCairoScope::Painter::stroke(std::vector<gx_Contour> const &contours, gxGraphicProps const &props)
{
  gx_CairoContext const to = context(props.penColor());
  if (to && gf_addCairoPath(to.get(), contours, gxXform<2>(), false)) {
    setPen(to.get(), props);
    cairo_stroke(to.get());
  }
  report(gf_cairoPels(boundsOf(contours, gxXform<2>()), reachOf(props)), false);
}

void gxCairoScope::Painter::fill(std::vector<gx_Contour> const &contours, cairo_fill_rule_t rule, gxColor const &color)
{
  gx_CairoContext const to = context(color);
  if (to && gf_addCairoPath(to.get(), contours, gxXform<2>(), true)) {
    cairo_set_fill_rule(to.get(), rule);
    cairo_fill(to.get());
  }
  report(gf_cairoPels(boundsOf(contours, gxXform<2>()), 0.0), false);
}

void gxCairoScope::Painter::shape(std::vector<gx_Contour> const &contours, gxGraphicProps const &props)
{
  std::vector<gx_Contour> placed = contours;
  gxXform<2> const xform = props.fill() ? areaXform() : outlineXform();
  for (gx_Contour &contour : placed)
    for (gx_Piece &piece : contour.pieces)
      piece = piece.mapped(xform);
  if (props.fill())
    fill(placed, CAIRO_FILL_RULE_WINDING, props.penColor());
  else
    stroke(placed, props);
}

void gxCairoScope::Painter::dot(V const &center, gxGraphicProps const &props)
{
  double const radius = 0.5 * widthOf(props);
  if (!center.isFinite())
    return report({}, false);
  if (radius <= 0.5)
    return rectangle(gf_cairoPels(gxRect(center - half, V(1, 1)), 0.0), props.penColor());
  fill({{{gx_ArcPiece{center, V(radius, 0), V(0, radius)}}, true}}, CAIRO_FILL_RULE_WINDING, props.penColor());
}

void gxCairoScope::Painter::rectangle(gxUIRect const &rect, gxColor const &color)
{
  gxUIRect const seen = rect & shows();
  if (!seen.isNull()) {
    if (seen == gxUIRect(gxPair<long>(), scope_.screen_->size()))
      scope_.screen_->layer(scope_.layer_).forget();
    gx_CairoContext const to = context(color);
    addRectangle(to.get(), seen);
    cairo_fill(to.get());
  }
  report(rect, !isPass(color));
}

void gxCairoScope::Painter::paint(gx_CairoImage const &pels, gxUIRect const &seen)
{
  gx_CairoContext const to = context();
  if (!to)
    return;
  pels.dirty();
  cairo_set_source_surface(to.get(), pels.surface(), static_cast<double>(seen.left()), static_cast<double>(seen.top()));
  cairo_pattern_set_filter(cairo_get_source(to.get()), CAIRO_FILTER_NEAREST);
  addRectangle(to.get(), seen);
  cairo_fill(to.get());
}

void gxCairoScope::Painter::mask(gx_CairoImage const &pels, gxUIRect const &seen, gxColor const &color)
{
  gx_CairoContext const to = context(color);
  pels.dirty();
  cairo_mask_surface(to.get(), pels.surface(), static_cast<double>(seen.left()), static_cast<double>(seen.top()));
}

gx_CairoImage gxCairoScope::Painter::pels() const
{
  gxUIRect const clip = shows();
  gx_CairoImage image(clip.width(), clip.height());
  gx_CairoContext const to(cairo_create(image.surface()));
  cairo_set_source_surface(to.get(), scope_.screen_->layer(scope_.layer_).target(),
                           -static_cast<double>(scope_.origin_.x() + clip.left()),
                           -static_cast<double>(scope_.origin_.y() + clip.top()));
  cairo_paint(to.get());
  image.flush();
  return image;
}

void gxCairoScope::Painter::text(std::vector<std::string> const &lines, double size, gxUIRect const &rect,
                                 gxColor const &foreground, gxColor const &background)
{
  bool const letsThrough = background.isIndexColor() && background.index() == gxColor::passColor().index();
  if (!letsThrough)
    rectangle(rect, background);
  if (gx_CairoContext const to = context(foreground)) {
    cairo_select_font_face(to.get(), "sans-serif", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(to.get(), size);
    cairo_font_extents_t font;
    cairo_font_extents(to.get(), &font);
    addRectangle(to.get(), rect);
    cairo_clip(to.get());
    double y = static_cast<double>(rect.top()) + font.ascent;
    for (std::string const &line : lines) {
      cairo_move_to(to.get(), static_cast<double>(rect.left()) + 1.0, y);
      cairo_show_text(to.get(), line.c_str());
      y += font.height;
    }
  }
  report(rect, false);
}
