#include "dispc/detail/pelscale.h"
#include "dispc/detail/runrows.h"
#include "dispc/uiscope.h"
#include "foundation/pelops.h"
#include "foundation/rlebuf.h"

#include <algorithm>
#include <cmath>
#include <limits>

// Run-length images at other scales. For whole factors the runs themselves are scaled.

namespace
{
/// How a change of scale is brought about.
struct Zoom {
  /// By runs for a whole number, by pels for any other one that 32 bits hold.
  Zoom(double scale, gxRLEBuffer const &buffer)
  {
    if (!(scale > 0.0) || buffer.isNull())
      return;
    if (auto const whole = gx_scale::wholeFactor(scale)) {
      factor = *whole;
      way = factor >= 1 ? byRuns : nothing;
    } else if (gf_truncate(scale + 1.0) < gf_truncate(scale + 2.0)) {
      way = byPels;
    }
  }

  enum Way { nothing, byRuns, byPels } way = nothing;
  long factor = 0;
};

gxPelBuffer<unsigned char> unpacked(gxRLEBuffer const &buffer, std::vector<unsigned char> const &colorMap)
{
  return gfPelMap<unsigned char, unsigned char>(buffer.image(), colorMap);
}

/// Reduces a row by @p k. A pel of the result ends at every k-th pel, and has the value of the run that holds that one.
///
/// What run i gives is the pels that end before its end less those that end before its start; so the remainder need
/// not be carried from one division to the next, and they do not wait for each other.
void sampleRow(gxRLEBufferRun const *from, long k, gx_scale::RunRows &rows)
{
  // Exact below 2^50 pels: half a pel lies between the product and the next whole number.
  double const inverse = 1.0 / static_cast<double>(k);
  long pels = 0, before = 0;
  gxRLEBufferRun *to = rows.begin();
  for (; from->length != 0; ++from) {
    pels += from->length;
    auto const ended = static_cast<long>((static_cast<double>(pels) + 0.5) * inverse);
    if (ended != before)
      rows.put(to, {from->value, static_cast<unsigned char>(ended - before)});
    before = ended;
  }
  rows.end(to);
}

/// One axis of an enlargement that begins at pel @p start of the scope.
struct EnlargedAxis {
  /// @param size   of the image, in pels
  /// @param extent of the scope
  EnlargedAxis(long start, long k, long size, long extent)
      : skipped(start < 0 ? -start / k : 0), cut(start < 0 ? -start % k : 0)
  {
    long const edge = cut != 0 ? -k : std::max(start, 0L);
    drawAt = cut != 0 ? 0 : edge;
    kept = std::min(size - skipped, gf_nudgedCeil(static_cast<double>(extent - edge) / static_cast<double>(k)) + 0L);
    isWhole = skipped == 0 && kept == size;
  }

  long skipped;  ///< pels of the image before the edge of the scope
  long cut;      ///< pels of the result that the first block has lost to the edge
  long kept;     ///< pels of the image that show
  long drawAt;   ///< in pels of the scope
  bool isWhole;  ///< the image is kept as it is
};

/// What to do with each row of an enlargement.
struct EnlargedRow {
  EnlargedRow(EnlargedAxis const &x, bool isWhole, long k, long scopeWidth)
      : skipped(x.skipped),
        cut(x.cut),
        factor(k),
        end(isWhole ? std::numeric_limits<long>::max() : x.kept * k - x.cut),
        edge(scopeWidth - x.drawAt)
  {
  }

  void expand(gxRLEBufferRun const *from, gx_scale::RunRows &rows) const;

  long skipped;  ///< pels of the source
  long cut;      ///< pels of the result that the first run loses
  long factor;
  long end;   ///< pels that a row of the result may have
  long edge;  ///< no run begins beyond this pel of the result

