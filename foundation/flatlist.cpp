#include "foundation/flatlist.h"

#include "foundation/archive.h"
#include "foundation/bytes.h"
#include "foundation/failure.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>

GX_EXCEPTION_IMPL(gxDrawListError::Errors, gxException, Errors, 0x10001500, "a drawing list failed")
GX_EXCEPTION_IMPL(gxDrawListError::BadRecord, gxDrawListError::Errors, BadRecord, 0x10001501,
                  "a record of the drawing list runs beyond its end or contradicts itself")
GX_EXCEPTION_IMPL(gxDrawListError::NoRoom, gxDrawListError::Errors, NoRoom, 0x10001502,
                  "the drawing list has no room for the record")

namespace
{

constexpr std::size_t headSize = 8, wordSize = 4, pointSize = 16, numberSize = 8;
constexpr long mostRecords = std::numeric_limits<std::int32_t>::max();

long badRecord()
{
  return gfFailureCode(gxDrawListError::BadRecord());
}

long noRoom()
{
  return gfFailureCode(gxDrawListError::NoRoom());
}

// Room for n bytes more. A list that does not own its records gets a copy of them, with room.
bool grow(gxr_list &flat, std::size_t n)
{
  if (flat.capacity >= flat.size && n <= flat.capacity - flat.size)
    return true;
  if (n > std::numeric_limits<std::size_t>::max() / 4 - flat.size)
    return false;
  std::size_t const capacity = std::max<std::size_t>(2 * flat.size, flat.size + n + 64);
  void *const owned = flat.capacity ? flat.records : nullptr;
  void *const moved = std::realloc(owned, capacity);
  if (!moved)
    return false;
  if (!owned && flat.size)
    std::memcpy(moved, flat.records, flat.size);
  flat.records = static_cast<unsigned char *>(moved);
  flat.capacity = capacity;
  return true;
}

// The room of a new record is taken at once; what follows fills it.
class Writer
{
 public:
  Writer(gxr_list *flat, gxr_type type, gxr_color color, std::size_t length)
  {
    if (!flat || flat->count >= mostRecords || !grow(*flat, headSize + length))
      return;
    to_ = flat->records + flat->size;
    flat->size += headSize + length;
    flat->count = std::max(flat->count, 0) + 1;
    *this << static_cast<std::int32_t>(type) << static_cast<std::uint32_t>(color);
  }

  template <class Number>
  Writer &operator<<(Number number)
  {
    return bytes(&number, sizeof number);
  }
  Writer &operator<<(gxVector<2> const &v) { return *this << v.x() << v.y(); }
  Writer &bytes(void const *from, std::size_t n)
  {
    if (to_ && n)
      to_ = static_cast<unsigned char *>(std::memcpy(to_, from, n)) + n;
    return *this;
  }
  long code() const { return to_ ? 0 : noRoom(); }

 private:
  unsigned char *to_ = nullptr;
};

std::int32_t wordAt(unsigned char const *at)
{
  std::int32_t word = 0;
  std::memcpy(&word, at, sizeof word);
  return word;
}

bool fits(long count)
{
  return count >= 0 && count <= std::numeric_limits<std::int32_t>::max();
}

// Length of a payload of which @p left bytes are there; more than that if it does not fit.
std::size_t payloadLength(gxr_type type, unsigned char const *payload, std::size_t left)
{
  constexpr std::size_t tooLong = std::numeric_limits<std::size_t>::max();
  auto const counted = [&](std::size_t head, std::size_t each) {
    if (left < head)
      return tooLong;
    std::int32_t const count = wordAt(type == gxr_text ? payload + head - wordSize : payload);
    return count < 0 ? tooLong : head + static_cast<std::size_t>(count) * each;
  };
  switch (type) {
    case gxr_lineSeg:
    case gxr_line:
    case gxr_rect:
      return 2 * pointSize;
    case gxr_genRect:
      return 3 * pointSize + numberSize;
    case gxr_circle:
      return pointSize + numberSize;
    case gxr_ellipse:
      return 13 * numberSize;
    case gxr_polyline:
      return counted(2 * wordSize, pointSize);
    case gxr_affineRect:
      return 3 * pointSize;
    case gxr_text:
      return counted(pointSize + 2 * wordSize, 1);
    case gxr_lineSegSet:
      return counted(wordSize, 2 * pointSize);
    case gxr_point:
      break;
  }
  return pointSize;
}

}  // namespace

