// A surface without a picture: it counts what is drawn and measures how much room that takes.
//
//   measuring_surface        fails if the sizes and counts are not what they should be
//
// A complete back end in the smallest form, to begin one's own with; docs/surfaces.md explains each part. Here it
// answers what a program asks before it prints: how large is this drawing, and how many calls does it take?

#include "dispc/gxdisplay.h"

#include <cmath>
#include <iostream>
#include <memory>

namespace
{

/// What a surface and all its parts have in common.
struct Tally {
  long shapes = 0;
  long images = 0;
  long texts = 0;
};

class MeasuringScope : public gxUIScope
{
 public:
  explicit MeasuringScope(gxPair<long> size) : size_(size), tally_(std::make_shared<Tally>()) {}

  Tally const &tally() const { return *tally_; }

  // The surface. A part shares the tally, as the part of a window shares its memory: by ownership, since a part may
  // outlive the scope that made it.

  void moveSurface(gxUIScope const &parent, gxUIRect const &rectInParent) override
  {
    auto const &above = dynamic_cast<MeasuringScope const &>(parent);
    tally_ = above.tally_;
    size_ = rectInParent.sz();
  }
  gxUIScope *newSubScope(gxUIRect const &rect, bool temporary) override
  {
    auto part = std::make_unique<MeasuringScope>(rect.sz());
    part->isTemporary_ = temporary;
    if (temporary) {
      part->subset(*this, rect);  // keeps the coordinates of this scope, and only cuts
      part->setDisplayClipRect(displayClipRect());
    } else {
      part->move(*this, rect);  // has coordinates of its own
    }
    return part.release();
  }
  bool isNull() const override { return false; }
  gxPair<long> size() const override { return size_; }

  // There is no screen, and nothing to drag on it.

  void dragStart() override {}
  void dragStop() override {}
  void dragErase() override {}
  void dragAnimate(bool) override {}

  // Shapes.

  using gxUIScope::draw;
  void draw(gxPoint const &p, gxGraphicProps const &props) override
  {
    if (p.isFinite())
      shape({pelOf(p)}, props);
  }
  void draw(gxLineSeg const &s, gxGraphicProps const &props) override { curve(s, props); }
  void draw(gxPolygon const &s, gxGraphicProps const &props) override { corners(s.vertices(), props); }
  void draw(gxPolyline const &s, gxGraphicProps const &props) override { corners(s.vertices(), props); }
  void draw(gxEllipse const &s, gxGraphicProps const &props) override { curve(s, props); }
  void draw(gxEllipse2 const &s, gxGraphicProps const &props) override { curve(s, props); }
  void draw(gxEllipseArc const &s, gxGraphicProps const &props) override { curve(s, props); }
  void draw(gxEllipseArc2 const &s, gxGraphicProps const &props) override { curve(s, props); }
  void draw(gxGenRect const &s, gxGraphicProps const &props) override { curve(s, props); }

  // The pen.

  void drawTo(gxPoint const &to, gxGraphicProps const &props) override
  {
    if (to.isFinite())
      shape({{drawX(), drawY()}, pelOf(to)}, props);
    drawStart(to);
  }
  void drawToRelPels(long dx, long dy, gxGraphicProps const &props) override
  {
    gxPair<long> const from(drawX(), drawY());
    shape({from, from + gxPair<long>(dx, dy)}, props);
    moveToRel(dx, dy);
  }

  // Areas. Rectangles come in device pels, as points do.

  void set(gxUIRect const &rect, gxColor const &) override { touched(rect - org(), true, tally_->shapes); }
  void set(gxColor const &) override { touched(gxUIRect(gxPair<long>(), size_), true, tally_->shapes); }
  void fill(gxPair<long> const &, gxColor const &, gxColor const &, bool) override
  {
    touched(gxUIRect(gxPair<long>(), size_), false, tally_->shapes);  // how far it runs, only a picture could tell
  }

  // Text: eight pels by twelve for each character.

