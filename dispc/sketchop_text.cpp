#include "dispc/sketchop_text.h"

#include "dispc/detail/sketchop_impl.h"

#include <algorithm>

namespace
{
/// What an op without a text looks at.
constexpr unsigned char noText[2] = {};

template <class Unit>
Unit unitAt(unsigned char const *text, long i)
{
  return gf_getLittle<Unit>(text + i * static_cast<long>(sizeof(Unit)));
}

template <class Text>
Text copied(gx_StreamView const &view, long length)
{
  unsigned char const *const from = view.bytes() ? view.bytes() : noText;
  Text text(static_cast<std::size_t>(length - 1), 0);
  for (long i = 0; i < length - 1; ++i)
    text[static_cast<std::size_t>(i)] = unitAt<typename Text::value_type>(from, i);
  return text;
}

/// A text of units, the closing zero included.
template <class Unit, class Io, class Op>
void describeText(Io &io, Op &op, gx_Field<Io, gx_StreamView> &view, gx_Field<Io, std::int32_t> &length)
{
  constexpr long unit = sizeof(Unit);
  if constexpr (Io::isText) {
    io.text(op.text());
  } else if constexpr (Io::reads) {
    long const n = io.template unitsThroughZero<Unit>();
    length = static_cast<std::int32_t>(n);
    view.look(io.take(n * unit));
  } else if constexpr (Io::archives) {
    long const n = io.count("", length, unit);
    if (!view.bytes())
      view.look(noText);
    io.require(n > 0, "a text without an end");
    io.bytes(view, n * unit);
    long zeros = 0;
    for (long i = 0; i < n; ++i)
      zeros += unitAt<Unit>(view.bytes(), i) == 0;
    io.require(zeros == 1 && unitAt<Unit>(view.bytes(), n - 1) == 0, "a text that ends elsewhere than its length says");
    length = static_cast<std::int32_t>(n);
  } else {
    io.bytes(view.bytes() ? view.bytes() : noText, length * unit);
  }
}
}  // namespace

template <class Io, class Op>
void gx_UISketchOpString::describe(Io &io, Op &op)
{
  io("position", op.position_);
  io("background", op.background_);
  io("", op.format_);
  describeText<char>(io, op, op.text_, op.length_);
}
GX_SKETCH_OP_IMPL(gx_UISketchOpString)

std::string gx_UISketchOpString::text() const
{
  return copied<std::string>(text_, length_);
}

template <class Io, class Op>
void gx_UISketchOpUnicodeString::describe(Io &io, Op &op)
{
  io("position", op.position_);
  io("background", op.background_);
  io("", op.format_);
  describeText<char16_t>(io, op, op.text_, op.length_);
}
GX_SKETCH_OP_IMPL(gx_UISketchOpUnicodeString)

std::u16string gx_UISketchOpUnicodeString::text() const
{
  return copied<std::u16string>(text_, length_);
}

// ---------------------------------------------------------------- UTF-16

namespace
{
bool isSurrogate(char16_t unit)
{
  return unit >= 0xD800 && unit < 0xE000;
}
bool isPair(char16_t first, char16_t second)
{
  return first >= 0xD800 && first < 0xDC00 && second >= 0xDC00 && second < 0xE000;
}

void appendUtf8(std::string &to, char32_t code)
{
  auto const append = [&to](char32_t byte) { to += static_cast<char>(byte); };
  if (code < 0x80) {
    append(code);
    return;
  }
  int const following = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
  constexpr char32_t leads[] = {0, 0xC0, 0xE0, 0xF0};
  append(leads[following] | code >> (6 * following));
  for (int i = following - 1; i >= 0; --i)
    append(0x80 | (code >> (6 * i) & 0x3F));
}
}  // namespace

std::string gfConvertString(std::u16string_view text)
{
  std::string narrow;
  narrow.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (!isSurrogate(text[i])) {
      appendUtf8(narrow, text[i]);
    } else if (i + 1 < text.size() && isPair(text[i], text[i + 1])) {
      appendUtf8(narrow, 0x10000 + ((char32_t(text[i]) - 0xD800) << 10) + (char32_t(text[i + 1]) - 0xDC00));
      ++i;
    } else {
      appendUtf8(narrow, 0xFFFD);
    }
  }
  return narrow;
}
