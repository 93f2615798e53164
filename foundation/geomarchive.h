#pragma once

/// @file
/// The plain values of geometry in archives: each number of the value in turn, without a version.

#include "foundation/archive.h"
#include "foundation/rigid.h"
#include "foundation/xform.h"

#include <vector>

/// x, y; 32 bits each.
GX_API gxArchive &operator||(gxArchive &archive, gxPair<long> &v);
/// x, y.
GX_API gxArchive &operator||(gxArchive &archive, gxPair<double> &v);
GX_API gxArchive &operator||(gxArchive &archive, gxRadian &v);
GX_API gxArchive &operator||(gxArchive &archive, gxDegree &v);
/// x, y.
inline gxArchive &operator||(gxArchive &archive, gxVector<2> &v)
{
  double x = v.x(), y = v.y();
  archive.numbers(x, y);
  v = gxVector<2>(x, y);
  return archive;
}
/// a, b, c, d; the determinant is found anew.
GX_API gxArchive &operator||(gxArchive &archive, gxMatrix<2> &v);
/// Translation, then matrix.
GX_API gxArchive &operator||(gxArchive &archive, gxXform<2> &v);
/// Angle, then translation.
GX_API gxArchive &operator||(gxArchive &archive, gx2Rigid &v);
/// A count, then the vectors.
GX_API gxArchive &operator||(gxArchive &archive, std::vector<gxVector<2>> &v);
