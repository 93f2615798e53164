#pragma once

#include "foundation/export.h"

#include <mutex>

/// A lock that one thread holds at a time; not recursive. Hold it through a gxLock.
class GX_API gxMutex
{
 public:
  gxMutex() = default;
  gxMutex(gxMutex const &) = delete;
  gxMutex &operator=(gxMutex const &) = delete;

  void lock() { mutex_.lock(); }
  void unlock() { mutex_.unlock(); }

  /// The one mutex of the process that guards first uses. It can be locked while static objects are still being made.
  static gxMutex &global();

 private:
  std::mutex mutex_;
};

/// Holds a gxMutex from its construction to its end.
class gxLock
{
 public:
  explicit gxLock(gxMutex &mutex) : guard_(mutex) {}

 private:
  std::lock_guard<gxMutex> guard_;
};
