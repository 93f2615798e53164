#include "dispc/flagstack.h"

#include "dispc/uierror.h"

void gxFlagStack::throwOverflow()
{
  throw gxUIError::FlagStackOverflow();
}

void gxFlagStack::throwUnderflow()
{
  throw gxUIError::FlagStackUnderflow();
}

void gxFlagStack::throwOutOfRange()
{
  throw gxUIError::FlagStackOutOfRange();
}

std::ostream &operator<<(std::ostream &os, gxFlagStack const &stack)
{
  for (long i = 0; i < stack.depth(); ++i)
    os << (i == 0 ? '[' : ' ') << (stack[i] ? 1 : 0);
  return os << ']';
}
