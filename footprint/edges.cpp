#include "footprint/edges.h"

#include "dispc/wrfm/polyprivate.h"
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
using Point = gxVector<2>;

/// A segment in the image, run through by the length of its way.
class Track
{
 public:
  struct Place {
    Point at, outward;
  };

  Track(gx2SegmentLine const &line, gxXform<2> const &pose, double side)
      : Track(pose.mapPoint(line.p1()), pose.mapPoint(line.p2()), side)
  {
  }
  /// An arc that is seen as one: the pose must not distort.
  Track(gx2SegmentArc const &arc, gxXform<2> const &pose, double side)
      : Track(pose.mapPoint(arc.p1()), pose.mapPoint(arc.p2()), side)
  {
    center_ = pose.mapPoint(arc.center());
    span_ = gxRadian(arc.angleSpan()).value() * (pose.matrix().det() < 0.0 ? -1.0 : 1.0);
    radius_ = center_.distance(start_);
    length_ = radius_ * std::abs(span_);
  }

  double length() const { return length_; }
  /// Whether it turns more closely than in a circle of this radius.
  bool isTight(double radius) const { return span_ != 0.0 && radius_ < radius; }
  /// 1 over the radius; above 0 if the centre lies inside.
  double bend() const { return span_ == 0.0 ? 0.0 : side_ * (span_ > 0.0 ? 1.0 : -1.0) / radius_; }
  Point startDirection() const { return directionAt(0.0); }
  Point endDirection() const { return directionAt(length_); }

  Place at(double way) const
  {
    double const t = std::clamp(way / length_, 0.0, 1.0);
    Point const along = directionAt(t * length_), left(along.y(), -along.x());
    Point const place = span_ == 0.0 ? start_ + (end_ - start_) * t : center_ + turned(start_ - center_, t * span_);
    return {place, left * side_};
  }

 private:
  Track(Point const &start, Point const &end, double side)
      : start_(start), end_(end), side_(side), length_(start.distance(end))
  {
  }

  static Point turned(Point const &v, double angle)
  {
    double const c = std::cos(angle), s = std::sin(angle);
    return {c * v.x() - s * v.y(), s * v.x() + c * v.y()};
  }
  Point directionAt(double way) const
  {
    if (span_ == 0.0)
      return (end_ - start_) * (1.0 / length_);
    double const quarter = span_ > 0.0 ? 1.5707963267948966 : -1.5707963267948966;
    return turned(start_ - center_, way / length_ * span_ + quarter) * (1.0 / radius_);
  }

  Point start_, end_, center_;
  double side_;  ///< 1 if what is to the left of the way as it is seen lies outside, else -1
  double length_, span_ = 0.0, radius_ = 0.0;
};

/// Grey values between pels.
class Picture
{
 public:
  explicit Picture(Buffer const &image) : window_(image.window()), width_(image.width()), height_(image.height())
  {
    for (long y = 0; y < height_; ++y)
      rows_.push_back(image.pointToRow(y + window_.y()));
  }

  /// Whether a disk lies in the picture.
  bool holds(Point const &p, double radius) const
  {
    double const x = p.x() - double(window_.x()), y = p.y() - double(window_.y());
    return x >= radius && y >= radius && x <= double(width_) - radius && y <= double(height_) - radius;
  }

  /// Linear between the middles of pels.
  double operator()(Point const &p) const
  {
    double const x = p.x() - double(window_.x()) - 0.5, y = p.y() - double(window_.y()) - 0.5;
    double const left = std::floor(x), top = std::floor(y), fx = x - left, fy = y - top;
    long const x0 = clamped(left, width_), x1 = clamped(left + 1.0, width_);
    unsigned char const *const upper = rows_[std::size_t(clamped(top, height_))];
    unsigned char const *const lower = rows_[std::size_t(clamped(top + 1.0, height_))];
    return (1.0 - fy) * ((1.0 - fx) * upper[x0] + fx * upper[x1]) + fy * ((1.0 - fx) * lower[x0] + fx * lower[x1]);
  }

 private:
  static long clamped(double v, long size) { return std::clamp(static_cast<long>(v), 0L, size - 1); }

  gxPelRect const window_;
  long const width_, height_;
  std::vector<unsigned char const *> rows_;
};

