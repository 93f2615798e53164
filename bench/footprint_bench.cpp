#include "footprint/models.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

// Reading footprints, and describing them, against the least that any reader does: counting the brackets of the text.

namespace
{

// Files of the Debian package kicad-footprints where it is installed: one in 50.
std::vector<std::string> const &texts()
{
  static std::vector<std::string> const found = [] {
    std::vector<std::string> out;
    std::filesystem::path const folder = "/usr/share/kicad/footprints";
    if (!std::filesystem::is_directory(folder))
      return out;
    std::vector<std::filesystem::path> paths;
    for (auto const &entry : std::filesystem::recursive_directory_iterator(folder))
      if (entry.path().extension() == ".kicad_mod")
        paths.push_back(entry.path());
    std::sort(paths.begin(), paths.end());
    for (std::size_t i = 0; i < paths.size(); i += 50) {
      std::ostringstream os;
      os << std::ifstream(paths[i], std::ios::binary).rdbuf();
      out.push_back(os.str());
    }
    return out;
  }();
  return found;
}

template <class Work>
void overTexts(benchmark::State &state, Work work)
{
  if (texts().empty()) {
    state.SkipWithError("kicad-footprints is not installed");
    return;
  }
  std::int64_t bytes = 0;
  for (auto _ : state)
    for (std::string const &text : texts()) {
      work(text);
      bytes += static_cast<std::int64_t>(text.size());
    }
  state.SetBytesProcessed(bytes);
}

void countBrackets(benchmark::State &state)
{
  overTexts(state, [](std::string const &text) {
    long depth = 0, most = 0;
    for (char const c : text) {
      depth += (c == '(') - (c == ')');
      most = std::max(most, depth);
    }
    benchmark::DoNotOptimize(most);
  });
}
BENCHMARK(countBrackets)->Unit(benchmark::kMillisecond);

void readTokens(benchmark::State &state)
{
  overTexts(state, [](std::string const &text) {
    gxSexprReader in(text);
    in.skip();
  });
}
BENCHMARK(readTokens)->Unit(benchmark::kMillisecond);

void readFootprints(benchmark::State &state)
{
  overTexts(state, [](std::string const &text) { benchmark::DoNotOptimize(gxFootprint::read(text).pads.size()); });
}
BENCHMARK(readFootprints)->Unit(benchmark::kMillisecond);

void readAndDescribe(benchmark::State &state)
{
  overTexts(state, [](std::string const &text) {
    benchmark::DoNotOptimize(gfFootprintModels(gxFootprint::read(text)).pads.numPolys());
  });
}
BENCHMARK(readAndDescribe)->Unit(benchmark::kMillisecond);

}  // namespace
