#include "backends/pels/pelsurface.h"
#include "dispc/sketchop.h"
#include "examples/demo/scene.h"
#include "foundation/archive.h"
#include "foundation/netpbm.h"
#include "tests/support/opsteps.h"
#include "tests/support/tooltest.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

// The tool as a user runs it: files in, texts, files and an exit status out.

namespace
{
gxUISketch recorded(Drawing const &drawing)
{
  gxUITablet tablet;
  for (auto const &operation : drawing)
    operation(tablet);
  return tablet.sketch();
}

/// The pels of some drawing on a fresh surface.
template <class Draw>
gxPelBuffer_const<gxPackedRGB32Pel> pictureOf(gxPair<long> const &size, Draw const &draw)
{
  gxPelSurface surface(size.x(), size.y());
  gxUITablet tablet(&surface.imageScope(), &surface.overlayScope());
  tablet.visible(true);
  draw(tablet);
  return surface.picture();
}

struct Tool : ToolTest {
  Tool() : ToolTest("gxsketch_test") {}

  void store(char const *name, gxUISketch sketch) const
  {
    std::ofstream os(folder / name, std::ios::binary);
    gxStoringArchive archive(os);
    archive || sketch;
  }
  gxUISketch loaded(char const *name) const
  {
    std::ifstream is(folder / name, std::ios::binary);
    gxLoadingArchive archive(is);
    gxUISketch sketch;
    archive || sketch;
    return sketch;
  }
  int run(std::string const &arguments) { return runProgram(GX_GXSKETCH, arguments); }

