// Makes the pictures of docs/raster-rules.md: pels enlarged, with the geometry that they stand for drawn over them.
//
//   raster_rules FOLDER      writes FOLDER/*.png

#include "backends/pels/pelsurface.h"
#ifdef GXDISPLAY_HAVE_PNG
#include "backends/png/pngfile.h"
#endif
#include "dispc/dispprop.h"
#include "foundation/ellipse.h"
#include "foundation/ellipsearc.h"
#include "foundation/exception.h"
#include "foundation/genrect.h"
#include "foundation/lineseg.h"
#include "foundation/polygon.h"
#include "foundation/polyline.h"

#include <cmath>
#include <iostream>
#include <string>

namespace
{

constexpr long zoom = 15;
gxColor const paper(255, 255, 255), grid(214, 218, 224), ink(70, 110, 160), other(214, 150, 70), truth(200, 30, 40);

/// A few pels, and what they look like when each is a square of its own.
class Figure
{
 public:
  Figure(long columns, long rows)
      : pels_(columns, rows), picture_(columns * zoom + 1, rows * zoom + 1), columns_(columns), rows_(rows)
  {
  }

  /// Draw here what the figure shows.
  gxPelScope &scope() { return pels_.overlayScope(); }

  /// Draws geometry over the squares. Coordinates are those of the figure: pel (i, j) covers i to i + 1, j to j + 1.
  void line(gxVector<2> const &a, gxVector<2> const &b)
  {
    marks_.push_back(gxPolyline({a * double(zoom), b * double(zoom)}, false));
  }
  void outline(std::vector<gxVector<2>> points, bool closed = true)
  {
    for (gxVector<2> &p : points)
      p = p * double(zoom);
    marks_.push_back(gxPolyline(points, closed));
  }
  void ellipse(gxEllipse const &e, double from = 0.0, double through = gf_turnRadians)
  {
    std::vector<gxVector<2>> points;
    for (int i = 0; i <= 128; ++i)
      points.push_back(e.point(gxRadian(from + through * i / 128)) * double(zoom));
    marks_.push_back(gxPolyline(points, false));
  }

  void save(std::string const &path)
  {
    gxPelScope &image = picture_.imageScope();
    image.set(grid);
    gxPelBuffer<gxPackedRGB32Pel> const pels = pels_.overlayPels();
    for (long y = 0; y < rows_; ++y)
      for (long x = 0; x < columns_; ++x) {
        gxPackedRGB32Pel const p = pels.get(x, y);
        image.set(gxUIRect(x * zoom + 1, y * zoom + 1, zoom - 1, zoom - 1),
                  p.spare() ? gxColor(p.red(), p.green(), p.blue()) : paper);
      }
    for (gxPolyline const &mark : marks_)
      picture_.overlayScope().draw(mark, gxGraphicProps(truth, 1, gxGraphicProps::penSolid, false));
#ifdef GXDISPLAY_HAVE_PNG
    gfWritePng(path, picture_.picture());
    std::cout << path << '\n';
#else
    std::cout << path << ": left out, this build has no PNG files\n";
#endif
  }

