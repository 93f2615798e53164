#include "dispc/wrfm/polyprivate.h"
#include "footprint/models.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace
{

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Point = gxVector<2>;
using P = gxSMDGDPolyPrivate;

/// With this between the brackets.
std::string footprint(std::string const &content)
{
  return "(footprint \"ours\" (version 1) (layer \"F.Cu\")\n" + content + ")\n";
}

gxFootprintModels modelsOf(std::string const &content)
{
  return gfFootprintModels(gxFootprint::read(footprint(content)));
}

std::string errorOf(std::string const &text)
{
  try {
    gxFootprint::read(text);
  } catch (gxFootprintError const &e) {
    return e.message();
  }
  return "";
}

/// A chip of 2 x 1.2, of our own making, in the form that the format has now.
char const *const chip = R"x(
  (descr "a chip (\"R\")") (attr smd)
  (property "Reference" "REF**" (at 0 -1.5 0) (layer "F.SilkS"))
  (fp_text user "${REFERENCE}" (at 0 0) (layer "F.Fab") (effects (font (size 0.5 0.5))))
  (fp_line (start -1 -0.6) (end 1 -0.6) (stroke (width 0.1) (type solid)) (layer "F.Fab"))
  (fp_line (start 1 0.6) (end 1 -0.6) (stroke (width 0.1) (type solid)) (layer "F.Fab"))
  (fp_arc (start 1 0.6) (mid 0 0.9) (end -1 0.6) (layer "F.Fab") (width 0.1))
  (fp_line (start -1 0.6) (end -1 -0.6) (layer "F.Fab") (width 0.1))
  (fp_rect (start -1.9 -0.95) (end 1.9 0.95) (layer "F.CrtYd") (width 0.05))
  (pad "1" smd roundrect (at -0.95 0) (size 1 1.4) (layers "F.Cu" "F.Paste" "F.Mask") (roundrect_rratio 0.25))
  (pad "2" smd roundrect (at 0.95 0 90) (size 1.4 1) (layers "F.Cu" "F.Paste" "F.Mask") (roundrect_rratio 0.25))
  (model "somewhere.wrl" (offset (xyz 0 0 0))))x";

TEST(Footprints, AreReadAsTheyStand)
{
  gxFootprint const f = gxFootprint::read(footprint(chip));
  EXPECT_EQ(f.name, "ours");
  EXPECT_EQ(f.layer, "F.Cu");
  EXPECT_EQ(f.graphics.size(), 5u);
  ASSERT_EQ(f.pads.size(), 2u);
  EXPECT_EQ(f.pads[1].at, Point(0.95, 0));
  EXPECT_EQ(f.pads[1].angle, gxDegree(90));
  EXPECT_THAT(f.pads[1].layers, ElementsAre("F.Cu", "F.Paste", "F.Mask"));
  ASSERT_EQ(f.texts.size(), 2u);
  EXPECT_EQ(f.texts[0].text, "REF**");
  EXPECT_TRUE(f.unknown.empty()) << f.unknown.begin()->first;
  EXPECT_EQ(gxFootprint::read(footprint("(star 1) (star 2) (pad 1 smd rect (at 0 0) (size 1 1) (glow))")).unknown,
            (std::map<std::string, long>{{"star", 2}, {"glow", 1}}));
  gxFootprint const odd =
      gxFootprint::read(footprint("(pad 1 smd star (at x y)) (pad 2 smd rect (at 0 0) (size 1 1))"));
  EXPECT_EQ(odd.unknown, (std::map<std::string, long>{{"pad of shape star", 1}}));
  EXPECT_EQ(odd.pads.size(), 1u);

  // The head as it was, and names without quotes.
  EXPECT_EQ(
      gxFootprint::read("(module old (layer F.Cu) (pad 1 smd rect (at 0 0) (size 1 1) (layers F.Cu)))").pads.size(),
      1u);
}

