#include "tools/gxsmd/commands.h"
#include "tools/gxsmd/device.h"
#include "tools/support/errors.h"

#include <fstream>
#include <iostream>

std::string quotedField(std::string const &text)
{
  std::string result = "\"";
  for (char const c : text)
    result += c == '"' ? std::string("\"\"") : std::string(1, c);
  return result + '"';
}

void checkCommand(ToolWords const &words)
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
        table << quotedField(path) << ',' << quotedField(name) << ',' << quotedField(finding) << '\n';
    }
  }
  std::cout << files << " files: " << refused << " not read, " << faulty << " with faults, " << files - refused - faulty
            << " sound\n";
  if (csv && !table.flush())
    throw FileError(*csv + ": cannot be written");
  if (refused + faulty > 0)
    throw FileError(std::to_string(refused + faulty) + " of " + std::to_string(files) + " files are not sound");
}
