#pragma once

#include "foundation/shape.h"

class gxGenRect;

/// An upright rectangle: an origin and a size. The size may be negative; origin and size are kept as given.
///
/// Empty is a state of its own, of the default rectangle and of the intersection of disjoint ones: an empty rectangle
/// has no points, while one of zero width or height (a level line, a point) is flat and has some.
///
/// Its outline runs from the origin along the x side: right-handed for positive sizes.
class GX_API gxRect : public gxShape
{
 public:
  /// Empty, with origin and size (0, 0).
  gxRect() = default;
  gxRect(gxVector<2> const &origin, gxVector<2> const &size) : origin_(origin), size_(size), isEmpty_(false) {}
  /// The smallest rectangle round two points, of a size that is not negative.
  static gxRect around(gxVector<2> const &a, gxVector<2> const &b);

  gxVector<2> const &origin() const { return origin_; }
  void origin(gxVector<2> const &v)
  {
    mutating();
    origin_ = v;
  }
  gxVector<2> const &size() const { return size_; }
  /// Sets the size; the rectangle is then not empty.
  void size(gxVector<2> const &v)
  {
    mutating();
    size_ = v;
    isEmpty_ = false;
  }
  /// The corner of least x and least y, whatever the signs of the size.
  gxVector<2> lowCorner() const;
  /// The corner of greatest x and greatest y.
  gxVector<2> highCorner() const;
  gxVector<2> center() const { return origin_ + size_ * 0.5; }
  /// Corner 0 to 3: the origin, along the x side, the opposite one, along the y side. Throws BadCoef otherwise.
  gxVector<2> corner(int i) const;

  /// The smallest rectangle round both, without regard to an empty one.
  gxRect enclose(gxRect const &other) const;
  /// The common points; empty if there are none. The size of the result is not negative.
  friend GX_API gxRect operator&(gxRect const &a, gxRect const &b);
  gxGenRect map(gxXform<2> const &xform) const;

  bool isRegion() const override { return !isEmpty_; }
  bool isEmpty() const override { return isEmpty_; }
  bool hasTangent() const override;
  /// The same points with a size that is not negative. Throws EmptyShape.
  gxRect boundingBox() const override;
  gxVector<2> nearestPoint(gxVector<2> const &p) const override;
  double perimeter() const override;
  bool isRightHanded() const override;
  /// Nothing is within an empty rectangle; other than for the empty shapes of other classes, that is an answer.
  bool within(gxVector<2> const &p) const override;
  /// A gxGenRect.
  gxPtrHandle<gxShape> mapShape(gxXform<2> const &xform) const override;
  void appendOutline(gx_Outline &outline) const override;

  /// Exact; all empty rectangles are equal.
  friend bool operator==(gxRect const &a, gxRect const &b)
  {
    return a.isEmpty_ == b.isEmpty_ && (a.isEmpty_ || (a.origin_ == b.origin_ && a.size_ == b.size_));
  }

 protected:
  gxPtrHandle<gxShape> reverse_() const override;

 private:
  gxVector<2> origin_;
  gxVector<2> size_;
  bool isEmpty_ = true;

  GX_SHAPE(gxRect);
};

GX_API std::ostream &operator<<(std::ostream &os, gxRect const &r);
