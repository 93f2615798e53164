/// @file
/// Loads objects of any class that the library registers from whatever bytes, under small limits. What loads must
/// store, load and store again to the same bytes; what does not must fail with gxArchive::Errors, and leave nothing.

#include "foundation/archive.h"
#include "fuzz/expect.h"

#include <cstdint>
#include <memory>
#include <set>
#include <sstream>
#include <vector>

namespace
{

struct FuzzOwned : virtual gxPersistent {
  std::string text;
  GX_PERSISTENT(FuzzOwned);
};
GX_PERSISTENT_IMPL(FuzzOwned, "FuzzOwned", 0)
void FuzzOwned::serialize_(gxArchive &archive, unsigned char version)
{
  gf_refuseVersion(version, "FuzzOwned");
  archive || text;
}

struct FuzzBase : virtual gxPersistent, virtual gxRepBase {
  bool flag = false;
  GX_PERSISTENT_ABSTRACT(FuzzBase);
};
GX_PERSISTENT_ABSTRACT_IMPL(FuzzBase, 0)
void FuzzBase::serialize_(gxArchive &archive, unsigned char version)
{
  gf_refuseVersion(version, "FuzzBase");
  gxPersistent::dispatchSerialize(archive);
  archive || flag;
}

struct FuzzSide : virtual FuzzBase {
  unsigned short side = 0;
  GX_PERSISTENT_ABSTRACT(FuzzSide);
};
GX_PERSISTENT_ABSTRACT_IMPL(FuzzSide, 0)
void FuzzSide::serialize_(gxArchive &archive, unsigned char version)
{
  gf_refuseVersion(version, "FuzzSide");
  FuzzBase::dispatchSerialize(archive);
  archive || side;
}

// A node that rings may go through; they are cut here, since nobody else knows of them.
struct FuzzNode : FuzzSide, virtual FuzzBase {
  FuzzNode() { alive.insert(this); }
  ~FuzzNode() override { alive.erase(this); }

  static void cutRings()
  {
    std::vector<gxPtrHandle<FuzzNode>> const nodes(alive.begin(), alive.end());
    for (auto const &node : nodes)
      node->links.clear();
  }

  std::vector<gxPtrHandle<gxRepBase>> links;
  gxPtrHandle<FuzzNode> other;
  std::unique_ptr<FuzzOwned> owned;
  std::vector<double> numbers;
  static inline std::set<FuzzNode *> alive;
  GX_PERSISTENT(FuzzNode);
};
GX_PERSISTENT_IMPL(FuzzNode, "FuzzNode", 1)
void FuzzNode::serialize_(gxArchive &archive, unsigned char version)
{
  if (version > 1)
    throw gxArchive::UnknownVersion("fuzz", 76);
  FuzzBase::dispatchSerialize(archive);
  FuzzSide::dispatchSerialize(archive);
  gf_passElements(archive, links, 1);
  gf_passWithoutRing(archive, other);
  archive || owned;
  if (version == 1)
    gf_passElements(archive, numbers, sizeof(double));
}

using Objects = std::vector<gxPtrHandle<gxRepBase>>;

gxArchive::Limits smallLimits()
{
  gxArchive::Limits limits;
  limits.maxBytes = 1 << 16;
  limits.maxString = 1 << 12;
  limits.maxObjects = 500;
  limits.maxDepth = 30;
  return limits;
}

// As many objects as the bytes hold.
void load(std::string const &bytes, Objects &objects)
{
  std::istringstream stream(bytes);
  gxLoadingArchive in(stream, smallLimits());
  while (in.bytesLeft() > 0 && objects.size() < 200) {
    gxPtrHandle<gxRepBase> object;
    in || object;
    objects.push_back(object);
  }
}

std::string store(Objects const &objects)
{
  std::ostringstream stream;
  gxStoringArchive out(stream);
  for (auto const &object : objects)
    out << object;
  out.close();
  return stream.str();
}

void run(std::string const &bytes)
{
  Objects objects;
  std::string stored;
  try {
    load(bytes, objects);
    stored = store(objects);
  } catch (gxArchive::Errors const &) {
    return;
  }
  // What the library has stored itself it loads without a fault, as long as it keeps to the limits.
  if (stored.size() > smallLimits().maxBytes)
    return;
  Objects again;
  load(stored, again);
  expect(store(again) == stored, "stored, loaded and stored again, the bytes differ");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const *data, std::size_t size)
{
  run(std::string(reinterpret_cast<char const *>(data), size));
  FuzzNode::cutRings();
  expect(FuzzNode::alive.empty(), "a node is left");
  return 0;
}
