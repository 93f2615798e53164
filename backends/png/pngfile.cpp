#include "backends/png/pngfile.h"

#include "foundation/pelerror.h"

#include <png.h>
#include <cerrno>
#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

// libpng reports an error by a jump out of its functions. So each routine that calls it keeps no object with a
// destructor of its own: what it works on lives in a context that its caller holds.

namespace
{
struct FileCloser {
  void operator()(std::FILE *f) const { std::fclose(f); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

[[noreturn]] void refuse(std::string const &path, std::string const &why)
{
  throw gxPel::BadImageFile(path + ": " + why);
}

File open(std::string const &path, char const *mode)
{
  File file(std::fopen(path.c_str(), mode));
  if (!file)
    refuse(path, std::strerror(errno));
  return file;
}

/// What went wrong, kept outside of libpng's jump.
struct Trouble {
  char text[200] = "";
};

void onError(png_structp png, png_const_charp text)
{
  auto *const trouble = static_cast<Trouble *>(png_get_error_ptr(png));
  std::snprintf(trouble->text, sizeof trouble->text, "%s", text);
  png_longjmp(png, 1);
}

void onWarning(png_structp, png_const_charp) {}

/// A file being read.
struct Reader {
  Trouble trouble;
  png_structp png = nullptr;
  png_infop info = nullptr;

  explicit Reader(std::FILE *file)
  {
    png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &trouble, onError, onWarning);
    info = png ? png_create_info_struct(png) : nullptr;
    if (png)
      png_init_io(png, file);
  }
  ~Reader() { png_destroy_read_struct(&png, &info, nullptr); }
  Reader(Reader const &) = delete;
  Reader &operator=(Reader const &) = delete;
};

/// Reads up to the pels and asks for RGBA of 8 bits. False on an error.
bool readHead(Reader &r)
{
  if (!r.info || setjmp(png_jmpbuf(r.png)))
    return false;
  png_set_user_limits(r.png, 1 << 20, 1 << 20);
  png_read_info(r.png, r.info);
  png_set_expand(r.png);
  png_set_strip_16(r.png);
  png_set_gray_to_rgb(r.png);
  png_set_add_alpha(r.png, 0xff, PNG_FILLER_AFTER);
  png_set_interlace_handling(r.png);
  png_read_update_info(r.png, r.info);
  return true;
}

bool readRows(Reader &r, png_bytepp rows)
{
  if (setjmp(png_jmpbuf(r.png)))
    return false;
  png_read_image(r.png, rows);
  png_read_end(r.png, nullptr);
  return true;
}

/// The pels of a file, four bytes each.
struct Pels {
  long width = 0;
  long height = 0;
  std::vector<unsigned char> bytes;
  unsigned char const *at(long x, long y) const { return &bytes[static_cast<std::size_t>(4 * (y * width + x))]; }
};

Pels read(std::string const &path)
{
  File const file = open(path, "rb");
  Reader reader(file.get());
  if (!readHead(reader))
    refuse(path, reader.trouble.text);
  Pels pels;
  pels.width = static_cast<long>(png_get_image_width(reader.png, reader.info));
  pels.height = static_cast<long>(png_get_image_height(reader.png, reader.info));
  if (pels.width * pels.height > gf_pngMaxPels)
    refuse(path, "an image of " + std::to_string(pels.width) + " x " + std::to_string(pels.height) + " is too large");
  auto const rowBytes = static_cast<std::size_t>(4 * pels.width);
  if (png_get_rowbytes(reader.png, reader.info) != rowBytes)
    refuse(path, "a pel format that is not understood");
  pels.bytes.resize(rowBytes * static_cast<std::size_t>(pels.height));
  std::vector<png_bytep> rows;
  for (long y = 0; y < pels.height; ++y)
    rows.push_back(&pels.bytes[rowBytes * static_cast<std::size_t>(y)]);
  if (!readRows(reader, rows.data()))
    refuse(path, reader.trouble.text);
  return pels;
}

template <class T, class Convert>
gxPelBuffer<T> readAs(std::string const &path, Convert const &convert)
{
  Pels const pels = read(path);
  gxPelBuffer<T> buffer(pels.width, pels.height);
  for (long y = 0; y < pels.height; ++y) {
    T *row = buffer.pointToRow(y);
    for (long x = 0; x < pels.width; ++x)
      *row++ = convert(pels.at(x, y));
  }
  return buffer;
}

/// A file being written.
struct Writer {
  Trouble trouble;
  png_structp png = nullptr;
  png_infop info = nullptr;

