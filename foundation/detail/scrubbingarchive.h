#pragma once

#include "foundation/detail/archivepass.h"

#include <array>
#include <cstring>

/// A loading archive without content, by which objects forget what they hold: numbers load as 0, texts and counts as
/// empty, pointers as null, versions as the present ones. After a failed load it takes rings of handles apart, which
/// nobody could release any more, without help from the classes.
class gx_ScrubbingArchive final : public gxArchive
{
 public:
  gx_ScrubbingArchive() : gxArchive(false, Limits()) { scrubs_ = true; }

  static void scrub(gxPersistent &object) noexcept
  {
    try {
      gx_ScrubbingArchive archive;
      archive || object;
    } catch (...) {  // the object stays as far as it came
    }
  }

 private:
  void more_(std::size_t n) override
  {
    spend(n);
    begin_ = cursor_ = zeros_.data();
    end_ = begin_ + n;
    zeros_.fill(0);
  }
  void raw_(char *bytes, std::size_t n) override
  {
    spend(n);
    std::memset(bytes, 0, n);
  }
  // A routine that waits for another number than 0 has to end, too.
  void spend(std::size_t n)
  {
    if (n > left_)
      fail("more zeros than an object can need");
    left_ -= n;
  }

  std::array<unsigned char, mostAtOnce> zeros_;
  std::size_t left_ = std::size_t(1) << 20;
};
