#include "foundation/pelbuf.h"

#include "foundation/archive.h"
#include "foundation/geomarchive.h"

#include <algorithm>
#include <limits>
#include <string>

namespace
{
struct Span {
  long first;
  long size;
};

/// What the span of @p size pels at @p first and the span @p within have in common; of size 0 within @p within if
/// nothing.
Span intersect(long first, long size, Span within)
{
  constexpr long highest = std::numeric_limits<long>::max();
  long const end = size <= 0 ? first : first > highest - size ? highest : first + size;
  long const start = std::clamp(first, within.first, within.first + within.size);
  long const stop = std::clamp(end, within.first, within.first + within.size);
  return {start, stop - start};
}

std::string pairText(long x, long y)
{
  return "(" + std::to_string(x) + ", " + std::to_string(y) + ")";
}

std::string windowText(gxPelRect const &w)
{
  return "the window at " + pairText(w.x(), w.y()) + " of " + std::to_string(w.width()) + " x " +
         std::to_string(w.height()) + " pels";
}
}  // namespace

gx_PelBuffer::gx_PelBuffer() = default;
gx_PelBuffer::gx_PelBuffer(gx_PelBuffer const &) = default;
gx_PelBuffer &gx_PelBuffer::operator=(gx_PelBuffer const &) = default;
gx_PelBuffer::~gx_PelBuffer() = default;

gx_PelBuffer::gx_PelBuffer(gxPtrHandle_const<gx_PelRoot> const &root) : root_(root)
{
  if (!root_.isNull())
    setEntire();
}

bool gx_PelBuffer::window(long x, long y, long w, long h, bool clip)
{
  checkBound();
  Span const columns = intersect(x, w, {window_.x(), window_.width()});
  Span const rows = intersect(y, h, {window_.y(), window_.height()});
  bool const fits = columns.first == x && columns.size == w && rows.first == y && rows.size == h;
  if (!clip && !fits)
    return false;
  window_ = gxPelRect(columns.first, rows.first, columns.size, rows.size);
  return !clip || !window_.isNull();
}

void gx_PelBuffer::setEntire()
{
  checkBound();
  bytes_ = root_->bytes();
  rowStep_ = root_->rowStep();
  window_ = gxPelRect(0, 0, root_->width(), root_->height());
}

void gx_PelBuffer::refuseUnbound() const
{
  throw gxPel::UnboundWindow();
}

void gx_PelBuffer::refusePel(long x, long y) const
{
  checkBound();
  throw gxPel::BadCoord("pel " + pairText(x, y) + " lies outside of " + windowText(window_));
}

void gx_PelBuffer::refuseRow(long y) const
{
  checkBound();
  throw gxPel::BadCoord("row " + std::to_string(y) + " lies outside of " + windowText(window_));
}

gxArchive &operator||(gxArchive &archive, gxPelBuffer<unsigned char> &buffer)
{
  using Root = gxPelRoot<unsigned char>;
  gf_refuseVersion(gf_passVersion(archive, 0), "gxPelBuffer<unsigned char>");
  gxPtrHandle<Root> root;
  if (archive.isStoring())
    root = const_cast<Root *>(dynamic_cast<Root const *>(buffer.rep()));
  gxPair<long> origin = buffer.window().origin(), size = buffer.size(), offset = buffer.offset();
  gxXform<2> imageFromClient = buffer.imageFromClientXform();
  archive || root || origin || size || offset || imageFromClient;
  if (archive.isStoring())
    return archive;

  gxPelBuffer<unsigned char> result(root);
  bool const windowIsNone = origin == gxPair<long>() && size == gxPair<long>();
  bool const fits = result.isBound() ? result.window(origin.x(), origin.y(), size.x(), size.y()) : windowIsNone;
  if (!fits)
    archive.fail("a pel buffer whose window exceeds its pels");
  result.offset(offset);
  result.imageFromClientXform(imageFromClient);
  buffer = result;
  return archive;
}
