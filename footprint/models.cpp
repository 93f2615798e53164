#include "footprint/models.h"

#include "dispc/wrfm/polyprivate.h"
#include "foundation/rigid.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <optional>
#include <utility>

namespace
{

using Graphic = gxFootprint::Graphic;
using Pad = gxFootprint::Pad;
using Point = gxVector<2>;
using Poly = gxSMDGDPoly;
using Problem = gxFootprintProblem;

/// A line or an arc on its way to an outline.
struct Piece {
  Point start, end;
  double span = 0.0;  ///< degrees, 0 for a line

  Piece reversed() const { return {end, start, -span}; }
};

gxSMDGDPolyVertex vertexOf(Point const &p, double span = 0.0, double radius = 0.0)
{
  return {p, radius, gxDegree(span), 0.5, 0.5, -1, gxDimTol()};
}

/// An arc through a point between its ends; a line if the three lie on one.
Piece arcThrough(Point const &start, Point const &mid, Point const &end)
{
  Point const a = mid - start, b = end - start;
  double const twice = 2.0 * a.cross(b), size = std::max(a.len(), b.len());
  if (std::abs(twice) <= 1e-9 * size * size)
    return {start, end, 0.0};
  double const aa = a.len() * a.len(), bb = b.len() * b.len();
  Point const center = start + Point(b.y() * aa - a.y() * bb, a.x() * bb - b.x() * aa) * (1.0 / twice);
  auto const turn = [&](Point const &p) { return gxDegree((p - center).angle() - (start - center).angle()).norm(); };
  double const whole = turn(end).value();
  return {start, end, turn(mid).value() <= whole ? whole : whole - 360.0};
}

Poly closed(std::vector<gxSMDGDPolyVertex> const &vertices)
{
  Poly poly;
  poly.vertices(vertices);
  poly.close();
  return poly;
}

Poly closed(std::vector<Piece> const &pieces)
{
  std::vector<gxSMDGDPolyVertex> vertices;
  for (Piece const &piece : pieces)
    vertices.push_back(vertexOf(piece.end, piece.span));
  return closed(vertices);
}

Poly polygon(std::vector<Point> const &points)
{
  std::vector<gxSMDGDPolyVertex> vertices;
  for (Point const &p : points)
    if (vertices.empty() || !(p == vertices.back().point()))
      vertices.push_back(vertexOf(p));
  if (vertices.size() > 1 && vertices.back().point() == vertices.front().point())
    vertices.pop_back();
  return closed(vertices);
}

Poly rectangle(Point const &a, Point const &b)
{
  return polygon({a, {b.x(), a.y()}, b, {a.x(), b.y()}});
}

/// All within a distance of a line: two lines and two half circles; a circle for a line without length.
Poly stadium(Point const &a, Point const &b, double radius)
{
  if (a == b)
    return Poly::circle(radius, a);
  Point const along = (b - a).unit(), side = Point(-along.y(), along.x()) * radius;
  return closed(std::vector<gxSMDGDPolyVertex>{vertexOf(a - side, 180), vertexOf(b - side), vertexOf(b + side, 180),
                                               vertexOf(a + side)});
}

Poly oval(Point const &size)
{
  double const x = size.x() / 2.0, y = size.y() / 2.0;
  Point const end = x > y ? Point(x - y, 0.0) : Point(0.0, y - x);
  return stadium(end * -1.0, end, std::min(x, y));
}

/// All within a distance of an arc, with round ends.
Poly thickArc(Piece const &arc, double radius)
{
  if (arc.span == 0.0)
    return stadium(arc.start, arc.end, radius);
  gx2SegmentArc const middle(arc.start, arc.end, gxDegree(arc.span));
  Point const c = middle.center(), out0 = (arc.start - c).unit() * radius, out1 = (arc.end - c).unit() * radius;
  double const cap = arc.span > 0.0 ? 180.0 : -180.0;
  return closed(std::vector<gxSMDGDPolyVertex>{vertexOf(arc.start + out0, cap), vertexOf(arc.end + out1, arc.span),
                                               vertexOf(arc.end - out1, cap), vertexOf(arc.start - out0, -arc.span)});
}

/// With rounded and cut corners: top left, top right, bottom right, bottom left.
Poly cornered(Pad const &pad)
{
  double const x = pad.size.x() / 2.0, y = pad.size.y() / 2.0, shorter = std::min(pad.size.x(), pad.size.y());
  double const radius = pad.shape == Pad::roundedRectangle ? std::clamp(pad.roundRatio, 0.0, 0.5) * shorter : 0.0;
  double const cut = std::clamp(pad.chamferRatio, 0.0, 0.5) * shorter;
  bool const isCut = cut > 0.0 && std::any_of(pad.chamfer.begin(), pad.chamfer.end(), [](bool c) { return c; });
  if (!isCut && radius == shorter / 2.0)
    return oval(pad.size);
  std::vector<gxSMDGDPolyVertex> vertices;
  auto const add = [&](bool chamfered, Point const &corner, Point const &before, Point const &behind) {
    if (isCut && chamfered) {
      vertices.push_back(vertexOf(corner + before * cut));
      vertices.push_back(vertexOf(corner + behind * cut));
    } else {
      vertices.push_back(vertexOf(corner, 0.0, radius));
    }
  };
  add(pad.chamfer[0], {-x, -y}, {0, 1}, {1, 0});
  add(pad.chamfer[1], {x, -y}, {-1, 0}, {0, 1});
  add(pad.chamfer[3], {x, y}, {0, -1}, {-1, 0});
  add(pad.chamfer[2], {-x, y}, {1, 0}, {0, -1});
  std::vector<gxSMDGDPolyVertex> apart;  // two cuts may meet in the middle of a side
  for (gxSMDGDPolyVertex const &v : vertices)
    if (apart.empty() || !(v.point() == apart.back().point()))
      apart.push_back(v);
  if (apart.size() > 1 && apart.front().point() == apart.back().point())
    apart.pop_back();
  return closed(apart);
}

Poly trapezoid(Pad const &pad)
{
  Point const h = pad.size * 0.5, d = pad.taper * 0.5;
  return polygon({{-h.x() - d.y(), h.y() + d.x()},
                  {h.x() + d.y(), h.y() - d.x()},
                  {h.x() - d.y(), -h.y() + d.x()},
                  {-h.x() + d.y(), -h.y() - d.x()}});
}

/// Makes outlines, and notes what cannot be one.
class Builder
{
 public:
  Builder(gxFootprint const &footprint, double tolerance, gxFootprintModels &models)
      : footprint_(footprint), tolerance_(tolerance), models_(models)
  {
  }

