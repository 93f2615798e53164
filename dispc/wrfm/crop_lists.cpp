// Crop of whole models, and outlines that cross each other.

#include "dispc/wrfm/detail/crop.h"
#include "dispc/wrfm/modelprivate.h"
#include "dispc/wrfm/polyprivate.h"
#include "foundation/polygon.h"

#include <algorithm>

namespace
{

using Poly = gxSMDGDPoly;
using Model = gxSMDGDModel;

/// An outline held against others: whether it meets them.
class Crossing
{
 public:
  explicit Crossing(Poly const &poly) : poly_(poly), tree_(poly), perimeter_(gxSMDGDPolyPrivate::perimeter(poly, 0.0))
  {
  }
  Poly const &poly() const { return poly_; }
  double perimeter() const { return perimeter_; }
  bool meets(Crossing const &other) const
  {
    double const tolerance = gx_PolyFields::onPieceTolerance(poly_, other.poly_);
    if (!tree_.box().widened(tolerance).meets(other.tree_.box()))
      return false;
    for (int i = 0; i < poly_.numVertices(); ++i) {
      gxVector<2> const p = poly_.vertex(i, false).point();
      gx_PolyBoxes::Box box = gx_PolyFields::boxAt(poly_, i);
      box.add({p.x(), p.y(), p.x(), p.y()});
      if (other.tree_.anyPieceNear(box.widened(tolerance),
                                   [&](gx_RoundedPiece const &of) { return meetsAt(i, of, tolerance); }))
        return true;
    }
    return false;
  }

 private:
  bool meetsAt(int i, gx_RoundedPiece const &of, double tolerance) const
  {
    return gx_meet(gx_roundedVertex(poly_, i), of, tolerance).count != 0 ||
           (gxSMDGDPolyPrivate::previousSegmentIndex_(poly_, i) != -1 &&
            gx_meet(gx_roundedPiece(poly_, i), of, tolerance).count != 0);
  }

  Poly const &poly_;
  gx_CropMask tree_;
  double perimeter_;
};

void refuseNested(Model const &model)
{
  int const n = static_cast<int>(model.numPolys());
  for (int i = 0; i < n && n > 1; ++i) {
    gx_CropMask const outer(model.poly(i));
    for (int j = 0; j < n; ++j) {
      if (j == i)
        continue;
      gxVector<2> const p = model.poly(j).vertex(0, false).point();
      if (model.poly(i).isOpen())
        throw Poly::notClosed();
      if (outer.holds(p))
        throw Model::nestedPolys();
    }
  }
}

}  // namespace

Model gxSMDGDModelPrivate::crop(Model const &model, Poly const &mask, bool keepInside)
{
  Model result;
  for (Poly const &p : model.polys())
    result << gxSMDGDPolyPrivate::crop(p, mask, keepInside);
  return result;
}

Model gxSMDGDModelPrivate::crop(Model const &model, gxPolygon const &mask, bool keepInside)
{
  return crop(model, gxSMDGDPolyPrivate::convert(mask), keepInside);
}

Model gxSMDGDModelPrivate::crop(Model const &model, Model const &masks)
{
  refuseNested(model);
  Model result;
  for (Poly const &p : model.polys())
    for (Poly const &mask : masks.polys())
      result << gxSMDGDPolyPrivate::crop(p, mask, true);
  return result;
}

Model gxSMDGDModelPrivate::crop(Model const &model, std::vector<gxPolygon> const &masks)
{
  return crop(model, convert(masks));
}

void gxSMDGDPolyPrivate::crossingPolysResolve(std::list<Poly> &out, std::list<Poly> const &in)
{
  std::list<Crossing> kept;
  for (Poly const &poly : in) {
    std::list<Crossing> candidate;
    candidate.emplace_back(poly);
    std::vector<std::list<Crossing>::iterator> crossed;
    bool wins = true;
    for (auto at = kept.begin(); at != kept.end() && wins; ++at) {
      if (!candidate.front().meets(*at))
        continue;
      crossed.push_back(at);
      wins = !(at->perimeter() >= candidate.front().perimeter());
    }
    if (!wins)
      continue;
    for (auto const &at : crossed)
      kept.erase(at);
    kept.splice(kept.end(), candidate);
  }
  std::list<Poly> result;
  for (Crossing const &k : kept)
    result.push_back(k.poly());
  out = std::move(result);
}
