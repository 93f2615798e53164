#pragma once

#include "foundation/export.h"

#include <atomic>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>
#if __has_include(<sys/single_threaded.h>)
#include <sys/single_threaded.h>
#endif

/// True only if the process has one thread; then no other one can meet a count half changed.
inline bool gf_hasOneThread()
{
#if __has_include(<sys/single_threaded.h>)
  return __libc_single_threaded != 0;
#else
  return false;
#endif
}

/// Atomic change of a reference count, of any signed type (`long` for those that clients keep, 32 bits for those of
/// gxRepBase); both return the new count.
template <std::signed_integral Count>
Count gfInterlockedIncrement(Count *count)
{
  std::atomic_ref const shared(*count);
  if (!gf_hasOneThread())
    return static_cast<Count>(shared.fetch_add(1, std::memory_order_relaxed) + 1);
  Count const next = static_cast<Count>(shared.load(std::memory_order_relaxed) + 1);
  shared.store(next, std::memory_order_relaxed);
  return next;
}
template <std::signed_integral Count>
Count gfInterlockedDecrement(Count *count)
{
  std::atomic_ref const shared(*count);
  if (!gf_hasOneThread())
    return static_cast<Count>(shared.fetch_sub(1, std::memory_order_acq_rel) - 1);
  Count const next = static_cast<Count>(shared.load(std::memory_order_relaxed) - 1);
  shared.store(next, std::memory_order_relaxed);
  return next;
}

/// Base of the objects that handles hold: a count of the handles, and a virtual destructor. Derive virtually.
/// The count belongs to the object and is never copied. It is the one thing in the library that threads may share.
class GX_API gxRepBase
{
 public:
  gxRepBase() = default;
  gxRepBase(gxRepBase const &) {}
  gxRepBase &operator=(gxRepBase const &) { return *this; }
  virtual ~gxRepBase() = default;  // inline, for objects on the stack

  /// Number of handles that hold the object now.
  long refCount() const { return std::atomic_ref(count_).load(std::memory_order_relaxed); }

 private:
  friend class gx_PtrHandleBase_RepAccessor;
  mutable std::int32_t count_ = 0;
};

/// The one door of handles to the count inside a gxRepBase.
class gx_PtrHandleBase_RepAccessor
{
 public:
  static void hold(gxRepBase const *rep)
  {
    if (rep)
      gfInterlockedIncrement(&rep->count_);
  }
  /// The first hold of an object that no other thread can know yet.
  static void holdNew(gxRepBase const *rep)
  {
    if (rep)
      std::atomic_ref(rep->count_).store(1, std::memory_order_relaxed);
  }
  /// Deletes the object with its last handle.
  static void release(gxRepBase const *rep)
  {
    if (rep && gfInterlockedDecrement(&rep->count_) == 0)
      destroy(rep);
  }

 private:
  /// Deletes the object at once, unless very many deletions are nested, as along a list of handles: then a little
  /// later, before the outermost one ends, so that the stack lasts for lists of any length.
  GX_API static void destroy(gxRepBase const *rep) noexcept;
};

/// Throws gxBadPointer.
[[noreturn]] GX_API void gf_throwBadPointer();

/// A counted pointer to a constant T, which may be null. T derives from gxRepBase; the last handle deletes the object.
/// A handle takes hold of the new object before it lets go of the old one.
///
/// @code
/// gxPtrHandle_const<gxShape> shape = circle.clone();
/// shape->boundingBox();   // gxBadPointer if the handle were null
/// @endcode
template <class T>
class gxPtrHandle_const
{
 public:
  gxPtrHandle_const() = default;
  gxPtrHandle_const(std::nullptr_t) {}  // NOLINT(google-explicit-constructor): null is a handle
  gxPtrHandle_const(T const *p) : p_(const_cast<T *>(p)) { hold(p_); }  // NOLINT(google-explicit-constructor)
  gxPtrHandle_const(gxPtrHandle_const const &h) : p_(h.p_) { hold(p_); }
  gxPtrHandle_const(gxPtrHandle_const &&h) noexcept : p_(std::exchange(h.p_, nullptr)) {}
  template <class U>
  requires std::is_convertible_v<U const *, T const *> gxPtrHandle_const(
      gxPtrHandle_const<U> const &h)  // NOLINT(google-explicit-constructor): as for plain pointers
      : gxPtrHandle_const(h.rep())
  {
  }
  ~gxPtrHandle_const() { release(p_); }

  gxPtrHandle_const &operator=(gxPtrHandle_const const &h)
  {
    set(h.p_);
    return *this;
  }
  gxPtrHandle_const &operator=(gxPtrHandle_const &&h) noexcept
  {
    if (this != &h)
      release(std::exchange(p_, std::exchange(h.p_, nullptr)));
    return *this;
  }

  /// The object or null; the handle keeps its hold.
  T const *rep() const { return p_; }
  bool isNull() const { return !p_; }
  explicit operator bool() const { return p_ != nullptr; }

  /// Throw gxBadPointer for a null handle.
  T const &operator*() const { return *checked(); }
  T const *operator->() const { return checked(); }

  /// Identity of the objects, not their value.
  friend bool operator==(gxPtrHandle_const const &a, gxPtrHandle_const const &b) { return a.p_ == b.p_; }
  friend bool operator==(gxPtrHandle_const const &a, std::nullptr_t) { return !a.p_; }

 protected:
  T *checked() const
  {
    if (!p_)
      gf_throwBadPointer();
    return p_;
  }
  T *mutableRep() const { return p_; }

 private:
  static void hold(T const *p) { gx_PtrHandleBase_RepAccessor::hold(p); }
  static void release(T const *p) { gx_PtrHandleBase_RepAccessor::release(p); }
  void set(T *p)
  {
    hold(p);
    release(std::exchange(p_, p));
  }

  T *p_ = nullptr;
};

/// A counted pointer to a T that may be changed through it. Passes as a gxPtrHandle_const<T>.
template <class T>
class gxPtrHandle : public gxPtrHandle_const<T>
{
 public:
  gxPtrHandle() = default;
  gxPtrHandle(std::nullptr_t) {}                  // NOLINT(google-explicit-constructor)
  gxPtrHandle(T *p) : gxPtrHandle_const<T>(p) {}  // NOLINT(google-explicit-constructor)
  template <class U>
  requires std::is_convertible_v<U *, T *> gxPtrHandle(gxPtrHandle<U> const &h)
      : gxPtrHandle(h.rep())  // NOLINT(google-explicit-constructor)
  {
  }

  T *rep() const { return this->mutableRep(); }
  T &operator*() const { return *this->checked(); }
  T *operator->() const { return this->checked(); }
};

/// The handles by the names of their bases: code that is written against a base takes the handles themselves.
template <class T>
using gxPtrHandleBase_const = gxPtrHandle_const<T>;
template <class T>
using gxPtrHandleBase = gxPtrHandle<T>;
