#include "dispc/wrfm/genpoly.h"

#include "dispc/wrfm/detail/genpoly.h"
#include "dispc/wrfm/detail/polyfields.h"
#include "dispc/wrfm/polyprivate.h"
#include "foundation/archive.h"
#include "foundation/geomarchive.h"
#include "foundation/matherror.h"
#include "foundation/rect.h"
#include "foundation/shapeserror.h"

#include <cmath>
#include <utility>

// The polygon as a chain of vertices: state, edits, vertices and segments, maps, archives.

namespace
{

using Private = gxSMDGDPolyPrivate;

gxSMDGDPolyVertex vertexOf(gxVector<2> const &p, double rounding, gxRadian const &span)
{
  return {p, rounding, gxDegree(span), 0.5, 0.5, -1, gxDimTol()};
}

}  // namespace

gxGenPoly::gxGenPoly() = default;
gxGenPoly::gxGenPoly(gxGenPoly const &other)
    : gxPersistent(), gxRepBase(), gxShape(other), poly_(other.poly_), xform_(other.xform_), mutable_(other.mutable_)
{
}
gxGenPoly::gxGenPoly(gxGenPoly &&other) noexcept
    : gxPersistent(),
      gxRepBase(),
      gxShape(other),
      poly_(std::move(other.poly_)),
      xform_(other.xform_),
      mutable_(other.mutable_)
{
}
gxGenPoly::gxGenPoly(gxSMDGDPoly poly, gxXform<2> const &xform, bool isMutable)
    : poly_(std::move(poly)), xform_(xform), mutable_(isMutable)
{
}
gxGenPoly::~gxGenPoly() = default;

void gxGenPoly::remapAndThrowError_(gxException &error) const
{
  auto const is = [&](gxException const &known) { return error.errorNumber() == known.errorNumber(); };
  if (is(gxSMDGDPoly::invalidRounding()))
    throw gxShapesError::BadRadius();
  if (is(gxSMDGDPoly::invalidIndex()))
    throw gxShapesError::BadCoef();
  if (is(gxSMDGDPoly::invalidVertices()) || is(gxSMDGDPoly::crossingSegments()) || is(gxSMDGDPoly::notClosed()) ||
      is(gxSMDGDPolyVertex::invalidSegmentLength()) || is(gxShapesError::DegenerateShape()))
    throw gxShapesError::BadGeom();
  throw;
}

// Edits. The outline reports a change of its own, and stays as it was if it refuses one.

void gxGenPoly::checkMutable_() const
{
  if (!mutable_)
    throw gxShapesError::BadGeom();
}

int gxGenPoly::vertexAt_(long index) const
{
  if (index < 0 || index >= numVertices())
    throw gxShapesError::BadCoef();
  return static_cast<int>(index);
}

int gxGenPoly::segmentAt_(long index) const
{
  if (index < 0 || index >= numSegments())
    throw gxShapesError::BadCoef();
  return static_cast<int>((index + 1) % numVertices());
}

void gxGenPoly::open()
{
  edit_([&] { poly_.open(); });
}

void gxGenPoly::close(gxRadian const &span)
{
  close_(span, nullptr);
}

// An open outline has no use for what stands at vertex 0; it is taken back if the outline cannot close.
void gxGenPoly::close_(gxRadian const &span, gxDimTol const *tol)
{
  edit_([&] {
    if (degen())
      return poly_.close();
    gxSMDGDPolyVertex first = poly_.vertex(0, false);
    gxDegree const spanBefore = first.segmentAngleSpan();
    gxDimTol const tolBefore = first.segmentLengthTol();
    if (!std::isfinite(span.value()))
      throw gxShapesError::BadGeom();
    if (poly_.isClosed()) {
      first.segmentAngleSpan(gxDegree(span));
      return poly_.replaceVertex(0, first);
    }
    gx_PolyFields::segment(poly_, 0, gxDegree(span), tol ? *tol : tolBefore);
    try {
      poly_.close();
    } catch (...) {
      gx_PolyFields::segment(poly_, 0, spanBefore, tolBefore);
      throw;
    }
  });
}

void gxGenPoly::insert_(long index, gxSMDGDPolyVertex const &vertex)
{
  checkMutable_();
  if (index < -1 || index >= numVertices())
    throw gxShapesError::BadCoef();
  edit_([&] { poly_.insertVertex(static_cast<int>(index), vertex); });
}

void gxGenPoly::insertVertex(long index, gxVector<2> const &p, double rounding, gxRadian const &span)
{
  insert_(index, vertexOf(p, rounding, span));
}

void gxGenPoly::insertVertex(gxVector<2> const &p, double rounding, gxRadian const &span)
{
  insertVertex(numVertices() - 1, p, rounding, span);
}

