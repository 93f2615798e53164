#include "dispc/graphic_flat.h"

#include "dispc/color.h"
#include "dispc/glist.h"
#include "dispc/glist_el.h"
#include "dispc/graphic_special.h"
#include "dispc/uitablet.h"
#include "foundation/failure.h"

#include <cstring>
#include <string>
#include <vector>

namespace
{

// Records are packed: numbers lie anywhere, and are copied out.
class PayloadReader
{
 public:
  explicit PayloadReader(gxr_record const &record) : at_(record.payload) {}

  template <class Number>
  Number number()
  {
    Number value;
    std::memcpy(&value, at_, sizeof value);
    at_ += sizeof value;
    return value;
  }
  double real() { return number<double>(); }
  std::int32_t word() { return number<std::int32_t>(); }
  gxVector<2> vector()
  {
    double const x = real();
    return {x, real()};
  }
  std::string text(std::int32_t length)
  {
    return std::string(reinterpret_cast<char const *>(at_), std::size_t(length));
  }

 private:
  unsigned char const *at_;
};

gxEllipse2 readCircle(PayloadReader &from)
{
  gxVector<2> const center = from.vector();
  double const r = from.real();
  return gxEllipse2(gxVector<2>(r, r), gxRadian(0.0), center);
}

gxEllipse2 readEllipse(PayloadReader &from)
{
  gxVector<2> const center = from.vector(), radii = from.vector();
  gxRadian const angle(from.real()), phase(from.real());
  return gxEllipse2(radii, angle, center, from.real() != 0.0, phase);
}

gxGenRect readGenRect(PayloadReader &from)
{
  gxVector<2> const center = from.vector(), size = from.vector();
  gxRadian const angle(from.real());
  return gxGenRect(center, size, angle, from.vector());
}

gxPolyline readPolyline(PayloadReader &from)
{
  std::vector<gxVector<2>> vertices(static_cast<std::size_t>(from.word()));
  bool const closed = from.word() != 0;
  for (gxVector<2> &v : vertices)
    v = from.vector();
  return gxPolyline(std::move(vertices), closed);
}

gxLineSegSet readLineSegSet(PayloadReader &from)
{
  std::vector<gxLineSeg> segments(static_cast<std::size_t>(from.word()));
  for (gxLineSeg &s : segments) {
    gxVector<2> const start = from.vector();
    s = gxLineSeg(start, from.vector());
  }
  return gxLineSegSet(std::move(segments));
}

gxGraphicText readText(PayloadReader &from, gxColor const &color)
{
  gxPoint const place(from.vector());
  // Any code may arrive: one out of range aligns nothing.
  auto const alignment = static_cast<gxUIFormat::Alignment>(static_cast<std::uint32_t>(from.word()) - 1u);
  std::int32_t const length = from.word();
  return gxGraphicText(from.text(length), place, color, gxGraphicText().backgroundColor(), gxUIFormat(alignment),
                       gxVector<2>());
}

// Hands the shape of a record to sink(shape, color), a text and a point as their graphics.
template <class Sink>
void readRecord(gxr_record const &record, Sink &sink)
{
  PayloadReader from(record);
  gxColor const color = gfColor(record.color);
  auto const vectors = [&](auto make) {
    gxVector<2> const first = from.vector();
    sink(make(first, from.vector()), color);
  };
  switch (record.type) {
    case gxr_lineSeg:
      return vectors([](gxVector<2> const &a, gxVector<2> const &b) { return gxLineSeg(a, b); });
    case gxr_line:
      return vectors([](gxVector<2> const &dir, gxVector<2> const &pos) { return gxLine(dir, pos); });
    case gxr_rect:
      return vectors([](gxVector<2> const &corner, gxVector<2> const &size) { return gxRect(corner, size); });
    case gxr_genRect:
      return sink(readGenRect(from), color);
    case gxr_circle:
      return sink(readCircle(from), color);
    case gxr_ellipse:
      return sink(readEllipse(from), color);
    case gxr_polyline:
      return sink(readPolyline(from), color);
    case gxr_affineRect: {
      gxVector<2> const po = from.vector(), px = from.vector();
      return sink(gxAffineRectangle(po, px, from.vector()), color);
    }
    case gxr_text:
      return sink(readText(from, color));
    case gxr_lineSegSet:
      return sink(readLineSegSet(from), color);
    case gxr_point:
      break;
  }
  sink(gxGraphicPointIcon(gxPoint(from.vector()), color));
}

// The one walk through a flat list, for both ways of reading it.
template <class Sink>
void readList(gxr_list const *flat, Sink sink)
{
  if (!flat)
    return;
  std::size_t at = 0;
  for (std::int32_t i = 0; i < flat->count; ++i) {
    gxr_record record;
    gfThrowExceptionOnFailure(gxr_list_read(flat, &at, &record));
    readRecord(record, sink);
  }
}

struct ListSink {
  gxGraphicList &list;

  void operator()(gxRect const &r, gxColor const &c) { append(new gxGraphicWithFill<gxRect, gxGenRect>(r, c, false)); }
  void operator()(gxGenRect const &r, gxColor const &c)
  {
    append(new gxGraphicWithFill<gxGenRect, gxGenRect>(r, c, false));
  }
  void operator()(gxEllipse2 const &e, gxColor const &c)
  {
    append(new gxGraphicWithFill<gxEllipse2, gxEllipse2>(e, c, false));
  }
  template <class Shape>
  void operator()(Shape const &shape, gxColor const &c)
  {
    append(new gxGraphicSimple<Shape>(shape, c));
  }
  void operator()(gxGraphic const &graphic) { append(graphic.clone()); }
  void append(gxPtrHandle<gxGraphic> const &graphic) { list.append(graphic, false); }
};

struct TabletSink {
  gxUITablet &tablet;
  gxUITablet::Layers layer;

