#include "tools/support/text.h"

#include <algorithm>
#include <cstddef>

namespace
{

bool isControl(char c)
{
  auto const byte = static_cast<unsigned char>(c);
  return byte < 0x20 || byte == 0x7F;
}

/// The bytes of the character that begins there; 0 if it is no UTF-8. Forms that are too long, surrogates, and numbers
/// beyond the last one are none.
std::size_t characterAt(std::string_view text)
{
  auto const byte = [&](std::size_t i) { return i < text.size() ? static_cast<unsigned char>(text[i]) : 0; };
  int const first = byte(0);
  if (first < 0x80)
    return 1;
  std::size_t const length = first >= 0xC2 && first < 0xE0 ? 2 : first >= 0xE0 && first < 0xF0 ? 3 : 4;
  if (first < 0xC2 || first > 0xF4)
    return 0;
  for (std::size_t i = 1; i < length; ++i)
    if ((byte(i) & 0xC0) != 0x80)
      return 0;
  int const second = byte(1);
  bool const isWrong = (first == 0xE0 && second < 0xA0) || (first == 0xED && second > 0x9F) ||
                       (first == 0xF0 && second < 0x90) || (first == 0xF4 && second > 0x8F);
  return isWrong ? 0 : length;
}

std::string_view escaped(char c)
{
  switch (c) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    case '\'':
      return "&#39;";
    default:
      return {};
  }
}

}  // namespace

std::string oneLine(std::string_view text)
{
  std::string line(text);
  std::ranges::replace_if(line, isControl, ' ');
  return line;
}

std::string htmlText(std::string_view text)
{
  std::string html;
  html.reserve(text.size());
  while (!text.empty()) {
    std::size_t const length = characterAt(text);
    if (length == 0)
      html += "\xEF\xBF\xBD";
    else if (std::string_view const name = escaped(text[0]); !name.empty())
      html += name;
    else if (isControl(text[0]))
      html += ' ';
    else
      html += text.substr(0, length);
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return html;
}
