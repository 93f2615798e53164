#pragma once

#include "dispc/detail/sketchop_io.h"
#include "dispc/sketchop.h"

/// Defines what GX_SKETCH_OP declares, all but `draw`, from the `describe` of the class, which stands before it.
#define GX_SKETCH_OP_IMPL(Class)                                                \
  long Class::parseByteStream(unsigned char const *bytes)                       \
  {                                                                             \
    mutating();                                                                 \
    gx_PayloadReader<false> io(bytes);                                          \
    describe(io, *this);                                                        \
    return io.at() - bytes;                                                     \
  }                                                                             \
  long Class::parseWithin(unsigned char const *bytes, long left, bool version0) \
  {                                                                             \
    mutating();                                                                 \
    gx_PayloadReader<true> io(bytes, left, version0);                           \
    describe(io, *this);                                                        \
    return io.at() - bytes;                                                     \
  }                                                                             \
  long Class::size() const                                                      \
  {                                                                             \
    gx_PayloadCounter io;                                                       \
    describe(io, *this);                                                        \
    return io.size();                                                           \
  }                                                                             \
  void Class::populateSketch(gxUISketch &sketch) const                          \
  {                                                                             \
    gx_PayloadWriter io(sketch.append(size()));                                 \
    describe(io, *this);                                                        \
  }                                                                             \
  void Class::dump(std::ostream &os) const                                      \
  {                                                                             \
    gx_PayloadDumper io(os);                                                    \
    describe(io, *this);                                                        \
  }                                                                             \
  GX_PERSISTENT_IMPL(Class, #Class, 0)                                          \
  void Class::serialize_(gxArchive &archive, unsigned char version)             \
  {                                                                             \
    if (version != 0)                                                           \
      throw gxArchive::UnknownVersion("dispc/sketchop", __LINE__);              \
    gxPersistent::dispatchSerialize(archive);                                   \
    gx_PayloadArchiver io(archive);                                             \
    describe(io, *this);                                                        \
  }

/// The same for an op whose payload is one field.
#define GX_SKETCH_OP_OF_FIELD(Class, field) \
  template <class Io, class Op>             \
  void Class::describe(Io &io, Op &op)      \
  {                                         \
    io("", op.field);                       \
  }                                         \
  GX_SKETCH_OP_IMPL(Class)
