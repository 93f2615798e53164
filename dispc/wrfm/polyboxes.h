#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <vector>

/// Boxes round the pieces of an outline, and a tree over them: which pieces come near a place is found without looking
/// at all of them. The pieces stand in the order of the outline, so neighbours in the tree are neighbours in the plane,
/// and nothing needs sorting. A change of one piece costs log n, one more at the end the same in the long run.
class gx_PolyBoxes
{
 public:
  struct Box {
    double left = std::numeric_limits<double>::infinity(), bottom = left, right = -left, top = -left;

    static Box everything()
    {
      constexpr double far = std::numeric_limits<double>::infinity();
      return {-far, -far, far, far};
    }
    friend bool operator==(Box const &a, Box const &b)
    {
      return a.left == b.left && a.bottom == b.bottom && a.right == b.right && a.top == b.top;
    }
    void add(Box const &b)
    {
      left = std::min(left, b.left);
      bottom = std::min(bottom, b.bottom);
      right = std::max(right, b.right);
      top = std::max(top, b.top);
    }
    Box widened(double by) const { return {left - by, bottom - by, right + by, top + by}; }
    bool meets(Box const &b) const
    {
      return (left <= b.right) & (b.left <= right) & (bottom <= b.top) & (b.bottom <= top);
    }
  };

  /// True if the boxes of @p n pieces are known, and as they are now.
  bool areCurrent(std::size_t n) const { return n > 0 && n == size_ && numStale_ == 0; }
  /// Nothing is known any more.
  void clear() noexcept { size_ = numStale_ = 0; }
  /// Piece @p i has changed. A piece beyond the known ones is one more at the end.
  void markStale(std::size_t i) noexcept
  {
    if (size_ == 0 || std::find(stale_.begin(), stale_.begin() + numStale_, i) != stale_.begin() + numStale_)
      return;
    if (numStale_ == stale_.size())
      clear();
    else
      stale_[numStale_++] = i;
  }
  /// Brings the boxes of @p n pieces up to date; boxOf(i) tells one.
  template <class BoxOf>
  void refresh(std::size_t n, BoxOf boxOf);
  /// Calls visit(i) for the pieces up to @p last whose boxes meet that of piece @p i, in order, until it returns true.
  /// True if it did. Needs current boxes.
  template <class Visit>
  bool anyNear(std::size_t i, std::size_t last, Visit visit) const
  {
    return anyNear(nodes_[nodes_.size() / 2 + i], last, visit);
  }
  /// The same for those whose boxes meet @p near.
  template <class Visit>
  bool anyNear(Box near, std::size_t last, Visit visit) const;
  /// Round all pieces.
  Box const &whole() const { return nodes_[1]; }

 private:
  template <class BoxOf>
  void build(std::size_t n, BoxOf boxOf);
  void setLeaf(std::size_t i, Box const &box);
  Box joined(std::size_t node) const
  {
    Box box = nodes_[2 * node];
    box.add(nodes_[2 * node + 1]);
    return box;
  }

  // Node 1 is the root, those below node k are 2 k and 2 k + 1; leaf i is node room + i, where room is half their
  // number.
  std::vector<Box> nodes_;
  std::size_t size_ = 0;
  std::array<std::size_t, 32> stale_{};
  std::size_t numStale_ = 0;
};

template <class BoxOf>
void gx_PolyBoxes::build(std::size_t n, BoxOf boxOf)
{
  std::size_t room = 1;
  while (room < n)
    room *= 2;
  nodes_.assign(2 * room, Box());
  for (std::size_t i = 0; i < n; ++i)
    nodes_[room + i] = boxOf(i);
  for (std::size_t k = room; k-- > 1;)
    nodes_[k] = joined(k);
  size_ = n;
  numStale_ = 0;
}

inline void gx_PolyBoxes::setLeaf(std::size_t i, Box const &box)
{
  std::size_t k = nodes_.size() / 2 + i;
  Box now = box;
  while (k > 0 && !(nodes_[k] == now)) {
    nodes_[k] = now;
    k /= 2;
    if (k > 0)
      now = joined(k);
  }
}

template <class BoxOf>
void gx_PolyBoxes::refresh(std::size_t n, BoxOf boxOf)
{
  if (size_ == 0 || n > nodes_.size() / 2) {
    build(n, boxOf);
    return;
  }
  for (std::size_t i = n; i < size_; ++i)
    setLeaf(i, Box());
  for (std::size_t i = size_; i < n; ++i)
    setLeaf(i, boxOf(i));
  for (std::size_t k = 0; k < numStale_; ++k)
    if (std::size_t const i = stale_[k]; i < n && i < size_)
      setLeaf(i, boxOf(i));
  size_ = n;
  numStale_ = 0;
}

template <class Visit>
bool gx_PolyBoxes::anyNear(Box const near, std::size_t last, Visit visit) const
{
  std::size_t const room = nodes_.size() / 2, end = room + std::min(last, size_ - 1);
  std::size_t k = 1;
  for (;;) {
    if (nodes_[k].meets(near)) {
      if (k < room) {
        k *= 2;
        continue;
      }
      if (k > end)
        return false;
      if (visit(k - room))
        return true;
    }
    while (k & 1)  // a right child: what is below its parent is done
      k /= 2;
    if (k == 0)
      return false;
    ++k;
  }
}
