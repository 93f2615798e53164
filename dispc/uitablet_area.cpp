#include "dispc/detail/uisketch_blocks.h"
#include "dispc/detail/uitablet_draw.h"
#include "dispc/detail/uitablet_layers.h"
#include "foundation/numbers.h"

#include <algorithm>
#include <string>

// Rectangles of pels: set and its complement, outlines, flood fill, the display clip; and text.

namespace
{

/// The two forms of a rectangle in a record: a pel rectangle behind 1, or a client rectangle as a block behind 0.
constexpr long pelForm = 1 + 16;
constexpr long clientForm = 1 + gf_rectBlock;

void writeForm(gx_StreamWriter &payload, gxUIRect const &r)
{
  payload.flag(true).pair(r.ul()).pair(r.sz());
}

void writeForm(gx_StreamWriter &payload, gxRect const &r)
{
  payload.flag(false);
  gf_writeBlock(payload, r);
}

gxGraphicProps onePel(gxColor const &color)
{
  return gxGraphicProps(color, 1, gxGraphicProps::penSolid, false);
}

}  // namespace

/// The pels between two opposite corners. Only these two count: the map is not asked to keep the axes.
gxUIRect gxUITablet::pelRect(gxRect const &r) const
{
  gxPair<long> const first = scopeCoords(gxPoint(r.origin()));
  return gxUIRect(first, scopeCoords(gxPoint(r.origin() + r.size())) - first);
}

void gxUITablet::set(gxUIRect const &r, gxColor const &c, Layers layer)
{
  drawShape(
      layer, gf_penProps(c), gx_SketchCode::setRect, pelForm, [&](gxUIScope &scope) { scope.set(r, c); },
      [&](gx_StreamWriter &payload) { writeForm(payload, r); });
}

void gxUITablet::set(gxRect const &r, gxColor const &c, Layers layer)
{
  drawShape(
      layer, gf_penProps(c), gx_SketchCode::setRect, clientForm, [&](gxUIScope &scope) { scope.set(pelRect(r), c); },
      [&](gx_StreamWriter &payload) { writeForm(payload, r); });
}

void gxUITablet::set(gxColor const &color, Layers layer)
{
  if (okToDraw(layer))
    activeScope_[layer]->set(color);
  if (!recordOn_)
    return;
  sketch_.erase();  // all of it is covered now, on both layers
  if (gf_isSingleLayer(layer)) {
    gxRect const clip = clipRect_[layer];
    if (clip.size() != gxVector<2>())
      drawClipRect(clip, layer);
  }
  sketch_.record(gx_SketchCode::setAll, layer, gf_penProps(color), color, 0);
}

void gxUITablet::setComplement(gxUIRect const &r, gxColor const &c, Layers layer)
{
  drawShape(
      layer, gf_penProps(c), gx_SketchCode::setComplement, pelForm,
      [&](gxUIScope &scope) {
        gx_ScreenLocked const locked(scope);
        long const w = scopeRect_.width();
        long const h = scopeRect_.height();
        scope.set(gxUIRect(0, 0, r.right(), r.top()), c);
        scope.set(gxUIRect(r.right(), 0, w - r.right(), r.bottom()), c);
        scope.set(gxUIRect(r.left(), r.bottom(), w - r.left(), h - r.bottom()), c);
        scope.set(gxUIRect(0, r.top(), r.left(), h - r.top()), c);
      },
      [&](gx_StreamWriter &payload) { writeForm(payload, r); });
}

void gxUITablet::setComplement(gxRect const &r, gxColor const &c, Layers layer)
{
  drawShape(
      layer, gf_penProps(c), gx_SketchCode::setComplement, clientForm,
      [&](gxUIScope &) {
        gxFlagPush const unrecorded(recordOn_, false);
        setComplement(pelRect(r), c, layer);
      },
      [&](gx_StreamWriter &payload) { writeForm(payload, r); });
}

void gxUITablet::fill(gxPair<long> const &seed, gxColor const &fillColor, gxColor const &boundary, FillType type,
                      Layers layer)
{
  drawShape(
      layer, gf_penProps(fillColor, true), gx_SketchCode::fill, 1 + 8 + 6 + 4,
      [&](gxUIScope &scope) { scope.fill(seed, fillColor, boundary, type == boundaryFill); },
      [&](gx_StreamWriter &payload) { payload.flag(true).pair(seed).bytes(&boundary, sizeof boundary).word(type); });
}

void gxUITablet::fill(gxPoint const &seed, gxColor const &fillColor, gxColor const &boundary, FillType type,
                      Layers layer)
{
  drawShape(
      layer, gf_penProps(fillColor, true), gx_SketchCode::fill, 1 + 16 + 6 + 4,
      [&](gxUIScope &scope) { scope.fill(scopeCoords(seed), fillColor, boundary, type == boundaryFill); },
      [&](gx_StreamWriter &payload) { payload.flag(false).vector(seed).bytes(&boundary, sizeof boundary).word(type); });
}

