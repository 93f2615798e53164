#include "backends/pels/detail/pelcurve.h"

#include "backends/pels/detail/pelfill.h"
#include "backends/pels/detail/pelline.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr double tie = 1e-9;

bool isFull(gx_ArcPiece const &arc)
{
  return std::abs(arc.span) >= gf_turnRadians;
}

bool isDrawable(gx_ArcPiece const &arc)
{
  return gf_isDrawable(arc.center) && gf_isDrawable(arc.u) && gf_isDrawable(arc.v) && std::isfinite(arc.start) &&
         std::isfinite(arc.span);
}

/// Order of directions: grows with the angle from the direction (1, 0), from 0 to 4 for a turn.
double turnOrder(gxVector<2> const &d)
{
  double const c = d.x();
  double const s = d.y();
  if (s >= 0.0)
    return c > 0.0 ? s / (c + s) : (s - c > 0.0 ? 1.0 - c / (s - c) : 0.0);
  return c < 0.0 ? 2.0 + s / (c + s) : 3.0 + c / (c - s);
}

/// Places of an arc by direction on the unit circle, measured from its start in its sense: from 0 to 4 for a turn.
class ArcOrder
{
 public:
  explicit ArcOrder(gx_ArcPiece const &arc)
      : start_(std::cos(arc.start), std::sin(arc.start)), sense_(arc.span < 0.0 ? -1.0 : 1.0)
  {
    end_ = isFull(arc) ? 4.0 : of({std::cos(arc.start + arc.span), std::sin(arc.start + arc.span)});
  }

  double of(gxVector<2> const &unit) const
  {
    double const order = turnOrder({unit * start_, sense_ * start_.cross(unit)});
    return order < 4.0 - tie ? order : 0.0;
  }
  double end() const { return end_; }

 private:
  gxVector<2> start_;
  double sense_;
  double end_ = 4.0;
};

/// Tells which places of an arc are drawn.
class ArcFilter
{
 public:
  ArcFilter(gx_ArcPiece const &arc, gx_PelDash const &dash, double phase)
      : order_(arc), dash_(dash), phase_(phase), takesAll_(isFull(arc) && dash.isSolid())
  {
    if (dash.isSolid())
      return;
    double length = 0.0;
    std::vector<gx_ArcPlace> const places = gf_arcPlaces(arc, {});
    for (std::size_t i = 0; i < places.size(); ++i) {
      if (i > 0)
        length += gf_length(places[i].point - places[i - 1].point);
      marks_.push_back({i + 1 < places.size() ? order_.of(places[i].unit) : order_.end(), length});
    }
  }

  bool takesAll() const { return takesAll_; }
  bool takes(gxVector<2> const &unit) const
  {
    double const order = order_.of(unit);
    return order <= order_.end() + tie && (dash_.isSolid() || dash_.isOn(phase_ + lengthTo(order)));
  }

 private:
  struct Mark {
    double order;
    double length;
  };

  double lengthTo(double order) const
  {
    auto const after = std::upper_bound(marks_.begin(), marks_.end(), order,
                                        [](double v, Mark const &mark) { return v < mark.order; });
    if (after == marks_.begin())
      return 0.0;
    if (after == marks_.end())
      return marks_.back().length;
    Mark const &a = after[-1];
    return a.length + (order - a.order) / (after->order - a.order) * (after->length - a.length);
  }

  ArcOrder order_;
  gx_PelDash dash_;
  double phase_;
  bool takesAll_;
  std::vector<Mark> marks_;
};

/// The crossings of an ellipse with the center lines of columns, or of rows when the axes are swapped.
class Crossings
{
 public:
  /// @param swapped scans rows: then x means y, and y means x, in all that follows
  Crossings(gx_PelCanvas &canvas, gx_ArcPiece const &arc, ArcFilter const &filter, bool swapped)
      : canvas_(canvas),
        filter_(filter),
        swapped_(swapped),
        center_(turned(arc.center)),
        u_(turned(arc.u)),
        v_(turned(arc.v)),
        det_(u_.cross(v_)),
        width2_(u_.x() * u_.x() + v_.x() * v_.x()),
        shear_(u_.x() * u_.y() + v_.x() * v_.y())
  {
  }