/// Finds the edge that crosses a normal.
class Profile
{
 public:
  Profile(Picture const &picture, gxEdgeSearch const &search)
      : picture_(picture),
        contrast_(search.contrast),
        count_(2 * static_cast<int>(std::ceil(search.reach / step)) + 1),
        grey_(std::size_t(count_))
  {
  }

  /// Reads the picture across a place of an outline: placeAt(way) is beside it, along the outline. False if that
  /// leaves the picture.
  template <class PlaceAt>
  bool read(PlaceAt const &placeAt)
  {
    // Along the outline by a Hann window, which takes out the pattern of the pels.
    constexpr std::array<double, 9> beside = {-2.0, -1.5, -1.0, -0.5, 0.0, 0.5, 1.0, 1.5, 2.0};
    constexpr std::array<double, 9> weight = {0.0191, 0.0691, 0.1309, 0.1809, 0.2, 0.1809, 0.1309, 0.0691, 0.0191};
    if (!picture_.holds(placeAt(0.0).at, double(count_ / 2) * step + 1.0))
      return false;
    std::fill(grey_.begin(), grey_.end(), 0.0);
    for (std::size_t k = 0; k < beside.size(); ++k) {
      Track::Place const place = placeAt(beside[k]);
      for (int i = 0; i < count_; ++i)
        at(i) += picture_(place.at + place.outward * offsetOf(i)) * weight[k];
    }
    return true;
  }

  /// How far outward the edge lies that is nearest to the outline, among the ones that are nearly as steep as the
  /// steepest. False if there is none.
  bool findEdge(double bend, double &offset) const
  {
    int const first = half, last = count_ - 1 - half;
    double steepest = 0.0;
    for (int i = first; i <= last; ++i)
      steepest = std::max(steepest, std::abs(rise(i)));
    int best = -1;
    for (int i = first; i <= last; ++i) {
      bool const isPeak = std::abs(rise(i)) >= std::abs(rise(std::max(i - 1, first))) &&
                          std::abs(rise(i)) >= std::abs(rise(std::min(i + 1, last)));
      if (isPeak && std::abs(rise(i)) >= 0.4 * steepest &&
          (best < 0 || std::abs(offsetOf(i)) < std::abs(offsetOf(best))))
        best = i;
    }
    return best >= 0 && steepest > 0.0 && locate(best, bend, offset);
  }

 private:
  static constexpr double step = 0.125;
  static constexpr int half = 4;  ///< the rise is taken over a pel

  double &at(int i) { return grey_[std::size_t(i)]; }
  double at(int i) const { return grey_[std::size_t(i)]; }
  double offsetOf(int i) const { return double(i - count_ / 2) * step; }
  double rise(int i) const { return at(i + half) - at(i - half); }

  bool locate(int peak, double bend, double &offset) const
  {
    double const top = rise(peak);
    auto const goesOn = [&](int i) { return i >= half && i < count_ - half && rise(i) * top > 0.03 * top * top; };
    int from = peak, to = peak;
    while (goesOn(from - 1))
      --from;
    while (goesOn(to + 1))
      ++to;
    for (int k = 0; k < half / 2 && from > half && to < count_ - 1 - half; ++k) {  // the last traces
      --from;
      ++to;
    }
    bool const isCutOff = (from == half && goesOn(from)) || (to == count_ - 1 - half && goesOn(to));
    if (isCutOff && std::max(std::abs(rise(from)), std::abs(rise(to))) > 0.3 * std::abs(top))
      return false;
    // Levels on both sides, and the area between the profile and the far one.
    double const low = at(from - half), high = at(to + half), height = high - low;
    if (std::abs(height) < contrast_)
      return false;
    double const a = offsetOf(from - half), b = offsetOf(to + half);
    double area = 0.0, moment = 0.0;
    for (int i = from - half; i < to + half; ++i) {
      double const part = (0.5 * (at(i) + at(i + 1)) - low) / height;
      area += part * step;
      moment += part * step * (offsetOf(i) + 0.5 * step);
    }
    double const edge = b - area;
    // Of the edge taken as a distribution, by parts: the mean of squares is b^2 - 2 * integral of t F(t).
    double const variance = std::max(0.0, b * b - 2.0 * moment - edge * edge);
    offset = edge + 0.5 * variance * bend;
    return edge > a && edge < b;
  }

