// A program of a user: the umbrella header, an exception that crosses the border of the library, the back ends.

#include "dispc/gxdisplay.h"

#include <iostream>
#include <string>

namespace
{

bool throwsSingular()
{
  try {
    gxXform<2>(gxMatrix<2>(1, 2, 2, 4), {}).inverse();
  } catch (gxMathError::Errors const &error) {
    return std::string(error.what()).find("Singular") != std::string::npos;
  }
  return false;
}

}  // namespace

int main()
{
  if (!throwsSingular()) {
    std::cerr << "an exception of the library was not caught by its type\n";
    return 1;
  }
  std::cout << "ok\n";
}
