#include "foundation/detail/objecttable.h"

#include "foundation/detail/archivepass.h"
#include "foundation/detail/classregistry.h"
#include "foundation/detail/scrubbingarchive.h"

#include <algorithm>
#include <atomic>
#include <limits>
#include <utility>

namespace
{

// The kinds of pointers in the stream, and the longest name of a class there; see docs/archive-format.md.
enum : unsigned char { nullPointer, objectOfNewClass, objectOfKnownClass, reference };
constexpr std::size_t maxClassName = 512;

constinit std::atomic<std::uint32_t> idCount = 0;

// Identities may come round again after 2^32 archives; a number counts only if the table confirms the object.
std::uint32_t nextId()
{
  std::uint32_t const id = idCount.fetch_add(1, std::memory_order_relaxed) + 1;
  return id != 0 ? id : nextId();
}

std::string quoted(std::string_view name)
{
  std::string text = "\"";
  for (char const c : name)
    text += c >= ' ' && c <= '~' ? c : '?';
  return text + '"';
}

}  // namespace

thread_local gx_ObjectTable *gx_ObjectTable::living_ = nullptr;

inline void gx_ObjectTable::mark(gxPersistent &object, std::size_t number) const
{
  object.archiveId_ = id_;
  object.number_ = static_cast<std::uint32_t>(number);
  object.tracked_ = true;
}

gx_ObjectTable::gx_ObjectTable(gxArchive &archive) : archive_(archive), id_(nextId()), older_(living_)
{
  if (older_)
    older_->younger_ = this;
  living_ = this;
}

gx_ObjectTable::~gx_ObjectTable()
{
  (younger_ ? younger_->older_ : living_) = older_;
  if (older_)
    older_->younger_ = younger_;
  for (gxPersistent *const object : owned_)
    delete object;
  for (auto entry = entries_.rbegin(); entry != entries_.rend(); ++entry)
    gx_PtrHandleBase_RepAccessor::release(entry->held);
}

std::uint32_t gx_ObjectTable::numberOf(gxPersistent const &object) const
{
  auto const confirmed = [&](std::uint32_t n) { return n < entries_.size() && entries_[n].object == &object; };
  if (object.archiveId_ == id_ && confirmed(object.number_))
    return object.number_;
  if (displaced_.empty())
    return none;
  auto const found = displaced_.find(&object);
  return found != displaced_.end() && confirmed(found->second) ? found->second : none;
}

// Another living archive will not find the number in the object any more.
void gx_ObjectTable::displace(gxPersistent const &object) const
{
  for (gx_ObjectTable *other = living_; other; other = other->older_) {
    if (other != this && other->id_ == object.archiveId_ && other->numberOf(object) != none)
      other->displaced_[&object] = object.number_;
  }
}

void gx_ObjectTable::forget(std::size_t number)
{
  gxPersistent *const object = std::exchange(entries_[number].object, nullptr);
  if (!displaced_.empty())
    displaced_.erase(object);
}

bool gx_ObjectTable::changed(gxPersistent &object)
{
  std::uint32_t const number = numberOf(object);
  if (number == none)
    return false;
  if (gx_Pass::isPassing(archive_, object))
    return true;
  if (archive_.isStoring()) {
    forget(number);
    return false;
  }
  if (gxRepBase *&held = entries_[number].held; held && held->refCount() > 1)
    gx_PtrHandleBase_RepAccessor::release(std::exchange(held, nullptr));
  return true;
}

void gx_ObjectTable::destroyed(gxPersistent &object)
{
  if (std::uint32_t const number = numberOf(object); number != none) {
    entries_[number].held = nullptr;
    forget(number);
  }
  if (!owned_.empty())
    std::erase(owned_, &object);
}

// ---------------------------------------------------------------- storing

