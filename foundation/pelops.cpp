#include "foundation/pelops.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string>

namespace
{
/// A new buffer of the size of a window, whose pels keep the offset and the client coordinates of the window's.
template <class To, class From>
gxPelBuffer<To> likeWindow(gxPelBuffer_const<From> const &source)
{
  source.checkBound();
  gxPelBuffer<To> result(source.width(), source.height());
  result.offset(source.offset());
  gxVector<2> const origin(source.window().origin());
  result.imageFromClientXform(gxXform<2>(gxMatrix<2>(), -origin) * source.imageFromClientXform());
  return result;
}

/// Address of the first pel of the i-th row of the window.
template <class Buffer>
auto *row(Buffer const &buffer, long i)
{
  return buffer.pointToRow(buffer.window().y() + i);
}
}  // namespace

template <class T>
void gfPelSet(gxPelBuffer<T> const &buffer, T value)
{
  buffer.checkBound();
  if (buffer.window().isNull())
    return;
  for (long i = 0; i < buffer.height(); ++i)
    std::fill_n(row(buffer, i), buffer.width(), value);
}

void gfPelSet_U8(gxPelBuffer<unsigned char> const &buffer, unsigned char value)
{
  gfPelSet<unsigned char>(buffer, value);
}

template <class T>
gxPelBuffer<T> gfPelCopy(gxPelBuffer_const<T> const &source)
{
  gxPelBuffer<T> const result = likeWindow<T>(source);
  gfPelCopy<T>(source, result);
  return result;
}

template <class T>
void gfPelCopy(gxPelBuffer_const<T> const &source, gxPelBuffer<T> const &target)
{
  source.checkBound();
  target.checkBound();
  long const width = source.width(), height = source.height();
  if (width != target.width() || height != target.height())
    throw gxPel::BadWindow("a window of " + std::to_string(width) + " x " + std::to_string(height) +
                           " pels cannot be copied to one of " + std::to_string(target.width()) + " x " +
                           std::to_string(target.height()));
  if (source.window().isNull())
    return;
  // Within one root, rows are copied in the order that reads each of them before it is overwritten.
  bool const upwards = source.rep() == target.rep() && source.window().y() < target.window().y();
  for (long n = 0; n < height; ++n) {
    long const i = upwards ? height - 1 - n : n;
    std::memmove(static_cast<void *>(row(target, i)), row(source, i), width * sizeof(T));
  }
}

template <>
gxPelBuffer<unsigned char> gfPelMap(gxPelBuffer_const<unsigned char> const &source,
                                    std::vector<unsigned char> const &map)
{
  std::array<unsigned char, 256> table;
  for (int v = 0; v < 256; ++v)
    table[v] = v < static_cast<long>(map.size()) ? map[v] : static_cast<unsigned char>(v);

  gxPelBuffer<unsigned char> const result = likeWindow<unsigned char>(source);
  if (source.window().isNull())
    return result;
  for (long i = 0; i < source.height(); ++i) {
    unsigned char const *from = row(source, i);
    std::transform(from, from + source.width(), row(result, i), [&](unsigned char v) { return table[v]; });
  }
  return result;
}

#define GX_PEL_OPERATIONS_(T)                                                   \
  template GX_API void gfPelSet(gxPelBuffer<T> const &, T);                     \
  template GX_API gxPelBuffer<T> gfPelCopy(gxPelBuffer_const<T> const &source); \
  template GX_API void gfPelCopy(gxPelBuffer_const<T> const &source, gxPelBuffer<T> const &)

GX_PEL_OPERATIONS_(unsigned char);
GX_PEL_OPERATIONS_(unsigned short);
GX_PEL_OPERATIONS_(gxPackedRGB16Pel);
GX_PEL_OPERATIONS_(gxPackedRGB32Pel);
