#pragma once

#include "foundation/angle.h"
#include "foundation/export.h"
#include "foundation/numbers.h"
#include "foundation/vector.h"
#include "foundation/xform.h"

#include <cstdint>
#include <ostream>

class gxArchive;
class gxRect;

/// A marker in the form of a cross, as a plain value, no shape: two lines that halve each other at a right angle.
///
/// The arm, half a line, is a length on the screen, in whole pels: a map moves and turns a cross and does not scale it.
/// The geometry of the cross takes it as a length in the frame of the center.
class GX_API gxCross
{
 public:
  /// At (0, 0), upright, without arms.
  gxCross() = default;
  /// @param angle direction of the first line
  /// @param armLength in pels, kept in 32 bits
  gxCross(gxVector<2> const &center, gxRadian angle, long armLength)
      : center_(center), angle_(angle), armLength_(gf_narrow(armLength))
  {
  }

  gxVector<2> const &center() const { return center_; }
  void center(gxVector<2> const &v) { center_ = v; }
  gxRadian angle() const { return angle_; }
  void angle(gxRadian v) { angle_ = v; }
  long armLength() const { return armLength_; }
  void armLength(long v) { armLength_ = gf_narrow(v); }

  /// The cross at the image of the center, along the image of the first line's direction, with the same arm.
  gxCross map(gxXform<2> const &xform) const;
  gxRect boundingBox() const;
  gxRect encloseRect() const;
  /// Distance to the nearest point of the two lines.
  double distToPoint(gxVector<2> const &p) const;

  /// Exact.
  friend bool operator==(gxCross const &a, gxCross const &b)
  {
    return a.center_ == b.center_ && a.angle_ == b.angle_ && a.armLength_ == b.armLength_;
  }
  friend GX_API gxArchive &operator||(gxArchive &archive, gxCross &cross);

 private:
  gxVector<2> center_;
  gxRadian angle_;
  std::int32_t armLength_ = 0;
};

inline std::ostream &operator<<(std::ostream &os, gxCross const &c)
{
  return os << "cross at " << c.center() << " along " << c.angle() << ", arm " << c.armLength();
}
