#include "dispc/wrfm/modelprivate.h"
#include "dispc/wrfm/polyprivate.h"
#include "foundation/numbers.h"
#include "foundation/shapeserror.h"

#include <array>
#include <cmath>
#include <utility>

// Outlines whose corners are right angles: finding their axes, making them exact, and editing them so that they stay.

namespace
{

using Poly = gxSMDGDPoly;
using Private = gxSMDGDPolyPrivate;

// Half way between two axes. The two differ in the last bit, which decides for chords at 45 degrees exactly.
double const sinHalfWay = std::sin(0.7853981633974483), cosHalfWay = std::cos(0.7853981633974483);
constexpr double exact = 1e-15;

gxVector<2> pointOf(Poly const &poly, long v)
{
  return poly.vertex(v, true).point();
}

/// Direction from one vertex to another.
gxRadian chordAngle(Poly const &poly, long from, long to)
{
  return (pointOf(poly, to) - pointOf(poly, from)).angle();
}

double sinOf(gxRadian a)
{
  return std::abs(std::sin(a.value()));
}

double cosOf(gxRadian a)
{
  return std::abs(std::cos(a.value()));
}

/// The angle without the quarter turn that is nearest to it.
gxDegree withoutQuarters(gxDegree a, double rounding)
{
  double const quarters = a.value() * 0.011111111111111112;
  return a - gxDegree(gf_truncate(quarters + rounding) * 90.0);
}

/// The vertex moved.
gxSMDGDPolyVertex at(gxSMDGDPolyVertex v, gxVector<2> const &p)
{
  v.point(p);
  return v;
}

}  // namespace

// Chords near the first one are turned by a quarter to the others, so that all lie about one axis.
gxDegree gxSMDGDPolyPrivate::dominantAngle(gxSMDGDPoly const &poly)
{
  if (poly.numVertices() < 2)
    return gxDegree();
  gxRadian const reference = chordAngle(poly, 0, 1);
  gxDegree const r = reference;
  double x = 0.0, y = 0.0;
  for (int s = poly.isOpen() ? 1 : 0; s < poly.numVertices(); ++s) {
    gxVector<2> const chord = pointOf(poly, s) - pointOf(poly, s - 1);
    gxDegree d = gxDegree(chord.angle()) - r;
    if (sinOf(d) < sinHalfWay)
      d = d + gxDegree(90.0);
    y += sinOf(d) * chord.len();
    x += std::cos(gxRadian(d).value()) * chord.len();
  }
  gxDegree const a = gxRadian(std::atan2(y, x)).norm() + reference;
  return withoutQuarters(a, a.value() >= 0.0 ? 0.5 : -0.5);
}

gxDegree gxSMDGDModelPrivate::dominantAngle(gxSMDGDModel const &model)
{
  double x = 0.0, y = 0.0;
  for (Poly const &poly : model.polys()) {
    gxRadian const a = Private::dominantAngle(poly);
    double const length = Private::perimeter(poly, 0.0);
    x += std::cos(a.value()) * length;
    y += std::sin(a.value()) * length;
  }
  return withoutQuarters(gxRadian(std::atan2(y, x)).norm(), 0.5);
}

bool gxSMDGDPolyPrivate::isRectilinear(gxSMDGDPoly const &poly)
{
  if (poly.numVertices() < 2)
    return true;
  double const along = cosOf(chordAngle(poly, 1, 0));
  if (!(std::abs(along - 1.0) <= exact || along <= exact))
    return false;
  for (int v = 0; v < poly.numVertices(); ++v) {
    if (std::abs(poly.segmentAngleSpan_(v).signedNorm().value()) > exact)
      return false;
    if (poly.isEndVertex(v))
      continue;
    int before = -1, behind = -1;
    poly.getSegmentIndices_(before, behind, v);
    gxDegree const turn = poly.segmentStartDirection_(behind) - poly.segmentEndDirection_(before);
    if (!(cosOf((gxDegree(180.0) - turn).signedNorm()) <= exact))
      return false;
  }
  return true;
}

bool gxSMDGDPolyPrivate::isRectangular(gxSMDGDPoly const &poly)
{
  auto const &v = poly.vertices();
  for (gxSMDGDPolyVertex const &vertex : v)
    if (std::abs(vertex.vertexRadius()) > exact)
      return false;
  return isRectilinear(poly) && poly.isClosed() && v.size() == 4 &&
         v[0].segmentLengthTol() == v[2].segmentLengthTol() && v[1].segmentLengthTol() == v[3].segmentLengthTol();
}

gxRect gxSMDGDPolyPrivate::rectangle(gxSMDGDPoly const &poly)
{
  return isRectangular(poly) ? poly.boundingBox(gxXform<2>()) : gxRect();
}

// ---------------------------------------------------------------- the dimensions of a rectangle

gxSMDDimension gxSMDGDPolyPrivate::rectDim(gxSMDGDPoly const &poly, long dim)
{
  if (!isRectangular(poly))
    return gxSMDDimension();
  bool const upright = sinOf(chordAngle(poly, 1, 0)) >= sinHalfWay;
  return poly.segmentDimension(upright == (dim != 0) ? 1 : 2);
}

