#pragma once

#include <string>
#include <utility>
#include <vector>

/// The words behind a command: options, and the rest in its order. An option has a value, behind it or after `=`; what
/// follows `--` is no option.
class CommandLine
{
 public:
  /// Takes the options that are allowed. Throws UsageError for others, for one without a value, and for one given
  /// twice.
  CommandLine(std::vector<std::string> const &words, std::vector<std::string> const &allowed);

  std::vector<std::string> const &operands() const { return operands_; }
  /// The value of an option, or null.
  std::string const *option(std::string const &name) const;
  /// The value of an option; throws UsageError if it is not there.
  std::string const &needed(std::string const &name) const;
  /// Throws UsageError if there are no operands.
  void needFiles() const;

 private:
  std::vector<std::string> operands_;
  std::vector<std::pair<std::string, std::string>> options_;
};

/// Numbers of records, first and last; all to the end for a last one of -1.
struct Range {
  long first;
  long last;
  bool holds(long n) const { return n >= first && (last < 0 || n <= last); }
};

// Each throws UsageError for a text that is something else.

Range rangeIn(std::string const &text);                      ///< "7", "3-5" or "3-"
std::pair<long, long> sizeIn(std::string const &text);       ///< "640x480", both at least 1
double scaleIn(std::string const &text);                     ///< above 0
double numberIn(std::string const &text, char const *what);  ///< finite, not negative
