#pragma once

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <list>
#include <stdexcept>

/// The children of a node, in order, not owned. In a copy of the list all entries are *borrowed*: they stand there for
/// the reader, but belong to the node of the original, and may be gone when the copy ends. The entries that a node put
/// in itself are its own; it tells them when it goes.
template <class T>
class gx_LinkList
{
 public:
  using List = std::list<T *>;
  using iterator = typename List::iterator;
  using const_iterator = typename List::const_iterator;

  gx_LinkList() = default;
  gx_LinkList(gx_LinkList const &l) : entries_(l.entries_), borrowed_(entries_.size()) {}
  gx_LinkList &operator=(gx_LinkList const &l)
  {
    if (this != &l) {
      entries_ = l.entries_;
      borrowed_ = entries_.size();
    }
    return *this;
  }

  List const &entries() const { return entries_; }
  bool empty() const { return entries_.empty(); }
  const_iterator begin() const { return entries_.begin(); }
  const_iterator end() const { return entries_.end(); }
  iterator end() { return entries_.end(); }
  /// First of the node's own entries.
  const_iterator ownBegin() const { return std::next(begin(), static_cast<std::ptrdiff_t>(borrowed_)); }
  iterator ownBegin() { return std::next(entries_.begin(), static_cast<std::ptrdiff_t>(borrowed_)); }

  /// Throws std::length_error "list<T> too long" if there is no room for one more entry. Called before links change
  /// elsewhere, so that nothing is half done.
  void checkGrowth() const
  {
    if (entries_.size() >= entries_.max_size())
      throw std::length_error("list<T> too long");
  }
  /// Puts an own entry in front of @p before, which is end() or an own entry.
  iterator insert(iterator before, T *entry)
  {
    checkGrowth();
    return entries_.insert(before, entry);
  }
  /// Moves an own entry in front of @p before; the iterator stays good.
  void moveTo(iterator before, iterator entry) { entries_.splice(before, entries_, entry); }
  void erase(iterator own) { entries_.erase(own); }
  /// Takes out every entry equal to @p entry.
  void remove(T *entry)
  {
    borrowed_ -= static_cast<std::size_t>(std::count(entries_.begin(), ownBegin(), entry));
    entries_.remove(entry);
  }
  void clear()
  {
    entries_.clear();
    borrowed_ = 0;
  }

 private:
  List entries_;
  std::size_t borrowed_ = 0;  ///< number of leading entries that are borrowed
};
