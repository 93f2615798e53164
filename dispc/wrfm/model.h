#pragma once

#include "dispc/color.h"
#include "dispc/wrfm/colors.h"
#include "dispc/wrfm/description.h"
#include "dispc/wrfm/poly.h"
#include "foundation/exception.h"
#include "foundation/export.h"
#include "foundation/rigid.h"
#include "foundation/xform.h"

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

class gx2Wireframe;
class gxRect;

/// The whole description of a device: outlines in order, each with its weight, and a position. A model takes any
/// outlines; how they lie to one another is not looked at.
///
/// A *sub-model* is what belongs to the vertices that carry a label: pieces of outlines, moved into a frame of their
/// own round the origin. Its position tells where they were.
///
/// @code
/// gxSMDGDModel device("sot23");
/// device << body << lead1 << lead2;
/// gxSMDGDModel pads;
/// device.subModel(7, pads);        // the pieces round the vertices labelled 7
/// @endcode
class GX_API gxSMDGDModel : public gxSMDGeometricDescription
{
 public:
  /// Base of the family.
  GX_EXCEPTION(Errors, gxException);
  /// No such outline; also for lists of unequal lengths that belong together, and for weights out of range.
  GX_EXCEPTION(invalidIndex, Errors);
  GX_EXCEPTION(crossingPolys, Errors);  ///< two outlines intersect
  GX_EXCEPTION(nestedPolys, Errors);    ///< an outline lies inside another one

  /// Without outlines, at the origin.
  explicit gxSMDGDModel(std::string name = "") : gxSMDGeometricDescription(std::move(name)) {}
  gxSMDGDModel(gxSMDGDModel const &) = default;
  gxSMDGDModel(gxSMDGDModel &&) noexcept = default;
  gxSMDGDModel &operator=(gxSMDGDModel const &) = default;
  gxSMDGDModel &operator=(gxSMDGDModel &&) noexcept = default;
  ~gxSMDGDModel() override;

  /// @name Outlines
  ///@{
  long numPolys() const { return static_cast<long>(polys_.size()); }
  /// Of all outlines together.
  long numVertices() const;
  std::vector<gxSMDGDPoly> const &polys() const { return polys_; }
  /// Throws invalidIndex.
  gxSMDGDPoly const &poly(int index) const;
  /// Replaces all of them.
  void polys(std::vector<gxSMDGDPoly> const &polys);
  /// Appends a copy, or the outline itself.
  gxSMDGDModel &operator<<(gxSMDGDPoly const &poly);
  gxSMDGDModel &operator<<(gxSMDGDPoly &&poly);
  /// Appends copies of all outlines that the other model, which may be this one, held before.
  gxSMDGDModel &operator<<(gxSMDGDModel const &model);
  /// Appends the outlines inside the wireframes, in their own frames, each named "poly".
  gxSMDGDModel &operator<<(std::vector<gx2Wireframe> const &wireframes);
  /// The labels of all outlines but -1, each once, in the order of their first appearance.
  std::vector<long> subModelLabels() const { return {subModelLabels_.begin(), subModelLabels_.end()}; }
  /// True if an outline is open.
  bool isOpen() const;
  bool isClosed() const { return !isOpen(); }
  ///@}

  /// @name Looks of all outlines
  ///@{
  void colors(gxSMDColors const &colors);
  void positiveArrowColor(gxColor const &color);
  void negativeArrowColor(gxColor const &color);
  ///@}

  /// @name Parts and images
  ///@{
  /// Appends to @p out the pieces that belong to the vertices with the label (gxSMDGDPolyPrivate::subPoly()), and moves
  /// all that it then holds to its own frame. Throws what cutting throws; @p out stays as it was then.
  void subModel(long label, gxSMDGDModel &out) const;
  /// Mirrored in the x axis, at the opposite position. Without a name.
  gxSMDGDModel flip() const;
  /// Round all outlines, mapped and without their roundings; empty if none has a segment.
  gxRect boundingBox(gxXform<2> const &xform) const;
  /// The outlines that have segments out of their tolerances: see gxSMDGDPoly::segmentsOutOfTolerance().
  std::vector<long> polysOutOfTolerance(gxXform<2> const &a, gxXform<2> const &b) const;
  /// The outlines and the translation of the position scale; the rotation is kept, the name is not.
  friend GX_API gxSMDGDModel operator*(double s, gxSMDGDModel const &model);
  /// The outlines are mapped; the position is that of the origin, whatever it was. Without a name.
  friend GX_API gxSMDGDModel operator*(gx2Rigid const &map, gxSMDGDModel const &model);
  ///@}

  /// @name Pictures
  /// Those of its outlines, in order: see gxSMDGDPoly.
  ///@{
  void drawWireframe(gxXform<2> const &xform, gxUITablet &tablet) const override;
  void drawSynthetic(gxPtrHandle_const<gx2XformBase> const &xform,
                     gxPelBuffer<unsigned char> const &buffer) const override;
  void drawSynthetic(gxXform<2> const &xform, gxPelBuffer<unsigned char> const &buffer) const override;
  /// Of size 2.
  void drawDirectionArrows(gxXform<2> const &xform, gxUITablet &tablet) const;
  ///@}

  /// Equal outlines in equal order, and equal positions. Names take no part.
  friend GX_API bool operator==(gxSMDGDModel const &a, gxSMDGDModel const &b);

 protected:
  /// The model loses its name. An index out of range changes nothing.
  void replacePoly(int index, gxSMDGDPoly const &poly);
  void deletePoly(int index);
  void deleteAllPolys();
  /// Back to a new model without a name.
  void reset();
  void addPolyLabels_(gxSMDGDPoly const &poly);
  /// Mean of those of the outlines, weighted by their numbers of vertices; (0, 0) if there are none.
  gxVector<2> centerOfMass_() const;
  /// That of the first outline; 0 if there is none.
  gxDegree orientation_() const;
  double perimeter_(double minLength) const;
  double extensionPerimeter_() const;
  /// Sets the extensions of all outlines to @p fraction, or to their default if it is negative, and shortens them where
  /// they run close along an outline, their own among them: see gxSMDGDPoly::checkExtensions_(), whose errors this has.
  void setExtensions_(double clearance, gxDegree const &angle, double step, double fraction);

  void reInit() override;

 private:
  friend class gxSMDGDModelPrivate;

  void rebuild_(std::vector<gxSMDGDPoly> const &polys);
  void checkLoaded_(gxArchive const &archive) const;

  std::vector<gxSMDGDPoly> polys_;
  std::vector<std::int32_t> subModelLabels_;
  gx2Rigid position_;

  GX_PERSISTENT(gxSMDGDModel);
};

/// Name, position and outlines, for messages.
GX_API std::ostream &operator<<(std::ostream &os, gxSMDGDModel const &model);
