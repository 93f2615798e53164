// Outlines cut by a mask.

#include "dispc/wrfm/detail/crop.h"
#include "dispc/wrfm/detail/polypiece.h"
#include "dispc/wrfm/model.h"
#include "dispc/wrfm/polyprivate.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

namespace
{

using V = gxVector<2>;
using Poly = gxSMDGDPoly;
using Private = gxSMDGDPolyPrivate;
using Vertex = gxSMDGDPolyVertex;

gxDegree const noSpan(0.0);

/// A sharp vertex without label and tolerance.
Vertex plainVertex(V const &point, gxDegree span)
{
  Vertex v;
  v.point(point);
  v.segmentAngleSpan(span);
  return v;
}

/// From one point of an arc on to another one.
gxDegree sweep(gx2SegmentArc const &arc, V const &from, V const &to)
{
  gxDegree const a = (from - arc.center()).angle(), b = (to - arc.center()).angle();
  return arc.angleSpan().value() >= 0.0 ? (b - a).norm() : -(a - b).norm();
}

bool allows(gxDimTol tol, double length)
{
  try {
    tol.nomDim(length);
    return true;
  } catch (gxException const &) {
    return false;
  }
}

/// Goes once round the outline and collects the vertices of the pieces. While a piece is open, what comes along is
/// kept.
class CropWalk
{
 public:
  using Piece = std::vector<Vertex>;

  CropWalk(Poly const &poly, gx_CropPath const &path) : poly_(poly), path_(path), next_(path.points().begin())
  {
    if (path.beginsKept())
      piece_.push_back(poly.vertices().front());
    for (int i = 0; i < poly.numVertices(); ++i) {
      passVertex(i);
      passSegment(i);
    }
    finish();
  }

  /// True if all that there is came out in one piece.
  bool isWhole() const { return !isCut_ && pieces_.size() == 1 && pieces_[0].size() == poly_.vertices().size(); }
  std::vector<Piece> const &pieces() const { return pieces_; }

 private:
  using Points = std::vector<gx_CropPoint>;

  /// The points of a piece of the outline.
  Points pointsOf(std::size_t piece)
  {
    auto const first = next_;
    while (next_ != path_.points().end() && next_->piece == piece)
      ++next_;
    return {first, next_};
  }
  bool isOpen() const { return !piece_.empty(); }
  void emit()
  {
    pieces_.push_back(std::move(piece_));
    piece_.clear();
  }

  void push(Vertex const &v);
  void passVertex(int i);
  void passSharp(int i, Points const &points);
  void passFillet(int i, Points const &points);
  void passSegment(int i);
  void finish();
  Vertex arriving(int i, V const &at) const;

