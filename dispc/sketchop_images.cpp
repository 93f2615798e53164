#include "dispc/sketchop_images.h"

#include "dispc/detail/sketchop_impl.h"

#include <cstring>

// ---------------------------------------------------------------- pels

/// The order of archives is another one.
template <class Io>
void gx_UISketchOpPelBuf8::passArchive(Io &io)
{
  io("position", position_);
  io("pass", pass_);
  io("flag", flag_);
  io("pass pel", passPel_);
  io("", imageFromClient_);
  if (gf_passVersion(io.archive(), 0) != 0)
    throw gxArchive::UnknownVersion(nullptr, 0);
  io("width", width_);
  io("height", height_);
  io("offset", offset_);
  io("", buffer_);
  io.require(buffer_.width() == width_ && buffer_.height() == height_,
             "a size that is not that of the image behind it");
  if (io.isLoading()) {
    buffer_.offset(offset_);
    buffer_.imageFromClientXform(imageFromClient_);
  }
}

template <class Io, class Op>
void gx_UISketchOpPelBuf8::describe(Io &io, Op &op)
{
  if constexpr (Io::archives) {
    op.passArchive(io);
  } else {
    io("position", op.position_);
    io("pass", op.pass_);
    io("pass pel", op.passPel_);
    io("image from client", op.imageFromClient_);
    io("offset", op.offset_);
    io("width", op.width_);
    io("height", op.height_);
    io("flag", op.flag_);
    if constexpr (Io::reads) {
      io.require(op.width_ >= 0 && op.height_ >= 0);
      io.require(!io.version0() || op.width_ > 0 || op.height_ == 0);  // else any number of rows, out of no bytes
      auto *const pels = const_cast<unsigned char *>(io.take(long(op.width_) * op.height_));
      gxPtrHandle<gxPelRoot<unsigned char>> const root(new gxPelRoot<unsigned char>(op.width_, op.height_, pels, 1));
      op.buffer_ = gxPelBuffer<unsigned char>(root);
      op.buffer_.imageFromClientXform(op.imageFromClient_);
      op.buffer_.offset(op.offset_);
    } else if constexpr (!Io::isText) {
      unsigned char *to = io.room(long(op.width_) * op.height_);
      gxPelRect const window = op.buffer_.window();
      for (long y = 0; to && y < op.height_ && op.width_ > 0; ++y, to += op.width_)
        std::memcpy(to, op.buffer_.pointToPel(window.x(), window.y() + y), static_cast<std::size_t>(op.width_));
    }
  }
}
GX_SKETCH_OP_IMPL(gx_UISketchOpPelBuf8)

// ---------------------------------------------------------------- runs

namespace
{
constexpr long runBytes = sizeof(gxRLEBufferRun);

/// The bytes of a row, its closing pair included.
long rowBytes(gxRLEBufferRun const *row)
{
  gxRLEBufferRun const *run = row;
  while (run->length != 0)
    ++run;
  return (run - row + 1) * runBytes;
}

/// The row that begins at the reader, as an address, and the reader goes behind it.
template <class Io>
gxRLEBufferRun *takeRow(Io &io)
{
  unsigned char const *const row = io.at();
  while (io.take(runBytes)[1] != 0) {
  }
  return reinterpret_cast<gxRLEBufferRun *>(const_cast<unsigned char *>(row));
}
}  // namespace

template <class Io, class Op>
void gx_UISketchOpRleBuf::describe(Io &io, Op &op)
{
  io("position", op.position_);
  io("pass", op.pass_);
  io("pass pel", op.passPel_);
  io("unscaled", op.unscaled_);
  long const mapSize = io.count("colour map", static_cast<long>(op.map_.size()), 1);
  if constexpr (Io::reads || Io::archives)
    op.map_.resize(static_cast<std::size_t>(mapSize));
  if constexpr (!Io::isText)
    for (auto &entry : op.map_)
      io("", entry);
  io("width", op.width_);
  if constexpr (Io::archives) {
    io("height", op.height_);
    io("", op.buffer_);
    io.require(op.buffer_.width() == op.width_ && op.buffer_.height() == op.height_,
               "a size that is not that of the image behind it");
  } else {
    long const rows = io.count("height", op.height_, runBytes);
    if constexpr (Io::reads) {
      io.require(op.width_ >= 0);
      op.height_ = static_cast<std::int32_t>(rows);
      op.rows_.clear();
      for (long y = 0; y < rows; ++y)
        op.rows_.push_back(takeRow(io));
      op.buffer_.becomeOwner(op.width_, op.rows_, {}, false);
    } else if constexpr (!Io::isText) {
      for (long y = 0; y < rows; ++y) {
        gxRLEBufferRun const *const row = op.buffer_.pointToRow(op.buffer_.offset().y() + y);
        io.bytes(reinterpret_cast<unsigned char const *>(row), rowBytes(row));
      }
    }
  }
}
GX_SKETCH_OP_IMPL(gx_UISketchOpRleBuf)