  void draw(std::string const &text, gxPoint const &at, gxColor const &, gxColor const &,
            gxUIFormat const &format) override
  {
    gxUIRect rect;
    touched(textRect(text, at, format, rect) - org(), false, tally_->texts);
  }
  gxUIRect textRect(std::string const &text, gxPoint const &at, gxUIFormat const &format, gxUIRect &rect) override
  {
    gxPair<long> const size(8 * static_cast<long>(text.size()), 12);
    return rect = format.alignRect(gxUIRect(pelOf(at), size)) + org();
  }

  // Images, at their own size or scaled.

  void draw(gxRLEBuffer const &b, gxPoint const &at, std::vector<gxColor> const &, bool pass, unsigned char) override
  {
    image(b.size(), at, {1, 1}, pass);
  }
  void draw(gxRLEBuffer const &b, gxPoint const &at, std::vector<unsigned char> const &, bool pass,
            unsigned char) override
  {
    image(b.size(), at, {1, 1}, pass);
  }
  void draw(gxPelBuffer_const<unsigned char> const &b, gxPoint const &at, bool pass, unsigned char, bool) override
  {
    image(b.size(), at, {1, 1}, pass);
  }
  void draw(gxPelBuffer_const<unsigned short> const &b, gxPoint const &at, bool pass, unsigned short) override
  {
    image(b.size(), at, {1, 1}, pass);
  }
  void draw(gxPelBuffer_const<gxPackedRGB16Pel> const &b, gxPoint const &at, bool pass, unsigned short) override
  {
    image(b.size(), at, {1, 1}, pass);
  }
  void draw(gxPelBuffer_const<gxPackedRGB32Pel> const &b, gxPoint const &at, bool pass, unsigned long) override
  {
    image(b.size(), at, {1, 1}, pass);
  }
  using gxUIScope::sample;
  void sample(gxPelBuffer_const<unsigned char> const &b, gxPoint const &at, gxPair<double> const &scale, bool pass,
              unsigned char, bool) override
  {
    image(b.size(), at, scale, pass);
  }
  void sample(gxPelBuffer_const<unsigned short> const &b, gxPoint const &at, gxPair<double> const &scale, bool pass,
              unsigned short) override
  {
    image(b.size(), at, scale, pass);
  }
  void sample(gxPelBuffer_const<gxPackedRGB16Pel> const &b, gxPoint const &at, gxPair<double> const &scale, bool pass,
              unsigned short) override
  {
    image(b.size(), at, scale, pass);
  }
  void sample(gxPelBuffer_const<gxPackedRGB32Pel> const &b, gxPoint const &at, gxPair<double> const &scale, bool pass,
              unsigned long) override
  {
    image(b.size(), at, scale, pass);
  }
  using gxUIScope::expand;
  void expand(gxPelBuffer_const<unsigned char> const &b, gxPoint const &at, gxPair<double> const &scale, bool pass,
              unsigned char, bool, InterpolationModes) override
  {
    image(b.size(), at, scale, pass);
  }
  void expand(gxPelBuffer_const<unsigned short> const &b, gxPoint const &at, gxPair<double> const &scale, bool pass,
              unsigned short, InterpolationModes) override
  {
    image(b.size(), at, scale, pass);
  }
  void expand(gxPelBuffer_const<gxPackedRGB16Pel> const &b, gxPoint const &at, gxPair<double> const &scale, bool pass,
              unsigned short, InterpolationModes) override
  {
    image(b.size(), at, scale, pass);
  }
  void expand(gxPelBuffer_const<gxPackedRGB32Pel> const &b, gxPoint const &at, gxPair<double> const &scale, bool pass,
              unsigned long, InterpolationModes) override
  {
    image(b.size(), at, scale, pass);
  }

 private:
  using Pel = gxPair<long>;

  Pel pelOf(gxPoint const &p) const { return {xCoord(p), yCoord(p)}; }

