#pragma once

#include "dispc/color.h"
#include "foundation/bytes.h"
#include "foundation/exception.h"
#include "foundation/export.h"
#include "foundation/persistent.h"

#include <cstdint>
#include <cstring>
#include <ostream>

class gxUISketch;

/// How a shape is drawn: pen, fill, corners and ends, arrowheads and vertices. By default a cyan one-pel solid line
/// without fill, with arrowheads.
///
/// @code
/// gxGraphicProps props(gxColor::redColor(), 3, gxGraphicProps::penDash, false);
/// props.penEndCap(gxGraphicProps::capFlat);
/// tablet.draw(circle, props, gxUITablet::overlay);
/// @endcode
class GX_API gxGraphicProps : public virtual gxPersistent
{
 public:
  // The library stores the three enumerations and hands them on; surfaces give them the meaning told here. Any 32-bit
  // value is kept; a surface draws one that it does not know as 0.

  /// The pattern of a line. Lengths are in units of the width of the pen in pels, at least 1, and run along the outline
  /// from its start.
  enum gePenStyle : std::int32_t {
    penSolid,      ///< without gaps
    penDash,       ///< 6 drawn, 3 left out
    penDot,        ///< 1 drawn, 2 left out
    penDashDot,    ///< 6 drawn, 2 left out, 1 drawn, 2 left out
    penDashDotDot  ///< 6 drawn, 2 left out, and twice 1 drawn, 2 left out
  };
  /// The outside of a corner between two joined segments; it shows on pens wider than one pel.
  enum gePenJoin : std::int32_t {
    joinRound,  ///< an arc around the corner, of half the width of the pen
    joinBevel,  ///< the outer edges end level with the corner, and a straight cut connects them
    joinMiter   ///< the outer edges run on until they meet; beveled if that is more than 4 times the width
  };
  /// An open end; it shows on pens wider than one pel.
  enum gePenEndCap : std::int32_t {
    capRound,   ///< a half disk around the end
    capSquare,  ///< runs on by half the width of the pen
    capFlat     ///< stops at the end
  };

  /// A pen width below 0, or beyond 32 bits.
  GX_EXCEPTION(BadParams, gxException);

  gxGraphicProps() = default;
  /// The others keep their defaults. Throws BadParams for a bad width.
  gxGraphicProps(gxColor const &penColor, long penWidth, gePenStyle penStyle, bool fill);
  /// The nine fields are copied, what archives know of the objects is not.
  gxGraphicProps(gxGraphicProps const &props) : gxPersistent(), penColor_(props.penColor_), coded_(props.coded_) {}
  gxGraphicProps &operator=(gxGraphicProps const &props)
  {
    mutating();
    penColor_ = props.penColor_;
    coded_ = props.coded_;
    return *this;
  }
  ~gxGraphicProps() override;

  /// Of the pen and of the fill.
  gxColor const &penColor() const { return penColor_; }
  void penColor(gxColor const &color)
  {
    mutating();
    penColor_ = color;
  }
  /// In pels, 0 or more. The setter throws BadParams, before it changes anything, below 0 and beyond 32 bits.
  long penWidth() const { return coded_.penWidth; }
  void penWidth(long width)
  {
    std::int32_t const checked = checkedWidth(width);
    set(coded_.penWidth, checked);
  }
  gePenStyle penStyle() const { return coded_.penStyle; }
  void penStyle(gePenStyle style) { set(coded_.penStyle, style); }
  /// The interior of a region is filled.
  bool fill() const { return coded_.fill; }
  void fill(bool on) { set(coded_.fill, on); }
  gePenJoin penJoin() const { return coded_.penJoin; }
  void penJoin(gePenJoin join) { set(coded_.penJoin, join); }
  gePenEndCap penEndCap() const { return coded_.penEndCap; }
  void penEndCap(gePenEndCap cap) { set(coded_.penEndCap, cap); }
  /// Shapes that have a direction show it by arrowheads.
  bool arrowHead() const { return coded_.arrowHead; }
  void arrowHead(bool on) { set(coded_.arrowHead, on); }
  /// The arrowheads point along the direction of the shape, else against it.
  bool arrowHeadForward() const { return coded_.arrowHeadForward; }
  void arrowHeadForward(bool on) { set(coded_.arrowHeadForward, on); }
  /// A rounded polygon shows its vertices as they are defined, not rounded.
  bool showVertex() const { return coded_.showVertex; }
  void showVertex(bool on) { set(coded_.showVertex, on); }

  /// All nine fields; the colors by their own `==`, so that stock red equals red by components.
  friend bool operator==(gxGraphicProps const &a, gxGraphicProps const &b)
  {
    return a.penColor_ == b.penColor_ && a.coded_ == b.coded_;
  }

  /// @name The coding of sketches
  /// All but the color: a version byte, 0, and the fields, little-endian without padding.
  /// @{
  static constexpr long codedSize = 21;
  /// Writes the codedSize bytes; returns the address behind them.
  static unsigned char *encode(unsigned char *to, gxGraphicProps const &props)
  {
    Coded const &p = props.coded_;
    *to++ = 0;
    *to++ = p.fill;
    to = gf_putLittle(to, p.penWidth);
    to = gf_putLittle(to, p.penStyle);
    to = gf_putLittle(to, p.penJoin);
    to = gf_putLittle(to, p.penEndCap);
    *to++ = p.arrowHead;
    *to++ = p.arrowHeadForward;
    *to++ = p.showVertex;
    return to;
  }
  /// Reads what lies behind the version byte, codedSize - 1 bytes, by the setters: a bad width throws BadParams.
  static void decode(unsigned char const *from, gxGraphicProps &target);
  /// @}

 private:
  friend class gxUISketch;
  friend class gx_UISketchOpHeader;

  /// All but the color, without padding.
  struct Coded {
    std::int32_t penWidth = 1;
    gePenStyle penStyle = penSolid;
    gePenJoin penJoin = joinRound;
    gePenEndCap penEndCap = capRound;
    bool fill = false;
    bool arrowHead = true;
    bool arrowHeadForward = true;
    bool showVertex = false;

    /// Without a branch: recording compares the properties of every draw.
    friend bool operator==(Coded const &a, Coded const &b) { return std::memcmp(&a, &b, sizeof(Coded)) == 0; }
  };
  static_assert(sizeof(Coded) == 20);

  template <class T>
  void set(T &field, T value)
  {
    mutating();
    field = value;
  }
  static std::int32_t checkedWidth(long width)
  {
    if (width < 0 || width > INT32_MAX)
      throwBadParams();
    return static_cast<std::int32_t>(width);
  }
  [[noreturn]] static void throwBadParams();

  /// Appends @p value without its color to the sketch. Returns the number of bytes, 21; 0 for no sketch.
  long opcode(gxUISketch *sketch, gxGraphicProps const &value) const;
  /// As decode(). Returns the number of bytes, 20; 0 for no target or no bytes.
  long opcode(gxGraphicProps *target, unsigned char const *bytes) const;

  gxColor penColor_ = gxColor::cyanColor();
  Coded coded_;

  GX_PERSISTENT(gxGraphicProps);
};

/// The color, the width, and what differs from the defaults, as in "stock 254 #00ffff, width 3, fill, style 1".
GX_API std::ostream &operator<<(std::ostream &os, gxGraphicProps const &props);