void gx_ObjectTable::store(gxPersistent *object)
{
  unsigned char kind = nullPointer;
  if (!object) {
    archive_ || kind;
    return;
  }
  if (std::uint32_t number = numberOf(*object); number != none) {
    kind = reference;
    archive_ || kind || number;
    return;
  }
  if (entries_.size() >= none)
    archive_.fail("more objects than an archive can number");
  storeClass(typeid(*object));
  if (object->tracked_)
    displace(*object);
  std::size_t const number = entries_.size();
  entries_.push_back({object, nullptr});
  mark(*object, number);
  try {
    gx_Pass const pass(archive_, *object);
    object->dispatchSerialize(archive_);
  } catch (...) {
    forget(number);  // a reference to half an object would be of no use
    throw;
  }
}

void gx_ObjectTable::storeOwned(gxPersistent *object)
{
  if (object) {
    if (std::uint32_t const number = numberOf(*object); number != none)
      forget(number);
  }
  store(object);
}

void gx_ObjectTable::storeOnce(gxPersistent &object)
{
  if (entries_.size() >= none)
    archive_.fail("more objects than an archive can number");
  storeClass(typeid(object));
  entries_.emplace_back();
  gx_Pass const pass(archive_, object);
  object.dispatchSerialize(archive_);
}

void gx_ObjectTable::storeClass(std::type_info const &type)
{
  unsigned char kind = objectOfKnownClass;
  StoredClass &stored = recent(type);
  if (stored.type != &type) {
    auto const found = storedClasses_.find(&type);
    if (found == storedClasses_.end())
      return storeNewClass(type);
    stored = {&type, found->second};
  }
  archive_.need(sizeof(kind) + sizeof(stored.number));
  archive_.cursor_ = gf_putLittle(gf_putLittle(archive_.cursor_, kind), stored.number);
}

void gx_ObjectTable::storeNewClass(std::type_info const &type)
{
  gx_ClassRegistry::Found const found = gx_ClassRegistry::byType(type);
  if (!found.instantiator)
    archive_.fail("objects of class " + quoted(type.name()) + " have no registration with archives");
  std::string const &name = found.instantiator->name();
  if (found.ambiguous)
    archive_.fail("two classes are registered under the name " + quoted(name));
  if (name.empty() || name.size() > maxClassName)
    archive_.fail("the class name " + quoted(name) + " is empty or too long");
  if (storedClasses_.size() > std::numeric_limits<std::uint16_t>::max())
    archive_.fail("more classes than an archive can number");
  unsigned char kind = objectOfNewClass;
  auto size = static_cast<unsigned short>(name.size());
  archive_ || kind || size;
  archive_.raw(const_cast<char *>(name.data()), size);
  auto const number = static_cast<unsigned short>(storedClasses_.size());
  storedClasses_.emplace(&type, number);
  recent(type) = {&type, number};
}

// ---------------------------------------------------------------- loading

gxPersistent *gx_ObjectTable::load(Receiver receiver)
{
  unsigned char kind = nullPointer;
  archive_ || kind;
  switch (kind) {
    case nullPointer:
      return nullptr;
    case objectOfNewClass:
      return loadObject(loadNewClass(), receiver);
    case objectOfKnownClass:
      return loadObject(loadKnownClass(), receiver);
    case reference:
      if (receiver == Receiver::owner)
        archive_.fail("an object with a second owner");
      return loadReference();
    default:
      archive_.fail("a pointer of kind " + std::to_string(kind));
  }
}

gxPersistent *gx_ObjectTable::loadReference()
{
  std::uint32_t number = 0;
  archive_ || number;
  if (number >= entries_.size())
    archive_.fail("a reference to object " + std::to_string(number) + ", but " + std::to_string(entries_.size()) +
                  " have come");
  if (!entries_[number].object)
    archive_.fail("a reference to object " + std::to_string(number) + ", which does not exist any more");
  return entries_[number].object;
}

inline std::size_t gx_ObjectTable::loadKnownClass()
{
  unsigned short number = 0;
  archive_ || number;
  if (number >= loadedClasses_.size())
    archive_.fail("an object of class " + std::to_string(number) + ", but " + std::to_string(loadedClasses_.size()) +
                  " have come");
  return number;
}

