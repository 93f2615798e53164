// Records a drawing, looks into it, cuts and joins it, stores and loads it, and draws it again elsewhere.
//
//   record_and_replay        writes record_and_replay.sketch; fails if a step does not come out as told
//
// docs/sketches.md goes through it.

#include "backends/pels/pelsurface.h"
#include "dispc/gxdisplay.h"

#include <algorithm>
#include <fstream>
#include <iostream>
#include <map>
#include <string>

namespace
{

bool allAsTold = true;

void tell(bool holds, std::string const &what)
{
  std::cout << (holds ? "" : "NOT SO: ") << what << '\n';
  allAsTold = allAsTold && holds;
}

constexpr auto overlay = gxUITablet::overlay;

bool sameBytes(gxUISketch const &a, gxUISketch const &b)
{
  return a.size() == b.size() && std::equal(a.bytes(), a.bytes() + a.size(), b.bytes());
}

/// How many records there are of each code.
std::map<long, long> codesOf(gxUISketch sketch)
{
  std::map<long, long> codes;
  gx_UISketchOpHeader header;
  for (long at = 0; at < sketch.size();) {
    at += gfParseUISketch(sketch, at, header, nullptr);
    ++codes[header.opcode()];
  }
  return codes;
}

/// The pels of a picture that are not black.
long drawnPels(gxUISketch const &sketch, double scale)
{
  gxPelSurface surface(200, 150);
  gxUITablet tablet(&surface.imageScope(), &surface.overlayScope());
  tablet.baseMap(gxXform<2>(gxMatrix<2>(scale, 0, 0, scale), gxVector<2>(100, 75)));
  tablet.visible(true);
  tablet.draw(sketch, {}, gxUITablet::both);
  long n = 0;
  for (long y = 0; y < 150; ++y)
    for (long x = 0; x < 200; ++x)
      n += surface.picture().get(x, y).value() != 0;
  return n;
}

}  // namespace

int main()
{
  // A tablet without a surface records all the same, unmapped.
  gxUITablet recorder;
  recorder.recordOn().push(true);
  recorder.draw(gxRect({-4, -3}, {8, 6}), gxColor::cyanColor(), overlay, false);
  gxUISketchMark const afterFrame = recorder.sketch().mark();
  for (int i = 0; i < 3; ++i)
    recorder.draw(gxCircle({2.0 * i - 2.0, 0.0}, 0.8), gxColor::yellowColor(), overlay, false);
  gxUISketch const whole = recorder.sketch();
  std::map<long, long> const codes = codesOf(whole);
  tell(codes.size() == 2, "two kinds of records: a rectangle and circles");
  tell(std::any_of(codes.begin(), codes.end(), [](auto const &c) { return c.second == 3; }), "three of one kind");

  // Marks cut it between records; parts join to the whole.
  gxUISketch const frame = whole.subSketch(gxUISketchMark(), afterFrame);
  gxUISketch const circles = whole.subSketch(afterFrame, whole.mark());
  tell(sameBytes(frame + circles, whole), "cut and joined, the bytes are the same");
  gxUISketch without = whole;
  without.remove(gxUISketchMark(), afterFrame);
  tell(codesOf(without).size() == 1, "without the frame only circles are left");

  // Drawn again, at any scale, on any surface.
  tell(10 * drawnPels(whole, 20.0) > 15 * drawnPels(whole, 10.0), "twice as large, it has about twice the pels");
  tell(drawnPels(frame, 10.0) + drawnPels(circles, 10.0) == drawnPels(whole, 10.0), "the parts do not overlap");

  // A recorded drawing that is drawn on a recorder is recorded: sketches are nested.
  gxUITablet other;
  other.recordOn().push(true);
  other.draw(whole, {1.0, 0.0}, gxUITablet::both);
  tell(drawnPels(other.sketch(), 10.0) > 0, "a sketch within a sketch draws, too");

  // Into a file and back.
  {
    std::ofstream os("record_and_replay.sketch", std::ios::binary);
    gxStoringArchive archive(os);
    gxUISketch stored = whole;
    archive || stored;
    archive.flush();
  }
  gxUISketch loaded;
  std::ifstream is("record_and_replay.sketch", std::ios::binary);
  gxLoadingArchive archive(is);
  archive || loaded;
  tell(sameBytes(loaded, whole), "loaded from its file, the bytes are the same");
  return allAsTold ? 0 : 1;
}
