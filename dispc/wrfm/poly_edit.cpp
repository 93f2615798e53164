#include "dispc/wrfm/detail/polyedit.h"
#include "dispc/wrfm/poly.h"
#include "foundation/shapeserror.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace
{
/// Room for one element more, so that inserting it cannot fail. Grows like the vector itself would.
template <class T>
void makeRoom(std::vector<T> &elements)
{
  if (elements.size() == elements.capacity())
    elements.reserve(std::max<std::size_t>(8, 2 * elements.size()));
}

template <class T>
void insertAtIndex(std::vector<T> &elements, int at, T &&element)
{
  elements.insert(elements.begin() + at, std::move(element));
}
}  // namespace

// ---- The transaction

gxSMDGDPoly::Edit::~Edit()
{
  if (!done_)
    undo();
}

void gxSMDGDPoly::Edit::insert(int at, gxSMDGDPolyVertex &&v)
{
  long const label = v.subModelLabel_;
  std::size_t const labels = poly_.subModelLabels_.size();
  insertAt(at, std::move(v), {});
  if (at + 1 != poly_.numVertices())
    poly_.boxes_.clear();  // they follow the numbers
  kind_ = Kind::insertion;
  at_ = at;
  poly_.addVertexLabel_(label);
  addedLabels_ = poly_.subModelLabels_.size() - labels;
  if (label != -1 && at + 1 != poly_.numVertices())
    poly_.labelsInOrder_ = false;
}

void gxSMDGDPoly::Edit::replace(int at, gxSMDGDPolyVertex &&v)
{
  gxSMDGDPolyVertex &present = poly_.vertices_[static_cast<std::size_t>(at)];
  bool const sameLabel = present.subModelLabel_ == v.subModelLabel_;
  vertex_ = std::exchange(present, std::move(v));
  kind_ = Kind::replacement;
  at_ = at;
  if (!sameLabel || !poly_.labelsInOrder_)
    findLabels();
}

void gxSMDGDPoly::Edit::remove(int at)
{
  fillet_ = filletAt(at);
  vertex_ = std::move(poly_.vertices_[static_cast<std::size_t>(at)]);
  eraseAt(at);
  poly_.boxes_.clear();
  kind_ = Kind::removal;
  at_ = at;
  if (vertex_.subModelLabel_ != -1 || !poly_.labelsInOrder_)
    findLabels();
}

void gxSMDGDPoly::Edit::replaceAll(Vertices &&vertices)
{
  std::size_t const n = vertices.size();
  prevRoundPoints_.resize(n);
  nextRoundPoints_.resize(n);
  roundSpans_.resize(n);
  vertices_ = std::move(vertices);
  swapAll();
  kind_ = Kind::all;
  findLabels();
}

void gxSMDGDPoly::Edit::swapAll() noexcept
{
  poly_.vertices_.swap(vertices_);
  poly_.prevRoundPoints_.swap(prevRoundPoints_);
  poly_.nextRoundPoints_.swap(nextRoundPoints_);
  poly_.roundSpans_.swap(roundSpans_);
  poly_.boxes_.clear();
}

void gxSMDGDPoly::Edit::findLabels()
{
  labels_.swap(poly_.subModelLabels_);
  keptLabels_ = true;
  poly_.rebuildLabels_();
}

void gxSMDGDPoly::Edit::keepFilletsAround(int i)
{
  for (int const v : poly_.filletsAround_(i))
    fillets_[static_cast<std::size_t>(numFillets_++)] = {v, filletAt(v)};
}

gxSMDGDPoly::Fillet gxSMDGDPoly::Edit::filletAt(int v) const
{
  auto const i = static_cast<std::size_t>(v);
  return {poly_.prevRoundPoints_[i], poly_.nextRoundPoints_[i], poly_.roundSpans_[i]};
}

void gxSMDGDPoly::Edit::put(KeptFillet const &kept) noexcept
{
  auto const i = static_cast<std::size_t>(kept.vertex);
  poly_.prevRoundPoints_[i] = kept.fillet.prev;
  poly_.nextRoundPoints_[i] = kept.fillet.next;
  poly_.roundSpans_[i] = kept.fillet.span;
  poly_.markBoxesStale_(kept.vertex);
}

void gxSMDGDPoly::Edit::insertAt(int at, gxSMDGDPolyVertex &&v, Fillet const &fillet)
{
  makeRoom(poly_.vertices_);
  makeRoom(poly_.prevRoundPoints_);
  makeRoom(poly_.nextRoundPoints_);
  makeRoom(poly_.roundSpans_);
  insertAtIndex(poly_.vertices_, at, std::move(v));
  insertAtIndex(poly_.prevRoundPoints_, at, gxVector<2>(fillet.prev));
  insertAtIndex(poly_.nextRoundPoints_, at, gxVector<2>(fillet.next));
  insertAtIndex(poly_.roundSpans_, at, double(fillet.span));
}

