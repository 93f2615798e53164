#include "foundation/bezier.h"
#include "foundation/detail/bernstein.h"
#include "foundation/detail/quadrature.h"
#include "foundation/outline.h"

#include <algorithm>
#include <cmath>

// Bezier pieces.

namespace
{

constexpr double rounding = 1e-15;  // relative error of coefficients that are products of a few numbers

/// The derivative of a rational cubic is hodograph / denominator^2. Its coefficients, of degree four, are sums of
/// differences of control points, so that nothing cancels (T. Sederberg and X. Wang, "Rational hodographs", Computer
/// Aided Geometric Design 4, 1987).
using Hodograph = std::array<gxVector<2>, 5>;

Hodograph hodographOf(gx_BezierPiece const &piece)
{
  auto const &p = piece.points;
  auto const &w = piece.weights;
  auto const term = [&](std::size_t i, std::size_t j) { return (p[j] - p[i]) * (w[i] * w[j]); };
  return {term(0, 1) * 3.0, term(0, 2) * 1.5, term(0, 3) * 0.5 + term(1, 2) * 1.5, term(1, 3) * 1.5, term(2, 3) * 3.0};
}

double denominator(gx_BezierPiece const &piece, double t)
{
  double const s = 1.0 - t;
  auto const &w = piece.weights;
  return s * s * (s * w[0] + 3.0 * t * w[1]) + t * t * (3.0 * s * w[2] + t * w[3]);
}

gxVector<2> valueOf(Hodograph const &h, double t)
{
  double const s = 1.0 - t;
  return h[0] * (s * s * s * s) + h[1] * (4.0 * s * s * s * t) + h[2] * (6.0 * s * s * t * t) +
         h[3] * (4.0 * s * t * t * t) + h[4] * (t * t * t * t);
}

template <class Vectors>
double sizeOf(Vectors const &vectors)
{
  double size = 0.0;
  for (gxVector<2> const &v : vectors)
    size = std::max({size, std::abs(v.x()), std::abs(v.y())});
  return size;
}

std::array<gxVector<2>, 4> weighted(gx_BezierPiece const &piece, gxVector<2> const &origin)
{
  std::array<gxVector<2>, 4> q;
  for (std::size_t i = 0; i < 4; ++i)
    q[i] = (piece.points[i] - origin) * piece.weights[i];
  return q;
}

/// The sum starts from one end and adds differences, so that equal points give just that point.
inline gxVector<2> polynomialPoint(std::array<gxVector<2>, 4> const &p, double t)
{
  double const s = 1.0 - t;
  double const b1 = 3.0 * s * s * t, b2 = 3.0 * s * t * t, b3 = t * t * t;
  if (t == 1.0)
    return p[3];
  return p[0] + (p[1] - p[0]) * b1 + (p[2] - p[0]) * b2 + (p[3] - p[0]) * b3;
}

inline gxVector<2> rationalPoint(gx_BezierPiece const &piece, double t)
{
  auto const &p = piece.points;
  auto const &w = piece.weights;
  double const s = 1.0 - t;
  double const b0 = s * s * s * w[0], b1 = 3.0 * s * s * t * w[1], b2 = 3.0 * s * t * t * w[2], b3 = t * t * t * w[3];
  double const inverse = 1.0 / (b0 + b1 + b2 + b3);
  if (t == 1.0)
    return p[3];
  return p[0] + ((p[1] - p[0]) * b1 + (p[2] - p[0]) * b2 + (p[3] - p[0]) * b3) * inverse;
}

/// How fast the piece runs at a parameter.
class Speed
{
 public:
  explicit Speed(gx_BezierPiece const &piece) : piece_(piece), hodograph_(hodographOf(piece)) {}
  double operator()(double t) const
  {
    double const d = denominator(piece_, t);
    return valueOf(hodograph_, t).len() / (d * d);
  }
  double lengthBetween(double from, double to) const
  {
    double scale = 0.0;  // about the length of the whole
    for (std::size_t i = 1; i < 4; ++i)
      scale += piece_.points[i].distance(piece_.points[i - 1]);
    // one halving at once: halves of symmetric curves may agree by chance
    double const middle = 0.5 * (from + to);
    return gx_quadrature::integral(*this, from, middle, scale) + gx_quadrature::integral(*this, middle, to, scale);
  }

