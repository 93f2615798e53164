#pragma once

#include "dispc/flagstack.h"
#include "dispc/uierror.h"
#include "dispc/uiscope.h"

/// Locks the screen updates of a scope for as long as it lives, so that they come back even when a drawing throws.
/// Internal to the tablet's sources; gxFlagPush does the same for flags.
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