 private:
  gxPelSurface pels_;
  gxPelSurface picture_;
  long columns_, rows_;
  std::vector<gxPolyline> marks_;
};

gxGraphicProps pen(long width, gxColor const &color = ink)
{
  return gxGraphicProps(color, width, gxGraphicProps::penSolid, false);
}

gxGraphicProps area(gxColor const &color = ink)
{
  return gxGraphicProps(color, 1, gxGraphicProps::penSolid, true);
}

gxVector<2> center(double x, double y)
{
  return {x + 0.5, y + 0.5};
}

void lines(std::string const &folder)
{
  Figure f(44, 16);
  auto const add = [&](double x0, double y0, double x1, double y1) {
    f.scope().draw(gxLineSeg({x0, y0}, {x1, y1}), pen(1));
    f.line(center(x0, y0), center(x1, y1));
  };
  add(1, 1, 20, 1);
  add(1, 4, 20, 7);
  add(1, 14, 12, 5);
  add(15, 14, 19, 9);
  add(24, 1, 24, 14);
  add(27, 14, 31, 1);
  add(33, 2, 42, 11);
  add(34, 13, 42, 14);  // passes half way between two pels in the middle
  f.save(folder + "/lines.png");
}

void widths(std::string const &folder)
{
  Figure f(62, 16);
  double y = 1;
  for (long width = 1; width <= 4; ++width) {
    double const row = y + double(width / 2);
    f.scope().draw(gxLineSeg({2, row}, {14, row}), [&] {
      gxGraphicProps p = pen(width);
      p.penEndCap(gxGraphicProps::capFlat);
      return p;
    }());
    double const shift = width % 2 ? 0.5 : 0.0;
    f.line({2 + shift, row + shift}, {14 + shift, row + shift});
    y += double(width) + 1;
  }
  double x = 18;
  for (long width = 1; width <= 7; ++width) {
    f.scope().draw(gxPoint(x + double(width / 2), 2 + double(width / 2)), pen(width));
    x += double(width) + 1;
  }
  double top = 12;
  x = 20;
  for (auto const cap : {gxGraphicProps::capFlat, gxGraphicProps::capSquare, gxGraphicProps::capRound}) {
    gxGraphicProps p = pen(5);
    p.penEndCap(cap);
    f.scope().draw(gxLineSeg({x, top}, {x + 7, top}), p);
    f.line(center(x, top), center(x + 7, top));
    x += 15;
  }
  f.save(folder + "/widths.png");
}

void joins(std::string const &folder)
{
  Figure f(62, 18);
  double x = 4;
  for (auto const join : {gxGraphicProps::joinRound, gxGraphicProps::joinBevel, gxGraphicProps::joinMiter}) {
    gxGraphicProps p = pen(5);
    p.penJoin(join);
    p.penEndCap(gxGraphicProps::capFlat);
    std::vector<gxVector<2>> const path{{x, 13}, {x + 6, 4}, {x + 12, 13}};
    f.scope().draw(gxPolyline(path, false), p);
    f.outline({path[0] + gxVector<2>(0.5, 0.5), path[1] + gxVector<2>(0.5, 0.5), path[2] + gxVector<2>(0.5, 0.5)},
              false);
    x += 20;
  }
  f.save(folder + "/joins.png");
}

void curves(std::string const &folder)
{
  Figure f(64, 24);
  double x = 1;
  for (double const r : {0.5, 1.0, 1.5, 2.0, 3.0, 4.0}) {
    double const at = x + std::ceil(r);
    f.scope().draw(gxEllipse({at, 5}, {r, r}, gxRadian(0)), pen(1));
    f.ellipse(gxEllipse(center(at, 5), {r, r}, gxRadian(0)));
    x = at + std::ceil(r) + 2;
  }
  gxEllipse const turned({50, 11}, {12, 5}, gxRadian(-0.6));
  f.scope().draw(turned, pen(1));
  f.ellipse(gxEllipse(center(50, 11), {12, 5}, gxRadian(-0.6)));
  f.scope().draw(gxEllipseArc(gxEllipse({8, 17}, {6, 5}, gxRadian(0)), gxRadian(0.4), gxRadian(4.2)), pen(1));
  f.ellipse(gxEllipse(center(8, 17), {6, 5}, gxRadian(0)), 0.4, 3.8);
  f.scope().draw(gxEllipse({22, 17}, {4, 4}, gxRadian(0)), pen(3));
  f.ellipse(gxEllipse(center(22, 17), {4, 4}, gxRadian(0)));
  f.scope().draw(gxGenRect({34, 17}, {10, 8}, gxRadian(0), {0.6, 0.75}), pen(1));
  f.save(folder + "/curves.png");
}

void areas(std::string const &folder)
{
  Figure f(66, 20);
  std::vector<gxVector<2>> const left{{2, 2}, {15, 4}, {8, 17}, {1.5, 12}}, right{{15, 4}, {21, 13.5}, {8, 17}};
  f.scope().draw(gxPolygon(left, gxPolygon::alternate), area());
  f.scope().draw(gxPolygon(right, gxPolygon::alternate), area(other));
  f.outline(left);
  f.outline(right);
  for (auto const mode : {gxPolygon::alternate, gxPolygon::winding}) {
    double const x = mode == gxPolygon::alternate ? 33 : 51;
    std::vector<gxVector<2>> star;
    for (int i = 0; i < 5; ++i)
      star.push_back(gxVector<2>(x, 10.5) +
                     gxVector<2>(9.0, gxRadian(i * 2 * gf_turnRadians / 5 - gf_turnRadians / 4)));
    f.scope().draw(gxPolygon(star, mode), area());
    f.outline(star);
  }
  gxEllipse const disk({61.0, 4.0}, {3.5, 3.5}, gxRadian(0));
  f.scope().draw(disk, area(other));
  f.ellipse(disk);
  f.save(folder + "/areas.png");
}

void dashes(std::string const &folder)
{
  Figure f(64, 36);
  for (long style = 0; style <= 4; ++style) {
    gxGraphicProps p(ink, 1, static_cast<gxGraphicProps::gePenStyle>(style), false);
    f.scope().draw(gxLineSeg({2, 2 + 2.0 * double(style)}, {61, 2 + 2.0 * double(style)}), p);
    p.penWidth(3);
    p.penEndCap(gxGraphicProps::capFlat);
    f.scope().draw(gxLineSeg({2, 14 + 4.0 * double(style)}, {61, 14 + 4.0 * double(style)}), p);
  }
  f.save(folder + "/dashes.png");
}

void text(std::string const &folder)
{
  Figure f(98, 64);
  f.scope().draw(
      " !\"#$%&'()*+,-./\n0123456789:;<=>?\n@ABCDEFGHIJKLMNO\nPQRSTUVWXYZ[\\]^_\n`abcdefghijklmno\n"
      "pqrstuvwxyz{|}~\x7f",
      gxPoint(0, 1), ink, gxColor::pass, gxUIFormat(1, gxUIFormat::topLeft));
  f.save(folder + "/text.png");
}

}  // namespace

int main(int count, char **arguments)
{
  if (count != 2) {
    std::cerr << "usage: raster_rules FOLDER\n";
    return 2;
  }
  try {
    for (auto const figure : {lines, widths, joins, curves, areas, dashes, text})
      figure(arguments[1]);
  } catch (gxException const &e) {
    std::cerr << e.what() << '\n';
    return 1;
  }
}
