#include "dispc/sketchop.h"

#include "dispc/detail/sketchop_table.h"
#include "dispc/sketchop_areas.h"
#include "dispc/sketchop_blocks.h"
#include "dispc/sketchop_curves.h"
#include "dispc/sketchop_images.h"
#include "dispc/sketchop_shapes.h"
#include "dispc/sketchop_text.h"
#include "dispc/uierror.h"
#include "foundation/archive.h"

#include <algorithm>
#include <array>
#include <memory>

namespace
{
constexpr char const *module = "dispc/sketchop";

// ---------------------------------------------------------------- the op of each code

template <class Op>
gx_UISketchOpData *make()
{
  return new Op;
}

/// No op has the code as its payload: one that is not assigned, or the properties.
constexpr gx_UISketchOpData *(*none)() = nullptr;

struct OpRow {
  gx_SketchCode code;
  gx_UISketchOpData *(*make)();
};

/// The ops, row i for code i of gf_sketchCodes, which tells the rest about each.
constexpr std::array<OpRow, gf_sketchCodes.size()> ops = {{
    {gx_SketchCode::point, make<gx_UISketchOpPoint>},
    {gx_SketchCode::pointIcon, make<gx_UISketchOpPointIcon>},
    {gx_SketchCode::lineSeg, make<gx_UISketchOpLineSeg>},
    {gx_SketchCode::line, make<gx_UISketchOpLine>},
    {gx_SketchCode::circle, make<gx_UISketchOpCircle>},
    {gx_SketchCode::ellipse, make<gx_UISketchOpEllipse>},
    {gx_SketchCode::ellipseArc, make<gx_UISketchOpEllipseArc>},
    {gx_SketchCode::ellipseAnnulusSection, make<gx_UISketchOpEllipseAnnSect>},
    {gx_SketchCode::genRect, make<gx_UISketchOpGenRect>},
    {gx_SketchCode::genAnnulus, make<gx_UISketchOpGenAnn>},
    {gx_SketchCode::coordAxes, make<gx_UISketchOpCoordAxes>},
    {gx_SketchCode::string, make<gx_UISketchOpString>},
    {gx_SketchCode::pelBuffer8, make<gx_UISketchOpPelBuf8>},
    {gx_SketchCode(13), none},
    {gx_SketchCode::rleBuffer, make<gx_UISketchOpRleBuf>},
    {gx_SketchCode::sketch, make<gx_UISketchOpSketch>},
    {gx_SketchCode::setRect, make<gx_UISketchOpSet>},
    {gx_SketchCode::setAll, make<gx_UISketchOpSetAll>},
    {gx_SketchCode::setComplement, make<gx_UISketchOpSetComp>},
    {gx_SketchCode::fill, make<gx_UISketchOpFill>},
    {gx_SketchCode::drawStart, make<gx_UISketchOpDrawStart>},
    {gx_SketchCode::drawTo, make<gx_UISketchOpDrawTo>},
    {gx_SketchCode::drawToRelPels, make<gx_UISketchOpDrawToRelPels>},
    {gx_SketchCode::moveToRelPels, make<gx_UISketchOpMoveToRelPels>},
    {gx_SketchCode(24), none},
    {gx_SketchCode::outline3D, make<gx_UISketchOpOutline3d>},
    {gx_SketchCode::arrow, make<gx_UISketchOpArrow>},
    {gx_SketchCode::affineRectangle, make<gx_UISketchOpAffineRect>},
    {gx_SketchCode::polygon, make<gx_UISketchOpPolygon>},
    {gx_SketchCode::circleFilled, make<gx_UISketchOpCircle>},
    {gx_SketchCode::ellipseFilled, make<gx_UISketchOpEllipse>},
    {gx_SketchCode::genRectFilled, make<gx_UISketchOpGenRect>},
    {gx_SketchCode::rect, make<gx_UISketchOpRect>},
    {gx_SketchCode::genShape, make<gx_UISketchOpGenShape>},
    {gx_SketchCode::genPoly, gf_makeGenPolyOp},
    {gx_SketchCode::unicodeString, make<gx_UISketchOpUnicodeString>},
    {gx_SketchCode(36), none},
    {gx_SketchCode::cross, make<gx_UISketchOpCross>},
    {gx_SketchCode::genPolyVertices, gf_makeGenPolyOp},
    {gx_SketchCode::ellipseAnnulusSectionFlags, make<gx_UISketchOpEllipseAnnSectArrowheadFlag>},
    {gx_SketchCode::props, none},
    {gx_SketchCode::wireframe, gf_makeWireframeOp},
    {gx_SketchCode::bezierCurve, make<gx_UISketchOpBezierCurve>},
    {gx_SketchCode::cubicSpline, make<gx_UISketchOpCubicSpline>},
    {gx_SketchCode::polyline, make<gx_UISketchOpPolyline>},
    {gx_SketchCode::ellipse2, make<gx_UISketchOpEllipse2>},
    {gx_SketchCode::ellipseArc2, make<gx_UISketchOpEllipseArc2>},
    {gx_SketchCode::clipRect, make<gx_UISketchOpClipRect>},
}};

constexpr bool eachCodeHasItsRow()
{
  for (std::size_t i = 0; i < ops.size(); ++i) {
    gx_SketchCode const code = ops[i].code;
    bool const isPayload = gf_sketchCodes[i].name && code != gx_SketchCode::props;
    if (code != gf_sketchCodes[i].code || (ops[i].make != nullptr) != isPayload)
      return false;
  }
  return true;
}
static_assert(eachCodeHasItsRow(), "row i of the ops makes the op of code i");

}  // namespace

