#pragma once

#include "foundation/exception.h"
#include "foundation/export.h"
#include "foundation/handle.h"
#include "foundation/persistent.h"

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

/// A stream of stored objects in one of two directions: each `archive || value` stores or loads, by the mode of the
/// archive, so that one routine serves both.
///
/// @code
/// std::ostringstream os;
/// { gxStoringArchive out(os);  out || color || props; }
/// std::istringstream is(os.str());
/// gxLoadingArchive in(is);
/// in || color || props;
/// @endcode
///
/// What a loading archive reads comes from outside: every length, count, reference, class name and depth is checked
/// before memory is taken, and whatever is wrong throws gxArchive::Errors with a text that says what, and at which
/// byte. The layout is described in docs/archive-format.md. An archive is used by one thread.
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
    /// @param file the module that met the version, or null; @param line where, or 0
    UnknownVersion(char const *file, long line);
    GX_EXCEPTION_MEMBERS_(UnknownVersion);

   public:
    std::string const &file() const { return file_; }
    long line() const { return line_; }

   private:
    std::string file_;
    long line_ = 0;
  };

  /// What a loading archive accepts. The defaults suit files of a workplace; a server that loads files of strangers
  /// sets them lower.
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
  gxArchive &operator||(long &v);            ///< 32 bits; storing narrows
  gxArchive &operator||(unsigned long &v);   ///< 32 bits; storing narrows
  gxArchive &operator||(float &v);           ///< 32 bits
  gxArchive &operator||(double &v);          ///< 64 bits
  gxArchive &operator||(std::string &v);     ///< length, then the bytes
  /// @p n bytes as they stand.
  gxArchive &raw(char *bytes, long n);

  /// Passes the number of elements that follow, each of at least @p bytesEach bytes. A loaded count that is negative,
  /// or asks for more bytes than are left, throws Errors before any memory is taken.
  long passCount(long count, std::size_t bytesEach);

  /// Throws Errors with @p what and the present byte position.
  [[noreturn]] void fail(std::string const &what) const;

 protected:
  explicit gxArchive(bool storing);

 private:
  friend class gxPersistent;

  int const mode_;  ///< 0 while loading
};

GX_API gxArchive &operator||(gxArchive &archive, unsigned char &v);
/// Passes the object through its class's own routine, in place (not as a pointer).
GX_API gxArchive &operator||(gxArchive &archive, gxPersistent &object);
