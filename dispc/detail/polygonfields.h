#pragma once

#include "dispc/detail/uisketch_fields.h"
#include "dispc/detail/uisketch_io.h"
#include "dispc/dimtol.h"
#include "dispc/wrfm/detail/polyfields.h"
#include "dispc/wrfm/genpoly.h"

#include <cstdint>
#include <utility>

/// @file
/// The payload of polygons and wireframes, as dispc/detail/uisketch_fields.h has it of other shapes. The roundings are
/// stored with the vertices, so a reader computes nothing.

inline constexpr long gf_polygonBytes = 68;
inline constexpr long gf_polygonVertexBytes = 104;

template <class Io>
void gf_describe(Io &io, gx_Field<Io, gxDimTol> &tol)
{
  double nominal = tol.nomDim(), low = tol.minTol(), high = tol.maxTol();
  gxDimTol::TolType type = tol.tolType();
  io("nominal", nominal);
  io("low", low);
  io("high", high);
  io("form", type);
  io.gap(4);
  if constexpr (Io::reads)
    tol = gx_PolyFields::tolerance(nominal, low, high, type);
}

template <class Io>
void gf_describe(Io &io, gx_Field<Io, gxSMDGDPolyVertex> &vertex)
{
  gxVector<2> point = vertex.point();
  double radius = vertex.vertexRadius(), span = vertex.segmentAngleSpan().value();
  gxDimTol tol = vertex.segmentLengthTol();
  io("point", point);
  io("radius", radius);
  io("span", span);
  io("tolerance", tol);
  if constexpr (Io::reads)
    gx_PolyFields::fill(vertex, point, radius, span, tol);
}

/// Tells the fields of a polygon, and puts it together where they come in.
class gx_GenPolyFields
{
 public:
  template <class Io>
  static void describe(Io &io, gx_Field<Io, gxGenPoly> &polygon)
  {
    gxXform<2> xform = polygon.xform();
    auto isMutable = static_cast<std::int32_t>(polygon.isMutable());
    io("transform", xform);
    io("mutable", isMutable);
    auto const n = static_cast<std::size_t>(io.count("vertices", polygon.numVertices(), gf_polygonVertexBytes));
    if constexpr (Io::reads) {
      gx_PolyFields::Content content = gx_PolyFields::take(polygon.poly_);
      content.vertices.resize(n);
      content.prevRoundPoints.resize(n);
      content.nextRoundPoints.resize(n);
      content.roundSpans.resize(n);
      auto const isOpen = each(io, content.vertices, content.prevRoundPoints, content.nextRoundPoints,
                               content.roundSpans, std::int32_t());
      content.isOpen = isOpen != 0;
      gx_PolyFields::refill(polygon.poly_, std::move(content));
      polygon.xform_ = xform;
      polygon.mutable_ = isMutable != 0;
      io.require(!io.version0() || (!gx_PolyFields::fault(polygon.poly_) && !polygon.faultOfLoaded_()));
    } else {
      gxSMDGDPoly const &poly = polygon.poly();
      each(io, gx_PolyFields::vertices(poly), gx_PolyFields::prevRoundPoints(poly),
           gx_PolyFields::nextRoundPoints(poly), gx_PolyFields::roundSpans(poly),
           static_cast<std::int32_t>(poly.isOpen()));
    }
  }

 private:
  template <class Io, class Vertices, class Points, class Spans>
  static std::int32_t each(Io &io, Vertices &vertices, Points &prev, Points &next, Spans &spans, std::int32_t isOpen)
  {
    if constexpr (Io::isText) {
      io.list(vertices);
    } else {
      for (auto &vertex : vertices)
        io("", vertex);
      for (auto *const ends : {&prev, &next})
        for (auto &p : *ends)
          io("", p);
      for (auto &span : spans)
        io("", span);
    }
    io("open", isOpen);
    return isOpen;
  }
};

template <class Io>
void gf_describe(Io &io, gx_Field<Io, gxGenPoly> &polygon)
{
  gx_GenPolyFields::describe(io, polygon);
}
