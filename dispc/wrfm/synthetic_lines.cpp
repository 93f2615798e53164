#include "dispc/wrfm/detail/synthetic.h"
#include "dispc/wrfm/synthetic.h"
#include "foundation/numbers.h"
#include "foundation/pelerror.h"
#include "foundation/shapeserror.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <utility>

// Segments of synthetic images: plain runs and smoothed edges.

namespace
{

using Buffer = gxPelBuffer<unsigned char>;
using Point = gxVector<2>;

bool isFinite(Point const &a, Point const &b)
{
  return std::isfinite(a.x()) && std::isfinite(a.y()) && std::isfinite(b.x()) && std::isfinite(b.y());
}

void refuseEqual(Point const &a, Point const &b)
{
  if (a == b)
    throw gxShapesError::DegenerateShape();
}

/// The window less a margin, so that the smoothing finds neighbours: closed on all sides.
struct Clip {
  static constexpr double margin = 2.0;

  explicit Clip(gxPelRect const &window)
      : left(double(window.x()) + margin),
        top(double(window.y()) + margin),
        right(double(window.x()) + double(window.width()) - margin),
        bottom(double(window.y()) + double(window.height()) - margin)
  {
  }

  bool isEmpty() const { return right < left || bottom < top; }
  bool holds(Point const &p) const { return p.x() >= left && p.x() <= right && p.y() >= top && p.y() <= bottom; }

  double left, top, right, bottom;
};

bool rejects(Clip const &r, Point const &a, Point const &b)
{
  auto const outside = [](double from, double to, double low, double high) {
    return from < to ? to < low || from > high : from < low || to > high;
  };
  return outside(a.x(), b.x(), r.left, r.right) || outside(a.y(), b.y(), r.top, r.bottom);
}

/// Cuts a and b at the four sides. False if nothing is left inside.
bool clipTo(Clip const &r, Point &a, Point &b)
{
  bool const xRises = a.x() < b.x(), yRises = a.y() < b.y();
  struct Edge {
    gxFLine line;
    bool cutsFirst;
  };
  Edge const edges[] = {
      {gxFLine(gxDegree(0), {r.left, r.top}), yRises},
      {gxFLine(gxDegree(0), {r.left, r.bottom}), !yRises},
      {gxFLine(gxDegree(90), {r.left, r.top}), xRises},
      {gxFLine(gxDegree(90), {r.right, r.top}), !xRises},
  };
  for (Edge const &edge : edges) {
    refuseEqual(a, b);
    auto const met = gx2SegmentLine(a, b).intersection(edge.line, false);
    if (met.size() == 1)
      (edge.cutsFirst ? a : b) = met.front();
  }
  refuseEqual(a, b);
  return r.holds((a + b) * 0.5);
}

/// The pels of the two ends, and their neighbours, must lie in the window.
void checkEnds(Buffer const &buffer, Point const &a, Point const &b, long margin)
{
  long const xa = gf_nudgedFloor(a.x()), xb = gf_nudgedFloor(b.x());
  long const ya = gf_nudgedFloor(a.y()), yb = gf_nudgedFloor(b.y());
  buffer.checkPel(std::min(xa, xb) - margin, std::min(ya, yb) - margin);
  buffer.checkPel(std::max(xa, xb) + margin, std::max(ya, yb) + margin);
}

// Both ends lie in the window, and so does all that is between them.
void drawPlain(Buffer const &buffer, Point const &a, Point const &b, unsigned char colour)
{
  checkEnds(buffer, a, b, 0);
  long const x0 = gf_nudgedFloor(a.x()), y0 = gf_nudgedFloor(a.y());
  long const x1 = gf_nudgedFloor(b.x()), y1 = gf_nudgedFloor(b.y());
  long const dx = std::labs(x1 - x0), dy = std::labs(y1 - y0);
  long const xStep = x1 < x0 ? -1 : 1, yStep = y1 < y0 ? -buffer.rowStep() : buffer.rowStep();
  bool const isFlat = dx >= dy;
  long const n = isFlat ? dx : dy, m = isFlat ? dy : dx;
  long const straight = isFlat ? xStep : yStep, diagonal = xStep + yStep;
  unsigned char *pel = buffer.pointToPel(x0, y0);
  long error = 2 * m - n;
  for (long i = 0; i < n; ++i) {
    *pel = colour;
    bool const stepsStraight = error < 0;
    error += stepsStraight ? 2 * m : 2 * (m - n);
    pel += stepsStraight ? straight : diagonal;
  }
}

/// The pels of a buffer for an edge that runs along u; across it lies v. Steep edges exchange the axes.
template <bool steep>
class EdgePels
{
 public:
  explicit EdgePels(Buffer const &buffer)
      : buffer_(buffer),
        origin_(buffer.pointToOffset() - buffer.window().y() * buffer.rowStep() - buffer.window().x()),
        along_(steep ? buffer.rowStep() : 1),
        across_(steep ? 1 : buffer.rowStep())
  {
  }

