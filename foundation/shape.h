#pragma once

#include "foundation/angle.h"
#include "foundation/export.h"
#include "foundation/handle.h"
#include "foundation/persistent.h"
#include "foundation/vector.h"
#include "foundation/xform.h"

#include <cstddef>
#include <vector>

class gxArchive;
class gxClipInfo;
class gxPolyline;
class gxRect;
class gxShapeInfo;
struct gx_Outline;

/// A place on an outline: where it is and which way the outline runs there.
struct gxPerimPoint {
  gxVector<2> point;
  gxRadian tangent;         ///< direction of travel; meaningless without a tangent
  bool hasTangent = false;  ///< false on an outline that has collapsed to a point
};

/// Base of the shapes of the plane.
///
/// A shape is a *region* (it has an inside and closed contours round it), an *open contour* (it runs from a start
/// point to an end point), or neither (a point, an endless line, a set). What has no meaning for a shape throws the
/// fitting gxShapesError: NotOpenContour, NotRegion, NotContour, EmptyShape, InfiniteShape, NoTangent.
///
/// - Distances to a region are distances to its outline, from inside too; `within` tells the inside.
/// - A place along the outline is the length of the way to it from the start of the first contour; contours follow one
///   another without a gap. It runs from 0 to `perimeter()`.
/// - Shapes keep whatever numbers they are given. An answer that would not be finite, since the shape or the question
///   is not or the numbers are too large, throws BadGeom.
/// - A right-handed region runs round towards growing angles: its signed area, the sum of half the cross products of
///   successive points, is not negative.
///
/// A new shape class says GX_SHAPE(Class) at the end of its body, implements `mapShape` and `appendOutline`, answers
/// what kind of shape it is, and inherits all the rest; it overrides what it can do better.
class GX_API gxShape : public virtual gxPersistent, public virtual gxRepBase
{
 public:
  class gxSampleParams;
  class gxSampleResult;

  /// A copy of the same class.
  virtual gxPtrHandle<gxShape> clone() const = 0;
  virtual bool isOpenContour() const;
  virtual bool isRegion() const;
  /// False for shapes without bounds.
  virtual bool isFinite() const;
  /// True for shapes without points.
  virtual bool isEmpty() const;
  /// True if the outline has a direction somewhere: false for a contour that has collapsed to a point.
  virtual bool hasTangent() const;
  /// True for the simplest shapes, which `decompose` leaves as they are.
  virtual bool isDecomposed() const;
  virtual bool isReversible() const;

  /// The smallest upright rectangle round the shape. Throws EmptyShape, InfiniteShape.
  virtual gxRect boundingBox() const;
  /// The point of the shape (of the outline of a region) that is nearest to @p p; the first one in a tie.
  /// Throws EmptyShape.
  virtual gxVector<2> nearestPoint(gxVector<2> const &p) const;
  /// Length of all contours. Throws InfiniteShape.
  virtual double perimeter() const;
  /// The place along the outline that is nearest to @p p. @p info was made from this shape. Throws NotContour.
  virtual double nearestPerimPos(gxShapeInfo const &info, gxVector<2> const &p) const;

  // Of open contours; all throw NotOpenContour.
  virtual gxVector<2> startPoint() const;
  virtual gxVector<2> endPoint() const;
  virtual gxRadian startAngle() const;  ///< direction of travel; NoTangent without one
  virtual gxRadian endAngle() const;    ///< likewise
  /// By how much the direction of travel turns from start to end; a corner counts with its turn in (-pi, pi].
  virtual gxRadian tangentRotation() const;
  /// By how much the direction from @p p to the contour turns on the way. @p p is not on the contour.
  virtual gxRadian windingAngle(gxVector<2> const &p) const;

  // Of regions; both throw NotRegion.
  virtual bool isRightHanded() const;
  /// True if @p p is inside or on the outline.
  virtual bool within(gxVector<2> const &p) const;

