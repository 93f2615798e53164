#include "dispc/dispprop.h"
#include "dispc/uiscope.h"
#include "dispc/wrfm/arc.h"
#include "dispc/wrfm/detail/genpoly.h"
#include "dispc/wrfm/detail/polyfields.h"
#include "dispc/wrfm/detail/segmentchords.h"
#include "dispc/wrfm/genpoly.h"
#include "dispc/wrfm/polyprivate.h"
#include "foundation/rigid.h"

#include <algorithm>
#include <array>
#include <cmath>

// The polygon on a scope, as single lines.

namespace
{

using Private = gxSMDGDPolyPrivate;

/// The strokes of one drawing, all through one segment. They go out a few at a time: a point that has just been mapped
/// is slow to copy, as its halves are still on their way to memory.
class Strokes
{
 public:
  Strokes(gxGraphicProps const &props, gxUIScope &scope, gxXform<2> const &image)
      : props_(props), scope_(scope), image_(image)
  {
  }

  void line(gxVector<2> const &from, gxVector<2> const &to)
  {
    waiting_[size_] = {from, to};
    if (++size_ == waiting_.size())
      flush();
  }
  /// The image of an arc.
  void arc(gx_ArcSweep const &arc)
  {
    if (scale_ == 0.0)
      scale_ = 1.0 / (image_.matrix().inverse() * gxVector<2>(1.0, 0.0)).len();
    double const radius = arc.radius.len() * scale_;
    if (!(std::abs(radius - lastRadius_) <= 1e-12 * radius)) {  // fillets often have the same one
      lastRadius_ = radius;
      lastChord_ = gf_chordAngle(radius);
    }
    gf_turnChords(arc, gf_chordCount(arc.span.value() / lastChord_), image_,
                  [this](gxVector<2> const &p, gxVector<2> const &before) { line(p, before); });
  }
  /// Draws what still waits.
  void flush()
  {
    for (std::size_t i = 0; i < size_; ++i) {
      stroke_.start(waiting_[i].from);
      stroke_.end(waiting_[i].to);
      scope_.draw(stroke_, props_);
    }
    size_ = 0;
  }

 private:
  struct Ends {
    gxVector<2> from, to;
  };

  gxGraphicProps const &props_;
  gxUIScope &scope_;
  gxXform<2> const &image_;
  double scale_ = 0.0;  ///< of the radius that is seen at angle 0, once there is one
  double lastRadius_ = 0.0, lastChord_ = gf_chordAngle(0.0);
  gxLineSeg stroke_;
  std::array<Ends, 32> waiting_;
  std::size_t size_ = 0;
};

/// The two angles of the matrix are a right angle or more apart: it mirrors.
bool mirrors(gxMatrix<2> const &m)
{
  return std::abs(gxDegree(m.yRot() - m.xRot()).signedNorm().value()) >= 90.0;
}

/// The marks that tell the direction of an outline, and its positive and negative side.
class Marks
{
 public:
  Marks(gxSMDGDPoly const &poly, gxXform<2> const &xform, Strokes &strokes)
      : poly_(poly), xform_(xform), strokes_(strokes), mirrored_(mirrors(xform.matrix()))
  {
  }

  void draw()
  {
    long const n = poly_.numVertices(), pairs = poly_.isOpen() ? n - 1 : n;
    double longest = 0.0;
    for (long v = 0; v < pairs; ++v)
      longest = std::max(longest, point(v).distance(point(v + 1)));
    for (int v = 0; v < n; ++v) {
      int const s = Private::previousSegmentIndex_(poly_, v);
      if (s != -1 && !Private::isUsedUp_(poly_, s) && point(v - 1).distance(point(v)) >= 0.2 * longest)
        drawOne(s, 0.08 * longest);
    }
  }

 private:
  gxVector<2> point(long v) const { return xform_.mapPoint(poly_.vertex(v, true).point()); }

  /// Where the middle of the rounded segment lies, and its direction there.
  gx2Rigid place(int s) const
  {
    gxVector<2> at;
    gxDegree direction;
    if (Private::isLineSegment_(poly_, s)) {
      gx2SegmentLine const line = Private::roundedLineSegment_(poly_, s);
      gxVector<2> const from = xform_.mapPoint(line.p1()), to = xform_.mapPoint(line.p2());
      at = (from + to) * 0.5;
      direction = (to - from).angle();
    } else {
      gx2SegmentArc const arc = Private::roundedArcSegment_(poly_, s);
      at = xform_.mapPoint(arc.midPoint());
      direction = xform_.mapAngle(arc.midDirection());
    }
    if (poly_.isDirectionReversed())
      direction = direction + gxDegree(180.0);
    return gx2Rigid(direction, at);
  }

