#pragma once

#include "dispc/color.h"
#include "dispc/detail/uisketch_io.h"
#include "dispc/uirect.h"
#include "dispc/uisketch_codes.h"
#include "dispc/uistring.h"
#include "foundation/affinerect.h"
#include "foundation/angle.h"
#include "foundation/bezier.h"
#include "foundation/circle.h"
#include "foundation/coordaxes.h"
#include "foundation/cross.h"
#include "foundation/ellipse.h"
#include "foundation/ellipse2.h"
#include "foundation/ellipseannulus.h"
#include "foundation/ellipsearc.h"
#include "foundation/ellipsearc2.h"
#include "foundation/genannulus.h"
#include "foundation/genrect.h"
#include "foundation/line.h"
#include "foundation/lineseg.h"
#include "foundation/pair.h"
#include "foundation/rect.h"
#include "foundation/vector.h"
#include "foundation/xform.h"

#include <array>
#include <bit>
#include <cstdint>

/// @file
/// The fields of the values that payloads are made of, in the order of the stream. A shape is taken apart, its parts
/// are told to the io, and where they come in, it is put together again.

// ---------------------------------------------------------------- values

template <class Io>
void gf_describe(Io &io, gx_Field<Io, gxVector<2>> &v)
{
  double x = v.x(), y = v.y();
  io("x", x);
  io("y", y);
  if constexpr (Io::reads)
    v = gxVector<2>(x, y);
}

template <class Io>
void gf_describe(Io &io, gx_Field<Io, gxPair<long>> &v)
{
  auto x = static_cast<std::int32_t>(v.x()), y = static_cast<std::int32_t>(v.y());
  io("x", x);
  io("y", y);
  if constexpr (Io::reads)
    v = gxPair<long>(x, y);
}

template <class Io>
void gf_describe(Io &io, gx_Field<Io, gxRadian> &v)
{
  double angle = v.value();
  io("angle", angle);
  if constexpr (Io::reads)
    v = gxRadian(angle);
}

/// Values that the stream holds as they stand: bytes, or numbers of 32 bits.
template <class Io, class T>
void gf_describeImage(Io &io, T &value)
{
  using Unit = std::conditional_t<sizeof(T) % 4 == 0, std::int32_t, unsigned char>;
  using Units = std::array<Unit, sizeof(T) / sizeof(Unit)>;
  auto units = std::bit_cast<Units>(value);
  for (Unit &u : units)
    io("", u);
  if constexpr (Io::reads)
    value = std::bit_cast<T>(units);
}

template <class Io>
void gf_describe(Io &io, gx_Field<Io, gxColor> &v)
{
  gf_describeImage(io, v);
}

template <class Io>
void gf_describe(Io &io, gx_Field<Io, gxUIFormat> &v)
{
  gf_describeImage(io, v);
}

template <class Io>
void gf_describe(Io &io, gx_Field<Io, gxUIRect> &v)
{
  gf_describeImage(io, v);
}

template <class Io>
void gf_describe(Io &io, gx_Field<Io, gxMatrix<2>> &m)
{
  double a = m.element(0, 0), b = m.element(0, 1), c = m.element(1, 0), d = m.element(1, 1), det = m.det();
  io("a", a);
  io("b", b);
  io("c", c);
  io("d", d);
  io("det", det);
  if constexpr (Io::reads)
    m = gxMatrix<2>(a, b, c, d);  // the determinant is found anew
}

template <class Io>
void gf_describe(Io &io, gx_Field<Io, gxXform<2>> &x)
{
  gxVector<2> translation = x.translation();
  gxMatrix<2> matrix = x.matrix();
  io("translation", translation);
  io("matrix", matrix);
  if constexpr (Io::reads)
    x = gxXform<2>(matrix, translation);
}

// ---------------------------------------------------------------- shapes

template <class Io>
void gf_describe(Io &io, gx_Field<Io, gxLineSeg> &s)
{
  gxVector<2> start = s.start(), end = s.end();
  io("start", start);
  io("end", end);
  if constexpr (Io::reads) {
    s.start(start);
    s.end(end);
  }
}

template <class Io>
void gf_describe(Io &io, gx_Field<Io, gxLine> &l)
{
  gxVector<2> pos = l.pos(), dir = l.dir();
  io("position", pos);
  io("direction", dir);
  if constexpr (Io::reads) {
    l.pos(pos);
    l.dir(dir);
  }
}

