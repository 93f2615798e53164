#pragma once

#include "foundation/angle.h"
#include "foundation/pair.h"

#include <cmath>
#include <ostream>

/// The plain vector that numeric routines exchange.
struct gxm_vect {
  double x = 0.0;
  double y = 0.0;
};

template <int N>
class gxVector;

/// A vector of the plane in doubles; also a position, where its derived form gxPoint is not needed.
/// Comparison is exact, coordinate by coordinate.
template <>
class gxVector<2>
{
 public:
  constexpr gxVector() = default;
  constexpr gxVector(double x, double y) : x_(x), y_(y) {}
  constexpr gxVector(gxPair<double> const &p) : x_(p.x()), y_(p.y()) {}  // NOLINT(google-explicit-constructor)
  constexpr gxVector(gxPair<long> const &p)                              // NOLINT(google-explicit-constructor)
      : x_(static_cast<double>(p.x())), y_(static_cast<double>(p.y()))
  {
  }
  /// Polar: the vector of the given length in the given direction.
  gxVector(double length, gxRadian direction)
      : x_(length * std::cos(direction.value())), y_(length * std::sin(direction.value()))
  {
  }
  constexpr gxVector(gxm_vect v) : x_(v.x), y_(v.y) {}  // NOLINT(google-explicit-constructor)

  constexpr operator gxm_vect() const { return {x_, y_}; }  // NOLINT(google-explicit-constructor)
  constexpr explicit operator gxPair<double>() const { return {x_, y_}; }

  constexpr double x() const { return x_; }
  constexpr double y() const { return y_; }
  constexpr void x(double v) { x_ = v; }
  constexpr void y(double v) { y_ = v; }

  friend constexpr bool operator==(gxVector a, gxVector b) { return a.x_ == b.x_ && a.y_ == b.y_; }
  friend constexpr gxVector operator+(gxVector a, gxVector b) { return {a.x_ + b.x_, a.y_ + b.y_}; }
  friend constexpr gxVector operator-(gxVector a, gxVector b) { return {a.x_ - b.x_, a.y_ - b.y_}; }
  constexpr gxVector operator-() const { return {-x_, -y_}; }
  friend constexpr gxVector operator*(gxVector a, double f) { return {a.x_ * f, a.y_ * f}; }
  friend constexpr gxVector operator*(double f, gxVector a) { return a * f; }
  /// Dot product.
  friend constexpr double operator*(gxVector a, gxVector b) { return a.x_ * b.x_ + a.y_ * b.y_; }
  constexpr gxVector &operator+=(gxVector b) { return *this = *this + b; }
  constexpr gxVector &operator-=(gxVector b) { return *this = *this - b; }

  /// The z component of the cross product of this and @p b: positive if b lies towards growing angles.
  constexpr double cross(gxVector b) const { return x_ * b.y_ - y_ * b.x_; }
  /// Distance from this point to @p b.
  double distance(gxVector b) const { return (b - *this).len(); }
  double len() const { return std::hypot(x_, y_); }
  /// The vector of length 1 in this direction; the zero vector stays zero.
  gxVector unit() const
  {
    double const l = len();
    return l > 0.0 ? gxVector(x_ / l, y_ / l) : gxVector();
  }
  /// The direction, in (-pi, pi]; 0 for the zero vector.
  gxRadian angle() const { return gxRadian(std::atan2(y_, x_)); }
  /// True if both coordinates are finite.
  bool isFinite() const { return std::isfinite(x_) && std::isfinite(y_); }

 private:
  double x_ = 0.0;
  double y_ = 0.0;
};

static_assert(sizeof(gxVector<2>) == 16);

inline std::ostream &operator<<(std::ostream &os, gxVector<2> const &v)
{
  return os << '(' << v.x() << ", " << v.y() << ')';
}

/// True if the two numbers, and the two vectors coordinate by coordinate, differ by at most @p tol.
inline bool gfRealEq(double a, double b, double tol)
{
  return std::abs(a - b) <= tol;
}
inline bool gfRealEq(gxVector<2> const &a, gxVector<2> const &b, double tol)
{
  return gfRealEq(a.x(), b.x(), tol) && gfRealEq(a.y(), b.y(), tol);
}
