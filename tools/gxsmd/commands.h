#pragma once

#include "tools/support/commandline.h"
#include "tools/support/tool.h"

/// The commands of gxsmd that have a file of their own.
void renderCommand(ToolWords const &words);
void synthCommand(ToolWords const &words);
void checkCommand(ToolWords const &words);
void measureCommand(ToolWords const &words);

/// Pels per millimetre: the option --scale, or 40.
double scaleOf(CommandLine const &line);
/// A field of a table in CSV.
std::string quotedField(std::string const &text);
