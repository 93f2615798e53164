#include "dispc/wrfm/poly.h"

#include "dispc/wrfm/polyprivate.h"
#include "foundation/archive.h"

#include <algorithm>

#define GX_POLY_ERROR(Leaf, number, text) GX_EXCEPTION_IMPL(gxSMDGDPoly::Leaf, gxSMDGDPoly::Errors, Leaf, number, text)

GX_EXCEPTION_IMPL(gxSMDGDPoly::Errors, gxException, Errors, 0x110003ff, "Invalid poly.")

GX_POLY_ERROR(invalidVertices, 0x11000360, "Invalid poly vertices.")
GX_POLY_ERROR(crossingSegments, 0x11000361, "Two or more poly segments cross.")
GX_POLY_ERROR(invalidIndex, 0x11000362, "Invalid index for poly vertex or segment.")
GX_POLY_ERROR(invalidRounding, 0x11000363, "Invalid radius for poly vertex rounding.")
GX_POLY_ERROR(noPelBuffer, 0x11000364, "No pel buffer to draw on.")
GX_POLY_ERROR(badSubModel, 0x11000365, "The specified sub-model is not 2D")
GX_POLY_ERROR(notClosed, 0x11000366, "An operation was performed which requires a closed poly.")

gxSMDGDPoly::~gxSMDGDPoly() = default;

gxSMDGDPoly &gxSMDGDPoly::operator=(gxSMDGDPoly const &other)
{
  if (this != &other)
    *this = gxSMDGDPoly(other);  // all or nothing
  return *this;
}

// ---- Factories

gxSMDGDPoly gxSMDGDPoly::circle(double radius, gxVector<2> const &center)
{
  gxSMDGDPoly poly;
  for (double const x : {center.x() - radius, center.x() + radius}) {
    gxSMDGDPolyVertex v({x, center.y()}, 0.5, 0.5, 0);
    v.segmentAngleSpan(gxDegree(180.0));
    poly << v;
  }
  poly.close();
  return poly;
}

gxSMDGDPoly gxSMDGDPoly::rectangle(double width, double height, gxVector<2> const &center)
{
  gxSMDGDPoly poly;
  gxVector<2> const half(width / 2.0, height / 2.0);
  poly << gxSMDGDPolyVertex({center.x() + half.x(), center.y() + half.y()}, 0.5, 0.5, 0)
       << gxSMDGDPolyVertex({center.x() - half.x(), center.y() + half.y()}, 0.5, 0.5, 1)
       << gxSMDGDPolyVertex({center.x() - half.x(), center.y() - half.y()}, 0.5, 0.5, 2)
       << gxSMDGDPolyVertex({center.x() + half.x(), center.y() - half.y()}, 0.5, 0.5, 3);
  poly.close();
  return poly;
}

gxSMDGDPoly gxSMDGDPoly::triangle(double base, double height, gxVector<2> const &center)
{
  gxSMDGDPoly poly;
  double const bottom = center.y() - height / 3.0;
  poly << gxSMDGDPolyVertex({center.x(), center.y() + 2.0 * height / 3.0}, 0.5, 0.5, 0)
       << gxSMDGDPolyVertex({center.x() - base / 2.0, bottom}, 0.5, 0.5, 1)
       << gxSMDGDPolyVertex({center.x() + base / 2.0, bottom}, 0.5, 0.5, 2);
  poly.close();
  return poly;
}

// ---- Indices

std::size_t gxSMDGDPoly::wrapped_(long index, bool wrap) const
{
  long const n = numVertices();
  if (n == 0 || (!wrap && (index < 0 || index >= n)))
    throw invalidIndex();
  long const within = index % n;
  return static_cast<std::size_t>(within < 0 ? within + n : within);
}

int gxSMDGDPoly::segmentIndex_(int index, bool wrap) const
{
  int const s = vertexIndex_(index, wrap);
  if (s == 0 && isOpen_)
    throw invalidIndex();
  return s;
}

int gxSMDGDPoly::lastSegmentIndex_() const
{
  int const last = lastVertexIndex_();
  return isOpen_ ? previousSegmentIndex_(last) : nextSegmentIndex_(last);
}

int gxSMDGDPoly::previousSegmentIndex_(int vertex) const
{
  int const v = vertexIndex_(vertex, false);
  return v == 0 && isOpen_ ? -1 : v;
}

