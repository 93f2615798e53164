#include "dispc/wrfm/detail/polyedit.h"
#include "dispc/wrfm/polyprivate.h"
#include "foundation/polygon.h"
#include "foundation/shapeserror.h"

#include <algorithm>
#include <utility>

// Outlines cut, turned round and joined.

namespace
{

using Poly = gxSMDGDPoly;
using Vertex = gxSMDGDPolyVertex;

gxDimTol const untold(-1, -1, -1, gxDimTol::Limits);

/// A sharp vertex at the end of a line.
Vertex plainVertex(gxVector<2> const &point)
{
  Vertex v;
  v.point(point);
  return v;
}

}  // namespace

void gxSMDGDPolyPrivate::copyLooks_(Poly const &from, Poly &to)
{
  to.directionReversed_ = from.directionReversed_;
  to.positiveArrowColor(from.positiveArrowColor());
  to.negativeArrowColor(from.negativeArrowColor());
  to.weight(from.weight());
}

Poly gxSMDGDPolyPrivate::outline(std::vector<Vertex> vertices, bool isClosed)
{
  for (Vertex const &v : vertices)
    checkFinite_(v);
  Poly poly;
  Edit edit(poly);
  edit.replaceAll(std::move(vertices));
  poly.isOpen_ = !isClosed;
  poly.validate_();
  edit.keep();
  return poly;
}

Poly gxSMDGDPolyPrivate::moved(Poly const &poly, gxVector<2> const &offset)
{
  Poly result(poly);
  result.boxes_.clear();
  for (Vertex &v : result.vertices_)
    v.point_ = v.point_ + offset;
  for (auto *const points : {&result.prevRoundPoints_, &result.nextRoundPoints_})
    for (gxVector<2> &p : *points)
      p = p + offset;
  return result;
}

// Each of the two segments gives the part of it that is next to the vertex.
Poly gxSMDGDPolyPrivate::subPoly(Poly const &poly, int vertex, bool wrap)
{
  int const v = poly.vertexIndex_(vertex, wrap);
  int before = -1, after = -1;
  poly.getSegmentIndices_(before, after, v);
  double const p = poly.percentPrevSegment_(v), q = poly.percentNextSegment_(v);
  Vertex middle = poly.at_(v);
  middle.segmentLengthTol(untold);
  middle.subModelLabel(-1);

  Poly piece;
  if (before >= 0) {
    if (poly.isLineSegment_(before)) {
      piece << plainVertex(lineSegment_(poly, before).segPoint(1.0 - p));
      middle.segmentAngleSpan(gxDegree(0.0));
    } else {
      piece << plainVertex(arcSegment_(poly, before).segPoint(1.0 - p));
      middle.segmentAngleSpan(poly.segmentAngleSpan_(before) * p);
    }
  }
  piece << middle;
  if (after >= 0) {
    bool const isLine = poly.isLineSegment_(after);
    Vertex last = plainVertex(isLine ? lineSegment_(poly, after).segPoint(q) : arcSegment_(poly, after).segPoint(q));
    if (!isLine)
      last.segmentAngleSpan(poly.segmentAngleSpan_(after) * q);
    piece << last;
  }
  copyLooks_(poly, piece);
  return piece;
}

Poly gxSMDGDPolyPrivate::corner(Poly const &poly, int vertex, bool wrap)
{
  if (poly.isEndVertex(poly.vertexIndex_(vertex, wrap)))
    throw invalidIndex();
  return subPoly(poly, vertex, wrap);
}

// What belongs to a segment is kept at its end: it moves to the other vertex of the segment. Walking backward swaps the
// sides, and the direction flag makes up for that.
void gxSMDGDPolyPrivate::reversePoly(Poly const &in, Poly &out)
{
  Poly reversed;
  Vertex const none;
  int const n = static_cast<int>(in.numVertices());
  for (int i = n - 1; i >= 0; --i) {
    bool const isEnd = in.isOpen() && i == n - 1;
    Vertex const &next = isEnd ? none : in.vertices()[static_cast<std::size_t>((i + 1) % n)];
    Vertex c = in.vertices()[static_cast<std::size_t>(i)];
    c.segmentLengthTol(next.segmentLengthTol());
    c.segmentAngleSpan(gxDegree(-next.segmentAngleSpan().value()));
    std::swap(c.percentPrevSegment_, c.percentNextSegment_);
    std::swap(c.forwardPercExtension_, c.backwardPercExtension_);
    reversed << c;
  }
  if (n > 0) {
    copyLooks_(in, reversed);
    reversed.colors(in.colors());
  }
  if (in.isClosed())
    reversed.close();
  reversed.directionReversed_ = !in.isDirectionReversed();
  out = std::move(reversed);
}

void gxSMDGDPolyPrivate::connectPolys(Poly const &a, bool aForward, Poly const &b, bool bForward, Poly &out)
{
  if (a.isClosed() || b.isClosed())
    throw invalidVertices();
  auto const walked = [](Poly const &poly, bool forward) {
    Poly result = poly;
    if (!forward)
      reversePoly(poly, result);
    return result;
  };
  Poly joined = walked(a, aForward);
  Poly const tail = walked(b, bForward);
  bool isFirst = true;
  for (Vertex v : tail.vertices()) {
    if (std::exchange(isFirst, false))
      v.segmentAngleSpan(gxDegree(0.0));
    joined << v;
  }
  out = std::move(joined);
}

// Segment 0 of an open outline counts as deleted: that is where its walk begins and ends.
void gxSMDGDPolyPrivate::deleteSegments(Poly const &poly, std::vector<long> const &segments, std::vector<Poly> &out)
{
  std::vector<Poly> pieces;
  if (segments.empty())
    pieces.push_back(poly);
  std::size_t const n = poly.vertices().size();
  std::vector<bool> isDeleted(n, false);
  if (poly.isOpen() && n > 0)
    isDeleted[0] = true;
  for (long const s : segments) {
    if (s < 0 || s >= static_cast<long>(n))
      throw invalidIndex();
    isDeleted[static_cast<std::size_t>(poly.segmentIndex_(static_cast<int>(s), false))] = true;
  }
  std::size_t start = 0;
  while (start < n && !(isDeleted[start] && !isDeleted[(start + 1) % n]))
    ++start;

  Poly piece;
  auto const finish = [&] {
    copyLooks_(poly, piece);
    piece.colors(poly.colors());
    if (piece.numVertices() >= 2)
      pieces.push_back(std::move(piece));
    piece = Poly();
  };
  bool const isCut = !segments.empty() && start < n;
  for (std::size_t i = 0; i < n && isCut; ++i) {
    std::size_t const v = (start + i) % n;
    piece << poly.vertices()[v];
    if (isDeleted[(v + 1) % n])
      finish();
  }
  out = std::move(pieces);
}

Poly gxSMDGDPolyPrivate::flip(Poly const &poly)
{
  std::vector<Vertex> mirrored = poly.vertices();
  for (Vertex &v : mirrored) {
    v.point(gxVector<2>(v.point().x(), -v.point().y()));
    v.segmentAngleSpan(gxDegree(-v.segmentAngleSpan().value()));
  }
  Poly result = poly;
  result.vertices(mirrored);
  result.directionReversed_ = !poly.isDirectionReversed();
  return result;
}

Poly gxSMDGDPolyPrivate::convert(gxPolygon const &polygon)
{
  Poly result;
  for (gxVector<2> const &p : polygon.vertices())
    result << Vertex(p, 0.5, 0.5, -1);
  result.close();
  return result;
}