  static double u(Point const &p) { return steep ? p.y() : p.x(); }
  static double v(Point const &p) { return steep ? p.x() : p.y(); }

  /// Throws gxPel::BadCoord unless pel (@p u, @p v) lies in the window.
  void check(long u, long v) const { steep ? buffer_.checkPel(v, u) : buffer_.checkPel(u, v); }
  bool holds(long u, long v) const
  {
    gxPelRect const &w = buffer_.window();
    long const x = steep ? v : u, y = steep ? u : v;
    return x >= w.x() && x < w.x() + w.width() && y >= w.y() && y < w.y() + w.height();
  }

  /// Pel (@p u, @p v) becomes the mean of its two neighbours across the edge, of which the farther one has @p weight.
  void blend(long u, long v, double weight) const
  {
    unsigned char *const pel = origin_ + u * along_ + v * across_;
    double const near = pel[-across_], far = pel[across_];
    *pel = static_cast<unsigned char>(static_cast<int>((far - near) * weight + near + 0.5));
  }

  /// The same for pels from column @p first through @p last. Their neighbours, which are not written here, are mostly
  /// those of the pel before; along a row eight at a time are.
  void blendRun(long first, long last, long v, double weight) const
  {
    unsigned char *pel = origin_ + first * along_ + v * across_;
    int near = -1, far = -1;
    unsigned char mean = 0;
    for (long n = last - first + 1; n > 0; --n, pel += along_) {
      if constexpr (!steep)
        for (; n > 8 && near >= 0 && areAll(pel - across_, near) && areAll(pel + across_, far); n -= 8, pel += 8)
          std::memset(pel, mean, 8);
      if (pel[-across_] != near || pel[across_] != far) {
        near = pel[-across_];
        far = pel[across_];
        mean = static_cast<unsigned char>(static_cast<int>((far - near) * weight + near + 0.5));
      }
      *pel = mean;
    }
  }

 private:
  /// True for eight bytes of one value.
  static bool areAll(unsigned char const *bytes, int value)
  {
    std::uint64_t eight;
    std::memcpy(&eight, bytes, sizeof eight);
    return eight == static_cast<std::uint64_t>(value) * 0x0101010101010101U;
  }

  Buffer const &buffer_;
  unsigned char *origin_;  ///< where pel (0, 0) of the root would lie
  long along_, across_;
};

/// The edge as an endless line, with its points at given coordinates.
template <bool steep>
class EdgeLine
{
 public:
  EdgeLine(Point const &a, Point const &b) : pos_(a), dir_((b - a).unit()) {}

  double vAt(double u) const { return V(pos_) + V(dir_) * ((u - U(pos_)) / U(dir_)); }
  double uAt(double v) const { return U(pos_) + U(dir_) * ((v - V(pos_)) / V(dir_)); }
  /// True if the edge runs along a boundary between two rows of pels.
  bool isOnBoundary() const
  {
    constexpr double level = 1e-12, nearBoundary = 0.001;
    if (!(std::abs(V(dir_)) < level))
      return false;
    double const v = std::abs(V(pos_)), f = v - std::floor(v);
    return std::min(f, 1.0 - f) <= nearBoundary;
  }

 private:
  static double U(Point const &p) { return EdgePels<steep>::u(p); }
  static double V(Point const &p) { return EdgePels<steep>::v(p); }