void gxGenPoly::replaceVertex_(long index, gxSMDGDPolyVertex const &vertex)
{
  edit_([&] { poly_.replaceVertex(vertexAt_(index), vertex); });
}

template <class Change>
void gxGenPoly::changeVertex_(long index, Change change)
{
  checkMutable_();
  gxSMDGDPolyVertex v = poly_.vertices()[static_cast<std::size_t>(vertexAt_(index))];
  change(v);
  replaceVertex_(index, v);
}

void gxGenPoly::replaceVertex(long index, gxVector<2> const &p, double rounding, gxRadian const &span)
{
  changeVertex_(index, [&](gxSMDGDPolyVertex &v) {
    v.point(p);
    v.vertexRadius(rounding);
    v.segmentAngleSpan(gxDegree(span));
  });
}

void gxGenPoly::replaceVertex(long index, gxVector<2> const &p, double rounding)
{
  changeVertex_(index, [&](gxSMDGDPolyVertex &v) {
    v.point(p);
    v.vertexRadius(rounding);
  });
}

void gxGenPoly::deleteVertex(long index)
{
  edit_([&] { poly_.deleteVertex(vertexAt_(index)); });
}

void gxGenPoly::vertexPoint(long index, gxVector<2> const &p)
{
  changeVertex_(index, [&](gxSMDGDPolyVertex &v) { v.point(p); });
}

void gxGenPoly::vertexRoundingSize(long index, double rounding)
{
  changeVertex_(index, [&](gxSMDGDPolyVertex &v) { v.vertexRadius(rounding); });
}

void gxGenPoly::vertexRoundingSizes(double rounding)
{
  edit_([&] {
    std::vector<gxSMDGDPolyVertex> rounded = poly_.vertices();
    for (gxSMDGDPolyVertex &v : rounded)
      v.vertexRadius(rounding);
    poly_.vertices(rounded);
  });
}

void gxGenPoly::segmentAngleSpan(long index, gxRadian const &span)
{
  checkMutable_();
  changeVertex_(segmentAt_(index), [&](gxSMDGDPolyVertex &v) { v.segmentAngleSpan(gxDegree(span)); });
}

// Vertices and segments

gxVector<2> gxGenPoly::vertexPoint(long index) const
{
  return xform_.mapPoint(poly_.vertices()[static_cast<std::size_t>(vertexAt_(index))].point());
}

double gxGenPoly::vertexRoundingSize(long index) const
{
  return poly_.vertices()[static_cast<std::size_t>(vertexAt_(index))].vertexRadius();
}

gx2SegmentArc gxGenPoly::fillet_(long index) const
{
  int const v = vertexAt_(index);
  return ask_([&] { return xform_ * Private::roundedArcVertex_(poly_, v); });
}

gxEllipseArc gxGenPoly::roundedVertex(long index) const
{
  return fillet_(index).ellipseArc();
}

gxEllipseArc2 gxGenPoly::roundedVertexArc(long index) const
{
  return fillet_(index).ellipseArc2();
}

gxRadian gxGenPoly::segmentAngleSpan(long index) const
{
  return poly_.vertices()[static_cast<std::size_t>(segmentAt_(index))].segmentAngleSpan();
}

bool gxGenPoly::isLineSegment(long index) const
{
  return Private::isLineSegment_(poly_, segmentAt_(index));
}

gxLineSeg gxGenPoly::lineSegment(long index, bool unrounded) const
{
  int const s = segmentAt_(index);
  if (!Private::isLineSegment_(poly_, s))
    throw gxShapesError::BadGeom();
  return ask_([&] {
    gx2SegmentLine const line = unrounded ? Private::lineSegment_(poly_, s) : Private::roundedLineSegment_(poly_, s);
    return gxLineSeg(xform_.mapPoint(line.p1()), xform_.mapPoint(line.p2()));
  });
}

gx2SegmentArc gxGenPoly::arc_(long index, bool unrounded) const
{
  int const s = segmentAt_(index);
  if (Private::isLineSegment_(poly_, s))
    throw gxShapesError::BadGeom();
  return ask_(
      [&] { return xform_ * (unrounded ? Private::arcSegment_(poly_, s) : Private::roundedArcSegment_(poly_, s)); });
}

gxEllipseArc gxGenPoly::arcSegment(long index, bool unrounded) const
{
  return arc_(index, unrounded).ellipseArc();
}

gxEllipseArc2 gxGenPoly::ellipseSegment(long index, bool unrounded) const
{
  return arc_(index, unrounded).ellipseArc2();
}

long gxGenPoly::previousVertexIndex(long segment) const
{
  return segment >= 0 && segment < numSegments() ? segment : -1;
}

