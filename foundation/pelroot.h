#pragma once

#include "foundation/export.h"
#include "foundation/handle.h"
#include "foundation/pel.h"
#include "foundation/persistent.h"

/// The memory behind pel buffers, whatever the type of its pels: rows of one width at a constant step. Reference
/// counted; many buffers may look at one root. Persistent: an archive keeps the pels without the padding of the rows,
/// and what is loaded owns its pels at an alignment of 32; a root that has pels
/// cannot be loaded into. Writing pels is no mutation that an archive hears of.
class GX_API gx_PelRoot : public virtual gxPersistent, public virtual gxRepBase
{
 public:
  gx_PelRoot(gx_PelRoot const &) = delete;
  gx_PelRoot &operator=(gx_PelRoot const &) = delete;
  ~gx_PelRoot() override;

  /// Pels in a row.
  long width() const { return width_; }
  /// Number of rows.
  long height() const { return height_; }
  /// Distance of a pel to the one below it, in bytes: the bytes of a row, rounded up to a multiple of the alignment.
  long rowStep() const { return rowStep_; }
  /// The first pel; may be null if there is none.
  unsigned char *bytes() const { return bytes_; }
  /// Bytes of a pel.
  long pelSize() const { return pelSize_; }
  /// True if the pels are freed with the root.
  bool isOwner() const { return owned_ != nullptr; }

 protected:
  /// Without pels.
  explicit gx_PelRoot(long pelSize);
  /// Takes memory, all zero.
  gx_PelRoot(long width, long height, long alignment, long pelSize);
  /// Takes memory as it comes.
  struct AsItComes {
  };
  gx_PelRoot(long width, long height, long alignment, long pelSize, AsItComes);
  /// Wraps memory that others own.
  gx_PelRoot(long width, long height, void *pels, long alignment, long pelSize);

 private:
  void layOut(long width, long height, long alignment);
  void allocate(long alignment, bool isZeroed);
  void serializePels(gxArchive &archive);
  void passRow(gxArchive &archive, unsigned char *row);

  long width_ = 0;
  long height_ = 0;
  long rowStep_ = 0;
  long pelSize_;
  unsigned char *bytes_ = nullptr;
  void *owned_ = nullptr;  ///< what is freed in the end, or null

  GX_PERSISTENT_ABSTRACT(gx_PelRoot);
};

/// The memory behind pel buffers of pels of type T.
template <class T>
class GX_API gxPelRoot : public gx_PelRoot
{
 public:
  /// Without pels, 0 x 0.
  gxPelRoot();
  /// Takes memory, all zero; the first pel of each row lies at a multiple of @p alignment bytes, up to 4096.
  /// Throws gxPel::BadSize for a negative or unaddressable size, gxPel::BadAlignment for an alignment below 1 or one
  /// that would put pels across their own boundaries.
  gxPelRoot(long width, long height, long alignment = 32);
  /// Wraps @p pels without copying and without owning them: they must outlive the root. Rows lie at
  /// `width * sizeof(T)` rounded up to a multiple of @p alignment bytes; so 1 says that rows follow each other without
  /// padding, and the row step itself serves as alignment for rows that are further apart. Throws as above.
  gxPelRoot(long width, long height, T *pels, long alignment);
  /// As the constructor that takes memory, but the pels have no defined values: for results of which every pel is
  /// written at once. Throws as above.
  static gxPtrHandle<gxPelRoot> unset(long width, long height, long alignment = 32)
  {
    return new gxPelRoot(width, height, alignment, gx_PelRoot::AsItComes());
  }

  /// The first pel; may be null if there is none.
  T *pels() const { return reinterpret_cast<T *>(bytes()); }

 private:
  gxPelRoot(long width, long height, long alignment, gx_PelRoot::AsItComes);

  GX_PERSISTENT(gxPelRoot);
};

extern template class gxPelRoot<unsigned char>;
extern template class gxPelRoot<unsigned short>;
extern template class gxPelRoot<gxPackedRGB16Pel>;
extern template class gxPelRoot<gxPackedRGB32Pel>;
