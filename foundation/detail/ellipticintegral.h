#pragma once

/// Length of the ellipse with half axes @p a and @p b, not negative; to a few units in the last place.
///
/// The complete elliptic integral of the second kind by the arithmetic-geometric mean (Abramowitz and Stegun,
/// Handbook of Mathematical Functions, 17.6).
double gf_ellipseLength(double a, double b);

/// Length of the ellipse (a cos t, b sin t) from t = 0 to @p t, negative for a negative t; to a few units in the last
/// place of the greater half axis.
///
/// The incomplete elliptic integral of the second kind by Carlson's symmetric integrals R_F and R_D (B. C. Carlson,
/// "Numerical computation of real or complex elliptic integrals", Numerical Algorithms 10, 1995).
double gf_ellipseLengthTo(double a, double b, double t);
