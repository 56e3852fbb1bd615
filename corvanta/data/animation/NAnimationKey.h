#pragma once

#include <array>
#include <boost/intrusive_ptr.hpp>
#include <cstdint>

#include "corvanta/core/name/NNamedObject.h"
#include "corvanta/data/domain/fwd.h"
#include "corvanta/data/domain/scenegraph/NSceneGraphPath.h"
#include "corvanta/export.h"

namespace corvanta::data::switches {
class NMaterialSwitch;
class NModelSwitch;
}  // namespace corvanta::data::switches

namespace corvanta::data::animation {

/// What should hold at one moment of a presentation, in five blocks; the flag at a block's end
/// keeps that block out. A new key has all blocks ignored, unit scale, and nothing else.
///
/// Fields may be changed in place at any time; NAnimation::SignalModification makes it count. Keeps
/// its switches and its environment alive, but not its item. Hold it by `boost::intrusive_ptr`.
struct CORVANTA_API NAnimationKey : public core::name::NNamedObject {
  using Triple = std::array<double, 3>;

  NAnimationKey();
  /// Copies the name and every field; what they refer to is shared.
  NAnimationKey(NAnimationKey const& other);
  ~NAnimationKey() override;

  /// Grows with every key that the process makes; the order of keys in an animation.
  std::uint64_t GetCreationNumber() const noexcept { return m_creationNumber; }

  domain::scenegraph::NSceneGraphPath<domain::scenegraph::item::NSceneGraphItemNode> itemPath;
  Triple itemTranslation{};
  Triple itemRotation{};  ///< degrees
  Triple itemScale{1.0, 1.0, 1.0};
  Triple itemRotationPivot{};
  bool itemIsIgnored = true;

  Triple cameraTranslation{};  ///< in the world, like the two others
  Triple cameraUp{};
  Triple cameraInterest{};
  bool cameraIsIgnored = true;

  std::array<boost::intrusive_ptr<switches::NMaterialSwitch>, 3> materialSwitches;
  std::array<unsigned int, 3> materialIndices{};
  bool materialIsIgnored = true;

  std::array<boost::intrusive_ptr<switches::NModelSwitch>, 3> modelSwitches;
  std::array<unsigned int, 3> modelSetIndices{};
  bool modelIsIgnored = true;

  boost::intrusive_ptr<domain::environment::NEnvironmentNode> environment;
  bool environmentIsIgnored = true;

 private:
  std::uint64_t const m_creationNumber;
};

/// Orders keys by creation, null first, so that two runs of one program sort alike.
inline bool operator<(boost::intrusive_ptr<NAnimationKey> const& a,
                      boost::intrusive_ptr<NAnimationKey> const& b) noexcept {
  return b && (!a || a->GetCreationNumber() < b->GetCreationNumber());
}

}  // namespace corvanta::data::animation
