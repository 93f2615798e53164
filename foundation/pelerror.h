#pragma once

#include "foundation/exception.h"

/// The errors of pel buffers and run-length buffers.
class gxPel
{
 public:
  /// Base of the family; the text says what was asked for and what there is.
  GX_EXCEPTION_WITH_STRING(Errors, gxExceptionWithString);
  /// A pel, row or point outside of the window.
  GX_EXCEPTION_WITH_STRING(BadCoord, Errors);
  /// The buffer has no root.
  GX_EXCEPTION(UnboundWindow, Errors);
  /// A window without pels, or of another size, where the operation needs one.
  GX_EXCEPTION_WITH_STRING(BadWindow, Errors);
  /// A negative size, or one too large to address.
  GX_EXCEPTION_WITH_STRING(BadSize, Errors);
  /// A row alignment that is not positive, too large, or does not suit the pel type.
  GX_EXCEPTION_WITH_STRING(BadAlignment, Errors);
  /// An image file that cannot be read or written; the text names the file, the cause and the place.
  GX_EXCEPTION_WITH_STRING(BadImageFile, Errors);
};
