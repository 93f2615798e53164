#include "tools/support/tool.h"

#include "tools/support/errors.h"
#include "tools/support/text.h"

#include <algorithm>
#include <exception>
#include <iostream>

namespace
{

void run(std::string const &tool, std::span<ToolCommand const> commands, void (*printUsage)(std::ostream &),
         ToolWords const &words)
{
  if (words.empty())
    throw UsageError("a command is missing");
  ToolWords const rest(words.begin() + 1, words.end());
  if (words[0] == "--help" || words[0] == "-h" || std::ranges::find(rest, "--help") != rest.end())
    return printUsage(std::cout);
  if (words[0] == "--version") {
    std::cout << tool << " " GXDISPLAY_VERSION "\n";
    return;
  }
  for (ToolCommand const &command : commands)
    if (words[0] == command.name)
      return command.run(rest);
  throw UsageError("no command " + words[0]);
}

}  // namespace

int runTool(std::string const &tool, std::span<ToolCommand const> commands, void (*printUsage)(std::ostream &),
            int argc, char **argv)
{
  try {
    run(tool, commands, printUsage, ToolWords(argv + 1, argv + argc));
    std::cout.flush();
    if (!std::cout)
      throw FileError("standard output: cannot be written");
    return 0;
  } catch (UsageError const &e) {
    std::cerr << tool << ": " << oneLine(e.what()) << "\nTry '" << tool << " --help'.\n";
    return 2;
  } catch (std::exception const &e) {
    std::cerr << tool << ": " << oneLine(e.what()) << '\n';
    return 1;
  }
}
