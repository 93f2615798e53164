// Where an outline meets a mask, and on which side of it the stretches between run.
//
// A point found well inside of two pieces that cross at an angle leads to the other side. All others - at joints, at
// tangents, where two outlines run along each other - say nothing by themselves: there the stretch behind is asked.

#include "dispc/wrfm/detail/crop.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace
{

using V = gxVector<2>;
using Box = gx_PolyBoxes::Box;

/// In units of the tolerance within which a point lies on a piece: what lies nearer to a joint may belong to it, and
/// what comes nearer to the mask may run along it.
constexpr double kJointMargin = 100.0;
constexpr double kAlongMargin = 10.0;
/// The sine of the least angle that is surely one.
constexpr double kCrossingSine = 1e-6;
/// Where a stretch is looked at: places that are nothing special.
constexpr std::array<double, 3> kSamples = {0.4871, 0.2113, 0.7637};

Box around(V const &p, double margin)
{
  return Box{p.x(), p.y(), p.x(), p.y()}.widened(margin);
}

struct Length {
  double operator()(V const &) const { return 0.0; }
  template <class Segment>
  double operator()(Segment const &segment) const
  {
    return segment.length();
  }
};

struct Ends {
  std::array<V, 2> operator()(V const &p) const { return {p, p}; }
  template <class Segment>
  std::array<V, 2> operator()(Segment const &segment) const
  {
    return {segment.p1(), segment.p2()};
  }
};

/// The direction of travel at a point of a piece; zero where there is none.
struct Direction {
  V at;

  V operator()(V const &) const { return {}; }
  V operator()(gx2SegmentLine const &line) const { return (line.p2() - line.p1()).unit(); }
  V operator()(gx2SegmentArc const &arc) const
  {
    V const r = (at - arc.center()).unit();
    return {-r.y(), r.x()};
  }
};

/// How far a point of a piece is from its start.
struct Along {
  V point;

  double operator()(V const &) const { return 0.0; }
  double operator()(gx2SegmentLine const &line) const { return line.p1().distance(point); }
  double operator()(gx2SegmentArc const &arc) const
  {
    gxDegree const angle = (point - arc.center()).angle();
    double const span = arc.angleSpan().value(), full = std::abs(span);
    double turned = (span >= 0.0 ? angle - arc.startAngle() : arc.startAngle() - angle).norm().value();
    if (turned > full)  // by rounding, beyond one of the ends
      turned = turned - full < gf_turnDegrees - turned ? full : 0.0;
    return arc.length() * turned / full;
  }
};

bool isInside(gx_RoundedPiece const &piece, V const &p, double margin)
{
  auto const ends = std::visit(Ends(), piece);
  return ends[0].distance(p) > margin && ends[1].distance(p) > margin;
}

bool crossesSurely(gx_RoundedPiece const &a, gx_RoundedPiece const &b, V const &p, double margin)
{
  V const u = std::visit(Direction{p}, a), w = std::visit(Direction{p}, b);
  return std::abs(u.cross(w)) > kCrossingSine && isInside(a, p, margin) && isInside(b, p, margin);
}

}  // namespace

// ---- The mask

gx_CropMask::gx_CropMask(gxSMDGDPoly const &mask) : mask_(mask), boxes_(gx_PolyFields::boxes(mask))
{
  if (boxes_ && mask.isClosed())
    return;
  own_.refresh(mask.vertices().size(), [&](std::size_t j) {
    Box box = around(mask.vertices()[j].point(), 0.0);  // at the start of an open outline there is no segment
    box.add(gx_PolyFields::boxAt(mask, static_cast<int>(j)));
    return box;
  });
  boxes_ = &own_;
}

bool gx_CropMask::comesNear(V const &p, double distance) const
{
  return anyPieceNear(around(p, distance), [&](gx_RoundedPiece const &piece) { return gx_holds(piece, p, distance); });
}

bool gx_CropMask::holds(V const &p) const
{
  return box().meets(around(p, 0.0)) && gxSMDGDPolyPrivate::inside(mask_, p);
}

// ---- The points

