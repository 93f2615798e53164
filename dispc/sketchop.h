#pragma once

#include "dispc/color.h"
#include "dispc/dispprop.h"
#include "dispc/tabletbase.h"
#include "dispc/uisketch.h"
#include "dispc/uisketch_codes.h"
#include "foundation/export.h"
#include "foundation/handle.h"
#include "foundation/persistent.h"

#include <cstdint>
#include <cstring>
#include <ostream>
#include <string>

class gxArchive;
class gxUITablet;

/// @file
/// Records of a sketch as objects. A record is read by a gx_UISketchOpHeader and, behind it, by the op object of its
/// code:
///
/// @code
/// gx_UISketchOpHeader header;
/// for (long at = 0; at < sketch.size();) {
///   gx_UISketchOpData *made = nullptr;
///   at += gfParseUISketch(sketch, at, header, &made);
///   gxPtrHandle<gx_UISketchOpData> const op(made);
///   std::cout << header << ": " << *op << '\n';
/// }
/// @endcode
///
/// Both kinds of object can be used again for the next record: what they held is gone then. A stream comes from this
/// process and is trusted, but for codes and properties; parseWithin() and gfParseUISketch() look at its end, too.

/// What stands before the payloads: the properties in force, and the head of the present record.
class GX_API gx_UISketchOpHeader : public virtual gxPersistent, public virtual gxRepBase
{
 public:
  gx_UISketchOpHeader() = default;
  gx_UISketchOpHeader(gx_UISketchOpHeader const &) = default;
  gx_UISketchOpHeader &operator=(gx_UISketchOpHeader const &other);
  ~gx_UISketchOpHeader() override;

  /// As if nothing had been read.
  void reInit() override;

  /// Reads the properties, if they come first, and the head; without properties those of the records before stay in
  /// force, and so does hasProps(). The pen colour becomes the colour of the head. Returns the bytes used.
  /// Throws gxUIError::InvalidUISketch for properties of another version than 0 and for two in a row,
  /// gxGraphicProps::BadParams for a negative pen width; the object is unchanged then.
  virtual long parseByteStream(unsigned char const *bytes)
  {
    mutating();
    bool const prefixed = *bytes == static_cast<unsigned char>(gx_SketchCode::props);
    if (prefixed)
      readProps(bytes);
    readHead(prefixed ? bytes + gf_sketchPrefixSize : bytes);
    return prefixed ? gf_sketchPrefixSize + gf_sketchHeadSize : gf_sketchHeadSize;
  }
  /// Appends the properties, if this header has read some and the sketch does not have them in force, and the head.
  virtual void populateSketch(gxUISketch &sketch) const;

  /// True if properties were read into this header, with this record or an earlier one.
  bool hasProps() const { return hasProps_; }
  /// The version of their coding: 0.
  signed char propsVersion() const { return propsVersion_; }
  /// The properties in force, with the colour of the head.
  gxGraphicProps &props()
  {
    mutating();
    return props_;
  }
  gxGraphicProps const &props() const { return props_; }
  gx_UITabletBase::Layers layer() const { return static_cast<gx_UITabletBase::Layers>(layer_); }
  void layer(gx_UITabletBase::Layers layer)
  {
    mutating();
    layer_ = layer;
  }
  gxColor const &color() const { return color_; }
  /// -1 in the beginning.
  long opcode() const { return opcode_; }

 private:
  void readProps(unsigned char const *prefix);
  void readHead(unsigned char const *head)
  {
    opcode_ = head[0];
    layer_ = head[1];
    std::memcpy(&color_, head + 2, sizeof color_);
    props_.penColor_ = color_;
  }

  bool hasProps_ = false;
  signed char propsVersion_ = 0;
  gxGraphicProps props_;
  std::int32_t layer_ = gx_UITabletBase::both;
  gxColor color_ = gxColor::cyanColor();
  std::int32_t opcode_ = -1;

  GX_PERSISTENT(gx_UISketchOpHeader);
};

/// "circle, overlay, stock 249 #ff0000", and the properties if the header has read some.
GX_API std::ostream &operator<<(std::ostream &os, gx_UISketchOpHeader const &header);

