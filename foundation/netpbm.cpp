#include "foundation/netpbm.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <istream>
#include <ostream>
#include <type_traits>
#include <vector>

namespace
{
[[noreturn]] void refuse(std::string const &name, std::string const &why)
{
  throw gxPel::BadImageFile(name + ": " + why);
}

/// Reads the bytes of an image and knows where it is.
class Reader
{
 public:
  Reader(std::istream &is, std::string const &name) : is_(is), name_(name) {}

  [[noreturn]] void fail(std::string const &why) const { refuse(name_, why + " at byte " + std::to_string(position_)); }

  /// The next byte, or -1 at the end.
  int next()
  {
    int const c = guarded([this] { return is_.rdbuf()->sbumpc(); });
    if (c == std::char_traits<char>::eof())
      return -1;
    ++position_;
    return c & 0xff;
  }

  /// A whole number of @p what after spaces and comments, from @p least to @p most. The byte behind it, which must be
  /// a space or the end, is taken too.
  long number(char const *what, long least, long most)
  {
    int c = next();
    while (isSpace(c) || c == '#')
      c = c == '#' ? endOfComment() : next();
    if (c < '0' || c > '9')
      fail(c < 0 ? std::string("the file ends before ") + what : std::string("no number for ") + what);
    long value = 0;
    for (; c >= '0' && c <= '9'; c = next()) {
      value = value * 10 + (c - '0');
      if (value > most)
        fail(std::string(what) + " is more than " + std::to_string(most));
    }
    if (value < least)
      fail(std::string(what) + " is less than " + std::to_string(least));
    if (c == '#')
      endOfComment();
    else if (c >= 0 && !isSpace(c))
      fail(std::string("a stray character behind ") + what);
    return value;
  }

  /// Exactly @p n bytes.
  void bytes(unsigned char *to, long n)
  {
    long const got = guarded([&] { return is_.rdbuf()->sgetn(reinterpret_cast<char *>(to), n); });
    position_ += got;
    if (got != n)
      fail("the file ends " + std::to_string(n - got) + " bytes before the end of a row");
  }

 private:
  /// Buffers of files throw what the system cannot read, as a directory.
  template <class Read>
  std::invoke_result_t<Read> guarded(Read read) const
  {
    try {
      return read();
    } catch (std::ios_base::failure const &) {
      fail("the file cannot be read");
    }
  }

