#pragma once

#include "foundation/bytes.h"
#include "foundation/vector.h"

#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

/// @file
/// How payloads are described, and the writer that the tablet and the ops share; dispc/detail/sketchop_io.h has what
/// else can be done with a description.
///
/// A description, `gf_describe(io, value)`, tells the fields of a value in the order of the stream, by
/// `io(name, field)` and the like. Where `Io::reads`, the fields come in, and the value is put together of them.

/// A value as a description gets it: to be changed where fields come in.
template <class Io, class T>
using gx_Field = std::conditional_t<Io::reads || Io::archives, T, T const>;

/// A number, a truth value or an enumeration.
template <class T>
concept gx_Plain = std::is_arithmetic_v<T> || std::is_enum_v<T>;

/// A vector or a point.
template <class T>
concept gx_IsVector = std::derived_from<T, gxVector<2>>;

/// Bytes of the block that a record holds of a shape.
template <class Shape>
inline constexpr long gf_blockSize = 0;

/// What readers alone know.
class gx_PayloadGiver
{
 public:
  static constexpr bool reads = false;
  static constexpr bool archives = false;
  static constexpr bool isText = false;
  static constexpr bool version0() { return false; }
};

class gx_PayloadWriter : public gx_PayloadGiver
{
 public:
  explicit gx_PayloadWriter(unsigned char *at) : at_(at) {}

  unsigned char *at() const { return at_; }

  template <class T>
  void operator()(char const *, T const &value)
  {
    if constexpr (std::is_same_v<T, bool>)
      *at_++ = value;
    else if constexpr (gx_Plain<T>)
      at_ = gf_putLittle(at_, value);
    else if constexpr (gx_IsVector<T> && std::endian::native == std::endian::little)
      std::memcpy(room(sizeof(gxVector<2>)), &value, sizeof(gxVector<2>));  // as one store
    else
      gf_describe(*this, value);
  }
  long count(char const *name, long n, std::size_t)
  {
    (*this)(name, static_cast<std::int32_t>(n));
    return n;
  }
  void gap(long n) { std::memset(room(n), 0, static_cast<std::size_t>(n)); }
  /// The block that @p view looks at, or that of a shape in its start state.
  template <class Shape, class View>
  void block(char const *, View const &view)
  {
    if (view.bytes())
      bytes(view.bytes(), gf_blockSize<Shape>);
    else
      gf_describe(*this, Shape());
  }
  void bytes(unsigned char const *from, long n)
  {
    if (n > 0)
      std::memcpy(room(n), from, static_cast<std::size_t>(n));
  }
  /// Room for bytes that the caller fills; null where there is nothing to fill.
  unsigned char *room(long n)
  {
    unsigned char *const to = at_;
    at_ += n;
    return to;
  }

 private:
  unsigned char *at_;
};
