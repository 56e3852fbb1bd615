#pragma once

#include <boost/intrusive_ptr.hpp>
#include <cstddef>
#include <string>
#include <vector>

#include "corvanta/data/domain/animation/NAnimationNode.h"
#include "corvanta/export.h"
#include "corvanta/importer/NHierarchy.h"
#include "corvanta/importer/NImportTarget.h"
#include "corvanta/importer/animation/camera_curves.h"
#include "corvanta/importer/animation/item_curves.h"
#include "corvanta/importer/animation/keys.h"
#include "corvanta/importer/neutral/NSceneView.h"

namespace corvanta::importer {

/// The animations of a model file as animation nodes: a curve for each attribute of translation,
/// rotation and scale of the items that move, for the weights of their morph targets, and for
/// interest and up of the cameras that move with them.
///
/// A node's rate is the file's own where that is from 10 to 240 a second, otherwise 30, raised a
/// little so that the range from 0 to the end is a whole number of frames. Before the first key and
/// behind the last, a curve stays at that key. Keys are linear; only of a glTF 2 file is known what
/// else they were.
class CORVANTA_API NAnimations {
 public:
  using NodePointer = boost::intrusive_ptr<data::domain::animation::NAnimationNode>;

  /// Requires: `hierarchy` is built, as `tree`.
  /// Fails: throws NImportError for more keys or moving cameras than `effort` has left.
  NAnimations(NImportTarget& target, neutral::NSceneView const& scene, NHierarchy const& hierarchy,
              data::domain::scenegraph::tree::NSceneGraphTreeNode const& tree, NEffort& effort);

  /// One for each animation of the file, in its order, also where it moves nothing here.
  std::vector<NodePointer> const& GetNodes() const { return m_nodes; }
  /// What the file holds and the scene can't, in UTF-8.
  std::vector<std::string> GetNotes() const;

 private:
  // The times of an animation.
  struct Range {
    double ticksPerSecond;
    double fps;
    long start;  // frames
    long end;
  };

  Range GetRange(neutral::NAnimation const& source) const;
  NodePointer CreateNode(data::domain::scenegraph::tree::NSceneGraphTreeNode const& tree,
                         neutral::NAnimation const& source);
  void AddChannel(data::domain::animation::NAnimationNode& node, neutral::NChannel const& source,
                  Range const& range, NCurvesByItem& curves);

  void AddWeights(data::domain::animation::NAnimationNode& node,
                  neutral::NWeightChannel const& source, Range const& range, NCurvesByItem& curves);

  NImportTarget& m_target;
  neutral::NSceneView const& m_scene;
  NHierarchy const& m_hierarchy;
  std::vector<NMovableCamera> m_cameras;
  std::vector<NodePointer> m_nodes;
  NKeyFaults m_faults;
  NEffort& m_effort;
  std::size_t m_strayCount = 0;  // channels that name no node
  std::string m_firstStray;
  std::size_t m_doubledCount = 0;  // channels of a node that has one
  std::size_t m_idleCount = 0;     // animations that move nothing
  std::size_t m_unreadCount = 0;   // channels that the reader left out
  std::string m_firstUnread;
};

}  // namespace corvanta::importer
