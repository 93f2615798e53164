#include "backends/cairo/cairosurface.h"

#include "conformance/surfacecheck.h"
#include "dispc/dispprop.h"
#include "foundation/lineseg.h"
#include "foundation/pelerror.h"
#include "foundation/polygon.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

/// Asked by the leak sanitizer: the font library keeps what it has read until the process ends, and cairo's pages keep
/// a reference to the recordings that were painted on them.
extern "C" char const *__lsan_default_suppressions();
extern "C" char const *__lsan_default_suppressions()
{
  return "leak:libfontconfig\nleak:libcairo\n";
}

namespace
{

using Kind = gxCairoSurface::Kind;

class OfEitherKind : public testing::TestWithParam<Kind>
{
};

INSTANTIATE_TEST_SUITE_P(CairoSurface, OfEitherKind, testing::Values(gxCairoSurface::pels, gxCairoSurface::vectors),
                         [](auto const &kind) { return kind.param == gxCairoSurface::pels ? "Pels" : "Vectors"; });

TEST_P(OfEitherKind, KeepsTheContract)
{
  for (bool const overlay : {false, true}) {
    gxConformanceReport const report = gfCheckSurface([&](gxPair<long> const &size) {
      auto surface = std::make_shared<gxCairoSurface>(size.x(), size.y(), GetParam());
      gxCairoScope *const scope = overlay ? &surface->overlayScope() : &surface->imageScope();
      return gxCheckedSurface{{surface, scope}, [surface] { return surface->picture(); }};
    });
    EXPECT_TRUE(report.holds()) << report;
    EXPECT_THAT(report.skipped, testing::IsEmpty());
  }
}

gxRGB at(gxCairoSurface &surface, long x, long y)
{
  gxPackedRGB32Pel const pel = surface.picture().get(x, y);
  return {pel.red(), pel.green(), pel.blue()};
}

TEST_P(OfEitherKind, TheOverlayCoversTheImageWhereItIsNotTransparent)
{
  gxCairoSurface surface(20, 10, GetParam());
  surface.overlayScope().set(gxUIRect(0, 0, 12, 10), gxColor(250, 0, 0));
  surface.imageScope().set(gxColor(0, 90, 200));
  surface.overlayScope().set(gxUIRect(4, 0, 4, 10), gxColor::passColor());
  EXPECT_EQ(at(surface, 2, 5), gxRGB(250, 0, 0));
  EXPECT_EQ(at(surface, 6, 5), gxRGB(0, 90, 200));
  EXPECT_EQ(at(surface, 16, 5), gxRGB(0, 90, 200));
}

TEST_P(OfEitherKind, EdgesAreSmoothAndLinesOfWholePelsAreCrisp)
{
  gxCairoSurface surface(40, 40, GetParam());
  gxCairoScope &scope = surface.imageScope();
  gxGraphicProps props(gxColor(255, 255, 255), 1, gxGraphicProps::penSolid, false);
  scope.draw(gxLineSeg(gxVector<2>(5, 10), gxVector<2>(30, 10)), props);
  EXPECT_EQ(at(surface, 20, 10).g(), 255);
  EXPECT_EQ(at(surface, 20, 9).g() + at(surface, 20, 11).g(), 0);
  props.fill(true);
  scope.draw(gxPolygon({{5, 20.25}, {30, 20.25}, {30, 30}, {5, 30}}, gxPolygon::winding), props);
  EXPECT_NEAR(at(surface, 20, 20).g(), 191, 3);
}

/// What is far away, or huge, is cut where cairo's numbers end, and its near part stays in place.
TEST_P(OfEitherKind, HugeShapesAreCutToWhatIsSeen)
{
  gxCairoSurface surface(40, 40, GetParam());
  gxCairoScope &scope = surface.imageScope();
  gxGraphicProps props(gxColor(255, 255, 255), 3, gxGraphicProps::penSolid, false);
  scope.draw(gxLineSeg(gxVector<2>(-3e12, -3e12), gxVector<2>(5e13, 5e13)), props);
  EXPECT_EQ(at(surface, 20, 20).g(), 255);
  EXPECT_EQ(at(surface, 20, 30).g(), 0);
  props.fill(true);
  scope.draw(gxPolygon({{30, -1e15}, {1e15, 0}, {30, 1e15}}, gxPolygon::winding), props);
  EXPECT_EQ(at(surface, 35, 5).g(), 255);
  EXPECT_EQ(at(surface, 25, 35).g(), 0);
}

TEST_P(OfEitherKind, TextsThatAreNotUtf8AreDrawnAllTheSame)
{
  for (std::string const &text :
       {std::string("a\xFFz"), std::string("a\0z", 3), std::string("\xED\xA0\x80"), std::string("\xF0\x9F\x98")}) {
    gxCairoSurface surface(80, 40, GetParam());
    gxUIRect rect;
    surface.imageScope().textRect(text, gxPoint(5, 5), gxUIFormat(), rect);
    surface.imageScope().draw(text, gxPoint(5, 5), gxColor(255, 255, 255), gxColor(0, 0, 90), gxUIFormat());
    EXPECT_EQ(surface.imageScope().changeRect(), rect);
    int lit = 0;
    for (long y = rect.top(); y < rect.bottom(); ++y)
      for (long x = rect.left(); x < rect.right(); ++x)
        lit += at(surface, x, y).g() > 100;
    EXPECT_GT(lit, 0);
  }
}

std::string contents(std::filesystem::path const &path)
{
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

TEST(CairoSurface, PagesHoldCurvesAndTextsAsVectors)
{
  gxCairoSurface page(200, 100, gxCairoSurface::vectors);
  gxGraphicProps const props(gxColor(255, 0, 0), 2, gxGraphicProps::penDash, false);
  page.imageScope().set(gxColor(255, 255, 255));
  page.overlayScope().draw(gxLineSeg(gxVector<2>(10, 20), gxVector<2>(150, 80)), props);
  page.overlayScope().draw("Page", gxPoint(20, 20), gxColor(0, 0, 0), gxColor::passColor(), gxUIFormat());
  std::string const svg = testing::TempDir() + "cairosurface_test.svg", pdf = testing::TempDir() + "cairosurface.pdf";
  page.writeSvg(svg);
  page.writePdf(pdf);
  EXPECT_THAT(contents(svg), testing::AllOf(testing::HasSubstr("<svg"), testing::HasSubstr("stroke-dasharray"),
                                            testing::HasSubstr("glyph"), testing::Not(testing::HasSubstr("<image"))));
  EXPECT_THAT(contents(pdf), testing::StartsWith("%PDF"));
  std::filesystem::remove(svg);
  std::filesystem::remove(pdf);
  EXPECT_THROW(page.writePdf("/no/such/folder/page.pdf"), gxPel::BadImageFile);
  EXPECT_THROW(page.writeSvg("/no/such/folder/page.svg"), gxPel::BadImageFile);
}

TEST(CairoSurface, RefusesSizesThatCairoHasNot)
{
  EXPECT_THROW(gxCairoSurface(-1, 5), gxPel::BadSize);
  EXPECT_THROW(gxCairoSurface(5, 40000), gxPel::BadSize);
}

}  // namespace
