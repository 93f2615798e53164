#include "foundation/pelroot.h"

#include "foundation/archive.h"

#include <bit>
#include <cstdlib>
#include <limits>
#include <new>
#include <string>

namespace
{
constexpr long loadedAlignment = 32;
constexpr long largestSide = std::numeric_limits<std::int32_t>::max();
/// No image has half a terabyte; a size beyond that is a mistake, and told as one.
constexpr long largestBytes = 1L << 39;
/// Pels of an own root are not aligned beyond a page, however large the step of the rows.
constexpr long largestBaseAlignment = 4096;

std::string sizeText(long width, long height)
{
  return std::to_string(width) + " x " + std::to_string(height);
}

/// The alignment of the first pel that puts every row at a multiple of it.
long baseAlignment(long alignment)
{
  long const powerOfTwo = alignment & -alignment;
  return std::min(std::max(powerOfTwo, static_cast<long>(alignof(std::max_align_t))), largestBaseAlignment);
}
}  // namespace

gx_PelRoot::gx_PelRoot(long pelSize) : pelSize_(pelSize) {}

gx_PelRoot::gx_PelRoot(long width, long height, long alignment, long pelSize) : pelSize_(pelSize)
{
  layOut(width, height, alignment);
  allocate(alignment, true);
}

gx_PelRoot::gx_PelRoot(long width, long height, long alignment, long pelSize, AsItComes) : pelSize_(pelSize)
{
  layOut(width, height, alignment);
  allocate(alignment, false);
}

gx_PelRoot::gx_PelRoot(long width, long height, void *pels, long alignment, long pelSize) : pelSize_(pelSize)
{
  layOut(width, height, alignment);
  if (!pels && width_ > 0 && height_ > 0)
    throw gxPel::BadSize("no memory to wrap for " + sizeText(width, height) + " pels");
  bytes_ = static_cast<unsigned char *>(pels);
}

gx_PelRoot::~gx_PelRoot()
{
  std::free(owned_);
}

/// Sets size and row step after checking them; changes nothing if it throws.
void gx_PelRoot::layOut(long width, long height, long alignment)
{
  if (width < 0 || height < 0 || width > largestSide || height > largestSide)
    throw gxPel::BadSize("a pel buffer cannot be " + sizeText(width, height));
  if (alignment < 1 || alignment > largestSide)
    throw gxPel::BadAlignment("rows cannot be aligned to " + std::to_string(alignment) + " bytes");
  long const packed = width * pelSize_;
  long const step = (packed + alignment - 1) / alignment * alignment;
  if (step % pelSize_ != 0)
    throw gxPel::BadAlignment("rows aligned to " + std::to_string(alignment) + " bytes would split pels of " +
                              std::to_string(pelSize_) + " bytes");
  if (height > 0 && step > largestBytes / height)
    throw gxPel::BadSize("a pel buffer of " + sizeText(width, height) + " is too large");
  width_ = width;
  height_ = height;
  rowStep_ = step;
}

/// Takes memory. Large blocks of calloc come zeroed from the system, so that the pels are not touched here.
void gx_PelRoot::allocate(long alignment, bool isZeroed)
{
  auto const bytes = static_cast<std::size_t>(rowStep_ * height_);
  if (bytes == 0)
    return;
  auto const base = static_cast<std::size_t>(baseAlignment(alignment));
  owned_ = isZeroed ? std::calloc(bytes + base - 1, 1) : std::malloc(bytes + base - 1);
  if (!owned_)
    throw std::bad_alloc();
  void *first = owned_;
  std::size_t space = bytes + base - 1;
  bytes_ = static_cast<unsigned char *>(std::align(base, bytes, first, space));
}

GX_PERSISTENT_ABSTRACT_IMPL(gx_PelRoot, 0)
void gx_PelRoot::serialize_(gxArchive &archive, unsigned char version)
{
  gf_refuseVersion(version, "gx_PelRoot");
  gxPersistent::dispatchSerialize(archive);
  serializePels(archive);
}

void gx_PelRoot::serializePels(gxArchive &archive)
{
  long width = width_;
  archive || width;
  if (width < 0)
    archive.fail("a pel buffer of negative width");
  long const height = archive.passCount(height_, static_cast<std::size_t>(width * pelSize_));
  if (archive.isLoading()) {
    if (bytes_)
      archive.fail("pels cannot be loaded into a root that has pels");
    layOut(width, height, loadedAlignment);
    allocate(loadedAlignment, true);
  }
  if (width_ == 0)
    return;
  for (long y = 0; y < height_; ++y)
    passRow(archive, bytes_ + y * rowStep_);
}

/// The bytes of a row as they stand; pels of 16 bits are little-endian on every machine.
void gx_PelRoot::passRow(gxArchive &archive, unsigned char *row)
{
  long const bytes = width_ * pelSize_;
  bool const swap = std::endian::native == std::endian::big && pelSize_ == 2;
  auto swapRow = [&] {
    for (long i = 0; swap && i < bytes; i += 2)
      std::swap(row[i], row[i + 1]);
  };
  if (archive.isStoring())
    swapRow();
  archive.raw(reinterpret_cast<char *>(row), bytes);
  swapRow();
}

namespace
{
template <class T>
constexpr char const *rootName = nullptr;
template <>
constexpr char const *rootName<unsigned char> = "gxPelRoot<unsigned char>";
template <>
constexpr char const *rootName<unsigned short> = "gxPelRoot<unsigned short>";
template <>
constexpr char const *rootName<gxPackedRGB16Pel> = "gxPelRoot<gxPackedRGB16Pel>";
template <>
constexpr char const *rootName<gxPackedRGB32Pel> = "gxPelRoot<gxPackedRGB32Pel>";
}  // namespace

template <class T>
gxPelRoot<T>::gxPelRoot() : gx_PelRoot(sizeof(T))
{
}

template <class T>
gxPelRoot<T>::gxPelRoot(long width, long height, long alignment) : gx_PelRoot(width, height, alignment, sizeof(T))
{
}

template <class T>
gxPelRoot<T>::gxPelRoot(long width, long height, long alignment, gx_PelRoot::AsItComes comes)
    : gx_PelRoot(width, height, alignment, sizeof(T), comes)
{
}

template <class T>
gxPelRoot<T>::gxPelRoot(long width, long height, T *pels, long alignment)
    : gx_PelRoot(width, height, pels, alignment, sizeof(T))
{
}

template <class T>
gx_Instantiator gxPelRoot<T>::sExemplar(typeid(gxPelRoot<T>), rootName<T>, &gxPelRoot<T>::make);

template <class T>
gxPersistent *gxPelRoot<T>::make()
{
  return new gxPelRoot<T>;
}

template <class T>
GX_PERSISTENT_ABSTRACT_IMPL(gxPelRoot<T>, 0)
template <class T>
void gxPelRoot<T>::serialize_(gxArchive &archive, unsigned char version)
{
  gf_refuseVersion(version, rootName<T>);
  gx_PelRoot::dispatchSerialize(archive);
}

template class gxPelRoot<unsigned char>;
template class gxPelRoot<unsigned short>;
template class gxPelRoot<gxPackedRGB16Pel>;
template class gxPelRoot<gxPackedRGB32Pel>;