  /// The image of the shape, which may be of another class.
  virtual gxPtrHandle<gxShape> mapShape(gxXform<2> const &xform) const = 0;
  /// The shape with its contours run backward. Throws NotReversible.
  virtual gxPtrHandle<gxShape> reverse() const;
  /// The same contours as line segments, elliptical arcs and Bezier curves: a single open one as itself, a chain of
  /// them as a gxContourTree, a region of several contours as a gxRegionTree whose first contour encloses the others.
  virtual gxPtrHandle<gxShape> decompose() const;
  /// The part of the outline between two places. On a closed contour @p from may lie behind @p to: the part then
  /// passes the start. Throws BadCoef for places outside 0 to `perimeter()` or in the wrong order, BadGeom for
  /// places on different contours.
  virtual gxPtrHandle<gxShape> subShape(gxShapeInfo const &info, double from, double to) const;

  /// The parts of the contours that lie within @p region, a closed polyline that has no crossing with itself. If
  /// nothing is cut off, @p info says so and the result is a copy; a region that is cut falls into open contours.
  /// What runs along a side of the region counts as inside. Throws NotRegion for a polyline that is none.
  gxPtrHandle<gxShape> clip(gxPolyline const &region, gxClipInfo &info) const;

 protected:
  virtual gxPtrHandle<gxShape> clip_(gxPolyline const &region, gxClipInfo &info) const;
  /// What `reverse` returns for a shape that is reversible.
  virtual gxPtrHandle<gxShape> reverse_() const;

 public:
  /// Appends points along the contours to @p result; see gxSampleParams. Throws BadParams, SampleOverflow,
  /// InfiniteShape, and then leaves the result as it was.
  virtual void sample(gxSampleParams const &params, gxSampleResult &result) const;

 protected:
  /// Same class, equal value.
  virtual bool equal_(gxShape const &other) const = 0;
  /// True if the outline consists of several contours.
  virtual bool isMultipleContours_() const;
  /// The place at length @p pos along the outline.
  virtual gxPerimPoint perimPointAndTangent_(gxShapeInfo const &info, double pos) const;
  /// A copy of another shape for this one to keep.
  virtual gxPtrHandle<gxShape> cloneThat_(gxShape const &that) const;

 public:
  /// Loads the short form: a version byte and the fields, without the bases. True on success.
  virtual bool loadSimple(gxArchive &archive);

  /// Appends the contours, piece by piece. The inherited operations work on this; the one of gxShape takes the
  /// outline of `decompose()`.
  virtual void appendOutline(gx_Outline &outline) const;

  /// Distance from @p p to `nearestPoint(p)`.
  double distanceToPoint(gxVector<2> const &p) const { return p.distance(nearestPoint(p)); }
  /// The place at length @p pos along the outline. Throws BadCoef outside 0 to `perimeter()`.
  gxPerimPoint perimPointAndTangent(gxShapeInfo const &info, double pos) const;
  bool isMultipleContours() const { return isMultipleContours_(); }

  /// Same class, equal value.
  friend bool operator==(gxShape const &a, gxShape const &b) { return a.equal_(b); }

  GX_PERSISTENT_ABSTRACT(gxShape);
};

/// How densely gxShape::sample puts points on the contours. At least the ends of each smooth piece are taken, and a
/// point for each quarter turn of an arc. A closed contour ends with the point that it begins with.
class GX_API gxShape::gxSampleParams
{
 public:
  gxSampleParams() = default;
  /// @param spacing    greatest length of contour between two points; 0 sets no limit
  /// @param tolerance  greatest distance between the chain of points and the contour; 0 sets no limit
  /// @param maxPoints  greatest number of points of the result; beyond it SampleOverflow is thrown
  /// @param uniformMode all points of a contour are equally far apart along it, by the greatest length within the
  ///        spacing that divides it; corners are not kept, the tolerance is not looked at, and a spacing of 0 throws
  ///        gxShapesError::BadParams
  /// @param duplicateCorners a point between two smooth pieces that meet at an angle is given twice
  gxSampleParams(double spacing, double tolerance, long maxPoints, bool uniformMode, bool duplicateCorners)
      : spacing_(spacing),
        tolerance_(tolerance),
        maxPoints_(maxPoints),
        uniformMode_(uniformMode),
        duplicateCorners_(duplicateCorners)
  {
  }

