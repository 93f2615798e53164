#include "dispc/wrfm/detail/polyfields.h"
#include "dispc/wrfm/detail/synthfill.h"
#include "dispc/wrfm/polyprivate.h"
#include "foundation/numbers.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <utility>
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
/// So are the rows of arcs that are larger than this, in pels, as a column is off by radius^1.5 * 1e-14 near their
/// extrema; and beyond the second all of the outline, as even their ends are not sure.
constexpr double largeArc = 2e4, largestArc = 1e6;

/// Pins are often a few pels wide, for which a call costs more than the bytes.
void setBytes(unsigned char *to, std::size_t n, unsigned char value)
{
  if (n < 8 || n > 16) {
    std::memset(to, value, n);
    return;
  }
  std::uint64_t const eight = value * std::uint64_t{0x0101010101010101};
  std::memcpy(to, &eight, 8);
  std::memcpy(to + n - 8, &eight, 8);
}

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
    setBytes(row + (a - wl), static_cast<std::size_t>(b - a), value_);
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

/// The pieces of an outline in an image, each as it rises or falls through the rows: bands of rows that meet the same
/// pieces, and the columns where they cross the centres of these rows.
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
      else if (!addArc(Private::roundedArcSegment_(poly_, i)))
        return false;
      if (vertices[v].vertexRadius() != 0.0 && Private::vertexIsRounded_(poly_, i) &&
          !addArc(Private::roundedArcVertex_(poly_, i)))
        return false;
    }
    return true;
  }

  /// Calls visit(first row, number of rows, columns, all alike) for each band. The columns of each piece stand
  /// together; the pieces may be put into another order. Those of all rows are alike if no piece leaves its column.
  template <class Visit>
  void visitBands(Visit visit)
  {
    // The rows where a band begins, and the pieces that do: a chain for each row.
    std::vector<char> isStart(static_cast<std::size_t>(numRows_) + 1, 0);
    std::vector<Piece const *> chains(isStart.size(), nullptr);
    for (Piece &piece : pieces_) {
      auto const first = static_cast<std::size_t>(piece.first);
      isStart[first] = isStart[static_cast<std::size_t>(piece.last) + 1] = 1;
      piece.next = std::exchange(chains[first], &piece);
    }
    auto const last = static_cast<std::int32_t>(numRows_);
    auto const startFrom = [&](std::int32_t row) {
      auto const from = static_cast<std::size_t>(row);
      void const *const found = std::memchr(isStart.data() + from, 1, isStart.size() - from);
      return found ? static_cast<std::int32_t>(static_cast<char const *>(found) - isStart.data()) : last;
    };
    std::vector<Piece> active;
    std::vector<std::int32_t const *> rows;
    for (std::int32_t begin = startFrom(0), end = 0; begin < last; begin = end) {
      end = startFrom(begin + 1);
      active.erase(std::remove_if(active.begin(), active.end(), [&](Piece const &p) { return p.last < begin; }),
                   active.end());
      for (Piece const *p = chains[static_cast<std::size_t>(begin)]; p; p = p->next)
        active.push_back(*p);
      if (active.empty())
        continue;
      std::size_t const n = static_cast<std::size_t>(end - begin);
      columns_.resize(std::max(columns_.size(), active.size() * n));
      rows.clear();
      bool alike = true;
      for (Piece const &piece : active) {
        std::int32_t *const columns = columns_.data() + rows.size() * n;
        alike &= cross(piece, begin, end, columns);
        rows.push_back(columns);
      }
      visit(begin, n, rows, alike);
    }
  }

  /// True if the row is left to the exact rule.
  bool isExact(long row) const { return isExact_[static_cast<std::size_t>(row)] != 0; }
  void leaveToRule(long row) { isExact_[static_cast<std::size_t>(row)] = 1; }

 private:
  /// At height h above `middle` the column is x + slope * h + bow * sqrt(1 - (h / radius)^2). A line has no bow.
  struct Piece {
    std::int32_t first, last;  ///< rows, from the first one of the window
    double middle, x, slope, bow, perRadius;
    Piece const *next = nullptr;  ///< that begins at the same row
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

  /// Rows whose centres lie between two heights, or come near to that, are left to the exact rule.
  void mark(double top, double bottom)
  {
    long const from = std::max<long>(gfICeil(top - nearEnd - 0.5) - first_, 0);
    long const to = std::min<long>(gfIFloor(bottom + nearEnd - 0.5) - first_, numRows_ - 1);
    for (long row = from; row <= to; ++row)
      isExact_[static_cast<std::size_t>(row)] = 1;
  }

  /// A piece between two heights, on the rows that are not left to the exact rule for its ends.
  void add(double top, double bottom, Piece piece)
  {
    double const toRow = 0.5 + static_cast<double>(first_);
    auto const lastRowAbove = [&](double height) { return static_cast<long>(gfIFloor(height - toRow + nearEnd)); };
    auto const isNear = [&](long row, double height) { return static_cast<double>(row) >= height - toRow - nearEnd; };
    long const from = lastRowAbove(top), to = lastRowAbove(bottom);
    bool const endsNear = isNear(to, bottom);
    if (isNear(from, top))
      leaveToRuleIfSeen(from);
    if (endsNear)
      leaveToRuleIfSeen(to);
    piece.first = static_cast<std::int32_t>(std::max<long>(from + 1, 0));
    piece.last = static_cast<std::int32_t>(std::min<long>(endsNear ? to - 1 : to, numRows_ - 1));
    piece.middle -= toRow;
    if (piece.first <= piece.last)
      pieces_.push_back(piece);
  }
  void leaveToRuleIfSeen(long row)
  {
    if (row >= 0 && row < numRows_)
      leaveToRule(row);
  }

  void addLine(Point a, Point b)
  {
    if (a.y() > b.y())
      std::swap(a, b);
    double const dx = b.x() - a.x(), dy = b.y() - a.y();
    if (std::abs(dx) > flattest * dy)
      mark(a.y(), b.y());
    else
      add(a.y(), b.y(), {0, 0, a.y(), a.x(), dx / dy, 0.0, 0.0});
  }

  // The image of the arc is C + U cos t + V sin t. Seen from the angle where it is highest, its height is a cosine.
  // False if it is too large to be sure of anything.
  bool addArc(gx2SegmentArc const &arc)
  {
    Point const center = arc.center(), c = map_.mapPoint(center);
    double const radius = arc.p1().distance(center);
    Point const u = map_.mapVector(Point(radius, 0.0)), v = map_.mapVector(Point(0.0, radius));
    double const size = std::max({std::abs(u.x()), std::abs(u.y()), std::abs(v.x()), std::abs(v.y())});
    if (!(size < largestArc))
      return false;
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
      if (size > largeArc)
        mark(std::min(y0, y1), std::max(y0, y1));
      else
        add(std::min(y0, y1), std::max(y0, y1), {0, 0, c.y(), c.x(), slope, isEven ? bow : -bow, 1.0 / height});
    }
    return true;
  }

  struct Rounded {
    std::int32_t column;
    bool isClear;
  };
  /// By cutting off, which is the floor above the lowest column that there is.
  static Rounded rounded(double x)
  {
    constexpr double shift = 2.0 * tame;
    double const shifted = x + (0.5 + shift);
    auto const whole = static_cast<std::int32_t>(shifted);
    double const rest = shifted - static_cast<double>(whole);
    return {whole - static_cast<std::int32_t>(shift), std::abs(rest - 0.5) <= 0.5 - unclear};
  }

  /// True if the column is the same on all rows.
  bool cross(Piece const &piece, std::int32_t begin, std::int32_t end, std::int32_t *columns)
  {
    auto const put = [&](std::int32_t row, double x) {
      Rounded const r = rounded(x);
      columns[row - begin] = r.column;
      if (!r.isClear)
        isExact_[static_cast<std::size_t>(row)] = 1;
    };
    if (piece.perRadius == 0.0) {
      auto const at = [&](std::int32_t row) {
        return piece.x + piece.slope * (static_cast<double>(row) - piece.middle);
      };
      Rounded const first = rounded(at(begin)), last = rounded(at(end - 1));
      if (first.isClear && last.isClear && first.column == last.column) {
        std::fill_n(columns, end - begin, first.column);
        return true;
      }
      for (std::int32_t row = begin; row < end; ++row)
        put(row, at(row));
      return false;
    }
    for (std::int32_t row = begin; row < end; ++row) {
      double const h = static_cast<double>(row) - piece.middle, t = h * piece.perRadius;
      put(row, piece.x + piece.slope * h + piece.bow * std::sqrt(std::max(0.0, 1.0 - t * t)));
    }
    return false;
  }

  gxSMDGDPoly const &poly_;
  gxXform<2> const &map_;
  long const first_, numRows_;
  std::vector<Piece> pieces_;
  std::vector<char> isExact_;
  std::vector<std::int32_t> columns_;  ///< of one band
};

