#include "dispc/wrfm/detail/synthetic.h"
#include "dispc/wrfm/detail/synthfill.h"
#include "dispc/wrfm/genpoly.h"
#include "dispc/wrfm/model.h"
#include "dispc/wrfm/polyprivate.h"
#include "dispc/wrfm/synthetic.h"
#include "foundation/numbers.h"
#include "foundation/shapeserror.h"
#include "foundation/xformbase.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

// Synthetic images of outlines and models.

namespace
{

using Private = gxSMDGDPolyPrivate;
using Buffer = gxPelBuffer<unsigned char>;
using Handle = gxPtrHandle_const<gx2XformBase>;
using Point = gxVector<2>;

constexpr long margin = 5;

unsigned char greyOf(gxSMDGDPoly const &poly)
{
  return gxSMDColors::colorToGrayScale(poly.colors().syntheticDefaultColor());
}

/// The edges, segment by segment, each with the fillet at its end. What roundings leave of a segment may be too short
/// to have a length where it is seen; a whole segment has one.
void drawEdges(gxSMDGDPoly const &poly, gxXform<2> const &xform, Buffer const &window, unsigned char value, bool smooth)
{
  auto const drawLine = [&](gx2SegmentLine const &line) {
    if (!(xform.mapPoint(line.p1()) == xform.mapPoint(line.p2())))
      gf_drawSyntheticLine(window, line.p1(), line.p2(), xform, value, smooth);
  };
  auto const drawArc = [&](gx2SegmentArc const &arc) { gf_drawSyntheticArc(window, arc, xform, value, smooth); };
  for (int v = 0; v < poly.numVertices(); ++v) {
    if (Private::previousSegmentIndex_(poly, v) == -1)
      continue;
    if (!Private::isUsedUp_(poly, v)) {
      if (Private::isLineSegment_(poly, v))
        drawLine(Private::roundedLineSegment_(poly, v));
      else
        drawArc(Private::roundedArcSegment_(poly, v));
    }
    if (Private::vertexIsRounded_(poly, v) && !Private::isEndVertex(poly, v))
      drawArc(Private::roundedArcVertex_(poly, v));
  }
}

// ---------------------------------------------------------------- transforms that bend

/// The outline as points in the image.
class Samples
{
 public:
  Samples(gx2XformBase const &xform, long numVertices)
      : xform_(xform),
        scale_(xform.linearXform(Point()).matrix().scale()),
        isLinear_(xform.isLinear()),
        mostOnLine_(std::max<long>(most / std::max<long>(numVertices, 1), 2))
  {
  }

  void add(gx2SegmentLine const &line)
  {
    long const wanted = isLinear_ ? 2 : gf_truncate(line.length() * scale_ * 0.3333333333333333);
    long const n = std::clamp<long>(wanted, 2, mostOnLine_);
    for (long i = 0; i < n; ++i)
      addPoint(line.segPoint(static_cast<double>(i) / static_cast<double>(n - 1)));
  }
  // By the signed span, so that one of falling angles has the fewest points.
  void add(gx2SegmentArc const &arc)
  {
    long const n = std::max<long>(5, gf_roundHalfAway(arc.angleSpan().value() * 0.5));
    for (long i = 0; i < n; ++i) {
      double const t = static_cast<double>(i) / static_cast<double>(n - 1);
      addPoint(arc.segPoint(t > 0.999999 ? 1.0 : t));
    }
  }
  /// Turned towards growing angles, and without a last point that is the first one again. None if one of them lies
  /// nowhere.
  std::vector<Point> take()
  {
    if (isLost_)
      return {};
    double sum = 0.0;
    for (std::size_t i = 0; i < points_.size(); ++i)
      sum += points_[i].cross(points_[(i + 1) % points_.size()]);
    if (sum < 0.0)
      std::reverse(points_.begin(), points_.end());
    if (points_.size() > 1 && coincide(points_.front(), points_.back()))
      points_.pop_back();
    return std::move(points_);
  }