  /// What every drawing does in the end: count, say that this layer holds something now, report the change.
  void touched(gxUIRect const &rect, bool opaque, long &count)
  {
    ++count;
    modified(true);
    if (isTemporary_ && parent())
      parent()->modified(true);  // what is drawn through the part stays on the whole
    if (trackChanges())
      change(rect, opaque && displayClipRect().isNull());
  }
  void shape(std::initializer_list<Pel> corners, gxGraphicProps const &props)
  {
    gxUIRect box;
    for (Pel const &pel : corners)
      box |= gxUIRect(pel, {1, 1});
    long const around = props.penWidth() / 2;
    touched(gxUIRect(box.ul() - Pel(around, around), box.sz() + Pel(2 * around, 2 * around)), false, tally_->shapes);
  }
  void corners(std::vector<gxVector<2>> const &vertices, gxGraphicProps const &props)
  {
    if (!vertices.empty())
      curve(gxPolygon(vertices), props);
  }
  template <class Curve>
  void curve(Curve const &curve, gxGraphicProps const &props)
  {
    try {
      box(curve.boundingBox(), props);
    } catch (gxShapesError::Errors const &) {  // numbers that are not finite have no box
    }
  }
  /// Numbers that are not finite are drawn nowhere.
  void box(gxRect const &box, gxGraphicProps const &props)
  {
    if (box.origin().isFinite() && box.size().isFinite())
      shape({pelOf(gxPoint(box.origin())), pelOf(gxPoint(box.origin() + box.size()))}, props);
  }
  static bool isScale(double scale) { return scale > 0.0 && std::isfinite(scale); }
  void image(gxPair<long> const &size, gxPoint const &at, gxPair<double> const &scale, bool pass)
  {
    if (!isScale(scale.x()) || !isScale(scale.y()))
      return;
    gxPair<double> const scaled(static_cast<double>(size.x()) * scale.x(), static_cast<double>(size.y()) * scale.y());
    touched(gxUIRect(pelOf(at), gxPair<long>(scaled)), !pass, tally_->images);
  }

  gxPair<long> size_;
  bool isTemporary_ = false;
  std::shared_ptr<Tally> tally_;
};

/// A board with its parts, in millimetres.
void drawBoard(gxUITablet &tablet)
{
  auto const layer = gxUITablet::overlay;
  tablet.draw(gxRect({0, 0}, {40, 25}), gxColor::greenColor(), layer, false);
  for (int row = 0; row < 3; ++row)
    for (int column = 0; column < 5; ++column)
      tablet.draw(gxCircle({4 + 8.0 * column, 4 + 8.0 * row}, 1.2), gxColor::yellowColor(), layer, true);
  tablet.draw(gxLineSeg({4, 4}, {36, 20}), gxColor::redColor(), layer);
  tablet.draw("U1", {20, 12}, gxColor::whiteColor(), gxColor::passColor(), gxUIFormat(gxUIFormat::center), layer);
}

}  // namespace

int main()
{
  MeasuringScope overlay({640, 480});
  gxUITablet window(nullptr, &overlay);
  window.visible(true);
  bool allAsTold = true;
  for (long const pelsPerMillimetre : {4, 10}) {
    double const scale = static_cast<double>(pelsPerMillimetre);
    window.baseMap(gxXform<2>(gxMatrix<2>(scale, 0, 0, scale), {10, 10}));
    overlay.clientChangeEnable(true);
    drawBoard(window);
    gxUIRect const taken = overlay.clientChangedRect(false);
    std::cout << "at " << pelsPerMillimetre << " pels a millimetre the board takes " << taken << '\n';
    allAsTold = allAsTold && taken == gxUIRect(10, 10, 40 * pelsPerMillimetre + 1, 25 * pelsPerMillimetre + 1);
  }

  gxUITablet corner(window, gxUIRect(500, 400, 140, 80));  // draws on a part, and the part counts with the whole
  corner.visible(true);
  drawBoard(corner);
  Tally const &tally = overlay.tally();
  std::cout << tally.shapes << " shapes, " << tally.images << " images, " << tally.texts << " texts in all\n";
  return allAsTold && tally.shapes > 0 && tally.texts == 3 ? 0 : 1;
}
