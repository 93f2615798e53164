#include "dispc/wrfm/detail/segmentchords.h"
#include "dispc/wrfm/detail/synthetic.h"
#include "dispc/wrfm/synthetic.h"
#include "foundation/numbers.h"
#include "foundation/shapeserror.h"

#include <algorithm>
#include <cmath>

// Arcs of synthetic images, as chains of chords.

namespace
{

using Buffer = gxPelBuffer<unsigned char>;
using Point = gxVector<2>;

/// The running extents, each of which may be missing.
struct Extents {
  double *minX = nullptr, *maxX = nullptr, *minY = nullptr, *maxY = nullptr;

  void add(Point const &p) const
  {
    take(minX, p.x(), p.x() < (minX ? *minX : 0.0));
    take(maxX, p.x(), p.x() > (maxX ? *maxX : 0.0));
    take(minY, p.y(), p.y() < (minY ? *minY : 0.0));
    take(maxY, p.y(), p.y() > (maxY ? *maxY : 0.0));
  }
  static void take(double *to, double value, bool exceeds)
  {
    if (to && exceeds)
      *to = value;
  }
};

/// True if an end lies in the window grown by a pel, or the arc crosses one of its sides.
bool mayShow(gx2SegmentArc const &arc, gxPelRect const &window)
{
  double const left = double(window.x()) - 1.0, right = double(window.x()) + double(window.width()) + 1.0;
  double const top = double(window.y()) - 1.0, bottom = double(window.y()) + double(window.height()) + 1.0;
  auto const holds = [&](Point const &p) { return p.x() >= left && p.x() <= right && p.y() >= top && p.y() <= bottom; };
  if (holds(arc.p1()) && holds(arc.p2()))
    return true;
  gx2SegmentLine const sides[] = {
      {{left, top}, {right, top}},
      {{left, bottom}, {right, bottom}},
      {{left, top}, {left, bottom}},
      {{right, top}, {right, bottom}},
  };
  return std::any_of(std::begin(sides), std::end(sides),
                     [&](gx2SegmentLine const &side) { return !arc.intersection(side, false).empty(); });
}

bool isFinite(gx2SegmentArc const &arc)
{
  Point const p = arc.p1(), q = arc.p2(), c = arc.center();
  return std::isfinite(p.x() + p.y()) && std::isfinite(q.x() + q.y()) && std::isfinite(c.x() + c.y());
}

/// Calls onPoint(p) for each point but the first, and onJoint() for one that is the same as the one before.
template <class OnPoint, class OnJoint>
void drawArc(Buffer const &buffer, gx2SegmentArc const &arc, gxXform<2> const &xform, unsigned char value, bool smooth,
             OnPoint onPoint, OnJoint onJoint)
{
  gx2SegmentArc const image = xform * arc;
  if (!isFinite(image) || !mayShow(image, buffer.window()))
    return;
  gf_walkChords(
      arc, gf_chordCount(arc, image), [&](gxDegree a) { return xform.mapPoint(arc.arcPoint(a)); },
      [&](Point const &q, Point const &before) {
        onPoint(q);
        if (q == before)
          onJoint();
        else
          gf_drawSyntheticLine(buffer, q, before, gxXform<2>(), value, smooth);
      });
}

}  // namespace

void gf_drawSyntheticArc(Buffer const &buffer, gx2SegmentArc const &arc, gxXform<2> const &xform, unsigned char value,
                         bool smooth)
{
  drawArc(
      buffer, arc, xform, value, smooth, [](Point const &) {}, [] {});
}

void drawArcPelBuf(Buffer buffer, gx2SegmentArc const &arc, gxXform<2> const &xform, signed char colour,
                   signed char smooth, double *minX, double *maxX, double *minY, double *maxY)
{
  buffer.checkBound();
  Extents const extents = smooth ? Extents{} : Extents{minX, maxX, minY, maxY};
  drawArc(
      buffer, arc, xform, static_cast<unsigned char>(colour), smooth, [&](Point const &q) { extents.add(q); },
      [] { throw gxShapesError::DegenerateShape(); });
}

void drawHorizontalExtentsPelBuf(Buffer buffer, gx2SegmentArc const &arc, gxXform<2> const &xform, signed char colour,
                                 double *minX, double *maxX, double *minY, double *maxY)
{
  buffer.checkBound();
  if (!isFinite(xform * arc))
    return;
  Extents const extents{minX, maxX, minY, maxY};
  auto const value = static_cast<unsigned char>(colour);
  gf_walkChords(
      arc, gf_chordCount(arc.angleSpan().value() * (1.0 / gf_coarsestChord)),
      [&](gxDegree a) { return arc.arcPoint(a); },
      [&](Point const &p, Point const &before) {
        extents.add(xform.mapPoint(p));
        if (p == before)
          throw gxShapesError::DegenerateShape();
        gf_markSyntheticExtents(buffer, p, before, xform, value);
      });
}
