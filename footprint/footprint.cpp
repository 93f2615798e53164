#include "footprint/footprint.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <optional>

namespace
{

using Graphic = gxFootprint::Graphic;
using Pad = gxFootprint::Pad;
using Point = gxVector<2>;

constexpr std::size_t mostItems = 1'000'000, mostBytes = 1UL << 28;

/// Known items that say nothing of outlines, in the order of the alphabet.
constexpr std::string_view ofNoUse[] = {
    "attr",
    "autoplace_cost180",
    "autoplace_cost90",
    "chamfer",
    "clearance",
    "descr",
    "die_length",
    "fill",
    "generator",
    "generator_version",
    "group",
    "hide",
    "keep_end_layers",
    "layers",
    "locked",
    "model",
    "net_tie_pad_groups",
    "path",
    "pinfunction",
    "pintype",
    "private_layers",
    "property",
    "remove_unused_layer",
    "remove_unused_layers",
    "solder_mask_margin",
    "solder_paste_margin",
    "solder_paste_margin_ratio",
    "solder_paste_ratio",
    "status",
    "tags",
    "tedit",
    "thermal_bridge_angle",
    "thermal_gap",
    "thermal_width",
    "tstamp",
    "uuid",
    "version",
    "zone",
    "zone_connect",
    "zone_layer_connections",
};
static_assert(std::is_sorted(std::begin(ofNoUse), std::end(ofNoUse)));

template <class List>
void addTo(List &list, typename List::value_type item, gxSexprReader const &in)
{
  if (list.size() == mostItems)
    in.fail("more than " + std::to_string(mostItems) + " items");
  list.push_back(std::move(item));
}

Point readPoint(gxSexprReader &in)
{
  double const x = in.number();
  return {x, in.number()};
}

/// Calls visit(name) for each list that is left in the present one, and passes over what it leaves of them. A name
/// that it does not know returns false.
template <class Visit>
void eachItem(gxSexprReader &in, std::map<std::string, long> &unknown, Visit visit)
{
  for (gxSexprReader::Kind kind = in.peek(); kind != gxSexprReader::end; kind = in.peek()) {
    if (kind != gxSexprReader::list) {
      in.skip();
      continue;
    }
    std::string_view const name = in.enter();
    if (!visit(name) && !std::binary_search(std::begin(ofNoUse), std::end(ofNoUse), name))
      ++unknown[std::string(name)];
    in.leave();
  }
}

/// A point on an arc that is half as far round the centre as the angle says.
Point turned(Point const &center, Point const &p, double degrees)
{
  double const a = gxRadian(gxDegree(degrees)).value(), c = std::cos(a), s = std::sin(a);
  Point const d = p - center;
  return center + Point(d.x() * c - d.y() * s, d.x() * s + d.y() * c);
}

class Reader
{
 public:
  Reader(gxSexprReader &in, gxFootprint &footprint) : in_(in), footprint_(footprint) {}

  void read()
  {
    if (in_.peek() != gxSexprReader::list)
      in_.fail("this is no footprint: a list was expected");
    std::string_view const head = in_.enter();
    if (head != "footprint" && head != "module")
      in_.fail("this is no footprint: it begins with \"" + std::string(head.substr(0, 40)) + "\"");
    footprint_.name = gxSexprReader::plain(in_.value());
    eachItem(in_, footprint_.unknown, [&](std::string_view name) { return item(name); });
    in_.leave();
    if (in_.peek() != gxSexprReader::end)
      in_.fail("something stands behind the footprint");
  }

 private:
  bool item(std::string_view name)
  {
    if (name == "pad")
      readPad();
    else if (name.substr(0, 3) == "fp_" && kindOf(name.substr(3)))
      addTo(footprint_.graphics, readGraphic(*kindOf(name.substr(3))), in_);
    else if (name == "fp_text" || name == "property")
      readText(name == "property");
    else if (name == "layer")
      footprint_.layer = gxSexprReader::plain(in_.value());
    else if (name == "at")
      readPlace();
    else
      return false;
    return true;
  }