 private:
  long put(gx_scale::RunRows &rows, gxRLEBufferRun *&to, unsigned char value, long length, long pels) const;
};

constexpr long longestRun = 255;

/// Writes the runs that bring the row, of @p pels pels so far, @p length pels of a value. Returns its pels then.
long EnlargedRow::put(gx_scale::RunRows &rows, gxRLEBufferRun *&to, unsigned char value, long length, long pels) const
{
  length = std::min(length, end - pels);
  while (length > 0 && pels <= edge) {
    long const part = std::min(length, longestRun);
    rows.put(to, {value, static_cast<unsigned char>(part)});
    length -= part;
    pels += part;
  }
  return pels;
}

/// A row on its way to the enlarged one, of @p pels pels so far.
struct Progress {
  gxRLEBufferRun const *from;
  gxRLEBufferRun *to;
  long pels;
};

/// Most runs stay short: enlarges runs until one is too long, the row would pass @p last pels, or ends, or there is no
/// more room. A function of its own, so that all it works with stays in registers.
Progress enlargeShortRuns(Progress p, gxRLEBufferRun const *room, long factor, long last)
{
  while (p.to != room) {
    long const length = p.from->length * factor;
    if (length == 0 || length > longestRun || p.pels + length > last)
      break;
    *p.to++ = {p.from->value, static_cast<unsigned char>(length)};
    p.pels += length;
    ++p.from;
  }
  return p;
}

void EnlargedRow::expand(gxRLEBufferRun const *from, gx_scale::RunRows &rows) const
{
  Progress p{from, rows.begin(), 0};
  long lost = skipped;
  for (; p.from->length != 0 && lost >= p.from->length; ++p.from)
    lost -= p.from->length;
  lost = lost * factor + cut;
  while (p.from->length != 0 && p.pels <= edge && p.pels != end) {
    gxRLEBufferRun *to = p.to;
    p.pels = put(rows, to, p.from->value, p.from->length * factor - lost, p.pels);
    lost = 0;
    p = enlargeShortRuns({p.from + 1, to, p.pels}, rows.limit(), factor, std::min(end, edge));
  }
  rows.end(p.to);
}
}  // namespace

void gxUIScope::sample(gxRLEBuffer const &buffer, gxPoint const &topLeft, std::vector<unsigned char> const &colorMap,
                       gxPair<double> const &scale, bool pass, unsigned char passPel)
{
  Zoom const zoom(scale.x() > 0.0 ? 1.0 / scale.x() : 0.0, buffer);
  if (zoom.way == Zoom::byPels)
    sample(unpacked(buffer, colorMap), topLeft, scale, pass, passPel, true);
  if (zoom.way != Zoom::byRuns)
    return;
  long const k = zoom.factor;
  long const width = buffer.width() / k, height = buffer.height() / k;
  if (width == 0 || height == 0)
    return;
  gx_scale::RunRows rows(height);
  for (long i = 0; i < height; ++i)
    sampleRow(buffer.pointToRow(buffer.offset().y() + i * k), k, rows);
  draw(rows.take(width), topLeft, colorMap, pass, passPel);
}

void gxUIScope::expand(gxRLEBuffer const &buffer, gxPoint const &topLeft, std::vector<unsigned char> const &colorMap,
                       gxPair<double> const &scale, bool pass, unsigned char passPel)
{
  Zoom const zoom(scale.x(), buffer);
  if (zoom.way == Zoom::byPels)
    expand(unpacked(buffer, colorMap), topLeft, scale, pass, passPel, true, gx_UITabletBase::noInterpolation);
  if (zoom.way != Zoom::byRuns || !topLeft.isFinite())
    return;
  long const k = zoom.factor;
  gxPair<long> const extent = size();
  EnlargedAxis const x(xCoord(topLeft), k, buffer.width(), extent.x());
  EnlargedAxis const y(yCoord(topLeft), k, buffer.height(), extent.y());
  long const height = std::min(extent.y(), y.kept * k - y.cut);
  if (x.kept < 1 || y.kept < 1 || height < 1)
    return;
  EnlargedRow const row(x, x.isWhole && y.isWhole, k, extent.x());
  gx_scale::RunRows rows(height);
  for (long i = 0; rows.count() < height; ++i) {
    row.expand(buffer.pointToRow(buffer.offset().y() + y.skipped + i), rows);
    long const end = std::min(height, (i + 1) * k - y.cut);
    while (rows.count() < end)
      rows.repeat();
  }
  long const width = std::min<long>(x.kept * k, std::numeric_limits<std::int32_t>::max());
  gxPoint const at(gxVector<2>(gxPair<long>(x.drawAt, y.drawAt)) + gxVector<2>(org()));
  draw(rows.take(width), at, colorMap, pass, passPel);
}
