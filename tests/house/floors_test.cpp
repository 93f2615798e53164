// The structure of the repository, and the checker of that structure on a small house of its own.

#include "tests/house/include_graph.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <random>
#include <sstream>
#include <stdexcept>

namespace
{

using house::Faults;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
namespace fs = std::filesystem;

constexpr int lastCoreFloor = 8;
constexpr int lastInstalledFloor = 9;
constexpr int maxLines = 700;

std::string joined(Faults const &faults)
{
  std::string text;
  for (auto const &fault : faults)
    text += "\n  " + fault;
  return text;
}

#define EXPECT_FAULTLESS(expression)               \
  do {                                             \
    Faults const faults = expression;              \
    EXPECT_TRUE(faults.empty()) << joined(faults); \
  } while (false)

/// This repository. The build says where it lies.
class House : public testing::Test
{
 protected:
  House()
      : files_(house::readFiles(GX_SOURCE_ROOT, {"foundation", "dispc", "backends", "conformance", "footprint", "tools",
                                                 "examples", "bench", "fuzz", "tests"}))
  {
    std::ifstream rows(GX_SOURCE_ROOT "/tests/house/floors.txt");
    floors_.emplace(rows);
  }

  house::Files files_;
  std::optional<house::FloorTable> floors_;
};

TEST_F(House, everyFileStandsOnAFloorAndIncludesNoHigherOne)
{
  ASSERT_TRUE(files_.contains("foundation/numbers.h")) << "found no repository at " GX_SOURCE_ROOT;
  EXPECT_FAULTLESS(unplacedFiles(files_, *floors_));
  EXPECT_FAULTLESS(higherFloors(files_, *floors_));
}

TEST_F(House, includesNameFilesFromTheRootAndFormNoCircle)
{
  EXPECT_FAULTLESS(unknownTargets(files_));
  EXPECT_FAULTLESS(circles(files_));
}

TEST_F(House, theLibraryStandsOnTheStandardLibraryAlone)
{
  EXPECT_FAULTLESS(foreignHeaders(files_, *floors_, lastCoreFloor));
}

TEST_F(House, publicHeadersAreCompleteWithoutPrivateOnes)
{
  EXPECT_FAULTLESS(privateInPublic(files_, *floors_, lastInstalledFloor));
}

TEST_F(House, theUmbrellaReachesEveryPublicHeader)
{
  EXPECT_FAULTLESS(missingFromUmbrella(files_, "dispc/gxdisplay.h", {"foundation", "dispc"}));
}

TEST_F(House, noFileIsTooLongToRead)
{
  EXPECT_FAULTLESS(longFiles(files_, maxLines));
}

/// A house of three floors in a folder of its own, sound until a test spoils it.
class MadeUpHouse : public testing::Test
{
 protected:
  MadeUpHouse() : root_(fs::path(testing::TempDir()) / ("gx_house_" + std::to_string(std::random_device()())))
  {
    fs::remove_all(root_);
    write("low/number.h", {"<cmath>"});
    write("low/number.cpp", {"\"low/number.h\""});
    write("mid/shape.h", {"\"low/number.h\"", "<vector>"});
    write("mid/shape_detail.h", {"\"mid/shape.h\""});
    write("mid/shape.cpp", {"\"mid/shape.h\"", "\"mid/shape_detail.h\""});
    write("top/all.h", {"\"mid/shape.h\""});
  }
  ~MadeUpHouse() override { fs::remove_all(root_); }

  void write(std::string const &path, std::vector<std::string> const &includes)
  {
    fs::create_directories((root_ / path).parent_path());
    std::ofstream out(root_ / path);
    out << "// a file\n";
    for (auto const &include : includes)
      out << "#include " << include << '\n';
  }
  house::Files files() const { return house::readFiles(root_, {"low", "mid", "top", "absent"}); }

  static house::FloorTable floors()
  {
    std::istringstream rows("# floors\n1 low/\n3 mid/draw*.h  # before the rule\n2 mid/ \n\n3 top/all.h\n");
    return house::FloorTable(rows);
  }

