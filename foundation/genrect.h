#pragma once

#include "foundation/shape.h"

#include <array>
#include <ostream>

/// A general rectangle: the image of the square from -1 to 1 under a matrix, moved to a center, with corners rounded
/// by quarter ellipses. The rounding is a fraction from 0 to 1 of the half size of each axis: (0, 0) leaves sharp
/// corners, and so does 0 on one axis alone; (1, 1) leaves an ellipse.
///
/// The outline starts behind the corner at (-1, -1) of the square and runs along its lower side, so it is
/// right-handed unless the matrix mirrors.
class GX_API gxGenRect : public gxShape
{
 public:
  /// The four corners of a general rectangle without its rounding.
  class gxGenRectData
  {
   public:
    GX_API explicit gxGenRectData(gxGenRect const &rect);

    /// The images of (-1, -1), (1, -1), (1, 1) and (-1, 1), in this order.
    std::array<gxVector<2>, 4> const &corners() const { return corners_; }
    gxVector<2> const &corner(int i) const { return corners_.at(static_cast<std::size_t>(i)); }

   private:
    std::array<gxVector<2>, 4> corners_;
  };

  /// The square from -1 to 1.
  gxGenRect() = default;
  /// @param matrix maps the square from -1 to 1, so it holds half sizes
  /// @param rounding throws BadRadius unless from 0 to 1 on each axis
  gxGenRect(gxVector<2> const &center, gxMatrix<2> const &matrix, gxVector<2> const &rounding);
  /// @param size full size along the turned axes
  gxGenRect(gxVector<2> const &center, gxVector<2> const &size, gxRadian angle, gxVector<2> const &rounding);

  gxVector<2> const &center() const { return center_; }
  gxMatrix<2> const &matrix() const { return matrix_; }
  /// Rounding per axis, a fraction of the half size.
  gxVector<2> const &round() const { return rounding_; }
  /// Direction of the x side.
  gxRadian orient() const { return matrix_.xRot(); }
  /// Full lengths of the x side and of the y side.
  gxVector<2> size() const;

  gxGenRect map(gxXform<2> const &xform) const;

  bool isRegion() const override { return true; }
  gxRect boundingBox() const override;
  bool isRightHanded() const override { return matrix_.det() >= 0.0; }
  bool within(gxVector<2> const &p) const override;
  /// A gxGenRect.
  gxPtrHandle<gxShape> mapShape(gxXform<2> const &xform) const override;
  void appendOutline(gx_Outline &outline) const override;

  /// Exact.
  friend bool operator==(gxGenRect const &a, gxGenRect const &b)
  {
    return a.center_ == b.center_ && a.matrix_ == b.matrix_ && a.rounding_ == b.rounding_;
  }

 protected:
  gxPtrHandle<gxShape> reverse_() const override;

 private:
  /// The rounding that shows: (0, 0) if either axis has none.
  gxVector<2> effectiveRounding() const;

  gxVector<2> center_;
  gxMatrix<2> matrix_;
  gxVector<2> rounding_;

  GX_SHAPE(gxGenRect);
};

inline std::ostream &operator<<(std::ostream &os, gxGenRect const &r)
{
  return os << "rectangle at " << r.center() << " of half sizes " << r.matrix() << " rounded by " << r.round();
}
