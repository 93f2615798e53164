#pragma once

#include "footprint/detail/edgetrack.h"
#include "footprint/edges.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

/// Grey values between pels.
class gx_EdgePicture
{
 public:
  explicit gx_EdgePicture(gxPelBuffer<unsigned char> const &image)
      : window_(image.window()), width_(image.width()), height_(image.height())
  {
    for (long y = 0; y < height_; ++y)
      rows_.push_back(image.pointToRow(y + window_.y()));
  }

  /// Whether a disk lies in the picture.
  bool holds(gxVector<2> const &p, double radius) const
  {
    double const x = p.x() - double(window_.x()), y = p.y() - double(window_.y());
    return x >= radius && y >= radius && x <= double(width_) - radius && y <= double(height_) - radius;
  }

  /// Linear between the middles of pels.
  double operator()(gxVector<2> const &p) const;

 private:
  /// 0 for what is no number.
  static long clamped(double v, long size) { return v > 0.0 ? static_cast<long>(std::min(v, double(size - 1))) : 0L; }

  gxPelRect const window_;
  long const width_, height_;
  std::vector<unsigned char const *> rows_;
};

/// Finds the edge that crosses a normal.
class gx_EdgeProfile
{
 public:
  gx_EdgeProfile(gx_EdgePicture const &picture, gxEdgeSearch const &search)
      : picture_(picture),
        contrast_(search.contrast),
        count_(2 * static_cast<int>(std::ceil(search.reach / step)) + 1),
        grey_(std::size_t(count_))
  {
  }

  /// Reads the picture across a place of an outline: placeAt(way) is beside it, along the outline. False if that
  /// leaves the picture.
  template <class PlaceAt>
  bool read(PlaceAt const &placeAt)
  {
    // Along the outline by a Hann window, which takes out the pattern of the pels.
    constexpr std::array<double, 9> beside = {-2.0, -1.5, -1.0, -0.5, 0.0, 0.5, 1.0, 1.5, 2.0};
    constexpr std::array<double, 9> weight = {0.0191, 0.0691, 0.1309, 0.1809, 0.2, 0.1809, 0.1309, 0.0691, 0.0191};
    if (!picture_.holds(placeAt(0.0).at, double(count_ / 2) * step + 1.0))
      return false;
    std::fill(grey_.begin(), grey_.end(), 0.0);
    for (std::size_t k = 0; k < beside.size(); ++k) {
      gx_EdgeTrack::Place const place = placeAt(beside[k]);
      for (int i = 0; i < count_; ++i)
        at(i) += picture_(place.at + place.outward * offsetOf(i)) * weight[k];
    }
    return true;
  }

  /// How far outward the edge lies that is nearest to the outline, among the ones that are nearly as steep as the
  /// steepest. False if there is none.
  bool findEdge(double bend, double &offset) const;

 private:
  static constexpr double step = 0.125;
  static constexpr int half = 4;  ///< the rise is taken over a pel

  double &at(int i) { return grey_[std::size_t(i)]; }
  double at(int i) const { return grey_[std::size_t(i)]; }
  double offsetOf(int i) const { return double(i - count_ / 2) * step; }
  double rise(int i) const { return at(i + half) - at(i - half); }

  bool locate(int peak, double bend, double &offset) const;

  gx_EdgePicture const &picture_;
  double const contrast_;
  int const count_;
  std::vector<double> grey_;
};
