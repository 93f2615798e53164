#include "foundation/pelops.h"
#include "foundation/rlebuf.h"
#include "tests/support/logscope.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

// Run-length images that a scope reduces and enlarges, as they come out at the surface.

/// For messages: "value x length".
static void PrintTo(gxRLEBufferRun run, std::ostream *os)
{
  *os << int(run.value) << 'x' << int(run.length);
}

namespace
{
using Row = std::vector<gxRLEBufferRun>;
using Rows = std::vector<Row>;
using Pels = std::vector<std::vector<int>>;

struct OwnLog {
  ScopeLog log;
};

/// A surface that keeps the last image that it was given.
class RunScope : private OwnLog, public LogScope
{
 public:
  explicit RunScope(gxPair<long> size) : LogScope(OwnLog::log, "runs", size) {}

  using LogScope::draw;
  using LogScope::expand;
  using LogScope::sample;
  void draw(gxRLEBuffer const &b, gxPoint const &at, std::vector<unsigned char> const &map, bool pass,
            unsigned char v) override
  {
    runs = b;
    colorMap = map;
    take("draw", at, pass, v);
  }
  void sample(gxPelBuffer_const<unsigned char> const &b, gxPoint const &at, gxPair<double> const &s, bool pass,
              unsigned char v, bool flag) override
  {
    pels = gfPelCopy<unsigned char>(b);
    scale = s;
    take(flag ? "sample" : "sample without flag", at, pass, v);
  }
  void expand(gxPelBuffer_const<unsigned char> const &b, gxPoint const &at, gxPair<double> const &s, bool pass,
              unsigned char v, bool flag, InterpolationModes mode) override
  {
    pels = gfPelCopy<unsigned char>(b);
    scale = s;
    take(flag && mode == 0 ? "expand" : "expand otherwise", at, pass, v);
  }

  /// The call since the last time.
  std::string said() { return std::exchange(said_, ""); }

  gxRLEBuffer runs;
  gxPelBuffer<unsigned char> pels;
  gxPair<double> scale;
  gxPoint point;
  std::vector<unsigned char> colorMap;
  bool isPassing = false;
  unsigned char passPel = 0;

