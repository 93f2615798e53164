#include "dispc/detail/uitablet_measure.h"
#include "dispc/dispprop.h"
#include "foundation/ellipse.h"
#include "foundation/ellipse2.h"
#include "foundation/ellipsearc.h"
#include "foundation/ellipsearc2.h"
#include "foundation/genrect.h"
#include "foundation/genshape.h"
#include "foundation/lineseg.h"
#include "foundation/numbers.h"
#include "foundation/pelbuf.h"
#include "foundation/polygon.h"
#include "foundation/polyline.h"
#include "foundation/rlebuf.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <string>

// A scope that measures. Outlines run from pel to pel, areas cover the pels whose centres lie inside: the same
// rectangles as a surface reports that draws by docs/raster-rules.md.

namespace
{

/// The pels between four coordinates, cut to what a rectangle can hold; null if one of them is no number.
gxUIRect pelsBetween(double left, double top, double right, double bottom)
{
  static constexpr double most = 0x1p30 - 1.0;
  if (!(left < right && top < bottom))
    return {};
  auto const cut = [](double v) { return static_cast<long>(std::clamp(v, -most, most)); };
  return {cut(left), cut(top), cut(right) - cut(left), cut(bottom) - cut(top)};
}

/// How far a pen may draw beyond its path: half its width, the tip of a miter 4 times, the corner of a square end
/// sqrt(2) times that.
double reachOf(gxGraphicProps const &pen)
{
  double const factor = pen.penJoin() == gxGraphicProps::joinMiter     ? 4.0
                        : pen.penEndCap() == gxGraphicProps::capSquare ? 1.4143
                                                                       : 1.0;
  return 0.5 * static_cast<double>(pen.penWidth()) * factor;
}

/// The smallest rectangle round points; those that are not finite do not count.
class Extremes
{
 public:
  Extremes() = default;
  explicit Extremes(gxRect const &rect) { add(rect); }

  void add(gxVector<2> const &p)
  {
    if (!p.isFinite())
      return;
    low_ = {std::min(low_.x(), p.x()), std::min(low_.y(), p.y())};
    high_ = {std::max(high_.x(), p.x()), std::max(high_.y(), p.y())};
  }
  void add(gxRect const &rect)
  {
    add(rect.origin());
    add(rect.origin() + rect.size());
  }

  /// The pels that a pen touches on a path with these extremes, whole numbers being the centres of pels.
  gxUIRect ofPen(gxGraphicProps const &pen) const
  {
    if (pen.penWidth() <= 1)
      return pelsBetween(std::floor(low_.x() + 0.5), std::floor(low_.y() + 0.5), std::floor(high_.x() + 0.5) + 1.0,
                         std::floor(high_.y() + 0.5) + 1.0);
    double const reach = reachOf(pen);
    double const shift = pen.penWidth() % 2 ? 0.5 : 0.0;  // an even pen runs through the upper left corners
    return ofArea(shift - reach, shift + reach);
  }
  /// The pels of an area with these extremes.
  gxUIRect ofArea() const { return ofArea(0.0, 0.0); }

 private:
  gxUIRect ofArea(double below, double above) const
  {
    auto const first = [](double v) { return std::ceil(v - 0.5); };
    return pelsBetween(first(low_.x() + below), first(low_.y() + below), first(high_.x() + above),
                       first(high_.y() + above));
  }

  static constexpr double inf = std::numeric_limits<double>::infinity();
  gxVector<2> low_{inf, inf};
  gxVector<2> high_{-inf, -inf};
};

/// A factor, or the inverse of one, that is whole to 1e-6 is taken to be whole.
bool isWhole(double v)
{
  constexpr double wholeEnough = 1e-6;
  return v < 0x1p31 && std::abs(v - std::round(v)) <= wholeEnough;
}

/// How many pels an axis of an image has when it is scaled.
double scaledCount(long size, double scale)
{
  double const inverse = 1.0 / scale;
  if (!(scale > 0.0) || !std::isfinite(scale) || !std::isfinite(inverse))
    return 0.0;
  auto const pels = static_cast<double>(size);
  if (scale > 1.0 && isWhole(scale))
    return pels * std::round(scale);
  return std::trunc(isWhole(inverse) ? pels / std::round(inverse) : pels * scale);
}

}  // namespace

