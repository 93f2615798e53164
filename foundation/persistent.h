#pragma once

#include "foundation/export.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <typeinfo>

class gxArchive;
class gx_ObjectTable;

/// Base of every class whose objects pass through an archive. Derive virtually.
///
/// A persistent class says GX_PERSISTENT(Class) at the end of its body and, in its source, the name in the archive,
/// the current version and its fields; all the rest follows:
///
/// @code
/// class Lamp : public virtual gxPersistent {
///   ...
///   long watts_;
///   GX_PERSISTENT(Lamp);
/// };
///
/// GX_PERSISTENT_IMPL(Lamp, "Lamp", 0)
/// void Lamp::serialize_(gxArchive &archive, unsigned char version)
/// {
///   if (version != 0)
///     throw gxArchive::UnknownVersion("lamp", __LINE__);
///   gxPersistent::dispatchSerialize(archive);
///   archive || watts_;
/// }
/// @endcode
class GX_API gxPersistent
{
 public:
  gxPersistent() = default;
  /// What an archive knows of an object is not copied with it.
  gxPersistent(gxPersistent const &) {}
  /// Copies nothing, but reports the change, as every setter does: the assignment of a class comes here before it
  /// touches a field of its own.
  gxPersistent &operator=(gxPersistent const &)
  {
    mutating();
    return *this;
  }
  /// Inline, as millions of small shapes come and go that no archive ever sees.
  virtual ~gxPersistent()
  {
    if (tracked_)
      leaveArchives_();
  }

  /// Passes a pointer through the archive. Storing: the object behind @p in goes out, once in the life of the
  /// archive, and a reference after that; @p out receives @p in. Loading: @p out receives the object, made by its
  /// registered class and held by the archive until it ends. An object that is no gxRepBase belongs to whoever
  /// receives it first; until then, should its fields fail to load, the archive deletes it. A handle is passed by its
  /// own `||`, which calls this.
  static void serializePointer(gxArchive &archive, gxPersistent *in, gxPersistent *&out);

 protected:
  /// Passes the object through; each class overrides it (by GX_PERSISTENT) and calls its bases' from `serialize_`.
  /// The root has nothing to pass: what an archive keeps of an object belongs to the archive, not into the stream.
  virtual void dispatchSerialize(gxArchive &) {}
  /// Puts a freshly made object into its start state before loading. Empty here.
  virtual void reInit() {}

  /// A setter calls this before it changes the object: each living archive of this thread that tracks the object
  /// drops what it holds of it. A storing archive writes the object anew at the next occasion. A loading archive lets
  /// go of it, unless it is the only one that holds it, and finds it for later references for as long as it lives.
  /// The object that is passing through an archive just now stays known to it.
  void mutating()
  {
    if (tracked_)
      mutating_();
  }

  /// While an object passes through an archive, each of its classes marks its part, told by address and size (and, to
  /// tell parts without fields apart, by @p level, any address that is the class's own), so that a base in a diamond
  /// of virtual bases passes once. The marks belong to one passing of one complete object: objects inside it, which
  /// pass meanwhile, have marks of their own.
  static bool haveVisited(void const *part, std::size_t size, void const *level = nullptr);
  static void setVisited(void const *part, std::size_t size, void const *level = nullptr);

 private:
  friend class gx_ObjectTable;
  friend GX_API gxArchive &operator||(gxArchive &archive, gxPersistent &object);

  void mutating_();
  void leaveArchives_();

  std::uint32_t archiveId_ = 0;  ///< the archive that last numbered this object
  std::uint32_t number_ = 0;     ///< its number there
  bool tracked_ = false;         ///< perhaps some living archive knows this object
};

/// The registration of a persistent class with the archives of the process: one static object per class. A second one
/// with another name for the same class lets archives load it under an older name.
class GX_API gx_Instantiator
{
 public:
  using Make = gxPersistent *(*)();

  /// @param name what archives call the class; archives refuse a name that two classes claim
  /// @param maker makes an object in its start state by `new`; null for a class without objects of its own
  gx_Instantiator(std::type_info const &type, char const *name, Make maker);
  ~gx_Instantiator();
  gx_Instantiator(gx_Instantiator const &) = delete;
  gx_Instantiator &operator=(gx_Instantiator const &) = delete;

  std::type_info const &type() const { return *type_; }
  std::string const &name() const { return name_; }
  Make make() const { return make_; }

 private:
  std::type_info const *type_;
  std::string name_;
  Make make_;
};

/// Declares persistence for a class that is not made by archives: an abstract one.
#define GX_PERSISTENT_ABSTRACT(Class)                  \
 protected:                                            \
  void dispatchSerialize(gxArchive &archive) override; \
                                                       \
 private:                                              \
  void serialize_(gxArchive &archive, unsigned char version)

/// Declares persistence; stands at the end of the class, which it leaves private.
#define GX_PERSISTENT(Class)        \
 private:                           \
  static gxPersistent *make();      \
  static gx_Instantiator sExemplar; \
  GX_PERSISTENT_ABSTRACT(Class)

/// @param version the version that is stored; `serialize_` receives it, or the loaded one
#define GX_PERSISTENT_ABSTRACT_IMPL(Class, version)                     \
  void Class::dispatchSerialize(gxArchive &archive)                     \
  {                                                                     \
    unsigned char v = version;                                          \
    if (gf_enterClass(archive, this, sizeof(Class), &typeid(Class), v)) \
      serialize_(archive, v);                                           \
  }

/// @param name what archives call the class
#define GX_PERSISTENT_IMPL(Class, name, version)                \
  gx_Instantiator Class::sExemplar(typeid(Class), name, &make); \
  gxPersistent *Class::make()                                   \
  {                                                             \
    return new Class;                                           \
  }                                                             \
  GX_PERSISTENT_ABSTRACT_IMPL(Class, version)

/// Passes a version byte: stores @p current, or loads and returns the stored one.
GX_API unsigned char gf_passVersion(gxArchive &archive, unsigned char current);

/// The start of a class's part of an object: false if the part has passed already. Otherwise marks it as
/// gxPersistent::setVisited() does and passes the version. In one call, since every object needs it.
GX_API bool gf_enterClass(gxArchive &archive, void const *part, std::size_t size, void const *level,
                          unsigned char &version);
