#include "foundation/shapeinfo.h"

#include "foundation/shapeserror.h"

#include <algorithm>

gxShapeInfo::gxShapeInfo(gxShape const &shape) : outline_(shape)
{
  double length = 0.0;
  starts_.push_back(length);
  for (std::size_t c = 0; c < outline_.contours.size(); ++c)
    for (std::size_t i = 0; i < outline_.contours[c].pieces.size(); ++i) {
      length += outline_.contours[c].pieces[i].length();
      pieces_.push_back({c, i});
      starts_.push_back(length);
    }
}

gxShapeInfo::Place gxShapeInfo::placeAt(double pos) const
{
  if (pieces_.empty())
    throw gxShapesError::NotContour();
  if (!(pos >= 0.0 && pos <= perimeter()))
    throw gxShapesError::BadCoef();
  auto const end = std::lower_bound(starts_.begin() + 1, starts_.end(), pos);
  std::size_t const i = static_cast<std::size_t>(end - starts_.begin()) - 1;
  return {i, piece(i).paramAtLength(pos - starts_[i])};
}
