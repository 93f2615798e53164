#include "foundation/outline.h"
#include "foundation/shapeserror.h"

#include <algorithm>
#include <array>
#include <cmath>

// The one sampling of all shapes.

namespace
{

/// Collects points and keeps to the greatest number allowed. Until it is told to keep them, its end takes them back.
class Collector
{
 public:
  Collector(gxShape::gxSampleParams const &params, gxShape::gxSampleResult &result)
      : maxPoints_(params.maxPoints() > 0 ? static_cast<std::size_t>(params.maxPoints()) : 0),
        result_(result),
        points_(result.positions().size()),
        contours_(result.contourStarts().size())
  {
  }
  Collector(Collector const &) = delete;
  Collector &operator=(Collector const &) = delete;
  ~Collector()
  {
    if (!isKept_)
      result_.truncate(points_, contours_);
  }

  void beginContour() { result_.beginContour(); }
  void append(gxVector<2> const &p)
  {
    if (result_.positions().size() >= maxPoints_)
      throw gxShapesError::SampleOverflow();
    result_.append(p);
  }
  /// Points that were expected.
  void append(gxVector<2> const *p, std::size_t n) { result_.append(p, n); }
  /// Throws at once if @p n more points are too many.
  void expect(double n) const
  {
    if (!(static_cast<double>(result_.positions().size()) + n <= static_cast<double>(maxPoints_)))
      throw gxShapesError::SampleOverflow();
  }
  void keep() { isKept_ = true; }

 private:
  std::size_t const maxPoints_;
  gxShape::gxSampleResult &result_;
  std::size_t const points_;
  std::size_t const contours_;
  bool isKept_ = false;
};

/// A whole number of steps no longer than @p spacing; a hair over a whole number is no step of its own.
double stepsOf(double length, double spacing)
{
  constexpr double whole = 1e-9;
  return spacing > 0.0 ? std::max(1.0, std::ceil(length / spacing - whole)) : 1.0;
}

bool isCorner(gx_Piece const &before, gx_Piece const &after)
{
  gxVector<2> const in = before.tangent(1.0).unit(), out = after.tangent(0.0).unit();
  constexpr double smooth = 1e-9;  // radians: pieces that were made to be tangent meet at less
  return std::abs(in.cross(out)) > smooth || in * out < 0.0;
}

/// Appends points at equal lengths behind the place @p from of a piece, up to and with the place @p to.
void sampleByLength(gx_Piece const &piece, double from, double to, double spacing, Collector &collector)
{
  double const before = piece.lengthTo(from), length = piece.lengthTo(to) - before;
  double const n = stepsOf(length, spacing);
  collector.expect(n);
  for (double i = 1.0; i < n; ++i)
    collector.append(piece.point(piece.paramAtLength(before + length * i / n)));
  collector.append(piece.point(to));
}

/// Appends the points behind the start at a whole number of equal steps, in blocks.
void sampleByParam(gx_BezierPiece const &piece, double steps, Collector &collector)
{
  constexpr std::size_t blockSize = 128;
  std::array<gxVector<2>, blockSize> block;
  auto const n = static_cast<std::size_t>(steps) - 1;
  for (std::size_t i = 0; i < n; i += blockSize) {
    std::size_t const size = std::min(blockSize, n - i);
    piece.evaluate(static_cast<double>(i + 1), 1.0 / steps, size, block.data());
    collector.append(block.data(), size);
  }
  collector.append(piece.point(1.0));
}

template <class Piece>
void sampleByParam(Piece const &piece, double steps, Collector &collector)
{
  for (double i = 1.0; i <= steps; ++i)
    collector.append(piece.point(i / steps));
}

/// The points behind the start of a piece, its end included: equal steps of the parameter that keep to the tolerance,
/// and between them equal lengths that keep to the spacing.
void samplePiece(gx_Piece const &piece, gxShape::gxSampleParams const &params, Collector &collector)
{
  double const chords = piece.chords(params.tolerance());
  collector.expect(chords);
  if (params.spacing() == 0.0) {
    std::visit([&](auto const &p) { sampleByParam(p, chords, collector); },
               static_cast<gx_Piece::Kinds const &>(piece));
    return;
  }
  for (double i = 1.0; i <= chords; ++i)
    sampleByLength(piece, (i - 1.0) / chords, i / chords, params.spacing(), collector);
}

void samplePieces(gx_Contour const &contour, gxShape::gxSampleParams const &params, Collector &collector)
{
  collector.append(contour.pieces.front().point(0.0));
  for (std::size_t i = 0; i < contour.pieces.size(); ++i) {
    if (i > 0 && params.duplicateCorners() && isCorner(contour.pieces[i - 1], contour.pieces[i]))
      collector.append(contour.pieces[i].point(0.0));
    samplePiece(contour.pieces[i], params, collector);
  }
}

void sampleUniformly(gx_Contour const &contour, gxShape::gxSampleParams const &params, Collector &collector)
{
  double length = 0.0;
  for (gx_Piece const &piece : contour.pieces)
    length += piece.length();
  double const steps = stepsOf(length, params.spacing());
  collector.expect(steps + 1.0);
  collector.append(contour.pieces.front().point(0.0));
  double before = 0.0;  // length of the pieces passed
  auto piece = contour.pieces.begin();
  double pieceLength = piece->length();
  for (double i = 1.0; i < steps; ++i) {
    double const pos = length * i / steps;
    while (pos > before + pieceLength && piece + 1 != contour.pieces.end()) {
      before += pieceLength;
      ++piece;
      pieceLength = piece->length();
    }
    collector.append(piece->point(piece->paramAtLength(pos - before)));
  }
  collector.append(contour.pieces.back().point(1.0));
}

}  // namespace

void gxShape::gxSampleParams::check() const
{
  bool const areLimits = spacing_ >= 0.0 && tolerance_ >= 0.0;  // and not NaN
  if (!areLimits || (uniformMode_ && spacing_ == 0.0))
    throw gxShapesError::BadParams();
}

void gxShape::sample(gxSampleParams const &params, gxSampleResult &result) const
{
  params.check();
  gx_Outline const outline(*this);
  Collector collector(params, result);
  for (gx_Contour const &contour : outline.contours) {
    if (contour.pieces.empty())
      continue;
    collector.beginContour();
    if (params.uniformMode())
      sampleUniformly(contour, params, collector);
    else
      samplePieces(contour, params, collector);
  }
  collector.keep();
}
