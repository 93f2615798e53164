#include "foundation/handle.h"
#include "tests/support/outlines.h"

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>
#include <vector>

namespace
{
using Poly = gxSMDGDPoly;

Outline device()
{
  Outline p(true, {{10, 10, 2, 0, 4}, {0, 10, -1, 0, 4}, {0, 0, 0, 30, -1}, {10, 0, 0.5, -20, 7}});
  auto v = p.vertex(2, false);
  v.segmentLengthTol(gxDimTol(10, 0.5, 0.25, gxDimTol::Offsets));
  v.percentNextSegment(0.75);
  p.replaceVertex(2, v);
  p.insertVertex(-1, Corner{12, 5, 0, 0, 9}.vertex());  // labels out of order
  p.toggleDirection();
  p.weight(0.25);
  p.colors(gxSMDColors(gxColor::red, gxColor::white, gxColor(1, 2, 3)));
  p.positiveArrowColor(gxColor::blue);
  p.negativeArrowColor(gxColor(7, 8, 9));
  return p;
}

std::string little(double v)
{
  return std::string(reinterpret_cast<char const *>(&v), sizeof v);
}

/// What is refused, or "" for bytes that load; whatever loads can be used.
std::string refusal(std::string const &bytes)
{
  Outline p = device();
  Poly &poly = p;
  try {
    loadArchived(bytes, poly);
  } catch (gxArchive::Errors const &e) {
    bool const empty = p.numVertices() == 0 && p.isOpen();
    EXPECT_TRUE(empty || p.allFields() == device().allFields()) << "neither empty nor untouched: " << e.what();
    return e.message();
  }
  try {
    p.perimeter_(0.0);
    p.replaceVertex(0, p.vertex(0, false));
  } catch (gxException const &) {
  }
  return "";
}

/// The stored device with the bytes of a number, which must occur at @p place among its like, exchanged.
std::string withNumber(double from, double to, int place)
{
  std::string bytes = archivedBytes<Poly>(device());
  std::size_t at = std::string::npos;
  for (int i = 0; i <= place; ++i)
    at = bytes.find(little(from), at + 1);
  EXPECT_NE(at, std::string::npos);
  return bytes.replace(at, 8, little(to));
}
}  // namespace

TEST(PolyArchive, RoundTripAndVersions)
{
  Outline const p = device();
  EXPECT_EQ(Outline(throughArchive<Poly>(p)).allFields(), p.allFields());
  Outline loaded = throughArchive<Poly>(p);
  loaded.replaceVertex(0, loaded.vertex(0, false));  // labels come into order as they would have without the archive
  Outline here = p;
  here.replaceVertex(0, here.vertex(0, false));
  EXPECT_EQ(loaded.allFields(), here.allFields());

  // Version 0 ended before the weight.
  std::string const bytes = archivedBytes<Poly>(p);
  std::string old = bytes.substr(0, bytes.size() - 8);
  old[0] = 0;
  Outline target = p;
  Poly &into = target;
  loadArchived(old, into);
  EXPECT_EQ(target.weight(), 1.0);
  target.weight(0.25);
  EXPECT_EQ(target, p);
  EXPECT_NE(refusal('\x02' + bytes.substr(1)), "");

  // Through a handle, under the class that was stored.
  std::stringstream stream;
  {
    gxPtrHandle<Poly> const handle(new gxSMDGDPolyPrivate(p.name()));
    gxStoringArchive archive(stream);
    archive << handle;
  }
  gxLoadingArchive archive(stream);
  gxPtrHandle<Poly> handle;
  archive >> handle;
  EXPECT_NE(dynamic_cast<gxSMDGDPolyPrivate *>(handle.rep()), nullptr);
}

TEST(PolyArchive, VersionsOfVertices)
{
  gxSMDGDPolyVertex v = Corner{1, 2, 3, 4, 5}.vertex();
  v.segmentLengthTol(gxDimTol(10, 9, 12));
  std::string const bytes = archivedBytes(v);
  EXPECT_EQ(throughArchive(v), v);
  std::size_t const beforeTol = bytes.size() - (1 + 3 * 8 + 4);
  gxSMDGDPolyVertex loaded = v;

  std::string old = bytes.substr(0, beforeTol);
  old[0] = 0;
  loadArchived(old, loaded);
  EXPECT_EQ(loaded.segmentLengthTol(), gxDimTol());

  old[0] = 1;
  old += little(0.5) + little(0.25) + std::string(4, '\x7F');
  loaded = v;
  loadArchived(old, loaded);
  EXPECT_EQ(loaded.segmentLengthTol(), gxDimTol(10, 0.5, 0.25, gxDimTol::Offsets));
  old.replace(beforeTol, 8, little(-3));
  EXPECT_THROW(loadArchived(old, loaded), gxArchive::Errors);
  EXPECT_EQ(refusalOfVersion(bytes, 0, v, "", 0, 3), "");
}

TEST(PolyArchive, DamageIsRefused)
{
  std::string const bytes = archivedBytes<Poly>(device());
  ASSERT_EQ(refusal(bytes), "");
  for (std::size_t n = 0; n < bytes.size(); ++n)
    ASSERT_NE(refusal(bytes.substr(0, n)), "") << n;
  int loaded = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i)
    for (int const flip : {1, 0x80, 0xFF}) {
      std::string damaged = bytes;
      damaged[i] = static_cast<char>(damaged[i] ^ flip);
      loaded += refusal(damaged).empty();
    }
  EXPECT_LT(loaded, 1600);  // of 2184: tolerances, colours, names and weights may be anything

  double const noNumber = std::numeric_limits<double>::quiet_NaN();
  Outline const p = device();
  auto const [from, to] = p.roundedEnds(2);
  for (auto const &[what, damaged, text] : std::vector<std::array<std::string, 3>>{
           {"percentage", withNumber(0.75, 1.75, 0), "percentages"},
           {"radius", withNumber(2.0, 2.001, 0), "does not fit"},
           {"radius", withNumber(2.0, noNumber, 0), "finite"},
           {"span of a line", withNumber(30.0, 31.0, 0), "does not fit"},
           {"where a fillet touches", withNumber(from.x(), from.x() + 1e-6, 0), "does not fit"},
           {"where a fillet touches", withNumber(to.x(), noNumber, 0), "does not fit"},
       })
    EXPECT_NE(refusal(damaged).find(text), std::string::npos) << what << ": " << refusal(damaged);
}
