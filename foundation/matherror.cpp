#include "foundation/matherror.h"

#include "foundation/archive.h"

GX_EXCEPTION_IMPL(gxMathError::Errors, gxException, Errors, 0x10001100, "a numeric operation failed")
GX_EXCEPTION_IMPL(gxMathError::Singular, gxMathError::Errors, Singular, 0x10001101, "the matrix has no inverse")
GX_EXCEPTION_IMPL(gxMathError::NoConvergence, gxMathError::Errors, NoConvergence, 0x10001102,
                  "the iteration did not converge")