/// The pel of a device point as whole numbers; a point that has none as it is.
gxVector<2> gx_MeasuringScope::pelOf(gxPoint const &p) const
{
  constexpr double numbered = 0x1p31;
  if (!(std::abs(p.x()) < numbered && std::abs(p.y()) < numbered))
    return p;
  return gxVector<2>(gxPair<long>(xCoord(p), yCoord(p)));
}

void gx_MeasuringScope::lines(std::span<gxVector<2> const> points, gxGraphicProps const &props)
{
  Extremes extremes;
  for (gxVector<2> const &p : points)
    extremes.add(pelOf(p));
  change(extremes.ofPen(props), false);
}

/// The path of an arc is moved as a whole, so that its centre lies on that of a pel.
void gx_MeasuringScope::arc(gx_ArcPiece piece, gxGraphicProps const &props)
{
  piece.center = pelOf(piece.center);
  change(Extremes(piece.bounds()).ofPen(props), false);
}

void gx_MeasuringScope::ellipse(gx_ArcPiece const &piece, gxGraphicProps const &props)
{
  if (props.fill())
    change(Extremes(piece.bounds()).ofArea(), false);
  else
    arc(piece, props);
}

void gx_MeasuringScope::draw(gxGenShape const &shape, gxColor const &)
{
  change(Extremes(shape.boundingBox()).ofArea(), false);
}

void gx_MeasuringScope::draw(gxEllipseArc const &s, gxGraphicProps const &props)
{
  arc(s.piece(), props);
}

void gx_MeasuringScope::draw(gxEllipseArc2 const &s, gxGraphicProps const &props)
{
  arc(s.piece(), props);
}

void gx_MeasuringScope::draw(gxEllipse const &s, gxGraphicProps const &props)
{
  ellipse(s.piece(gxRadian(0.0), gxRadian(gf_turnRadians)), props);
}

void gx_MeasuringScope::draw(gxEllipse2 const &s, gxGraphicProps const &props)
{
  ellipse(s.piece(), props);
}

void gx_MeasuringScope::draw(gxPolygon const &polygon, gxGraphicProps const &props)
{
  if (!props.fill())
    return lines(polygon.vertices(), props);
  Extremes extremes;
  for (gxVector<2> const &p : polygon.vertices())
    extremes.add(p);
  change(extremes.ofArea(), false);
}

void gx_MeasuringScope::draw(gxPolyline const &polyline, gxGraphicProps const &props)
{
  lines(polyline.vertices(), props);
}

void gx_MeasuringScope::draw(gxGenRect const &rect, gxGraphicProps const &props)
{
  gxVector<2> const corner = gxGenRect::gxGenRectData(rect).corner(0);
  gx_Outline outline;
  rect.appendOutline(outline);
  Extremes extremes;
  for (gx_Contour const &contour : outline.contours)
    for (gx_Piece const &piece : contour.pieces)
      extremes.add(props.fill() ? piece.bounds() : piece.mapped(gxXform<2>({}, pelOf(corner) - corner)).bounds());
  change(props.fill() ? extremes.ofArea() : extremes.ofPen(props), false);
}

void gx_MeasuringScope::draw(gxLineSeg const &segment, gxGraphicProps const &props)
{
  lines(std::array{segment.start(), segment.end()}, props);
}

void gx_MeasuringScope::draw(gxPoint const &point, gxGraphicProps const &props)
{
  Extremes extremes;
  extremes.add(pelOf(point));
  change(extremes.ofPen(props), false);
}

void gx_MeasuringScope::drawTo(gxPoint const &to, gxGraphicProps const &props)
{
  Extremes extremes;
  extremes.add(pelOf(drawPoint()));
  extremes.add(pelOf(to));
  change(extremes.ofPen(props), false);
  drawStart(to);
}

void gx_MeasuringScope::drawToRelPels(long dx, long dy, gxGraphicProps const &props)
{
  Extremes extremes;
  gxVector<2> const pen = pelOf(drawPoint());
  extremes.add(pen);
  extremes.add(pen + gxVector<2>(gxPair<long>(dx, dy)));
  change(extremes.ofPen(props), false);
  moveToRel(dx, dy);
}

void gx_MeasuringScope::draw(std::string const &text, gxPoint const &at, gxColor const &, gxColor const &,
                             gxUIFormat const &format)
{
  gxUIRect rect;
  change(textRect(text, at, format, rect), false);
}

