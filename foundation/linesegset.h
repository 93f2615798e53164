#pragma once

#include "foundation/lineseg.h"
#include "foundation/shape.h"

#include <vector>

/// Line segments in a row.
///
/// A connected set is one path: each segment starts exactly where the one before ends, and the set is an open contour.
/// Any other set is no contour and no region, as a set of shapes; each segment is a contour of its own in its outline.
class GX_API gxLineSegSet : public gxShape
{
 public:
  /// No segments, not connected.
  gxLineSegSet() = default;
  /// Throws BadGeom for a connected set with a gap.
  explicit gxLineSegSet(std::vector<gxLineSeg> segments, bool connected = false);

  long size() const { return static_cast<long>(segments_.size()); }
  /// @p i is from 0 to size() - 1 and is not checked.
  gxLineSeg const &operator[](long i) const { return segments_[static_cast<std::size_t>(i)]; }
  std::vector<gxLineSeg> const &segments() const { return segments_; }
  /// Throws BadGeom if the set is connected and the segments leave a gap, and then changes nothing.
  void segments(std::vector<gxLineSeg> v);
  bool isConnected() const { return isConnected_; }

  gxLineSegSet map(gxXform<2> const &xform) const;

  bool isOpenContour() const override { return isConnected_ && !segments_.empty(); }
  bool isEmpty() const override { return segments_.empty(); }
  bool isReversible() const override { return true; }
  gxVector<2> nearestPoint(gxVector<2> const &p) const override;
  double perimeter() const override;
  /// A gxLineSegSet.
  gxPtrHandle<gxShape> mapShape(gxXform<2> const &xform) const override;
  void appendOutline(gx_Outline &outline) const override;

  /// Exact: equal segments in equal order.
  friend bool operator==(gxLineSegSet const &a, gxLineSegSet const &b)
  {
    return a.isConnected_ == b.isConnected_ && a.segments_ == b.segments_;
  }

 protected:
  /// Reversed segments in reverse order.
  gxPtrHandle<gxShape> reverse_() const override;

 private:
  std::vector<gxLineSeg> segments_;
  bool isConnected_ = false;

  GX_SHAPE(gxLineSegSet);
};

GX_API std::ostream &operator<<(std::ostream &os, gxLineSegSet const &set);
