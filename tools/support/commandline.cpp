#include "tools/support/commandline.h"

#include "tools/support/errors.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <string_view>

CommandLine::CommandLine(std::vector<std::string> const &words, std::vector<std::string> const &allowed)
{
  bool isOptions = true;
  for (auto word = words.begin(); word != words.end(); ++word) {
    if (!isOptions || word->size() < 2 || (*word)[0] != '-') {
      operands_.push_back(*word);
      continue;
    }
    if (*word == "--") {
      isOptions = false;
      continue;
    }
    std::size_t const equals = word->find('=');
    std::string const name = word->substr(0, equals);
    if (std::ranges::find(allowed, name) == allowed.end())
      throw UsageError("no option " + name + " here");
    if (option(name))
      throw UsageError("option " + name + " is given twice");
    if (equals == std::string::npos && word + 1 == words.end())
      throw UsageError("option " + name + " needs a value");
    options_.emplace_back(name, equals == std::string::npos ? *++word : word->substr(equals + 1));
  }
}

std::string const *CommandLine::option(std::string const &name) const
{
  for (auto const &[given, value] : options_)
    if (given == name)
      return &value;
  return nullptr;
}

std::string const &CommandLine::needed(std::string const &name) const
{
  if (std::string const *const value = option(name))
    return *value;
  throw UsageError("option " + name + " is missing");
}

void CommandLine::needFiles() const
{
  if (operands_.empty())
    throw UsageError("a file is missing");
}

namespace
{
/// A whole number of digits alone, below 2^31.
std::optional<long> wholeIn(std::string_view text)
{
  long v = 0;
  auto const [end, failure] = std::from_chars(text.data(), text.data() + text.size(), v);
  if (text.empty() || text[0] == '-' || failure != std::errc() || end != text.data() + text.size() || v > 0x7FFFFFFF)
    return std::nullopt;
  return v;
}
}  // namespace

Range rangeIn(std::string const &text)
{
  std::size_t const dash = text.find('-');
  auto const first = wholeIn(std::string_view(text).substr(0, dash));
  if (dash == std::string::npos && first)
    return {*first, *first};
  if (first && dash + 1 == text.size())
    return {*first, -1};
  auto const last = dash == std::string::npos ? std::nullopt : wholeIn(std::string_view(text).substr(dash + 1));
  if (!first || !last || *last < *first)
    throw UsageError("'" + text + "' are no records; give numbers as in 7, 3-5 or 3-");
  return {*first, *last};
}

std::pair<long, long> sizeIn(std::string const &text)
{
  std::size_t const x = text.find('x');
  auto const width = wholeIn(std::string_view(text).substr(0, x));
  auto const height = x == std::string::npos ? std::nullopt : wholeIn(std::string_view(text).substr(x + 1));
  if (!width || !height || *width < 1 || *height < 1)
    throw UsageError("'" + text + "' is no size; give it as in 640x480");
  return {*width, *height};
}

double scaleIn(std::string const &text)
{
  double const v = numberIn(text, "scale");
  if (!(v > 0.0))
    throw UsageError("'" + text + "' is no scale; give a number above 0");
  return v;
}

double numberIn(std::string const &text, char const *what)
{
  double v = 0.0;
  auto const [end, failure] = std::from_chars(text.data(), text.data() + text.size(), v);
  if (failure != std::errc() || end != text.data() + text.size() || !(v >= 0.0) || !std::isfinite(v))
    throw UsageError("'" + text + "' is no " + what + "; give a number");
  return v;
}
