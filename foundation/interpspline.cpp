#include "foundation/interpspline.h"

#include "foundation/geomarchive.h"
#include "foundation/shapeserror.h"

#include <utility>

GX_SHAPE_IMPL(gxInterpSpline, gxCubicSpline)

void gxInterpSpline::passFields_(gxArchive &archive)
{
  int ends = ends_;
  archive || ends || startTangent_ || endTangent_;
  if (archive.isStoring())
    return;
  if (ends < natural || ends > quadratic)
    archive.fail("unknown end conditions of a spline");
  ends_ = static_cast<EndConditions>(ends);
  rejoinLoaded(archive);
}

void gxInterpSpline::take(gxInterpSpline &changed)
{
  changed.rejoin();
  mutating();
  *this = changed;
}

void gxInterpSpline::points(std::vector<gxVector<2>> v)
{
  gxInterpSpline changed(*this);
  changed.setPoints(std::move(v));
  take(changed);
}

void gxInterpSpline::append(gxVector<2> const &point)
{
  std::vector<gxVector<2>> more = points();
  more.push_back(point);
  points(std::move(more));
}

void gxInterpSpline::endConditions(EndConditions v)
{
  gxInterpSpline changed(*this);
  changed.ends_ = v;
  take(changed);
}

void gxInterpSpline::endTangents(gxVector<2> const &start, gxVector<2> const &end)
{
  gxInterpSpline changed(*this);
  changed.ends_ = clamped;
  changed.startTangent_ = start;
  changed.endTangent_ = end;
  take(changed);
}

std::size_t gxInterpSpline::curveCount() const
{
  return isClosed() ? points().size() : std::max<std::size_t>(points().size(), 1) - 1;
}

namespace
{

/// One equation for three slopes in a row: before * m[i - 1] + here * m[i] + behind * m[i + 1] = right.
struct Row {
  double before = 0.0;
  double here = 1.0;
  double behind = 0.0;
  gxVector<2> right;
};

/// Continuity of the second derivative between two curves, of intervals a and b and mean slopes s and t.
Row smoothRow(double a, double b, gxVector<2> const &s, gxVector<2> const &t)
{
  double const sum = a + b;
  double const shareA = a / sum, shareB = b / sum;
  return {shareB, 2.0, shareA, (s * shareB + t * shareA) * 3.0};
}

/// The condition at a start, of the first two intervals and mean slopes; `before` is not used.
Row endRow(gxInterpSpline::EndConditions ends, gxVector<2> const &tangent, double a, double b, gxVector<2> const &s,
           gxVector<2> const &t)
{
  double const shareA = a / (a + b), shareB = b / (a + b);
  switch (ends) {
    case gxInterpSpline::natural:
      return {0.0, 2.0, 1.0, s * 3.0};
    case gxInterpSpline::clamped:
      return {0.0, 1.0, 0.0, tangent};
    case gxInterpSpline::notAKnot:
      return {0.0, shareB, 1.0, s * (shareB * (shareA + 2.0)) + t * (shareA * shareA)};
    case gxInterpSpline::bessel:
      return {0.0, 1.0, 0.0, s + (s - t) * shareA};
    default:
      return {0.0, 1.0, 1.0, s * 2.0};
  }
}

/// Gauss elimination without exchange, which the rows of splines allow.
std::vector<gxVector<2>> solved(std::vector<Row> rows)
{
  for (std::size_t i = 1; i < rows.size(); ++i) {
    double const factor = rows[i].before / rows[i - 1].here;
    rows[i].here -= factor * rows[i - 1].behind;
    rows[i].right -= rows[i - 1].right * factor;
  }
  std::vector<gxVector<2>> m(rows.size());
  for (std::size_t i = rows.size(); i-- > 0;) {
    gxVector<2> const rest = i + 1 < rows.size() ? rows[i].right - m[i + 1] * rows[i].behind : rows[i].right;
    m[i] = rest * (1.0 / rows[i].here);
  }
  return m;
}

}  // namespace