  void draw()
  {
    gx_PelBox const &clip = canvas_.clip();
    double const width = std::sqrt(width2_);
    double const low = std::max(std::ceil(center_.x() - width), double(swapped_ ? clip.top : clip.left));
    double const high = std::min(std::floor(center_.x() + width), double((swapped_ ? clip.bottom : clip.right) - 1));
    for (double x = low; x <= high; ++x) {
      double const dx = x - center_.x();
      double const half = std::abs(det_) * std::sqrt(std::max((width - dx) * (width + dx), 0.0)) / width2_;
      double const middle = shear_ * dx / width2_;
      put(x, dx, middle - half, std::floor(center_.y() + (middle - half) + tie + 0.5));
      put(x, dx, middle + half, std::ceil(center_.y() + (middle + half) - tie - 0.5));
    }
  }

 private:
  gxVector<2> turned(gxVector<2> const &p) const { return swapped_ ? gxVector<2>(p.y(), p.x()) : p; }

  void put(double x, double dx, double dy, double y)
  {
    gx_PelBox const &clip = canvas_.clip();
    if (!(y >= (swapped_ ? clip.left : clip.top) && y < (swapped_ ? clip.right : clip.bottom)))
      return;
    if (!filter_.takesAll() && !filter_.takes({(dx * v_.y() - dy * v_.x()) / det_, (u_.x() * dy - u_.y() * dx) / det_}))
      return;
    auto const column = static_cast<std::int64_t>(x);
    auto const row = static_cast<std::int64_t>(y);
    swapped_ ? canvas_.pel(row, column) : canvas_.pel(column, row);
  }

  gx_PelCanvas &canvas_;
  ArcFilter const &filter_;
  bool swapped_;
  gxVector<2> center_, u_, v_;
  double det_;     ///< area of the parallelogram of u and v
  double width2_;  ///< square of half the width
  double shear_;
};

void drawEnd(gx_PelCanvas &canvas, gx_ArcPiece const &arc, double t)
{
  gxVector<2> const p = arc.at(t);
  if (std::abs(p.x()) < 0x1p31 && std::abs(p.y()) < 0x1p31)
    canvas.pel(static_cast<std::int64_t>(std::floor(p.x() + 0.5)), static_cast<std::int64_t>(std::floor(p.y() + 0.5)));
}

void drawDegenerate(gx_PelCanvas &canvas, gx_ArcPiece const &arc, gx_PelDash const &dash, double phase)
{
  constexpr int chords = 64;
  auto const place = [&](int i) {
    gxVector<2> const p = arc.at(arc.start + arc.span * i / chords);
    return gxVector<2>(std::floor(p.x() + 0.5), std::floor(p.y() + 0.5));
  };
  std::int64_t pels = std::int64_t(std::min(phase, 0x1p53));
  for (int i = 0; i < chords; ++i)
    pels = gf_drawPelLine(canvas, place(i), place(i + 1), dash, pels);
}

/// Breaks an arc of at most a quarter turn.
class Breaker
{
 public:
  Breaker(gx_ArcPiece const &arc, gx_ArcFineness const &fineness, std::vector<gx_ArcPlace> &places)
      : arc_(arc), fineness_(fineness), places_(places)
  {
  }

  gx_ArcPlace place(gxVector<2> const &unit) const
  {
    gxVector<2> const along = arc_.v * unit.x() - arc_.u * unit.y();
    double const length = gf_length(along);
    gxVector<2> const normal = length > 0.0 ? gxVector<2>(-along.y() / length, along.x() / length) : gxVector<2>();
    return {unit, arc_.center + arc_.u * unit.x() + arc_.v * unit.y(), normal};
  }

  /// Adds the places behind @p a, up to @p b, which are one of 2^halvings parts of a quarter turn.
  void breakUp(gx_ArcPlace const &a, gx_ArcPlace const &b, int halvings)
  {
    gxVector<2> const sum = a.unit + b.unit;
    gx_ArcPlace const middle = place(sum * (1.0 / gf_length(sum)));
    if (mayBreak(a, b, halvings) &&
        (isCoarse(a, middle, b, fineness_.halfWidth) || isCoarse(a, middle, b, -fineness_.halfWidth))) {
      breakUp(a, middle, halvings + 1);
      breakUp(middle, b, halvings + 1);
    } else {
      places_.push_back(b);
    }
  }

