#pragma once

#include "foundation/export.h"

#include <cstdint>
#include <ostream>

class gxArchive;

/// The value of a dimension or tolerance that was not specified.
inline constexpr double kUnsetDim = -1.0;
/// Absolute tolerance of comparisons with kUnsetDim in gxDimTol, and of the equality of dimensions and tolerances.
inline constexpr double kDimEpsilon = 1e-15;

/// A nominal length with a lower and an upper tolerance, in one of three forms. Each of the three numbers may be unset
/// (kUnsetDim). A tolerance can be asked for in every form; in another form than the stored one it needs a nominal.
///
/// @code
/// gxDimTol const pitch(10.0, 9.0, 12.0);   // Limits: between 9 and 12
/// pitch.maxOffset();                       // 2
/// pitch.minPerc();                         // 0.1, a tenth of the nominal
/// pitch.isWithin(12.0);                    // true: limits belong to it
/// @endcode
///
/// What a gxSMDDimension would refuse (a nominal of 0, one outside its limits, ...) is refused here, by
/// gxShapesError::BadGeom.
class GX_API gxDimTol
{
 public:
  /// What the two tolerances hold. The numbers are those of archives.
  enum TolType : std::int32_t {
    Limits = 0,       ///< the lowest and the highest length
    Offsets = 1,      ///< distances below and above the nominal, not negative
    Percentages = 2,  ///< fractions of the nominal below and above it; 1.0 is the whole nominal
  };

  /// Throws gxShapesError::BadGeom if the values do not fit each other; three unset ones always do.
  explicit gxDimTol(double nomDim = kUnsetDim, double minTol = kUnsetDim, double maxTol = kUnsetDim,
                    TolType tolType = Limits);

  /// @name As stored
  ///@{
  double nomDim() const { return nomDim_; }
  double minTol() const { return minTol_; }
  double maxTol() const { return maxTol_; }
  TolType tolType() const { return tolType_; }
  ///@}

  /// @name In a form
  /// Unset stays unset. Throw gxShapesError::BadGeom if a set tolerance of another form meets an unset nominal.
  ///@{
  double minDim() const { return newTol_(minTol_, Limits, -1.0); }
  double maxDim() const { return newTol_(maxTol_, Limits, 1.0); }
  double minOffset() const { return newTol_(minTol_, Offsets, -1.0); }
  double maxOffset() const { return newTol_(maxTol_, Offsets, 1.0); }
  double minPerc() const { return newTol_(minTol_, Percentages, -1.0); }
  double maxPerc() const { return newTol_(maxTol_, Percentages, 1.0); }
  ///@}

  /// @name Changes
  /// Throw gxShapesError::BadGeom and change nothing if the values do not fit each other. Those without a nominal
  /// keep the present one.
  ///@{
  void limits(double nom, double min, double max) { set_(nom, min, max, Limits); }
  void limits(double min, double max) { set_(nomDim_, min, max, Limits); }
  void offsets(double nom, double min, double max) { set_(nom, min, max, Offsets); }
  void offsets(double min, double max) { set_(nomDim_, min, max, Offsets); }
  void percentages(double nom, double min, double max) { set_(nom, min, max, Percentages); }
  void percentages(double min, double max) { set_(nomDim_, min, max, Percentages); }
  void nomDim(double nom) { set_(nom, minTol_, maxTol_, tolType_); }
  ///@}
  /// States the same tolerances in another form. Throws gxShapesError::BadGeom if that needs a nominal.
  void tolType(TolType type);

  /// False if @p d breaks a set limit; a length on a limit is within. Throws gxShapesError::BadGeom for set tolerances
  /// of the other forms without a nominal.
  bool isWithin(double d) const;

  /// Up to kDimEpsilon.
  friend GX_API bool operator==(gxDimTol const &a, gxDimTol const &b);
  /// Scales the nominal, if set. The tolerances stay as they are, whatever their form.
  friend GX_API gxDimTol operator*(double s, gxDimTol const &d);
  /// Throws gxArchive::UnknownVersion.
  friend GX_API gxArchive &operator||(gxArchive &archive, gxDimTol &d);

 private:
  friend class gx_PolyFields;

  double newTol_(double tol, TolType toType, double sign) const;
  void set_(double nom, double min, double max, TolType type);
  /// By the rules of gxSMDDimension; defined beside them.
  static bool isValid_(double nom, double min, double max, TolType type);

  double nomDim_ = kUnsetDim;
  double minTol_ = kUnsetDim;
  double maxTol_ = kUnsetDim;
  TolType tolType_ = Limits;
};

/// As a 32-bit number.
GX_API gxArchive &operator||(gxArchive &archive, gxDimTol::TolType &type);

/// As in gxDimTol(10, 9, 12, gxDimTol::Limits).
GX_API std::ostream &operator<<(std::ostream &os, gxDimTol const &d);
