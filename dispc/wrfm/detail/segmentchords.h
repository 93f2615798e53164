#pragma once

#include "dispc/wrfm/arc.h"
#include "foundation/numbers.h"
#include "foundation/shapeserror.h"

#include <algorithm>
#include <cmath>

// How an arc becomes chords wherever it is drawn: on scopes, on tablets and in synthetic images.

/// A circular arc between two points, without the angles that drawing it does not ask for.
struct gx_ArcSweep {
  gxVector<2> center, radius;  ///< the radius leads from the centre to the start
  gxDegree span;

  /// Throws gxShapesError::DegenerateShape as the segment between these points does.
  static gx_ArcSweep of(gxVector<2> const &p1, gxVector<2> const &p2, gxDegree span)
  {
    double const w = span.value();
    if (!(std::abs(w) > 1e-15 && std::abs(w) <= gf_turnDegrees) || p1 == p2)
      throw gxShapesError::DegenerateShape();
    // an arc of less than half a turn bends round a centre on the side to which it turns, a longer one has it opposite
    bool const leftOfChord = (w > 0.0 && w < 180.0) || (w > -360.0 && w < -180.0);
    gxVector<2> const chord = p2 - p1, left(-chord.y(), chord.x());
    double const height = 0.5 / std::abs(std::tan(gxRadian(span).value() / 2.0));  // of the centre, in chords
    gxVector<2> const center = (p1 + p2) * 0.5 + left * (leftOfChord ? height : -height), radius = p1 - center;
    if (radius == gxVector<2>() || !center.isFinite())
      throw gxShapesError::DegenerateShape();
    return {center, radius, span};
  }
};

/// Degrees that a chord spans at most.
inline constexpr double gf_coarsestChord = 5.0;

/// The greatest angle of a chord, in degrees, on an arc of a radius in pels, so that it stays within a twentieth of a
/// pel of its arc.
inline double gf_chordAngle(double radius)
{
  constexpr double sagitta = 0.05;
  if (!(radius > sagitta))
    return gf_coarsestChord;
  return std::min(gf_coarsestChord, gxDegree(gxRadian(2.0 * std::acos(1.0 - sagitta / radius))).value());
}

/// The number of chords, from the span over the angle of a chord. Bounded, so that an image without bounds is left in
/// time.
inline long gf_chordCount(double chords)
{
  constexpr long most = 1'000'000;
  return std::min(static_cast<long>(gf_truncate(std::abs(chords))) + 1, most);
}

/// The number of chords of an arc that is seen as @p image.
inline long gf_chordCount(gx2SegmentArc const &arc, gx2SegmentArc const &image)
{
  return gf_chordCount(arc.angleSpan().value() / gf_chordAngle(image.radius(gxDegree(0))));
}

/// Calls chord(later, earlier) for each of @p n chords between points of the arc, as pointAt(client angle) tells them.
template <class PointAt, class Chord>
void gf_walkChords(gx2SegmentArc const &arc, long n, PointAt pointAt, Chord chord)
{
  gxDegree const step(arc.angleSpan().value() / double(n));
  gxDegree angle = arc.startAngle();
  gxVector<2> before = pointAt(angle);
  for (long i = 0; i < n; ++i) {
    angle = angle + step;
    gxVector<2> const p = pointAt(angle);
    chord(p, before);
    before = p;
  }
}

/// The same for the image of an arc, by turning radii from chord to chord: faster, and off by no more than a rounding
/// error for each chord before. Every other one is turned by itself, so that none waits for the one before.
template <class Chord>
void gf_turnChords(gx_ArcSweep const &arc, long n, gxXform<2> const &xform, Chord chord)
{
  auto const turned = [](gxVector<2> const &r, double c, double s) {
    return gxVector<2>(r.x() * c - r.y() * s, r.x() * s + r.y() * c);
  };
  gxRadian const step = gxDegree(arc.span.value() / double(n));
  double const c = std::cos(step.value()), s = std::sin(step.value());
  double const c2 = c * c - s * s, s2 = 2.0 * s * c;
  gxVector<2> even = arc.radius, odd = turned(even, c, s);
  gxVector<2> before = xform.mapPoint(arc.center + even);
  long i = 0;
  for (; i + 1 < n; i += 2) {
    gxVector<2> const p = xform.mapPoint(arc.center + odd);
    odd = turned(odd, c2, s2);
    even = turned(even, c2, s2);
    gxVector<2> const q = xform.mapPoint(arc.center + even);
    chord(p, before);
    chord(q, p);
    before = q;
  }
  if (i < n)
    chord(xform.mapPoint(arc.center + odd), before);
}