long gxGenPoly::nextVertexIndex(long segment) const
{
  return segment >= 0 && segment < numSegments() ? (segment + 1) % numVertices() : -1;
}

long gxGenPoly::previousSegmentIndex(long vertex) const
{
  if (vertex < 0 || vertex >= numVertices() || numSegments() == 0)
    return -1;
  return vertex == 0 && !isOpen() ? numSegments() - 1 : vertex - 1;
}

long gxGenPoly::nextSegmentIndex(long vertex) const
{
  return vertex >= 0 && vertex < numSegments() ? vertex : -1;
}

// Place, extent, images

gxVector<2> gxGenPoly::pos() const
{
  return degen() ? gxVector<2>() : vertexPoint(0);
}

gxVector<2> gxGenPoly::center() const
{
  return degen() ? gxVector<2>() : xform_.mapPoint(Private::position(poly_).translation());
}

gxRect gxGenPoly::encloseRect(gxXform<2> const &xform) const
{
  return ask_([&] { return Private::boundingBox(poly_, xform * xform_); });
}

double gxGenPoly::distToPoint(gxVector<2> const &p) const
{
  return ask_([&] { return Private::distToPoint(poly_, p); });
}

void gxGenPoly::checkMap_(gxXform<2> const &xform)
{
  double const det = xform.matrix().det();
  if (det == 0.0 || !std::isfinite(det))
    throw gxMathError::Singular();
}

gxGenPoly gxGenPoly::map(gxXform<2> const &xform) const
{
  if (xform.isIdentity())
    return *this;
  checkMap_(xform);
  return {poly_, xform * xform_, false};
}

gxGenPoly gxGenPoly::map(gx2Rigid const &rigid, double scale) const
{
  if (!mutable_)
    return map(rigid.linear() * gxXform<2>(gxMatrix<2>(scale, 0, 0, scale), gxVector<2>()));
  return ask_([&] { return gxGenPoly(rigid * (scale * poly_), xform_, true); });
}

bool operator==(gxGenPoly const &a, gxGenPoly const &b)
{
  return a.poly_ == b.poly_ && a.xform_ == b.xform_ && a.mutable_ == b.mutable_;
}

bool gfRealEq(gxGenPoly const &a, gxGenPoly const &b, double epsilon)
{
  auto const near = [epsilon](double x, double y) { return std::abs(x - y) <= epsilon; };
  gxMatrix<2> const &m = a.xform_.matrix(), &n = b.xform_.matrix();
  gxVector<2> const &t = a.xform_.translation(), &u = b.xform_.translation();
  for (int row = 0; row < 2; ++row)
    for (int column = 0; column < 2; ++column) {
      if (!near(m.element(row, column), n.element(row, column)))
        return false;
    }
  return gfRealEq(a.poly_, b.poly_, epsilon) && near(t.x(), u.x()) && near(t.y(), u.y()) && a.mutable_ == b.mutable_;
}

// Archives

GX_PERSISTENT_IMPL(gxGenPoly, "gxGenPoly", 0)
void gxGenPoly::serialize_(gxArchive &archive, unsigned char version)
{
  if (version != 0)
    throw gxArchive::UnknownVersion("dispc/wrfm/genpoly", __LINE__);
  gxShape::dispatchSerialize(archive);
  passFields_(archive);
}

bool gxGenPoly::loadSimple(gxArchive &archive)
{
  if (!gxShape::loadSimple(archive))
    return false;
  if (gf_passVersion(archive, 0) != 0)
    throw gxArchive::UnknownVersion("dispc/wrfm/genpoly", __LINE__);
  passFields_(archive);
  return true;
}

void gxGenPoly::passFields_(gxArchive &archive)
try {
  archive || static_cast<gxPersistent &>(poly_) || xform_ || mutable_;
  if (char const *const fault = archive.isLoading() ? faultOfLoaded_() : nullptr)
    archive.fail(fault);
} catch (...) {
  if (archive.isLoading())
    *this = gxGenPoly();  // valid, though empty
  throw;
}

char const *gxGenPoly::faultOfLoaded_() const
{
  double const det = xform_.matrix().det();
  if (det == 0.0 || !std::isfinite(det))
    return "the map of a polygon has no inverse";
  if (mutable_ && !xform_.isIdentity())
    return "a polygon that is mapped cannot be edited";
  return nullptr;
}

gxPtrHandle<gxShape> gxGenPoly::clone() const
{
  return new gxGenPoly(*this);
}

bool gxGenPoly::equal_(gxShape const &other) const
{
  auto const *const polygon = dynamic_cast<gxGenPoly const *>(&other);
  return polygon && *this == *polygon;
}

std::ostream &operator<<(std::ostream &os, gxGenPoly const &polygon)
{
  return os << "polygon of " << polygon.poly();
}
