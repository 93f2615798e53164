#pragma once

#include "foundation/exception.h"
#include "foundation/export.h"

#include <cstddef>
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
  void passBlanks();
  void passText();
  [[noreturn]] void failAt(std::size_t at, std::string const &what) const;

  std::string_view source_;
  std::size_t at_ = 0;
  int depth_ = 0;
};
