#include "dispc/wrfm/modelprivate.h"
#include "dispc/wrfm/polyprivate.h"
#include "dispc/wrfm/wirefrm.h"

#include <cstddef>
#include <utility>

// Wireframes to outlines and models, and back.

gxSMDGDPoly::gxSMDGDPoly(gx2Wireframe const &wireframe, std::string const &) : gxSMDGDPoly(wireframe.poly()) {}

gx2Wireframe gxSMDGDPolyPrivate::wireframe(gxSMDGDPoly const &poly)
{
  return gx2Wireframe(poly);
}

gxSMDGDPoly const &gxSMDGDPolyPrivate::poly(gxGenPoly const &polygon)
{
  return polygon.poly();
}

gxXform<2> const &gxSMDGDPolyPrivate::wireframeXform(gxGenPoly const &polygon)
{
  return polygon.xform();
}

gxSMDGDModel &gxSMDGDModel::operator<<(std::vector<gx2Wireframe> const &wireframes)
{
  for (gx2Wireframe const &wireframe : wireframes) {
    gxSMDGDPoly poly(wireframe, "poly");
    poly.rename("poly");
    *this << poly;
  }
  return *this;
}

namespace
{

/// Calls take(wireframe, weight) for those of a weight other than 0. Throws before the first call if the lists do not
/// fit each other or a weight is out of range.
template <class Take>
void visitWeighted(std::vector<gx2Wireframe> const &wireframes, std::vector<double> const &weights, Take take)
{
  if (wireframes.empty() || wireframes.size() != weights.size())
    throw gxSMDGDModel::invalidIndex();
  for (double const weight : weights)
    if (!(weight >= -1.0 && weight <= 1.0))
      throw gxSMDGDModel::invalidIndex();
  for (std::size_t i = 0; i < wireframes.size(); ++i)
    if (weights[i] != 0.0)
      take(wireframes[i], weights[i]);
}

}  // namespace

gxSMDGDModel gxSMDGDModelPrivate::weightedWireframesToModel(std::vector<gx2Wireframe> &wireframes,
                                                            std::vector<double> &weights)
{
  gxSMDGDModel model;
  visitWeighted(wireframes, weights, [&](gx2Wireframe const &wireframe, double weight) {
    gxSMDGDPoly poly = wireframe.poly();
    poly.toggleDirection();
    poly.weight(weight);
    model << poly;
  });
  wireframes.clear();
  weights.clear();
  return model;
}

std::vector<gxXform<2>> gxSMDGDModelPrivate::wireframeXforms(std::vector<gx2Wireframe> const &wireframes,
                                                             std::vector<double> const &weights)
{
  std::vector<gxXform<2>> xforms;
  visitWeighted(wireframes, weights,
                [&](gx2Wireframe const &wireframe, double) { xforms.push_back(wireframe.xform()); });
  return xforms;
}
