#include "dispc/uierror.h"
#include "tests/support/hooktablet.h"

#include <stdexcept>

// Showing, hiding, painting, and giving areas back, told by everything that hooks and scopes hear.

namespace
{
constexpr auto image = gxUITablet::image;
constexpr auto overlay = gxUITablet::overlay;
constexpr auto both = gxUITablet::both;
using Layers = gxUITablet::Layers;

/// A visible root of 100 x 80 pels, opaque on the image, with a visible kid that has a visible kid and a hidden one.
struct Repaint : testing::Test {
  CheckedLog log;
  LogScope i{log, "i", {100, 80}};
  LogScope o{log, "o", {100, 80}};
  HookTablet root{log, "root", &i, nullptr};
  HookTablet kid{log, "kid", root, gxUIRect(10, 10, 40, 40)};     // i.1
  HookTablet below{log, "below", kid, gxUIRect(5, 5, 10, 10)};    // i.1.2
  HookTablet hidden{log, "hidden", kid, gxUIRect(0, 0, 10, 10)};  // i.1.3

  Repaint()
  {
    for (gxUITablet *const t : {&root, &kid, &below})
      t->visible(true);
    root.opaque(image, true);
    clean();
  }
  /// The end of a visible tablet asks its ancestors to paint, and the hooks of a test look at its own variables.
  void TearDown() override
  {
    for (HookTablet *const t : {&root, &kid, &below, &hidden})
      t->onRedraw = nullptr;
  }
  /// Nothing is modified or changed, nothing is in the log.
  void clean()
  {
    for (gxUITablet *const t : {&root, &kid, &below, &hidden})
      t->modified(image, false);
    i.noChange();
    log.take();
  }
  static void point(gxUITablet &t) { t.draw(gxPoint(1, 1), gxGraphicProps(), image); }
};

TEST_F(Repaint, ReasonsToHideAreCounted)
{
  EXPECT_FALSE(hidden.visible(false));
  EXPECT_FALSE(hidden.visible(true));
  EXPECT_TRUE(hidden.visible(true)) << "born with one reason";
  EXPECT_FALSE(hidden.visible(true)) << "there is none left to take away";
  EXPECT_EQ(log.text(), R"(
i.1.3: lock 1
i.1.3: lock 1
hidden: redraw both
i.1.3: unlock
i.1.3: unlock)")
      << "painted once";
  EXPECT_TRUE(hidden.visible(false));
  EXPECT_FALSE(hidden.visible(false));
  EXPECT_EQ(log.text(), "\ni.1.3: lock 1\ni.1.3: unlock") << "unmodified: there is nothing to give back";
}

TEST_F(Repaint, HidingErasesTheRecordingOfATabletThatRecords)
{
  kid.recordOn() = true;
  point(kid);
  kid.recordOn().push(false);
  kid.visible(false);
  EXPECT_FALSE(kid.sketch().isNull()) << "it does not record now";
  kid.visible(true);
  kid.recordOn().pop();
  kid.visible(false);
  EXPECT_TRUE(kid.sketch().isNull());
  point(kid);
  kid.visible(false);
  EXPECT_FALSE(kid.sketch().isNull()) << "it was hidden already";
}

TEST_F(Repaint, RedrawPaintsItselfAlone)
{
  kid.recordOn() = true;
  bool recording = true;
  kid.onRedraw = [&] { recording = kid.recordOn(); };
  kid.redraw(image);
  kid.redraw(overlay);
  EXPECT_EQ(log.text(), R"(
i.1: lock 1
kid: redraw image
i.1: unlock
kid: redraw overlay)");
  EXPECT_FALSE(recording);
  EXPECT_TRUE(kid.recordOn());
  EXPECT_EQ(kid.updateLayers(), both);
  hidden.redraw(both);
  kid.drawOn().push(false);
  kid.redraw(both);
  EXPECT_EQ(log.text(), "");
}

TEST_F(Repaint, FullDrawPaintsBackToFront)
{
  kid.fullDraw(image);
  EXPECT_EQ(log.text(), R"(
i.1: lock 1
i.1: lock 1
kid: redraw image
i.1: unlock
i.1.2: lock 1
i.1.2: lock 1
below: redraw image
i.1.2: unlock
i.1.2: unlock
i.1.3: lock 1
i.1.3: unlock
i.1: unlock)");
  kid.drawOn() = false;
  kid.fullDraw(both);
  EXPECT_EQ(log.text().find("kid:"), std::string::npos);
  kid.interpolation(gxUITablet::InterpolationModes(2));
  EXPECT_NE(log.text(), "") << "another interpolation repaints";
  kid.interpolation(gxUITablet::InterpolationModes(2));
  EXPECT_EQ(log.text(), "");
}

TEST_F(Repaint, LayersThatDoNotExistThrowBeforeAnythingIsPushed)
{
  for (int const bad : {3, -1, 1000}) {
    auto const layer = static_cast<Layers>(bad);
    EXPECT_THROW(kid.redraw(layer), gxUIError::BadLayer) << bad;
    EXPECT_THROW(kid.fullDraw(layer), gxUIError::BadLayer) << bad;
    EXPECT_THROW(hidden.fullDraw(layer), gxUIError::BadLayer) << bad;
  }
  for (int const bad : {2, 3, -1, 1000}) {
    auto const layer = static_cast<Layers>(bad);
    EXPECT_THROW(kid.update(layer), gxUIError::BadLayer) << bad;
    EXPECT_THROW(kid.update(gxUIRect(0, 0, 1, 1), layer, true), gxUIError::BadLayer) << bad;
    EXPECT_THROW(gxUITablet().update(layer), gxUIError::BadLayer) << "also without a scope";
  }
  kid.erase(static_cast<Layers>(3));
  EXPECT_EQ(kid.recordOn().depth(), 1);
  EXPECT_EQ(log.text(), "\ni.1: lock 1\ni.1: unlock") << "erase knows no bad layer: there is nothing on it";
}

TEST_F(Repaint, WhichLayersAPaintHookSees)
{
  EXPECT_TRUE(gxUITablet::shouldUpdate(image, both));
  EXPECT_TRUE(gxUITablet::shouldUpdate(image, image));
  EXPECT_FALSE(gxUITablet::shouldUpdate(image, overlay));
  EXPECT_FALSE(gxUITablet::shouldUpdate(both, image));
  EXPECT_TRUE(gxUITablet::shouldUpdateImage(both));
  EXPECT_FALSE(gxUITablet::shouldUpdateImage(overlay));
  EXPECT_TRUE(gxUITablet::shouldUpdateOverlay(overlay));
  EXPECT_FALSE(gxUITablet::shouldUpdateOverlay(image));
}

TEST_F(Repaint, ARepairedRectangleIsPassedOnWhenItsChangeIsKept)
{
  kid.onRedraw = [&] { point(kid); };
  kid.update(gxUIRect(20, 25, 10, 10), image, true);
  EXPECT_EQ(log.text(), R"(
i.1: lock 1
i.1: clip i.1!4 (10, 15) 10 x 10
i.1!4: surface in i.1 (10, 15) 10 x 10
i.1!4: lock 1
kid: redraw image
i.1!4: point (1, 1)
i.1!4: unlock
i.1!4: delete
i.1: unlock)")
      << "this tablet alone, through a part in its own pels";
  EXPECT_FALSE(kid.updating());
  EXPECT_EQ(kid.activeScope(image), kid.currentScope(image));
  log.take();
  kid.update(image);
  EXPECT_NE(log.text().find("below: redraw"), std::string::npos) << "the change of the part is one of the whole";
}

TEST_F(Repaint, ARepairedRectangleIsBroughtInLineWithItsKids)
{
  bool updating = false;
  below.onRedraw = [&] {
    updating = kid.updating() && below.updating();
    point(below);
  };
  kid.update(gxUIRect(20, 25, 10, 10), image, false);
  EXPECT_EQ(log.text(), R"(
i.1: lock 1
i.1: clip i.1!4 (10, 15) 10 x 10
i.1!4: surface in i.1 (10, 15) 10 x 10
i.1!4: lock 1
kid: redraw image
i.1!4: unlock
i.1.2: lock 1
i.1.2: clip i.1.2!5 (5, 10) 10 x 10
i.1.2!5: surface in i.1.2 (5, 10) 10 x 10
i.1.2!5: lock 1
below: redraw image
i.1.2!5: point (1, 1)
i.1.2!5: unlock
i.1.2!5: delete
i.1.2: unlock
i.1.3: lock 1
i.1.3: clip i.1.3!6 (10, 15) 10 x 10
i.1.3!6: surface in i.1.3 (10, 15) 10 x 10
i.1.3!6: delete
i.1.3: unlock
i.1!4: delete
i.1: unlock)");
  EXPECT_TRUE(updating);
}

TEST_F(Repaint, ARepairThatCoversTheChangeEndsIt)
{
  auto const pending = [&] {
    log.take();
    kid.update(image);
    return log.text().find("below: redraw") != std::string::npos;
  };
  point(kid);
  kid.update(gxUIRect(10, 10, 39, 40), image, false);
  EXPECT_TRUE(pending()) << "one column is missing";
  point(kid);
  kid.update(gxUIRect(10, 10, 40, 40), image, false);
  EXPECT_FALSE(pending());
}

/// A scope whose first pel is not its (0, 0): changes are counted from there, and everything else is not.
TEST_F(Repaint, ChangesOfACutTabletLieWhereTheyShow)
{
  HookTablet over(log, "over", root, gxUIRect(0, 0, 20, 20));
  over.visible(true);
  kid.moveAbs({-7, -3});
  kid.onRedraw = [&] { point(kid); };
  kid.update(gxUIRect(5, 5, 10, 10), image, true);
  kid.onRedraw = nullptr;
  log.take();
  kid.update(image);
  EXPECT_NE(log.text().find("i.1.2: clip i.1.2!6 (7, 3) 10 x 10"), std::string::npos);
  kid.front();
  log.take();
  kid.update(image);
  EXPECT_NE(log.text().find("i.1.2: clip i.1.2!10 (2, -2) 20 x 20"), std::string::npos);
}

TEST_F(Repaint, ARepairCountsAsAChangeOfTheSurface)
{
  kid.clearAnyChanged(image);
  kid.update(gxUIRect(20, 25, 1, 1), image, false);
  EXPECT_TRUE(kid.anyChanged(image)) << "even if nothing was painted";
  root.clearAnyChanged(image);
  EXPECT_FALSE(below.anyChanged(image)) << "one flag for the tree";
}

TEST_F(Repaint, WhatMayNotDrawIsNotRepaired)
{
  root.setScope(overlay, &o, false);
  kid.drawOnOverlay() = false;
  log.take();
  kid.update(gxUIRect(20, 25, 10, 10), overlay, false);
  EXPECT_EQ(log.text().find("redraw"), std::string::npos) << "neither it nor its kids";
  kid.update(gxUIRect(20, 25, 10, 10), image, false);
  EXPECT_NE(log.text().find("below: redraw image"), std::string::npos);
  i.null(true);
  root.update(gxUIRect(0, 0, 10, 10), image, true);
  EXPECT_NE(log.text().find("root: redraw image"), std::string::npos) << "the part says for itself what it is";
  root.setScope(nullptr, nullptr, false);
}

TEST_F(Repaint, HidingGivesTheAreaBackToTheFirstOpaqueAncestor)
{
  point(below);
  log.take();
  below.visible(false);
  EXPECT_EQ(log.text(), R"(
i.1.2: lock 1
i: lock 1
i: clip i!4 (15, 15) 10 x 10
i!4: surface in i (15, 15) 10 x 10
i!4: lock 1
root: redraw image
i!4: unlock
i!4: delete
i: unlock
i.1.2: unlock)")
      << "its parent is transparent; the kids of the ancestor are found by a later update";
  EXPECT_TRUE(below.modified(image)) << "the flag is compared at the place in the parent, and stays";
  below.visible(true);
  kid.opaque(image, true);
  log.take();
  below.erase(gxUIRect(2, 3, 4, 5), image);
  EXPECT_NE(log.text().find("i.1: clip i.1!5 (7, 8) 4 x 5"), std::string::npos);
  below.moveAbs({0, 0});
  point(below);
  below.erase(overlay);
  EXPECT_TRUE(below.modified(image)) << "another layer";
  below.erase(both);
  EXPECT_FALSE(below.modified(image)) << "at (0, 0) in its parent";
  root.opaque(image, false);
  kid.opaque(image, false);
  point(below);
  log.take();
  below.erase(image);
  EXPECT_EQ(log.text(), "\ni.1.2: lock 1\ni.1.2: unlock") << "nobody opaque: nothing is painted";
}

TEST_F(Repaint, EraseOfARectangleKeepsTheRecording)
{
  kid.recordOn() = true;
  point(kid);
  kid.erase(gxUIRect(0, 0, 40, 40), both);
  EXPECT_FALSE(kid.sketch().isNull());
  EXPECT_TRUE(kid.visible());
  kid.erase(image);
  EXPECT_TRUE(kid.sketch().isNull()) << "all of it, whatever the layer";
}

TEST_F(Repaint, GrowingInPlacePaintsTheTabletAlone)
{
  below.scopeRect(gxUIRect(5, 5, 10, 12));
  EXPECT_EQ(log.text(), R"(
i.1.2: surface in i.1 (5, 5) 10 x 12
below: resize
i.1.2: lock 1
below: redraw both
i.1.2: unlock)");
  kid.scopeRect(gxUIRect(0, 5, 50, 50));
  EXPECT_EQ(log.text(), R"(
i.1: surface in i (0, 5) 50 x 50
i.1.2: surface in i.1 (5, 5) 10 x 12
i.1.3: surface in i.1 (0, 0) 10 x 10
kid: move
kid: resize
i.1: lock 1
kid: redraw both
i.1: unlock)");
  EXPECT_EQ(below.scopeOrg(), gxPair<long>(5, 10));
  kid.scopeRect(kid.scopeRect());
  EXPECT_EQ(log.text(), "");
}

TEST_F(Repaint, MovingErasesAndPaintsTheSubtree)
{
  point(kid);
  kid.recordOn() = true;
  point(kid);
  log.take();
  kid.moveRel({1, 0});
  EXPECT_EQ(log.text(), R"(
i.1: lock 1
i: lock 1
i: clip i!4 (10, 10) 40 x 40
i!4: surface in i (10, 10) 40 x 40
i!4: lock 1
root: redraw image
i!4: unlock
i!4: delete
i: unlock
i.1: unlock
i.1: surface in i (11, 10) 40 x 40
i.1.2: surface in i.1 (5, 5) 10 x 10
i.1.3: surface in i.1 (0, 0) 10 x 10
kid: move
i.1: lock 1
i.1: lock 1
kid: redraw both
i.1: unlock
i.1.2: lock 1
i.1.2: lock 1
below: redraw both
i.1.2: unlock
i.1.2: unlock
i.1.3: lock 1
i.1.3: unlock
i.1: unlock)");
  EXPECT_TRUE(kid.sketch().isNull());
  hidden.moveAbs({3, 3});
  EXPECT_EQ(log.text(), "\ni.1.3: surface in i.1 (3, 3) 10 x 10\nhidden: move");
  kid.size({10, 10});
  EXPECT_EQ(kid.scopeRect(), gxUIRect(11, 10, 10, 10));
  EXPECT_NE(log.text().find("kid: resize"), std::string::npos);
}

TEST_F(Repaint, AScopeThatIsCutTellsItsTablet)
{
  kid.moveAbs({10, -3});
  EXPECT_EQ(log.text(), R"(
i.1: lock 1
i.1: unlock
i.1: surface in i (10, -3) 40 x 40
i.1.2: surface in i.1 (5, 2) 10 x 10
i.1.3: surface in i.1 (0, -3) 10 x 10
hidden: clipped
kid: move
i.1: lock 1
i.1: lock 1
kid: redraw both
i.1: unlock
i.1.2: lock 1
i.1.2: lock 1
below: redraw both
i.1.2: unlock
i.1.2: unlock
i.1.3: lock 1
i.1.3: unlock
i.1: unlock)")
      << "the one that moves knows, and the other one lies as before";
  EXPECT_EQ(kid.currentScope(image), gxUIRect(0, 3, 40, 40));
  EXPECT_EQ(hidden.currentScope(image), gxUIRect(0, 3, 10, 10)) << "starts before the first pel of its parent";
  EXPECT_EQ(below.currentScope(image), gxUIRect(0, 0, 10, 10));
}

TEST_F(Repaint, FrontPaintsOnlyWhatItNowCovers)
{
  HookTablet over(log, "over", root, gxUIRect(30, 30, 30, 30));     // i.4
  HookTablet apart(log, "apart", root, gxUIRect(80, 0, 10, 10));    // i.5
  HookTablet unseen(log, "unseen", root, gxUIRect(0, 0, 100, 80));  // i.6
  over.visible(true);
  apart.visible(true);
  log.take();
  kid.front();
  EXPECT_EQ(log.text(), R"(
i.1: lock 1
i.1: clip i.1!7 (20, 20) 20 x 20
i.1!7: surface in i.1 (20, 20) 20 x 20
i.1!7: lock 1
kid: redraw image
i.1!7: unlock
i.1!7: delete
i.1: unlock)");
  EXPECT_EQ(root.lastKid(), &kid);
  EXPECT_EQ(kid.prevSib(), &unseen);
  kid.front();
  EXPECT_EQ(log.text(), "");
  kid.update(image);
  EXPECT_NE(log.text().find("below: redraw image"), std::string::npos) << "its own kids were covered by the repair";
}

TEST_F(Repaint, FrontStopsWhenAllOfItIsPainted)
{
  HookTablet whole(log, "whole", root, gxUIRect(0, 0, 100, 80));  // i.4
  HookTablet over(log, "over", root, gxUIRect(30, 30, 30, 30));   // i.5
  whole.visible(true);
  over.visible(true);
  log.take();
  kid.front();
  std::string const text = log.text();
  EXPECT_NE(text.find("i.1: clip i.1!6 (0, 0) 40 x 40"), std::string::npos);
  EXPECT_EQ(text.find("i.1!7"), std::string::npos) << "no second repair";
}

TEST_F(Repaint, BackRepaintsNothingButTheNextUpdateFindsWhoIsAbove)
{
  HookTablet over(log, "over", root, gxUIRect(30, 30, 30, 30));  // i.4
  over.visible(true);
  log.take();
  over.back();
  EXPECT_EQ(log.text(), "");
  EXPECT_EQ(root.firstKid(), &over);
  over.update(image);
  EXPECT_EQ(log.text(), R"(
i.4: lock 1
i.1: lock 1
i.1: clip i.1!5 (20, 20) 30 x 30
i.1!5: surface in i.1 (20, 20) 30 x 30
i.1!5: lock 1
kid: redraw image
i.1!5: unlock
i.1.2: lock 1
i.1.2: clip i.1.2!6 (15, 15) 30 x 30
i.1.2!6: surface in i.1.2 (15, 15) 30 x 30
i.1.2!6: lock 1
below: redraw image
i.1.2!6: unlock
i.1.2!6: delete
i.1.2: unlock
i.1.3: lock 1
i.1.3: clip i.1.3!7 (20, 20) 30 x 30
i.1.3!7: surface in i.1.3 (20, 20) 30 x 30
i.1.3!7: delete
i.1.3: unlock
i.1!5: delete
i.1: unlock
i.4: unlock)");
  over.update(image);
  EXPECT_EQ(log.text(), "\ni.4: lock 1\ni.4: unlock") << "the change was seen to";
  over.back();
  over.update(image);
  EXPECT_EQ(log.text(), "\ni.4: lock 1\ni.4: unlock") << "the rearmost already: nothing changed";
}

TEST_F(Repaint, WhoPaintedLaterThanTheDrawingIsLeftAlone)
{
  point(root);
  kid.redraw(image);
  log.take();
  root.update(image);
  EXPECT_EQ(log.text().find("kid: redraw"), std::string::npos);
  point(root);
  root.update(image);
  EXPECT_NE(log.text().find("kid: redraw"), std::string::npos) << "drew again since";
}

TEST_F(Repaint, AHiddenTabletUpdatesNothing)
{
  kid.visible(false);
  point(below);
  log.take();
  kid.update(image);
  EXPECT_EQ(log.text(), "");
  root.update(image);
  EXPECT_EQ(log.text(), "\ni: lock 1\ni: unlock");
  gxUITablet().update(image);
}

TEST_F(Repaint, APaintHookThatThrowsLeavesNoTemporaryScope)
{
  kid.onRedraw = [] { throw std::runtime_error("painted nothing"); };
  EXPECT_THROW(root.update(gxUIRect(0, 0, 100, 80), image, false), std::runtime_error);
  for (std::string const &name : log.living)
    EXPECT_EQ(name.find('!'), std::string::npos) << name;
  for (HookTablet const *const t : {&root, &kid}) {
    EXPECT_FALSE(t->updating());
    EXPECT_EQ(t->activeScope(image), t->currentScope(image));
  }
  // What the hook was told about stays: it must not throw.
  EXPECT_EQ(kid.updateLayers(), image);
  EXPECT_EQ(kid.recordOn().depth(), 2);
  EXPECT_EQ(root.updateLayers(), both);
  kid.onRedraw = nullptr;
  kid.updateLayers(both);
  kid.recordOn().pop();
  log.take();
  root.fullDraw(both);
  EXPECT_NE(log.text().find("below: redraw both"), std::string::npos);
}

TEST_F(Repaint, AFullStackOfFlagsIsToldBeforeThePaintHook)
{
  for (int n = 0; n < 31; ++n)
    kid.recordOn().push(true);
  EXPECT_THROW(kid.redraw(image), gxUIError::FlagStackOverflow);
  EXPECT_EQ(log.text(), "");
  EXPECT_EQ(kid.updateLayers(), both);
}

TEST_F(Repaint, HooksMayTakeTheScopesAway)
{
  for (bool const keepChange : {false, true}) {
    kid.onRedraw = [&] { root.setScope(nullptr, nullptr, false); };
    kid.update(gxUIRect(10, 10, 40, 40), image, keepChange);
    EXPECT_EQ(kid.activeScope(image), gxUIRect::null);
    EXPECT_FALSE(kid.updating());
    kid.onRedraw = nullptr;
    root.setScope(&i, nullptr, false);
    EXPECT_EQ(below.currentScope(image).sz(), below.scopeRect().sz());
  }
  HookTablet over(log, "over", root, gxUIRect(10, 10, 40, 40));
  over.visible(true);
  kid.onRedraw = [&] { root.setScope(nullptr, nullptr, false); };
  kid.front();
  root.setScope(&i, nullptr, false);
  kid.onRedraw = nullptr;
  below.onRedraw = [&] { root.setScope(nullptr, nullptr, false); };
  point(kid);
  kid.update(image);
  EXPECT_EQ(kid.activeScope(image), gxUIRect::null);
}

TEST_F(Repaint, ARepairWithinARepairKeepsTheOuterOne)
{
  root.modified(image, true);
  point(below);
  kid.opaque(image, true);
  int depth = 0;
  kid.onRedraw = [&] {
    if (++depth == 1) {
      below.moveRel({1, 1});  // erases: asks its opaque parent to paint
      EXPECT_TRUE(kid.updating());
      log.take();
      point(kid);
      EXPECT_EQ(log.text(), "\ni.1!4: point (1, 1)") << "still through the clip of the outer repair";
    }
  };
  kid.update(gxUIRect(10, 10, 40, 40), image, true);
  EXPECT_EQ(depth, 2);
  EXPECT_FALSE(kid.updating());
}

TEST_F(Repaint, ParentMapsAreToldToKidsAndANewMapPaintsTheTabletAlone)
{
  kid.baseMap(gxXform<2>(gxMatrix<2>(2, 0, 0, 2), {}));
  EXPECT_EQ(log.text(), R"(
below: parentMap
hidden: parentMap
i.1: lock 1
kid: redraw both
i.1: unlock)");
  hidden.scaleMode(gxUITablet::expandMode);
  kid.drawOn() = false;
  kid.scale({2, 2});
  EXPECT_EQ(log.text(), "\nbelow: parentMap\nhidden: parentMap") << "neither hidden nor switched off tablets paint";
  kid.drawOn() = true;
  kid.dragDel({3, 4});
  EXPECT_EQ(log.text(), "") << "a pan is silent";
}
}  // namespace
