#pragma once

#include "foundation/export.h"
#include "foundation/matrix.h"
#include "foundation/vector.h"

/// The translation and the matrix that numeric routines exchange, in this order.
struct gxm_xformLinear {
  gxm_vect translation;
  double a = 1.0, b = 0.0, c = 0.0, d = 1.0;
};

template <int N>
class gxXform;

/// A linear map of the plane: matrix times point plus translation.
///
/// @code
/// gxXform<2> const zoom(gxMatrix<2>(2, 0, 0, 2), gxVector<2>(10, 20));
/// zoom * gxVector<2>(1, 1);   // (12, 22)
/// @endcode
template <>
class GX_API gxXform<2>
{
 public:
  /// The identity.
  constexpr gxXform() = default;
  constexpr gxXform(gxMatrix<2> const &matrix, gxVector<2> const &translation)
      : translation_(translation), matrix_(matrix)
  {
  }
  constexpr explicit gxXform(gxm_xformLinear const &x) : translation_(x.translation), matrix_(x.a, x.b, x.c, x.d) {}

  /// The identity.
  static gxXform const I;

  constexpr gxMatrix<2> const &matrix() const { return matrix_; }
  constexpr void matrix(gxMatrix<2> const &m) { matrix_ = m; }
  constexpr gxVector<2> const &translation() const { return translation_; }
  constexpr void translation(gxVector<2> const &t) { translation_ = t; }

  constexpr gxVector<2> mapPoint(gxVector<2> const &p) const { return matrix_ * p + translation_; }
  /// Throws gxMathError::Singular if the matrix has no inverse.
  gxVector<2> invMapPoint(gxVector<2> const &p) const;
  /// Matrix only.
  constexpr gxVector<2> mapVector(gxVector<2> const &v) const { return matrix_ * v; }
  /// Direction of the image of a vector in the direction @p a.
  gxRadian mapAngle(gxRadian a) const;
  /// Throws gxMathError::Singular if the matrix has no inverse.
  gxRadian invMapAngle(gxRadian a) const;
  /// Throws gxMathError::Singular if the matrix has no inverse.
  gxXform inverse() const;
  /// Exactly the identity, element by element.
  constexpr bool isIdentity() const { return matrix_.isIdentity() && translation_ == gxVector<2>(); }

  friend constexpr bool operator==(gxXform const &a, gxXform const &b)
  {
    return a.translation_ == b.translation_ && a.matrix_ == b.matrix_;
  }
  friend constexpr gxVector<2> operator*(gxXform const &x, gxVector<2> const &p) { return x.mapPoint(p); }
  /// Composition: b is applied first.
  friend constexpr gxXform operator*(gxXform const &a, gxXform const &b)
  {
    return {a.matrix_ * b.matrix_, a.mapPoint(b.translation_)};
  }

 private:
  gxVector<2> translation_;
  gxMatrix<2> matrix_;
};

static_assert(sizeof(gxXform<2>) == 56);

inline constexpr gxXform<2> gxXform<2>::I{};

inline std::ostream &operator<<(std::ostream &os, gxXform<2> const &x)
{
  return os << x.matrix() << " + " << x.translation();
}