  void drawOne(int s, double size)
  {
    gx2Rigid const frame = place(s);
    auto const at = [&](double x, double y) { return frame * gxVector<2>(x, mirrored_ ? -y : y); };
    gxVector<2> const a = at(-size, size), b = at(-size, -size), plus = at(0.0, -size), minus = at(0.0, size);
    gxVector<2> const across(0.3 * size, 0.0), down(0.0, 0.3 * size);
    strokes_.line(frame.translation(), b);
    strokes_.line(frame.translation(), a);
    strokes_.line(plus - across, plus + across);
    strokes_.line(plus - down, plus + down);
    strokes_.line(minus - across, minus + across);
  }

  gxSMDGDPoly const &poly_;
  gxXform<2> const &xform_;
  Strokes &strokes_;
  bool const mirrored_;
};

/// What is left of an arc that ends at vertex s.
gx_ArcSweep roundedArc(gxSMDGDPoly const &poly, std::size_t before, std::size_t s)
{
  auto const &vertices = gx_PolyFields::vertices(poly);
  gxVector<2> const from = gx_PolyFields::nextRoundPoints(poly)[before];
  if (from == vertices[before].point() && gx_PolyFields::prevRoundPoints(poly)[s] == vertices[s].point())
    return gx_ArcSweep::of(from, vertices[s].point(), vertices[s].segmentAngleSpan());
  gx2SegmentArc const arc = Private::roundedArcSegment_(poly, static_cast<int>(s));
  return {arc.center(), from - arc.center(), arc.angleSpan()};
}

/// The segments in order. The ends of lines are read from the fields. True if a vertex has a radius.
bool drawSegments(gxSMDGDPoly const &poly, gxXform<2> const &xform, bool unrounded, Strokes &strokes)
{
  auto const &vertices = gx_PolyFields::vertices(poly);
  gxVector<2> const *const starts = gx_PolyFields::nextRoundPoints(poly).data();
  gxVector<2> const *const ends = gx_PolyFields::prevRoundPoints(poly).data();
  std::size_t const n = vertices.size(), segments = static_cast<std::size_t>(poly.numSegments());
  bool isRounded = false;  // vertex 0 of an open outline, which no segment ends at, has no fillet
  for (std::size_t i = 0; i < segments; ++i) {
    std::size_t const s = i + 1 == n ? 0 : i + 1;
    isRounded |= vertices[s].vertexRadius() != 0.0;
    if (!unrounded && Private::isUsedUp_(poly, static_cast<int>(s)))
      continue;
    if (vertices[s].segmentAngleSpan().value() == 0.0 || Private::isLineSegment_(poly, static_cast<int>(s)))
      strokes.line(xform.mapPoint(unrounded ? vertices[i].point() : starts[i]),
                   xform.mapPoint(unrounded ? vertices[s].point() : ends[s]));
    else
      strokes.arc(unrounded ? gx_ArcSweep::of(vertices[i].point(), vertices[s].point(), vertices[s].segmentAngleSpan())
                            : roundedArc(poly, i, s));
  }
  return isRounded;
}

}  // namespace

void gxGenPoly::drawToScope(gxGraphicProps const &props, gxUIScope &scope) const
{
  drawToScope_(gxXform<2>(), props, scope);
}

void gxGenPoly::drawToScope_(gxXform<2> const &xform, gxGraphicProps const &props, gxUIScope &scope) const
{
  checkMap_(xform);
  gxXform<2> const image = xform * xform_;
  Strokes strokes(props, scope, image);
  auto const draw = [&] {
    bool const isRounded = drawSegments(poly_, image, props.showVertex(), strokes);
    if (props.arrowHead())
      Marks(poly_, image, strokes).draw();
    for (int v = 0; isRounded && v < numVertices(); ++v)
      if (auto const at = static_cast<std::size_t>(v); hasFillet_(v))
        strokes.arc(gx_ArcSweep::of(gx_PolyFields::prevRoundPoints(poly_)[at],
                                    gx_PolyFields::nextRoundPoints(poly_)[at],
                                    gxDegree(gx_PolyFields::roundSpans(poly_)[at])));
  };
  ask_([&] {
    try {
      draw();
    } catch (gxException const &) {  // of a piece that cannot be; what comes before it is drawn
      strokes.flush();
      throw;
    }
    strokes.flush();
  });
}
