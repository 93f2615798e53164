#include "tests/support/hooktablet.h"

#include <algorithm>
#include <memory>
#include <random>

// Who is painted, and in which order, after any history of drawings, repaints and restackings: the tablets against a
// model that keeps one clock, and for each tablet when it was drawn on, when it was repainted, and what changed.

namespace
{
constexpr auto image = gxUITablet::image;

struct Model {
  std::string name;
  gxPair<long> org;  ///< absolute
  gxUIRect rect;     ///< in the parent; never before its first pel
  bool paintsPoint = false;
  bool visible = false;
  bool updating = false;
  unsigned drawn = 0, redrawn = 0;
  gxUIRect changed;          ///< on its scope
  gxUIRect *clip = nullptr;  ///< what a repair changed so far
  gxUIRect clipWhole;
  Model *parent = nullptr;
  std::vector<Model *> kids;
};

class Reference
{
 public:
  std::vector<std::string> painted;

  void draw(Model &t)
  {
    if (!t.visible)
      return;
    if (!t.updating && clock_ != t.drawn)
      t.drawn = ++clock_;
    // The surface of the test reports all of itself for a point.
    if (t.clip)
      *t.clip = t.clipWhole;
    else
      t.changed = whole(t);
  }
  void redraw(Model &t)
  {
    if (!t.visible)
      return;
    painted.push_back(t.name);
    if (t.paintsPoint)
      draw(t);
    if (!t.updating && clock_ != t.redrawn)
      t.redrawn = ++clock_;
  }
  void fullDraw(Model &t)
  {
    redraw(t);
    for (Model *const kid : t.kids)
      fullDraw(*kid);
  }
  void update(Model &t)
  {
    if (!t.visible)
      return;
    if (!t.changed.isNull()) {
      unsigned stamp = t.drawn;
      for (Model *const above : stackedAbove(t)) {
        if (stamp < above->redrawn)
          continue;
        repair(*above, t.changed + t.org, false);
        stamp = clock_;
      }
      t.changed = {};
    }
    for (Model *const kid : t.kids)
      update(*kid);
  }
  void front(Model &t)
  {
    auto &siblings = t.parent->kids;
    auto const at = std::find(siblings.begin(), siblings.end(), &t);
    std::vector<Model *> const covered(at + 1, siblings.end());
    siblings.erase(at);
    siblings.push_back(&t);
    for (Model *const s : covered) {
      gxUIRect const shared = abs(*s) & abs(t);
      if (!s->visible || shared.isNull())
        continue;
      repair(t, shared, true);
      change(t, shared - t.org);
      t.drawn = ++clock_;
      if (shared == abs(t))
        return;
    }
  }
  void back(Model &t)
  {
    auto &siblings = t.parent->kids;
    if (siblings.front() == &t)
      return;
    std::erase(siblings, &t);
    siblings.insert(siblings.begin(), &t);
    t.changed = whole(t);
    t.drawn = ++clock_;
  }
  void shape(Model &t, gxUIRect const &rect)
  {
    if (rect == t.rect)
      return;
    bool const grown = rect.within(t.rect);
    t.rect = rect;
    attach(t);
    if (grown)
      redraw(t);
    else if (t.visible)
      fullDraw(t);
  }
  void show(Model &t, bool visible)
  {
    if (visible && !std::exchange(t.visible, true))
      fullDraw(t);
    t.visible = visible;
  }

 private:
  static gxUIRect whole(Model const &t) { return {gxPair<long>(), t.rect.sz()}; }
  static gxUIRect abs(Model const &t) { return {t.org, t.rect.sz()}; }
  static void change(Model &t, gxUIRect const &r) { t.changed = t.changed | (r & whole(t)); }

  static std::vector<Model *> stackedAbove(Model &t)
  {
    std::vector<Model *> above = t.kids;
    for (Model *m = &t; m->parent; m = m->parent) {
      auto const &siblings = m->parent->kids;
      above.insert(above.end(), std::find(siblings.begin(), siblings.end(), m) + 1, siblings.end());
    }
    return above;
  }
  void repair(Model &t, gxUIRect const &absolute, bool keepChange)
  {
    gxUIRect const local = absolute - t.org;
    gxUIRect touched;
    t.clip = &touched;
    t.clipWhole = gxUIRect(gxPair<long>(std::max(0L, local.left()), std::max(0L, local.top())), local.sz());
    t.updating = true;
    if (t.visible && keepChange) {
      redraw(t);
      change(t, touched);
      t.drawn = ++clock_;
    } else if (t.visible) {
      redraw(t);
      if (local.within(t.changed))
        t.changed = {};
      for (Model *const kid : t.kids)
        repair(*kid, absolute, false);
    }
    t.updating = false;
    t.clip = nullptr;
  }
  /// A scope that is moved has nothing pending, nor have those below.
  static void attach(Model &t)
  {
    t.org = t.parent->org + t.rect.ul();
    t.changed = {};
    for (Model *const kid : t.kids)
      attach(*kid);
  }