 private:
  static constexpr long most = 2'000'000;  ///< points of lines, so that an image without bounds is left in time
  static constexpr double beyondReckoning = 1e100;

  static bool coincide(Point const &a, Point const &b)
  {
    return std::abs(a.x() - b.x()) <= 1e-15 && std::abs(a.y() - b.y()) <= 1e-15;
  }
  void addPoint(Point const &p)
  {
    Point const image = xform_.mapPoint(p);
    isLost_ |= !(std::abs(image.x()) + std::abs(image.y()) < beyondReckoning);
    if (points_.empty() || !coincide(image, points_.back()))
      points_.push_back(image);
  }

  gx2XformBase const &xform_;
  double const scale_;
  bool const isLinear_;
  long const mostOnLine_;
  bool isLost_ = false;
  std::vector<Point> points_;
};

/// What lies on one side of a limit of x or y (I. Sutherland, G. Hodgman, Communications of the ACM 17, 1974): of what
/// is not less than it, or not greater. A cut lies on the limit exactly.
std::vector<Point> clipped(std::vector<Point> const &points, bool alongX, double limit, bool keepGreater)
{
  if (points.size() < 3)
    return points;
  auto const depth = [&](Point const &p) {
    double const v = alongX ? p.x() : p.y();
    return keepGreater ? v - limit : limit - v;
  };
  std::vector<Point> kept;
  Point const *before = &points.back();
  for (Point const &p : points) {
    double const a = depth(*before), b = depth(p);
    if ((a >= 0.0) != (b >= 0.0)) {
      Point const cut = *before + (p - *before) * (a / (a - b));
      kept.push_back(alongX ? Point(limit, cut.y()) : Point(cut.x(), limit));
    }
    if (b >= 0.0)
      kept.push_back(p);
    before = &p;
  }
  return kept;
}

std::vector<Point> clipped(std::vector<Point> points, gxPelRect const &window)
{
  double const left = double(window.x()), top = double(window.y());
  points = clipped(points, true, left, true);
  points = clipped(points, true, left + double(window.width()), false);
  points = clipped(points, false, top, true);
  return clipped(points, false, top + double(window.height()), false);
}

/// Fills the polygon through the floors of the points: the pels whose centres lie inside, by the parity of edges.
void fillPolygon(std::vector<Point> const &points, Buffer const &buffer, unsigned char value)
{
  gxPelRect const &window = buffer.window();
  struct Corner {
    long x, y;
  };
  std::vector<Corner> corners;  // without those that repeat the one before
  long top = window.y() + window.height(), bottom = window.y();
  for (Point const &p : points) {
    Corner const c{gfIFloor(p.x()), gfIFloor(p.y())};
    if (!corners.empty() && c.x == corners.back().x && c.y == corners.back().y)
      continue;
    corners.push_back(c);
    top = std::min(top, corners.back().y);
    bottom = std::max(bottom, corners.back().y);
  }
  std::vector<long> columns;
  for (long y = std::max(top, window.y()); y < std::min(bottom, window.y() + window.height()); ++y) {
    columns.clear();
    for (std::size_t i = 0; i < corners.size(); ++i) {
      Corner a = corners[i], b = corners[(i + 1) % corners.size()];
      if (a.y > b.y)
        std::swap(a, b);
      if (a.y <= y && y < b.y) {
        double const down = (static_cast<double>(y - a.y) + 0.5) / static_cast<double>(b.y - a.y);
        columns.push_back(gf_roundHalfAway(static_cast<double>(a.x) + down * static_cast<double>(b.x - a.x)));
      }
    }
    std::sort(columns.begin(), columns.end());
    unsigned char *const row = buffer.pointToRow(y);
    for (std::size_t i = 1; i < columns.size(); i += 2) {
      long const from = std::max(columns[i - 1], window.x()) - window.x();
      long const to = std::min(columns[i], window.x() + window.width()) - window.x();
      if (from < to)
        std::memset(row + from, value, static_cast<std::size_t>(to - from));
    }
  }
}

}  // namespace

// ---------------------------------------------------------------- outlines