TEST(Footprints, ModelsHaveExactCurves)
{
  gxFootprintModels const models = modelsOf(chip);
  EXPECT_THAT(models.problems, IsEmpty());
  ASSERT_EQ(models.pads.numPolys(), 2);
  gxRect const first = models.pads.poly(0).boundingBox({}), second = models.pads.poly(1).boundingBox({});
  EXPECT_LT(first.origin().distance({-1.45, -0.7}) + first.size().distance({1, 1.4}), 1e-12);
  EXPECT_LT(second.origin().distance({0.45, -0.7}) + second.size().distance({1, 1.4}), 1e-12) << "turned by its angle";
  EXPECT_DOUBLE_EQ(models.pads.poly(0).vertex(2, false).vertexRadius(), 0.25);

  ASSERT_EQ(models.body.numPolys(), 1);
  EXPECT_TRUE(models.body.isClosed());
  EXPECT_EQ(models.body.poly(0).numVertices(), 4);
  EXPECT_NEAR(models.body.boundingBox({}).size().y(), 1.5, 1e-9) << "the arc bulges";
  EXPECT_EQ(models.courtyard.boundingBox({}), gxRect({-1.9, -0.95}, Point(3.8, 1.9)));
}

double areaOf(gxSMDGDPoly const &poly)
{
  // By rows of points; good to a few thousandths.
  gxRect const box = poly.boundingBox({});
  long in = 0;
  constexpr int n = 120;
  for (int i = 0; i < n; ++i)
    for (int k = 0; k < n; ++k)
      in += P::inside(poly, box.origin() + Point(box.size().x() * (i + 0.5) / n, box.size().y() * (k + 0.5) / n));
  return box.size().x() * box.size().y() * double(in) / (n * n);
}

TEST(Footprints, PadsOfEveryShape)
{
  double const pi = std::acos(-1.0);
  struct Row {
    char const *pad;
    double area;
    Point size;
    long vertices;
  };
  for (Row const &row : std::vector<Row>{
           {"rect (at 1 2) (size 4 2)", 8, {4, 2}, 4},
           {"roundrect (at 1 2) (size 4 2) (roundrect_rratio 0)", 8, {4, 2}, 4},
           {"roundrect (at 1 2) (size 4 2) (roundrect_rratio 0.5)", 4 + pi, {4, 2}, 4},
           {"roundrect (at 1 2) (size 4 2) (roundrect_rratio 0.2)", 8 - 0.64 + 0.16 * pi, {4, 2}, 4},
           {"roundrect (at 1 2) (size 4 2) (roundrect_rratio 0.2) (chamfer_ratio 0.3) (chamfer top_left)",
            8 - 0.18 - 0.75 * (0.64 - 0.16 * pi),
            {4, 2},
            5},
           // No room for fillets: the corners are arcs.
           {"roundrect (at 1 2) (size 4 2) (roundrect_rratio 0.5) (chamfer_ratio 0.25) (chamfer top_left)",
            8 - 0.125 - 0.75 * (4 - pi),
            {4, 2},
            7},
           {"roundrect (at 1 2) (size 4 2) (roundrect_rratio 0.5) (chamfer_ratio 0.5) (chamfer top_right bottom_left)",
            8 - 1 - 0.5 * (4 - pi),
            {4, 2},
            6},
           {"roundrect (at 1 2) (size 2 2) (roundrect_rratio 0.5) (chamfer_ratio 0.5) (chamfer bottom_right)",
            4 - 0.5 - 0.75 * (4 - pi),
            {2, 2},
            4},
           {"rect (at 1 2) (size 2 2) (chamfer_ratio 0.5) (chamfer top_left top_right bottom_left bottom_right)",
            2,
            {2, 2},
            4},
           {"oval (at 1 2) (size 4 2)", 4 + pi, {4, 2}, 4},
           {"oval (at 1 2) (size 2 4)", 4 + pi, {2, 4}, 4},
           {"oval (at 1 2) (size 2 2)", pi, {2, 2}, 2},
           {"circle (at 1 2) (size 2 2)", pi, {2, 2}, 2},
           {"trapezoid (at 1 2) (size 4 2) (rect_delta 0 1)", 8, {5, 2}, 4},
           {"oval (at 1 2 90) (size 4 2)", 4 + pi, {2, 4}, 4},
       }) {
    gxFootprintModels const models = modelsOf(std::string("(pad 1 smd ") + row.pad + " (layers F.Cu))");
    ASSERT_EQ(models.pads.numPolys(), 1) << row.pad << testing::PrintToString(models.problems);
    gxSMDGDPoly const &poly = models.pads.poly(0);
    EXPECT_NEAR(areaOf(poly), row.area, 0.06) << row.pad;
    gxRect const box = poly.boundingBox({});
    EXPECT_NEAR(box.size().distance(row.size), 0, 1e-9) << row.pad;
    EXPECT_NEAR((box.origin() + box.size() * 0.5).distance({1, 2}), 0, 1e-9) << row.pad;
    EXPECT_EQ(poly.numVertices(), row.vertices) << row.pad;
  }
  // Seen with y down, an angle turns against the clock; the offset of the hole turns along.
  gxFootprintModels const turned =
      modelsOf("(pad 1 thru_hole rect (at 0 0 90) (size 4 2) (drill 1 (offset 3 0)) (layers *.Cu))");
  EXPECT_NEAR((turned.pads.boundingBox({}).origin()).distance({-1, -5}), 0, 1e-9);

  gxFootprintModels const custom = modelsOf(R"((pad 7 smd custom (at 10 0) (size 1 1) (layers F.Cu)
    (options (clearance outline) (anchor circle))
    (primitives (gr_poly (pts (xy 0 0) (xy 3 0) (xy 3 2)) (width 0))
                (gr_line (start 0 0) (end 4 0) (width 0.5))
                (gr_arc (start 2 0) (mid 0 2) (end -2 0) (width 0.5))
                (gr_circle (center 0 0) (end 3 0) (width 0.2)))))");
  EXPECT_THAT(custom.problems, IsEmpty());
  EXPECT_THAT(custom.padOf, ElementsAre(0, 0, 0, 0, 0, 0));
  EXPECT_NEAR(areaOf(custom.pads.poly(2)), 4 * 0.5 + pi / 16, 0.06);
  EXPECT_NEAR(areaOf(custom.pads.poly(3)), 2 * pi * 0.5 + pi / 16, 0.12);
}

