#pragma once

#include "foundation/export.h"
#include "foundation/handle.h"
#include "foundation/pel.h"
#include "foundation/pelroot.h"
#include "foundation/rectangle.h"
#include "foundation/xform.h"

class gxArchive;

/// A rectangular window on the pels of a root. A buffer is a handle: copies look at the same pels.
///
/// Three systems of coordinates meet here.
/// - *Root coordinates* count pels from the first pel of the root. The window and every access to pels use them, so
///   that a pel keeps its coordinates when the window narrows.
/// - The *offset* is a label of the window's first pel, which clients choose. Without a choice it is the root
///   coordinate of that pel. When the window moves, the label moves along, so that each pel keeps its label.
/// - *Client coordinates* are the user's own, in millimetres perhaps. imageFromClientXform() maps them to root
///   coordinates, where pel (x, y) covers x to x + 1 and y to y + 1.
///
/// @code
/// gxPelBuffer<unsigned char> image(640, 480);      // all zero, window (0, 0) 640 x 480
/// image.window(100, 100, 32, 32);                  // now a view of 32 x 32 pels
/// for (long y = 100; y < 132; ++y)
///   std::fill_n(image.pointToPel(100, y), 32, 255);
/// @endcode
class GX_API gx_PelBuffer
{
 public:
  virtual ~gx_PelBuffer();

  /// Size of the window; 0 without a root.
  long width() const { return window_.width(); }
  long height() const { return window_.height(); }
  gxPair<long> const &size() const { return window_.size(); }
  gxPelRect const &window() const { return window_; }
  /// Narrows the view to the rectangle at (@p x, @p y) of @p w x @p h pels of the root.
  /// @param clip if set, the new window is what the rectangle and the present window have in common, and the result is
  ///        false if that is nothing (the window is null then). Otherwise a rectangle that does not lie wholly in the
  ///        present window, or has a negative size, is refused: false, and nothing changes.
  /// Throws gxPel::UnboundWindow without a root.
  bool window(long x, long y, long w, long h, bool clip = false);
  /// The window becomes the whole root again. Throws gxPel::UnboundWindow without a root.
  void setEntire();

  /// The label of the window's first pel.
  gxPair<long> offset() const { return window_.origin() + label_; }
  void offset(long x, long y) { label_ = gxPair<long>(x, y) - window_.origin(); }
  void offset(gxPair<long> const &p) { offset(p.x(), p.y()); }

  /// True if the buffer has a root, even one without pels.
  bool isBound() const { return !root_.isNull(); }
  /// The root, or null.
  gx_PelRoot const *rep() const { return root_.rep(); }
  /// Distance of a pel to the one below it, in bytes; 0 without a root.
  long rowStep() const { return rowStep_; }

  /// The map from client to root coordinates; the identity at first.
  gxXform<2> const &imageFromClientXform() const { return imageFromClient_; }
  void imageFromClientXform(gxXform<2> const &x) { imageFromClient_ = x; }
  /// Its inverse. Both throw gxMathError::Singular if there is none; the setter changes nothing then.
  gxXform<2> clientFromImageXform() const { return imageFromClient_.inverse(); }
  void clientFromImageXform(gxXform<2> const &x) { imageFromClient_ = x.inverse(); }

  /// Throws gxPel::UnboundWindow without a root.
  void checkBound() const
  {
    if (root_.isNull())
      refuseUnbound();
  }
  /// Throws gxPel::UnboundWindow without a root, gxPel::BadCoord if pel (@p x, @p y) lies outside of the window.
  void checkPel(long x, long y) const
  {
    if (!isWithin(x, window_.x(), window_.width()) || !isWithin(y, window_.y(), window_.height()))
      refusePel(x, y);
  }
  /// The same for a row, of which the window may hold no pel.
  void checkRow(long y) const
  {
    if (!isWithin(y, window_.y(), window_.height()))
      refuseRow(y);
  }

 protected:
  gx_PelBuffer();
  explicit gx_PelBuffer(gxPtrHandle_const<gx_PelRoot> const &root);
  gx_PelBuffer(gx_PelBuffer const &);
  gx_PelBuffer &operator=(gx_PelBuffer const &);

  /// Address of a pel by root coordinates, unchecked.
  unsigned char *address(long x, long y, long pelSize) const { return bytes_ + y * rowStep_ + x * pelSize; }

 private:
  static bool isWithin(long v, long origin, long size)
  {
    return static_cast<unsigned long>(v) - static_cast<unsigned long>(origin) < static_cast<unsigned long>(size);
  }
  [[noreturn]] void refuseUnbound() const;
  [[noreturn]] void refusePel(long x, long y) const;
  [[noreturn]] void refuseRow(long y) const;

