#pragma once

#include <cstddef>
#include <string>

#include "app/scene/NStage.h"
#include "app/scene/NStagePreview.h"
#include "corvanta/data/document/NDocument.h"

namespace corvanta::app {

/// Writes the frames of what is played as numbered picture files, each of which is there as a whole
/// or not at all.
class NFrameWriter {
 public:
  /// `pattern` is a path with one "%d", "%4d" or "%04d" for the number of the frame.
  /// Requires: FindFault finds none in it; document and stage outlive this.
  /// Fails: throws NRenderError where this machine can't draw.
  NFrameWriter(data::document::NDocument const& document, NStage& stage, std::string const& pattern,
               unsigned width, unsigned height);

  /// What is wrong with a pattern; empty if it can be used.
  static std::string FindFault(std::string const& pattern);

  /// The path of a frame by a pattern in which FindFault finds nothing.
  static std::string GetPath(std::string const& pattern, std::size_t frame);
  std::string GetPath(std::size_t frame) const { return GetPath(m_pattern, frame); }
  /// Draws the stage as it stands now.
  /// Fails: throws std::runtime_error if the file can't be written.
  void Write(std::size_t frame);
  NStagePreview& GetPreview() { return m_preview; }

 private:
  std::string const m_pattern;
  NStagePreview m_preview;
};

}  // namespace corvanta::app