  explicit Writer(std::FILE *file)
  {
    png = png_create_write_struct(PNG_LIBPNG_VER_STRING, &trouble, onError, onWarning);
    info = png ? png_create_info_struct(png) : nullptr;
    if (png)
      png_init_io(png, file);
  }
  ~Writer() { png_destroy_write_struct(&png, &info); }
  Writer(Writer const &) = delete;
  Writer &operator=(Writer const &) = delete;
};

bool writeRows(Writer &w, png_uint_32 width, png_uint_32 height, int type, png_bytepp rows)
{
  if (!w.info || setjmp(png_jmpbuf(w.png)))
    return false;
  png_set_user_limits(w.png, 0x7fffffff, 0x7fffffff);
  png_set_IHDR(w.png, w.info, width, height, 8, type, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_BASE,
               PNG_FILTER_TYPE_BASE);
  png_write_info(w.png, w.info);
  png_write_image(w.png, rows);
  png_write_end(w.png, nullptr);
  return true;
}

/// Writes the window of a buffer; @p put appends the @p components bytes of a pel.
template <class T, class Put>
void write(std::string const &path, gxPelBuffer_const<T> const &buffer, int type, std::size_t components,
           Put const &put)
{
  if (!buffer.isBound() || buffer.window().isNull())
    refuse(path, "there are no pels to write");
  gxPelRect const window = buffer.window();
  std::vector<unsigned char> bytes;
  bytes.reserve(components * static_cast<std::size_t>(window.width()) * static_cast<std::size_t>(window.height()));
  for (long y = 0; y < window.height(); ++y) {
    T const *pel = buffer.pointToRow(window.y() + y);
    for (long x = 0; x < window.width(); ++x)
      put(bytes, *pel++);
  }
  std::vector<png_bytep> rows;
  for (long y = 0; y < window.height(); ++y)
    rows.push_back(&bytes[components * static_cast<std::size_t>(window.width() * y)]);

  File file = open(path, "wb");
  Writer writer(file.get());
  if (!writeRows(writer, static_cast<png_uint_32>(window.width()), static_cast<png_uint_32>(window.height()), type,
                 rows.data()))
    refuse(path, writer.trouble.text);
  if (std::fclose(file.release()) != 0)
    refuse(path, std::strerror(errno));
}

/// The weights add up to 256, so that a grey colour keeps its value.
unsigned char luminance(unsigned char const *rgb)
{
  return static_cast<unsigned char>((77 * rgb[0] + 150 * rgb[1] + 29 * rgb[2] + 128) >> 8);
}

}  // namespace

gxPelBuffer<unsigned char> gfReadPngGrey(std::string const &path)
{
  return readAs<unsigned char>(path, luminance);
}

gxPelBuffer<gxPackedRGB32Pel> gfReadPngColor(std::string const &path)
{
  return readAs<gxPackedRGB32Pel>(path, [](unsigned char const *p) { return gxPackedRGB32Pel(p[0], p[1], p[2]); });
}

void gfWritePng(std::string const &path, gxPelBuffer_const<unsigned char> const &buffer)
{
  write(path, buffer, PNG_COLOR_TYPE_GRAY, 1,
        [](std::vector<unsigned char> &to, unsigned char pel) { to.push_back(pel); });
}

void gfWritePng(std::string const &path, gxPelBuffer_const<gxPackedRGB32Pel> const &buffer)
{
  write(path, buffer, PNG_COLOR_TYPE_RGB, 3, [](std::vector<unsigned char> &to, gxPackedRGB32Pel pel) {
    to.insert(to.end(), {pel.red(), pel.green(), pel.blue()});
  });
}
