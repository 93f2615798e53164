#pragma once

#include "foundation/exception.h"

/// The failure code of an exception: its number with bit 31 set, as a negative 32-bit number. Functions that answer by
/// a code rather than by throwing return 0 or more for success and one of these for failure.
GX_API long gfFailureCode(gxException const &error);

/// Throws the exception of a failure code: gxBadPointer or the class of gxMathError, gxShapesError, gxPel or
/// gxDrawListError whose number it holds, else a gxExceptionWithString that tells the code. A code without bit 31 is a
/// success: nothing happens. Only the low 32 bits count.
GX_API void gfThrowExceptionOnFailure(long code);
