#include "backends/pels/detail/pelstroke.h"

#include "backends/pels/detail/pelfill.h"
#include "backends/pels/detail/pelline.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <vector>

namespace
{

gxVector<2> normalOf(gxVector<2> const &direction)
{
  return {-direction.y(), direction.x()};
}

/// The direction from a to b; nothing if they coincide.
std::optional<gxVector<2>> directionOf(gxVector<2> const &a, gxVector<2> const &b)
{
  gxVector<2> const d = b - a;
  double const length = gf_length(d);
  if (!(length > 0.0))
    return std::nullopt;
  return d * (1.0 / length);
}

/// The area that a wide pen covers, put together from convex parts that may overlap.
class WidePen
{
 public:
  WidePen(gx_PelCanvas &canvas, gx_PelPen const &pen) : canvas_(canvas), pen_(pen), half_(pen.halfWidth()) {}

  void disk(gxVector<2> const &at) { gf_fillDisk(canvas_, at, half_); }

  /// The band between two places with their normals.
  void band(gxVector<2> const &a, gxVector<2> const &normalA, gxVector<2> const &b, gxVector<2> const &normalB)
  {
    std::array<gxVector<2>, 4> const corners{a + normalA * half_, b + normalB * half_, b - normalB * half_,
                                             a - normalA * half_};
    gf_fillConvex(canvas_, corners);
  }

  /// The end at @p at of a line that leaves there in the direction @p outward.
  void cap(gxVector<2> const &at, gxVector<2> const &outward)
  {
    if (pen_.cap == gxGraphicProps::capFlat)
      return;
    if (pen_.cap == gxGraphicProps::capSquare)
      band(at, normalOf(outward), at + outward * half_, normalOf(outward));
    else
      disk(at);
  }

  /// The corner at which a line turns from the direction @p in to @p out.
  void join(gxVector<2> const &at, gxVector<2> const &in, gxVector<2> const &out)
  {
    double const turn = in.cross(out);
    double const along = in * out;
    if (turn == 0.0 && along > 0.0)
      return;
    bool const cuts = pen_.join == gxGraphicProps::joinBevel || pen_.join == gxGraphicProps::joinMiter;
    if (!cuts)
      return disk(at);
    // The outside is to the left of a turn to the right.
    double const side = turn > 0.0 ? -half_ : half_;
    gxVector<2> const a = at + normalOf(in) * side;
    gxVector<2> const b = at + normalOf(out) * side;
    if (pen_.join == gxGraphicProps::joinMiter && 1.0 + along >= miterLimit) {
      gxVector<2> const tip = at + (normalOf(in) + normalOf(out)) * (side / (1.0 + along));
      gf_fillConvex(canvas_, std::array{at, a, tip, b});
    } else {
      gf_fillConvex(canvas_, std::array{at, a, b});
    }
  }

  /// The dot of a line without length.
  void dot(gxVector<2> const &at)
  {
    if (pen_.cap == gxGraphicProps::capSquare || pen_.cap == gxGraphicProps::capFlat) {
      gxVector<2> const right(half_, 0.0);
      band(at - right, {0.0, 1.0}, at + right, {0.0, 1.0});
    } else {
      disk(at);
    }
  }

  gx_PelPen const &pen() const { return pen_; }
  gx_PelBox const &clip() const { return canvas_.clip(); }

 private:
  /// The tip of a miter is sqrt(2 / (1 + cos turn)) half widths from the corner; 4 of them are the limit.
  static constexpr double miterLimit = 2.0 / 16.0;

