#include "footprint/edges.h"

#include "dispc/wrfm/polyprivate.h"
#include "footprint/detail/edgeprofile.h"
#include "foundation/lineseg.h"
#include "foundation/shapeserror.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

namespace
{

using Buffer = gxPelBuffer<unsigned char>;
using P = gxSMDGDPolyPrivate;

/// What is said of offsets.
struct Sums {
  double n = 0.0, sum = 0.0, squares = 0.0, worst = 0.0;

  void add(std::vector<gxEdgePoint> const &points)
  {
    for (gxEdgePoint const &p : points) {
      n += 1.0;
      sum += p.offset;
      squares += p.offset * p.offset;
      if (std::abs(p.offset) > std::abs(worst))
        worst = p.offset;
    }
  }
  double mean() const { return n > 0.0 ? sum / n : 0.0; }
  double spread() const { return n > 0.0 ? std::sqrt(std::max(0.0, squares / n - mean() * mean())) : 0.0; }
};

Sums sumsOf(gxSegmentEdges const &segment)
{
  Sums sums;
  sums.add(segment.points);
  return sums;
}

Sums sumsOf(gxEdgeReport const &report)
{
  Sums sums;
  for (gxSegmentEdges const &s : report.segments)
    sums.add(s.points);
  return sums;
}

/// All outlines that are seen, and which of them hide others.
class Scene
{
 public:
  explicit Scene(gxFootprintModels const &models)
  {
    for (bool const isBody : {false, true})
      for (gxSMDGDPoly const &poly : (isBody ? models.body : models.pads).polys())
        if (poly.isClosed())
          outlines_.push_back({&poly, poly.boundingBox({}), isBody});
  }

  /// Whether another outline hides a point of one, or comes nearer than @p clearance.
  bool disturbs(gxSMDGDPoly const &own, bool isBody, gxVector<2> const &p, double clearance) const
  {
    return std::any_of(outlines_.begin(), outlines_.end(), [&](Outline const &o) {
      if (o.poly == &own || !near(o.box, p, clearance))
        return false;
      bool const canHide = o.isBody || !isBody;  // pads look alike, and so do parts of the body
      return (canHide && P::inside(*o.poly, p)) || P::distToPoint(*o.poly, p) < clearance;
    });
  }

 private:
  struct Outline {
    gxSMDGDPoly const *poly;
    gxRect box;
    bool isBody;
  };

  static bool near(gxRect const &box, gxVector<2> const &p, double clearance)
  {
    gxVector<2> const from = p - box.origin(), beyond = from - box.size();
    return from.x() > -clearance && from.y() > -clearance && beyond.x() < clearance && beyond.y() < clearance;
  }

  std::vector<Outline> outlines_;
};

struct Measured {
  gx_EdgeTrack track;
  gxSegmentEdges edges;
};

std::vector<Measured> tracksOf(gxSMDGDPoly const &poly, bool isBody, int outline, gxXform<2> const &pose)
{
  std::vector<Measured> tracks;
  for (int v = 0; v < poly.numVertices(); ++v) {
    auto const add = [&](auto const &segment, gxSegmentEdges::Kind kind) {
      gxSegmentEdges edges;
      edges.isBody = isBody;
      edges.outline = outline;
      edges.vertex = v;
      edges.kind = kind;
      tracks.push_back({gx_EdgeTrack(segment, pose), std::move(edges)});
    };
    if (P::isLineSegment_(poly, v))
      add(P::roundedLineSegment_(poly, v), gxSegmentEdges::line);
    else
      add(P::roundedArcSegment_(poly, v), gxSegmentEdges::arc);
    if (P::vertexIsRounded_(poly, v))
      add(P::roundedArcVertex_(poly, v), gxSegmentEdges::fillet);
  }
  // Growing angles go clockwise as they are seen, y down; what lies to the left is outside then.
  gxVector<2> const place = tracks.front().track.at(0.0).at;
  double area = 0.0;
  for (Measured const &m : tracks)
    area += m.track.areaAbout(place);
  if (area < 0.0)
    for (Measured &m : tracks)
      m.track.outsideIsRight();
  return tracks;
}

/// Whether edges are rounded off where one track goes over into the other.
bool isCorner(gx_EdgeTrack const &before, gx_EdgeTrack const &behind, double radius)
{
  return before.isTight(radius) || behind.isTight(radius) || before.endDirection() * behind.startDirection() < 0.999;
}

/// Along track @p i, and beyond its ends along its neighbours.
gx_EdgeTrack::Place placeAt(std::vector<Measured> const &tracks, std::size_t i, double way)
{
  gx_EdgeTrack const &track = tracks[i].track;
  gx_EdgeTrack const &before = tracks[(i + tracks.size() - 1) % tracks.size()].track;
  if (way < 0.0)
    return before.at(before.length() + way);
  return way > track.length() ? tracks[(i + 1) % tracks.size()].track.at(way - track.length()) : track.at(way);
}

/// Calls look(place, way) for the places of a track that are away from corners.
template <class Look>
void eachPlace(std::vector<Measured> const &tracks, std::size_t i, gxEdgeSearch const &search, Look const &look)
{
  gx_EdgeTrack const &track = tracks[i].track, &before = tracks[(i + tracks.size() - 1) % tracks.size()].track,
                     &behind = tracks[(i + 1) % tracks.size()].track;
  double const from = isCorner(before, track, search.corner) ? search.corner : 0.0;
  double const to = track.length() - (isCorner(track, behind, search.corner) ? search.corner : 0.0);
  if (!(to > from) || track.isTight(search.corner))
    return;
  constexpr double most = 100'000.0;
  int const n = static_cast<int>(std::clamp((to - from) / search.spacing, 1.0, most));
  for (int k = 0; k < n; ++k) {
    double const way = from + (to - from) * (k + 0.5) / n;
    look(track.at(way), way);
  }
}

/// Least squares of offset = outward * (shift + turn * (place - middle) turned by a right angle).
void fitPose(gxEdgeReport &report)
{
  std::vector<gxEdgePoint> points;
  for (gxSegmentEdges const &s : report.segments)
    points.insert(points.end(), s.points.begin(), s.points.end());
  if (points.empty())
    return;
  gxVector<2> middle;
  for (gxEdgePoint const &p : points)
    middle = middle + p.place * (1.0 / double(points.size()));
  double reach = 0.0;
  for (gxEdgePoint const &p : points)
    reach = std::max(reach, p.place.distance(middle));
  if (reach == 0.0)
    return;
  std::array<std::array<double, 4>, 3> a{};
  for (gxEdgePoint const &p : points) {
    gxVector<2> const arm = (p.place - middle) * (1.0 / reach);
    std::array<double, 4> const row = {p.outward.x(), p.outward.y(), p.outward.cross(gxVector<2>(-arm.x(), -arm.y())),
                                       p.offset};
    for (std::size_t i = 0; i < 3; ++i)
      for (std::size_t k = 0; k < 4; ++k)
        a[i][k] += row[i] * row[k];
  }
  // A trace of weight for no change keeps what the edges say nothing about, as the turn of a circle, where it is.
  for (std::size_t i = 0; i < 3; ++i)
    a[i][i] += 1e-6 * double(points.size());
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t r = 0; r < 3; ++r)
      if (r != i) {
        double const factor = a[r][i] / a[i][i];
        for (std::size_t k = i; k < 4; ++k)
          a[r][k] -= factor * a[i][k];
      }
  report.poseShift = gxVector<2>(a[0][3] / a[0][0], a[1][3] / a[1][1]) * -1.0;
  report.poseTurn = gxDegree(gxRadian(a[2][3] / a[2][2] / reach));  // y points down: what grows is clockwise
}

}  // namespace