int gxSMDGDPoly::nextSegmentIndex_(int vertex) const
{
  if (vertexIndex_(vertex, false) != numVertices() - 1)
    return vertex + 1;
  return isOpen_ ? -1 : 0;
}

void gxSMDGDPoly::getSegmentIndices_(int &prev, int &next, int vertex) const
{
  prev = previousSegmentIndex_(vertex);
  next = nextSegmentIndex_(vertex);
}

int gxSMDGDPoly::previousVertexIndex_(int segment) const
{
  return vertexIndex_(segmentIndex_(segment, false) - 1, true);
}

int gxSMDGDPoly::nextVertexIndex_(int segment) const
{
  return segmentIndex_(segment, false);
}

void gxSMDGDPoly::getVertexIndices_(int &start, int &end, int segment) const
{
  start = previousVertexIndex_(segment);
  end = nextVertexIndex_(segment);
}

bool gxSMDGDPoly::isEndVertex(int vertex) const
{
  int const v = vertexIndex_(vertex, false);
  return isOpen_ && (v == 0 || v == numVertices() - 1);
}

// ---- Attributes

void gxSMDGDPoly::toggleDirection()
{
  mutating();
  directionReversed_ = !directionReversed_;
}

void gxSMDGDPoly::colors(gxSMDColors const &colors)
{
  mutating();
  colors_ = colors;
}

void gxSMDGDPoly::positiveArrowColor(gxColor const &color)
{
  mutating();
  positiveArrowColor_ = color;
}

void gxSMDGDPoly::negativeArrowColor(gxColor const &color)
{
  mutating();
  negativeArrowColor_ = color;
}

void gxSMDGDPoly::weight(double weight)
{
  mutating();
  weight_ = weight;
}

void gxSMDGDPoly::forwardPercExtension_(int v, double fraction)
{
  std::size_t const i = vertexAt_(v, false);
  mutating();
  vertices_[i].forwardPercExtension_ = fraction;
}

void gxSMDGDPoly::backwardPercExtension_(int v, double fraction)
{
  std::size_t const i = vertexAt_(v, false);
  mutating();
  vertices_[i].backwardPercExtension_ = fraction;
}

// ---- Comparison and mapping

namespace
{
template <class Same>
bool sameOutlines(gxSMDGDPoly const &a, gxSMDGDPoly const &b, double weightEps, Same sameVertices)
{
  return a.isOpen() == b.isOpen() && a.numVertices() == b.numVertices() &&
         std::equal(a.vertices().begin(), a.vertices().end(), b.vertices().begin(), sameVertices) &&
         a.isDirectionReversed() == b.isDirectionReversed() && a.colors() == b.colors() &&
         a.positiveArrowColor() == b.positiveArrowColor() && a.negativeArrowColor() == b.negativeArrowColor() &&
         gfRealEq(a.weight(), b.weight(), weightEps);
}

template <class Map>
std::vector<gxSMDGDPolyVertex> mapped(gxSMDGDPoly const &poly, Map const &map)
{
  std::vector<gxSMDGDPolyVertex> vertices;
  vertices.reserve(poly.vertices().size());
  for (gxSMDGDPolyVertex const &v : poly.vertices())
    vertices.push_back(map * v);
  return vertices;
}
}  // namespace

bool operator==(gxSMDGDPoly const &a, gxSMDGDPoly const &b)
{
  return sameOutlines(a, b, gxSMDGDPoly::kSpanEpsilon, [](auto const &v, auto const &w) { return (v == w) != 0; });
}

bool gfRealEq(gxSMDGDPoly const &a, gxSMDGDPoly const &b, double eps)
{
  return sameOutlines(a, b, eps, [eps](auto const &v, auto const &w) { return gfRealEq(v, w, eps); });
}

gxSMDGDPoly operator*(double s, gxSMDGDPoly const &poly)
{
  gxSMDGDPoly image(poly);
  image.vertices(mapped(poly, s));
  return image;
}

gxSMDGDPoly operator*(gx2Rigid const &map, gxSMDGDPoly const &poly)
{
  gxSMDGDPoly image(poly);
  image.vertices(mapped(poly, map));
  return image;
}

std::ostream &operator<<(std::ostream &os, gxSMDGDPoly const &poly)
{
  os << (poly.isOpen() ? "open" : "closed") << " \"" << poly.name() << '"';
  for (gxSMDGDPolyVertex const &v : poly.vertices())
    os << "; " << v;
  return os;
}
