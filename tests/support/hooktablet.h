#pragma once

#include "dispc/uitablet.h"
#include "tests/support/logscope.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>

/// A tablet that writes each call of its hooks into the log of its scopes, "name: redraw both", so that one text tells
/// the order of everything.
class HookTablet : public gxUITablet
{
 public:
  template <class... Args>
  HookTablet(ScopeLog &log, std::string name, Args &&...args)
      : gxUITablet(std::forward<Args>(args)...), log_(&log), name_(std::move(name))
  {
  }

  std::string const &name() const { return name_; }
  using gxUITablet::clearAnyChanged;
  using gxUITablet::updateLayers;

  /// What redraw_() does beyond writing itself down.
  std::function<void()> onRedraw;
  std::function<void()> onParentMap;

 protected:
  void redraw_() override
  {
    static char const *const names[] = {"image", "overlay", "both"};
    note(std::string("redraw ") + names[updateLayers()]);
    if (onRedraw)
      onRedraw();
  }
  void resize_() override { note("resize"); }
  void move_() override { note("move"); }
  void clipped_() override { note("clipped"); }
  void newParentTablet(gxUITablet *old) override
  {
    auto const *const tablet = dynamic_cast<HookTablet const *>(old);
    note("from " + (tablet ? tablet->name_ : old ? "a tablet" : "nowhere"));
  }
  void parentMapChanged() override
  {
    note("parentMap");
    if (onParentMap)
      onParentMap();
  }

 private:
  void note(std::string const &what) { log_->lines.push_back(name_ + ": " + what); }

  ScopeLog *log_;
  std::string name_;
};

/// A log that demands, when it ends, that no scope is left.
struct CheckedLog : ScopeLog {
  ~CheckedLog() { EXPECT_TRUE(living.empty()) << living.size() << " scopes left, " << *living.begin(); }
  /// The lines since the last call, as one text with a line break before each.
  std::string text()
  {
    std::string all;
    for (std::string const &line : take())
      all += '\n' + line;
    return all;
  }
};
