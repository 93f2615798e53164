#pragma once

#include <stdexcept>

/// Throws std::length_error "list<T> too long" if @p list has no room for one more entry. Called before an insertion
/// that changes links elsewhere, so that nothing is half done.
template <class List>
void gf_checkListGrowth(List const &list)
{
  if (list.size() >= list.max_size())
    throw std::length_error("list<T> too long");
}
