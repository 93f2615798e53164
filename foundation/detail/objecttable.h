#pragma once

#include "foundation/archive.h"
#include "foundation/detail/archivepass.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <typeinfo>
#include <unordered_map>
#include <vector>

/// What one archive knows of the objects that passed through it as pointers, and of their classes.
///
/// An object gets its number, counted from 0, as soon as its class is told, before its fields: so rings of pointers
/// end. The number is kept inside the object, beside the identity of the archive; only if a second archive numbers
/// the object while the first one lives does the first one note it in a map.
class gx_ObjectTable
{
 public:
  explicit gx_ObjectTable(gxArchive &archive);
  /// Lets go of the loaded objects, the last one first, so that an object goes before the older ones it may refer to.
  ~gx_ObjectTable();
  gx_ObjectTable(gx_ObjectTable const &) = delete;
  gx_ObjectTable &operator=(gx_ObjectTable const &) = delete;

  /// Who receives an object by pointer: whoever looks at it, handles, or its one owner.
  enum class Receiver { plain, handle, owner };

  void store(gxPersistent *object);
  /// Stores the object anew though the archive may know it.
  void storeOwned(gxPersistent *object);
  /// For a handle, the archive keeps an object that is no gxRepBase. For an owner, a reference or a gxRepBase is
  /// refused.
  gxPersistent *load(Receiver receiver);

  /// See gf_passOnce().
  void storeOnce(gxPersistent &object);
  bool loadOnce(gxPersistent &object);

  std::size_t size() const { return entries_.size(); }
  /// Drops the objects from number @p first on, after a failed load: empties them, since they may refer to each other
  /// in rings, and lets go of them.
  void abandon(std::size_t first) noexcept;

  /// The archive's thread has changed or is destroying the object. changed() returns true if the archive still needs to
  /// hear of this object.
  bool changed(gxPersistent &object);
  void destroyed(gxPersistent &object);

  /// The living archives of this thread, the youngest first.
  static gx_ObjectTable *living() { return living_; }
  gx_ObjectTable *older() const { return older_; }
  gxArchive &archive() const { return archive_; }

 private:
  struct Entry {
    gxPersistent *object = nullptr;  // null once the object is forgotten
    gxRepBase *held = nullptr;       // null if the archive holds nothing
  };
  struct LoadedClass {
    gx_Instantiator::Make make;
    std::type_info const *knownType;  // the class of the last made object, for which the rest is known
    std::ptrdiff_t toRepBase;         // from the gxPersistent inside an object to its gxRepBase
    bool isRepBase;
  };
  static constexpr std::uint32_t none = 0xffffffff;

  std::uint32_t numberOf(gxPersistent const &object) const;
  void mark(gxPersistent &object, std::size_t number) const;
  void displace(gxPersistent const &object) const;
  void forget(std::size_t number);

  void storeClass(std::type_info const &type);
  void storeNewClass(std::type_info const &type);
  gxPersistent *loadReference();
  std::size_t loadKnownClass();
  std::size_t loadNewClass();
  gxPersistent *loadObject(std::size_t classNumber, Receiver receiver);
  static gxRepBase *repBaseOf(gxPersistent &object, LoadedClass &loadedClass);

  gxArchive &archive_;
  std::uint32_t id_;
  gx_ObjectTable *older_;
  gx_ObjectTable *younger_ = nullptr;
  static thread_local gx_ObjectTable *living_ GX_INITIAL_EXEC;

  std::deque<Entry> entries_;
  std::unordered_map<gxPersistent const *, std::uint32_t> displaced_;  // objects that another archive numbered later
  std::vector<gxPersistent *> owned_;                                  // shared objects that no handle can own

  std::unordered_map<std::type_info const *, unsigned short> storedClasses_;
  /// Classes that were stored lately, each at a place that its address tells.
  struct StoredClass {
    std::type_info const *type = nullptr;
    unsigned short number = 0;
  };
  std::array<StoredClass, 64> recent_;
  StoredClass &recent(std::type_info const &type)
  {
    return recent_[reinterpret_cast<std::uintptr_t>(&type) / alignof(std::max_align_t) % recent_.size()];
  }
  std::vector<LoadedClass> loadedClasses_;
};
