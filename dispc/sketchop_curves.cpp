#include "dispc/sketchop_curves.h"

#include "dispc/detail/sketchop_impl.h"
#include "dispc/uierror.h"

#include <utility>

namespace
{
constexpr std::size_t pointBytes = 16;
constexpr std::size_t curveBytes = 96;

/// Each element of a number that has passed already.
template <class Io, class Elements>
void describeEach(Io &io, Elements &elements)
{
  for (auto &element : elements)
    io("", element);
}

/// A count that an archive holds beside the value that has it.
template <class Io>
void passedCount(Io &io, long passed, long held)
{
  io.require(passed == held, "a count that is not that of the points behind it");
}
}  // namespace

GX_SKETCH_OP_OF_FIELD(gx_UISketchOpBezierCurve, curve_)

template <class Io, class Op>
void gx_UISketchOpCubicSpline::describe(Io &io, Op &op)
{
  auto const n = static_cast<std::size_t>(io.count("curves", static_cast<long>(op.curves_.size()), curveBytes));
  if constexpr (Io::reads || Io::archives)
    op.curves_.resize(n);
  if constexpr (Io::isText)
    io.list(op.curves_);
  else
    describeEach(io, op.curves_);
}
GX_SKETCH_OP_IMPL(gx_UISketchOpCubicSpline)

template <class Io, class Op>
void gx_UISketchOpPolygon::describe(Io &io, Op &op)
{
  gxPolygon::PolyFillMode mode = op.polygon_.fillMode();
  io("fill mode", mode);
  if constexpr (Io::reads)  // what comes from outside has to be what archives take
    io.require(!io.version0() || (mode >= gxPolygon::noFill && mode <= gxPolygon::winding));
  long const n = io.count("points", op.polygon_.size(), pointBytes);
  if constexpr (Io::archives) {
    io("", op.polygon_);
    passedCount(io, n, op.polygon_.size());
    io.require(mode == op.polygon_.fillMode(), "a fill mode that is not that of the polygon behind it");
  } else if constexpr (Io::reads) {
    if (n != op.polygon_.size())
      op.polygon_ = gxPolygon(std::vector<gxVector<2>>(static_cast<std::size_t>(n)));
    for (long i = 0; i < n; ++i)
      io("", op.polygon_[i]);
  } else {
    describeEach(io, op.polygon_.vertices());
  }
  if constexpr (Io::reads || Io::archives)
    op.polygon_.fillMode(mode);
}
GX_SKETCH_OP_IMPL(gx_UISketchOpPolygon)

template <class Io, class Op>
void gx_UISketchOpPolyline::describe(Io &io, Op &op)
{
  long const n = io.count("points", op.polyline_.numVertices(), pointBytes);
  bool closed = op.polyline_.isClosed();
  if constexpr (Io::archives) {
    io("", op.polyline_);
    passedCount(io, n, op.polyline_.numVertices());
    io("closed", closed);
    op.polyline_.isClosed(closed);
  } else if constexpr (Io::reads) {
    std::vector<gxVector<2>> vertices(static_cast<std::size_t>(n));
    describeEach(io, vertices);
    io("closed", closed);
    op.polyline_ = gxPolyline(std::move(vertices), closed);
  } else {
    describeEach(io, op.polyline_.vertices());
    io("closed", closed);
  }
}
GX_SKETCH_OP_IMPL(gx_UISketchOpPolyline)

template <class Io>
void gf_describe(Io &io, gx_Field<Io, gxGenShape::tagShapeID> &id)
{
  io("id", id.data1);
  io("", id.data2);
  io("", id.data3);
  for (auto &byte : id.data4)
    io("", byte);
}

template <class Io, class Op>
void gx_UISketchOpGenShape::describe(Io &io, Op &op)
{
  if (!io.version0())
    io("color", op.color_);
  else if constexpr (Io::reads)
    op.color_ = gxColor();
  io("", op.id_);
  long const n = io.count("bytes", static_cast<long>(op.data_.size()), 1);
  if constexpr (Io::reads) {
    unsigned char const *const from = io.take(n);
    op.data_.assign(from, from + n);
  } else if constexpr (Io::archives) {
    op.data_.resize(static_cast<std::size_t>(n));
    io.archive().raw(reinterpret_cast<char *>(op.data_.data()), n);
  } else if constexpr (!Io::isText) {
    io.bytes(op.data_.data(), n);
  }
}
GX_SKETCH_OP_IMPL(gx_UISketchOpGenShape)

template <class Io, class Op>
void gx_UISketchOpSketch::describe(Io &io, Op &op)
{
  if constexpr (Io::archives) {
    throw gxUIError::NotImplemented();
  } else {
    io("offset", op.offset_);
    long const n = io.count("bytes", op.sketch_.size(), 1);
    if constexpr (Io::reads) {
      op.sketch_.erase();
      op.sketch_.append(io.take(n), n);
    } else if constexpr (!Io::isText) {
      io.bytes(op.sketch_.bytes(), n);
    }
  }
}
GX_SKETCH_OP_IMPL(gx_UISketchOpSketch)
