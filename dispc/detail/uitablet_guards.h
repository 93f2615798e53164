#pragma once

#include "dispc/flagstack.h"
#include "dispc/uierror.h"
#include "dispc/uiscope.h"

/// Guards for the parts of a draw that must be undone even when a scope throws. Internal to the tablet's sources.

/// Pushes a flag for as long as it lives.
class gx_FlagPushed
{
 public:
  gx_FlagPushed(gxFlagStack &stack, bool flag) : stack_(stack) { stack_.push(flag); }
  gx_FlagPushed(gx_FlagPushed const &) = delete;
  gx_FlagPushed &operator=(gx_FlagPushed const &) = delete;
  ~gx_FlagPushed()
  {
    try {
      stack_.pop();
    } catch (gxUIError::FlagStackUnderflow const &) {
      // A client popped this flag in a nested call; there is nothing left to take back.
    }
  }

 private:
  gxFlagStack &stack_;
};

/// Locks the screen updates of a scope for as long as it lives.
class gx_ScreenLocked
{
 public:
  explicit gx_ScreenLocked(gxUIScope &scope) : scope_(scope) { scope_.lockScreenUpdatesPush(true); }
  gx_ScreenLocked(gx_ScreenLocked const &) = delete;
  gx_ScreenLocked &operator=(gx_ScreenLocked const &) = delete;
  ~gx_ScreenLocked() { scope_.lockScreenUpdatesPop(); }

 private:
  gxUIScope &scope_;
};
