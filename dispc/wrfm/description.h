#pragma once

#include "foundation/export.h"
#include "foundation/handle.h"
#include "foundation/persistent.h"
#include "foundation/xform.h"

#include <string>

template <class T>
class gxPelBuffer;
class gx2XformBase;
class gxUITablet;

/// Base of what describes a device: the vertex of an outline, an outline, a model. It has a name, passes through
/// archives, may be held by handles, and can be drawn in two ways: as lines on a tablet, and as the grey picture that
/// a camera would take of the device.
class GX_API gxSMDGeometricDescription : public virtual gxPersistent, public virtual gxRepBase
{
 public:
  /// Without a name.
  gxSMDGeometricDescription() = default;
  explicit gxSMDGeometricDescription(std::string name) : name_(std::move(name)) {}
  gxSMDGeometricDescription(gxSMDGeometricDescription const &other) : gxPersistent(), gxRepBase(), name_(other.name_) {}
  gxSMDGeometricDescription(gxSMDGeometricDescription &&other) noexcept : name_(std::move(other.name_)) {}
  gxSMDGeometricDescription &operator=(gxSMDGeometricDescription const &other) = default;
  gxSMDGeometricDescription &operator=(gxSMDGeometricDescription &&other) noexcept
  {
    mutating();
    name_ = std::move(other.name_);
    return *this;
  }
  ~gxSMDGeometricDescription() override;

  std::string name() const { return name_; }
  /// Any text; it has no part in comparisons.
  void rename(std::string name)
  {
    mutating();
    name_ = std::move(name);
  }

  /// @name Pictures
  /// @p xform maps from the coordinates of the description to client coordinates of the tablet or of the buffer.
  ///@{
  virtual void drawWireframe(gxXform<2> const &xform, gxUITablet &tablet) const = 0;
  /// By a transform that may bend: approximated by its linear form at (0, 0) unless a class does better. Throws
  /// gxBadPointer for a null handle.
  virtual void drawSynthetic(gxPtrHandle_const<gx2XformBase> const &xform,
                             gxPelBuffer<unsigned char> const &buffer) const;
  virtual void drawSynthetic(gxXform<2> const &xform, gxPelBuffer<unsigned char> const &buffer) const = 0;
  ///@}

 private:
  std::string name_;

  GX_PERSISTENT_ABSTRACT(gxSMDGeometricDescription);
};
