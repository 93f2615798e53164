#include "dispc/sketchop.h"
#include "dispc/uierror.h"
#include "dispc/uisketch.h"
#include "foundation/archive.h"

#include <array>
#include <memory>
#include <string>
#include <typeinfo>
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

/// An op for each code, made when it is first asked for and used again for each of its records.
class Ops
{
 public:
  /// Throws gxUIError::InvalidUISketch for a code that no payload has.
  gx_UISketchOpData &operator[](long code)
  {
    if (code < 0 || code >= static_cast<long>(ops_.size()))
      throw gxUIError::InvalidUISketch();
    gxPtrHandle<gx_UISketchOpData> &op = ops_[static_cast<std::size_t>(code)];
    if (op.isNull())
      op = gfCreateUISketchOpData(code);
    return *op;
  }

 private:
  std::array<gxPtrHandle<gx_UISketchOpData>, gf_sketchCodes.size()> ops_;
};

/// The number of records.
long countRecords(gxUISketch &sketch)
{
  long count = 0;
  for (long at = 0; at < sketch.size(); ++count) {
    gx_UISketchOpHeader header;
    at += gfParseUISketch(sketch, at, header, nullptr);
  }
  return count;
}

void store(gxArchive &archive, gxUISketch &sketch)
{
  signed char version = objectVersion;
  long count = countRecords(sketch);
  archive || version || count;
  Ops ops;
  unsigned char const *at = sketch.bytes();
  for (long i = 0; i < count; ++i) {
    gxPtrHandle<gx_UISketchOpHeader> header(new gx_UISketchOpHeader);
    at += header->parseByteStream(at);
    archive || header;
    gxPtrHandle<gx_UISketchOpData> op(gfCreateUISketchOpData(header->opcode()));
    at += op->parseByteStream(at);
    archive || op;
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

/// What the op of a record has to be like.
gx_UISketchOpData const &opDue(gxArchive &archive, Ops &ops, long code)
{
  try {
    return ops[code];
  } catch (gxUIError::InvalidUISketch const &) {
    archive.fail("a record of code " + std::to_string(code));
  }
}

void loadObjects(gxArchive &archive, gxUISketch &sketch)
{
  long count = 0;
  archive || count;
  if (count < 1)
    return;
  archive.requireBytes(static_cast<std::size_t>(count) * leastRecord, "the records of a sketch");
  Ops ops;
  for (long i = 0; i < count; ++i) {
    auto const header = loadObject<gx_UISketchOpHeader>(archive);
    gx_UISketchOpData const &due = opDue(archive, ops, header->opcode());
    auto const op = loadObject<gx_UISketchOpData>(archive);
    gx_UISketchOpData const &loaded = *op;
    if (typeid(loaded) != typeid(due))
      archive.fail(std::string("an op of another code than ") + gf_sketchCodeInfo(header->opcode())->name);
    header->populateSketch(sketch);
    op->populateSketch(sketch);
  }
}

/// The bytes of the head, and of the properties before it, of a record that has @p left bytes at most.
long parseHead(gxArchive &archive, gx_UISketchOpHeader &header, unsigned char const *at, long left)
{
  bool const prefixed = *at == static_cast<unsigned char>(gx_SketchCode::props);
  if (left < gf_sketchHeadSize + (prefixed ? gf_sketchPrefixSize : 0))
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

void loadStream(gxArchive &archive, gxUISketch &sketch)
{
  long length = 0;
  archive || length;
  if (length < 1)
    return;
  archive.requireBytes(static_cast<std::size_t>(length), "the stream of a sketch");
  std::vector<unsigned char> stream(static_cast<std::size_t>(length));
  archive.raw(reinterpret_cast<char *>(stream.data()), length);
  Ops ops;
  for (long at = 0; at < length;) {
    gx_UISketchOpHeader header;
    at += parseHead(archive, header, &stream[static_cast<std::size_t>(at)], length - at);
    gx_UISketchOpData &op = ops[header.opcode()];
    at += parsePayload(archive, op, stream.data() + at, length - at);
    header.populateSketch(sketch);
    op.populateSketch(sketch);
  }
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
  sketch += loaded;
  sketch.props(loaded.props());
  return archive;
}
