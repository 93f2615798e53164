#include "conformance/detail/scopeops.h"

#include "conformance/detail/probe.h"
#include "dispc/dispprop.h"
#include "foundation/ellipse.h"
#include "foundation/ellipse2.h"
#include "foundation/ellipsearc.h"
#include "foundation/ellipsearc2.h"
#include "foundation/genrect.h"
#include "foundation/lineseg.h"
#include "foundation/pelbuf.h"
#include "foundation/polygon.h"
#include "foundation/polyline.h"
#include "foundation/rlebuf.h"

#include <numbers>
#include <utility>

namespace
{

using V = gxVector<2>;

template <class Pel>
gxPelBuffer<Pel> plain(long size, Pel value)
{
  gxPelBuffer<Pel> buffer(size, size);
  for (long y = 0; y < size; ++y)
    for (long x = 0; x < size; ++x)
      buffer.put(x, y, value);
  return buffer;
}

gxGraphicProps pen(bool fill)
{
  return {gx_penColor, 3, gxGraphicProps::penSolid, fill};
}

gxPair<long> pel(V const &p)
{
  return gxPair<long>(gxPair<double>(p));
}

class Ops
{
 public:
  std::vector<gx_ScopeOp> take() { return std::move(ops_); }

  void shapes()
  {
    gxGraphicProps const line = pen(false), area = pen(true);
    add("point", gx_ScopeOp::shape, {10, 10, 1, 1}, {7, 7, 7, 7},
        [=](gxUIScope &s, V const &c) { s.draw(gxPoint(c + V(10, 10)), line); });
    add("line segment", gx_ScopeOp::shape, {4, 10, 12, 1}, {0, 7, 20, 7},
        [=](gxUIScope &s, V const &c) { s.draw(gxLineSeg(c + V(3, 10), c + V(16, 10)), line); });
    add("polyline", gx_ScopeOp::shape, {4, 3, 12, 1}, {0, 0, 20, 20}, [=](gxUIScope &s, V const &c) {
      s.draw(gxPolyline({c + V(3, 3), c + V(16, 3), c + V(16, 16)}, false), line);
    });
    for (bool const fill : {false, true}) {
      gxGraphicProps const props = fill ? area : line;
      gxUIRect const side = fill ? gxUIRect(5, 5, 10, 10) : gxUIRect(5, 3, 10, 1);
      gxUIRect const bow = fill ? gxUIRect(8, 8, 4, 4) : gxUIRect(9, 15, 2, 1);
      std::string const kind = fill ? "filled " : "outlined ";
      add(kind + "polygon", gx_ScopeOp::shape, side, {0, 0, 20, 20}, [=](gxUIScope &s, V const &c) {
        s.draw(gxPolygon({c + V(3, 3), c + V(17, 3), c + V(17, 17), c + V(3, 17)}, gxPolygon::winding), props);
      });
      add(kind + "rectangle", gx_ScopeOp::shape, side, {0, 0, 20, 20}, [=](gxUIScope &s, V const &c) {
        s.draw(gxGenRect(c + V(10, 10), V(14, 14), gxRadian(0.0), V(0, 0)), props);
      });
      add(kind + "ellipse", gx_ScopeOp::shape, bow, {0, 2, 20, 17},
          [=](gxUIScope &s, V const &c) { s.draw(gxEllipse(c + V(10, 10), V(7, 5), gxRadian(0.0)), props); });
      add(kind + "ellipse of two hands", gx_ScopeOp::shape, bow, {0, 2, 20, 17},
          [=](gxUIScope &s, V const &c) { s.draw(gxEllipse2(V(7, 5), gxRadian(0.0), c + V(10, 10)), props); });
    }
    gxRadian const from(0.0), quarter(std::numbers::pi / 2);
    add("arc", gx_ScopeOp::shape, {15, 15, 1, 1}, {7, 7, 13, 13}, [=](gxUIScope &s, V const &c) {
      s.draw(gxEllipseArc(gxEllipse(c + V(10, 10), V(7, 7), gxRadian(0.0)), from, quarter), line);
    });
    add("arc of two hands", gx_ScopeOp::shape, {15, 15, 1, 1}, {7, 7, 13, 13}, [=](gxUIScope &s, V const &c) {
      s.draw(gxEllipseArc2(gxEllipse2(V(7, 7), gxRadian(0.0), c + V(10, 10)), from, quarter), line);
    });
    add("drawTo", gx_ScopeOp::penMove, {4, 10, 12, 1}, {0, 7, 20, 7}, [=](gxUIScope &s, V const &c) {
      s.drawStart(gxPoint(c + V(3, 10)));
      s.drawTo(gxPoint(c + V(16, 10)), line);
    });
    add("drawToRelPels", gx_ScopeOp::penMove, {4, 10, 12, 1}, {0, 7, 20, 7}, [=](gxUIScope &s, V const &c) {
      s.drawStart(gxPoint(c + V(3, 10)));
      s.drawToRelPels(13, 0, line);
    });
  }

