#include "foundation/archive.h"
#include "foundation/bytes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <sstream>

// What a loading archive makes of bytes that no archive has stored.

namespace
{

using testing::HasSubstr;

// An object that is not counted and has one owner.
struct Label : virtual gxPersistent {
  Label() { ++alive; }
  Label(Label const &) = delete;
  ~Label() override { --alive; }
  std::string text;
  static inline int alive = 0;
  GX_PERSISTENT(Label);
};
GX_PERSISTENT_IMPL(Label, "Label", 0)
void Label::serialize_(gxArchive &archive, unsigned char version)
{
  if (version != 0)
    throw gxArchive::UnknownVersion("label", 41);
  gxPersistent::dispatchSerialize(archive);
  archive || text;
}

// One of each kind of field; `alive` finds the objects of a ring, which nobody else can take apart.
struct Part : virtual gxPersistent, virtual gxRepBase {
  Part() { alive.insert(this); }
  Part(Part const &) = delete;
  ~Part() override { alive.erase(this); }
  bool flag = true;
  double size = 1.5;
  std::vector<unsigned short> numbers = {1, 2, 3};
  std::vector<gxPtrHandle<Part>> parts;
  std::unique_ptr<Label> label;
  static inline std::set<Part *> alive;
  GX_PERSISTENT(Part);
};
GX_PERSISTENT_IMPL(Part, "Part", 1)
void Part::serialize_(gxArchive &archive, unsigned char version)
{
  if (version > 1)
    throw gxArchive::UnknownVersion("part", 67);
  gxPersistent::dispatchSerialize(archive);
  archive || flag || size;
  gf_passElements(archive, numbers, sizeof(unsigned short));
  gf_passElements(archive, parts, 1);
  archive || label;
}

using Parts = gxPtrHandle<Part>;

std::string store(Parts const &root)
{
  std::stringstream stream;
  gxStoringArchive(stream) << root << root;
  return stream.str();
}

std::string sampleArchive()
{
  Parts const root(new Part), middle(new Part), leaf(new Part);
  root->parts = {middle, leaf, nullptr, middle};
  middle->parts = {leaf, root};
  leaf->label = std::make_unique<Label>();
  leaf->label->text = "leaf";
  std::string const bytes = store(root);
  middle->parts.clear();
  return bytes;
}

// Takes rings apart, which are left only by loads that succeeded.
void clearRings()
{
  std::vector<Parts> const ring(Part::alive.begin(), Part::alive.end());
  for (Parts const &part : ring)
    part->parts.clear();
}

// Loads, and stores again what has come. Returns the text of an error, or "".
std::string load(std::string const &bytes)
{
  gxArchive::Limits limits;
  limits.maxBytes = 10'000;
  limits.maxString = 1'000;
  limits.maxObjects = 100;
  limits.maxDepth = 20;
  try {
    std::istringstream stream(bytes);
    gxLoadingArchive in(stream, limits);
    Parts first, second;
    in || first;
    std::shared_ptr<void> const clearAtTheEnd(nullptr, [](void *) { clearRings(); });
    in || second;
    std::ostringstream again;
    gxStoringArchive(again) << first << second;
  } catch (gxArchive::Errors const &e) {
    return e.message();
  }
  return "";
}

void expectClean(std::string const &error, std::string const &what)
{
  if (!error.empty()) {
    EXPECT_THAT(error, HasSubstr("at byte ")) << what;
  }
  ASSERT_TRUE(Part::alive.empty()) << what << ": " << error;
  ASSERT_EQ(Label::alive, 0) << what << ": " << error;
}

std::string little(std::uint32_t v)
{
  std::string bytes(4, '\0');
  gf_putLittle(reinterpret_cast<unsigned char *>(bytes.data()), v);
  return bytes;
}

std::string const head = "gxar" + little(1);

// A new object of class `name`.
std::string object(std::string const &name)
{
  return std::string("\1") + static_cast<char>(name.size()) + '\0' + name;
}

}  // namespace

TEST(DamagedArchive, CutAtEveryByte)
{
  std::string const whole = sampleArchive();
  EXPECT_EQ(load(whole), "");
  for (std::size_t size = 0; size < whole.size(); ++size) {
    std::string const error = load(whole.substr(0, size));
    EXPECT_NE(error, "") << size;
    expectClean(error, "cut to " + std::to_string(size));
  }
}

