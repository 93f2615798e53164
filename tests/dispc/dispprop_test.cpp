#include "dispc/dispprop.h"

#include "tests/support/archived.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <vector>

namespace
{
using Props = gxGraphicProps;

/// One change of each field.
std::vector<std::function<void(Props &)>> const changes = {
    [](Props &p) { p.penColor(gxColor::red); },
    [](Props &p) { p.penWidth(0x01020304); },
    [](Props &p) { p.penStyle(static_cast<Props::gePenStyle>(-7)); },
    [](Props &p) { p.fill(true); },
    [](Props &p) { p.penJoin(Props::joinMiter); },
    [](Props &p) { p.penEndCap(static_cast<Props::gePenEndCap>(0x7FFFFFFF)); },
    [](Props &p) { p.arrowHead(false); },
    [](Props &p) { p.arrowHeadForward(false); },
    [](Props &p) { p.showVertex(true); },
};

/// The coding of sketches, with a look at the bytes behind it.
std::string encoded(Props const &props)
{
  std::string bytes(Props::codedSize + 2, '\x55');
  auto *const begin = reinterpret_cast<unsigned char *>(bytes.data());
  EXPECT_EQ(Props::encode(begin, props), begin + Props::codedSize);
  EXPECT_EQ(bytes.substr(Props::codedSize), "\x55\x55");
  return bytes.substr(0, Props::codedSize);
}

/// From the version byte on.
void decode(std::string const &bytes, Props &target)
{
  Props::decode(reinterpret_cast<unsigned char const *>(bytes.data()) + 1, target);
}

/// The properties with the changes whose bits are set.
Props changed(unsigned bits)
{
  Props p;
  for (std::size_t i = 0; i < changes.size(); ++i)
    if (bits >> i & 1)
      changes[i](p);
  return p;
}

unsigned const all = (1u << changes.size()) - 1;
}  // namespace

TEST(GraphicProps, Defaults)
{
  Props const p;
  EXPECT_EQ(p.penColor(), gxColor::cyanColor());
  EXPECT_TRUE(p.penColor().isStockColor());
  EXPECT_EQ(p.penWidth(), 1);
  EXPECT_TRUE(p.penStyle() == 0 && p.penJoin() == 0 && p.penEndCap() == 0);
  EXPECT_TRUE(p.arrowHead() && p.arrowHeadForward());
  EXPECT_FALSE(p.fill() || p.showVertex());

  Props expected;
  expected.penColor(gxColor(3));
  expected.penWidth(0);
  expected.penStyle(Props::penDot);
  expected.fill(true);
  EXPECT_EQ(Props(gxColor(3), 0, Props::penDot, true), expected);
}

TEST(GraphicProps, BadWidthChangesNothing)
{
  for (long const bad : {-1L, -2147483648L, 1L << 31, (1L << 32) + 5, -(1L << 40)}) {
    Props p = changed(all);
    EXPECT_THROW(p.penWidth(bad), Props::BadParams) << bad;
    EXPECT_EQ(p, changed(all));
    EXPECT_THROW(Props(gxColor(), bad, Props::penSolid, false), Props::BadParams) << bad;
  }
  Props p;
  p.penWidth(2147483647);
  EXPECT_EQ(p.penWidth(), 2147483647);
}

TEST(GraphicProps, EveryFieldCountsInComparisonCopyAndArchive)
{
  for (unsigned bits = 0; bits <= all; ++bits) {
    Props const p = changed(bits);
    for (std::size_t i = 0; i < changes.size(); ++i)
      ASSERT_EQ(p == changed(bits ^ 1u << i), false) << p << ", field " << i;
    Props const copy(p);
    ASSERT_EQ(copy, p);
    Props assigned = changed(~bits & all);
    assigned = p;
    ASSERT_EQ(assigned, p);
    Props loaded = changed(~bits & all);
    loadArchived(archivedBytes(p), loaded);
    ASSERT_EQ(loaded, p);
  }
  Props red, stockRed;
  red.penColor(gxColor(255, 0, 0));
  stockRed.penColor(gxColor::red);
  EXPECT_EQ(red, stockRed) << "colors compare by their own rule";
}

TEST(GraphicProps, ArchiveForm)
{
  std::string const fields = bytesOf({0, 7, 249, 0, 255,  0,    0,           // color
                                      4, 3, 2,   1, 0xF9, 0xFF, 0xFF, 0xFF,  // width, style
                                      1, 2, 0,   0, 0,    0xFF, 0xFF, 0xFF, 0x7F, 0, 0, 1});
  std::string const bytes = archivedBytes(changed(all));
  ASSERT_EQ(bytes, bytesOf({0}) + fields);
  EXPECT_EQ(refusalOfVersion(bytes, 0, Props(), "dispc/dispprop", -1), "");

  // no check of ranges on loading, not even of the width
  std::string negative = bytes;
  negative.replace(8, 4, "\xFF\xFF\xFF\xFF");
  Props p;
  loadArchived(negative, p);
  EXPECT_EQ(p.penWidth(), -1);
}

TEST(GraphicProps, ArchivesHearOfEveryChange)
{
  auto steps = changes;
  steps.push_back([](Props &p) { p = changed(2); });
  steps.push_back([](Props &p) { EXPECT_THROW(p.penWidth(-1), Props::BadParams); });
  for (std::size_t i = 0; i < steps.size(); ++i) {
    SCOPED_TRACE(i);
    Props p;
    gxPersistent *out[2] = {};
    std::stringstream stream;
    {
      gxStoringArchive storing(stream);
      gxPersistent::serializePointer(storing, &p, out[0]);
      steps[i](p);
      gxPersistent::serializePointer(storing, &p, out[1]);
    }
    gxLoadingArchive loading(stream);
    for (gxPersistent *&o : out)
      gxPersistent::serializePointer(loading, nullptr, o);
    std::unique_ptr<gxPersistent> const first(out[0]), second(out[0] == out[1] ? nullptr : out[1]);
    EXPECT_EQ(dynamic_cast<Props &>(*out[0]), Props());
    EXPECT_EQ(dynamic_cast<Props &>(*out[1]), p);
    EXPECT_EQ(second == nullptr, i == steps.size() - 1) << "only a refused change leaves the object as it was stored";
  }
}

TEST(GraphicProps, CodingOfSketches)
{
  std::string const bytes = encoded(changed(all));
  EXPECT_EQ(bytes, bytesOf({0, 1, 4, 3, 2, 1, 0xF9, 0xFF, 0xFF, 0xFF, 2, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0x7F, 0, 0, 1}));
  EXPECT_EQ(encoded(Props()), bytesOf({0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 0}));
  for (unsigned bits = 0; bits <= all; ++bits) {
    Props read = changed(~bits & all & ~1u);
    decode(encoded(changed(bits)), read);
    ASSERT_EQ(read, changed(bits & ~1u)) << "all but the color";
  }
  std::string odd = encoded(Props());
  odd[1] = '\x02';  // a flag is any byte but 0
  Props p;
  decode(odd, p);
  EXPECT_TRUE(p.fill());
  EXPECT_EQ(encoded(p)[1], 1);
  odd[5] = '\x80';
  EXPECT_THROW(decode(odd, p), Props::BadParams);
  EXPECT_EQ(p.penWidth(), 1);
}
