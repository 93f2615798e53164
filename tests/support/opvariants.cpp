#include "tests/support/opvariants.h"
#include "tests/support/shapes.h"

#include "dispc/sketchop_text.h"
#include "dispc/wrfm/wirefrm.h"
#include "foundation/pelbuf.h"
#include "foundation/rlebuf.h"

#include <algorithm>
#include <array>
#include <cstring>

double OpRandom::coordinate()
{
  double const whole = static_cast<double>(below(401) - 200);
  switch (below(4)) {
    case 0:
      return whole;
    case 1:
      return whole + 0.5;
    default:
      return whole + 0.0001 * static_cast<double>(below(10000));
  }
}

std::vector<gxVector<2>> OpRandom::vectors(long n)
{
  std::vector<gxVector<2>> all;
  for (long i = 0; i < n; ++i)
    all.push_back(all.size() > 1 && below(5) == 0 ? all.back() : vector());  // some twice
  return all;
}

gxColor OpRandom::color()
{
  static constexpr std::array stock = {gxColor::cyan, gxColor::red, gxColor::black, gxColor::pass};
  switch (below(4)) {
    case 0:
      return gxColor(static_cast<unsigned char>(below(256)));
    case 1: {
      auto const r = static_cast<unsigned char>(below(256)), g = static_cast<unsigned char>(below(256));
      return gxColor(r, g, static_cast<unsigned char>(below(256)));
    }
    default:
      return stock[static_cast<std::size_t>(below(stock.size()))];
  }
}

/// Half of them the default ones, so that properties are in force for several records.
gxGraphicProps OpRandom::props()
{
  gxGraphicProps props;
  if (flag())
    return props;
  props.penColor(color());
  props.penWidth(below(6));
  props.penStyle(static_cast<gxGraphicProps::gePenStyle>(below(5)));
  props.penJoin(static_cast<gxGraphicProps::gePenJoin>(below(3)));
  props.penEndCap(static_cast<gxGraphicProps::gePenEndCap>(below(3)));
  props.arrowHead(flag());
  props.arrowHeadForward(flag());
  props.showVertex(flag());
  return props;
}

gxGraphicProps OpRandom::filled(bool fill)
{
  gxGraphicProps p = props();
  p.fill(fill);
  return p;
}

std::string OpRandom::text()
{
  std::string text;
  for (long n = below(4) == 0 ? 0 : below(60); n > 0; --n)
    text += static_cast<char>(1 + below(255));
  return text;
}

gxGenShape *OpShape::map(gxXform<2> const &xform) const
{
  auto *const image = new OpShape(*this);
  image->center = xform * center;
  return image;
}

gxRect OpShape::boundingBox() const
{
  return {center - gxVector<2>(1, 1), {2, 2}};
}

unsigned char *OpShape::save(long &size) const
{
  size = static_cast<long>(sizeof center + content.size());
  auto *const bytes = new unsigned char[static_cast<std::size_t>(size)];
  std::memcpy(bytes, &center, sizeof center);
  std::copy(content.begin(), content.end(), bytes + sizeof center);
  return bytes;
}

void OpShape::load(unsigned char const *bytes, long size)
{
  std::memcpy(&center, bytes, sizeof center);
  content.assign(bytes + sizeof center, bytes + size);
}

