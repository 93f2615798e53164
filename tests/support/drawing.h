#pragma once

#include "tests/support/bytes.h"
#include "tests/support/hooktablet.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

/// A text put together from its parts.
template <class... T>
std::string textOf(T const &...parts)
{
  std::ostringstream os;
  (os << ... << parts);
  return os.str();
}

/// A visible tablet of 100 x 80 pels on both layers that records, and maps (x, y) to (2 x + 10, 3 y).
struct DrawingTest : testing::Test {
  CheckedLog log;
  LogScope i{log, "i", {100, 80}};
  LogScope o{log, "o", {100, 80}};
  gxUITablet tablet{&i, &o};
  gxColor const red{255, 0, 0}, dark{1, 2, 3};

  DrawingTest()
  {
    i.quietEnd(), o.quietEnd();
    tablet.visible(true);
    tablet.baseMap(gxXform<2>(gxMatrix<2>(2, 0, 0, 3), {10, 0}));
    tablet.recordOn() = true;
    log.take();
  }
  /// The bytes that were recorded since the last call.
  std::vector<unsigned char> recorded()
  {
    auto bytes = bytesOf(tablet.sketch());
    tablet.sketch().erase();
    return bytes;
  }
};
