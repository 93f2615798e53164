#include "dispc/sketchop.h"
#include "dispc/sketchop_shapes.h"
#include "dispc/sketchop_text.h"
#include "dispc/uierror.h"
#include "foundation/circle.h"
#include "tests/support/archived.h"
#include "tests/support/bytes.h"
#include "tests/support/opvariants.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <set>

// The stored form of a sketch.

namespace
{
using Stream = std::vector<unsigned char>;

/// A record behind the default properties, in stock cyan on the image.
Bytes record(int code, Bytes const &payload)
{
  return Bytes().head(code, 0).cyan().add(payload);
}

/// A stored sketch of the first version with this stream.
std::string firstVersion(Stream const &stream)
{
  std::vector<unsigned char> const head = Bytes().u8(0).i32(static_cast<long>(stream.size())).get();
  return std::string(head.begin(), head.end()) + std::string(stream.begin(), stream.end());
}

/// How a load ended, if not as it may: "" after success or an exception that loading documents, with the target as it
/// was. Whatever has been loaded can be walked.
std::string misbehaviour(std::string const &bytes)
{
  gxUISketch target = sketchOf(Bytes().prefix(true, 3).head(17, 1).index(7).get());
  Stream const before = bytesOf(target);
  std::string what;
  try {
    loadArchived(bytes, target);
    for (long at = 0; at < target.size();) {
      gx_UISketchOpHeader header;
      at += gfParseUISketch(target, at, header, nullptr);
    }
    return "";
  } catch (gxArchive::Errors const &) {
  } catch (gxBadPointer const &) {
  } catch (gxUIError::InvalidUISketch const &) {
  } catch (gxUIError::NotImplemented const &) {
  } catch (gxGraphicProps::BadParams const &) {
  } catch (std::exception const &e) {
    what = e.what();
  }
  if (bytesOf(target) != before)
    what += ", and the target has changed";
  target.opcode(40, gxGraphicProps());  // they are in force, and so are not written
  if (bytesOf(target).size() != before.size())
    what += ", and the properties in force have changed";
  return what;
}

/// Damages each byte in a few ways, and cuts the stream off at each.
void expectDamageIsMet(std::string const &bytes)
{
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    for (int const change : {0x01, 0x80, 0xFF}) {
      std::string damaged = bytes;
      damaged[i] = static_cast<char>(damaged[i] ^ change);
      EXPECT_EQ(misbehaviour(damaged), "") << "byte " << i << " ^ " << change;
    }
    gxUISketch target;
    EXPECT_THROW(loadArchived(bytes.substr(0, i), target), gxArchive::Errors) << "cut at " << i;
    EXPECT_TRUE(target.isNull());
  }
}
}  // namespace

TEST(SketchArchive, recordsComeBackByteForByte)
{
  for (OpVariant const &variant : opVariants()) {
    for (unsigned seed = 0; seed < 6; ++seed) {
      gxUISketch const sketch = recorded(variant, seed);
      if (variant.nests() && !sketch.isNull()) {
        EXPECT_THROW(archivedBytes(sketch), gxUIError::NotImplemented);
        continue;
      }
      EXPECT_EQ(bytesOf(throughArchive(sketch)), bytesOf(sketch)) << variant.name << ", seed " << seed;
    }
  }
}

TEST(SketchArchive, longSketchesLosePropertiesThatChangeNothingAndNoMore)
{
  for (unsigned seed = 1; seed <= 3; ++seed) {
    gxUISketch const sketch = randomSketch(seed, 200);
    gxUISketch const once = throughArchive(sketch);
    EXPECT_LE(once.size(), sketch.size());
    EXPECT_EQ(bytesOf(throughArchive(once)), bytesOf(once));
  }
}

