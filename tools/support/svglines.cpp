#include "tools/support/svglines.h"

#include "dispc/uiscope.h"
#include "dispc/uitablet.h"
#include "foundation/lineseg.h"
#include "foundation/polygon.h"
#include "foundation/polyline.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <optional>
#include <utility>

namespace
{

using Point = gxPair<long>;  // tenths of a pel

/// A surface that writes down what is drawn of lines.
class LinesScope : public gxUIScope
{
 public:
  std::string take()
  {
    endPath();
    return std::move(out_);
  }
  /// Where the paths run.
  gxUIRect const &extent() const { return extent_; }

  using gxUIScope::draw;
  using gxUIScope::expand;
  using gxUIScope::sample;

  void draw(gxLineSeg const &segment, gxGraphicProps const &props) override
  {
    // Chords of arcs come from their later to their earlier end.
    auto const from = pointOf(segment.start()), to = pointOf(segment.end());
    if (!from || !to)
      return;
    bool const goesOn = props_ && *props_ == props;
    if (goesOn && at_ == *to)
      return lineTo(*from);
    if (!goesOn || !(at_ == *from))
      moveTo(*from, props);
    lineTo(*to);
  }
  void draw(gxPolyline const &line, gxGraphicProps const &props) override
  {
    path(line.vertices(), props, line.isClosed());
  }
  void draw(gxPolygon const &polygon, gxGraphicProps const &props) override { path(polygon.vertices(), props, true); }

  bool isNull() const override { return false; }
  gxPair<long> size() const override { return {1, 1}; }

  // All else leaves no trace.

  void moveSurface(gxUIScope const &, gxUIRect const &) override {}
  gxUIScope *newSubScope(gxUIRect const &, bool) override { return new LinesScope; }
  void dragStart() override {}
  void dragStop() override {}
  void dragErase() override {}
  void dragAnimate(bool) override {}
  void draw(gxPoint const &, gxGraphicProps const &) override {}
  void draw(gxEllipseArc const &, gxGraphicProps const &) override {}
  void draw(gxEllipse const &, gxGraphicProps const &) override {}
  void draw(gxGenRect const &, gxGraphicProps const &) override {}
  void draw(gxEllipseArc2 const &, gxGraphicProps const &) override {}
  void draw(gxEllipse2 const &, gxGraphicProps const &) override {}
  void draw(gxRLEBuffer const &, gxPoint const &, std::vector<gxColor> const &, bool, unsigned char) override {}
  void draw(gxRLEBuffer const &, gxPoint const &, std::vector<unsigned char> const &, bool, unsigned char) override {}
  void draw(gxPelBuffer_const<gxPackedRGB32Pel> const &, gxPoint const &, bool, unsigned long) override {}
  void draw(gxPelBuffer_const<gxPackedRGB16Pel> const &, gxPoint const &, bool, unsigned short) override {}
  void draw(gxPelBuffer_const<unsigned short> const &, gxPoint const &, bool, unsigned short) override {}
  void draw(gxPelBuffer_const<unsigned char> const &, gxPoint const &, bool, unsigned char, bool) override {}
  void draw(std::string const &, gxPoint const &, gxColor const &, gxColor const &, gxUIFormat const &) override {}
  gxUIRect textRect(std::string const &, gxPoint const &, gxUIFormat const &, gxUIRect &r) override { return r = {}; }
  void sample(gxPelBuffer_const<gxPackedRGB32Pel> const &, gxPoint const &, gxPair<double> const &, bool,
              unsigned long) override
  {
  }
  void sample(gxPelBuffer_const<gxPackedRGB16Pel> const &, gxPoint const &, gxPair<double> const &, bool,
              unsigned short) override
  {
  }
  void sample(gxPelBuffer_const<unsigned short> const &, gxPoint const &, gxPair<double> const &, bool,
              unsigned short) override
  {
  }
  void sample(gxPelBuffer_const<unsigned char> const &, gxPoint const &, gxPair<double> const &, bool, unsigned char,
              bool) override
  {
  }
  void expand(gxPelBuffer_const<gxPackedRGB32Pel> const &, gxPoint const &, gxPair<double> const &, bool, unsigned long,
              InterpolationModes) override
  {
  }
  void expand(gxPelBuffer_const<gxPackedRGB16Pel> const &, gxPoint const &, gxPair<double> const &, bool,
              unsigned short, InterpolationModes) override
  {
  }
  void expand(gxPelBuffer_const<unsigned short> const &, gxPoint const &, gxPair<double> const &, bool, unsigned short,
              InterpolationModes) override
  {
  }
  void expand(gxPelBuffer_const<unsigned char> const &, gxPoint const &, gxPair<double> const &, bool, unsigned char,
              bool, InterpolationModes) override
  {
  }
  void set(gxUIRect const &, gxColor const &) override {}
  void set(gxColor const &) override {}
  void fill(gxPair<long> const &, gxColor const &, gxColor const &, bool) override {}
  void drawTo(gxPoint const &to, gxGraphicProps const &) override { drawStart(to); }
  void drawToRelPels(long dx, long dy, gxGraphicProps const &) override { moveToRel(dx, dy); }

