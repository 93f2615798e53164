#include "dispc/wrfm/dimension.h"

#include "dispc/dimtol.h"
#include "dispc/wrfm/colors.h"
#include "dispc/wrfm/description.h"
#include "foundation/pelbuf.h"
#include "foundation/shapeserror.h"
#include "foundation/xformbase.h"
#include "tests/support/archived.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>
#include <vector>

namespace
{
using Tol = gxDimTol;
using Dim = gxSMDDimension;

double const unset = -1.0;
double const noNumber = std::numeric_limits<double>::quiet_NaN();

/// The text of the refusal, or "" for three lengths that are accepted.
std::string refusal(double nom, double min, double max)
{
  try {
    Dim const d(nom, min, max);
    return "";
  } catch (Dim::badDimensionValue const &e) {
    return e.message();
  }
}

/// A refused change must leave the tolerance as it was.
template <class Change>
bool refuses(Tol tol, Change change)
{
  Tol const before = tol;
  try {
    change(tol);
  } catch (gxShapesError::BadGeom const &) {
    EXPECT_EQ(tol, before);
    return true;
  }
  return false;
}

/// A tolerance in its absolute limits, from the definition of the forms; nothing where that needs a nominal.
std::optional<double> limitOf(Tol const &t, double tol, double sign)
{
  if (tol == unset || t.tolType() == Tol::Limits)
    return tol;
  if (t.nomDim() == unset)
    return std::nullopt;
  return t.nomDim() + sign * (t.tolType() == Tol::Offsets ? tol : tol * t.nomDim());
}
}  // namespace

TEST(Dimension, ChecksInOrder)
{
  struct Row {
    double nom, min, max;
    char const *text;
  };
  for (Row const &r : std::vector<Row>{
           {unset, unset, unset, ""},
           {5, 5, 5, ""},
           {5, unset, 6, ""},
           {0, 0, 0, "Nominal dimension must be > 0 or -1"},
           {noNumber, 1, 1, "Nominal dimension must be > 0 or -1"},
           {std::nextafter(-1.0, 0.0), unset, unset, "Nominal dimension must be > 0 or -1"},
           {1, 0, -2, "Minimum dimension must be > 0 or -1"},
           {1, noNumber, unset, "Minimum dimension must be > 0 or -1"},
           {1, 2, -2, "Maximum dimension must be > 0 or -1"},
           {unset, 2, 1, "Nominal must be set if minimum is > 0"},
           {2, 3, 1, "Nominal must be >= minimum"},
           {unset, unset, 1, "Nominal must be set if maximum is >= 0"},
           {2, 1, 1.5, "Nominal must be <= maximum"},
       }) {
    EXPECT_EQ(refusal(r.nom, r.min, r.max), r.text) << r.nom << ' ' << r.min << ' ' << r.max;
    if (*r.text) {
      Dim d(7, 6, 8, Dim::scaleAll);
      EXPECT_THROW(d.set(r.nom, r.min, r.max, Dim::scaleNone), Dim::Errors);
      EXPECT_EQ(d, Dim(7, 6, 8, Dim::scaleAll));
    }
  }
  Dim::badDimensionValue const e("text");
  EXPECT_EQ(throughArchive(e).message(), "text");
  EXPECT_EQ(e.errorNumber(), 0x11000b00);
}

TEST(Dimension, Scaling)
{
  Dim const d(5, 4, 6, Dim::scaleNominal);
  EXPECT_EQ(2.0 * d, Dim(10, 9, 11, Dim::scaleNominal));
  EXPECT_EQ(2.0 * Dim(5, 4, 6, Dim::scaleAll), Dim(10, 8, 12, Dim::scaleAll));
  EXPECT_EQ(2.0 * Dim(5, 4, 6, Dim::scaleNone), Dim(5, 4, 6, Dim::scaleNone));
  EXPECT_EQ(2.0 * Dim(5, unset, 6, Dim::scaleNominal), Dim(10, unset, 11, Dim::scaleNominal));
  EXPECT_EQ(2.0 * Dim(5, 4, 6, static_cast<Dim::ScaleType>(9)), Dim());
  // An unset nominal scales as the number that it is.
  EXPECT_THROW(2.0 * Dim(unset, unset, unset, Dim::scaleAll), Dim::badDimensionValue);
  EXPECT_NO_THROW(2.0 * Dim());

  EXPECT_TRUE(d.withinTolerance(9.5, 2.0));
  EXPECT_FALSE(d.withinTolerance(9.0, 2.0));
  EXPECT_FALSE(d.withinTolerance(11.0, 2.0));
  EXPECT_TRUE(Dim(5).withinTolerance(1e300, 1.0));
  for (int const type : {0, 1, 2, 3, -1}) {
    EXPECT_EQ(Dim::tolType(static_cast<Dim::ScaleType>(type)), type == 0 || type == 2 ? type : 1);
    EXPECT_EQ(Dim::scaleType(static_cast<Tol::TolType>(type)), type == 0 || type == 2 ? type : 1);
  }
}

