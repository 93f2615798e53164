#pragma once

#include <ostream>
#include <span>
#include <string>
#include <vector>

using ToolWords = std::vector<std::string>;

/// A command of a tool, which is called with the words behind it.
struct ToolCommand {
  char const *name;
  void (*run)(ToolWords const &);
};

/// Runs the command that the first word names, or tells usage or version, and returns the exit status: 0, 1 for a file
/// that cannot be used, 2 for a command line that makes no sense.
int runTool(std::string const &tool, std::span<ToolCommand const> commands, void (*printUsage)(std::ostream &),
            int argc, char **argv);
