#pragma once

#include <cstdio>
#include <cstdlib>

/// Ends a fuzz target, saying what does not hold, so that its input is kept.
inline void expect(bool condition, char const *what)
{
  if (condition)
    return;
  std::fprintf(stderr, "%s\n", what);
  std::abort();
}
