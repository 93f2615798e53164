#pragma once

#include "dispc/dispprop.h"
#include "dispc/uiscope.h"
#include "foundation/pelbuf.h"
#include "foundation/rlebuf.h"
#include "tests/support/shapes.h"

#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

/// What a tree of LogScope wrote down, and which of them live.
struct ScopeLog {
  std::vector<std::string> lines;
  std::set<std::string> living;
  int made = 0;

  /// The lines since the last call.
  std::vector<std::string> take() { return std::exchange(lines, {}); }
};

/// A surface that draws nothing and writes down every call, one line each, with its own name in front. Sub-scopes are
/// named after their parent, "image.1"; temporary ones "image!2". Drawing reports a change as a back end does: the pel
/// of a point, else the whole scope.
class LogScope : public gxUIScope
{
 public:
  LogScope(ScopeLog &log, std::string name, gxPair<long> size) : log_(&log), name_(std::move(name)), size_(size)
  {
    log_->living.insert(name_);
  }
  ~LogScope() override
  {
    log_->living.erase(name_);
    if (quietEnd_)
      return;
    line("delete");
  }

  std::string const &name() const { return name_; }
  void resize(gxPair<long> size) { size_ = size; }
  void null(bool on) { null_ = on; }
  void quietEnd() { quietEnd_ = true; }
  /// Writes down every argument to the last bit, pels too; otherwise what a reader wants to see.
  void exact(bool on) { exact_ = on; }
  /// Thrown by every drawing call while set.
  void throwing(bool on) { throwing_ = on; }
  using gxUIScope::children;
  using gxUIScope::drawX;
  using gxUIScope::drawY;
  using gxUIScope::parent;
  using gxUIScope::trackChanges;
  using gxUIScope::xCoord;
  using gxUIScope::yCoord;
  struct Refused {
  };

  void moveSurface(gxUIScope const &parent, gxUIRect const &rect) override
  {
    size_ = rect.sz();
    line("surface in ", dynamic_cast<LogScope const &>(parent).name_, ' ', rect);
  }
  gxUIScope *newSubScope(gxUIRect const &rect, bool temporary) override
  {
    auto sub =
        std::make_unique<LogScope>(*log_, name_ + (temporary ? '!' : '.') + std::to_string(++log_->made), rect.sz());
    line(temporary ? "clip " : "part ", sub->name_, ' ', rect);
    if (temporary)
      sub->subset(*this, rect);
    else
      sub->move(*this, rect);
    return sub.release();
  }
  void dragStart() override { line("dragStart"); }
  void dragStop() override { line("dragStop"); }
  void dragErase() override { line("dragErase"); }
  void dragAnimate(bool on) override { line("dragAnimate ", on); }
  void lockScreenUpdatesPush(bool lock) override
  {
    line("lock ", lock);
    ++locks_;
  }
  bool lockScreenUpdatesPop() override
  {
    line("unlock");
    return --locks_ > 0;
  }
  bool screenUpdatesLocked() const override { return locks_ > 0; }
  void optimizeDrawing(bool on) override { line("optimize ", on); }

