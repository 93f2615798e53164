// Describes a device as a vision program does: from measured corners to a model with tolerances, leads and cuts.
//
//   describe_device          tells each step; fails if one does not come out as told
//
// docs/devices.md explains the terms. Lengths are millimetres.

#include "dispc/gxdisplay.h"

#include <cmath>
#include <iostream>
#include <string>

namespace
{

using Edit = gxSMDGDPolyPrivate;
constexpr long leadLabel = 7;

bool allAsTold = true;

void tell(bool holds, std::string const &what)
{
  std::cout << (holds ? "" : "NOT SO: ") << what << '\n';
  allAsTold = allAsTold && holds;
}

/// A body as somebody clicked it in a camera image: turned, and its corners a bit off.
gxSMDGDPoly measuredBody()
{
  gxSMDGDPoly body("body");
  for (gxVector<2> const &p : {gxVector<2>(-1.46, -0.64), {1.44, -0.66}, {1.45, 0.65}, {-1.45, 0.66}})
    body << gxSMDGDPolyVertex(p, 0.5, 0.5, -1);
  body.close();
  return gx2Rigid(gxDegree(8), {0, 0}) * body;
}

/// Right angles, and the sides along the axes.
gxSMDGDPoly straightened(gxSMDGDPoly body)
{
  tell(!Edit::isRectilinear(body), "the measured body has no right angles");
  Edit::snapRectilinear(body);
  body = gx2Rigid(-Edit::dominantAngle(body), {0, 0}) * body;
  gxRect const box = Edit::boundingBox(body, gxXform<2>());
  tell(std::abs(box.size().x() - 2.9) < 0.01 && std::abs(box.size().y() - 1.3) < 0.01, "snapped, it is 2.9 by 1.3");
  return body;
}

/// Round corners, and how far the side that ends at vertex 1 may be off. Vertices are copied, changed and put back.
void refine(gxSMDGDPoly &body)
{
  for (int v = 0; v < body.numVertices(); ++v) {
    gxSMDGDPolyVertex corner = body.vertex(v, false);
    corner.vertexRadius(0.2);
    body.replaceVertex(v, corner);
  }
  gxSMDGDPolyVertex corner = body.vertex(1, false);
  corner.segmentLengthTol(gxDimTol(2.9, 2.8, 3.0));
  body.replaceVertex(1, corner);

  gxSMDGDPoly const before = body;
  try {
    corner.point(corner.point() + gxVector<2>(0.5, 0));
    body.replaceVertex(1, corner);
    tell(false, "a side outside of its tolerance is refused");
  } catch (gxException const &refusal) {
    tell(body == before, std::string("a side of 3.4 is refused, and the body kept: ") + refusal.what());
  }
}

/// A lead above the body, with an arc for its far end.
gxSMDGDPoly lead(double x)
{
  gxSMDGDPoly poly("lead");
  for (gxVector<2> const &p : {gxVector<2>(x - 0.2, 0.8), {x + 0.2, 0.8}, {x + 0.2, 1.2}})
    poly << gxSMDGDPolyVertex(p, 0.5, 0.5, leadLabel);
  poly << gxSMDGDPolyVertex({x - 0.2, 1.2}, 0.0, gxDegree(120), 0.5, 0.5, leadLabel, gxDimTol());
  poly.close();
  return poly;
}

}  // namespace

int main()
{
  try {
    gxSMDGDPoly body = straightened(measuredBody());
    refine(body);

    gxSMDGDModel device("sot");
    device << body << lead(-0.8) << lead(0.8);
    tell(device.numPolys() == 3 && device.numVertices() == 12, "the device has 3 outlines and 12 vertices");

    // Pieces of outlines round the labelled vertices, moved to the origin: what one searches for by itself.
    gxSMDGDModel leads;
    device.subModel(leadLabel, leads);
    gxVector<2> const where = gxSMDGDModelPrivate::position(leads).translation();
    tell(leads.numPolys() == 8 && std::abs(where.x()) < 1e-9 && where.y() > 0.8,
         "the sub-model of the leads has a piece for each labelled vertex, and lay above the body");

    // What a camera that sees the right half would find.
    gxSMDGDPoly const window = gxSMDGDPoly::rectangle(4, 4, {2, 0});
    gxSMDGDModel const half = gxSMDGDModelPrivate::crop(device, window, true);
    tell(half.numPolys() == 2, "cut at x = 0, a piece of the body and one lead stay");
    tell(gxSMDGDModelPrivate::boundingBox(half, gxXform<2>()).lowCorner().x() > -1e-9, "nothing stays left of the cut");
  } catch (gxException const &error) {
    tell(false, std::string("no step fails: ") + error.what());
  }
  return allAsTold ? 0 : 1;
}
