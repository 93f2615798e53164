#pragma once

#include "foundation/bytes.h"
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

/// A number that an archive passes by its bytes.
template <class T>
concept gx_ArchiveNumber = std::is_arithmetic_v<T> && !std::is_same_v<T, bool>;

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

  gxArchive &operator||(bool &v)  ///< 8 bits, 0 or 1
  {
    auto byte = static_cast<unsigned char>(v ? 1 : 0);
    numbers(byte);
    if (byte > 1)
      refuseBool(byte);
    v = byte != 0;
    return *this;
  }
  gxArchive &operator||(signed char &v) { return numbers(v); }                           ///< 8 bits
  gxArchive &operator||(unsigned short &v) { return numbers(v); }                        ///< 16 bits
  gxArchive &operator||(int &v) { return numbers(v); }                                   ///< 32 bits
  gxArchive &operator||(unsigned int &v) { return numbers(v); }                          ///< 32 bits
  gxArchive &operator||(long &v) { return numbers(v); }                                  ///< 32 bits; storing narrows
  gxArchive &operator||(unsigned long &v) { return numbers(v); }                         ///< 32 bits; storing narrows
  gxArchive &operator||(float &v) { return numbers(v); }                                 ///< 32 bits
  gxArchive &operator||(double &v) { return numbers(v); }                                ///< 64 bits
  friend gxArchive &operator||(gxArchive &a, unsigned char &v) { return a.numbers(v); }  ///< 8 bits
  gxArchive &operator||(std::string &v);                                                 ///< length, then the bytes
  /// Numbers one behind the other, each in the form of its own `||`, in one step.
  template <class... T>
  requires(gx_ArchiveNumber<T> &&...) gxArchive &numbers(T &...v)
  {
    static_assert((sizeof(Wire<T>) + ...) <= mostAtOnce);
    need((sizeof(Wire<T>) + ...));
    unsigned char *at = cursor_;
    ((at = mode_ ? gf_putLittle(at, static_cast<Wire<T>>(v)) : getNumber(at, v)), ...);
    cursor_ = at;
    return *this;
  }
  /// @p n bytes as they stand.
  gxArchive &raw(char *bytes, long n);

  /// Passes the number of elements that follow, each of at least @p bytesEach bytes (0 counts as 1). A loaded count
  /// that is negative, or asks for more bytes than are left, throws Errors before any memory is taken.
  long passCount(long count, std::size_t bytesEach);
  /// Loading: throws Errors, naming @p what, unless @p bytes bytes are left. To be called before memory is taken for
  /// what a loaded size announces. Storing: nothing.
  void requireBytes(std::size_t bytes, char const *what) const;

  /// The short way of null pointers, to spare a call. Storing: passes a null pointer if @p isNull, and returns that.
  /// Loading: returns true if a null pointer comes next, and passes it.
  bool passNullPointer(bool isNull)
  {
    if (mode_) {
      if (isNull)
        need(1), *cursor_++ = 0;
      return isNull;
    }
    bool const comes = cursor_ != end_ && *cursor_ == 0;
    cursor_ += comes;
    return comes;
  }

  /// True if the object is passing just now: whoever meets a pointer to it meanwhile is inside it, and closes a ring.
  bool isPassing(gxPersistent const &object) const;

  /// Bytes from the start of the archive to here.
  std::uint64_t position() const;
  /// Loading: bytes from here to the end of the stream. Storing: 0.
  std::uint64_t bytesLeft() const;

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
  friend GX_API bool gf_enterClass(gxArchive &, void const *, std::size_t, void const *, unsigned char &);
  friend GX_API gxArchive &operator||(gxArchive &archive, gxPersistent &object);
  friend GX_API gxPersistent *gf_passShared(gxArchive &archive, gxPersistent *object);
  friend GX_API gxPersistent *gf_passOwned(gxArchive &archive, gxPersistent *object);
  friend GX_API bool gf_passOnce(gxArchive &archive, gxPersistent &object);

  /// The most bytes that anybody needs in one piece.
  static constexpr std::size_t mostAtOnce = 32;

  /// Makes @p n bytes available at cursor_: room while storing, content while loading.
  void need(std::size_t n)
  {
    if (static_cast<std::size_t>(end_ - cursor_) < n)
      more_(n);
  }
  virtual void more_(std::size_t n) = 0;
  virtual void raw_(char *bytes, std::size_t n) = 0;
  [[noreturn]] void refuseBool(unsigned char byte);

  /// The type of the stored bytes: 32 bits for `long`, whatever it has on the machine.
  template <class T>
  using Wire = std::conditional_t<std::is_same_v<T, long>, std::int32_t,
                                  std::conditional_t<std::is_same_v<T, unsigned long>, std::uint32_t, T>>;
  template <class T>
  static unsigned char *getNumber(unsigned char *from, T &v)
  {
    v = static_cast<T>(gf_getLittle<Wire<T>>(from));
    return from + sizeof(Wire<T>);
  }

  int const mode_;  ///< 0 while loading
  // The buffer from begin_ to end_, used up to cursor_; before it in the archive lie before_ bytes, and while loading
  // beyond_ bytes are still to come after it.
  unsigned char *cursor_ = nullptr;
  unsigned char *end_ = nullptr;
  unsigned char *begin_ = nullptr;
  std::uint64_t before_ = 0;
  std::uint64_t beyond_ = 0;
  Limits limits_;
  bool scrubs_ = false;      ///< see gx_ScrubbingArchive
  gx_Pass *pass_ = nullptr;  ///< the object that is passing just now, the innermost one
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

