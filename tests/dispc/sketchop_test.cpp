#include "dispc/sketchop.h"

#include "dispc/sketchop_blocks.h"
#include "dispc/sketchop_curves.h"
#include "dispc/sketchop_shapes.h"
#include "dispc/sketchop_text.h"
#include "dispc/uierror.h"
#include "foundation/shapeserror.h"
#include "tests/support/bytes.h"
#include "tests/support/opvariants.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <set>
#include <sstream>

// Laws of op objects, over a table of all drawing operations.

namespace
{
using Op = std::unique_ptr<gx_UISketchOpData>;
using Stream = std::vector<unsigned char>;

/// Calls what(record number, first byte, header, bytes of head and properties, bytes of the payload) for each record.
template <class What>
void eachRecord(gxUISketch &sketch, What const &what)
{
  long at = 0;
  for (int number = 0; at < sketch.size(); ++number) {
    gx_UISketchOpHeader header;
    long const bytes = gfParseUISketch(sketch, at, header, nullptr);
    long const head = gx_UISketchOpHeader().parseByteStream(sketch.bytes() + at);
    what(number, sketch.bytes() + at, header, head, bytes - head);
    at += bytes;
  }
  EXPECT_EQ(at, sketch.size());
}

/// One op for each code, used again and again, as a replay does.
class Ops
{
 public:
  gx_UISketchOpData &operator[](long code)
  {
    Op &op = ops_.at(static_cast<std::size_t>(code));
    if (!op)
      op.reset(gfCreateUISketchOpData(code));
    return *op;
  }

 private:
  std::array<Op, 48> ops_;
};

std::string textOf(gx_UISketchOpData const &op)
{
  std::ostringstream os;
  os << op;
  return os.str();
}

/// A nested sketch, which holds whatever bytes.
gxUISketch nested(std::string const &content)
{
  gxUISketch sketch;
  long const size = static_cast<long>(content.size());
  auto to = sketch.record(gx_SketchCode::sketch, 1, gxGraphicProps(), gxColor(0), 20 + size);
  to.vector({3, 4}).word(size).bytes(content.data(), content.size());
  return sketch;
}

std::vector<gxUISketch> allRecords()
{
  std::vector<gxUISketch> all = {nested(""), nested("short"), nested(std::string(300, 'n'))};
  for (OpVariant const &variant : opVariants())
    for (unsigned seed = 0; seed < 12; ++seed)
      all.push_back(recorded(variant, seed));
  return all;
}
}  // namespace

TEST(SketchOps, eachCodeHasAnOpAndEachOpARecord)
{
  std::set<long> seen;
  for (gxUISketch &sketch : allRecords())
    eachRecord(sketch,
               [&](int, auto *, gx_UISketchOpHeader const &header, long, long) { seen.insert(header.opcode()); });
  for (long code = -2; code < 300; ++code) {
    if (seen.count(code)) {
      Op const op(gfCreateUISketchOpData(code));
      gx_SketchCodeInfo const &info = *gf_sketchCodeInfo(code);
      EXPECT_TRUE(info.open ? op->size() >= info.size : op->size() == info.size) << info.name;
      gxUISketch blank;
      op->populateSketch(blank);
      EXPECT_EQ(blank.size(), op->size()) << info.name << ", which has read nothing";
    } else {
      EXPECT_THROW(gfCreateUISketchOpData(code), gxUIError::InvalidUISketch) << code;
    }
  }
  for (long const assigned : {0, 12, 14, 23, 25, 35, 37, 39, 41, 47})
    EXPECT_EQ(seen.count(assigned), 1u) << assigned;
}

TEST(SketchOps, parsedAndRebuiltRecordsHaveTheSameBytes)
{
  Ops reused;
  for (gxUISketch &sketch : allRecords()) {
    gxUISketch rebuilt;
    eachRecord(sketch, [&](int, unsigned char const *at, gx_UISketchOpHeader const &header, long head, long size) {
      SCOPED_TRACE(testing::Message() << header << ": " << reused[header.opcode()]);
      gx_UISketchOpData &op = reused[header.opcode()];
      EXPECT_EQ(op.parseByteStream(at + head), size);
      std::string const text = textOf(op);
      EXPECT_EQ(op.size(), size);
      header.populateSketch(rebuilt);
      op.populateSketch(rebuilt);

      // Within bounds it reads the same; with a byte less, or fewer still, it says so.
      Op const fresh(gfCreateUISketchOpData(header.opcode()));
      EXPECT_EQ(fresh->parseWithin(at + head, size), size);
      EXPECT_EQ(textOf(*fresh), text);
      for (long left = size - 1; left >= 0; left = left * 7 / 8 - 1)
        EXPECT_THROW(fresh->parseWithin(at + head, left), gxUIError::InvalidUISketch) << left;
    });
    EXPECT_EQ(bytesOf(rebuilt), bytesOf(sketch));
  }
}