// The row of the exact rule ends 5 pels beyond the sharp outline; what a fillet has further out is not on it.
// Between columns that are clear of each other the inside is where an odd number of pieces lies to the left. Where two
// pieces share a column, the exact rule takes a middle that is known to a pel only, so the next run must be wider.
bool gx_SyntheticFill::isClear(std::vector<std::int32_t> const &columns) const
{
  std::size_t const n = columns.size();
  if (n == 0 || n % 2 || columns.front() <= left_ || columns.back() >= right_)
    return false;
  if (n == 2)
    return true;
  bool share = false, narrow = false;
  for (std::size_t i = 1; i < n; ++i) {
    std::int32_t const gap = columns[i] - columns[i - 1];
    share |= gap == 0;
    narrow |= gap == 1 || gap == 2;
  }
  return !(share && narrow);
}

void gx_SyntheticFill::findRuns(std::vector<std::int32_t> const &columns, std::vector<Run> &runs) const
{
  runs.clear();
  auto const wl = static_cast<std::int32_t>(window_.window().x());
  auto const width = static_cast<std::int32_t>(window_.width());
  for (std::size_t i = 1; i < columns.size(); i += 2) {
    std::int32_t const from = std::max(columns[i - 1] - wl, 0), to = std::min(columns[i] - wl, width);
    if (from < to)
      runs.push_back({from, to - from});
  }
}

