#include "foundation/linesegset.h"

#include "foundation/geomarchive.h"
#include "foundation/outline.h"
#include "foundation/rect.h"
#include "foundation/shapeserror.h"

GX_SHAPE_IMPL(gxLineSegSet, gxShape)

namespace
{

bool hasGap(std::vector<gxLineSeg> const &segments)
{
  for (std::size_t i = 1; i < segments.size(); ++i)
    if (!(segments[i - 1].end() == segments[i].start()))
      return true;
  return false;
}

}  // namespace

void gxLineSegSet::passFields_(gxArchive &archive)
{
  bool connected = isConnected_;
  archive || connected;
  constexpr std::size_t bytesEach = 4 * sizeof(double);
  long const count = archive.passCount(size(), bytesEach);
  std::vector<gxLineSeg> segments = segments_;
  if (archive.isLoading())
    segments.assign(static_cast<std::size_t>(count), gxLineSeg());
  for (gxLineSeg &segment : segments) {
    gxVector<2> start = segment.start(), end = segment.end();
    archive || start || end;
    if (archive.isLoading())
      segment = gxLineSeg(start, end);
  }
  if (archive.isStoring())
    return;
  if (connected && hasGap(segments))
    archive.fail("connected segments with a gap");
  segments_ = std::move(segments);
  isConnected_ = connected;
}

gxLineSegSet::gxLineSegSet(std::vector<gxLineSeg> segments, bool connected)
    : segments_(std::move(segments)), isConnected_(connected)
{
  if (connected && hasGap(segments_))
    throw gxShapesError::BadGeom();
}

void gxLineSegSet::segments(std::vector<gxLineSeg> v)
{
  if (isConnected_ && hasGap(v))
    throw gxShapesError::BadGeom();
  mutating();
  segments_ = std::move(v);
}

gxLineSegSet gxLineSegSet::map(gxXform<2> const &xform) const
{
  gxLineSegSet image(*this);
  for (gxLineSeg &segment : image.segments_)
    segment = segment.map(xform);
  return image;
}

gxVector<2> gxLineSegSet::nearestPoint(gxVector<2> const &p) const
{
  if (segments_.empty())
    throw gxShapesError::EmptyShape();
  gxVector<2> best = segments_.front().nearestPoint(p);
  for (gxLineSeg const &segment : segments_)
    if (gxVector<2> const found = segment.nearestPoint(p); p.distance(found) < p.distance(best))
      best = found;
  return best;
}

double gxLineSegSet::perimeter() const
{
  double sum = 0.0;
  for (gxLineSeg const &segment : segments_)
    sum += segment.perimeter();
  return sum;
}

gxPtrHandle<gxShape> gxLineSegSet::mapShape(gxXform<2> const &xform) const
{
  return new gxLineSegSet(map(xform));
}

gxPtrHandle<gxShape> gxLineSegSet::reverse_() const
{
  std::vector<gxLineSeg> turned;
  for (auto segment = segments_.rbegin(); segment != segments_.rend(); ++segment)
    turned.emplace_back(segment->end(), segment->start());
  return new gxLineSegSet(std::move(turned), isConnected_);
}

void gxLineSegSet::appendOutline(gx_Outline &outline) const
{
  for (gxLineSeg const &segment : segments_) {
    if (!isConnected_ || &segment == segments_.data())
      outline.addContour(false);
    outline.contours.back().pieces.push_back(gx_LinePiece{segment.start(), segment.end()});
  }
}

std::ostream &operator<<(std::ostream &os, gxLineSegSet const &set)
{
  os << (set.isConnected() ? "connected segments:" : "segments:");
  for (gxLineSeg const &segment : set.segments())
    os << ' ' << segment;
  return os;
}
