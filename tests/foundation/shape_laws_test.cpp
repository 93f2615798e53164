// The laws of shapes over a table of plain shapes, chains of them and elliptical arcs.

#include "tests/foundation/shape_laws.h"
#include "tests/support/shapes.h"

#include <gtest/gtest.h>

#include <memory>
#include <numbers>
#include <string>

using namespace shape_test;

namespace
{

constexpr double pi = std::numbers::pi;
constexpr int steps = 1024;

Chain roundedSquare(gxXform<2> const &x, gxVector<2> round)
{
  Chain chain;
  gxVector<2> const sharp = gxVector<2>(1.0, 1.0) - round;
  for (int i = 0; i <= steps; ++i) {
    double const t = -pi / 2.0 + 2.0 * pi * i / steps;
    int const quarter = 4 * i / steps % 4;
    // on the borders between quarters both corners have their say
    for (int q : {i % (steps / 4) == 0 ? (quarter + 3) % 4 : quarter, quarter}) {
      gxVector<2> const sign(q == 0 || q == 1 ? 1.0 : -1.0, q == 1 || q == 2 ? 1.0 : -1.0);
      chain.push_back(x * gxVector<2>(sign.x() * sharp.x() + round.x() * std::cos(t),
                                      sign.y() * sharp.y() + round.y() * std::sin(t)));
    }
  }
  return {chain.begin(), chain.end() - 1};
}

Chain ellipse(gxVector<2> center, gxVector<2> radii, double angle, double from, double span)
{
  return alongCurve(
      [=](double u) {
        double const s = from + span * u;
        gxVector<2> const p(radii.x() * std::cos(s), radii.y() * std::sin(s));
        return center + gxVector<2>(p.x() * std::cos(angle) - p.y() * std::sin(angle),
                                    p.x() * std::sin(angle) + p.y() * std::cos(angle));
      },
      steps);
}

std::vector<Row> rows()
{
  std::vector<Row> table;
  auto const add = [&](char const *name, gxShape *shape, Chain const &chain) {
    table.push_back({name, gxPtrHandle_const<gxShape>(shape), divided(chain, 0.04)});
  };
  add("segment", new gxLineSeg({1, 2}, {-3, 5}), {{1, 2}, {-3, 5}});
  add("open polyline", new gxPolyline({{0, 0}, {3, 0}, {3, 2}, {1, -2}}), {{0, 0}, {3, 0}, {3, 2}, {1, -2}});
  add("polyline with repeated vertices", new gxPolyline({{0, 0}, {0, 0}, {3, 0}, {3, 0}, {3, 2}}),
      {{0, 0}, {3, 0}, {3, 2}});
  Chain const concave = {{0, 0}, {4, 0}, {4, 3}, {2, 1}, {0, 3}};
  add("closed polyline", new gxPolyline(concave, true), closed(concave));
  Chain const clockwise = {{0, 0}, {0, 2}, {3, 2}};
  add("left-handed triangle", new gxPolyline(clockwise, true), closed(clockwise));
  add("rectangle", new gxRect({1, -1}, {3, 2}), {{1, -1}, {4, -1}, {4, 1}, {1, 1}, {1, -1}});
  add("rectangle of negative width", new gxRect({1, -1}, {-3, 2}), {{1, -1}, {-2, -1}, {-2, 1}, {1, 1}, {1, -1}});
  gxMatrix<2> const sheared(2, 0.7, 0.3, 1.1), mirrored(0.4, 1.3, 2.1, -0.2);
  add("sharp parallelogram", new gxGenRect({1, 2}, sheared, {0, 1}),
      closed(mapped({{-1, -1}, {1, -1}, {1, 1}, {-1, 1}}, gxXform<2>(sheared, {1, 2}))));
  add("rounded parallelogram", new gxGenRect({1, 2}, sheared, {0.4, 0.7}),
      roundedSquare(gxXform<2>(sheared, {1, 2}), {0.4, 0.7}));
  add("rounded on all of one axis", new gxGenRect({0, 0}, gxVector<2>(4, 2), gxRadian(0.4), {1, 0.25}),
      roundedSquare(gxXform<2>(gxMatrix<2>(gxRadian(0.4), gxRadian(0.4), 2, 1), {0, 0}), {1, 0.25}));
  add("mirrored ellipse as rectangle", new gxGenRect({-1, 0}, mirrored, {1, 1}),
      roundedSquare(gxXform<2>(mirrored, {-1, 0}), {1, 1}));
  Chain const slanted = {{1, 1}, {4, 2}, {3, 4}, {0, 3}};
  add("affine rectangle", new gxAffineRectangle({1, 1}, {4, 2}, {0, 3}), closed(slanted));
  add("mirrored affine rectangle", new gxAffineRectangle({1, 1}, {0, 3}, {4, 2}),
      closed({{1, 1}, {0, 3}, {3, 4}, {4, 2}}));
  add("circle", new gxCircle({2, -1}, 1.5), ellipse({2, -1}, {1.5, 1.5}, 0, 0, 2 * pi));
  add("ellipse", new gxEllipse2({3, 1}, gxRadian(0.5), {1, 1}, true, gxRadian(0.8)),
      ellipse({1, 1}, {3, 1}, 0.5, 0.8, 2 * pi));
  add("tall left-handed ellipse", new gxEllipse2({0.5, 2}, gxRadian(-1), {0, 1}, false, gxRadian(0.3)),
      ellipse({0, 1}, {0.5, 2}, -1, -0.3, -2 * pi));
  add("arc", new gxEllipseArc2(gxEllipse2({3, 1}, gxRadian(0.5), {1, 1}), gxRadian(0.4), gxRadian(2.5)),
      ellipse({1, 1}, {3, 1}, 0.5, 0.4, 2.5));
  add("long backward arc", new gxEllipseArc2(gxEllipse2({1, 2}, gxRadian(), {0, 0}), gxRadian(-3), gxRadian(-5)),
      ellipse({0, 0}, {1, 2}, 0, -3, -5));
  add("forward arc on a left-handed ellipse",
      new gxEllipseArc2(gxEllipse2({2, 1}, gxRadian(1), {1, 0}, false, gxRadian(0.2)), gxRadian(1), gxRadian(1.5)),
      ellipse({1, 0}, {2, 1}, 1, -1.2, -1.5));
  add("whole turn as an arc", new gxEllipseArc2(gxEllipse2({2, 1}, gxRadian(1), {1, 0}), gxRadian(2), gxRadian(7)),
      ellipse({1, 0}, {2, 1}, 1, 2, 2 * pi));
  add("small arc of a big circle",
      new gxEllipseArc2(gxEllipse2({50, 50}, gxRadian(), {0, -50}), gxRadian(pi / 2 - 0.02), gxRadian(0.04)),
      ellipse({0, -50}, {50, 50}, 0, pi / 2 - 0.02, 0.04));

  auto const annular = [](double from, double span) {  // inner arc forth, outer arc back
    Chain outer = ellipse({0, 0}, {3, 2}, 0.3, from, span), inner = ellipse({0.2, 0}, {1, 1.5}, 0.3, from, span);
    outer.insert(outer.end(), inner.rbegin(), inner.rend());
    return closed(outer);
  };
  gxEllipseAnnulus const ring(gxEllipse({0.2, 0}, {1, 1.5}, gxRadian(0.3)), gxEllipse({0, 0}, {3, 2}, gxRadian(0.3)));
  add("section of a ring", new gxEllipseAnnulusSection(ring, gxRadian(0.5), gxRadian(2.2)), annular(0.5, 1.7));
  add("section of a ring beyond the turn", new gxEllipseAnnulusSection(ring, gxRadian(6), gxRadian(1)),
      annular(6, 1 - 6 + 2 * pi));

  auto *const chained = new gxContourTree;
  chained->addChild(gxLineSeg({-3, 0}, {-1, 0}));
  chained->addChild(gxEllipseArc2(gxEllipse2({1, 1}, gxRadian(), {0, 0}), gxRadian(pi), gxRadian(-pi)));
  chained->addChild(gxLineSeg({1.5, 0.5}, {3, 0}));
  Chain bump = ellipse({0, 0}, {1, 1}, 0, pi, -pi);
  bump.insert(bump.begin(), {{-3, 0}, {-1, 0}});
  bump.insert(bump.end(), {{1.5, 0.5}, {3, 0}});
  add("contour tree with a gap", chained, bump);
  auto *const slice = new gxContourTree(true);
  slice->addChild(gxEllipseArc2(gxEllipse2({2, 2}, gxRadian(), {0, 0}), gxRadian(0), gxRadian(1)));
  slice->addChild(gxLineSeg({2 * std::cos(1.0), 2 * std::sin(1.0)}, {0, 0}));
  Chain sector = ellipse({0, 0}, {2, 2}, 0, 0, 1);
  sector.push_back({0, 0});
  add("closed contour tree", slice, closed(sector));
  return table;
}

INSTANTIATE_TEST_SUITE_P(Table, ShapeLaws, testing::ValuesIn(rows()), testName);

}  // namespace
