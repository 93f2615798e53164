#pragma once

#include "dispc/color.h"
#include "dispc/detail/uisketch_fields.h"
#include "dispc/detail/uisketch_io.h"
#include "dispc/sketchop.h"
#include "dispc/uierror.h"
#include "dispc/uirect.h"
#include "dispc/uistring.h"
#include "foundation/angle.h"
#include "foundation/archive.h"
#include "foundation/bytes.h"
#include "foundation/geomarchive.h"
#include "foundation/pair.h"
#include "foundation/vector.h"
#include "foundation/xform.h"

#include <charconv>
#include <concepts>
#include <cstdint>
#include <cstring>
#include <limits>
#include <ostream>
#include <string_view>
#include <type_traits>

/// @file
/// What can be done with a payload. `describe` of an op, and `gf_describe` of the values in it, tell the fields in
/// their order to one of these:
///
/// | Class | `reads` | `archives` | `isText` | Does |
/// |---|---|---|---|---|
/// | gx_PayloadReader | yes | | | takes the fields from a stream, trusting it or within bounds |
/// | gx_PayloadWriter | | | | puts them into a stream |
/// | gx_PayloadCounter | | | | adds up their bytes |
/// | gx_PayloadDumper | | | yes | writes them as text |
/// | gx_PayloadArchiver | | yes | | passes them through an archive, where shapes pass as they do by themselves |

template <bool bounded>
class gx_PayloadReader
{
 public:
  static constexpr bool reads = true;
  static constexpr bool archives = false;
  static constexpr bool isText = false;

  explicit gx_PayloadReader(unsigned char const *bytes) requires(!bounded) : at_(bytes) {}
  gx_PayloadReader(unsigned char const *bytes, long left, bool version0) requires bounded : at_(bytes),
                                                                                            left_(left),
                                                                                            version0_(version0)
  {
  }

  unsigned char const *at() const { return at_; }
  /// The payload has the form of the first version.
  bool version0() const
  {
    if constexpr (bounded)
      return version0_;
    return false;
  }

  template <class T>
  void operator()(char const *, T &value)
  {
    if constexpr (std::is_same_v<T, bool>)
      value = *take(1) != 0;
    else if constexpr (gx_Plain<T>)
      value = gf_getLittle<T>(take(sizeof(T)));
    else if constexpr (gx_IsVector<T> && std::endian::native == std::endian::little)
      std::memcpy(static_cast<gxVector<2> *>(&value), take(sizeof(gxVector<2>)), sizeof(gxVector<2>));
    else
      gf_describe(*this, value);
  }
  /// A number of elements that follow, each of at least @p bytesEach bytes. Where the stream is trusted, a negative
  /// one counts as 0.
  long count(char const *, long, std::size_t bytesEach)
  {
    auto const n = gf_getLittle<std::int32_t>(take(4));
    if constexpr (bounded) {
      if (n < 0 || static_cast<std::size_t>(n) > static_cast<std::size_t>(left_) / bytesEach)
        refuse();
    }
    return n < 0 ? 0 : n;
  }
  void gap(long n) { take(n); }
  template <class Shape>
  void block(char const *, gx_StreamView &view);
  unsigned char const *take(long n)
  {
    if constexpr (bounded) {
      if (n > left_)
        refuse();
      left_ -= n;
    }
    unsigned char const *const from = at_;
    at_ += n;
    return from;
  }
  /// The number of units up to the first that is zero, which counts too.
  template <class Unit>
  long unitsThroughZero() const
  {
    constexpr long size = sizeof(Unit);
    if constexpr (!bounded && size == 1) {
      return static_cast<long>(std::strlen(reinterpret_cast<char const *>(at_))) + 1;
    } else {
      for (long n = 1;; ++n) {
        if constexpr (bounded)
          require(n * size <= left_);
        if (gf_getLittle<Unit>(at_ + (n - 1) * size) == 0)
          return n;
      }
    }
  }
  void require(bool condition) const
  {
    if (!condition)
      refuse();
  }

 private:
  [[noreturn]] static void refuse() { throw gxUIError::InvalidUISketch(); }

  unsigned char const *at_;
  long left_ = 0;
  bool version0_ = false;
};

class gx_PayloadCounter : public gx_PayloadGiver
{
 public:
  long size() const { return size_; }

  template <class T>
  void operator()(char const *, T const &value)
  {
    if constexpr (gx_Plain<T>)
      size_ += sizeof(T);
    else
      gf_describe(*this, value);
  }
  long count(char const *, long n, std::size_t)
  {
    size_ += 4;
    return n;
  }
  void gap(long n) { size_ += n; }
  template <class Shape>
  void block(char const *, gx_StreamView const &)
  {
    size_ += gf_blockSize<Shape>;
  }
  void bytes(unsigned char const *, long n) { size_ += n; }
  unsigned char *room(long n)
  {
    size_ += n;
    return nullptr;
  }

 private:
  long size_ = 0;
};

class gx_PayloadDumper : public gx_PayloadGiver
{
 public:
  static constexpr bool isText = true;
  explicit gx_PayloadDumper(std::ostream &os) : os_(os) {}

