#include "footprint/detail/chains.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <optional>

namespace gx_shapes
{

namespace
{

/// Finds the pieces that have an end at a place, without looking at all of them: the ends lie in columns as wide as
/// the tolerance, and in the order of their heights in each.
class Ends
{
 public:
  Ends(std::vector<Piece> const &pieces, double tolerance)
      : pieces_(pieces), tolerance_(tolerance), column_(tolerance > 1e-9 ? tolerance : 1e-9), isTaken_(pieces.size())
  {
    for (std::size_t i = 0; i < pieces.size(); ++i) {
      if (pieces[i].start == pieces[i].end) {
        isTaken_[i] = true;
        continue;
      }
      ends_.push_back({columnOf(pieces[i].start), pieces[i].start.y(), i});
      ends_.push_back({columnOf(pieces[i].end), pieces[i].end.y(), i});
    }
    std::sort(ends_.begin(), ends_.end());
    next_.resize(ends_.size() + 1);
    std::iota(next_.begin(), next_.end(), std::size_t(0));
  }

  bool near(gxVector<2> const &a, gxVector<2> const &b) const
  {
    gxVector<2> const d = a - b;
    return d * d <= tolerance_ * tolerance_;
  }

  bool isTaken(std::size_t piece) const { return isTaken_[piece]; }
  Piece const &take(std::size_t piece)
  {
    isTaken_[piece] = true;
    return pieces_[piece];
  }

  /// The piece that goes on from a place, in that direction, which is taken. Of several the first one.
  std::optional<Piece> takeNext(gxVector<2> const &from)
  {
    constexpr int most = 64;  // where so many meet, any of them will do
    std::size_t best = pieces_.size();
    double const column = columnOf(from);
    for (double const c : {column - 1.0, column, column + 1.0}) {
      End const lowest{c, from.y() - tolerance_, 0};
      auto const first = std::lower_bound(ends_.begin(), ends_.end(), lowest);
      int looked = 0;
      for (std::size_t i = untaken(static_cast<std::size_t>(first - ends_.begin())); i < ends_.size() && looked < most;
           i = untaken(i + 1), ++looked) {
        End const &e = ends_[i];
        if (e.column != c || e.y > from.y() + tolerance_)
          break;
        if (near(pieces_[e.piece].start, from) || near(pieces_[e.piece].end, from))
          best = std::min(best, e.piece);
      }
    }
    if (best == pieces_.size())
      return {};
    Piece const piece = take(best);
    return near(piece.start, from) ? piece : piece.reversed();
  }

 private:
  struct End {
    double column, y;
    std::size_t piece;

    bool operator<(End const &o) const
    {
      return column != o.column ? column < o.column : y != o.y ? y < o.y : piece < o.piece;
    }
  };

  double columnOf(gxVector<2> const &p) const { return std::floor(p.x() / column_); }

  /// The first end from here on whose piece is free. What has been passed over is passed over at once from then on.
  std::size_t untaken(std::size_t i)
  {
    std::size_t found = i;
    while (found < ends_.size() && (next_[found] != found || isTaken_[ends_[found].piece]))
      found = std::max(next_[found], found + (next_[found] == found));
    while (i < found) {
      std::size_t const after = std::max(next_[i], i + 1);
      next_[i] = found;
      i = after;
    }
    return found;
  }

  std::vector<Piece> const &pieces_;
  double const tolerance_, column_;
  std::vector<bool> isTaken_;
  std::vector<End> ends_;
  std::vector<std::size_t> next_;  ///< for an end whose piece is taken, one behind it, up to the next free one
};

}  // namespace

std::vector<Chain> joined(std::vector<Piece> const &pieces, double tolerance)
{
  std::vector<Chain> chains;
  Ends ends(pieces, tolerance);
  std::vector<Piece> before;
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    if (ends.isTaken(i))
      continue;
    Chain chain;
    chain.pieces = {ends.take(i)};
    before.clear();
    auto const startOf = [&]() -> Piece const & { return before.empty() ? chain.pieces.front() : before.back(); };
    auto const closes = [&] {
      return chain.pieces.size() + before.size() > 1 && ends.near(chain.pieces.back().end, startOf().start);
    };
    while (!closes()) {
      if (auto const next = ends.takeNext(chain.pieces.back().end))
        chain.pieces.push_back(*next);
      else if (auto const previous = ends.takeNext(startOf().start))
        before.push_back(previous->reversed());
      else
        break;
    }
    chain.closes = closes();
    chain.pieces.insert(chain.pieces.begin(), before.rbegin(), before.rend());
    chains.push_back(std::move(chain));
  }
  return chains;
}

}  // namespace gx_shapes