std::size_t gx_ObjectTable::loadNewClass()
{
  unsigned short size = 0;
  archive_ || size;
  if (size == 0 || size > maxClassName)
    archive_.fail("a class name of " + std::to_string(size) + " bytes");
  archive_.requireBytes(size, "a class name");
  std::string name(size, '\0');
  archive_.raw(name.data(), size);
  gx_ClassRegistry::Found const found = gx_ClassRegistry::byName(name);
  if (!found.instantiator)
    archive_.fail("the class " + quoted(name) + " is unknown");
  if (found.ambiguous)
    archive_.fail("two classes are registered under the name " + quoted(name));
  if (!found.instantiator->make())
    archive_.fail("the class " + quoted(name) + " is abstract");
  if (loadedClasses_.size() > std::numeric_limits<std::uint16_t>::max())
    archive_.fail("more classes than an archive can number");
  loadedClasses_.push_back({found.instantiator->make(), nullptr, 0, false});
  return loadedClasses_.size() - 1;
}

inline gxRepBase *gx_ObjectTable::repBaseOf(gxPersistent &object, LoadedClass &loadedClass)
{
  if (loadedClass.knownType == &typeid(object))
    return loadedClass.isRepBase
               ? reinterpret_cast<gxRepBase *>(reinterpret_cast<char *>(&object) + loadedClass.toRepBase)
               : nullptr;
  auto *const base = dynamic_cast<gxRepBase *>(&object);
  loadedClass.knownType = &typeid(object);
  loadedClass.isRepBase = base != nullptr;
  loadedClass.toRepBase = base ? reinterpret_cast<char *>(base) - reinterpret_cast<char *>(&object) : 0;
  return base;
}

gxPersistent *gx_ObjectTable::loadObject(std::size_t classNumber, Receiver receiver)
{
  std::size_t const number = entries_.size();
  if (number >= std::min<std::size_t>(archive_.limits_.maxObjects, none))
    archive_.fail("more than " + std::to_string(number) + " objects");
  Entry &entry = entries_.emplace_back();  // first, so that nothing can fail between making and noting the object
  LoadedClass &loadedClass = loadedClasses_[classNumber];
  gxPersistent *const object = loadedClass.make();
  gxRepBase *const held = repBaseOf(*object, loadedClass);
  gx_PtrHandleBase_RepAccessor::holdNew(held);
  entry = {object, held};
  mark(*object, number);
  try {
    gx_Pass const pass(archive_, *object);
    object->reInit();
    object->dispatchSerialize(archive_);
    if (held && receiver == Receiver::owner)
      archive_.fail("a shared object where an owned one is due");
    if (!held && receiver == Receiver::handle)
      owned_.push_back(object);
  } catch (...) {
    if (!held)
      delete object;
    if (!archive_.pass_)
      abandon(number);
    throw;
  }
  return object;
}

bool gx_ObjectTable::loadOnce(gxPersistent &object)
{
  constexpr std::size_t pointerSize = 1 + sizeof(unsigned short);
  if (archive_.bytesLeft() < pointerSize)
    return false;
  archive_.need(pointerSize);
  if (*archive_.cursor_ != objectOfKnownClass)
    return false;
  std::size_t const loadedClass = gf_getLittle<unsigned short>(archive_.cursor_ + 1);
  if (loadedClass >= loadedClasses_.size() || loadedClasses_[loadedClass].knownType != &typeid(object))
    return false;
  archive_.cursor_ += pointerSize;
  std::size_t const number = entries_.size();
  if (number >= std::min<std::size_t>(archive_.limits_.maxObjects, none))
    archive_.fail("more than " + std::to_string(number) + " objects");
  entries_.emplace_back();
  object.mutating();
  try {
    gx_Pass const pass(archive_, object);
    object.dispatchSerialize(archive_);
  } catch (...) {
    if (!archive_.pass_)
      abandon(number);
    throw;
  }
  return true;
}

void gx_ObjectTable::abandon(std::size_t first) noexcept
{
  for (std::size_t i = first; i < entries_.size(); ++i) {
    gxPersistent *const object = std::exchange(entries_[i].object, nullptr);
    if (entries_[i].held)
      gx_ScrubbingArchive::scrub(*object);
  }
  for (std::size_t i = entries_.size(); i-- > first;)
    gx_PtrHandleBase_RepAccessor::release(std::exchange(entries_[i].held, nullptr));
}