TEST(DamagedArchive, CorruptedAtEveryByte)
{
  std::string const whole = sampleArchive();
  int refused = 0;
  int accepted = 0;
  for (std::size_t at = 0; at < whole.size(); ++at) {
    for (int value = 0; value < 256; ++value) {
      std::string bytes = whole;
      bytes[at] = static_cast<char>(value);
      std::string const error = load(bytes);
      ++(error.empty() ? accepted : refused);
      expectClean(error, "byte " + std::to_string(at) + " set to " + std::to_string(value));
      if (HasFatalFailure())
        return;
    }
  }
  EXPECT_GT(refused, accepted);
  EXPECT_GT(accepted, 3 * 8 * 256);  // the doubles, at least
}

// Each row is one thing wrong, with all before it right.
TEST(DamagedArchive, EachFaultIsNamedWithItsByte)
{
  std::string const longName = "\1" + std::string("\1\2", 2) + std::string(513, 'n');
  std::map<std::string, std::string> const faults = {
      {"", "this is no archive, at byte 0"},
      {"gxax" + little(1), "this is no archive, at byte 4"},
      {"gxar" + little(2), "an archive of format 2, which this release does not know, at byte 8"},
      {head, "the archive ends: 1 bytes are due, but 0 are left, at byte 8"},
      {head + "\4", "a pointer of kind 4, at byte 9"},
      {head + "\3" + little(0), "a reference to object 0, but 0 have come, at byte 13"},
      {head + "\2\5" + '\0', "an object of class 5, but 0 have come, at byte 11"},
      {head + object(""), "a class name of 0 bytes, at byte 11"},
      {head + longName, "a class name of 513 bytes, at byte 11"},
      {head + object("Part").substr(0, 5), "a class name takes 4 bytes, but 2 are left, at byte 11"},
      {head + object("P\nrt"), "the class \"P?rt\" is unknown, at byte 15"},
      {head + object("Part") + "\2", "met by part in line 67, at byte 16"},
      {head + object("Part") + "\1\2", "a truth value of 2, at byte 16"},
      {head + object("Part") + "\1\1" + std::string(8, 'd') + little(0xffffffff), "a count of -1, at byte 29"},
      {head + object("Part") + "\1\1" + std::string(8, 'd') + little(0x7fffffff), "a count of 2147483647 elements"},
      {head + object("Part") + "\1\1" + std::string(8, 'd') + little(2) + "abc", "but 3 bytes are left, at byte 29"},
      {head + object("Label") + '\0' + little(5) + "abcd", "a text takes 5 bytes, but 4 are left, at byte 21"},
      {head + object("Label") + '\0' + little(1001), "a text of 1001 bytes is longer than the limit of 1000"},
      {head + object("Label") + '\7', "met by label in line 41, at byte 17"},
  };
  for (auto const &[bytes, message] : faults) {
    std::string const error = load(bytes);
    EXPECT_THAT(error, HasSubstr(message));
    expectClean(error, message);
  }
}

// Sizes are weighed against the bytes that are left, before memory is taken for them.
TEST(DamagedArchive, AnnouncedSizesTakeNoMemory)
{
  std::istringstream stream(head + little(0x70000000) + little(0x70000000));
  gxLoadingArchive in(stream);
  EXPECT_THROW(in.passCount(0, 100), gxArchive::Errors);
  std::string text;
  EXPECT_THROW(in || text, gxArchive::Errors);
  EXPECT_LT(text.capacity(), 100u);
  std::vector<char> block(10);
  EXPECT_THROW(in.raw(block.data(), 10), gxArchive::Errors);
  EXPECT_THROW(in.raw(block.data(), -1), gxArchive::Errors);
  EXPECT_THROW(in.requireBytes(1, "an image"), gxArchive::Errors);
}

TEST(DamagedArchive, ListsOfAnyLengthGoWithoutDeepRecursion)
{
  std::size_t const length = 200'000;
  std::string bytes = head;
  for (std::size_t i = 0; i < length; ++i) {
    bytes += i == 0 ? object("Part") : std::string("\2\0\0", 3);
    bytes += "\1\1" + std::string(8, 'd') + little(0) + little(i == 0 ? 0 : 1);
    if (i > 0)
      bytes += "\3" + little(static_cast<std::uint32_t>(i - 1));
    bytes += '\0';
  }
  std::istringstream stream(bytes);
  Parts last;
  {
    gxLoadingArchive in(stream);
    for (std::size_t i = 0; i < length; ++i)
      in || last;
  }
  EXPECT_EQ(Part::alive.size(), length);
  std::ostringstream os;
  EXPECT_THROW(gxStoringArchive(os) << last, gxArchive::Errors);  // would nest as deep as the list is long
  last = nullptr;
  EXPECT_TRUE(Part::alive.empty());
}
