#pragma once

#include <array>
#include <cmath>
#include <cstddef>

/// Integrals of smooth functions.
namespace gx_quadrature
{

/// One step of Gauss and Kronrod's rule of 7 and 15 points (R. Piessens et al., QUADPACK).
struct Estimate {
  double value;
  double error;  ///< difference of the two rules: the rule of 15 points is far better than that
};

template <class Function>
Estimate estimate(Function const &f, double from, double to)
{
  constexpr std::array<double, 7> place = {0.991455371120812639206854697526329, 0.949107912342758524526189684047851,
                                           0.864864423359769072789712788640926, 0.741531185599394439863864773280788,
                                           0.586087235467691130294144691693,    0.405845151377397166906606412076961,
                                           0.207784955007898467600689403773245};
  constexpr std::array<double, 7> kronrod = {0.022935322010529224963732008058970, 0.063092092629978553290700663189204,
                                             0.104790010322250183839876322541518, 0.140653259715525918745189590510238,
                                             0.169004726639267902826583426598550, 0.190350578064785409913256402421014,
                                             0.204432940075298892414161999234649};
  constexpr std::array<double, 3> gauss = {0.129484966168869693270611432679082, 0.279705391489276667901467771423780,
                                           0.381830050505118944950369775488975};
  double const middle = 0.5 * (from + to), half = 0.5 * (to - from);
  double const center = f(middle);
  double fine = center * 0.209482141084727828012999174891714;
  double coarse = center * 0.417959183673469387755102040816327;
  for (std::size_t i = 0; i < place.size(); ++i) {
    double const pair = f(middle - half * place[i]) + f(middle + half * place[i]);
    fine += kronrod[i] * pair;
    if (i % 2 == 1)
      coarse += gauss[i / 2] * pair;
  }
  return {fine * half, std::abs((fine - coarse) * half)};
}

template <class Function>
double refine(Function const &f, double from, double to, double tolerance, int depth)
{
  Estimate const found = estimate(f, from, to);
  constexpr int maxDepth = 48;
  // the better rule is then right to some digits more than the difference tells
  if (!(found.error > tolerance) || depth == maxDepth)
    return found.value;
  double const middle = 0.5 * (from + to);
  return refine(f, from, middle, tolerance, depth + 1) + refine(f, middle, to, tolerance, depth + 1);
}

/// The integral of f, by halving where the rule does not agree with itself.
/// @param scale greatest size of f, about; sets the tolerance
template <class Function>
double integral(Function const &f, double from, double to, double scale)
{
  constexpr double relative = 1e-12;
  return refine(f, from, to, relative * scale * std::abs(to - from), 0);
}

}  // namespace gx_quadrature