  gxPtrHandle_const<gx_PelRoot> root_;
  unsigned char *bytes_ = nullptr;  ///< first pel of the root
  long rowStep_ = 0;
  gxPelRect window_;
  gxPair<long> label_;  ///< label of the root's first pel, in wrapping arithmetic
  gxXform<2> imageFromClient_;
};

/// A window on pels that are not changed through it. T is `unsigned char`, `unsigned short`, gxPackedRGB16Pel or
/// gxPackedRGB32Pel.
template <class T>
class GX_API gxPelBuffer_const : public gx_PelBuffer
{
 public:
  using Pel = T;

  /// Without a root.
  gxPelBuffer_const() = default;
  /// The whole of @p root, which may be null.
  explicit gxPelBuffer_const(gxPtrHandle_const<gxPelRoot<T>> const &root)
      : gx_PelBuffer(gxPtrHandle_const<gx_PelRoot>(root))
  {
  }
  gxPelBuffer_const(gxPelBuffer_const const &) = default;
  gxPelBuffer_const &operator=(gxPelBuffer_const const &) = default;
  ~gxPelBuffer_const() override = default;

  /// The pel at root coordinates (@p x, @p y). The pels to its right in the window follow it; the pel below is
  /// rowStep() bytes further. Throws gxPel::UnboundWindow, and gxPel::BadCoord outside of the window.
  T const *pointToPel(long x, long y) const { return checkedPel(x, y); }
  T const *pointToPel(gxPair<long> const &p) const { return checkedPel(p.x(), p.y()); }
  /// The window's first pel in row @p y. Throws gxPel::UnboundWindow, and gxPel::BadCoord outside of the window's rows.
  T const *pointToRow(long y) const { return checkedRow(y); }
  /// The window's first pel; of a null window an address that must not be read. Throws gxPel::UnboundWindow.
  T const *pointToOffset() const { return firstPel(); }
  /// Value of a pel. Throws gxPel::UnboundWindow, and gxPel::BadCoord outside of the window.
  T get(long x, long y) const { return *checkedPel(x, y); }

 protected:
  T *checkedPel(long x, long y) const
  {
    checkPel(x, y);
    return at(x, y);
  }
  T *checkedRow(long y) const
  {
    checkRow(y);
    return at(window().x(), y);
  }
  T *firstPel() const
  {
    checkBound();
    return window().isNull() ? at(0, 0) : at(window().x(), window().y());
  }

 private:
  T *at(long x, long y) const { return reinterpret_cast<T *>(address(x, y, sizeof(T))); }
};

/// A window on pels that may be changed through it, by every copy of the buffer, a constant one too.
template <class T>
class GX_API gxPelBuffer : public gxPelBuffer_const<T>
{
 public:
  /// Without a root.
  gxPelBuffer() = default;
  /// The whole of @p root, which may be null.
  explicit gxPelBuffer(gxPtrHandle<gxPelRoot<T>> const &root) : gxPelBuffer_const<T>(root) {}
  /// A root of its own, all zero, with rows at multiples of @p alignment bytes. A buffer of 0 x 0 is legal.
  /// Throws gxPel::BadSize for a negative or unaddressable size, gxPel::BadAlignment for an unsuitable alignment.
  gxPelBuffer(long width, long height, long alignment = 32)
      : gxPelBuffer(gxPtrHandle<gxPelRoot<T>>(new gxPelRoot<T>(width, height, alignment)))
  {
  }
  gxPelBuffer(gxPelBuffer const &) = default;
  gxPelBuffer &operator=(gxPelBuffer const &) = default;
  ~gxPelBuffer() override = default;

  /// As in gxPelBuffer_const, to be written to.
  T *pointToPel(long x, long y) const { return this->checkedPel(x, y); }
  T *pointToPel(gxPair<long> const &p) const { return this->checkedPel(p.x(), p.y()); }
  T *pointToRow(long y) const { return this->checkedRow(y); }
  T *pointToOffset() const { return this->firstPel(); }
  /// Sets a pel. Throws gxPel::UnboundWindow, and gxPel::BadCoord outside of the window.
  void put(long x, long y, T value) const { *this->checkedPel(x, y) = value; }
};

/// Stores or loads a buffer: its root (shared roots stay shared), the window's origin and size, the offset, the client
/// map. What is loaded owns its pels. Throws gxArchive::Errors for anything wrong in a loaded stream; the buffer is
/// unchanged then.
GX_API gxArchive &operator||(gxArchive &archive, gxPelBuffer<unsigned char> &buffer);