  fs::path root_;
};

TEST_F(MadeUpHouse, isSoundAsBuilt)
{
  auto const all = files();
  EXPECT_EQ(all.size(), 6u);
  EXPECT_EQ(all.at("mid/shape.h").lines, 3);
  EXPECT_FAULTLESS(unplacedFiles(all, floors()));
  EXPECT_FAULTLESS(higherFloors(all, floors()));
  EXPECT_FAULTLESS(unknownTargets(all));
  EXPECT_FAULTLESS(foreignHeaders(all, floors(), 2));
  EXPECT_FAULTLESS(privateInPublic(all, floors(), 3));
  EXPECT_FAULTLESS(circles(all));
  EXPECT_FAULTLESS(missingFromUmbrella(all, "top/all.h", {"low", "mid"}));
  EXPECT_FAULTLESS(longFiles(all, 3));
}

TEST_F(MadeUpHouse, tellsAnIncludeOfAHigherFloorWithItsLine)
{
  write("low/number.cpp", {"\"low/number.h\"", "<cmath>", "\"mid/shape.h\""});
  write("mid/late.cpp", {"\"mid/draw.h\""});
  write("mid/draw.h", {});
  EXPECT_THAT(higherFloors(files(), floors()), ElementsAre("low/number.cpp:4: floor 1 includes mid/shape.h of floor 2",
                                                           "mid/late.cpp:2: floor 2 includes mid/draw.h of floor 3"));
}

TEST_F(MadeUpHouse, tellsTheWholeCircle)
{
  write("low/number.h", {"\"low/other.h\""});
  write("low/other.h", {"\"low/third.h\""});
  write("low/third.h", {"\"low/number.h\""});
  write("top/self.h", {"\"top/self.h\""});
  EXPECT_THAT(circles(files()), ElementsAre("circle: low/number.h -> low/other.h -> low/third.h -> low/number.h",
                                            "circle: top/self.h -> top/self.h"));
}

TEST_F(MadeUpHouse, tellsFilesWithoutAFloorAndIncludesWithoutAFile)
{
  write("top/stray.h", {"\"number.h\""});
  EXPECT_THAT(unplacedFiles(files(), floors()), ElementsAre(AllOf(HasSubstr("top/stray.h"), HasSubstr("add a row"))));
  EXPECT_THAT(unknownTargets(files()), ElementsAre(HasSubstr("top/stray.h:2: no file \"number.h\"")));
}

TEST_F(MadeUpHouse, tellsForeignPrivateAndForgottenHeaders)
{
  write("mid/shape.h", {"<sys/types.h>", "<immintrin.h>", "\"mid/shape_detail.h\""});
  write("mid/shape.cpp", {"<immintrin.h>"});
  write("top/all.h", {"<png.h>"});
  write("mid/drawn.h", {"\"mid/shape_detail.h\""});  // what is not installed may look behind the scenes
  EXPECT_THAT(foreignHeaders(files(), floors(), 2),
              ElementsAre(HasSubstr("mid/shape.h:2: <sys/types.h>"), HasSubstr("mid/shape.h:3: <immintrin.h>")));
  EXPECT_THAT(privateInPublic(files(), floors(), 2), ElementsAre(HasSubstr("mid/shape.h:4")));
  EXPECT_THAT(missingFromUmbrella(files(), "top/all.h", {"low", "mid"}),
              ElementsAre(HasSubstr("low/number.h"), HasSubstr("mid/drawn.h"), HasSubstr("mid/shape.h")));
  EXPECT_THAT(longFiles(files(), 3), ElementsAre(HasSubstr("mid/shape.h: 4 lines")));
}

TEST_F(MadeUpHouse, readsIncludesHoweverTheyAreSpaced)
{
  std::ofstream(root_ / "low/spaced.h") << "  #  include\t\"low/number.h\" // why\n// #include \"top/all.h\"\n"
                                           "#include MACRO\n#include \"unfinished\n#include<cmath>\n";
  auto const includes = files().at("low/spaced.h").includes;
  ASSERT_EQ(includes.size(), 2u);
  EXPECT_EQ(includes[0].name, "low/number.h");
  EXPECT_TRUE(includes[0].quoted);
  EXPECT_EQ(includes[1].name, "cmath");
  EXPECT_FALSE(includes[1].quoted);
  EXPECT_EQ(includes[1].line, 5);
}

TEST_F(MadeUpHouse, allowsForeignHeadersThatAreAskedForFirst)
{
  std::ofstream(root_ / "low/asks.h") << "#if __has_include(<sys/types.h>)\n#include <sys/types.h>\n#endif\n"
                                         "#if __has_include(<sys/stat.h>)\n#include <unistd.h>\n#endif\n";
  EXPECT_THAT(foreignHeaders(files(), floors(), 2), ElementsAre(HasSubstr("low/asks.h:5: <unistd.h>")));
}

TEST(FloorTable, refusesRowsThatItDoesNotUnderstand)
{
  for (auto const *text : {"1 a/\nfoundation/ 1\n", "1 a/\n2\n"}) {
    std::istringstream rows(text);
    try {
      house::FloorTable const table(rows);
      ADD_FAILURE() << "accepted " << text;
    } catch (std::runtime_error const &error) {
      EXPECT_THAT(error.what(), HasSubstr("line 2")) << text;
    }
  }
}

TEST(FloorTable, patternsFitWholePaths)
{
  EXPECT_TRUE(house::fits("dispc/uirect.*", "dispc/uirect.cpp"));
  EXPECT_FALSE(house::fits("dispc/uirect.*", "dispc/uirectangle.cpp"));
  EXPECT_FALSE(house::fits("dispc/uirect.h", "dispc/uirect.hpp"));
  EXPECT_TRUE(house::fits("*/a*b*.h", "x/y/acbd.h"));
  EXPECT_TRUE(house::fits("low/", "low/deep/file.h"));
  EXPECT_FALSE(house::fits("low/", "lower/file.h"));
}

}  // namespace
