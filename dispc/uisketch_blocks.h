#pragma once

#include "dispc/uisketch_codes.h"
#include "dispc/uisketch_writer.h"
#include "foundation/affinerect.h"
#include "foundation/ellipse.h"
#include "foundation/ellipseannulus.h"
#include "foundation/ellipsearc.h"
#include "foundation/genannulus.h"
#include "foundation/genrect.h"
#include "foundation/rect.h"

/// @file
/// The blocks that hold a whole object in a record. Each has a fixed size; the fields stand at the offsets told here,
/// and all else is 0.
///
/// | Block | Fields |
/// |---|---|
/// | ellipse, 48 | 0 center, 16 radii, 32 angle, 40 reversed, 41 degenerate |
/// | ellipse arc, 192 | 0 ellipse, 176 start angle, 184 span |
/// | annulus section, 552 | 0 inner ellipse, 176 outer ellipse, 352 start, 360 end, 368 forward, 369 and 370 flags |
/// | general rectangle, 152 | 0 center, 16 matrix a b c d, 48 determinant, 56 rounding |
/// | general annulus, 360 | 0 inner and 96 outer rectangle, 72 bytes of each as above |
/// | rectangle, 88 | 16 origin, 32 size |
/// | affine rectangle, 232 | 56 corner Po, 72 corner Px, 88 corner Py |

inline void gf_writeFields(gx_StreamWriter &to, gxEllipse const &ellipse)
{
  gxEllipse::gxEllipseGeom const &g = ellipse.geom();
  to.vector(g.center).vector(g.radii).real(g.angle.value()).byte(g.reversed).byte(g.degenerate).zeros(6);
}

inline void gf_writeBlock(gx_StreamWriter &to, gxEllipseArc const &arc)
{
  gf_writeFields(to, arc.ellipse());
  to.zeros(176 - gf_ellipseGeomBlock).real(arc.start().value()).real(arc.span().value());
}

inline void gf_writeBlock(gx_StreamWriter &to, gxEllipseAnnulusSection const &s)
{
  gf_writeFields(to, s.annulus().innerEllipse());
  to.zeros(176 - gf_ellipseGeomBlock);
  gf_writeFields(to, s.annulus().outerEllipse());
  to.zeros(176 - gf_ellipseGeomBlock).real(s.start().value()).real(s.end().value());
  to.flag(s.isForward()).flag(s.flag1()).flag(s.flag2()).zeros(gf_annulusSectionBlock - 371);
}

/// The 72 bytes of a general rectangle that are filled.
inline void gf_writeFields(gx_StreamWriter &to, gxGenRect const &r)
{
  gxMatrix<2> const &m = r.matrix();
  to.vector(r.center()).real(m.element(0, 0)).real(m.element(0, 1)).real(m.element(1, 0)).real(m.element(1, 1));
  to.real(m.det()).vector(r.round());
}

inline void gf_writeBlock(gx_StreamWriter &to, gxGenRect const &r)
{
  gf_writeFields(to, r);
  to.zeros(gf_genRectBlock - 72);
}

inline void gf_writeBlock(gx_StreamWriter &to, gxGenAnnulus const &a)
{
  gf_writeFields(to, a.innerRect());
  to.zeros(96 - 72);
  gf_writeFields(to, a.outerRect());
  to.zeros(gf_genAnnulusBlock - 96 - 72);
}

inline void gf_writeBlock(gx_StreamWriter &to, gxRect const &r)
{
  to.zeros(16).vector(r.origin()).vector(r.size()).zeros(gf_rectBlock - 48);
}

inline void gf_writeBlock(gx_StreamWriter &to, gxAffineRectangle const &r)
{
  to.zeros(56).vector(r.cornerPo()).vector(r.cornerPx()).vector(r.cornerPy()).zeros(gf_affineRectangleBlock - 104);
}
