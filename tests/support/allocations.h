#pragma once

/// @file
/// Counts what a test program allocates. Include it in one source of a program: it replaces the operators.

#include <cstdlib>
#include <new>

inline long allocations = 0;  ///< calls of operator new so far

void *operator new(std::size_t n)
{
  ++allocations;
  if (void *const p = std::malloc(n ? n : 1))
    return p;
  throw std::bad_alloc();
}
void operator delete(void *p) noexcept
{
  std::free(p);
}
void operator delete(void *p, std::size_t) noexcept
{
  std::free(p);
}