void gxSMDGDPoly::Edit::eraseAt(int at) noexcept
{
  poly_.vertices_.erase(poly_.vertices_.begin() + at);
  poly_.prevRoundPoints_.erase(poly_.prevRoundPoints_.begin() + at);
  poly_.nextRoundPoints_.erase(poly_.nextRoundPoints_.begin() + at);
  poly_.roundSpans_.erase(poly_.roundSpans_.begin() + at);
}

void gxSMDGDPoly::Edit::undo() noexcept
{
  while (numFillets_ > 0)
    put(fillets_[static_cast<std::size_t>(--numFillets_)]);
  switch (kind_) {
    case Kind::none:
      break;
    case Kind::insertion:
      if (at_ + 1 != poly_.numVertices())
        poly_.boxes_.clear();
      eraseAt(at_);
      break;
    case Kind::replacement:
      poly_.vertices_[static_cast<std::size_t>(at_)] = std::move(vertex_);
      break;
    case Kind::removal:  // there is room: the vertex was there before
      insertAt(at_, std::move(vertex_), fillet_);
      poly_.boxes_.clear();
      break;
    case Kind::all:
      swapAll();
      break;
  }
  if (keptLabels_)
    poly_.subModelLabels_.swap(labels_);
  else
    poly_.subModelLabels_.resize(poly_.subModelLabels_.size() - addedLabels_);
  poly_.labelsInOrder_ = labelsInOrder_;
  poly_.isOpen_ = wasOpen_;
}

// ---- The changes

void gxSMDGDPoly::checkFinite_(gxSMDGDPolyVertex const &v)
{
  if (!v.point_.isFinite() || !std::isfinite(v.segmentAngleSpan_.value()))
    throw gxShapesError::BadGeom();
  if (!std::isfinite(v.vertexRadius_))
    throw invalidRounding();
}

void gxSMDGDPoly::vertices(std::vector<gxSMDGDPolyVertex> const &vertices)
{
  for (gxSMDGDPolyVertex const &v : vertices)
    checkFinite_(v);
  std::vector<gxSMDGDPolyVertex> copy(vertices);
  Edit edit(*this);
  edit.replaceAll(std::move(copy));
  validate_();
  edit.keep();
}

void gxSMDGDPoly::insertVertex(int after, gxSMDGDPolyVertex const &v)
{
  if (after != -1)
    vertexAt_(after, false);
  checkFinite_(v);
  gxSMDGDPolyVertex copy(v);
  Edit edit(*this);
  edit.insert(after + 1, std::move(copy));
  edit.keepFilletsAround(after + 1);
  validateInsertion_(after);
  edit.keep();
}

gxSMDGDPoly &gxSMDGDPoly::operator<<(gxSMDGDPolyVertex const &v)
{
  insertVertex(static_cast<int>(numVertices()) - 1, v);
  return *this;
}

void gxSMDGDPoly::replaceVertex(int index, gxSMDGDPolyVertex const &v)
{
  vertexAt_(index, false);
  checkFinite_(v);
  gxSMDGDPolyVertex copy(v);
  Edit edit(*this);
  edit.replace(index, std::move(copy));
  edit.keepFilletsAround(index);
  validateReplacement_(index);
  edit.keep();
}

void gxSMDGDPoly::deleteVertex(int index)
{
  vertexAt_(index, false);
  Edit edit(*this);
  edit.remove(index);
  if (!vertices_.empty()) {
    edit.keepFilletsAround(vertexIndex_(index - 1, true));
    edit.keepFilletsAround(vertexIndex_(index, true));
  }
  validateDeletion_(index);
  edit.keep();
}

void gxSMDGDPoly::deleteAllVertices()
{
  vertices({});
}

void gxSMDGDPoly::close()
{
  Edit edit(*this);
  edit.close();
  if (!vertices_.empty())
    edit.keepFilletsAround(0);
  validateClose_();
  edit.keep();
}

// Nothing is kept, on purpose: an outline that is refused now stays open.
void gxSMDGDPoly::open()
{
  mutating();
  isOpen_ = 1;
  validateReplacement_(0);
}

void gxSMDGDPoly::reset()
{
  *this = gxSMDGDPoly();
}

void gxSMDGDPoly::reInit()
{
  vertices_.clear();
  subModelLabels_.clear();
  prevRoundPoints_.clear();
  nextRoundPoints_.clear();
  roundSpans_.clear();
  boxes_.clear();
  isOpen_ = 1;
  directionReversed_ = 0;
  labelsInOrder_ = true;
}

void gxSMDGDPoly::addVertexLabel_(long label)
{
  auto const stored = static_cast<std::int32_t>(label);
  if (stored != -1 && std::find(subModelLabels_.begin(), subModelLabels_.end(), stored) == subModelLabels_.end())
    subModelLabels_.push_back(stored);
}

void gxSMDGDPoly::rebuildLabels_()
{
  std::unordered_set<std::int32_t> seen = {-1};
  std::int32_t last = -1;
  subModelLabels_.clear();
  for (gxSMDGDPolyVertex const &v : vertices_)
    if (v.subModelLabel_ != std::exchange(last, v.subModelLabel_) && seen.insert(v.subModelLabel_).second)
      subModelLabels_.push_back(v.subModelLabel_);
  labelsInOrder_ = true;
}
