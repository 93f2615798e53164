#include "foundation/lensxform.h"

#include "foundation/geomarchive.h"
#include "foundation/matherror.h"
#include "foundation/shapeserror.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <typeinfo>

GX_PERSISTENT_IMPL(gx2XformLens, "gx2XformLens", 0)
void gx2XformLens::serialize_(gxArchive &archive, unsigned char version)
{
  gf_refuseVersion(version, "gx2XformLens");
  gx2XformBase::dispatchSerialize(archive);
  gxVector<2> center = center_;
  double unit = unit_, k1 = k1_, k2 = k2_, k3 = k3_;
  archive || center || unit || k1 || k2 || k3;
  if (archive.isStoring())
    return;
  try {
    gx2XformLens const loaded(center, unit, k1, k2, k3);
  } catch (gxShapesError::Errors const &) {
    archive.fail("a lens of unit 0 or of numbers that are not finite");
  }
  center_ = center;
  unit_ = unit;
  k1_ = k1;
  k2_ = k2;
  k3_ = k3;
}

gx2XformLens::gx2XformLens(gxVector<2> const &center, double unit, double k1, double k2, double k3)
    : center_(center), unit_(unit), k1_(k1), k2_(k2), k3_(k3)
{
  bool const isFinite = center.isFinite() && std::isfinite(k1) && std::isfinite(k2) && std::isfinite(k3);
  if (!isFinite || !(unit > 0.0) || !std::isfinite(unit))
    throw gxShapesError::BadParams();
}

gxPtrHandle<gx2XformBase> gx2XformLens::clone() const
{
  return new gx2XformLens(*this);
}

bool gx2XformLens::equal_(gx2XformBase const &other) const
{
  return typeid(other) == typeid(gx2XformLens) && *this == dynamic_cast<gx2XformLens const &>(other);
}

gxVector<2> gx2XformLens::mapPoint(gxVector<2> const &p) const
{
  gxVector<2> const d = (p - center_) * (1.0 / unit_);
  return center_ + (p - center_) * factor(d * d);
}

gx2XformLinear gx2XformLens::linearXform(gxVector<2> const &at) const
{
  gxVector<2> const d = (at - center_) * (1.0 / unit_);
  double const x = d * d;
  double const along = factor(x), slope = 2.0 * factorSlope(x);
  gxMatrix<2> const matrix(along + slope * d.x() * d.x(), slope * d.x() * d.y(), slope * d.x() * d.y(),
                           along + slope * d.y() * d.y());
  return gx2XformLinear(matrix, mapPoint(at) - matrix * at);
}

namespace
{

/// The place between @p low and @p high where a function that is positive at the one and negative at the other
/// changes its sign, by halving down to neighboring numbers.
template <class Function>
double signChange(Function const &f, double low, double high)
{
  bool const isPositive = f(low) > 0.0;
  constexpr int maxSteps = 1100;  // from the greatest double down to the least
  for (int i = 0; i < maxSteps; ++i) {
    double const middle = low + 0.5 * (high - low);
    if (!(low < middle && middle < high))
      break;
    ((f(middle) > 0.0) == isPositive ? low : high) = middle;
  }
  return low;
}

/// The positive roots of a + b x + c x^2 in order; negative for those that are missing.
std::array<double, 2> positiveRoots(double a, double b, double c)
{
  double const discriminant = b * b - 4.0 * a * c;
  if (!(discriminant >= 0.0))
    return {-1.0, -1.0};
  double const q = -0.5 * (b + std::copysign(std::sqrt(discriminant), b));  // without cancellation
  std::array<double, 2> roots = {c != 0.0 ? q / c : -1.0, q != 0.0 ? a / q : -1.0};
  std::sort(roots.begin(), roots.end());
  return roots;
}

}  // namespace

double gx2XformLens::invertibleRadius() const
{
  // the growth starts at 1; it is monotonic between the roots of its own derivative 3 k1 + 10 k2 x + 21 k3 x^2
  double low = 0.0;
  auto const growthAt = [&](double x) { return growth(x); };
  for (double const root : positiveRoots(3.0 * k1_, 10.0 * k2_, 21.0 * k3_)) {
    if (!(root > low))
      continue;
    if (growth(root) <= 0.0)
      return unit_ * std::sqrt(signChange(growthAt, low, root));
    low = root;
  }
  double const leading = k3_ != 0.0 ? k3_ : k2_ != 0.0 ? k2_ : k1_;
  if (!(leading < 0.0))
    return std::numeric_limits<double>::infinity();
  double high = std::max(1.0, 2.0 * low);
  while (std::isfinite(high) && growth(high) > 0.0)
    high *= 2.0;
  return unit_ * std::sqrt(signChange(growthAt, low, std::min(high, std::numeric_limits<double>::max())));
}

double gx2XformLens::radiusOf(double target) const
{
  auto const image = [&](double r) { return r * factor(r * r); };
  double low = 0.0;
  double high = invertibleRadius() / unit_;
  if (!std::isfinite(high)) {
    for (high = 1.0; std::isfinite(high) && image(high) < target; high *= 2.0)
      low = high;
  }
  if (!(image(high) >= target))
    throw gxMathError::NoConvergence();
  double r = std::clamp(target, low, high);
  double before = high;
  constexpr int maxSteps = 200;
  for (int i = 0; i < maxSteps; ++i) {
    double const excess = image(r) - target;
    if (excess == 0.0)
      return r;
    (excess > 0.0 ? high : low) = r;
    double next = r - excess / growth(r * r);
    if (!(low <= next && next <= high && std::abs(next - r) <= 0.5 * before))
      next = low + 0.5 * (high - low);
    before = std::abs(next - r);
    r = next;
    if (before <= std::numeric_limits<double>::epsilon() * r)
      return r;
  }
  return r;
}

gxVector<2> gx2XformLens::invMapPoint(gxVector<2> const &p) const
{
  gxVector<2> const d = p - center_;
  double const target = d.len() / unit_;
  if (target == 0.0)
    return center_;
  if (!std::isfinite(target))
    throw gxMathError::NoConvergence();
  return center_ + d * (radiusOf(target) / target);
}
