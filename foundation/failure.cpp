#include "foundation/failure.h"

#include "foundation/flatlist.h"
#include "foundation/matherror.h"
#include "foundation/pelerror.h"
#include "foundation/shapeserror.h"

#include <cstdint>
#include <string>

namespace
{

constexpr std::uint32_t failureBit = 0x80000000u;

template <class Error>
void throwIf(long number)
{
  if (Error error; error.errorNumber() == number)
    throw error;
}

template <class... Family>
void throwOneOf(long number)
{
  (throwIf<Family>(number), ...);
}

}  // namespace

long gfFailureCode(gxException const &error)
{
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(error.errorNumber()) | failureBit);
}

void gfThrowExceptionOnFailure(long code)
{
  auto const word = static_cast<std::uint32_t>(code);
  if (!(word & failureBit))
    return;
  long const number = word & ~failureBit;
  using M = gxMathError;
  using S = gxShapesError;
  using P = gxPel;
  throwOneOf<gxBadPointer, M::Errors, M::Singular, M::NoConvergence>(number);
  throwOneOf<S::Errors, S::NotOpenContour, S::NotRegion, S::NotContour, S::NotReversible, S::NotLinear>(number);
  throwOneOf<S::EmptyShape, S::InfiniteShape, S::DegenerateShape, S::NoTangent, S::BadCoef, S::BadGeom>(number);
  throwOneOf<S::BadParams, S::BadRadius, S::BadWeight, S::BadKnots, S::NoIntersection, S::SampleOverflow>(number);
  throwOneOf<P::Errors, P::BadCoord, P::UnboundWindow, P::BadWindow, P::BadSize, P::BadAlignment, P::BadImageFile>(
      number);
  throwOneOf<gxDrawListError::Errors, gxDrawListError::BadRecord, gxDrawListError::NoRoom>(number);
  throw gxExceptionWithString("failure code " + std::to_string(static_cast<std::int32_t>(word)));
}
