#include "tools/support/output.h"

#include "tools/support/errors.h"

#include <cerrno>
#include <cstring>

std::string reasonOf(int error)
{
  std::string const said = std::strerror(error ? error : EIO);
  switch (error) {
    case ENOENT:
    case ENOTDIR:
      return said + "; see how its name, and those of its folders, are spelled";
    case EACCES:
    case EPERM:
    case EROFS:
      return said + "; take another place, or have its rights changed";
    case EISDIR:
      return said + "; name a file, or for check a folder with footprints (.kicad_mod) below it";
    case ENOSPC:
      return said + "; make room, or take another place";
    default:
      return said;
  }
}

OutputFile::OutputFile(std::string const &path) : path_(path)
{
  errno = 0;
  os_.open(path, std::ios::binary);
  if (!os_)
    throw FileError(path + ": " + reasonOf(errno));
}

void OutputFile::finish()
{
  bool const hasFailed = !os_;
  os_.clear();  // trying again tells why
  errno = 0;
  if (!os_.flush() || hasFailed)
    throw FileError(path_ + ": " + reasonOf(errno));
}
