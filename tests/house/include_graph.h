#pragma once

#include <filesystem>
#include <iosfwd>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// @file
/// Who includes whom in this repository, and the rules about it. Nothing here knows the compiler: a line that begins
/// with
/// `#include` counts, whatever `#if` stands around it.

namespace house
{

/// One `#include` line.
struct Include {
  int line = 0;           ///< from 1
  std::string name;       ///< what stands between the quotes or the angle brackets
  bool quoted = true;     ///< "name" as opposed to <name>
  bool askedFor = false;  ///< `#if __has_include(<name>)` stands in the line before
};

/// One source or header.
struct File {
  int lines = 0;
  std::vector<Include> includes;
};

/// All files by their path from the root, with forward slashes.
using Files = std::map<std::string, File>;

/// One line for each fault: where, and what is wrong.
using Faults = std::vector<std::string>;

/// Reads the C++ files below the given folders of the root; a folder that does not exist holds none.
Files readFiles(std::filesystem::path const &root, std::vector<std::string> const &folders);

/// The table of floors, read from the format that tests/house/floors.txt explains.
class FloorTable
{
 public:
  /// Throws std::runtime_error with the line number when a row does not begin with a number or names no pattern.
  explicit FloorTable(std::istream &rows);

  /// The floor of the first row that fits; none when there is no such row.
  std::optional<int> floorOf(std::string_view path) const;

 private:
  std::vector<std::pair<std::string, int>> rows_;
};

/// Whether the pattern of floors.txt fits the whole path.
bool fits(std::string_view pattern, std::string_view path);

/// A header that is not installed: `*_detail.h` or below a folder `detail`.
bool isPrivateHeader(std::string_view path);

/// Files that no row of the table places.
Faults unplacedFiles(Files const &, FloorTable const &);
/// Includes of a file on a higher floor.
Faults higherFloors(Files const &, FloorTable const &);
/// Quoted includes that name no file from the root of the repository.
Faults unknownTargets(Files const &);
/// Angle includes of anything but the standard library, in files up to the given floor. Free are headers that
/// the line before asks for with `__has_include`, and, in sources and private headers, those of the compiler for vector
/// instructions, `*intrin.h`.
Faults foreignHeaders(Files const &, FloorTable const &, int upToFloor);
/// Public headers up to the given floor that include a private one.
Faults privateInPublic(Files const &, FloorTable const &, int upToFloor);
/// Circles of includes, each told once as "a.h -> b.h -> a.h".
Faults circles(Files const &);
/// Public headers below the given folders that the umbrella does not reach.
Faults missingFromUmbrella(Files const &, std::string const &umbrella, std::vector<std::string> const &folders);
/// Files of more lines than that.
Faults longFiles(Files const &, int maxLines);

}  // namespace house