void gxSMDGDPolyPrivate::drawSynthetic(gxSMDGDPoly const &poly, gxXform<2> const &xform, Buffer const &buffer,
                                       unsigned char value, bool drawEdges, bool fill)
{
  if (fill && poly.isOpen())
    return;
  buffer.checkBound();
  gxXform<2> const map = buffer.imageFromClientXform() * xform;
  map.inverse();  // throws for a map that has none, whatever is drawn
  gxRect const box = poly.boundingBox(map);
  Point const ul = box.origin(), lr = ul + box.size();
  if (box.isEmpty() || !std::isfinite(ul.x() + ul.y() + lr.x() + lr.y()))
    return;
  long const left = gf_nudgedFloor(ul.x()) - margin, top = gf_nudgedFloor(ul.y()) - margin;
  long const right = gf_nudgedCeil(lr.x()) + margin, bottom = gf_nudgedCeil(lr.y()) + margin;
  Buffer window = buffer;
  window.window(left, top, right - left, bottom - top, true);
  if (window.width() == 0 || window.height() == 0)
    return;
  if (fill)
    gx_SyntheticFill(poly, map, left, right, window, value).fill();
  if (drawEdges || !fill)
    ::drawEdges(poly, xform, window, value, fill);
}

void gxSMDGDPolyPrivate::drawSynthetic(gxSMDGDPoly const &poly, Handle const &xform, Buffer const &buffer,
                                       unsigned char value)
{
  if (poly.isOpen())
    return;
  if (xform.isNull())
    throw gxBadPointer();
  buffer.checkBound();
  if (xform->isLinear()) {
    drawSynthetic(poly, xform->linearXform(Point()).xform(), buffer, value, true, true);
    return;
  }
  Handle const client(new gx2XformLinear(buffer.imageFromClientXform()));
  Handle const image = gx2XformBase::compose(client, xform);
  Samples samples(*image, poly.numVertices());
  for (int v = 0; v < poly.numVertices(); ++v) {
    if (Private::isLineSegment_(poly, v))
      samples.add(Private::roundedLineSegment_(poly, v));
    else
      samples.add(Private::roundedArcSegment_(poly, v));
    if (Private::vertexIsRounded_(poly, v))
      samples.add(Private::roundedArcVertex_(poly, v));
  }
  std::vector<Point> const points = clipped(samples.take(), buffer.window());
  if (points.size() > 2)
    fillPolygon(points, buffer, value);
}

void gxSMDGDPoly::drawSynthetic(gxXform<2> const &xform, Buffer const &buffer) const
{
  Private::drawSynthetic(*this, xform, buffer, greyOf(*this), true, true);
}

void gxSMDGDPoly::drawSynthetic(Handle const &xform, Buffer const &buffer) const
{
  Private::drawSynthetic(*this, xform, buffer, greyOf(*this));
}

// ---------------------------------------------------------------- models

void gxSMDGDModel::drawSynthetic(Handle const &xform, Buffer const &buffer) const
{
  for (gxSMDGDPoly const &poly : polys_)
    poly.drawSynthetic(xform, buffer);
}

void gxSMDGDModel::drawSynthetic(gxXform<2> const &xform, Buffer const &buffer) const
{
  drawSynthetic(Handle(new gx2XformLinear(xform)), buffer);
}

// ---------------------------------------------------------------- polygons

void gfDrawSynthetic(gxGenPoly const &poly, gxXform<2> const &xform, Buffer const &image, unsigned char colour)
{
  gfDrawSynthetic(poly, Handle(new gx2XformLinear(xform)), image, colour);
}

void gfDrawSynthetic(gxGenPoly const &poly, Handle const &xform, Buffer const &image, unsigned char colour)
{
  if (poly.isOpen())
    throw gxShapesError::BadGeom();
  if (xform.isNull())
    throw gxBadPointer();
  Handle const own(new gx2XformLinear(poly.xform()));
  Private::drawSynthetic(poly.poly(), gx2XformBase::compose(xform, own), image, colour);
}