  void draw(gxGenShape const &s, gxColor const &c) override
  {
    if (exact_)
      drawn("genShape", {}, ' ', s.boundingBox().origin(), ' ', c);
  }
  void draw(gxEllipseArc const &a, gxGraphicProps const &p) override
  {
    drawn("ellipseArc", p, detail([&](std::ostream &os) {
            gxEllipse const e = a.ellipse();
            os << ' ' << e << " from " << a.start() << " span " << a.span();
          }));
  }
  void draw(gxEllipse const &e, gxGraphicProps const &p) override
  {
    gxEllipse::gxEllipseGeom const &g = e.geom();
    drawn("ellipse", p, ' ', g.center, " radii ", g.radii,
          detail([&](std::ostream &os) { os << ' ' << g.angle << ' ' << int(g.reversed); }));
  }
  void draw(gxPolygon const &s, gxGraphicProps const &p) override
  {
    drawn("polygon", p, " mode ", s.fillMode(), points(s.vertices()));
  }
  void draw(gxRLEBuffer const &b, gxPoint const &at, std::vector<gxColor> const &c, bool pass, unsigned char v) override
  {
    drawn("icon", {}, ' ', at, runs(b, c, pass, v));
  }
  void draw(gxRLEBuffer const &b, gxPoint const &at, std::vector<unsigned char> const &map, bool pass,
            unsigned char v) override
  {
    drawn("runs", {}, ' ', at, runs(b, map, pass, v));
  }
  void draw(gxPelBuffer_const<gxPackedRGB32Pel> const &b, gxPoint const &at, bool pass, unsigned long v) override
  {
    image("image32", b, at, pass, v);
  }
  void draw(gxPelBuffer_const<gxPackedRGB16Pel> const &b, gxPoint const &at, bool pass, unsigned short v) override
  {
    image("image16", b, at, pass, v);
  }
  void draw(gxPelBuffer_const<unsigned short> const &b, gxPoint const &at, bool pass, unsigned short v) override
  {
    image("imageWords", b, at, pass, v);
  }
  void draw(gxPelBuffer_const<unsigned char> const &b, gxPoint const &at, bool pass, unsigned char v,
            bool flag) override
  {
    image("image8", b, at, pass, v, " flag ", flag);
  }
  void draw(std::string const &text, gxPoint const &at, gxColor const &f, gxColor const &b,
            gxUIFormat const &format) override
  {
    drawn("text", {}, ' ', text, ' ', at, ' ', f, ' ', b, detail([&](std::ostream &os) { os << ' ' << format; }));
  }
  void draw(gxPolyline const &s, gxGraphicProps const &p) override
  {
    drawn("polyline", p, s.isClosed() ? " closed" : " open", points(s.vertices()));
  }
  void draw(gxGenRect const &r, gxGraphicProps const &p) override
  {
    drawn("genRect", p, detail([&](std::ostream &os) { os << ' ' << r.center() << ' ' << r.matrix() << r.round(); }));
  }
  void draw(gxEllipseArc2 const &a, gxGraphicProps const &p) override
  {
    drawn("ellipseArc2", p, detail([&](std::ostream &os) {
            gxEllipse2 const &e = a.ellipse();
            os << ' ' << e.radii() << ' ' << e.angle() << ' ' << e.center() << ' ' << e.isRightHanded() << ' '
               << e.phase() << " from " << a.phiStart() << " span " << a.phiSpan();
          }));
  }
  void draw(gxEllipse2 const &e, gxGraphicProps const &p) override
  {
    drawn("ellipse2", p,
          detail([&](std::ostream &os) { os << ' ' << e.radii() << ' ' << e.angle() << ' ' << e.center(); }));
  }
  void draw(gxLineSeg const &s, gxGraphicProps const &p) override { drawn("lineSeg", p, ' ', s.start(), ' ', s.end()); }
  void draw(gxPoint const &s, gxGraphicProps const &p) override
  {
    drawn("point", p, ' ', s, &s == &drawPoint() ? " pen" : "");
  }
  gxUIRect textRect(std::string const &, gxPoint const &at, gxUIFormat const &, gxUIRect &r) override
  {
    return r = gxUIRect(xCoord(at), yCoord(at), 1, 1);
  }
  void sample(gxPelBuffer_const<gxPackedRGB32Pel> const &b, gxPoint const &at, gxPair<double> const &scale, bool pass,
              unsigned long v) override
  {
    image("sample32", b, at, pass, v, " scale ", scale);
  }
  void sample(gxPelBuffer_const<gxPackedRGB16Pel> const &b, gxPoint const &at, gxPair<double> const &scale, bool pass,
              unsigned short v) override
  {
    image("sample16", b, at, pass, v, " scale ", scale);
  }
  void sample(gxPelBuffer_const<unsigned short> const &b, gxPoint const &at, gxPair<double> const &scale, bool pass,
              unsigned short v) override
  {
    image("sampleWords", b, at, pass, v, " scale ", scale);
  }
  void sample(gxPelBuffer_const<unsigned char> const &b, gxPoint const &at, gxPair<double> const &scale, bool pass,
              unsigned char v, bool flag) override
  {
    image("sample8", b, at, pass, v, " flag ", flag, " scale ", scale);
  }
  void expand(gxPelBuffer_const<gxPackedRGB32Pel> const &b, gxPoint const &at, gxPair<double> const &scale, bool pass,
              unsigned long v, InterpolationModes mode) override
  {
    image("expand32", b, at, pass, v, " scale ", scale, " mode ", mode);
  }
  void expand(gxPelBuffer_const<gxPackedRGB16Pel> const &b, gxPoint const &at, gxPair<double> const &scale, bool pass,
              unsigned short v, InterpolationModes mode) override
  {
    image("expand16", b, at, pass, v, " scale ", scale, " mode ", mode);
  }
  void expand(gxPelBuffer_const<unsigned short> const &b, gxPoint const &at, gxPair<double> const &scale, bool pass,
              unsigned short v, InterpolationModes mode) override
  {
    image("expandWords", b, at, pass, v, " scale ", scale, " mode ", mode);
  }
  void expand(gxPelBuffer_const<unsigned char> const &b, gxPoint const &at, gxPair<double> const &scale, bool pass,
              unsigned char v, bool flag, InterpolationModes mode) override
  {
    image("expand8", b, at, pass, v, " flag ", flag, " scale ", scale, " mode ", mode);
  }
  using gxUIScope::draw;
  using gxUIScope::expand;
  using gxUIScope::sample;

