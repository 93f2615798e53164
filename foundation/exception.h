#pragma once

#include "foundation/export.h"
#include "foundation/persistent.h"

#include <exception>
#include <ostream>
#include <string>

/// Root of the library's exceptions. Each class has a fixed number, a name and a text, and passes through archives.
///
/// A family states each of its exceptions in a line of its header and a line of its source:
///
/// @code
/// class Lamps {
///  public:
///   GX_EXCEPTION(Broken, gxException);
/// };
///
/// GX_EXCEPTION_IMPL(Lamps::Broken, gxException, Broken, 0x10001fff, "the lamp is broken")
/// @endcode
class GX_API gxException : public virtual gxPersistent, public std::exception
{
 public:
  gxException();
  gxException(gxException const &);
  gxException &operator=(gxException const &);
  ~gxException() override;

  /// The name of the class, as archives know it.
  virtual char const *className() const;
  /// The number of the class, the same in every release.
  virtual long errorNumber() const;
  /// Deletes this object, which was made by `new`, and throws another one of its class with the same content.
  [[noreturn]] virtual void suicideAndRethrow();

  /// The text.
  std::string message() const;
  /// Class name and text.
  char const *what() const noexcept override;

 protected:
  /// Writes the text.
  virtual void message_(std::ostream &os) const;

 private:
  mutable std::string what_;  ///< made by the first call of what()

  GX_PERSISTENT(gxException);
};

/// An exception whose text is given where it is thrown.
class GX_API gxExceptionWithString : public gxException
{
 public:
  gxExceptionWithString();
  explicit gxExceptionWithString(std::string text);
  gxExceptionWithString(gxExceptionWithString const &);
  gxExceptionWithString &operator=(gxExceptionWithString const &);
  ~gxExceptionWithString() override;

  char const *className() const override;
  long errorNumber() const override;
  [[noreturn]] void suicideAndRethrow() override;

 protected:
  void message_(std::ostream &os) const override;

 private:
  std::string text_;

  GX_PERSISTENT(gxExceptionWithString);
};

#define GX_EXCEPTION_MEMBERS_(Class)              \
  Class(Class const &);                           \
  Class &operator=(Class const &);                \
  ~Class() override;                              \
  char const *className() const override;         \
  long errorNumber() const override;              \
  [[noreturn]] void suicideAndRethrow() override; \
                                                  \
 private:                                         \
  GX_PERSISTENT(Class)

/// Declares an exception class with a fixed text.
#define GX_EXCEPTION(Class, Base)                   \
  class GX_API Class : public Base                  \
  {                                                 \
   public:                                          \
    Class();                                        \
    GX_EXCEPTION_MEMBERS_(Class);                   \
                                                    \
   protected:                                       \
    void message_(std::ostream &os) const override; \
  }

/// Declares an exception class whose objects carry a text of their own; Base is gxExceptionWithString or such a class.
#define GX_EXCEPTION_WITH_STRING(Class, Base) \
  class GX_API Class : public Base            \
  {                                           \
   public:                                    \
    Class();                                  \
    explicit Class(std::string text);         \
    GX_EXCEPTION_MEMBERS_(Class);             \
  }

#define GX_EXCEPTION_MEMBERS_IMPL_(Class, Base, Leaf, number)       \
  Class::Leaf() = default;                                          \
  Class::Leaf(Leaf const &) = default;                              \
  Class &Class::operator=(Leaf const &) = default;                  \
  Class::~Leaf() = default;                                         \
  char const *Class::className() const                              \
  {                                                                 \
    return #Class;                                                  \
  }                                                                 \
  long Class::errorNumber() const                                   \
  {                                                                 \
    return number;                                                  \
  }                                                                 \
  void Class::suicideAndRethrow()                                   \
  {                                                                 \
    gf_deleteAndThrow(this);                                        \
  }                                                                 \
  GX_PERSISTENT_IMPL(Class, #Class, 0)                              \
  void Class::serialize_(gxArchive &archive, unsigned char version) \
  {                                                                 \
    gf_refuseVersion(version, #Class);                              \
    Base::dispatchSerialize(archive);                               \
  }

/// @param Class the full name, which is the name in archives
/// @param Leaf  the last part of that name
#define GX_EXCEPTION_IMPL(Class, Base, Leaf, number, text) \
  GX_EXCEPTION_MEMBERS_IMPL_(Class, Base, Leaf, number)    \
  void Class::message_(std::ostream &os) const             \
  {                                                        \
    os << (text);                                          \
  }

#define GX_EXCEPTION_WITH_STRING_IMPL(Class, Base, Leaf, number) \
  GX_EXCEPTION_MEMBERS_IMPL_(Class, Base, Leaf, number)          \
  Class::Leaf(std::string text) : Base(std::move(text)) {}

/// Throws gxArchive::UnknownVersion with the class's name and line 0 unless @p version is 0.
GX_API void gf_refuseVersion(unsigned char version, char const *className);

/// The body of suicideAndRethrow(): the copy is thrown, the original deleted.
template <class T>
[[noreturn]] void gf_deleteAndThrow(T *exception)
{
  T const copy(*exception);
  delete exception;
  throw T(copy);
}

/// A null handle was dereferenced.
GX_EXCEPTION(gxBadPointer, gxException);
