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

gxLoadingArchive::gxLoadingArchive(std::istream &is, Limits const &limits) : gxArchive(false, limits), is_(is)
{
  if (!is)
    fail("the stream cannot be read");
  try {
    open();
  } catch (std::ios_base::failure const &e) {
    fail(std::string("the stream cannot be read: ") + e.what());
  }
  passHeader();
}

gxLoadingArchive::~gxLoadingArchive()
{
  if (start_ < 0)
    return;
  try {
    is_.rdbuf()->pubseekpos(start_ + static_cast<std::int64_t>(position()), std::ios_base::in);
  } catch (...) {  // the stream stays where it is
  }
}

// Works below the stream, on its buffer, so that the state of the stream stays as it is.
void gxLoadingArchive::open()
{
  std::streambuf &stream = *is_.rdbuf();
  start_ = stream.pubseekoff(0, std::ios_base::cur, std::ios_base::in);
  if (start_ < 0)
    return readAll();
  std::int64_t const end = stream.pubseekoff(0, std::ios_base::end, std::ios_base::in);
  stream.pubseekpos(start_, std::ios_base::in);
  beyond_ = static_cast<std::uint64_t>(std::max<std::int64_t>(end - start_, 0));
  if (beyond_ > limits_.maxBytes)
    fail("the stream is longer than the limit of " + std::to_string(limits_.maxBytes) + " bytes");
  buffer_.reset(new unsigned char[bufferSize]);
  begin_ = cursor_ = end_ = buffer_.get();
}

void gxLoadingArchive::readAll()
{
  std::size_t size = 0;
  for (std::size_t capacity = bufferSize;; capacity *= 2) {
    std::unique_ptr<unsigned char[]> larger(new unsigned char[capacity]);
    if (size > 0)
      std::memcpy(larger.get(), buffer_.get(), size);
    buffer_ = std::move(larger);
    auto const room = static_cast<std::streamsize>(capacity - size);
    std::streamsize const n = is_.rdbuf()->sgetn(reinterpret_cast<char *>(buffer_.get()) + size, room);
    size += static_cast<std::size_t>(std::max<std::streamsize>(n, 0));
    if (size > limits_.maxBytes)
      fail("the stream is longer than the limit of " + std::to_string(limits_.maxBytes) + " bytes");
    if (n < room)
      break;
  }
  begin_ = cursor_ = buffer_.get();
  end_ = begin_ + size;
}

void gxLoadingArchive::passHeader()
{
  std::array<unsigned char, magic.size()> word{};
  if (bytesLeft() >= headerSize)
    raw(reinterpret_cast<char *>(word.data()), word.size());
  if (word != magic)
    fail("this is no archive");
  std::uint32_t version = 0;
  numbers(version);
  if (version != formatVersion)
    fail("an archive of format " + std::to_string(version) + ", which this release does not know");
}

// Keeps what is left in the buffer, and fills it.
void gxLoadingArchive::more_(std::size_t n)
{
  if (n > bytesLeft())
    fail("the archive ends: " + std::to_string(n) + " bytes are due, but " + std::to_string(bytesLeft()) + " are left");
  auto const kept = static_cast<std::size_t>(end_ - cursor_);
  std::memmove(begin_, cursor_, kept);
  before_ += static_cast<std::uint64_t>(cursor_ - begin_);
  cursor_ = begin_;
  end_ = begin_ + kept;
  std::size_t const coming = std::min<std::uint64_t>(beyond_, bufferSize - kept);
  read(end_, coming);
  end_ += coming;
}

void gxLoadingArchive::raw_(char *bytes, std::size_t n)
{
  if (n <= bufferSize || n > bytesLeft()) {
    more_(n);
    std::memcpy(bytes, cursor_, n);
    cursor_ += n;
    return;
  }
  auto const kept = static_cast<std::size_t>(end_ - cursor_);
  std::memcpy(bytes, cursor_, kept);
  before_ += static_cast<std::uint64_t>(end_ - begin_);
  cursor_ = end_ = begin_;
  read(reinterpret_cast<unsigned char *>(bytes) + kept, n - kept);
  before_ += n - kept;
}

void gxLoadingArchive::read(unsigned char *bytes, std::size_t n)
{
  std::streamsize got = 0;
  try {
    got = is_.rdbuf()->sgetn(reinterpret_cast<char *>(bytes), static_cast<std::streamsize>(n));
  } catch (std::ios_base::failure const &) {  // told below
  }
  if (got != static_cast<std::streamsize>(n))
    fail("the stream ends before its length");
  beyond_ -= n;
}