  void set(gxUIRect const &rect, gxColor const &color) override { drawn("set", {}, ' ', rect, ' ', color); }
  void set(gxColor const &color) override { drawn("setAll", {}, ' ', color); }
  void fill(gxPair<long> const &seed, gxColor const &f, gxColor const &b, bool toBoundary) override
  {
    drawn("fill", {}, ' ', seed, ' ', f, ' ', b, ' ', toBoundary);
  }
  void drawTo(gxPoint const &to, gxGraphicProps const &p) override
  {
    drawn("drawTo", p, " from ", drawPoint(), " to ", to);
    drawStart(to);
  }
  void drawToRelPels(long dx, long dy, gxGraphicProps const &p) override
  {
    drawn("drawToRelPels", p, ' ', dx, ' ', dy);
    moveToRel(dx, dy);
  }
  bool isNull() const override { return null_; }
  gxPair<long> size() const override { return size_; }

 private:
  template <class... T>
  void line(T const &...parts)
  {
    std::ostringstream os;
    os.precision(exact_ ? 17 : 6);
    os << name_ << ": ";
    (os << ... << parts);
    log_->lines.push_back(os.str());
  }
  template <class... T>
  void drawn(char const *what, gxGraphicProps const &props, T const &...parts)
  {
    if (throwing_)
      throw Refused();
    if (props == gxGraphicProps())
      line(what, parts...);
    else
      line(what, parts..., " [", props, ']');
    modified(true);
    if (trackChanges())
      change(gxUIRect(gxPair<long>(), size_), false);
  }
  template <class Pel, class... T>
  void image(char const *what, gxPelBuffer_const<Pel> const &b, gxPoint const &at, bool pass, unsigned long v,
             T const &...parts)
  {
    drawn(what, {}, ' ', b.size(), " at ", at, pass ? " pass " : " solid ", v, parts..., detail([&](std::ostream &os) {
            for (long y = 0; y < b.height() && b.width() > 0; ++y)
              hex(os, b.pointToPel(b.window().x(), b.window().y() + y), sizeof(Pel) * b.width());
          }));
  }
  template <class Map>
  std::string runs(gxRLEBuffer const &b, Map const &map, bool pass, unsigned char v) const
  {
    return detail([&](std::ostream &os) {
      os << ' ' << b.size() << (pass ? " pass " : " solid ") << int(v);
      for (auto const &entry : map)
        hex(os, &entry, sizeof entry);
      for (long y = 0; y < b.height(); ++y) {
        os << " row";
        for (gxRLEBufferRun const *run = b.pointToRow(b.offset().y() + y); run->length; ++run)
          hex(os, run, sizeof *run);
      }
    });
  }
  static void hex(std::ostream &os, void const *bytes, std::size_t n)
  {
    for (std::size_t i = 0; i < n; ++i)
      os << (i == 0 ? " " : ".") << int(static_cast<unsigned char const *>(bytes)[i]);
  }
  /// What only an exact log shows.
  template <class Write>
  std::string detail(Write const &write) const
  {
    std::ostringstream os;
    os.precision(17);
    if (exact_)
      write(os);
    return os.str();
  }
  std::string points(std::vector<gxVector<2>> const &vertices) const
  {
    std::ostringstream os;
    os.precision(exact_ ? 17 : 6);
    for (gxVector<2> const &v : vertices)
      os << ' ' << v;
    return os.str();
  }

  ScopeLog *log_;
  std::string name_;
  gxPair<long> size_;
  int locks_ = 0;
  bool null_ = false;
  bool exact_ = false;
  bool quietEnd_ = false;
  bool throwing_ = false;
};
