#include "dispc/wrfm/model.h"

#include "dispc/wrfm/modelprivate.h"
#include "dispc/wrfm/polyprivate.h"
#include "foundation/archive.h"
#include "foundation/geomarchive.h"
#include "foundation/numbers.h"
#include "foundation/polygon.h"

#include <algorithm>
#include <utility>

GX_EXCEPTION_IMPL(gxSMDGDModel::Errors, gxException, Errors, 0x1100037f, "Invalid model.")
GX_EXCEPTION_IMPL(gxSMDGDModel::invalidIndex, gxSMDGDModel::Errors, invalidIndex, 0x11000370,
                  "Invalid poly index specified.")
GX_EXCEPTION_IMPL(gxSMDGDModel::crossingPolys, gxSMDGDModel::Errors, crossingPolys, 0x11000371,
                  "At least two polys intersect.")
GX_EXCEPTION_IMPL(gxSMDGDModel::nestedPolys, gxSMDGDModel::Errors, nestedPolys, 0x11000372,
                  "At least one of the polys is nested.")

namespace
{

using Poly = gxSMDGDPoly;
using Polys = std::vector<Poly>;
using Model = gxSMDGDModel;

}  // namespace

gxSMDGDModel::~gxSMDGDModel() = default;

long gxSMDGDModel::numVertices() const
{
  long n = 0;
  for (Poly const &p : polys_)
    n += p.numVertices();
  return n;
}

Poly const &gxSMDGDModel::poly(int index) const
{
  if (index < 0 || index >= numPolys())
    throw invalidIndex();
  return polys_[static_cast<std::size_t>(index)];
}

void gxSMDGDModel::polys(Polys const &polys)
{
  Polys copies = polys;
  deleteAllPolys();
  polys_ = std::move(copies);
  for (Poly const &p : polys_)
    addPolyLabels_(p);
}

Model &gxSMDGDModel::operator<<(Poly const &poly)
{
  return *this << Poly(poly);
}

Model &gxSMDGDModel::operator<<(Poly &&poly)
{
  mutating();
  polys_.push_back(std::move(poly));
  addPolyLabels_(polys_.back());
  return *this;
}

Model &gxSMDGDModel::operator<<(Model const &model)
{
  Polys const others = model.polys_;
  for (Poly const &p : others)
    *this << p;
  return *this;
}

bool gxSMDGDModel::isOpen() const
{
  return std::any_of(polys_.begin(), polys_.end(), [](Poly const &p) { return p.isOpen(); });
}

void gxSMDGDModel::colors(gxSMDColors const &colors)
{
  mutating();
  for (Poly &p : polys_)
    p.colors(colors);
}

void gxSMDGDModel::positiveArrowColor(gxColor const &color)
{
  mutating();
  for (Poly &p : polys_)
    p.positiveArrowColor(color);
}

void gxSMDGDModel::negativeArrowColor(gxColor const &color)
{
  mutating();
  for (Poly &p : polys_)
    p.negativeArrowColor(color);
}

// Parts and images

void gxSMDGDPolyPrivate::subModel(Model &model, Poly const &poly, long label)
{
  auto const stored = static_cast<std::int32_t>(label);
  for (int v = 0; v < poly.numVertices(); ++v) {
    if (poly.vertex(v, false).subModelLabel() == stored)
      model << subPoly(poly, v, false);
  }
}

void gxSMDGDModel::subModel(long label, Model &out) const
{
  Model result = out;
  for (Poly const &p : polys_)
    gxSMDGDPolyPrivate::subModel(result, p, label);
  gxSMDGDModelPrivate::normalize_(result);
  out = result;
}

Model gxSMDGDModel::flip() const
{
  Model result;
  for (Poly const &p : polys_)
    result << gxSMDGDPolyPrivate::flip(p);
  result.position_ = gx2Rigid(gxDegree(-position_.angle().value()), gxVector<2>() - position_.translation());
  return result;
}

std::vector<long> gxSMDGDModel::polysOutOfTolerance(gxXform<2> const &a, gxXform<2> const &b) const
{
  std::vector<long> broken;
  for (long i = 0; i < numPolys(); ++i) {
    if (!polys_[static_cast<std::size_t>(i)].segmentsOutOfTolerance(a, b).empty())
      broken.push_back(i);
  }
  return broken;
}

Model operator*(double s, Model const &model)
{
  Model result;
  for (Poly const &p : model.polys_)
    result << s * p;
  result.position_ = gx2Rigid(model.position_.angle(), model.position_.translation() * s);
  return result;
}

Model operator*(gx2Rigid const &map, Model const &model)
{
  Model result;
  for (Poly const &p : model.polys_)
    result << map * p;
  return result;
}

bool operator==(Model const &a, Model const &b)
{
  return gxSMDGDModelPrivate::equivalent(a, b) && a.position_ == b.position_;
}

// For derived classes

void gxSMDGDModel::replacePoly(int index, Poly const &poly)
{
  if (index < 0 || index >= numPolys())
    return;
  Polys changed = polys_;
  changed[static_cast<std::size_t>(index)] = poly;
  rebuild_(changed);
}

void gxSMDGDModel::deletePoly(int index)
{
  if (index < 0 || index >= numPolys())
    return;
  Polys changed = polys_;
  changed.erase(changed.begin() + index);
  rebuild_(changed);
}

// What is made anew has no name.
void gxSMDGDModel::rebuild_(Polys const &polys)
{
  Model made;
  made.polys(polys);
  made.position_ = position_;
  *this = made;
}

