#pragma once

#include "foundation/ellipse.h"

#include <ostream>

/// A part of a gxEllipse as a plain value, no shape (see gxEllipseArc2 for that): a start angle and a span, both
/// angles of the unit circle of the ellipse.
///
/// On an ordinary ellipse an arc runs towards growing angles: the span is from 0 to a turn. On a reversed ellipse the
/// same angles run the other way round the plane, and an arc may run either way: its span is from minus a turn to a
/// turn. The ellipse of an arc has no phase.
class GX_API gxEllipseArc
{
 public:
  /// The whole unit circle.
  gxEllipseArc() = default;
  /// From @p start to @p end. The span is norm(end - start), or a turn if they are a turn or more apart; but on a
  /// reversed ellipse an end below the start is reached through falling angles.
  gxEllipseArc(gxEllipse const &ellipse, gxRadian start, gxRadian end);
  /// From @p start through a span that was read from an arc; it is kept to the last bit.
  static gxEllipseArc fromSpan(gxEllipse const &ellipse, gxRadian start, gxRadian span);

  gxEllipse const &ellipse() const { return ellipse_; }
  gxRadian start() const { return start_; }
  gxRadian span() const { return span_; }
  gxRadian end() const { return start_ + span_; }
  gxVector<2> startPoint() const { return ellipse_.point(start_); }
  gxVector<2> endPoint() const { return ellipse_.point(end()); }
  /// The arc as a piece of an outline.
  gx_ArcPiece piece() const;

  /// A mirroring map turns ordinary ellipses into reversed ones and back; start stays start, unless the image would
  /// run towards falling angles on an ordinary ellipse: then start and end change places.
  gxEllipseArc map(gxXform<2> const &xform) const;
  gxRect boundingBox() const;
  gxRect encloseRect() const;
  /// The first of the nearest points.
  gxVector<2> nearestPoint(gxVector<2> const &p) const;
  double distToPoint(gxVector<2> const &p) const;
  double perimeter() const;

  /// Exact, field by field.
  friend bool operator==(gxEllipseArc const &a, gxEllipseArc const &b)
  {
    return a.ellipse_ == b.ellipse_ && a.start_ == b.start_ && a.span_ == b.span_;
  }
  friend GX_API gxArchive &operator||(gxArchive &archive, gxEllipseArc &arc);

 private:
  gxEllipse ellipse_;
  gxRadian start_;
  gxRadian span_{gf_turnRadians};
};

inline std::ostream &operator<<(std::ostream &os, gxEllipseArc const &a)
{
  return os << "arc from " << a.start() << " through " << a.span() << " of " << a.ellipse();
}
