#pragma once

#include "dispc/dimtol.h"
#include "foundation/exception.h"
#include "foundation/export.h"

#include <cstdint>
#include <ostream>
#include <string>

class gxArchive;

/// Base of the errors of dimensions.
GX_EXCEPTION(gxSMDDimensionErrors, gxException);

/// A dimension of a device: a nominal length, a lowest and a highest one, and how they behave under scaling. Any of
/// them may be unset (kUnsetDim), but limits need a nominal between them. A dimension always keeps these rules.
///
/// @code
/// gxSMDDimension const lead(5, 4, 6, gxSMDDimension::scaleNominal);
/// 2.0 * lead;                       // (10, 9, 11): the distances from the nominal are kept
/// lead.withinTolerance(11.0, 2.0);  // false: here the limits themselves are out
/// @endcode
class GX_API gxSMDDimension
{
 public:
  /// How a dimension follows a scale factor. The numbers are those of archives, and of gxDimTol::TolType: limits do
  /// not scale, offsets scale with the nominal only, percentages scale as a whole.
  enum ScaleType : std::int32_t {
    scaleNone = 0,     ///< all three stay
    scaleNominal = 1,  ///< the nominal scales; its distances to the limits stay
    scaleAll = 2,      ///< all three scale
  };

  /// Base of the family.
  GX_EXCEPTION(Errors, gxSMDDimensionErrors);

  /// The three lengths break a rule; the text says which.
  class GX_API badDimensionValue : public Errors
  {
   public:
    badDimensionValue();
    explicit badDimensionValue(std::string text);
    GX_EXCEPTION_MEMBERS_(badDimensionValue);

   protected:
    void message_(std::ostream &os) const override;

   private:
    std::string text_;
  };

  /// Throws badDimensionValue as set() does.
  explicit gxSMDDimension(double nomDim = kUnsetDim, double minDim = kUnsetDim, double maxDim = kUnsetDim,
                          ScaleType scaleType = scaleNone);
  /// The nominal and the limits of a tolerance. Throws badDimensionValue as set() does, and gxShapesError::BadGeom for
  /// a tolerance that needs a nominal and has none.
  explicit gxSMDDimension(gxDimTol const &tol);

  /// Throws badDimensionValue for the first rule that is broken, in this order: nominal, minimum and maximum are > 0
  /// or kUnsetDim exactly; a set minimum needs a nominal, which is not below it; a set maximum needs a nominal, which
  /// is not above it. Changes nothing then.
  void set(double nom, double min, double max, ScaleType scaleType);

  double nomDim() const { return nomDim_; }
  double minDim() const { return minDim_; }
  double maxDim() const { return maxDim_; }
  ScaleType scaleType() const { return scaleType_; }

  /// The dimension at a scale, by its scale type; for a type that is none of the three, the default dimension. Throws
  /// badDimensionValue if what comes out breaks a rule: an unset nominal scales as the number it is.
  friend GX_API gxSMDDimension operator*(double s, gxSMDDimension const &d);
  /// True if @p value lies strictly inside the limits that are set, taken at @p scale. Throws as the scaling does.
  bool withinTolerance(double value, double scale) const;

  /// Up to kDimEpsilon.
  friend GX_API bool operator==(gxSMDDimension const &a, gxSMDDimension const &b);
  /// Throws gxArchive::UnknownVersion, and gxArchive::Errors for loaded lengths that break a rule.
  friend GX_API gxArchive &operator||(gxArchive &archive, gxSMDDimension &d);

  /// The form of tolerance that corresponds to a scale type; Offsets for an unknown one.
  static gxDimTol::TolType tolType(ScaleType type);
  /// The reverse; scaleNominal for an unknown one.
  static ScaleType scaleType(gxDimTol::TolType type);

 private:
  friend class gxDimTol;
  /// The rule that the lengths break, or null.
  static char const *complaint_(double nom, double min, double max);

  double nomDim_ = kUnsetDim;
  double minDim_ = kUnsetDim;
  double maxDim_ = kUnsetDim;
  ScaleType scaleType_ = scaleNone;
};

/// As in gxSMDDimension(5, 4, 6, scale type 1).
GX_API std::ostream &operator<<(std::ostream &os, gxSMDDimension const &d);
