#pragma once

#include "foundation/archive.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

/// One object on its way through an archive: the marks of its classes, and its place in the stack of objects that are
/// passing in this thread. Lives as a local variable of the routine that passes the object, so that an exception takes
/// the marks with it.
class gx_Pass
{
 public:
  /// Throws gxArchive::Errors if the object would be nested too deep.
  gx_Pass(gxArchive &archive, gxPersistent &object)
      : archive_(archive),
        object_(&object),
        enclosing_(archive.pass_),
        outer_(innermost_),
        depth_(enclosing_ ? enclosing_->depth_ + 1 : 1)
  {
    if (depth_ > archive.limits_.maxDepth)
      refuseDepth();
    innermost_ = archive.pass_ = this;
  }
  ~gx_Pass()
  {
    archive_.pass_ = enclosing_;
    innermost_ = outer_;
  }
  gx_Pass(gx_Pass const &) = delete;
  gx_Pass &operator=(gx_Pass const &) = delete;

  /// The object that is passing just now, or null.
  static gx_Pass *innermost() { return innermost_; }
  /// True if the object is passing through the archive in this thread.
  static bool isPassing(gxArchive const &archive, gxPersistent const &object);

  gxArchive &archive() const { return archive_; }

  /// A part of the object: its address, and the address that stands for its class or, without one, its size. Passed
  /// by value, so that it stays in registers.
  struct Mark {
    Mark() = default;
    Mark(void const *p, std::size_t size, void const *level)
        : part(p), kind(level ? reinterpret_cast<std::uintptr_t>(level) : size)
    {
    }
    void const *part;
    std::uintptr_t kind;
    bool operator==(Mark const &) const = default;
  };

  bool isMarked(Mark mark) const
  {
    for (std::size_t i = 0; i < numMarks_; ++i) {
      if (marks_[i] == mark)
        return true;
    }
    return more_ && isMarkedFurther(mark);
  }
  void mark(Mark mark)
  {
    if (numMarks_ < marks_.size())
      marks_[numMarks_++] = mark;
    else
      markFurther(mark);
  }

 private:
  [[noreturn]] void refuseDepth() const;
  void markFurther(Mark mark);
  bool isMarkedFurther(Mark mark) const;

  static thread_local gx_Pass *innermost_ GX_INITIAL_EXEC;

  gxArchive &archive_;
  gxPersistent *object_;
  gx_Pass *enclosing_;  // in the same archive
  gx_Pass *outer_;      // in any archive
  int depth_;           // in the same archive, from 1
  std::uint32_t numMarks_ = 0;
  std::array<Mark, 8> marks_;  // no heap for all but the widest hierarchies; deliberately not cleared
  std::unique_ptr<std::vector<Mark>> more_;
};