  Poly const &poly_;
  gx_CropPath const &path_;
  Points::const_iterator next_;
  Piece piece_;
  std::vector<Piece> pieces_;
  bool isCut_ = false;
  // What of the present segment belongs to the piece, if not all of it.
  struct Begun {
    std::optional<V> from;  ///< where it begins
    bool isCut = false;
  } begun_;
};

/// A cut end has the label of the vertex beside it, unless both together would claim more of the segment than there is.
void CropWalk::push(Vertex const &v)
{
  if (piece_.size() == 1) {
    Vertex &first = piece_.front();
    bool const claimsTooMuch = first.percentNextSegment() + v.percentPrevSegment() > 1.0;
    if (begun_.isCut && first.subModelLabel() == v.subModelLabel() && claimsTooMuch)
      first.subModelLabel(-1);
  }
  piece_.push_back(v);
}

/// The vertex where segment i of the piece ends: vertex i, there or at another point of its segment.
Vertex CropWalk::arriving(int i, V const &at) const
{
  Vertex v = poly_.vertices()[static_cast<std::size_t>(i)];
  bool const isAll = !begun_.from && !begun_.isCut && at == v.point();
  v.point(at);
  if (isAll || !isOpen() || Private::previousSegmentIndex_(poly_, i) == -1)
    return v;
  V const from = begun_.from.value_or(poly_.vertex(i - 1, true).point());
  double length = from.distance(at);
  if (!Private::isLineSegment_(poly_, i)) {
    gx2SegmentArc const arc = Private::arcSegment_(poly_, i);
    v.segmentAngleSpan(sweep(arc, from, at));
    length = gxRadian(gxDegree(std::abs(v.segmentAngleSpan().value()))).value() * arc.radius(arc.startAngle());
  }
  if (begun_.isCut || !allows(v.segmentLengthTol(), length))
    v.segmentLengthTol(gxDimTol());
  return v;
}

void CropWalk::passVertex(int i)
{
  Points const points = pointsOf(2 * static_cast<std::size_t>(i));
  if (Private::vertexIsRounded_(poly_, i) && !Private::isEndVertex(poly_, i))
    passFillet(i, points);
  else
    passSharp(i, points);
}

void CropWalk::passSharp(int i, Points const &points)
{
  bool const isCut = !points.empty() && points.front().isCut;
  bool const begins = isCut || (!points.empty() && points.front().touches);
  bool const wasOpen = isOpen(), isThere = i == 0 && wasOpen;
  if ((wasOpen || begins) && !isThere)
    push(arriving(i, poly_.vertices()[static_cast<std::size_t>(i)].point()));
  if (wasOpen && isCut)
    emit();
  isCut_ = isCut_ || isCut;
  begun_ = {};
}

/// The parts of a cut fillet are segments of their own.
void CropWalk::passFillet(int i, Points const &points)
{
  auto const at = static_cast<std::size_t>(i);
  bool const isAnyCut = std::any_of(points.begin(), points.end(), [](auto const &p) { return p.isCut; });
  if (!isAnyCut) {
    if (isOpen() && i > 0)
      push(arriving(i, poly_.vertices()[at].point()));
    begun_ = {};
    return;
  }
  isCut_ = true;
  gx2SegmentArc const fillet = Private::roundedArcVertex_(poly_, i);
  V const start = gx_PolyFields::prevRoundPoints(poly_)[at], end = gx_PolyFields::nextRoundPoints(poly_)[at];
  double const length = path_.length(2 * at);
  double from = 0.0;
  auto const spanTo = [&](double along) { return fillet.angleSpan() * ((along - from) / length); };
  if (isOpen()) {
    Vertex v = arriving(i, start);
    v.vertexRadius(0.0);
    if (i == 0)
      piece_.front() = v;
    else
      push(v);
  }
  begun_ = {};
  for (gx_CropPoint const &p : points) {
    if (!p.isCut)
      continue;
    if (isOpen()) {
      if (p.along > from)
        push(plainVertex(p.point, spanTo(p.along)));
      emit();
    } else {
      push(plainVertex(p.point, noSpan));
      from = p.along;
    }
  }
  if (!isOpen())
    return;
  if (from < length)
    push(plainVertex(end, spanTo(length)));
  begun_.from = end;
}

void CropWalk::passSegment(int i)
{
  int const s = Private::nextSegmentIndex_(poly_, i);
  for (gx_CropPoint const &p : pointsOf(2 * static_cast<std::size_t>(i) + 1)) {
    if (!p.isCut)
      continue;
    isCut_ = begun_.isCut = true;
    Vertex v = arriving(s, p.point);
    v.segmentLengthTol(gxDimTol());
    bool const wasOpen = isOpen();
    push(v);
    if (wasOpen)
      emit();
    else
      begun_.from = p.point;
  }
}

/// The last piece of a closed outline goes on in the first one, if the walk began in it.
void CropWalk::finish()
{
  if (!isOpen())
    return;
  bool const goesOn = poly_.isClosed() && path_.beginsKept() && !pieces_.empty();
  if (!goesOn) {
    emit();
    return;
  }
  Piece const first = std::move(pieces_.front());
  Vertex joint = arriving(0, first.front().point());
  joint.vertexRadius(first.front().vertexRadius());
  push(joint);
  piece_.insert(piece_.end(), first.begin() + 1, first.end());
  pieces_.front() = std::move(piece_);
}

/// A fillet beside a cut one may find less than it needs when all are found anew. As the piece grows, it is found while
/// its segment is the last one, which it may use up.
Poly made(CropWalk::Piece const &piece)
{
  Poly poly;
  try {
    poly.vertices(piece);
  } catch (Poly::invalidRounding const &) {
    for (Vertex const &v : piece)
      poly << v;
  }
  return poly;
}

}  // namespace

gxSMDGDModel gxSMDGDPolyPrivate::crop(Poly const &poly, Poly const &mask, bool keepInside)
{
  poly.vertexIndex_(0, false);
  if (mask.isOpen())
    throw notClosed();
  gx_CropPath const path(poly, mask, keepInside);
  CropWalk const walk(poly, path);
  gxSMDGDModel result;
  for (CropWalk::Piece const &piece : walk.pieces()) {
    Poly cut;
    if (walk.isWhole())
      cut = gx_PolyFields::geometryOf(poly);
    else
      cut = made(piece);
    cut.directionReversed_ = poly.directionReversed_;
    result << cut;
  }
  return result;
}
