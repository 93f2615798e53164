#include "dispc/uierror.h"

#include "foundation/archive.h"

#define GX_UI_ERROR(Leaf, number, text) GX_EXCEPTION_IMPL(gxUIError::Leaf, gxUIError::Errors, Leaf, number, text)

GX_EXCEPTION_IMPL(gxUIError::Errors, gxException, Errors, 0x10002bff, "a display operation failed")

GX_UI_ERROR(BadLayer, 0x10002b00, "the layer is neither image nor overlay")
GX_UI_ERROR(BadIconPattern, 0x10002b01, "the icon pattern has a character or a row that an icon cannot have")
GX_UI_ERROR(FlagStackUnderflow, 0x10002b02, "the bottom flag of a flag stack cannot be popped")
GX_UI_ERROR(FlagStackOverflow, 0x10002b03, "a flag stack holds 32 flags at most")
GX_UI_ERROR(FlagStackOutOfRange, 0x10002b04, "the flag stack is not that deep")
GX_UI_ERROR(NotAvailable, 0x10002b06, "this display does not have what was asked for")
GX_UI_ERROR(NotEnabled, 0x10002b07, "what was asked for is switched off")
GX_UI_ERROR(BadKeyValue, 0x10002b08, "the key has no such value")
GX_UI_ERROR(InvalidColorMapSize, 0x10002b09, "the color map has the wrong number of entries")
GX_UI_ERROR(NotImplemented, 0x10002b12, "this display does not implement the operation")
GX_UI_ERROR(BadParams, 0x10002b13, "a parameter is out of its range")
GX_UI_ERROR(NotRGBColor, 0x10002b14, "the color has no red, green and blue components")
GX_UI_ERROR(NotIndexColor, 0x10002b15, "the color has no palette index")
GX_UI_ERROR(NoLongerSupported, 0x10002b16, "the operation is no longer supported")
GX_UI_ERROR(InvalidUISketch, 0x10002b17, "the sketch has a record that is damaged or of an unknown kind")
GX_UI_ERROR(InitFailed, 0x10002b18, "the display could not be set up")