double gxSegmentEdges::mean() const
{
  return sumsOf(*this).mean();
}

double gxSegmentEdges::spread() const
{
  return sumsOf(*this).spread();
}

double gxSegmentEdges::worst() const
{
  return sumsOf(*this).worst;
}

int gxEdgeReport::looked() const
{
  return std::accumulate(segments.begin(), segments.end(), 0,
                         [](int n, gxSegmentEdges const &s) { return n + s.looked; });
}

int gxEdgeReport::found() const
{
  return static_cast<int>(sumsOf(*this).n);
}

double gxEdgeReport::mean() const
{
  return sumsOf(*this).mean();
}

double gxEdgeReport::spread() const
{
  return sumsOf(*this).spread();
}

double gxEdgeReport::worst() const
{
  return sumsOf(*this).worst;
}

gxEdgeReport gfMeasureEdges(gxFootprintModels const &models, gxXform<2> const &pose, Buffer const &image,
                            gxEdgeSearch const &search)
{
  image.checkBound();
  gxMatrix<2> const &matrix = pose.matrix();
  double const skew =
                   std::abs(matrix.element(0, 0) * matrix.element(0, 1) + matrix.element(1, 0) * matrix.element(1, 1)),
               stretch = std::abs(std::hypot(matrix.element(0, 0), matrix.element(1, 0)) - matrix.scale());
  pose.inverse();
  bool const isSound = skew <= 1e-6 * std::abs(matrix.det()) && stretch <= 1e-6 * matrix.scale() &&
                       search.reach >= 2.0 && search.reach <= 50.0 && search.spacing >= 0.1 &&
                       std::isfinite(search.spacing) && search.corner >= 0.0 && search.contrast >= 0.0;
  if (!isSound)
    throw gxShapesError::BadCoef();
  gx_EdgePicture const picture(image);
  gx_EdgeProfile profile(picture, search);
  Scene const scene(models);
  gxXform<2> const back = pose.inverse();
  double const clearance = search.corner / pose.matrix().scale();
  gxEdgeReport report;
  for (bool const isBody : {false, true}) {
    gxSMDGDModel const &model = isBody ? models.body : models.pads;
    for (int i = 0; i < model.numPolys(); ++i) {
      gxSMDGDPoly const &poly = model.poly(i);
      if (poly.isOpen())
        continue;
      std::vector<Measured> tracks = tracksOf(poly, isBody, i, pose);
      for (std::size_t k = 0; k < tracks.size(); ++k) {
        gx_EdgeTrack const &track = tracks[k].track;
        gxSegmentEdges &edges = tracks[k].edges;
        eachPlace(tracks, k, search, [&](gx_EdgeTrack::Place const &place, double way) {
          if (scene.disturbs(poly, isBody, back.mapPoint(place.at), clearance) ||
              !profile.read([&](double beside) { return placeAt(tracks, k, way + beside); }))
            return;
          ++edges.looked;
          double offset = 0.0;
          if (profile.findEdge(track.bend(), offset))
            edges.points.push_back({place.at, place.outward, offset});
        });
      }
      for (Measured &m : tracks)
        report.segments.push_back(std::move(m.edges));
    }
  }
  fitPose(report);
  return report;
}

void gfDrawEdges(gxEdgeReport const &report, gxUITablet &tablet, double magnify, double good,
                 gx_UITabletBase::Layers layer)
{
  for (gxSegmentEdges const &s : report.segments)
    for (gxEdgePoint const &p : s.points) {
      gxColor const color = std::abs(p.offset) <= good ? gxColor::greenColor() : gxColor::redColor();
      gxVector<2> const tip = p.place + p.outward * (p.offset * magnify);
      if (!(tip == p.place))
        tablet.draw(gxLineSeg(p.place, tip), color, layer);
    }
}