  void readPlace()
  {
    footprint_.at = readPoint(in_);
    if (in_.peek() == gxSexprReader::word)
      footprint_.angle = gxDegree(in_.number());
  }

  static std::optional<Graphic::Kind> kindOf(std::string_view name)
  {
    if (name == "line")
      return Graphic::line;
    if (name == "arc")
      return Graphic::arc;
    if (name == "circle")
      return Graphic::circle;
    if (name == "rect")
      return Graphic::rectangle;
    if (name == "poly")
      return Graphic::polygon;
    return {};
  }

  Graphic readGraphic(Graphic::Kind kind)
  {
    Graphic g;
    g.kind = kind;
    std::optional<Point> start, mid, end, center;
    std::optional<double> angle;
    eachItem(in_, footprint_.unknown, [&](std::string_view name) {
      if (name == "start")
        start = readPoint(in_);
      else if (name == "mid")
        mid = readPoint(in_);
      else if (name == "end")
        end = readPoint(in_);
      else if (name == "center")
        center = readPoint(in_);
      else if (name == "angle")
        angle = in_.number();
      else if (name == "width")
        g.width = in_.number();
      else if (name == "stroke")
        eachItem(in_, footprint_.unknown, [&](std::string_view part) {
          if (part == "width")
            g.width = in_.number();
          return part == "width" || part == "type" || part == "color";
        });
      else if (name == "fill")
        g.isFilled = isYes(in_.value());
      else if (name == "layer")
        g.layer = gxSexprReader::plain(in_.value());
      else if (name == "pts")
        readCorners(g);
      else
        return name == "tstamp" || name == "uuid" || name == "status";
      return true;
    });
    auto const need = [&](std::optional<Point> const &p, char const *what) {
      if (!p)
        in_.fail(std::string("a drawing lacks its ") + what);
      return *p;
    };
    switch (kind) {
      case Graphic::line:
      case Graphic::rectangle:
        g.points = {need(start, "start"), need(end, "end")};
        break;
      case Graphic::circle:
        g.points = {need(center, "center"), need(end, "end")};
        break;
      case Graphic::arc:
        if (!mid && angle && std::abs(*angle) >= 360.0) {
          g.kind = Graphic::circle;
          g.points = {need(start, "start"), need(end, "end")};
        } else if (mid || !angle)
          g.points = {need(start, "start"), need(mid, "mid"), need(end, "end")};
        else  // the older form: about "start", from "end" on
          g.points = {need(end, "end"), turned(need(start, "start"), *end, *angle / 2.0), turned(*start, *end, *angle)};
        break;
      case Graphic::polygon:
        if (g.points.empty())
          in_.fail("a polygon lacks its points");
    }
    return g;
  }

  static bool isYes(std::string_view v) { return v == "yes" || v == "solid"; }

  /// Corners, and arcs among them.
  void readCorners(Graphic &g)
  {
    eachItem(in_, footprint_.unknown, [&](std::string_view name) {
      if (name == "xy") {
        addTo(g.points, readPoint(in_), in_);
        return true;
      }
      if (name != "arc")
        return false;
      Graphic const arc = readGraphic(Graphic::arc);
      if (arc.kind == Graphic::arc) {
        addTo(g.points, arc.points[0], in_);
        addTo(g.bulges, {g.points.size(), arc.points[1]}, in_);
        addTo(g.points, arc.points[2], in_);
      }
      return true;
    });
  }

  void readText(bool isProperty)
  {
    gxFootprint::Text t;
    if (in_.peek() == gxSexprReader::end)
      return;
    t.kind = gxSexprReader::plain(in_.value());
    if (in_.peek() == gxSexprReader::word || in_.peek() == gxSexprReader::text)
      t.text = gxSexprReader::plain(in_.value());
    bool hasPlace = false;
    std::map<std::string, long> looks;
    eachItem(in_, looks, [&](std::string_view name) {
      if (name == "at") {
        t.at = readPoint(in_);
        hasPlace = true;
      } else if (name == "layer") {
        t.layer = gxSexprReader::plain(in_.value());
      }
      return true;
    });
    if (hasPlace || !isProperty)
      addTo(footprint_.texts, std::move(t), in_);
  }

