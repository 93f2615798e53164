#pragma once

#include "foundation/shape.h"

#include <ostream>

/// A parallelogram with named corners, the image of the unit square: the origin `po`, the ends `px` and `py` of the x
/// and the y side, and the opposite corner `popp`. It says which part of an image is meant and which way up.
///
/// The outline runs from po over px, popp and py, so it is right-handed unless the corners mirror.
class GX_API gxAffineRectangle : public gxShape
{
 public:
  /// The square from (0, 0) to (1, 1).
  gxAffineRectangle() = default;
  gxAffineRectangle(gxVector<2> const &po, gxVector<2> const &px, gxVector<2> const &py) : po_(po), px_(px), py_(py) {}
  /// @param xRotation direction of the x side
  /// @param yRotation by how much the y side is turned away from (0, 1); equal rotations give a rectangle
  gxAffineRectangle(gxVector<2> const &center, double xLength, double yLength, gxRadian xRotation, gxRadian yRotation);

  gxVector<2> const &cornerPo() const { return po_; }
  gxVector<2> const &cornerPx() const { return px_; }
  gxVector<2> const &cornerPy() const { return py_; }
  gxVector<2> cornerPopp() const { return px_ + (py_ - po_); }
  gxVector<2> center() const { return po_ + (px_ - po_) * 0.5 + (py_ - po_) * 0.5; }
  double xLength() const { return po_.distance(px_); }
  double yLength() const { return po_.distance(py_); }
  gxRadian xRotation() const { return sides().xRot(); }
  gxRadian yRotation() const { return sides().yRot(); }
  /// The map from the unit square, (0, 0) to po, (1, 0) to px and (0, 1) to py.
  gxXform<2> fromUnitSquare() const { return {sides(), po_}; }

  gxAffineRectangle map(gxXform<2> const &xform) const { return {xform * po_, xform * px_, xform * py_}; }

  bool isRegion() const override { return true; }
  bool isRightHanded() const override { return sides().det() >= 0.0; }
  bool within(gxVector<2> const &p) const override;
  /// A gxAffineRectangle.
  gxPtrHandle<gxShape> mapShape(gxXform<2> const &xform) const override;
  void appendOutline(gx_Outline &outline) const override;

  /// Exact.
  friend bool operator==(gxAffineRectangle const &a, gxAffineRectangle const &b)
  {
    return a.po_ == b.po_ && a.px_ == b.px_ && a.py_ == b.py_;
  }

 protected:
  gxPtrHandle<gxShape> reverse_() const override;

 private:
  /// The x side and the y side as columns.
  gxMatrix<2> sides() const
  {
    gxVector<2> const x = px_ - po_, y = py_ - po_;
    return {x.x(), y.x(), x.y(), y.y()};
  }

  gxVector<2> po_;
  gxVector<2> px_ = {1.0, 0.0};
  gxVector<2> py_ = {0.0, 1.0};

  GX_SHAPE(gxAffineRectangle);
};

inline std::ostream &operator<<(std::ostream &os, gxAffineRectangle const &r)
{
  return os << "affine rectangle " << r.cornerPo() << ", " << r.cornerPx() << ", " << r.cornerPy();
}
