#include "dispc/wrfm/modelprivate.h"
#include "foundation/rect.h"

// Boxes of mapped models.

namespace
{

template <class Wanted>
gxRect boxOf(gxSMDGDModel const &model, std::vector<gxXform<2>> const &perPoly, gxXform<2> const &xform, Wanted wanted)
{
  if (perPoly.size() != model.polys().size())
    throw gxSMDGDModel::invalidIndex();
  gxRect box;
  for (std::size_t i = 0; i < perPoly.size(); ++i) {
    if (wanted(model.polys()[i]))
      box = box.enclose(model.polys()[i].boundingBox(xform * perPoly[i]));
  }
  return box;
}

}  // namespace

gxRect gxSMDGDModelPrivate::boundingBox(gxSMDGDModel const &model, gxXform<2> const &xform)
{
  std::vector<gxXform<2>> const asTheyAre(model.polys().size());
  return boundingBox(model, asTheyAre, xform);
}

gxRect gxSMDGDModelPrivate::boundingBox(gxSMDGDModel const &model, std::vector<gxXform<2>> const &perPoly,
                                        gxXform<2> const &xform)
{
  return boxOf(model, perPoly, xform, [](gxSMDGDPoly const &) { return true; });
}

gxRect gxSMDGDModelPrivate::boundingBoxPositive(gxSMDGDModel const &model, std::vector<gxXform<2>> const &perPoly,
                                                gxXform<2> const &xform)
{
  return boxOf(model, perPoly, xform, [](gxSMDGDPoly const &poly) { return poly.weight() > 0.0; });
}

gxRect gxSMDGDModel::boundingBox(gxXform<2> const &xform) const
{
  return gxSMDGDModelPrivate::boundingBox(*this, xform);
}
