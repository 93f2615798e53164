#pragma once

#include "foundation/exception.h"
#include "foundation/export.h"
#include "foundation/listcolor.h"
#include "foundation/vector.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

/// The errors of flat drawing lists, as failure codes of their functions (see gfThrowExceptionOnFailure).
class gxDrawListError
{
 public:
  GX_EXCEPTION(Errors, gxException);
  GX_EXCEPTION(BadRecord, Errors);  ///< a record runs beyond the end of the list, or contradicts itself
  GX_EXCEPTION(NoRoom, Errors);     ///< a list or a record grew too large, or memory ran out
};

/// A drawing as a plain structure, to cross an interface without classes: records one behind the other, without
/// padding, in the byte order of the machine. Each begins with two 32-bit words, type and color, and its payload
/// follows. Counts and lengths are 32-bit words, all other numbers doubles:
///
/// | Type | Record | Payload |
/// |---|---|---|
/// | 1 | line segment | x, y of both ends |
/// | 2 | line | direction x, y; a point x, y |
/// | 3 | rectangle | corner x, y; size x, y |
/// | 4 | general rectangle | center x, y; size x, y; angle in radians; rounding x, y, fractions of the half size |
/// | 5 | circle | center x, y; radius |
/// | 6 | ellipse | center x, y; radii x, y; angle and phase in radians; 0 for a left-handed one; six more, all 0 |
/// | 7 | polyline | count; 1 if closed, else 0; x, y of each vertex |
/// | 8 | affine rectangle | x, y of the corners po, px, py |
/// | 9 | text | x, y; format code, the alignment + 1; length in bytes; the bytes |
/// | 10 | set of line segments | count; x, y of both ends of each |
/// | any other | point | x, y |
struct gxr_list {
  std::int32_t count = 0;            ///< number of records; nothing is read below 1
  unsigned char *records = nullptr;  ///< allocated by the append functions, freed by gxr_list_free()
  std::size_t size = 0;              ///< bytes in use; no record is read beyond them
  std::size_t capacity = 0;          ///< bytes allocated; 0 for records that somebody else owns
};

/// The types of records.
enum gxr_type : std::int32_t {
  gxr_point,
  gxr_lineSeg,
  gxr_line,
  gxr_rect,
  gxr_genRect,
  gxr_circle,
  gxr_ellipse,
  gxr_polyline,
  gxr_affineRect,
  gxr_text,
  gxr_lineSegSet
};

/// A record in a list: a view that ends with the list's next change.
struct gxr_record {
  gxr_type type = gxr_point;
  gxr_color color = gxr_black;
  unsigned char const *payload = nullptr;
  std::size_t length = 0;  ///< of the payload, in bytes
};

/// @name Appending
/// Each returns 0, or a failure code; the list is then as it was. A list that does not own its records is copied first.
/// @{
GX_API long gxr_list_appendPoint(gxr_list *flat, gxr_color color, gxVector<2> const &p);
GX_API long gxr_list_appendLineSeg(gxr_list *flat, gxr_color color, gxVector<2> const &a, gxVector<2> const &b);
GX_API long gxr_list_appendLineDirPoint(gxr_list *flat, gxr_color color, gxVector<2> const &direction,
                                        gxVector<2> const &point);
GX_API long gxr_list_appendRect(gxr_list *flat, gxr_color color, gxVector<2> const &corner, gxVector<2> const &size);
GX_API long gxr_list_appendGenRect(gxr_list *flat, gxr_color color, gxVector<2> const &center, gxVector<2> const &size,
                                   gxVector<2> const &round, double orient);
GX_API long gxr_list_appendCircle(gxr_list *flat, gxr_color color, gxVector<2> const &center, double radius);
GX_API long gxr_list_appendEllipse(gxr_list *flat, gxr_color color, gxVector<2> const &center, gxVector<2> const &radii,
                                   double angle, double phase, bool rightHanded);
GX_API long gxr_list_appendPolyline(gxr_list *flat, gxr_color color, gxVector<2> const *vertices, long count,
                                    bool closed);
/// @param corners po, px and py
GX_API long gxr_list_appendShapeAffineRect(gxr_list *flat, gxr_color color, gxVector<2> const corners[3]);
/// @param format the alignment + 1
GX_API long gxr_list_appendTextEx(gxr_list *flat, std::string_view text, gxVector<2> const &place, gxr_color color,
                                  std::int32_t format);
/// @param ends start and end of each segment: 2 * count points
GX_API long gxr_list_appendLineSegSet(gxr_list *flat, gxr_color color, gxVector<2> const *ends, long count);
/// @}

/// Frees the records of a list that owns them, and empties it.
GX_API void gxr_list_free(gxr_list *flat);

/// Reads the record at byte @p *at and moves on to the next. Returns 0, or the failure code of BadRecord if the list
/// ends before the record does or the record's counts do not fit; @p *at then stays.
GX_API long gxr_list_read(gxr_list const *flat, std::size_t *at, gxr_record *record);
