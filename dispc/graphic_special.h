#pragma once

#include "dispc/graphic.h"
#include "dispc/uistring.h"
#include "foundation/cross.h"
#include "foundation/ellipseannulus.h"
#include "foundation/point.h"

#include <string>

/// A text at a point of the client, with an offset in pels that no zoom changes. It has no extent in client coordinates
/// and is never the nearest of several graphics.
class GX_API gxGraphicText : public gxGraphic
{
 public:
  /// Empty, at (0, 0), on a background of index colour 0, in the default font.
  gxGraphicText() = default;
  /// @param offset of the text from the image of @p location, in pels, cut to whole ones
  gxGraphicText(std::string const &text, gxPoint const &location, gxColor const &color, gxColor const &backgroundColor,
                gxUIFormat const &format, gxVector<2> const &offset);
  gxGraphicText(gxGraphicText const &);
  gxGraphicText &operator=(gxGraphicText const &) = default;

  std::string const &text() const { return text_; }
  void text(std::string const &text);
  gxPoint const &location() const { return location_; }
  void location(gxPoint const &location);
  gxColor const &backgroundColor() const { return backgroundColor_; }
  void backgroundColor(gxColor const &color);
  gxUIFormat const &format() const { return format_; }
  void format(gxUIFormat const &format);
  gxVector<2> const &offset() const { return offset_; }
  void offset(gxVector<2> const &offset);

  /// The location moves; offset, text and format stay.
  gxPtrHandle<gxGraphic> map(gxXform<2> const &xform) const override;
  gxPtrHandle<gxGraphic> clone() const override;
  /// Always empty.
  gxRect encloseRect() const override;
  /// Always 1e308.
  double distToPoint(gxVector<2> const &point) const override;
  /// True for an empty text.
  bool isNull() const override { return text_.empty(); }

 protected:
  using gxGraphic::draw;
  void draw(gxUITablet &tablet, Layers layer) const override;

 private:
  std::string text_;
  gxPoint location_;
  gxColor backgroundColor_{0};
  gxUIFormat format_;
  gxVector<2> offset_;

  GX_PERSISTENT(gxGraphicText);
};

/// A point shown by the point icon, of the same size at every zoom.
class GX_API gxGraphicPointIcon : public gxGraphic
{
 public:
  gxGraphicPointIcon() = default;
  gxGraphicPointIcon(gxPoint const &item, gxColor const &color) : gxGraphic(color), item_(item) {}
  gxGraphicPointIcon(gxPoint const &item, gxGraphicProps const &props) : gxGraphic(props), item_(item) {}
  gxGraphicPointIcon(gxGraphicPointIcon const &);
  gxGraphicPointIcon &operator=(gxGraphicPointIcon const &) = default;

  gxPoint const &item() const { return item_; }
  gxPoint &item()
  {
    mutating();
    return item_;
  }

  gxPtrHandle<gxGraphic> map(gxXform<2> const &xform) const override;
  gxPtrHandle<gxGraphic> clone() const override;
  /// At the point, of size (1, 1) in client coordinates.
  gxRect encloseRect() const override;
  double distToPoint(gxVector<2> const &point) const override;

 protected:
  using gxGraphic::draw;
  void draw(gxUITablet &tablet, Layers layer) const override;

 private:
  gxPoint item_;

  GX_PERSISTENT(gxGraphicPointIcon);
};

/// A cross, whose arms are lengths in pels on the tablet and lengths in client coordinates for extent and distance.
class GX_API gxGraphicCross : public gxGraphic
{
 public:
  gxGraphicCross() = default;
  gxGraphicCross(gxCross const &item, gxColor const &color) : gxGraphic(color), item_(item) {}
  gxGraphicCross(gxCross const &item, gxGraphicProps const &props) : gxGraphic(props), item_(item) {}
  gxGraphicCross(gxGraphicCross const &);
  gxGraphicCross &operator=(gxGraphicCross const &) = default;

  gxCross const &item() const { return item_; }
  gxCross &item()
  {
    mutating();
    return item_;
  }

  gxPtrHandle<gxGraphic> map(gxXform<2> const &xform) const override;
  gxPtrHandle<gxGraphic> clone() const override;
  gxRect encloseRect() const override;
  double distToPoint(gxVector<2> const &point) const override;

 protected:
  using gxGraphic::draw;
  void draw(gxUITablet &tablet, Layers layer) const override;

 private:
  gxCross item_;

  GX_PERSISTENT(gxGraphicCross);
};

/// A section of an elliptical annulus, with arrowheads if the properties say so.
class GX_API gxGraphicEllipseAnnulusSection : public gxGraphic
{
 public:
  /// A default section with default properties: arrowheads, forward.
  gxGraphicEllipseAnnulusSection() = default;
  gxGraphicEllipseAnnulusSection(gxEllipseAnnulusSection const &item, gxColor const &color, bool drawArrowHead,
                                 bool drawArrowHeadForward)
      : gxGraphic(color), item_(item)
  {
    this->drawArrowHead(drawArrowHead, drawArrowHeadForward);
  }
  gxGraphicEllipseAnnulusSection(gxEllipseAnnulusSection const &item, gxGraphicProps const &props)
      : gxGraphic(props), item_(item)
  {
  }
  gxGraphicEllipseAnnulusSection(gxGraphicEllipseAnnulusSection const &);
  gxGraphicEllipseAnnulusSection &operator=(gxGraphicEllipseAnnulusSection const &) = default;

  gxEllipseAnnulusSection const &item() const { return item_; }
  gxEllipseAnnulusSection &item()
  {
    mutating();
    return item_;
  }
  /// The members of the properties of like names.
  bool drawArrowHead() const { return props().arrowHead(); }
  bool drawArrowHeadForward() const { return props().arrowHeadForward(); }
  void drawArrowHead(bool drawArrowHead, bool drawArrowHeadForward);

  gxPtrHandle<gxGraphic> map(gxXform<2> const &xform) const override;
  gxPtrHandle<gxGraphic> clone() const override;
  gxRect encloseRect() const override;
  double distToPoint(gxVector<2> const &point) const override;

 protected:
  using gxGraphic::draw;
  void draw(gxUITablet &tablet, Layers layer) const override;

 private:
  gxEllipseAnnulusSection item_;

  GX_PERSISTENT(gxGraphicEllipseAnnulusSection);
};
