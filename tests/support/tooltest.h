#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

inline std::string contentOf(std::filesystem::path const &path)
{
  std::ifstream is(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(is), {}};
}

/// Runs programs as a user does, in a folder of their own that goes with the test.
struct ToolTest : testing::Test {
  explicit ToolTest(char const *name) : folder(std::filesystem::path(testing::TempDir()) / name)
  {
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
  }
  ~ToolTest() override { std::filesystem::remove_all(folder); }

  std::string at(char const *name) const { return (folder / name).string(); }
  /// The exit status; what the program wrote is in `out` and `err`.
  int runProgram(std::string const &program, std::string const &arguments)
  {
    std::string const command = "cd '" + folder.string() + "' && '" + program + "' " + arguments + " >out 2>err";
    int const status = std::system(command.c_str());
    out = contentOf(folder / "out");
    err = contentOf(folder / "err");
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  std::filesystem::path const folder;
  std::string out, err;
};
