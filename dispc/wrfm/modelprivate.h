#pragma once

#include "dispc/wrfm/model.h"

#include <vector>

class gx2Wireframe;
class gxPolygon;
class gxRect;

/// The extended interface of gxSMDGDModel, for tools: all static, with the model as the first argument.
class GX_API gxSMDGDModelPrivate : public gxSMDGDModel
{
 public:
  using gxSMDGDModel::gxSMDGDModel;

  static gx2Rigid position(gxSMDGDModel const &model) { return model.position_; }
  /// The frame that a sub-model is moved to: of a single outline of three vertices, a corner, its middle vertex and
  /// orientation; else the centre of mass, and the orientation of the first outline.
  static gx2Rigid normalizedPosition(gxSMDGDModel const &model);
  /// Equal outlines in equal order, wherever they lie.
  static bool equivalent(gxSMDGDModel const &a, gxSMDGDModel const &b);
  /// The mean of those of the outlines (gxSMDGDPolyPrivate::dominantAngle()), by their perimeters.
  static gxDegree dominantAngle(gxSMDGDModel const &model);
  static double perimeter(gxSMDGDModel const &model, double minLength) { return model.perimeter_(minLength); }
  /// How many probes fit on the outlines with a weight above 0, a @p spacing apart, each outline seen through
  /// @p xform * @p perPoly of its index. Throws invalidIndex unless there is one transform for each outline.
  static int numPosProbesRequired(gxSMDGDModel const &model, gxXform<2> const &xform,
                                  std::vector<gxXform<2>> const &perPoly, double spacing);
  /// Round all outlines, mapped; empty if none has a segment. With a transform of its own for each outline, which comes
  /// before @p xform: throws invalidIndex unless there is one for each.
  static gxRect boundingBox(gxSMDGDModel const &model, gxXform<2> const &xform);
  static gxRect boundingBox(gxSMDGDModel const &model, std::vector<gxXform<2>> const &perPoly, gxXform<2> const &xform);
  /// The same round the outlines with a weight above 0.
  static gxRect boundingBoxPositive(gxSMDGDModel const &model, std::vector<gxXform<2>> const &perPoly,
                                    gxXform<2> const &xform);
  /// Round the mapped extensions of all outlines; empty if there are none.
  static gxRect boundingBoxNeg(gxSMDGDModel const &model, gxXform<2> const &xform);
  /// The extensions of all outlines, in their wireframe colours, on the image layer.
  static void drawNegWireframe(gxSMDGDModel const &model, gxXform<2> const &xform, gxUITablet &tablet);
  /// Appends the corner at a vertex (gxSMDGDPolyPrivate::corner()) to @p out, and moves all that it then holds to its
  /// own frame. Throws invalidIndex.
  static void corner(gxSMDGDModel const &model, gxSMDGDModel &out, int polyIndex, int vertex, bool wrap);
  /// Extensions that keep clear of what runs within 10 degrees of them by 8 steps: see gxSMDGDModel::setExtensions_().
  static void setExtensions(gxSMDGDModel &model, double step, double fraction);
  /// A model of the closed outlines through the points of the polygons.
  static gxSMDGDModel convert(std::vector<gxPolygon> const &polygons);

  /// @name Crop
  /// New models without a name, of the pieces that gxSMDGDPolyPrivate::crop() leaves of each outline, in order. Throw
  /// what that throws.
  ///@{
  static gxSMDGDModel crop(gxSMDGDModel const &model, gxSMDGDPoly const &mask, bool keepInside);
  /// By the closed outline through the points of the polygon.
  static gxSMDGDModel crop(gxSMDGDModel const &model, gxPolygon const &mask, bool keepInside);
  /// The pieces of each outline that are inside of each mask: a piece inside of two is there twice. Throws
  /// gxSMDGDModel::nestedPolys if the first vertex of an outline of the model lies inside of another one, and
  /// gxSMDGDPoly::notClosed if that other one is open.
  static gxSMDGDModel crop(gxSMDGDModel const &model, gxSMDGDModel const &masks);
  static gxSMDGDModel crop(gxSMDGDModel const &model, std::vector<gxPolygon> const &masks);
  ///@}

  /// @name Wireframes
  /// Each with its weight, from -1 to 1; those of weight 0 are left out. Throw invalidIndex for lists that are empty or
  /// of unequal lengths, and for a weight out of range.
  ///@{
  /// A model of the outlines inside, with the other direction and the weights. The lists are empty then; if it
  /// throws, they are as they were.
  static gxSMDGDModel weightedWireframesToModel(std::vector<gx2Wireframe> &wireframes, std::vector<double> &weights);
  /// The maps from the frames of the outlines.
  static std::vector<gxXform<2>> wireframeXforms(std::vector<gx2Wireframe> const &wireframes,
                                                 std::vector<double> const &weights);
  ///@}

 private:
  friend class gxSMDGDModel;

  static void normalize_(gxSMDGDModel &model);
  static gxPersistent *make();
  static gx_Instantiator sExemplar;
};
