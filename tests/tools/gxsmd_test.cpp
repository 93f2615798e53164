#include "dispc/wrfm/model.h"
#include "foundation/archive.h"
#include "foundation/netpbm.h"
#include "foundation/vector.h"
#include "tests/support/tooltest.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

namespace
{

using testing::HasSubstr;

struct Gxsmd : ToolTest {
  Gxsmd() : ToolTest("gxsmd_test")
  {
    write("chip_2x1.2mm.kicad_mod", chip("0.95", "1"));
    write("apart_P2.5mm.kicad_mod", chip("1.1", "1"));
    write("wide_3x1.2mm.kicad_mod", chip("0.95", "1"));
    write("close.kicad_mod", chip("-0.2", "1"));
    write("open.kicad_mod", "(footprint open (fp_line (start 0 0) (end 4 0) (layer F.CrtYd) (width 0.1)))");
    write("cut.kicad_mod", chip("0.95", "1").substr(0, 200));
  }

  void write(char const *name, std::string const &text) const
  {
    std::ofstream(folder / name, std::ios::binary) << text;
  }
  /// With its second pad at @p x, and its body @p half the half length.
  static std::string chip(std::string const &x, std::string const &half)
  {
    return "(footprint ours (layer F.Cu)\n  (fp_rect (start -" + half + " -0.6) (end " + half +
           " 0.6) (layer F.Fab) (width 0.1))\n"
           "  (pad 1 smd rect (at -0.95 0) (size 1 1.4) (layers F.Cu))\n  (pad 2 smd roundrect (at " +
           x + " 0 90) (size 1.4 1) (layers F.Cu) (roundrect_rratio 0.25)))\n";
  }
  int run(std::string const &arguments) { return runProgram(GX_GXSMD, arguments); }
};

TEST_F(Gxsmd, CommandLinesAndFilesThatMakeNoSense)
{
  struct Row {
    char const *arguments;
    int status;
    char const *says;
  };
  for (Row const &row : {
           Row{"", 2, "a command is missing"},
           {"frob", 2, "no command frob"},
           {"info", 2, "a file is missing"},
           {"render open.kicad_mod", 2, "render takes"},
           {"render open.kicad_mod x.gif", 2, "pictures can be"},
           {"render open.kicad_mod x.ppm --layers paste", 2, "'paste' is no layer"},
           {"render open.kicad_mod x.ppm --layers F.Fab", 1,
            "nothing is drawn on F.Fab; there are drawings on F.CrtYd"},
           {"render open.kicad_mod x.ppm --fillets maybe", 2, "'maybe' makes no sense for --fillets"},
           {"render open.kicad_mod x.ppm --at 1,2", 2, "--at needs a picture"},
           {"render open.kicad_mod x.ppm --over none.png", 1, "none.png: No such file"},
           {"render open.kicad_mod x.ppm --over open.kicad_mod", 1, "open.kicad_mod: "},
           {"render open.kicad_mod x.ppm --over none.png --at 1,2,", 2, "'1,2,' is no pose"},
           {"render open.kicad_mod x.ppm --scale 0", 2, "no scale"},
           {"synth open.kicad_mod x.ppm --blur far", 2, "'far' is no radius"},
           {"synth open.kicad_mod x.ppm", 1, "nothing to be seen"},
           {"info none", 1, "none: No such file"},
           {"info .", 1, ".: Is a directory"},
           {"info cut.kicad_mod", 1, "cut.kicad_mod: line 4, column "},
           {"store open.kicad_mod none/x", 1, "none/x: No such file"},
           {"synth close.kicad_mod x.ppm --at 5", 2, "'5' is no pose"},
           {"synth open.kicad_mod x.ppm --shading 2", 2, "too large a part"},
           {"measure x.ppm open.kicad_mod", 2, "--pose"},
           {"measure x.ppm open.kicad_mod --pose 1,2 --scale 1e300", 2, "--scale is from"},
           {"measure none.ppm open.kicad_mod --pose 1,2", 1, "none.ppm: "},
           {"measure open.kicad_mod open.kicad_mod --pose 1,2", 1, "open.kicad_mod: "},
           {"measure x.ppm open.kicad_mod --pose 1,2 --reach 90", 2, "--reach is from 2 to 50"},
           {"store open.kicad_mod ./open.kicad_mod", 2, "is the file that is read"},
           {"store open.kicad_mod /dev/full", 1, "/dev/full: No space left"},
           {"render --layers body open.kicad_mod x.ppm", 1, "open.kicad_mod: there is nothing to draw on these layers"},
           {"check --tolerance -1 open.kicad_mod", 2, "no tolerance"},
           {"check --csv none/x .", 1, "none/x: No such file"},
           {"check --html none/x .", 1, "none/x: No such file"},
           {"check --html /dev/full open.kicad_mod", 1, "/dev/full: No space left"},
           {"check --csv x --html x .", 2, "give two"},
           {"check --csv wide_3x1.2mm.kicad_mod .", 2, "has the name of a footprint"},
           {"check --pictures 3 .", 2, "give it by --html"},
       }) {
    EXPECT_EQ(run(row.arguments), row.status) << row.arguments;
    EXPECT_THAT(err, HasSubstr(row.says)) << row.arguments;
    EXPECT_THAT(err, testing::StartsWith("gxsmd: ")) << row.arguments;
    EXPECT_THAT(out, testing::Not(HasSubstr("apart"))) << "the sweep began: " << row.arguments;
  }
  EXPECT_EQ(run("--help"), 0);
  EXPECT_THAT(out, HasSubstr("Exit status"));
}

TEST_F(Gxsmd, CheckTellsWhatDeviates)
{
  EXPECT_EQ(run("check chip_2x1.2mm.kicad_mod"), 0) << out;
  EXPECT_EQ(run("check " GX_SOURCE_ROOT "/examples/data"), 0) << out;
  EXPECT_THAT(out, HasSubstr("3 files: 0 not read, 0 with faults, 3 sound"));
  std::filesystem::create_directory(folder / "rows");
  for (char const *const pitch : {"1", "1.5"})  // staggered: the pitch lies along an axis
    write(("rows/two_P" + std::string(pitch) + "mm.kicad_mod").c_str(),
          "(footprint rows (pad 1 smd rect (at -3 0) (size 1 .5) (layers F.Cu)) (pad 2 smd rect (at 3 1) (size 1 .5) "
          "(layers F.Cu)) (pad 3 smd rect (at -3 2) (size 1 .5) (layers F.Cu)))");
  EXPECT_EQ(run("check rows"), 1);
  EXPECT_THAT(out, HasSubstr("two_P1.5mm.kicad_mod: no two pads are 1.5 mm apart"));
  EXPECT_THAT(out, HasSubstr("2 files: 0 not read, 1 with faults, 1 sound"));
  std::filesystem::remove_all(folder / "rows");
  EXPECT_EQ(run("check --csv found.csv ."), 1);
  EXPECT_THAT(out, HasSubstr("wide_3x1.2mm.kicad_mod: the body measures 2 x 1.2 mm, its name says 3 x 1.2"));
  EXPECT_THAT(out, HasSubstr("apart_P2.5mm.kicad_mod: no two pads are 2.5 mm apart"));
  EXPECT_THAT(out, HasSubstr("close.kicad_mod: pads \"1\" and \"2\" overlap"));
  EXPECT_THAT(out, HasSubstr("open.kicad_mod: F.CrtYd does not close; from (4, 0) to (0, 0) a gap of 4 mm"));
  EXPECT_THAT(out, HasSubstr("cut.kicad_mod: line 4"));
  EXPECT_THAT(out, HasSubstr("6 files: 1 not read, 4 with faults, 1 sound"));
  std::string const table = contentOf(folder / "found.csv");
  EXPECT_THAT(table, testing::StartsWith("file,name,kind,finding\n"));
  EXPECT_THAT(table, HasSubstr("\"pads \"\"1\"\" and \"\"2\"\" overlap\""));
  EXPECT_EQ(run("check --tolerance 2 wide_3x1.2mm.kicad_mod"), 0);
}

TEST_F(Gxsmd, PicturesAndStoredModels)
{
  ASSERT_EQ(run("synth chip_2x1.2mm.kicad_mod sharp.ppm --scale 50"), 0) << err;
  auto const sharp = gfReadNetpbmColor(at("sharp.ppm"));
  EXPECT_EQ(sharp.size(), gxPair<long>(165, 90));  // 2.9 x 1.4 mm and a margin
  auto const grey = [&](auto const &picture, long x, long y) { return (picture.get(x, y).value() >> 8) & 255; };
  EXPECT_EQ(grey(sharp, 2, 2), 120u);
  EXPECT_EQ(grey(sharp, 15, 45), 220u);
  EXPECT_EQ(grey(sharp, 82, 45), 30u);
  ASSERT_EQ(run("synth chip_2x1.2mm.kicad_mod noisy.ppm --scale 50 --blur 2 --noise 4 --seed 9"), 0) << err;
  ASSERT_EQ(run("synth chip_2x1.2mm.kicad_mod again.ppm --scale 50 --blur 2 --noise 4 --seed 9"), 0) << err;
  EXPECT_EQ(contentOf(folder / "noisy.ppm"), contentOf(folder / "again.ppm"));
  auto const noisy = gfReadNetpbmColor(at("noisy.ppm"));
  double sum = 0.0, squares = 0.0;
  for (long y = 30; y < 60; ++y)
    for (long x = 60; x < 100; ++x) {
      double const v = static_cast<double>(grey(noisy, x, y)) - 30.0;
      sum += v;
      squares += v * v;
    }
  EXPECT_NEAR(sum / 1200, 0, 0.6);
  EXPECT_NEAR(std::sqrt(squares / 1200), 4, 0.5);

  // Out of the stored models comes the same picture as out of the file.
  ASSERT_EQ(run("store chip_2x1.2mm.kicad_mod chip.models"), 0) << err;
  for (char const *const file : {"chip_2x1.2mm.kicad_mod", "chip.models"}) {
    ASSERT_EQ(run(std::string("render ") + file + " " + file + ".ppm --layers pads,body"), 0) << err;
    ASSERT_EQ(run(std::string("info ") + file), 0);
    EXPECT_THAT(out, HasSubstr("pads: 2 outlines, 2.9 x 1.4 mm"));
  }
  EXPECT_EQ(contentOf(folder / "chip_2x1.2mm.kicad_mod.ppm"), contentOf(folder / "chip.models.ppm"));

  // A model that a program stored by itself; and cut off, archives are refused.
  gxSMDGDModel frame;
  frame << gxSMDGDPoly::rectangle(3.0, 1.0, {0, 0});
  std::ostringstream alone;
  gxStoringArchive archive(alone);
  archive || frame;
  archive.flush();
  write("frame", alone.str());
  EXPECT_EQ(run("info frame"), 0) << err;
  EXPECT_THAT(out, HasSubstr("pads: 1 outline, 3 x 1 mm"));
  std::string const stored = contentOf(folder / "chip.models");
  for (std::size_t const size : {stored.size() / 4, stored.size() / 2, stored.size() - 1}) {
    write("short", stored.substr(0, size));
    EXPECT_EQ(run("info short"), 1);
    EXPECT_THAT(err, HasSubstr("gxsmd: short: "));
    EXPECT_THAT(err, HasSubstr("; store the models again"));
  }
}

// What each file says, after its name, in one line; check reads on behind it, and the others tell the same.
TEST_F(Gxsmd, FilesThatCannotBeRead)
{
  auto const pad = [](std::string const &rest) { return "(footprint a\n (pad 1 smd " + rest + "))"; };
  std::filesystem::create_directories(folder / "bad/empty");
  struct Row {
    std::string name, text, says;
  };
  std::vector<Row> const rows = {
      {"archive", std::string("gxar\1\0\0\0\xff\xff", 10), " at byte "},
      {"behind", "(footprint a) (footprint b)", "line 1, column 15: something stands behind the footprint; mend"},
      {"bracket", "(footprint a)\n)", "line 2, column 1: a bracket closes what is not open"},
      {"cut", "(footprint a\n (pad 1 smd rect (at 0 0)", "line 2, column 26: the text ends inside a list"},
      {"deep", "(footprint a" + std::string(100'000, '('), "line 1, column 14: a list does not end"},
      {"empty", "", "line 1, column 1: this is no footprint"},
      {"escape", pad("rect (at 0 \x1b[31m\n7))"), "line 2, column 24: \" [31m\" is no number"},
      {"no_size", pad("rect (at 0 0) (layers F.Cu)"), "pad \"1\" lacks its size"},
      {"other", "(kicad_pcb (version 1))", "line 1, column 11: this is no footprint: it begins with \"kicad_pcb\""},
      {"pad", "(footprint a (pad))", "line 1, column 18: a word or a text was expected"},
      {"quote", "(footprint a\n (descr \"no end)\n)", "line 2, column 9: a text does not end"},
      {"range", pad("rect (at 0 -2e6) (size 1 1)"), "line 2, column 24: the number -2e6 is out of range"},
      {"shape", pad("star (at 0 0) (size 1 1)"), "pad of shape star is not known, 1 left out"},
      {"zero", pad("rect (at 0 0) (size 0 1) (layers F.Cu)"), "pad \"1\" has no size"},
  };
  for (Row const &row : rows)
    write(("bad/" + row.name + ".kicad_mod").c_str(), row.text);
  write("bad/unknown_layers.kicad_mod", pad("rect (at 0 0) (size 1 1) (layers Nowhere)"));
  std::filesystem::create_symlink("nowhere", folder / "bad/gone.kicad_mod");
  EXPECT_EQ(run("check bad bad/empty"), 1);
  for (Row const &row : rows) {
    std::string const name = "bad/" + row.name + ".kicad_mod";
    EXPECT_THAT(out, HasSubstr(name + ": ")) << row.name;
    std::string const line = out.substr(std::min(out.find(name), out.size()));
    EXPECT_THAT(line.substr(0, line.find('\n')), HasSubstr(row.says));
  }
  EXPECT_THAT(out, HasSubstr("bad/gone.kicad_mod: No such file or directory; see "));
  EXPECT_THAT(out, HasSubstr("bad/empty: Is a directory; name a file, or for check a folder with footprints"));
  EXPECT_THAT(out, HasSubstr("\n17 files: 14 not read, 2 with faults, 1 sound\n"));
  EXPECT_EQ(std::count(out.begin(), out.end(), '\n'), 17) << out;
  if (geteuid() != 0) {  // root may read all of it
    namespace fs = std::filesystem;
    fs::permissions(folder / "bad/zero.kicad_mod", fs::perms::none);
    fs::permissions(folder / "bad/empty", fs::perms::none);
    EXPECT_EQ(run("check bad"), 1);
    fs::permissions(folder / "bad/empty", fs::perms::owner_all);
    EXPECT_THAT(out, HasSubstr("bad/zero.kicad_mod: Permission denied; "));
    EXPECT_THAT(out, HasSubstr("bad/empty: Permission denied; "));
  }
  for (char const *const command : {"info bad/cut.kicad_mod", "synth bad/cut.kicad_mod x.ppm",
                                    "store bad/cut.kicad_mod x", "render bad/cut.kicad_mod x.ppm"}) {
    EXPECT_EQ(run(command), 1);
    EXPECT_EQ(err,
              "gxsmd: bad/cut.kicad_mod: line 2, column 26: the text ends inside a list; mend the file there, or "
              "write it anew\n");
    EXPECT_FALSE(std::filesystem::exists(folder / "x"));
  }
}

/// Whether the elements of a page nest, and all text in it is text.
void expectWellFormed(std::string const &page)
{
  std::vector<std::string> open;
  for (std::size_t at = page.find('<'); at != std::string::npos; at = page.find('<', at + 1)) {
    std::size_t const end = page.find('>', at);
    ASSERT_NE(end, std::string::npos);
    std::string const tag = page.substr(at + 1, end - at - 1), name = tag.substr(0, tag.find_first_of(" \n"));
    if (tag[0] == '/') {
      ASSERT_FALSE(open.empty());
      ASSERT_EQ(open.back(), tag.substr(1)) << page.substr(0, at).size();
      open.pop_back();
    } else if (tag[0] != '!' && name != "meta" && tag.back() != '/') {
      open.push_back(name);
    }
  }
  EXPECT_TRUE(open.empty());
}

TEST_F(Gxsmd, APageShowsWhatDeviates)
{
  write("evil <script>&\"'.kicad_mod",
        "(footprint \"<script>alert('&')\x01\xff\xc3\xa4\" (layer F.Cu)\n"
        "  (fp_line (start 0 0) (end 4 0) (layer F.Fab) (width 0.1)) (pad \"<b>\" smd rect (at 0 0) (size 0 1)))");
  write("crossed.kicad_mod", "(footprint c (fp_poly (pts (xy 0 0) (xy 2 2) (xy 2 0) (xy 0 2)) (layer F.Fab)))");
  EXPECT_EQ(run("check --html page.html --csv found.csv ."), 1);
  std::string const page = contentOf(folder / "page.html");
  expectWellFormed(page);
  for (char const *const part : {"<script", "http", "src=", "href", "url("})  // it needs nothing but itself
    EXPECT_EQ(page.find(part), std::string::npos) << part;
  auto const count = [](std::string const &text, std::string const &part) {
    long n = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
      ++n;
    return n;
  };
  EXPECT_EQ(count(page, "<section>"), 7);
  EXPECT_EQ(count(page, "<svg"), 6);  // all but the one that could not be read
  EXPECT_THAT(page, HasSubstr("<h2>./evil &lt;script&gt;&amp;&quot;&#39;.kicad_mod</h2>\n"
                              "<p>&lt;script&gt;alert(&#39;&amp;&#39;) \xef\xbf\xbd\xc3\xa4</p>"));
  EXPECT_THAT(page, HasSubstr("<b>no size</b> pad &quot;&lt;b&gt;&quot; has no size"));
  EXPECT_THAT(page, HasSubstr("<b>overlap</b> pads &quot;1&quot; and &quot;2&quot; overlap"));
  for (char const *const row : {"files</th><td>8", "sound</th><td>1", "with faults</th><td>6", "not read</th><td>1",
                                "refused</th><td>1", "pitch</th><td>1", "gap</th><td>2"})
    EXPECT_THAT(page, HasSubstr(row));

  // Marks are red, two pels wide: of overlapping pads the outlines, of a gap two rings and a line between its ends.
  auto const sectionOf = [&](char const *name) {
    std::size_t const at = page.find(name);
    return page.substr(at, page.find("</section>", at) - at);
  };
  std::string const mark = "stroke=\"#e00030\" stroke-width=\"20\"";
  EXPECT_EQ(count(sectionOf("close.kicad_mod"), mark), 1);
  EXPECT_THAT(sectionOf("open.kicad_mod"), HasSubstr(mark + " stroke-dasharray=\"80\" d=\"M4000 0l-4000 0\"/>"));
  EXPECT_THAT(sectionOf("crossed.kicad_mod"), HasSubstr("stroke=\"#e00030\" d=\"M"));
  EXPECT_EQ(count(contentOf(folder / "found.csv"), "\n"), 9);

  EXPECT_EQ(run("check --html few.html --pictures 2 ."), 1);
  std::string const few = contentOf(folder / "few.html");
  EXPECT_EQ(count(few, "<svg"), 2);
  EXPECT_EQ(count(few, "<section>"), 7);
  EXPECT_THAT(few, HasSubstr("The first 2 files have pictures"));
}

// On a terminal, and nowhere else, long sweeps show how far they are, and findings come out whole.
TEST_F(Gxsmd, ProgressOnATerminal)
{
  for (int i = 0; i < 30; ++i)
    write(("part" + std::to_string(i) + ".kicad_mod").c_str(), chip(i == 0 ? "-0.2" : "0.95", "1"));
  EXPECT_EQ(run("check part?.kicad_mod part??.kicad_mod"), 1);
  EXPECT_EQ(err, "gxsmd: 1 of 30 files are not sound\n");
  int const terminal = posix_openpt(O_RDWR | O_NOCTTY);
  if (terminal < 0 || grantpt(terminal) != 0 || unlockpt(terminal) != 0)
    GTEST_SKIP() << "no terminals here";
  std::string const name = ptsname(terminal);
  int const keptOpen = open(name.c_str(), O_RDWR | O_NOCTTY);  // what was written is lost with the last end
  std::system(("cd '" + folder.string() + "' && " GX_GXSMD " check part*.kicad_mod 2>" + name + " >" + name).c_str());
  std::string seen(4000, '\0');
  seen.resize(static_cast<std::size_t>(std::max<ssize_t>(read(terminal, seen.data(), seen.size()), 0)));
  close(keptOpen);
  close(terminal);
  // The finding comes first, since part0 does; then the line appears, and goes before the counts are told.
  EXPECT_THAT(seen, testing::MatchesRegex("part0.kicad_mod: pads [^\r]* overlap\r\n"
                                          "(\r\\[[#.]{30}\\] +[0-9]+ %, [0-9]+ of 30)+\r +\r30 files: [^\r]*\r\n"
                                          "gxsmd: 1 of 30 files are not sound\r\n"));
}

// A camera image at a known place is measured there, and beside it.
TEST_F(Gxsmd, MeasuresWhatItMakes)
{
  ASSERT_EQ(run("synth chip_2x1.2mm.kicad_mod shot.ppm --at 90.37,70.21,13 --size 180x140"), 0) << err;
  auto const shot = gfReadNetpbmColor(at("shot.ppm"));
  EXPECT_EQ(shot.size(), gxPair<long>(180, 140));
  ASSERT_EQ(run("measure shot.ppm chip_2x1.2mm.kicad_mod --pose 90.37,70.21,13 --limit 0.02"), 0) << err;
  auto const offBy = [&] {
    double x = 9.0, y = 9.0, degrees = 9.0;
    std::size_t const from = out.find("off by (");
    if (from != std::string::npos)
      std::sscanf(out.c_str() + from, "off by (%lf, %lf) pels and %lf", &x, &y, &degrees);
    return gxVector<2>(x, y);
  };
  EXPECT_LT(offBy().len(), 0.01) << out;
  EXPECT_EQ(run("measure shot.ppm chip_2x1.2mm.kicad_mod --pose 90.67,70.01,13 --limit 0.02 --csv off.csv "
                "--picture off.ppm"),
            1);
  EXPECT_LT(offBy().distance({0.3, -0.2}), 0.01) << out;
  EXPECT_THAT(err, HasSubstr("farther off than the --limit"));
  EXPECT_THAT(contentOf(folder / "off.csv"), HasSubstr("\n\"pad 1\",line,0,"));
  EXPECT_EQ(gfReadNetpbmColor(at("off.ppm")).size(), gxPair<long>(720, 560));
  EXPECT_EQ(run("measure shot.ppm chip_2x1.2mm.kicad_mod --pose 900,900"), 1);
  EXPECT_THAT(err, HasSubstr("no edge where the pose puts"));
}

// A black picture of 100 x 80 pels, on it a device whose origin lies in pel (40, 50), 10 pels to the
// millimetre.
TEST_F(Gxsmd, DrawsOverAPictureAtAPose)
{
  write("black.pgm", "P5 100 80 255\n" + std::string(8000, '\0'));
  write("lines.kicad_mod",
        "(footprint f (at 1 1 90) (fp_line (start 0 0) (end 2 0) (layer F.SilkS) (width 0.3))\n"
        "  (fp_arc (start 0 0) (mid 2 2) (end 4 0) (layer Dwgs.User) (width 0.1)))");
  ASSERT_EQ(run("store chip_2x1.2mm.kicad_mod stored.kicad_mod"), 0) << err;
  struct Row {
    char const *device, *options;
    long x, y;
    bool isDrawn;
  };
  for (Row const &row : {
           // The body is the frame from (-1, -0.6) to (1, 0.6), the first pad that from (-1.45, -0.7) to (-0.45, 0.7).
           Row{"chip_2x1.2mm", "--layers body --at 40.25,50.25", 30, 50, true},
           {"chip_2x1.2mm", "--layers body --at 40.25,50.25", 40, 44, true},
           {"chip_2x1.2mm", "--layers body --at 40.25,50.25", 40, 50, false},
           {"chip_2x1.2mm", "--layers body", 50, 34, true},                      // in the middle
           {"chip_2x1.2mm", "--layers pads --at 40.25,50.25,90", 40, 64, true},  // the left one is below now
           {"chip_2x1.2mm", "--layers pads --at 40.25,50.25,90", 40, 54, true},
           {"chip_2x1.2mm", "--layers pads --at 40.25,50.25,90", 25, 50, false},
           // The second pad, from (0.45, -0.7) to (1.45, 0.7), has fillets of 0.25.
           {"chip_2x1.2mm", "--layers pads --at 40.25,50.25", 54, 43, false},
           {"chip_2x1.2mm", "--layers pads --at 40.25,50.25 --fillets off", 54, 43, true},
           {"stored", "--layers pads --at 40.25,50.25", 49, 43, true},
           // Turned by its own place, and moved: the line runs up from there, three pels wide.
           {"lines", "--layers silk --at 40.25,50.25", 50, 60, true},
           {"lines", "--layers silk --at 40.25,50.25", 49, 50, true},
           {"lines", "--layers silk --at 40.25,50.25", 51, 41, true},
           {"lines", "--layers silk --at 40.25,50.25", 53, 50, false},
           {"lines", "--layers Dwgs.User --at 40.25,50.25", 70, 40, true},
           {"lines", "--layers Dwgs.User --at 40.25,50.25", 50, 50, false},
       }) {
    ASSERT_EQ(
        run("render " + std::string(row.device) + ".kicad_mod over.ppm --over black.pgm --scale 10 " + row.options), 0)
        << err;
    auto const picture = gfReadNetpbmColor(at("over.ppm"));
    ASSERT_EQ(picture.size(), gxPair<long>(100, 80));
    EXPECT_EQ(picture.get(row.x, row.y).value() != 0, row.isDrawn)
        << row.device << ' ' << row.options << " at " << row.x << ", " << row.y;
  }
}

}  // namespace
