#include "dispc/wrfm/dimension.h"

#include "foundation/archive.h"

#include <cmath>

GX_EXCEPTION_IMPL(gxSMDDimensionErrors, gxException, gxSMDDimensionErrors, 0x11000bfe, "a dimension is wrong")
GX_EXCEPTION_IMPL(gxSMDDimension::Errors, gxSMDDimensionErrors, Errors, 0x11000bff, "a dimension is wrong")

gxSMDDimension::badDimensionValue::badDimensionValue() = default;
gxSMDDimension::badDimensionValue::badDimensionValue(std::string text) : text_(std::move(text)) {}
gxSMDDimension::badDimensionValue::badDimensionValue(badDimensionValue const &) = default;
gxSMDDimension::badDimensionValue &gxSMDDimension::badDimensionValue::operator=(badDimensionValue const &) = default;
gxSMDDimension::badDimensionValue::~badDimensionValue() = default;

char const *gxSMDDimension::badDimensionValue::className() const
{
  return "gxSMDDimension::badDimensionValue";
}

long gxSMDDimension::badDimensionValue::errorNumber() const
{
  return 0x11000b00;
}

void gxSMDDimension::badDimensionValue::suicideAndRethrow()
{
  gf_deleteAndThrow(this);
}

void gxSMDDimension::badDimensionValue::message_(std::ostream &os) const
{
  os << text_;
}

GX_PERSISTENT_IMPL(gxSMDDimension::badDimensionValue, "gxSMDDimension::badDimensionValue", 0)
void gxSMDDimension::badDimensionValue::serialize_(gxArchive &archive, unsigned char version)
{
  gf_refuseVersion(version, "gxSMDDimension::badDimensionValue");
  Errors::dispatchSerialize(archive);
  archive || text_;
}

namespace
{
bool isSet(double v)
{
  return v != kUnsetDim;
}

bool isPositiveOrUnset(double v)
{
  return v > 0.0 || !isSet(v);
}

bool agree(double a, double b)
{
  return a == b || std::abs(a - b) <= kDimEpsilon;
}
}  // namespace

char const *gxSMDDimension::complaint_(double nom, double min, double max)
{
  if (!isPositiveOrUnset(nom))
    return "Nominal dimension must be > 0 or -1";
  if (!isPositiveOrUnset(min))
    return "Minimum dimension must be > 0 or -1";
  if (!isPositiveOrUnset(max))
    return "Maximum dimension must be > 0 or -1";
  if (min > 0.0 && !(nom >= 0.0))
    return "Nominal must be set if minimum is > 0";
  if (min > 0.0 && !(nom >= min))
    return "Nominal must be >= minimum";
  if (max > 0.0 && !(nom >= 0.0))
    return "Nominal must be set if maximum is >= 0";
  if (max > 0.0 && !(nom <= max))
    return "Nominal must be <= maximum";
  return nullptr;
}

gxSMDDimension::gxSMDDimension(double nomDim, double minDim, double maxDim, ScaleType scaleType)
{
  set(nomDim, minDim, maxDim, scaleType);
}

gxSMDDimension::gxSMDDimension(gxDimTol const &tol)
{
  set(tol.nomDim(), tol.minDim(), tol.maxDim(), scaleType(tol.tolType()));
}

void gxSMDDimension::set(double nom, double min, double max, ScaleType scaleType)
{
  if (char const *const complaint = complaint_(nom, min, max))
    throw badDimensionValue(complaint);
  nomDim_ = nom;
  minDim_ = min;
  maxDim_ = max;
  scaleType_ = scaleType;
}

gxDimTol::TolType gxSMDDimension::tolType(ScaleType type)
{
  bool const known = type >= scaleNone && type <= scaleAll;
  return known ? static_cast<gxDimTol::TolType>(type) : gxDimTol::Offsets;
}

gxSMDDimension::ScaleType gxSMDDimension::scaleType(gxDimTol::TolType type)
{
  bool const known = type >= gxDimTol::Limits && type <= gxDimTol::Percentages;
  return known ? static_cast<ScaleType>(type) : scaleNominal;
}