 private:
  static std::optional<Point> pointOf(gxVector<2> const &p)
  {
    constexpr double most = 1e7;
    if (!(std::abs(p.x()) < most && std::abs(p.y()) < most))
      return {};
    return Point(std::lround(p.x() * 10.0), std::lround(p.y() * 10.0));
  }

  void path(std::vector<gxVector<2>> const &points, gxGraphicProps const &props, bool isClosed)
  {
    bool isFirst = true;
    for (gxVector<2> const &p : points)
      if (auto const point = pointOf(p)) {
        if (isFirst)
          moveTo(*point, props);
        else
          lineTo(*point);
        isFirst = false;
      }
    if (isClosed && !isFirst) {
      out_ += 'z';
      isAfterMove_ = true;
      at_ = start_;
    }
  }

  void moveTo(Point const &p, gxGraphicProps const &props)
  {
    if (!props_ || !(*props_ == props))
      beginPath(props);
    out_ += 'M' + std::to_string(p.x()) + ' ' + std::to_string(p.y());
    isAfterMove_ = true;
    start_ = at_ = p;
    reach(p);
  }
  void lineTo(Point const &p)
  {
    Point const d = p - at_;
    out_ += isAfterMove_ ? "l" : d.x() < 0 ? "" : " ";
    isAfterMove_ = false;
    out_ += std::to_string(d.x()) + (d.y() < 0 ? "" : " ") + std::to_string(d.y());
    at_ = p;
    reach(p);
  }
  void reach(Point const &p)
  {
    long const around = props_->penWidth() * 5 + 1;
    extent_ |= gxUIRect(p - Point(around, around), {2 * around, 2 * around});
  }

  void beginPath(gxGraphicProps const &props)
  {
    endPath();
    props_ = props;
    char color[8];
    std::snprintf(color, sizeof color, "#%06lx", props.penColor().rgb() & 0xFFFFFFUL);
    out_ += std::string("<path fill=\"") + (props.fill() ? color : "none") + "\" stroke=\"" + color + '"';
    long const width = std::max(props.penWidth(), 1L);
    if (width > 1)
      out_ += " stroke-width=\"" + std::to_string(10 * width) + '"';
    if (props.penStyle() != gxGraphicProps::penSolid)
      out_ += " stroke-dasharray=\"" + std::to_string(40 * width) + '"';
    out_ += " d=\"";
  }
  void endPath()
  {
    if (props_)
      out_ += "\"/>\n";
    props_.reset();
  }

  std::string out_;
  std::optional<gxGraphicProps> props_;  ///< of the path that is being written
  Point start_, at_;
  bool isAfterMove_ = false;  ///< or after the end of a path: the letter of a line is needed
  gxUIRect extent_;
};

}  // namespace

std::string svgLines(gxUISketch const &sketch)
{
  LinesScope scope;
  gxUITablet tablet(nullptr, &scope);
  tablet.visible(true);
  tablet.draw(sketch, {}, gxUITablet::overlay);
  std::string const paths = scope.take();
  constexpr long margin = 60;
  gxUIRect const box(scope.extent().ul() - Point(margin, margin), scope.extent().sz() + Point(2 * margin, 2 * margin));
  auto const number = [](long v) { return std::to_string(v); };
  return "<svg width=\"" + number((box.width() + 9) / 10) + "\" height=\"" + number((box.height() + 9) / 10) +
         "\" viewBox=\"" + number(box.left()) + ' ' + number(box.top()) + ' ' + number(box.width()) + ' ' +
         number(box.height()) + "\" stroke-width=\"10\" stroke-linejoin=\"round\" stroke-linecap=\"round\">\n" + paths +
         "</svg>\n";
}
