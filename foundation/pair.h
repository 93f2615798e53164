#pragma once

#include "foundation/numbers.h"

#include <cstdint>
#include <ostream>
#include <type_traits>

/// Two numbers, x and y: a position or a size. `gxPair<long>` counts pels and keeps 32 bits of each number, since
/// that is what is stored and recorded; its arithmetic wraps. `gxPair<double>` keeps doubles.
///
/// @code
/// gxPair<long> const size(640, 480);
/// gxPair<double> const middle = gxPair<double>(size) * 0.5;
/// @endcode
template <class T>
class gxPair
{
 public:
  /// (0, 0).
  constexpr gxPair() = default;
  constexpr gxPair(T x, T y) : x_(store(x)), y_(store(y)) {}
  /// From a pair of another number type; from doubles to `long` by truncation that saturates (NaN gives 0).
  template <class U>
  constexpr explicit gxPair(gxPair<U> const &p) : x_(convert(p.x())), y_(convert(p.y()))
  {
  }

  constexpr T x() const { return x_; }
  constexpr T y() const { return y_; }
  constexpr void x(T v) { x_ = store(v); }
  constexpr void y(T v) { y_ = store(v); }

  friend constexpr gxPair operator+(gxPair a, gxPair b) { return {a.x() + b.x(), a.y() + b.y()}; }
  friend constexpr gxPair operator-(gxPair a, gxPair b) { return {a.x() - b.x(), a.y() - b.y()}; }
  constexpr gxPair operator-() const { return {-x(), -y()}; }
  friend constexpr gxPair operator*(gxPair a, T f) { return {a.x() * f, a.y() * f}; }
  friend constexpr gxPair operator*(T f, gxPair a) { return a * f; }
  constexpr gxPair &operator+=(gxPair b) { return *this = *this + b; }
  constexpr gxPair &operator-=(gxPair b) { return *this = *this - b; }
  /// Exact, number by number.
  friend constexpr bool operator==(gxPair a, gxPair b) { return a.x_ == b.x_ && a.y_ == b.y_; }

 private:
  using Stored = std::conditional_t<std::is_same_v<T, long>, std::int32_t, T>;

  static constexpr Stored store(T v)
  {
    if constexpr (std::is_same_v<T, long>)
      return gf_narrow(v);
    else
      return v;
  }
  template <class U>
  static constexpr Stored convert(U v)
  {
    if constexpr (std::is_floating_point_v<U> && std::is_same_v<T, long>)
      return gf_truncate(static_cast<double>(v));
    else
      return store(static_cast<T>(v));
  }

  Stored x_ = 0;
  Stored y_ = 0;
};

static_assert(sizeof(gxPair<long>) == 8 && sizeof(gxPair<double>) == 16);

template <class T>
std::ostream &operator<<(std::ostream &os, gxPair<T> const &p)
{
  return os << '(' << p.x() << ", " << p.y() << ')';
}