 private:
  void take(char const *what, gxPoint const &at, bool pass, unsigned char v)
  {
    EXPECT_EQ(said_, "");
    said_ = what;
    point = at;
    isPassing = pass;
    passPel = v;
  }
  std::string said_;
};

gxRLEBuffer bufferOf(long width, Rows const &rows)
{
  std::vector<gxRLEBufferRun *> first;
  for (Row const &row : rows) {
    first.push_back(new gxRLEBufferRun[row.size() + 1]);
    *std::copy(row.begin(), row.end(), first.back()) = {99, 0};
  }
  gxRLEBuffer buffer;
  buffer.becomeOwner(width, first, first, true);
  return buffer;
}

Rows rowsOf(gxRLEBuffer const &buffer)
{
  Rows rows(buffer.height());
  for (long y = 0; y < buffer.height(); ++y)
    for (auto const *run = buffer.pointToRow(buffer.offset().y() + y); run->length != 0; ++run)
      rows[y].push_back(*run);
  return rows;
}

enum Ends { even, mayBeShort, ragged };

/// Rows of runs up to @p longest pels; the rows may be shorter than the width, or longer too.
gxRLEBuffer randomRuns(std::mt19937 &random, long width, long height, long longest, Ends ends)
{
  Rows rows(height);
  for (Row &row : rows) {
    long left = ends == even || random() % 2 ? width : static_cast<long>(random() % (ends * width));
    while (left > 0) {
      long const length = std::min(left, 1 + static_cast<long>(random() % longest));
      row.push_back({static_cast<unsigned char>(1 + random() % 9), static_cast<unsigned char>(length)});
      left -= length;
    }
  }
  gxRLEBuffer buffer = bufferOf(width, rows);
  buffer.offset(gxPair<long>(static_cast<long>(random() % 9) - 4, static_cast<long>(random() % 9) - 4));
  return buffer;
}

std::vector<unsigned char> const plainMap;

TEST(RunSample, CarriesTheRemainderIntoTheNextRun)
{
  RunScope scope(gxPair<long>(50, 50));
  scope.sample(bufferOf(6, {{{1, 1}, {2, 1}, {3, 1}, {4, 1}, {5, 1}, {6, 1}}, {{9, 6}}}), gxPoint(7.5, -3), {4, 5},
               gxPair<double>(0.5, 0.1), true, 4);
  EXPECT_EQ(scope.said(), "draw");
  EXPECT_EQ(rowsOf(scope.runs), (Rows{{{2, 1}, {4, 1}, {6, 1}}}));
  EXPECT_EQ(scope.runs.size(), gxPair<long>(3, 1));
  EXPECT_EQ(scope.point, gxPoint(7.5, -3));  // handed on as it is
  EXPECT_EQ(scope.colorMap, (std::vector<unsigned char>{4, 5}));
  EXPECT_TRUE(scope.isPassing);
  EXPECT_EQ(scope.passPel, 4);
}

TEST(RunSample, KeepsEveryKthRowAndDividesTheRuns)
{
  std::mt19937 random(21);
  RunScope scope(gxPair<long>(50, 50));
  for (int n = 0; n < 400; ++n) {
    long const k = 1 + static_cast<long>(random() % 12);
    long const longest = n % 3 == 0 ? 255 : 1 + static_cast<long>(random() % 9);
    gxRLEBuffer const buffer = randomRuns(random, k + static_cast<long>(random() % 600),
                                          k + static_cast<long>(random() % 20), longest, n % 2 ? ragged : even);
    Rows const rows = rowsOf(buffer);
    Rows expected(buffer.height() / k);
    for (std::size_t i = 0; i < expected.size(); ++i) {
      long carry = 0;
      for (gxRLEBufferRun run : rows[i * k]) {
        long const q = (run.length + carry) / k;
        carry = (run.length + carry) % k;
        if (q != 0)
          expected[i].push_back({run.value, static_cast<unsigned char>(q)});
      }
    }
    if (n % 2)
      scope.sample(buffer, gxPoint(), plainMap, gxPair<long>(k, 1), false, 0);
    else
      scope.sample(buffer, gxPoint(), plainMap, gxPair<double>(1.0 / static_cast<double>(k) + 1e-9, 7), false, 0);
    ASSERT_EQ(scope.said(), "draw");
    ASSERT_EQ(scope.runs.size(), gxPair<long>(buffer.width() / k, buffer.height() / k));
    ASSERT_EQ(rowsOf(scope.runs), expected) << "case " << n << " by " << k;
  }
}

TEST(RunExpand, SplitsRunsThatGrowTooLong)
{
  RunScope scope(gxPair<long>(2000, 2000));
  scope.expand(bufferOf(455, {{{7, 200}, {8, 255}}}), gxPoint(2.9999999999999, 5), plainMap, gxPair<double>(2, 0.1),
               false, 0);
  EXPECT_EQ(scope.said(), "draw");
  Row const row{{7, 255}, {7, 145}, {8, 255}, {8, 255}};
  EXPECT_EQ(rowsOf(scope.runs), (Rows{row, row}));
  EXPECT_EQ(scope.runs.width(), 910);
  EXPECT_EQ(scope.point, gxPoint(3, 5));
}

/// The pels of the scope that an image of runs covers, -1 elsewhere.
Pels shown(gxRLEBuffer const &buffer, gxPair<long> at, gxPair<long> extent)
{
  Pels pels(extent.y(), std::vector<int>(extent.x(), -1));
  Rows const rows = rowsOf(buffer);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    long x = at.x(), y = at.y() + static_cast<long>(i);
    for (gxRLEBufferRun run : rows[i])
      for (int j = 0; j < run.length; ++j, ++x)
        if (x >= 0 && x < extent.x() && y >= 0 && y < extent.y())
          pels[y][x] = run.value;
  }
  return pels;
}

/// The same for an enlarged image: each pel of it covers a block.
Pels shownEnlarged(gxRLEBuffer const &buffer, long k, gxPair<long> at, gxPair<long> extent)
{
  Pels pels(extent.y(), std::vector<int>(extent.x(), -1));
  Rows const rows = rowsOf(buffer);
  for (long y = 0; y < extent.y(); ++y) {
    long const row = (y - at.y() + 100 * k) / k - 100;  // floor
    if (row < 0 || row >= buffer.height())
      continue;
    for (long x = 0; x < extent.x(); ++x) {
      long column = (x - at.x() + 100 * k) / k - 100;
      if (column < 0 || column >= buffer.width())
        continue;
      for (gxRLEBufferRun run : rows[row]) {
        if (column < run.length) {
          pels[y][x] = run.value;
          break;
        }
        column -= run.length;
      }
    }
  }
  return pels;
}

