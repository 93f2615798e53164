#include "dispc/wrfm/wirefrm.h"

#include "dispc/wrfm/detail/genpoly.h"
#include "dispc/wrfm/detail/polyfields.h"
#include "dispc/wrfm/polyprivate.h"
#include "foundation/archive.h"
#include "foundation/shapeserror.h"

#include <cmath>

namespace
{

using Private = gxSMDGDPolyPrivate;

gxSMDGDPolyVertex vertexOf(gxVector<2> const &p, double rounding, gxRadian const &span, gxDimTol const &tol)
{
  return {p, rounding, gxDegree(span), 0.5, 0.5, -1, tol};
}

}  // namespace

gx2Wireframe::gx2Wireframe(gxGenPoly const &poly, gxDimTol const &tol) : gxGenPoly(poly)
{
  ask_([&] {
    gxSMDGDPoly &outline = editPoly_();
    for (int s = outline.isOpen() ? 1 : 0; s < outline.numVertices(); ++s) {
      gxSMDGDPolyVertex v = outline.vertex(s, false);
      v.segmentLengthTol(tol);
      outline.replaceVertex(s, v);
    }
  });
}

gx2Wireframe::~gx2Wireframe() = default;

// ---------------------------------------------------------------- polarity

void gx2Wireframe::checkClosed_() const
{
  if (isOpen())
    throw gxShapesError::BadGeom();
}

void gx2Wireframe::polarity(bool reversed)
{
  if (reversed == isPolarityReversed())
    return;
  mutating();
  editPoly_().toggleDirection();
  polarity_(reversed);
}

void gx2Wireframe::polarity_(bool) {}

bool gx2Wireframe::isInsidePositive() const
{
  checkClosed_();
  gxMatrix<2> const &m = xform().matrix();
  bool const mirrored = std::cos((m.xRot() - m.yRot()).value()) < 0.0;
  return ask_([&] { return poly().isDirectionPositive(); }) != mirrored;
}

void gx2Wireframe::insidePolarity(bool positive)
{
  if (isInsidePositive() == positive)
    return;
  mutating();
  editPoly_().toggleDirection();
}

// ---------------------------------------------------------------- tolerances

gxDimTol gx2Wireframe::segmentLengthTol(long index) const
{
  int const s = segmentAt_(index);
  return ask_([&] { return Private::dimTol(poly().segmentDimension(s)); });
}

void gx2Wireframe::segmentLengthTol(long index, gxDimTol const &tol)
{
  checkMutable_();
  int const s = segmentAt_(index);
  gxSMDGDPolyVertex v = poly().vertex(s, false);
  v.segmentLengthTol(tol);
  replaceVertex_(s, v);
}

// The tolerance of the segment that is split goes first, as neither part need keep it; it comes back if the vertex is
// refused.
void gx2Wireframe::insertVertex(long index, gxVector<2> const &p, double rounding, gxRadian const &span,
                                gxDimTol const &tol)
{
  if (index == -1)
    return gxGenPoly::insertVertex(index, p, rounding, span);
  checkMutable_();
  long const next = nextSegmentIndex(index);
  if (next == -1)
    return insert_(index, vertexOf(p, rounding, span, tol));
  int const split = segmentAt_(next);
  gxDegree const splitSpan = poly().vertex(split, false).segmentAngleSpan();
  gxDimTol const before = poly().vertex(split, false).segmentLengthTol();
  mutating();
  gx_PolyFields::segment(editPoly_(), split, splitSpan, gxDimTol());
  try {
    insert_(index, vertexOf(p, rounding, span, tol));
  } catch (...) {
    gx_PolyFields::segment(editPoly_(), split, splitSpan, before);
    throw;
  }
}

void gx2Wireframe::insertVertex(gxVector<2> const &p, double rounding, gxRadian const &span, gxDimTol const &tol)
{
  insertVertex(numVertices() - 1, p, rounding, span, tol);
}

void gx2Wireframe::close(gxRadian const &span, gxDimTol const &tol)
{
  if (isOpen())
    close_(span, &tol);
}

// ---------------------------------------------------------------- as a shape

void gx2Wireframe::remapAndThrowError_(gxException &error) const
{
  if (error.errorNumber() == gxSMDGDPolyVertex::invalidSegmentLength().errorNumber())
    throw gxShapesError::BadGeom();
  gxGenPoly::remapAndThrowError_(error);
}

gxPtrHandle<gxShape> gx2Wireframe::clone() const
{
  return new gx2Wireframe(*this);
}

bool gx2Wireframe::equal_(gxShape const &other) const
{
  auto const *const wireframe = dynamic_cast<gx2Wireframe const *>(&other);
  return wireframe && *this == *wireframe;
}

GX_PERSISTENT_IMPL(gx2Wireframe, "gx2Wireframe", 0)
void gx2Wireframe::serialize_(gxArchive &archive, unsigned char version)
{
  if (version != 0)
    throw gxArchive::UnknownVersion("dispc/wrfm/wirefrm", __LINE__);
  gxGenPoly::dispatchSerialize(archive);
}

bool gx2Wireframe::loadSimple(gxArchive &archive)
{
  if (gf_passVersion(archive, 0) != 0)
    throw gxArchive::UnknownVersion("dispc/wrfm/wirefrm", __LINE__);
  return gxGenPoly::loadSimple(archive);
}