/// Loads from a stream: block by block if the stream can be positioned, otherwise all of it at once. A stream that can
/// be positioned stands at the byte behind the last loaded one when the archive ends, so that whatever follows can be
/// read from it; meanwhile it belongs to the archive.
class GX_API gxLoadingArchive : public gxArchive
{
 public:
  /// Throws Errors if the stream cannot be read, is longer than the limit, or holds no archive of a known format.
  explicit gxLoadingArchive(std::istream &is, Limits const &limits = Limits());
  /// Lets go of the loaded objects, the last one first.
  ~gxLoadingArchive() override;

 private:
  void more_(std::size_t n) override;
  void raw_(char *bytes, std::size_t n) override;
  void open();
  void readAll();
  void passHeader();
  void read(unsigned char *bytes, std::size_t n);

  std::istream &is_;
  std::int64_t start_ = -1;  ///< position of the archive in the stream, or -1
  std::unique_ptr<unsigned char[]> buffer_;
};

/// Passes the object through its class's own routine, in place (not as a pointer).
GX_API gxArchive &operator||(gxArchive &archive, gxPersistent &object);

/// Passes the object behind a handle: serializePointer(), except that the archive deletes an object that is no
/// gxRepBase when it ends, since no handle can own that. Returns the stored or loaded object.
GX_API gxPersistent *gf_passShared(gxArchive &archive, gxPersistent *object);

/// Passes an object that is no gxRepBase and has one owner: stored anew each time its owner passes. A loaded reference,
/// which would give it a second owner, and a gxRepBase throw gxArchive::Errors.
GX_API gxPersistent *gf_passOwned(gxArchive &archive, gxPersistent *object);

/// Passes an object that stands for many, one after the other, each of which passes as by a pointer and is met only
/// once: the archive gives it a number and does not remember it. Storing writes it and returns true. Loading returns
/// true if an object of the very class of @p object comes, and one of that class has come before by pointer, and has
/// then loaded it into @p object; otherwise it passes nothing.
GX_API bool gf_passOnce(gxArchive &archive, gxPersistent &object);

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
  if constexpr (std::is_base_of_v<gxPersistent, T> || std::is_same_v<T, std::string> ||
                !std::is_copy_constructible_v<T>) {
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

/// The same for an archive that lives for one expression.
template <class Archive, class T>
requires std::is_base_of_v<gxArchive, Archive> gxArchive &operator||(Archive &&archive, T &value)
{
  return static_cast<gxArchive &>(archive) || value;
}
template <class Archive, class T>
requires std::is_base_of_v<gxArchive, Archive> gxArchive &operator<<(Archive &&archive, T const &value)
{
  return static_cast<gxArchive &>(archive) << value;
}
template <class Archive, class T>
requires std::is_base_of_v<gxArchive, Archive> gxArchive &operator>>(Archive &&archive, T &value)
{
  return static_cast<gxArchive &>(archive) >> value;
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

/// The T of an object, or null, as by dynamic_cast. Where the T lies in the objects of a class is looked up once for
/// runs of objects of that class.
template <class T>
T *gf_castPersistent(gxPersistent *object)
{
  static thread_local std::type_info const *lastType = nullptr;
  static thread_local std::ptrdiff_t toT = 0;
  if (!object)
    return nullptr;
  auto *const start = reinterpret_cast<char *>(object);
  if (lastType == &typeid(*object))
    return reinterpret_cast<T *>(start + toT);
  auto *const found = dynamic_cast<T *>(object);
  if (found) {
    lastType = &typeid(*object);
    toT = reinterpret_cast<char *>(found) - start;
  }
  return found;
}

/// Passes a handle as a persistent pointer. Loading releases the old object first; an object of another type than T
/// gives a null handle.
template <class T>
gxArchive &operator||(gxArchive &archive, gxPtrHandle<T> &handle)
{
  if (archive.isLoading())
    handle = nullptr;
  if (archive.passNullPointer(!handle.rep()))
    return archive;
  if (archive.isStoring())
    gf_passShared(archive, gf_asPersistent(archive, handle.rep()));
  else
    handle = gf_castPersistent<T>(gf_passShared(archive, nullptr));
  return archive;
}
template <class T>
gxArchive &operator||(gxArchive &archive, gxPtrHandle_const<T> &handle)
{
  if (archive.isLoading())
    handle = nullptr;
  if (archive.passNullPointer(!handle.rep()))
    return archive;
  if (archive.isStoring())
    gf_passShared(archive, gf_asPersistent(archive, const_cast<T *>(handle.rep())));
  else
    handle = gf_castPersistent<T>(gf_passShared(archive, nullptr));
  return archive;
}

/// Passes what the pointer owns. Loading deletes the old object first; an object of another type than T is deleted.
template <class T>
gxArchive &operator||(gxArchive &archive, std::unique_ptr<T> &pointer)
{
  if (archive.isLoading())
    pointer.reset();
  gxPersistent *const passed = gf_passOwned(archive, pointer.get());
  if (archive.isStoring())
    return archive;
  pointer.reset(dynamic_cast<T *>(passed));
  if (!pointer)
    delete passed;
  return archive;
}

/// Passes a handle inside an object that must not contain itself: a loaded ring throws gxArchive::Errors.
template <class Handle>
void gf_passWithoutRing(gxArchive &archive, Handle &handle)
{
  archive || handle;
  if (archive.isStoring() || handle.isNull())
    return;
  auto const *const object = dynamic_cast<gxPersistent const *>(handle.rep());
  if (object && archive.isPassing(*object)) {
    handle = nullptr;
    archive.fail("an object that contains itself");
  }
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
