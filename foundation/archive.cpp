#include "foundation/archive.h"

#include "foundation/bytes.h"
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
    text += std::string(", met by ") + file + " in line " + std::to_string(line);
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

// Wire is the type of the stored bytes, T that of the value.
template <class Wire, class T>
inline gxArchive &gxArchive::number(T &v)
{
  need(sizeof(Wire));
  if (mode_)
    gf_putLittle(cursor_, static_cast<Wire>(v));
  else
    v = static_cast<T>(gf_getLittle<Wire>(cursor_));
  cursor_ += sizeof(Wire);
  return *this;
}

gxArchive &gxArchive::operator||(bool &v)
{
  auto byte = static_cast<unsigned char>(v ? 1 : 0);
  number<unsigned char>(byte);
  if (byte > 1) {
    --cursor_;
    fail("a truth value of " + std::to_string(byte));
  }
  v = byte != 0;
  return *this;
}

gxArchive &gxArchive::operator||(signed char &v)
{
  return number<signed char>(v);
}

gxArchive &gxArchive::operator||(unsigned short &v)
{
  return number<std::uint16_t>(v);
}

gxArchive &gxArchive::operator||(int &v)
{
  return number<std::int32_t>(v);
}

gxArchive &gxArchive::operator||(unsigned int &v)
{
  return number<std::uint32_t>(v);
}

gxArchive &gxArchive::operator||(long &v)
{
  return number<std::int32_t>(v);
}

gxArchive &gxArchive::operator||(unsigned long &v)
{
  return number<std::uint32_t>(v);
}

gxArchive &gxArchive::operator||(float &v)
{
  return number<float>(v);
}

gxArchive &gxArchive::operator||(double &v)
{
  return number<double>(v);
}

gxArchive &operator||(gxArchive &archive, unsigned char &v)
{
  return archive.number<unsigned char>(v);
}

gxArchive &gxArchive::operator||(std::string &v)
{
  if (mode_ && v.size() > std::numeric_limits<std::uint32_t>::max())
    fail("a text of " + std::to_string(v.size()) + " bytes is too long to be stored");
  std::uint32_t size = static_cast<std::uint32_t>(v.size());
  number<std::uint32_t>(size);
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
  number<std::int32_t>(count);
  if (mode_)
    return count;
  if (count < 0)
    fail("a count of " + std::to_string(count));
  std::size_t const left = static_cast<std::size_t>(end_ - cursor_);
  if (static_cast<std::size_t>(count) > left / std::max<std::size_t>(bytesEach, 1))
    fail("a count of " + std::to_string(count) + " elements, but " + std::to_string(left) + " bytes are left");
  return count;
}

void gxArchive::requireBytes(std::size_t bytes, char const *what) const
{
  auto const left = static_cast<std::size_t>(end_ - cursor_);
  if (!mode_ && bytes > left)
    fail(std::string(what) + " takes " + std::to_string(bytes) + " bytes, but " + std::to_string(left) + " are left");
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
  if (archive.scrubs_)
    return current;
  archive.number<unsigned char>(current);
  return current;
}
