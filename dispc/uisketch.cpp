#include "dispc/uisketch.h"

#include <cstdlib>
#include <limits>
#include <new>
#include <utility>

namespace
{

/// Memory ran out, or the stream would pass the 31 bits of its length.
class SketchTooLarge : public std::bad_alloc
{
 public:
  char const *what() const noexcept override { return "bad allocation"; }
};

constexpr long maxSize = std::numeric_limits<std::int32_t>::max();

/// The room that a sketch of @p capacity takes when it has to hold @p needed bytes.
long grownCapacity(long capacity, long needed)
{
  return std::min(maxSize, std::max(needed, 2 * capacity));
}

}  // namespace

gxArchive &operator||(gxArchive &archive, gxUISketchMark &mark)
{
  signed char version = 0;
  long offset = mark.mark_;
  archive || version || offset;
  mark.mark_ = gf_narrow(offset);
  return archive;
}

gxUISketch::gxUISketch(gxUISketch const &s)
{
  if (s.capacity_ == 0)
    return;
  growBy(s.capacity_);
  append(s.bytes_, s.size_);
}

gxUISketch::gxUISketch(unsigned char const *bytes, long n)
{
  append(bytes, n);
}

gxUISketch::~gxUISketch()
{
  std::free(bytes_);
}

gxUISketch &gxUISketch::operator=(gxUISketch const &s)
{
  if (this == &s)
    return *this;
  if (s.size_ > capacity_)
    growBy(long(s.size_) - size_);
  size_ = 0;
  append(s.bytes_, s.size_);
  return *this;
}

/// Makes room for @p n more bytes; every growth of a sketch goes through here.
void gxUISketch::growBy(long n)
{
  if (n < 0 || n > maxSize - size_)
    throw SketchTooLarge();
  long const needed = size_ + n;
  if (needed <= capacity_)
    return;
  long const capacity = grownCapacity(capacity_, needed);
  void *const block = std::realloc(bytes_, static_cast<std::size_t>(capacity));
  if (!block)
    throw SketchTooLarge();
  bytes_ = static_cast<unsigned char *>(block);
  capacity_ = static_cast<std::int32_t>(capacity);
}

void gxUISketch::append(void const *data, long n)
{
  unsigned char *const at = append(n);
  if (n > 0)
    std::memcpy(at, data, static_cast<std::size_t>(n));
}

void gxUISketch::opcode(signed char code, signed char layer, gxColor const &color)
{
  writeHead(append(gf_sketchHeadSize), code, layer, color);
}

void gxUISketch::opcode(signed char code, gxGraphicProps const &props)
{
  if (props == props_)
    return;
  growBy(gf_sketchPrefixSize);
  props_ = props;
  *append(1) = static_cast<unsigned char>(code);
  props_.opcode(this, props);
}

/// Writes the properties if they have changed, and makes room for a head and @p n bytes; or throws and writes nothing.
void gxUISketch::prepareRecord(gxGraphicProps const &props, long n)
{
  bool const changed = props != props_;
  long const before = changed ? gf_sketchPrefixSize + gf_sketchHeadSize : gf_sketchHeadSize;
  growBy(n < 0 || n > maxSize - before ? maxSize : before + n);
  if (changed)
    opcode(static_cast<signed char>(gx_SketchCode::props), props);
}

gxUISketch &gxUISketch::insert(gxUISketch const &s, gxUISketchMark at)
{
  long const from = within(at);
  long const n = s.size_;
  if (n == 0)
    return *this;
  if (this == &s) {
    gxUISketch const same(s);
    return insert(same, at);
  }
  growBy(n);
  std::memmove(bytes_ + from + n, bytes_ + from, static_cast<std::size_t>(size_ - from));
  std::memcpy(bytes_ + from, s.bytes_, static_cast<std::size_t>(n));
  size_ += static_cast<std::int32_t>(n);
  return *this;
}

void gxUISketch::remove(gxUISketchMark from, gxUISketchMark to)
{
  if (from.mark() >= to.mark())
    return;
  if (to.mark() < size_)
    std::memmove(bytes_ + within(from), bytes_ + to.mark(), static_cast<std::size_t>(size_ - to.mark()));
  size_ = static_cast<std::int32_t>(std::max(0L, size_ - (to.mark() - from.mark())));
}

gxUISketch gxUISketch::subSketch(gxUISketchMark from, gxUISketchMark to) const
{
  long const first = within(from);
  long const last = within(to);
  if (first >= last)
    return gxUISketch();
  return gxUISketch(bytes_ + first, last - first);
}

gxUISketch &gxUISketch::operator+=(gxUISketch const &s)
{
  long const n = s.size_;  // s may be this sketch, whose size and bytes move with the growth
  growBy(n);
  unsigned char *const at = append(n);
  if (n > 0)
    std::memcpy(at, s.bytes_, static_cast<std::size_t>(n));
  return *this;
}

gxUISketch operator+(gxUISketch const &a, gxUISketch const &b)
{
  gxUISketch sum;
  sum.growBy(long(a.size_) + b.size_);
  sum += a;
  sum += b;
  return sum;
}

void gxUISketch::erase()
{
  size_ = 0;
  props_ = gxGraphicProps();
}

void gxUISketch::eraseAndDelete()
{
  std::free(std::exchange(bytes_, nullptr));
  capacity_ = 0;
  erase();
}

// Declared by the properties, on a lower floor: how they enter a sketch.
long gxGraphicProps::opcode(gxUISketch *sketch, gxGraphicProps const &value) const
{
  if (!sketch)
    return 0;
  encode(sketch->append(codedSize), value);
  return codedSize;
}
