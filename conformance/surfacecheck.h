#pragma once

#include "dispc/uiscope.h"
#include "foundation/export.h"
#include "foundation/pelbuf.h"

#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

/// @file
/// Does a surface keep the contract of gxUIScope? For the tests of whoever writes a back end.
///
/// @code
/// gxConformanceReport const report = gfCheckSurface([](gxPair<long> const &size) {
///   auto surface = std::make_shared<MySurface>(size);
///   return gxCheckedSurface{{surface, &surface->scope()}, [=] { return surface->picture(); }};
/// });
/// EXPECT_TRUE(report.holds()) << report;
/// @endcode

/// A surface to be checked.
struct gxCheckedSurface {
  /// The scope of the whole surface, with its first pel at (0, 0). The last holder may destroy the surface with it.
  std::shared_ptr<gxUIScope> scope;
  /// What is seen of the surface, after all that was drawn. Empty if pels cannot be read back: the rules about pels are
  /// left out then.
  std::function<gxPelBuffer_const<gxPackedRGB32Pel>()> picture;
};

/// Makes a new surface of a size. Surfaces of up to 64 x 64 pels are asked for, and one of 0 x 0, which shall have a
/// null scope; answer the latter without a scope if there is no such thing.
using gxSurfaceFactory = std::function<gxCheckedSurface(gxPair<long> const &size)>;

/// Something that a surface does not do as it should.
struct gxConformanceFinding {
  std::string rule;      ///< name of the rule, one of gfSurfaceRules()
  std::string expected;  ///< what the rule asks for, in this case
  std::string seen;
};

/// What is said about a surface.
struct gxConformanceReport {
  std::vector<gxConformanceFinding> findings;
  std::vector<std::string> checked;  ///< names of the rules that were looked at
  std::vector<std::string> skipped;  ///< names of those that this surface gives no means to look at

  bool holds() const { return findings.empty(); }
};

/// A rule that surfaces keep.
struct gxConformanceRule {
  std::string name;       ///< "pen-moves"
  std::string statement;  ///< the rule in a sentence
};

/// All rules, in the order in which they are checked.
GX_API std::vector<gxConformanceRule> gfSurfaceRules();

/// Checks a surface by every rule that fits, each on surfaces of its own. An exception of the surface is a finding of
/// the rule that was being checked; one of the factory goes to the caller.
GX_API gxConformanceReport gfCheckSurface(gxSurfaceFactory const &factory);

/// "pen-moves: expected the pen at (16, 10) after drawTo, seen (3, 10)"
GX_API std::ostream &operator<<(std::ostream &os, gxConformanceFinding const &finding);
/// A line for each finding, then one with the counts.
GX_API std::ostream &operator<<(std::ostream &os, gxConformanceReport const &report);