gxUIRect gx_MeasuringScope::textRect(std::string const &text, gxPoint const &at, gxUIFormat const &format,
                                     gxUIRect &rect)
{
  return fonts_.textRect(text, gxPoint(pelOf(at)), format, rect);
}

void gx_MeasuringScope::image(gxPair<long> const &size, gxPoint const &at, gxPair<double> const &scale)
{
  gxVector<2> const pel = pelOf(at);
  change(pelsBetween(pel.x(), pel.y(), pel.x() + scaledCount(size.x(), scale.x()),
                     pel.y() + scaledCount(size.y(), scale.y())),
         false);
}

namespace
{
constexpr gxPair<double> unit(1.0, 1.0);
}

void gx_MeasuringScope::draw(gxRLEBuffer const &b, gxPoint const &at, std::vector<gxColor> const &, bool, unsigned char)
{
  image(b.size(), at, unit);
}

void gx_MeasuringScope::draw(gxRLEBuffer const &b, gxPoint const &at, std::vector<unsigned char> const &, bool,
                             unsigned char)
{
  image(b.size(), at, unit);
}

void gx_MeasuringScope::draw(gxPelBuffer_const<gxPackedRGB32Pel> const &b, gxPoint const &at, bool, unsigned long)
{
  image(b.size(), at, unit);
}

void gx_MeasuringScope::draw(gxPelBuffer_const<gxPackedRGB16Pel> const &b, gxPoint const &at, bool, unsigned short)
{
  image(b.size(), at, unit);
}

void gx_MeasuringScope::draw(gxPelBuffer_const<unsigned short> const &b, gxPoint const &at, bool, unsigned short)
{
  image(b.size(), at, unit);
}

void gx_MeasuringScope::draw(gxPelBuffer_const<unsigned char> const &b, gxPoint const &at, bool, unsigned char, bool)
{
  image(b.size(), at, unit);
}

void gx_MeasuringScope::sample(gxPelBuffer_const<gxPackedRGB32Pel> const &b, gxPoint const &at,
                               gxPair<double> const &scale, bool, unsigned long)
{
  image(b.size(), at, scale);
}

void gx_MeasuringScope::sample(gxPelBuffer_const<gxPackedRGB16Pel> const &b, gxPoint const &at,
                               gxPair<double> const &scale, bool, unsigned short)
{
  image(b.size(), at, scale);
}

void gx_MeasuringScope::sample(gxPelBuffer_const<unsigned short> const &b, gxPoint const &at,
                               gxPair<double> const &scale, bool, unsigned short)
{
  image(b.size(), at, scale);
}

void gx_MeasuringScope::sample(gxPelBuffer_const<unsigned char> const &b, gxPoint const &at,
                               gxPair<double> const &scale, bool, unsigned char, bool)
{
  image(b.size(), at, scale);
}

void gx_MeasuringScope::expand(gxRLEBuffer const &b, gxPoint const &at, std::vector<unsigned char> const &,
                               gxPair<double> const &scale, bool, unsigned char)
{
  // By a whole factor the runs are enlarged, and both axes take that of x; otherwise the pels are.
  image(b.size(), at, isWhole(scale.x()) ? gxPair<double>(scale.x(), scale.x()) : scale);
}

void gx_MeasuringScope::expand(gxPelBuffer_const<gxPackedRGB32Pel> const &b, gxPoint const &at,
                               gxPair<double> const &scale, bool, unsigned long, InterpolationModes)
{
  image(b.size(), at, scale);
}

void gx_MeasuringScope::expand(gxPelBuffer_const<gxPackedRGB16Pel> const &b, gxPoint const &at,
                               gxPair<double> const &scale, bool, unsigned short, InterpolationModes)
{
  image(b.size(), at, scale);
}

void gx_MeasuringScope::expand(gxPelBuffer_const<unsigned short> const &b, gxPoint const &at,
                               gxPair<double> const &scale, bool, unsigned short, InterpolationModes)
{
  image(b.size(), at, scale);
}

void gx_MeasuringScope::expand(gxPelBuffer_const<unsigned char> const &b, gxPoint const &at,
                               gxPair<double> const &scale, bool, unsigned char, bool, InterpolationModes)
{
  image(b.size(), at, scale);
}