  void build()
  {
    for (Pad const &pad : footprint_.pads)
      addPad(pad);
    addLayers(models_.body, ".Fab");
    addLayers(models_.courtyard, ".CrtYd");
    gx2Rigid const place(-footprint_.angle, footprint_.at);
    if (place == gx2Rigid())
      return;
    for (gxSMDGDModel *const model : {&models_.pads, &models_.body, &models_.courtyard}) {
      gxSMDGDModel const here = *model;
      model->polys((place * here).polys());
    }
  }

 private:
  using Make = std::function<Poly()>;

  /// False, and a problem, if the outline refuses to be made.
  bool tryAdd(gxSMDGDModel &model, std::string const &what, Make const &make)
  {
    try {
      model << make();
      return true;
    } catch (gxException const &e) {
      models_.problems.push_back({Problem::refused, what, "is refused: " + e.message(), {}, {}});
      return false;
    }
  }

  void addPad(Pad const &pad)
  {
    std::string const what = "pad \"" + pad.number + "\"";
    if (!(pad.size.x() > 0.0 && pad.size.y() > 0.0)) {
      models_.problems.push_back({Problem::noSize, what, "has no size", {}, {}});
      return;
    }
    // Angles are those that one sees, y down.
    gx2Rigid const place(footprint_.angle - pad.angle, pad.at);
    gx2Rigid const frame = place * gx2Rigid(gxDegree(), pad.offset);
    auto const add = [&](Make const &make) {
      if (tryAdd(models_.pads, what, [&] { return frame * make(); }))
        models_.padOf.push_back(static_cast<std::size_t>(&pad - footprint_.pads.data()));
    };
    switch (pad.shape) {
      case Pad::rectangle:
      case Pad::roundedRectangle:
        return add([&] { return cornered(pad); });
      case Pad::oval:
        return add([&] { return oval(pad.size); });
      case Pad::circle:
        return add([&] { return Poly::circle(pad.size.x() / 2.0, {0.0, 0.0}); });
      case Pad::trapezoid:
        return add([&] { return trapezoid(pad); });
      case Pad::custom:
        if (pad.hasCircleAnchor)
          add([&] { return Poly::circle(pad.size.x() / 2.0, {0.0, 0.0}); });
        else
          add([&] { return rectangle(pad.size * -0.5, pad.size * 0.5); });
        for (Graphic const &g : pad.primitives)
          addPrimitive(g, add);
    }
  }

