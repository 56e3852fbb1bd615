#include "corvanta/data/domain/animation/NAnimationTarget.h"

#include <atomic>

namespace corvanta::data::domain::animation {

namespace {
std::atomic<std::uint64_t> g_lastCreationNumber{0};
}  // namespace

NAnimationTarget::NAnimationTarget() noexcept : m_creationNumber(++g_lastCreationNumber) {}

NAnimationTarget::NAnimationTarget(NAnimationTarget const& other) noexcept
    : NReferenceCountable(other), m_creationNumber(++g_lastCreationNumber) {}

NAnimationTarget::~NAnimationTarget() = default;

}  // namespace corvanta::data::domain::animation
