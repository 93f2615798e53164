#include "footprint/detail/chains.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <tuple>

namespace gx_shapes
{

namespace
{

using Point = gxVector<2>;

/// Places where ends meet, numbered. The number of the place of the start of piece i is element 2 i, that of its end
/// element 2 i + 1.
///
/// The ends lie in columns as wide as the tolerance, in the order of their heights in each; so do the places that are
/// made of them, and a look at two columns finds those nearby.
std::vector<std::size_t> placesOf(std::vector<Piece> const &pieces, double tolerance)
{
  struct End {
    double column;
    Point at;
    std::size_t number;

    bool operator<(End const &o) const { return std::tuple(column, at.y()) < std::tuple(o.column, o.at.y()); }
  };
  double const reach = tolerance > 1e-9 ? tolerance : 1e-9;
  std::vector<End> ends, places;
  ends.reserve(2 * pieces.size());
  for (std::size_t i = 0; i < pieces.size(); ++i)
    for (Point const &p : {pieces[i].start, pieces[i].end})
      ends.push_back({std::floor(p.x() / reach), p, ends.size()});
  std::sort(ends.begin(), ends.end());
  std::vector<std::size_t> result(ends.size());
  for (End const &end : ends) {
    std::size_t best = places.size();
    double nearest = reach * reach;
    for (double const column : {end.column - 1.0, end.column}) {
      auto i = std::lower_bound(places.begin(), places.end(), End{column, {0.0, end.at.y() - reach}, 0});
      for (; i != places.end() && i->column == column && i->at.y() <= end.at.y() + reach; ++i) {
        Point const d = i->at - end.at;
        if (d * d <= nearest) {
          nearest = d * d;
          best = static_cast<std::size_t>(i - places.begin());
        }
      }
    }
    if (best == places.size())
      places.push_back(end);
    result[end.number] = best;
  }
  return result;
}

/// Pieces as a graph of places.
class Graph
{
 public:
  Graph(std::vector<Piece> const &pieces, double tolerance)
      : pieces_(pieces), places_(placesOf(pieces, tolerance)), isUsed_(pieces.size()), hangs_(pieces.size())
  {
    std::size_t const n = places_.empty() ? 0 : *std::max_element(places_.begin(), places_.end()) + 1;
    first_.assign(n + 1, 0);
    for (std::size_t const place : places_)
      ++first_[place + 1];
    for (std::size_t i = 0; i < n; ++i)
      first_[i + 1] += first_[i];
    at_.resize(places_.size());
    std::vector<std::size_t> next(first_);
    for (std::size_t end = 0; end < places_.size(); ++end)
      at_[next[places_[end]]++] = end;
    free_ = first_;
    leaveOut();
    findHanging();
  }

  std::vector<Chain> chains()
  {
    std::vector<Chain> found;
    for (bool const hanging : {false, true})
      for (std::size_t i = 0; i < pieces_.size(); ++i)
        if (!isUsed_[i] && hangs_[i] == hanging)
          found.push_back(chainFrom(i, hanging));
    return found;
  }

 private:
  /// An end of a piece that others may follow, or that they may lead to.
  Piece leaving(std::size_t end) const { return end % 2 == 0 ? pieces_[end / 2] : pieces_[end / 2].reversed(); }

  /// Lines within the tolerance, what has no length, and lines and arcs that are drawn twice.
  void leaveOut()
  {
    std::vector<std::tuple<std::size_t, std::size_t, double, std::size_t>> keys;
    for (std::size_t i = 0; i < pieces_.size(); ++i) {
      std::size_t const a = places_[2 * i], b = places_[2 * i + 1];
      isUsed_[i] = a == b && (pieces_[i].span == 0.0 || pieces_[i].start == pieces_[i].end);
      // Arcs that differ by so little look the same.
      double const span = std::round((a < b ? pieces_[i].span : -pieces_[i].span) * 1e3);
      keys.emplace_back(std::min(a, b), std::max(a, b), span, i);
    }
    std::sort(keys.begin(), keys.end());
    for (std::size_t k = 1; k < keys.size(); ++k) {
      auto const &[a, b, span, i] = keys[k];
      auto const &[a0, b0, span0, i0] = keys[k - 1];
      if (a != b && a == a0 && b == b0 && span == span0)
        isUsed_[i] = true;
    }
  }