  Point pos_, dir_;
};

// Column by column: v0 and v1 are where the edge enters and leaves column u. Each weight is the part of the pel's area
// on the far side; where the edge crosses into another row, a triangle is cut off from either pel.
template <bool steep>
void drawSmooth(Buffer const &buffer, Point const &a, Point const &b)
{
  using Pels = EdgePels<steep>;
  EdgeLine<steep> const line(a, b);
  long const first = gf_nudgedFloor(Pels::u(a)), last = gf_nudgedFloor(Pels::u(b));
  if (line.isOnBoundary() || first == last)
    return;
  Pels const pels(buffer);
  double v1 = line.vAt(double(first));
  long r1 = gf_nudgedFloor(v1);
  double const vEnd = line.vAt(double(last + 1));
  long const rEnd = gf_nudgedFloor(vEnd);
  // The last column may end in a row that the end itself does not reach, and look one row farther.
  bool const isInside = pels.holds(first, std::min(r1, rEnd) - 1) && pels.holds(last, std::max(r1, rEnd) + 1);
  if (isInside && vEnd == v1) {  // and so everywhere, as each step of the formula is monotone
    pels.blendRun(first, last, r1, ((double(r1 + 1) - v1) + (double(r1 + 1) - v1)) * 0.5);
    return;
  }
  for (long u = first; u <= last; ++u) {
    double const v0 = v1, u0 = double(u), u1 = double(u + 1);
    long const r0 = r1;
    v1 = line.vAt(u1);
    r1 = gf_nudgedFloor(v1);
    if (!isInside) {
      pels.check(u, std::min(r0, r1) - 1);
      pels.check(u, std::max(r0, r1) + 1);
    }
    if (r0 == r1) {
      pels.blend(u, r0, ((double(r0 + 1) - v1) + (double(r0 + 1) - v0)) * 0.5);
    } else if (r0 < r1) {
      double const uc = line.uAt(double(r1));
      pels.blend(u, r0, (gf_nudgedCeil(v0) - v0) * (uc - u0) * 0.5);
      pels.blend(u, r1, 1.0 - (v1 - gf_nudgedFloor(v1)) * (u1 - uc) * 0.5);
    } else {
      double const uc = line.uAt(double(r0));
      pels.blend(u, r1, (gf_nudgedCeil(v1) - v1) * (u1 - uc) * 0.5);
      pels.blend(u, r0, 1.0 - (v0 - gf_nudgedFloor(v0)) * (uc - u0) * 0.5);
    }
  }
}

void drawSmooth(Buffer const &buffer, Point a, Point b)
{
  checkEnds(buffer, a, b, 1);
  bool const isSteep = std::abs(a.y() - b.y()) > std::abs(a.x() - b.x());
  if (isSteep ? b.y() < a.y() : b.x() < a.x())
    std::swap(a, b);
  isSteep ? drawSmooth<true>(buffer, a, b) : drawSmooth<false>(buffer, a, b);
}

}  // namespace

void gf_drawSyntheticLine(Buffer const &buffer, Point const &p1, Point const &p2, gxXform<2> const &xform,
                          unsigned char colour, bool smooth)
{
  Clip const clip(buffer.window());
  if (clip.isEmpty())
    return;
  Point a = xform.mapPoint(p1), b = xform.mapPoint(p2);
  if (!isFinite(a, b))
    return;
  refuseEqual(a, b);
  if (!(clip.holds(a) && clip.holds(b)) && (rejects(clip, a, b) || !clipTo(clip, a, b)))
    return;
  // A segment of the client is cut, not its image: what rounding the way back costs is part of the result.
  if (!xform.isIdentity()) {
    gxXform<2> const back = xform.inverse();
    Point const clientA = back.mapPoint(a), clientB = back.mapPoint(b);
    refuseEqual(clientA, clientB);
    a = xform.mapPoint(clientA);
    b = xform.mapPoint(clientB);
    refuseEqual(a, b);
  }
  smooth ? drawSmooth(buffer, a, b) : drawPlain(buffer, a, b, colour);
}

void drawLinePelBuf(Buffer buffer, gx2SegmentLine const &line, gxXform<2> const &xform, signed char colour,
                    signed char smooth)
{
  buffer.checkBound();
  gf_drawSyntheticLine(buffer, line.p1(), line.p2(), xform, static_cast<unsigned char>(colour), smooth);
}

namespace
{

void markExtents(Buffer const &buffer, Point a, Point b, unsigned char colour)
{
  if (!isFinite(a, b))
    return;
  refuseEqual(a, b);
  if (a.y() > b.y())
    std::swap(a, b);
  long const y0 = gf_nudgedCeil(a.y() - 0.5), y1 = gf_nudgedFloor(b.y() - 0.5);
  if (y0 == y1) {
    double const l = a.x() < b.x() ? a.x() : b.x(), r = a.x() < b.x() ? b.x() : a.x();
    buffer.put(gf_nudgedCeil(l - 0.5), y0, colour);
    buffer.put(gf_nudgedFloor(r - 0.5), y0, colour);
    return;
  }
  double const slope = (b.x() - a.x()) / (b.y() - a.y());
  for (long y = y0; y <= y1; ++y)
    buffer.put(gf_nudgedFloor((double(y) + 0.5 - a.y()) * slope + a.x()), y, colour);
}

}  // namespace

void gf_markSyntheticExtents(Buffer const &buffer, Point const &p1, Point const &p2, gxXform<2> const &xform,
                             unsigned char colour)
{
  markExtents(buffer, xform.mapPoint(p1), xform.mapPoint(p2), colour);
}

void drawHorizontalExtentsPelBuf(Buffer buffer, gx2SegmentLine const &line, gxXform<2> const &xform, signed char colour)
{
  buffer.checkBound();
  gf_markSyntheticExtents(buffer, line.p1(), line.p2(), xform, static_cast<unsigned char>(colour));
}

void gf_PelCopyVid(void *dst, long dstStride, void const *src, long srcStride, long width, long height)
{
  auto *to = static_cast<unsigned char *>(dst);
  auto const *from = static_cast<unsigned char const *>(src);
  for (long y = 0; y < height && width > 0; ++y)
    std::memmove(to + y * dstStride, from + y * srcStride, static_cast<std::size_t>(width));
}
