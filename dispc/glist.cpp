#include "dispc/glist.h"

#include "dispc/uitablet.h"
#include "foundation/archive.h"

#include <algorithm>
#include <limits>

namespace
{

constexpr char const *module = "dispc/glist";

// A handle, its flag and its class number.
constexpr std::size_t leastBytesOfMember = 1;

gxPtrHandle<gxGraphic> cloneOf(gxPtrHandle_const<gxGraphic> const &graphic)
{
  return graphic->clone();
}

gxPtrHandle<gxGraphic> cloneOrNull(gxPtrHandle_const<gxGraphic> const &graphic)
{
  return graphic.isNull() ? nullptr : graphic->clone();
}

template <class Handles, class Operation>
gxGraphicList::Items eachOf(Handles const &handles, Operation operation)
{
  gxGraphicList::Items result;
  result.reserve(handles.size());
  std::transform(handles.begin(), handles.end(), std::back_inserter(result), operation);
  return result;
}

template <class PassMember>
void passList(gxArchive &archive, gxGraphicList &list, PassMember passMember)
{
  if (gf_passVersion(archive, 0) != 0)
    throw gxArchive::UnknownVersion(module, __LINE__);
  if (archive.isLoading())
    list.reset();
  gf_passElements(archive, list.items(), leastBytesOfMember, passMember);
}

}  // namespace

// List

gxGraphicList::gxGraphicList(gxGraphicList const &other) : items_(eachOf(other.items_, cloneOf)) {}

gxGraphicList &gxGraphicList::operator=(gxGraphicList const &other)
{
  if (this != &other)
    items_ = eachOf(other.items_, cloneOf);
  return *this;
}

void gxGraphicList::append(gxPtrHandle<gxGraphic> const &graphic, bool clone)
{
  items_.push_back(clone ? cloneOf(graphic) : graphic);
}

void gxGraphicList::append(gxGraphicList &other, bool clone)
{
  if (clone)
    return append(std::as_const(other));
  Items const before = other.items_;
  items_.insert(items_.end(), before.begin(), before.end());
}

void gxGraphicList::append(gxGraphicList const &other)
{
  Items const clones = eachOf(other.items_, cloneOf);
  items_.insert(items_.end(), clones.begin(), clones.end());
}

void gxGraphicList::draw(gxUITablet &tablet, gxGraphic::Layers layer) const
{
  for (gxPtrHandle<gxGraphic> const &item : items_)
    std::as_const(*item).draw(tablet, layer);
}

gxUISketch gxGraphicList::sketch(gxGraphic::Layers layer) const
{
  gxUITablet recorder;
  recorder.recordOn() = true;
  draw(recorder, layer);
  return recorder.sketch();
}

gxArchive &operator||(gxArchive &archive, gxGraphicList &list)
{
  passList(archive, list, [](gxArchive &a, gxPtrHandle<gxGraphic> &item) { a || item; });
  return archive;
}

// Group

gxGraphicGroup::~gxGraphicGroup() = default;

gxGraphicGroup::gxGraphicGroup(gxGraphicGroup const &other) : gxPersistent(), gxRepBase(), gxGraphic(other)
{
  assign_(other);
}

gxGraphicGroup &gxGraphicGroup::operator=(gxGraphicGroup const &other)
{
  if (this != &other)
    assign_(other);
  return *this;
}

void gxGraphicGroup::assign_(gxGraphicGroup const &other)
{
  gxGraphicList::Items clones = eachOf(other.list_.items(), cloneOrNull);
  gxGraphic::operator=(other);
  list_.items() = std::move(clones);
  isNull_ = other.isNull_;
}

gxPtrHandle_const<gxGraphic> gxGraphicGroup::item(long index) const
{
  if (index < 0 || index >= numItems())
    throw BadParams("Item index out of range");
  return list_.items()[static_cast<std::size_t>(index)];
}

void gxGraphicGroup::getItems(std::vector<gxPtrHandle_const<gxGraphic>> &result) const
{
  result.assign(list_.items().begin(), list_.items().end());
}

void gxGraphicGroup::items(std::vector<gxPtrHandle<gxGraphic>> const &items, bool clone)
{
  replaceItems(clone ? eachOf(items, cloneOrNull) : items);
}

void gxGraphicGroup::items(std::vector<gxPtrHandle_const<gxGraphic>> const &items)
{
  replaceItems(eachOf(items, cloneOrNull));
}

void gxGraphicGroup::replaceItems(gxGraphicList::Items items)
{
  mutating();
  list_.items() = std::move(items);
  itemsChanged_();
}

void gxGraphicGroup::itemsChanged_()
{
  isNull_ = true;
  gxGraphic const *first = nullptr;
  for (gxPtrHandle<gxGraphic> const &item : list_.items()) {
    if (item.isNull() || (first && item->isNull()))
      continue;
    first = item.rep();
    isNull_ = first->isNull();
    if (!isNull_)
      break;
  }
  if (first)
    props() = first->props();
}

gxPtrHandle<gxGraphic> gxGraphicGroup::map(gxXform<2> const &xform) const
{
  gxPtrHandle<gxGraphicGroup> const image(new gxGraphicGroup);
  image->replaceItems(eachOf(list_.items(), [&](gxPtrHandle<gxGraphic> const &item) {
    return item.isNull() ? gxPtrHandle<gxGraphic>() : item->map(xform);
  }));
  image->props() = props();
  return image;
}

gxPtrHandle<gxGraphic> gxGraphicGroup::clone() const
{
  return new gxGraphicGroup(*this);
}

gxRect gxGraphicGroup::encloseRect() const
{
  gxRect all;
  if (isNull_)
    return all;
  for (gxPtrHandle<gxGraphic> const &item : list_.items()) {
    if (!item.isNull())
      all = all.enclose(item->encloseRect());
  }
  return all;
}

double gxGraphicGroup::distToPoint(gxVector<2> const &point) const
{
  double least = std::numeric_limits<double>::infinity();
  for (gxPtrHandle<gxGraphic> const &item : list_.items()) {
    if (!item.isNull())
      least = std::min(least, item->distToPoint(point));
  }
  return least;
}

void gxGraphicGroup::draw(gxUITablet &tablet, Layers layer) const
{
  if (isNull_)
    return;
  for (gxPtrHandle<gxGraphic> const &item : list_.items()) {
    if (!item.isNull())
      std::as_const(*item).draw(tablet, layer);
  }
}

void gxGraphicGroup::setProps_(gxGraphicProps const &props)
{
  for (gxPtrHandle<gxGraphic> const &item : list_.items()) {
    if (!item.isNull())
      item->props(props);
  }
}

GX_PERSISTENT_IMPL(gxGraphicGroup, "gxGraphicGroup", 0)
void gxGraphicGroup::serialize_(gxArchive &archive, unsigned char version)
{
  if (version != 0)
    throw gxArchive::UnknownVersion(module, __LINE__);
  gxGraphic::dispatchSerialize(archive);
  passList(archive, list_, [](gxArchive &a, gxPtrHandle<gxGraphic> &item) { gf_passWithoutRing(a, item); });
  archive || isNull_;
}
