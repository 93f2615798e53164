#include "dispc/uierror.h"
#include "tests/support/hooktablet.h"

#include <algorithm>
#include <memory>
#include <random>

// Long random lives of tablet trees beside a plain model of who is whose kid, in which order, and who owns what.

namespace
{
constexpr gxUITablet::Layers layers[] = {gxUITablet::image, gxUITablet::overlay};

struct Node {
  std::unique_ptr<HookTablet> tablet;
  Node *parent = nullptr;
  std::vector<Node *> kids;
  int hidden = 1;
  bool owns[2] = {false, false};  ///< scopes given to it, where it is a root
};

class Life
{
 public:
  /// @p scopesAnywhere: scopes are set through any tablet of a tree, not only its root. The tree is then not brought in
  /// line as a whole, but nothing may be lost or used after its end.
  Life(unsigned seed, bool scopesAnywhere) : random_(seed), scopesAnywhere_(scopesAnywhere) {}

  ~Life()
  {
    while (!nodes_.empty())
      end(pick());
    // None of the tablets was the owner of these.
    EXPECT_EQ(log_.living.size(), 2u);
  }

  void step()
  {
    switch (below(nodes_.size() < 3 ? 1 : 12)) {
      case 0:
        return make();
      case 1:
        return below(3) == 0 ? end(pick()) : make();
      case 2:
        return move(pick(), pick());
      case 3:
        return restack(pick());
      case 4:
        return shape(pick());
      case 5:
        return show(pick(), below(3) != 0);
      case 6:
        return scopes(pick());
      case 7:
        return oneScope(pick());
      case 8:
        pick().tablet->modified(layers[below(2)], below(2) == 0);
        return pick().tablet->opaque(layers[below(2)], below(2) == 0);
      case 9:
        return pick().tablet->draw(gxPoint(1, 1), gxGraphicProps(), layers[below(2)]);
      case 10:
        return pick().tablet->update(layers[below(2)]);
      default:
        return pick().tablet->fullDraw(gxUITablet::both);
    }
  }

  void check() const
  {
    std::size_t living = 2;
    for (auto const &node : nodes_) {
      checkLinks(*node);
      for (auto const layer : layers) {
        gxUIRect const scope = node->tablet->currentScope(layer);
        living += node->parent ? !scope.isNull() : node->owns[layer];
        EXPECT_EQ(node->tablet->activeScope(layer), scope);
        if (node->parent)
          checkPart(*node, layer, scopesAnywhere_);
      }
    }
    EXPECT_EQ(log_.living.size(), living) << "scopes that no tablet has";
  }

 private:
  static void checkLinks(Node const &n)
  {
    gxUITablet const &t = *n.tablet;
    EXPECT_EQ(t.parent(), n.parent ? n.parent->tablet.get() : nullptr);
    EXPECT_EQ(t.visible(), n.hidden == 0);
    EXPECT_FALSE(t.updating());
    EXPECT_EQ(t.recordOn().depth(), 1);
    std::vector<Node *>::const_iterator expected = n.kids.begin();
    for (gxUITablet const *kid = t.firstKid(); kid; kid = kid->nextSib(), ++expected) {
      ASSERT_NE(expected, n.kids.end());
      EXPECT_EQ(kid, (*expected)->tablet.get());
    }
    EXPECT_EQ(expected, n.kids.end());
  }

  /// A part lies where its tablet says, in the part of the parent.
  static void checkPart(Node const &n, gxUITablet::Layers layer, bool scopesAnywhere)
  {
    gxUITablet const &t = *n.tablet;
    gxUITablet const &above = *n.parent->tablet;
    EXPECT_EQ(t.scopeOrg(), above.scopeOrg() + t.scopeRect().ul());
    gxUIRect const whole = above.currentScope(layer);
    if (whole.isNull() || scopesAnywhere)
      return;
    gxPair<long> const before = whole.ul() - t.scopeRect().ul();
    EXPECT_EQ(t.currentScope(layer),
              gxUIRect(gxPair<long>(std::max(0L, before.x()), std::max(0L, before.y())), t.scopeRect().sz()));
  }

  int below(std::size_t n) { return static_cast<int>(random_() % n); }
  Node &pick() { return *nodes_[static_cast<std::size_t>(below(nodes_.size()))]; }
  gxUIRect rect() { return {below(60) - 20, below(60) - 20, below(50) + 1, below(50) + 1}; }
  static Node &top(Node &n) { return n.parent ? top(*n.parent) : n; }
  static bool isBelow(Node const *n, Node const &other)
  {
    while (n && n != &other)
      n = n->parent;
    return n != nullptr;
  }

