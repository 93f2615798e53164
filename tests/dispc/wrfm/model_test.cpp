#include "dispc/wrfm/modelprivate.h"
#include "foundation/archive.h"
#include "foundation/polygon.h"
#include "foundation/shapeserror.h"
#include "tests/support/outlines.h"

#include <gmock/gmock.h>

#include <cmath>
#include <list>

// Outlines cut, turned round and joined; and models of them.

namespace
{

using Poly = gxSMDGDPoly;
using Private = gxSMDGDPolyPrivate;
using testing::ElementsAre;

constexpr int rounds = 400;

/// A random sound outline with roundings, arcs and labels, open or closed.
Outline anyOutline(Random &random)
{
  for (;;) {
    try {
      Outline made(random.one(2), star(random, 3 + random.below(6)));
      made.weight(random.in(-1, 1));
      made.positiveArrowColor(gxColor::orangeColor());
      if (random.one(2))
        made.toggleDirection();
      return made;
    } catch (gxException const &) {  // another one
    }
  }
}

double lengthOf(Poly const &poly)
{
  return Private::perimeter(poly, 0.0);
}

TEST(Surgery, WalkingBackwardTwiceIsTheWalkItself)
{
  Random random(1);
  for (int i = 0; i < rounds; ++i) {
    Outline const poly = anyOutline(random);
    Poly back, again;
    Private::reversePoly(poly, back);
    EXPECT_EQ(back.isOpen(), poly.isOpen());
    EXPECT_NE(back.isDirectionReversed(), poly.isDirectionReversed());
    EXPECT_EQ(back.weight(), poly.weight());
    EXPECT_NEAR(lengthOf(back), lengthOf(poly), 1e-9 * lengthOf(poly)) << asCode(poly);
    Private::reversePoly(back, again);
    if (poly.isClosed()) {
      EXPECT_EQ(Outline(again).allFields(), Outline(poly).allFields()) << asCode(poly);
    }
    Private::reversePoly(back, back);
    EXPECT_EQ(back, again) << "the result may replace what is read";
  }
}

TEST(Surgery, ThePiecesOfADeletionCoverWhatIsKept)
{
  Random random(2);
  for (int i = 0; i < rounds; ++i) {
    // Without roundings, which end with the segments beside them.
    std::vector<Corner> corners = star(random, 3 + random.below(6));
    for (Corner &c : corners)
      c.radius = 0;
    Outline poly;
    try {
      poly = Outline(random.one(2), corners);
    } catch (gxException const &) {
      continue;
    }
    poly.weight(0.25);
    std::vector<long> cut;
    double kept = 0.0;
    long segments = 0;
    for (int s = poly.isOpen() ? 1 : 0; s < poly.numVertices(); ++s) {
      if (random.one(3)) {
        cut.push_back(s);
      } else {
        kept += Private::segmentLength(poly, s);
        ++segments;
      }
    }
    std::vector<Poly> pieces(3);
    Private::deleteSegments(poly, cut, pieces);
    double covered = 0.0;
    long found = 0;
    for (Poly const &piece : pieces) {
      covered += lengthOf(piece);
      found += piece.numSegments();
      EXPECT_EQ(piece.weight(), 0.25);
      EXPECT_EQ(piece.isOpen(), cut.empty() ? poly.isOpen() : true);
    }
    EXPECT_EQ(found, segments) << asCode(poly);
    EXPECT_NEAR(covered, kept, 1e-9) << asCode(poly);
    std::vector<Poly> const before = pieces;
    EXPECT_THROW(Private::deleteSegments(poly, {poly.numVertices()}, pieces), Poly::invalidIndex);
    if (poly.isOpen()) {
      EXPECT_THROW(Private::deleteSegments(poly, {0}, pieces), Poly::invalidIndex);
    }
    EXPECT_EQ(pieces, before);
  }
  Poly const square = Poly::rectangle(4, 2, {0, 0});
  std::vector<Poly> pieces;
  Private::deleteSegments(square, {2}, pieces);
  ASSERT_EQ(pieces.size(), 1u);
  EXPECT_EQ(pieces[0].vertex(0, false).point(), square.vertex(2, false).point()) << "begins behind the cut";
  EXPECT_EQ(pieces[0].numVertices(), 4);
  Private::deleteSegments(square, {0, 1, 2, 3}, pieces);
  EXPECT_TRUE(pieces.empty());
}

TEST(Surgery, WhatBelongsToAVertexIsItsShareOfTwoSegments)
{
  Random random(3);
  for (int i = 0; i < rounds; ++i) {
    Outline poly = anyOutline(random);
    int const v = random.below(static_cast<int>(poly.numVertices()));
    double expected = 0.0;
    gxSMDGDPolyVertex share = poly.vertex(v, false);
    share.percentPrevSegment(random.in(0.01, 1));
    share.percentNextSegment(random.in(0.01, 1));
    share.vertexRadius(0);
    try {
      poly.replaceVertex(v, share);
    } catch (gxException const &) {
      continue;
    }
    int const before = poly.previousSegmentIndex_(v), after = poly.nextSegmentIndex_(v);
    if (before >= 0)
      expected += Private::segmentLength(poly, before) * share.percentPrevSegment();
    if (after >= 0)
      expected += Private::segmentLength(poly, after) * share.percentNextSegment();
    Poly const piece = Private::subPoly(poly, v - 1000 * static_cast<int>(poly.numVertices()), true);
    EXPECT_EQ(piece.numVertices(), 1 + (before >= 0) + (after >= 0));
    EXPECT_NEAR(lengthOf(piece), expected, 1e-9) << asCode(poly) << " at " << v;
    EXPECT_EQ(piece.isDirectionReversed(), poly.isDirectionReversed());
    EXPECT_EQ(piece.weight(), poly.weight());
    EXPECT_TRUE(Private::subModelLabels(piece).empty());
    if (poly.isEndVertex(v)) {
      EXPECT_THROW(Private::corner(poly, v, false), Poly::invalidIndex);
    } else {
      EXPECT_EQ(Private::corner(poly, v, false), piece);
    }
  }
}

TEST(Surgery, JoinedOutlinesHaveABridgeOfALine)
{
  Poly const a = Outline(false, {{0, 0}, {4, 0}, {6, 2, 0, 90}}),
             b = Outline(false, {{10, -5, 0, 30}, {14, -6, 0, 40}});
  for (bool const aForward : {true, false})
    for (bool const bForward : {true, false}) {
      Poly joined;
      Private::connectPolys(a, aForward, b, bForward, joined);
      gxVector<2> const from = a.vertex(aForward ? -1 : 0, true).point(),
                        to = b.vertex(bForward ? 0 : -1, true).point();
      EXPECT_EQ(joined.numVertices(), 5);
      EXPECT_NEAR(lengthOf(joined), lengthOf(a) + lengthOf(b) + from.distance(to), 1e-9);
      EXPECT_TRUE(Private::isLineSegment_(joined, 3));
      EXPECT_EQ(joined.vertex(2, false).point(), from);
    }
  Poly out = a;
  EXPECT_THROW(Private::connectPolys(a, true, Poly::circle(1, {0, 0}), true, out), Poly::invalidVertices);
  Poly const across = Outline(false, {{2, -1}, {2, 1}});
  EXPECT_THROW(Private::connectPolys(a, true, across, true, out), Poly::crossingSegments);
  EXPECT_EQ(out, a);
  Private::connectPolys(a, true, b, true, out);
  EXPECT_EQ(out.numVertices(), 5);
}

TEST(Surgery, FiltersKeepWhatTheyShould)
{
  Poly const square = Poly::rectangle(4, 2, {0, 0}), ring = Poly::circle(5, {0, 0});
  Poly const hook = Outline(false, {{0, 0}, {4, 0}, {4, 3}});
  std::list<Poly> const all = {square, ring, hook};
  auto const left = [&](auto filter) {
    std::list<Poly> polys = all;
    filter(polys);
    std::vector<long> counts;
    for (Poly const &p : polys)
      counts.push_back(p.isOpen() ? -p.numVertices() : p.numVertices());
    return counts;
  };
  EXPECT_THAT(left([](auto &p) { Private::perimeterFilter(p, gxRange(7, 12)); }), ElementsAre(4, -3));
  EXPECT_THAT(left([](auto &p) { Private::closureFilter(p, true, true); }), ElementsAre(4, 2, -3));
  EXPECT_THAT(left([](auto &p) { Private::closureFilter(p, false, true); }), ElementsAre(-3));
  EXPECT_THAT(left([](auto &p) { Private::closureFilter(p, false, false); }), ElementsAre());
  EXPECT_THAT(left([](auto &p) { Private::segmentLengthFilter(p, gxRange(2.5, 100)); }), ElementsAre(-2, -2, 2, -3));
  EXPECT_THAT(left([](auto &p) { Private::segmentAngleSpanFilter(p, gxDegree(90)); }), ElementsAre(4, -3));
  // Corners of the square are of 90 degrees, those of the ring of 180; the hook keeps its ends.
  EXPECT_THAT(left([](auto &p) { Private::vertexAngleFilter(p, gxAngleRange(gxDegree(170), gxDegree(20))); }),
              ElementsAre(2, -2));
}

TEST(Surgery, TolerancesAreTakenAtTheScaleThatIsSeen)
{
  Outline poly(true, {{0, 0}, {10, 0}, {10, 10}, {0, 10}});
  gxSMDGDPolyVertex v = poly.vertex(2, false);
  v.segmentLengthTol(gxDimTol(10, 1, 1, gxDimTol::Offsets));
  poly.replaceVertex(2, v);
  auto const scaled = [](double x, double y) { return gxXform<2>(gxMatrix<2>(x, 0, 0, y), {3, 4}); };
  EXPECT_THAT(poly.segmentsOutOfTolerance(scaled(1, 1), scaled(1, 1)), ElementsAre());
  EXPECT_THAT(poly.segmentsOutOfTolerance(scaled(1, 1.2), scaled(1, 1)), ElementsAre(2)) << "too long";
  EXPECT_THAT(poly.segmentsOutOfTolerance(scaled(1, 2.05), scaled(1, 2)), ElementsAre()) << "seen twice as large";
  EXPECT_THAT(poly.segmentsOutOfTolerance(scaled(9, 1), scaled(1, 1)), ElementsAre()) << "the others have none";
  EXPECT_THROW(poly.segmentsOutOfTolerance(scaled(1, 0), scaled(1, 1)), gxShapesError::DegenerateShape);
  gxSMDGDModel model;
  model << Poly::circle(3, {0, 0}) << poly;
  EXPECT_THAT(model.polysOutOfTolerance(scaled(1, 1.2), scaled(1, 1)), ElementsAre(1));
}

// Models

class Model : public gxSMDGDModel
{
 public:
  using gxSMDGDModel::deletePoly;
  using gxSMDGDModel::gxSMDGDModel;
  using gxSMDGDModel::operator=;
  using gxSMDGDModel::replacePoly;
};

Poly labelled(gxVector<2> const &at, std::vector<long> const &labels)
{
  std::vector<Corner> corners = {
      {at.x(), at.y()}, {at.x() + 4, at.y()}, {at.x() + 4, at.y() + 4}, {at.x(), at.y() + 4}};
  for (std::size_t i = 0; i < labels.size(); ++i)
    corners[i].label = labels[i];
  return Outline(true, corners);
}

TEST(Models, HoldOutlinesAndTheirLabels)
{
  Model model("device");
  EXPECT_TRUE(model.isClosed() && !model.isOpen());
  EXPECT_THROW(model.poly(0), gxSMDGDModel::invalidIndex);
  model << labelled({0, 0}, {2, 3}) << labelled({9, 0}, {1, 2});
  EXPECT_THAT(model.subModelLabels(), ElementsAre(2, 3, 1));
  model << model;
  EXPECT_EQ(model.numPolys(), 4);
  EXPECT_EQ(model.numVertices(), 16);
  model.deletePoly(4);
  model.deletePoly(-1);
  model.replacePoly(9, Poly());
  EXPECT_EQ(model.numPolys(), 4);
  model.deletePoly(0);
  model.deletePoly(1);
  EXPECT_THAT(model.subModelLabels(), ElementsAre(1, 2));
  model.replacePoly(0, Outline(false, {{0, 0}, {1, 1, 0, 0, 7}}));
  EXPECT_TRUE(model.isOpen());
  EXPECT_THAT(model.subModelLabels(), ElementsAre(7, 1, 2));
  EXPECT_EQ(model.name(), "") << "what is made anew has no name";
  model.colors(gxSMDColors());
  model.negativeArrowColor(gxColor::redColor());
  EXPECT_EQ(model.poly(1).negativeArrowColor(), gxColor::redColor());
  model.polys(model.polys());
  EXPECT_EQ(model.numPolys(), 2);
  EXPECT_THAT(model.subModelLabels(), ElementsAre(7, 1, 2));
}

TEST(Models, ASubModelLiesRoundTheOriginAndKnowsWhereItWas)
{
  Model model;
  model << labelled({10, 20}, {2, 3}) << labelled({30, 20}, {1, 2});
  gxSMDGDModel corner;
  model.subModel(3, corner);
  ASSERT_EQ(corner.numPolys(), 1);
  gx2Rigid const was = gxSMDGDModelPrivate::position(corner);
  EXPECT_EQ(was.translation(), gxVector<2>(14, 20)) << "the middle vertex of a single corner";
  EXPECT_EQ(corner.poly(0).vertices()[1].point(), gxVector<2>(0, 0));

  gxSMDGDModel pads("pads");
  model.subModel(2, pads);
  EXPECT_EQ(pads.numPolys(), 2);
  EXPECT_EQ(pads.name(), "");
  gxSMDGDModel const back = gxSMDGDModelPrivate::position(pads) * pads;
  EXPECT_TRUE(gfRealEq(back.poly(0), gxSMDGDPolyPrivate::subPoly(model.poly(0), 0, false), 1e-9));
  EXPECT_TRUE(gfRealEq(back.poly(1), gxSMDGDPolyPrivate::subPoly(model.poly(1), 1, false), 1e-9));
  gxSMDGDModel same = pads;
  model.subModel(99, same);
  EXPECT_TRUE(gfRealEq(same.poly(1), pads.poly(1), 1e-9));

  gxSMDGDModel grown;
  gxSMDGDModelPrivate::corner(model, grown, 1, 2, false);
  EXPECT_EQ(gxSMDGDModelPrivate::position(grown).translation(), gxVector<2>(34, 24));
  EXPECT_THROW(gxSMDGDModelPrivate::corner(model, grown, 2, 2, false), gxSMDGDModel::invalidIndex);
}

TEST(Models, ImagesArchivesAndCounts)
{
  Model model("device");
  model << labelled({10, 20}, {2, 3}) << Outline(false, {{0, 0, 0, 0, 5}, {4, 0, 1}, {4, 3, 0, 20}});
  gxSMDGDModel part;
  model.subModel(2, part);
  gx2Rigid const at = gxSMDGDModelPrivate::position(part);
  gx2Rigid const turn(gxDegree(30), {5, 6});
  EXPECT_EQ(gxSMDGDModelPrivate::position(turn * part), gx2Rigid());
  EXPECT_EQ(gxSMDGDModelPrivate::position(2.0 * part).translation(), at.translation() * 2.0);
  EXPECT_EQ(gxSMDGDModelPrivate::position(part.flip()).translation(), gxVector<2>() - at.translation());
  gxSMDGDModel const twice = part.flip().flip();
  EXPECT_TRUE(gxSMDGDModelPrivate::equivalent(twice, part));
  EXPECT_EQ(twice, part);
  EXPECT_NE(2.0 * part, part);
  EXPECT_NE(turn * part, part);

  std::stringstream stream;
  gxStoringArchive(stream) << part << model;
  gxSMDGDModel loadedPart, loaded;
  gxLoadingArchive(stream) >> loadedPart >> loaded;
  EXPECT_EQ(loadedPart, part);
  EXPECT_EQ(loaded, model);
  EXPECT_EQ(loaded.name(), "device");
  EXPECT_EQ(loaded.subModelLabels(), model.subModelLabels());
  // A label that no outline has, and a stream that ends early, leave the model empty.
  std::string const bytes = archivedBytes<gxSMDGDModel>(model);
  std::string const labels("\3\0\0\0\2\0\0\0\3\0\0\0\5\0\0\0", 16);
  ASSERT_NE(bytes.find(labels), std::string::npos);
  std::string other = bytes;
  other[bytes.rfind(labels) + 4] = 9;
  for (std::string const &bad : {other, bytes.substr(0, bytes.size() - 9)}) {
    EXPECT_THROW(loadArchived(bad, loaded), gxArchive::Errors);
    EXPECT_EQ(loaded.numPolys(), 0);
    EXPECT_TRUE(loaded.subModelLabels().empty());
    loadArchived(bytes, loaded);
    EXPECT_EQ(loaded, model);
  }

  gxXform<2> const unit;
  double const perimeter = gxSMDGDModelPrivate::perimeter(model, 0);
  EXPECT_EQ(gxSMDGDModelPrivate::numPosProbesRequired(model, unit, {unit, unit}, 0.5), int(perimeter / 0.5));
  EXPECT_THROW(gxSMDGDModelPrivate::numPosProbesRequired(model, unit, {unit}, 0.5), gxSMDGDModel::invalidIndex);
  EXPECT_EQ(gxSMDGDModelPrivate::numPosProbesRequired(gxSMDGDModel(), unit, {}, 0.0), 0);

  gxSMDGDModel const squares =
      gxSMDGDModelPrivate::convert({gxPolygon({{0, 0}, {1, 0}, {1, 1}}), gxPolygon({{5, 5}, {9, 5}, {9, 9}, {5, 9}})});
  EXPECT_TRUE(squares.isClosed());
  EXPECT_EQ(squares.numVertices(), 7);
  EXPECT_THROW(gxSMDGDModelPrivate::convert({gxPolygon({{0, 0}})}), Poly::invalidVertices);
}

}  // namespace
