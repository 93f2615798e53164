#pragma once

#include "foundation/matrix.h"

/// The ellipse that a matrix makes of the unit circle: matrix * (cos t, sin t) equals
/// R(angle) * (rx cos s, ry sin s) with s = t + phase, or s = -(t + phase) if mirrored.
struct gx_EllipseAxes {
  double rx = 0.0;
  double ry = 0.0;
  double angle = 0.0;
  double phase = 0.0;
  bool mirrored = false;
};

/// Finds the axes by the singular values of the matrix. Of the four equal forms (the axes exchanged, the angle turned
/// by quarter turns) the one whose phase is nearest to @p nearPhase is returned, so that a map that does not turn an
/// ellipse keeps its numbers; a circle keeps the phase exactly.
gx_EllipseAxes gf_ellipseAxes(gxMatrix<2> const &m, double nearPhase);
