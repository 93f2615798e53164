#pragma once

#include "foundation/exception.h"
#include "foundation/export.h"
#include "foundation/handle.h"
#include "foundation/persistent.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

class gx_ObjectTable;
class gx_Pass;

/// A stream of stored objects in one of two directions: each `archive || value` stores or loads, by the mode of the
/// archive, so that one routine serves both.
///
/// @code
/// std::stringstream stream;
/// { gxStoringArchive out(stream);  out || color || props; }
/// gxLoadingArchive in(stream);
/// in || color || props;
/// @endcode
///
/// What a loading archive reads comes from outside: every length, count, reference, class name and depth is checked
/// before memory is taken, and whatever is wrong throws gxArchive::Errors with a text that says what, and at which
/// byte. Values that were being loaded then are valid but unspecified. The layout is described in
/// docs/archive-format.md. An archive is made, used and destroyed by one thread.
class GX_API gxArchive
{
 public:
  /// Base of what goes wrong with an archive.
  GX_EXCEPTION_WITH_STRING(Errors, gxExceptionWithString);

  /// A class met a version number that it does not know.
  class GX_API UnknownVersion : public Errors
  {
   public:
    UnknownVersion();
    /// The text names the byte of the thread's loading archive as well, if there is exactly one, or one is busy.
    /// @param file the module that met the version, or null
    /// @param line where, or 0
    UnknownVersion(char const *file, long line);
    GX_EXCEPTION_MEMBERS_(UnknownVersion);

   public:
    std::string const &file() const { return file_; }
    long line() const { return line_; }

   private:
    std::string file_;
    long line_ = 0;
  };

  /// What an archive accepts. The defaults suit files of a workplace; a server that loads files of strangers sets
  /// them lower. A storing archive heeds the depth alone, so that it writes nothing that its like would refuse.
  struct Limits {
    std::size_t maxBytes = std::size_t(1) << 32;   ///< length of the whole stream
    std::size_t maxString = std::size_t(1) << 24;  ///< bytes of one text
    std::size_t maxObjects = 10'000'000;           ///< objects behind pointers
    int maxDepth = 200;                            ///< objects nested in objects
  };

  gxArchive(gxArchive const &) = delete;
  gxArchive &operator=(gxArchive const &) = delete;
  virtual ~gxArchive();

  bool isStoring() const { return mode_ != 0; }
  bool isLoading() const { return mode_ == 0; }

  gxArchive &operator||(bool &v);            ///< 8 bits, 0 or 1
  gxArchive &operator||(signed char &v);     ///< 8 bits
  gxArchive &operator||(unsigned short &v);  ///< 16 bits
  gxArchive &operator||(int &v);             ///< 32 bits
  gxArchive &operator||(unsigned int &v);    ///< 32 bits
  gxArchive &operator||(long &v);            ///< 32 bits; storing narrows
  gxArchive &operator||(unsigned long &v);   ///< 32 bits; storing narrows
  gxArchive &operator||(float &v);           ///< 32 bits
  gxArchive &operator||(double &v);          ///< 64 bits
  gxArchive &operator||(std::string &v);     ///< length, then the bytes
  /// @p n bytes as they stand.
  gxArchive &raw(char *bytes, long n);

  /// Passes the number of elements that follow, each of at least @p bytesEach bytes (0 counts as 1). A loaded count
  /// that is negative, or asks for more bytes than are left, throws Errors before any memory is taken.
  long passCount(long count, std::size_t bytesEach);
  /// Loading: throws Errors, naming @p what, unless @p bytes bytes are left. To be called before memory is taken for
  /// what a loaded size announces. Storing: nothing.
  void requireBytes(std::size_t bytes, char const *what) const;

  /// Bytes from the start of the archive to here.
  std::uint64_t position() const;

  /// Throws Errors with @p what and the present byte position.
  [[noreturn]] void fail(std::string const &what) const;

 protected:
  gxArchive(bool storing, Limits const &limits);

 private:
  friend class gxPersistent;
  friend class gxStoringArchive;
  friend class gxLoadingArchive;
  friend class gx_ObjectTable;
  friend class gx_Pass;
  friend class gx_ScrubbingArchive;
  friend GX_API unsigned char gf_passVersion(gxArchive &archive, unsigned char current);
  friend GX_API gxArchive &operator||(gxArchive &archive, unsigned char &v);
  friend GX_API gxArchive &operator||(gxArchive &archive, gxPersistent &object);
  friend GX_API gxPersistent *gf_passShared(gxArchive &archive, gxPersistent *object);

  /// Makes @p n bytes available at cursor_: room while storing, content while loading.
  void need(std::size_t n)
  {
    if (static_cast<std::size_t>(end_ - cursor_) < n)
      more_(n);
  }
  virtual void more_(std::size_t n) = 0;
  virtual void raw_(char *bytes, std::size_t n) = 0;

  template <class Wire, class T>
  gxArchive &number(T &v);

  int const mode_;  ///< 0 while loading
  unsigned char *cursor_ = nullptr;
  unsigned char *end_ = nullptr;
  unsigned char *begin_ = nullptr;
  std::uint64_t before_ = 0;  ///< bytes of the archive before begin_
  Limits limits_;
  int depth_ = 0;        ///< objects that are passing just now
  bool scrubs_ = false;  ///< see gx_ScrubbingArchive
  std::unique_ptr<gx_ObjectTable> objects_;
};

/// Stores into a stream, through a buffer of its own.
class GX_API gxStoringArchive : public gxArchive
{
 public:
  explicit gxStoringArchive(std::ostream &os, Limits const &limits = Limits());
  /// Hands the rest to the stream. An error that close() would report is lost here.
  ~gxStoringArchive() override;

