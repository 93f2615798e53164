#include "dispc/uierror.h"
#include "tests/support/hooktablet.h"

#include <stdexcept>

// Showing, hiding, painting, and giving areas back, told by everything that hooks and scopes hear. Who is painted after
// any history is the matter of uitablet_stamps_test; here it is how.

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
    for (gxUITablet *const t : {&root, &kid, &below, &hidden})
      t->modified(image, false);
    i.noChange();
    log.take();
  }
  /// The end of a visible tablet asks its ancestors to paint, and the hooks of a test look at its own variables.
  void TearDown() override
  {
    for (HookTablet *const t : {&root, &kid, &below, &hidden})
      t->onRedraw = nullptr;
  }
  static void point(gxUITablet &t) { t.draw(gxPoint(1, 1), gxGraphicProps(), image); }
  /// What is told of @p change alone.
  std::string storyOf(std::function<void()> const &change)
  {
    log.take();
    change();
    return log.story();
  }
  bool tells(std::function<void()> const &change, char const *what)
  {
    return storyOf(change).find(what) != std::string::npos;
  }
};

TEST_F(Repaint, ReasonsToHideAreCounted)
{
  EXPECT_FALSE(hidden.visible(false));
  EXPECT_FALSE(hidden.visible(true));
  EXPECT_TRUE(hidden.visible(true)) << "born with one reason";
  EXPECT_FALSE(hidden.visible(true)) << "there is none left to take away";
  EXPECT_EQ(log.story(), "i.1.3{ i.1.3{ hidden: redraw both } }") << "painted once";
  EXPECT_TRUE(hidden.visible(false));
  EXPECT_FALSE(hidden.visible(false));
  EXPECT_EQ(log.story(), "i.1.3{ }") << "unmodified: there is nothing to give back";
}

TEST_F(Repaint, HidingAndErasingAllDropTheRecordingOfATabletThatRecords)
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
  kid.visible(true);
  kid.visible(true);
  kid.erase(gxUIRect(0, 0, 40, 40), both);
  EXPECT_FALSE(kid.sketch().isNull()) << "a rectangle keeps it";
  kid.erase(image);
  EXPECT_TRUE(kid.sketch().isNull()) << "all of it, whatever the layer";
}

TEST_F(Repaint, ATabletAloneAndWithItsKidsBackToFront)
{
  kid.recordOn() = true;
  bool recording = true;
  kid.onRedraw = [&] { recording = kid.recordOn(); };
  kid.redraw(image);
  kid.redraw(overlay);
  EXPECT_EQ(log.story(), "i.1{ kid: redraw image } kid: redraw overlay");
  EXPECT_FALSE(recording);
  EXPECT_TRUE(kid.recordOn());
  EXPECT_EQ(kid.updateLayers(), both);
  kid.fullDraw(image);
  EXPECT_EQ(log.story(), "i.1{ i.1{ kid: redraw image } i.1.2{ i.1.2{ below: redraw image } } i.1.3{ } }");
  hidden.redraw(both);
  kid.drawOn().push(false);
  kid.redraw(both);
  EXPECT_EQ(log.story(), "");
  EXPECT_FALSE(tells([&] { kid.fullDraw(both); }, "kid:"));
  EXPECT_TRUE(tells([&] { kid.interpolation(gxUITablet::InterpolationModes(2)); }, "below:")) << "another one repaints";
  EXPECT_EQ(storyOf([&] { kid.interpolation(gxUITablet::InterpolationModes(2)); }), "");
}

TEST_F(Repaint, LayersThatDoNotExistThrowBeforeAnythingIsPushed)
{
  for (int const bad : {2, 3, -1, 1000}) {
    auto const layer = static_cast<Layers>(bad);
    if (layer != both) {
      EXPECT_THROW(kid.redraw(layer), gxUIError::BadLayer) << bad;
      EXPECT_THROW(kid.fullDraw(layer), gxUIError::BadLayer) << bad;
      EXPECT_THROW(hidden.fullDraw(layer), gxUIError::BadLayer) << bad;
    }
    EXPECT_THROW(kid.update(layer), gxUIError::BadLayer) << bad;
    EXPECT_THROW(kid.update(gxUIRect(0, 0, 1, 1), layer, true), gxUIError::BadLayer) << bad;
    EXPECT_THROW(gxUITablet().update(layer), gxUIError::BadLayer) << "also without a scope";
  }
  kid.erase(static_cast<Layers>(3));
  EXPECT_EQ(kid.recordOn().depth(), 1);
  EXPECT_EQ(log.story(), "i.1{ }") << "erase knows no bad layer: there is nothing on it";
}

