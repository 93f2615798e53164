#pragma once

/// @file
/// Outlines as tests state them, and print them when they fail.

#include "dispc/wrfm/polyprivate.h"
#include "tests/support/archived.h"

#include <cstdio>
#include <random>
#include <string>
#include <utility>
#include <vector>

/// Numbers that are the same on every machine.
class Random
{
 public:
  explicit Random(unsigned seed) : engine_(seed) {}
  double in(double low, double high) { return low + (high - low) * static_cast<double>(engine_() >> 11) * 0x1p-53; }
  int below(int n) { return static_cast<int>(engine_() % static_cast<unsigned>(n)); }
  /// One chance in @p n.
  bool one(int n) { return below(n) == 0; }

 private:
  std::mt19937_64 engine_;
};

/// The part of a vertex that a test states.
struct Corner {
  double x = 0.0;
  double y = 0.0;
  double radius = 0.0;
  double span = 0.0;
  long label = -1;

  gxSMDGDPolyVertex vertex() const
  {
    return {{x, y}, radius, gxDegree(span), 0.5, 0.5, label, gxDimTol(-1, -1, -1, gxDimTol::Offsets)};
  }
};

/// Round a centre, so that most of them are sound: a corner in each of n sectors.
inline std::vector<Corner> star(Random &random, int n)
{
  std::vector<Corner> corners;
  for (int i = 0; i < n; ++i) {
    gxVector<2> const p(random.in(4, 10), gxDegree(360.0 * (i + random.in(0.1, 0.9)) / n));
    corners.push_back({p.x(), p.y(), random.one(3) ? random.in(-1, 1) : 0, random.one(4) ? random.in(-60, 60) : 0,
                       random.below(4) - 1});
  }
  return corners;
}

/// An outline with its protected members in reach.
class Outline : public gxSMDGDPoly
{
 public:
  using gxSMDGDPoly::gxSMDGDPoly;
  Outline(gxSMDGDPoly const &poly) : gxSMDGDPoly(poly) {}  // NOLINT(google-explicit-constructor)
  /// By appending the corners, and closing. Throws what that throws.
  Outline(bool closed, std::vector<Corner> const &corners)
  {
    for (Corner const &c : corners)
      *this << c.vertex();
    if (closed)
      close();
  }

  using gxSMDGDPoly::appendSegmentLengths_;
  using gxSMDGDPoly::backwardPercExtension_;
  using gxSMDGDPoly::centerOfMass_;
  using gxSMDGDPoly::extensionPerimeter_;
  using gxSMDGDPoly::firstSegmentIndex_;
  using gxSMDGDPoly::forwardPercExtension_;
  using gxSMDGDPoly::getVertexIndices_;
  using gxSMDGDPoly::isArcSegment_;
  using gxSMDGDPoly::isEndVertex;
  using gxSMDGDPoly::lastSegmentIndex_;
  using gxSMDGDPoly::nextSegmentIndex_;
  using gxSMDGDPoly::orientation_;
  using gxSMDGDPoly::perimeter_;
  using gxSMDGDPoly::previousSegmentIndex_;
  using gxSMDGDPoly::previousVertexIndex_;
  using gxSMDGDPoly::roundedSegmentLength_;
  using gxSMDGDPoly::roundingIsUncertain_;
  using gxSMDGDPoly::segmentIndex_;
  using gxSMDGDPoly::validateIncremental_;
  using gxSMDGDPoly::vertexIndex_;
  using gxSMDGDPoly::vertexIsRounded_;
  using gxSMDGDPoly::vertexRadius_;

  bool isRounded(int v) const { return vertexIsRounded_(v) && !isEndVertex(v); }
  /// The ends of a segment between its roundings.
  std::pair<gxVector<2>, gxVector<2>> roundedEnds(int s) const
  {
    if (isArcSegment_(s)) {
      gx2SegmentArc const arc = gxSMDGDPolyPrivate::roundedArcSegment_(*this, s);
      return {arc.p1(), arc.p2()};
    }
    gx2SegmentLine const line = gxSMDGDPolyPrivate::roundedLineSegment_(*this, s);
    return {line.p1(), line.p2()};
  }
  gx2SegmentArc fillet(int v) const { return gxSMDGDPolyPrivate::roundedArcVertex_(*this, v); }

  /// Every field to the last bit, derived ones, names and extensions among them.
  std::string allFields() const
  {
    std::string fields = archivedBytes<gxSMDGDPoly>(*this);
    for (int v = 0; v < numVertices(); ++v)
      for (double const fraction : {forwardPercExtension_(v), backwardPercExtension_(v)})
        fields.append(reinterpret_cast<char const *>(&fraction), sizeof fraction);
    return fields;
  }
};

/// The outline as an expression that makes it again.
inline std::string asCode(gxSMDGDPoly const &poly)
{
  std::string code = std::string("Outline(") + (poly.isClosed() ? "true" : "false") + ", {";
  for (gxSMDGDPolyVertex const &v : poly.vertices()) {
    char text[160];
    std::snprintf(text, sizeof text, "{%.17g, %.17g, %.17g, %.17g, %ld}, ", v.point().x(), v.point().y(),
                  v.vertexRadius(), v.segmentAngleSpan().value(), v.subModelLabel());
    code += text;
  }
  return code + "})";
}
