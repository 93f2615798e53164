#include "dispc/uierror.h"
#include "tests/support/hooktablet.h"

#include <algorithm>
#include <array>
#include <memory>
#include <numeric>

// The tree of tablets and the scopes that hang in step with it, told by everything that the scopes are asked.

namespace
{
constexpr auto image = gxUITablet::image;
constexpr auto overlay = gxUITablet::overlay;
using Layers = gxUITablet::Layers;

/// A root on two scopes of 100 x 80 pels that it does not own.
struct Tree : testing::Test {
  CheckedLog log;
  LogScope i{log, "i", {100, 80}};
  LogScope o{log, "o", {100, 80}};
  HookTablet root{log, "root", &i, &o};
};

/// A root on an image scope alone, so that the names of the parts are short: i.1 is the scope of `a`.
struct ImageTree : testing::Test {
  CheckedLog log;
  LogScope i{log, "i", {100, 80}};
  HookTablet root{log, "root", &i, nullptr};
  using Kids = std::vector<gxUITablet *>;
  HookTablet a{log, "a", root, gxUIRect(10, 10, 40, 40)};  // i.1
  HookTablet k1{log, "k1", a, gxUIRect(1, 1, 5, 5)};       // i.1.2
  HookTablet k2{log, "k2", a, gxUIRect(2, 2, 5, 5)};       // i.1.3
  HookTablet k3{log, "k3", a, gxUIRect(3, 3, 5, 5)};       // i.1.4
  HookTablet b{log, "b", root, gxUIRect(50, 0, 50, 50)};   // i.5

