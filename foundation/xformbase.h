#pragma once

#include "foundation/export.h"
#include "foundation/handle.h"
#include "foundation/persistent.h"
#include "foundation/vector.h"
#include "foundation/xform.h"

#include <cstddef>

class gx2XformLinear;

/// A transform of the plane that may bend straight lines. Shapes are mapped by linear transforms only; a bending one
/// says how it acts near a point.
class GX_API gx2XformBase : public virtual gxPersistent, public virtual gxRepBase
{
 public:
  virtual gxPtrHandle<gx2XformBase> clone() const = 0;
  virtual bool isLinear() const = 0;
  /// The linear transform that agrees with this one in value and first derivatives at @p at.
  virtual gx2XformLinear linearXform(gxVector<2> const &at) const = 0;
  virtual gxVector<2> mapPoint(gxVector<2> const &p) const = 0;
  /// Throws gxMathError::Singular or gxMathError::NoConvergence where there is no inverse.
  virtual gxVector<2> invMapPoint(gxVector<2> const &p) const = 0;

  /// The transform that applies @p inner, then @p outer: a gx2XformLinear if both are linear. A null handle stands
  /// for the identity; two of them give a null handle.
  /// `product_` of the outer one makes the result, where it has one.
  static gxPtrHandle_const<gx2XformBase> compose(gxPtrHandle_const<gx2XformBase> const &outer,
                                                 gxPtrHandle_const<gx2XformBase> const &inner);

  /// Same class, equal value.
  friend bool operator==(gx2XformBase const &a, gx2XformBase const &b) { return a.equal_(b); }

 protected:
  /// Same class, equal value; unless overridden the very same object.
  virtual bool equal_(gx2XformBase const &other) const;
  /// The transform that applies @p inner, then this one, as one of a simpler kind than gx2XformComposed; null if there
  /// is none. Unless overridden, a gx2XformLinear if both are linear.
  virtual gxPtrHandle_const<gx2XformBase> product_(gx2XformBase const &inner) const;

  GX_PERSISTENT_ABSTRACT(gx2XformBase);
};

/// A linear transform as a gx2XformBase.
class GX_API gx2XformLinear : public gx2XformBase
{
 public:
  gx2XformLinear() = default;
  gx2XformLinear(gxXform<2> const &xform) : xform_(xform) {}  // NOLINT(google-explicit-constructor)
  gx2XformLinear(gxMatrix<2> const &matrix, gxVector<2> const &translation) : xform_(matrix, translation) {}

  gxXform<2> const &xform() const { return xform_; }
  void xform(gxXform<2> const &xform);
  gxMatrix<2> const &matrix() const { return xform_.matrix(); }
  gxVector<2> const &translation() const { return xform_.translation(); }

  gxPtrHandle<gx2XformBase> clone() const override;
  bool isLinear() const override { return true; }
  gx2XformLinear linearXform(gxVector<2> const &at) const override;
  gxVector<2> mapPoint(gxVector<2> const &p) const override { return xform_.mapPoint(p); }
  gxVector<2> invMapPoint(gxVector<2> const &p) const override { return xform_.invMapPoint(p); }

  friend bool operator==(gx2XformLinear const &a, gx2XformLinear const &b) { return a.xform_ == b.xform_; }

  // Both in the library, so that a transform that one module makes and another deletes stays in one heap.
  static void *operator new(std::size_t size);
  static void operator delete(void *block);

 protected:
  bool equal_(gx2XformBase const &other) const override;

 private:
  gxXform<2> xform_;

  GX_PERSISTENT(gx2XformLinear);
};

/// Two transforms in a row, of which at least one bends.
class GX_API gx2XformComposed : public gx2XformBase
{
 public:
  gx2XformComposed() = default;
  /// Throws gxBadPointer for a null handle.
  gx2XformComposed(gxPtrHandle_const<gx2XformBase> const &outer, gxPtrHandle_const<gx2XformBase> const &inner);

  gxPtrHandle_const<gx2XformBase> const &outer() const { return outer_; }
  gxPtrHandle_const<gx2XformBase> const &inner() const { return inner_; }

  gxPtrHandle<gx2XformBase> clone() const override;
  bool isLinear() const override;
  gx2XformLinear linearXform(gxVector<2> const &at) const override;
  gxVector<2> mapPoint(gxVector<2> const &p) const override;
  gxVector<2> invMapPoint(gxVector<2> const &p) const override;

 protected:
  bool equal_(gx2XformBase const &other) const override;

 private:
  gxPtrHandle_const<gx2XformBase> outer_;
  gxPtrHandle_const<gx2XformBase> inner_;

  GX_PERSISTENT(gx2XformComposed);
};