 private:
  gx_BezierPiece const &piece_;
  Hodograph hodograph_;
};

/// A bound of 8 times the distance between the piece and its chord, from the second derivatives of
/// numerator and denominator: |X/w - L/l| <= (|X - L| + |L/l| |w - l|) / w for a curve X/w and a chord L/l.
double chordBound(gx_BezierPiece const &piece)
{
  auto const &p = piece.points;
  auto const second = [](auto const &c, std::size_t i) { return (c[i] - c[i + 1]) - (c[i + 1] - c[i + 2]); };
  if (piece.isPolynomial())
    return 6.0 * std::max(second(p, 0).len(), second(p, 1).len());
  gxVector<2> const middle = (p[0] + p[1] + p[2] + p[3]) * 0.25;
  std::array<gxVector<2>, 4> const q = weighted(piece, middle);
  auto const &w = piece.weights;
  double radius = 0.0;
  for (gxVector<2> const &v : p)
    radius = std::max(radius, v.distance(middle));
  double const bend = std::max(second(q, 0).len(), second(q, 1).len());
  double const lean = std::max(std::abs(second(w, 0)), std::abs(second(w, 1)));
  return 6.0 * (bend + radius * lean) / *std::min_element(w.begin(), w.end());
}

/// The same for the worst of the parts between equal steps of the parameter, which is nearer to the truth.
double refinedChordBound(gx_BezierPiece const &piece)
{
  if (piece.isPolynomial())
    return chordBound(piece);
  constexpr int parts = 8;
  double worst = 0.0;
  for (int i = 0; i < parts; ++i)
    worst = std::max(worst, chordBound(piece.part(i / double(parts), (i + 1) / double(parts))));
  return worst * (parts * parts);
}

}  // namespace

bool gx_BezierPiece::isPolynomial() const
{
  return weights[0] == weights[1] && weights[0] == weights[2] && weights[0] == weights[3];
}

gxVector<2> gx_BezierPiece::point(double param) const
{
  return isPolynomial() ? polynomialPoint(points, param) : rationalPoint(*this, param);
}

void gx_BezierPiece::evaluate(double first, double step, std::size_t n, gxVector<2> *to) const
{
  bool const isSimple = isPolynomial();
  for (std::size_t i = 0; i < n; ++i) {
    double const t = (first + static_cast<double>(i)) * step;
    to[i] = isSimple ? polynomialPoint(points, t) : rationalPoint(*this, t);
  }
}

gxVector<2> gx_BezierPiece::tangent(double param) const
{
  Hodograph const h = hodographOf(*this);
  auto const isNotZero = [](gxVector<2> const &v) { return !(v == gxVector<2>()); };
  auto const scaled = [&](gxVector<2> const &v, double t) {
    double const d = denominator(*this, t);
    return v * (1.0 / (d * d));
  };
  auto const first = std::find_if(h.begin(), h.end(), isNotZero);
  if (first == h.end())
    return {};
  if (param <= 0.0)
    return scaled(*first, 0.0);
  if (param >= 1.0)
    return scaled(*std::find_if(h.rbegin(), h.rend(), isNotZero), 1.0);
  gxVector<2> const value = valueOf(h, param);
  constexpr double vanishing = 1e-12;  // there is a cusp
  if (value.len() > vanishing * sizeOf(h))
    return scaled(value, param);
  double const inward = param < 0.5 ? param + 1e-4 : param - 1e-4;
  return scaled(valueOf(h, inward), inward);
}

gx_Nearest gx_BezierPiece::nearest(gxVector<2> const &p) const
{
  // (point - p) * tangent, times the third power of the denominator, is a polynomial of degree seven
  std::array<gxVector<2>, 4> q = weighted(*this, p);
  Hodograph h = hodographOf(*this);
  double const sizeQ = sizeOf(q), sizeH = sizeOf(h);
  gx_Nearest best{points[0], 0.0, p.distance(points[0])};
  auto const consider = [&](double t) {
    gxVector<2> const found = point(t);
    double const distance = p.distance(found);
    if (distance < best.distance)
      best = {found, t, distance};
  };
  if (sizeQ > 0.0 && sizeH > 0.0) {
    std::array<double, 8> g{};
    for (std::size_t i = 0; i < q.size(); ++i)
      for (std::size_t j = 0; j < h.size(); ++j)
        g[i + j] += gx_bernstein::choose(3, i) * gx_bernstein::choose(4, j) / gx_bernstein::choose(7, i + j) *
                    ((q[i] * (1.0 / sizeQ)) * (h[j] * (1.0 / sizeH)));
    for (double const t : gx_bernstein::Roots<8>(g, rounding))
      consider(t);
  }
  consider(1.0);
  return best;
}

gxRect gx_BezierPiece::bounds() const
{
  gxRect box = gxRect::around(points[0], points[3]);
  Hodograph const h = hodographOf(*this);
  double const noise = rounding * sizeOf(h);
  std::array<double, 5> x, y;
  for (std::size_t i = 0; i < h.size(); ++i) {
    x[i] = h[i].x();
    y[i] = h[i].y();
  }
  for (std::array<double, 5> const &derivative : {x, y})
    for (double const t : gx_bernstein::Roots<5>(derivative, noise)) {
      gxVector<2> const extreme = point(t);
      box = box.enclose(gxRect::around(extreme, extreme));
    }
  return box;
}

