#include "backends/cairo/detail/cairopath.h"

#include <algorithm>
#include <cmath>

namespace
{

using V = gxVector<2>;

/// cairo keeps coordinates in 24 bits and 8 behind the point, but shows nothing of strokes some 10^5 pels long. This is
/// twice what a surface can be wide, and leaves room for pens.
constexpr double reach = 0x1p16;

bool isNear(V const &p)
{
  return std::abs(p.x()) <= reach && std::abs(p.y()) <= reach;
}

bool isNear(gx_Piece const &piece)
{
  gxRect const box = piece.bounds();
  return isNear(box.origin()) && isNear(box.origin() + box.size());
}

/// A circle that was pressed flatter than this has no inverse for cairo.
bool isRound(gx_ArcPiece const &arc)
{
  constexpr double flattest = 1e-6;
  double const across = std::abs(arc.u.x() * arc.v.y() - arc.u.y() * arc.v.x());
  double const size = arc.u.x() * arc.u.x() + arc.u.y() * arc.u.y() + arc.v.x() * arc.v.x() + arc.v.y() * arc.v.y();
  return across > flattest * size && across > flattest;
}

/// Places on a piece, the first one left out, so close that chords are within a hundredth of a pel where they can be.
void appendChords(gx_Piece const &piece, std::vector<V> &to)
{
  constexpr double tolerance = 0.01;
  constexpr double most = 0x1p14;
  double const chords =
      std::visit([](auto const &p) { return p.chords(tolerance); }, static_cast<gx_Piece::Kinds const &>(piece));
  auto const n = static_cast<int>(std::ceil(std::clamp(chords, 1.0, most)));
  for (int i = 1; i <= n; ++i)
    to.push_back(piece.point(static_cast<double>(i) / n));
}

std::vector<V> flattened(gx_Contour const &contour)
{
  std::vector<V> points;
  if (!contour.pieces.empty())
    points.push_back(contour.pieces.front().point(0.0));
  for (gx_Piece const &piece : contour.pieces)
    appendChords(piece, points);
  return points;
}

/// What an area keeps of itself on one side of a line across an axis.
template <class Coordinate>
std::vector<V> cutAt(std::vector<V> const &points, double limit, double sign, Coordinate coordinate)
{
  std::vector<V> kept;
  for (std::size_t i = 0; i < points.size(); ++i) {
    V const &a = points[i];
    V const &b = points[(i + 1) % points.size()];
    double const da = limit - sign * coordinate(a), db = limit - sign * coordinate(b);
    if (da >= 0.0)
      kept.push_back(a);
    if ((da < 0.0) != (db < 0.0))
      kept.push_back(a + (b - a) * (da / (da - db)));
  }
  return kept;
}

std::vector<V> nearArea(std::vector<V> points)
{
  for (double const sign : {1.0, -1.0}) {
    points = cutAt(points, reach, sign, [](V const &p) { return p.x(); });
    points = cutAt(points, reach, sign, [](V const &p) { return p.y(); });
  }
  return points;
}

/// The part of a segment that is near; false if there is none.
bool cutSegment(V &a, V &b)
{
  double from = 0.0, to = 1.0;
  V const d = b - a;
  auto const cut = [&](double start, double step) {
    for (double const sign : {1.0, -1.0}) {
      double const room = reach - sign * start, speed = sign * step;
      if (speed > 0.0)
        to = std::min(to, room / speed);
      else if (speed < 0.0)
        from = std::max(from, room / speed);
      else if (room < 0.0)
        to = -1.0;
    }
  };
  cut(a.x(), d.x());
  cut(a.y(), d.y());
  V const start = a;
  a = start + d * from;
  b = start + d * to;
  return from <= to && isNear(a * 0.5) && isNear(b * 0.5);
}

void addNearLines(cairo_t *context, std::vector<V> const &points)
{
  for (std::size_t i = 1; i < points.size(); ++i) {
    V a = points[i - 1], b = points[i];
    if (!cutSegment(a, b))
      continue;
    cairo_move_to(context, a.x(), a.y());
    cairo_line_to(context, b.x(), b.y());
  }
}

void addPolygon(cairo_t *context, std::vector<V> const &points)
{
  for (V const &p : points)
    cairo_line_to(context, p.x(), p.y());
  cairo_close_path(context);
}

void addArc(cairo_t *context, gx_ArcPiece const &arc)
{
  cairo_matrix_t const circle{arc.u.x(), arc.u.y(), arc.v.x(), arc.v.y(), arc.center.x(), arc.center.y()};
  cairo_save(context);
  cairo_transform(context, &circle);
  (arc.span < 0.0 ? cairo_arc_negative : cairo_arc)(context, 0.0, 0.0, 1.0, arc.start, arc.start + arc.span);
  cairo_restore(context);
}

void addPiece(cairo_t *context, gx_Piece const &piece)
{
  if (auto const *const arc = std::get_if<gx_ArcPiece>(&piece); arc && isRound(*arc))
    return addArc(context, *arc);
  if (auto const *const bezier = std::get_if<gx_BezierPiece>(&piece); bezier && bezier->isPolynomial()) {
    auto const &p = bezier->points;
    return cairo_curve_to(context, p[1].x(), p[1].y(), p[2].x(), p[2].y(), p[3].x(), p[3].y());
  }
  std::vector<V> points;
  appendChords(piece, points);
  for (V const &p : points)
    cairo_line_to(context, p.x(), p.y());
}

void addContour(cairo_t *context, gx_Contour const &contour, bool area)
{
  cairo_new_sub_path(context);
  if (!std::all_of(contour.pieces.begin(), contour.pieces.end(), [](gx_Piece const &p) { return isNear(p); })) {
    if (area)
      addPolygon(context, nearArea(flattened(contour)));
    else
      addNearLines(context, flattened(contour));
    return;
  }
  V const start = contour.pieces.front().point(0.0);
  cairo_move_to(context, start.x(), start.y());
  for (gx_Piece const &piece : contour.pieces)
    addPiece(context, piece);
  if (contour.closed || area)
    cairo_close_path(context);
}

}  // namespace

bool gf_addCairoPath(cairo_t *context, std::vector<gx_Contour> const &contours, gxXform<2> const &xform, bool areas)
{
  std::vector<gx_Contour> mapped;
  for (gx_Contour const &contour : contours) {
    if (contour.pieces.empty())
      continue;
    gx_Contour &to = mapped.emplace_back(gx_Contour{{}, contour.closed});
    for (gx_Piece const &piece : contour.pieces) {
      to.pieces.push_back(piece.mapped(xform));
      if (!to.pieces.back().isFinite())
        return false;
    }
  }
  for (gx_Contour const &contour : mapped)
    addContour(context, contour, areas);
  return !mapped.empty();
}
