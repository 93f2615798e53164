#include "footprint/sexpr.h"

#include <algorithm>
#include <charconv>
#include <cmath>

GX_EXCEPTION_WITH_STRING_IMPL(gxFootprintError, gxExceptionWithString, gxFootprintError, 0x11000500)

namespace
{
constexpr int deepest = 200;
constexpr double largest = 1e6;
}  // namespace

void gxSexprReader::failAt(std::size_t at, std::string const &what) const
{
  std::string_view const before = source_.substr(0, at);
  auto const line = std::count(before.begin(), before.end(), '\n') + 1;
  std::size_t const lineStart = before.rfind('\n') + 1;  // npos + 1 is 0
  throw gxFootprintError("line " + std::to_string(line) + ", column " + std::to_string(at - lineStart + 1) + ": " +
                         what);
}

void gxSexprReader::failToPeek() const
{
  fail(at_ == source_.size() ? "the text ends inside a list" : "a bracket closes what is not open");
}

std::string_view gxSexprReader::enter()
{
  if (peek() != list)
    fail("a list was expected");
  if (depth_ == deepest)
    fail("lists lie deeper than " + std::to_string(deepest));
  ++at_;
  ++depth_;
  Kind const first = peek();
  return first == word || first == text ? value() : std::string_view();
}

void gxSexprReader::leave()
{
  while (peek() != end)
    skip();
  ++at_;
  --depth_;
}

// By counting, so that depth costs nothing.
void gxSexprReader::skip()
{
  if (peek() != list) {
    value();
    return;
  }
  std::size_t const start = at_, size = source_.size();
  long open = 0;
  do {
    while (at_ < size && classOf(source_[at_]) <= blank)
      ++at_;
    if (at_ == size)
      failAt(start, "a list does not end");
    Class const c = classOf(source_[at_]);
    if (c == quote) {
      passText();
      continue;
    }
    open += c == opens ? 1 : -1;
    ++at_;
  } while (open > 0);
}

void gxSexprReader::passText()
{
  std::size_t const start = at_;
  for (++at_; at_ < source_.size() && source_[at_] != '"'; ++at_)
    if (source_[at_] == '\\')
      ++at_;
  if (at_ >= source_.size()) {
    at_ = source_.size();
    failAt(start, "a text does not end");
  }
  ++at_;
}

std::string_view gxSexprReader::value()
{
  std::size_t const start = at_;
  switch (peek()) {
    case text: {
      std::size_t const from = at_;
      passText();
      return source_.substr(from + 1, at_ - from - 2);
    }
    case word: {
      std::size_t const from = at_;
      while (at_ < source_.size() && classOf(source_[at_]) == ordinary)
        ++at_;
      return source_.substr(from, at_ - from);
    }
    default:
      failAt(start, "a word or a text was expected");
  }
}

double gxSexprReader::number()
{
  passBlanks();
  std::size_t const start = at_;
  char const *const all = source_.data(), *const last = all + source_.size();
  double v = 0.0;
  auto const [stop, error] = std::from_chars(all + start, last, v);
  bool const isWhole = stop == last || classOf(*stop) != ordinary;
  if (error == std::errc() && isWhole && std::abs(v) <= largest) {
    at_ = static_cast<std::size_t>(stop - all);
    return v;
  }
  std::string const found(value().substr(0, 40));
  bool const isTooLarge = isWhole && (error == std::errc::result_out_of_range || std::abs(v) > largest);
  failAt(start, isTooLarge ? "the number " + found + " is out of range" : '"' + found + "\" is no number");
}

std::string gxSexprReader::plain(std::string_view quoted)
{
  if (quoted.find('\\') == std::string_view::npos)
    return std::string(quoted);
  std::string result;
  for (std::size_t i = 0; i < quoted.size(); ++i) {
    if (quoted[i] == '\\' && i + 1 < quoted.size())
      ++i;
    result += quoted[i];
  }
  return result;
}