void gxSMDGDModel::deleteAllPolys()
{
  mutating();
  polys_.clear();
  subModelLabels_.clear();
}

void gxSMDGDModel::reset()
{
  *this = gxSMDGDModel();
}

void gxSMDGDModel::addPolyLabels_(Poly const &poly)
{
  for (long const label : gxSMDGDPolyPrivate::subModelLabels(poly)) {
    if (std::find(subModelLabels_.begin(), subModelLabels_.end(), label) == subModelLabels_.end())
      subModelLabels_.push_back(gf_narrow(label));
  }
}

gxVector<2> gxSMDGDModel::centerOfMass_() const
{
  gxVector<2> sum;
  long const n = numVertices();
  for (Poly const &p : polys_)
    sum = sum + gxSMDGDPolyPrivate::position(p).translation() * double(p.numVertices());
  return n == 0 ? gxVector<2>() : sum * (1.0 / double(n));
}

gxDegree gxSMDGDModel::orientation_() const
{
  return polys_.empty() ? gxDegree(0.0) : gxSMDGDPolyPrivate::position(polys_.front()).angle();
}

double gxSMDGDModel::perimeter_(double minLength) const
{
  double sum = 0.0;
  for (Poly const &p : polys_)
    sum += gxSMDGDPolyPrivate::perimeter(p, minLength);
  return sum;
}

void gxSMDGDModel::reInit()
{
  deleteAllPolys();
  position_ = gx2Rigid();
}

GX_PERSISTENT_IMPL(gxSMDGDModel, "gxSMDGDModel", 0)
void gxSMDGDModel::serialize_(gxArchive &archive, unsigned char version)
{
  if (version != 0)
    throw gxArchive::UnknownVersion(nullptr, 0);
  gxSMDGeometricDescription::dispatchSerialize(archive);
  auto const passVersion = [&] {
    if (gf_passVersion(archive, 0) != 0)
      throw gxArchive::UnknownVersion(nullptr, 0);
  };
  try {
    passVersion();
    gf_passElements(archive, polys_, 1, [](gxArchive &a, Poly &p) { a || static_cast<gxPersistent &>(p); });
    passVersion();
    gf_passElements(archive, subModelLabels_, sizeof(std::int32_t));
    archive || position_;
    if (archive.isLoading())
      checkLoaded_(archive);
  } catch (...) {
    if (archive.isLoading())
      gxSMDGDModel::reInit();  // valid, though empty
    throw;
  }
}

// The labels are those of the outlines, in whatever order they came up.
void gxSMDGDModel::checkLoaded_(gxArchive const &archive) const
{
  Model anew;
  for (Poly const &p : polys_)
    anew.addPolyLabels_(p);
  std::vector<std::int32_t> stored = subModelLabels_;
  std::sort(stored.begin(), stored.end());
  std::sort(anew.subModelLabels_.begin(), anew.subModelLabels_.end());
  if (stored != anew.subModelLabels_)
    archive.fail("the labels of a model are not those of its polys");
}

std::ostream &operator<<(std::ostream &os, Model const &model)
{
  gx2Rigid const position = gxSMDGDModelPrivate::position(model);
  os << "model \"" << model.name() << "\" at " << position.translation() << ", " << position.angle() << '\n';
  for (Poly const &p : model.polys())
    os << p << '\n';
  return os;
}

// The extended interface

gx_Instantiator gxSMDGDModelPrivate::sExemplar(typeid(gxSMDGDModelPrivate), "gxSMDGDModelPrivate", &make);
gxPersistent *gxSMDGDModelPrivate::make()
{
  return new gxSMDGDModelPrivate;
}

gx2Rigid gxSMDGDModelPrivate::normalizedPosition(Model const &model)
{
  bool const isCorner = model.numPolys() == 1 && model.numVertices() == 3;
  return {model.orientation_(), isCorner ? model.poly(0).vertices()[1].point() : model.centerOfMass_()};
}

// Position and outlines together say the same as before.
void gxSMDGDModelPrivate::normalize_(Model &model)
{
  gx2Rigid const position = normalizedPosition(model);
  model = position.inverse() * model;
  model.position_ = position;
}

bool gxSMDGDModelPrivate::equivalent(Model const &a, Model const &b)
{
  return a.polys_.size() == b.polys_.size() && std::equal(a.polys_.begin(), a.polys_.end(), b.polys_.begin());
}

int gxSMDGDModelPrivate::numPosProbesRequired(Model const &model, gxXform<2> const &xform,
                                              std::vector<gxXform<2>> const &perPoly, double spacing)
{
  if (perPoly.size() != model.polys_.size())
    throw invalidIndex();
  double total = 0.0;
  for (std::size_t i = 0; i < perPoly.size(); ++i) {
    if (model.polys_[i].weight() > 0.0)
      total += gxSMDGDPolyPrivate::perimeter(model.polys_[i], xform * perPoly[i]);
  }
  return model.polys_.empty() ? 0 : gf_truncate(total / spacing);
}

void gxSMDGDModelPrivate::corner(Model const &model, Model &out, int polyIndex, int vertex, bool wrap)
{
  Model result = out;
  result << gxSMDGDPolyPrivate::corner(model.poly(polyIndex), vertex, wrap);
  normalize_(result);
  out = result;
}

Model gxSMDGDModelPrivate::convert(std::vector<gxPolygon> const &polygons)
{
  Model result;
  for (gxPolygon const &p : polygons)
    result << gxSMDGDPolyPrivate::convert(p);
  return result;
}