gx_UISketchOpData *gfCreateUISketchOpData(long opcode)
{
  if (opcode < 0 || opcode >= static_cast<long>(ops.size()) || !ops[static_cast<std::size_t>(opcode)].make)
    throw gxUIError::InvalidUISketch();
  return ops[static_cast<std::size_t>(opcode)].make();
}

// ---------------------------------------------------------------- the header

gx_UISketchOpHeader::~gx_UISketchOpHeader() = default;

gx_UISketchOpHeader &gx_UISketchOpHeader::operator=(gx_UISketchOpHeader const &other)
{
  mutating();
  hasProps_ = other.hasProps_;
  propsVersion_ = other.propsVersion_;
  props_ = other.props_;
  layer_ = other.layer_;
  color_ = other.color_;
  opcode_ = other.opcode_;
  return *this;
}

void gx_UISketchOpHeader::reInit()
{
  mutating();
  props_ = gxGraphicProps();  // whether read or not: who holds the header can change them
  hasProps_ = false;
  propsVersion_ = 0;
  layer_ = gx_UITabletBase::both;
  color_ = gxColor::cyanColor();
  props_.penColor_ = color_;
  opcode_ = -1;
}

/// Checks before it stores.
void gx_UISketchOpHeader::readProps(unsigned char const *prefix)
{
  auto const version = static_cast<signed char>(prefix[1]);
  if (version != 0 || prefix[gf_sketchPrefixSize] == prefix[0])
    throw gxUIError::InvalidUISketch();
  gxGraphicProps read;
  read.opcode(&read, prefix + 2);
  props_ = read;
  propsVersion_ = version;
  hasProps_ = true;
}

void gx_UISketchOpHeader::populateSketch(gxUISketch &sketch) const
{
  if (hasProps_)
    sketch.opcode(static_cast<signed char>(gx_SketchCode::props), props_);
  sketch.opcode(static_cast<signed char>(opcode_), static_cast<signed char>(layer_), color_);
}