TEST(SketchArchive, loadingAppends)
{
  gxUITablet tablet;
  tablet.recordOn().push(true);
  gxGraphicProps const wide(gxColor::red, 3, gxGraphicProps::penSolid, false);
  tablet.draw(gxPoint(1, 2), wide, gxUITablet::image);
  gxUISketch const stored = tablet.sketch();
  Stream const once = bytesOf(stored);
  EXPECT_EQ(once[0], 40);

  // What is in force already is not written again, and what is in force then is known.
  std::string const archived = archivedBytes(stored);
  loadArchived(archived, tablet.sketch());
  Stream expected = once;
  expected.insert(expected.end(), once.begin() + 22, once.end());
  EXPECT_EQ(bytesOf(tablet.sketch()), expected);
  gxUISketch &sketch = tablet.sketch();
  sketch.erase();
  loadArchived(archived, sketch);
  tablet.draw(gxPoint(3, 4), wide, gxUITablet::image);
  EXPECT_EQ(sketch.size(), static_cast<long>(once.size()) + 24);
}

TEST(SketchArchive, storesAVersionACountAndObjects)
{
  EXPECT_EQ(archivedBytes(gxUISketch()), bytesOf({1, 0, 0, 0, 0}));
  gxUISketch const target = sketchOf(Bytes().head(17, 0).cyan().get());
  gxUISketch same = target;
  loadArchived(bytesOf({1, 0, 0, 0, 0}), same);
  loadArchived(bytesOf({1, 255, 255, 255, 255}), same);
  loadArchived(bytesOf({0, 0, 0, 0, 0}), same);
  loadArchived(bytesOf({0, 255, 255, 255, 255}), same);
  EXPECT_EQ(bytesOf(same), bytesOf(target));

  // Two circles; properties of its own stand in the header of the second.
  gxUITablet tablet;
  tablet.recordOn().push(true);
  gxCircle const first(gxPoint(1, 2), 3), second(gxPoint(4, 5), 6);
  gxGraphicProps const filled(gxColor(9), 5, gxGraphicProps::penSolid, true);
  tablet.draw(first, gxGraphicProps(), gxUITablet::image);
  tablet.draw(second, filled, gxUITablet::both);
  auto const named = [](std::string const &name) {
    return bytesOf({1, static_cast<int>(name.size()), 0}) + name + bytesOf({0});
  };
  auto const known = [](int number) { return bytesOf({2, number, 0, 0}); };
  EXPECT_EQ(archivedBytes(tablet.sketch()),
            bytesOf({1, 2, 0, 0, 0}) + named("gx_UISketchOpHeader") + bytesOf({0, 0, 0, 0, 0}) +
                archivedBytes(gxColor::cyan) + bytesOf({4, 0, 0, 0}) + named("gx_UISketchOpCircle") +
                archivedBytes(first) + known(0) + bytesOf({1, 0}) + archivedBytes(filled) + bytesOf({2, 0, 0, 0}) +
                archivedBytes(gxColor(9)) + bytesOf({29, 0, 0, 0}) + known(1) + archivedBytes(second));
}

TEST(SketchArchive, refusesNestedSketchesAndUnknownVersions)
{
  gxUISketch nested = sketchOf(record(15, Bytes().f64s({0, 0}).i32(0)).get());
  EXPECT_THROW(archivedBytes(nested), gxUIError::NotImplemented);
  for (int const version : {2, 127, 255}) {
    gxUISketch target = sketchOf(Bytes().head(17, 0).cyan().get());
    Stream const before = bytesOf(target);
    try {
      loadArchived(bytesOf({version, 0, 0, 0, 0}), target);
      FAIL() << version;
    } catch (gxArchive::UnknownVersion const &e) {
      EXPECT_EQ(e.file(), "dispc/uisketch");
      EXPECT_GT(e.line(), 0);
    }
    EXPECT_EQ(bytesOf(target), before);
  }
}

TEST(SketchArchive, refusesPointersThatAreNullOrOfAnotherClass)
{
  gxUISketch target;
  Bytes const null = Bytes().u8(1).i32(1).zeros(40);
  EXPECT_THROW(loadArchived(std::string(null.get().begin(), null.get().end()), target), gxBadPointer);

  // The code of the header may change to that of another record with the same op, and to no other.
  std::string const stored = archivedBytes(sketchOf(record(4, Bytes().f64s({1, 2, 3})).get()));
  std::size_t const code = stored.find("gx_UISketchOpCircle") - 3 - 4;
  ASSERT_EQ(stored[code], 4);
  for (int other = 0; other < 60; ++other) {
    std::string changed = stored;
    changed[code] = static_cast<char>(other);
    if (other == 4 || other == 29)
      EXPECT_NO_THROW(loadArchived(changed, target)) << other;
    else
      EXPECT_THROW(loadArchived(changed, target), gxArchive::Errors) << other;
  }
  EXPECT_EQ(target.size(), 2 * 32);
}

