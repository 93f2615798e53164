#include "dispc/uierror.h"
#include "dispc/uitablet.h"
#include "tests/support/hooktablet.h"

#include <functional>
#include <optional>

// Operations that a tablet hands on to the scopes of its layers: each layer, with a surface, without, and without a
// scope.

namespace
{
constexpr auto image = gxUITablet::image;
constexpr auto overlay = gxUITablet::overlay;
constexpr auto both = gxUITablet::both;

struct Row {
  char const *call;  ///< what the scope is told
  std::function<void(gxUITablet &, gxUITablet::Layers)> run;
  bool takesBoth;
  bool needsSurface;
};

std::vector<Row> const &rows()
{
  static std::vector<Row> const all = {
      {"dragStart", [](gxUITablet &t, gxUITablet::Layers l) { t.dragStart(l); }, false, true},
      {"dragStop", [](gxUITablet &t, gxUITablet::Layers l) { t.dragStop(l); }, false, true},
      {"dragErase", [](gxUITablet &t, gxUITablet::Layers l) { t.dragErase(l); }, false, true},
      {"dragAnimate 1", [](gxUITablet &t, gxUITablet::Layers l) { t.dragAnimate(true, l); }, false, true},
      {"lock 0", [](gxUITablet &t, gxUITablet::Layers l) { t.lockScreenUpdatesPush(false, l); }, true, false},
      {"unlock", [](gxUITablet &t, gxUITablet::Layers l) { t.lockScreenUpdatesPop(l); }, true, false},
      {"optimize 1", [](gxUITablet &t, gxUITablet::Layers l) { t.optimizeDrawing(true, l); }, false, false},
  };
  return all;
}

TEST(TabletDrag, EachOperationReachesTheScopesThatItsGuardLetsThrough)
{
  for (Row const &row : rows())
    for (bool const hidden : {true, false})  // no draw decision is asked, and nothing is recorded
      for (bool const null : {false, true}) {
        SCOPED_TRACE(std::string(row.call) + (hidden ? ", hidden" : "") + (null ? ", no surface" : ""));
        CheckedLog log;
        LogScope i(log, "i", gxPair<long>(9, 9)), o(log, "o", gxPair<long>(9, 9));
        i.quietEnd(), o.quietEnd();
        i.null(null), o.null(null);
        gxUITablet full(&i, &o), half(&i, nullptr), none;
        for (gxUITablet *const t : {&full, &half, &none}) {
          t->visible(!hidden);
          t->recordOn() = true;
          t->recordChanges(true);
        }
        log.take();
        auto const told = [&](gxUITablet &t, gxUITablet::Layers layer) {
          row.run(t, layer);
          return log.text();
        };
        std::string const line = null && row.needsSurface ? "" : std::string(": ") + row.call;
        auto const at = [&](char const *scope) { return line.empty() ? "" : "\n" + (scope + line); };
        EXPECT_EQ(told(full, image), at("i"));
        EXPECT_EQ(told(full, overlay), at("o"));
        EXPECT_EQ(told(half, overlay) + told(none, image) + told(none, overlay), "");
        if (row.takesBoth) {
          EXPECT_EQ(told(full, both), at("i") + at("o"));
          EXPECT_EQ(told(half, both) + told(none, both), at("i"));
        } else {
          EXPECT_THROW(row.run(full, both), gxUIError::BadLayer);
          EXPECT_THROW(row.run(none, both), gxUIError::BadLayer);
        }
        for (int const bad : {3, -1})
          EXPECT_THROW(row.run(full, gxUITablet::Layers(bad)), gxUIError::BadLayer);
        EXPECT_EQ(log.text(), "");
        EXPECT_TRUE(full.sketch().isNull() && none.sketch().isNull());
      }
}

TEST(TabletDrag, ALayerIsLockedUntilTheLastPop)
{
  CheckedLog log;
  LogScope i(log, "i", gxPair<long>(9, 9));
  gxUITablet tablet(&i, nullptr);
  EXPECT_FALSE(tablet.screenUpdatesLocked(image));
  tablet.lockScreenUpdatesPush(true, both);
  tablet.lockScreenUpdatesPush(true, image);
  tablet.lockScreenUpdatesPop(both);
  EXPECT_TRUE(tablet.screenUpdatesLocked(image));
  EXPECT_FALSE(tablet.screenUpdatesLocked(overlay));
  i.null(true);
  EXPECT_FALSE(tablet.screenUpdatesLocked(image)) << "without a surface nothing is held back";
  i.null(false);
  tablet.lockScreenUpdatesPop(image);
  EXPECT_FALSE(tablet.screenUpdatesLocked(image));
  for (auto const layer : {both, gxUITablet::Layers(-1)})
    EXPECT_THROW(tablet.screenUpdatesLocked(layer), gxUIError::BadLayer);
}

/// A surfaceless scope takes part while a client tracks, and each layer reports for itself.
TEST(TabletDrag, ChangesAreCollectedWhileAClientTracks)
{
  CheckedLog log;
  LogScope i(log, "i", gxPair<long>(40, 30)), o(log, "o", gxPair<long>(20, 50));
  for (bool const withOverlay : {true, false}) {
    gxUITablet tablet(&i, withOverlay ? &o : nullptr);
    tablet.visible(true);
    i.null(true);
    gxUIRect changes[2] = {gxUIRect(1, 2, 3, 4), gxUIRect(5, 6, 7, 8)};
    auto const drawn = [&](bool keepOn) {
      log.take();
      for (auto const layer : {image, overlay})
        tablet.draw(gxPoint(3, 4), gxGraphicProps(), layer);
      tablet.getChanges(changes, keepOn);
      return log.lines.size();
    };
    EXPECT_FALSE(tablet.recordChanges());
    EXPECT_EQ(drawn(true), withOverlay ? 1u : 0u) << "the surfaceless image layer takes no part";
    EXPECT_TRUE(changes[0].isNull() && changes[1].isNull());

    tablet.recordChanges(true);
    EXPECT_TRUE(tablet.recordChanges());
    EXPECT_EQ(drawn(true), withOverlay ? 2u : 1u);
    EXPECT_EQ(changes[0], gxUIRect(0, 0, 40, 30));
    EXPECT_EQ(changes[1], withOverlay ? gxUIRect(0, 0, 20, 50) : gxUIRect::null);
    EXPECT_TRUE(tablet.recordChanges()) << "it goes on";

    tablet.recordChanges(true);  // starts anew
    tablet.getChanges(changes, false);
    EXPECT_TRUE(changes[0].isNull() && changes[1].isNull());
    EXPECT_FALSE(tablet.recordChanges()) << "it ended with the report";
    if (withOverlay) {
      o.clientChangeEnable(true);
      EXPECT_TRUE(tablet.recordChanges()) << "one layer is enough";
      tablet.recordChanges(false);
    }
    i.null(false);
  }
  gxUITablet none;
  none.recordChanges(true);
  EXPECT_FALSE(none.recordChanges());
}
}  // namespace
