#include "dispc/detail/polygonfields.h"
#include "dispc/detail/uisketch_blocks.h"
#include "dispc/detail/uitablet_dispatch.h"
#include "dispc/detail/uitablet_draw.h"
#include "dispc/wrfm/wirefrm.h"

// Drawing of polygons and wireframes. The polygon draws itself on the scope, through the map of the tablet, so that no
// image of it is made.

template <class Polygon>
void gxUITablet::drawPolygon(Polygon const &polygon, gxGraphicProps const &props, gx_SketchCode code, Layers layer)
{
  drawShape(
      layer, props, code, gf_polygonBytes + gf_polygonVertexBytes * polygon.numVertices(),
      [&](gxUIScope &scope) {
        gxGenPoly::checkMap_(scaledMap_);
        gx_ScreenLocked const locked(scope);
        polygon.drawToScope_(scaledMap_, props, scope);
      },
      [&](gx_StreamWriter &payload) { gf_writeFields(payload, static_cast<gxGenPoly const &>(polygon)); });
}

namespace
{
gxGraphicProps vertexProps(gxColor const &color, bool showVertex)
{
  gxGraphicProps props = gf_penProps(color);
  props.showVertex(showVertex);
  props.arrowHead(false);
  return props;
}
}  // namespace

void gxUITablet::draw(gxGenPoly const &polygon, gxGraphicProps const &props, Layers layer)
{
  gxGraphicProps plain = props;
  plain.arrowHead(false);
  drawPolygon(polygon, plain, props.showVertex() ? gx_SketchCode::genPolyVertices : gx_SketchCode::genPoly, layer);
}

void gxUITablet::draw(gxGenPoly const &polygon, gxColor const &color, Layers layer, bool showVertex)
{
  draw(polygon, vertexProps(color, showVertex), layer);
}

void gxUITablet::draw(gx2Wireframe const &wireframe, gxGraphicProps const &props, Layers layer)
{
  drawPolygon(wireframe, props, gx_SketchCode::wireframe, layer);
}

void gxUITablet::draw(gx2Wireframe const &wireframe, gxColor const &color, Layers layer, bool showVertex)
{
  draw(wireframe, vertexProps(color, showVertex), layer);
}

bool gf_drawIfPolygon(gxUITablet &tablet, gxShape const &shape, gx2XformBase const *xform, gxGraphicProps const &props,
                      gxUITablet::Layers layer)
{
  auto const *const polygon = dynamic_cast<gxGenPoly const *>(&shape);
  if (!polygon)
    return false;
  if (xform)
    tablet.draw(gf_linearImage(*polygon, *xform), props, layer);
  else
    tablet.draw(*polygon, props, layer);
  return true;
}
