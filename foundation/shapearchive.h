#pragma once

#include "foundation/archive.h"
#include "foundation/shape.h"

/// Passes a shape that @p owner holds through the archive, as a pointer. A loaded pointer that is null, no shape, or
/// leads back to a shape that is still being loaded (so that it would hold itself) throws gxArchive::Errors.
GX_API void gf_passChild(gxArchive &archive, gxShape const &owner, gxPtrHandle_const<gxShape> &child);
/// The same for a count and that many shapes.
GX_API void gf_passChildren(gxArchive &archive, gxShape const &owner,
                            std::vector<gxPtrHandle_const<gxShape>> &children);
