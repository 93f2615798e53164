#include "bench/ratio.h"
#include "dispc/uitablet.h"
#include "foundation/archive.h"
#include "foundation/circle.h"
#include "foundation/ellipse.h"
#include "foundation/lineseg.h"

#include <array>
#include <cstring>
#include <istream>
#include <memory>
#include <ostream>
#include <random>
#include <streambuf>
#include <string>
#include <vector>

#ifdef GXBENCH_HAVE_CEREAL
#include <cereal/archives/binary.hpp>
#include <cereal/types/array.hpp>
#include <cereal/types/memory.hpp>
#include <cereal/types/polymorphic.hpp>
#include <cereal/types/string.hpp>
#include <cereal/types/vector.hpp>
#endif

// A sketch of 100,000 mixed records, its stored form and its way back, with all checks. The limit is a copy of the
// stored bytes; the peer passes like objects, a head and a payload for each record, behind its kind of shared pointers.

namespace
{
constexpr int count = 100'000;

/// A stream over memory that was touched before, so that neither side pays for the growth of a text.
class Memory : public std::streambuf
{
 public:
  explicit Memory(std::size_t content = 0)
  {
    setp(bytes.data(), bytes.data() + bytes.size());
    setg(bytes.data(), bytes.data(), bytes.data() + content);
  }
  std::size_t written() const { return static_cast<std::size_t>(pptr() - pbase()); }
  static char const *content() { return bytes.data(); }

 protected:
  pos_type seekoff(off_type off, std::ios_base::seekdir dir, std::ios_base::openmode) override
  {
    char *const from = dir == std::ios_base::beg ? eback() : dir == std::ios_base::cur ? gptr() : egptr();
    setg(eback(), from + off, egptr());
    return gptr() - eback();
  }
  pos_type seekpos(pos_type pos, std::ios_base::openmode which) override
  {
    return seekoff(pos, std::ios_base::beg, which);
  }

