// Crop, held against samples of the outline: what of it runs inside the mask.

#include "dispc/wrfm/modelprivate.h"
#include "foundation/polygon.h"
#include "foundation/shapeserror.h"
#include "tests/support/outlinevariants.h"

#include <gtest/gtest.h>

namespace
{

using V = gxVector<2>;
using Private = gxSMDGDPolyPrivate;
using Poly = gxSMDGDPoly;
using Model = gxSMDGDModel;
using shape_test::isInside;

double distance(Model const &model, V p)
{
  double nearest = 1e300;
  for (Poly const &poly : model.polys())
    nearest = std::min(nearest, Private::distToPoint(poly, p));
  return nearest;
}

std::string textOf(Poly const &poly, Poly const &mask)
{
  return "outline " + asCode(poly) + "\nmask " + asCode(mask);
}

/// True if a sharp vertex of the outline touches the mask from the side that is not kept: that marks a piece by rule.
bool isMarked(Poly const &poly, Poly const &mask, std::vector<V> const &maskPoints, bool keepInside, double size)
{
  int const n = static_cast<int>(poly.numVertices());
  for (int v = 0; v < n; ++v) {
    V const at = poly.vertex(v, false).point();
    if (Private::isEndVertex(poly, v) || poly.vertex(v, false).vertexRadius() != 0 ||
        Private::distToPoint(mask, at) > 1e-9 * size)
      continue;
    int lost = 0;
    for (int const s : {v, (v + 1) % n}) {
      double const t = s == v ? 0.98 : 0.02;
      V const beside = Private::isLineSegment_(poly, s) ? Private::lineSegment_(poly, s).segPoint(t)
                                                        : Private::arcSegment_(poly, s).segPoint(t);
      lost += Private::distToPoint(mask, beside) > 1e-9 * size && isInside(maskPoints, beside) != keepInside;
    }
    if (lost == 2)
      return true;
  }
  return false;
}

/// How much there was to see.
struct Seen {
  int kept = 0, cutAway = 0, pieces = 0, models = 0;
};

/// The crops of an outline, to be the same in any frame of a @p size: samples of it are on what is kept or on the other
/// one, and together they are as long as the outline.
void expectCropAsSampled(Poly const &poly, Poly const &mask, double size, Seen &seen)
{
  SCOPED_TRACE(textOf(poly, mask));
  std::string const before = archivedBytes<Poly>(poly), maskBefore = archivedBytes<Poly>(mask);
  std::vector<V> const maskPoints = flattened(mask, 150), points = flattened(poly, 12);
  double length = 0;
  bool areBoth = true;
  for (bool const keepInside : {true, false}) {
    if (isMarked(poly, mask, maskPoints, keepInside, size)) {
      areBoth = false;
      continue;
    }
    Model kept;
    ASSERT_NO_THROW(kept = Private::crop(poly, mask, keepInside)) << keepInside;
    length += gxSMDGDModelPrivate::perimeter(kept, 0.0);
    ++seen.models;
    for (std::size_t k = 0; k + 1 < points.size(); ++k)
      for (double const t : {0.0, 0.13, 0.45, 0.8}) {
        V const p = points[k] + (points[k + 1] - points[k]) * t;
        bool const isOnArc = t > 0 && Private::distToPoint(poly, p) > 1e-10 * size;  // and not on its chord
        if (isOnArc || Private::distToPoint(mask, p) < 2e-3 * size)
          continue;
        bool const isKept = isInside(maskPoints, p) == keepInside;
        (isKept ? seen.kept : seen.cutAway)++;
        ASSERT_EQ(distance(kept, p) < 1e-9 * size, isKept) << p << " keepInside " << keepInside;
      }
    for (Poly const &piece : kept.polys()) {
      ++seen.pieces;
      ASSERT_GT(piece.numVertices(), 1);
      if (piece.isClosed())
        ASSERT_EQ(cornersOf(piece).size(), cornersOf(poly).size());
      else
        for (V const end : {piece.vertex(0, false).point(), piece.vertex(-1, true).point()})
          ASSERT_TRUE(
              (poly.isOpen() && (end == poly.vertex(0, false).point() || end == poly.vertex(-1, true).point())) ||
              Private::distToPoint(mask, end) < 1e-9 * size)
              << end;
    }
  }
  if (areBoth) {
    ASSERT_NEAR(length, Private::perimeter(poly, 0.0), 1e-8 * size);
  }
  ASSERT_EQ(archivedBytes<Poly>(poly), before);
  ASSERT_EQ(archivedBytes<Poly>(mask), maskBefore);
}

/// The outline as given, begun elsewhere, run the other way, and opened, as far as these are sound.
std::vector<Outline> variants(Corners const &corners, std::size_t start)
{
  std::vector<Outline> rows;
  for (Corners const &row : {corners, reversed(startingAt(corners, start))})
    for (bool const closed : {true, false})
      try {
        Outline const outline = outlineOf(row, closed);
        (void)flattened(outline, 1);  // fillets may use up a line between lines, which has no pieces then
        rows.push_back(outline);
      } catch (gxException const &) {
      }
  return rows;
}

TEST(Crop, keepsWhatSamplesOfRandomOutlinesSay)
{
  RandomOutlines random(7701);
  Seen seen;
  for (int i = 0; i < 35; ++i) {
    Corners const corners = cornersOf(random.sound(3, 12));
    gxSMDGDPoly const mask = gx2Rigid(gxDegree(random.in(0, 360)), V(random.in(-5, 5), random.in(-5, 5))) *
                             (random.in(0.2, 1.3) * static_cast<Poly const &>(random.sound(3, 12)));
    for (Outline const &row : variants(corners, corners.size() / 2)) {
      expectCropAsSampled(row, mask, 20, seen);
      if (HasFatalFailure())
        return;
    }
  }
  EXPECT_GT(seen.models, 200);
  EXPECT_GT(seen.kept, 5000);
  EXPECT_GT(seen.cutAway, 5000);
  EXPECT_GT(seen.pieces, 250);
}

/// Shapes on a lattice: they share sides, touch with corners and arcs, and cross at vertices and joints of fillets.
Corners onLattice(Random &random)
{
  auto const whole = [&](int low, int high) { return double(low + random.below(high - low + 1)); };
  double const a = whole(2, 4) * 2, b = whole(1, 3) * 2, c = whole(1, 2) * 2, d = b + whole(1, 2) * 2;
  double const r = whole(1, 3);
  Corners corners;
  switch (random.below(5)) {
    case 0:
      corners = {{a, 0}, {a, b}, {0, b}, {0, 0}};
      break;
    case 1:
      corners = {{a + c, 0}, {a + c, b}, {c, b}, {c, d}, {0, d}, {0, 0}};
      break;
    case 2:
      corners = {{2 * r, 0}, {4 * r, 2 * r}, {2 * r, 4 * r}, {0, 2 * r}};
      break;
    case 3:
      corners = {{0, 0, 0, 180}, {2 * r, 0, 0, 180}};
      break;
    default:
      corners = {{0, 0}, {a, 0}, {a, b, 0, 180}, {0, b}};
      break;
  }
  bool const isSharp = corners.size() == 2 || random.one(3);
  std::size_t const n = corners.size();
  for (std::size_t i = 0; i < n && !isSharp; ++i) {
    Corner const &before = corners[(i + n - 1) % n], &next = corners[(i + 1) % n];
    bool const isSmooth = corners[i].span != 0 || next.span != 0;
    V const p(corners[i].x, corners[i].y);
    // A cut fillet leaves less of its sides, half of which is for the fillets at their other ends.
    bool const isLong = p.distance(V(before.x, before.y)) > 3 && p.distance(V(next.x, next.y)) > 3;
    if (!isSmooth && !random.one(3))
      corners[i].radius = isLong ? 1 : 0.5;
  }
  Corners const moved = mapped(corners, gxDegree(90.0 * random.below(4)), 1, V(whole(-4, 4), whole(-4, 4)));
  return random.one(2) ? reversed(moved) : moved;
}

TEST(Crop, keepsWhatSamplesSayWhereOutlinesTouchAndRunAlongEachOther)
{
  Random random(7702);
  Seen seen;
  for (int i = 0; i < 300; ++i) {
    gxDegree const turn(i % 3 ? random.in(0, 360) : 0);
    double const scale = i % 3 == 2 ? 1e-3 : 1;
    V const move = i % 3 == 1 ? V(1000, -70) : V(0, 0);
    Corners const corners = mapped(onLattice(random), turn, scale, move);
    auto const masks = variants(mapped(onLattice(random), turn, scale, move), 0);
    if (masks.empty() || masks[0].isOpen())
      continue;  // fillets that use up a side
    for (Outline const &row : variants(corners, static_cast<std::size_t>(random.below(3)) % corners.size()))
      expectCropAsSampled(row, masks[0], 10 * scale, seen);
    if (HasFatalFailure())
      return;
  }
  EXPECT_GT(seen.models, 800);
  EXPECT_GT(seen.kept, 8000);
  EXPECT_GT(seen.cutAway, 8000);
}

// ---- What the pieces are like

gxSMDGDPolyVertex vertexWith(Corner const &c, double percentPrev, double percentNext, gxDimTol const &tol)
{
  return {{c.x, c.y}, c.radius, gxDegree(c.span), percentPrev, percentNext, c.label, tol};
}

/// Open unless closed ones are expected, in the order of the pieces.
void expectPieces(Model const &model, std::vector<Corners> const &expected, bool areClosed = false)
{
  ASSERT_EQ(model.numPolys(), static_cast<long>(expected.size())) << model;
  EXPECT_EQ(model.name(), "");
  for (std::size_t i = 0; i < expected.size(); ++i) {
    Poly const &piece = model.poly(static_cast<int>(i));
    Corners const corners = cornersOf(piece);
    ASSERT_EQ(corners.size(), expected[i].size()) << asCode(piece);
    EXPECT_EQ(piece.isClosed(), areClosed);
    for (std::size_t k = 0; k < corners.size(); ++k) {
      Corner const &c = corners[k], &e = expected[i][k];
      for (auto const &[a, b] : {std::pair(c.x, e.x), {c.y, e.y}, {c.radius, e.radius}, {c.span, e.span}})
        EXPECT_NEAR(a, b, 1e-9) << i << ' ' << k << ' ' << asCode(piece);
      EXPECT_EQ(c.label, e.label) << i << ' ' << k;
    }
  }
}

TEST(CropPieces, ofARectangle)
{
  Poly const rect = Poly::rectangle(10, 4, {0, 0});  // (5, 2), (-5, 2), (-5, -2), (5, -2), labelled 0 to 3
  Corners const all = cornersOf(rect);
  auto const within = [&](Corners const &mask, bool keepInside) {
    return Private::crop(rect, outlineOf(mask), keepInside);
  };
  Corners const around = {{9, 9}, {-9, 9}, {-9, -9}, {9, -9}}, right = {{9, 9}, {1, 9}, {1, -9}, {9, -9}};
  expectPieces(within(around, true), {all}, true);
  expectPieces(within(around, false), {});
  // The walk begins in what is kept, and the last stretch goes on in the first; or it does not.
  expectPieces(within(right, true), {{{1, -2, 0, 0, 3}, {5, -2, 0, 0, 3}, {5, 2, 0, 0, 0}, {1, 2, 0, 0, 1}}});
  expectPieces(within(right, false), {{{1, 2, 0, 0, 1}, {-5, 2, 0, 0, 1}, {-5, -2, 0, 0, 2}, {1, -2, 0, 0, 3}}});
  // Four cuts of one side.
  Corners const comb = {{-4, 1}, {-3, 1}, {-3, 3}, {0, 3}, {0, 1}, {1, 1}, {1, 9}, {-4, 9}};
  expectPieces(within(comb, true), {{{1, 2, 0, 0, 1}, {0, 2, 0, 0, 1}}, {{-3, 2, 0, 0, 1}, {-4, 2, 0, 0, 1}}});
  expectPieces(
      within(comb, false),
      {{{-4, 2, 0, 0, 1}, {-5, 2, 0, 0, 1}, {-5, -2, 0, 0, 2}, {5, -2, 0, 0, 3}, {5, 2, 0, 0, 0}, {1, 2, 0, 0, 1}},
       {{0, 2, 0, 0, 1}, {-3, 2, 0, 0, 1}}});
  // What touches from outside - a side along a side, a corner or an arc at a side - cuts nothing.
  for (Corners const &mask : {Corners{{7, 2}, {7, 8}, {-1, 8}, {-1, 2}}, Corners{{5, 2}, {5, 8}, {-5, 8}, {-5, 2}},
                              Corners{{0, 2}, {3, 7}, {-3, 7}}, Corners{{-2, 4, 0, 180}, {2, 4, 0, 180}}})
    for (Corners const &row : {mask, reversed(mask)}) {
      expectPieces(within(row, false), {all}, true);
      expectPieces(within(row, true), {});
    }
  // A mask with the outline of the rectangle keeps it.
  expectPieces(Private::crop(rect, rect, true), {all}, true);
  expectPieces(within(all, true), {all}, true);
  expectPieces(within(reversed(all), false), {});

  Poly turned = rect;
  turned.toggleDirection();
  turned.weight(0.5);
  turned.colors(gxSMDColors(gxColor::redColor(), gxColor::redColor(), gxColor::redColor()));
  for (Corners const &mask : {around, right}) {
    Model const pieces = Private::crop(turned, outlineOf(mask), true);
    EXPECT_TRUE(pieces.poly(0).isDirectionReversed());
    EXPECT_EQ(pieces.poly(0).name(), "poly");
    EXPECT_EQ(pieces.poly(0).weight(), 1.0);
    EXPECT_TRUE(pieces.poly(0).colors() == gxSMDColors());
    EXPECT_FALSE(Private::crop(rect, outlineOf(mask), true).poly(0).isDirectionReversed());
  }
}

TEST(CropPieces, keepAndLoseWhatBelongsToSegments)
{
  gxDimTol const tol(-1, 1, 1, gxDimTol::Offsets), exact(8, 7.5, 8.5, gxDimTol::Limits), none;
  Poly poly;
  poly << vertexWith({0, 0, 0, 0, 5}, 0.7, 0.7, tol) << vertexWith({8, 0, 2, 0, 6}, 0.7, 0.7, exact)
       << vertexWith({8, 8, 0, 0, 7}, 0.7, 0.3, exact) << vertexWith({0, 8, 0, 180, 7}, 0.3, 0.3, tol);
  poly.close();
  Poly const low = Poly::rectangle(40, 10.8, {0, -5});  // up to y = 0.4: through the fillet at (8, 0), and segment 0
  double const a = std::asin(1 - 0.4 / 2) * 180 / std::numbers::pi;  // of the fillet, from (8, 2)
  double const x = 6 + 2 * std::cos(gxRadian(gxDegree(a)).value());
  for (bool const keepInside : {true, false}) {
    SCOPED_TRACE(keepInside);
    Model const model = Private::crop(poly, low, keepInside);
    ASSERT_EQ(model.numPolys(), 1);
    Poly const &piece = model.poly(0);
    if (keepInside) {
      // The cut end beside vertex 0 has no label: both would claim 1.4 of the segment. The segment to the cut fillet is
      // too short for its tolerance.
      expectPieces(model, {{{0, 0.4, 0, 0, -1}, {0, 0, 0, 0, 5}, {6, 0, 0, 0, 6}, {x, 0.4, 0, 90 - a, -1}}});
      for (int v = 0; v < 4; ++v)
        EXPECT_TRUE(piece.vertex(v, false).segmentLengthTol() == none) << v;
    } else {
      expectPieces(model,
                   {{{x, 0.4, 0, 0, -1}, {8, 2, 0, a, -1}, {8, 8, 0, 0, 7}, {0, 8, 0, 180, 7}, {0, 0.4, 0, 0, 5}}});
      for (int v = 0; v < 5; ++v)
        EXPECT_TRUE(piece.vertex(v, false).segmentLengthTol() == (v == 3 ? tol : none)) << v;
      EXPECT_EQ(piece.vertex(2, false).percentNextSegment(), 0.3);
    }
  }

  // An arc in three parts, the outline begun on both sides of it; a tolerance that fits a shorter segment stays.
  Poly const band = Poly::rectangle(4, 40, {4, 0});
  Poly arched = outlineOf({{8, 4}, {0, 4, 0, 180}, {0, 0}, {8, 0}});
  expectPieces(Private::crop(arched, band, true),
               {{{6, 4 + std::sqrt(12), 0, 180}, {2, 4 + std::sqrt(12), 0, 60}}, {{2, 0}, {6, 0}}});
  expectPieces(Private::crop(arched, band, false), {{{6, 0}, {8, 0}, {8, 4}, {6, 4 + std::sqrt(12), 0, 60}},
                                                    {{2, 4 + std::sqrt(12), 0, 180}, {0, 4, 0, 60}, {0, 0}, {2, 0}}});
  gxSMDGDPolyVertex corner = poly.vertex(1, false);
  corner.segmentLengthTol(tol);
  poly.replaceVertex(1, corner);
  EXPECT_TRUE(Private::crop(poly, low, true).poly(0).vertex(2, false).segmentLengthTol() == tol);

  // Begun at a fillet that is cut: the last stretch ends where the fillet starts.
  Poly const rounded = outlineOf({{8, 8, 2, 0, 1}, {0, 8}, {0, 0}, {8, 0}});
  V const middle = V(6, 6) + V(2, gxDegree(45));
  expectPieces(Private::crop(rounded, outlineOf({{9, 9}, {-9, -9}, {9, -9}}), true),
               {{{0, 0}, {8, 0}, {8, 6, 0, 0, 1}, {middle.x(), middle.y(), 0, 45}}});
  expectPieces(Private::crop(rounded, outlineOf({{9, 9}, {-9, -9}, {9, -9}}), false),
               {{{middle.x(), middle.y()}, {6, 8, 0, 45}, {0, 8}, {0, 0}}});
}

TEST(CropPieces, beginWhereASharpVertexTouchesFromTheSideThatIsNotKept)
{
  Corners const dart = {{0, 5}, {3, 9}, {-3, 9}};
  Poly const mask = Poly::rectangle(20, 10, {0, 0});  // touched by the tip, vertex 0
  expectPieces(Private::crop(outlineOf(startingAt(dart, 2)), mask, true), {{{0, 5}, {3, 9}}});
  expectPieces(Private::crop(outlineOf(startingAt(dart, 2)), mask, false), {startingAt(dart, 2)}, true);
  Corners inner = {{0, 5}, {3, 1}, {-3, 1}};
  expectPieces(Private::crop(outlineOf(inner), mask, true), {inner}, true);
  inner[0].radius = 1;  // a fillet does not reach so far
  expectPieces(Private::crop(outlineOf(inner), mask, false), {});
}

// ---- Errors, models, lists

template <class Error, class Do>
void expectError(Do what)
{
  EXPECT_THROW((void)what(), Error);
}

TEST(CropErrors, tellWhatIsWrongAndLeaveTheInputs)
{
  Poly const rect = Poly::rectangle(4, 2, {0, 0});
  Poly open = rect;
  open.open();
  expectError<Poly::notClosed>([&] { return Private::crop(rect, open, true); });
  expectError<Poly::notClosed>([&] { return Private::crop(rect, Poly(), false); });
  expectError<Poly::invalidIndex>([&] { return Private::crop(Poly(), rect, true); });
  expectError<Poly::invalidIndex>([&] { return Private::crop(Poly(), open, true); });
  // Fillets that need half of a side each: beside a cut one, where only part of the side is left, there is no room.
  Corners const round = {{4, 4, 1.9}, {0, 4, 1.9}, {0, 0, 1.9}, {4, 0, 1.9}};
  Outline const tight = outlineOf(round), wedge = outlineOf({{4.5, 2.2}, {2.2, 4.5}, {9, 9}});
  std::string const before = tight.allFields();
  expectError<Poly::invalidRounding>([&] { return Private::crop(tight, wedge, false); });
  EXPECT_EQ(tight.allFields(), before);

  // As large as it gets: right as long as the numbers are, and no hang then.
  for (double const scale : {1e-6, 1e100, 1e160, 1e300})
    for (double const span : {0.0, 90.0})
      try {
        Outline const wide = outlineOf({{4 * scale, 0, 0, span}, {4 * scale, 4 * scale}, {0, 4 * scale}, {0, 0}});
        Model const half = Private::crop(wide, Poly::rectangle(8 * scale, 6 * scale, {6 * scale, 2 * scale}), true);
        EXPECT_TRUE(scale > 1e150 || (half.numPolys() == 1 && half.poly(0).isOpen())) << scale << half;
      } catch (gxException const &) {
        EXPECT_GT(scale, 1e150);
      }

  using Models = gxSMDGDModelPrivate;
  Model nested, far;
  nested << Poly::rectangle(1, 1, {0, 0}) << Poly::rectangle(9, 9, {0, 0});
  far << rect << Poly::rectangle(1, 1, {9, 9});
  try {
    Models::crop(nested, far);
    ADD_FAILURE();
  } catch (Model::nestedPolys const &e) {
    EXPECT_NE(std::string(e.what()).find("At least one of the polys is nested."), std::string::npos);
  }
  EXPECT_EQ(Models::crop(far, Model()).numPolys(), 0);
  Model const openMasks = Model() << open, withOpen = Model() << open << rect, withEmpty = Model() << rect << Poly();
  expectError<Poly::notClosed>([&] { return Models::crop(far, openMasks); });
  expectError<Poly::notClosed>([&] { return Models::crop(withOpen, far); });
  expectError<Poly::invalidIndex>([&] { return Models::crop(withEmpty, far); });
  EXPECT_EQ(Models::crop(Model() << open, far).numPolys(), 1);
  EXPECT_EQ(Models::crop(Model(), open, true).numPolys(), 0);
}

TEST(CropModels, cropEachOutlineByEachMask)
{
  using Models = gxSMDGDModelPrivate;
  Model device("device");
  Poly heavy = Poly::rectangle(10, 4, {0, 0});
  heavy.weight(-0.5);
  device << heavy << Poly::circle(2, {20, 0}) << Poly::rectangle(1, 1, {-20, 0});
  Poly const mask = Poly::rectangle(20, 40, {10, 0});
  Model const kept = Models::crop(device, mask, true);
  expectPieces(kept, {{{0, -2, 0, 0, 3}, {5, -2, 0, 0, 3}, {5, 2, 0, 0, 0}, {0, 2, 0, 0, 1}},
                      {{20, 2, 0, 180, 0}, {18, 0, 0, 90, 0}, {20, -2, 0, 90, 0}}});
  EXPECT_EQ(kept.subModelLabels(), (std::vector<long>{3, 0, 1}));
  EXPECT_EQ(kept.poly(0).weight(), 1.0);
  gxPolygon const corners(std::vector<V>{{20, 20}, {0, 20}, {0, -20}, {20, -20}});
  EXPECT_TRUE(gxSMDGDModelPrivate::equivalent(Models::crop(device, corners, true), kept));
  Model out;
  for (Poly const &p : device.polys())
    out << Private::crop(p, mask, false);
  EXPECT_TRUE(Models::equivalent(Models::crop(device, mask, false), out));

  // In two masks twice, outline by outline.
  Model const masks = Model() << mask << Poly::rectangle(100, 100, {0, 0}), twice = Models::crop(device, masks);
  ASSERT_EQ(twice.numPolys(), 5);
  EXPECT_TRUE(twice.poly(0) == kept.poly(0));
  EXPECT_TRUE(twice.poly(2) == kept.poly(1));
  for (int const i : {1, 3, 4})
    EXPECT_TRUE(twice.poly(i).isClosed());
  std::vector<gxPolygon> const polygons = {corners,
                                           gxPolygon(std::vector<V>{{50, 50}, {-50, 50}, {-50, -50}, {50, -50}})};
  EXPECT_TRUE(Models::equivalent(Models::crop(device, polygons), twice));
}

TEST(CropLists, theLongestOfOutlinesThatMeetStays)
{
  struct Meeting : Outline {
    Meeting(Poly const &poly) : Outline(poly) {}  // NOLINT(google-explicit-constructor)
    using gxSMDGDPoly::intersection_;
  };
  RandomOutlines random(7703);
  int dropped = 0, replaced = 0;
  for (int i = 0; i < 25; ++i) {
    std::list<Poly> in;
    for (int k = 0; k < 12; ++k) {
      Poly poly = gx2Rigid(gxDegree(0), V(random.in(-20, 20), random.in(-20, 20))) *
                  (random.in(0.1, 0.7) * static_cast<Poly const &>(random.sound()));
      if (random.upTo(3) == 0)
        poly.open();
      poly.weight(k);
      in.push_back(random.upTo(4) == 0 && k > 0 ? in.back() : poly);
      in.back().weight(k);
    }
    std::vector<Poly> expected;
    for (Poly const &p : in) {
      double longest = -1;
      std::vector<Poly> others;
      for (Poly const &c : expected)
        if (Meeting(p).intersection_(c).empty())
          others.push_back(c);
        else
          longest = std::max(longest, Private::perimeter(c, 0.0));
      if (longest >= Private::perimeter(p, 0.0)) {
        ++dropped;
        continue;
      }
      replaced += others.size() < expected.size();
      expected = others;
      expected.push_back(p);
    }
    Private::crossingPolysResolve(in, in);
    EXPECT_EQ(std::vector<Poly>(in.begin(), in.end()), expected);
  }
  EXPECT_GT(dropped, 30);
  EXPECT_GT(replaced, 10);
}

}  // namespace
