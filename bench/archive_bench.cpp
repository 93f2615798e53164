#include "bench/ratio.h"
#include "foundation/archive.h"

#include <cstdint>
#include <istream>
#include <ostream>
#include <streambuf>
#include <vector>

#ifdef GXBENCH_HAVE_CEREAL
#include <cereal/archives/binary.hpp>
#include <cereal/types/memory.hpp>
#include <cereal/types/polymorphic.hpp>
#include <cereal/types/vector.hpp>
#endif

// A list of 100,000 shared objects behind handles to their base, each of them twice in the list: storing and loading,
// the release of the loaded objects included. The peer passes like objects behind its kind of shared pointers.

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
  static inline std::vector<char> bytes = std::vector<char>(16 << 20, '\1');
};

struct Geometry {
  double x = 1, y = 2, width = 3, height = 4;
  int penWidth = 1, style = 0;
  unsigned char red = 255, green = 0, blue = 128;
  bool fill = false;
};

class Item : public virtual gxPersistent, public virtual gxRepBase
{
 public:
  Geometry g;

 private:
  GX_PERSISTENT_ABSTRACT(Item);
};
GX_PERSISTENT_ABSTRACT_IMPL(Item, 0)
void Item::serialize_(gxArchive &archive, unsigned char version)
{
  gf_refuseVersion(version, "Item");
  gxPersistent::dispatchSerialize(archive);
  archive || g.penWidth || g.style || g.red || g.green || g.blue || g.fill;
}

class BoxItem : public Item
{
  GX_PERSISTENT(BoxItem);
};
GX_PERSISTENT_IMPL(BoxItem, "BoxItem", 0)
void BoxItem::serialize_(gxArchive &archive, unsigned char version)
{
  gf_refuseVersion(version, "BoxItem");
  Item::dispatchSerialize(archive);
  archive || g.x || g.y || g.width || g.height;
}

using Items = std::vector<gxPtrHandle<Item>>;

Items items()
{
  Items list;
  for (int i = 0; i < count; ++i) {
    gxPtrHandle<Item> item(new BoxItem);
    item->g.x = i;
    list.push_back(item);
    list.push_back(i % 2 ? item : list[static_cast<std::size_t>(i)]);
  }
  return list;
}

std::size_t store(Items &list)
{
  Memory memory;
  std::ostream stream(&memory);
  gxStoringArchive archive(stream);
  gf_passElements(archive, list, 1);
  archive.close();
  return memory.written();
}

void storeObjects(benchmark::State &state)
{
  Items list = items();
  for (auto _ : state)
    benchmark::DoNotOptimize(store(list));
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(storeObjects)->Unit(benchmark::kMillisecond);

void loadObjects(benchmark::State &state)
{
  Items list = items();
  std::size_t const size = store(list);
  state.counters["bytes each"] = static_cast<double>(size) / count;
  for (auto _ : state) {
    Memory memory(size);
    std::istream stream(&memory);
    gxLoadingArchive archive(stream);
    Items loaded;
    gf_passElements(archive, loaded, 1);
    benchmark::DoNotOptimize(loaded.data());
  }
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(loadObjects)->Unit(benchmark::kMillisecond);

/// What no load can do without: to make the objects, and to let go of them.
void makeObjects(benchmark::State &state)
{
  for (auto _ : state) {
    Items made;
    made.reserve(2 * count);
    for (int i = 0; i < count; ++i) {
      made.emplace_back(new BoxItem);
      made.push_back(made.back());
    }
    benchmark::DoNotOptimize(made.data());
  }
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(makeObjects)->Unit(benchmark::kMillisecond);

}  // namespace

#ifdef GXBENCH_HAVE_CEREAL
struct PeerItem {
  virtual ~PeerItem() = default;
  Geometry g;
  template <class Archive>
  void serialize(Archive &archive)
  {
    archive(g.penWidth, g.style, g.red, g.green, g.blue, g.fill);
  }
};
struct PeerBoxItem : PeerItem {
  template <class Archive>
  void serialize(Archive &archive)
  {
    archive(cereal::base_class<PeerItem>(this), g.x, g.y, g.width, g.height);
  }
};
CEREAL_REGISTER_TYPE(PeerBoxItem)

namespace
{

using PeerItems = std::vector<std::shared_ptr<PeerItem>>;

PeerItems peerItems()
{
  PeerItems list;
  for (int i = 0; i < count; ++i) {
    std::shared_ptr<PeerItem> const item = std::make_shared<PeerBoxItem>();
    item->g.x = i;
    list.push_back(item);
    list.push_back(i % 2 ? item : list[static_cast<std::size_t>(i)]);
  }
  return list;
}

std::size_t peerStore(PeerItems const &list)
{
  Memory memory;
  std::ostream stream(&memory);
  cereal::BinaryOutputArchive archive(stream);
  archive(list);
  return memory.written();
}

void peerStoreObjects(benchmark::State &state)
{
  PeerItems const list = peerItems();
  for (auto _ : state)
    benchmark::DoNotOptimize(peerStore(list));
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(peerStoreObjects)->Unit(benchmark::kMillisecond);

void peerLoadObjects(benchmark::State &state)
{
  std::size_t const size = peerStore(peerItems());
  for (auto _ : state) {
    Memory memory(size);
    std::istream stream(&memory);
    cereal::BinaryInputArchive archive(stream);
    PeerItems loaded;
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
                          {{"storing shared objects against cereal", "storeObjects", "peerStoreObjects", 5.0},
                           {"loading shared objects against cereal", "loadObjects", "peerLoadObjects", 8.0},
                           {"loading against making the objects", "loadObjects", "makeObjects", 0.25}});
}