 private:
  static inline std::vector<char> bytes = std::vector<char>(32 << 20, '\1');
};

/// Points, segments, circles, ellipses and texts by turns, another pen at every 16th.
gxUISketch sketch()
{
  gxUITablet tablet;
  tablet.recordOn().push(true);
  std::mt19937 random(7);
  std::uniform_real_distribution<double> within(0.0, 640.0);
  auto const point = [&] { return gxPoint(within(random), within(random)); };
  gxGraphicProps const pens[2] = {gxGraphicProps(gxColor::red, 1, gxGraphicProps::penSolid, false),
                                  gxGraphicProps(gxColor::green, 3, gxGraphicProps::penSolid, false)};
  for (int i = 0; i < count; ++i) {
    gxGraphicProps const &props = pens[i >> 4 & 1];
    switch (i % 5) {
      case 0:
        tablet.draw(point(), props, gxUITablet::overlay);
        break;
      case 1:
        tablet.draw(gxLineSeg(point(), point()), props, gxUITablet::overlay);
        break;
      case 2:
        tablet.draw(gxCircle(point(), within(random)), props, gxUITablet::overlay);
        break;
      case 3:
        tablet.draw(gxEllipse(gxCircle(point(), within(random))), props, gxUITablet::overlay);
        break;
      default:
        tablet.draw("part 4711", point(), props.penColor(), gxColor::pass, gxUIFormat(), gxUITablet::overlay);
    }
  }
  return tablet.sketch();
}

std::size_t store(gxUISketch &content)
{
  Memory memory;
  std::ostream stream(&memory);
  gxStoringArchive archive(stream);
  archive || content;
  archive.close();
  return memory.written();
}

void storeSketch(benchmark::State &state)
{
  gxUISketch content = sketch();
  for (auto _ : state)
    benchmark::DoNotOptimize(store(content));
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(storeSketch)->Unit(benchmark::kMillisecond);

void loadSketch(benchmark::State &state)
{
  gxUISketch content = sketch();
  std::size_t const size = store(content);
  state.counters["bytes stored"] = static_cast<double>(size) / count;
  state.counters["bytes recorded"] = static_cast<double>(content.size()) / count;
  for (auto _ : state) {
    Memory memory(size);
    std::istream stream(&memory);
    gxLoadingArchive archive(stream);
    gxUISketch loaded;
    archive || loaded;
    benchmark::DoNotOptimize(loaded.bytes());
  }
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(loadSketch)->Unit(benchmark::kMillisecond);

void copyBytes(benchmark::State &state)
{
  gxUISketch content = sketch();
  std::vector<char> copy(store(content), '\1');
  for (auto _ : state) {
    std::memcpy(copy.data(), Memory::content(), copy.size());
    benchmark::DoNotOptimize(copy.data());
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(copyBytes)->Unit(benchmark::kMillisecond);

}  // namespace

#ifdef GXBENCH_HAVE_CEREAL
namespace
{
struct PeerHead {
  bool hasProps = true;
  int layer = 1, code = 2, width = 1, style = 0, join = 0, cap = 0;
  std::array<unsigned char, 6> color = {7, 249, 255, 0, 0, 0};
  bool fill = false, arrow = true, forward = true, vertices = false;
  template <class Archive>
  void serialize(Archive &archive)
  {
    archive(hasProps);
    if (hasProps)
      archive(width, style, join, cap, fill, arrow, forward, vertices);
    archive(layer, code, color);
  }
};
struct PeerOp {
  virtual ~PeerOp() = default;
  template <class Archive>
  void serialize(Archive &)
  {
  }
};
template <int numbers>
struct PeerShape : PeerOp {
  std::array<double, numbers> v = {};
  template <class Archive>
  void serialize(Archive &archive)
  {
    archive(v);
  }
};
struct PeerPoint : PeerShape<2> {
};
struct PeerSegment : PeerShape<4> {
};
struct PeerCircle : PeerShape<3> {
};
struct PeerEllipse : PeerShape<6> {
};
struct PeerText : PeerShape<2> {
  std::array<unsigned char, 6> background = {};
  int font = -1, alignment = 0;
  std::string text = "part 4711";
  template <class Archive>
  void serialize(Archive &archive)
  {
    archive(v, background, font, alignment, text);
  }
};
struct PeerRecord {
  std::shared_ptr<PeerHead> head;
  std::shared_ptr<PeerOp> op;
  template <class Archive>
  void serialize(Archive &archive)
  {
    archive(head, op);
  }
};
}  // namespace

CEREAL_REGISTER_TYPE(PeerPoint)
CEREAL_REGISTER_TYPE(PeerSegment)
CEREAL_REGISTER_TYPE(PeerCircle)
CEREAL_REGISTER_TYPE(PeerEllipse)
CEREAL_REGISTER_TYPE(PeerText)
CEREAL_REGISTER_POLYMORPHIC_RELATION(PeerOp, PeerPoint)
CEREAL_REGISTER_POLYMORPHIC_RELATION(PeerOp, PeerSegment)
CEREAL_REGISTER_POLYMORPHIC_RELATION(PeerOp, PeerCircle)
CEREAL_REGISTER_POLYMORPHIC_RELATION(PeerOp, PeerEllipse)
CEREAL_REGISTER_POLYMORPHIC_RELATION(PeerOp, PeerText)

namespace
{
std::vector<PeerRecord> peerRecords()
{
  std::vector<PeerRecord> records;
  for (int i = 0; i < count; ++i) {
    PeerRecord record{std::make_shared<PeerHead>(), nullptr};
    record.head->hasProps = i % 16 == 0;
    switch (i % 5) {
      case 0:
        record.op = std::make_shared<PeerPoint>();
        break;
      case 1:
        record.op = std::make_shared<PeerSegment>();
        break;
      case 2:
        record.op = std::make_shared<PeerCircle>();
        break;
      case 3:
        record.op = std::make_shared<PeerEllipse>();
        break;
      default:
        record.op = std::make_shared<PeerText>();
    }
    records.push_back(record);
  }
  return records;
}

std::size_t peerStore(std::vector<PeerRecord> const &records)
{
  Memory memory;
  std::ostream stream(&memory);
  cereal::BinaryOutputArchive archive(stream);
  archive(records);
  return memory.written();
}

void peerStoreObjects(benchmark::State &state)
{
  std::vector<PeerRecord> const records = peerRecords();
  for (auto _ : state)
    benchmark::DoNotOptimize(peerStore(records));
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(peerStoreObjects)->Unit(benchmark::kMillisecond);

void peerLoadObjects(benchmark::State &state)
{
  std::size_t const size = peerStore(peerRecords());
  state.counters["bytes stored"] = static_cast<double>(size) / count;
  for (auto _ : state) {
    Memory memory(size);
    std::istream stream(&memory);
    cereal::BinaryInputArchive archive(stream);
    std::vector<PeerRecord> loaded;
    archive(loaded);
    benchmark::DoNotOptimize(loaded.data());
  }
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(peerLoadObjects)->Unit(benchmark::kMillisecond);
}  // namespace
#endif

int main(int argc, char **argv)
{
  return gf_runBenchmarks(argc, argv,
                          {{"storing a sketch against copying the stored bytes", "storeSketch", "copyBytes", 0.25},
                           {"loading a sketch against copying the stored bytes", "loadSketch", "copyBytes", 0.25},
                           {"storing a sketch against cereal, like objects", "storeSketch", "peerStoreObjects", 5.0},
                           {"loading a sketch against cereal, like objects", "loadSketch", "peerLoadObjects", 8.0}});
}