gxSMDDimension operator*(double s, gxSMDDimension const &d)
{
  double nom = d.nomDim_;
  double min = d.minDim_;
  double max = d.maxDim_;
  switch (d.scaleType_) {
    case gxSMDDimension::scaleNone:
      break;
    case gxSMDDimension::scaleNominal:
      nom = d.nomDim_ * s;
      max = isSet(d.maxDim_) ? std::abs(d.nomDim_ - d.maxDim_) + nom : kUnsetDim;
      min = isSet(d.minDim_) ? nom - std::abs(d.nomDim_ - d.minDim_) : kUnsetDim;
      break;
    case gxSMDDimension::scaleAll:
      nom = s * d.nomDim_;
      max = isSet(d.maxDim_) ? d.maxDim_ * s : kUnsetDim;
      min = isSet(d.minDim_) ? d.minDim_ * s : kUnsetDim;
      break;
    default:
      return gxSMDDimension();
  }
  return gxSMDDimension(nom, min, max, d.scaleType_);
}

bool gxSMDDimension::withinTolerance(double value, double scale) const
{
  gxSMDDimension const scaled = scale * *this;
  if (isSet(scaled.minDim_) && value <= scaled.minDim_)
    return false;
  return !isSet(scaled.maxDim_) || !(value >= scaled.maxDim_);
}

bool operator==(gxSMDDimension const &a, gxSMDDimension const &b)
{
  return agree(a.nomDim_, b.nomDim_) && agree(a.minDim_, b.minDim_) && agree(a.maxDim_, b.maxDim_) &&
         a.scaleType_ == b.scaleType_;
}

gxArchive &operator||(gxArchive &archive, gxSMDDimension &d)
{
  if (gf_passVersion(archive, 0) != 0)
    throw gxArchive::UnknownVersion(nullptr, 0);
  gxSMDDimension passed = d;
  auto scaleType = static_cast<unsigned char>(d.scaleType_);
  archive || passed.nomDim_ || passed.minDim_ || passed.maxDim_ || scaleType;
  if (char const *const complaint = gxSMDDimension::complaint_(passed.nomDim_, passed.minDim_, passed.maxDim_))
    archive.fail(complaint);
  passed.scaleType_ = static_cast<gxSMDDimension::ScaleType>(scaleType);
  d = passed;
  return archive;
}

std::ostream &operator<<(std::ostream &os, gxSMDDimension const &d)
{
  return os << "gxSMDDimension(" << d.nomDim() << ", " << d.minDim() << ", " << d.maxDim() << ", scale type "
            << static_cast<int>(d.scaleType()) << ')';
}

// A tolerance is valid if the dimension that it describes is. One without a nominal is tried with a nominal that suits
// its tolerances. An upper offset alone has none to try, and is refused. Called for every segment of every edit, so
// nothing is thrown on the way.
bool gxDimTol::isValid_(double nom, double min, double max, TolType type)
{
  auto const isUnset = [](double v) { return std::abs(v - kUnsetDim) <= kDimEpsilon; };
  for (double const v : {nom, min, max})
    if (!(v >= 0.0) && !isUnset(v))
      return false;

  gxDimTol trial;
  trial.nomDim_ = nom;
  trial.minTol_ = min;
  trial.maxTol_ = max;
  trial.tolType_ = type;
  if (isUnset(nom) && !(isUnset(min) && isUnset(max))) {
    switch (type) {
      case Limits:
        trial.nomDim_ = isUnset(max) ? min + 1.0 : isUnset(min) ? max - 1.0 : (min + max) * 0.5;
        break;
      case Offsets:
        if (isUnset(min))
          return false;
        trial.nomDim_ = min + 1.0;
        break;
      case Percentages:
        trial.nomDim_ = 1.0;
        break;
      default:
        return false;
    }
  }
  return gxSMDDimension::complaint_(trial.nomDim_, trial.minDim(), trial.maxDim()) == nullptr;
}