  void make()
  {
    auto node = std::make_unique<Node>();
    std::string const name = std::to_string(made_++);
    if (nodes_.empty() || below(8) == 0) {
      node->tablet = below(2) ? std::make_unique<HookTablet>(log_, name, &i_, below(2) ? &o_ : nullptr)
                              : std::make_unique<HookTablet>(log_, name);
    } else {
      Node &parent = pick();
      node->tablet = std::make_unique<HookTablet>(log_, name, *parent.tablet, rect());
      node->parent = &parent;
      parent.kids.push_back(node.get());
    }
    HookTablet *const t = node->tablet.get();
    t->onRedraw = [t] { t->draw(gxPoint(0, 0), gxGraphicProps(), gxUITablet::image); };
    nodes_.push_back(std::move(node));
  }

  void end(Node &n)
  {
    unlink(n);
    for (Node *const kid : n.kids)
      kid->parent = nullptr;
    n.tablet.reset();
    nodes_.erase(std::find_if(nodes_.begin(), nodes_.end(), [&](auto const &node) { return node.get() == &n; }));
  }

  static void unlink(Node &n)
  {
    if (n.parent)
      std::erase(n.parent->kids, &n);
    n.parent = nullptr;
  }

  void move(Node &n, Node &parent)
  {
    gxUIRect const to = below(4) ? rect() : n.tablet->scopeRect();
    if (isBelow(&parent, n) || to.isNull()) {
      EXPECT_THROW(n.tablet->setParent(isBelow(&parent, n) ? *parent.tablet : *n.tablet, to), gxUIError::BadParams);
      return;
    }
    n.tablet->setParent(*parent.tablet, to);
    unlink(n);
    n.parent = &parent;
    parent.kids.push_back(&n);
    n.owns[0] = n.owns[1] = false;
    reparentFirst(n);
  }

  /// Of several kids the first is taken anew, which makes it the last; so for its own kids.
  static void reparentFirst(Node &n)
  {
    if (n.kids.empty())
      return;
    std::rotate(n.kids.begin(), n.kids.begin() + 1, n.kids.end());
    reparentFirst(*n.kids.back());
  }

  void restack(Node &n)
  {
    bool const front = below(2) == 0;
    front ? n.tablet->front() : n.tablet->back();
    if (!n.parent)
      return;
    std::erase(n.parent->kids, &n);
    n.parent->kids.insert(front ? n.parent->kids.end() : n.parent->kids.begin(), &n);
  }

  void shape(Node &n)
  {
    if (below(2))
      n.tablet->scopeRect(rect());
    else if (!n.tablet->scopeRect().isNull())
      n.tablet->moveRel({below(9) - 4, below(9) - 4});
  }

  void show(Node &n, bool visible)
  {
    int const was = n.hidden;
    n.hidden = visible ? std::max(0, was - 1) : was + 1;
    EXPECT_EQ(n.tablet->visible(visible), (was == 0) != (n.hidden == 0));
  }

  /// A new scope of its own, or one that outlives all, or none.
  gxUIScope *scope(bool own, gxUIScope &shared)
  {
    if (below(4) == 0)
      return nullptr;
    return own ? new LogScope(log_, "own" + std::to_string(made_++), {below(80) + 20, below(80) + 20}) : &shared;
  }

  void scopes(Node &n)
  {
    bool const own = below(2) == 0;
    gxUIScope *const image = scope(own, i_);
    gxUIScope *const overlay = scope(own, o_);
    Node &root = top(n);
    (scopesAnywhere_ ? n : root).tablet->setScope(image, overlay, own);
    root.owns[0] = own && image;
    root.owns[1] = own && overlay;
  }

  void oneScope(Node &n)
  {
    bool const own = below(2) == 0;
    auto const layer = layers[below(2)];
    gxUIScope *const s = scope(own, layer == gxUITablet::image ? i_ : o_);
    Node &root = top(n);
    (scopesAnywhere_ ? n : root).tablet->setScope(layer, s, own);
    root.owns[layer] = own && s;
  }

  std::mt19937 random_;
  bool scopesAnywhere_;
  ScopeLog log_;
  LogScope i_{log_, "i", {100, 80}};
  LogScope o_{log_, "o", {90, 95}};
  std::vector<std::unique_ptr<Node>> nodes_;
  int made_ = 0;
};

void live(bool scopesAnywhere)
{
  for (unsigned seed = 1; seed <= 100; ++seed) {
    Life life(seed, scopesAnywhere);
    for (int step = 0; step < 150; ++step) {
      SCOPED_TRACE(testing::Message() << "seed " << seed << ", step " << step);
      life.step();
      life.check();
      if (testing::Test::HasFailure())
        return;
    }
  }
}

TEST(RandomTrees, AgreeWithAPlainModelAfterEachStep)
{
  live(false);
}

TEST(RandomTrees, LoseNothingWhereverScopesAreSet)
{
  live(true);
}
}  // namespace