  Picture const &picture_;
  double const contrast_;
  int const count_;
  std::vector<double> grey_;
};

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
  bool disturbs(gxSMDGDPoly const &own, bool isBody, Point const &p, double clearance) const
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

  static bool near(gxRect const &box, Point const &p, double clearance)
  {
    Point const from = p - box.origin(), beyond = from - box.size();
    return from.x() > -clearance && from.y() > -clearance && beyond.x() < clearance && beyond.y() < clearance;
  }

  std::vector<Outline> outlines_;
};

struct Measured {
  Track track;
  gxSegmentEdges edges;
};

std::vector<Measured> tracksOf(gxSMDGDPoly const &poly, bool isBody, int outline, gxXform<2> const &pose)
{
  // Growing angles go clockwise as they are seen, so what an outline of that direction has to its left lies outside.
  bool const isClockwise = poly.isDirectionPositive() != poly.isDirectionReversed();
  double const side = isClockwise == (pose.matrix().det() > 0.0) ? 1.0 : -1.0;
  std::vector<Measured> tracks;
  for (int v = 0; v < poly.numVertices(); ++v) {
    auto const add = [&](auto const &segment, gxSegmentEdges::Kind kind) {
      gxSegmentEdges edges;
      edges.isBody = isBody;
      edges.outline = outline;
      edges.vertex = v;
      edges.kind = kind;
      tracks.push_back({Track(segment, pose, side), std::move(edges)});
    };
    if (P::isLineSegment_(poly, v))
      add(P::roundedLineSegment_(poly, v), gxSegmentEdges::line);
    else
      add(P::roundedArcSegment_(poly, v), gxSegmentEdges::arc);
    if (P::vertexIsRounded_(poly, v))
      add(P::roundedArcVertex_(poly, v), gxSegmentEdges::fillet);
  }
  return tracks;
}

/// Whether edges are rounded off where one track goes over into the other.
bool isCorner(Track const &before, Track const &behind, double radius)
{
  return before.isTight(radius) || behind.isTight(radius) || before.endDirection() * behind.startDirection() < 0.999;
}

/// Along track @p i, and beyond its ends along its neighbours.
Track::Place placeAt(std::vector<Measured> const &tracks, std::size_t i, double way)
{
  Track const &track = tracks[i].track;
  Track const &before = tracks[(i + tracks.size() - 1) % tracks.size()].track;
  if (way < 0.0)
    return before.at(before.length() + way);
  return way > track.length() ? tracks[(i + 1) % tracks.size()].track.at(way - track.length()) : track.at(way);
}

/// Calls look(place, way) for the places of a track that are away from corners.
template <class Look>
void eachPlace(std::vector<Measured> const &tracks, std::size_t i, gxEdgeSearch const &search, Look const &look)
{
  Track const &track = tracks[i].track, &before = tracks[(i + tracks.size() - 1) % tracks.size()].track,
              &behind = tracks[(i + 1) % tracks.size()].track;
  double const from = isCorner(before, track, search.corner) ? search.corner : 0.0;
  double const to = track.length() - (isCorner(track, behind, search.corner) ? search.corner : 0.0);
  if (!(to > from) || track.isTight(search.corner))
    return;
  int const n = std::max(1, static_cast<int>((to - from) / search.spacing));
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
  Point middle;
  for (gxEdgePoint const &p : points)
    middle = middle + p.place * (1.0 / double(points.size()));
  double reach = 0.0;
  for (gxEdgePoint const &p : points)
    reach = std::max(reach, p.place.distance(middle));
  if (reach == 0.0)
    return;
  std::array<std::array<double, 4>, 3> a{};
  for (gxEdgePoint const &p : points) {
    Point const arm = (p.place - middle) * (1.0 / reach);
    std::array<double, 4> const row = {p.outward.x(), p.outward.y(), p.outward.cross(Point(-arm.x(), -arm.y())),
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
  report.poseShift = Point(a[0][3] / a[0][0], a[1][3] / a[1][1]) * -1.0;
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
  Picture const picture(image);
  Profile profile(picture, search);
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
        Track const &track = tracks[k].track;
        gxSegmentEdges &edges = tracks[k].edges;
        eachPlace(tracks, k, search, [&](Track::Place const &place, double way) {
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
      Point const tip = p.place + p.outward * (p.offset * magnify);
      if (!(tip == p.place))
        tablet.draw(gxLineSeg(p.place, tip), color, layer);
    }
}