TEST(DimTol, WhatIsValid)
{
  struct Row {
    double nom, min, max;
    Tol::TolType type;
    bool valid;
  };
  for (Row const &r : std::vector<Row>{
           {unset, unset, unset, Tol::Offsets, true},
           {0, unset, unset, Tol::Limits, false},
           {noNumber, unset, unset, Tol::Limits, false},
           {10, 9, 12, Tol::Limits, true},
           {5, 6, 7, Tol::Limits, false},
           {5, 3, 4, Tol::Limits, false},
           {unset, 9, 12, Tol::Limits, true},
           {unset, 12, 9, Tol::Limits, false},
           {unset, 3, unset, Tol::Limits, true},
           {unset, unset, 3, Tol::Limits, true},
           {unset, unset, 1, Tol::Limits, false},
           {unset, unset, 0, Tol::Limits, false},
           {10, 1, 2, Tol::Offsets, true},
           {10, 10, 2, Tol::Offsets, false},
           {10, 11, 2, Tol::Offsets, true},
           {10, 11.5, 2, Tol::Offsets, false},
           {unset, 1, 2, Tol::Offsets, true},
           {unset, unset, 2, Tol::Offsets, false},
           {10, -0.5, 2, Tol::Offsets, false},
           {10, 0.1, 0.2, Tol::Percentages, true},
           {10, 1.0, 0.2, Tol::Percentages, false},
           {unset, 0.1, unset, Tol::Percentages, true},
           {unset, unset, 100.0, Tol::Percentages, true},
       }) {
    SCOPED_TRACE(testing::Message() << r.nom << ' ' << r.min << ' ' << r.max << " form " << r.type);
    auto const set = [&](Tol &t) {
      r.type == Tol::Limits    ? t.limits(r.nom, r.min, r.max)
      : r.type == Tol::Offsets ? t.offsets(r.nom, r.min, r.max)
                               : t.percentages(r.nom, r.min, r.max);
    };
    EXPECT_EQ(refuses(Tol(3, 1, 1, Tol::Offsets), set), !r.valid);
    if (!r.valid) {
      EXPECT_THROW(Tol(r.nom, r.min, r.max, r.type), gxShapesError::BadGeom);
      continue;
    }
    Tol const t(r.nom, r.min, r.max, r.type);
    EXPECT_EQ(throughArchive(t), t);
    for (auto const &[read, tol, sign] : {std::tuple{&Tol::minDim, r.min, -1.0}, std::tuple{&Tol::maxDim, r.max, 1.0}})
      if (auto const limit = limitOf(t, tol, sign))
        EXPECT_DOUBLE_EQ((t.*read)(), *limit);
      else
        EXPECT_THROW((t.*read)(), gxShapesError::BadGeom);
  }
}

TEST(DimTol, FormsAndLimits)
{
  Tol const t(10, 9, 12);
  EXPECT_EQ(t.maxOffset(), 2.0);
  EXPECT_DOUBLE_EQ(t.minPerc(), 0.1);
  for (auto const type : {Tol::Offsets, Tol::Percentages, Tol::Limits}) {
    Tol turned = t;
    turned.tolType(type);
    EXPECT_EQ(turned.tolType(), type);
    for (auto const &[d, within] :
         {std::pair{9.0, true}, {8.999, false}, {12.0, true}, {12.001, false}, {noNumber, false}})
      EXPECT_EQ(turned.isWithin(d), within) << turned << " at " << d;
    turned.tolType(Tol::Limits);
    EXPECT_EQ(turned, t);
  }
  Tol const loose(unset, unset, unset, Tol::Offsets);
  EXPECT_EQ(loose.minOffset(), unset);
  EXPECT_TRUE(loose.isWithin(noNumber));

  Tol noNominal(unset, 1, 2, Tol::Offsets);
  EXPECT_EQ(noNominal.maxOffset(), 2.0);
  EXPECT_TRUE(refuses(noNominal, [](Tol &tol) { tol.tolType(Tol::Limits); }));
  EXPECT_TRUE(refuses(noNominal, [](Tol &tol) { tol.nomDim(0.5); }));
  EXPECT_THROW(Dim{noNominal}, gxShapesError::BadGeom);
  noNominal.nomDim(8);
  EXPECT_EQ(Dim{noNominal}, Dim(8, 7, 10, Dim::scaleNominal));

  Tol const scaled = 0.5 * t;
  EXPECT_EQ(scaled.nomDim(), 5.0);
  EXPECT_EQ(scaled.minTol(), 9.0);
  EXPECT_EQ(0.5 * loose, loose);
}

