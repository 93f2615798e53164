#include "tests/house/include_graph.h"

#include <algorithm>
#include <fstream>
#include <set>
#include <sstream>
#include <stdexcept>

namespace house
{

namespace fs = std::filesystem;

namespace
{

bool isCpp(fs::path const &path)
{
  auto const extension = path.extension();
  return extension == ".h" || extension == ".cpp";
}

/// The include of a line, with line number 0; none when the line is no include.
std::optional<Include> parseInclude(std::string_view line)
{
  auto const skipBlanks = [&line] { line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size())); };
  auto const skipWord = [&line](std::string_view word) {
    if (!line.starts_with(word))
      return false;
    line.remove_prefix(word.size());
    return true;
  };

  skipBlanks();
  if (!skipWord("#"))
    return {};
  skipBlanks();
  if (!skipWord("include"))
    return {};
  skipBlanks();
  bool const quoted = line.starts_with('"');
  if (!quoted && !line.starts_with('<'))
    return {};
  auto const end = line.find(quoted ? '"' : '>', 1);
  if (end == std::string_view::npos)
    return {};
  return Include{.name = std::string(line.substr(1, end - 1)), .quoted = quoted};
}

File readFile(fs::path const &path)
{
  std::ifstream in(path);
  if (!in)
    throw std::runtime_error("cannot read " + path.string());
  File file;
  for (std::string line, previous; std::getline(in, line); previous = line) {
    ++file.lines;
    if (auto include = parseInclude(line)) {
      include->line = file.lines;
      include->askedFor = previous == "#if __has_include(<" + include->name + ">)";
      file.includes.push_back(std::move(*include));
    }
  }
  return file;
}

std::string place(std::string const &path, Include const &include)
{
  return path + ":" + std::to_string(include.line) + ": ";
}

/// Calls visit(path, include) for each include that the rule is about.
template <class Visit>
void forEachInclude(Files const &files, bool quoted, Visit visit)
{
  for (auto const &[path, file] : files)
    for (auto const &include : file.includes)
      if (include.quoted == quoted)
        visit(path, include);
}

/// Depth-first walk that finds the circles.
class CircleFinder
{
 public:
  explicit CircleFinder(Files const &files) : files_(files) {}

  Faults find()
  {
    for (auto const &[path, file] : files_)
      visit(path);
    return std::move(circles_);
  }

 private:
  void visit(std::string const &path)
  {
    auto const file = files_.find(path);
    if (file == files_.end() || done_.contains(path))
      return;
    auto const open = std::find(road_.begin(), road_.end(), path);
    if (open != road_.end()) {
      tell(open);
      return;
    }
    road_.push_back(path);
    for (auto const &include : file->second.includes)
      if (include.quoted)
        visit(include.name);
    road_.pop_back();
    done_.insert(path);
  }

  void tell(std::vector<std::string>::const_iterator first)
  {
    std::string circle;
    for (auto at = first; at != road_.end(); ++at)
      circle += *at + " -> ";
    circles_.push_back("circle: " + circle + *first);
  }

  Files const &files_;
  std::vector<std::string> road_;
  std::set<std::string> done_;
  Faults circles_;
};

void reach(Files const &files, std::string const &path, std::set<std::string> &reached)
{
  auto const file = files.find(path);
  if (file == files.end() || !reached.insert(path).second)
    return;
  for (auto const &include : file->second.includes)
    if (include.quoted)
      reach(files, include.name, reached);
}

}  // namespace

Files readFiles(fs::path const &root, std::vector<std::string> const &folders)
{
  Files files;
  for (auto const &folder : folders) {
    if (!fs::exists(root / folder))
      continue;
    for (auto const &entry : fs::recursive_directory_iterator(root / folder))
      if (entry.is_regular_file() && isCpp(entry.path()))
        files[fs::relative(entry.path(), root).generic_string()] = readFile(entry.path());
  }
  return files;
}

FloorTable::FloorTable(std::istream &rows)
{
  int number = 0;
  for (std::string line; std::getline(rows, line);) {
    ++number;
    std::istringstream row(line.substr(0, line.find('#')));
    if ((row >> std::ws).eof())
      continue;
    int floor = 0;
    std::string pattern;
    if (!(row >> floor >> pattern))
      throw std::runtime_error("floors, line " + std::to_string(number) + ": expected FLOOR PATTERN..., not: " + line);
    do
      rows_.emplace_back(pattern, floor);
    while (row >> pattern);
  }
}