  /// Renders and compares with a picture, pel for pel.
  void expectPicture(std::string const &arguments, gxPelBuffer_const<gxPackedRGB32Pel> const &expected)
  {
    std::size_t const space = arguments.find(' ');
    ASSERT_EQ(run("render " + arguments.substr(0, space) + " picture.ppm" + arguments.substr(space)), 0) << err;
    auto const pels = gfReadNetpbmColor(at("picture.ppm"));
    ASSERT_EQ(pels.size(), expected.size()) << arguments;
    long differ = 0;
    for (long y = 0; y < pels.height(); ++y)
      for (long x = 0; x < pels.width(); ++x)
        differ += pels.get(x, y).value() != expected.get(x, y).value();
    EXPECT_EQ(differ, 0) << "pels of " << arguments;
  }
};

TEST_F(Tool, CommandLinesAndFilesThatMakeNoSense)
{
  store("good", recorded(penChart()));
  store("empty", gxUISketch());
  std::string const bytes = contentOf(folder / "good");
  std::ofstream(folder / "cut short", std::ios::binary) << bytes.substr(0, bytes.size() / 2);
  std::ofstream(folder / "more", std::ios::binary) << bytes << '!';
  std::ofstream(folder / "text") << "no archive at all";
  gxUISketch unknown;  // a shape of a client's that the tool does not know
  unknown.opcode(static_cast<signed char>(gx_SketchCode::genShape), 0, gxColor(5));
  std::fill_n(unknown.append(26), 26, 0);
  store("unknown", unknown);
  {
    std::ofstream os(folder / "old", std::ios::binary);
    gxStoringArchive archive(os);
    signed char version = 0;
    long length = 8;
    char stream[8] = {13};  // a head with a code that is not assigned
    (archive || version || length).raw(stream, length);
  }
  std::string const size = std::to_string(bytes.size());
  struct Row {
    std::string arguments;
    int status;
    std::string says;  ///< on the error output
  };
  Row const rows[] = {
      {"", 2, "a command is missing"},
      {"frob", 2, "no command frob"},
      {"info", 2, "a file is missing"},
      {"info --size 3x4 good", 2, "no option --size"},
      {"info nowhere", 1, "nowhere: No such file"},
      {"dump .", 1, "gxsketch: .: "},
      {"info good text", 1, "text: "},
      {"info 'cut short'", 1, "cut short: "},
      {"info 'cut short'", 1, ", at byte "},
      {"dump more", 1, ", at byte " + size},
      {"info old", 1, ", at byte " + std::to_string(contentOf(folder / "old").size())},
      {"render unknown p.ppm --size 9x9", 1, "unknown: "},
      {"render good", 2, "render takes"},
      {"render good p.bmp", 2, "p.bmp: pictures can be "},
      {"render good p.ppm --size", 2, "needs a value"},
      {"render good p.ppm --size 3", 2, "'3' is no size"},
      {"render good p.ppm --size=0x9", 2, "no size"},
      {"render good p.ppm --size 9x-9", 2, "no size"},
      {"render good p.ppm --scale 1 --scale 2", 2, "given twice"},
      {"render good p.ppm --scale -1", 2, "no scale"},
      {"render good p.ppm --scale nan", 2, "no scale"},
      {"render good p.ppm --layer top", 2, "no layer"},
      {"render good p.ppm --size 99999x99999", 1, "p.ppm: a picture of 99999 x 99999 pels is too large"},
      {"render good nowhere/p.ppm", 1, "nowhere/p.ppm"},
      {"render empty p.ppm", 1, "draws nothing"},
      {"cat good", 2, "option -o is missing"},
      {"cat -o joined", 2, "a file is missing"},
      {"cat -o nowhere/joined good", 1, "nowhere/joined: No such file"},
      {"cut good -o part", 2, "cut takes"},
      {"cut good 3-1 -o part", 2, "'3-1' are no records"},
      {"cut good -o part -- -3", 2, "no records"},
      {"cut good 0-9999 -o part", 1, "good: there is no record 9999"},
  };
  for (Row const &row : rows) {
    EXPECT_EQ(run(row.arguments), row.status) << row.arguments << '\n' << err;
    EXPECT_NE(err.find(row.says), std::string::npos) << row.arguments << '\n' << err;
    EXPECT_EQ(err.find("Try 'gxsketch --help'") != std::string::npos, row.status == 2);
  }
  EXPECT_FALSE(std::filesystem::exists(folder / "p.ppm") || std::filesystem::exists(folder / "part"));
  for (char const *const help : {"--help", "render --help"}) {
    EXPECT_EQ(run(help), 0);
    EXPECT_EQ(out.find("usage: gxsketch"), 0u);
    EXPECT_EQ(err, "");
  }
  EXPECT_EQ(run("--version"), 0);
  EXPECT_EQ(out.find("gxsketch "), 0u);
}

// Pages of vectors: the drawing as paths, of the size that was asked for, no image of it.
TEST_F(Tool, RendersVectorsWhereCairoIs)
{
  store("chart", recorded(penChart()));
  bool const hasCairo = run("render chart page.svg --size 200x100") == 0;
  if (!hasCairo) {
    EXPECT_NE(err.find("pictures can be .p"), std::string::npos) << err;
    return;
  }
  std::string const svg = contentOf(folder / "page.svg");
  EXPECT_NE(svg.find("viewBox=\"0 0 200 100\""), std::string::npos);
  EXPECT_NE(svg.find("<path"), std::string::npos);
  EXPECT_EQ(svg.find("<image"), std::string::npos);
  ASSERT_EQ(run("render chart page.pdf"), 0) << err;
  EXPECT_EQ(contentOf(folder / "page.pdf").substr(0, 4), "%PDF");
  EXPECT_EQ(run("render chart nowhere/page.pdf"), 1);
  EXPECT_NE(err.find("nowhere/page.pdf"), std::string::npos) << err;
}

TEST_F(Tool, TellsWhatASketchHolds)
{
  gxUITablet tablet;
  tablet.draw(gxPoint(3, 4), gxColor::redColor(), gxUITablet::image);
  tablet.draw(gxPoint(-1, 4), gxColor::redColor(), gxUITablet::overlay);
  tablet.draw(gxRect({10, 20}, {5, 6}), gxColor::redColor(), gxUITablet::overlay, true);
  tablet.draw(gxPoint(8, 8), gxColor::redColor(), gxUITablet::both);
  store("s", tablet.sketch());
  ASSERT_EQ(run("info s"), 0) << err;
  std::ostringstream expected;
  expected << "s: 4 records, " << tablet.sketch().size()
           << " bytes\n  on image: 1, covers (3, 4) 6 x 5\n  on overlay: 2, covers (-1, 4) 16 x 22\n"
              "  on both: 1\n  point: 3\n  rect: 1\n";
  EXPECT_EQ(out, expected.str());
  store("b", recorded({[](gxUITablet &t) { t.draw(gxPoint(8, 8), gxColor::redColor(), gxUITablet::both); }}));
  ASSERT_EQ(run("info b"), 0) << err;
  EXPECT_NE(out.find("  on image: 0, covers (8, 8) 1 x 1\n  on overlay: 0, covers (8, 8) 1 x 1\n  on both: 1\n"),
            std::string::npos)
      << out;
  ASSERT_EQ(run("dump s"), 0) << err;
  std::ostringstream dumped;
  gfDumpUISketch(dumped, tablet.sketch());
  EXPECT_EQ(out, dumped.str());
}

/// At a size, a scale and a layer, the tool shows what a tablet shows.
TEST_F(Tool, RendersWhatWasDrawn)
{
  Drawing const drawings[] = {inspectionResult({640, 480}), penChart(), shapeChart()};
  for (Drawing const &drawing : drawings) {
    auto const live = [&](gxUITablet &t) {
      for (auto const &operation : drawing)
        operation(t);
    };
    store("s", recorded(drawing));
    expectPicture("s --size 640x480", pictureOf({640, 480}, live));
    expectPicture("s --size 200x300 --layer image", pictureOf({200, 300}, [](gxUITablet &) {}));
  }
  OpPicture picture;
  OpGenerator generate(3);
  while (picture.steps.size() < 25) {
    OpStep const step = generate.step(generate.variant());
    if (!isLossy(*step.variant) && !step.variant->erases() && step.variant->code != gx_SketchCode::line)
      picture.steps.push_back(step);
  }
  gxUISketch const sketch = picture.recorded();
  store("s", sketch);
  for (auto const &[option, layer] :
       {std::pair("image", gxUITablet::image), {"overlay", gxUITablet::overlay}, {"both", gxUITablet::both}})
    for (auto const &[text, scale] : {std::pair("1", 1.0), {"2", 2.0}, {"0.5", 0.5}}) {
      auto const onLayer = [&, l = layer, s = scale](gxUITablet &t) {
        t.scaleExact({s, s});
        t.draw(sketch, {}, l);
      };
      std::string const options = std::string(" --layer ") + option + " --scale " + text;
      expectPicture("s --size 300x200" + options, pictureOf({300, 200}, onLayer));
    }
}

/// Without a size, the picture is what is covered, from its first pel on.
TEST_F(Tool, RendersWhatIsCovered)
{
  gxUITablet tablet;
  tablet.draw(gxRect({-50, 20}, {20, 30}), gxColor::redColor(), gxUITablet::overlay, true);
  store("s", tablet.sketch());
  expectPicture("s --scale 2",
                pictureOf({40, 60}, [](gxUITablet &t) { t.set(gxColor::redColor(), gxUITablet::image); }));
}

/// Wherever a sketch is cut, its pieces draw as they did: properties in force come along, and do not leak.
TEST_F(Tool, CutsAndJoins)
{
  gxUISketch const sketch = recorded(penChart());
  store("s", sketch);
  auto const whole = pictureOf({640, 480}, [&](gxUITablet &t) { t.draw(sketch, {}, gxUITablet::both); });
  for (char const *const cuts : {"0 1-", "0-6 7-", "0-2 3 4-"}) {
    std::istringstream pieces(cuts);
    std::string names;
    for (std::string range; pieces >> range; names += " piece" + range)
      ASSERT_EQ(run("cut -o piece" + range + " s " + range), 0) << err;
    ASSERT_EQ(run("cat -o joined" + names), 0) << err;
    expectPicture("joined --size 640x480", whole);
  }
  ASSERT_EQ(run("cut s 3 5-6 -o some"), 0) << err;
  EXPECT_EQ(run("info some"), 0);
  EXPECT_EQ(out.find("some: 3 records"), 0u);

  gxUITablet wide, plain;
  wide.draw(gxPoint(20, 20), gxGraphicProps(gxColor::cyanColor(), 9, gxGraphicProps::penSolid, false),
            gxUITablet::image);
  plain.draw(gxPoint(60, 20), gxGraphicProps(), gxUITablet::image);
  store("wide", wide.sketch()), store("plain", plain.sketch());
  ASSERT_EQ(run("cat wide plain -o joined"), 0) << err;
  expectPicture("joined --size 80x40", pictureOf({80, 40}, [&](gxUITablet &t) {
                  t.draw(wide.sketch(), {}, gxUITablet::both);
                  t.draw(plain.sketch(), {}, gxUITablet::both);
                }));
}

#ifdef GX_DEMO
/// What the demonstration stores is what it drew on the overlay.
TEST_F(Tool, RendersTheSketchOfTheDemonstration)
{
  ASSERT_EQ(runProgram(GX_DEMO, ""), 0) << err;
  expectPicture("demo-out/overlay.sketch --size 640x480 --layer overlay", pictureOf({640, 480}, [](gxUITablet &t) {
                  for (auto const &operation : inspectionResult({640, 480}))
                    operation(t);
                }));
}
#endif
}  // namespace
