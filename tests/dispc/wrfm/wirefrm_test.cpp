#include "dispc/wrfm/wirefrm.h"

#include "dispc/wrfm/modelprivate.h"
#include "foundation/archive.h"
#include "foundation/circle.h"
#include "foundation/shapeserror.h"
#include "tests/support/archived.h"
#include "tests/support/outlines.h"

#include <gmock/gmock.h>

#include <functional>
#include <sstream>

namespace
{

using Point = gxVector<2>;
using S = gxShapesError;
using M = gxSMDGDModelPrivate;

gxDimTol limits(double low, double high)
{
  return gxDimTol(kUnsetDim, low, high);
}

gx2Wireframe plate()
{
  return gx2Wireframe(gxGenPoly(gxRect({0, 0}, Point(40, 20))));
}

std::string everything(gx2Wireframe const &w)
{
  return archivedBytes<gx2Wireframe>(w);
}

class Hooked : public gx2Wireframe
{
 public:
  using gx2Wireframe::gx2Wireframe;
  std::string calls;

 protected:
  void polarity_(bool reversed) override { calls += reversed ? '+' : '-'; }
};

TEST(Wireframe, PolarityIsThatOfItsOutline)
{
  Hooked w{plate()};
  w.polarity(false);
  EXPECT_EQ(w.calls, "");
  w.polarity(true);
  w.polarity(true);
  w.insidePolarity(!w.isInsidePositive());
  w.polarity(true);
  EXPECT_EQ(w.calls, "++");  // the hook is not told of insidePolarity()
  EXPECT_TRUE(w.isPolarityReversed());

  gxXform<2> const turn(gxMatrix<2>(gxRadian(2), gxRadian(2), 3, 1), Point(1, 1)),
      mirror(gxMatrix<2>(-2, 0.3, 0, 1), Point());
  for (bool const positive : {true, false}) {
    gx2Wireframe v = plate();
    v.insidePolarity(positive);
    EXPECT_EQ(v.isInsidePositive(), positive);
    EXPECT_EQ(v.map(turn).isInsidePositive(), positive);
    EXPECT_EQ(v.map(mirror).isInsidePositive(), !positive);
    EXPECT_EQ(v.map(mirror).isPolarityReversed(), v.isPolarityReversed());
    gx2Wireframe seen = v.map(mirror);
    seen.insidePolarity(positive);
    EXPECT_EQ(seen.isInsidePositive(), positive);
  }
  gx2Wireframe open = plate();
  open.open();
  std::string const before = everything(open);
  EXPECT_THROW(open.isInsidePositive(), S::BadGeom);
  EXPECT_THROW(open.insidePolarity(true), S::BadGeom);
  EXPECT_THROW(gx2Wireframe().isInsidePositive(), S::BadGeom);
  EXPECT_EQ(everything(open), before);
}

TEST(Wireframe, TolerancesBelongToSegmentsNumberedFromTheirStarts)
{
  gxGenPoly const mapped = plate().map(gxXform<2>(gxMatrix<2>(2, 0, 0, 1), Point()));
  gx2Wireframe const all(mapped, limits(10, 50));
  EXPECT_FALSE(all.isMutable());
  for (long i = 0; i < 4; ++i)
    EXPECT_EQ(all.segmentLengthTol(i), gxDimTol(i % 2 ? 20 : 40, 10, 50)) << i;
  EXPECT_THROW(gx2Wireframe(mapped, limits(30, 50)), S::BadGeom);

  gx2Wireframe w = plate();
  w.segmentLengthTol(1, limits(19, 21));
  EXPECT_EQ(w.poly().vertex(2, false).segmentLengthTol(), limits(19, 21));
  EXPECT_EQ(w.segmentLengthTol(1), gxDimTol(20, 19, 21));
  EXPECT_EQ(w.segmentLengthTol(0), gxDimTol(40, kUnsetDim, kUnsetDim));
  w.insertVertex(1, {45, 10}, 0, gxRadian(), limits(11, 12));
  EXPECT_EQ(w.poly().vertex(2, false).segmentLengthTol(), limits(11, 12)) << "the segment to the new vertex";
  EXPECT_EQ(w.poly().vertex(3, false).segmentLengthTol(), gxDimTol()) << "the rest of the one that was split";

  gx2Wireframe built;
  built.insertVertex({0, 0}, 0, gxRadian(), limits(1, 2));  // no segment ends at the first
  built.insertVertex({3, 0}, 0, gxRadian(), limits(2, 4));
  built.insertVertex(-1, {0, 3}, 0, gxRadian(), limits(7, 8));  // nor one set in front
  built.insertVertex({3, 4}, 0, gxRadian(), limits(4, 4));
  built.close(gxRadian(), limits(3, 4));
  std::string const closed = everything(built);
  built.close(gxDegree(30), limits(30, 40));
  EXPECT_EQ(everything(built), closed);
  std::vector<double> lows;
  for (gxSMDGDPolyVertex const &v : built.poly().vertices())
    lows.push_back(v.segmentLengthTol().minTol());
  EXPECT_THAT(lows, testing::ElementsAre(3, -1, 2, 4));
}

TEST(Wireframe, ARefusedEditLeavesItAsItWas)
{
  struct Row {
    char const *what;
    std::function<void(gx2Wireframe &)> edit;
  };
  std::vector<Row> const rows = {
      {"a tolerance that the length breaks", [](gx2Wireframe &w) { w.segmentLengthTol(0, limits(41, 50)); }},
      {"a new segment that breaks its own",
       [](gx2Wireframe &w) { w.insertVertex(1, Point(45, 10), 0, gxRadian(), limits(1, 2)); }},
      {"a vertex that makes the outline cross itself",
       [](gx2Wireframe &w) { w.insertVertex(1, Point(20, -5), 0, gxRadian(), gxDimTol()); }},
      {"a rounding that does not fit",
       [](gx2Wireframe &w) { w.insertVertex(1, Point(45, 10), 99, gxRadian(), gxDimTol()); }},
      {"no such vertex", [](gx2Wireframe &w) { w.insertVertex(4, Point(45, 10), 0, gxRadian(), gxDimTol()); }},
      {"none before the front", [](gx2Wireframe &w) { w.insertVertex(-2, Point(45, 10), 0, gxRadian(), gxDimTol()); }},
      {"no such segment", [](gx2Wireframe &w) { w.segmentLengthTol(4, gxDimTol()); }},
      {"a closing segment that breaks its tolerance",
       [](gx2Wireframe &w) { w.open(), w.close(gxRadian(), limits(1, 2)); }},
      {"a closing arc that crosses", [](gx2Wireframe &w) { w.open(), w.close(gxDegree(-300), gxDimTol()); }},
      {"a closing segment that turns for ever", [](gx2Wireframe &w) { w.open(), w.close(gxRadian(NAN)); }},
  };
  for (Row const &row : rows) {
    gx2Wireframe w = plate();
    w.segmentLengthTol(1, limits(19, 21));
    w.segmentLengthTol(3, limits(19, 22));
    std::string const closed = everything(w);
    gx2Wireframe opened = w;
    opened.open();
    EXPECT_THROW(row.edit(w), S::Errors) << row.what;
    EXPECT_EQ(everything(w), w.isOpen() ? everything(opened) : closed) << row.what;
  }
  gx2Wireframe mapped = plate().map(gxXform<2>(gxMatrix<2>(2, 0, 0, 1), Point()));
  std::string const before = everything(mapped);
  EXPECT_THROW(mapped.segmentLengthTol(0, gxDimTol()), S::BadGeom);
  EXPECT_THROW(mapped.insertVertex({1, 1}, 0, {}, gxDimTol()), S::BadGeom);
  EXPECT_THROW(mapped.insertVertex(0, {1, 1}, 0, {}, gxDimTol()), S::BadGeom);
  EXPECT_EQ(everything(mapped), before);
}

TEST(Wireframe, PassesThroughArchivesAsOne)
{
  gx2Wireframe w(plate().map(gxXform<2>(gxMatrix<2>(2, 0, 0, 1), Point(3, 4))), limits(1, 99));
  w.polarity(true);
  gxPtrHandle<gxShape> const copy = w.clone();
  std::stringstream stream;
  gxStoringArchive(stream) << w;
  gx2Wireframe loaded;
  gxLoadingArchive(stream) >> loaded;
  EXPECT_EQ(loaded, w);
  EXPECT_TRUE(*copy == w);
  EXPECT_TRUE(loaded.isPolarityReversed());
  EXPECT_NE(dynamic_cast<gx2Wireframe const *>(&*copy), nullptr);
  loaded.polarity(false);
  EXPECT_FALSE(*copy == loaded);
}

TEST(Wireframe, ModelsOfWireframes)
{
  gx2Wireframe const a = plate(), b(gxGenPoly(gxCircle({3, 4}, 5))),
                     c = a.map(gxXform<2>(gxMatrix<2>(2, 0, 0, 1), Point()));
  std::vector<gx2Wireframe> list = {a, b, c};
  std::vector<double> weights = {1, 0, -0.5};
  gxSMDGDModel model;
  model << list;
  EXPECT_EQ(model.numPolys(), 3);
  EXPECT_EQ(gxSMDGDPoly(c, "pad"), c.poly());
  EXPECT_EQ(gxSMDGDPoly(c, "pad").name(), "poly");
  EXPECT_EQ(gxSMDGDPolyPrivate::wireframe(model.poly(0)), a);
  EXPECT_EQ(gxSMDGDPolyPrivate::poly(b), b.poly());
  EXPECT_EQ(gxSMDGDPolyPrivate::wireframeXform(c), c.xform());

  for (std::vector<double> bad : {std::vector<double>{1, 1}, {1, 1, 1.5}, {1, -1.01, 1}, {1, NAN, 1}, {}}) {
    std::size_t const n = bad.size();
    EXPECT_THROW(M::weightedWireframesToModel(list, bad), gxSMDGDModel::invalidIndex);
    EXPECT_THROW(M::wireframeXforms(list, bad), gxSMDGDModel::invalidIndex);
    EXPECT_EQ(bad.size(), n);
    EXPECT_EQ(list.size(), 3u);
  }
  std::vector<gxXform<2>> const xforms = M::wireframeXforms(list, weights);
  ASSERT_EQ(xforms.size(), 2u);
  EXPECT_EQ(xforms[1], c.xform());
  gxSMDGDModel const weighted = M::weightedWireframesToModel(list, weights);
  ASSERT_EQ(weighted.numPolys(), 2);
  EXPECT_EQ(weighted.poly(1).weight(), -0.5);
  EXPECT_TRUE(weighted.poly(0).isDirectionReversed());
  EXPECT_TRUE(list.empty() && weights.empty());
  EXPECT_THROW(M::weightedWireframesToModel(list, weights), gxSMDGDModel::invalidIndex);
}

}  // namespace