std::optional<int> FloorTable::floorOf(std::string_view path) const
{
  for (auto const &[pattern, floor] : rows_)
    if (fits(pattern, path))
      return floor;
  return {};
}

bool fits(std::string_view pattern, std::string_view path)
{
  if (pattern == "/")
    return false;
  if (pattern.ends_with('/') && pattern.find('*') == std::string_view::npos)
    return path.starts_with(pattern);
  if (pattern.empty())
    return path.empty();
  if (pattern.front() == '*')
    return fits(pattern.substr(1), path) || (!path.empty() && fits(pattern, path.substr(1)));
  return !path.empty() && pattern.front() == path.front() && fits(pattern.substr(1), path.substr(1));
}

bool isPrivateHeader(std::string_view path)
{
  return path.ends_with("_detail.h") || path.find("/detail/") != std::string_view::npos;
}

Faults unplacedFiles(Files const &files, FloorTable const &floors)
{
  Faults faults;
  for (auto const &[path, file] : files)
    if (!floors.floorOf(path))
      faults.push_back(path + ": stands on no floor; add a row to tests/house/floors.txt");
  return faults;
}

Faults higherFloors(Files const &files, FloorTable const &floors)
{
  Faults faults;
  forEachInclude(files, true, [&](std::string const &path, Include const &include) {
    auto const own = floors.floorOf(path);
    auto const other = floors.floorOf(include.name);
    if (own && other && *other > *own)
      faults.push_back(place(path, include) + "floor " + std::to_string(*own) + " includes " + include.name +
                       " of floor " + std::to_string(*other));
  });
  return faults;
}

Faults unknownTargets(Files const &files)
{
  Faults faults;
  forEachInclude(files, true, [&](std::string const &path, Include const &include) {
    if (!files.contains(include.name))
      faults.push_back(place(path, include) + "no file \"" + include.name + "\" from the root of the repository");
  });
  return faults;
}

Faults foreignHeaders(Files const &files, FloorTable const &floors, int upToFloor)
{
  Faults faults;
  forEachInclude(files, false, [&](std::string const &path, Include const &include) {
    bool const standard = include.name.find_first_of("./") == std::string::npos;
    bool const instructions = include.name.ends_with("intrin.h") && (path.ends_with(".cpp") || isPrivateHeader(path));
    if (!standard && !instructions && !include.askedFor && floors.floorOf(path).value_or(0) <= upToFloor)
      faults.push_back(place(path, include) + "<" + include.name + "> is no header of the standard library of C++");
  });
  return faults;
}

Faults privateInPublic(Files const &files, FloorTable const &floors, int upToFloor)
{
  Faults faults;
  forEachInclude(files, true, [&](std::string const &path, Include const &include) {
    bool const isPublic =
        path.ends_with(".h") && !isPrivateHeader(path) && floors.floorOf(path).value_or(0) <= upToFloor;
    if (isPublic && isPrivateHeader(include.name))
      faults.push_back(place(path, include) + "a public header includes " + include.name + ", which is not installed");
  });
  return faults;
}

Faults circles(Files const &files)
{
  return CircleFinder(files).find();
}

Faults missingFromUmbrella(Files const &files, std::string const &umbrella, std::vector<std::string> const &folders)
{
  std::set<std::string> reached;
  reach(files, umbrella, reached);

  Faults faults;
  for (auto const &[path, file] : files) {
    auto const below = [&path = path](std::string const &folder) { return path.starts_with(folder + "/"); };
    if (path.ends_with(".h") && !isPrivateHeader(path) && std::any_of(folders.begin(), folders.end(), below) &&
        !reached.contains(path))
      faults.push_back(path + ": not reached from " + umbrella);
  }
  return faults;
}

Faults longFiles(Files const &files, int maxLines)
{
  Faults faults;
  for (auto const &[path, file] : files)
    if (file.lines > maxLines)
      faults.push_back(path + ": " + std::to_string(file.lines) + " lines, more than " + std::to_string(maxLines) +
                       "; it is looking for a second room");
  return faults;
}

}  // namespace house