long gxr_list_appendPoint(gxr_list *flat, gxr_color color, gxVector<2> const &p)
{
  return (Writer(flat, gxr_point, color, pointSize) << p).code();
}

long gxr_list_appendLineSeg(gxr_list *flat, gxr_color color, gxVector<2> const &a, gxVector<2> const &b)
{
  return (Writer(flat, gxr_lineSeg, color, 2 * pointSize) << a << b).code();
}

long gxr_list_appendLineDirPoint(gxr_list *flat, gxr_color color, gxVector<2> const &direction,
                                 gxVector<2> const &point)
{
  return (Writer(flat, gxr_line, color, 2 * pointSize) << direction << point).code();
}

long gxr_list_appendRect(gxr_list *flat, gxr_color color, gxVector<2> const &corner, gxVector<2> const &size)
{
  return (Writer(flat, gxr_rect, color, 2 * pointSize) << corner << size).code();
}

long gxr_list_appendGenRect(gxr_list *flat, gxr_color color, gxVector<2> const &center, gxVector<2> const &size,
                            gxVector<2> const &round, double orient)
{
  return (Writer(flat, gxr_genRect, color, 3 * pointSize + numberSize) << center << size << orient << round).code();
}

long gxr_list_appendCircle(gxr_list *flat, gxr_color color, gxVector<2> const &center, double radius)
{
  return (Writer(flat, gxr_circle, color, pointSize + numberSize) << center << radius).code();
}

long gxr_list_appendEllipse(gxr_list *flat, gxr_color color, gxVector<2> const &center, gxVector<2> const &radii,
                            double angle, double phase, bool rightHanded)
{
  gxVector<2> const none;
  return (Writer(flat, gxr_ellipse, color, 13 * numberSize)
          << center << radii << angle << phase << (rightHanded ? 1.0 : 0.0) << none << none << none)
      .code();
}

long gxr_list_appendPolyline(gxr_list *flat, gxr_color color, gxVector<2> const *vertices, long count, bool closed)
{
  if (!fits(count))
    return noRoom();
  Writer writer(flat, gxr_polyline, color, 2 * wordSize + static_cast<std::size_t>(count) * pointSize);
  writer << static_cast<std::int32_t>(count) << std::int32_t(closed);
  std::for_each(vertices, vertices + count, [&](gxVector<2> const &v) { writer << v; });
  return writer.code();
}

long gxr_list_appendShapeAffineRect(gxr_list *flat, gxr_color color, gxVector<2> const corners[3])
{
  return (Writer(flat, gxr_affineRect, color, 3 * pointSize) << corners[0] << corners[1] << corners[2]).code();
}

long gxr_list_appendTextEx(gxr_list *flat, std::string_view text, gxVector<2> const &place, gxr_color color,
                           std::int32_t format)
{
  if (!fits(static_cast<long>(text.size())))
    return noRoom();
  Writer writer(flat, gxr_text, color, pointSize + 2 * wordSize + text.size());
  writer << place << format << static_cast<std::int32_t>(text.size());
  return writer.bytes(text.data(), text.size()).code();
}

long gxr_list_appendLineSegSet(gxr_list *flat, gxr_color color, gxVector<2> const *ends, long count)
{
  if (!fits(count))
    return noRoom();
  Writer writer(flat, gxr_lineSegSet, color, wordSize + static_cast<std::size_t>(count) * 2 * pointSize);
  writer << static_cast<std::int32_t>(count);
  std::for_each(ends, ends + 2 * count, [&](gxVector<2> const &v) { writer << v; });
  return writer.code();
}

void gxr_list_free(gxr_list *flat)
{
  if (flat && flat->capacity)
    std::free(flat->records);
  if (flat)
    *flat = gxr_list();
}

long gxr_list_read(gxr_list const *flat, std::size_t *at, gxr_record *record)
{
  if (!flat->records || flat->size < *at || flat->size - *at < headSize)
    return badRecord();
  unsigned char const *const head = flat->records + *at;
  std::size_t const left = flat->size - *at - headSize;
  gxr_record found;
  found.type = static_cast<gxr_type>(wordAt(head));
  found.color = static_cast<gxr_color>(wordAt(head + wordSize));
  found.payload = head + headSize;
  found.length = payloadLength(found.type, found.payload, left);
  if (found.length > left)
    return badRecord();
  *record = found;
  *at += headSize + found.length;
  return 0;
}
