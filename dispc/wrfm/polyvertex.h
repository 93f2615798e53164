#pragma once

#include "dispc/dimtol.h"
#include "dispc/wrfm/description.h"
#include "foundation/angle.h"
#include "foundation/exception.h"
#include "foundation/export.h"
#include "foundation/rigid.h"
#include "foundation/vector.h"

#include <cstdint>
#include <ostream>

/// A vertex of an outline (gxSMDGDPoly), together with what belongs to the segment that ends at it: its span and its
/// tolerance. A vertex by itself may hold any numbers but for the two percentages; the outline checks the rest.
class GX_API gxSMDGDPolyVertex : public gxSMDGeometricDescription
{
 public:
  /// Base of the family.
  GX_EXCEPTION(Errors, gxException);
  /// A percentage is not within 0.01 to 1.0.
  GX_EXCEPTION(invalidSegmentLength, Errors);

  /// At (0, 0), sharp, at the end of a line, with half of each segment, without label and tolerance.
  gxSMDGDPolyVertex() = default;
  /// Sharp, at the end of a line. These three throw invalidSegmentLength.
  gxSMDGDPolyVertex(gxVector<2> const &point, double percentPrev, double percentNext, long label);
  gxSMDGDPolyVertex(gxVector<2> const &point, double radius, double percentPrev, double percentNext, long label);
  gxSMDGDPolyVertex(gxVector<2> const &point, double radius, gxDegree const &span, double percentPrev,
                    double percentNext, long label, gxDimTol const &tol);
  gxSMDGDPolyVertex(gxSMDGDPolyVertex const &) = default;
  gxSMDGDPolyVertex(gxSMDGDPolyVertex &&) noexcept = default;
  gxSMDGDPolyVertex &operator=(gxSMDGDPolyVertex const &) = default;
  gxSMDGDPolyVertex &operator=(gxSMDGDPolyVertex &&) noexcept = default;
  ~gxSMDGDPolyVertex() override;

  /// Where the segments would meet without rounding.
  gxVector<2> const &point() const { return point_; }
  void point(gxVector<2> const &p)
  {
    mutating();
    point_ = p;
  }
  /// Radius of the rounding, 0 for a sharp corner. A negative one is an uncertain rounding of that radius.
  double vertexRadius() const { return vertexRadius_; }
  void vertexRadius(double radius)
  {
    mutating();
    vertexRadius_ = radius;
  }
  /// Signed span of the segment that ends here; 0 for a line.
  gxDegree segmentAngleSpan() const { return segmentAngleSpan_; }
  void segmentAngleSpan(gxDegree const &span)
  {
    mutating();
    segmentAngleSpan_ = span;
  }
  /// The fraction of the segment ending here that belongs to the sub-model of this vertex, 0.01 to 1.0; the setter
  /// throws invalidSegmentLength.
  double percentPrevSegment() const { return percentPrevSegment_; }
  void percentPrevSegment(double fraction);
  /// The same for the segment starting here.
  double percentNextSegment() const { return percentNextSegment_; }
  void percentNextSegment(double fraction);
  /// The sub-model that the vertex belongs to; -1 for none.
  long subModelLabel() const { return subModelLabel_; }
  void subModelLabel(long label)
  {
    mutating();
    subModelLabel_ = static_cast<std::int32_t>(label);
  }
  /// Tolerance of the length of the segment ending here.
  gxDimTol const &segmentLengthTol() const { return segmentLengthTol_; }
  void segmentLengthTol(gxDimTol const &tol)
  {
    mutating();
    segmentLengthTol_ = tol;
  }

  /// A vertex alone draws nothing.
  using gxSMDGeometricDescription::drawSynthetic;
  void drawWireframe(gxXform<2> const &, gxUITablet &) const override {}
  void drawSynthetic(gxXform<2> const &, gxPelBuffer<unsigned char> const &) const override {}

  /// Point and radius scale, and the tolerance as by its own operator; all else is kept.
  friend GX_API gxSMDGDPolyVertex operator*(double s, gxSMDGDPolyVertex const &v);
  /// The point is mapped; all else is kept.
  friend GX_API gxSMDGDPolyVertex operator*(gx2Rigid const &map, gxSMDGDPolyVertex const &v);
  /// All numbers within @p eps, spans by sine and cosine, so that full turns do not matter; labels and tolerances
  /// equal. The names take no part.
  friend GX_API bool gfRealEq(gxSMDGDPolyVertex const &a, gxSMDGDPolyVertex const &b, double eps);
  /// gfRealEq() within 1e-11.
  friend GX_API int operator==(gxSMDGDPolyVertex const &a, gxSMDGDPolyVertex const &b);
  friend int operator!=(gxSMDGDPolyVertex const &a, gxSMDGDPolyVertex const &b) { return !(a == b); }

 private:
  friend class gxSMDGDPoly;
  friend class gxSMDGDPolyPrivate;
  friend class gx_PolyFields;

  gxVector<2> point_;
  double vertexRadius_ = 0.0;
  gxDegree segmentAngleSpan_;
  double percentPrevSegment_ = 0.5;
  double percentNextSegment_ = 0.5;
  std::int32_t subModelLabel_ = -1;
  gxDimTol segmentLengthTol_;
  // How far the segment ending here extends past this vertex, and the one starting here back past it, as fractions
  // of their lengths. The outline sets them; they are not archived.
  double forwardPercExtension_ = 0.0;
  double backwardPercExtension_ = 0.0;

  GX_PERSISTENT(gxSMDGDPolyVertex);
};

/// As in (1, 2) radius 3 span 90 deg label 4, without what has its default.
GX_API std::ostream &operator<<(std::ostream &os, gxSMDGDPolyVertex const &v);
