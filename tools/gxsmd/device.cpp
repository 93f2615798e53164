#include "tools/gxsmd/device.h"

#include "foundation/archive.h"
#include "tools/support/errors.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace
{

constexpr std::string_view archiveStart = "gxar";

void passModels(gxArchive &archive, gxFootprintModels &models)
{
  for (gxSMDGDModel *const model : {&models.pads, &models.body, &models.courtyard})
    archive || static_cast<gxPersistent &>(*model);
}

}  // namespace

std::string contentOf(std::string const &path)
{
  errno = 0;
  std::error_code unknown;
  std::ifstream is(path, std::ios::binary);
  auto const size = fs::file_size(path, unknown);
  std::string text(unknown ? 4096 : static_cast<std::size_t>(size) + 1, '\0');  // one more, so that the end is met
  std::size_t read = 0;
  while (is.read(text.data() + read, static_cast<std::streamsize>(text.size() - read))) {
    read = text.size();
    text.resize(2 * read);
  }
  text.resize(read + static_cast<std::size_t>(is.gcount()));
  if (!is.eof())
    throw FileError(path + ": " + std::strerror(fs::is_directory(path, unknown) ? EISDIR : errno ? errno : EIO));
  return text;
}

Device readDevice(std::string const &path)
{
  Device device;
  device.path = path;
  device.footprint.name = fs::path(path).stem().string();
  std::string const text = contentOf(path);
  try {
    if (text.substr(0, archiveStart.size()) == archiveStart) {
      std::ifstream is(path, std::ios::binary);
      gxLoadingArchive archive(is);
      passModels(archive, device.models);
    } else {
      device.footprint = gxFootprint::read(text);
      device.models = gfFootprintModels(device.footprint);
    }
  } catch (gxException const &e) {
    throw FileError(path + ": " + e.message());
  }
  return device;
}

void writeModels(std::string const &path, gxFootprintModels const &models)
{
  errno = 0;
  std::ofstream os(path, std::ios::binary);
  gxFootprintModels stored = models;
  if (os) {
    gxStoringArchive archive(os);
    passModels(archive, stored);
    archive.flush();
  }
  if (!os.flush())
    throw FileError(path + ": " + std::strerror(errno ? errno : EIO));
}

std::vector<std::string> footprintsIn(std::vector<std::string> const &paths)
{
  std::vector<std::string> files;
  for (std::string const &path : paths) {
    if (!fs::is_directory(path)) {
      files.push_back(path);
      continue;
    }
    std::size_t const before = files.size();
    std::error_code error;
    for (fs::recursive_directory_iterator i(path, error), end; i != end && !error; i.increment(error))
      if (i->path().extension() == ".kicad_mod")
        files.push_back(i->path().string());
    if (error)
      throw FileError(path + ": " + error.message());
    if (files.size() == before)
      throw FileError(path + ": there is no footprint (.kicad_mod) below it");
    std::sort(files.begin() + static_cast<std::ptrdiff_t>(before), files.end());
  }
  return files;
}
