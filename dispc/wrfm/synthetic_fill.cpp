#include "dispc/wrfm/detail/polyfields.h"
#include "dispc/wrfm/detail/synthfill.h"
#include "dispc/wrfm/polyprivate.h"
#include "foundation/numbers.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

// The insides of outlines in synthetic images.

namespace
{

using Private = gxSMDGDPolyPrivate;
using Point = gxVector<2>;

/// The map from pel indices to the outline: index (i, j) stands for the centre of its pel.
gxXform<2> pelsToModel(gxXform<2> const &map)
{
  return gxXform<2>(map.matrix(), map.translation() - Point(0.5, 0.5)).inverse();
}

/// A column that is nearer than this to the next one is not clear.
constexpr double unclear = 1e-6;
/// Rows whose centres are nearer than this to the end or the extremum of a piece are left to the exact rule, since an
/// arc is too flat there.
constexpr double nearEnd = 1e-4;
/// Beyond these coordinates, in pels, rounding errors come near to an unclear column.
constexpr double tame = 1e5;
/// Lines flatter than this are left to the exact rule.
constexpr double flattest = 1e4;

}  // namespace

// ---------------------------------------------------------------- the exact rule

gx_SyntheticFill::gx_SyntheticFill(gxSMDGDPoly const &poly, gxXform<2> const &map, long left, long right,
                                   gxPelBuffer<unsigned char> const &window, unsigned char value)
    : poly_(poly),
      map_(map),
      modelFromPel_(pelsToModel(map)),
      left_(left),
      right_(right),
      window_(window),
      value_(value)
{
}

void gx_SyntheticFill::fillRun(unsigned char *row, long from, long to) const
{
  long const wl = window_.window().x(), a = std::max(from, wl), b = std::min(to, wl + window_.width());
  if (a < b)
    std::memset(row + (a - wl), value_, static_cast<std::size_t>(b - a));
}

// Of points in one column the later one comes first.
void gx_SyntheticFill::fillRow(long y) const
{
  auto const vertexAt = [&](long x) {
    return gxSMDGDPolyVertex(modelFromPel_.mapPoint(Point(static_cast<double>(x), static_cast<double>(y))), 0.5, 0.5,
                             -1);
  };
  gxSMDGDPoly line("poly");
  line << vertexAt(left_) << vertexAt(right_);
  struct Crossing {
    long column;
    Point point;
  };
  std::vector<Crossing> crossings;
  for (Point const &p : Private::intersection(poly_, line))
    crossings.push_back({gf_roundHalfAway(map_.mapPoint(p).x()), p});
  std::reverse(crossings.begin(), crossings.end());
  std::stable_sort(crossings.begin(), crossings.end(),
                   [](Crossing const &a, Crossing const &b) { return a.column < b.column; });
  unsigned char *const row = window_.pointToRow(y);
  long const wl = window_.window().x(), wr = wl + window_.width();
  for (std::size_t i = 1; i < crossings.size(); ++i) {
    Crossing const &a = crossings[i - 1], &b = crossings[i];
    if (a.column < wr && b.column > wl && Private::inside(poly_, (a.point + b.point) * 0.5))
      fillRun(row, a.column, b.column);
  }
}

// ---------------------------------------------------------------- stepping along the outline

/// The pieces of an outline in an image, each as it rises or falls through the rows, and the columns where they cross
/// the centres of rows. Pieces that share no row share a slot, so that a slot has one column, or none, on each row.
class gx_SyntheticFill::Pieces
{
 public:
  Pieces(gxSMDGDPoly const &poly, gxXform<2> const &map, long firstRow, long numRows)
      : poly_(poly), map_(map), first_(firstRow), numRows_(numRows), isExact_(static_cast<std::size_t>(numRows), 0)
  {
  }

  /// False if the outline is too large to be sure of its columns.
  bool find()
  {
    auto const &vertices = gx_PolyFields::vertices(poly_);
    auto const &starts = gx_PolyFields::nextRoundPoints(poly_), &ends = gx_PolyFields::prevRoundPoints(poly_);
    std::size_t const n = vertices.size();
    if (!isTame(vertices))
      return false;
    pieces_.reserve(2 * n);
    for (std::size_t v = 0; v < n; ++v) {
      int const i = static_cast<int>(v);
      if (vertices[v].segmentAngleSpan().value() == 0.0 || Private::isLineSegment_(poly_, i))
        addLine(map_.mapPoint(starts[v == 0 ? n - 1 : v - 1]), map_.mapPoint(ends[v]));
      else
        addArc(Private::roundedArcSegment_(poly_, i));
      if (vertices[v].vertexRadius() != 0.0 && Private::vertexIsRounded_(poly_, i))
        addArc(Private::roundedArcVertex_(poly_, i));
    }
    shareSlots();
    return static_cast<double>(numSlots_) * static_cast<double>(numRows_) < 1e8;
  }