/// Base of the op objects: the payload of a record, which it can read, write, play and pass through an archive.
///
/// How an op keeps its payload differs: most copy the values; blocks of whole objects and texts are looked at where
/// they stand in the stream (a *view*), and such an op is good until the stream changes or ends. What came out of an
/// archive is owned by the op.
class GX_API gx_UISketchOpData : public virtual gxPersistent, public virtual gxRepBase
{
 public:
  gx_UISketchOpData() = default;
  gx_UISketchOpData(gx_UISketchOpData const &) = default;
  gx_UISketchOpData &operator=(gx_UISketchOpData const &other);
  ~gx_UISketchOpData() override;

  /// Reads a payload. Returns its bytes. What a shape refuses throws the gxShapesError of its class.
  virtual long parseByteStream(unsigned char const *bytes) = 0;
  /// The same for the payload of a stream of the first version, which a stored sketch may hold.
  virtual long parseVersion0ByteStream(unsigned char const *bytes);
  /// Appends the payload.
  virtual void populateSketch(gxUISketch &sketch) const = 0;
  /// Plays: calls the operation of the tablet that made the record, on the layer of the header.
  virtual void draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const = 0;

  /// As parseByteStream(), or parseVersion0ByteStream(), of a payload of at most @p left bytes, by whom it may have
  /// been written: throws gxUIError::InvalidUISketch if it runs past them, or has a count that cannot be.
  virtual long parseWithin(unsigned char const *bytes, long left, bool version0 = false) = 0;
  /// The bytes that populateSketch() appends.
  virtual long size() const = 0;
  /// The fields by name, as "center (1, 2), radius 3".
  virtual void dump(std::ostream &os) const = 0;

  GX_PERSISTENT_ABSTRACT(gx_UISketchOpData);
};

inline std::ostream &operator<<(std::ostream &os, gx_UISketchOpData const &op)
{
  op.dump(os);
  return os;
}

/// A new op object for a code, which is the caller's. Throws gxUIError::InvalidUISketch for codes that no payload has.
GX_API gx_UISketchOpData *gfCreateUISketchOpData(long opcode);

/// Reads the record at @p offset, the end of another record or 0. Returns its bytes: properties, head and payload.
/// @param data receives a new op object, which is the caller's; null if only the length is wanted
/// Throws as the reading of header and payload does, and gxUIError::InvalidUISketch if the record runs past the end.
GX_API long gfParseUISketch(gxUISketch &sketch, long offset, gx_UISketchOpHeader &header, gx_UISketchOpData **data);

/// Writes a line for each record: its number, its first byte, head and payload. Throws as gfParseUISketch().
GX_API void gfDumpUISketch(std::ostream &os, gxUISketch &sketch);

/// A stretch of a stream, looked at where it stands or, out of an archive, owned.
class GX_API gx_StreamView
{
 public:
  gx_StreamView() = default;
  /// Owned bytes are copied, a view stays one.
  gx_StreamView(gx_StreamView const &other);
  gx_StreamView &operator=(gx_StreamView const &other);
  ~gx_StreamView() { release(); }

  /// Null in the beginning.
  unsigned char const *bytes() const { return bytes_; }
  bool owns() const { return owns_; }
  /// Looks at bytes of somebody else's.
  void look(unsigned char const *bytes)
  {
    release();
    bytes_ = bytes;
  }
  /// Takes @p n bytes, which the caller fills.
  unsigned char *own(std::size_t n);

 private:
  void release()
  {
    if (owns_)
      delete[] bytes_;
    owns_ = false;
  }

  bool owns_ = false;
  std::size_t size_ = 0;  ///< of owned bytes
  unsigned char const *bytes_ = nullptr;
};

/// Ends the body of an op class. GX_SKETCH_OP_IMPL in its source (dispc/detail/sketchop_impl.h) defines all but two of
/// the declared members: `draw`, and `describe`, which names the fields of the payload in their order, once for all
/// that is done with them.
#define GX_SKETCH_OP(Class)                                                                \
 public:                                                                                   \
  long parseByteStream(unsigned char const *bytes) override;                               \
  void populateSketch(gxUISketch &sketch) const override;                                  \
  void draw(gxUITablet &tablet, gx_UISketchOpHeader &header) const override;               \
  long parseWithin(unsigned char const *bytes, long left, bool version0 = false) override; \
  long size() const override;                                                              \
  void dump(std::ostream &os) const override;                                              \
                                                                                           \
 private:                                                                                  \
  template <class Io, class Op>                                                            \
  static void describe(Io &io, Op &op);                                                    \
  GX_PERSISTENT(Class)
