#include "corvanta/data/animation/NAnimationKey.h"

#include <atomic>

#include "corvanta/data/domain/environment/NEnvironmentNode.h"
#include "corvanta/data/switches/NMaterialSwitch.h"
#include "corvanta/data/switches/NModelSwitch.h"

namespace corvanta::data::animation {

namespace {
std::atomic<std::uint64_t> g_lastCreationNumber{0};
}  // namespace

NAnimationKey::NAnimationKey() : m_creationNumber(++g_lastCreationNumber) {}

NAnimationKey::NAnimationKey(NAnimationKey const& other)
    : NReferenceCountableWithWeakReference(other),
      NNamedObject(other),
      itemPath(other.itemPath),
      itemTranslation(other.itemTranslation),
      itemRotation(other.itemRotation),
      itemScale(other.itemScale),
      itemRotationPivot(other.itemRotationPivot),
      itemIsIgnored(other.itemIsIgnored),
      cameraTranslation(other.cameraTranslation),
      cameraUp(other.cameraUp),
      cameraInterest(other.cameraInterest),
      cameraIsIgnored(other.cameraIsIgnored),
      materialSwitches(other.materialSwitches),
      materialIndices(other.materialIndices),
      materialIsIgnored(other.materialIsIgnored),
      modelSwitches(other.modelSwitches),
      modelSetIndices(other.modelSetIndices),
      modelIsIgnored(other.modelIsIgnored),
      environment(other.environment),
      environmentIsIgnored(other.environmentIsIgnored),
      m_creationNumber(++g_lastCreationNumber) {}

NAnimationKey::~NAnimationKey() = default;

}  // namespace corvanta::data::animation
