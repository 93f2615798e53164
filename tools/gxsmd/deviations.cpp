#include "dispc/wrfm/polyprivate.h"
#include "foundation/rigid.h"
#include "tools/gxsmd/device.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <limits>
#include <map>
#include <optional>
#include <regex>

// What footprints are checked for.

namespace
{

namespace fs = std::filesystem;
using P = gxSMDGDPolyPrivate;

struct Placed {
  std::size_t outline;
  gxRect box;

  double left() const { return box.origin().x(); }
  double right() const { return box.origin().x() + box.size().x(); }
  gxVector<2> center() const { return box.origin() + box.size() * 0.5; }
};

bool boxesMeet(gxRect const &a, gxRect const &b)
{
  gxVector<2> const aEnd = a.origin() + a.size(), bEnd = b.origin() + b.size();
  return a.origin().x() < bEnd.x() && b.origin().x() < aEnd.x() && a.origin().y() < bEnd.y() &&
         b.origin().y() < aEnd.y();
}

bool overlap(gxSMDGDPoly const &a, gxSMDGDPoly const &b)
{
  return !P::intersection(a, b).empty() || P::inside(a, b.vertex(0, false).point()) ||
         P::inside(b, a.vertex(0, false).point());
}

bool shareLayer(gxFootprint::Pad const &a, gxFootprint::Pad const &b)
{
  auto const isCopper = [](std::string const &l) { return l.size() > 3 && l.substr(l.size() - 3) == ".Cu"; };
  for (std::string const &l : a.layers)
    for (std::string const &m : b.layers)
      if (isCopper(l) && isCopper(m) && (l == m || l[0] == '*' || m[0] == '*'))
        return true;
  return false;
}

/// Pads of copper with numbers, from the left to the right.
std::vector<Placed> placedPads(Device const &device)
{
  std::vector<Placed> pads;
  for (std::size_t i = 0; i < device.models.padOf.size(); ++i)
    if (!device.footprint.pads[device.models.padOf[i]].number.empty())
      pads.push_back({i, device.models.pads.polys()[i].boundingBox(gxXform<2>())});
  std::sort(pads.begin(), pads.end(), [](Placed const &a, Placed const &b) { return a.left() < b.left(); });
  return pads;
}

gxFootprint::Pad const &padOf(Device const &device, Placed const &p)
{
  return device.footprint.pads[device.models.padOf[p.outline]];
}

void checkOverlaps(Device const &device, std::vector<Placed> const &pads, std::vector<Finding> &found)
{
  for (std::size_t i = 0; i < pads.size(); ++i)
    for (std::size_t k = i + 1; k < pads.size() && pads[k].left() < pads[i].right(); ++k) {
      gxFootprint::Pad const &a = padOf(device, pads[i]), &b = padOf(device, pads[k]);
      auto const &polys = device.models.pads.polys();
      if (a.number != b.number && shareLayer(a, b) && boxesMeet(pads[i].box, pads[k].box) &&
          overlap(polys[pads[i].outline], polys[pads[k].outline]))
        found.push_back({Finding::overlap,
                         "pads \"" + a.number + "\" and \"" + b.number + "\" overlap",
                         {pads[i].outline, pads[k].outline},
                         {},
                         {},
                         {}});
    }
}

std::string text(char const *format, double a, double b, double c, double d)
{
  char words[160];
  std::snprintf(words, sizeof words, format, a, b, c, d);
  return words;
}

/// The size that a name tells as in _3x4mm, but not that of an exposed pad, EP3x4mm.
std::optional<gxVector<2>> namedSize(std::string const &name)
{
  static std::regex const size("(?:^|[_-])([0-9]+(?:\\.[0-9]+)?)x([0-9]+(?:\\.[0-9]+)?)mm");
  std::smatch match;
  if (!std::regex_search(name, match, size))
    return {};
  return gxVector<2>(std::stod(match[1]), std::stod(match[2]));
}

std::optional<double> namedPitch(std::string const &name)
{
  static std::regex const pitch("_P([0-9]+(?:\\.[0-9]+)?)mm");
  std::smatch match;
  if (!std::regex_search(name, match, pitch))
    return {};
  return std::stod(match[1]);
}

void checkSize(Device const &device, double tolerance, std::vector<Finding> &found)
{
  auto const named = namedSize(fs::path(device.path).stem().string());
  gxRect const box = bodyBox(device.models.body);
  if (!named || box.isEmpty())
    return;
  auto const sorted = [](gxVector<2> const &v) { return gxVector<2>(std::min(v.x(), v.y()), std::max(v.x(), v.y())); };
  gxVector<2> const a = sorted(*named), b = sorted(box.size());
  if (std::abs(a.x() - b.x()) > tolerance || std::abs(a.y() - b.y()) > tolerance) {
    bool const isUpright = (box.size().x() < box.size().y()) != (named->x() < named->y());
    gxVector<2> const said = isUpright ? gxVector<2>(named->y(), named->x()) : *named;
    gxRect const asNamed(box.origin() + (box.size() - said) * 0.5, said);
    found.push_back({Finding::size,
                     text("the body measures %.4g x %.4g mm, its name says %.4g x %.4g", box.size().x(), box.size().y(),
                          named->x(), named->y()),
                     {},
                     {},
                     {box, asNamed},
                     {}});
  }
}

void checkPitch(Device const &device, std::vector<Placed> const &pads, double tolerance, std::vector<Finding> &found)
{
  auto const named = namedPitch(fs::path(device.path).stem().string());
  if (!named)
    return;
  std::size_t first = 0, second = 0;
  double best = std::numeric_limits<double>::infinity();  // the distance that is nearest to what the name says
  for (std::size_t i = 0; i < pads.size(); ++i)
    for (std::size_t k = i + 1; k < pads.size(); ++k) {
      if (padOf(device, pads[i]).number == padOf(device, pads[k]).number)
        continue;
      // Rows that are staggered have their pitch along an axis.
      gxVector<2> const way = pads[k].center() - pads[i].center();
      for (double const d : {way.len(), std::abs(way.x()), std::abs(way.y())})
        if (std::abs(d - *named) < std::abs(best - *named)) {
          best = d;
          first = i;
          second = k;
        }
      if (pads[k].left() - pads[i].right() > std::abs(best - *named) + *named)
        break;
    }
  if (std::isfinite(best) && std::abs(best - *named) > tolerance)
    found.push_back(
        {Finding::pitch,
         text("no two pads are %.4g mm apart, as its name says; the nearest to that are %.4g", *named, best, 0, 0),
         {pads[first].outline, pads[second].outline},
         {pads[first].center(), pads[second].center()},
         {},
         {}});
}

}  // namespace

