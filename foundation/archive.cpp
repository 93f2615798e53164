#include "foundation/archive.h"

#include "foundation/detail/archivepass.h"
#include "foundation/detail/objecttable.h"

#include <cstring>
#include <limits>

GX_EXCEPTION_WITH_STRING_IMPL(gxArchive::Errors, gxExceptionWithString, Errors, 0x10001010)

namespace
{

// Which archive a class is most likely reading from when it finds an unknown version; null if that is not certain.
gxArchive const *archiveInUse()
{
  if (gx_Pass const *const pass = gx_Pass::innermost())
    return &pass->archive();
  gxArchive const *only = nullptr;
  for (gx_ObjectTable const *table = gx_ObjectTable::living(); table; table = table->older()) {
    if (table->archive().isStoring())
      continue;
    if (only)
      return nullptr;
    only = &table->archive();
  }
  return only;
}

std::string unknownVersionText(char const *file, long line)
{
  std::string text = "a version that this release does not know";
  if (file)
    text += std::string(", met by ") + file;
  if (file && line > 0)
    text += " in line " + std::to_string(line);
  if (gxArchive const *const archive = archiveInUse(); archive && archive->isLoading())
    text += ", at byte " + std::to_string(archive->position());
  return text;
}

}  // namespace

gxArchive::UnknownVersion::UnknownVersion() = default;
gxArchive::UnknownVersion::UnknownVersion(char const *file, long line)
    : Errors(unknownVersionText(file, line)), file_(file ? file : ""), line_(line)
{
}
gxArchive::UnknownVersion::UnknownVersion(UnknownVersion const &) = default;
gxArchive::UnknownVersion &gxArchive::UnknownVersion::operator=(UnknownVersion const &) = default;
gxArchive::UnknownVersion::~UnknownVersion() = default;

char const *gxArchive::UnknownVersion::className() const
{
  return "gxArchive::UnknownVersion";
}

long gxArchive::UnknownVersion::errorNumber() const
{
  return 0x10001011;
}

void gxArchive::UnknownVersion::suicideAndRethrow()
{
  gf_deleteAndThrow(this);
}

GX_PERSISTENT_IMPL(gxArchive::UnknownVersion, "gxArchive::UnknownVersion", 0)
void gxArchive::UnknownVersion::serialize_(gxArchive &archive, unsigned char version)
{
  gf_refuseVersion(version, "gxArchive::UnknownVersion");
  Errors::dispatchSerialize(archive);
  archive || file_ || line_;
}

gxArchive::gxArchive(bool storing, Limits const &limits)
    : mode_(storing), limits_(limits), objects_(std::make_unique<gx_ObjectTable>(*this))
{
}

gxArchive::~gxArchive() = default;

void gxArchive::refuseBool(unsigned char byte)
{
  --cursor_;
  fail("a truth value of " + std::to_string(byte));
}

gxArchive &gxArchive::operator||(std::string &v)
{
  if (mode_ && v.size() > std::numeric_limits<std::uint32_t>::max())
    fail("a text of " + std::to_string(v.size()) + " bytes is too long to be stored");
  std::uint32_t size = static_cast<std::uint32_t>(v.size());
  numbers(size);
  if (!mode_) {
    if (size > limits_.maxString)
      fail("a text of " + std::to_string(size) + " bytes is longer than the limit of " +
           std::to_string(limits_.maxString));
    requireBytes(size, "a text");
    v.resize(size);
  }
  return raw(v.data(), static_cast<long>(size));
}

gxArchive &gxArchive::raw(char *bytes, long n)
{
  if (n < 0)
    fail("a block of " + std::to_string(n) + " bytes");
  auto const size = static_cast<std::size_t>(n);
  if (size == 0)
    return *this;
  if (size > static_cast<std::size_t>(end_ - cursor_)) {
    raw_(bytes, size);
    return *this;
  }
  if (mode_)
    std::memcpy(cursor_, bytes, size);
  else
    std::memcpy(bytes, cursor_, size);
  cursor_ += size;
  return *this;
}

long gxArchive::passCount(long count, std::size_t bytesEach)
{
  if (count < 0 || count > std::numeric_limits<std::int32_t>::max())
    fail("a count of " + std::to_string(count));
  numbers(count);
  if (mode_)
    return count;
  if (count < 0)
    fail("a count of " + std::to_string(count));
  if (static_cast<std::uint64_t>(count) > bytesLeft() / std::max<std::size_t>(bytesEach, 1))
    fail("a count of " + std::to_string(count) + " elements, but " + std::to_string(bytesLeft()) + " bytes are left");
  return count;
}

void gxArchive::requireBytes(std::size_t bytes, char const *what) const
{
  if (!mode_ && bytes > bytesLeft())
    fail(std::string(what) + " takes " + std::to_string(bytes) + " bytes, but " + std::to_string(bytesLeft()) +
         " are left");
}

std::uint64_t gxArchive::bytesLeft() const
{
  return mode_ ? 0 : beyond_ + static_cast<std::uint64_t>(end_ - cursor_);
}

bool gxArchive::isPassing(gxPersistent const &object) const
{
  return gx_Pass::isPassing(*this, object);
}

std::uint64_t gxArchive::position() const
{
  return before_ + static_cast<std::uint64_t>(cursor_ - begin_);
}

void gxArchive::fail(std::string const &what) const
{
  throw Errors(what + ", at byte " + std::to_string(position()));
}

unsigned char gf_passVersion(gxArchive &archive, unsigned char current)
{
  if (!archive.scrubs_)
    archive || current;
  return current;
}

bool gf_enterClass(gxArchive &archive, void const *part, std::size_t size, void const *level, unsigned char &version)
{
  if (gx_Pass *const pass = archive.pass_) {
    gx_Pass::Mark const mark(part, size, level);
    if (pass->isMarked(mark))
      return false;
    pass->mark(mark);
  }
  if (!archive.scrubs_)
    archive || version;
  return true;
}
