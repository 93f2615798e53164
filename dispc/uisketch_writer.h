#pragma once

#include "foundation/bytes.h"
#include "foundation/numbers.h"
#include "foundation/pair.h"
#include "foundation/vector.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

/// Writes the fields of a record one behind the other, little-endian and without padding, into room reserved before.
class gx_StreamWriter
{
 public:
  explicit gx_StreamWriter(unsigned char *at) : at_(at) {}

  unsigned char *at() const { return at_; }

  gx_StreamWriter &bytes(void const *from, std::size_t n)
  {
    if (n > 0)
      std::memcpy(at_, from, n);
    at_ += n;
    return *this;
  }
  gx_StreamWriter &zeros(std::size_t n)
  {
    std::memset(at_, 0, n);
    at_ += n;
    return *this;
  }
  gx_StreamWriter &byte(unsigned char v)
  {
    *at_++ = v;
    return *this;
  }
  gx_StreamWriter &flag(bool v) { return byte(v); }
  /// 32 bits.
  gx_StreamWriter &word(long v) { return number(gf_narrow(v)); }
  gx_StreamWriter &real(double v) { return number(std::bit_cast<std::uint64_t>(v)); }
  gx_StreamWriter &single(float v) { return number(v); }
  gx_StreamWriter &vector(gxVector<2> const &v)
  {
    if constexpr (std::endian::native == std::endian::little)
      return bytes(&v, sizeof v);  // as one store
    return real(v.x()).real(v.y());
  }
  gx_StreamWriter &pair(gxPair<long> const &p) { return word(p.x()).word(p.y()); }

 private:
  template <class T>
  gx_StreamWriter &number(T v)
  {
    at_ = gf_putLittle(at_, v);
    return *this;
  }

  unsigned char *at_;
};