TEST_F(Repaint, WhichLayersAPaintHookSees)
{
  for (auto const layer : {image, overlay})
    for (auto const told : {image, overlay, both})
      EXPECT_EQ(gxUITablet::shouldUpdate(layer, told), told == layer || told == both) << layer << told;
  EXPECT_FALSE(gxUITablet::shouldUpdate(both, image));
  for (auto const told : {image, overlay, both}) {
    EXPECT_EQ(gxUITablet::shouldUpdateImage(told), told != overlay);
    EXPECT_EQ(gxUITablet::shouldUpdateOverlay(told), told != image);
  }
}

TEST_F(Repaint, ARepairedRectangleIsPassedOnOrBroughtInLineWithTheKids)
{
  kid.onRedraw = [&] { point(kid); };
  kid.update(gxUIRect(20, 25, 10, 10), image, true);
  EXPECT_EQ(log.story(), "i.1{ i.1!4 (10, 15) 10 x 10 i.1!4{ kid: redraw image i.1!4: point (1, 1) } ~i.1!4 }")
      << "this tablet alone, through a part in its own pels";
  EXPECT_FALSE(kid.updating());
  EXPECT_EQ(kid.activeScope(image), kid.currentScope(image));
  EXPECT_TRUE(tells([&] { kid.update(image); }, "below: redraw")) << "the change of the part is one of the whole";

  bool updating = false;
  kid.onRedraw = nullptr;
  below.onRedraw = [&] {
    updating = kid.updating() && below.updating();
    point(below);
  };
  EXPECT_EQ(storyOf([&] { kid.update(gxUIRect(20, 25, 10, 10), image, false); }),
            "i.1{ i.1!7 (10, 15) 10 x 10 i.1!7{ kid: redraw image } i.1.2{ i.1.2!8 (5, 10) 10 x 10 i.1.2!8{ below: "
            "redraw image i.1.2!8: point (1, 1) } ~i.1.2!8 } i.1.3{ i.1.3!9 (10, 15) 10 x 10 ~i.1.3!9 } ~i.1!7 }");
  EXPECT_TRUE(updating);
}

TEST_F(Repaint, ARepairThatCoversTheChangeEndsItAndCountsAsOneOfTheSurface)
{
  auto const pending = [&] { return tells([&] { kid.update(image); }, "below: redraw"); };
  point(kid);
  kid.update(gxUIRect(10, 10, 39, 40), image, false);
  EXPECT_TRUE(pending()) << "one column is missing";
  point(kid);
  kid.update(gxUIRect(10, 10, 40, 40), image, false);
  EXPECT_FALSE(pending());
  kid.clearAnyChanged(image);
  kid.update(gxUIRect(20, 25, 1, 1), image, false);
  EXPECT_TRUE(kid.anyChanged(image)) << "even if nothing was painted";
  root.clearAnyChanged(image);
  EXPECT_FALSE(below.anyChanged(image)) << "one flag for the tree";
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
  EXPECT_TRUE(tells([&] { kid.update(image); }, "i.1.2!6 (7, 3) 10 x 10"));
  kid.front();
  EXPECT_TRUE(tells([&] { kid.update(image); }, "i.1.2!10 (2, -2) 20 x 20"));
}

TEST_F(Repaint, WhatMayNotDrawIsNotRepaired)
{
  root.setScope(overlay, &o, false);
  kid.drawOnOverlay() = false;
  EXPECT_FALSE(tells([&] { kid.update(gxUIRect(20, 25, 10, 10), overlay, false); }, "redraw")) << "nor are its kids";
  EXPECT_TRUE(tells([&] { kid.update(gxUIRect(20, 25, 10, 10), image, false); }, "below: redraw image"));
  i.null(true);
  EXPECT_TRUE(tells([&] { root.update(gxUIRect(0, 0, 10, 10), image, true); }, "root: redraw image"))
      << "the part says for itself what it is";
  root.setScope(nullptr, nullptr, false);
}

