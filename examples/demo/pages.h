#pragma once

#include "backends/pels/pelsurface.h"

#include <filesystem>
#include <functional>
#include <string>

class gxUISketch;
struct gxFootprint;

/// @file
/// The pages of the demonstration: numbered pictures in a folder, each with a line on the terminal.

/// Writes the pages.
class Pages
{
 public:
  /// Makes the folder.
  explicit Pages(std::filesystem::path folder);

  /// Paints by @p work, and stores what an operator sees on @p surface then, as NN_NAME. Told with it: what the page
  /// shows, what @p sketch holds, if there is one, and how long painting took.
  void show(char const *name, std::string const &what, gxPelSurface &surface, gxUISketch const *sketch,
            std::function<void()> const &work);
  /// Stores a sketch as NAME.sketch, for the tool gxsketch.
  void store(char const *name, gxUISketch sketch);
  /// A line below the last page's.
  void remark(std::string const &text);

  std::filesystem::path const &folder() const { return folder_; }

 private:
  std::filesystem::path folder_;
  int number_ = 0;
};

// The chapters, in the order of the pages; each in a source of its own, and a row of the table in demo.cpp.

/// A device out of a file: its outlines, a camera image of it with the overlay, a sketch, a page of vectors.
void deviceChapter(Pages &pages, gxFootprint const &footprint);

/// How well an overlay lies on an image: measured in place, and beside it. The last page.
void knownTruthChapter(Pages &pages, gxFootprint const &footprint);

/// Every shape, each under a map of its own.
void shapesChapter(Pages &pages);

/// Text, sections, arrowheads, outlines, the pen and fills.
void letteringChapter(Pages &pages);

/// A group of graphics: drawn, mapped, cloned in other colors, archived and drawn again.
void graphicsChapter(Pages &pages);

/// The outline of a device with fillets and tolerances, and edits that it refuses.
void outlinesChapter(Pages &pages);

/// A device as a model: its outlines as wireframes, parts of it, a flipped and scaled copy, extensions.
void modelChapter(Pages &pages);

/// A nearly rectilinear outline before and after snapping.
void rectilinearChapter(Pages &pages);

/// A device as overlay, as synthetic image, and cut by a mask.
void devicesChapter(Pages &pages);

/// A picture at many scales, icons, and labels over a picture.
void imagesChapter(Pages &pages);