template <class Io>
void gf_describe(Io &io, gx_Field<Io, gxRect> &r)
{
  if (io.version0())
    io.gap(1);
  gxVector<2> origin = r.origin(), size = r.size();
  io("origin", origin);
  io("size", size);
  if constexpr (Io::reads) {
    r.origin(origin);
    r.size(size);
  }
}

/// The form in which areas hold a rectangle.
template <class Io>
void gf_describeBlock(Io &io, gx_Field<Io, gxRect> &r)
{
  gxVector<2> origin = r.origin(), size = r.size();
  if (!io.version0())
    io.gap(16);
  io("origin", origin);
  io("size", size);
  if (!io.version0())
    io.gap(gf_rectBlock - 48);
  if constexpr (Io::reads) {
    r.origin(origin);
    r.size(size);
  }
}

template <class Io>
void gf_describe(Io &io, gx_Field<Io, gxCircle> &c)
{
  gxVector<2> center = c.center();
  double radius = c.radius();
  io("center", center);
  io("radius", radius);
  if constexpr (Io::reads) {
    c.radius(radius);
    c.center(center);
  }
}

template <class Io>
void gf_describe(Io &io, gx_Field<Io, gxEllipse> &e)
{
  gxEllipse::gxEllipseGeom g = e.geom();
  bool reversed = e.isReversed(), degenerate = e.degen();
  io("center", g.center);
  io("radii", g.radii);
  io("angle", g.angle);
  io("reversed", reversed);
  io("degenerate", degenerate);
  io.gap(6);
  if constexpr (Io::reads) {
    g.reversed = reversed;
    e.geom(g);
  }
}

template <class Io>
void gf_describe(Io &io, gx_Field<Io, gxEllipse2> &e)
{
  gxVector<2> radii = e.radii(), center = e.center();
  gxRadian angle = e.angle();
  io("radii", radii);
  io("angle", angle);
  io("center", center);
  if constexpr (Io::reads)
    e = gxEllipse2(radii, angle, center);
}

template <class Io>
void gf_describe(Io &io, gx_Field<Io, gxEllipseArc2> &arc)
{
  gxEllipse2 ellipse = arc.ellipse();
  bool rightHanded = ellipse.isRightHanded();
  gxRadian phase = ellipse.phase(), start = arc.phiStart(), span = arc.phiSpan();
  io("", ellipse);
  io("right-handed", rightHanded);
  io("phase", phase);
  io("start", start);
  io("span", span);
  if constexpr (Io::reads)
    arc =
        gxEllipseArc2(gxEllipse2(ellipse.radii(), ellipse.angle(), ellipse.center(), rightHanded, phase), start, span);
}

template <class Io>
void gf_describe(Io &io, gx_Field<Io, gxCoordAxes> &axes)
{
  gxVector<2> origin = axes.origin(), xEnd = axes.xEnd(), yEnd = axes.yEnd();
  io("origin", origin);
  io("x end", xEnd);
  io("y end", yEnd);
  if constexpr (Io::reads)
    axes = gxCoordAxes(origin, xEnd, yEnd);
}

/// The arm has 64 bits, of which the low 32 count; the first version left the others unset.
template <class Io>
void gf_describe(Io &io, gx_Field<Io, gxCross> &c)
{
  gxVector<2> center = c.center();
  gxRadian angle = c.angle();
  std::int64_t arm = c.armLength();
  io("center", center);
  io("angle", angle);
  io("arm", arm);
  if constexpr (Io::reads)
    c = gxCross(center, angle, static_cast<std::int32_t>(arm));
}

template <class Io>
void gf_describe(Io &io, gx_Field<Io, gxBezierCurve> &curve)
{
  gxBezierCurve::Points points = curve.controlPoints();
  gxBezierCurve::Weights weights = curve.weights();
  for (gxVector<2> &p : points)
    io("", p);
  for (double &w : weights)
    io("weight", w);
  if constexpr (Io::reads)
    curve = gxBezierCurve(points, weights);
}

// ---------------------------------------------------------------- shapes as blocks

