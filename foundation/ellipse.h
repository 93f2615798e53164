#pragma once

#include "foundation/angle.h"
#include "foundation/export.h"
#include "foundation/vector.h"
#include "foundation/xform.h"

#include <cstdint>
#include <ostream>

class gxArchive;
class gxCircle;
class gxRect;
struct gx_ArcPiece;

/// An ellipse as a plain value, no shape (see gxEllipse2 for that).
///
/// The point at t is center + R(angle) * (rx cos s, ry sin s) with s = t + phase, where R turns by the angle; on a
/// *reversed* ellipse, which a mirroring map makes, s = -(t + phase). The phase is 0 but for images under maps: there
/// it keeps the image of the point at t at t. It is no part of the record `geom()`.
class GX_API gxEllipse
{
 public:
  /// The record of an ellipse: 48 bytes that may be copied as they stand.
  struct gxEllipseGeom {
    gxVector<2> center;
    gxVector<2> radii{1.0, 1.0};
    gxRadian angle;
    std::uint8_t reversed = 0;    ///< 1 if angles run the other way
    std::uint8_t degenerate = 0;  ///< 1 if a radius is 0; found anew by gxEllipse
    std::uint8_t spare[6] = {};   ///< always 0
  };

  /// The transform that takes the ellipse to the unit circle: matrix * (p - center). The matrix of a reversed ellipse
  /// has a negative determinant.
  class gxEllipseUnit
  {
   public:
    gxEllipseUnit() = default;
    gxEllipseUnit(gxVector<2> const &center, gxMatrix<2> const &matrix) : center_(center), matrix_(matrix) {}

    gxVector<2> const &center() const { return center_; }
    gxMatrix<2> const &matrix() const { return matrix_; }
    gxVector<2> translation() const { return -(matrix_ * center_); }
    /// From the plane of the ellipse to that of the unit circle.
    gxXform<2> xform() const { return {matrix_, translation()}; }

   private:
    gxVector<2> center_;
    gxMatrix<2> matrix_;
  };

  /// The unit circle.
  gxEllipse() = default;
  gxEllipse(gxCircle const &circle);  // NOLINT(google-explicit-constructor): a circle is an ellipse
  /// From its record, and the phase that is not in it. Throws gxShapesError::BadRadius for a negative radius.
  explicit gxEllipse(gxEllipseGeom const &record, gxRadian phase = gxRadian())
  {
    geom(record);
    phase_ = phase;
  }
  /// Throws gxMathError::Singular if the matrix has no inverse.
  explicit gxEllipse(gxEllipseUnit const &unit);
  /// Throws gxShapesError::BadRadius for a negative radius.
  gxEllipse(gxVector<2> const &center, gxVector<2> const &radii, gxRadian angle) { set(center, radii, angle); }

  gxEllipseGeom const &geom() const { return geom_; }
  /// What the record says, without a phase. Throws gxShapesError::BadRadius for a negative radius.
  void geom(gxEllipseGeom const &geom)
  {
    set(geom.center, geom.radii, geom.angle);
    isReversed(geom.reversed != 0);
    phase_ = gxRadian();
  }
  gxVector<2> const &center() const { return geom_.center; }
  gxVector<2> const &radii() const { return geom_.radii; }
  gxRadian angle() const { return geom_.angle; }
  gxRadian phase() const { return phase_; }
  /// The same ellipse with its angles counted from the axis: what was at t is at t + phase.
  gxEllipse withoutPhase() const { return gxEllipse(geom_); }
  bool isReversed() const { return geom_.reversed != 0; }
  void isReversed(bool v) { geom_.reversed = v ? 1 : 0; }
  /// True if a radius is 0: the ellipse is a segment, run forth and back, or a point.
  bool degen() const { return geom_.degenerate != 0; }
  /// Throws gxMathError::Singular for a degenerate ellipse.
  gxEllipseUnit unit() const;
  /// From the plane of the unit circle to that of the ellipse: the inverse of `unit().xform()`.
  gxXform<2> fromUnit() const;
  gxVector<2> point(gxRadian t) const;

  /// The record of the image does not depend on the phase.
  gxEllipse map(gxXform<2> const &xform) const;
  gxRect boundingBox() const;
  /// The first of the nearest points of the outline.
  gxVector<2> nearestPoint(gxVector<2> const &p) const;
  /// Distance to the outline, from inside too.
  double distToPoint(gxVector<2> const &p) const;
  /// True if @p p is inside or on the outline; a degenerate ellipse has its outline alone.
  bool within(gxVector<2> const &p) const;
  /// Length of the outline.
  double perimeter() const;
  /// The piece of the outline from @p start through @p span.
  gx_ArcPiece piece(gxRadian start, gxRadian span) const;

  /// Exact.
  friend bool operator==(gxEllipse const &a, gxEllipse const &b)
  {
    return a.center() == b.center() && a.radii() == b.radii() && a.angle() == b.angle() &&
           a.isReversed() == b.isReversed() && a.phase_ == b.phase_;
  }
  friend GX_API gxArchive &operator||(gxArchive &archive, gxEllipse &ellipse);

 private:
  [[noreturn]] static void throwBadRadius();
  void set(gxVector<2> const &center, gxVector<2> const &radii, gxRadian angle)
  {
    if (radii.x() < 0.0 || radii.y() < 0.0)
      throwBadRadius();
    geom_.center = center;
    geom_.radii = radii;
    geom_.angle = angle;
    geom_.degenerate = 0;
    if (radii.x() == 0.0 || radii.y() == 0.0) [[unlikely]]
      geom_.degenerate = 1;
  }

  gxEllipseGeom geom_;
  gxRadian phase_;
};

static_assert(sizeof(gxEllipse::gxEllipseGeom) == 48);

GX_API std::ostream &operator<<(std::ostream &os, gxEllipse const &e);
