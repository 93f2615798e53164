#include "dispc/dispprop.h"

#include "foundation/archive.h"
#include "foundation/numbers.h"

GX_EXCEPTION_IMPL(gxGraphicProps::BadParams, gxException, BadParams, 0x10004513,
                  "a pen width is a number of pels from 0 to 2147483647")

namespace
{
/// Passes an enumeration as an int; any value is kept.
template <class E>
void passEnum(gxArchive &archive, E &field)
{
  int value = field;
  archive || value;
  field = static_cast<E>(value);
}
}  // namespace

gxGraphicProps::gxGraphicProps(gxColor const &penColor, long penWidth, gePenStyle penStyle, bool fill)
    : penColor_(penColor)
{
  coded_.penWidth = checkedWidth(penWidth);
  coded_.penStyle = penStyle;
  coded_.fill = fill;
}

gxGraphicProps::~gxGraphicProps() = default;

void gxGraphicProps::throwBadParams()
{
  throw BadParams();
}

void gxGraphicProps::decode(unsigned char const *from, gxGraphicProps &target)
{
  target.fill(from[0] != 0);
  target.penWidth(gf_getLittle<std::int32_t>(from + 1));
  target.penStyle(gf_getLittle<gePenStyle>(from + 5));
  target.penJoin(gf_getLittle<gePenJoin>(from + 9));
  target.penEndCap(gf_getLittle<gePenEndCap>(from + 13));
  target.arrowHead(from[17] != 0);
  target.arrowHeadForward(from[18] != 0);
  target.showVertex(from[19] != 0);
}

long gxGraphicProps::opcode(gxGraphicProps *target, unsigned char const *bytes) const
{
  if (!target || !bytes)
    return 0;
  decode(bytes, *target);
  return codedSize - 1;
}

GX_PERSISTENT_IMPL(gxGraphicProps, "gxGraphicProps", 0)
void gxGraphicProps::serialize_(gxArchive &archive, unsigned char version)
{
  if (version != 0)
    throw gxArchive::UnknownVersion("dispc/dispprop", __LINE__);
  gxPersistent::dispatchSerialize(archive);
  long width = coded_.penWidth;
  archive || penColor_ || width;
  coded_.penWidth = gf_narrow(width);
  passEnum(archive, coded_.penStyle);
  archive || coded_.fill;
  passEnum(archive, coded_.penJoin);
  passEnum(archive, coded_.penEndCap);
  archive || coded_.arrowHead || coded_.arrowHeadForward || coded_.showVertex;
}

std::ostream &operator<<(std::ostream &os, gxGraphicProps const &props)
{
  os << props.penColor() << ", width " << props.penWidth();
  if (props.fill())
    os << ", fill";
  if (props.penStyle() != 0)
    os << ", style " << static_cast<int>(props.penStyle());
  if (props.penJoin() != 0)
    os << ", join " << static_cast<int>(props.penJoin());
  if (props.penEndCap() != 0)
    os << ", cap " << static_cast<int>(props.penEndCap());
  if (!props.arrowHead())
    os << ", no arrowheads";
  else if (!props.arrowHeadForward())
    os << ", arrowheads backward";
  if (props.showVertex())
    os << ", vertices";
  return os;
}