gx_CropPath::gx_CropPath(gxSMDGDPoly const &poly, gxSMDGDPoly const &mask, bool keepInside)
    : poly_(poly), mask_(mask), tolerance_(gx_PolyFields::onPieceTolerance(poly, mask))
{
  gx_PolyBoxes const *const own = gx_PolyFields::boxes(poly);
  if (own && poly.numSegments() > 0 && !own->whole().widened(tolerance_).meets(mask_.box())) {
    beginsKept_ = !keepInside;
    return;
  }
  makePieces();
  findPoints();
  mergeDoubles();

  std::vector<Side> found = findSides(true);
  if (poly.isClosed() && found.front() != found.back())
    found = findSides(false);  // it does not come out where it began: a point was missed
  std::vector<Side> const sides = settled(found, poly.isClosed());
  auto const isKept = [&](Side side) { return side != Side::none && (side == Side::inside) == keepInside; };
  for (std::size_t j = 0; j < points_.size(); ++j) {
    points_[j].isCut = isKept(sides[j]) != isKept(sides[j + 1]);
    points_[j].touches = found[j] == found[j + 1] && found[j] != Side::along && found[j] != Side::none;
  }
  beginsKept_ = isKept(sides[0]);
}

void gx_CropPath::makePieces()
{
  std::size_t const n = poly_.vertices().size();
  pieces_.resize(2 * n);
  auto const put = [](Piece &to, gx_RoundedPiece const &shape) {
    auto const ends = std::visit(Ends(), shape);
    to = {shape, std::visit(Length(), shape), ends[0], ends[1]};
  };
  for (std::size_t i = 0; i < n; ++i) {
    int const v = static_cast<int>(i), s = gxSMDGDPolyPrivate::nextSegmentIndex_(poly_, v);
    put(pieces_[2 * i], gx_roundedVertex(poly_, v));
    if (s != -1 && n > 1)
      put(pieces_[2 * i + 1], gx_roundedPiece(poly_, s));
  }
}

void gx_CropPath::findPoints()
{
  std::size_t const n = poly_.vertices().size();
  for (std::size_t i = 0; i < n; ++i) {
    Box box = around(poly_.vertices()[i].point(), tolerance_);
    box.add(gx_PolyFields::boxAt(poly_, static_cast<int>(i)));
    std::array<std::size_t, 2> const own = {2 * i, (2 * i + 2 * n - 1) % (2 * n)};  // those in the box
    mask_.anyPieceNear(box.widened(tolerance_), [&](gx_RoundedPiece const &of) {
      for (std::size_t const at : own)
        if (pieces_[at].shape)
          findPointsOf(at, of);
      return false;
    });
  }
}

/// Where outlines run along each other before and behind a joint of a line and an arc, they leave each other there, and
/// the pieces themselves have no point in common.
void gx_CropPath::findPointsOf(std::size_t piece, gx_RoundedPiece const &of)
{
  gx_RoundedPiece const &shape = *pieces_[piece].shape;
  for (V const &p : gx_meet(shape, of, tolerance_))
    add(piece, p, crossesSurely(shape, of, p, kJointMargin * tolerance_));
  if (std::holds_alternative<gx2SegmentArc>(shape))
    for (V const &end : {pieces_[piece].start, pieces_[piece].end})
      if (gx_holds(of, end, tolerance_))
        add(piece, end, false);
  if (auto const *arc = std::get_if<gx2SegmentArc>(&of))
    for (V const &end : {arc->p1(), arc->p2()})
      if (gx_holds(shape, end, tolerance_))
        add(piece, end, false);
}

/// What lies at the end of a segment belongs to the vertex there; its place is that of the joint.
void gx_CropPath::add(std::size_t piece, V const &point, bool crosses)
{
  std::size_t const all = pieces_.size();
  Piece const &found = pieces_[piece];
  double const along = std::visit(Along{point}, *found.shape);
  if (!std::isfinite(along))
    return;  // too large to reckon with
  bool const isFirst = along <= 0.5 * found.length;
  V const joint = isFirst ? found.start : found.end;
  if (!(joint.distance(point) <= tolerance_)) {
    points_.push_back({piece, along, point, crosses});
    return;
  }
  bool atStart = isFirst;
  if (piece % 2 != 0) {
    atStart = !isFirst;
    piece = isFirst ? piece - 1 : (piece + 1) % all;
  }
  points_.push_back({piece, atStart ? 0.0 : pieces_[piece].length, joint});
}

void gx_CropPath::mergeDoubles()
{
  std::sort(points_.begin(), points_.end(), [](gx_CropPoint const &a, gx_CropPoint const &b) {
    return a.piece != b.piece ? a.piece < b.piece : a.along < b.along;
  });
  std::size_t kept = 0;
  for (gx_CropPoint const &p : points_) {
    bool const isDouble =
        kept > 0 && points_[kept - 1].piece == p.piece && p.along - points_[kept - 1].along <= tolerance_;
    if (isDouble)
      points_[kept - 1].crosses = false;
    else
      points_[kept++] = p;
  }
  points_.resize(kept);
}

