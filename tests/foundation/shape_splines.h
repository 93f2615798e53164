#pragma once

// Splines as the textbooks write them, for tests: the recursion of de Boor and Cox, the moments of the interpolating
// spline by elimination in a full matrix, the cubic polynomials of Hermite.

#include "foundation/cubicspline.h"
#include "tests/foundation/shape_chain.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace shape_test
{

/// Distances of successive points (the legs), raised to the power of the mode.
inline std::vector<double> intervalsOf(Chain const &points, bool closed, gxCubicSpline::IntervalMode mode)
{
  double const power = mode == gxCubicSpline::uniform ? 0.0 : mode == gxCubicSpline::chordLength ? 1.0 : 0.5;
  std::vector<double> intervals;
  for (std::size_t i = 0; i + (closed ? 0 : 1) < points.size(); ++i)
    intervals.push_back(std::pow(points[i].distance(points[(i + 1) % points.size()]), power));
  return intervals;
}

/// Basis function of a degree on the interval k, by the recursion of de Boor and Cox.
inline double basis(std::vector<double> const &knots, std::size_t i, int degree, double u, std::size_t k)
{
  if (degree == 0)
    return i == k ? 1.0 : 0.0;
  auto const n = static_cast<std::size_t>(degree);
  double sum = 0.0;
  if (knots[i + n] > knots[i])
    sum += (u - knots[i]) / (knots[i + n] - knots[i]) * basis(knots, i, degree - 1, u, k);
  if (knots[i + n + 1] > knots[i + 1])
    sum += (knots[i + n + 1] - u) / (knots[i + n + 1] - knots[i + 1]) * basis(knots, i + 1, degree - 1, u, k);
  return sum;
}

/// The B-spline of at least four control points. @p legs has an interval for each leg of the polygon.
inline Chain bsplineChain(Chain points, bool closed, std::vector<double> legs, int stepsEach = 512)
{
  if (closed) {  // one round, with neighbors repeated on both sides
    std::size_t const n = points.size();
    Chain around;
    std::vector<double> aroundLegs;
    for (std::size_t i = 0; i < n + 6; ++i) {
      around.push_back(points[(i + 2 * n - 3) % n]);
      aroundLegs.push_back(legs[(i + 2 * n - 3) % n]);
    }
    points = around;
    legs = aroundLegs;
  }
  std::size_t const n = points.size();
  std::vector<double> knots;  // of point i the knots i to i + 4; the curve on leg i lies between knots i + 2 and i + 3
  if (closed) {
    knots.assign(2, -1e9);  // not reached
    knots.push_back(0.0);
    for (double const leg : legs)
      knots.push_back(knots.back() + leg);
    knots.resize(n + 4, 1e9);
  } else {
    knots.assign(4, 0.0);
    for (std::size_t leg = 1; leg + 2 < n; ++leg)
      knots.push_back(knots.back() + legs[leg]);
    knots.resize(n + 4, knots.back());
  }
  Chain chain;
  std::size_t const firstLeg = closed ? 3 : 1, lastLeg = closed ? n - 4 : n - 3;
  for (std::size_t leg = firstLeg; leg <= lastLeg; ++leg) {
    std::size_t const k = leg + 2;
    for (int step = leg == firstLeg ? 0 : 1; step <= stepsEach; ++step) {
      double const u = knots[k] + (knots[k + 1] - knots[k]) * step / stepsEach;
      gxVector<2> p;
      for (std::size_t i = k - 3; i <= k; ++i)
        p += points[i] * basis(knots, i, 3, u, k);
      chain.push_back(p);
    }
  }
  return chain;
}

/// Points of cubics with the given values and second derivatives at the knots.
inline gxVector<2> byMoments(gxVector<2> a, gxVector<2> b, gxVector<2> ma, gxVector<2> mb, double h, double u)
{
  double const x = h * u, y = h - x;
  return ma * (y * y * y / (6 * h)) + mb * (x * x * x / (6 * h)) + (a * (1 / h) - ma * (h / 6)) * y +
         (b * (1 / h) - mb * (h / 6)) * x;
}

/// Solves a full system.
inline Chain solveFull(std::vector<std::vector<double>> a, Chain right)
{
  std::size_t const n = a.size();
  for (std::size_t c = 0; c < n; ++c) {
    std::size_t pivot = c;
    for (std::size_t r = c; r < n; ++r)
      if (std::abs(a[r][c]) > std::abs(a[pivot][c]))
        pivot = r;
    std::swap(a[c], a[pivot]);
    std::swap(right[c], right[pivot]);
    for (std::size_t r = 0; r < n; ++r) {
      if (r == c)
        continue;
      double const f = a[r][c] / a[c][c];
      for (std::size_t k = c; k < n; ++k)
        a[r][k] -= f * a[c][k];
      right[r] -= right[c] * f;
    }
  }
  for (std::size_t i = 0; i < n; ++i)
    right[i] = right[i] * (1.0 / a[i][i]);
  return right;
}

/// The interpolating spline that is natural, or periodic if closed.
inline Chain naturalChain(Chain const &points, bool closed, std::vector<double> const &h, int stepsEach = 512)
{
  std::size_t const n = points.size();
  std::vector<std::vector<double>> a(n, std::vector<double>(n, 0.0));
  Chain right(n);
  for (std::size_t i = 0; i < n; ++i) {
    if (!closed && (i == 0 || i + 1 == n)) {
      a[i][i] = 1.0;
      continue;
    }
    std::size_t const before = (i + n - 1) % n, behind = (i + 1) % n;
    a[i][before] += h[before] / 6;
    a[i][i] += (h[before] + h[i]) / 3;
    a[i][behind] += h[i] / 6;
    right[i] = (points[behind] - points[i]) * (1 / h[i]) - (points[i] - points[before]) * (1 / h[before]);
  }
  Chain const m = solveFull(a, right);
  Chain chain = {points[0]};
  for (std::size_t i = 0; i < h.size(); ++i)
    for (int step = 1; step <= stepsEach; ++step) {
      std::size_t const behind = (i + 1) % n;
      double const u = static_cast<double>(step) / stepsEach;
      chain.push_back(byMoments(points[i], points[behind], m[i], m[behind], h[i], u));
    }
  return chain;
}

inline Chain hermiteChain(Chain const &points, Chain const &tangents, bool closed, std::vector<double> const &h,
                          int stepsEach = 512)
{
  Chain chain = {points[0]};
  for (std::size_t i = 0; i + (closed ? 0 : 1) < points.size(); ++i)
    for (int step = 1; step <= stepsEach; ++step) {
      double const u = static_cast<double>(step) / stepsEach;
      std::size_t const behind = (i + 1) % points.size();
      chain.push_back(points[i] * ((2 * u - 3) * u * u + 1) + tangents[i] * (h[i] * u * (u - 1) * (u - 1)) +
                      points[behind] * ((3 - 2 * u) * u * u) + tangents[behind] * (h[i] * u * u * (u - 1)));
    }
  return chain;
}

}  // namespace shape_test
