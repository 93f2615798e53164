#include "foundation/valuearchive.h"

namespace
{

// Passes two coordinates of any kind of pair.
template <class Pair, class T>
gxArchive &passCoordinates(gxArchive &archive, Pair &pair, T x, T y)
{
  archive || x || y;
  pair = Pair(x, y);
  return archive;
}

template <class Angle>
gxArchive &passAngle(gxArchive &archive, Angle &angle)
{
  double value = angle.value();
  archive || value;
  angle = Angle(value);
  return archive;
}

}  // namespace

gxArchive &operator||(gxArchive &archive, gxPair<long> &pair)
{
  return passCoordinates(archive, pair, pair.x(), pair.y());
}

gxArchive &operator||(gxArchive &archive, gxPair<double> &pair)
{
  return passCoordinates(archive, pair, pair.x(), pair.y());
}

gxArchive &operator||(gxArchive &archive, gxVector<2> &vector)
{
  return passCoordinates(archive, vector, vector.x(), vector.y());
}

gxArchive &operator||(gxArchive &archive, gxMatrix<2> &matrix)
{
  double a = matrix.element(0, 0);
  double b = matrix.element(0, 1);
  double c = matrix.element(1, 0);
  double d = matrix.element(1, 1);
  archive || a || b || c || d;
  matrix = gxMatrix<2>(a, b, c, d);
  return archive;
}

gxArchive &operator||(gxArchive &archive, gxXform<2> &xform)
{
  gxVector<2> translation = xform.translation();
  gxMatrix<2> matrix = xform.matrix();
  archive || translation || matrix;
  xform = gxXform<2>(matrix, translation);
  return archive;
}

gxArchive &operator||(gxArchive &archive, gx2Rigid &rigid)
{
  gxDegree angle = rigid.angle();
  gxVector<2> translation = rigid.translation();
  archive || angle || translation;
  rigid = gx2Rigid(angle, translation);
  return archive;
}

gxArchive &operator||(gxArchive &archive, gxRadian &angle)
{
  return passAngle(archive, angle);
}

gxArchive &operator||(gxArchive &archive, gxDegree &angle)
{
  return passAngle(archive, angle);
}