  void areas()
  {
    add("set of a rectangle", gx_ScopeOp::area, {4, 5, 9, 8}, {4, 5, 9, 8},
        [](gxUIScope &s, V const &c) { s.set(gxUIRect(pel(c + V(4, 5)), gxPair<long>(9, 8)), gx_penColor); });
    add("set", gx_ScopeOp::wholeArea, gxUIRect::inf, gxUIRect::inf,
        [](gxUIScope &s, V const &) { s.set(gx_penColor); });
    add("fill", gx_ScopeOp::flood, {10, 10, 1, 1}, gxUIRect::inf,
        [](gxUIScope &s, V const &c) { s.fill(pel(c + V(10, 10)), gx_penColor, gxColor(1, 2, 3), false); });
    add("text", gx_ScopeOp::text, {}, gxUIRect::inf, [](gxUIScope &s, V const &c) {
      s.draw("A", gxPoint(c + V(2, 2)), gx_penColor, gxColor::passColor(), gxUIFormat());
    });
  }

  /// An image of 8 x 8 pels, one of twice the size reduced to that, and one of 6 x 6 pels enlarged to 12 x 12.
  template <class Pel, class... Flag>
  void images(std::string const &name, Pel value, Flag... flag)
  {
    gxPelBuffer<Pel> const unit = plain(8, value), large = plain(16, value), small = plain(6, value);
    add(name, gx_ScopeOp::image, {4, 5, 8, 8}, {4, 5, 8, 8},
        [=](gxUIScope &s, V const &c) { s.draw(unit, gxPoint(c + V(4, 5)), false, 0, flag...); });
    add(name + ", reduced", gx_ScopeOp::image, {4, 5, 8, 8}, {4, 5, 8, 8}, [=](gxUIScope &s, V const &c) {
      s.sample(large, gxPoint(c + V(4, 5)), gxPair<double>(0.5, 0.5), false, 0, flag...);
    });
    add(name + ", enlarged", gx_ScopeOp::image, {4, 5, 12, 12}, {4, 5, 12, 12}, [=](gxUIScope &s, V const &c) {
      s.expand(small, gxPoint(c + V(4, 5)), gxPair<double>(2.0, 2.0), false, 0, flag..., {});
    });
  }

  void runs()
  {
    using Map = std::vector<unsigned char>;
    gxRLEBuffer const unit(plain<unsigned char>(8, 1)), large(plain<unsigned char>(16, 1)),
        small(plain<unsigned char>(6, 1));
    Map const map{0, 249};
    add("runs", gx_ScopeOp::image, {4, 5, 8, 8}, {4, 5, 8, 8},
        [=](gxUIScope &s, V const &c) { s.draw(unit, gxPoint(c + V(4, 5)), map, false, 0); });
    add("runs, reduced", gx_ScopeOp::scaledRuns, {4, 5, 8, 8}, {4, 5, 8, 8}, [=](gxUIScope &s, V const &c) {
      s.sample(large, gxPoint(c + V(4, 5)), map, gxPair<double>(0.5, 0.5), false, 0);
    });
    add("runs, enlarged", gx_ScopeOp::scaledRuns, {4, 5, 12, 12}, {4, 5, 12, 12}, [=](gxUIScope &s, V const &c) {
      s.expand(small, gxPoint(c + V(4, 5)), map, gxPair<double>(2.0, 2.0), false, 0);
    });
    add("icon", gx_ScopeOp::image, {4, 5, 8, 8}, {4, 5, 8, 8}, [=](gxUIScope &s, V const &c) {
      s.draw(unit, gxPoint(c + V(4, 5)), std::vector<gxColor>{gxColor::passColor(), gx_penColor}, true, 0);
    });
  }

 private:
  void add(std::string name, gx_ScopeOp::Kind kind, gxUIRect const &core, gxUIRect const &box,
           std::function<void(gxUIScope &, V const &)> draw)
  {
    ops_.push_back({std::move(name), kind, core, box, std::move(draw)});
  }

  std::vector<gx_ScopeOp> ops_;
};

std::vector<gx_ScopeOp> makeOps()
{
  Ops ops;
  ops.shapes();
  ops.areas();
  ops.images("8-bit image", static_cast<unsigned char>(200), false);
  ops.images("16-bit image", static_cast<unsigned short>(50000));
  ops.images("16-bit color image", gxPackedRGB16Pel(240, 70, 20));
  ops.images("32-bit color image", gxPackedRGB32Pel(240, 70, 20));
  ops.runs();
  return ops.take();
}

}  // namespace

std::vector<gx_ScopeOp> const &gf_scopeOps()
{
  static std::vector<gx_ScopeOp> const ops = makeOps();
  return ops;
}
