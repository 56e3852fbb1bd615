#pragma once

#include <list>
#include <memory>

#include "corvanta/core/name/NNamedObject.h"
#include "corvanta/data/domain/fwd.h"
#include "corvanta/data/domain/scenegraph/NSceneGraphPath.h"
#include "corvanta/export.h"

namespace corvanta::data::switches {

/// A named, ordered list of cameras to choose from. Which one is chosen is for the caller to hold.
/// Raises nothing. Hold it by `boost::intrusive_ptr`.
///
/// A camera may be in it several times, and may have gone.
class CORVANTA_API NCameraSwitch : public core::name::NNamedObject {
 public:
  NCameraSwitch();
  ~NCameraSwitch() override;

  std::list<
      domain::scenegraph::NSceneGraphPath<domain::scenegraph::item::NSceneGraphCameraNode>> const&
  GetCameras() const noexcept;
  /// Inserts before the entry now at `index`.
  /// Fails: false if `index` is greater than the number of entries.
  bool AddCamera(domain::scenegraph::NSceneGraphPath<
                     domain::scenegraph::item::NSceneGraphCameraNode> const& camera,
                 unsigned int index);
  /// Fails: false if there is no entry at `index`.
  bool RemoveCamera(unsigned int index);

 private:
  struct Block;
  std::unique_ptr<Block> const m_block;
};

}  // namespace corvanta::data::switches
