#pragma once

#include "foundation/export.h"

#include <cstdint>
#include <ostream>

/// A stack of 1 to 32 flags in one word, bit 0 on top. Tablets keep their switches in such stacks, so that a drawing
/// can change one for its own time and give it back.
///
/// @code
/// gxFlagStack recordOn(true);
/// recordOn.push(false);   // not while this goes on
/// if (recordOn) ...
/// recordOn.pop();         // as before
/// @endcode
class GX_API gxFlagStack
{
 public:
  static constexpr long maxDepth = 32;

  /// One flag deep.
  constexpr gxFlagStack(bool flag = false) : bits_(flag) {}  // NOLINT(google-explicit-constructor): stands for a bool

  /// The flag on top.
  constexpr operator bool() const { return bits_ & 1u; }  // NOLINT(google-explicit-constructor)
  /// Replaces the flag on top; the depth and the flags below stay.
  constexpr gxFlagStack &operator=(bool flag)
  {
    bits_ = (bits_ & ~1u) | std::uint32_t(flag);
    return *this;
  }

  /// Throws gxUIError::FlagStackOverflow if there are 32 flags already.
  void push(bool flag)
  {
    if (depth_ >= maxDepth)
      throwOverflow();
    ++depth_;
    bits_ = bits_ << 1 | std::uint32_t(flag);
  }
  /// Removes and returns the flag on top. Throws gxUIError::FlagStackUnderflow at the last flag, which stays.
  bool pop()
  {
    if (depth_ < 2)
      throwUnderflow();
    bool const top = *this;
    bits_ >>= 1;
    --depth_;
    return top;
  }
  /// The flag @p i levels below the top; throws gxUIError::FlagStackOutOfRange unless 0 <= i < depth().
  bool operator[](long i) const
  {
    if (i < 0 || i >= depth_)
      throwOutOfRange();
    return bits_ >> i & 1u;
  }
  /// Number of flags held, 1 to 32.
  constexpr long depth() const { return depth_; }

 private:
  [[noreturn]] static void throwOverflow();
  [[noreturn]] static void throwUnderflow();
  [[noreturn]] static void throwOutOfRange();

  std::uint32_t bits_;
  std::int32_t depth_ = 1;
};

static_assert(sizeof(gxFlagStack) == 8);

/// Pushes a flag for the life of a block, however the block is left.
class gxFlagPush
{
 public:
  /// Throws gxUIError::FlagStackOverflow if the stack is full.
  gxFlagPush(gxFlagStack &stack, bool flag) : stack_(stack) { stack_.push(flag); }
  gxFlagPush(gxFlagPush const &) = delete;
  gxFlagPush &operator=(gxFlagPush const &) = delete;
  ~gxFlagPush()
  {
    if (stack_.depth() > 1)
      stack_.pop();
  }

 private:
  gxFlagStack &stack_;
};

/// The flags from the top down, as in "[1 0 0]".
GX_API std::ostream &operator<<(std::ostream &os, gxFlagStack const &stack);