TEST_F(Repaint, HidingGivesTheAreaBackToTheFirstOpaqueAncestor)
{
  point(below);
  EXPECT_EQ(storyOf([&] { below.visible(false); }), "i.1.2{ i{ i!4 (15, 15) 10 x 10 i!4{ root: redraw image } ~i!4 } }")
      << "its parent is transparent; the kids of the ancestor are found by a later update";
  EXPECT_TRUE(below.modified(image)) << "the flag is compared at the place in the parent, and stays";
  below.visible(true);
  kid.opaque(image, true);
  EXPECT_TRUE(tells([&] { below.erase(gxUIRect(2, 3, 4, 5), image); }, "i.1!5 (7, 8) 4 x 5"));
  below.moveAbs({0, 0});
  point(below);
  below.erase(overlay);
  EXPECT_TRUE(below.modified(image)) << "another layer";
  below.erase(both);
  EXPECT_FALSE(below.modified(image)) << "at (0, 0) in its parent";
  root.opaque(image, false);
  kid.opaque(image, false);
  point(below);
  EXPECT_EQ(storyOf([&] { below.erase(image); }), "i.1.2{ }") << "nobody opaque: nothing is painted";
}

TEST_F(Repaint, GrowingInPlacePaintsTheTabletAloneAndMovingTheSubtree)
{
  below.scopeRect(gxUIRect(5, 5, 10, 12));
  EXPECT_EQ(log.story(), "i.1.2 in i.1 (5, 5) 10 x 12 below: resize i.1.2{ below: redraw both }");
  kid.scopeRect(gxUIRect(0, 5, 50, 50));
  EXPECT_EQ(log.story(),
            "i.1 in i (0, 5) 50 x 50 i.1.2 in i.1 (5, 5) 10 x 12 i.1.3 in i.1 (0, 0) 10 x 10 kid: move kid: resize "
            "i.1{ kid: redraw both }");
  EXPECT_EQ(below.scopeOrg(), gxPair<long>(5, 10));
  EXPECT_EQ(storyOf([&] { kid.scopeRect(kid.scopeRect()); }), "");

  point(kid);
  kid.recordOn() = true;
  point(kid);
  EXPECT_EQ(storyOf([&] {
              kid.moveRel({1, 0});
            }),
            "i.1{ i{ i!4 (0, 5) 50 x 50 i!4{ root: redraw image } ~i!4 } } i.1 in i (1, 5) 50 x 50 i.1.2 in i.1 (5, 5) "
            "10 x 12 i.1.3 in i.1 (0, 0) 10 x 10 kid: move i.1{ i.1{ kid: redraw both } i.1.2{ i.1.2{ below: redraw "
            "both } } i.1.3{ } }");
  EXPECT_TRUE(kid.sketch().isNull());
  EXPECT_EQ(storyOf([&] { hidden.moveAbs({3, 3}); }), "i.1.3 in i.1 (3, 3) 10 x 10 hidden: move");
  EXPECT_TRUE(tells([&] { kid.size({10, 10}); }, "kid: resize"));
  EXPECT_EQ(kid.scopeRect(), gxUIRect(1, 5, 10, 10));
}

TEST_F(Repaint, AScopeThatIsCutTellsItsTablet)
{
  kid.moveAbs({10, -3});
  EXPECT_EQ(log.story(),
            "i.1{ } i.1 in i (10, -3) 40 x 40 i.1.2 in i.1 (5, 2) 10 x 10 i.1.3 in i.1 (0, -3) 10 x 10 hidden: clipped "
            "kid: move i.1{ i.1{ kid: redraw both } i.1.2{ i.1.2{ below: redraw both } } i.1.3{ } }")
      << "the one that moves knows, and the other one lies as before";
  EXPECT_EQ(kid.currentScope(image), gxUIRect(0, 3, 40, 40));
  EXPECT_EQ(hidden.currentScope(image), gxUIRect(0, 3, 10, 10)) << "starts before the first pel of its parent";
  EXPECT_EQ(below.currentScope(image), gxUIRect(0, 0, 10, 10));
}

