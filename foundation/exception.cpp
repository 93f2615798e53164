#include "foundation/exception.h"

#include "foundation/archive.h"

#include <sstream>

gxException::gxException() = default;
gxException::gxException(gxException const &e) : gxPersistent(e), std::exception(e) {}
gxException::~gxException() = default;

gxException &gxException::operator=(gxException const &e)
{
  what_.clear();
  gxPersistent::operator=(e);
  std::exception::operator=(e);
  return *this;
}

char const *gxException::className() const
{
  return "gxException";
}

long gxException::errorNumber() const
{
  return 0x10001000;
}

void gxException::suicideAndRethrow()
{
  gf_deleteAndThrow(this);
}

std::string gxException::message() const
{
  std::ostringstream text;
  message_(text);
  return text.str();
}

void gxException::message_(std::ostream &os) const
{
  os << "an operation failed";
}

char const *gxException::what() const noexcept
{
  try {
    if (what_.empty())
      what_ = std::string(className()) + ": " + message();
    return what_.c_str();
  } catch (...) {  // no memory for the text
    return className();
  }
}

GX_PERSISTENT_IMPL(gxException, "gxException", 0)
void gxException::serialize_(gxArchive &archive, unsigned char version)
{
  gf_refuseVersion(version, "gxException");
  gxPersistent::dispatchSerialize(archive);
  if (archive.isLoading())
    what_.clear();
}

gxExceptionWithString::gxExceptionWithString() = default;
gxExceptionWithString::gxExceptionWithString(std::string text) : text_(std::move(text)) {}
gxExceptionWithString::gxExceptionWithString(gxExceptionWithString const &) = default;
gxExceptionWithString &gxExceptionWithString::operator=(gxExceptionWithString const &) = default;
gxExceptionWithString::~gxExceptionWithString() = default;

char const *gxExceptionWithString::className() const
{
  return "gxExceptionWithString";
}

long gxExceptionWithString::errorNumber() const
{
  return 0x10001001;
}

void gxExceptionWithString::suicideAndRethrow()
{
  gf_deleteAndThrow(this);
}

void gxExceptionWithString::message_(std::ostream &os) const
{
  os << text_;
}

GX_PERSISTENT_IMPL(gxExceptionWithString, "gxExceptionWithString", 0)
void gxExceptionWithString::serialize_(gxArchive &archive, unsigned char version)
{
  gf_refuseVersion(version, "gxExceptionWithString");
  gxException::dispatchSerialize(archive);
  archive || text_;
}

void gf_refuseVersion(unsigned char version, char const *className)
{
  if (version != 0)
    throw gxArchive::UnknownVersion(className, 0);
}

GX_EXCEPTION_IMPL(gxBadPointer, gxException, gxBadPointer, 0x10001002, "a null handle was dereferenced")
