#include "foundation/geomarchive.h"

namespace
{

// Passes the two coordinates of any kind of pair.
template <class Pair, class T>
gxArchive &passCoordinates(gxArchive &archive, Pair &v, T x, T y)
{
  archive.numbers(x, y);
  v = Pair(x, y);
  return archive;
}

template <class Angle>
gxArchive &passAngle(gxArchive &archive, Angle &v)
{
  double value = v.value();
  archive || value;
  v = Angle(value);
  return archive;
}

}  // namespace

gxArchive &operator||(gxArchive &archive, gxPair<long> &v)
{
  return passCoordinates(archive, v, v.x(), v.y());
}

gxArchive &operator||(gxArchive &archive, gxPair<double> &v)
{
  return passCoordinates(archive, v, v.x(), v.y());
}

gxArchive &operator||(gxArchive &archive, gxRadian &v)
{
  return passAngle(archive, v);
}

gxArchive &operator||(gxArchive &archive, gxDegree &v)
{
  return passAngle(archive, v);
}

gxArchive &operator||(gxArchive &archive, gxMatrix<2> &v)
{
  double a = v.element(0, 0);
  double b = v.element(0, 1);
  double c = v.element(1, 0);
  double d = v.element(1, 1);
  archive.numbers(a, b, c, d);
  v = gxMatrix<2>(a, b, c, d);
  return archive;
}

gxArchive &operator||(gxArchive &archive, gxXform<2> &v)
{
  gxVector<2> translation = v.translation();
  gxMatrix<2> matrix = v.matrix();
  archive || translation || matrix;
  v = gxXform<2>(matrix, translation);
  return archive;
}

gxArchive &operator||(gxArchive &archive, gx2Rigid &v)
{
  gxDegree angle = v.angle();
  gxVector<2> translation = v.translation();
  archive || angle || translation;
  v = gx2Rigid(angle, translation);
  return archive;
}

gxArchive &operator||(gxArchive &archive, std::vector<gxVector<2>> &v)
{
  long const count = archive.passCount(static_cast<long>(v.size()), sizeof(gxVector<2>));
  if (archive.isLoading())
    v.assign(static_cast<std::size_t>(count), gxVector<2>());
  for (gxVector<2> &p : v)
    archive || p;
  return archive;
}
