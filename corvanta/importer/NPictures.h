#pragma once

#include <boost/intrusive_ptr.hpp>
#include <cstddef>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "corvanta/data/domain/image/NImageNode.h"
#include "corvanta/export.h"
#include "corvanta/importer/NImportTarget.h"
#include "corvanta/importer/NVertexColors.h"
#include "corvanta/importer/neutral/NSceneView.h"

namespace corvanta::importer {

/// The image nodes of a model file, one a picture. Pictures that are in the file itself are
/// written to a temporary archive that the document keeps.
class CORVANTA_API NPictures {
 public:
  /// `folder` is where the model file lies. Writes the archive.
  /// Fails: throws std::runtime_error if that isn't possible.
  NPictures(NImportTarget& target, neutral::NSceneView const& scene, NVertexColors const& colors,
            std::filesystem::path const& folder);

  /// The node of the scene's picture `number`, of neutral::kNone that of the vertex colours; made
  /// at the first call.
  /// Requires: there are such colours.
  boost::intrusive_ptr<data::domain::image::NImageNode> GetImage(std::size_t number);

  /// Pictures that aren't there, in UTF-8.
  std::vector<std::string> const& GetNotes() const { return m_notes; }

 private:
  struct Place {
    core::locator::NLocator locator;
    std::wstring name;
  };

  Place FindFile(std::string const& name);
  std::filesystem::path FindNearby(std::filesystem::path const& name);

  NImportTarget& m_target;
  neutral::NSceneView const& m_scene;
  std::filesystem::path const m_folder;
  std::map<std::size_t, Place> m_embedded;                                      // by their numbers
  std::vector<boost::intrusive_ptr<data::domain::image::NImageNode>> m_images;  // as asked for
  std::map<core::locator::NLocator, boost::intrusive_ptr<data::domain::image::NImageNode>> m_nodes;
  std::map<std::string, std::filesystem::path> m_nearby;  // files by their names in small letters
  bool m_hasListed = false;
  std::vector<std::string> m_notes;
  std::set<std::string> m_missing;  // those that are noted
};

}  // namespace corvanta::importer
