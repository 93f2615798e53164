#pragma once

#include "dispc/color.h"
#include "dispc/dispprop.h"
#include "dispc/uisketch_codes.h"
#include "dispc/uisketch_writer.h"
#include "foundation/archive.h"
#include "foundation/export.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

/// A position in a sketch: the end of one record and the start of the next. Good for the sketch that gave it, as long
/// as nothing before it changes.
class gxUISketchMark
{
 public:
  gxUISketchMark() = default;
  friend bool operator==(gxUISketchMark a, gxUISketchMark b) { return a.mark_ == b.mark_; }

  friend GX_API gxArchive &operator||(gxArchive &archive, gxUISketchMark &mark);

 private:
  friend class gxUISketch;
  explicit gxUISketchMark(long mark) : mark_(gf_narrow(mark)) {}
  long mark() const { return mark_; }

  std::int32_t mark_ = 0;
};

/// A display list: the drawing operations of a tablet in client coordinates, as bytes, one record behind the other.
///
/// A record is the properties if they have changed (code 40 and 21 bytes), a head of 8 bytes (code, layer, colour) and
/// the payload of its code; gf_sketchCodes tells them all. The bytes are a working form inside one process.
///
/// @code
/// tablet.recordOn().push(true);
/// gxUISketchMark const before = tablet.sketch().mark();
/// tablet.draw(gxCircle(gxPoint(50, 50), 20), gxColor::redColor(), gxUITablet::overlay);
/// gxUISketch const circle = tablet.sketch().subSketch(before, tablet.sketch().mark());
/// @endcode
///
/// Marks are positions between records; nothing checks that, but no mark makes an operation leave the bytes. A sketch
/// holds less than 2^31 bytes. Growing throws std::bad_alloc "bad allocation" and leaves the sketch as it was.
class GX_API gxUISketch
{
 public:
  gxUISketch() = default;
  /// The bytes and the room, but not the properties last written: the next record of the copy writes its own.
  gxUISketch(gxUISketch const &);
  ~gxUISketch();
  /// The bytes. Room never shrinks; the properties last written stay those of this sketch.
  gxUISketch &operator=(gxUISketch const &);

  /// Room for @p n bytes at the end, which the caller fills. A negative @p n throws as memory that runs out does.
  unsigned char *append(long n)
  {
    if (n < 0 || n > long(capacity_) - size_)
      growBy(n);
    unsigned char *const at = bytes_ + size_;
    size_ += static_cast<std::int32_t>(n);
    return at;
  }
  void append(void const *data, long n);

  /// Appends the head of a record.
  void opcode(signed char code, signed char layer, gxColor const &color);
  /// Appends the properties, with @p code (40) before them, if they are not the ones last written.
  void opcode(signed char code, gxGraphicProps const &props);
  /// Appends what stands before a payload, and room for it: the properties if they have changed, the head with @p
  /// color, and @p n bytes that the caller fills. One growth for all.
  gx_StreamWriter record(gx_SketchCode code, long layer, gxGraphicProps const &props, gxColor const &color, long n)
  {
    // By far the most records find their properties in force and room enough.
    if (props != props_ || n < 0 || n > long(capacity_) - size_ - gf_sketchHeadSize)
      prepareRecord(props, n);
    unsigned char *const at = bytes_ + size_;
    size_ += static_cast<std::int32_t>(gf_sketchHeadSize + n);
    // The head has a byte for the layer: one that does not fit stays out of range, rather than become a good one.
    return writeHead(at, static_cast<signed char>(code), static_cast<signed char>(std::clamp(layer, -128L, 127L)),
                     color);
  }

  /// The end.
  gxUISketchMark mark() const { return gxUISketchMark(size_); }
  /// Puts the records of @p s (which may be this sketch) at a mark.
  gxUISketch &insert(gxUISketch const &s, gxUISketchMark at);
  /// Takes out what lies between two marks; nothing unless @p from is before @p to. With @p to behind the end, as much
  /// is cut off the end as lies between the marks.
  void remove(gxUISketchMark from, gxUISketchMark to);
  /// The records between two marks; empty unless @p from is before @p to.
  gxUISketch subSketch(gxUISketchMark from, gxUISketchMark to) const;
  gxUISketch &operator+=(gxUISketch const &s);
  friend GX_API gxUISketch operator+(gxUISketch const &a, gxUISketch const &b);

  /// Empties the sketch; the room stays.
  void erase();
  /// Empties the sketch and gives the memory back.
  void eraseAndDelete();
  bool isNull() const { return size_ == 0; }

  /// The stream as it stands; null while nothing was ever appended.
  unsigned char const *bytes() const { return bytes_; }
  /// Bytes in use.
  long size() const { return size_; }
  /// Bytes allocated.
  long capacity() const { return capacity_; }

  /// Stores the records as objects, or loads such records, also those of a stream of the first version, and appends
  /// them; a load that fails leaves the sketch as it was. Sketches with sketches inside cannot be stored: that throws
  /// gxUIError::NotImplemented after the records before. Loading throws gxArchive::Errors, gxArchive::UnknownVersion,
  /// gxBadPointer for a null pointer, and for a bad stream gxUIError::InvalidUISketch and gxGraphicProps::BadParams.
  friend GX_API gxArchive &operator||(gxArchive &archive, gxUISketch &sketch);

 private:
  gxUISketch(unsigned char const *bytes, long n);
  void growBy(long n);
  void prepareRecord(gxGraphicProps const &props, long n);
  static gx_StreamWriter writeHead(unsigned char *at, signed char code, signed char layer, gxColor const &color)
  {
    std::uint32_t first;
    std::uint16_t last;
    std::memcpy(&first, &color, sizeof first);
    std::memcpy(&last, reinterpret_cast<unsigned char const *>(&color) + sizeof first, sizeof last);
    if constexpr (std::endian::native == std::endian::little) {  // as one store
      auto const head = static_cast<unsigned char>(code) | std::uint64_t(static_cast<unsigned char>(layer)) << 8 |
                        std::uint64_t(first) << 16 | std::uint64_t(last) << 48;
      return gx_StreamWriter(at).bytes(&head, sizeof head);
    }
    return gx_StreamWriter(at)
        .byte(static_cast<unsigned char>(code))
        .byte(static_cast<unsigned char>(layer))
        .bytes(&color, sizeof color);
  }
  long within(gxUISketchMark m) const { return std::clamp(m.mark(), 0L, long(size_)); }
  gxGraphicProps const &props() const { return props_; }
  void props(gxGraphicProps const &p) { props_ = p; }

  unsigned char *bytes_ = nullptr;
  std::int32_t size_ = 0;
  std::int32_t capacity_ = 0;
  gxGraphicProps props_;  ///< the properties last written to this stream
};
