#include "conformance/surfacecheck.h"

#include "backends/pels/pelsurface.h"
#include "dispc/dispprop.h"
#include "foundation/lineseg.h"
#include "foundation/pelbuf.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>

namespace
{

gxCheckedSurface pelSurface(gxPair<long> const &size)
{
  auto surface = std::make_shared<gxPelSurface>(size.x(), size.y());
  return {{surface, &surface->imageScope()}, [surface] { return surface->picture(); }};
}

template <class Pel>
gxPelBuffer<Pel> mirrored(gxPelBuffer_const<Pel> const &image)
{
  gxPelBuffer<Pel> mirror(image.width(), image.height());
  for (long y = 0; y < image.height(); ++y)
    for (long x = 0; x < image.width(); ++x)
      mirror.put(x, y, image.get(image.window().x() + image.width() - 1 - x, image.window().y() + y));
  return mirror;
}

/// A surface that breaks the one rule which it is named after.
class Faulty : public gxPelScope
{
 public:
  Faulty(gxPelScope const &scope, std::string fault) : gxPelScope(scope), fault_(std::move(fault))
  {
    if (is("new-surface"))
      modified(true);
  }

  using gxPelScope::draw;
  using gxPelScope::expand;
  using gxPelScope::sample;
  using gxPelScope::set;

  gxUIScope *newSubScope(gxUIRect const &rect, bool temporary) override
  {
    std::unique_ptr<gxUIScope> const made(gxPelScope::newSubScope(rect, temporary));
    auto part = std::make_unique<Faulty>(static_cast<gxPelScope &>(*made), fault_);
    bool const isNarrow = is(temporary ? "part-temporary" : "part-lasting");
    gxUIRect const taken(rect.ul(), rect.sz() - gxPair<long>(isNarrow, 0));
    if (temporary)
      part->subset(*this, taken);
    else
      part->move(*this, taken);
    if (temporary && is("temporary-clip"))
      part->setDisplayClipRect(gxUIRect::null);
    part->isPart_ = true;
    part->isShort_ = temporary;
    return part.release();
  }
  void moveSurface(gxUIScope const &above, gxUIRect const &rect) override
  {
    long const drift = is("part-moves") ? attached_++ / 2 : 0;
    gxPelScope::moveSurface(above, rect + gxPair<long>(drift, 0));
  }
  bool isNull() const override { return gxPelScope::isNull() && !is("null-scope"); }

  void lockScreenUpdatesPush(bool lock) override
  {
    if (is("lock-shared"))
      ++ownLocks_;
    else
      gxPelScope::lockScreenUpdatesPush(lock);
  }
  bool lockScreenUpdatesPop() override
  {
    if (is("lock-shared")) {
      ownLocks_ -= ownLocks_ > 0;
      return ownLocks_;
    }
    if (is("lock-pop") && !screenUpdatesLocked())
      throw std::logic_error("no lock to take back");
    while (is("lock-nesting") && gxPelScope::lockScreenUpdatesPop())
      continue;
    return gxPelScope::lockScreenUpdatesPop();
  }
  bool screenUpdatesLocked() const override { return ownLocks_ || gxPelScope::screenUpdatesLocked(); }
  void dragErase() override
  {
    if (!is("drag"))
      gxPelScope::dragErase();
  }
  void optimizeDrawing(bool on) override { collecting_ = on; }