GX_PERSISTENT_IMPL(gx_UISketchOpHeader, "gx_UISketchOpHeader", 0)
void gx_UISketchOpHeader::serialize_(gxArchive &archive, unsigned char version)
{
  if (version != 0)
    throw gxArchive::UnknownVersion(module, __LINE__);
  gxPersistent::dispatchSerialize(archive);
  archive || hasProps_;
  if (hasProps_) {
    archive || propsVersion_;
    if (propsVersion_ != 0)
      archive.fail("properties of version " + std::to_string(propsVersion_) + " in a record");
    archive || props_;
    if (props_.penWidth() < 0)
      archive.fail("a pen width of " + std::to_string(props_.penWidth()) + " in a record");
  }
  archive || layer_ || color_ || opcode_;
  if (layer_ < 0 || layer_ > 0xFF)
    archive.fail("layer " + std::to_string(layer_) + " in a record");
}

std::ostream &operator<<(std::ostream &os, gx_UISketchOpHeader const &header)
{
  static constexpr std::array layers = {"image", "overlay", "both"};
  gx_SketchCodeInfo const *const info = gf_sketchCodeInfo(header.opcode());
  if (info)
    os << info->name;
  else
    os << "code " << header.opcode();
  if (auto const layer = static_cast<std::size_t>(header.layer()); layer < layers.size())
    os << ", " << layers[layer];
  else
    os << ", layer " << static_cast<long>(header.layer());
  if (header.hasProps())
    return os << ", " << header.props();
  return os << ", " << header.color();
}

// ---------------------------------------------------------------- the payload

gx_UISketchOpData::~gx_UISketchOpData() = default;

gx_UISketchOpData &gx_UISketchOpData::operator=(gx_UISketchOpData const &)
{
  mutating();
  return *this;
}

long gx_UISketchOpData::parseVersion0ByteStream(unsigned char const *bytes)
{
  return parseWithin(bytes, std::numeric_limits<long>::max(), true);
}

GX_PERSISTENT_ABSTRACT_IMPL(gx_UISketchOpData, 0)
void gx_UISketchOpData::serialize_(gxArchive &archive, unsigned char version)
{
  if (version != 0)
    throw gxArchive::UnknownVersion(module, __LINE__);
  gxPersistent::dispatchSerialize(archive);
}

// ---------------------------------------------------------------- records

long gfParseUISketch(gxUISketch &sketch, long offset, gx_UISketchOpHeader &header, gx_UISketchOpData **data)
{
  if (data)
    *data = nullptr;
  if (offset < 0 || offset > sketch.size() || !gf_holdsHead(sketch.bytes() + offset, sketch.size() - offset))
    throw gxUIError::InvalidUISketch();
  unsigned char const *const at = sketch.bytes() + offset;
  long const head = header.parseByteStream(at);
  std::unique_ptr<gx_UISketchOpData> op(gfCreateUISketchOpData(header.opcode()));
  long const payload = op->parseWithin(at + head, sketch.size() - offset - head);
  if (data)
    *data = op.release();
  return head + payload;
}

void gfDumpUISketch(std::ostream &os, gxUISketch &sketch)
{
  long number = 0;
  for (long at = 0; at < sketch.size(); ++number) {
    gx_UISketchOpHeader header;
    gx_UISketchOpData *made = nullptr;
    long const bytes = gfParseUISketch(sketch, at, header, &made);
    std::unique_ptr<gx_UISketchOpData> const op(made);
    os << number << " at " << at << ": " << header;
    if (op->size() > 0)
      os << ": " << *op;
    os << '\n';
    at += bytes;
  }
}

// ---------------------------------------------------------------- views

gx_StreamView::gx_StreamView(gx_StreamView const &other) : bytes_(other.bytes_)
{
  if (other.owns_)
    std::copy_n(other.bytes_, other.size_, own(other.size_));
}

gx_StreamView &gx_StreamView::operator=(gx_StreamView const &other)
{
  if (this == &other)
    return *this;
  if (other.owns_)
    std::copy_n(other.bytes_, other.size_, own(other.size_));
  else
    look(other.bytes_);
  return *this;
}

unsigned char *gx_StreamView::own(std::size_t n)
{
  auto *const taken = new unsigned char[n];
  look(taken);
  owns_ = true;
  size_ = n;
  return taken;
}