TEST(SketchArchive, headersAndOpsNameTheModuleOfAnUnknownVersion)
{
  auto const load = [](std::string const &stored, std::string const &className) {
    std::string changed = stored;
    changed.at(changed.find(className) + className.size()) = 1;
    gxUISketch target;
    try {
      loadArchived(changed, target);
    } catch (gxArchive::UnknownVersion const &e) {
      return e.file() + (e.line() > 0 ? ", some line" : "");
    }
    return std::string("accepted");
  };
  for (OpVariant const &variant : opVariants()) {
    gxUISketch const sketch = recorded(variant, 1);
    if (sketch.isNull() || variant.nests())
      continue;
    std::string const stored = archivedBytes(sketch);
    std::size_t const name = stored.find("gx_UISketchOp", stored.find("gx_UISketchOpHeader") + 19);
    auto const length = static_cast<std::size_t>(static_cast<unsigned char>(stored.at(name - 2)));
    EXPECT_EQ(load(stored, stored.substr(name, length)), "dispc/sketchop, some line") << variant.name;
    EXPECT_EQ(load(stored, "gx_UISketchOpHeader"), "dispc/sketchop, some line") << variant.name;
  }
}

TEST(SketchArchive, anOpThatReadsAnotherRecordIsStoredAnew)
{
  Bytes const first = Bytes().f64s({1, 2}), second = Bytes().f64s({3, 4});
  gxPtrHandle<gx_UISketchOpData> op(gfCreateUISketchOpData(0)), once, again, same;
  std::stringstream stream;
  {
    gxStoringArchive archive(stream);
    op->parseByteStream(first.get().data());
    archive || op;
    op->parseByteStream(second.get().data());
    archive || op || op;
  }
  gxLoadingArchive(stream) || once || again || same;
  EXPECT_EQ(dynamic_cast<gx_UISketchOpPoint &>(*once).point(), gxPoint(1, 2));
  EXPECT_EQ(dynamic_cast<gx_UISketchOpPoint &>(*again).point(), gxPoint(3, 4));
  EXPECT_EQ(again.rep(), same.rep());
}

TEST(SketchArchive, damageLeavesTheTargetAsItWas)
{
  for (OpVariant const &variant : opVariants()) {
    SCOPED_TRACE(variant.name);
    if (variant.records() && !variant.nests())
      expectDamageIsMet(archivedBytes(recorded(variant, 1)));
  }
}

TEST(SketchArchive, opsFromArchivesOutliveTheStream)
{
  gxPtrHandle<gx_UISketchOpData> loaded;
  {
    gxUISketch sketch = sketchOf(record(11, Bytes().f64s({1, 2}).cyan().i32s({3, 4}).text("kept").u8(0)).get());
    gx_UISketchOpHeader header;
    gx_UISketchOpData *op = nullptr;
    gfParseUISketch(sketch, 0, header, &op);
    gxPtrHandle<gx_UISketchOpData> const parsed(op);
    loaded = throughArchive(parsed);
    sketch.eraseAndDelete();
  }
  auto &text = dynamic_cast<gx_UISketchOpString &>(*loaded);
  EXPECT_EQ(text.text(), "kept");
  gx_UISketchOpString copy(text);
  Bytes const other = Bytes().f64s({1, 2}).cyan().i32s({3, 4}).text("looked at").u8(0);
  text.parseByteStream(other.get().data());
  EXPECT_EQ(text.text(), "looked at");
  EXPECT_EQ(copy.text(), "kept");
}