  ImageTree() { log.take(); }
  static Kids kids(gxUITablet const &t)
  {
    Kids all, back;
    for (gxUITablet *kid = t.firstKid(); kid; kid = kid->nextSib())
      all.push_back(kid);
    for (gxUITablet *kid = t.lastKid(); kid; kid = kid->prevSib())
      back.insert(back.begin(), kid);
    EXPECT_EQ(all, back);
    EXPECT_EQ(t.numKids(), static_cast<long>(all.size()));
    return all;
  }
};

TEST(TabletLife, EveryFormStartsHiddenWithTheSameRest)
{
  CheckedLog log;
  LogScope wide(log, "wide", {100, 20});
  LogScope high(log, "high", {30, 80});
  gxUITablet recorder;
  gxUITablet root(&wide, &high);
  gxUITablet empty(nullptr, nullptr);
  gxUITablet kid(root, gxUIRect(3, 4, 5, 6));
  struct Row {
    gxUITablet const &tablet;
    bool draws, records;
    gxUIRect rect;
  };
  for (Row const &row : {Row{recorder, false, true, gxUIRect::null}, Row{root, true, false, gxUIRect(0, 0, 100, 80)},
                         Row{empty, true, false, gxUIRect::null}, Row{kid, true, false, gxUIRect(3, 4, 5, 6)}}) {
    gxUITablet const &t = row.tablet;
    EXPECT_FALSE(t.visible() || t.updating());
    EXPECT_TRUE(t.drawOn() == row.draws && t.drawOnOverlay() == row.draws);
    EXPECT_EQ(t.recordOn(), row.records);
    EXPECT_EQ(t.scopeRect(), row.rect);
    EXPECT_TRUE(t.baseMap() == gxXform<2>() && t.scaledMap() == gxXform<2>());
    EXPECT_TRUE(t.scaleMode() == gxUITablet::noScale && t.scaleExact() == gxPair<double>(1.0, 1.0));
    EXPECT_EQ(t.interpolation(), gxUITablet::noInterpolation);
    EXPECT_TRUE(t.sketch().isNull());
    for (gxFlagStack const *stack : {&t.drawOn(), &t.recordOn(), &t.drawOnOverlay()})
      EXPECT_EQ(stack->depth(), 1);
  }
  EXPECT_EQ(kid.scopeOrg(), gxPair<long>(3, 4));
  EXPECT_EQ(root.firstKid(), &kid);
  EXPECT_EQ(kid.parent(), &root);
}

TEST_F(Tree, AKidTakesPartsOfBothScopesAndGivesThemBack)
{
  {
    HookTablet kid(log, "kid", root, gxUIRect(10, -20, 30, 40));
    // The surface is attached when the part is made, and again when the tablet takes its rectangle.
    EXPECT_EQ(log.story(),
              "i.1 (10, -20) 30 x 40 o.2 (10, -20) 30 x 40 i.1 in i (10, -20) 30 x 40 o.2 in o (10, -20) 30 x 40");
    EXPECT_EQ(kid.currentScope(image), gxUIRect(0, 20, 30, 40))
        << "begins above its parent: its first pel is further in";
    EXPECT_EQ(kid.activeScope(overlay), kid.currentScope(overlay));
    EXPECT_EQ(kid.absRect(), gxUIRect(10, -20, 30, 40));
    HookTablet grandkid(log, "grandkid", kid, gxUIRect(1, 1, 2, 2));
    EXPECT_EQ(grandkid.scopeOrg(), gxPair<long>(11, -19));
    log.take();
  }
  EXPECT_EQ(log.story(), "~i.1.3 ~o.2.4 ~i.1 ~o.2");
  EXPECT_EQ(root.numKids(), 0);
}

TEST_F(ImageTree, MovedUnderAnotherParentItsFirstKidBecomesItsLast)
{
  a.setParent(b, gxUIRect(0, 0, 40, 40));
  EXPECT_EQ(log.story(),
            "~i.1 i.5.6 (0, 0) 40 x 40 a: from root ~i.1.2 i.5.6.7 (1, 1) 5 x 5 k1: from a i.5.6.7 in i.5.6 (1, 1) 5 x "
            "5 i.5.6 in i.5 (0, 0) 40 x 40 i.1.3 in i.5.6 (2, 2) 5 x 5 i.1.4 in i.5.6 (3, 3) 5 x 5 i.5.6.7 in i.5.6 "
            "(1, 1) 5 x 5 a: move");
  EXPECT_EQ(kids(root), (Kids{&b}));
  EXPECT_EQ(kids(b), (Kids{&a}));
  EXPECT_EQ(kids(a), (Kids{&k2, &k3, &k1}));
  EXPECT_EQ(k2.scopeOrg(), gxPair<long>(52, 2));
}

TEST_F(ImageTree, TheRectangleThatItHasStillBringsTheSubtreeInLine)
{
  a.setParent(b, a.scopeRect());
  EXPECT_EQ(k3.scopeOrg(), gxPair<long>(63, 13));
  std::string const story = log.story();
  EXPECT_NE(story.find("i.1.4 in i.5.6 (3, 3) 5 x 5"), std::string::npos);
  EXPECT_EQ(story.find("a: move"), std::string::npos) << "the rectangle is the same";
  // The scopes of the other kids hang in the new tree: its root hears of their changes.
  i.clearAnyChanged();
  EXPECT_FALSE(k3.anyChanged(image));
  i.change(gxUIRect(0, 0, 1, 1), false);
  EXPECT_TRUE(k3.anyChanged(image));
}

TEST_F(ImageTree, AVisibleTabletIsErasedAndPaintedAtItsNewPlace)
{
  root.visible(true);
  root.opaque(image, true);
  a.visible(true);
  k2.visible(true);
  a.recordOn() = true;
  a.draw(gxPoint(1, 1), gxGraphicProps(), image);
  ASSERT_FALSE(a.sketch().isNull());
  log.take();
  a.setParent(root, a.scopeRect());
  EXPECT_TRUE(a.sketch().isNull());
  EXPECT_EQ(log.story(),
            "i.1{ i{ i!6 (10, 10) 40 x 40 i!6{ root: redraw image } ~i!6 } } ~i.1 i.7 (10, 10) 40 x 40 a: from root "
            "~i.1.2 i.7.8 (1, 1) 5 x 5 k1: from a i.7.8 in i.7 (1, 1) 5 x 5 i.7 in i (10, 10) 40 x 40 i.1.3 in i.7 (2, "
            "2) 5 x 5 i.1.4 in i.7 (3, 3) 5 x 5 i.7.8 in i.7 (1, 1) 5 x 5 i.7{ i.7{ a: redraw both } i.1.3{ i.1.3{ k2: "
            "redraw both } } i.1.4{ } i.7.8{ } }");
  EXPECT_EQ(kids(root), (Kids{&b, &a})) << "in front of its new siblings";
  EXPECT_TRUE(a.visible());
  EXPECT_FALSE(k1.visible());
}

TEST_F(ImageTree, CyclesAreRefusedAndChangeNothing)
{
  EXPECT_THROW(a.setParent(a, gxUIRect(0, 0, 1, 1)), gxUIError::BadParams);
  EXPECT_THROW(a.setParent(k2, gxUIRect(0, 0, 1, 1)), gxUIError::BadParams);
  EXPECT_THROW(root.setParent(k2, gxUIRect(0, 0, 1, 1)), gxUIError::BadParams);
  EXPECT_EQ(log.story(), "");
  EXPECT_EQ(kids(a), (Kids{&k1, &k2, &k3}));
  EXPECT_TRUE(a.visible(true)) << "no reason to hide was left behind";
}

TEST_F(ImageTree, AParentWithoutScopesTakesThoseOfTheTabletAway)
{
  gxUITablet bare;
  a.setParent(bare, a.scopeRect());
  EXPECT_EQ(a.currentScope(image), gxUIRect::null);
  EXPECT_EQ(k1.currentScope(image), gxUIRect::null);
  a.setParent(root, a.scopeRect());
  for (gxUITablet const *t : {&a, &k1, &k2, &k3})
    EXPECT_EQ(t->currentScope(image).sz(), t->scopeRect().sz()) << "hangs in the tree of the root again";
}

TEST_F(Tree, NewScopesReplaceTheOldOnesInTheWholeTree)
{
  HookTablet kid(log, "kid", root, gxUIRect(10, 20, 30, 40));
  LogScope j(log, "j", {100, 80});
  log.take();
  root.setScope(&j, nullptr, false);
  EXPECT_EQ(log.story(), "~o.2 i.1 in j (10, 20) 30 x 40");
  EXPECT_EQ(kid.currentScope(overlay), gxUIRect::null);
  root.setScope(overlay, &o, false);
  EXPECT_EQ(log.story(), "i.1 in j (10, 20) 30 x 40 o.3 (10, 20) 30 x 40 kid: clipped");
  root.setScope(nullptr, nullptr, true);
  EXPECT_EQ(log.story(), "~i.1 ~o.3");
  EXPECT_EQ(root.scopeRect(), gxUIRect(0, 0, 100, 80)) << "without scopes, the rectangle stays";
  root.setScope(&j, &j, false);
  EXPECT_EQ(kid.currentScope(overlay), gxUIRect(0, 0, 30, 40)) << "two parts of one scope";
  root.setScope(nullptr, nullptr, false);
}

TEST_F(Tree, OwnedScopesGoAfterWhatHangsOnThem)
{
  HookTablet kid(log, "kid", root, gxUIRect(10, 20, 30, 40));
  HookTablet grandkid(log, "grandkid", kid, gxUIRect(1, 2, 3, 4));
  root.setScope(new LogScope(log, "j", {100, 80}), new LogScope(log, "p", {100, 80}), true);
  log.take();
  root.setScope(image, new LogScope(log, "q", {100, 80}), true);
  EXPECT_EQ(log.story(),
            "~i.1.3 ~i.1 ~j q.5 (10, 20) 30 x 40 o.2 in p (10, 20) 30 x 40 q.5.6 (1, 2) 3 x 4 o.2.4 in o.2 (1, 2) 3 x "
            "4 grandkid: clipped kid: clipped")
      << "that a layer lost its scope and got another one is told after the kids are done";
  root.setScope(nullptr, nullptr, false);
  EXPECT_EQ(log.story(), "~q.5.6 ~q.5 ~q ~o.2.4 ~o.2 ~p");
}

TEST_F(Tree, AScopeIsNeverDeletedWhileItIsInstalled)
{
  auto *const j = new LogScope(log, "j", {100, 80});
  auto *const p = new LogScope(log, "p", {100, 80});
  auto const alive = [&](char const *name) { return log.living.count(name) == 1; };
  root.setScope(j, p, true);
  root.setScope(p, j, true);  // changed about
  EXPECT_TRUE(alive("j") && alive("p"));
  root.setScope(image, j, true);  // now one scope on both layers
  EXPECT_TRUE(alive("j"));
  EXPECT_FALSE(alive("p")) << "owned and replaced";
  root.setScope(image, nullptr, true);
  EXPECT_TRUE(alive("j")) << "the overlay still has it";
  root.setScope(overlay, j, false);  // taken out of the root's hands
  root.setScope(nullptr, nullptr, false);
  EXPECT_TRUE(alive("j"));
  root.setScope(j, j, true);  // deleted once, at the end
}

TEST_F(Tree, TheRootTakesTheSizeOfItsScopes)
{
  HookTablet kid(log, "kid", root, gxUIRect(10, 20, 30, 40));
  root.visible(true);
  kid.visible(true);
  LogScope big(log, "big", {200, 80});
  LogScope small(log, "small", {50, 50});
  log.take();
  root.setScope(image, &big, false);
  EXPECT_EQ(root.scopeRect(), gxUIRect(0, 0, 200, 80));
  EXPECT_EQ(log.story(),
            "i.1 in big (10, 20) 30 x 40 o.2 in o (10, 20) 30 x 40 root: resize big{ o{ root: redraw both }big }")
      << "it grew: it is painted alone";
  root.setScope(&small, nullptr, false);
  EXPECT_EQ(root.scopeRect(), gxUIRect(0, 0, 50, 50));
  EXPECT_EQ(log.story(),
            "~o.2 small{ } i.1 in small (10, 20) 30 x 40 root: resize small{ small{ root: redraw both } i.1{ i.1{ kid: "
            "redraw both } } }")
      << "it shrank: hidden and shown again, kids and all";
  root.setScope(nullptr, nullptr, false);
}

TEST_F(Tree, ScopesAreInstalledAtTheRootWhateverTabletIsAsked)
{
  HookTablet kid(log, "kid", root, gxUIRect(0, 0, 30, 40));
  LogScope j(log, "j", {30, 40});
  log.take();
  kid.setScope(image, &j, false);
  EXPECT_EQ(root.currentScope(image), gxUIRect(0, 0, 30, 40));
  // The greatest size is still that of the overlay, so the root keeps its rectangle.
  EXPECT_EQ(root.scopeRect(), gxUIRect(0, 0, 100, 80));
  kid.setScope(overlay, nullptr, false);
  EXPECT_EQ(root.currentScope(overlay), gxUIRect::null);
  EXPECT_NE(kid.currentScope(overlay), gxUIRect::null) << "only the kids of the tablet that is asked lose their part";
  log.take();
  kid.setScope(image, &j, false);
  EXPECT_EQ(log.story(), "i.1 in j (0, 0) 30 x 40") << "what fits the tablet that is asked is kept";
  root.setScope(nullptr, nullptr, false);
}

TEST_F(Tree, LayersThatDoNotExistThrowBeforeAnythingChanges)
{
  for (int const bad : {2, 3, -1, 2147483647}) {
    auto const layer = static_cast<Layers>(bad);
    EXPECT_THROW(root.setScope(layer, nullptr, true), gxUIError::BadLayer) << bad;
    EXPECT_THROW(root.activeScope(layer), gxUIError::BadLayer) << bad;
    EXPECT_THROW(root.currentScope(layer), gxUIError::BadLayer) << bad;
    EXPECT_FALSE(root.opaque(layer)) << bad;
    EXPECT_FALSE(root.modified(layer)) << bad;
    EXPECT_FALSE(root.anyChanged(layer)) << bad;
    root.opaque(layer, true);
    root.modified(layer, true);
    root.clearAnyChanged(layer);
  }
  EXPECT_EQ(root.currentScope(image), gxUIRect(0, 0, 100, 80));
  EXPECT_EQ(log.story(), "");
}

TEST_F(ImageTree, ModifiedIsAskedOfTheWholeSubtree)
{
  k2.modified(image, true);
  EXPECT_TRUE(root.modified(image) && a.modified(image));
  EXPECT_FALSE(b.modified(image) || k3.modified(image) || a.modified(overlay));
  k2.modified(image, false);
  EXPECT_FALSE(root.modified(image));
}

TEST(TabletEnd, InAnyOrderNothingIsLeftAndNothingIsTouched)
{
  // root (0) has the kids 1 and 2, and 1 has the kid 3; 4 stands for the scopes: the root lets go of them.
  std::array<int, 5> order;
  std::iota(order.begin(), order.end(), 0);
  do {
    for (bool const own : {false, true}) {
      CheckedLog log;
      auto i = std::make_unique<LogScope>(log, "i", gxPair<long>(50, 50));
      std::array<std::unique_ptr<HookTablet>, 4> t;
      if (own) {
        t[0] = std::make_unique<HookTablet>(log, "0");
        t[0]->setScope(i.release(), new LogScope(log, "o", {60, 40}), true);
      } else {
        t[0] = std::make_unique<HookTablet>(log, "0", i.get(), nullptr);
      }
      t[1] = std::make_unique<HookTablet>(log, "1", *t[0], gxUIRect(1, 1, 20, 20));
      t[2] = std::make_unique<HookTablet>(log, "2", *t[0], gxUIRect(5, 5, 20, 20));
      t[3] = std::make_unique<HookTablet>(log, "3", *t[1], gxUIRect(2, 2, 5, 5));
      for (auto const &tablet : t) {
        tablet->visible(true);
        tablet->opaque(image, true);
        tablet->modified(image, true);
      }
      for (int const n : order) {
        if (n == 4 && t[0]) {
          t[0]->setScope(nullptr, nullptr, false);
          continue;
        }
        if (n < 4)
          t[n].reset();
        if (n == 0) {
          for (auto const &kid : {t[1].get(), t[2].get()}) {
            if (!kid)
              continue;
            EXPECT_FALSE(kid->parent() || kid->nextSib() || kid->prevSib());
            EXPECT_EQ(kid->currentScope(image), gxUIRect::null);
            kid->recordOn() = true;
            kid->draw(gxPoint(1, 1), gxGraphicProps(), image);
            EXPECT_EQ(kid->sketch().size(), 24) << "still records";
          }
          EXPECT_EQ(log.living.size(), own ? 0u : 1u);
        }
        if (n == 1 && t[0]) {
          EXPECT_EQ(t[0]->firstKid(), t[2].get());
        }
      }
    }
  } while (std::next_permutation(order.begin(), order.end()));
}

TEST_F(ImageTree, ACopyIsASnapshotThatDisturbsNoLink)
{
  LogScope j(log, "j", {100, 80});
  gxUITablet other(&j, nullptr);
  {
    gxUITablet copy(root);
    EXPECT_EQ(copy.numKids(), 2);
    EXPECT_EQ(copy.firstKid(), &a);
    EXPECT_EQ(copy.currentScope(image), root.currentScope(image));
    other = copy;
    log.take();
    copy.fullDraw(image);
    EXPECT_EQ(log.story(), "i{ }") << "the kids belong to the original";
  }
  EXPECT_EQ(kids(root), (Kids{&a, &b}));
  EXPECT_EQ(a.parent(), &root);
  EXPECT_EQ(other.firstKid(), &a);
  EXPECT_NE(a.currentScope(image), gxUIRect::null);
}

TEST(TabletCopy, AnAssignedTabletLeavesItsOldTree)
{
  gxUITablet root, twin;
  gxUITablet first(root, gxUIRect(0, 0, 1, 1));
  auto second = std::make_unique<gxUITablet>(root, gxUIRect(0, 0, 2, 2));
  gxUITablet below(*second, gxUIRect(0, 0, 1, 1));
  second->recordOn() = true;
  second->draw(gxPoint(1, 1), gxGraphicProps(), image);
  *second = first;
  EXPECT_EQ(second->parent(), &root) << "as the source";
  EXPECT_EQ(second->scopeRect(), first.scopeRect());
  EXPECT_TRUE(second->sketch().isNull());
  EXPECT_EQ(root.lastKid(), &first) << "the parent lists the source alone";
  EXPECT_EQ(below.parent(), nullptr);
  second.reset();
  EXPECT_EQ(root.numKids(), 1);
  twin = root;
  EXPECT_EQ(twin.numKids(), 1);
}

TEST(TabletCopy, AssignedToItsRelativeItIsNotItsOwn)
{
  gxUITablet root;
  gxUITablet kid(root, gxUIRect(0, 0, 5, 5));
  gxUITablet grandkid(kid, gxUIRect(0, 0, 1, 1));
  gxUITablet target;
  root = kid;  // the parent takes the value of its kid
  EXPECT_EQ(root.parent(), nullptr);
  EXPECT_EQ(kid.parent(), nullptr);
  kid.setParent(target, gxUIRect(0, 0, 5, 5));
  kid = target;  // and a kid that of its parent
  EXPECT_EQ(kid.numKids(), 0);
  EXPECT_FALSE(kid.modified(image));
  EXPECT_EQ(target.numKids(), 0);
  target.setParent(kid, gxUIRect(0, 0, 1, 1));
  EXPECT_EQ(kid.firstKid(), &target);
}
}  // namespace
