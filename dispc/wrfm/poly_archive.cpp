#include "dispc/wrfm/detail/polyedit.h"
#include "dispc/wrfm/detail/polypiece.h"
#include "dispc/wrfm/poly.h"
#include "dispc/wrfm/polyprivate.h"
#include "foundation/archive.h"
#include "foundation/geomarchive.h"
#include "foundation/shapeserror.h"

#include <algorithm>

namespace
{
/// What fits the vertices fits them up to this part of the size of the outline, in whichever release it was found.
constexpr double kFitTolerance = 1e-9;

template <class T>
void passVector(gxArchive &archive, std::vector<T> &elements, std::size_t bytesEach)
{
  if (gf_passVersion(archive, 0) != 0)
    throw gxArchive::UnknownVersion(nullptr, 0);
  gf_passElements(archive, elements, bytesEach);
}

void passFlag(gxArchive &archive, std::uint8_t &flag)
{
  archive || flag;
  if (flag > 1)
    archive.fail("a flag of a poly is neither 0 nor 1");
}

std::vector<std::int32_t> sorted(std::vector<std::int32_t> labels)
{
  std::sort(labels.begin(), labels.end());
  return labels;
}
}  // namespace

// Version 0 had no weight.
GX_PERSISTENT_IMPL(gxSMDGDPoly, "gxSMDGDPoly", 1)
void gxSMDGDPoly::serialize_(gxArchive &archive, unsigned char version)
{
  if (version > 1)
    throw gxArchive::UnknownVersion(nullptr, 0);
  try {
    gxSMDGeometricDescription::dispatchSerialize(archive);
    passVector(archive, vertices_, 60);
    passVector(archive, subModelLabels_, 4);
    passVector(archive, prevRoundPoints_, 16);
    passVector(archive, nextRoundPoints_, 16);
    passVector(archive, roundSpans_, 8);
    passFlag(archive, isOpen_);
    passFlag(archive, directionReversed_);
    archive || colors_ || positiveArrowColor_ || negativeArrowColor_;
    if (version == 0)
      weight_ = 1.0;
    else
      archive || weight_;
    if (archive.isLoading()) {
      boxes_.clear();
      checkLoaded_(archive);
    }
  } catch (...) {
    if (archive.isLoading())
      gxSMDGDPoly::reInit();  // valid, though empty
    throw;
  }
}

// Whether the outline crosses itself is not asked: it was asked when the outline was built, and no answer makes reading
// it unsafe.
void gxSMDGDPoly::checkLoaded_(gxArchive const &archive)
{
  if (char const *const fault = faultOfLoaded_())
    archive.fail(fault);

  std::vector<std::int32_t> const stored = subModelLabels_;
  rebuildLabels_();
  if (sorted(stored) != sorted(subModelLabels_))
    archive.fail("the labels of a poly are not those of its vertices");
  labelsInOrder_ = stored == subModelLabels_;
  subModelLabels_ = stored;
}

char const *gxSMDGDPoly::faultOfLoaded_() const
{
  std::size_t const n = vertices_.size();
  if (prevRoundPoints_.size() != n || nextRoundPoints_.size() != n || roundSpans_.size() != n)
    return "the roundings of a poly are not as many as its vertices";
  if (isClosed() && n < 2)
    return "a closed poly has at least 2 vertices";
  for (gxSMDGDPolyVertex const &v : vertices_)
    if (!v.point_.isFinite() || !std::isfinite(v.vertexRadius_) || !std::isfinite(v.segmentAngleSpan_.value()))
      return "a vertex is not finite";
  double const size = outlineSize_();
  for (std::size_t v = 0; v < n; ++v)
    if (!fits_(static_cast<int>(v), size))
      return "a rounding of a poly does not fit its vertices";
  return nullptr;
}

// A fillet beside an end of an outline keeps what it was given, along a whole segment, after the outline has grown.
bool gxSMDGDPoly::fits_(int v, double size) const
{
  std::size_t const i = vertexAt_(v, false);
  Fillet const stored{prevRoundPoints_[i], nextRoundPoints_[i], roundSpans_[i]};
  if (!hasFillet_(v))
    return stored.prev == vertices_[i].point_ && stored.next == vertices_[i].point_ && stored.span == 0.0;

  double const near = kFitTolerance * size;
  for (int const whole : {0, 3, 1, 2}) {
    try {
      Fillet const found = filletAbout_(filletCenter_(v, whole & 1, whole & 2), v);
      if (found.prev.distance(stored.prev) <= near && found.next.distance(stored.next) <= near &&
          std::abs(found.span - stored.span) <= kFitTolerance * gf_turnDegrees)
        return true;
    } catch (invalidRounding const &) {
    } catch (gxShapesError::Errors const &) {
    }
  }
  return false;
}

gx_Instantiator gxSMDGDPolyPrivate::sExemplar(typeid(gxSMDGDPolyPrivate), "gxSMDGDPolyPrivate", &make);

gxPersistent *gxSMDGDPolyPrivate::make()
{
  return new gxSMDGDPolyPrivate;
}
