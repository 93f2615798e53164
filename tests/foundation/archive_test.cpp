#include "foundation/archive.h"
#include "foundation/geomarchive.h"
#include "tests/foundation/archive_nodes.h"

#include <array>
#include <cmath>
#include <cstring>
#include <limits>

// Values, limits, registrations and streams.

using testing::HasSubstr;

// These bytes are the first format of the archive. They may change with a new format version only, and then are kept.
TEST_F(Archive, TheFirstFormatKeepsItsBytes)
{
  Nodes const shared = node(0x01020304);
  Nodes const root = node(-2, {shared, nullptr, shared});
  gxStoringArchive(stream) << true << (signed char)(-1) << (unsigned char)(200) << (unsigned short)(0x0102) << int(-3)
                           << long(7) << (unsigned long)(0xfffffffe) << 1.5f << -2.0 << std::string("ab")
                           << gxPair<long>(1, -1) << root << shared;
  EXPECT_EQ(hex(stream.str()),
            "67786172"          // magic word
            "01000000"          // format 1
            "01ffc80201"        // bool, signed and unsigned char, unsigned short
            "fdffffff07000000"  // int, long
            "feffffff"          // unsigned long
            "0000c03f"          // float
            "00000000000000c0"  // double
            "020000006162"      // text
            "01000000ffffffff"  // pair
            "0104004e6f6465"    // object of the new class "Node"
            "00feffffff"        // version, id
            "03000000"          // three links
            "020000"            // object of class 0
            "000403020100000000"
            "00"          // null
            "0301000000"  // reference to object 1
            "0301000000");
  gxLoadingArchive in(stream);
  bool b = false;
  signed char sc = 0;
  unsigned char uc = 0;
  unsigned short us = 0;
  int i = 0;
  long l = 0;
  unsigned long ul = 0;
  float f = 0;
  double d = 0;
  std::string s;
  gxPair<long> p;
  Nodes r;
  Nodes again;
  Node::reInits = 0;
  in || b || sc || uc || us || i || l || ul || f || d || s || p || r || again;
  EXPECT_TRUE(b && sc == -1 && uc == 200 && us == 0x0102 && i == -3 && l == 7 && ul == 0xfffffffe && f == 1.5f);
  EXPECT_TRUE(d == -2.0 && s == "ab" && p == gxPair<long>(1, -1));
  ASSERT_EQ(r->links.size(), 3u);
  EXPECT_EQ(r->links[0], again);
  EXPECT_EQ(Node::reInits, 2) << "one for each fresh object";
  EXPECT_EQ(again->id(), 0x01020304);
  EXPECT_EQ(in.bytesLeft(), 0u);
}

TEST_F(Archive, NumbersTravelBitByBitAndLongsAsTheirLow32Bits)
{
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  std::array<double, 7> const doubles = {0.0, -0.0, 1e308, 5e-324, -std::numeric_limits<double>::infinity(), nan, 0.1};
  std::array<long, 6> const longs = {0, -1, 0x7fffffff, -0x80000000L, 0x123456789L, -0x123456789L};
  {
    gxStoringArchive out(stream);
    for (double const v : doubles)
      out << v << static_cast<float>(v);
    for (long const v : longs)
      out << v << static_cast<unsigned long>(v);
  }
  gxLoadingArchive in(stream);
  for (double const v : doubles) {
    double d = 7;
    float f = 7;
    in >> d >> f;
    EXPECT_EQ(std::memcmp(&d, &v, sizeof v), 0);
    auto const expected = static_cast<float>(v);
    EXPECT_EQ(std::memcmp(&f, &expected, sizeof f), 0);
  }
  for (long const v : longs) {
    long l = 7;
    unsigned long u = 7;
    in >> l >> u;
    EXPECT_EQ(l, static_cast<std::int32_t>(v));
    EXPECT_EQ(u, static_cast<std::uint32_t>(v));
  }
}