TEST(RunExpand, ShowsABlockForEachPelAndHoldsLittleBeyondTheScope)
{
  std::mt19937 random(22);
  auto upTo = [&](long n) { return static_cast<long>(random() % (n + 1)); };
  for (int n = 0; n < 1500; ++n) {
    long const k = 1 + upTo(n % 7 == 0 ? 90 : 6);
    gxPair<long> const extent(1 + upTo(n % 5 == 0 ? 900 : 60), 1 + upTo(30)), org(upTo(9), upTo(9));
    ScopeLog log;
    LogScope screen(log, "screen", gxPair<long>(2000, 2000));
    RunScope scope(extent);
    scope.subset(screen, gxUIRect(org, extent));
    gxRLEBuffer const buffer =
        randomRuns(random, 1 + upTo(n % 5 == 0 ? 400 : 70), 1 + upTo(20), 1 + upTo(254), mayBeShort);
    gxPair<long> const at(upTo(90) - 60, upTo(60) - 40);
    gxPoint const device(gxVector<2>(at + org));
    scope.drawStart(device);
    scope.expand(buffer, n % 3 ? device : scope.drawPoint(), plainMap, gxPair<double>(static_cast<double>(k), 1), false,
                 0);
    Pels const expected = shownEnlarged(buffer, k, at, extent);
    std::string const what = scope.said();
    Pels actual(extent.y(), std::vector<int>(extent.x(), -1));
    if (what == "draw") {
      gxPair<long> const drawnAt = gxPair<long>(gxPair<double>(scope.point)) - org;
      ASSERT_GE(drawnAt.x(), 0);
      ASSERT_GE(drawnAt.y(), 0);
      ASSERT_LE(scope.runs.width(), extent.x() + 2 * k);
      ASSERT_LE(scope.runs.height(), extent.y());
      for (Row const &row : rowsOf(scope.runs)) {
        long pels = 0;
        for (gxRLEBufferRun run : row) {
          ASSERT_LE(pels, extent.x() - drawnAt.x()) << "a run beyond the edge";
          pels += run.length;
        }
      }
      actual = shown(scope.runs, drawnAt, extent);
    }
    ASSERT_EQ(actual, expected) << "case " << n << ": " << buffer.size() << " by " << k << " at " << at << " in "
                                << extent;
  }
}

TEST(RunScale, FactorsThatAreNotWholeGoByPels)
{
  std::mt19937 random(24);
  RunScope scope(gxPair<long>(50, 50));
  gxRLEBuffer const buffer = randomRuns(random, 40, 5, 9, even);
  std::vector<unsigned char> const map{9, 8, 7};
  for (double const s : {0.3, 0.4999, 0.499, 1.0 / 2.00001, 1.5, 2.00001, 2.37, 0.9}) {
    bool const reduces = s < 1.0;
    gxPair<double> const scale(s, 0.25);
    if (reduces)
      scope.sample(buffer, gxPoint(1.5, 2.5), map, scale, true, 8);
    else
      scope.expand(buffer, gxPoint(1.5, 2.5), map, scale, true, 8);
    ASSERT_EQ(scope.said(), reduces ? "sample" : "expand") << s;
    EXPECT_EQ(scope.scale, scale);
    EXPECT_EQ(scope.point, gxPoint(1.5, 2.5));
    EXPECT_TRUE(scope.isPassing);
    EXPECT_EQ(scope.passPel, 8);
    gxPelBuffer<unsigned char> const plain = buffer.image();
    for (long y = 0; y < 5; ++y)
      for (long x = 0; x < 40; ++x) {
        unsigned char const v = plain.get(x, y);
        ASSERT_EQ(scope.pels.get(x, y), v < map.size() ? map[v] : v);
      }
  }
  for (double const s : {2.0000009, 1.9999991, 1.0}) {
    scope.expand(buffer, gxPoint(), map, gxPair<double>(s, s), true, 8);
    EXPECT_EQ(scope.said(), "draw") << s;
    scope.sample(buffer, gxPoint(), map, gxPair<double>(1.0 / s, s), true, 8);
    EXPECT_EQ(scope.said(), "draw") << s;
  }
}

