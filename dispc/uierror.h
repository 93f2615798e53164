#pragma once

#include "foundation/exception.h"

/// The errors of tablets, scopes, sketches and the values that they share. Numbers are fixed for ever; the gaps between
/// them are not to be filled.
class gxUIError
{
 public:
  /// Base of the family.
  GX_EXCEPTION(Errors, gxException);

  GX_EXCEPTION(BadLayer, Errors);
  GX_EXCEPTION(BadIconPattern, Errors);
  GX_EXCEPTION(FlagStackUnderflow, Errors);
  GX_EXCEPTION(FlagStackOverflow, Errors);
  GX_EXCEPTION(FlagStackOutOfRange, Errors);
  GX_EXCEPTION(NotAvailable, Errors);
  GX_EXCEPTION(NotEnabled, Errors);
  GX_EXCEPTION(BadKeyValue, Errors);
  GX_EXCEPTION(InvalidColorMapSize, Errors);
  GX_EXCEPTION(NotImplemented, Errors);
  GX_EXCEPTION(BadParams, Errors);
  GX_EXCEPTION(NotRGBColor, Errors);
  GX_EXCEPTION(NotIndexColor, Errors);
  GX_EXCEPTION(NoLongerSupported, Errors);
  GX_EXCEPTION(InvalidUISketch, Errors);
  GX_EXCEPTION(InitFailed, Errors);
};
