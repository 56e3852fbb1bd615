#pragma once

#include <map>
#include <memory>
#include <optional>

#include "corvanta/renderer/pass/NPicture.h"
#include "corvanta/renderer/pass/NSurfaceProgram.h"

namespace corvanta::renderer {

/// The programs that light surfaces, one for each set of features that was needed so far.
class NSurfacePrograms {
 public:
  /// Makes the programs draw `picture`, which lives until the next call.
  void Begin(NPicture const& picture);
  /// Makes the program for `material` current, with that material.
  /// Requires: Begin was called for the picture.
  /// Fails: as NProgram.
  void Use(NMaterialParameters const& material, bool isWireframe);
  /// The same for lines and points, which have the material's colour unlit.
  void UseForLines(NMaterialParameters const& material);

 private:
  void Use(NMaterialParameters const& material, NSurfaceKey const& key);

  struct Entry {
    std::unique_ptr<NSurfaceProgram> program;
    unsigned picture = 0;  // that its uniforms are of
  };

  std::map<NSurfaceKey, Entry> m_programs;
  NPicture const* m_picture = nullptr;
  unsigned m_pictureNumber = 0;
  std::optional<float> m_fleckUnit;  // of the picture
};

}  // namespace corvanta::renderer
