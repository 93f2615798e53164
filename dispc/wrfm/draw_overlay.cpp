#include "dispc/glist.h"
#include "dispc/glist_el.h"
#include "dispc/uitablet.h"
#include "dispc/wrfm/detail/segmentchords.h"
#include "dispc/wrfm/modelprivate.h"
#include "dispc/wrfm/polyprivate.h"
#include "dispc/wrfm/wirefrm.h"
#include "foundation/lineseg.h"

#include <cmath>

// Outlines and models on tablets: wireframes, the extensions of segments, arrows along the direction.

namespace
{

using Private = gxSMDGDPolyPrivate;
using Layers = gxUITablet::Layers;
using Point = gxVector<2>;

/// Where the lines of an arrow go: to a tablet, or into a list.
void addLine(gxUITablet &tablet, Point const &a, Point const &b, gxColor const &color)
{
  tablet.draw(gxLineSeg(a, b), color, gxUITablet::image);
}
void addLine(gxGraphicList &list, Point const &a, Point const &b, gxColor const &color)
{
  list.append(gxPtrHandle<gxGraphic>(new gxGraphicSimple<gxLineSeg>(gxLineSeg(a, b), color)), false);
}

template <class Target>
void addArrow(gxXform<2> const &xform, Target &target, gx2Rigid const &frame, double size, gxColor const &positive,
              gxColor const &negative)
{
  gxXform<2> const seen = xform * frame.linear();
  gxDegree const a = seen.matrix().xRot(), b = seen.matrix().yRot();
  gx2Rigid const f(a, seen.translation());
  double const side = std::abs((a - b).signedNorm().value()) >= 90.0 ? -size : size;
  Point const tip = seen.translation(), plus = f * Point(0.0, side), minus = f * Point(0.0, -side);
  Point const x(1.0, 0.0), y(0.0, 1.0);
  addLine(target, f * Point(-size, -side), tip, negative);
  addLine(target, f * Point(-size, side), tip, positive);
  addLine(target, plus + x, plus - x, positive);
  addLine(target, plus + y, plus - y, positive);
  addLine(target, minus + x, minus - x, negative);
}

/// The middle of a rounded segment, and the direction of travel there.
gx2Rigid middleOf(gxSMDGDPoly const &poly, int s)
{
  gxDegree direction;
  Point at;
  if (Private::isLineSegment_(poly, s)) {
    gx2SegmentLine const line = Private::roundedLineSegment_(poly, s);
    at = (line.p1() + line.p2()) * 0.5;
    direction = (line.p2() - line.p1()).angle();
  } else {
    gx2SegmentArc const arc = Private::roundedArcSegment_(poly, s);
    at = arc.midPoint();
    direction = arc.midDirection();
  }
  if (poly.isDirectionReversed())
    direction = direction + gxDegree(180.0);
  return gx2Rigid(direction, at);
}

/// Calls visit(segment) for each in order.
template <class Visit>
void visitSegments(gxSMDGDPoly const &poly, Visit visit)
{
  for (int v = 0; v < poly.numVertices(); ++v)
    if (Private::previousSegmentIndex_(poly, v) != -1)
      visit(v);
}

template <class Target>
void addArrows(gxSMDGDPoly const &poly, gxXform<2> const &xform, Target &target, double size)
{
  visitSegments(poly, [&](int s) {
    if (!Private::isUsedUp_(poly, s))
      addArrow(xform, target, middleOf(poly, s), size, poly.positiveArrowColor(), poly.negativeArrowColor());
  });
}

/// Calls visit(extension) for those that are there, segment by segment, forward and backward.
template <class Visit>
void visitExtensions(gxSMDGDPoly const &poly, Visit visit)
{
  visitSegments(poly, [&](int s) {
    bool const isLine = Private::isLineSegment_(poly, s);
    if (Private::forwardPercExtension(poly, s) > 0.0) {
      if (isLine)
        visit(Private::forwardLineSegmentExtension_(poly, s));
      else
        visit(Private::forwardArcSegmentExtension_(poly, s));
    }
    if (Private::backwardPercExtension(poly, Private::previousVertexIndex_(poly, s)) > 0.0) {
      if (isLine)
        visit(Private::backwardLineSegmentExtension_(poly, s));
      else
        visit(Private::backwardArcSegmentExtension_(poly, s));
    }
  });
}

}  // namespace

