#pragma once

/// @file
/// Outlines varied, made at random, flattened and measured.

#include "tests/foundation/shape_chain.h"
#include "tests/support/outlines.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>
#include <vector>

using Corners = std::vector<Corner>;

inline Corners cornersOf(gxSMDGDPoly const &poly)
{
  Corners corners;
  for (gxSMDGDPolyVertex const &v : poly.vertices())
    corners.push_back(
        {v.point().x(), v.point().y(), v.vertexRadius(), v.segmentAngleSpan().value(), v.subModelLabel()});
  return corners;
}

/// Checked as a whole, where appending corners would check each; throws what a change of an outline throws.
inline Outline outlineOf(Corners const &corners, bool closed = true)
{
  gxSMDGDPoly poly = closed ? gxSMDGDPoly::rectangle(1, 1, {0, 0}) : gxSMDGDPoly();
  std::vector<gxSMDGDPolyVertex> vertices;
  for (Corner const &c : corners)
    vertices.push_back(c.vertex());
  poly.vertices(vertices);
  return poly;
}

/// The same closed outline, run the other way.
inline Corners reversed(Corners const &corners)
{
  std::size_t const n = corners.size();
  Corners back;
  for (std::size_t i = 0; i < n; ++i) {
    back.push_back(corners[n - 1 - i]);
    back.back().span = -corners[(n - i) % n].span;
  }
  return back;
}

/// The same closed outline from vertex @p first on.
inline Corners startingAt(Corners corners, std::size_t first)
{
  std::rotate(corners.begin(), corners.begin() + static_cast<std::ptrdiff_t>(first), corners.end());
  return corners;
}

/// Turned about (0, 0), scaled, moved.
inline Corners mapped(Corners corners, gxDegree turn, double scale, gxVector<2> const &move)
{
  for (Corner &c : corners) {
    gxVector<2> const p = gx2Rigid(turn, move) * (gxVector<2>(c.x, c.y) * scale);
    c = {p.x(), p.y(), c.radius * scale, c.span, c.label};
  }
  return corners;
}

/// The rounded outline as points, with @p steps to an arc; a closed one ends where it starts.
inline std::vector<gxVector<2>> flattened(gxSMDGDPoly const &poly, int steps)
{
  using Private = gxSMDGDPolyPrivate;
  std::vector<gxVector<2>> points;
  auto const add = [&](gx2SegmentArc const &arc) {
    for (int k = 0; k <= steps; ++k)
      points.push_back(arc.segPoint(k / double(steps)));
  };
  for (int i = 0; i < poly.numVertices(); ++i) {
    if (Private::previousSegmentIndex_(poly, i) != -1) {
      if (!Private::isLineSegment_(poly, i))
        add(Private::roundedArcSegment_(poly, i));
      else
        for (auto const &p : {Private::roundedLineSegment_(poly, i).p1(), Private::roundedLineSegment_(poly, i).p2()})
          points.push_back(p);
    }
    if (Private::vertexIsRounded_(poly, i) && !Private::isEndVertex(poly, i))
      add(Private::roundedArcVertex_(poly, i));
  }
  return points;
}

/// What outlines of one shape share.
struct Fingerprint {
  long count;
  double area, length;

  explicit Fingerprint(gxSMDGDPoly const &poly)
      : count(poly.numVertices()), area(0), length(gxSMDGDPolyPrivate::perimeter(poly, 0.0))
  {
    auto const points = flattened(poly, 200);
    for (std::size_t i = 0; i < points.size(); ++i)
      area += points[i].cross(points[(i + 1) % points.size()]) / 2;
  }
};

class RandomOutlines
{
 public:
  explicit RandomOutlines(unsigned seed) : engine_(seed) {}
  double in(double low, double high) { return std::uniform_real_distribution<double>(low, high)(engine_); }
  int upTo(int n) { return static_cast<int>(in(0, n)); }

  /// Vertices round (0, 0) at distances of 3 to 9, with lines and arcs, some of them rounded; mostly sound.
  Corners round(int n)
  {
    Corners corners;
    for (int i = 0; i < n; ++i) {
      double const a = 2 * std::numbers::pi * (i + in(0, 0.7)) / n, r = in(3, 9);
      corners.push_back({r * std::cos(a), r * std::sin(a)});
      if (in(0, 1) < 0.4)
        corners.back().span = in(-70, 110);
      if (in(0, 1) < 0.4)
        corners.back().radius = in(0.1, 0.8);
    }
    return corners;
  }
  /// One that is accepted.
  Outline sound(int fewest = 3, int most = 9)
  {
    for (;;) {
      try {
        return outlineOf(round(fewest + upTo(most - fewest + 1)));
      } catch (gxException const &) {
      }
    }
  }

 private:
  std::mt19937 engine_;
};
