#include "foundation/netpbm.h"

#include "foundation/pelerror.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>
#include <vector>

namespace
{
/// A file of one of the formats, read from front to end.
class Reader
{
 public:
  explicit Reader(std::string const &path) : path_(path)
  {
    std::ifstream in(path, std::ios::binary);
    if (!in)
      throw gxPel::BadImageFile(path + ": " + std::strerror(errno));
    bytes_.assign(std::istreambuf_iterator<char>(in), {});
    if (in.bad())
      throw gxPel::BadImageFile(path + ": cannot be read");
    readHead();
  }

  long width() const { return width_; }
  long height() const { return height_; }
  int components() const { return components_; }
  /// The next component, brought to 0 to 255.
  unsigned char next()
  {
    long const v = isText_ ? number() : byte();
    if (v > most_)
      refuse("a value of " + std::to_string(v) + " above the greatest, " + std::to_string(most_));
    return static_cast<unsigned char>((v * 255 + most_ / 2) / most_);
  }

 private:
  [[noreturn]] void refuse(std::string const &why) const
  {
    throw gxPel::BadImageFile(path_ + ": " + why + ", at byte " + std::to_string(at_));
  }

  void readHead()
  {
    char const kind = bytes_.size() >= 2 && bytes_[0] == 'P' ? bytes_[1] : '\0';
    if (kind != '2' && kind != '3' && kind != '5' && kind != '6')
      refuse("not a PGM or PPM file");
    isText_ = kind < '5';
    components_ = kind == '2' || kind == '5' ? 1 : 3;
    at_ = 2;
    width_ = number();
    height_ = number();
    most_ = number();
    if (width_ < 1 || height_ < 1)
      refuse("an image without pels");
    if (most_ < 1 || most_ > 255)
      refuse("a greatest value of " + std::to_string(most_) + " instead of 1 to 255");
    if (!isText_ && (at_ >= bytes_.size() || !isSpace(bytes_[at_++])))
      refuse("no white space before the pels");
    // Each component takes at least a byte, as text two but for the last.
    std::size_t const left = bytes_.size() - at_;
    auto const count =
        static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_) * static_cast<std::size_t>(components_);
    if (count > left || (isText_ && 2 * count > left + 1))
      refuse("the file ends before the pels of " + std::to_string(width_) + " x " + std::to_string(height_));
  }

  static bool isSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

  void skipSpace()
  {
    while (at_ < bytes_.size() && (isSpace(bytes_[at_]) || bytes_[at_] == '#')) {
      if (bytes_[at_++] == '#')
        while (at_ < bytes_.size() && bytes_[at_] != '\n')
          ++at_;
    }
  }

  /// A number of at most 9 digits.
  long number()
  {
    skipSpace();
    std::size_t const start = at_;
    long v = 0;
    while (at_ < bytes_.size() && at_ - start < 9 && bytes_[at_] >= '0' && bytes_[at_] <= '9')
      v = 10 * v + (bytes_[at_++] - '0');
    if (at_ == start)
      refuse(at_ < bytes_.size() ? "no number where one is due" : "the file ends too early");
    return v;
  }

  long byte()
  {
    if (at_ >= bytes_.size())
      refuse("the file ends too early");
    return static_cast<unsigned char>(bytes_[at_++]);
  }

  std::string path_;
  std::vector<char> bytes_;
  std::size_t at_ = 0;
  bool isText_ = false;
  int components_ = 1;
  long width_ = 0;
  long height_ = 0;
  long most_ = 255;
};

gxPackedRGB32Pel nextColor(Reader &reader)
{
  unsigned char const r = reader.next();
  if (reader.components() == 1)
    return {r, r, r};
  unsigned char const g = reader.next();
  return {r, g, reader.next()};
}

template <class T, class Convert>
gxPelBuffer<T> readAs(std::string const &path, Convert const &convert)
{
  Reader reader(path);
  gxPelBuffer<T> buffer(reader.width(), reader.height());
  for (long y = 0; y < reader.height(); ++y) {
    T *row = buffer.pointToRow(y);
    for (long x = 0; x < reader.width(); ++x)
      *row++ = convert(nextColor(reader));
  }
  return buffer;
}

/// The weights add up to 256, so that a grey colour keeps its value.
unsigned char luminance(gxPackedRGB32Pel c)
{
  return static_cast<unsigned char>((77 * c.red() + 150 * c.green() + 29 * c.blue() + 128) >> 8);
}

template <class T, class Put>
void write(std::string const &path, char const *kind, gxPelBuffer_const<T> const &buffer, Put const &put)
{
  if (!buffer.isBound() || buffer.window().isNull())
    throw gxPel::BadImageFile(path + ": there are no pels to write");
  gxPelRect const window = buffer.window();
  std::string bytes =
      kind + std::string("\n") + std::to_string(window.width()) + ' ' + std::to_string(window.height()) + "\n255\n";
  for (long y = 0; y < window.height(); ++y) {
    T const *pel = buffer.pointToRow(window.y() + y);
    for (long x = 0; x < window.width(); ++x)
      put(bytes, *pel++);
  }
  std::ofstream out(path, std::ios::binary);
  if (!out)
    throw gxPel::BadImageFile(path + ": " + std::strerror(errno));
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  out.close();
  if (!out)
    throw gxPel::BadImageFile(path + ": cannot be written");
}
}  // namespace

gxPelBuffer<unsigned char> gfReadNetpbmGrey(std::string const &path)
{
  return readAs<unsigned char>(path, luminance);
}

gxPelBuffer<gxPackedRGB32Pel> gfReadNetpbmColor(std::string const &path)
{
  return readAs<gxPackedRGB32Pel>(path, [](gxPackedRGB32Pel c) { return c; });
}

void gfWriteNetpbm(std::string const &path, gxPelBuffer_const<unsigned char> const &buffer)
{
  write(path, "P5", buffer, [](std::string &to, unsigned char pel) { to += static_cast<char>(pel); });
}

void gfWriteNetpbm(std::string const &path, gxPelBuffer_const<gxPackedRGB32Pel> const &buffer)
{
  write(path, "P6", buffer, [](std::string &to, gxPackedRGB32Pel pel) {
    to += static_cast<char>(pel.red());
    to += static_cast<char>(pel.green());
    to += static_cast<char>(pel.blue());
  });
}
