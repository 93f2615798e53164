#include "tests/backends/pels/pelops.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>

// Laws that every drawing operation of gxPelScope keeps, beyond the rules of all surfaces, which surfacecheck_test asks
// of it. A new operation is a new row of scopeOperations().

namespace
{

using Pels = std::set<std::pair<long, long>>;
gxPair<long> const theSize(64, 56);
gxVector<2> const theMiddle(32.0, 28.0);

Pels moved(Pels const &pels, long dx, long dy)
{
  Pels result;
  for (auto const &[x, y] : pels)
    result.emplace(x + dx, y + dy);
  return result;
}

Pels inside(Pels const &pels, gxUIRect const &rect)
{
  Pels result;
  for (auto const &[x, y] : pels)
    if (rect.within(gxPair<long>(x, y)))
      result.emplace(x, y);
  return result;
}

gxUIRect boxOf(Pels const &pels)
{
  gxUIRect box;
  for (auto const &[x, y] : pels)
    box |= gxUIRect(x, y, 1, 1);
  return box;
}

struct Surface : gxPelSurface {
  Surface() : gxPelSurface(theSize.x(), theSize.y()) {}
  Pels drawn() { return coveredPels(overlayPels()); }
};

Pels drawnPlainly(ScopeOperation const &operation)
{
  Surface surface;
  operation.run(surface.overlayScope(), theMiddle);
  return surface.drawn();
}

class Laws : public testing::TestWithParam<ScopeOperation>
{
 protected:
  ScopeOperation const &op = GetParam();
  Pels const plain = drawnPlainly(op);
  gxUIRect const whole{gxPair<long>(), theSize};
};

TEST_P(Laws, DrawsAndReportsExactlyWhatItTouched)
{
  ASSERT_FALSE(plain.empty());
  EXPECT_TRUE(whole.within(boxOf(plain))) << "the operation should fit the surface of these tests";
  Surface surface;
  gxPelScope &scope = surface.overlayScope();
  op.run(scope, theMiddle);
  EXPECT_TRUE(scope.modified());
  EXPECT_TRUE(scope.anyChanged());
  EXPECT_EQ(scope.changeRect(), boxOf(plain));
  EXPECT_FALSE(scope.opaque());
  EXPECT_FALSE(surface.imageScope().modified());
  EXPECT_TRUE(coveredPels(surface.imagePels()).empty());
}

TEST_P(Laws, PartsOfASurfaceShowTheSamePelsInTheirPlace)
{
  // The last two start before their parent: their first pels are cut off, and device pel 0 is the tablet's still.
  for (gxUIRect const &rect :
       {gxUIRect(20, 15, 60, 60), gxUIRect(7, 9, 20, 10), gxUIRect(-21, -13, 64, 56), gxUIRect(-30, 11, 50, 40)}) {
    Surface surface;
    std::unique_ptr<gxUIScope> const part(surface.overlayScope().newSubScope(rect, false));
    op.run(*part, theMiddle);
    Pels const expected =
        inside(moved(inside(plain, gxUIRect(gxPair<long>(), rect.sz())), rect.left(), rect.top()), whole);
    EXPECT_EQ(surface.drawn(), expected) << rect;
    EXPECT_EQ(part->changeRect() + rect.ul(), boxOf(expected)) << rect;
    EXPECT_FALSE(surface.overlayScope().someChanged()) << "the change is the part's";
    EXPECT_EQ(surface.overlayScope().anyChanged(), !expected.empty()) << "but the tree knows";
  }
}

TEST_P(Laws, ATrackingClientLearnsTheWholeDrawing)
{
  Surface surface;
  gxPelScope &scope = surface.overlayScope();
  scope.clientChangeEnable(true);
  op.run(scope, theMiddle);
  EXPECT_EQ(surface.drawn(), plain);
  gxUIRect const measured = scope.clientChangedRect(false);
  EXPECT_TRUE(measured.within(boxOf(plain))) << measured << " round " << boxOf(plain);

  gxPelSurface none(0, 0);
  EXPECT_TRUE(none.overlayScope().isNull());
  none.overlayScope().clientChangeEnable(true);
  op.run(none.overlayScope(), theMiddle);
  EXPECT_EQ(none.overlayScope().clientChangedRect(false), measured);

  // Far outside of the surface it measures the same.
  scope.clientChangeEnable(true);
  op.run(scope, theMiddle + gxVector<2>(1000.0, -2000.0));
  EXPECT_EQ(scope.clientChangedRect(true), measured + gxPair<long>(1000, -2000));
  EXPECT_EQ(surface.drawn(), plain);
}

TEST_P(Laws, NoWhereIsHarmless)
{
  double const inf = std::numeric_limits<double>::infinity();
  double const nan = std::numeric_limits<double>::quiet_NaN();
  for (double const bad : {inf, -inf, nan, 1e300, -1e300, 3e9, -3e9, 2147483647.0})
    for (gxVector<2> const &at : {gxVector<2>(bad, 28.0), gxVector<2>(32.0, bad), gxVector<2>(bad, bad)}) {
      Surface surface;
      if (op.name == "set" && !(std::abs(bad) < 2e9))
        continue;  // takes whole numbers
      op.run(surface.overlayScope(), at);
      EXPECT_TRUE(surface.drawn().empty()) << at;
      EXPECT_FALSE(surface.overlayScope().someChanged());
      surface.overlayScope().clientChangeEnable(true);
      op.run(surface.overlayScope(), at);
      EXPECT_TRUE(surface.drawn().empty()) << at;
    }
  gxPelSurface none(0, 0);
  op.run(none.imageScope(), theMiddle);
}

INSTANTIATE_TEST_SUITE_P(PelScope, Laws, testing::ValuesIn(scopeOperations()), [](auto const &row) {
  std::string name;
  for (char const c : row.param.name)
    name += std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
  return name;
});

}  // namespace