  /// Hands all that was stored to the stream and flushes it. Throws Errors if the stream takes no more.
  void flush();
  /// flush(), and the end of the archive: storing more throws Errors.
  void close();

 private:
  void more_(std::size_t n) override;
  void raw_(char *bytes, std::size_t n) override;
  void hand(unsigned char const *bytes, std::size_t n);
  void handBuffer();

  std::ostream &os_;
  std::unique_ptr<unsigned char[]> buffer_;
  bool closed_ = false;
  bool broken_ = false;
};

/// Loads from a stream, which it reads to the end at once. A stream that can be positioned is set to the byte behind
/// the last loaded one when the archive ends, so that whatever follows in the stream can be read.
class GX_API gxLoadingArchive : public gxArchive
{
 public:
  /// Throws Errors if the stream cannot be read, is longer than the limit, or holds no archive of a known format.
  explicit gxLoadingArchive(std::istream &is, Limits const &limits = Limits());
  /// Lets go of the loaded objects, the last one first.
  ~gxLoadingArchive() override;

  std::size_t bytesLeft() const;

 private:
  void more_(std::size_t n) override;
  void raw_(char *bytes, std::size_t n) override;

  std::istream &is_;
  std::int64_t start_;  ///< position of the archive in the stream, or -1
  std::unique_ptr<unsigned char[]> content_;
};

GX_API gxArchive &operator||(gxArchive &archive, unsigned char &v);
/// Passes the object through its class's own routine, in place (not as a pointer).
GX_API gxArchive &operator||(gxArchive &archive, gxPersistent &object);

/// Passes the object behind a handle: serializePointer(), except that the archive deletes an object that is no
/// gxRepBase when it ends, since no handle can own that. Returns the stored or loaded object.
GX_API gxPersistent *gf_passShared(gxArchive &archive, gxPersistent *object);

/// What has an `operator||`.
template <class T>
concept gx_Archivable = requires(gxArchive &archive, T &value)
{
  archive || value;
};

/// `archive << value` is `archive || value` of an archive that stores; one that loads throws gxArchive::Errors.
template <class T>
requires gx_Archivable<T> gxArchive &operator<<(gxArchive &archive, T const &value)
{
  if (archive.isLoading())
    archive.fail("<< on an archive that loads");
  if constexpr (std::is_base_of_v<gxPersistent, T> || std::is_same_v<T, std::string>) {
    return archive || const_cast<T &>(value);  // storing leaves these as they are
  } else {
    T copy(value);
    return archive || copy;
  }
}

/// `archive >> value` is `archive || value` of an archive that loads; one that stores throws gxArchive::Errors.
template <class T>
requires gx_Archivable<T> gxArchive &operator>>(gxArchive &archive, T &value)
{
  if (archive.isStoring())
    archive.fail(">> on an archive that stores");
  return archive || value;
}

/// The object as a persistent one; null for null, and while storing Errors for an object that is not persistent.
template <class T>
gxPersistent *gf_asPersistent(gxArchive const &archive, T *object)
{
  if constexpr (std::is_convertible_v<T *, gxPersistent *>) {
    return object;
  } else {
    auto *const persistent = dynamic_cast<gxPersistent *>(object);
    if (object && !persistent)
      archive.fail("the object behind a handle is not persistent");
    return persistent;
  }
}

/// Passes a handle as a persistent pointer. Loading releases the old object first; an object of another type than T
/// gives a null handle.
template <class T>
gxArchive &operator||(gxArchive &archive, gxPtrHandle<T> &handle)
{
  if (archive.isStoring()) {
    gf_passShared(archive, gf_asPersistent(archive, handle.rep()));
  } else {
    handle = gxPtrHandle<T>();
    handle = gxPtrHandle<T>(dynamic_cast<T *>(gf_passShared(archive, nullptr)));
  }
  return archive;
}
template <class T>
gxArchive &operator||(gxArchive &archive, gxPtrHandle_const<T> &handle)
{
  if (archive.isStoring()) {
    gf_passShared(archive, gf_asPersistent(archive, const_cast<T *>(handle.rep())));
  } else {
    handle = gxPtrHandle_const<T>();
    handle = gxPtrHandle_const<T>(dynamic_cast<T *>(gf_passShared(archive, nullptr)));
  }
  return archive;
}

/// Passes an enumeration as 32 bits. Any value loads: an enumeration of the library has 32 bits, and who cares about
/// the range checks it.
template <class E>
requires std::is_enum_v<E>
void gf_passEnum(gxArchive &archive, E &value)
{
  int number = static_cast<int>(value);
  archive || number;
  value = static_cast<E>(number);
}

/// Passes a count and the elements, each by @p passElement(archive, element). Loading replaces the content at the end,
/// when all has come; memory is taken as the elements arrive.
/// @param bytesEach the fewest bytes that an element takes in the archive
template <class T, class Pass>
void gf_passElements(gxArchive &archive, std::vector<T> &elements, std::size_t bytesEach, Pass passElement)
{
  long const count = archive.passCount(static_cast<long>(elements.size()), bytesEach);
  if (archive.isStoring()) {
    for (T &element : elements)
      passElement(archive, element);
    return;
  }
  std::vector<T> loaded;
  loaded.reserve(static_cast<std::size_t>(std::min(count, 1024L)));
  for (long i = 0; i < count; ++i)
    passElement(archive, loaded.emplace_back());
  elements = std::move(loaded);
}
template <class T>
void gf_passElements(gxArchive &archive, std::vector<T> &elements, std::size_t bytesEach)
{
  gf_passElements(archive, elements, bytesEach, [](gxArchive &a, T &element) { a || element; });
}