TEST(SketchOps, ownOneRecordEachHoweverManyStandBehind)
{
  // Whatever precedes and follows: the records of long sketches, parsed one by one, are those that were recorded.
  // Prefixes that change nothing are dropped; a sketch that has lost them stays as it is.
  for (unsigned seed = 1; seed <= 5; ++seed) {
    gxUISketch sketch = randomSketch(seed, 300);
    gxUISketch rebuilt, again;
    auto const rebuildTo = [](gxUISketch &target) {
      return [&target](int, unsigned char const *at, gx_UISketchOpHeader const &header, long head, long size) {
        header.populateSketch(target);
        target.append(at + head, size);
      };
    };
    eachRecord(sketch, rebuildTo(rebuilt));
    eachRecord(rebuilt, rebuildTo(again));
    EXPECT_EQ(bytesOf(again), bytesOf(rebuilt));
    EXPECT_LE(rebuilt.size(), sketch.size());

    gx_UISketchOpHeader before, after;
    long at = 0, to = 0;
    while (at < sketch.size() && to < rebuilt.size()) {
      long const bytes = gfParseUISketch(sketch, at, before, nullptr);
      long const kept = gfParseUISketch(rebuilt, to, after, nullptr);
      ASSERT_EQ(before.opcode(), after.opcode());
      ASSERT_EQ(before.props(), after.props());
      at += bytes;
      to += kept;
    }
    EXPECT_EQ(at - sketch.size(), to - rebuilt.size());
  }
}

TEST(SketchOps, copiesStandOnTheirOwn)
{
  gxUISketch sketch = nested("nested");
  gx_UISketchOpSketch first;
  first.parseByteStream(sketch.bytes() + 8);
  gx_UISketchOpSketch const second(first);
  gxUISketch other = nested("");
  first.parseByteStream(other.bytes() + 8);
  EXPECT_EQ(second.sketch().size(), 6);
  EXPECT_EQ(first.sketch().size(), 0);
  first = second;
  EXPECT_EQ(first.sketch().size(), 6);
}

TEST(SketchOps, viewsLookAtTheStream)
{
  gxUITablet tablet;
  tablet.recordOn().push(true);
  gxGenRect const rect({1, 2}, gxMatrix<2>(3, 0, 0, 4), {0, 0});
  tablet.draw(rect, gxGraphicProps(), gxUITablet::image);
  tablet.draw("text", gxPoint(1, 2), gxColor::red, gxColor::blue, gxUIFormat(), gxUITablet::image);
  Stream stream = bytesOf(tablet.sketch());

  gx_UISketchOpGenRect block;
  long const end = 8 + block.parseByteStream(stream.data() + 8);
  EXPECT_EQ(block.rect(), rect);
  gx_UISketchOpGenRect const copy(block);
  Bytes const x = Bytes().f64(7.0);
  std::copy(x.get().begin(), x.get().end(), stream.begin() + 8);
  EXPECT_EQ(block.rect().center(), gxVector<2>(7, 2));
  EXPECT_EQ(copy.rect(), block.rect());

  gx_UISketchOpHeader header;
  gx_UISketchOpString text;
  long const head = header.parseByteStream(stream.data() + end);
  text.parseByteStream(stream.data() + end + head);
  stream[stream.size() - 2] = 's';
  EXPECT_EQ(text.text(), "texs");
  EXPECT_EQ(text.length(), 5);
}

TEST(SketchHeader, propertiesStayInForceAndTheColorIsThatOfTheHead)
{
  Stream const stream = Bytes().prefix(true, 5).head(4, 1).rgb(1, 2, 3).head(0, 200).index(9).get();
  gx_UISketchOpHeader header;
  EXPECT_EQ(header.opcode(), -1);
  EXPECT_EQ(header.layer(), gxUITablet::both);
  EXPECT_FALSE(header.hasProps());
  EXPECT_EQ(header.parseByteStream(stream.data()), 30);
  gxGraphicProps expected(gxColor(1, 2, 3), 5, gxGraphicProps::penSolid, true);
  EXPECT_EQ(header.props(), expected);
  EXPECT_EQ(header.layer(), gxUITablet::overlay);
  EXPECT_EQ(header.parseByteStream(stream.data() + 30), 8);
  expected.penColor(gxColor(9));
  EXPECT_TRUE(header.hasProps());
  EXPECT_EQ(header.props(), expected);
  EXPECT_EQ(header.color(), gxColor(9));
  EXPECT_EQ(static_cast<long>(header.layer()), 200);
  EXPECT_EQ(header.opcode(), 0);
  for (bool const read : {true, false}) {
    if (read)
      header.parseByteStream(stream.data());
    header.props().arrowHead(true);
    header.reInit();
    EXPECT_EQ(header.props(), gx_UISketchOpHeader().props());
    EXPECT_FALSE(header.hasProps());
  }
}

