#pragma once

#include "foundation/export.h"
#include "foundation/xform.h"

#include <cstdint>

class gxRect;

/// Base of a shape that a client defines and whose own scope knows how to draw. The library maps it, asks for its
/// rectangle, and records it as bytes under the identity of its class; a replay makes it again through the factory.
///
/// @code
/// class Star : public gxGenShape { ... };
/// gxGenShape::Registration const star(Star::id, [] { return static_cast<gxGenShape *>(new Star); });
/// @endcode
class GX_API gxGenShape
{
 public:
  /// The identity of a class of shapes: 16 bytes that may be copied as they stand. Chosen by the client, once and for
  /// all, since records keep it.
  struct tagShapeID {
    std::uint32_t data1 = 0;
    std::uint16_t data2 = 0;
    std::uint16_t data3 = 0;
    std::uint8_t data4[8] = {};

    friend bool operator==(tagShapeID const &, tagShapeID const &) = default;
  };

  using Make = gxGenShape *(*)();

  /// The entry of a class in the factory, for as long as it lives; usually a static object. Of several entries with
  /// one identity the youngest counts.
  class GX_API Registration
  {
   public:
    /// @param make makes a shape in its start state by `new`
    Registration(tagShapeID const &id, Make make);
    ~Registration();
    Registration(Registration const &) = delete;
    Registration &operator=(Registration const &) = delete;
  };

  virtual ~gxGenShape();

  virtual tagShapeID shapeID() const = 0;
  /// The image of the shape, made by `new`; the caller deletes it.
  virtual gxGenShape *map(gxXform<2> const &xform) const = 0;
  virtual gxRect boundingBox() const = 0;
  /// The fields as bytes, made by `new unsigned char[]`; the caller deletes them.
  /// @param size set to the number of bytes, which may be 0
  virtual unsigned char *save(long &size) const = 0;
  /// Takes the fields from bytes that `save` has made, perhaps long ago. Throws what it sees fit if they do not fit.
  virtual void load(unsigned char const *bytes, long size) = 0;

  /// A shape in its start state of the registered class, which the caller deletes. Throws gxShapesError::BadGeom if no
  /// class has this identity. Safe to use from any thread and from static initialisers.
  static gxGenShape *newGenShape(tagShapeID const &id);
};

static_assert(sizeof(gxGenShape::tagShapeID) == 16);
