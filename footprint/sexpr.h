#pragma once

#include "foundation/exception.h"
#include "foundation/export.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// A text cannot be read. The message tells line and column, counted from 1, and what is wrong there.
GX_EXCEPTION_WITH_STRING(gxFootprintError, gxExceptionWithString);

/// Reads a text of nested lists, `(name value "a text" (name ...))`, from its start to its end, without a copy and
/// without a tree: a reader asks for the next item and goes on. Words and texts are views into the text, which has to
/// live as long.
///
/// Lists may be 200 deep. All operations throw gxFootprintError for what breaks the form: a text or a list that does
/// not end, a bracket too many, lists too deep.
class GX_API gxSexprReader
{
 public:
  enum Kind { list, word, text, end };

  explicit gxSexprReader(std::string_view source) : source_(source) {}

  /// What comes next in the present list: a list, a word, a text in quotes, or the end of the list (of the source, at
  /// the top).
  Kind peek();
  /// Goes into the list that comes next, and gives its first word, which is its name.
  std::string_view enter();
  /// Leaves the present list, past all that is left in it.
  void leave();
  /// Passes over the next item, whatever it is.
  void skip();

  /// The next item as a word or a text, as it stands between its quotes, backslashes and all.
  std::string_view value();
  /// The next item as a number. Throws for one that is not finite, or larger than 1e6 either way.
  double number();
  /// A text without the backslashes of what stands between its quotes.
  static std::string plain(std::string_view quoted);

  /// Throws gxFootprintError at the present place.
  [[noreturn]] void fail(std::string const &what) const { failAt(at_, what); }

 private:
  enum Class : std::uint8_t { ordinary, blank, opens, closes, quote };

  static constexpr std::array<Class, 256> classes = [] {
    std::array<Class, 256> table{};
    for (char const c : {' ', '\t', '\n', '\r'})
      table[static_cast<unsigned char>(c)] = blank;
    table['('] = opens;
    table[')'] = closes;
    table['"'] = quote;
    return table;
  }();

  static Class classOf(char c) { return classes[static_cast<unsigned char>(c)]; }
  void passBlanks();
  void passText();
  [[noreturn]] void failAt(std::size_t at, std::string const &what) const;
  [[noreturn]] void failToPeek() const;

  std::string_view source_;
  std::size_t at_ = 0;
  int depth_ = 0;
};

// These run for every item of large files.

inline void gxSexprReader::passBlanks()
{
  while (at_ < source_.size() && classOf(source_[at_]) == blank)
    ++at_;
}

inline gxSexprReader::Kind gxSexprReader::peek()
{
  passBlanks();
  if (at_ < source_.size()) {
    switch (classOf(source_[at_])) {
      case opens:
        return list;
      case quote:
        return text;
      case closes:
        if (depth_ > 0)
          return end;
        break;
      default:
        return word;
    }
  } else if (depth_ == 0) {
    return end;
  }
  failToPeek();
}