std::vector<gxVector<2>> gxInterpSpline::openSlopes(std::vector<double> const &intervals) const
{
  std::size_t const n = points().size();
  if (n < 2)
    return {startTangent_};
  auto const slope = [&](std::size_t i) { return (points()[i + 1] - points()[i]) * (1.0 / intervals[i]); };
  if (n == 2 && ends_ != clamped)
    return {slope(0), slope(0)};
  EndConditions const ends = n == 3 && ends_ == notAKnot ? bessel : ends_;
  std::size_t const next = n > 2 ? 1 : 0;
  std::vector<Row> rows;
  rows.push_back(endRow(ends, startTangent_, intervals[0], intervals[next], slope(0), slope(next)));
  for (std::size_t i = 1; i + 1 < n; ++i)
    rows.push_back(smoothRow(intervals[i - 1], intervals[i], slope(i - 1), slope(i)));
  Row last = endRow(ends, endTangent_, intervals[n - 2], intervals[n - 2 - next], slope(n - 2), slope(n - 2 - next));
  std::swap(last.before, last.behind);
  rows.push_back(last);
  return solved(std::move(rows));
}

std::vector<gxVector<2>> gxInterpSpline::closedSlopes(std::vector<double> const &intervals) const
{
  std::size_t const n = points().size();
  if (n == 1)
    return {{}};
  auto const slope = [&](std::size_t i) { return (around(i + 1) - around(i)) * (1.0 / intervals[i]); };
  std::vector<Row> rows;
  for (std::size_t i = 0; i < n; ++i) {
    std::size_t const before = (i + n - 1) % n;
    rows.push_back(smoothRow(intervals[before], intervals[i], slope(before), slope(i)));
  }
  if (n == 2) {  // both neighbors are the other point
    double const other0 = rows[0].before + rows[0].behind, other1 = rows[1].before + rows[1].behind;
    rows[0].behind = other0;
    rows[1].before = other1;
    return solved(std::move(rows));
  }
  // a cyclic system is a plain one and a product of two vectors: the formula of Sherman and Morrison, as in
  // W. Press et al., Numerical Recipes, "Cyclic tridiagonal systems"
  double const corner = rows[0].before, otherCorner = rows[n - 1].behind;
  double const gamma = -rows[0].here;
  std::vector<Row> plain = rows;
  plain[0].here -= gamma;
  plain[n - 1].here -= corner * otherCorner / gamma;
  std::vector<gxVector<2>> m = solved(plain);
  for (Row &row : plain)
    row.right = {};
  plain[0].right = {gamma, 0.0};
  plain[n - 1].right = {otherCorner, 0.0};
  std::vector<gxVector<2>> const z = solved(std::move(plain));
  gxVector<2> const share =
      (m[0] + m[n - 1] * (corner / gamma)) * (1.0 / (1.0 + z[0].x() + z[n - 1].x() * (corner / gamma)));
  for (std::size_t i = 0; i < n; ++i)
    m[i] -= share * z[i].x();
  return m;
}

std::vector<gxVector<2>> gxInterpSpline::join(std::vector<double> const &intervals) const
{
  return joinHermite(intervals, isClosed() ? closedSlopes(intervals) : openSlopes(intervals));
}

gxInterpSpline gxInterpSpline::map(gxXform<2> const &xform) const
{
  gxInterpSpline image(*this);
  image.mapPoints(xform);
  image.startTangent_ = xform.mapVector(startTangent_);
  image.endTangent_ = xform.mapVector(endTangent_);
  image.rejoin();
  return image;
}

gxPtrHandle<gxShape> gxInterpSpline::mapShape(gxXform<2> const &xform) const
{
  return new gxInterpSpline(map(xform));
}

gxPtrHandle<gxShape> gxInterpSpline::reverse_() const
{
  gxPtrHandle<gxInterpSpline> const turned = new gxInterpSpline(*this);
  turned->reversePoints();
  turned->startTangent_ = -endTangent_;
  turned->endTangent_ = -startTangent_;
  turned->rejoin();
  return turned;
}