namespace
{
/// A payload of the first version, and what becomes of it.
struct OldPayload {
  std::vector<int> codes;
  Bytes old;
  Bytes now;
};

Bytes ellipseFields(double x, double y, double rx, double ry, double angle, bool reversed)
{
  return Bytes().f64s({x, y, rx, ry, angle}).u8(reversed).u8(0).zeros(6);
}

Bytes join(std::initializer_list<Bytes> parts)
{
  Bytes all;
  for (Bytes const &part : parts)
    all.add(part);
  return all;
}

Bytes junk(int n)
{
  Bytes bytes;
  for (int i = 0; i < n; ++i)
    bytes.u8(0xA5);
  return bytes;
}

Bytes zeros(int n)
{
  return Bytes().zeros(n);
}

std::vector<OldPayload> oldPayloads()
{
  Bytes const inner = ellipseFields(1, 2, 3, 4, 0.5, false), outer = ellipseFields(5, 6, 7, 8, 0.25, true);
  Bytes const junkInGeometry = join({Bytes().f64s({1, 2, 3, 4, 0.5}).u8(0).u8(1), junk(6)});
  Bytes const rect1 = Bytes().f64s({1, 2, 3, 4, 5, 7, 1, 0.5, 0.25}), rect2 = Bytes().f64s({9, 8, 2, 0, 0, 3, 6, 0, 1});
  Bytes const old1 = join({Bytes().f64s({1, 2, 3, 4, 5, 7, 99, 0.5, 0.25}), junk(24)});  // the determinant is not read
  Bytes const old2 = join({rect2, junk(24)});
  Bytes const oldSection = join({inner, junk(128), outer, junk(128), Bytes().f64s({0.5, 1.5}).u8(0).u8(1), junk(70)});
  Bytes const section =
      join({inner, zeros(128), outer, zeros(128), Bytes().f64s({0.5, 2.0}).u8(0).u8(1).u8(0), zeros(181)});
  Bytes const pels = Bytes().u8(1).i32s({1, 2, 3, 4});
  Bytes const four = Bytes().f64s({1, 2, 3, 4});
  Bytes const client = join({zeros(17), four, zeros(40)});
  Bytes const second = Bytes().rgb(1, 2, 3), width = Bytes().i32(3), noColor = Bytes().index(0);
  Bytes const corners = Bytes().f64s({1, 2, 3, 4, 5, 6});
  Bytes const id = Bytes().i32(1).zeros(4).text("identity");
  return {
      {{6},
       join({junkInGeometry, junk(128), Bytes().f64s({1.5, 2.5})}),
       join({inner, zeros(128), Bytes().f64s({1.5, 2.5})})},
      {{7}, oldSection, section},
      {{8, 31}, old1, join({rect1, zeros(80)})},
      {{9}, join({old1, old2}), join({rect1, zeros(24), rect2, zeros(192)})},
      {{10}, corners, corners},
      {{16, 18}, pels, pels},
      {{16, 18}, join({Bytes().u8(0), four}), client},
      {{25}, join({pels, second, width}), join({pels, noColor, second, width})},
      {{25}, join({Bytes().u8(0), four, second, width}), join({client, noColor, second, width})},
      {{27}, join({junk(56), corners, junk(72)}), join({zeros(56), corners, zeros(128)})},
      {{32, 47}, join({junk(1), four}), four},
      {{33}, join({id, Bytes().i32(3).text("abc")}), join({noColor, id, Bytes().i32(3).text("abc")})},
      {{37}, join({Bytes().f64s({1, 2, 0.5}).i32(-7), junk(4)}), Bytes().f64s({1, 2, 0.5}).i32s({-7, -1})},
      {{39}, join({oldSection, Bytes().u8(0).u8(1)}), join({section, Bytes().u8(0).u8(1)})},
  };
}
}  // namespace

TEST(FirstVersion, oldPayloadsBecomePresentOnes)
{
  for (OldPayload const &row : oldPayloads()) {
    for (int const code : row.codes) {
      SCOPED_TRACE(testing::Message() << "code " << code << ", " << row.old.get().size() << " bytes");
      // Something behind it shows that the length is right; something before it, that an op is used again.
      Bytes const end = record(0, Bytes().f64s({1, 2}));
      Bytes const old = join({record(code, row.old), record(code, row.old), end});
      Bytes const now = join({record(code, row.now), record(code, row.now), end});
      gxUISketch loaded;
      loadArchived(firstVersion(old.get()), loaded);
      EXPECT_EQ(bytesOf(loaded), now.get());

      std::unique_ptr<gx_UISketchOpData> const op(gfCreateUISketchOpData(code));
      EXPECT_EQ(op->parseVersion0ByteStream(row.old.get().data()), static_cast<long>(row.old.get().size()));
      EXPECT_EQ(op->size(), static_cast<long>(row.now.get().size()));
    }
  }
}

