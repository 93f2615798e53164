#include "footprint/models.h"

#include "dispc/wrfm/polyprivate.h"
#include "footprint/detail/chains.h"
#include "footprint/detail/shapes.h"
#include "foundation/rigid.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

namespace
{

using namespace gx_shapes;
using Graphic = gxFootprint::Graphic;
using Pad = gxFootprint::Pad;
using Point = gxVector<2>;
using Poly = gxSMDGDPoly;
using Problem = gxFootprintProblem;

/// Makes outlines, and notes what cannot be one.
class Builder
{
 public:
  Builder(gxFootprint const &footprint, double tolerance, gxFootprintModels &models)
      : footprint_(footprint), place_(-footprint.angle, footprint.at), tolerance_(tolerance), models_(models)
  {
  }

  void build()
  {
    for (Pad const &pad : footprint_.pads)
      addPad(pad);
    addLayers(models_.body, {"F.Fab", "B.Fab"});
    addLayers(models_.courtyard, {"F.CrtYd", "B.CrtYd"});
  }

 private:
  /// Where the outlines of pads of one shape are made, once.
  struct Kept {
    Pad const *pad = nullptr;
    Poly outline;
  };

  static Poly mapped(Vertices &&vertices, gx2Rigid const &frame, bool isClosed)
  {
    if (!(frame == gx2Rigid()))
      for (gxSMDGDPolyVertex &v : vertices)
        v.point(frame * v.point());
    return gxSMDGDPolyPrivate::outline(std::move(vertices), isClosed);
  }

  /// A problem if the outline refuses to be made; what() tells whose.
  template <class What, class Make>
  bool tryAdd(gxSMDGDModel &model, What const &what, Make const &make)
  {
    try {
      model << make();
      return true;
    } catch (gxException const &e) {
      models_.problems.push_back({Problem::refused, what(), e.message(), {}, {}});
      return false;
    }
  }

  static std::string nameOf(Pad const &pad) { return "pad \"" + pad.number + '"'; }

  void addPad(Pad const &pad)
  {
    if (!(pad.size.x() > 0.0 && pad.size.y() > 0.0)) {
      models_.problems.push_back({Problem::noSize, nameOf(pad), {}, {}, {}});
      return;
    }
    auto const add = [&](auto const &make) {
      if (tryAdd(
              models_.pads, [&] { return nameOf(pad); }, make))
        models_.padOf.push_back(static_cast<std::size_t>(&pad - footprint_.pads.data()));
    };
    add([&] { return outlineOf(pad); });
    // Angles are those that one sees, y down, and have that of the place in them.
    gx2Rigid const frame = gx2Rigid(-pad.angle, place_ * pad.at) * gx2Rigid(gxDegree(), pad.offset);
    for (Graphic const &g : pad.primitives)
      eachOutline(g, [&](Vertices &&v) { add([&] { return mapped(std::move(v), frame, true); }); });
  }

  /// Devices have many pads of few shapes: an outline is made and checked once, and moved to its places.
  Poly outlineOf(Pad const &pad)
  {
    Point const at = place_ * pad.at;
    gx2Rigid const turn(-pad.angle, {0.0, 0.0});
    auto const make = [&] { return mapped(ofPad(pad), turn * gx2Rigid(gxDegree(), pad.offset), true); };
    constexpr double smallest = 1e-3;  // moving a smaller one far away could spoil it
    if (std::min(pad.size.x(), pad.size.y()) < smallest)
      return mapped(ofPad(pad), gx2Rigid(turn.angle(), at) * gx2Rigid(gxDegree(), pad.offset), true);
    for (Kept const &k : kept_)
      if (k.pad && areAlike(*k.pad, pad) && k.pad->angle == pad.angle && k.pad->offset == pad.offset)
        return gxSMDGDPolyPrivate::moved(k.outline, at);
    Kept &k = kept_[next_++ % kept_.size()];
    k = {nullptr, make()};
    k.pad = &pad;
    return gxSMDGDPolyPrivate::moved(k.outline, at);
  }

  /// Calls add(vertices) for each outline that a primitive of a pad has.
  template <class Add>
  static void eachOutline(Graphic const &g, Add const &add)
  {
    double const half = g.width / 2.0;
    auto const stroke = [&](Piece const &piece) {
      if (half > 0.0)
        add(thick(piece, half));
    };
    switch (g.kind) {
      case Graphic::line:
        return stroke({g.points[0], g.points[1], 0.0});
      case Graphic::arc:
        return stroke(arcThrough(g.points[0], g.points[1], g.points[2]));
      case Graphic::circle: {
        double const radius = g.points[0].distance(g.points[1]);
        add(circle(g.points[0], radius + half));
        if (!g.isFilled && radius > half)
          add(circle(g.points[0], radius - half));
        return;
      }
      case Graphic::rectangle:
        if (g.isFilled)
          add(rectangle(g.points[0], g.points[1]));
        for (Piece const &side : sidesOf(cornersOf(g)))
          stroke(side);
        return;
      case Graphic::polygon:
        add(chain(sidesOf(g)));
        for (Piece const &side : sidesOf(g))
          stroke(side);
    }
  }

  static Graphic cornersOf(Graphic const &rectangle)
  {
    Point const a = rectangle.points[0], b = rectangle.points[1];
    Graphic polygon;
    polygon.points = {a, {b.x(), a.y()}, b, {a.x(), b.y()}};
    return polygon;
  }

  void addLayers(gxSMDGDModel &model, std::array<char const *, 2> const &layers)
  {
    for (char const *const layer : layers) {
      std::vector<Piece> loose;
      auto const add = [&](Vertices &&v, bool isClosed) {
        tryAdd(
            model, [&] { return layer; }, [&] { return mapped(std::move(v), place_, isClosed); });
      };
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
            add(circle(g.points[0], g.points[0].distance(g.points[1])), true);
            break;
          case Graphic::rectangle:
            add(rectangle(g.points[0], g.points[1]), true);
            break;
          case Graphic::polygon:
            add(chain(sidesOf(g)), true);
        }
      }
      for (Chain const &found : joined(loose, tolerance_)) {
        if (!found.closes)
          models_.problems.push_back({Problem::gap, layer, {}, found.pieces.back().end, found.pieces.front().start});
        Vertices vertices = chain(found.pieces);
        if (!found.closes)
          vertices.insert(vertices.begin(), vertexOf(found.pieces.front().start));
        add(std::move(vertices), found.closes);
      }
    }
  }

  gxFootprint const &footprint_;
  gx2Rigid const place_;
  double const tolerance_;
  gxFootprintModels &models_;
  std::array<Kept, 8> kept_;
  std::size_t next_ = 0;
};

}  // namespace

std::string gxFootprintProblem::text() const
{
  if (kind == noSize)
    return what + " has no size";
  if (kind == refused)
    return what + " is refused: " + why;
  char words[160];
  std::snprintf(words, sizeof words, " does not close; from (%.4g, %.4g) to (%.4g, %.4g) a gap of %.4g mm", from.x(),
                from.y(), to.x(), to.y(), width());
  return what + words;
}

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
