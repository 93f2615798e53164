#include "foundation/cubicspline.h"

#include "foundation/geomarchive.h"
#include "foundation/outline.h"
#include "foundation/shapeserror.h"

#include <algorithm>
#include <cmath>
#include <utility>

GX_PERSISTENT_ABSTRACT_IMPL(gxCubicSpline, 0)
void gxCubicSpline::serialize_(gxArchive &archive, unsigned char version)
{
  gf_refuseVersion(version, "gxCubicSpline");
  gxShape::dispatchSerialize(archive);
  passFields_(archive);
}

bool gxCubicSpline::loadSimple(gxArchive &archive)
{
  if (!gxShape::loadSimple(archive))
    return false;
  gf_refuseVersion(gf_passVersion(archive, 0), "gxCubicSpline");
  passFields_(archive);
  return true;
}

namespace
{

bool isInterval(double v)
{
  return v > 0.0 && std::isfinite(v);
}

}  // namespace

void gxCubicSpline::passFields_(gxArchive &archive)
{
  bool closed = isClosed_;
  int mode = mode_;
  std::vector<gxVector<2>> points = points_;
  std::vector<double> intervals = given_;
  archive || closed || mode || points;
  long const count = archive.passCount(static_cast<long>(intervals.size()), sizeof(double));
  if (archive.isLoading())
    intervals.assign(static_cast<std::size_t>(count), 0.0);
  for (double &v : intervals)
    archive || v;
  if (archive.isStoring())
    return;
  if (mode < uniform || mode > given)
    archive.fail("an unknown interval mode");
  if (!std::all_of(intervals.begin(), intervals.end(), isInterval))
    archive.fail("an interval that is not positive");
  joined_.clear();
  isClosed_ = closed;
  mode_ = static_cast<IntervalMode>(mode);
  points_ = std::move(points);
  given_ = std::move(intervals);
}

void gxCubicSpline::isClosed(bool v)
{
  mutating();
  bool const before = std::exchange(isClosed_, v);
  try {
    rejoin();
  } catch (...) {
    isClosed_ = before;
    throw;
  }
}

void gxCubicSpline::intervalMode(IntervalMode v)
{
  mutating();
  IntervalMode const before = std::exchange(mode_, v);
  try {
    rejoin();
  } catch (...) {
    mode_ = before;
    throw;
  }
}

std::vector<double> gxCubicSpline::intervals() const
{
  std::vector<double> all(curveCount(), 1.0);
  if (mode_ == given)
    std::copy_n(given_.begin(), std::min(given_.size(), all.size()), all.begin());
  if (mode_ != chordLength && mode_ != centripetal)
    return all;
  double sum = 0.0;
  double found = 0.0;
  for (std::size_t i = 0; i < all.size(); ++i) {
    double const distance = around(i + firstLeg()).distance(around(i + firstLeg() + 1));
    all[i] = mode_ == chordLength ? distance : std::sqrt(distance);
    sum += all[i];
    found += all[i] > 0.0 ? 1.0 : 0.0;
  }
  std::replace(all.begin(), all.end(), 0.0, found > 0.0 ? sum / found : 1.0);
  return all;
}

void gxCubicSpline::intervals(std::vector<double> v)
{
  if (!std::all_of(v.begin(), v.end(), isInterval))
    throw gxShapesError::BadKnots();
  mutating();
  std::vector<double> const before = std::exchange(given_, std::move(v));
  IntervalMode const modeBefore = std::exchange(mode_, given);
  try {
    rejoin();
  } catch (...) {
    given_ = before;
    mode_ = modeBefore;
    throw;
  }
}

gxBezierCurve gxCubicSpline::bezierCurve(long i) const
{
  if (i < 0 || i >= numBezierCurves())
    throw gxShapesError::BadCoef();
  gxBezierCurve::Points points;
  std::copy_n(joined_.begin() + 3 * i, points.size(), points.begin());
  return {points, gxBezierCurve::Weights{1.0, 1.0, 1.0, 1.0}};
}

gxVector<2> gxCubicSpline::point(double t) const
{
  if (!(t >= 0.0 && t <= static_cast<double>(numBezierCurves())) || numBezierCurves() == 0)
    throw gxShapesError::BadCoef();
  long const i = std::min(static_cast<long>(t), numBezierCurves() - 1);
  return bezierCurve(i).point(t - static_cast<double>(i));
}

void gxCubicSpline::appendOutline(gx_Outline &outline) const
{
  if (joined_.empty())
    return;
  gx_Contour &contour = outline.addContour(isClosed_);
  for (std::size_t i = 0; i + 3 < joined_.size(); i += 3)
    contour.pieces.push_back(gx_BezierPiece{{joined_[i], joined_[i + 1], joined_[i + 2], joined_[i + 3]}});
}

void gxCubicSpline::rejoin()
{
  std::vector<gxVector<2>> joined;
  if (!points_.empty())
    joined = join(intervals());
  constexpr double maxCoordinate = 1e150;  // as in gxBezierCurve
  for (gxVector<2> const &p : joined)
    if (!(std::abs(p.x()) <= maxCoordinate && std::abs(p.y()) <= maxCoordinate))
      throw gxShapesError::BadGeom();
  joined_ = std::move(joined);
}

void gxCubicSpline::rejoinLoaded(gxArchive &archive)
{
  try {
    rejoin();
  } catch (gxShapesError::Errors const &) {
    archive.fail("a spline through points out of range");
  }
}

std::vector<gxVector<2>> gxCubicSpline::joinHermite(std::vector<double> const &intervals,
                                                    std::vector<gxVector<2>> const &slopes) const
{
  std::vector<gxVector<2>> joined;
  if (intervals.empty())
    joined.assign(3, points_.front());  // one point is a curve without extent
  for (std::size_t i = 0; i < intervals.size(); ++i) {
    double const third = intervals[i] / 3.0;
    joined.push_back(around(i));
    joined.push_back(around(i) + slopes[i] * third);
    joined.push_back(around(i + 1) - slopes[(i + 1) % slopes.size()] * third);
  }
  joined.push_back(around(isClosed_ ? 0 : points_.size() - 1));
  return joined;
}

void gxCubicSpline::mapPoints(gxXform<2> const &xform)
{
  if (!(xform.matrix() == gxMatrix<2>()) && mode_ != uniform) {
    given_ = intervals();  // distances change, and the image must not
    mode_ = given;
  }
  for (gxVector<2> &p : points_)
    p = xform * p;
}

void gxCubicSpline::reversePoints()
{
  if (mode_ == given) {
    given_ = intervals();
    std::reverse(given_.begin(), given_.end());
  }
  points_ = reversed(points_);
}

bool gxCubicSpline::equalBase(gxCubicSpline const &other) const
{
  return isClosed_ == other.isClosed_ && mode_ == other.mode_ && points_ == other.points_ &&
         (mode_ != given || intervals() == other.intervals());
}