TEST(FirstVersion, otherPayloadsAreAsTheyWere)
{
  std::set<int> changed = {34, 38, 41};
  for (OldPayload const &row : oldPayloads())
    changed.insert(row.codes.begin(), row.codes.end());
  for (OpVariant const &variant : opVariants()) {
    if (!variant.records() || changed.count(static_cast<int>(variant.code)))
      continue;
    Stream const stream = bytesOf(recorded(variant, 3));
    gxUISketch loaded;
    loadArchived(firstVersion(stream), loaded);
    EXPECT_EQ(bytesOf(loaded), stream) << variant.name;
  }
}

TEST(FirstVersion, sketchesInsideAreOfTheFirstVersionToo)
{
  auto const around = [](Bytes const &stream) {
    return record(15, join({Bytes().f64s({3, 4}).i32(static_cast<long>(stream.get().size())), stream}));
  };
  Bytes const pels = record(0, Bytes().f64s({1, 2})), four = Bytes().f64s({1, 2, 3, 4});
  Bytes const old = join({pels, around(around(record(32, join({junk(1), four})))), pels});
  Bytes const now = join({pels, around(around(record(32, four))), pels});
  gxUISketch target;
  loadArchived(firstVersion(old.get()), target);
  EXPECT_EQ(bytesOf(target), now.get());
  expectDamageIsMet(firstVersion(old.get()));

  // As deep as it can be played, and one deeper.
  Bytes deep;
  for (int i = 0; i < 31; ++i)
    deep = around(deep);
  target.erase();
  loadArchived(firstVersion(deep.get()), target);
  EXPECT_EQ(bytesOf(target), deep.get());
  gxUITablet().draw(target, gxPoint(), gxUITablet::image);
  EXPECT_THROW(loadArchived(firstVersion(around(deep).get()), target), gxArchive::Errors);
}

TEST(FirstVersion, damageLeavesTheTargetAsItWas)
{
  for (OldPayload const &row : oldPayloads()) {
    SCOPED_TRACE(testing::Message() << "code " << row.codes[0] << ", " << row.old.get().size() << " bytes");
    Bytes const props = join({Bytes().prefix(true, 2), record(row.codes[0], row.old)});
    expectDamageIsMet(firstVersion(props.get()));
  }
  // Shorter streams in a stored form that is whole: the record is cut, not the archive.
  for (OldPayload const &row : oldPayloads()) {
    Stream stream = record(row.codes[0], row.old).get();
    for (stream.pop_back(); !stream.empty(); stream.pop_back()) {
      gxUISketch target;
      EXPECT_THROW(loadArchived(firstVersion(stream), target), gxArchive::Errors) << row.codes[0];
      EXPECT_TRUE(target.isNull());
    }
  }
}

TEST(FirstVersion, badHeadsKeepTheirNames)
{
  gxUISketch target;
  auto const load = [&](Bytes const &stream) { loadArchived(firstVersion(stream.get()), target); };
  EXPECT_THROW(load(record(13, Bytes())), gxUIError::InvalidUISketch);
  EXPECT_THROW(load(record(200, Bytes())), gxUIError::InvalidUISketch);
  EXPECT_THROW(load(join({Bytes().prefix(), Bytes().prefix(), record(17, Bytes())})), gxUIError::InvalidUISketch);
  EXPECT_THROW(load(join({Bytes().prefix(false, -1), record(17, Bytes())})), gxGraphicProps::BadParams);
  EXPECT_THROW(load(record(4, Bytes().f64s({1, 2, -3}))), gxArchive::Errors);
  EXPECT_THROW(load(record(28, Bytes().i32s({3, 0}))), gxArchive::Errors);  // no fill mode, which could not be stored
  EXPECT_TRUE(target.isNull());
}