gxRect bodyBox(gxSMDGDModel const &body)
{
  gxRect largest;
  for (gxSMDGDPoly const &poly : body.polys()) {
    gxRect const box = poly.boundingBox(gxXform<2>());
    auto const area = [](gxRect const &r) { return r.isEmpty() ? -1.0 : r.size().x() * r.size().y(); };
    if (poly.isClosed() && area(box) > area(largest))
      largest = box;
  }
  return largest.isEmpty() ? body.boundingBox(gxXform<2>()) : largest;
}

namespace
{

Finding findingOf(gxFootprintProblem const &problem, gxFootprint const &footprint)
{
  Finding finding;
  finding.text = problem.text();
  switch (problem.kind) {
    case gxFootprintProblem::gap:
      finding.kind = Finding::gap;
      finding.places = {problem.from, problem.to};
      break;
    case gxFootprintProblem::noSize:
    case gxFootprintProblem::refused:
      finding.kind = problem.kind == gxFootprintProblem::noSize ? Finding::noSize : Finding::refused;
      finding.layer = problem.what;
      for (gxFootprint::Pad const &pad : footprint.pads)
        if (problem.what == "pad \"" + pad.number + '"') {
          finding.layer.clear();
          finding.places.push_back(gx2Rigid(-footprint.angle, footprint.at) * pad.at);
        }
  }
  return finding;
}

}  // namespace

std::vector<Finding> deviationsOf(Device const &device, double tolerance)
{
  std::vector<Finding> found;
  bool const hasBody = std::any_of(device.models.body.polys().begin(), device.models.body.polys().end(),
                                   [](gxSMDGDPoly const &poly) { return poly.isClosed(); });
  // Marks of pin 1 and the like are lines that need not close.
  auto const isBody = [](std::string const &layer) { return layer == "F.Fab" || layer == "B.Fab" || layer == "body"; };
  for (gxFootprintProblem const &problem : device.models.problems)
    if (!(hasBody && problem.kind == gxFootprintProblem::gap && isBody(problem.what)))
      found.push_back(findingOf(problem, device.footprint));
  for (auto const &[what, count] : device.footprint.unknown)
    if (what.rfind("pad of", 0) == 0)
      found.push_back(
          {Finding::leftOut, what + " is not known, " + std::to_string(count) + " left out", {}, {}, {}, {}});
  std::vector<Placed> const pads = placedPads(device);
  checkOverlaps(device, pads, found);
  checkSize(device, tolerance, found);
  checkPitch(device, pads, tolerance, found);
  std::vector<Finding> once;
  std::map<std::string, std::size_t> known;
  for (Finding &finding : found) {
    auto const [at, isNew] = known.emplace(finding.text, once.size());
    if (isNew)
      once.push_back(std::move(finding));
    else
      once[at->second].pads.insert(once[at->second].pads.end(), finding.pads.begin(), finding.pads.end());
  }
  return once;
}
