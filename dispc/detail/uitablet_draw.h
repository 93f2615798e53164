#pragma once

#include "dispc/detail/uitablet_guards.h"
#include "dispc/uitablet.h"

/// What stands before the payload of a record.
struct gx_RecordHead {
  gx_SketchCode code;
  gxGraphicProps const &props;
  gxColor const &color;
};

/// The pattern of every drawing operation. Internal to the tablet's sources.
///
/// The scope comes first: if it throws, nothing is recorded. A draw that is refused maps nothing, so all that a shape
/// needs for the scope is done inside @p toScope(scope). The record holds the shape as the client gave it: @p bytes of
/// payload, which @p toSketch(writer) fills.
template <class ToScope, class ToSketch>
void gxUITablet::drawRecorded(Layers layer, gx_RecordHead const &head, long bytes, ToScope const &toScope,
                              ToSketch const &toSketch)
{
  if (okToDraw(layer))
    toScope(*activeScope_[layer]);
  if (recordOn_) {
    gx_StreamWriter payload = sketch_.record(head.code, layer, head.props, head.color, bytes);
    toSketch(payload);
  }
}

/// The usual case: the caller's properties, and their pen colour in the head.
template <class ToScope, class ToSketch>
void gxUITablet::drawShape(Layers layer, gxGraphicProps const &props, gx_SketchCode code, long bytes,
                           ToScope const &toScope, ToSketch const &toSketch)
{
  drawRecorded(layer, {code, props, props.penColor()}, bytes, toScope, toSketch);
}

/// Default properties with the pen of one colour: what the forms of the drawing operations with a colour draw with.
inline gxGraphicProps gf_penProps(gxColor const &color, bool fill = false)
{
  gxGraphicProps props;
  props.penColor(color);
  props.fill(fill);
  return props;
}