  void cross()
  {
    columns_.assign(numSlots_ * static_cast<std::size_t>(numRows_), noColumn);
    for (Piece const &piece : pieces_)
      crossOne(piece);
  }

  std::size_t numSlots() const { return numSlots_; }
  std::int32_t column(std::size_t slot, long row) const
  {
    return columns_[slot * static_cast<std::size_t>(numRows_) + static_cast<std::size_t>(row)];
  }
  bool isExact(long row) const { return isExact_[static_cast<std::size_t>(row)] != 0; }

  static constexpr std::int32_t noColumn = std::numeric_limits<std::int32_t>::max();

 private:
  /// At height h above `middle` the column is x + slope * h + bow * sqrt(1 - (h / radius)^2). A line has no bow.
  struct Piece {
    std::int32_t first, last;  ///< rows, from the first one of the window
    double middle, x, slope, bow, perRadius;
    std::size_t slot;
  };

  bool isTame(std::vector<gxSMDGDPolyVertex> const &vertices) const
  {
    double reach = 0.0;
    for (gxSMDGDPolyVertex const &v : vertices)
      reach = std::max(reach, std::abs(v.point().x()) + std::abs(v.point().y()) + std::abs(v.vertexRadius()));
    gxMatrix<2> const &m = map_.matrix();
    double const scale =
        std::abs(m.element(0, 0)) + std::abs(m.element(0, 1)) + std::abs(m.element(1, 0)) + std::abs(m.element(1, 1));
    double const far = std::abs(map_.translation().x()) + std::abs(map_.translation().y());
    // The second is how far a rounding error of the outline's own coordinates reaches.
    return far + reach * scale < tame && std::abs(m.det()) > 1e-4 * scale * scale;
  }

  /// Rows whose centres come near a height are left to the exact rule.
  void markNear(double y)
  {
    long const row = gf_roundHalfAway(y - 0.5) - first_;
    if (row >= 0 && row < numRows_ && std::abs(static_cast<double>(row + first_) + 0.5 - y) <= nearEnd)
      isExact_[static_cast<std::size_t>(row)] = 1;
  }
  void markBetween(double top, double bottom)
  {
    long const from = std::max<long>(gf_roundHalfAway(top - 0.5) - first_, 0);
    long const to = std::min<long>(gf_roundHalfAway(bottom - 0.5) - first_, numRows_ - 1);
    for (long row = from; row <= to; ++row)
      isExact_[static_cast<std::size_t>(row)] = 1;
  }

  /// A piece between two heights.
  void add(double top, double bottom, Piece piece)
  {
    markNear(top);
    markNear(bottom);
    piece.first = static_cast<std::int32_t>(std::max<long>(gfICeil(top + nearEnd - 0.5) - first_, 0));
    piece.last = static_cast<std::int32_t>(std::min<long>(gfIFloor(bottom - nearEnd - 0.5) - first_, numRows_ - 1));
    piece.middle -= 0.5 + static_cast<double>(first_);
    if (piece.first <= piece.last)
      pieces_.push_back(piece);
  }

  void addLine(Point a, Point b)
  {
    if (a.y() > b.y())
      std::swap(a, b);
    double const dx = b.x() - a.x(), dy = b.y() - a.y();
    if (std::abs(dx) > flattest * dy)
      markBetween(a.y(), b.y());
    else
      add(a.y(), b.y(), {0, 0, a.y(), a.x(), dx / dy, 0.0, 0.0, 0});
  }

  // The image of the arc is C + U cos t + V sin t. Seen from the angle where it is highest, its height is a cosine.
  void addArc(gx2SegmentArc const &arc)
  {
    Point const center = arc.center(), c = map_.mapPoint(center);
    double const radius = arc.p1().distance(center);
    Point const u = map_.mapVector(Point(radius, 0.0)), v = map_.mapVector(Point(0.0, radius));
    double const height = std::hypot(u.y(), v.y()), turn = std::atan2(v.y(), u.y());
    double const slope = (u.x() * u.y() + v.x() * v.y()) / (height * height);
    double const bow = (v.x() * u.y() - u.x() * v.y()) / height;
    double const half = gf_turnRadians / 2.0;
    double from = gxRadian(arc.startAngle()).value() - turn, to = from + gxRadian(arc.angleSpan()).value();
    if (from > to)
      std::swap(from, to);
    double const ends[] = {c.y() + height * std::cos(from), c.y() + height * std::cos(to)};
    for (double k = std::floor(from / half); k * half < to; k += 1.0) {
      bool const isEven = std::fmod(k, 2.0) == 0.0;  // the sine is positive, and the height falls
      double const high = c.y() + height, low = c.y() - height;
      double const y0 = k * half > from ? (isEven ? high : low) : ends[0];
      double const y1 = (k + 1.0) * half < to ? (isEven ? low : high) : ends[1];
      add(std::min(y0, y1), std::max(y0, y1), {0, 0, c.y(), c.x(), slope, isEven ? bow : -bow, 1.0 / height, 0});
    }
  }

