#pragma once

#include "dispc/dimtol.h"
#include "dispc/wrfm/genpoly.h"

#include <utility>

/// A polygon with what a matching tool needs beyond its geometry: a polarity, which tells on which side of the outline
/// the brighter area lies, and a tolerance of length for each segment. Both are kept by the outline inside.
///
/// The positive side is the left one of the direction of travel, in a frame with y up, and the other one if the
/// polarity is reversed. For a closed wireframe it can be told by the inside as well:
///
/// @code
/// gx2Wireframe pad(gxGenPoly(gxRect({0, 0}, {40, 20})), gxDimTol(-1, -1, -1));
/// pad.insidePolarity(true);                                  // the pad is brighter than what is round it
/// pad.segmentLengthTol(0, gxDimTol(40, 39, 41));             // its first side may measure 39 to 41
/// @endcode
class GX_API gx2Wireframe : public gxGenPoly
{
 public:
  gx2Wireframe() = default;
  /// A copy with all that the polygon has.
  gx2Wireframe(gxGenPoly const &poly) : gxGenPoly(poly) {}
  gx2Wireframe(gxGenPoly &&poly) noexcept : gxGenPoly(std::move(poly)) {}
  /// The same with a tolerance on every segment, whether the polygon may be edited or not. Throws BadGeom if a
  /// length breaks it.
  gx2Wireframe(gxGenPoly const &poly, gxDimTol const &tol);
  gx2Wireframe(gx2Wireframe const &other) : gxPersistent(), gxRepBase(), gxGenPoly(other) {}
  gx2Wireframe(gx2Wireframe &&other) noexcept : gxPersistent(), gxRepBase(), gxGenPoly(std::move(other)) {}
  gx2Wireframe &operator=(gx2Wireframe const &) = default;
  gx2Wireframe &operator=(gx2Wireframe &&) noexcept = default;
  ~gx2Wireframe() override;

  /// @name Polarity
  ///@{
  bool isPolarityReversed() const { return poly().isDirectionReversed(); }
  void polarity(bool reversed);
  /// True if the inside is the positive side, as it is seen in client coordinates. Throws BadGeom for an open one.
  bool isInsidePositive() const;
  /// Sets the polarity so that it is. Throws as isInsidePositive() does.
  void insidePolarity(bool positive);
  ///@}

  /// @name Tolerances
  /// Lengths are those in the frame of the outline, before rounding. These throw as the edits of a gxGenPoly do, and
  /// BadGeom if a length breaks a tolerance; an edit that is refused, or a part of one, leaves the wireframe as it was.
  ///@{
  /// The length of a segment with its limits; the nominal one is the actual length.
  gxDimTol segmentLengthTol(long index) const;
  void segmentLengthTol(long index, gxDimTol const &tol);
  using gxGenPoly::insertVertex;
  /// Inserts behind vertex @p index: the segment that ends at the new vertex gets the tolerance, and the rest of the
  /// one that was split loses its own. At the front (-1) no tolerance is set or lost.
  void insertVertex(long index, gxVector<2> const &p, double rounding, gxRadian const &span, gxDimTol const &tol);
  /// At the end.
  void insertVertex(gxVector<2> const &p, double rounding, gxRadian const &span, gxDimTol const &tol);
  using gxGenPoly::close;
  /// With a tolerance on the closing segment. A closed wireframe stays as it is.
  void close(gxRadian const &span, gxDimTol const &tol);
  ///@}

  gx2Wireframe map(gxXform<2> const &xform) const { return gxGenPoly::map(xform); }
  gx2Wireframe map(gx2Rigid const &rigid, double scale) const { return gxGenPoly::map(rigid, scale); }

 protected:
  /// Called after polarity() has changed the flag.
  virtual void polarity_(bool reversed);
  [[noreturn]] void remapAndThrowError_(gxException &error) const override;

 private:
  friend class gxSMDGDPolyPrivate;
  explicit gx2Wireframe(gxSMDGDPoly poly) : gxGenPoly(std::move(poly), gxXform<2>(), true) {}

  void checkClosed_() const;

 public:
  gxPtrHandle<gxShape> clone() const override;
  bool loadSimple(gxArchive &archive) override;

 protected:
  bool equal_(gxShape const &other) const override;

  GX_PERSISTENT(gx2Wireframe);
};