TEST_F(Repaint, FrontPaintsOnlyWhatItNowCoversUntilAllOfItIsPainted)
{
  HookTablet over(log, "over", root, gxUIRect(30, 30, 30, 30));     // i.4
  HookTablet apart(log, "apart", root, gxUIRect(80, 0, 10, 10));    // i.5
  HookTablet unseen(log, "unseen", root, gxUIRect(0, 0, 100, 80));  // i.6
  over.visible(true);
  apart.visible(true);
  EXPECT_EQ(storyOf([&] { kid.front(); }), "i.1{ i.1!7 (20, 20) 20 x 20 i.1!7{ kid: redraw image } ~i.1!7 }");
  EXPECT_EQ(kid.prevSib(), &unseen);
  EXPECT_EQ(storyOf([&] { kid.front(); }), "");
  EXPECT_TRUE(tells([&] { kid.update(image); }, "below: redraw image")) << "its kids were covered by the repair";
  unseen.visible(true);
  unseen.front();
  over.front();
  std::string const text = storyOf([&] { kid.front(); });
  EXPECT_NE(text.find("(0, 0) 40 x 40"), std::string::npos);
  EXPECT_EQ(text.find("(20, 20)"), std::string::npos) << "no second repair";
}

TEST_F(Repaint, BackRepaintsNothingButTheNextUpdateFindsWhoIsAbove)
{
  HookTablet over(log, "over", root, gxUIRect(30, 30, 30, 30));  // i.4
  over.visible(true);
  EXPECT_EQ(storyOf([&] { over.back(); }), "");
  EXPECT_EQ(root.firstKid(), &over);
  EXPECT_EQ(storyOf([&] { over.update(image); }),
            "i.4{ i.1{ i.1!5 (20, 20) 30 x 30 i.1!5{ kid: redraw image } i.1.2{ i.1.2!6 (15, 15) 30 x 30 i.1.2!6{ "
            "below: redraw image } ~i.1.2!6 } i.1.3{ i.1.3!7 (20, 20) 30 x 30 ~i.1.3!7 } ~i.1!5 } }");
  EXPECT_EQ(storyOf([&] { over.update(image); }), "i.4{ }") << "the change was seen to";
}

TEST_F(Repaint, AHiddenTabletUpdatesNothing)
{
  kid.visible(false);
  point(below);
  EXPECT_EQ(storyOf([&] { kid.update(image); }), "");
  EXPECT_EQ(storyOf([&] { root.update(image); }), "i{ }");
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
  EXPECT_TRUE(tells([&] { root.fullDraw(both); }, "below: redraw both"));

  for (int n = 0; n < 31; ++n)
    kid.recordOn().push(true);
  log.take();
  EXPECT_THROW(kid.redraw(image), gxUIError::FlagStackOverflow);
  EXPECT_EQ(log.story(), "") << "a full stack of flags is told before the hook";
  EXPECT_EQ(kid.updateLayers(), both);
}

TEST_F(Repaint, HooksMayTakeTheScopesAway)
{
  auto const takeAway = [&] { root.setScope(nullptr, nullptr, false); };
  for (bool const keepChange : {false, true}) {
    kid.onRedraw = takeAway;
    kid.update(gxUIRect(10, 10, 40, 40), image, keepChange);
    EXPECT_EQ(kid.activeScope(image), gxUIRect::null);
    EXPECT_FALSE(kid.updating());
    kid.onRedraw = nullptr;
    root.setScope(&i, nullptr, false);
    EXPECT_EQ(below.currentScope(image).sz(), below.scopeRect().sz());
  }
  HookTablet over(log, "over", root, gxUIRect(10, 10, 40, 40));
  over.visible(true);
  kid.onRedraw = takeAway;
  kid.front();
  root.setScope(&i, nullptr, false);
  kid.onRedraw = nullptr;
  below.onRedraw = takeAway;
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
      EXPECT_EQ(storyOf([&] { point(kid); }), "i.1!4: point (1, 1)") << "still through the clip of the outer repair";
    }
  };
  kid.update(gxUIRect(10, 10, 40, 40), image, true);
  EXPECT_EQ(depth, 2);
  EXPECT_FALSE(kid.updating());
}

TEST_F(Repaint, ParentMapsAreToldToKidsAndANewMapPaintsTheTabletAlone)
{
  kid.baseMap(gxXform<2>(gxMatrix<2>(2, 0, 0, 2), {}));
  EXPECT_EQ(log.story(), "below: parentMap hidden: parentMap i.1{ kid: redraw both }");
  hidden.scaleMode(gxUITablet::expandMode);
  kid.drawOn() = false;
  kid.scale({2, 2});
  EXPECT_EQ(log.story(), "below: parentMap hidden: parentMap") << "neither hidden nor switched off tablets paint";
  kid.drawOn() = true;
  EXPECT_EQ(storyOf([&] { kid.dragDel({3, 4}); }), "") << "a pan is silent";
}
}  // namespace