// More than the buffers of either archive hold, with pieces that straddle their ends.
TEST_F(Archive, LongContentCrossesTheBuffers)
{
  std::string large(300'000, 'x');
  for (std::size_t i = 0; i < large.size(); i += 1000)
    large[i] = static_cast<char>(i / 1000);
  std::vector<char> block(65'536 + 7, 'r');
  {
    gxStoringArchive out(stream);
    for (int i = 0; i < 20'000; ++i)
      out << i << (i % 2 == 0) << std::string(static_cast<std::size_t>(i % 11), 'a');
    out << large;
    out.raw(block.data(), static_cast<long>(block.size()));
    out << 99;
  }
  gxLoadingArchive in(stream);
  EXPECT_EQ(in.position() + in.bytesLeft(), stream.str().size());
  for (int i = 0; i < 20'000; ++i) {
    int number = 0;
    bool even = false;
    std::string text;
    in >> number >> even >> text;
    ASSERT_EQ(number, i);
    ASSERT_EQ(even, i % 2 == 0);
    ASSERT_EQ(text, std::string(static_cast<std::size_t>(i % 11), 'a'));
  }
  std::string text;
  std::vector<char> bytes(block.size());
  int last = 0;
  in || text;
  in.raw(bytes.data(), static_cast<long>(bytes.size())) || last;
  EXPECT_EQ(text, large);
  EXPECT_EQ(bytes, block);
  EXPECT_EQ(last, 99);
  EXPECT_EQ(in.bytesLeft(), 0u);
}

TEST_F(Archive, PlainValuesTakeTheirNumbersAndNoMore)
{
  gxXform<2> const xform(gxMatrix<2>(1, 2, 3, 4), gxVector<2>(5, 6));
  gx2Rigid const rigid(gxDegree(30), gxVector<2>(1, 2));
  gxStoringArchive(stream) << gxPair<long>(-5, 7) << gxPair<double>(0.5, -0.0) << xform << rigid << gxRadian(1.25)
                           << gxDegree(-90);
  EXPECT_EQ(stream.str().size(), 8u + 8 + 16 + 48 + 24 + 8 + 8);
  gxLoadingArchive in(stream);
  gxPair<long> pels;
  gxPair<double> pair;
  gxXform<2> x;
  gx2Rigid r;
  gxRadian radians;
  gxDegree degrees;
  in || pels || pair || x || r || radians || degrees;
  EXPECT_EQ(pels, gxPair<long>(-5, 7));
  EXPECT_TRUE(std::signbit(pair.y()));
  EXPECT_EQ(x, xform);
  EXPECT_EQ(x.matrix().det(), -2.0);
  EXPECT_EQ(r, rigid);
  EXPECT_EQ(radians, gxRadian(1.25));
  EXPECT_EQ(degrees, gxDegree(-90));
}

TEST_F(Archive, TheWrongDirectionIsRefused)
{
  {
    gxStoringArchive out(stream);
    int v = 3;
    EXPECT_THAT(messageOf([&] { out >> v; }), HasSubstr("stores"));
    out << v;
  }
  gxLoadingArchive in(stream);
  EXPECT_THAT(messageOf([&] { in << 4; }), HasSubstr("loads"));
  int v = 0;
  in >> v;
  EXPECT_EQ(v, 3);
}

TEST_F(Archive, EachLimitIsNamed)
{
  Nodes deep = node(0);
  for (long i = 1; i < 10; ++i)
    deep = node(i, {deep});
  gxStoringArchive(stream) << std::string("four") << deep;
  std::string const whole = stream.str();
  auto const load = [&](gxArchive::Limits const &limits) {
    return messageOf([&] {
      std::stringstream is(whole);
      gxLoadingArchive in(is, limits);
      std::string text;
      Nodes n;
      in || text || n;
    });
  };
  gxArchive::Limits limits{whole.size(), 4, 10, 10};
  EXPECT_EQ(load(limits), "no error");
  EXPECT_THAT(load({whole.size() - 1, 4, 10, 10}), HasSubstr("longer than the limit"));
  EXPECT_THAT(load({whole.size(), 3, 10, 10}), HasSubstr("a text of 4 bytes"));
  EXPECT_THAT(load({whole.size(), 4, 9, 10}), HasSubstr("more than 9 objects"));
  EXPECT_THAT(load({whole.size(), 4, 10, 9}), HasSubstr("nested deeper than 9"));
  std::ostringstream os;
  gxStoringArchive out(os, {0, 0, 0, 9});
  EXPECT_THAT(messageOf([&] { out << deep; }), HasSubstr("nested deeper than 9, at byte"));
}

TEST_F(Archive, RegistrationsAreToldApart)
{
  std::ostringstream os;
  gxStoringArchive out(os);
  gxPtrHandle<Unregistered> const unregistered(new Unregistered);
  EXPECT_THAT(messageOf([&] { out << unregistered; }), HasSubstr("no registration"));

  {
    gxPtrHandle<Twin> const twin(new Twin);
    gxStoringArchive first(stream);
    first << twin;
    gx_Instantiator const impostor(typeid(Unregistered), "Twin", &makeNode);
    EXPECT_THAT(messageOf([&] { gxStoringArchive(os) << twin; }), HasSubstr("two classes"));
    first.close();
    gxPtrHandle<Twin> loaded;
    EXPECT_THAT(messageOf([&] { gxLoadingArchive(stream) || loaded; }), HasSubstr("two classes"));
  }
  gxPtrHandle<Twin> loaded;
  stream.seekg(0);
  gxLoadingArchive(stream) || loaded;
  EXPECT_FALSE(loaded.isNull());

  // A class keeps its first name and loads under an older one.
  std::string bytes = stream.str();
  bytes.replace(bytes.find("Twin"), 4, "Lamp");
  std::stringstream old(bytes);
  EXPECT_THAT(messageOf([&] { gxLoadingArchive(old) || loaded; }), HasSubstr("\"Lamp\" is unknown"));
  gx_Instantiator const former(typeid(Twin), "Lamp", [] { return static_cast<gxPersistent *>(new Twin); });
  old.seekg(0);
  gxLoadingArchive(old) || loaded;
  EXPECT_FALSE(loaded.isNull());
}

TEST_F(Archive, AStreamHoldsSeveralArchivesAndOtherThings)
{
  for (long id = 1; id <= 3; ++id) {
    gxStoringArchive(stream) << node(id);
    stream << "between";
  }
  for (long id = 1; id <= 3; ++id) {
    Nodes n;
    gxLoadingArchive(stream) || n;
    EXPECT_EQ(n->id(), id);
    std::array<char, 7> text{};
    stream.read(text.data(), text.size());
    EXPECT_EQ(std::string(text.data(), text.size()), "between");
  }
}

namespace
{

// Takes or gives a number of bytes, and cannot be positioned.
class Pipe : public std::streambuf
{
 public:
  explicit Pipe(std::string content, std::size_t room = 0) : content_(std::move(content)), room_(room) {}
  std::string const &content() const { return content_; }

 protected:
  std::streamsize xsgetn(char *to, std::streamsize n) override
  {
    auto const count = std::min(static_cast<std::size_t>(n), content_.size() - next_);
    std::copy_n(content_.data() + next_, count, to);
    next_ += count;
    return static_cast<std::streamsize>(count);
  }
  int_type overflow(int_type) override { return traits_type::eof(); }
  std::streamsize xsputn(char const *from, std::streamsize n) override
  {
    auto const count = std::min(static_cast<std::size_t>(n), room_ - content_.size());
    content_.append(from, count);
    return static_cast<std::streamsize>(count);
  }

 private:
  std::string content_;
  std::size_t next_ = 0;
  std::size_t room_;
};

}  // namespace

TEST_F(Archive, APipeIsReadToItsEndAndLimited)
{
  {
    gxStoringArchive out(stream);
    for (int i = 0; i < 50'000; ++i)
      out << i;
  }
  Pipe pipe(stream.str());
  std::istream is(&pipe);
  gxLoadingArchive in(is);
  for (int i = 0, v = 0; i < 50'000; ++i) {
    in || v;
    ASSERT_EQ(v, i);
  }
  Pipe tooLong(stream.str());
  std::istream limited(&tooLong);
  gxArchive::Limits limits;
  limits.maxBytes = 100'000;
  EXPECT_THROW(gxLoadingArchive(limited, limits), gxArchive::Errors);
}

TEST_F(Archive, AFullStreamIsReportedAndStaysFull)
{
  for (bool const throwing : {false, true}) {
    Pipe pipe("", 100);
    std::ostream os(&pipe);
    if (throwing)
      os.exceptions(std::ios::badbit | std::ios::failbit);
    gxStoringArchive out(os);
    out << std::string(50, 'a');
    out.flush();
    out << std::string(50, 'b');
    EXPECT_THAT(messageOf([&] { out.flush(); }), HasSubstr("takes no more"));
    EXPECT_THAT(messageOf([&] { out << std::string(100'000, 'c'); }), HasSubstr("takes no more"));
    EXPECT_THAT(messageOf([&] { out.close(); }), HasSubstr("takes no more"));
  }
  std::ostringstream os;
  gxStoringArchive out(os);
  out << 1;
  out.close();
  EXPECT_THAT(messageOf([&] { out << 2; }), HasSubstr("closed"));
  EXPECT_EQ(os.str().size(), 12u);
}