TEST(RunScale, BadInputDrawsNothing)
{
  constexpr double inf = std::numeric_limits<double>::infinity();
  RunScope scope(gxPair<long>(50, 50));
  gxRLEBuffer const buffer = bufferOf(8, {{{1, 8}}, {{2, 8}}}), empty;
  for (double const bad : {0.0, -0.0, -1.0, -2.0, -0.5, std::nan(""), -inf})
    for (auto const &[x, y] : {std::pair(bad, 2.0), std::pair(bad, bad)}) {
      scope.sample(buffer, gxPoint(), plainMap, gxPair<double>(x, y), false, 0);
      scope.expand(buffer, gxPoint(), plainMap, gxPair<double>(x, y), false, 0);
    }
  for (long const bad : {0L, -1L, -2147483648L}) {
    scope.sample(buffer, gxPoint(), plainMap, gxPair<long>(bad, 1), false, 0);
    scope.expand(buffer, gxPoint(), plainMap, gxPair<long>(bad, 1), false, 0);
  }
  for (double const s : {inf, 1e300, 3e9})
    scope.expand(buffer, gxPoint(), plainMap, gxPair<double>(s, s), false, 0);
  for (double const s : {inf, 1e300, 1e-300, 5e-324, 1e-9, 1.0 / 3, 0.1})
    scope.sample(buffer, gxPoint(), plainMap, gxPair<double>(s < 0.5 ? s * 0.5 : s, s), false, 0);
  scope.sample(buffer, gxPoint(), plainMap, gxPair<long>(3, 3), false, 0);  // no row is left
  for (double const s : {2.0, 2.5, 0.5, 0.4}) {
    scope.sample(empty, gxPoint(), plainMap, gxPair<double>(s, s), false, 0);
    scope.expand(empty, gxPoint(), plainMap, gxPair<double>(s, s), false, 0);
  }
  for (double const v : {50.0, 1e300, inf, -100.0, -1e300, -inf})
    for (long const k : {2L, 1L << 30})
      if (k == 2 || v > 0.0) {
        scope.expand(buffer, gxPoint(v, 0), plainMap, gxPair<long>(k, k), false, 0);
        scope.expand(buffer, gxPoint(0, v), plainMap, gxPair<long>(k, k), false, 0);
      }
  for (gxPair<long> const extent : {gxPair<long>(0, 0), gxPair<long>(0, 9), gxPair<long>(9, 0), gxPair<long>(-1, -1)}) {
    scope.resize(extent);
    scope.expand(buffer, gxPoint(), plainMap, gxPair<long>(2, 2), false, 0);
    scope.expand(buffer, gxPoint(0, -1), plainMap, gxPair<long>(2, 2), false, 0);
  }
  EXPECT_EQ(scope.said(), "");
}

TEST(RunExpand, HugeFactorsAndScopesStayWithinBounds)
{
  RunScope scope(gxPair<long>(50, 40));
  gxRLEBuffer const buffer = bufferOf(8, {{{1, 5}, {2, 3}}, {{2, 255}}});
  for (long const k : {1000L, 1L << 30, 2147483645L}) {
    scope.expand(buffer, gxPoint(-500, -700), plainMap, gxPair<long>(k, k), false, 0);
    ASSERT_EQ(scope.said(), "draw");
    EXPECT_EQ(scope.runs.height(), 40);
    EXPECT_LE(scope.runs.numRuns(), 80);
    EXPECT_EQ(shown(scope.runs, gxPair<long>(), gxPair<long>(50, 40)), Pels(40, std::vector<int>(50, 1)));
  }
  scope.resize(gxPair<long>(2147483647, 2147483647));  // a scope that only measures
  scope.expand(buffer, gxPoint(7, 8), plainMap, gxPair<long>(3, 3), false, 0);
  ASSERT_EQ(scope.said(), "draw");
  EXPECT_EQ(scope.runs.size(), gxPair<long>(24, 6));
  EXPECT_EQ(scope.point, gxPoint(7, 8));
}
}  // namespace