  template <class Shape>
  void operator()(Shape const &shape, gxColor const &c)
  {
    tablet.draw(shape, gxGraphicProps(c, 1, gxGraphicProps::penSolid, false), layer);
  }
  void operator()(gxGraphic const &graphic) { tablet.draw(graphic, layer); }
};

// Back: each returns true if the graphic is of the class, and the code of what it appended.

using Append = bool (*)(gxr_list *flat, gxr_color color, gxGraphic const &graphic, long &code);

template <class Graphic, class Write>
bool appendIf(gxr_list *flat, gxr_color color, gxGraphic const &graphic, long &code)
{
  auto const *const found = dynamic_cast<Graphic const *>(&graphic);
  if (found)
    code = Write()(flat, color, *found);
  return found;
}

struct Writers {
  long operator()(gxr_list *flat, gxr_color color, gxGraphicPointIcon const &g) const
  {
    return gxr_list_appendPoint(flat, color, g.item());
  }
  long operator()(gxr_list *flat, gxr_color color, gxGraphicSimple<gxLineSeg> const &g) const
  {
    return gxr_list_appendLineSeg(flat, color, g.item().start(), g.item().end());
  }
  long operator()(gxr_list *flat, gxr_color color, gxGraphicSimple<gxLine> const &g) const
  {
    return gxr_list_appendLineDirPoint(flat, color, g.item().dir(), g.item().pos());
  }
  long operator()(gxr_list *flat, gxr_color color, gxGraphicWithFill<gxRect, gxGenRect> const &g) const
  {
    return gxr_list_appendRect(flat, color, g.item().origin(), g.item().size());
  }
  long operator()(gxr_list *flat, gxr_color color, gxGraphicWithFill<gxGenRect, gxGenRect> const &g) const
  {
    gxGenRect const &r = g.item();
    return gxr_list_appendGenRect(flat, color, r.center(), r.size(), r.round(), r.orient().value());
  }
  long operator()(gxr_list *flat, gxr_color color, gxGraphicSimple<gxAffineRectangle> const &g) const
  {
    gxVector<2> const corners[] = {g.item().cornerPo(), g.item().cornerPx(), g.item().cornerPy()};
    return gxr_list_appendShapeAffineRect(flat, color, corners);
  }
  long operator()(gxr_list *flat, gxr_color color, gxGraphicSimple<gxPolyline> const &g) const
  {
    gxPolyline const &p = g.item();
    return gxr_list_appendPolyline(flat, color, p.vertices().data(), p.numVertices(), p.isClosed());
  }
  long operator()(gxr_list *flat, gxr_color color, gxGraphicSimple<gxLineSegSet> const &g) const
  {
    std::vector<gxVector<2>> ends;
    for (gxLineSeg const &s : g.item().segments())
      ends.insert(ends.end(), {s.start(), s.end()});
    return gxr_list_appendLineSegSet(flat, color, ends.data(), g.item().size());
  }
  long operator()(gxr_list *flat, gxr_color color, gxGraphicText const &g) const
  {
    std::uint32_t const format = static_cast<std::uint32_t>(g.format().alignment()) + 1u;
    return gxr_list_appendTextEx(flat, g.text(), g.location(), color, static_cast<std::int32_t>(format));
  }
};

template <class Graphic>
constexpr Append appendAs = &appendIf<Graphic, Writers>;

constexpr Append appends[] = {
    appendAs<gxGraphicPointIcon>,
    appendAs<gxGraphicSimple<gxLineSeg>>,
    appendAs<gxGraphicSimple<gxLine>>,
    appendAs<gxGraphicWithFill<gxRect, gxGenRect>>,
    appendAs<gxGraphicWithFill<gxGenRect, gxGenRect>>,
    appendAs<gxGraphicSimple<gxAffineRectangle>>,
    appendAs<gxGraphicSimple<gxPolyline>>,
    appendAs<gxGraphicSimple<gxLineSegSet>>,
    appendAs<gxGraphicText>,
};

void appendGraphic(gxr_list *flat, gxGraphic const &graphic)
{
  long code = 0;
  gxr_color const color = gfColor(graphic.color());
  for (Append const append : appends) {
    if (append(flat, color, graphic, code))
      return gfThrowExceptionOnFailure(code);
  }
}

}  // namespace

void gfGraphicListAppend(gxGraphicList &list, gxr_list const *flat)
{
  gxGraphicList read;
  readList(flat, ListSink{read});
  list.append(read, false);
}

void gfUITabletDraw(gxUITablet &tablet, gxr_list const *flat, gx_UITabletBase::Layers layer)
{
  readList(flat, TabletSink{tablet, layer});
}

void gfGraphicListAppend(gxr_list *flat, gxGraphicList const &list)
{
  std::int32_t const count = flat->count;
  std::size_t const size = flat->size;
  try {
    for (gxPtrHandle<gxGraphic> const &item : list.items())
      appendGraphic(flat, *item);
  } catch (...) {
    flat->count = count;
    flat->size = size;
    throw;
  }
}
