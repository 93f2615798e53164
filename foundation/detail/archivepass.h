#pragma once

#include "foundation/archive.h"

#include <array>
#include <cstddef>
#include <vector>

/// One object on its way through an archive: the marks of its classes, and its place in the stack of objects that are
/// passing in this thread. Lives as a local variable of the routine that passes the object, so that an exception takes
/// the marks with it.
class gx_Pass
{
 public:
  /// Throws gxArchive::Errors if the object would be nested too deep.
  gx_Pass(gxArchive &archive, gxPersistent &object) : archive_(archive), object_(&object), outer_(innermost_)
  {
    if (archive.depth_ >= archive.limits_.maxDepth)
      refuseDepth();
    ++archive.depth_;
    innermost_ = this;
  }
  ~gx_Pass()
  {
    --archive_.depth_;
    innermost_ = outer_;
  }
  gx_Pass(gx_Pass const &) = delete;
  gx_Pass &operator=(gx_Pass const &) = delete;

  /// The object that is passing just now, or null.
  static gx_Pass *innermost() { return innermost_; }
  /// True if the object is passing through the archive in this thread.
  static bool isPassing(gxArchive const &archive, gxPersistent const &object);

  gxArchive &archive() const { return archive_; }
  bool isOutermost() const { return archive_.depth_ == 1; }

  bool isMarked(void const *part, std::size_t size, void const *level) const
  {
    for (std::size_t i = 0; i < numMarks_; ++i) {
      if (marks_[i] == Mark{part, size, level})
        return true;
    }
    return !more_.empty() && isMarkedFurther(part, size, level);
  }
  void mark(void const *part, std::size_t size, void const *level)
  {
    if (numMarks_ < marks_.size())
      marks_[numMarks_++] = {part, size, level};
    else
      more_.push_back({part, size, level});
  }

 private:
  struct Mark {
    void const *part;
    std::size_t size;
    void const *level;
    bool operator==(Mark const &) const = default;
  };

  [[noreturn]] void refuseDepth() const;
  bool isMarkedFurther(void const *part, std::size_t size, void const *level) const;

  static thread_local gx_Pass *innermost_;

  gxArchive &archive_;
  gxPersistent *object_;
  gx_Pass *outer_;
  std::size_t numMarks_ = 0;
  std::array<Mark, 8> marks_;  // no heap for all but the widest hierarchies; deliberately not cleared
  std::vector<Mark> more_;
};