  gx_PelCanvas &canvas_;
  gx_PelPen const &pen_;
  double half_;
};

/// Places [begin, end] of a straight line that runs from a, by length.
struct Reach {
  double begin, end;
};

/// The part of a line from which the pen can reach a box.
Reach reachOf(gxVector<2> const &a, gxVector<2> const &direction, double length, gx_PelBox const &box, double margin)
{
  Reach reach{0.0, length};
  auto const cut = [&](double from, double along, double low, double high) {
    if (along == 0.0) {
      if (from < low || from > high)
        reach.end = -1.0;
      return;
    }
    double const t0 = (low - from) / along;
    double const t1 = (high - from) / along;
    reach.begin = std::max(reach.begin, std::min(t0, t1));
    reach.end = std::min(reach.end, std::max(t0, t1));
  };
  cut(a.x(), direction.x(), box.left - margin, box.right + margin);
  cut(a.y(), direction.y(), box.top - margin, box.bottom + margin);
  return reach;
}

/// Calls draw(begin, end) for each stretch that the pattern draws of a straight line whose start is at @p phase of it.
/// Stretches that cannot be seen may be left out.
template <class Draw>
void forDashes(WidePen const &pen, gxVector<2> const &a, gxVector<2> const &direction, double length, double phase,
               Draw draw)
{
  gx_PelDash const &dash = pen.pen().dash;
  if (dash.isSolid())
    return draw(0.0, length);
  Reach const seen = reachOf(a, direction, length, pen.clip(), pen.pen().halfWidth());
  if (!(seen.begin < seen.end) || !(phase + seen.end < 0x1p53))
    return;
  auto at = static_cast<std::int64_t>(phase + seen.begin);
  while (static_cast<double>(at) < phase + seen.end) {
    gx_PelDash::Stretch const part = dash.stretch(at);
    double const begin = std::max(static_cast<double>(part.begin) - phase, 0.0);
    double const end = std::min(static_cast<double>(part.end) - phase, length);
    if (part.on && begin < end)
      draw(begin, end);
    at = part.end;
  }
}

/// One line of a path.
struct Line {
  gxVector<2> from, to, direction;
  double length;
  double phase;  ///< length of the path up to `from`
};

void strokeWide(gx_PelCanvas &canvas, std::vector<gxVector<2>> const &path, bool closed, gx_PelPen const &props)
{
  WidePen pen(canvas, props);
  std::vector<Line> lines;
  double length = 0.0;
  for (std::size_t i = 0; i + (closed ? 0 : 1) < path.size(); ++i) {
    gxVector<2> const &a = path[i];
    gxVector<2> const &b = path[i + 1 < path.size() ? i + 1 : 0];
    if (auto const direction = directionOf(a, b)) {
      lines.push_back({a, b, *direction, (b - a) * *direction, length});
      length += lines.back().length;
    }
  }
  if (lines.empty())
    return pen.dot(path.front());
  for (std::size_t i = 0; i < lines.size(); ++i) {
    Line const &line = lines[i];
    gxVector<2> const normal = normalOf(line.direction);
    forDashes(pen, line.from, line.direction, line.length, line.phase, [&](double begin, double end) {
      pen.band(begin == 0.0 ? line.from : line.from + line.direction * begin, normal,
               end == line.length ? line.to : line.from + line.direction * end, normal);
    });
    if (i > 0 && props.dash.isOn(line.phase))
      pen.join(line.from, lines[i - 1].direction, line.direction);
  }
  bool const endIsOn = props.dash.isOn(length);
  if (closed) {
    if (endIsOn)
      pen.join(lines.front().from, lines.back().direction, lines.front().direction);
    return;
  }
  pen.cap(lines.front().from, -lines.front().direction);
  if (endIsOn)
    pen.cap(lines.back().to, lines.back().direction);
}

void strokeRun(gx_PelCanvas &canvas, std::span<gxVector<2> const> points, bool closed, gx_PelPen const &pen)
{
  if (points.empty())
    return;
  if (!pen.isThin()) {
    std::vector<gxVector<2>> path;
    for (gxVector<2> const &p : points)
      path.push_back(p + pen.shift());
    return strokeWide(canvas, path, closed, pen);
  }
  std::int64_t pels = 0;
  for (std::size_t i = 1; i < points.size(); ++i)
    pels = gf_drawPelLine(canvas, points[i - 1], points[i], pen.dash, pels);
  if (closed || points.size() == 1)
    gf_drawPelLine(canvas, points.back(), points.front(), pen.dash, pels);
}

}  // namespace

double gx_PelPen::reach() const
{
  if (isThin())
    return 0.0;
  // A miter reaches 4 half widths, the corner of a square end sqrt(2).
  return halfWidth() * (join == gxGraphicProps::joinMiter ? 4.0 : cap == gxGraphicProps::capSquare ? 1.4143 : 1.0);
}

void gf_drawDot(gx_PelCanvas &canvas, gxVector<2> const &at, gx_PelPen const &pen)
{
  if (canvas.clip().isEmpty())
    return;
  if (pen.isThin())
    gf_drawPelLine(canvas, at, at);
  else
    gf_fillDisk(canvas, at + pen.shift(), pen.halfWidth());
}

void gf_strokeLines(gx_PelCanvas &canvas, std::span<gxVector<2> const> points, bool closed, gx_PelPen const &pen)
{
  if (canvas.clip().isEmpty())
    return;
  if (points.size() == 2 && pen.isThin() && !closed) {
    gf_drawPelLine(canvas, points[0], points[1], pen.dash);
    return;
  }
  std::size_t begin = 0;
  bool whole = true;
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (pen.isThin() ? points[i].isFinite() : gf_isDrawable(points[i]))
      continue;
    strokeRun(canvas, points.subspan(begin, i - begin), false, pen);
    begin = i + 1;
    whole = false;
  }
  strokeRun(canvas, points.subspan(begin), closed && whole, pen);
}

