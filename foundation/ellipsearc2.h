#pragma once

#include "foundation/ellipse2.h"
#include "foundation/shape.h"

#include <ostream>

/// A part of the outline of a gxEllipse2: from phiStart through phiSpan, which is negative for an arc that runs
/// against the ellipse and at most a turn. An open contour, also for a whole turn. Mapping keeps both angles, since
/// the mapped ellipse keeps its points at their phi.
class GX_API gxEllipseArc2 : public gxShape
{
 public:
  /// The whole unit circle.
  gxEllipseArc2() = default;
  /// The whole ellipse, from phi 0.
  explicit gxEllipseArc2(gxEllipse2 const &ellipse) : ellipse_(ellipse) {}
  /// A span of more than a turn, in either sense, is a turn.
  gxEllipseArc2(gxEllipse2 const &ellipse, gxRadian phiStart, gxRadian phiSpan);
  /// The arc that a piece of an outline is.
  explicit gxEllipseArc2(gx_ArcPiece const &piece);

  gxEllipse2 const &ellipse() const { return ellipse_; }
  gxRadian phiStart() const { return phiStart_; }
  gxRadian phiSpan() const { return phiSpan_; }
  gxRadian phiEnd() const { return phiStart_ + phiSpan_; }
  gx_ArcPiece piece() const;

  gxEllipseArc2 map(gx2XformLinear const &xform) const { return {ellipse_.map(xform), phiStart_, phiSpan_}; }

  bool isOpenContour() const override { return true; }
  bool hasTangent() const override { return ellipse_.hasTangent() && phiSpan_.value() != 0.0; }
  bool isDecomposed() const override { return true; }
  gxRect boundingBox() const override;
  gxVector<2> nearestPoint(gxVector<2> const &p) const override;
  gxVector<2> startPoint() const override { return ellipse_.point(phiStart_); }
  gxVector<2> endPoint() const override { return ellipse_.point(phiEnd()); }
  /// A gxEllipseArc2.
  gxPtrHandle<gxShape> mapShape(gxXform<2> const &xform) const override;
  void appendOutline(gx_Outline &outline) const override;

  /// Exact, field by field.
  friend bool operator==(gxEllipseArc2 const &a, gxEllipseArc2 const &b)
  {
    return a.ellipse_ == b.ellipse_ && a.phiStart_ == b.phiStart_ && a.phiSpan_ == b.phiSpan_;
  }

 protected:
  gxPtrHandle<gxShape> reverse_() const override;

 private:
  gxEllipse2 ellipse_;
  gxRadian phiStart_;
  gxRadian phiSpan_{gf_turnRadians};

  GX_SHAPE(gxEllipseArc2);
};

inline std::ostream &operator<<(std::ostream &os, gxEllipseArc2 const &a)
{
  return os << "arc from " << a.phiStart() << " through " << a.phiSpan() << " of " << a.ellipse();
}
