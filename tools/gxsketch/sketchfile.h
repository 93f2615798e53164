#pragma once

#include "dispc/sketchop.h"
#include "dispc/uisketch.h"

#include <functional>
#include <string>

/// @file
/// Stored sketches: a file is an archive that holds one sketch.

/// Throws FileError, which names the file and the byte.
gxUISketch readSketch(std::string const &path);

/// Writes nothing unless all of the sketch can be stored. Throws FileError.
void writeSketch(std::string const &path, gxUISketch const &sketch);

/// One record and what is in force where it stands.
struct Record {
  long number;  ///< from 0 on
  gx_UISketchOpHeader const &header;
  gx_UISketchOpData const &op;

  /// Appends it with the properties in force, so that it draws the same wherever it comes to stand.
  void appendTo(gxUISketch &sketch) const;
};

/// Returns the number of records.
long forEachRecord(gxUISketch const &sketch, std::function<void(Record const &)> const &operation);
