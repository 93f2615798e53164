// Footprints of devices: what they hold, pictures and synthetic images of them, and whether they are sound. The texts
// below tell how it is called.

#include "dispc/wrfm/polyprivate.h"
#include "dispc/wrfm/wirefrm.h"
#include "foundation/pelbuf.h"
#include "tools/gxsmd/device.h"
#include "tools/support/commandline.h"
#include "tools/support/errors.h"
#include "tools/support/render.h"
#include "tools/support/tool.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iostream>
#include <random>
#include <stdexcept>

namespace
{

using Words = ToolWords;
using Buffer = gxPelBuffer<unsigned char>;

void printUsage(std::ostream &os)
{
  os << "usage: gxsmd COMMAND ...\n"
        "\n"
        "  info FILE...                     pads, body, courtyard, and what is not sound\n"
        "  render FILE PICTURE [OPTION...]  draws the outlines; PICTURE ends in "
     << pictureKinds()
     << "\n"
        "      --scale S                    pels per millimetre; 40 by default\n"
        "      --layers L                   of pads, body, courtyard, with commas between; all by default\n"
        "  synth FILE PICTURE [OPTION...]   a grey picture as of a camera\n"
        "      --scale S                    as above\n"
        "      --blur R                     out of focus by R pels\n"
        "      --noise N                    grey values, the standard deviation\n"
        "      --seed N                     of the noise; the same gives the same picture\n"
        "  store FILE MODELS                stores the models, to be given in place of a footprint\n"
        "  check [OPTION...] PATH...        footprints and folders of them: outlines that do not close or cross\n"
        "                                   themselves, pads that overlap, sizes and pitches against the name\n"
        "      --tolerance MM               of these; 0.15 by default\n"
        "      --csv FILE                   a row for each finding: file, name, finding\n"
        "  --help, --version\n"
        "\n"
        "A FILE is a footprint (.kicad_mod) or what store has written. Exit status: 0, 1 for a file that cannot be\n"
        "read or written or that check finds fault with, 2 for a command line that makes no sense.\n";
}

std::string sizeOf(gxRect const &box)
{
  if (box.isEmpty())
    return "nothing";
  char text[80];
  std::snprintf(text, sizeof text, "%.4g x %.4g mm", box.size().x(), box.size().y());
  return text;
}

void info(Words const &words)
{
  CommandLine const line(words, {});
  line.needFiles();
  for (std::string const &path : line.operands()) {
    Device const device = readDevice(path);
    gxFootprintModels const &m = device.models;
    std::cout << path << ": " << device.footprint.name << '\n'
              << "  pads: " << m.pads.numPolys() << " outlines, " << sizeOf(m.pads.boundingBox({})) << '\n'
              << "  body: " << m.body.numPolys() << " outlines, " << sizeOf(bodyBox(m.body)) << '\n'
              << "  courtyard: " << m.courtyard.numPolys() << " outlines, " << sizeOf(m.courtyard.boundingBox({}))
              << '\n';
    for (std::string const &problem : m.problems)
      std::cout << "  " << problem << '\n';
    for (auto const &[name, count] : device.footprint.unknown)
      std::cout << "  left out: " << name << ", " << count << '\n';
  }
}

double scaleOf(CommandLine const &line)
{
  std::string const *const text = line.option("--scale");
  return text ? scaleIn(*text) : 40.0;
}

void addOutlines(gxUITablet &tablet, gxSMDGDModel const &model, gxColor const &color)
{
  for (gxSMDGDPoly const &poly : model.polys())
    gxSMDGDPolyPrivate::drawWireframe(poly, gxXform<2>(), tablet, color, gxUITablet::overlay);
}

void renderCommand(Words const &words)
{
  CommandLine const line(words, {"--scale", "--layers"});
  if (line.operands().size() != 2)
    throw UsageError("render takes a footprint and a picture");
  std::string const layers = ',' + (line.option("--layers") ? *line.option("--layers") : "pads,body,courtyard") + ',';
  Device const device = readDevice(line.operands()[0]);
  gxUITablet recorder;
  recorder.recordOn().push(true);
  std::size_t known = 0;
  auto const add = [&](std::string const &name, gxSMDGDModel const &model, gxColor const &color) {
    if (layers.find(',' + name + ',') == std::string::npos)
      return;
    known += name.size() + 1;
    addOutlines(recorder, model, color);
  };
  add("courtyard", device.models.courtyard, gxColor::magentaColor());
  add("body", device.models.body, gxColor::greenColor());
  add("pads", device.models.pads, gxColor::orangeColor());
  if (known + 1 != layers.size())
    throw UsageError("'" + *line.option("--layers") + "' are no layers; give some of pads, body, courtyard");
  View view;
  view.scale = scaleOf(line);
  render(recorder.sketch(), view, line.operands()[1]);
}

/// Repeated means of three pels each way come near to a Gaussian; its variance is 2 / 3 for each pass.
void blur(Buffer const &buffer, double radius)
{
  long const passes = std::lround(std::min(radius, 50.0) * std::min(radius, 50.0) * 1.5);
  // The pels at the borders stand for those beyond.
  auto const indexOf = [&](long x, long y) {
    return static_cast<std::size_t>(std::clamp(y, 0L, buffer.height() - 1) * buffer.width() +
                                    std::clamp(x, 0L, buffer.width() - 1));
  };
  std::vector<double> pels(static_cast<std::size_t>(buffer.width() * buffer.height()));
  auto const at = [&](long x, long y) -> double & { return pels[indexOf(x, y)]; };
  for (long y = 0; y < buffer.height(); ++y)
    for (long x = 0; x < buffer.width(); ++x)
      at(x, y) = buffer.get(x, y);
  for (long pass = 0; pass < passes; ++pass)
    for (bool const along : {true, false}) {
      std::vector<double> const before = pels;
      auto const old = [&](long x, long y) { return before[indexOf(x, y)]; };
      for (long y = 0; y < buffer.height(); ++y)
        for (long x = 0; x < buffer.width(); ++x)
          at(x, y) = along ? (old(x - 1, y) + old(x, y) + old(x + 1, y)) / 3.0
                           : (old(x, y - 1) + old(x, y) + old(x, y + 1)) / 3.0;
    }
  for (long y = 0; y < buffer.height(); ++y)
    for (long x = 0; x < buffer.width(); ++x)
      buffer.put(x, y, static_cast<unsigned char>(std::lround(at(x, y))));
}

void addNoise(Buffer const &buffer, double deviation, unsigned long seed)
{
  // The sum of twelve: the same on every machine, which a distribution of the standard library need not be.
  std::mt19937 random(static_cast<std::mt19937::result_type>(seed));
  for (long y = 0; y < buffer.height(); ++y)
    for (long x = 0; x < buffer.width(); ++x) {
      double sum = -6.0;
      for (int i = 0; i < 12; ++i)
        sum += static_cast<double>(random()) * 0x1p-32;
      buffer.put(x, y,
                 static_cast<unsigned char>(std::lround(std::clamp(buffer.get(x, y) + sum * deviation, 0.0, 255.0))));
    }
}

void synth(Words const &words)
{
  CommandLine const line(words, {"--scale", "--blur", "--noise", "--seed"});
  if (line.operands().size() != 2)
    throw UsageError("synth takes a footprint and a picture");
  auto const number = [&](char const *option, char const *what) {
    std::string const *const text = line.option(option);
    return text ? numberIn(*text, what) : 0.0;
  };
  double const scale = scaleOf(line), radius = number("--blur", "radius"), noise = number("--noise", "deviation");
  auto const seed = static_cast<unsigned long>(std::min(number("--seed", "seed"), 4e9));
  std::string const &path = line.operands()[0];
  Device const device = readDevice(path);
  gxRect const box = device.models.pads.boundingBox({}).enclose(device.models.body.boundingBox({}));
  if (box.isEmpty())
    throw FileError(path + ": there is nothing to be seen of it");
  constexpr double margin = 10.0;
  gxVector<2> const pels = box.size() * scale + gxVector<2>(2 * margin, 2 * margin);
  if (pels.x() * pels.y() > 1e8)
    throw FileError(path + ": a picture of more than 100 million pels; give a smaller --scale");
  Buffer const buffer(std::lround(std::ceil(pels.x())), std::lround(std::ceil(pels.y())));
  for (long y = 0; y < buffer.height(); ++y)
    std::fill_n(buffer.pointToRow(y), buffer.width(), static_cast<unsigned char>(90));
  gxXform<2> const pose(gxMatrix<2>(scale, 0, 0, scale), gxVector<2>(margin, margin) - box.origin() * scale);
  for (gxSMDGDPoly const &poly : device.models.pads.polys())
    gxSMDGDPolyPrivate::drawSynthetic(poly, pose, buffer, 210, true, true);
  for (gxSMDGDPoly const &poly : device.models.body.polys())
    gxSMDGDPolyPrivate::drawSynthetic(poly, pose, buffer, 40, true, true);
  blur(buffer, radius);
  if (noise > 0.0)
    addNoise(buffer, noise, seed);
  gxUITablet recorder;
  recorder.recordOn().push(true);
  recorder.draw(buffer, gxPoint(0, 0), false, 0, false, gxUITablet::image);
  render(recorder.sketch(), View(), line.operands()[1]);
}

void store(Words const &words)
{
  CommandLine const line(words, {});
  if (line.operands().size() != 2)
    throw UsageError("store takes a footprint and the file for its models");
  writeModels(line.operands()[1], readDevice(line.operands()[0]).models);
}

std::string quoted(std::string const &text)
{
  std::string result = "\"";
  for (char const c : text)
    result += c == '"' ? std::string("\"\"") : std::string(1, c);
  return result + '"';
}

void check(Words const &words)
{
  CommandLine const line(words, {"--tolerance", "--csv"});
  line.needFiles();
  std::string const *const tolerance = line.option("--tolerance"), *const csv = line.option("--csv");
  double const limit = tolerance ? numberIn(*tolerance, "tolerance") : 0.15;
  std::ofstream table;
  if (csv) {
    table.open(*csv);
    table << "file,name,finding\n";
  }
  long files = 0, refused = 0, faulty = 0;
  for (std::string const &path : footprintsIn(line.operands())) {
    ++files;
    std::string name;
    std::vector<std::string> found;
    try {
      Device const device = readDevice(path);
      name = device.footprint.name;
      found = deviationsOf(device, limit);
      faulty += !found.empty();
    } catch (FileError const &e) {
      ++refused;
      found = {std::string(e.what()).substr(path.size() + 2)};
    }
    for (std::string const &finding : found) {
      std::cout << path << ": " << finding << '\n';
      if (csv)
        table << quoted(path) << ',' << quoted(name) << ',' << quoted(finding) << '\n';
    }
  }
  std::cout << files << " files: " << refused << " not read, " << faulty << " with faults, " << files - refused - faulty
            << " sound\n";
  if (csv && !table.flush())
    throw FileError(*csv + ": cannot be written");
  if (refused + faulty > 0)
    throw FileError(std::to_string(refused + faulty) + " of " + std::to_string(files) + " files are not sound");
}

constexpr ToolCommand commands[] = {
    {"info", info}, {"render", renderCommand}, {"synth", synth}, {"store", store}, {"check", check}};

}  // namespace

int main(int argc, char **argv)
{
  return runTool("gxsmd", commands, printUsage, argc, argv);
}