  template <class Add>
  static void addPrimitive(Graphic const &g, Add const &add)
  {
    double const half = g.width / 2.0;
    auto const stroke = [&](Point const &a, Point const &b) {
      if (half > 0.0)
        add([&] { return stadium(a, b, half); });
    };
    switch (g.kind) {
      case Graphic::line:
        return stroke(g.points[0], g.points[1]);
      case Graphic::arc:
        if (half > 0.0)
          add([&] { return thickArc(arcThrough(g.points[0], g.points[1], g.points[2]), half); });
        return;
      case Graphic::circle: {
        double const radius = g.points[0].distance(g.points[1]);
        add([&] { return Poly::circle(radius + half, g.points[0]); });
        if (!g.isFilled && radius > half)
          add([&] { return Poly::circle(radius - half, g.points[0]); });
        return;
      }
      case Graphic::rectangle:
      case Graphic::polygon: {
        std::vector<Point> corners = g.points;
        if (g.kind == Graphic::rectangle)
          corners = {g.points[0], {g.points[1].x(), g.points[0].y()}, g.points[1], {g.points[0].x(), g.points[1].y()}};
        if (g.isFilled || g.kind == Graphic::polygon)
          add([&] { return polygon(corners); });
        for (std::size_t i = 0; i < corners.size(); ++i)
          stroke(corners[i], corners[(i + 1) % corners.size()]);
      }
    }
  }

  void addLayers(gxSMDGDModel &model, char const *suffix)
  {
    for (char const *const side : {"F", "B"}) {
      std::string const layer = std::string(side) + suffix;
      std::vector<Piece> loose;
      for (Graphic const &g : footprint_.graphics) {
        if (g.layer != layer)
          continue;
        switch (g.kind) {
          case Graphic::line:
            loose.push_back({g.points[0], g.points[1], 0.0});
            break;
          case Graphic::arc:
            loose.push_back(arcThrough(g.points[0], g.points[1], g.points[2]));
            break;
          case Graphic::circle:
            tryAdd(model, layer, [&] { return Poly::circle(g.points[0].distance(g.points[1]), g.points[0]); });
            break;
          case Graphic::rectangle:
            tryAdd(model, layer, [&] { return rectangle(g.points[0], g.points[1]); });
            break;
          case Graphic::polygon:
            tryAdd(model, layer, [&] { return polygon(g.points); });
        }
      }
      joinLoose(model, layer, std::move(loose));
    }
  }

  bool near(Point const &a, Point const &b) const { return a.distance(b) <= tolerance_; }

  /// The piece that goes on from a point, taken out of the others.
  std::optional<Piece> takeNext(std::vector<Piece> &loose, Point const &from) const
  {
    for (std::size_t i = 0; i < loose.size(); ++i) {
      Piece const piece = loose[i];
      if (!near(piece.start, from) && !near(piece.end, from))
        continue;
      loose.erase(loose.begin() + static_cast<std::ptrdiff_t>(i));
      return near(piece.start, from) ? piece : piece.reversed();
    }
    return {};
  }

  void joinLoose(gxSMDGDModel &model, std::string const &layer, std::vector<Piece> loose)
  {
    loose.erase(std::remove_if(loose.begin(), loose.end(), [](Piece const &p) { return p.start == p.end; }),
                loose.end());
    while (!loose.empty()) {
      std::vector<Piece> chain = {loose.front()};
      loose.erase(loose.begin());
      auto const closes = [&] { return chain.size() > 1 && near(chain.back().end, chain.front().start); };
      while (!closes()) {
        if (auto const next = takeNext(loose, chain.back().end))
          chain.push_back(*next);
        else if (auto const before = takeNext(loose, chain.front().start))
          chain.insert(chain.begin(), before->reversed());
        else
          break;
      }
      if (closes()) {
        tryAdd(model, layer, [&] { return closed(chain); });
        continue;
      }
      noteGap(layer, chain.back().end, chain.front().start);
      tryAdd(model, layer, [&] {
        Poly poly;
        poly << vertexOf(chain.front().start);
        for (Piece const &piece : chain)
          poly << vertexOf(piece.end, piece.span);
        return poly;
      });
    }
  }

  void noteGap(std::string const &layer, Point const &a, Point const &b)
  {
    char text[160];
    std::snprintf(text, sizeof text, "does not close; from (%.4g, %.4g) to (%.4g, %.4g) a gap of %.4g mm", a.x(), a.y(),
                  b.x(), b.y(), a.distance(b));
    models_.problems.push_back({Problem::gap, layer, text, a, b});
  }

  gxFootprint const &footprint_;
  double const tolerance_;
  gxFootprintModels &models_;
};

}  // namespace

std::ostream &operator<<(std::ostream &os, gxFootprintProblem const &problem)
{
  return os << problem.text();
}

gxFootprintModels gfFootprintModels(gxFootprint const &footprint, double tolerance)
{
  gxFootprintModels models;
  Builder(footprint, tolerance, models).build();
  return models;
}