 private:
  bool isCoarse(gx_ArcPlace const &a, gx_ArcPlace const &middle, gx_ArcPlace const &b, double aside) const
  {
    gxVector<2> const off =
        middle.point + middle.normal * aside - (a.point + a.normal * aside + b.point + b.normal * aside) * 0.5;
    return off * off > fineness_.tolerance * fineness_.tolerance;
  }
  /// Where all of the arc counts, long chords are not broken without end; short ones are, for the sharp tips of a thin
  /// ellipse.
  bool mayBreak(gx_ArcPlace const &a, gx_ArcPlace const &b, int halvings) const
  {
    constexpr int most = 48;
    constexpr int mostOfLong = 12;
    constexpr double isLong = 16.0;
    if (fineness_.seen)
      return halvings < most && mayBeSeen(a, b);
    return halvings < mostOfLong || (halvings < most && gf_length(b.point - a.point) < isLong);
  }
  /// The arc lies in the triangle of its ends and the point where their tangents meet.
  bool mayBeSeen(gx_ArcPlace const &a, gx_ArcPlace const &b) const
  {
    gxVector<2> const apexUnit = (a.unit + b.unit) * (1.0 / (1.0 + a.unit * b.unit));
    gxVector<2> const apex = arc_.center + arc_.u * apexUnit.x() + arc_.v * apexUnit.y();
    double const reach = fineness_.halfWidth + 1.0;
    auto const [left, right] = std::minmax({a.point.x(), b.point.x(), apex.x()});
    auto const [top, bottom] = std::minmax({a.point.y(), b.point.y(), apex.y()});
    gx_PelBox const &seen = *fineness_.seen;
    return right >= seen.left - reach && left <= seen.right + reach && bottom >= seen.top - reach &&
           top <= seen.bottom + reach;
  }

  gx_ArcPiece const &arc_;
  gx_ArcFineness const &fineness_;
  std::vector<gx_ArcPlace> &places_;
};

}  // namespace

bool gf_isFlat(gx_ArcPiece const &arc)
{
  return std::abs(arc.u.cross(arc.v)) <= 1e-12 * (arc.u * arc.u + arc.v * arc.v);
}

std::vector<gx_ArcPlace> gf_arcPlaces(gx_ArcPiece const &arc, gx_ArcFineness const &fineness)
{
  std::vector<gx_ArcPlace> places;
  if (!isDrawable(arc))
    return places;
  Breaker breaker(arc, fineness, places);
  double const span = isFull(arc) ? std::copysign(gf_turnRadians, arc.span) : arc.span;
  gxVector<2> unit(std::cos(arc.start), std::sin(arc.start));
  double const sense = span < 0.0 ? -1.0 : 1.0;
  places.push_back(breaker.place(unit));
  auto const go = [&](gxVector<2> const &to) {
    breaker.breakUp(breaker.place(unit), breaker.place(to), 0);
    unit = to;
  };
  constexpr double quarter = gf_turnRadians / 4;
  double left = std::abs(span);
  for (; left >= quarter; left -= quarter)
    go({-sense * unit.y(), sense * unit.x()});
  if (left > 0.0)
    go({std::cos(arc.start + span), std::sin(arc.start + span)});
  return places;
}

void gf_drawPelArc(gx_PelCanvas &canvas, gx_ArcPiece const &arc, gx_PelDash const &dash, double phase)
{
  if (canvas.clip().isEmpty() || !isDrawable(arc))
    return;
  if (gf_isFlat(arc))
    return drawDegenerate(canvas, arc, dash, phase);
  ArcFilter const filter(arc, dash, phase);
  Crossings(canvas, arc, filter, false).draw();
  Crossings(canvas, arc, filter, true).draw();
  if (!isFull(arc)) {
    if (filter.takes({std::cos(arc.start), std::sin(arc.start)}))
      drawEnd(canvas, arc, arc.start);
    if (filter.takes({std::cos(arc.start + arc.span), std::sin(arc.start + arc.span)}))
      drawEnd(canvas, arc, arc.start + arc.span);
  }
}