  /// Each piece, from the top down, takes a slot whose last piece has ended.
  void shareSlots()
  {
    std::sort(pieces_.begin(), pieces_.end(), [](Piece const &a, Piece const &b) { return a.first < b.first; });
    std::vector<std::int32_t> lastRows;
    for (Piece &piece : pieces_) {
      auto const free = std::find_if(lastRows.begin(), lastRows.end(), [&](std::int32_t r) { return r < piece.first; });
      piece.slot = static_cast<std::size_t>(free - lastRows.begin());
      if (free == lastRows.end())
        lastRows.push_back(piece.last);
      else
        *free = piece.last;
    }
    numSlots_ = lastRows.size();
  }

  void crossOne(Piece const &piece)
  {
    std::int32_t *const columns = columns_.data() + piece.slot * static_cast<std::size_t>(numRows_);
    for (std::int32_t row = piece.first; row <= piece.last; ++row) {
      double const h = static_cast<double>(row) - piece.middle, t = h * piece.perRadius;
      double x = piece.x + piece.slope * h;
      if (piece.perRadius != 0.0)
        x += piece.bow * std::sqrt(std::max(0.0, 1.0 - t * t));
      // Rounded by cutting off, which is the floor above the lowest column there is.
      double const shifted = x + (0.5 + 2.0 * tame);
      auto const whole = static_cast<std::int32_t>(shifted);
      double const rest = shifted - static_cast<double>(whole);
      columns[row] = whole - static_cast<std::int32_t>(2.0 * tame);
      isExact_[static_cast<std::size_t>(row)] |= (rest < unclear) | (rest > 1.0 - unclear);
    }
  }

  gxSMDGDPoly const &poly_;
  gxXform<2> const &map_;
  long const first_, numRows_;
  std::vector<Piece> pieces_;
  std::vector<char> isExact_;
  std::vector<std::int32_t> columns_;  ///< slot by slot
  std::size_t numSlots_ = 0;
};

// Between columns that are clear of each other the inside is where an odd number of pieces lies to the left. Where two
// pieces share a column, the exact rule takes a middle that is known to a pel only, so the next run must be wider.
bool gx_SyntheticFill::fillByParity(unsigned char *row, std::int32_t const *columns, std::size_t n) const
{
  if (n % 2)
    return false;
  bool share = false, narrow = false;
  for (std::size_t i = 1; i < n; ++i) {
    std::int32_t const gap = columns[i] - columns[i - 1];
    share |= gap == 0;
    narrow |= gap == 1 || gap == 2;
  }
  if (share && narrow)
    return false;
  for (std::size_t i = 1; i < n; i += 2)
    fillRun(row, columns[i - 1], columns[i]);
  return true;
}

void gx_SyntheticFill::fill()
{
  long const first = window_.window().y(), numRows = window_.height();
  Pieces pieces(poly_, map_, first, numRows);
  bool const isSure = pieces.find();
  if (isSure)
    pieces.cross();
  // The order of the slots on one row is nearly that on the next.
  struct At {
    std::int32_t column;
    std::uint32_t slot;
  };
  std::vector<At> order(isSure ? pieces.numSlots() : 0);
  std::vector<std::int32_t> columns(order.size());
  for (std::size_t i = 0; i < order.size(); ++i)
    order[i].slot = static_cast<std::uint32_t>(i);
  for (long r = 0; r < numRows; ++r) {
    bool done = false;
    if (isSure && !pieces.isExact(r)) {
      std::size_t n = 0;
      for (std::size_t i = 0; i < order.size(); ++i) {
        At const at{pieces.column(order[i].slot, r), order[i].slot};
        n += at.column != Pieces::noColumn;
        std::size_t k = i;
        for (; k > 0 && order[k - 1].column > at.column; --k)
          order[k] = order[k - 1];
        order[k] = at;
      }
      for (std::size_t i = 0; i < n; ++i)
        columns[i] = order[i].column;
      done = fillByParity(window_.pointToRow(first + r), columns.data(), n);
    }
    if (!done) {
      fillRow(first + r);
      ++numExact_;
    }
  }
}