  static bool isSpace(int c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

  int endOfComment()
  {
    int c = next();
    while (c >= 0 && c != '\n' && c != '\r')
      c = next();
    return c;
  }

  std::istream &is_;
  std::string const &name_;
  long position_ = 0;
};

struct Header {
  bool isPlain;    ///< numbers as text
  int components;  ///< 1 or 3
  long width, height;
  int greatest;
};

Header readHeader(Reader &reader)
{
  int const p = reader.next(), kind = reader.next();
  if (p != 'P' || kind < '1' || kind > '7')
    reader.fail("no image of the Netpbm family");
  if (kind != '2' && kind != '3' && kind != '5' && kind != '6')
    reader.fail(std::string("an image of kind P") + static_cast<char>(kind) + ", which is not supported,");
  Header h;
  h.isPlain = kind == '2' || kind == '3';
  h.components = kind == '3' || kind == '6' ? 3 : 1;
  h.width = reader.number("the width", 1, gf_netpbmMaxPels);
  h.height = reader.number("the height", 1, gf_netpbmMaxPels);
  if (h.width > gf_netpbmMaxPels / h.height)
    reader.fail("a size of " + std::to_string(h.width) + " x " + std::to_string(h.height) +
                " pels, which is too large,");
  long const greatest = reader.number("the greatest value", 1, 65535);
  if (greatest > 255)
    reader.fail("more than 8 bits a component");
  h.greatest = static_cast<int>(greatest);
  return h;
}

/// The row grows as its bytes arrive.
void readRow(Reader &reader, Header const &h, std::vector<unsigned char> &row)
{
  constexpr long block = 1L << 16;
  long const size = h.width * h.components;
  row.clear();
  for (long n = 0; n < size; n += block) {
    long const count = std::min(block, size - n);
    row.resize(n + count);
    if (h.isPlain)
      std::generate_n(row.begin() + n, count,
                      [&] { return static_cast<unsigned char>(reader.number("a pel", 0, h.greatest)); });
    else
      reader.bytes(row.data() + n, count);
  }
}

/// Stretches the values of a row, which must not exceed the greatest one.
void stretch(Reader const &reader, Header const &h, std::vector<unsigned char> &row)
{
  if (h.greatest == 255)
    return;
  for (unsigned char &v : row) {
    if (v > h.greatest)
      reader.fail("a value above the greatest one in the row that ends");
    v = static_cast<unsigned char>((v * 255 + h.greatest / 2) / h.greatest);
  }
}

void putRow(std::vector<unsigned char> const &row, int components, unsigned char *to)
{
  if (components == 1) {
    std::copy(row.begin(), row.end(), to);
    return;
  }
  for (std::size_t i = 0; i + 2 < row.size(); i += 3)
    *to++ = gxPackedRGB32Pel(row[i], row[i + 1], row[i + 2]).luminance();
}

void putRow(std::vector<unsigned char> const &row, int components, gxPackedRGB32Pel *to)
{
  std::size_t const step = static_cast<std::size_t>(components), green = components == 3 ? 1 : 0;
  for (std::size_t i = 0; i + step <= row.size(); i += step)
    *to++ = gxPackedRGB32Pel(row[i], row[i + green], row[i + 2 * green]);
}

/// Reads into rows that grow as they arrive; the buffer is made when all are there.
template <class T>
gxPelBuffer<T> read(std::istream &is, std::string const &name)
{
  Reader reader(is, name);
  Header const h = readHeader(reader);
  std::vector<unsigned char> row;
  std::vector<T> pels;
  for (long y = 0; y < h.height; ++y) {
    readRow(reader, h, row);
    stretch(reader, h, row);
    pels.resize((y + 1) * h.width);
    putRow(row, h.components, pels.data() + y * h.width);
  }
  gxPelBuffer<T> const result(h.width, h.height);
  for (long y = 0; y < h.height; ++y)
    std::copy_n(pels.data() + y * h.width, h.width, result.pointToRow(y));
  return result;
}

template <class T>
gxPelBuffer<T> readFile(std::string const &path)
{
  std::ifstream is(path, std::ios::binary);
  if (!is)
    refuse(path, std::strerror(errno));
  return read<T>(is, path);
}

void packRow(unsigned char const *pels, long width, std::vector<char> &row)
{
  row.assign(pels, pels + width);
}

void packRow(gxPackedRGB32Pel const *pels, long width, std::vector<char> &row)
{
  row.clear();
  for (long x = 0; x < width; ++x)
    for (unsigned char c : {pels[x].red(), pels[x].green(), pels[x].blue()})
      row.push_back(static_cast<char>(c));
}

void checkPels(std::string const &name, gx_PelBuffer const &buffer)
{
  if (!buffer.isBound() || buffer.window().isNull())
    refuse(name, "there are no pels to write");
}

template <class T>
void write(std::ostream &os, std::string const &name, gxPelBuffer_const<T> const &buffer)
{
  checkPels(name, buffer);
  os << (sizeof(T) == 1 ? "P5\n" : "P6\n") << buffer.width() << ' ' << buffer.height() << "\n255\n";
  std::vector<char> row;
  for (long y = 0; y < buffer.height(); ++y) {
    packRow(buffer.pointToRow(buffer.window().y() + y), buffer.width(), row);
    os.write(row.data(), static_cast<std::streamsize>(row.size()));
  }
  os.flush();
  if (!os)
    refuse(name, "the image cannot be written");
}

template <class T>
void writeFile(std::string const &path, gxPelBuffer_const<T> const &buffer)
{
  checkPels(path, buffer);  // before the file is emptied
  std::ofstream os(path, std::ios::binary | std::ios::trunc);
  if (!os)
    refuse(path, std::strerror(errno));
  write(os, path, buffer);
}
}  // namespace

gxPelBuffer<unsigned char> gfReadNetpbmGrey(std::string const &path)
{
  return readFile<unsigned char>(path);
}

gxPelBuffer<gxPackedRGB32Pel> gfReadNetpbmColor(std::string const &path)
{
  return readFile<gxPackedRGB32Pel>(path);
}

gxPelBuffer<unsigned char> gfReadNetpbmGrey(std::istream &is, std::string const &name)
{
  return read<unsigned char>(is, name);
}

gxPelBuffer<gxPackedRGB32Pel> gfReadNetpbmColor(std::istream &is, std::string const &name)
{
  return read<gxPackedRGB32Pel>(is, name);
}

void gfWriteNetpbm(std::string const &path, gxPelBuffer_const<unsigned char> const &buffer)
{
  writeFile(path, buffer);
}

void gfWriteNetpbm(std::string const &path, gxPelBuffer_const<gxPackedRGB32Pel> const &buffer)
{
  writeFile(path, buffer);
}

void gfWriteNetpbm(std::ostream &os, std::string const &name, gxPelBuffer_const<unsigned char> const &buffer)
{
  write(os, name, buffer);
}

void gfWriteNetpbm(std::ostream &os, std::string const &name, gxPelBuffer_const<gxPackedRGB32Pel> const &buffer)
{
  write(os, name, buffer);
}
