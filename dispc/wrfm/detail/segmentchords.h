#pragma once

#include "dispc/wrfm/arc.h"
#include "foundation/numbers.h"

#include <algorithm>
#include <cmath>

// How an arc becomes chords wherever it is drawn: on scopes, on tablets and in synthetic images.

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

/// The same for the image of a circular arc, by turning a radius from chord to chord: faster, and off by no more than a
/// rounding error for each chord before.
template <class Chord>
void gf_turnChords(gx2SegmentArc const &arc, long n, gxXform<2> const &xform, Chord chord)
{
  gxRadian const step = gxDegree(arc.angleSpan().value() / double(n));
  double const c = std::cos(step.value()), s = std::sin(step.value());
  gxVector<2> const center = arc.center();
  gxVector<2> radius = arc.p1() - center;
  gxVector<2> before = xform.mapPoint(center + radius);
  for (long i = 0; i < n; ++i) {
    radius = gxVector<2>(radius.x() * c - radius.y() * s, radius.x() * s + radius.y() * c);
    gxVector<2> const p = xform.mapPoint(center + radius);
    chord(p, before);
    before = p;
  }
}
