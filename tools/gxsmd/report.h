#pragma once

#include "tools/gxsmd/device.h"
#include "tools/support/output.h"

#include <array>
#include <vector>

/// How a sweep went.
struct SweepCounts {
  long files = 0;
  long refused = 0;                                 ///< could not be read
  long faulty = 0;                                  ///< was read and deviates
  std::array<long, Finding::names.size()> kinds{};  ///< findings of each kind

  long sound() const { return files - refused - faulty; }
};

/// A page of HTML that tells what was found, with pictures. It holds all it needs, and is written as the sweep goes on;
/// the counts are written last and shown first.
class HtmlReport
{
 public:
  /// Throws FileError if the file cannot be written.
  HtmlReport(std::string const &path, long mostPictures);

  /// A file with findings; @p device is null if it could not be read.
  void add(std::string const &path, Device const *device, std::vector<Finding> const &findings);
  /// Ends the page.
  void finish(SweepCounts const &counts);

 private:
  bool picture(Device const &device, std::vector<Finding> const &findings);

  OutputFile file_;
  std::ostream &os_;
  long const mostPictures_;
  long pictures_ = 0;
};
