// Checks a library of footprints: reads each, makes outlines of it, and tells what is not sound.
//
//   check_library [FOLDER]   without a folder, a small library of its own, of which it knows what is wrong
//
// docs/libraries.md goes through it; the tool gxsmd does more of the same.

#include "dispc/gxdisplay.h"
#include "footprint/models.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

namespace
{

namespace fs = std::filesystem;
using Edit = gxSMDGDPolyPrivate;

/// Pads of different numbers that overlap.
std::vector<std::string> overlaps(gxFootprint const &footprint, gxFootprintModels const &models)
{
  std::vector<std::string> found;
  auto const &pads = models.pads.polys();
  for (std::size_t i = 0; i < pads.size(); ++i)
    for (std::size_t k = i + 1; k < pads.size(); ++k) {
      std::string const &a = footprint.pads[models.padOf[i]].number, &b = footprint.pads[models.padOf[k]].number;
      if (a != b && !Edit::intersection(pads[i], pads[k]).empty())
        found.push_back("pads " + a + " and " + b + " overlap");
    }
  return found;
}

/// A line for each thing that is not sound.
std::vector<std::string> check(std::string const &text)
{
  try {
    gxFootprint const footprint = gxFootprint::read(text);
    gxFootprintModels const models = gfFootprintModels(footprint);
    std::vector<std::string> found = overlaps(footprint, models);
    for (gxFootprintProblem const &problem : models.problems)
      found.push_back(problem.text());
    return found;
  } catch (gxFootprintError const &e) {  // the text names line and column
    return {e.message()};
  }
}

std::string contentOf(fs::path const &path)
{
  std::ifstream is(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(is), {}};
}

/// Footprints by their names, and what is wrong with each.
std::map<std::string, std::string> const ours = {
    {"sound", "(footprint a (fp_rect (start -1 -1) (end 1 1) (layer F.Fab)) (pad 1 smd rect (at 0 0) (size 1 1)))"},
    {"open",
     "(footprint a (fp_line (start 0 0) (end 1 0) (layer F.CrtYd)) (fp_line (start 1 0) (end 1 1) (layer "
     "F.CrtYd)))"},
    {"overlapping", "(footprint a (pad 1 smd rect (at 0 0) (size 2 1)) (pad 2 smd oval (at 1.5 0) (size 2 1)))"},
    {"cut off", "(footprint a (pad 1 smd rect (at 0 0"},
};

int checkOurs()
{
  std::map<std::string, std::string> const expected = {
      {"open", "F.CrtYd does not close; from (1, 1) to (0, 0) a gap of 1.414 mm"},
      {"overlapping", "pads 1 and 2 overlap"},
      {"cut off", "line 1, column 37: the text ends inside a list"},
  };
  bool allAsTold = true;
  for (auto const &[name, text] : ours) {
    std::vector<std::string> const found = check(text);
    std::string const first = found.empty() ? "" : found.front();
    std::cout << name << ": " << (found.empty() ? "sound" : first) << '\n';
    auto const told = expected.find(name);
    allAsTold = allAsTold && found.size() == expected.count(name) && (found.empty() || first == told->second);
  }
  return allAsTold ? 0 : 1;
}

}  // namespace

int main(int argc, char **argv)
{
  if (argc < 2)
    return checkOurs();
  long files = 0, faulty = 0;
  for (auto const &entry : fs::recursive_directory_iterator(argv[1])) {
    if (entry.path().extension() != ".kicad_mod")
      continue;
    std::vector<std::string> const found = check(contentOf(entry.path()));
    ++files;
    faulty += !found.empty();
    for (std::string const &line : found)
      std::cout << entry.path().string() << ": " << line << '\n';
  }
  std::cout << files << " files, " << faulty << " with faults\n";
  return faulty == 0 ? 0 : 1;
}
