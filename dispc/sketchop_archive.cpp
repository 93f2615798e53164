#include "dispc/detail/sketchop_table.h"
#include "dispc/flagstack.h"
#include "dispc/sketchop.h"
#include "dispc/sketchop_curves.h"
#include "dispc/uierror.h"
#include "dispc/uisketch.h"
#include "foundation/archive.h"

#include <memory>
#include <string>
#include <typeinfo>
#include <utility>
#include <vector>

// The stored form of a sketch: a version, the number of records, and for each record its header and its op as objects.
// The first version held a stream as it was then, which the ops still read.

namespace
{
constexpr char const *module = "dispc/uisketch";
constexpr signed char streamVersion = 0;
constexpr signed char objectVersion = 1;

/// The fewest bytes that a record takes in an archive: pointer, version and fields of the header; pointer and version
/// of the op.
constexpr std::size_t leastRecord = 18;

/// Sketches may lie in sketches as deep as a tablet has flags for: one for each that it plays, the outermost one too.
constexpr int deepest = gxFlagStack::maxDepth - 2;

/// The number of records. Throws gxUIError::InvalidUISketch if they do not end where the sketch does.
long countRecords(gxUISketch const &sketch)
{
  long count = 0;
  gx_UISketchOpHeader header;
  gx_SketchOpTable ops;
  unsigned char const *at = sketch.bytes();
  unsigned char const *const end = at + sketch.size();
  for (; at < end; ++count) {
    if (!gf_holdsHead(at, end - at))
      throw gxUIError::InvalidUISketch();
    at += header.parseByteStream(at);
    at += ops[header.opcode()].parseWithin(at, end - at);
  }
  return count;
}

/// One header and one op for each code serve all records: each is stored once, and no record refers to another.
void store(gxArchive &archive, gxUISketch &sketch)
{
  signed char version = objectVersion;
  long count = countRecords(sketch);
  archive || version || count;
  gx_UISketchOpHeader header;
  gx_SketchOpTable ops;
  unsigned char const *at = sketch.bytes();
  for (long i = 0; i < count; ++i) {
    header.reInit();
    at += header.parseByteStream(at);
    gf_passOnce(archive, header);
    gx_UISketchOpData &op = ops[header.opcode()];
    at += op.parseByteStream(at);
    gf_passOnce(archive, op);
  }
}

/// Loads a pointer that must not be null.
template <class T>
gxPtrHandle<T> loadObject(gxArchive &archive)
{
  gxPtrHandle<T> object;
  archive || object;
  if (object.isNull())
    throw gxBadPointer();
  return object;
}

/// The op for a record that is loaded.
gx_UISketchOpData &opDue(gxArchive &archive, gx_SketchOpTable &ops, long code)
{
  try {
    return ops[code];
  } catch (gxUIError::InvalidUISketch const &) {
    archive.fail("a record of code " + std::to_string(code));
  }
}

void loadOp(gxArchive &archive, gx_UISketchOpData &due, gxUISketch &sketch)
{
  if (gf_passOnce(archive, due)) {
    due.populateSketch(sketch);
    return;
  }
  auto const op = loadObject<gx_UISketchOpData>(archive);
  gx_UISketchOpData const &loaded = *op, &asked = due;
  if (typeid(loaded) != typeid(asked))
    archive.fail("an op of another code than that of its record");
  op->populateSketch(sketch);
}

void loadObjects(gxArchive &archive, gxUISketch &sketch)
{
  long count = 0;
  archive || count;
  if (count < 1)
    return;
  archive.requireBytes(static_cast<std::size_t>(count) * leastRecord, "the records of a sketch");
  gx_UISketchOpHeader shared;
  gx_SketchOpTable ops;
  for (long i = 0; i < count; ++i) {
    gxPtrHandle<gx_UISketchOpHeader> own;
    if (!gf_passOnce(archive, shared))
      own = loadObject<gx_UISketchOpHeader>(archive);
    gx_UISketchOpHeader const &header = own.isNull() ? shared : *own;
    gx_UISketchOpData &op = opDue(archive, ops, header.opcode());
    header.populateSketch(sketch);
    loadOp(archive, op, sketch);
  }
}

/// The bytes of the head, and of the properties before it, of a record that has @p left bytes at most.
long parseHead(gxArchive &archive, gx_UISketchOpHeader &header, unsigned char const *at, long left)
{
  if (!gf_holdsHead(at, left))
    archive.fail("a sketch that ends inside a record");
  return header.parseByteStream(at);
}

/// Throws gxArchive::Errors whatever is wrong with the payload.
long parsePayload(gxArchive &archive, gx_UISketchOpData &op, unsigned char const *at, long left)
{
  try {
    return op.parseWithin(at, left, true);
  } catch (gxException const &e) {
    archive.fail(std::string("a sketch with a payload that cannot be: ") + e.what());
  }
}

/// A sketch inside, whose stream is of the first version as well.
void appendNested(gxUISketch &sketch, gxPoint const &offset, gxUISketch const &nested)
{
  gx_StreamWriter(sketch.append(20)).vector(offset).word(nested.size());
  sketch += nested;
}

/// Appends the records of a stream of the first version as they are now. @p depth: sketches around this one.
void convert(gxArchive &archive, unsigned char const *stream, long length, gxUISketch &sketch, int depth)
{
  if (length > 0 && depth > deepest)
    archive.fail("sketches inside sketches, deeper than a tablet can play them");
  gx_SketchOpTable ops;
  for (long at = 0; at < length;) {
    gx_UISketchOpHeader header;
    at += parseHead(archive, header, stream + at, length - at);
    gx_UISketchOpData &op = ops[header.opcode()];
    at += parsePayload(archive, op, stream + at, length - at);
    header.populateSketch(sketch);
    if (auto const *const inner = dynamic_cast<gx_UISketchOpSketch const *>(&op)) {
      gxUISketch converted;
      convert(archive, inner->sketch().bytes(), inner->sketch().size(), converted, depth + 1);
      appendNested(sketch, inner->offset(), converted);
    } else {
      op.populateSketch(sketch);
    }
  }
}

void loadStream(gxArchive &archive, gxUISketch &sketch)
{
  long length = 0;
  archive || length;
  if (length < 1)
    return;
  archive.requireBytes(static_cast<std::size_t>(length), "the stream of a sketch");
  std::vector<unsigned char> stream(static_cast<std::size_t>(length));
  archive.raw(reinterpret_cast<char *>(stream.data()), length);
  convert(archive, stream.data(), length, sketch, 0);
}
}  // namespace

gxArchive &operator||(gxArchive &archive, gxUISketch &sketch)
{
  if (archive.isStoring()) {
    store(archive, sketch);
    return archive;
  }
  // First into a sketch apart, which knows what properties are in force at the end of this one.
  gxUISketch loaded;
  loaded.props(sketch.props());
  signed char version = 0;
  archive || version;
  if (version == objectVersion)
    loadObjects(archive, loaded);
  else if (version == streamVersion)
    loadStream(archive, loaded);
  else
    throw gxArchive::UnknownVersion(module, __LINE__);
  if (sketch.isNull() && sketch.capacity() < loaded.capacity()) {
    std::swap(sketch.bytes_, loaded.bytes_);
    std::swap(sketch.size_, loaded.size_);
    std::swap(sketch.capacity_, loaded.capacity_);
  } else {
    sketch += loaded;
  }
  sketch.props(loaded.props());
  return archive;
}