  double spacing() const { return spacing_; }
  void spacing(double v) { spacing_ = v; }
  double tolerance() const { return tolerance_; }
  void tolerance(double v) { tolerance_ = v; }
  long maxPoints() const { return maxPoints_; }
  void maxPoints(long v) { maxPoints_ = v; }
  bool uniformMode() const { return uniformMode_; }
  void uniformMode(bool v) { uniformMode_ = v; }
  bool duplicateCorners() const { return duplicateCorners_; }
  void duplicateCorners(bool v) { duplicateCorners_ = v; }
  /// Throws BadParams for a spacing or tolerance that is negative or NaN, and for uniform mode without a spacing.
  void check() const;

 private:
  double spacing_ = 0.0;
  double tolerance_ = 0.0;
  long maxPoints_ = 1'000'000;
  bool uniformMode_ = false;
  bool duplicateCorners_ = false;
};

/// The points that gxShape::sample has found, contour after contour.
class gxShape::gxSampleResult
{
 public:
  /// Makes room for @p n points in all.
  void positionsReserve(long n) { positions_.reserve(n > 0 ? static_cast<std::size_t>(n) : 0); }
  /// Forgets the points and keeps the room.
  void reset()
  {
    positions_.clear();
    starts_.clear();
  }
  std::vector<gxVector<2>> const &positions() const { return positions_; }
  /// For each contour the index of its first point.
  std::vector<std::size_t> const &contourStarts() const { return starts_; }

  /// Begins a new contour with the next point.
  void beginContour() { starts_.push_back(positions_.size()); }
  void append(gxVector<2> const &p) { positions_.push_back(p); }
  void append(gxVector<2> const *p, std::size_t n) { positions_.insert(positions_.end(), p, p + n); }
  /// Takes back all but the first @p points points and the first @p contours contours.
  void truncate(std::size_t points, std::size_t contours)
  {
    positions_.resize(points);
    starts_.resize(contours);
  }

 private:
  std::vector<gxVector<2>> positions_;
  std::vector<std::size_t> starts_;
};

/// Ends the body of a concrete shape class. GX_SHAPE_IMPL in its source defines the declared members; left to write
/// is `passFields_`, which passes the fields through an archive in either direction and refuses loaded values that
/// the class's constructors would refuse. The class has an `operator==` of its own.
#define GX_SHAPE(Class)                             \
 public:                                            \
  gxPtrHandle<gxShape> clone() const override;      \
  bool loadSimple(gxArchive &archive) override;     \
                                                    \
 protected:                                         \
  bool equal_(gxShape const &other) const override; \
                                                    \
 private:                                           \
  void passFields_(gxArchive &archive);             \
  GX_PERSISTENT(Class)

/// @param Base the class that this one adds its fields to: gxShape, or a shape with fields of its own
#define GX_SHAPE_IMPL(Class, Base)                                                        \
  GX_PERSISTENT_IMPL(Class, #Class, 0)                                                    \
  void Class::serialize_(gxArchive &archive, unsigned char version)                       \
  {                                                                                       \
    gf_refuseVersion(version, #Class);                                                    \
    Base::dispatchSerialize(archive);                                                     \
    passFields_(archive);                                                                 \
  }                                                                                       \
  bool Class::loadSimple(gxArchive &archive)                                              \
  {                                                                                       \
    if (!Base::loadSimple(archive))                                                       \
      return false;                                                                       \
    gf_refuseVersion(gf_passVersion(archive, 0), #Class);                                 \
    passFields_(archive);                                                                 \
    return true;                                                                          \
  }                                                                                       \
  gxPtrHandle<gxShape> Class::clone() const                                               \
  {                                                                                       \
    return new Class(*this);                                                              \
  }                                                                                       \
  bool Class::equal_(gxShape const &other) const                                          \
  {                                                                                       \
    return typeid(other) == typeid(Class) && *this == dynamic_cast<Class const &>(other); \
  }
