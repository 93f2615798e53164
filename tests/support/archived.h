#pragma once

/// @file
/// What a value looks like in an archive: for tests that pin bytes or damage them.

#include "foundation/archive.h"

#include <memory>
#include <sstream>
#include <string>

/// The stream of an archive up to the value, which a single byte precedes.
inline std::string archivedHead()
{
  std::ostringstream os;
  gxStoringArchive archive(os);
  unsigned char before = 0x5A;
  archive || before;
  archive.flush();
  return os.str();
}

/// The bytes of @p value alone.
template <class T>
std::string archivedBytes(T value)
{
  std::ostringstream os;
  gxStoringArchive archive(os);
  unsigned char before = 0x5A;
  archive || before || value;
  archive.flush();
  return os.str().substr(archivedHead().size());
}

/// Loads @p value from such bytes.
template <class T>
void loadArchived(std::string const &bytes, T &value)
{
  std::istringstream is(archivedHead() + bytes);
  gxLoadingArchive archive(is);
  unsigned char before = 0;
  archive || before || value;
}

/// The value behind storing and loading.
template <class T>
T throughArchive(T const &value)
{
  T loaded{};
  loadArchived(archivedBytes(value), loaded);
  return loaded;
}

/// The object that comes out of an archive that stored @p object behind a pointer.
template <class T>
std::unique_ptr<T> throughPointer(gxPersistent *object)
{
  std::stringstream stream;
  gxPersistent *passed = nullptr;
  {
    gxStoringArchive storing(stream);
    gxPersistent::serializePointer(storing, object, passed);
  }
  gxLoadingArchive loading(stream);
  gxPersistent::serializePointer(loading, nullptr, passed);
  return std::unique_ptr<T>(dynamic_cast<T *>(passed));
}

/// A string from numbers of 0 to 255.
inline std::string bytesOf(std::initializer_list<int> bytes)
{
  std::string s;
  for (int const b : bytes)
    s += static_cast<char>(b);
  return s;
}

/// Calls @p visit with @p good cut short in every way, then with each of its bytes changed in turn.
template <class Visit>
void forDamaged(std::string const &good, Visit visit)
{
  for (std::size_t n = 0; n < good.size(); ++n)
    visit(good.substr(0, n));
  for (std::size_t n = 0; n < good.size(); ++n)
    for (int const damage : {0x01, 0x10, 0x7f, 0xff}) {
      std::string bad = good;
      bad[n] = static_cast<char>(bad[n] ^ damage);
      visit(bad);
    }
}

/// Loads @p bytes with the byte at @p at changed to @p to, which must be refused as an unknown version that names
/// @p file and @p line (negative: some line), without a change of @p value. Returns what went otherwise, or nothing.
template <class T>
std::string refusalOfVersion(std::string bytes, std::size_t at, T value, std::string const &file, long line, int to = 1)
{
  bytes.at(at) = static_cast<char>(to);
  T const before = value;
  try {
    loadArchived(bytes, value);
  } catch (gxArchive::UnknownVersion const &e) {
    if (e.file() != file)
      return "names file " + e.file();
    if (line < 0 ? e.line() <= 0 : e.line() != line)
      return "names line " + std::to_string(e.line());
    return value == before ? "" : "changed the value";
  } catch (std::exception const &e) {
    return e.what();
  }
  return "accepted";
}
