#include "foundation/pelerror.h"

#include "foundation/archive.h"

GX_EXCEPTION_WITH_STRING_IMPL(gxPel::Errors, gxExceptionWithString, Errors, 0x10001400)
GX_EXCEPTION_WITH_STRING_IMPL(gxPel::BadCoord, gxPel::Errors, BadCoord, 0x10001401)
GX_EXCEPTION_IMPL(gxPel::UnboundWindow, gxPel::Errors, UnboundWindow, 0x10001402,
                  "the pel buffer has no pels behind it")
GX_EXCEPTION_WITH_STRING_IMPL(gxPel::BadWindow, gxPel::Errors, BadWindow, 0x10001403)
GX_EXCEPTION_WITH_STRING_IMPL(gxPel::BadSize, gxPel::Errors, BadSize, 0x10001404)
GX_EXCEPTION_WITH_STRING_IMPL(gxPel::BadAlignment, gxPel::Errors, BadAlignment, 0x10001405)
GX_EXCEPTION_WITH_STRING_IMPL(gxPel::BadImageFile, gxPel::Errors, BadImageFile, 0x10001406)
