#include "footprint/models.h"
#include "tools/gxsmd/device.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <filesystem>

// Reading footprints, and describing them, against the least that any reader does: counting the brackets of the text.

namespace
{

// Files of the Debian package kicad-footprints where it is installed: one in 50.
std::vector<std::string> const &paths()
{
  static std::vector<std::string> const found = [] {
    std::vector<std::string> out;
    std::string const folder = "/usr/share/kicad/footprints";
    if (!std::filesystem::is_directory(folder))
      return out;
    std::vector<std::string> const all = footprintsIn({folder});
    for (std::size_t i = 0; i < all.size(); i += 50)
      out.push_back(all[i]);
    return out;
  }();
  return found;
}

std::vector<std::string> const &texts()
{
  static std::vector<std::string> const found = [] {
    std::vector<std::string> out;
    for (std::string const &path : paths())
      out.push_back(contentOf(path));
    return out;
  }();
  return found;
}

bool isInstalled(benchmark::State &state)
{
  if (paths().empty())
    state.SkipWithError("kicad-footprints is not installed");
  return !paths().empty();
}

template <class Work>
void overTexts(benchmark::State &state, Work work)
{
  if (!isInstalled(state))
    return;
  std::int64_t bytes = 0;
  for (auto _ : state)
    for (std::string const &text : texts()) {
      work(text);
      bytes += static_cast<std::int64_t>(text.size());
    }
  state.SetBytesProcessed(bytes);
}

void countBracketsOf(std::string const &text)
{
  long depth = 0, most = 0;
  for (char const c : text) {
    depth += (c == '(') - (c == ')');
    most = std::max(most, depth);
  }
  benchmark::DoNotOptimize(most);
}

void countBrackets(benchmark::State &state)
{
  overTexts(state, countBracketsOf);
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

// The same from file to finding, as `gxsmd check` goes through a library.
void sweepAndCount(benchmark::State &state)
{
  if (isInstalled(state))
    for (auto _ : state)
      for (std::string const &path : paths())
        countBracketsOf(contentOf(path));
}
BENCHMARK(sweepAndCount)->Unit(benchmark::kMillisecond);

void sweepAndCheck(benchmark::State &state)
{
  if (isInstalled(state))
    for (auto _ : state)
      for (std::string const &path : paths())
        benchmark::DoNotOptimize(deviationsOf(readDevice(path), 0.15).size());
}
BENCHMARK(sweepAndCheck)->Unit(benchmark::kMillisecond);

}  // namespace
