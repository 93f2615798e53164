#pragma once

/// @file
/// The plain values of the plane in archives: their numbers in the order of their fields, without a version.

#include "foundation/angle.h"
#include "foundation/archive.h"
#include "foundation/matrix.h"
#include "foundation/pair.h"
#include "foundation/rigid.h"
#include "foundation/vector.h"
#include "foundation/xform.h"

GX_API gxArchive &operator||(gxArchive &archive, gxPair<long> &pair);    ///< x, y; 8 bytes
GX_API gxArchive &operator||(gxArchive &archive, gxPair<double> &pair);  ///< x, y; 16 bytes
GX_API gxArchive &operator||(gxArchive &archive, gxVector<2> &vector);   ///< x, y; 16 bytes
GX_API gxArchive &operator||(gxArchive &archive, gxMatrix<2> &matrix);   ///< a, b, c, d by rows; 32 bytes
GX_API gxArchive &operator||(gxArchive &archive, gxXform<2> &xform);     ///< translation, matrix; 48 bytes
GX_API gxArchive &operator||(gxArchive &archive, gx2Rigid &rigid);       ///< degrees, translation; 24 bytes
GX_API gxArchive &operator||(gxArchive &archive, gxRadian &angle);       ///< 8 bytes
GX_API gxArchive &operator||(gxArchive &archive, gxDegree &angle);       ///< 8 bytes
