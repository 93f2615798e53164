// Footprints of devices: what they hold, pictures and synthetic images of them, and whether they are sound. The texts
// below tell how it is called.

#include "tools/gxsmd/commands.h"
#include "tools/gxsmd/device.h"
#include "tools/gxsmd/drawing.h"
#include "tools/support/errors.h"
#include "tools/support/render.h"
#include "tools/support/text.h"

#include <cstdio>
#include <filesystem>
#include <iostream>

namespace
{

using Words = ToolWords;

void printUsage(std::ostream &os)
{
  os << "usage: gxsmd COMMAND ...\n"
        "\n"
        "  info FILE...                     pads, body, courtyard, and what is not sound\n"
        "  render FILE PICTURE [OPTION...]  draws the outlines; PICTURE ends in "
     << pictureKinds()
     << "\n"
        "      --scale S                    pels per millimetre; 40 by default\n"
        "      --layers L                   some of pads, body, courtyard, silk, with commas between, and of the "
        "layers\n"
        "                                   of the file, as F.Fab; pads,body,courtyard by default\n"
        "      --fillets on|off             rounded corners, or the sharp ones that they round; on by default\n"
        "      --over IMAGE                 draws over a picture: PNG, PGM or PPM\n"
        "      --at X,Y,DEGREES             where the origin of the device lies in it, in pels, and how far it is\n"
        "                                   turned counter-clockwise; its middle, not turned, by default\n"
        "  synth FILE PICTURE [OPTION...]   a grey picture as of a camera\n"
        "      --scale S                    as above\n"
        "      --at X,Y,DEGREES             where the origin of the footprint lies in the picture, in pels, and how "
        "the\n"
        "                                   device is turned, counter-clockwise; near the upper left by default\n"
        "      --size WxH                   of the picture; as large as need be by default\n"
        "      --blur R                     out of focus by R pels, the standard deviation\n"
        "      --noise N                    grey values, the standard deviation\n"
        "      --shading P                  by which part the light falls off to the corners, 0 to 1\n"
        "      --seed N                     of the noise; the same gives the same picture\n"
        "  measure PICTURE FILE --pose X,Y,DEGREES [OPTION...]\n"
        "                                   how far the edges in a picture lie from where a pose puts them, in pels\n"
        "                                   outwards, segment by segment, and what the pose is off by\n"
        "      --scale S                    as above\n"
        "      --reach R                    looks up to R pels to either side; 6 by default\n"
        "      --corner R                   stays R pels away from corners; 3 by default, more for blurred pictures\n"
        "      --csv FILE                   a row for each segment\n"
        "      --picture FILE               the picture 4 times as large, with outlines, and offsets 40 times as long\n"
        "      --limit R                    status 1 if a segment lies farther off on the average\n"
        "  store FILE MODELS                stores the models, to be given in place of a footprint\n"
        "  check [OPTION...] PATH...        footprints and folders of them: outlines that do not close or cross\n"
        "                                   themselves, pads that overlap, sizes and pitches against the name\n"
        "      --tolerance MM               of these; 0.15 by default\n"
        "      --csv FILE                   a row for each finding: file, name, kind, finding\n"
        "      --html FILE                  a page with counts, findings and pictures, which needs no other file\n"
        "      --pictures N                 for the first N files that deviate; 200 by default\n"
        "  --help, --version\n"
        "\n"
        "A FILE is a footprint (.kicad_mod), what store has written, or an archive of one model. Exit status: 0, 1 "
        "for\n"
        "a file that cannot be read or written, or that check or measure finds fault with, 2 for a command line that\n"
        "makes no sense.\n";
}

std::string sizeOf(gxRect const &box)
{
  if (box.isEmpty())
    return "nothing";
  char text[80];
  std::snprintf(text, sizeof text, "%.4g x %.4g mm", box.size().x(), box.size().y());
  return text;
}

std::string outlinesOf(gxSMDGDModel const &model)
{
  return std::to_string(model.numPolys()) + (model.numPolys() == 1 ? " outline" : " outlines");
}

void info(Words const &words)
{
  CommandLine const line(words, {});
  line.needFiles();
  for (std::string const &path : line.operands()) {
    Device const device = readDevice(path);
    gxFootprintModels const &m = device.models;
    std::cout << oneLine(path + ": " + device.footprint.name) << '\n'
              << "  pads: " << outlinesOf(m.pads) << ", " << sizeOf(m.pads.boundingBox({})) << '\n'
              << "  body: " << outlinesOf(m.body) << ", " << sizeOf(bodyBox(m.body)) << '\n'
              << "  courtyard: " << outlinesOf(m.courtyard) << ", " << sizeOf(m.courtyard.boundingBox({})) << '\n';
    std::string layers;
    for (std::string const &layer : drawnLayers(device.footprint))
      layers += (layers.empty() ? "" : ", ") + layer;
    if (!layers.empty())
      std::cout << "  drawings: " << oneLine(layers) << '\n';
    for (gxFootprintProblem const &problem : m.problems)
      std::cout << "  " << oneLine(problem.text()) << '\n';
    for (auto const &[name, count] : device.footprint.unknown)
      std::cout << "  left out: " << oneLine(name) << ", " << count << '\n';
  }
}

void store(Words const &words)
{
  CommandLine const line(words, {});
  if (line.operands().size() != 2)
    throw UsageError("store takes a footprint and the file for its models");
  std::string const &from = line.operands()[0], &to = line.operands()[1];
  Device const device = readDevice(from);
  std::error_code unknown;
  if (std::filesystem::equivalent(from, to, unknown))
    throw UsageError(to + " is the file that is read; give another name to what is written");
  writeModels(to, device.models);
}

constexpr ToolCommand commands[] = {{"info", info},   {"render", renderCommand}, {"synth", synthCommand},
                                    {"store", store}, {"check", checkCommand},   {"measure", measureCommand}};

}  // namespace

int main(int argc, char **argv)
{
  return runTool("gxsmd", commands, printUsage, argc, argv);
}
