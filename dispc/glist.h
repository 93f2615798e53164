#pragma once

#include "dispc/graphic.h"
#include "dispc/uisketch.h"

#include <vector>

class gxArchive;

/// Graphics in drawing order, under handles. Copies are deep; a graphic that is appended without `clone` is shared.
class GX_API gxGraphicList
{
 public:
  using Items = std::vector<gxPtrHandle<gxGraphic>>;

  gxGraphicList() = default;
  /// Clones every member. Throws gxBadPointer for a list that holds a null handle; the target stays as it was.
  gxGraphicList(gxGraphicList const &other);
  gxGraphicList &operator=(gxGraphicList const &other);

  void reset() { items_.clear(); }
  /// Appends the graphic itself, which may be null, or a clone; a null handle has none: gxBadPointer.
  void append(gxPtrHandle<gxGraphic> const &graphic, bool clone);
  /// Appends all that the other list, which may be this one, held before. Throws likewise, and appends nothing then.
  void append(gxGraphicList &other, bool clone);
  void append(gxGraphicList const &other);

  Items &items() { return items_; }
  Items const &items() const { return items_; }

  /// Draws the members in order. Throws gxBadPointer at a null handle.
  void draw(gxUITablet &tablet, gxGraphic::Layers layer) const;
  /// What drawing the members on a layer records.
  gxUISketch sketch(gxGraphic::Layers layer) const;

  /// Passes a version byte, a count and the handles; shared graphics stay shared, null stays null. Loading empties the
  /// list first. Throws gxArchive::Errors.
  friend GX_API gxArchive &operator||(gxArchive &archive, gxGraphicList &list);

 private:
  Items items_;
};

/// Graphics that stand for one: a group is drawn, mapped, archived and asked for its extent as a whole. It wears the
/// properties of its first member that draws something, failing that of its first one; properties that are given to the
/// group go down to all members. Null members are left out everywhere. A group must not contain itself.
class GX_API gxGraphicGroup : public gxGraphic
{
 public:
  /// Without members: null.
  gxGraphicGroup() = default;
  /// Clones the members.
  gxGraphicGroup(gxGraphicGroup const &other);
  gxGraphicGroup &operator=(gxGraphicGroup const &other);
  ~gxGraphicGroup() override;

  /// The number of members, null ones included.
  long numItems() const { return static_cast<long>(list_.items().size()); }
  /// Throws BadParams, "Item index out of range", outside 0 to numItems() - 1.
  gxPtrHandle_const<gxGraphic> item(long index) const;
  void getItems(std::vector<gxPtrHandle_const<gxGraphic>> &result) const;
  /// Replaces the members, by the graphics themselves or by clones, and takes properties and null state from them. The
  /// null state is not looked up again before the next call.
  void items(std::vector<gxPtrHandle<gxGraphic>> const &items, bool clone);
  /// Always clones.
  void items(std::vector<gxPtrHandle_const<gxGraphic>> const &items);

  /// The images of the members under the group's own properties, whatever those of the members are.
  gxPtrHandle<gxGraphic> map(gxXform<2> const &xform) const override;
  gxPtrHandle<gxGraphic> clone() const override;
  /// Round the extents of all members; empty for a null group.
  gxRect encloseRect() const override;
  /// The least of the members'; infinite without members.
  double distToPoint(gxVector<2> const &point) const override;
  bool isNull() const override { return isNull_; }

 protected:
  using gxGraphic::draw;
  void draw(gxUITablet &tablet, Layers layer) const override;
  void setProps_(gxGraphicProps const &props) override;

 private:
  void assign_(gxGraphicGroup const &other);
  void itemsChanged_();
  void replaceItems(gxGraphicList::Items items);

  gxGraphicList list_;
  bool isNull_ = true;

  GX_PERSISTENT(gxGraphicGroup);
};