  void readPad()
  {
    Pad pad;
    pad.number = gxSexprReader::plain(in_.value());
    pad.type = std::string(in_.value());
    std::string_view const shape = in_.value();
    auto const known = shapeOf(shape);
    if (!known) {
      ++footprint_.unknown["pad of shape " + std::string(shape.substr(0, 40))];
      return;
    }
    pad.shape = *known;
    bool hasPlace = false, hasSize = false;
    eachItem(in_, footprint_.unknown, [&](std::string_view name) {
      if (name == "at") {
        pad.at = readPoint(in_);
        if (in_.peek() == gxSexprReader::word)
          pad.angle = gxDegree(in_.number());
        hasPlace = true;
      } else if (name == "size") {
        pad.size = readPoint(in_);
        hasSize = true;
      } else if (name == "layers") {
        pad.layers.reserve(3);  // copper, mask, paste
        while (in_.peek() != gxSexprReader::end)
          addTo(pad.layers, gxSexprReader::plain(in_.value()), in_);
      } else if (name == "rect_delta") {
        pad.taper = readPoint(in_);
      } else if (name == "roundrect_rratio") {
        pad.roundRatio = in_.number();
      } else if (name == "chamfer_ratio") {
        pad.chamferRatio = in_.number();
      } else if (name == "chamfer") {
        readChamfer(pad);
      } else if (name == "drill") {
        eachItem(in_, footprint_.unknown, [&](std::string_view part) {
          if (part == "offset")
            pad.offset = readPoint(in_);
          return part == "offset";
        });
      } else if (name == "options") {
        eachItem(in_, footprint_.unknown, [&](std::string_view part) {
          if (part == "anchor")
            pad.hasCircleAnchor = in_.value() == "circle";
          return part == "anchor" || part == "clearance";
        });
      } else if (name == "primitives") {
        eachItem(in_, footprint_.unknown, [&](std::string_view part) {
          auto const kind = part.substr(0, 3) == "gr_" ? kindOf(part.substr(3)) : std::nullopt;
          if (kind)
            addTo(pad.primitives, readGraphic(*kind), in_);
          return kind.has_value();
        });
      } else {
        return false;
      }
      return true;
    });
    if (!hasPlace || !hasSize)
      in_.fail("pad \"" + pad.number + "\" lacks its " + (hasPlace ? "size" : "place"));
    addTo(footprint_.pads, std::move(pad), in_);
  }

  static std::optional<Pad::Shape> shapeOf(std::string_view name)
  {
    if (name == "rect")
      return Pad::rectangle;
    if (name == "roundrect")
      return Pad::roundedRectangle;
    if (name == "oval")
      return Pad::oval;
    if (name == "circle")
      return Pad::circle;
    if (name == "trapezoid")
      return Pad::trapezoid;
    if (name == "custom")
      return Pad::custom;
    return {};
  }

  void readChamfer(Pad &pad)
  {
    static constexpr std::array<std::string_view, 4> corners = {"top_left", "top_right", "bottom_left", "bottom_right"};
    while (in_.peek() != gxSexprReader::end) {
      std::string_view const name = in_.value();
      for (std::size_t i = 0; i < corners.size(); ++i)
        pad.chamfer[i] = pad.chamfer[i] || name == corners[i];
    }
  }

  gxSexprReader &in_;
  gxFootprint &footprint_;
};

}  // namespace

gxFootprint gxFootprint::read(std::string_view text)
{
  gxFootprint footprint;
  gxSexprReader in(text);
  if (text.size() > mostBytes)
    in.fail("the text is longer than " + std::to_string(mostBytes >> 20) + " MB");
  Reader(in, footprint).read();
  return footprint;
}
