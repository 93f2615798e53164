#include "dispc/flagstack.h"

#include "dispc/uierror.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace
{
/// The stack as a plain vector, its top at the back.
void expectSame(gxFlagStack const &stack, std::vector<bool> const &model)
{
  ASSERT_EQ(stack.depth(), static_cast<long>(model.size()));
  ASSERT_EQ(static_cast<bool>(stack), model.back());
  for (std::size_t i = 0; i < model.size(); ++i)
    ASSERT_EQ(stack[static_cast<long>(i)], model[model.size() - 1 - i]) << stack << " at " << i;
  ASSERT_THROW(stack[stack.depth()], gxUIError::FlagStackOutOfRange);
  ASSERT_THROW(stack[-1], gxUIError::FlagStackOutOfRange);
}
}  // namespace

TEST(FlagStack, HoldsThirtyOnePushesAboveItsFirstFlag)
{
  gxFlagStack stack(true);
  std::vector<bool> model{true};
  for (int i = 0; i < 31; ++i) {
    stack.push(i % 3 == 0);
    model.push_back(i % 3 == 0);
  }
  EXPECT_THROW(stack.push(true), gxUIError::FlagStackOverflow);
  expectSame(stack, model);
  for (int i = 30; i >= 0; --i)
    EXPECT_EQ(stack.pop(), i % 3 == 0);
  EXPECT_THROW(stack.pop(), gxUIError::FlagStackUnderflow);
  expectSame(stack, {true});
  EXPECT_FALSE(gxFlagStack());
}

TEST(FlagStack, FollowsAPlainStack)
{
  std::mt19937 random(7);
  for (int run = 0; run < 20; ++run) {
    gxFlagStack stack;
    std::vector<bool> model{false};
    for (int step = 0; step < 200; ++step) {
      bool const flag = random() & 1;
      switch (random() % 5) {
        case 0:
          stack = flag;
          model.back() = flag;
          break;
        case 1:
        case 2:
          if (model.size() < 32) {
            stack.push(flag);
            model.push_back(flag);
          } else {
            ASSERT_THROW(stack.push(flag), gxUIError::FlagStackOverflow);
          }
          break;
        default:
          if (model.size() > 1) {
            ASSERT_EQ(stack.pop(), model.back());
            model.pop_back();
          } else {
            ASSERT_THROW(stack.pop(), gxUIError::FlagStackUnderflow);
          }
      }
      ASSERT_NO_FATAL_FAILURE(expectSame(stack, model));
    }
  }
}

TEST(FlagStack, PushOfABlockEndsWithTheBlock)
{
  gxFlagStack stack(true);
  try {
    gxFlagPush const off(stack, false);
    gxFlagPush const on(stack, true);
    EXPECT_EQ(stack.depth(), 3);
    throw gxUIError::NotAvailable();
  } catch (gxUIError::Errors const &) {
  }
  expectSame(stack, {true});
  while (stack.depth() < gxFlagStack::maxDepth)
    stack.push(false);
  EXPECT_THROW(gxFlagPush(stack, true), gxUIError::FlagStackOverflow);
  EXPECT_EQ(stack.depth(), gxFlagStack::maxDepth) << "a push that failed must not pop";
}
