#include "foundation/exception.h"
#include "tools/gxsmd/commands.h"
#include "tools/gxsmd/device.h"
#include "tools/gxsmd/report.h"
#include "tools/support/errors.h"
#include "tools/support/output.h"
#include "tools/support/progress.h"
#include "tools/support/text.h"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <optional>

std::string quotedField(std::string const &text)
{
  std::string result = "\"";
  for (char const c : text)
    result += c == '"' ? std::string("\"\"") : std::string(1, c);
  return result + '"';
}

namespace
{

/// Goes through files, and tells what it finds on all ways that were asked for. Nothing of a file is kept.
class Sweep
{
 public:
  explicit Sweep(CommandLine const &line) : tolerance_(0.15)
  {
    if (std::string const *const text = line.option("--tolerance"))
      tolerance_ = numberIn(*text, "tolerance");
    std::string const *const html = line.option("--html"), *const pictures = line.option("--pictures");
    if (pictures && !html)
      throw UsageError("--pictures are those of a page; give it by --html");
    std::string const *const csv = line.option("--csv");
    if (html && csv && *html == *csv)
      throw UsageError("--csv and --html are to go to one file; give two");
    double const mostPictures = pictures ? numberIn(*pictures, "number of pictures") : 200.0;
    if (csv) {
      table_.emplace(outputOf(*csv));
      table_->stream() << "file,name,kind,finding\n";
    }
    if (html)
      page_.emplace(outputOf(*html), static_cast<long>(std::min(mostPictures, 1e9)));
  }

  void run(std::vector<std::string> const &paths)
  {
    long all = 0;
    if (Progress::isSeen())
      eachFootprint(paths, [&](std::string const &) { ++all; });
    Progress progress(all);
    eachFootprint(paths, [&](std::string const &path) {
      checkFile(path, progress);
      progress.step();
    });
  }

  /// Ends the table and the page, and throws FileError if not all is sound.
  void finish()
  {
    if (page_)
      page_->finish(counts_);
    if (table_)
      table_->finish();
    long const bad = counts_.refused + counts_.faulty;
    std::cout << counts_.files << " files: " << counts_.refused << " not read, " << counts_.faulty << " with faults, "
              << counts_.sound() << " sound\n";
    if (bad > 0)
      throw FileError(std::to_string(bad) + " of " + std::to_string(counts_.files) + " files are not sound");
  }

 private:
  /// A slip of the hand must not overwrite what is checked.
  static std::string const &outputOf(std::string const &path)
  {
    if (std::filesystem::path(path).extension() == ".kicad_mod")
      throw UsageError(path + " has the name of a footprint; give another name to what is written");
    return path;
  }

  void checkFile(std::string const &path, Progress &progress)
  {
    ++counts_.files;
    std::optional<Device> device;
    std::vector<Finding> found;
    try {
      device = readDevice(path);
      found = deviationsOf(*device, tolerance_);
      counts_.faulty += !found.empty();
    } catch (FileError const &e) {
      ++counts_.refused;
      found.emplace_back();
      found.back().text = std::string(e.what()).substr(path.size() + 2);
    } catch (gxException const &e) {  // of outlines that cannot be compared; the sweep goes on
      ++counts_.faulty;
      found.emplace_back();
      found.back().kind = Finding::refused;
      found.back().text = e.message();
    }
    if (!found.empty())
      tell(path, device ? &*device : nullptr, found, progress);
  }

  void tell(std::string const &path, Device const *device, std::vector<Finding> const &found, Progress &progress)
  {
    progress.hide();
    for (Finding const &finding : found) {
      ++counts_.kinds[finding.kind];
      std::cout << oneLine(path + ": " + finding.text) << '\n';
      if (table_)
        table_->stream() << quotedField(path) << ',' << quotedField(device ? device->footprint.name : "") << ','
                         << finding.name() << ',' << quotedField(oneLine(finding.text)) << '\n';
    }
    if (page_)
      page_->add(path, device, found);
  }

  double tolerance_;
  std::optional<OutputFile> table_;
  std::optional<HtmlReport> page_;
  SweepCounts counts_;
};

}  // namespace

void checkCommand(ToolWords const &words)
{
  CommandLine const line(words, {"--tolerance", "--csv", "--html", "--pictures"});
  line.needFiles();
  Sweep sweep(line);
  sweep.run(line.operands());
  sweep.finish();
}
