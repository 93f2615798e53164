#include "dispc/detail/sketchop_table.h"
#include "dispc/detail/uitablet_layers.h"
#include "dispc/detail/uitablet_measure.h"
#include "dispc/uitablet.h"

#include <cstddef>

// Playback: a tablet draws a sketch, and measures one.

namespace
{

/// Reads every record, so that properties carry over and the position stays right, and draws those of the layer.
void playRecords(gxUITablet &tablet, gxUISketch const &sketch, gxUITablet::Layers layer)
{
  gx_UISketchOpHeader header;
  gx_SketchOpTable ops;
  unsigned char const *at = sketch.bytes();
  unsigned char const *const end = at + sketch.size();
  while (at < end) {
    at += header.parseByteStream(at);
    if (header.layer() == gxUITablet::both)
      header.layer(layer);
    gx_UISketchOpData &op = ops[header.opcode()];
    at += op.parseByteStream(at);
    if (layer == gxUITablet::both || header.layer() == layer)
      op.draw(tablet, header);
  }
}

}  // namespace

void gxUITablet::draw(gxUISketch const &sketch, gxPoint const &offset, Layers layer)
{
  if (sketch.isNull())
    return;
  if (drawOn_)
    play(sketch, offset, layer);
  if (!recordOn_)
    return;
  long const n = sketch.size();  // it may be this tablet's own, which is about to grow
  sketch_.record(gx_SketchCode::sketch, layer, gxGraphicProps(), gxColor(0), 20 + n)
      .vector(offset)
      .word(n)
      .bytes(sketch.bytes(), static_cast<std::size_t>(n));
}

/// Without guards: if an op throws, the map stays shifted, recording off and the screen locked, as clients are told.
void gxUITablet::play(gxUISketch const &sketch, gxPoint const &offset, Layers layer)
{
  gf_needLayers(layer);
  recordOn_.push(false);
  gxXform<2> const map = scaledMap_;
  scaledMap_ = map * gxXform<2>(gxMatrix<2>(), offset);
  lockScreenUpdatesPush(true, layer);
  batch(true, layer);
  playRecords(*this, sketch, layer);
  scaledMap_ = map;
  batch(false, layer);
  lockScreenUpdatesPop(layer);
  recordOn_.pop();
}

void gxUITablet::batch(bool on, Layers layers)
{
  for (Layers const layer : gf_eachLayer)
    if (shouldUpdate(layer, layers))
      optimizeDrawing(on, layer);
}

gxUIRect gxUITablet::encloseRect(gxUISketch const &sketch, gxPoint const &offset, Layers layer) const
{
  gf_needSingleLayer(layer);
  if (!currentScope_[layer])
    return gxUIRect::null;
  gx_MeasuringScope scope(scopeRect_.sz(), *currentScope_[layer]);
  gxUITablet measure;
  measure.recordOn_ = false;
  measure.drawOn_ = true;
  measure.drawOnOverlay_ = true;
  measure.visible(true);
  measure.setScope(layer, &scope, false);
  if (!scaledMap_.isIdentity())
    measure.baseMap(baseMap_).scaleMode(scaleMode_).scaleExact(scaleExact_);
  scope.clientChangeEnable(true);
  measure.draw(sketch, offset, layer);
  return scope.clientChangedRect(false);
}
