#pragma once

#include "foundation/rect.h"
#include "foundation/vector.h"

#include <array>
#include <cstddef>
#include <string>
#include <vector>

/// What check finds fault with.
struct Finding {
  enum Kind {
    notRead,  ///< the file
    leftOut,  ///< pads of shapes that are not known
    noSize,   ///< a pad
    refused,  ///< an outline that crosses itself or cannot be rounded
    gap,      ///< an outline that does not close
    overlap,  ///< of two pads
    size,     ///< the body is not as large as the name says
    pitch     ///< no two pads are as far apart as the name says
  };
  static constexpr std::array<char const *, 8> names = {"not read", "left out", "no size", "refused",
                                                        "gap",      "overlap",  "size",    "pitch"};

  Kind kind = notRead;
  std::string text;                 ///< tells it
  std::vector<std::size_t> pads;    ///< outlines of the pads that it is about
  std::vector<gxVector<2>> places;  ///< gap: its ends; pitch: the middles of the two nearest; else where it is
  std::vector<gxRect> boxes;        ///< size: as it is, and about the same middle as its name says
  std::string layer;                ///< refused: whose lines were to make the outline

  char const *name() const { return names[kind]; }
};