  /// Takes away what has a free end, until only rings are left and what connects them.
  void findHanging()
  {
    std::vector<std::size_t> degree(first_.size());
    for (std::size_t end = 0; end < places_.size(); ++end)
      degree[places_[end]] += !isUsed_[end / 2];
    std::vector<std::size_t> loose;
    for (std::size_t place = 0; place + 1 < first_.size(); ++place)
      if (degree[place] == 1)
        loose.push_back(place);
    while (!loose.empty()) {
      std::size_t const place = loose.back();
      loose.pop_back();
      for (std::size_t k = first_[place]; k < first_[place + 1]; ++k) {
        std::size_t const piece = at_[k] / 2;
        if (isUsed_[piece] || hangs_[piece])
          continue;
        hangs_[piece] = true;
        for (std::size_t const end : {2 * piece, 2 * piece + 1})
          if (--degree[places_[end]] == 1)
            loose.push_back(places_[end]);
      }
    }
  }

  static Point direction(Piece const &piece, bool atEnd)
  {
    Point const chord = (piece.end - piece.start).unit();
    double const half = gxRadian(gxDegree(piece.span)).value() * (atEnd ? 0.5 : -0.5), c = std::cos(half),
                 s = std::sin(half);
    return {c * chord.x() - s * chord.y(), s * chord.x() + c * chord.y()};
  }

  /// The end at a place from which a piece goes on, most nearly in a direction.
  std::optional<std::size_t> next(std::size_t place, Point const &along, bool hanging)
  {
    constexpr int most = 64;  // where so many meet, any of them will do
    std::optional<std::size_t> best;
    double straightest = -std::numeric_limits<double>::infinity();
    int looked = 0;
    while (free_[place] < first_[place + 1] && isUsed_[at_[free_[place]] / 2])
      ++free_[place];
    for (std::size_t k = free_[place]; k < first_[place + 1] && looked < most; ++k) {
      std::size_t const end = at_[k];
      if (isUsed_[end / 2] || hangs_[end / 2] != hanging)
        continue;
      ++looked;
      double const straight = direction(leaving(end), false) * along;
      if (straight > straightest + 1e-9) {
        straightest = straight;
        best = end;
      }
    }
    return best;
  }

  /// Goes on from an end of a piece, and takes what it passes. Ends at @p goal, or where nothing goes on.
  std::size_t follow(std::size_t place, std::optional<std::size_t> goal, bool hanging, std::vector<Piece> &way)
  {
    while (place != goal) {
      auto const end = next(place, direction(way.back(), true), hanging);
      if (!end)
        break;
      isUsed_[*end / 2] = true;
      way.push_back(leaving(*end));
      place = places_[*end ^ 1];
    }
    return place;
  }

  Chain chainFrom(std::size_t piece, bool hanging)
  {
    isUsed_[piece] = true;
    std::size_t const start = places_[2 * piece];
    Chain chain;
    chain.pieces = {pieces_[piece]};
    std::size_t const end = follow(places_[2 * piece + 1], start, hanging, chain.pieces);
    chain.closes = end == start && chain.pieces.size() > 1;
    if (!chain.closes) {
      std::vector<Piece> before = {pieces_[piece].reversed()};
      std::size_t const other = follow(start, end, hanging, before);
      chain.closes = other == end && before.size() > 1;
      std::vector<Piece> whole;
      for (std::size_t i = before.size(); i-- > 1;)
        whole.push_back(before[i].reversed());
      chain.pieces.insert(chain.pieces.begin(), whole.begin(), whole.end());
    }
    return chain;
  }

  std::vector<Piece> const &pieces_;
  std::vector<std::size_t> const places_;
  std::vector<bool> isUsed_, hangs_;
  std::vector<std::size_t> first_;  ///< for each place, its first element in at_
  std::vector<std::size_t> at_;     ///< ends, by their places
  std::vector<std::size_t> free_;   ///< for each place, the first element whose piece may be free
};

}  // namespace

std::vector<Chain> joined(std::vector<Piece> const &pieces, double tolerance)
{
  return Graph(pieces, tolerance).chains();
}

}  // namespace gx_shapes
