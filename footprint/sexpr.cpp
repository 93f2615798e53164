#include "footprint/sexpr.h"

#include <algorithm>
#include <charconv>
#include <cmath>

GX_EXCEPTION_WITH_STRING_IMPL(gxFootprintError, gxExceptionWithString, gxFootprintError, 0x11000500)

namespace
{
constexpr int deepest = 200;
constexpr double largest = 1e6;

bool isBlank(char c)
{
  return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

bool endsWord(char c)
{
  return isBlank(c) || c == '(' || c == ')' || c == '"';
}
}  // namespace

void gxSexprReader::failAt(std::size_t at, std::string const &what) const
{
  std::string_view const before = source_.substr(0, at);
  auto const line = std::count(before.begin(), before.end(), '\n') + 1;
  std::size_t const lineStart = before.rfind('\n') + 1;  // npos + 1 is 0
  throw gxFootprintError("line " + std::to_string(line) + ", column " + std::to_string(at - lineStart + 1) + ": " +
                         what);
}

void gxSexprReader::passBlanks()
{
  while (at_ < source_.size() && isBlank(source_[at_]))
    ++at_;
}

gxSexprReader::Kind gxSexprReader::peek()
{
  passBlanks();
  if (at_ == source_.size()) {
    if (depth_ > 0)
      fail("the text ends inside a list");
    return end;
  }
  switch (source_[at_]) {
    case '(':
      return list;
    case ')':
      if (depth_ == 0)
        fail("a bracket closes what is not open");
      return end;
    case '"':
      return text;
    default:
      return word;
  }
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
  std::size_t const start = at_;
  long open = 0;
  do {
    if (at_ == source_.size())
      failAt(start, "a list does not end");
    char const c = source_[at_];
    if (c == '"') {
      passText();
      continue;
    }
    open += (c == '(') - (c == ')');
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
      std::size_t const quote = at_;
      passText();
      return source_.substr(quote + 1, at_ - quote - 2);
    }
    case word: {
      std::size_t const from = at_;
      while (at_ < source_.size() && !endsWord(source_[at_]))
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
  std::string_view const digits = value();
  double v = 0.0;
  auto const [stop, error] = std::from_chars(digits.data(), digits.data() + digits.size(), v);
  if (error != std::errc() || stop != digits.data() + digits.size() || !std::isfinite(v))
    failAt(start, "\"" + std::string(digits.substr(0, 40)) + "\" is no number");
  if (std::abs(v) > largest)
    failAt(start, "the number " + std::string(digits.substr(0, 40)) + " is out of range");
  return v;
}

std::string gxSexprReader::plain(std::string_view quoted)
{
  std::string result;
  for (std::size_t i = 0; i < quoted.size(); ++i) {
    if (quoted[i] == '\\' && i + 1 < quoted.size())
      ++i;
    result += quoted[i];
  }
  return result;
}