  template <class T>
  void operator()(char const *name, T const &value)
  {
    if constexpr (requires { write(value); }) {
      begin(name);
      write(value);
    } else if (*name == '\0') {
      gf_describe(*this, value);
    } else {
      begin(name);
      os_ << '[';
      first_ = true;
      gf_describe(*this, value);
      first_ = false;
      os_ << ']';
    }
  }
  long count(char const *name, long n, std::size_t)
  {
    begin(name);
    os_ << n;
    return n;
  }
  void gap(long) {}
  template <class Shape>
  void block(char const *name, gx_StreamView const &view);
  /// The elements one by one, in brackets.
  template <class Elements>
  void list(Elements const &elements)
  {
    for (auto const &element : elements) {
      os_ << (first_ ? "[" : ", [");
      first_ = true;
      gf_describe(*this, element);
      os_ << ']';
      first_ = false;
    }
  }
  /// In quotes; what is no printing ASCII as a number.
  template <class Text>
  void text(Text const &text)
  {
    begin("text");
    os_ << '"';
    for (auto const unit : text) {
      auto const code = static_cast<unsigned>(static_cast<std::make_unsigned_t<decltype(unit)>>(unit));
      if (code >= ' ' && code < 0x7F && code != '"' && code != '\\')
        os_ << static_cast<char>(code);
      else
        writeEscaped(code);
    }
    os_ << '"';
  }

 private:
  void begin(char const *name)
  {
    if (!first_)
      os_ << ", ";
    first_ = false;
    os_ << name << (*name ? " " : "");
  }
  void writeEscaped(unsigned code)
  {
    char digits[8];
    os_ << "\\x{" << std::string_view(digits, std::to_chars(digits, digits + sizeof digits, code, 16).ptr - digits)
        << '}';
  }
  void write(bool v) { os_ << (v ? "yes" : "no"); }
  template <class T>
  requires(gx_Plain<T> && !std::is_same_v<T, bool>) void write(T v)
  {
    if constexpr (std::is_enum_v<T>) {
      os_ << static_cast<std::int32_t>(v);
    } else if constexpr (std::is_floating_point_v<T>) {
      char digits[32];  // the shortest text that gives the number again
      os_ << std::string_view(digits, std::to_chars(digits, digits + sizeof digits, v).ptr - digits);
    } else {
      os_ << static_cast<long>(v);
    }
  }
  void write(gxVector<2> const &v) { writePair(v.x(), v.y()); }
  void write(gxPair<long> const &v) { writePair(v.x(), v.y()); }
  void write(gxRadian const &v) { write(v.value()); }
  void write(gxColor const &v) { os_ << v; }
  void write(gxUIRect const &v) { os_ << v; }
  void write(gxUIFormat const &v) { os_ << v; }
  template <class T>
  void writePair(T x, T y)
  {
    os_ << '(';
    write(x);
    os_ << ", ";
    write(y);
    os_ << ')';
  }

  std::ostream &os_;
  bool first_ = true;
};

class gx_PayloadArchiver
{
 public:
  static constexpr bool reads = false;
  static constexpr bool archives = true;
  static constexpr bool isText = false;
  static constexpr bool version0() { return false; }

  explicit gx_PayloadArchiver(gxArchive &archive) : archive_(archive) {}

  gxArchive &archive() const { return archive_; }
  bool isLoading() const { return archive_.isLoading(); }

  template <class T>
  void operator()(char const *, T &value)
  {
    if constexpr (std::is_enum_v<T>)
      gf_passEnum(archive_, value);
    else if constexpr (gx_Archivable<T>)
      archive_ || value;
    else
      gf_describe(*this, value);
  }
  long count(char const *, long n, std::size_t bytesEach) { return archive_.passCount(n, bytesEach); }
  template <class Shape>
  void block(char const *name, gx_StreamView &view);
  /// Bytes that the op owns once they are loaded.
  void bytes(gx_StreamView &view, long n)
  {
    if (archive_.isLoading()) {
      archive_.requireBytes(static_cast<std::size_t>(n), "the bytes of a record");
      archive_.raw(reinterpret_cast<char *>(view.own(static_cast<std::size_t>(n))), n);
    } else {
      archive_.raw(const_cast<char *>(reinterpret_cast<char const *>(view.bytes())), n);
    }
  }
  /// Refuses what was loaded, and names it, unless the condition holds.
  void require(bool condition, char const *what) const
  {
    if (!condition && archive_.isLoading())
      archive_.fail(what);
  }

 private:
  gxArchive &archive_;
};

// ---------------------------------------------------------------- views of blocks

/// The shape of a block; one in its start state if there is no block.
template <class Shape>
Shape gf_fromBlock(gx_StreamView const &view)
{
  Shape shape;
  if (view.bytes()) {
    gx_PayloadReader<false> reader(view.bytes());
    gf_describe(reader, shape);
  }
  return shape;
}

template <class Shape>
void gf_toBlock(Shape const &shape, gx_StreamView &view)
{
  gx_PayloadWriter writer(view.own(gf_blockSize<Shape>));
  gf_describe(writer, shape);
}

template <bool bounded>
template <class Shape>
void gx_PayloadReader<bounded>::block(char const *, gx_StreamView &view)
{
  if (!version0()) {
    view.look(take(gf_blockSize<Shape>));
    return;
  }
  Shape shape;
  gf_describe(*this, shape);
  gf_toBlock(shape, view);
}

template <class Shape>
void gx_PayloadDumper::block(char const *name, gx_StreamView const &view)
{
  (*this)(name, gf_fromBlock<Shape>(view));
}

template <class Shape>
void gx_PayloadArchiver::block(char const *, gx_StreamView &view)
{
  auto shape = gf_fromBlock<Shape>(view);
  archive_ || shape;
  if (isLoading())
    gf_toBlock(shape, view);
}
