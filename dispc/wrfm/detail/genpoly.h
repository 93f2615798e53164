#pragma once

#include "dispc/wrfm/genpoly.h"

// How the sources of the polygon ask its outline, and change it.

/// What the outline throws comes out as the error of a shape.
template <class Work>
auto gxGenPoly::ask_(Work work) const
{
  try {
    return work();
  } catch (gxException &e) {
    remapAndThrowError_(e);
    throw;  // never reached; not every compiler sees that through a virtual call
  }
}

template <class Work>
void gxGenPoly::edit_(Work work)
{
  checkMutable_();
  mutating();
  ask_(work);
}