namespace
{
using Layers = gxUITablet::Layers;
gxGenShape::Registration const opShape(OpShape::id, [] { return static_cast<gxGenShape *>(new OpShape); });

gxEllipse ellipse(OpRandom &r)
{
  gxEllipse const upright(r.vector(), r.sizes(), gxRadian(r.angle()));
  return r.flag() ? upright : upright.map(gxXform<2>(gxMatrix<2>(-1, 0, 0, 1), gxVector<2>()));  // reversed
}

/// An outline with everything that a record of it can hold: roundings, also uncertain ones, arcs, tolerances, open or
/// closed, mapped or not, and now and then of two vertices, one or none.
gx2Wireframe outline(OpRandom &r)
{
  gx2Wireframe w;
  gxVector<2> const at = r.vector(), size = r.sizes();
  double const least = std::min(size.x(), size.y()), rounding = 0.1 * least * static_cast<double>(r.below(4) - 1);
  std::array<gxVector<2>, 4> const steps = {gxVector<2>(), {size.x(), 0}, size, {0, size.y()}};
  for (long n = r.below(5) == 0 ? r.below(3) : 4, i = 0; i < n; ++i)
    w.insertVertex(at + steps[static_cast<std::size_t>(i)], rounding, gxDegree(i == 2 && r.flag() ? 30.0 : 0.0),
                   r.flag() ? gxDimTol(kUnsetDim, 0.1, 1000) : gxDimTol());
  if (w.numVertices() == 4 && r.flag())
    w.close(gxDegree(r.flag() ? -20.0 : 0.0), gxDimTol());
  double const turn = r.angle();
  if (r.flag())
    w = w.map(gxXform<2>(gxMatrix<2>(gxRadian(turn), gxRadian(turn + 0.2), 1.5, 0.5), gxVector<2>(1, 2)));
  return w;
}

gxGenRect genRect(OpRandom &r, gxVector<2> const &rounding)
{
  gxVector<2> const center = r.vector(), size = r.sizes();
  return gxGenRect(center, size, gxRadian(r.angle()), rounding);
}

gxGenRect anyGenRect(OpRandom &r)
{
  switch (r.below(4)) {
    case 0:
      return genRect(r, {0, 0});
    case 1:
      return genRect(r, {1, 1});
    case 2:
      return genRect(r, {0.25, 0.75});
    default: {
      gxVector<2> const x = r.vector(), y = r.vector();
      return gxGenRect(r.vector(), gxMatrix<2>(x.x(), y.x(), x.y(), y.y()), {0.5, 0.5});
    }
  }
}

/// Half of them images under a shear, whose angles do not start at their axis.
gxEllipse phased(OpRandom &r)
{
  gxEllipse const plain = ellipse(r);
  return r.flag() ? plain : plain.map(gxXform<2>(gxMatrix<2>(1, 0.5, 0, 2), gxVector<2>()));
}

gxEllipseAnnulusSection section(OpRandom &r)
{
  gxEllipse const inner = phased(r);
  gxEllipseAnnulus const ring(inner, phased(r));
  double const start = r.angle(), end = start + r.angle();
  bool const forward = r.flag(), flag1 = r.flag();
  return gxEllipseAnnulusSection(ring, gxRadian(start), gxRadian(end), forward, flag1, r.flag());
}

template <bool forward>
void drawSection(gxUITablet &t, OpRandom &r, Layers layer)
{
  gxGraphicProps props = r.props();
  bool const arrow = r.flag();
  props.arrowHead(forward || arrow);
  props.arrowHeadForward(forward || !arrow);
  t.draw(section(r), props, layer);
}

gxUIRect pels(OpRandom &r)
{
  long const x = r.below(200) - 100, y = r.below(200) - 100, w = r.below(60);
  return gxUIRect(x, y, w, r.below(60));
}

gxRect rect(OpRandom &r)
{
  gxVector<2> const origin = r.vector();
  return gxRect(origin, r.flag() ? r.sizes() : r.vector());
}

gxBezierCurve bezier(OpRandom &r)
{
  gxBezierCurve curve;
  gxBezierCurve::Points points;
  for (gxVector<2> &p : points)
    p = r.vector();
  gxBezierCurve::Weights weights = {1, 1, 1, 1};
  if (r.flag())
    for (double &w : weights)
      w = r.positive();
  return gxBezierCurve(points, weights);
}

gxPelBuffer<unsigned char> image(OpRandom &r, long width, long height)
{
  gxPelBuffer<unsigned char> image(width, height);
  for (long y = 0; y < height; ++y)
    for (long x = 0; x < width; ++x)
      image.put(x, y, static_cast<unsigned char>(r.below(3) == 0 ? r.below(256) : 7));
  return image;
}

/// A window of a larger image, with a label and a map of its own.
gxPelBuffer<unsigned char> windowed(OpRandom &r)
{
  gxPelBuffer<unsigned char> part = image(r, 12, 9);
  part.window(2, 3, 1 + r.below(10), 1 + r.below(6));
  part.offset(r.below(9) - 4, r.below(9) - 4);
  part.imageFromClientXform(gxXform<2>(gxMatrix<2>(2, 0.5, -0.5, r.positive()), r.vector()));
  return part;
}

void drawImage(gxUITablet &t, OpRandom &r, Layers layer, gxPelBuffer<unsigned char> const &image)
{
  gxPoint const at = r.vector();
  bool const pass = r.flag();
  t.draw(image, at, pass, static_cast<unsigned char>(r.below(256)), r.flag(), layer);
}

void drawRuns(gxUITablet &t, OpRandom &r, Layers layer, gxRLEBuffer const &runs)
{
  gxPoint const at = r.vector();
  std::vector<unsigned char> map;
  for (long n = r.flag() ? 0 : r.below(20); n > 0; --n)
    map.push_back(static_cast<unsigned char>(r.below(256)));
  bool const pass = r.flag();
  t.draw(runs, at, map, pass, static_cast<unsigned char>(r.below(256)), r.flag(), layer);
}

template <gxPolygon::PolyFillMode mode>
void drawPolygon(gxUITablet &t, OpRandom &r, Layers layer)
{
  long const n = r.below(8);
  t.draw(gxPolygon(r.vectors(n), mode), r.props(), layer);
}

template <bool closed>
void drawPolyline(gxUITablet &t, OpRandom &r, Layers layer)
{
  long const n = r.below(8);
  t.draw(gxPolyline(r.vectors(n), closed), r.props(), layer);
}

void drawShape(gxUITablet &t, OpRandom &r, Layers layer, std::string const &content)
{
  OpShape shape;
  shape.content = content;
  shape.center = r.vector();
  t.draw(shape, r.color(), layer);
}

/// A few records, which may be for any layer.
void drawNested(gxUITablet &t, OpRandom &r, Layers layer)
{
  gxUITablet recorder;
  recorder.recordOn().push(true);
  for (long n = r.below(4); n > 0; --n) {
    auto const own = static_cast<Layers>(r.below(3));
    recorder.draw(gxPoint(r.vector()), r.props(), own);
    recorder.drawTo(gxPoint(r.vector()), r.props(), own);
  }
  t.draw(recorder.sketch(), gxPoint(r.vector()), layer);
}

/// No tablet records texts of 16-bit units, so the record is written here.
void drawUnicode(gxUITablet &t, OpRandom &r, Layers layer)
{
  static constexpr std::u16string_view texts[] = {u"", u"plain", u"Gr\u00F6\u00DFe \u03BC", u"\U0001F600 \xD800 alone"};
  gxPoint const at = r.vector();
  std::u16string_view const text = texts[r.below(4)];
  gxColor const foreground = r.color(), background = r.color();
  gxUIFormat const format(r.below(5) - 1, static_cast<gxUIFormat::Alignment>(r.below(9)));
  {
    gxFlagPush const unrecorded(t.recordOn(), false);
    t.draw(gfConvertString(text), at, foreground, background, format, layer);
  }
  if (!t.recordOn())
    return;
  gxGraphicProps props;
  props.penColor(foreground);
  long const bytes = 30 + 2 * (static_cast<long>(text.size()) + 1);
  auto to = t.sketch().record(gx_SketchCode::unicodeString, layer, props, foreground, bytes);
  to.vector(at).bytes(&background, sizeof background).word(format.fontId()).word(format.alignment());
  for (char16_t const unit : text)
    to.byte(static_cast<unsigned char>(unit)).byte(static_cast<unsigned char>(unit >> 8));
  to.zeros(2);
}

void drawText(gxUITablet &t, OpRandom &r, Layers layer, std::string const &text)
{
  gxPoint const at = r.vector();
  gxColor const foreground = r.color(), background = r.color();
  gxUIFormat const format(r.below(5) - 1, static_cast<gxUIFormat::Alignment>(r.below(9)));
  t.draw(text, at, foreground, background, format, layer);
}

std::vector<OpVariant> plainShapes()
{
  return {
      {"point", gx_SketchCode::point,
       [](gxUITablet &t, OpRandom &r, Layers layer) { t.draw(gxPoint(r.vector()), r.props(), layer); }},
      {"points", gx_SketchCode::point,
       [](gxUITablet &t, OpRandom &r, Layers layer) {
         long const n = r.below(2);
         t.draw(gxPointSet(r.vectors(n)), r.props(), layer);
       }},
      {"point icon", gx_SketchCode::pointIcon,
       [](gxUITablet &t, OpRandom &r, Layers layer) { t.drawPointIcon(gxPoint(r.vector()), r.props(), layer); }},
      {"segment", gx_SketchCode::lineSeg,
       [](gxUITablet &t, OpRandom &r, Layers layer) {
         gxVector<2> const from = r.vector();
         t.draw(gxLineSeg(from, r.flag() ? from : r.vector()), r.props(), layer);
       }},
      {"segments", gx_SketchCode::lineSeg,
       [](gxUITablet &t, OpRandom &r, Layers layer) {
         std::vector<gxLineSeg> segments;
         for (long n = r.below(4); n > 0; --n) {
           gxVector<2> const from = r.vector();
           segments.emplace_back(from, r.vector());
         }
         t.draw(gxLineSegSet(segments), r.props(), layer);
       }},
      {"line", gx_SketchCode::line,
       [](gxUITablet &t, OpRandom &r, Layers layer) {
         gxVector<2> const dir = r.flag() ? gxVector<2>(1.0, gxRadian(r.angle())) : r.vector();
         t.draw(gxLine(dir, r.vector()), r.props(), layer);
       }},
      {"circle", gx_SketchCode::circle,
       [](gxUITablet &t, OpRandom &r, Layers layer) {
         gxVector<2> const center = r.vector();
         t.draw(gxCircle(center, r.below(5) == 0 ? 0.0 : r.positive()), r.filled(false), layer);
       }},
      {"ring of circles", gx_SketchCode::circle,
       [](gxUITablet &t, OpRandom &r, Layers layer) {
         gxVector<2> const center = r.vector();
         gxAnnulus const ring(gxCircle(center, r.positive()), gxCircle(center, 60.0));
         t.draw(ring, r.filled(false), layer);
       }},
      {"ellipse", gx_SketchCode::ellipse,
       [](gxUITablet &t, OpRandom &r, Layers layer) { t.draw(ellipse(r), r.filled(false), layer); }},
      {"flat ellipse", gx_SketchCode::ellipse,
       [](gxUITablet &t, OpRandom &r, Layers layer) {
         gxVector<2> const center = r.vector();
         t.draw(gxEllipse(center, {r.positive(), 0.0}, gxRadian(r.angle())), r.filled(false), layer);
       }},
      {"arc", gx_SketchCode::ellipseArc,
       [](gxUITablet &t, OpRandom &r, Layers layer) {
         gxEllipse const whole = ellipse(r).withoutPhase();
         double const start = r.angle(), end = start + r.angle();
         t.draw(gxEllipseArc(whole, gxRadian(start), gxRadian(end)), r.props(), layer);
       }},
      {"whole arc", gx_SketchCode::ellipseArc,
       [](gxUITablet &t, OpRandom &r, Layers layer) {
         gxEllipse const whole = ellipse(r).withoutPhase();
         double const start = r.angle();
         t.draw(gxEllipseArc(whole, gxRadian(start), gxRadian(start + 7.0)), r.props(), layer);
       }},
      {"section, forward", gx_SketchCode::ellipseAnnulusSection, drawSection<true>},
      {"general rectangle", gx_SketchCode::genRect,
       [](gxUITablet &t, OpRandom &r, Layers layer) { t.draw(anyGenRect(r), r.filled(false), layer); }},
      {"general ring", gx_SketchCode::genAnnulus,
       [](gxUITablet &t, OpRandom &r, Layers layer) {
         gxGenRect const inner = anyGenRect(r);
         t.draw(gxGenAnnulus(inner, anyGenRect(r)), r.props(), layer);
       }},
  };
}

std::vector<OpVariant> textsAndImages()
{
  return {
      {"axes", gx_SketchCode::coordAxes,
       [](gxUITablet &t, OpRandom &r, Layers layer) {
         gxVector<2> const origin = r.vector(), x = r.vector();
         t.draw(gxCoordAxes(origin, x, r.below(4) == 0 ? x : r.vector()), r.props(), layer);
       }},
      {"text", gx_SketchCode::string,
       [](gxUITablet &t, OpRandom &r, Layers layer) { drawText(t, r, layer, r.text()); }},
      {"text with a zero", gx_SketchCode::string,
       [](gxUITablet &t, OpRandom &r, Layers layer) { drawText(t, r, layer, std::string("a\0b", 3)); }},
      {"image", gx_SketchCode::pelBuffer8,
       [](gxUITablet &t, OpRandom &r, Layers layer) {
         drawImage(t, r, layer, image(r, 1 + r.below(9), 1 + r.below(9)));
       }},
      {"part of an image", gx_SketchCode::pelBuffer8,
       [](gxUITablet &t, OpRandom &r, Layers layer) { drawImage(t, r, layer, windowed(r)); }},
      {"image without pels", gx_SketchCode::pelBuffer8,
       [](gxUITablet &t, OpRandom &r, Layers layer) { drawImage(t, r, layer, image(r, 0, r.below(2))); }},
      {"image of 16 bits", OpVariant::noRecord,
       [](gxUITablet &t, OpRandom &r, Layers layer) {
         t.draw(gxPelBuffer<unsigned short>(3, 2), gxPoint(r.vector()), r.flag(), 0, layer);
       }},
      {"runs", gx_SketchCode::rleBuffer,
       [](gxUITablet &t, OpRandom &r, Layers layer) {
         drawRuns(t, r, layer, gxRLEBuffer(image(r, 1 + r.below(300), 1 + r.below(5))));
       }},
      {"icon", gx_SketchCode::rleBuffer,
       [](gxUITablet &t, OpRandom &r, Layers layer) { drawRuns(t, r, layer, gxUITablet::pointIcon()); }},
      {"no runs", gx_SketchCode::rleBuffer,
       [](gxUITablet &t, OpRandom &r, Layers layer) { drawRuns(t, r, layer, gxRLEBuffer()); }},
  };
}

std::vector<OpVariant> sketchAndAreas()
{
  return {
      {"sketch", gx_SketchCode::sketch, drawNested},
      {"set pels", gx_SketchCode::setRect,
       [](gxUITablet &t, OpRandom &r, Layers layer) {
         gxUIRect const area = pels(r);
         t.set(area, r.color(), layer);
       }},
      {"set", gx_SketchCode::setRect,
       [](gxUITablet &t, OpRandom &r, Layers layer) {
         gxRect const area = rect(r);
         t.set(area, r.color(), layer);
       }},
      {"set all", gx_SketchCode::setAll, [](gxUITablet &t, OpRandom &r, Layers layer) { t.set(r.color(), layer); }},
      {"complement of pels", gx_SketchCode::setComplement,
       [](gxUITablet &t, OpRandom &r, Layers layer) {
         gxUIRect const area = pels(r);
         t.setComplement(area, r.color(), layer);
       }},
      {"complement", gx_SketchCode::setComplement,
       [](gxUITablet &t, OpRandom &r, Layers layer) {
         gxRect const area = rect(r);
         t.setComplement(area, r.color(), layer);
       }},
      {"fill from a pel", gx_SketchCode::fill,
       [](gxUITablet &t, OpRandom &r, Layers layer) {
         gxPair<long> const seed = pels(r).ul();
         gxColor const color = r.color(), boundary = r.color();
         t.fill(seed, color, boundary, r.flag() ? gxUITablet::boundaryFill : gxUITablet::surfaceFill, layer);
       }},
      {"fill", gx_SketchCode::fill,
       [](gxUITablet &t, OpRandom &r, Layers layer) {
         gxPoint const seed = r.vector();
         gxColor const color = r.color(), boundary = r.color();
         t.fill(seed, color, boundary, r.flag() ? gxUITablet::boundaryFill : gxUITablet::surfaceFill, layer);
       }},
  };
}

std::vector<OpVariant> penAndPolygons()
{
  return {
      {"pen to a point", gx_SketchCode::drawStart,
       [](gxUITablet &t, OpRandom &r, Layers layer) { t.drawStart(gxPoint(r.vector()), layer); }},
      {"line to a point", gx_SketchCode::drawTo,
       [](gxUITablet &t, OpRandom &r, Layers layer) { t.drawTo(gxPoint(r.vector()), r.props(), layer); }},
      {"line of pels", gx_SketchCode::drawToRelPels,
       [](gxUITablet &t, OpRandom &r, Layers layer) {
         long const dx = r.below(99) - 49;
         t.drawToRelPels(dx, r.below(99) - 49, r.props(), layer);
       }},
      {"line along a direction", gx_SketchCode::drawToRelPels,
       [](gxUITablet &t, OpRandom &r, Layers layer) {
         gxVector<2> const dir = r.vector();
         t.drawToRelPels(dir, static_cast<float>(r.positive()), r.color(), layer);
       }},
      {"pen by pels", gx_SketchCode::moveToRelPels,
       [](gxUITablet &t, OpRandom &r, Layers layer) {
         long const dx = r.below(99) - 49;
         t.moveToRelPels(dx, r.below(99) - 49, layer);
       }},
      {"frame of pels", gx_SketchCode::outline3D,
       [](gxUITablet &t, OpRandom &r, Layers layer) {
         gxUIRect const area = pels(r);
         gxColor const first = r.color(), second = r.color();
         t.outline3D(area, first, second, r.below(4), layer);
       }},
      {"frame", gx_SketchCode::outline3D,
       [](gxUITablet &t, OpRandom &r, Layers layer) {
         gxRect const area = rect(r);
         gxColor const first = r.color(), second = r.color();
         t.outline3D(area, first, second, r.below(4), layer);
       }},
      {"arrowhead", gx_SketchCode::arrow,
       [](gxUITablet &t, OpRandom &r, Layers layer) {
         gxPoint const tip = r.vector();
         gxVector<2> const dir = r.vector();
         t.arrowHead(tip, dir, static_cast<float>(r.positive()), r.props(), layer);
       }},
      {"affine rectangle", gx_SketchCode::affineRectangle,
       [](gxUITablet &t, OpRandom &r, Layers layer) {
         gxVector<2> const o = r.vector(), x = r.vector();
         t.draw(gxAffineRectangle(o, x, r.vector()), r.props(), layer);
       }},
      {"polygon", gx_SketchCode::polygon, drawPolygon<gxPolygon::noFill>},
      {"polygon, alternate", gx_SketchCode::polygon, drawPolygon<gxPolygon::alternate>},
      {"polygon, winding", gx_SketchCode::polygon, drawPolygon<gxPolygon::winding>},
      {"circle, filled", gx_SketchCode::circleFilled,
       [](gxUITablet &t, OpRandom &r, Layers layer) {
         gxVector<2> const center = r.vector();
         t.draw(gxCircle(center, r.positive()), r.filled(true), layer);
       }},
      {"ellipse, filled", gx_SketchCode::ellipseFilled,
       [](gxUITablet &t, OpRandom &r, Layers layer) { t.draw(ellipse(r), r.filled(true), layer); }},
      {"general rectangle, filled", gx_SketchCode::genRectFilled,
       [](gxUITablet &t, OpRandom &r, Layers layer) { t.draw(anyGenRect(r), r.filled(true), layer); }},
      {"rectangle", gx_SketchCode::rect,
       [](gxUITablet &t, OpRandom &r, Layers layer) {
         gxRect const area = rect(r);
         t.draw(area, r.filled(r.flag()), layer);
       }},
  };
}

std::vector<OpVariant> curves()
{
  return {
      {"shape of a client", gx_SketchCode::genShape,
       [](gxUITablet &t, OpRandom &r, Layers layer) { drawShape(t, r, layer, r.text()); }},
      {"large shape of a client", gx_SketchCode::genShape,
       [](gxUITablet &t, OpRandom &r, Layers layer) { drawShape(t, r, layer, std::string(1000, 'x')); }},
      {"outline", gx_SketchCode::genPoly,
       [](gxUITablet &t, OpRandom &r, Layers layer) {
         gxGenPoly const polygon = outline(r);
         gxGraphicProps props = r.props();
         props.showVertex(false);
         t.draw(polygon, props, layer);
       }},
      {"text of 16-bit units", gx_SketchCode::unicodeString, drawUnicode},
      {"cross", gx_SketchCode::cross,
       [](gxUITablet &t, OpRandom &r, Layers layer) {
         gxVector<2> const center = r.vector();
         double const angle = r.angle();
         t.draw(gxCross(center, gxRadian(angle), r.below(30) - 5), r.props(), layer);
       }},
      {"outline with vertices", gx_SketchCode::genPolyVertices,
       [](gxUITablet &t, OpRandom &r, Layers layer) {
         gxGenPoly const polygon = outline(r);
         t.draw(polygon, r.color(), layer, true);
       }},
      {"section, with flags", gx_SketchCode::ellipseAnnulusSectionFlags, drawSection<false>},
      {"wireframe", gx_SketchCode::wireframe,
       [](gxUITablet &t, OpRandom &r, Layers layer) {
         gx2Wireframe const wireframe = outline(r);
         t.draw(wireframe, r.props(), layer);
       }},
      {"curve", gx_SketchCode::bezierCurve,
       [](gxUITablet &t, OpRandom &r, Layers layer) { t.draw(bezier(r), r.props(), layer); }},
      {"spline", gx_SketchCode::cubicSpline,
       [](gxUITablet &t, OpRandom &r, Layers layer) {
         gxInterpSpline spline(r.flag());
         spline.points(r.vectors(r.below(7)));
         t.draw(static_cast<gxCubicSpline const &>(spline), r.props(), layer);
       }},
      {"polyline", gx_SketchCode::polyline, drawPolyline<false>},
      {"closed polyline", gx_SketchCode::polyline, drawPolyline<true>},
      {"ellipse as a shape", gx_SketchCode::ellipse2,
       [](gxUITablet &t, OpRandom &r, Layers layer) {
         gxVector<2> const radii = r.sizes();
         double const angle = r.angle();
         t.draw(gxEllipse2(radii, gxRadian(angle), r.vector()), r.props(), layer);
       }},
      {"arc as a shape", gx_SketchCode::ellipseArc2,
       [](gxUITablet &t, OpRandom &r, Layers layer) {
         gxVector<2> const radii = r.sizes();
         double const angle = r.angle(), phase = r.angle();
         gxEllipse2 const whole(radii, gxRadian(angle), r.vector(), r.flag(), gxRadian(phase));
         double const start = r.angle();
         t.draw(gxEllipseArc2(whole, gxRadian(start), gxRadian(r.angle())), r.props(), layer);
       }},
      {"clip rectangle", gx_SketchCode::clipRect,
       [](gxUITablet &t, OpRandom &r, Layers layer) { t.drawClipRect(rect(r), layer); }},
  };
}

std::vector<OpVariant> joined()
{
  std::vector<OpVariant> all;
  for (auto const part : {plainShapes, textsAndImages, sketchAndAreas, penAndPolygons, curves}) {
    std::vector<OpVariant> const rows = part();
    all.insert(all.end(), rows.begin(), rows.end());
  }
  return all;
}
}  // namespace

std::vector<OpVariant> const &opVariants()
{
  static std::vector<OpVariant> const table = joined();
  return table;
}

gxUISketch recorded(OpVariant const &variant, unsigned seed)
{
  gxUITablet tablet;
  tablet.recordOn().push(true);
  OpRandom random(seed);
  variant.draw(tablet, random, static_cast<Layers>(seed % 3));
  return tablet.sketch();
}

gxUISketch randomSketch(unsigned seed, int count)
{
  OpRandom random(seed);
  gxUITablet tablet;
  tablet.recordOn().push(true);
  for (int i = 0; i < count; ++i) {
    auto const &table = opVariants();
    OpVariant const &variant = table[static_cast<std::size_t>(random.below(static_cast<long>(table.size())))];
    if (!variant.erases() && !variant.nests())
      variant.draw(tablet, random, static_cast<Layers>(random.below(3)));
  }
  return tablet.sketch();
}
