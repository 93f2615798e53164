#include "backends/pels/pelsurface.h"
#include "dispc/uitablet.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>

// Tablets that each paint themselves in one color: after any change of the tree and one update, the surface shows what
// a painter would paint who starts afresh at the back.

namespace
{
constexpr auto image = gxUITablet::image;
constexpr long width = 48;
constexpr long height = 40;

class ColorTablet : public gxUITablet
{
 public:
  template <class... Args>
  explicit ColorTablet(gxColor const &color, Args &&...args) : gxUITablet(std::forward<Args>(args)...), color_(color)
  {
  }
  gxColor const &color() const { return color_; }

 protected:
  void redraw_() override
  {
    if (shouldUpdateImage(updateLayers()))
      set(color_, image);
  }

 private:
  gxColor color_;
};

class Desk
{
 public:
  explicit Desk(unsigned seed) : random_(seed)
  {
    root_.visible(true);
    check("start");
  }

  /// Changes something and lets the root repair what that uncovered; what it was.
  std::string step()
  {
    std::string const what = change();
    root_.update(image);
    return what;
  }

  void check(std::string const &history)
  {
    std::vector<gxColor const *> expected(width * height, nullptr);
    paint(expected, root_, gxUIRect(0, 0, width, height));
    gxPelBuffer<gxPackedRGB32Pel> const pels = surface_.imagePels();
    for (long y = 0; y < height; ++y) {
      gxPackedRGB32Pel const *const row = pels.pointToPel(0, y);
      for (long x = 0; x < width; ++x) {
        gxRGB const &c = expected[static_cast<std::size_t>(y * width + x)]->rgbStruct();
        gxRGB const seen(row[x].red(), row[x].green(), row[x].blue());
        ASSERT_TRUE(seen == c) << seen << " and not " << c << " at " << x << ", " << y << "; " << history;
      }
    }
  }

 private:
  std::string change()
  {
    std::size_t const n = below(tablets_.size() + 1);
    if (n == tablets_.size() || tablets_.size() < 3)
      return make();
    ColorTablet &t = *tablets_[n];
    switch (below(8)) {
      case 0:
        t.front();
        return "front " + name(t);
      case 1:
        t.back();
        return "back " + name(t);
      case 2:
      case 3:
        t.scopeRect(rect());
        return "rect " + name(t) + ' ' + testing::PrintToString(t.scopeRect());
      case 4:
        t.size(t.scopeRect().sz() + gxPair<long>(below(4), below(4)));
        return "grow " + name(t);
      case 5:
        return show(t);
      case 6:
        return move(t);
      default:
        return end(n);
    }
  }

  std::string make()
  {
    ColorTablet &parent = host();
    gxColor const color(byte(), byte(), byte());
    tablets_.push_back(std::make_unique<ColorTablet>(color, parent, rect()));
    tablets_.back()->visible(true);
    return "make " + name(*tablets_.back()) + " in " + name(parent) + ' ' +
           testing::PrintToString(tablets_.back()->scopeRect());
  }
  /// Kids show whether or not their parent does, which no painter could tell; so only what has no kids is hidden.
  std::string show(ColorTablet &t)
  {
    if (t.numKids() == 0)
      t.visible(!t.visible());
    return (t.visible() ? "show " : "hide ") + name(t);
  }
  std::string move(ColorTablet &t)
  {
    ColorTablet &parent = host();
    for (gxUITablet const *above = &parent; above; above = above->parent())
      if (above == &t)
        return "nothing";
    t.setParent(parent, below(3) ? rect() : t.scopeRect());
    return "move " + name(t) + " to " + name(parent) + ' ' + testing::PrintToString(t.scopeRect());
  }
  std::string end(std::size_t n)
  {
    if (tablets_[n]->numKids() > 0)
      return "nothing";
    std::string const gone = name(*tablets_[n]);
    tablets_.erase(tablets_.begin() + static_cast<std::ptrdiff_t>(n));
    return "end " + gone;
  }

  ColorTablet &host()
  {
    std::size_t const n = below(tablets_.size() + 1);
    return n < tablets_.size() && tablets_[n]->visible() ? *tablets_[n] : root_;
  }
  static std::string name(ColorTablet const &t)
  {
    std::ostringstream os;
    os << t.color();
    return os.str();
  }

  static void paint(std::vector<gxColor const *> &pels, ColorTablet const &t, gxUIRect const &clip)
  {
    if (!t.visible())
      return;
    gxUIRect const seen = t.absRect() & clip;
    for (long y = seen.top(); y < seen.bottom(); ++y)
      for (long x = seen.left(); x < seen.right(); ++x)
        pels[static_cast<std::size_t>(y * width + x)] = &t.color();
    for (gxUITablet const *kid = t.firstKid(); kid; kid = kid->nextSib())
      paint(pels, dynamic_cast<ColorTablet const &>(*kid), seen);
  }

  std::size_t below(std::size_t n) { return random_() % n; }
  unsigned char byte() { return static_cast<unsigned char>(below(256)); }
  gxUIRect rect()
  {
    auto const number = [&](long n) { return static_cast<long>(below(static_cast<std::size_t>(n))); };
    return {number(40) - 8, number(36) - 8, number(24) + 1, number(24) + 1};
  }

  std::mt19937 random_;
  gxPelSurface surface_{width, height};
  ColorTablet root_{gxColor(1, 2, 3), &surface_.imageScope(), nullptr};
  std::vector<std::unique_ptr<ColorTablet>> tablets_;
};

TEST(TabletPicture, IsThatOfAPainterAfterEachChangeAndUpdate)
{
  for (unsigned seed = 1; seed <= 100; ++seed) {
    Desk desk(seed);
    std::string history = "seed " + std::to_string(seed);
    for (int step = 0; step < 60; ++step) {
      history += "\n" + desk.step();
      desk.check(history);
      if (testing::Test::HasFatalFailure())
        return;
    }
  }
}
}  // namespace
