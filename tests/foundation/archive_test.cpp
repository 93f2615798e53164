#include "foundation/archive.h"

#include <gtest/gtest.h>

#include <sstream>

namespace
{

struct Lamp : virtual gxPersistent, virtual gxRepBase {
  long watts = 0;
  gxPtrHandle<Lamp> next;
  GX_PERSISTENT(Lamp);
};
GX_PERSISTENT_IMPL(Lamp, "Lamp", 0)
void Lamp::serialize_(gxArchive &archive, unsigned char version)
{
  gf_refuseVersion(version, "Lamp");
  gxPersistent::dispatchSerialize(archive);
  archive || watts || next;
}

}  // namespace

TEST(Archive, SharedObjectsStayShared)
{
  std::stringstream stream;
  {
    gxPtrHandle<Lamp> a(new Lamp), b(new Lamp);
    a->watts = 7;
    a->next = b;
    b->watts = 8;
    gxStoringArchive out(stream);
    out << a << b << std::string("end");
  }
  gxPtrHandle<Lamp> a, b;
  std::string end;
  gxLoadingArchive in(stream);
  in >> a >> b >> end;
  EXPECT_EQ(a->watts, 7);
  EXPECT_EQ(b->watts, 8);
  EXPECT_EQ(a->next, b);
  EXPECT_EQ(end, "end");
}