template <>
inline constexpr long gf_blockSize<gxEllipseArc> = gf_ellipseArcBlock;
template <>
inline constexpr long gf_blockSize<gxEllipseAnnulusSection> = gf_annulusSectionBlock;
template <>
inline constexpr long gf_blockSize<gxGenRect> = gf_genRectBlock;
template <>
inline constexpr long gf_blockSize<gxGenAnnulus> = gf_genAnnulusBlock;
template <>
inline constexpr long gf_blockSize<gxAffineRectangle> = gf_affineRectangleBlock;

/// Where the second ellipse of a block begins, and the fields behind the ellipses of an arc.
inline constexpr long gf_ellipseInBlock = 176;
/// Where the second rectangle of a ring begins.
inline constexpr long gf_genRectInBlock = 96;

template <class Io>
void gf_describe(Io &io, gx_Field<Io, gxEllipseArc> &arc)
{
  gxEllipse ellipse = arc.ellipse();
  gxRadian start = arc.start(), span = arc.span();
  io("", ellipse);
  io.gap(gf_ellipseInBlock - gf_ellipseGeomBlock);
  io("start", start);
  io("span", span);
  if constexpr (Io::reads)
    arc = gxEllipseArc::fromSpan(ellipse, start, span);
}

/// An ellipse in the block of a section, with its phase, which the first version did not have.
template <class Io>
void gf_describePhased(Io &io, char const *name, gx_Field<Io, gxEllipse> &e)
{
  gxRadian phase = e.phase();
  io(name, e);
  if (!io.version0())
    io("phase", phase);
  io.gap(gf_ellipseInBlock - gf_ellipseGeomBlock - (io.version0() ? 0 : 8));
  if constexpr (Io::reads)
    e = gxEllipse(e.geom(), io.version0() ? gxRadian() : phase);
}

template <class Io>
void gf_describe(Io &io, gx_Field<Io, gxEllipseAnnulusSection> &s)
{
  gxEllipse inner = s.annulus().innerEllipse(), outer = s.annulus().outerEllipse();
  gxRadian start = s.start(), end = s.end();
  bool forward = s.isForward(), flag1 = s.flag1(), flag2 = s.flag2();
  gf_describePhased(io, "inner", inner);
  gf_describePhased(io, "outer", outer);
  io("start", start);
  io("end", end);  // in the first version, the span
  io("forward", forward);
  io("flag", flag1);
  if (io.version0()) {
    end = start + end;
    flag2 = false;
    io.gap(440 - 370);
  } else {
    io("flag", flag2);
    io.gap(gf_annulusSectionBlock - 371);
  }
  if constexpr (Io::reads)
    s = gxEllipseAnnulusSection(gxEllipseAnnulus(inner, outer), start, end, forward, flag1, flag2);
}

/// The part that is filled: 72 bytes.
template <class Io>
void gf_describeFilled(Io &io, gx_Field<Io, gxGenRect> &r)
{
  gxVector<2> center = r.center(), round = r.round();
  gxMatrix<2> matrix = r.matrix();
  io("center", center);
  io("matrix", matrix);
  io("rounding", round);
  if constexpr (Io::reads)
    r = gxGenRect(center, matrix, round);
}

template <class Io>
void gf_describe(Io &io, gx_Field<Io, gxGenRect> &r)
{
  gf_describeFilled(io, r);
  io.gap((io.version0() ? gf_genRectInBlock : gf_genRectBlock) - 72);
}

template <class Io>
void gf_describe(Io &io, gx_Field<Io, gxGenAnnulus> &a)
{
  gxGenRect inner = a.innerRect(), outer = a.outerRect();
  gf_describeFilled(io, inner);
  io.gap(gf_genRectInBlock - 72);
  gf_describeFilled(io, outer);
  io.gap((io.version0() ? gf_genRectInBlock : gf_genAnnulusBlock - gf_genRectInBlock) - 72);
  if constexpr (Io::reads)
    a = gxGenAnnulus(inner, outer);
}

template <class Io>
void gf_describe(Io &io, gx_Field<Io, gxAffineRectangle> &r)
{
  gxVector<2> po = r.cornerPo(), px = r.cornerPx(), py = r.cornerPy();
  io.gap(56);
  io("origin", po);
  io("x end", px);
  io("y end", py);
  io.gap((io.version0() ? 176 : gf_affineRectangleBlock) - 104);
  if constexpr (Io::reads)
    r = gxAffineRectangle(po, px, py);
}
