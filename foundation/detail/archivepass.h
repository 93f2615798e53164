#pragma once

#include "foundation/archive.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

// A thread-local variable of the library that is found without a call; each passing object needs two.
#if defined(__ELF__) && defined(__GNUC__)
#define GX_INITIAL_EXEC __attribute__((tls_model("initial-exec")))
#else
#define GX_INITIAL_EXEC
#endif

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

  bool isMarked(void const *part, std::size_t size, void const *level) const
  {
    for (std::size_t i = 0; i < numMarks_; ++i) {
      if (marks_[i] == Mark{part, size, level})
        return true;
    }
    return more_ && isMarkedFurther(part, size, level);
  }
  void mark(void const *part, std::size_t size, void const *level)
  {
    if (numMarks_ < marks_.size())
      marks_[numMarks_++] = {part, size, level};
    else
      markFurther({part, size, level});
  }

 private:
  struct Mark {
    void const *part;
    std::size_t size;
    void const *level;
    bool operator==(Mark const &) const = default;
  };

  [[noreturn]] void refuseDepth() const;
  void markFurther(Mark const &mark);
  bool isMarkedFurther(void const *part, std::size_t size, void const *level) const;

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