  void draw(gxLineSeg const &line, gxGraphicProps const &given) override
  {
    gxGraphicProps props = given;
    gxUIRect const clip = displayClipRect();
    bool const wasModified = modified();
    if (is("unknown-styles") && props.penStyle() > 4)
      throw std::domain_error("pen style");
    if (is("not-finite") && std::isnan(line.start().x()))
      return gxPelScope::draw(gxLineSeg(gxVector<2>(0, 0), gxVector<2>(9, 0)), props);
    if (is("batch") && collecting_)
      return modified(true);
    if (is("part-outlives") && isPart_ && !parent())
      throw std::runtime_error("no parent");
    if (is("drawn-in-place")) {
      props.penColor(gxColor(10, 20, 40));
      return gxPelScope::draw(line, props);
    }
    if (is("clip-display"))
      setDisplayClipRect(gxUIRect::null);
    if (is("tracking-continues") && allChanged()) {
      clientChangeEnable(false);
      gxPelScope::draw(line, props);
      return clientChangeEnable(true);
    }
    if (is("tracking-outside") && clientChangeEnable() && !isNull()) {
      gxPelScope::draw(line, props);
      gxUIRect const seen = clientChangedRect(true) & gxUIRect(gxPair<long>(), size());
      clientChangeEnable(true);
      return change(seen, false);
    }
    gxPelScope::draw(line, props);
    setDisplayClipRect(clip);
    if (is("change-covers"))
      noChange();
    if (is("change-tight"))
      change(gxUIRect(gxPair<long>(), size()), false);
    if (is("pen-stays"))
      drawStart(gxPoint(line.end()));
    if (is("modified"))
      modified(wasModified);
  }
  void draw(gxPoint const &p, gxGraphicProps const &props) override
  {
    if (is("pen-object"))
      gxPelScope::draw(gxPoint(p.x(), p.y()), props);
    else if (is("rounding") && &p != &drawPoint())
      gxPelScope::draw(gxPoint(std::floor(p.x()), std::floor(p.y())), props);
    else
      gxPelScope::draw(p, props);
  }
  void drawTo(gxPoint const &to, gxGraphicProps const &props) override
  {
    gxPoint const from = drawPoint();
    gxPelScope::drawTo(to, props);
    if (is("pen-moves"))
      drawStart(from);
  }
  void set(gxColor const &color) override
  {
    if (is("clip-part") && parent())
      parent()->set(gxUIRect(0, 0, 4, 60), color);
    bool const errs = is("set-colors") && color == gxColor::greenColor();
    gxPelScope::set(errs ? gxColor::blueColor() : color);
  }
  void set(gxUIRect const &rect, gxColor const &color) override
  {
    bool const wasModified = parent() && parent()->modified();
    if (is("infinite-area") && rect == gxUIRect::inf)
      return;
    gxPelScope::set(rect, color);
    if (is("temporary-modified") && isShort_ && parent())
      parent()->modified(wasModified);
    if (is("part-changes") && isShort_) {
      noChange();
      change(rect, true);
    }
  }
  void fill(gxPair<long> const &seed, gxColor const &color, gxColor const &boundary, bool toBoundary) override
  {
    gxPelScope::fill(seed, color, boundary, toBoundary != is("flood-fill"));
  }
  void draw(gxPelBuffer_const<gxPackedRGB32Pel> const &image, gxPoint const &at, bool pass,
            unsigned long passPel) override
  {
    bool const mirrors = is("image-pels") && !pass && image.width() == 5;
    gxPelScope::draw(mirrors ? mirrored(image) : image, at, pass, passPel);
  }
  void draw(gxPelBuffer_const<gxPackedRGB16Pel> const &image, gxPoint const &at, bool pass,
            unsigned short passPel) override
  {
    gxPelScope::draw(image, at, pass && !is("transparency"), passPel);
  }
  void draw(gxPelBuffer_const<unsigned char> const &image, gxPoint const &at, bool pass, unsigned char passPel,
            bool flag) override
  {
    gxPelScope::draw(image, at, pass, passPel, flag);
    if (is("change-opaque") && pass)
      change(gxUIRect(gxPair<long>(), image.size()), true);
  }
  void sample(gxPelBuffer_const<unsigned char> const &image, gxPoint const &at, gxPair<double> const &scale, bool pass,
              unsigned char passPel, bool flag) override
  {
    gxPair<double> const positive(std::abs(scale.x()), std::abs(scale.y()));
    gxPelScope::sample(image, at, is("scale-invalid") ? positive : scale, pass, passPel, flag);
  }
  void expand(gxPelBuffer_const<unsigned short> const &image, gxPoint const &at, gxPair<double> const &scale, bool pass,
              unsigned short passPel, InterpolationModes mode) override
  {
    gxPelScope::expand(is("scaled-pels") && !pass ? mirrored(image) : image, at, scale, pass, passPel, mode);
  }
  void draw(std::string const &text, gxPoint const &at, gxColor const &foreground, gxColor const &background,
            gxUIFormat const &format) override
  {
    gxPoint const shifted(at.x() + 3, at.y());
    gxPelScope::draw(text, is("text-inside") ? shifted : at, foreground, background, format);
  }
  gxUIRect textRect(std::string const &text, gxPoint const &at, gxUIFormat const &format, gxUIRect &rect) override
  {
    gxUIFormat const centered(format.fontId(), gxUIFormat::center);
    bool const misplaces = is("text-alignment") && format.alignment() == gxUIFormat::bottomLeft;
    gxUIRect const result = gxPelScope::textRect(text, at, misplaces ? centered : format, rect);
    if (is("text-rect"))
      rect = gxUIRect::null;
    return result;
  }

 private:
  bool is(char const *fault) const { return fault_ == fault; }

  std::string fault_;
  bool isPart_ = false;
  bool isShort_ = false;
  bool collecting_ = false;
  long attached_ = 0;
  int ownLocks_ = 0;
};

TEST(SurfaceCheck, TheMemorySurfaceKeepsEveryRule)
{
  gxConformanceReport const report = gfCheckSurface(pelSurface);
  EXPECT_TRUE(report.holds()) << report;
  EXPECT_EQ(report.checked.size(), gfSurfaceRules().size());
  EXPECT_THAT(report.skipped, testing::IsEmpty());
}

TEST(SurfaceCheck, WithoutPelsOrNullSurfacesTheOtherRulesAreChecked)
{
  gxConformanceReport const report = gfCheckSurface([](gxPair<long> const &size) {
    return gxCheckedSurface{size == gxPair<long>() ? nullptr : pelSurface(size).scope, {}};
  });
  EXPECT_TRUE(report.holds()) << report;
  EXPECT_THAT(report.skipped, testing::IsSupersetOf({"null-scope", "clip-part", "image-pels", "text-inside"}));
  EXPECT_THAT(report.checked, testing::IsSupersetOf({"change-covers", "part-lasting", "pen-object", "lock-nesting"}));
}

TEST(SurfaceCheck, EachFaultIsFoundByItsOwnRule)
{
  for (gxConformanceRule const &rule : gfSurfaceRules()) {
    gxConformanceReport const report = gfCheckSurface([&](gxPair<long> const &size) {
      gxCheckedSurface surface = pelSurface(size);
      auto const &scope = static_cast<gxPelScope const &>(*surface.scope);
      // The sound scope stays the root of the faulty one, and has to live as long.
      std::shared_ptr<Faulty> faulty(new Faulty(scope, rule.name),
                                     [sound = surface.scope](Faulty *made) { delete made; });
      return gxCheckedSurface{faulty, surface.picture};
    });
    EXPECT_FALSE(report.holds()) << rule.name << " found nothing";
    for (gxConformanceFinding const &finding : report.findings)
      EXPECT_EQ(finding.rule, rule.name) << finding;
  }
}

TEST(SurfaceCheck, WhatTheFactoryThrowsIsNoFinding)
{
  int made = 0;
  EXPECT_THROW(gfCheckSurface([&](gxPair<long> const &size) {
                 if (++made == 5)
                   throw std::domain_error("no display");
                 return pelSurface(size);
               }),
               std::domain_error);
}

}  // namespace
