#include "foundation/handle.h"

#include "foundation/exception.h"

#include <gtest/gtest.h>

#include <memory>
#include <thread>
#include <type_traits>
#include <vector>

namespace
{

struct Thing : virtual gxRepBase {
  explicit Thing(int v = 0) : value(v) { ++alive; }
  Thing(Thing const &t) : gxRepBase(t), value(t.value), next(t.next) { ++alive; }
  Thing &operator=(Thing const &) = default;
  ~Thing() override { --alive; }
  int value;
  gxPtrHandle<Thing> next;
  static inline int alive = 0;
};

struct SpecialThing : Thing {
  using Thing::Thing;
};

using Handle = gxPtrHandle<Thing>;
using ConstHandle = gxPtrHandle_const<Thing>;

class Handles : public testing::Test
{
 protected:
  void TearDown() override { EXPECT_EQ(Thing::alive, 0); }
};

// A handle to a constant gives no way to change the object, and does not turn into one that does.
static_assert(std::is_same_v<decltype(*std::declval<ConstHandle const &>()), Thing const &>);
static_assert(std::is_same_v<decltype(*std::declval<Handle const &>()), Thing &>);
static_assert(std::is_convertible_v<Handle, ConstHandle> && !std::is_convertible_v<ConstHandle, Handle>);
static_assert(std::is_convertible_v<gxPtrHandle<SpecialThing>, Handle>);
static_assert(std::is_convertible_v<gxPtrHandle_const<SpecialThing>, ConstHandle>);
static_assert(!std::is_convertible_v<Handle, gxPtrHandle<SpecialThing>>);
static_assert(sizeof(Handle) == sizeof(Thing *) && std::is_nothrow_move_constructible_v<Handle>);

}  // namespace

TEST_F(Handles, TheCountFollowsEveryWayOfHolding)
{
  Handle a(new SpecialThing(1));
  EXPECT_EQ(a->refCount(), 1);
  ConstHandle b = a;
  Handle c(a);
  EXPECT_EQ(a->refCount(), 3);
  Handle d(std::move(c));
  EXPECT_TRUE(c.isNull());
  EXPECT_EQ(a->refCount(), 3);
  c = d;
  d = nullptr;
  b = c;
  EXPECT_EQ(a->refCount(), 3);
  EXPECT_EQ(a, c);
  EXPECT_EQ(b.rep(), a.rep());
  b = std::move(c);
  EXPECT_EQ(a->refCount(), 2);
}

TEST_F(Handles, TheLastOneDeletesThroughTheVirtualDestructor)
{
  {
    gxPtrHandle_const<gxRepBase> base;
    {
      Handle const h(new SpecialThing);
      base = gxPtrHandle_const<gxRepBase>(h.rep());
    }
    EXPECT_EQ(Thing::alive, 1);
  }
  EXPECT_EQ(Thing::alive, 0);
}

TEST_F(Handles, AssigningItselfOrAPartOfItsObjectIsSafe)
{
  Handle list(new Thing(1));
  list->next = new Thing(2);
  list->next->next = new Thing(3);
  Handle const &same = list;
  list = same;
  Handle &alias = list;
  list = std::move(alias);
  EXPECT_EQ(list->value, 1);
  list = list->next;  // the old object, which holds the new one, goes
  EXPECT_EQ(list->value, 2);
  EXPECT_EQ(list->refCount(), 1);
  list = std::move(list->next);
  EXPECT_EQ(list->value, 3);
  EXPECT_EQ(Thing::alive, 1);
}

TEST_F(Handles, NullIsCheckedAtEachDereference)
{
  Handle const null;
  ConstHandle const constNull(nullptr);
  EXPECT_FALSE(null);
  EXPECT_EQ(null, nullptr);
  EXPECT_EQ(null, Handle(static_cast<Thing *>(nullptr)));
  EXPECT_EQ(null.rep(), nullptr);
  EXPECT_THROW((void)null->value, gxBadPointer);
  EXPECT_THROW((void)*null, gxBadPointer);
  EXPECT_THROW((void)constNull->value, gxBadPointer);
  EXPECT_THROW((void)*constNull, gxBadPointer);
}

TEST_F(Handles, TheCountIsNotCopiedWithTheObject)
{
  Handle const a(new Thing(1)), b(a);
  Handle const c(new Thing(*a));
  EXPECT_EQ(c->refCount(), 1);
  *c = *a;
  EXPECT_EQ(c->refCount(), 1);
  EXPECT_EQ(a->refCount(), 2);
}

TEST_F(Handles, ThreadsMayShareTheCount)
{
  Handle const shared(new Thing);
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([shared] {
      for (int i = 0; i < 20'000; ++i) {
        ConstHandle const a = shared;
        Handle b = shared;
        b = nullptr;
      }
    });
  }
  for (std::thread &t : threads)
    t.join();
  EXPECT_EQ(shared->refCount(), 1);
}

// The stack would not last for a deletion inside a deletion, a million times.
TEST_F(Handles, ListsOfAnyLengthAreDeleted)
{
  Handle list;
  for (int i = 0; i < 1'000'000; ++i) {
    Handle const head(new Thing(i));
    head->next = std::move(list);
    list = head;
  }
  list = nullptr;
  EXPECT_EQ(Thing::alive, 0);
}