TEST(SketchHeader, refusesBadPropertiesAndStaysAsItWas)
{
  Stream const good = Bytes().prefix(true, 5).head(4, 1).rgb(1, 2, 3).get();
  auto const with = [&](std::size_t at, int byte) {
    Stream bad = good;
    bad[at] = static_cast<unsigned char>(byte);
    return bad;
  };
  Stream const version = with(1, 1), width = with(6, 0x80);
  Stream const twice = Bytes().prefix().prefix(true, 5).head(4, 1).rgb(1, 2, 3).get();
  gx_UISketchOpHeader header;
  header.parseByteStream(good.data());
  gxGraphicProps const props = header.props();
  EXPECT_THROW(header.parseByteStream(version.data()), gxUIError::InvalidUISketch);
  EXPECT_THROW(header.parseByteStream(twice.data()), gxUIError::InvalidUISketch);
  EXPECT_THROW(header.parseByteStream(width.data()), gxGraphicProps::BadParams);
  EXPECT_EQ(header.props(), props);
  EXPECT_EQ(header.opcode(), 4);
}

TEST(SketchParser, leavesNothingBehindWhenItRefuses)
{
  gx_UISketchOpHeader header;
  for (Stream const &stream :
       {Bytes().head(13, 0).cyan().get(), Bytes().head(48, 0).cyan().get(), Bytes().head(255, 0).cyan().zeros(64).get(),
        Bytes().head(36, 0).cyan().zeros(99).get(), Bytes().head(34, 0).cyan().zeros(60).i32(-1).zeros(99).get(),
        Bytes().head(4, 0).cyan().zeros(23).get(), Bytes().head(4, 0).get(), Bytes().prefix().head(17, 0).get(),
        Bytes().prefix().get(), Bytes().get(), Bytes().head(28, 0).cyan().i32s({0, -1}).get(),
        Bytes().head(28, 0).cyan().i32s({0, 0x7FFFFFFF}).zeros(64).get(),
        Bytes().head(12, 0).cyan().zeros(74).zeros(8).i32s({-1, -1}).zeros(9).get()}) {
    gxUISketch sketch;
    sketch.append(stream.data(), static_cast<long>(stream.size()));
    gx_UISketchOpData *op = reinterpret_cast<gx_UISketchOpData *>(&sketch);
    EXPECT_THROW(gfParseUISketch(sketch, 0, header, &op), gxUIError::InvalidUISketch);
    EXPECT_EQ(op, nullptr);
    EXPECT_THROW(gfParseUISketch(sketch, sketch.size() + 1, header, nullptr), gxUIError::InvalidUISketch);
    EXPECT_THROW(gfParseUISketch(sketch, -1, header, nullptr), gxUIError::InvalidUISketch);
  }
  gx_UISketchOpCircle circle;
  Stream const negative = Bytes().f64s({1, 2, -3}).get();
  EXPECT_THROW(circle.parseByteStream(negative.data()), gxShapesError::BadRadius);
}

TEST(SketchDump, tellsEachRecordInALine)
{
  gxUITablet tablet;
  tablet.recordOn().push(true);
  tablet.draw(gxCircle(gxPoint(0.1, -2), 3), gxColor::red, gxUITablet::overlay, true);
  tablet.draw("a\"\xE9", gxPoint(1, 2), gxColor::red, gxColor::blue, gxUIFormat(), gxUITablet::both);
  tablet.set(gxUIRect(1, 2, 3, 4), gxColor(5), gxUITablet::image);
  tablet.draw(gxPolyline({{0, 0}, {1, 1}}, true), gxGraphicProps(), gxUITablet::image);
  std::ostringstream os;
  gfDumpUISketch(os, tablet.sketch());
  EXPECT_EQ(os.str(), R"(0 at 0: circleFilled, overlay, stock 249 #ff0000, width 1, fill: center (0.1, -2), radius 3
1 at 54: string, both, stock 249 #ff0000, width 1: position (1, 2), background stock 252 #0000ff, font -1, topLeft, text "a\x{22}\x{e9}"
2 at 118: setRect, image, 5, width 1: in pels yes, (1, 2) 3 x 4
3 at 165: polyline, image, stock 254 #00ffff, width 1: points 2, (0, 0), (1, 1), closed yes
)");
}

TEST(SketchText, unitsOf16BitsBecomeUtf8)
{
  EXPECT_EQ(gfConvertString(u"a\u00E9\u20AC\U0001F600"), "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
  char16_t const broken[] = {0xD800, 'x', 0xDC00, 0xD800};
  EXPECT_EQ(gfConvertString({broken, 4}), "\xEF\xBF\xBDx\xEF\xBF\xBD\xEF\xBF\xBD");
}