void gf_strokeArc(gx_PelCanvas &canvas, gx_ArcPiece const &arc, gx_PelPen const &pen)
{
  if (canvas.clip().isEmpty())
    return;
  if (pen.isThin())
    return gf_drawPelArc(canvas, arc, pen.dash);
  gx_ArcPiece moved = arc;
  moved.center += pen.shift();
  gx_ArcFineness fineness;
  fineness.halfWidth = pen.halfWidth();
  fineness.seen = pen.dash.isSolid() ? &canvas.clip() : nullptr;
  std::vector<gx_ArcPlace> const places = gf_arcPlaces(moved, fineness);
  if (places.empty())
    return;
  if (gf_isFlat(arc)) {
    std::vector<gxVector<2>> path;
    for (gx_ArcPlace const &place : places)
      path.push_back(place.point);
    return strokeWide(canvas, path, false, pen);
  }
  WidePen wide(canvas, pen);
  double length = 0.0;
  for (std::size_t i = 1; i < places.size(); ++i) {
    gx_ArcPlace const &a = places[i - 1];
    gx_ArcPlace const &b = places[i];
    double const chord = gf_length(b.point - a.point);
    if (!(chord > 0.0))
      continue;
    auto const at = [&](gxVector<2> const &p, gxVector<2> const &q, double t) { return p + (q - p) * (t / chord); };
    forDashes(wide, a.point, (b.point - a.point) * (1.0 / chord), chord, length, [&](double begin, double end) {
      wide.band(at(a.point, b.point, begin), at(a.normal, b.normal, begin), at(a.point, b.point, end),
                at(a.normal, b.normal, end));
    });
    length += chord;
  }
  if (std::abs(arc.span) >= gf_turnRadians)
    return;
  auto const outward = [](gx_ArcPlace const &place, double sense) {
    return gxVector<2>(place.normal.y(), -place.normal.x()) * sense;
  };
  double const sense = arc.span < 0.0 ? -1.0 : 1.0;
  wide.cap(places.front().point, outward(places.front(), -sense));
  if (pen.dash.isOn(length))
    wide.cap(places.back().point, outward(places.back(), sense));
}

std::vector<gxVector<2>> gf_contourPoints(std::vector<gx_Piece> const &pieces, gx_ArcFineness const &fineness)
{
  std::vector<gxVector<2>> points;
  for (gx_Piece const &piece : pieces) {
    points.push_back(piece.point(0.0));
    if (auto const *const arc = std::get_if<gx_ArcPiece>(&piece)) {
      for (gx_ArcPlace const &place : gf_arcPlaces(*arc, fineness))
        points.push_back(place.point);
    } else if (!piece.isStraight()) {
      double const chords = std::min(piece.chords(fineness.tolerance), 4096.0);
      for (double i = 1.0; i < chords; ++i)
        points.push_back(piece.point(i / chords));
    }
    points.push_back(piece.point(1.0));
  }
  return points;
}

void gf_strokeContour(gx_PelCanvas &canvas, std::vector<gx_Piece> const &pieces, gx_PelPen const &pen)
{
  if (canvas.clip().isEmpty() || pieces.empty())
    return;
  if (!pen.isThin()) {
    gx_ArcFineness fineness;
    fineness.halfWidth = pen.halfWidth();
    std::vector<gxVector<2>> path = gf_contourPoints(pieces, fineness);
    for (gxVector<2> &p : path)
      p += pen.shift();
    if (std::all_of(path.begin(), path.end(), gf_isDrawable))
      strokeWide(canvas, path, true, pen);
    return;
  }
  auto const nearest = [](gxVector<2> const &p) {
    return gxVector<2>(std::floor(p.x() + 0.5), std::floor(p.y() + 0.5));
  };
  double length = 0.0;
  for (gx_Piece const &piece : pieces) {
    auto const at = static_cast<std::int64_t>(length < 0x1p53 ? length : 0x1p53);  // also of a length that is no number
    if (auto const *const arc = std::get_if<gx_ArcPiece>(&piece))
      gf_drawPelArc(canvas, *arc, pen.dash, length);
    else
      gf_drawPelLine(canvas, nearest(piece.point(0.0)), nearest(piece.point(1.0)), pen.dash, at);
    if (!pen.dash.isSolid())
      length += piece.length();
  }
}
