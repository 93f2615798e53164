#include "dispc/uisketch.h"

#include "foundation/archive.h"
#include "tests/support/bytes.h"

#include <gtest/gtest.h>

#include <random>
#include <sstream>

namespace
{
using Model = std::vector<unsigned char>;

gxUISketch filled(std::string const &text)
{
  gxUISketch s;
  s.append(text.data(), static_cast<long>(text.size()));
  return s;
}

std::string textOf(gxUISketch const &s)
{
  return {s.bytes(), s.bytes() + s.size()};
}

/// A mark at a byte: the end of a sketch of that length.
gxUISketchMark markAt(long n)
{
  gxUISketch s;
  s.append(n);
  return s.mark();
}

TEST(Sketch, HeadAndPropertiesHaveTheDocumentedBytes)
{
  gxUISketch s;
  gxGraphicProps props(gxColor(1, 2, 3), 5, gxGraphicProps::gePenStyle(-2), true);
  props.penJoin(gxGraphicProps::gePenJoin(7));
  props.penEndCap(gxGraphicProps::gePenEndCap(9));
  props.arrowHead(false);
  props.showVertex(true);
  s.opcode(40, props);
  s.opcode(2, 1, gxColor(1, 2, 3));
  s.opcode(-1, -1, gxColor(9));
  EXPECT_EQ(bytesOf(s), Bytes()
                            .u8(40)
                            .u8(0)
                            .u8(1)
                            .i32s({5, -2, 7, 9})
                            .u8s({0, 1, 1})
                            .head(2, 1)
                            .rgb(1, 2, 3)
                            .u8(255)
                            .u8(255)
                            .index(9)
                            .get());
}

TEST(Sketch, PropertiesAreWrittenOnlyWhenTheyDiffer)
{
  gxUISketch s;
  s.opcode(40, gxGraphicProps());
  EXPECT_EQ(s.size(), 0) << "a new sketch knows the default properties";
  EXPECT_EQ(s.bytes(), nullptr);
  gxGraphicProps red;
  red.penColor(gxColor(255, 0, 0));
  s.opcode(40, red);
  EXPECT_EQ(s.size(), 22) << "the colour alone counts, although it is not among the bytes";
  red.penColor(gxColor::redColor());
  s.opcode(40, red);
  EXPECT_EQ(s.size(), 22) << "a stock colour equals its components";

  gxUISketch const copy(s);
  gxUISketch again(copy);
  again.opcode(40, red);
  EXPECT_EQ(again.size(), 44) << "a copy knows the default properties only";
  gxUISketch target;
  target.opcode(40, red);
  target = copy;
  target.opcode(40, red);
  EXPECT_EQ(target.size(), 22) << "an assignment leaves what the target knows";
  s.erase();
  EXPECT_GE(s.capacity(), 22);
  s.opcode(40, red);
  EXPECT_EQ(s.size(), 22) << "erasing forgets";
  s.eraseAndDelete();
  EXPECT_EQ(s.bytes(), nullptr);
  EXPECT_EQ(s.capacity(), 0);
  s.append("x", 1);
  EXPECT_EQ(textOf(s), "x");
}

TEST(Sketch, RecordReservesAllOfItsBytesAtOnce)
{
  gxUISketch s;
  gxGraphicProps wide;
  wide.penWidth(3);
  gx_StreamWriter payload = s.record(gx_SketchCode::drawTo, 1, wide, gxColor(7), 16);
  payload.vector({1.5, -2.0});
  EXPECT_EQ(s.capacity(), 22 + 8 + 16);
  s.record(gx_SketchCode::drawTo, 0, wide, gxColor(7), 0);
  EXPECT_EQ(bytesOf(s), Bytes().prefix(false, 3).head(21, 1).index(7).f64s({1.5, -2.0}).head(21, 0).index(7).get());
  EXPECT_EQ(s.capacity(), 2 * 46) << "room doubles";
}

TEST(Sketch, TooLargeAGrowthThrowsAndChangesNothing)
{
  gxUISketch s = filled("abc");
  gxGraphicProps wide;
  wide.penWidth(3);
  for (long const n : {-1L, 0x7fffffffL, 0x7fffffffL - 2, 1L << 40}) {
    EXPECT_THROW(s.append(n), std::bad_alloc) << n;
    EXPECT_THROW(s.record(gx_SketchCode::drawTo, 0, wide, gxColor(7), n), std::bad_alloc) << n;
  }
  try {
    s.append(-1);
  } catch (std::bad_alloc const &e) {
    EXPECT_STREQ(e.what(), "bad allocation");
  }
  EXPECT_EQ(textOf(s), "abc");
  s.opcode(40, wide);
  EXPECT_EQ(s.size(), 3 + 22) << "the properties of a record that failed were not taken as written";
}

TEST(Sketch, WorksOnItself)
{
  gxUISketch s = filled("abcdef");
  s.insert(s, markAt(2));
  EXPECT_EQ(textOf(s), "ababcdefcdef");
  s += s;
  EXPECT_EQ(textOf(s), "ababcdefcdefababcdefcdef");
  gxUISketch const &same = s;
  s = same;
  EXPECT_EQ(s.size(), 24);
  EXPECT_EQ(textOf(s + s), textOf(s) + textOf(s));
  gxUISketch empty;
  empty += empty;
  EXPECT_TRUE(empty.isNull());
}

TEST(Sketch, RemoveBehindTheEndCutsOffTheEnd)
{
  gxUISketch s = filled("abcdef");
  s.remove(markAt(4), markAt(7));
  EXPECT_EQ(textOf(s), "abc");
  s.remove(markAt(1), markAt(9));
  EXPECT_TRUE(s.isNull());
  s = filled("abcdef");
  s.remove(markAt(3), markAt(3));
  s.remove(markAt(4), markAt(1));
  EXPECT_EQ(textOf(s), "abcdef");
  EXPECT_TRUE(s.subSketch(markAt(4), markAt(4)).isNull());
  EXPECT_TRUE(s.subSketch(markAt(4), markAt(1)).isNull());
}

/// Random cutting and joining agrees with the same on a plain vector of bytes.
TEST(Sketch, EditsAgreeWithAPlainVector)
{
  std::mt19937 random(11);
  auto const below = [&](long n) { return n > 0 ? static_cast<long>(random() % static_cast<unsigned long>(n)) : 0; };
  gxUISketch s;
  Model model;
  for (int round = 0; round < 3000; ++round) {
    Model piece(static_cast<std::size_t>(below(40)));
    for (unsigned char &b : piece)
      b = static_cast<unsigned char>(random());
    gxUISketch pieceSketch;
    pieceSketch.append(piece.data(), static_cast<long>(piece.size()));
    long const size = static_cast<long>(model.size());
    long const a = below(size + 1);
    long const b = a + below(size - a + 1);
    switch (below(6)) {
      case 0:
        s.append(piece.data(), static_cast<long>(piece.size()));
        model.insert(model.end(), piece.begin(), piece.end());
        break;
      case 1:
        s.insert(pieceSketch, markAt(a));
        model.insert(model.begin() + a, piece.begin(), piece.end());
        break;
      case 2:
        s.remove(markAt(a), markAt(b));
        model.erase(model.begin() + a, model.begin() + b);
        break;
      case 3:
        EXPECT_EQ(bytesOf(s.subSketch(markAt(a), markAt(b))), Model(model.begin() + a, model.begin() + b));
        break;
      case 4:
        s += pieceSketch;
        model.insert(model.end(), piece.begin(), piece.end());
        break;
      default: {
        Model joined = model;
        joined.insert(joined.end(), piece.begin(), piece.end());
        EXPECT_EQ(bytesOf(s + pieceSketch), joined);
        if (size > 2000) {
          s.erase();
          model.clear();
        }
      }
    }
    ASSERT_EQ(bytesOf(s), model) << "round " << round;
    ASSERT_LE(s.size(), s.capacity());
    ASSERT_EQ(s.mark(), markAt(s.size()));
  }
}

TEST(Sketch, MarkPassesThroughAnArchive)
{
  std::ostringstream os;
  gxUISketchMark mark = markAt(0x01020304);
  gxStoringArchive(os) || mark;
  std::istringstream is(os.str());
  gxLoadingArchive in(is);
  gxUISketchMark loaded;
  in || loaded;
  EXPECT_EQ(loaded, mark);
}

TEST(SketchCodes, EveryAssignedCodeHasARow)
{
  for (long code = -1; code <= 48; ++code) {
    bool const assigned = code >= 0 && code <= 47 && code != 13 && code != 24 && code != 36;
    EXPECT_EQ(gf_sketchCodeInfo(code) != nullptr, assigned) << code;
  }
  EXPECT_EQ(gf_sketchCodeInfo(46)->size, 65);
  EXPECT_EQ(gf_sketchCodeInfo(12)->size, 91);
}
}  // namespace
