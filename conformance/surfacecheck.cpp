#include "conformance/surfacecheck.h"

#include "conformance/detail/rules.h"
#include "foundation/exception.h"

#include <exception>

namespace
{

gx_SurfaceRules allRules()
{
  gx_SurfaceRules rules;
  for (auto const theme :
       {gf_hostRules, gf_changeRules, gf_penRules, gf_partRules, gf_clipRules, gf_pelRules, gf_textRules})
    for (gx_SurfaceRule const &rule : theme())
      rules.push_back(rule);
  return rules;
}

/// Keeps what the factory throws apart from what the surface throws.
struct FactoryFailed {
  std::exception_ptr cause;
};

gxSurfaceFactory guarded(gxSurfaceFactory const &factory)
{
  return [&factory](gxPair<long> const &size) {
    try {
      return factory(size);
    } catch (...) {
      throw FactoryFailed{std::current_exception()};
    }
  };
}

/// True if the rule could be looked at.
bool check(gx_SurfaceRule const &rule, gxSurfaceFactory const &factory, gxConformanceReport &report)
{
  gx_Check check(factory, rule.name, report);
  try {
    return rule.check(check);
  } catch (FactoryFailed const &failed) {
    std::rethrow_exception(failed.cause);
  } catch (gxException const &e) {
    check.found("no exception", std::string(e.what()));
  } catch (std::exception const &e) {
    check.found("no exception", e.what());
  } catch (...) {
    check.found("no exception", "an exception of a class of its own");
  }
  return true;
}

}  // namespace

std::vector<gxConformanceRule> gfSurfaceRules()
{
  std::vector<gxConformanceRule> rules;
  for (gx_SurfaceRule const &rule : allRules())
    rules.push_back({rule.name, rule.statement});
  return rules;
}

gxConformanceReport gfCheckSurface(gxSurfaceFactory const &factory)
{
  gxConformanceReport report;
  bool const readsPels = static_cast<bool>(factory(gx_Probe::usualSize).picture);
  gxSurfaceFactory const make = guarded(factory);
  for (gx_SurfaceRule const &rule : allRules()) {
    bool const fits = (readsPels || !rule.needsPels) && check(rule, make, report);
    (fits ? report.checked : report.skipped).emplace_back(rule.name);
  }
  return report;
}

std::ostream &operator<<(std::ostream &os, gxConformanceFinding const &finding)
{
  return os << finding.rule << ": expected " << finding.expected << ", seen " << finding.seen;
}

std::ostream &operator<<(std::ostream &os, gxConformanceReport const &report)
{
  for (gxConformanceFinding const &finding : report.findings)
    os << finding << '\n';
  return os << report.findings.size() << " findings, " << report.checked.size() << " rules checked, "
            << report.skipped.size() << " left out\n";
}
