#include "foundation/archive.h"
#include "foundation/bytes.h"
#include "foundation/detail/objecttable.h"

#include <array>
#include <cstring>
#include <istream>
#include <new>
#include <ostream>

namespace
{

constexpr std::array<unsigned char, 4> magic = {'g', 'x', 'a', 'r'};
constexpr std::uint32_t formatVersion = 1;
constexpr std::size_t headerSize = magic.size() + sizeof(formatVersion);
constexpr std::size_t bufferSize = std::size_t(1) << 16;

}  // namespace

gxStoringArchive::gxStoringArchive(std::ostream &os, Limits const &limits)
    : gxArchive(true, limits), os_(os), buffer_(new unsigned char[bufferSize])
{
  begin_ = cursor_ = buffer_.get();
  end_ = begin_ + bufferSize;
  std::memcpy(cursor_, magic.data(), magic.size());
  cursor_ = gf_putLittle(cursor_ + magic.size(), formatVersion);
}

gxStoringArchive::~gxStoringArchive()
{
  if (closed_)
    return;
  try {
    flush();
  } catch (...) {  // nobody is left to be told
  }
}

void gxStoringArchive::flush()
{
  if (!closed_)
    handBuffer();
  try {
    os_.flush();
  } catch (std::exception const &) {  // a stream that is set to throw; its state says so as well
  }
  if (broken_ || !os_) {
    broken_ = true;
    fail("the stream takes no more bytes");
  }
}

void gxStoringArchive::close()
{
  flush();
  closed_ = true;
  end_ = cursor_;
}

void gxStoringArchive::hand(unsigned char const *bytes, std::size_t n)
{
  if (broken_)
    fail("the stream takes no more bytes");
  try {
    os_.write(reinterpret_cast<char const *>(bytes), static_cast<std::streamsize>(n));
  } catch (std::exception const &) {
    broken_ = true;
  }
  if (broken_ || !os_) {
    broken_ = true;
    fail("the stream takes no more bytes");
  }
}

void gxStoringArchive::handBuffer()
{
  auto const n = static_cast<std::size_t>(cursor_ - begin_);
  hand(begin_, n);
  before_ += n;
  cursor_ = begin_;
}

void gxStoringArchive::more_(std::size_t)
{
  if (closed_)
    fail("the archive is closed");
  handBuffer();
}

void gxStoringArchive::raw_(char *bytes, std::size_t n)
{
  more_(n);
  if (n <= bufferSize) {
    std::memcpy(cursor_, bytes, n);
    cursor_ += n;
  } else {
    hand(reinterpret_cast<unsigned char *>(bytes), n);
    before_ += n;
  }
}

namespace
{

// Reads a stream from its present position to its end, through its buffer, so that its state stays as it is.
class WholeStream
{
 public:
  WholeStream(std::streambuf &buffer, std::size_t limit) : buffer_(buffer), limit_(limit)
  {
    start_ = buffer.pubseekoff(0, std::ios_base::cur, std::ios_base::in);
    std::size_t const expected = lengthLeft();
    if (expected <= limit_)
      read(std::max(expected + 1, bufferSize));  // one more than expected, to meet the end
    else
      tooLong_ = true;
  }

  std::int64_t start() const { return start_; }
  bool tooLong() const { return tooLong_; }
  std::size_t size() const { return size_; }
  std::unique_ptr<unsigned char[]> content() { return std::move(content_); }

 private:
  std::size_t lengthLeft()
  {
    if (start_ < 0)
      return 0;
    std::int64_t const end = buffer_.pubseekoff(0, std::ios_base::end, std::ios_base::in);
    buffer_.pubseekpos(start_, std::ios_base::in);
    return end > start_ ? static_cast<std::size_t>(end - start_) : 0;
  }

  void read(std::size_t capacity)
  {
    content_.reset(new unsigned char[capacity]);
    while (true) {
      auto const room = static_cast<std::streamsize>(capacity - size_);
      std::streamsize const n = buffer_.sgetn(reinterpret_cast<char *>(content_.get()) + size_, room);
      size_ += static_cast<std::size_t>(std::max<std::streamsize>(n, 0));
      tooLong_ = size_ > limit_;
      if (n < room || tooLong_)
        return;
      std::unique_ptr<unsigned char[]> larger(new unsigned char[2 * capacity]);
      std::memcpy(larger.get(), content_.get(), size_);
      content_ = std::move(larger);
      capacity *= 2;
    }
  }

  std::streambuf &buffer_;
  std::size_t limit_;
  std::int64_t start_ = -1;
  std::unique_ptr<unsigned char[]> content_;
  std::size_t size_ = 0;
  bool tooLong_ = false;
};

}  // namespace

gxLoadingArchive::gxLoadingArchive(std::istream &is, Limits const &limits)
    : gxArchive(false, limits), is_(is), start_(-1)
{
  if (!is)
    fail("the stream cannot be read");
  try {
    WholeStream stream(*is.rdbuf(), limits.maxBytes);
    if (stream.tooLong())
      fail("the stream is longer than the limit of " + std::to_string(limits.maxBytes) + " bytes");
    start_ = stream.start();
    content_ = stream.content();
    begin_ = cursor_ = content_.get();
    end_ = begin_ + stream.size();
  } catch (std::ios_base::failure const &e) {
    fail(std::string("the stream cannot be read: ") + e.what());
  }
  if (bytesLeft() < headerSize || std::memcmp(cursor_, magic.data(), magic.size()) != 0)
    fail("this is no archive");
  auto const version = gf_getLittle<std::uint32_t>(cursor_ + magic.size());
  cursor_ += magic.size();
  if (version != formatVersion)
    fail("an archive of format " + std::to_string(version) + ", which this release does not know");
  cursor_ += sizeof(formatVersion);
}

gxLoadingArchive::~gxLoadingArchive()
{
  if (start_ < 0)
    return;
  try {
    is_.rdbuf()->pubseekpos(start_ + static_cast<std::int64_t>(position()), std::ios_base::in);
  } catch (...) {  // the stream stays at its end
  }
}

std::size_t gxLoadingArchive::bytesLeft() const
{
  return static_cast<std::size_t>(end_ - cursor_);
}

void gxLoadingArchive::more_(std::size_t n)
{
  fail("the archive ends: " + std::to_string(n) + " bytes are due, but " + std::to_string(bytesLeft()) + " are left");
}

void gxLoadingArchive::raw_(char *, std::size_t n)
{
  more_(n);
}