void gxSMDGDPolyPrivate::rectDim(gxSMDGDPoly &poly, long dim, gxSMDDimension const &value)
{
  if (!isRectangular(poly))
    return;
  if (!(value.nomDim() > 0.0))
    throw gxShapesError::BadGeom();
  bool const upright = sinOf(chordAngle(poly, 0, 1)) >= sinHalfWay;
  // Of the segments that run along the dimension, the first one begins here.
  std::size_t const f = upright == (dim != 0) ? 0 : 1;
  double const change = value.nomDim() - poly.segmentLength_(static_cast<int>(f) + 1);
  long const start = static_cast<long>(f);
  gxVector<2> const half = (pointOf(poly, start + 1) - pointOf(poly, start)).unit() * (0.5 * change);
  gxDimTol tol(value.nomDim(), value.minDim(), value.maxDim(), gxDimTol::Limits);
  tol.tolType(tolType(value.scaleType()));

  std::vector<gxSMDGDPolyVertex> moved = poly.vertices();
  for (std::size_t const j : {0u, 1u, 2u, 3u}) {
    gxSMDGDPolyVertex &v = moved[(j + f) % 4];
    bool const ahead = j == 1 || j == 2;
    v.point(ahead ? v.point() + half : v.point() - half);
    if (j % 2)
      v.segmentLengthTol(tol);
  }
  Poly changed(poly);
  changed.vertices(moved);
  changed.close();
  poly = std::move(changed);
}

// ---------------------------------------------------------------- edits

void gxSMDGDPolyPrivate::snapRectilinear(gxSMDGDPoly &poly)
{
  if (isRectilinear(poly))
    return;
  gx2Rigid const turn(-dominantAngle(poly), gxVector<2>());
  Poly turned = turn * poly;
  if (turned.isClosed() && turned.numVertices() % 2)
    turned.open();
  bool horizontal = sinOf(chordAngle(turned, 1, 0)) < sinHalfWay;  // the segment that starts at the vertex
  Poly snapped("poly");
  for (int v = 0; v < turned.numVertices(); ++v, horizontal = !horizontal) {
    auto const part = [](gxVector<2> const &d, bool x) {
      return x ? gxVector<2>(d.x(), 0.0) : gxVector<2>(0.0, d.y());
    };
    gxVector<2> const p = turned.vertexPoint_(v);
    gxVector<2> before, behind;
    if (turned.previousSegmentIndex_(v) != -1)
      before = part(p - pointOf(turned, v - 1), horizontal);
    if (turned.nextSegmentIndex_(v) != -1)
      behind = part(p - pointOf(turned, v + 1), !horizontal);
    gxSMDGDPolyVertex straight = at(turned.vertex(v, false), p - before * 0.5 - behind * 0.5);
    straight.segmentAngleSpan(gxDegree());
    snapped << straight;
  }
  if (poly.isDirectionReversed())
    snapped.toggleDirection();
  if (poly.isClosed())
    closeRectilinear(snapped);
  poly = turn.inverse() * snapped;
}

void gxSMDGDPolyPrivate::closeRectilinear(gxSMDGDPoly &poly)
{
  long const n = poly.numVertices();
  if (n < 3)
    return poly.close();
  Poly closed(poly);
  // The corner that is set or moved lies between a vertex and vertex 0, round the corner from the segment before.
  auto const lastCorner = [&](long vertex) {
    gxVector<2> const first = pointOf(poly, 0), last = pointOf(poly, vertex);
    bool const upright = cosOf(chordAngle(poly, vertex - 1, vertex)) <= cosHalfWay;
    return upright ? gxVector<2>(first.x(), last.y()) : gxVector<2>(last.x(), first.y());
  };
  if (n % 2)
    closed << gxSMDGDPolyVertex(lastCorner(n - 1), 0.5, 0.5, -1);
  else
    closed.replaceVertex(static_cast<int>(n - 1), at(poly.vertex(n - 1, false), lastCorner(n - 2)));
  closed.close();
  poly = std::move(closed);
}

void gxSMDGDPolyPrivate::replaceVertexRectilinear(gxSMDGDPoly &poly, long index, gxSMDGDPolyVertex const &v)
{
  int const i = static_cast<int>(poly.vertexAt_(index, false));
  gxVector<2> const old = poly.vertexPoint_(i), p = v.point();
  // A neighbour follows across the segment between them.
  auto const follow = [&](gxVector<2> const &neighbour) {
    bool const level = cosOf((neighbour - old).angle()) > cosHalfWay;
    return level ? gxVector<2>(neighbour.x(), p.y()) : gxVector<2>(p.x(), neighbour.y());
  };
  Poly changed(poly);
  changed.replaceVertex(i, v);
  for (int const step : {1, -1}) {
    int const s = step > 0 ? poly.nextSegmentIndex_(i) : poly.previousSegmentIndex_(i);
    if (s == -1)
      continue;
    int const neighbour = step > 0 ? poly.nextVertexIndex_(s) : poly.previousVertexIndex_(s);
    changed.replaceVertex(neighbour, at(poly.vertex(neighbour, false), follow(poly.vertexPoint_(neighbour))));
  }
  poly = std::move(changed);
}

void gxSMDGDPolyPrivate::autoSegmentLengthTolerance(gxSMDGDPoly &poly, gxDimTol const &tol)
{
  Poly changed(poly);
  for (int v = 0; v < poly.numVertices(); ++v) {
    gxDimTol fitted = tol;
    if (poly.previousSegmentIndex_(v) != -1)
      fitted.nomDim(poly.segmentLength_(v));
    gxSMDGDPolyVertex vertex = poly.vertex(v, false);
    vertex.segmentLengthTol(fitted);
    changed.replaceVertex(v, vertex);
  }
  poly = std::move(changed);
}
