#include "dispc/detail/uisketch_blocks.h"
#include "dispc/detail/uitablet_draw.h"
#include "foundation/ellipseannulus.h"
#include "foundation/ellipsearc.h"
#include "foundation/lineseg.h"
#include "foundation/numbers.h"

#include <cmath>
#include <numbers>

// Arrowheads, and the sector of the ring between two ellipses.

float gxUITablet::arrowArmLength(gxGraphicProps const &props) const
{
  float const reduction = scaleMode_ == sampleMode ? static_cast<float>(scaleExact_.x()) : 1.0f;
  float const arm = reduction * 6.0f;
  return static_cast<float>(static_cast<double>(props.penWidth()) * 1.5 + static_cast<double>(arm));
}

void gxUITablet::arrowHead(gxPoint const &tip, gxVector<2> const &dir, float armLength, gxGraphicProps const &props,
                           Layers layer)
{
  drawShape(
      layer, props, gx_SketchCode::arrow, 36,
      [&](gxUIScope &scope) {
        gxFlagPush const unrecorded(recordOn_, false);
        drawStart(tip, layer);
        gxPoint const at = scope.drawPoint();
        gx_ScreenLocked const locked(scope);
        // Each arm runs back from the tip, at the angle whose tangent is 1/2 from the reverse of the direction.
        gxVector<2> const half = dir * 0.5;
        for (gxVector<2> const side : {gxVector<2>(-half.y(), half.x()), gxVector<2>(half.y(), -half.x())}) {
          gxVector<2> const arm = scaledMap_.mapVector(dir + side).unit() * -static_cast<double>(armLength);
          drawToRelPels(gf_truncate(arm.x()), gf_truncate(arm.y()), props, layer);
          scope.drawStart(at);
        }
      },
      [&](gx_StreamWriter &payload) { payload.vector(tip).vector(dir).single(armLength); });
}

namespace
{
constexpr double fullTurn = 6.283184307179586;  // a turn less 1e-6: a span of this much or more is whole

/// The same direction, as far as hundredths of sine and cosine tell. Coarse on purpose.
bool sameDirection(gxRadian a, gxRadian b)
{
  auto const close = [](double first, double second) {
    return std::trunc(std::abs(100.0 * second - std::trunc(100.0 * first))) <= 1.0;
  };
  return close(std::cos(a.value()), std::cos(b.value())) && close(std::sin(a.value()), std::sin(b.value()));
}

/// One of the two ellipses of a section, by its angles.
class Curve
{
 public:
  explicit Curve(gxEllipse const &ellipse)
      : center_(ellipse.unit().center()), fromUnit_(ellipse.unit().matrix().inverse())
  {
  }
  gxVector<2> offset(gxRadian t) const { return fromUnit_ * gxVector<2>(1.0, t); }
  gxVector<2> at(gxRadian t) const { return center_ + offset(t); }
  /// Direction in which the angle grows, from a difference: t is good to about 1e-10 of the radius.
  gxRadian tangent(gxRadian t) const
  {
    constexpr gxRadian d(1e-10);
    return (offset(t + d) - offset(t - d)).angle();
  }

 private:
  gxVector<2> center_;
  gxMatrix<2> fromUnit_;
};
}  // namespace

/// Draws the lines of a section and returns where its arrow points from.
gxVector<2> gxUITablet::drawSectionLines(gxEllipseAnnulusSection const &s, gxGraphicProps const &props, Layers layer)
{
  gxEllipse const &e1 = s.annulus().innerEllipse();
  gxEllipse const &e2 = s.annulus().outerEllipse();
  Curve const c1(e1);
  Curve const c2(e2);
  gxRadian const a = s.start();
  gxRadian const b = s.end();
  double const span = (b - a).value();
  bool const same = sameDirection(a, b);
  bool const whole = span >= fullTurn || (same && span > 1.0);
  bool const chords = same && b != a && span < 1.0;
  gxVector<2> const middle = c2.at((b - a).norm() * 0.5 + a);

  draw(gxLineSeg(c1.at(b), c2.at(b)), props, layer);
  draw(gxLineSeg(c1.at(a), c2.at(a)), props, layer);
  if (whole) {
    draw(e1, props, layer);
    draw(e2, props, layer);
    return middle;
  }
  if (!chords) {
    draw(gxEllipseArc(e1, a, b), props, layer);
    draw(gxEllipseArc(e2, a, b), props, layer);
    return middle;
  }
  draw(gxLineSeg(c1.at(a), c1.at(b)), props, layer);
  draw(gxLineSeg(c2.at(a), c2.at(b)), props, layer);
  return (c1.at(a) + c1.at(b)) * 0.5;
}

void gxUITablet::drawSection(gxEllipseAnnulusSection const &s, gxGraphicProps const &props, Layers layer)
{
  gxFlagPush const unrecorded(recordOn_, false);
  gxPoint const at(drawSectionLines(s, props, layer));
  if (!props.arrowHead())
    return;
  gxRadian const middle = (s.end() - s.start()).norm() * 0.5 + s.start();
  gxRadian angle = Curve(s.annulus().outerEllipse()).tangent(middle);
  if (s.annulus().innerEllipse().unit().matrix().det() < 0.0)
    angle += gxRadian(std::numbers::pi);
  if (!props.arrowHeadForward() || !s.isForward())
    angle += gxRadian(gxDegree(180.0));
  arrowHead(at, gxVector<2>(1.0, angle), arrowArmLength(props), props, layer);
}

void gxUITablet::draw(gxEllipseAnnulusSection const &s, gxGraphicProps const &props, Layers layer)
{
  bool const plain = props.arrowHead() && props.arrowHeadForward();
  drawShape(
      layer, props, plain ? gx_SketchCode::ellipseAnnulusSection : gx_SketchCode::ellipseAnnulusSectionFlags,
      gf_annulusSectionBlock + (plain ? 0 : 2),
      [&](gxUIScope &) {
        if (!s.annulus().degen())
          drawSection(s, props, layer);
      },
      [&](gx_StreamWriter &payload) {
        gf_writeBlock(payload, s);
        if (!plain)
          payload.flag(props.arrowHead()).flag(props.arrowHeadForward());
      });
}

void gxUITablet::draw(gxEllipseAnnulusSection const &s, gxColor const &color, Layers layer, bool arrow, bool forward)
{
  gxGraphicProps props = gf_penProps(color);
  props.arrowHead(arrow);
  props.arrowHeadForward(forward);
  draw(s, props, layer);
}