double gx_BezierPiece::lengthTo(double param) const
{
  return Speed(*this).lengthBetween(0.0, param);
}

double gx_BezierPiece::paramAtLength(double length) const
{
  Speed const speed(*this);
  double const whole = speed.lengthBetween(0.0, 1.0);
  if (!(length > 0.0) || !(whole > 0.0))
    return 0.0;
  if (!(length < whole))
    return 1.0;
  double low = 0.0, high = 1.0, before = 1.0;
  double param = length / whole;
  double excess = speed.lengthBetween(0.0, param) - length;
  constexpr int maxSteps = 100;
  for (int i = 0; i < maxSteps && std::abs(excess) > rounding * whole; ++i) {
    (excess > 0.0 ? high : low) = param;
    double next = param - excess / speed(param);
    if (std::abs(next - param) <= rounding)
      break;
    if (!(low < next && next < high && std::abs(next - param) <= 0.5 * before))
      next = 0.5 * (low + high);
    before = std::abs(next - param);
    excess += next > param ? speed.lengthBetween(param, next) : -speed.lengthBetween(next, param);
    param = next;
  }
  return param;
}

double gx_BezierPiece::rotation() const
{
  return gx_bernstein::sweep(hodographOf(*this));
}

double gx_BezierPiece::winding(gxVector<2> const &p) const
{
  return gx_bernstein::sweep(weighted(*this, p));
}

double gx_BezierPiece::doubleArea() const
{
  Hodograph const h = hodographOf(*this);
  double const scale = sizeOf(points) * sizeOf(h);
  if (!(scale > 0.0))
    return 0.0;
  auto const rate = [&](double t) {
    double const d = denominator(*this, t);
    return point(t).cross(valueOf(h, t)) / (d * d);
  };
  return gx_quadrature::integral(rate, 0.0, 0.5, scale) + gx_quadrature::integral(rate, 0.5, 1.0, scale);
}

gx_BezierPiece gx_BezierPiece::part(double begin, double end) const
{
  if (begin > end) {
    gx_BezierPiece turned = part(end, begin);
    std::reverse(turned.points.begin(), turned.points.end());
    std::reverse(turned.weights.begin(), turned.weights.end());
    return turned;
  }
  bool const isRational = !isPolynomial();
  gx_BezierPiece cut = *this;
  if (isRational)
    cut.points = weighted(*this, {});
  auto const keep = [&](double u, bool isFirst) {
    auto const points2 = gx_bernstein::split(cut.points, u);
    if (!isFirst)
      cut.points = points2;
    if (!isRational)
      return;
    auto const weights2 = gx_bernstein::split(cut.weights, u);
    if (!isFirst)
      cut.weights = weights2;
  };
  if (end < 1.0)
    keep(end, true);
  if (begin > 0.0)
    keep(end > 0.0 ? std::min(1.0, begin / end) : 0.0, false);
  if (isRational)
    for (std::size_t i = 0; i < 4; ++i)
      cut.points[i] = cut.points[i] * (1.0 / cut.weights[i]);
  return cut;
}

gx_BezierPiece gx_BezierPiece::mapped(gxXform<2> const &xform) const
{
  gx_BezierPiece image = *this;
  for (gxVector<2> &p : image.points)
    p = xform * p;
  return image;
}

bool gx_BezierPiece::isFinite() const
{
  return std::all_of(points.begin(), points.end(), [](gxVector<2> const &p) { return p.isFinite(); });
}

double gx_BezierPiece::chords(double tolerance) const
{
  if (!(tolerance > 0.0))
    return 1.0;
  double const bound = refinedChordBound(*this);
  if (!(bound > 0.0))
    return 1.0;
  constexpr double whole = 1e-9;  // no step more for a hair
  return std::max(1.0, std::ceil(std::sqrt(bound / (8.0 * tolerance)) - whole));
}

std::vector<double> gx_BezierPiece::crossings(gxVector<2> const &a, gxVector<2> const &b) const
{
  gxVector<2> const along = b - a;
  std::array<gxVector<2>, 4> const q = weighted(*this, a);
  std::array<double, 4> c;
  double largest = 0.0;
  for (std::size_t i = 0; i < c.size(); ++i) {
    c[i] = along.cross(q[i]);
    largest = std::max(largest, std::abs(c[i]));
  }
  double const noise = rounding * along.len() * sizeOf(q);
  if (!(largest > noise))
    return {};
  std::vector<double> places;
  for (double const t : gx_bernstein::Roots<4>(c, noise)) {
    double const onSegment = along * (point(t) - a);
    if (onSegment >= 0.0 && onSegment <= along * along)
      places.push_back(t);
  }
  return places;
}

gxPtrHandle<gxShape> gx_BezierPiece::shape() const
{
  return new gxBezierCurve(points, weights);
}
