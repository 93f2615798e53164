#include "foundation/genshape.h"

#include "foundation/shapeserror.h"

#include <algorithm>
#include <mutex>
#include <vector>

namespace
{

/// The registered classes, oldest first. Never destroyed, since static registrations outlive any order of ends.
struct Factory {
  struct Entry {
    gxGenShape::Registration const *registration;
    gxGenShape::tagShapeID id;
    gxGenShape::Make make;
  };

  static Factory &instance()
  {
    static Factory *const factory = new Factory;
    return *factory;
  }

  std::mutex mutex;
  std::vector<Entry> entries;
};

}  // namespace

gxGenShape::Registration::Registration(tagShapeID const &id, Make make)
{
  Factory &factory = Factory::instance();
  std::lock_guard const lock(factory.mutex);
  factory.entries.push_back({this, id, make});
}

gxGenShape::Registration::~Registration()
{
  Factory &factory = Factory::instance();
  std::lock_guard const lock(factory.mutex);
  std::erase_if(factory.entries, [&](Factory::Entry const &entry) { return entry.registration == this; });
}

gxGenShape::~gxGenShape() = default;

gxGenShape *gxGenShape::newGenShape(tagShapeID const &id)
{
  Make make = nullptr;
  {
    Factory &factory = Factory::instance();
    std::lock_guard const lock(factory.mutex);
    for (Factory::Entry const &entry : factory.entries)
      if (entry.id == id)
        make = entry.make;
  }
  if (!make)
    throw gxShapesError::BadGeom();
  return make();
}
