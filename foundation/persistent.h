#pragma once

#include "foundation/export.h"

#include <cstddef>
#include <cstdint>
#include <typeinfo>

class gxArchive;

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
  gxPersistent &operator=(gxPersistent const &) { return *this; }
  virtual ~gxPersistent();

  /// Passes a pointer through the archive. Storing: the object behind @p in goes out, once in the life of the
  /// archive, and a reference after that. Loading: @p out receives the object, made by its registered class and held
  /// by the archive until it ends (an object that is no gxRepBase belongs to the caller).
  static void serializePointer(gxArchive &archive, gxPersistent *in, gxPersistent *&out);

 protected:
  /// Passes the object through; each class overrides it (by GX_PERSISTENT) and calls its bases' from `serialize_`.
  virtual void dispatchSerialize(gxArchive &archive);
  /// Puts a freshly made object into its start state before loading. Empty here.
  virtual void reInit();

  /// A setter calls this before it changes the object: if an archive tracks the object, it drops what it holds of it.
  void mutating()
  {
    if (tracked_)
      mutating_();
  }

  /// In one pass of an outermost object, a class marks that the object of that address and size has gone through it,
  /// so that a base in a diamond of virtual bases is written once.
  static bool haveVisited(void const *object, std::size_t size);
  static void setVisited(void const *object, std::size_t size);

 private:
  friend class gxArchive;
  friend GX_API gxArchive &operator||(gxArchive &archive, gxPersistent &object);

  void mutating_();

  std::uint32_t archiveId_ = 0;  ///< the archive that last numbered this object
  std::uint32_t number_ = 0;     ///< its number there
  bool tracked_ = false;         ///< some living archive holds something of this object
};

/// The registration of a persistent class with the archives of the process: one static object per class.
class GX_API gx_Instantiator
{
 public:
  using Make = gxPersistent *(*)();
  /// @param name what archives call the class; a string that lives as long as the program
  gx_Instantiator(std::type_info const &type, char const *name, Make make);
};

#define GX_PERSISTENT_ABSTRACT(Class)                  \
 protected:                                            \
  void dispatchSerialize(gxArchive &archive) override; \
                                                       \
 private:                                              \
  void serialize_(gxArchive &archive, unsigned char version)

#define GX_PERSISTENT(Class)        \
 private:                           \
  static gxPersistent *make();      \
  static gx_Instantiator sExemplar; \
  GX_PERSISTENT_ABSTRACT(Class)

#define GX_PERSISTENT_ABSTRACT_IMPL(Class, version)        \
  void Class::dispatchSerialize(gxArchive &archive)        \
  {                                                        \
    if (haveVisited(this, sizeof(Class)))                  \
      return;                                              \
    serialize_(archive, gf_passVersion(archive, version)); \
    setVisited(this, sizeof(Class));                       \
  }

#define GX_PERSISTENT_IMPL(Class, name, version)                \
  gx_Instantiator Class::sExemplar(typeid(Class), name, &make); \
  gxPersistent *Class::make()                                   \
  {                                                             \
    return new Class;                                           \
  }                                                             \
  GX_PERSISTENT_ABSTRACT_IMPL(Class, version)

/// Passes a version byte: stores @p current, or loads and returns the stored one.
GX_API unsigned char gf_passVersion(gxArchive &archive, unsigned char current);