/// Puts the pieces in the order of their columns on a row, which is nearly that on the row before, and notes these.
void gx_SyntheticFill::sortPieces(std::vector<std::int32_t const *> &pieces, std::size_t row,
                                  std::vector<std::int32_t> &columns)
{
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    std::int32_t const *const piece = pieces[i];
    std::int32_t const column = piece[row];
    std::size_t k = i;
    for (; k > 0 && columns[k - 1] > column; --k) {
      columns[k] = columns[k - 1];
      pieces[k] = pieces[k - 1];
    }
    columns[k] = column;
    pieces[k] = piece;
  }
}

void gx_SyntheticFill::fill()
{
  long const first = window_.window().y(), numRows = window_.height(), step = window_.rowStep();
  unsigned char *const pels = window_.pointToRow(first);
  Pieces pieces(poly_, map_, first, numRows);
  bool const isSure = pieces.find();
  std::vector<std::int32_t> columns;
  std::vector<Run> runs;
  if (isSure)
    pieces.visitBands([&](long begin, std::size_t n, std::vector<std::int32_t const *> &rows, bool alike) {
      columns.resize(rows.size());
      bool isKnown = false, clear = false;  // of the row before
      for (std::size_t r = 0; r < n; ++r) {
        long const row = begin + static_cast<long>(r);
        if (pieces.isExact(row))
          continue;
        if (!isKnown) {
          sortPieces(rows, r, columns);
          clear = isClear(columns);
          findRuns(columns, runs);
        }
        isKnown = alike;
        if (!clear) {
          pieces.leaveToRule(row);
          continue;
        }
        unsigned char *const at = pels + row * step;
        for (Run const &run : runs)
          setBytes(at + run.from, static_cast<std::size_t>(run.length), value_);
      }
    });
  for (long row = 0; row < numRows; ++row)
    if (!isSure || pieces.isExact(row)) {
      fillRow(first + row);
      ++numExact_;
    }
}
