/// @file
/// Runs a fuzz target once over every file of the folders given, in the order of their names, without libFuzzer.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const *data, std::size_t size);

namespace
{

namespace fs = std::filesystem;

std::vector<fs::path> filesBelow(fs::path const &folder)
{
  std::vector<fs::path> files;
  for (auto const &entry : fs::recursive_directory_iterator(folder))
    if (entry.is_regular_file())
      files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  return files;
}

std::vector<std::uint8_t> bytesOf(fs::path const &file)
{
  std::ifstream in(file, std::ios::binary);
  in.exceptions(std::ios::badbit | std::ios::failbit);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

/// Number of inputs run. The name is printed first: the last name printed is the one that failed.
std::size_t replay(fs::path const &folder)
{
  auto const files = filesBelow(folder);
  for (auto const &file : files) {
    std::cout << file.string() << std::endl;
    auto const bytes = bytesOf(file);
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
  }
  return files.size();
}

}  // namespace

int main(int argc, char **argv)
{
  if (argc < 2) {
    std::cerr << "usage: " << argv[0] << " FOLDER...\n";
    return 2;
  }
  try {
    for (int i = 1; i < argc; ++i) {
      auto const count = replay(argv[i]);
      std::cout << count << " inputs in " << argv[i] << '\n';
      if (count == 0) {
        std::cerr << "no inputs in " << argv[i] << ": a corpus needs at least one seed\n";
        return 1;
      }
    }
  } catch (std::exception const &problem) {
    std::cerr << problem.what() << '\n';
    return 1;
  }
}
