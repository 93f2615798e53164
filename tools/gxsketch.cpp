// Looks into stored sketches, cuts and joins them, and makes pictures of them. The texts below tell how it is called.

#include "foundation/exception.h"
#include "tools/gxsketch/sketchfile.h"
#include "tools/support/commandline.h"
#include "tools/support/errors.h"
#include "tools/support/render.h"
#include "tools/support/tool.h"

#include <algorithm>
#include <array>
#include <iostream>
#include <string>
#include <vector>

namespace
{

using Words = ToolWords;

void printUsage(std::ostream &os)
{
  os << "usage: gxsketch COMMAND ...\n"
        "\n"
        "  info FILE...                     records, bytes, what they draw, and the pels that they cover\n"
        "  dump FILE...                     a line for each record: number, first byte, head and payload\n"
        "  render FILE PICTURE [OPTION...]  draws the sketch; PICTURE ends in "
     << pictureKinds()
     << "\n"
        "      --size WxH                   the pels from (0, 0) on; without it, those that are covered\n"
        "      --scale S                    enlarges or reduces coordinates and images; 1 by default\n"
        "      --layer LAYER                image, overlay or both, which is the default\n"
        "  cat -o OUT FILE...               joins sketches, one drawn after the other\n"
        "  cut -o OUT FILE RECORDS...       keeps some records, by numbers as in 7, 3-5 or 3-\n"
        "  --help, --version\n"
        "\n"
        "A FILE is an archive that holds one sketch. Exit status: 0, 1 for a file that cannot be read, written or\n"
        "drawn, 2 for a command line that makes no sense.\n";
}

/// What a sketch cannot be used for, whatever operation finds out, is said with the name of its file.
template <class Use>
void useSketch(std::string const &path, Use const &use)
{
  gxUISketch sketch = readSketch(path);
  try {
    use(sketch);
  } catch (gxException const &e) {
    throw FileError(path + ": " + e.message());
  }
}

void infoOf(std::string const &path, gxUISketch const &sketch)
{
  std::array<long, gf_sketchCodes.size()> counts{};
  std::array<long, 3> onLayer{};
  long const records = forEachRecord(sketch, [&](Record const &record) {
    ++counts[static_cast<std::size_t>(record.header.opcode())];
    ++onLayer[static_cast<std::size_t>(std::clamp<long>(record.header.layer(), 0, 2))];
  });
  std::cout << path << ": " << records << " records, " << sketch.size() << " bytes\n";
  static constexpr std::array layers = {"image", "overlay", "both"};
  for (std::size_t i = 0; i < layers.size(); ++i)
    if (auto const layer = static_cast<gxUITablet::Layers>(i); onLayer[i] > 0 || onLayer[gxUITablet::both] > 0) {
      std::cout << "  on " << layers[i] << ": " << onLayer[i];
      if (layer != gxUITablet::both)
        std::cout << ", covers " << extentOf(sketch, 1.0, layer);
      std::cout << '\n';
    }
  for (std::size_t i = 0; i < counts.size(); ++i)
    if (counts[i] > 0)
      std::cout << "  " << gf_sketchCodes[i].name << ": " << counts[i] << '\n';
}

void info(Words const &words)
{
  CommandLine const line(words, {});
  line.needFiles();
  for (std::string const &path : line.operands())
    useSketch(path, [&](gxUISketch const &sketch) { infoOf(path, sketch); });
}

void dump(Words const &words)
{
  CommandLine const line(words, {});
  line.needFiles();
  for (std::string const &path : line.operands()) {
    useSketch(path, [&](gxUISketch &sketch) {
      if (line.operands().size() > 1)
        std::cout << path << ":\n";
      gfDumpUISketch(std::cout, sketch);
    });
  }
}

gxUITablet::Layers layerIn(std::string const &text)
{
  if (text == "image")
    return gxUITablet::image;
  if (text == "overlay")
    return gxUITablet::overlay;
  if (text == "both")
    return gxUITablet::both;
  throw UsageError("'" + text + "' is no layer; give image, overlay or both");
}

void renderCommand(Words const &words)
{
  CommandLine const line(words, {"--size", "--scale", "--layer"});
  if (line.operands().size() != 2)
    throw UsageError("render takes a sketch and a picture");
  View view;
  if (std::string const *const text = line.option("--size")) {
    auto const [width, height] = sizeIn(*text);
    view.size = gxPair<long>(width, height);
  }
  if (std::string const *const text = line.option("--scale"))
    view.scale = scaleIn(*text);
  if (std::string const *const text = line.option("--layer"))
    view.layer = layerIn(*text);
  useSketch(line.operands()[0], [&](gxUISketch const &sketch) { render(sketch, view, line.operands()[1]); });
}

void cat(Words const &words)
{
  CommandLine const line(words, {"-o"});
  line.needFiles();
  gxUISketch joined;
  for (std::string const &path : line.operands())
    forEachRecord(readSketch(path), [&](Record const &record) { record.appendTo(joined); });
  writeSketch(line.needed("-o"), joined);
}

void cut(Words const &words)
{
  CommandLine const line(words, {"-o"});
  if (line.operands().size() < 2)
    throw UsageError("cut takes a file and the numbers of records");
  std::vector<Range> ranges;
  for (std::size_t i = 1; i < line.operands().size(); ++i)
    ranges.push_back(rangeIn(line.operands()[i]));
  std::string const &to = line.needed("-o");
  std::string const &path = line.operands()[0];
  gxUISketch kept;
  long const records = forEachRecord(readSketch(path), [&](Record const &record) {
    if (std::ranges::any_of(ranges, [&](Range const &r) { return r.holds(record.number); }))
      record.appendTo(kept);
  });
  for (Range const &r : ranges)
    if (std::max(r.first, r.last) >= records)
      throw FileError(path + ": there is no record " + std::to_string(std::max(r.first, r.last)) + ", but " +
                      std::to_string(records) + " from 0 on");
  writeSketch(to, kept);
}

constexpr ToolCommand commands[] = {
    {"info", info}, {"dump", dump}, {"render", renderCommand}, {"cat", cat}, {"cut", cut}};

}  // namespace

int main(int argc, char **argv)
{
  return runTool("gxsketch", commands, printUsage, argc, argv);
}
