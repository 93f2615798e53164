#pragma once

#include "foundation/export.h"

#include <compare>
#include <numbers>
#include <ostream>

class gxDegree;

/// Full turn in radians and in degrees.
inline constexpr double gf_turnRadians = 2.0 * std::numbers::pi;
inline constexpr double gf_turnDegrees = 360.0;

/// An angle in radians: a plain number that says its unit. Converts implicitly to and from gxDegree, so that an
/// operation may ask for the unit that it works in.
class gxRadian
{
 public:
  constexpr gxRadian() = default;
  constexpr explicit gxRadian(double value) : value_(value) {}
  constexpr gxRadian(gxDegree d);  // NOLINT(google-explicit-constructor): a change of unit keeps the angle

  constexpr double value() const { return value_; }

  /// The equal angle in [0, 2 pi). A value just below 0 that would round to 2 pi gives 0; NaN and infinity give NaN.
  GX_API gxRadian norm() const;
  /// The equal angle in (-pi, pi].
  GX_API gxRadian signedNorm() const;

  friend constexpr auto operator<=>(gxRadian, gxRadian) = default;
  constexpr gxRadian operator-() const { return gxRadian(-value_); }
  friend constexpr gxRadian operator+(gxRadian a, gxRadian b) { return gxRadian(a.value_ + b.value_); }
  friend constexpr gxRadian operator-(gxRadian a, gxRadian b) { return gxRadian(a.value_ - b.value_); }
  friend constexpr gxRadian operator*(gxRadian a, double f) { return gxRadian(a.value_ * f); }
  friend constexpr gxRadian operator*(double f, gxRadian a) { return a * f; }
  friend constexpr gxRadian operator/(gxRadian a, double f) { return gxRadian(a.value_ / f); }
  friend constexpr double operator/(gxRadian a, gxRadian b) { return a.value_ / b.value_; }
  constexpr gxRadian &operator+=(gxRadian b) { return *this = *this + b; }
  constexpr gxRadian &operator-=(gxRadian b) { return *this = *this - b; }

 private:
  double value_ = 0.0;
};

/// An angle in degrees; see gxRadian.
class gxDegree
{
 public:
  constexpr gxDegree() = default;
  constexpr explicit gxDegree(double value) : value_(value) {}
  constexpr gxDegree(gxRadian r);  // NOLINT(google-explicit-constructor): a change of unit keeps the angle

  constexpr double value() const { return value_; }

  /// The equal angle in [0, 360). A value just below 0 that would round to 360 gives 0; NaN and infinity give NaN.
  GX_API gxDegree norm() const;
  /// The equal angle in (-180, 180].
  GX_API gxDegree signedNorm() const;

  friend constexpr auto operator<=>(gxDegree, gxDegree) = default;
  constexpr gxDegree operator-() const { return gxDegree(-value_); }
  friend constexpr gxDegree operator+(gxDegree a, gxDegree b) { return gxDegree(a.value_ + b.value_); }
  friend constexpr gxDegree operator-(gxDegree a, gxDegree b) { return gxDegree(a.value_ - b.value_); }
  friend constexpr gxDegree operator*(gxDegree a, double f) { return gxDegree(a.value_ * f); }
  friend constexpr gxDegree operator*(double f, gxDegree a) { return a * f; }
  friend constexpr gxDegree operator/(gxDegree a, double f) { return gxDegree(a.value_ / f); }
  friend constexpr double operator/(gxDegree a, gxDegree b) { return a.value_ / b.value_; }
  constexpr gxDegree &operator+=(gxDegree b) { return *this = *this + b; }
  constexpr gxDegree &operator-=(gxDegree b) { return *this = *this - b; }

 private:
  double value_ = 0.0;
};

constexpr gxRadian::gxRadian(gxDegree d) : value_(d.value() * (std::numbers::pi / 180.0)) {}
constexpr gxDegree::gxDegree(gxRadian r) : value_(r.value() * (180.0 / std::numbers::pi)) {}

inline std::ostream &operator<<(std::ostream &os, gxRadian a)
{
  return os << a.value() << " rad";
}
inline std::ostream &operator<<(std::ostream &os, gxDegree a)
{
  return os << a.value() << " deg";
}

/// A closed interval of numbers.
class gxRange
{
 public:
  constexpr gxRange() = default;
  constexpr gxRange(double first, double last) : first_(first), last_(last) {}

  constexpr double start() const { return first_; }
  constexpr double end() const { return last_; }
  /// True for first <= v <= last; an interval whose end lies below its start holds nothing, nor does any hold NaN.
  constexpr bool isWithin(double v) const { return first_ <= v && v <= last_; }

 private:
  double first_ = 0.0;
  double last_ = 0.0;
};

/// A closed range of directions: from a start angle through a span. A positive span runs towards growing angles, a
/// negative one towards falling ones; a span of a full turn or more holds every direction.
class GX_API gxAngleRange
{
 public:
  gxAngleRange() = default;
  gxAngleRange(gxRadian start, gxRadian span) : start_(start), span_(span) {}

  gxRadian start() const { return start_; }
  gxRadian span() const { return span_; }
  /// True if the direction @p a, whatever full turns it carries, lies within the range, ends included, up to the
  /// rounding of the numbers that state it. Nothing lies within a range of NaN.
  bool isWithin(gxRadian const &a) const;

 private:
  gxRadian start_;
  gxRadian span_;
};
