#pragma once

#include "foundation/persistent.h"

#include <string_view>
#include <typeinfo>

/// The persistent classes of the process, as their static gx_Instantiator objects announce them. Safe to use from any
/// thread and from static initialisers.
namespace gx_ClassRegistry
{

/// What a search found: one class, none (null), or a name that several classes claim.
struct Found {
  gx_Instantiator const *instantiator = nullptr;
  bool ambiguous = false;
};

void add(gx_Instantiator const &instantiator);
void remove(gx_Instantiator const &instantiator);

Found byName(std::string_view name);
/// By the class of an object; its first name is the one that is stored.
Found byType(std::type_info const &type);

}  // namespace gx_ClassRegistry
