#pragma once

// What a shape should look like, as a dense chain of points that a test writes from the plain formula of the curve,
// and the plain measures of such a chain.

#include "foundation/rect.h"
#include "foundation/vector.h"
#include "foundation/xform.h"

#include <cmath>
#include <functional>
#include <limits>
#include <random>
#include <vector>

namespace shape_test
{

using Chain = std::vector<gxVector<2>>;

inline Chain mapped(Chain chain, gxXform<2> const &xform)
{
  for (auto &p : chain)
    p = xform * p;
  return chain;
}

/// @p n steps of the curve, u from 0 to 1.
inline Chain alongCurve(std::function<gxVector<2>(double)> const &curve, int n)
{
  Chain chain;
  for (int i = 0; i <= n; ++i)
    chain.push_back(curve(static_cast<double>(i) / n));
  return chain;
}

/// The same chain with steps of at most @p step.
inline Chain divided(Chain const &chain, double step)
{
  Chain fine = {chain.front()};
  for (std::size_t i = 1; i < chain.size(); ++i) {
    double const n = std::ceil((chain[i] - chain[i - 1]).len() / step);
    for (double k = 1.0; k <= n; ++k)
      fine.push_back(chain[i - 1] + (chain[i] - chain[i - 1]) * (k / n));
  }
  return fine;
}

inline double length(Chain const &chain)
{
  double sum = 0.0;
  for (std::size_t i = 1; i < chain.size(); ++i)
    sum += chain[i].distance(chain[i - 1]);
  return sum;
}

inline double distanceToSegment(gxVector<2> p, gxVector<2> a, gxVector<2> b)
{
  gxVector<2> const d = b - a;
  double const t = d * d > 0.0 ? std::fmin(1.0, std::fmax(0.0, d * (p - a) / (d * d))) : 0.0;
  return (p - (a + d * t)).len();
}

inline double distance(Chain const &chain, gxVector<2> p)
{
  double best = (p - chain.front()).len();
  for (std::size_t i = 1; i < chain.size(); ++i)
    best = std::fmin(best, distanceToSegment(p, chain[i - 1], chain[i]));
  return best;
}

/// The point at a length along the chain.
inline gxVector<2> pointAt(Chain const &chain, double pos)
{
  for (std::size_t i = 1; i < chain.size(); ++i) {
    double const step = chain[i].distance(chain[i - 1]);
    if (pos <= step && step > 0.0)
      return chain[i - 1] + (chain[i] - chain[i - 1]) * (pos / step);
    pos -= step;
  }
  return chain.back();
}

inline double turn(gxVector<2> a, gxVector<2> b)
{
  return std::atan2(a.x() * b.y() - a.y() * b.x(), a.x() * b.x() + a.y() * b.y());
}

/// Angle by which the direction from @p p turns along the chain.
inline double winding(Chain const &chain, gxVector<2> p)
{
  double sum = 0.0;
  for (std::size_t i = 1; i < chain.size(); ++i)
    sum += turn(chain[i - 1] - p, chain[i] - p);
  return sum;
}

/// Angle by which the direction of the chain turns.
inline double rotation(Chain const &chain)
{
  double sum = 0.0;
  gxVector<2> before;
  for (std::size_t i = 1; i < chain.size(); ++i) {
    gxVector<2> const step = chain[i] - chain[i - 1];
    if (step.len() == 0.0)
      continue;
    if (before.len() > 0.0)
      sum += turn(before, step);
    before = step;
  }
  return sum;
}

inline double doubleArea(Chain const &chain)
{
  double sum = 0.0;
  for (std::size_t i = 1; i < chain.size(); ++i)
    sum += (chain[i - 1] - chain[0]).cross(chain[i] - chain[0]);
  return sum;
}

struct Box {
  double left = std::numeric_limits<double>::infinity(), right = -left, low = left, high = -left;
};

inline Box box(Chain const &chain)
{
  Box b;
  for (auto const &p : chain) {
    b.left = std::fmin(b.left, p.x());
    b.right = std::fmax(b.right, p.x());
    b.low = std::fmin(b.low, p.y());
    b.high = std::fmax(b.high, p.y());
  }
  return b;
}

/// Length of the chain within a closed polygon, step by step, by even and odd crossings.
inline bool isInside(Chain const &polygon, gxVector<2> p)
{
  bool inside = false;
  for (std::size_t i = 0, j = polygon.size() - 1; i < polygon.size(); j = i++) {
    gxVector<2> const a = polygon[i], b = polygon[j];
    if ((a.y() > p.y()) != (b.y() > p.y()) && p.x() < (b.x() - a.x()) * (p.y() - a.y()) / (b.y() - a.y()) + a.x())
      inside = !inside;
  }
  return inside;
}

inline double lengthInside(Chain const &chain, Chain const &polygon)
{
  double sum = 0.0;
  for (std::size_t i = 1; i < chain.size(); ++i)
    if (isInside(polygon, (chain[i - 1] + chain[i]) * 0.5))
      sum += chain[i].distance(chain[i - 1]);
  return sum;
}

/// Random numbers that are the same in every run.
class Random
{
 public:
  explicit Random(unsigned seed) : engine_(seed) {}
  double between(double low, double high)
  {
    return low + (high - low) * (static_cast<double>(engine_()) / static_cast<double>(std::mt19937::max()));
  }
  gxVector<2> point(double reach) { return {between(-reach, reach), between(-reach, reach)}; }

 private:
  std::mt19937 engine_;
};

}  // namespace shape_test