void gxUITablet::outline3D(gxUIRect const &r, gxColor const &c1, gxColor const &c2, long width, Layers layer)
{
  drawShape(
      layer, gf_penProps(c1), gx_SketchCode::outline3D, pelForm + 16,
      [&](gxUIScope &scope) {
        gxGraphicProps const light = onePel(c1);
        gxGraphicProps const dark = onePel(c2);
        scope.drawStart(gxPoint(gxVector<2>(r.ul())));
        gx_ScreenLocked const locked(scope);
        long dx = r.width() - 1L;
        long dy = r.height() - 1L;
        for (long i = 0; i < width && dx >= 1 && dy >= 1; ++i, dx -= 2, dy -= 2) {
          scope.drawToRelPels(dx, 0, light);
          scope.drawToRelPels(0, dy, dark);
          scope.drawToRelPels(-dx, 0, dark);
          scope.drawToRelPels(0, -dy, light);
          scope.moveToRel(1, 1);
        }
      },
      [&](gx_StreamWriter &payload) {
        writeForm(payload, r);
        payload.bytes(&c1, sizeof c1).bytes(&c2, sizeof c2).word(width);
      });
}

void gxUITablet::outline3D(gxRect const &r, gxColor const &c1, gxColor const &c2, long width, Layers layer)
{
  drawShape(
      layer, gf_penProps(c1), gx_SketchCode::outline3D, clientForm + 16,
      [&](gxUIScope &) {
        gxFlagPush const unrecorded(recordOn_, false);
        outline3D(pelRect(r), c1, c2, width, layer);
      },
      [&](gx_StreamWriter &payload) {
        writeForm(payload, r);
        payload.bytes(&c1, sizeof c1).bytes(&c2, sizeof c2).word(width);
      });
}

void gxUITablet::outline(gxUIRect const &r, gxColor const &c, long width, Layers layer)
{
  outline3D(r, c, c, width, layer);
}

void gxUITablet::outline(gxRect const &r, gxColor const &c, long width, Layers layer)
{
  outline3D(r, c, c, width, layer);
}

void gxUITablet::draw(std::string const &text, gxPoint const &p, gxColor const &foreground, gxColor const &background,
                      gxUIFormat const &format, Layers layer)
{
  std::size_t const length = std::min(text.find('\0'), text.size());  // a text in a record ends at its first zero
  drawShape(
      layer, gf_penProps(foreground), gx_SketchCode::string, 31 + static_cast<long>(length),
      [&](gxUIScope &scope) {
        gxPoint tmp;
        scope.draw(text, mapPoint(p, layer, tmp), foreground, background, format);
      },
      [&](gx_StreamWriter &payload) {
        payload.vector(p).bytes(&background, sizeof background).word(format.fontId()).word(format.alignment());
        payload.bytes(text.data(), length).byte(0);
      });
}

gxUIRect gxUITablet::textRect(std::string const &text, gxPoint const &p, gxUIFormat const &format, gxUIRect &rect,
                              Layers layer)
{
  gf_needSingleLayer(layer);
  if (!activeScope_[layer])
    return gxUIRect();
  gxPoint tmp;
  return activeScope_[layer]->textRect(text, mapPoint(p, layer, tmp), format, rect);
}

void gxUITablet::drawClipRect(gxRect const &r, Layers layer)
{
  gf_needLayers(layer);
  gxVector<2> const o = r.origin();
  gxVector<2> const s = r.size();
  for (Layers const l : gf_eachLayer)
    if (shouldUpdate(l, layer))
      clipRect_[l] = gxRect(o, s);
  if (recordOn_)
    sketch_.record(gx_SketchCode::clipRect, layer, gxGraphicProps(), gxColor::cyanColor(), 32).vector(o).vector(s);

  gxVector<2> const corners[] = {scaledMap_ * o, scaledMap_ * (o + gxVector<2>(s.x(), 0.0)),
                                 scaledMap_ * (o + gxVector<2>(0.0, s.y())), scaledMap_ * (o + s)};
  auto const [minX, maxX] = std::ranges::minmax(corners, {}, [](gxVector<2> const &c) { return c.x(); });
  auto const [minY, maxY] = std::ranges::minmax(corners, {}, [](gxVector<2> const &c) { return c.y(); });
  gxPair<long> const first(gf_nudgedFloor(minX.x()), gf_nudgedFloor(minY.y()));
  gxUIRect const clip(first, gxPair<long>(gf_nudgedCeil(maxX.x()), gf_nudgedCeil(maxY.y())) - first);

  if (layer != both && okToDraw(layer)) {
    activeScope_[layer]->setDisplayClipRect(clip);
    return;
  }
  // A layer that was refused falls through to what both layers take, so that it can reach the other layer's scope.
  if (!visible() || !drawOn_)
    return;
  for (Layers const l : gf_eachLayer) {
    if (!hasSurface(l) || (l == overlay && !drawOnOverlay_))
      continue;
    stampDrawnIfOther();
    activeScope_[l]->setDisplayClipRect(clip);
  }
}
