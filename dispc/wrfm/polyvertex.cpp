#include "dispc/wrfm/polyvertex.h"

#include "foundation/archive.h"
#include "foundation/geomarchive.h"
#include "foundation/shapeserror.h"

#include <cmath>

GX_EXCEPTION_IMPL(gxSMDGDPolyVertex::Errors, gxException, Errors, 0x1100035f, "Invalid poly vertex.")
GX_EXCEPTION_IMPL(gxSMDGDPolyVertex::invalidSegmentLength, gxSMDGDPolyVertex::Errors, invalidSegmentLength, 0x11000350,
                  "Invalid poly segment length specified at vertex.")

namespace
{
/// Tolerance of the equality of vertices.
constexpr double kVertexEqualEpsilon = 1e-11;

bool isPercentage(double fraction)
{
  return fraction >= 0.01 && fraction <= 1.0;
}

double checkedPercentage(double fraction)
{
  if (!isPercentage(fraction))
    throw gxSMDGDPolyVertex::invalidSegmentLength();
  return fraction;
}

gxDimTol const noOffsets(kUnsetDim, kUnsetDim, kUnsetDim, gxDimTol::Offsets);
}  // namespace

gxSMDGDPolyVertex::gxSMDGDPolyVertex(gxVector<2> const &point, double percentPrev, double percentNext, long label)
    : gxSMDGDPolyVertex(point, 0.0, percentPrev, percentNext, label)
{
}

gxSMDGDPolyVertex::gxSMDGDPolyVertex(gxVector<2> const &point, double radius, double percentPrev, double percentNext,
                                     long label)
    : gxSMDGDPolyVertex(point, radius, gxDegree(), percentPrev, percentNext, label, noOffsets)
{
}

gxSMDGDPolyVertex::gxSMDGDPolyVertex(gxVector<2> const &point, double radius, gxDegree const &span, double percentPrev,
                                     double percentNext, long label, gxDimTol const &tol)
    : point_(point),
      vertexRadius_(radius),
      segmentAngleSpan_(span),
      percentPrevSegment_(checkedPercentage(percentPrev)),
      percentNextSegment_(checkedPercentage(percentNext)),
      subModelLabel_(static_cast<std::int32_t>(label)),
      segmentLengthTol_(tol)
{
}

gxSMDGDPolyVertex::~gxSMDGDPolyVertex() = default;

void gxSMDGDPolyVertex::percentPrevSegment(double fraction)
{
  double const checked = checkedPercentage(fraction);
  mutating();
  percentPrevSegment_ = checked;
}

void gxSMDGDPolyVertex::percentNextSegment(double fraction)
{
  double const checked = checkedPercentage(fraction);
  mutating();
  percentNextSegment_ = checked;
}

gxSMDGDPolyVertex operator*(double s, gxSMDGDPolyVertex const &v)
{
  gxSMDGDPolyVertex scaled(v);
  scaled.point_ = v.point_ * s;
  scaled.vertexRadius_ = v.vertexRadius_ * s;
  scaled.segmentLengthTol_ = s * v.segmentLengthTol_;
  return scaled;
}

gxSMDGDPolyVertex operator*(gx2Rigid const &map, gxSMDGDPolyVertex const &v)
{
  gxSMDGDPolyVertex mapped(v);
  mapped.point_ = map * v.point_;
  return mapped;
}

bool gfRealEq(gxSMDGDPolyVertex const &a, gxSMDGDPolyVertex const &b, double eps)
{
  double const spanA = gxRadian(a.segmentAngleSpan_).value();
  double const spanB = gxRadian(b.segmentAngleSpan_).value();
  return gfRealEq(a.point_, b.point_, eps) && gfRealEq(a.vertexRadius_, b.vertexRadius_, eps) &&
         gfRealEq(std::sin(spanA), std::sin(spanB), eps) && gfRealEq(std::cos(spanA), std::cos(spanB), eps) &&
         gfRealEq(a.percentPrevSegment_, b.percentPrevSegment_, eps) &&
         gfRealEq(a.percentNextSegment_, b.percentNextSegment_, eps) && a.subModelLabel_ == b.subModelLabel_ &&
         a.segmentLengthTol_ == b.segmentLengthTol_ &&
         gfRealEq(a.forwardPercExtension_, b.forwardPercExtension_, eps) &&
         gfRealEq(a.backwardPercExtension_, b.backwardPercExtension_, eps);
}

int operator==(gxSMDGDPolyVertex const &a, gxSMDGDPolyVertex const &b)
{
  return gfRealEq(a, b, kVertexEqualEpsilon);
}

// Version 0 had no tolerance, version 1 one by offsets without a nominal.
GX_PERSISTENT_IMPL(gxSMDGDPolyVertex, "gxSMDGDPolyVertex", 2)
void gxSMDGDPolyVertex::serialize_(gxArchive &archive, unsigned char version)
{
  if (version > 2)
    throw gxArchive::UnknownVersion(nullptr, 0);
  gxSMDGeometricDescription::dispatchSerialize(archive);

  double span = segmentAngleSpan_.value();
  double percentPrev = percentPrevSegment_;
  double percentNext = percentNextSegment_;
  archive || point_ || vertexRadius_ || span || percentPrev || percentNext || subModelLabel_;
  if (!isPercentage(percentPrev) || !isPercentage(percentNext))
    archive.fail("the percentages of a vertex are within 0.01 and 1");
  segmentAngleSpan_ = gxDegree(span);
  percentPrevSegment_ = percentPrev;
  percentNextSegment_ = percentNext;

  if (version == 0) {
    segmentLengthTol_ = gxDimTol();
  } else if (version == 1) {
    double min = kUnsetDim;
    double max = kUnsetDim;
    unsigned int unused = 0;
    archive || min || max || unused;
    try {
      segmentLengthTol_.offsets(min, max);
    } catch (gxShapesError::BadGeom const &) {
      archive.fail("the tolerance of a vertex is invalid");
    }
  } else {
    archive || segmentLengthTol_;
  }
}

std::ostream &operator<<(std::ostream &os, gxSMDGDPolyVertex const &v)
{
  os << v.point();
  if (v.vertexRadius() != 0.0)
    os << " radius " << v.vertexRadius();
  if (v.segmentAngleSpan() != gxDegree())
    os << " span " << v.segmentAngleSpan();
  if (v.subModelLabel() != -1)
    os << " label " << v.subModelLabel() << " (" << v.percentPrevSegment() << ", " << v.percentNextSegment() << ')';
  if (v.segmentLengthTol() != gxDimTol())
    os << ' ' << v.segmentLengthTol();
  return os;
}