// Placed, a footprint turns as a whole, against the clock as it is seen; its pads tell their angles on the board.
TEST(Footprints, LieWhereTheyWerePlaced)
{
  gxFootprintModels const models = modelsOf(R"((at 100 50 90)
    (fp_line (start 0 0) (end 4 0) (layer F.Fab) (width 0.1))
    (pad 1 smd rect (at 3 0 90) (size 2 1) (layers F.Cu))
    (pad 2 smd rect (at 0 0) (size 2 1) (layers F.Cu)))");
  EXPECT_NEAR(models.body.poly(0).vertex(1, false).point().distance({100, 46}), 0, 1e-9);
  gxRect const along = models.pads.poly(0).boundingBox({}), across = models.pads.poly(1).boundingBox({});
  EXPECT_NEAR(along.origin().distance({99.5, 46}) + along.size().distance({1, 2}), 0, 1e-9);
  EXPECT_NEAR(across.origin().distance({99, 49.5}) + across.size().distance({2, 1}), 0, 1e-9);
}

TEST(Footprints, ArcsOfBothForms)
{
  auto const span = [](char const *arc) {
    return modelsOf(std::string("(fp_arc ") + arc + " (layer F.Fab) (width 0.1))").body.poly(0).vertex(1, false);
  };
  EXPECT_NEAR(span("(start 1 0) (mid 0 1) (end -1 0)").segmentAngleSpan().value(), 180, 1e-9);
  EXPECT_NEAR(span("(start 1 0) (mid 0 -1) (end -1 0)").segmentAngleSpan().value(), -180, 1e-9);
  double const h = std::sqrt(0.5);
  gxSMDGDPolyVertex const most =
      span(("(start 1 0) (mid " + std::to_string(-h) + " " + std::to_string(-h) + ") (end 0 1)").c_str());
  EXPECT_NEAR(most.segmentAngleSpan().value(), -270, 1e-3);
  EXPECT_EQ(span("(start 1 0) (mid 2 0) (end 4 0)").segmentAngleSpan().value(), 0) << "three points of a line";
  gxSMDGDPolyVertex const old = span("(start 0 0) (end 2 0) (angle 90)");
  EXPECT_NEAR(old.segmentAngleSpan().value(), 90, 1e-9);
  EXPECT_NEAR(old.point().distance({0, 2}), 0, 1e-12);
  // The older form goes all the way round, too; a polygon may have arcs among its corners.
  gxSMDGDModel const round = modelsOf("(fp_arc (start 1 2) (end 3 2) (angle 360) (layer F.Fab))").body;
  ASSERT_EQ(round.numPolys(), 1);
  EXPECT_NEAR(areaOf(round.poly(0)), 4 * std::acos(-1.0), 0.1);
  gxFootprintModels const slot = modelsOf(R"((fp_poly (pts (xy 0 0) (xy 2 0) (arc (start 2 0) (mid 3 1) (end 2 2))
    (arc (start 0 2) (mid -1 1) (end 0 0))) (layer F.Fab)))");
  EXPECT_THAT(slot.problems, IsEmpty());
  ASSERT_EQ(slot.body.numPolys(), 1);
  EXPECT_EQ(slot.body.poly(0).numVertices(), 4);
  EXPECT_NEAR(areaOf(slot.body.poly(0)), 4 + std::acos(-1.0), 0.06);
}

