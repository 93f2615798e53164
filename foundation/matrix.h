#pragma once

#include "foundation/angle.h"
#include "foundation/export.h"
#include "foundation/vector.h"

template <int N>
class gxMatrix;

/// A 2 x 2 matrix of doubles with rows (a b) and (c d), which keeps its determinant.
///
/// Beside its elements it can be told by two rotations and two scales: a = xs cos xr, b = -ys sin yr,
/// c = xs sin xr, d = ys cos yr; that is, the x axis turns by xr and stretches by xs, the y axis by yr and ys.
template <>
class GX_API gxMatrix<2>
{
 public:
  /// The identity.
  constexpr gxMatrix() = default;
  constexpr gxMatrix(double a, double b, double c, double d) : a_(a), b_(b), c_(c), d_(d), det_(a * d - b * c) {}
  gxMatrix(gxRadian xRot, gxRadian yRot, double xScale, double yScale);

  /// Element of row and column 0 or 1.
  constexpr double element(int row, int col) const { return row == 0 ? (col == 0 ? a_ : b_) : (col == 0 ? c_ : d_); }
  constexpr void element(int row, int col, double v)
  {
    (row == 0 ? (col == 0 ? a_ : b_) : (col == 0 ? c_ : d_)) = v;
    setdt();
  }
  constexpr double det() const { return det_; }

  /// Throws gxMathError::Singular if the determinant is exactly 0 or not finite; no tolerance.
  gxMatrix inverse() const;
  /// Overall scale: the square root of the absolute determinant.
  double scale() const;
  /// Direction of the image of the x axis: atan2(c, a).
  gxRadian xRot() const;
  /// Turn of the y axis: atan2(-b, d).
  gxRadian yRot() const;
  constexpr bool isIdentity() const { return a_ == 1.0 && b_ == 0.0 && c_ == 0.0 && d_ == 1.0; }

  friend constexpr bool operator==(gxMatrix const &m, gxMatrix const &n)
  {
    return m.a_ == n.a_ && m.b_ == n.b_ && m.c_ == n.c_ && m.d_ == n.d_;
  }
  friend constexpr gxVector<2> operator*(gxMatrix const &m, gxVector<2> v)
  {
    return {m.a_ * v.x() + m.b_ * v.y(), m.c_ * v.x() + m.d_ * v.y()};
  }
  /// Matrix product: n is applied first.
  friend constexpr gxMatrix operator*(gxMatrix const &m, gxMatrix const &n)
  {
    return {m.a_ * n.a_ + m.b_ * n.c_, m.a_ * n.b_ + m.b_ * n.d_, m.c_ * n.a_ + m.d_ * n.c_, m.c_ * n.b_ + m.d_ * n.d_};
  }

 private:
  constexpr void setdt() { det_ = a_ * d_ - b_ * c_; }

  double a_ = 1.0;
  double b_ = 0.0;
  double c_ = 0.0;
  double d_ = 1.0;
  double det_ = 1.0;
};

static_assert(sizeof(gxMatrix<2>) == 40);

/// Element by element, as for vectors.
inline bool gfRealEq(gxMatrix<2> const &m, gxMatrix<2> const &n, double tol)
{
  return gfRealEq(m.element(0, 0), n.element(0, 0), tol) && gfRealEq(m.element(0, 1), n.element(0, 1), tol) &&
         gfRealEq(m.element(1, 0), n.element(1, 0), tol) && gfRealEq(m.element(1, 1), n.element(1, 1), tol);
}

inline std::ostream &operator<<(std::ostream &os, gxMatrix<2> const &m)
{
  return os << "[[" << m.element(0, 0) << ", " << m.element(0, 1) << "], [" << m.element(1, 0) << ", "
            << m.element(1, 1) << "]]";
}