// ---------------------------------------------------------------- overlays

void gxSMDGDPolyPrivate::overlayLineSegment_(gxUITablet &tablet, gx2SegmentLine const &line, gxXform<2> const &xform,
                                             gxColor const &color, Layers layer)
{
  tablet.draw(gxLineSeg(xform.mapPoint(line.p1()), xform.mapPoint(line.p2())), color, layer);
}

void gxSMDGDPolyPrivate::overlayArc_(gxUITablet &tablet, gx2SegmentArc const &arc, gxXform<2> const &xform,
                                     gxColor const &color, Layers layer)
{
  gf_walkChords(
      arc, gf_chordCount(arc, xform * arc), [&](gxDegree a) { return xform.mapPoint(arc.arcPoint(a)); },
      [&](Point const &p, Point const &before) { tablet.draw(gxLineSeg(before, p), color, layer); });
}

void gxSMDGDPolyPrivate::drawWireframe(gxSMDGDPoly const &poly, gxXform<2> const &xform, gxUITablet &tablet,
                                       gxColor const &color, Layers layer)
{
  tablet.draw(wireframe(poly).map(xform), color, layer, false);
}

void gxSMDGDPolyPrivate::drawNegWireframe(gxSMDGDPoly const &poly, gxXform<2> const &xform, gxUITablet &tablet,
                                          gxColor const &color, Layers layer)
{
  visitExtensions(poly, [&](auto const &extension) {
    if constexpr (requires { extension.arcPoint(gxDegree()); })
      overlayArc_(tablet, extension, xform, color, layer);
    else
      overlayLineSegment_(tablet, extension, xform, color, layer);
  });
}

void gxSMDGDPoly::drawWireframe(gxXform<2> const &xform, gxUITablet &tablet) const
{
  Private::drawWireframe(*this, xform, tablet, colors_.wireframeDefaultColor(), gxUITablet::image);
}

// ---------------------------------------------------------------- arrows

void gxSMDGDPoly::drawArrow(gxXform<2> const &xform, gxUITablet &tablet, gx2Rigid const &frame, double size,
                            gxColor const &positive, gxColor const &negative)
{
  addArrow(xform, tablet, frame, size, positive, negative);
}

void gxSMDGDPoly::drawArrow(gxXform<2> const &xform, gxGraphicList &list, gx2Rigid const &frame, double size,
                            gxColor const &positive, gxColor const &negative)
{
  addArrow(xform, list, frame, size, positive, negative);
}

void gxSMDGDPoly::drawDirectionArrows(gxXform<2> const &xform, gxUITablet &tablet, double size) const
{
  addArrows(*this, xform, tablet, size);
}

void gxSMDGDPoly::drawDirectionArrows(gxXform<2> const &xform, gxGraphicList &list, double size) const
{
  addArrows(*this, xform, list, size);
}

// ---------------------------------------------------------------- boxes

gxRect gxSMDGDPolyPrivate::boundingBoxNeg(gxSMDGDPoly const &poly, gxXform<2> const &xform)
{
  gxRect box;
  visitExtensions(poly, [&](auto const &extension) { box = box.enclose((xform * extension).boundingBox()); });
  return box;
}

gxRect gxSMDGDModelPrivate::boundingBoxNeg(gxSMDGDModel const &model, gxXform<2> const &xform)
{
  gxRect box;
  for (gxSMDGDPoly const &poly : model.polys())
    box = box.enclose(Private::boundingBoxNeg(poly, xform));
  return box;
}

// ---------------------------------------------------------------- models

void gxSMDGDModel::drawWireframe(gxXform<2> const &xform, gxUITablet &tablet) const
{
  for (gxSMDGDPoly const &poly : polys_)
    poly.drawWireframe(xform, tablet);
}

void gxSMDGDModel::drawDirectionArrows(gxXform<2> const &xform, gxUITablet &tablet) const
{
  constexpr double size = 2.0;
  for (gxSMDGDPoly const &poly : polys_)
    poly.drawDirectionArrows(xform, tablet, size);
}

void gxSMDGDModelPrivate::drawNegWireframe(gxSMDGDModel const &model, gxXform<2> const &xform, gxUITablet &tablet)
{
  for (gxSMDGDPoly const &poly : model.polys())
    Private::drawNegWireframe(poly, xform, tablet, poly.colors().wireframeDefaultColor(), gxUITablet::image);
}
