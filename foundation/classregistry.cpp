#include "foundation/detail/classregistry.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <typeindex>
#include <unordered_map>
#include <vector>

namespace
{

using Claims = std::vector<gx_Instantiator const *>;  // in the order of registration

struct Registry {
  std::mutex mutex;
  std::map<std::string, Claims, std::less<>> byName;
  std::unordered_map<std::type_index, Claims> byType;
};

Registry &registry()
{
  static Registry theRegistry;  // outlives every gx_Instantiator, whose constructor has needed it
  return theRegistry;
}

template <class Map, class Key>
void removeFrom(Map &map, Key const &key, gx_Instantiator const &instantiator)
{
  auto const found = map.find(key);
  if (found == map.end())
    return;
  std::erase(found->second, &instantiator);
  if (found->second.empty())
    map.erase(found);
}

// One class may stand under a name several times, when several libraries of a process carry its template instance.
gx_ClassRegistry::Found foundIn(Claims const &claims)
{
  auto const sameClass = [&](gx_Instantiator const *i) { return i->type() == claims.front()->type(); };
  return {claims.front(), !std::all_of(claims.begin(), claims.end(), sameClass)};
}

}  // namespace

void gx_ClassRegistry::add(gx_Instantiator const &instantiator)
{
  Registry &r = registry();
  std::lock_guard const lock(r.mutex);
  r.byName[instantiator.name()].push_back(&instantiator);
  r.byType[instantiator.type()].push_back(&instantiator);
}

void gx_ClassRegistry::remove(gx_Instantiator const &instantiator)
{
  Registry &r = registry();
  std::lock_guard const lock(r.mutex);
  removeFrom(r.byName, instantiator.name(), instantiator);
  removeFrom(r.byType, std::type_index(instantiator.type()), instantiator);
}

gx_ClassRegistry::Found gx_ClassRegistry::byName(std::string_view name)
{
  Registry &r = registry();
  std::lock_guard const lock(r.mutex);
  auto const found = r.byName.find(name);
  return found == r.byName.end() ? Found() : foundIn(found->second);
}

gx_ClassRegistry::Found gx_ClassRegistry::byType(std::type_info const &type)
{
  Registry &r = registry();
  std::lock_guard const lock(r.mutex);
  auto const found = r.byType.find(type);
  if (found == r.byType.end())
    return {};
  gx_Instantiator const &first = *found->second.front();
  return {&first, foundIn(r.byName.at(first.name())).ambiguous};
}

gx_Instantiator::gx_Instantiator(std::type_info const &type, char const *name, Make maker)
    : type_(&type), name_(name), make_(maker)
{
  gx_ClassRegistry::add(*this);
}

gx_Instantiator::~gx_Instantiator()
{
  gx_ClassRegistry::remove(*this);
}