  unsigned clock_ = 1;
};

/// A tree of tablets, none of them opaque, and its model.
class Pair
{
 public:
  explicit Pair(unsigned seed) : random_(seed)
  {
    add(std::make_unique<HookTablet>(log_, "0", &scope_, nullptr), nullptr, gxUIRect(0, 0, 100, 80));
    for (std::size_t n = 1; n < 7; ++n) {
      std::size_t const parent = below(n);
      gxUIRect const r = rect();
      add(std::make_unique<HookTablet>(log_, std::to_string(n), *tablets_[parent], r), models_[parent].get(), r);
    }
    for (std::size_t n = 0; n < models_.size(); ++n)
      show(n, true);
  }
  ~Pair()
  {
    while (!tablets_.empty())
      tablets_.pop_back();
  }

  /// Takes a step on both sides; the tablets painted by each.
  std::string step()
  {
    std::size_t const n = below(models_.size());
    HookTablet &t = *tablets_[n];
    Model &m = *models_[n];
    switch (below(m.parent ? 9 : 5)) {
      case 0:
      case 1:
        t.draw(gxPoint(0, 0), gxGraphicProps(), image);
        reference_.draw(m);
        return "draw " + m.name;
      case 2:
        t.update(image);
        reference_.update(m);
        return "update " + m.name;
      case 3:
        t.redraw(image);
        reference_.redraw(m);
        return "redraw " + m.name;
      case 4:
        t.fullDraw(image);
        reference_.fullDraw(m);
        return "fullDraw " + m.name;
      case 5:
        t.front();
        reference_.front(m);
        return "front " + m.name;
      case 6:
        t.back();
        reference_.back(m);
        return "back " + m.name;
      case 7: {
        gxUIRect const r = below(2) ? rect() : gxUIRect(m.rect.ul(), m.rect.sz() + gxPair<long>(below(3), below(3)));
        t.scopeRect(r);
        reference_.shape(m, r);
        return "scopeRect " + m.name;
      }
      default:
        show(n, !m.visible);
        return "visible " + m.name;
    }
  }

  std::vector<std::string> painted()
  {
    std::vector<std::string> names;
    for (std::string const &line : log_.take())
      if (line.find(": redraw") != std::string::npos)
        names.push_back(line.substr(0, line.find(':')));
    return names;
  }
  std::vector<std::string> expected() { return std::exchange(reference_.painted, {}); }

 private:
  std::size_t below(std::size_t n) { return random_() % n; }
  gxUIRect rect() { return gxUIRect(below(40), below(40), below(60) + 1, below(60) + 1); }

  void add(std::unique_ptr<HookTablet> tablet, Model *parent, gxUIRect const &rect)
  {
    auto model = std::make_unique<Model>();
    model->name = tablet->name();
    model->rect = rect;
    model->parent = parent;
    model->paintsPoint = below(2) == 0;
    if (parent) {
      parent->kids.push_back(model.get());
      model->org = parent->org + rect.ul();
    }
    if (model->paintsPoint)
      tablet->onRedraw = [t = tablet.get()] { t->draw(gxPoint(0, 0), gxGraphicProps(), image); };
    tablets_.push_back(std::move(tablet));
    models_.push_back(std::move(model));
  }
  void show(std::size_t n, bool visible)
  {
    tablets_[n]->visible(visible);
    reference_.show(*models_[n], visible);
  }

  std::mt19937 random_;
  ScopeLog log_;
  LogScope scope_{log_, "i", {100, 80}};
  std::vector<std::unique_ptr<HookTablet>> tablets_;
  std::vector<std::unique_ptr<Model>> models_;
  Reference reference_;
};

TEST(Stamps, DecideWhoIsPaintedAfterAnyHistory)
{
  long paints = 0;
  for (unsigned seed = 1; seed <= 200; ++seed) {
    Pair pair(seed);
    std::string history = "seed " + std::to_string(seed);
    for (int step = 0; step < 150; ++step) {
      history += ", " + pair.step();
      std::vector<std::string> const expected = pair.expected();
      paints += static_cast<long>(expected.size());
      ASSERT_EQ(pair.painted(), expected) << history;
    }
  }
  EXPECT_GT(paints, 10000) << "the histories have become too quiet to tell anything";
}
}  // namespace
