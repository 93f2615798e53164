#pragma once

#include "dispc/uisketch_codes.h"
#include "dispc/uitablet.h"
#include "foundation/genshape.h"
#include "foundation/vector.h"

#include <cstdint>
#include <random>
#include <string>
#include <vector>

/// @file
/// A row for every drawing operation of tablets that makes a record, in all forms of its payload, and for some that
/// make none: for laws that hold for all of them.
///
/// @code
/// for (OpVariant const &variant : opVariants()) {
///   OpRandom random(seed);                       // the same seed draws the same again
///   variant.draw(tablet, random, gxUITablet::overlay);
/// }
/// @endcode

/// Arguments of drawing operations, told by a seed alone.
class OpRandom
{
 public:
  explicit OpRandom(unsigned seed) : engine_(seed) {}

  /// 0 to @p n - 1.
  long below(long n) { return static_cast<long>(engine_() % static_cast<unsigned long>(n)); }
  bool flag() { return below(2) == 0; }
  /// A coordinate, often a whole number or a half.
  double coordinate();
  double positive() { return 0.25 * static_cast<double>(1 + below(200)); }
  double angle() { return 0.001 * static_cast<double>(below(12567) - 6283); }
  gxVector<2> vector()
  {
    double const x = coordinate();
    return {x, coordinate()};
  }
  gxVector<2> sizes()
  {
    double const x = positive();
    return {x, positive()};
  }
  std::vector<gxVector<2>> vectors(long n);
  gxColor color();
  gxGraphicProps props();
  gxGraphicProps filled(bool fill);
  std::string text();

 private:
  std::mt19937 engine_;
};

/// One drawing operation in one form.
struct OpVariant {
  char const *name;
  gx_SketchCode code;  ///< of its records, or of the first kind; `noRecord` for one that makes none
  void (*draw)(gxUITablet &tablet, OpRandom &random, gxUITablet::Layers layer);

  static constexpr gx_SketchCode noRecord = gx_SketchCode(13);
  bool records() const { return code != noRecord; }
  /// What was recorded before is dropped.
  bool erases() const { return code == gx_SketchCode::setAll; }
  /// Archives refuse the record, which is a sketch.
  bool nests() const { return code == gx_SketchCode::sketch; }
};

/// All of them, in the order of their codes.
std::vector<OpVariant> const &opVariants();

/// What one operation records, on a layer that the seed tells as well.
gxUISketch recorded(OpVariant const &variant, unsigned seed);
/// What @p count random operations record; without those that erase, so that all of it stays, and without sketches
/// inside, so that it can be stored.
gxUISketch randomSketch(unsigned seed, int count);

/// A shape of a client's: a square round a centre, and as many bytes as it likes.
class OpShape : public gxGenShape
{
 public:
  static constexpr tagShapeID id = {0x0095A11E, 0x1234, 0xABCD, {1, 2, 3, 4, 5, 6, 7, 250}};

  tagShapeID shapeID() const override { return id; }
  gxGenShape *map(gxXform<2> const &xform) const override;
  gxRect boundingBox() const override;
  unsigned char *save(long &size) const override;
  void load(unsigned char const *bytes, long size) override;

  std::string content;
  gxVector<2> center;
};