TEST(Footprints, WhatIsNotSoundIsTold)
{
  gxFootprintModels const models = modelsOf(R"(
    (fp_line (start 0 0) (end 4 0) (layer F.Fab) (width 0.1))
    (fp_line (start 4 0.01) (end 4 3) (layer F.Fab) (width 0.1))
    (fp_line (start 0 2.5) (end 0 0) (layer F.Fab) (width 0.1))
    (fp_line (start 4 3) (end 0 3) (layer F.Fab) (width 0.1))
    (pad 1 smd rect (at 0 0) (size 0 1) (layers F.Cu))
    (pad 2 smd custom (at 0 0) (size 1 1) (layers F.Cu)
      (primitives (gr_poly (pts (xy 0 0) (xy 2 2) (xy 2 0) (xy 0 2)) (width 0)))))");
  ASSERT_EQ(models.problems.size(), 3u) << testing::PrintToString(models.problems);
  EXPECT_EQ(models.problems[0].text(), "pad \"1\" has no size");
  EXPECT_THAT(models.problems[1].text(), HasSubstr("pad \"2\" is refused: Two or more"));
  EXPECT_EQ(models.problems[2].text(), "F.Fab does not close; from (0, 3) to (0, 2.5) a gap of 0.5 mm");
  EXPECT_EQ(models.problems[2].kind, gxFootprintProblem::gap);
  EXPECT_DOUBLE_EQ(models.problems[2].width(), 0.5);
  ASSERT_EQ(models.body.numPolys(), 1);
  EXPECT_TRUE(models.body.isOpen());
  EXPECT_EQ(models.body.poly(0).numVertices(), 5);
}

