#pragma once

/// @file
/// Polynomials on [0, 1] in Bernstein form: sums of c_i binomial(n, i) t^i (1 - t)^(n - i). The form is stable there,
/// lies within the hull of its coefficients, and has no more roots than its coefficients have changes of sign
/// (G. Farin, Curves and Surfaces for CAGD, chapters on Bezier curves).

#include "foundation/vector.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace gx_bernstein
{

constexpr double choose(std::size_t n, std::size_t k)
{
  double c = 1.0;
  for (std::size_t i = 1; i <= k; ++i)
    c = c * static_cast<double>(n - k + i) / static_cast<double>(i);
  return c;
}

/// Halves the polynomial at u: c becomes the part from 0 to u, the part from u to 1 is returned (de Casteljau).
template <class T, std::size_t N>
std::array<T, N> split(std::array<T, N> &c, double u)
{
  std::array<T, N> second = c;
  for (std::size_t level = 1; level < N; ++level) {
    for (std::size_t i = 0; i + level < N; ++i)
      second[i] = second[i] * (1.0 - u) + second[i + 1] * u;
    c[level] = second[0];
  }
  return second;
}

/// Value and slope at u.
template <std::size_t N>
std::array<double, 2> valueAndSlope(std::array<double, N> c, double u)
{
  for (std::size_t level = 1; level + 1 < N; ++level)
    for (std::size_t i = 0; i + level < N; ++i)
      c[i] = c[i] * (1.0 - u) + c[i + 1] * u;
  return {c[0] * (1.0 - u) + c[1] * u, static_cast<double>(N - 1) * (c[1] - c[0])};
}

/// The root of a polynomial whose end coefficients differ in sign, by Newton's steps within a shrinking bracket. A step
/// that leaves the bracket, or is longer than half the one before, gives way to halving.
template <std::size_t N>
double rootBetween(std::array<double, N> const &c)
{
  bool const rises = c[0] < 0.0;
  double low = 0.0, high = 1.0, before = 1.0;
  double u = c[0] / (c[0] - c[N - 1]);
  constexpr int maxSteps = 150;
  for (int i = 0; i < maxSteps; ++i) {
    auto const [value, slope] = valueAndSlope(c, u);
    if (value == 0.0)
      return u;
    ((value < 0.0) == rises ? low : high) = u;
    double next = u - value / slope;
    if (!(low <= next && next <= high && std::abs(next - u) <= 0.5 * before))
      next = 0.5 * (low + high);
    before = std::abs(next - u);
    u = next;
    if (before <= 1e-16)
      break;
  }
  return u;
}

/// Some places of [0, 1], in order.
template <std::size_t Capacity>
class Places
{
 public:
  void add(double t)
  {
    if (size_ < Capacity && (size_ == 0 || places_[size_ - 1] != t))
      places_[size_++] = t;
  }
  double const *begin() const { return places_.data(); }
  double const *end() const { return places_.data() + size_; }

 private:
  std::array<double, Capacity> places_{};
  std::size_t size_ = 0;
};

/// The roots on [0, 1] in order, by halving until the signs leave at most one. Where the whole polynomial stays below
/// @p noise, the rounding error of its coefficients, the middle of the interval stands for all its points; so the
/// number of steps is bounded, whatever the coefficients.
template <std::size_t N>
class Roots : public Places<2 * N + 2>
{
 public:
  Roots(std::array<double, N> const &c, double noise) : noise_(noise) { find(c, 0.0, 1.0, 0); }

 private:
  void find(std::array<double, N> c, double from, double to, int depth)
  {
    constexpr int maxDepth = 52;
    int changes = 0;
    double last = 0.0;
    bool isNoise = true;
    for (double const v : c) {
      isNoise = isNoise && !(std::abs(v) > noise_);
      if (v == 0.0)
        continue;
      changes += last != 0.0 && (v < 0.0) != (last < 0.0);
      last = v;
    }
    if (isNoise || (changes > 1 && depth == maxDepth) || ++nodes_ > maxNodes) {
      this->add(0.5 * (from + to));
      return;
    }
    if (c.front() == 0.0)
      this->add(from);
    if (changes == 1 && c.front() != 0.0 && c.back() != 0.0) {
      this->add(from + (to - from) * rootBetween(c));
    } else if (changes > 0 && depth < maxDepth) {
      double const middle = 0.5 * (from + to);
      std::array<double, N> const second = split(c, 0.5);
      find(c, from, middle, depth + 1);
      find(second, middle, to, depth + 1);
    }
    if (c.back() == 0.0)
      this->add(to);
  }

  static constexpr int maxNodes = 64 * static_cast<int>(N);
  double noise_;
  int nodes_ = 0;
};

/// See below.
template <std::size_t N>
double sweep(std::array<gxVector<2>, N> c, double noise, int depth)
{
  gxVector<2> first, last, sum;
  bool isNoise = true;
  for (gxVector<2> const &v : c) {
    isNoise = isNoise && !(std::abs(v.x()) > noise || std::abs(v.y()) > noise);
    if (v == gxVector<2>())
      continue;
    if (first == gxVector<2>())
      first = v;
    last = v;
    sum += v.unit();
  }
  bool isNarrow = true;  // all within less than half a turn
  for (gxVector<2> const &v : c)
    isNarrow = isNarrow && (sum * v > 0.0 || v == gxVector<2>());
  constexpr int maxDepth = 50;
  if (isNarrow || isNoise || depth == maxDepth)
    return std::atan2(first.cross(last), first * last);
  std::array<gxVector<2>, N> const second = split(c, 0.5);
  double across = 0.0;  // if the middle is the origin, the turn from the one half to the other
  if (c.back() == gxVector<2>()) {
    auto const isNotZero = [](gxVector<2> const &v) { return !(v == gxVector<2>()); };
    auto const before = std::find_if(c.rbegin(), c.rend(), isNotZero);
    auto const behind = std::find_if(second.begin(), second.end(), isNotZero);
    if (before != c.rend() && behind != second.end())
      across = std::atan2(before->cross(*behind), *before * *behind);
  }
  return sweep(c, noise, depth + 1) + across + sweep(second, noise, depth + 1);
}

/// The signed angle by which the direction to the points of a curve, seen from the origin, turns from t = 0 to 1.
/// Ends at the origin count with the direction that the curve has there; a passage through it counts as half a turn to
/// either side.
template <std::size_t N>
double sweep(std::array<gxVector<2>, N> const &c)
{
  double size = 0.0;
  for (gxVector<2> const &v : c)
    size = std::fmax(size, std::fmax(std::abs(v.x()), std::abs(v.y())));
  constexpr double rounding = 1e-15;
  return sweep(c, rounding * size, 0);
}

}  // namespace gx_bernstein
