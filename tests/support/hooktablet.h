#pragma once

#include "dispc/uitablet.h"
#include "tests/support/logscope.h"

#include <gtest/gtest.h>

#include <algorithm>
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
  /// The same in short: a lock is "i{" to "}"; a part that is made is told with its surface, "i.1 (10, 10) 40 x 40",
  /// a surface that is moved is "i.1 in i (10, 10) 40 x 40", an end "~i.1".
  std::string story()
  {
    std::string all, newPart;
    std::vector<std::string> locked;
    for (std::string const &line : take()) {
      std::size_t const colon = line.find(": ");
      std::string const who = line.substr(0, colon), what = line.substr(colon + 2);
      std::string word = line;
      if (what == "lock 1") {
        locked.push_back(who);
        word = who + '{';
      } else if (what == "unlock") {
        word = locked.empty() || locked.back() != who ? "}" + who : "}";
        if (auto const last = std::find(locked.rbegin(), locked.rend(), who); last != locked.rend())
          locked.erase(std::next(last).base());
      } else if (what.starts_with("clip ") || what.starts_with("part ")) {
        word = what.substr(5);
        newPart = word.substr(0, word.find(' ')) + ": surface in " + who + word.substr(word.find(' '));
      } else if (what.starts_with("surface ")) {
        word = std::exchange(newPart, "") == line ? "" : who + what.substr(7);
      } else if (what == "delete") {
        word = '~' + who;
      }
      if (!word.empty())
        all += (all.empty() ? "" : " ") + word;
    }
    return all;
  }
};