TEST(SmallDescriptions, Archives)
{
  std::string const tol = archivedBytes(Tol(10, 1, 2, Tol::Offsets));
  EXPECT_EQ(tol.size(), 1u + 3 * 8 + 4);
  EXPECT_EQ(refusalOfVersion(tol, 0, Tol(3), "dispc/dimtol", 197), "");
  std::string const dim = archivedBytes(Dim(10, 9, 11, Dim::scaleAll));
  EXPECT_EQ(dim.size(), 1u + 3 * 8 + 1);
  EXPECT_EQ(refusalOfVersion(dim, 0, Dim(3), "", 0), "");
  EXPECT_EQ(throughArchive(Dim(10, 9, 11, Dim::scaleAll)), Dim(10, 9, 11, Dim::scaleAll));
  std::string broken = dim;
  broken.replace(1, 8, 8, '\0');  // a nominal of 0
  Dim target(3);
  EXPECT_THROW(loadArchived(broken, target), gxArchive::Errors);
  EXPECT_EQ(target, Dim(3));

  gxSMDColors const colors(gxColor::red, gxColor::white, gxColor(1, 2, 3));
  EXPECT_EQ(throughArchive(colors), colors);
  EXPECT_EQ(refusalOfVersion(archivedBytes(colors), 0, colors, "dispc/wrfm/colors", 107, 2), "");
  gxSMDColors old = colors;
  loadArchived(bytesOf({0}), old);
  EXPECT_EQ(old, gxSMDColors());
}

TEST(SMDColors, Grays)
{
  EXPECT_EQ(gxSMDColors::colorToGrayScale(gxColor(200, 100, 51)), 117);
  EXPECT_EQ(gxSMDColors::colorToGrayScale(gxColor(255, 255, 255)), 255);
  for (auto const &[color, gray] : std::vector<std::pair<gxColor, int>>{{gxColor::black, 5},
                                                                        {gxColor::dkGrey, 50},
                                                                        {gxColor::grey, 100},
                                                                        {gxColor::ltGrey, 150},
                                                                        {gxColor::white, 250},
                                                                        {gxColor::red, 120},
                                                                        {gxColor::dkRed, 90},
                                                                        {gxColor::magenta, 170},
                                                                        {gxColor::orange, 180},
                                                                        {gxColor::yellow, 210},
                                                                        {gxColor::green, 130},
                                                                        {gxColor::dkGreen, 80},
                                                                        {gxColor::cyan, 200},
                                                                        {gxColor::blue, 160},
                                                                        {gxColor::purple, 90},
                                                                        {gxColor::pass, 0},
                                                                        {gxColor(99), 0},
                                                                        {gxColor(), 5}})
    EXPECT_EQ(gxSMDColors::colorToGrayScale(color), gray) << color;
}

TEST(GeometricDescription, BendingTransformsAreTakenAtTheOrigin)
{
  struct Probe : gxSMDGeometricDescription {
    using gxSMDGeometricDescription::drawSynthetic;
    void drawSynthetic(gxXform<2> const &xform, gxPelBuffer<unsigned char> const &) const override { seen = xform; }
    void drawWireframe(gxXform<2> const &, gxUITablet &) const override {}
    mutable gxXform<2> seen;
  };
  Probe const probe;
  gxPelBuffer<unsigned char> const buffer;
  gxXform<2> const xform(gxMatrix<2>(1, 2, 3, 4), gxVector<2>(5, 6));
  gxPtrHandle<gx2XformBase> const handle(new gx2XformLinear(xform));
  probe.drawSynthetic(handle, buffer);
  EXPECT_EQ(probe.seen, xform);
  EXPECT_THROW(probe.drawSynthetic(gxPtrHandle<gx2XformBase>(), buffer), gxBadPointer);
}