// Closed chains, in pieces, in any order and direction, and with ends that are off a little, are found again.
TEST(Footprints, LoosePiecesAreJoined)
{
  std::mt19937 random(5);
  auto const shake = [&] { return 0.004 * (double(random() % 2001) / 1000.0 - 1.0); };
  for (int round = 0; round < 40; ++round) {
    gxFootprint footprint;
    long const chains = 1 + round % 7, sides = 3 + round % 5;
    for (long i = 0; i < chains * sides; ++i) {
      Point const center(double(i / sides) * 3.0, round);
      auto const corner = [&](long k) { return center + Point(1.0, gxDegree(360.0 * double(k) / double(sides))); };
      Point const a = corner(i), b = corner(i + 1);
      gxFootprint::Graphic g;
      g.layer = "F.Fab";
      g.points = {a + Point(shake(), shake()), b + Point(shake(), shake())};
      if (random() % 2)
        std::swap(g.points[0], g.points[1]);
      if (random() % 3 == 0) {
        g.kind = gxFootprint::Graphic::arc;
        g.points.insert(g.points.begin() + 1, (a + b) * 0.55 - center * 0.1);
      }
      footprint.graphics.push_back(g);
    }
    std::shuffle(footprint.graphics.begin(), footprint.graphics.end(), random);
    gxFootprintModels const models = gfFootprintModels(footprint);
    EXPECT_THAT(models.problems, IsEmpty());
    ASSERT_EQ(models.body.numPolys(), chains) << round;
    for (gxSMDGDPoly const &poly : models.body.polys()) {
      EXPECT_TRUE(poly.isClosed());
      EXPECT_EQ(poly.numVertices(), sides);
    }
    // With one side missing, one chain stays open, over the whole of the missing side.
    footprint.graphics.pop_back();
    gxFootprintModels const open = gfFootprintModels(footprint);
    ASSERT_EQ(open.problems.size(), 1u);
    EXPECT_NEAR(open.problems[0].width(), 2.0 * std::sin(std::acos(-1.0) / double(sides)), 0.02);
  }
  // What hangs on a closed outline does not break it, wherever it stands in the file; what is drawn twice counts once.
  std::vector<std::pair<Point, Point>> lines = {{{0, 0}, {4, 0}},   {{4, 0}, {4, 3}}, {{4, 3}, {0, 3}},
                                                {{0, 3}, {0, 0}},   {{4, 3}, {0, 3}}, {{0, 0}, {-1, 0}},
                                                {{-1, 0}, {-1, 1}}, {{4, 3}, {5, 3}}, {{4, 3}, {4.01, 3}}};
  for (int round = 0; round < 50; ++round) {
    std::shuffle(lines.begin(), lines.end(), random);
    gxFootprint footprint;
    for (auto const &[a, b] : lines)
      footprint.graphics.push_back({gxFootprint::Graphic::line, "F.Fab", {a, b}, {}, 0.1, false});
    gxFootprintModels const models = gfFootprintModels(footprint);
    ASSERT_EQ(models.body.numPolys(), 3) << round;
    EXPECT_TRUE(models.body.poly(0).isClosed());
    EXPECT_EQ(models.body.poly(0).numVertices(), 4);
    EXPECT_EQ(models.body.poly(1).numVertices() + models.body.poly(2).numVertices(), 5);
    EXPECT_EQ(models.problems.size(), 2u);
  }
  // Where very many meet, it takes no longer.
  gxFootprint hub;
  for (int i = 0; i < 40'000; ++i) {
    gxFootprint::Graphic g;
    g.layer = "F.Fab";
    g.points = {{0, 0}, Point(1000.0, gxDegree(i * 0.009))};
    hub.graphics.push_back(g);
  }
  EXPECT_EQ(gfFootprintModels(hub).body.numPolys(), 20'000);
}

TEST(Footprints, ErrorsTellThePlace)
{
  std::string const deep = "(footprint x " + std::string(300, '(') + std::string(300, ')') + ")";
  EXPECT_THAT(errorOf(""), HasSubstr("line 1, column 1: this is no footprint"));
  EXPECT_THAT(errorOf("(board x)"), HasSubstr("begins with \"board\""));
  EXPECT_EQ(errorOf("(footprint x\n  (pad 1 smd rect (at 0 a) (size 1 1)))"), "line 2, column 25: \"a\" is no number");
  EXPECT_THAT(errorOf("(footprint x (pad 1 smd rect (at 0 1e99)"), HasSubstr("out of range"));
  EXPECT_THAT(errorOf("(footprint x (pad 1 smd rect (at 0 nan)"), HasSubstr("is no number"));
  EXPECT_THAT(errorOf("(footprint x (pad 1 smd rect (at 0 0)))"), HasSubstr("pad \"1\" lacks its size"));
  EXPECT_THAT(errorOf("(footprint x (fp_line (start 0 0)))"), HasSubstr("lacks its end"));
  EXPECT_THAT(errorOf("(footprint x (descr \"no end))"), HasSubstr("column 21: a text does not end"));
  EXPECT_THAT(errorOf("(footprint x (descr y)"), HasSubstr("the text ends inside a list"));
  EXPECT_THAT(errorOf("(footprint x))"), HasSubstr("closes what is not open"));
  EXPECT_THAT(errorOf("(footprint x) (y)"), HasSubstr("something stands behind"));
  EXPECT_EQ(errorOf(deep), "") << "what is passed over may be as deep as it likes";
  EXPECT_THAT(errorOf("(footprint x (a (b (c"), HasSubstr("does not end"));
  // Cut off anywhere, it is refused; with a byte changed it is refused or read, no more.
  std::string const whole = footprint(chip);
  for (std::size_t n = 0; n + 2 < whole.size(); ++n)
    EXPECT_NE(errorOf(whole.substr(0, n)), "") << n;
  for (std::size_t i = 0; i < whole.size(); ++i)
    for (char const c : {'(', ')', '"', '\\', '9', '\0'}) {
      std::string damaged = whole;
      damaged[i] = c;
      try {
        gfFootprintModels(gxFootprint::read(damaged));
      } catch (gxFootprintError const &) {
      }
    }
}

}  // namespace
