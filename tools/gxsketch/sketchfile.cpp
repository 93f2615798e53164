#include "tools/gxsketch/sketchfile.h"

#include "foundation/archive.h"
#include "tools/support/errors.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <memory>
#include <sstream>

namespace
{
[[noreturn]] void failBySystem(std::string const &path)
{
  throw FileError(path + ": " + std::strerror(errno ? errno : EIO));
}
}  // namespace

gxUISketch readSketch(std::string const &path)
{
  errno = 0;
  std::ifstream is(path, std::ios::binary);
  // A folder can be opened, and fails when it is read.
  if (!is || (is.peek() == std::ifstream::traits_type::eof() && is.bad()))
    failBySystem(path);
  std::string where;
  try {
    gxUISketch sketch;
    gxLoadingArchive archive(is);
    try {
      archive || sketch;
    } catch (gxArchive::Errors const &) {
      throw;  // it names the byte
    } catch (gxException const &) {
      where = ", at byte " + std::to_string(archive.position());
      throw;
    }
    if (archive.bytesLeft() > 0)
      archive.fail("more than a sketch in the file");
    return sketch;
  } catch (gxException const &e) {
    throw FileError(path + ": " + e.message() + where);
  }
}

void writeSketch(std::string const &path, gxUISketch const &sketch)
{
  std::ostringstream stored;
  try {
    gxStoringArchive archive(stored);
    gxUISketch passing = sketch;
    archive || passing;
    archive.flush();
  } catch (gxException const &e) {
    throw FileError(path + ": " + e.message());
  }
  errno = 0;
  std::ofstream os(path, std::ios::binary);
  os << stored.str();
  os.close();
  if (!os)
    failBySystem(path);
}

void Record::appendTo(gxUISketch &sketch) const
{
  gxGraphicProps props;
  props.penColor(header.color());
  constexpr auto prefix = static_cast<signed char>(gx_SketchCode::props);
  sketch.opcode(prefix, header.hasProps() ? header.props() : props);
  sketch.opcode(static_cast<signed char>(header.opcode()), static_cast<signed char>(header.layer()), header.color());
  op.populateSketch(sketch);
}

long forEachRecord(gxUISketch const &sketch, std::function<void(Record const &)> const &operation)
{
  gxUISketch parsed = sketch;
  gx_UISketchOpHeader header;
  long number = 0;
  for (long at = 0; at < parsed.size(); ++number) {
    gx_UISketchOpData *made = nullptr;
    at += gfParseUISketch(parsed, at, header, &made);
    std::unique_ptr<gx_UISketchOpData> const op(made);
    operation({number, header, *op});
  }
  return number;
}