// ---- The stretches

V gx_CropPath::pointAt(std::size_t piece, double along) const
{
  Piece const &p = pieces_[piece];
  double const t = p.length > 0.0 ? along / p.length : 0.0;
  if (auto const *arc = std::get_if<gx2SegmentArc>(&*p.shape))
    return arc->segPoint(t);
  return p.start + (p.end - p.start) * t;
}

/// Of the way between two points; without the first one from the start of the outline, without the second one to its
/// end. In a closed outline the way may lead past the end, all round from a point to itself.
gx_CropPath::Portion gx_CropPath::longestPortion(gx_CropPoint const *from, gx_CropPoint const *to) const
{
  Portion const start = from ? Portion{from->piece, from->along, 0.0} : Portion{};
  std::size_t const last = to ? to->piece : pieces_.size() - 1;
  double const end = to ? to->along : pieces_[last].length;
  Portion longest = start;
  auto const offer = [&](Portion const &portion) {
    if (portion.to - portion.from > longest.to - longest.from)
      longest = portion;
  };
  longest.to = longest.from;
  bool const isOnePiece = start.piece == last && (!from || !to || start.from < end);
  if (isOnePiece) {
    offer({last, start.from, end});
    return longest;
  }
  offer({start.piece, start.from, pieces_[start.piece].length});
  for (std::size_t k = (start.piece + 1) % pieces_.size(); k != last; k = (k + 1) % pieces_.size())
    offer({k, 0.0, pieces_[k].length});
  offer({last, 0.0, end});
  return longest;
}

gx_CropPath::Side gx_CropPath::sideOf(Portion const &portion) const
{
  if (!(portion.to > portion.from))
    return Side::none;
  for (double const t : kSamples) {
    V const p = pointAt(portion.piece, portion.from + (portion.to - portion.from) * t);
    if (!mask_.comesNear(p, kAlongMargin * tolerance_))
      return mask_.holds(p) ? Side::inside : Side::outside;
  }
  return Side::along;
}

/// Before the first point, and behind each. In a closed outline the first and the last are one stretch.
std::vector<gx_CropPath::Side> gx_CropPath::findSides(bool trusting) const
{
  std::size_t const n = points_.size();
  std::vector<Side> sides(n + 1);
  if (n == 0) {
    sides[0] = mask_.holds(pieces_[0].start) ? Side::inside : Side::outside;
    return sides;
  }
  bool const isClosed = poly_.isClosed();
  sides[0] = sideOf(longestPortion(isClosed ? &points_.back() : nullptr, &points_.front()));
  for (std::size_t j = 0; j < n; ++j) {
    bool const isLast = j + 1 == n;
    if (trusting && points_[j].crosses && (sides[j] == Side::inside || sides[j] == Side::outside))
      sides[j + 1] = sides[j] == Side::inside ? Side::outside : Side::inside;
    else if (isLast && isClosed)
      sides[n] = sides[0];
    else
      sides[j + 1] = sideOf(longestPortion(&points_[j], isLast ? nullptr : &points_[j + 1]));
  }
  return sides;
}

/// What runs along the mask is inside, unless what is beside it is outside and nothing of it is inside.
std::vector<gx_CropPath::Side> gx_CropPath::settled(std::vector<Side> const &sides, bool isClosed)
{
  std::size_t const n = sides.size();
  auto const carried = [&](auto first, auto last) {  // for each stretch, the last clear side before it, or none
    std::vector<Side> result;
    Side side = Side::none;
    for (int round = isClosed ? 0 : 1; round < 2; ++round)
      for (auto at = first; at != last; ++at) {
        side = *at == Side::along ? side : *at;
        if (round == 1)
          result.push_back(side);
      }
    return result;
  };
  std::vector<Side> const before = carried(sides.begin(), sides.end());
  std::vector<Side> const behind = carried(sides.rbegin(), sides.rend());
  std::vector<Side> result = sides;
  for (std::size_t j = 0; j < n; ++j) {
    Side const a = before[j], b = behind[n - 1 - j];
    if (sides[j] != Side::along)
      continue;
    bool const isOutside = a != Side::inside && b != Side::inside && (a == Side::outside || b == Side::outside);
    result[j] = isOutside ? Side::outside : Side::inside;
  }
  return result;
}
