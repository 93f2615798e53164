#pragma once

#include <string>
#include <string_view>

/// A text from a file or a command line as part of a line for a terminal: control characters become blanks.
std::string oneLine(std::string_view text);

/// The same as part of a page of HTML, inside or outside of an attribute in quotes; bytes that are no UTF-8 become the
/// replacement character.
std::string htmlText(std::string_view text);
