#include "dispc/dimtol.h"

#include "foundation/archive.h"
#include "foundation/shapeserror.h"

#include <cmath>

namespace
{
bool isUnset(double v)
{
  return std::abs(v - kUnsetDim) <= kDimEpsilon;
}

/// Equal numbers, infinite ones among them, or nearly equal ones.
bool agree(double a, double b)
{
  return a == b || std::abs(a - b) <= kDimEpsilon;
}
}  // namespace

gxDimTol::gxDimTol(double nomDim, double minTol, double maxTol, TolType tolType)
    : nomDim_(nomDim), minTol_(minTol), maxTol_(maxTol), tolType_(tolType)
{
  bool const allUnset = nomDim == kUnsetDim && minTol == kUnsetDim && maxTol == kUnsetDim;
  if (!allUnset && !isValid_(nomDim, minTol, maxTol, tolType))
    throw gxShapesError::BadGeom();
}

void gxDimTol::set_(double nom, double min, double max, TolType type)
{
  if (!isValid_(nom, min, max, type))
    throw gxShapesError::BadGeom();
  nomDim_ = nom;
  minTol_ = min;
  maxTol_ = max;
  tolType_ = type;
}

void gxDimTol::tolType(TolType type)
{
  double const min = newTol_(minTol_, type, -1.0);
  double const max = newTol_(maxTol_, type, 1.0);
  minTol_ = min;
  maxTol_ = max;
  tolType_ = type;
}

double gxDimTol::newTol_(double tol, TolType toType, double sign) const
{
  if (toType == tolType_ || isUnset(tol))
    return tol;
  if (isUnset(nomDim_))
    throw gxShapesError::BadGeom();

  double offset = 0.0;
  switch (tolType_) {
    case Limits:
      offset = std::abs(nomDim_ - tol);
      break;
    case Offsets:
      offset = tol;
      break;
    case Percentages:
      offset = nomDim_ * tol;
      break;
  }
  switch (toType) {
    case Limits:
      return offset * sign + nomDim_;
    case Offsets:
      return offset;
    case Percentages:
      return nomDim_ == 0.0 ? 0.0 : offset / nomDim_;
  }
  return 0.0;
}

bool gxDimTol::isWithin(double d) const
{
  if (minTol_ >= 0.0 && !(d >= minDim()))
    return false;
  return !(maxTol_ >= 0.0) || d <= maxDim();
}

bool operator==(gxDimTol const &a, gxDimTol const &b)
{
  return agree(a.nomDim_, b.nomDim_) && agree(a.minTol_, b.minTol_) && agree(a.maxTol_, b.maxTol_) &&
         a.tolType_ == b.tolType_;
}

gxDimTol operator*(double s, gxDimTol const &d)
{
  gxDimTol scaled = d;
  if (!isUnset(d.nomDim_))
    scaled.nomDim_ = d.nomDim_ * s;
  return scaled;
}

gxArchive &operator||(gxArchive &archive, gxDimTol::TolType &type)
{
  gf_passEnum(archive, type);
  return archive;
}

gxArchive &operator||(gxArchive &archive, gxDimTol &d)
{
  signed char version = 0;
  archive || version;
  if (version != 0)
    throw gxArchive::UnknownVersion("dispc/dimtol", 197);
  gxDimTol passed = d;
  archive || passed.nomDim_ || passed.minTol_ || passed.maxTol_ || passed.tolType_;
  d = passed;
  return archive;
}

std::ostream &operator<<(std::ostream &os, gxDimTol const &d)
{
  os << "gxDimTol(" << d.nomDim() << ", " << d.minTol() << ", " << d.maxTol() << ", ";
  switch (d.tolType()) {
    case gxDimTol::Limits:
      return os << "gxDimTol::Limits)";
    case gxDimTol::Offsets:
      return os << "gxDimTol::Offsets)";
    case gxDimTol::Percentages:
      return os << "gxDimTol::Percentages)";
  }
  return os << "gxDimTol::TolType(" << static_cast<int>(d.tolType()) << "))";
}
