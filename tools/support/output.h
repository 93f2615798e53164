#pragma once

#include <fstream>
#include <string>

/// What the system says of an error (errno), and what can be done about it.
std::string reasonOf(int error);

/// A file that is written bit by bit. All throw FileError, which names it.
class OutputFile
{
 public:
  /// Makes it, or empties it.
  explicit OutputFile(std::string const &path);

  std::ostream &stream() { return os_; }
  /// All that was written is in the file then.
  void finish();

 private:
  std::string path_;
  std::ofstream os_;
};
