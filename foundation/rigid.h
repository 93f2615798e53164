#pragma once

#include "foundation/angle.h"
#include "foundation/export.h"
#include "foundation/xform.h"

/// A rotation followed by a translation: the pose of a part.
class GX_API gx2Rigid
{
 public:
  /// The identity.
  constexpr gx2Rigid() = default;
  constexpr gx2Rigid(gxDegree angle, gxVector<2> const &translation) : angle_(angle), translation_(translation) {}

  /// The identity.
  static gx2Rigid const I;

  constexpr gxDegree angle() const { return angle_; }
  constexpr void angle(gxDegree a) { angle_ = a; }
  constexpr gxVector<2> const &translation() const { return translation_; }
  constexpr void translation(gxVector<2> const &t) { translation_ = t; }

  /// The same map as a linear transform. Right angles give exact matrices.
  gxXform<2> linear() const;
  gx2Rigid inverse() const;
  /// Rotation only.
  gxVector<2> mapVector(gxVector<2> const &v) const;

  friend constexpr bool operator==(gx2Rigid const &a, gx2Rigid const &b)
  {
    return a.angle_ == b.angle_ && a.translation_ == b.translation_;
  }
  friend gxVector<2> operator*(gx2Rigid const &r, gxVector<2> const &p) { return r.mapVector(p) + r.translation_; }
  /// Composition: b is applied first; the angles add up.
  friend gx2Rigid operator*(gx2Rigid const &a, gx2Rigid const &b) { return {a.angle_ + b.angle_, a * b.translation_}; }

 private:
  gxDegree angle_;
  gxVector<2> translation_;
};

inline constexpr gx2Rigid gx2Rigid::I{};

inline std::ostream &operator<<(std::ostream &os, gx2Rigid const &r)
{
  return os << r.angle() << " + " << r.translation();
}
