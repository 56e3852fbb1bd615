#pragma once

#include <boost/intrusive_ptr.hpp>
#include <cstdint>

#include "corvanta/core/attribute/NAttributeHost.h"
#include "corvanta/core/reference_countable/NReferenceCountable.h"
#include "corvanta/export.h"

namespace corvanta::data::domain::animation {

/// What a curve acts on: anything that leads to an object with attributes. Hold it by
/// `boost::intrusive_ptr`.
class CORVANTA_API NAnimationTarget : public core::reference_countable::NReferenceCountable {
 public:
  /// Fails: null when there is nothing to act on now.
  boost::intrusive_ptr<core::attribute::NAttributeHost> GetTarget() const {
    return GetTargetImpl();
  }

  /// Grows with every target that the process makes; the order of targets in contexts.
  std::uint64_t GetCreationNumber() const noexcept { return m_creationNumber; }

 protected:
  NAnimationTarget() noexcept;
  /// A copy is a target of its own.
  NAnimationTarget(NAnimationTarget const& other) noexcept;
  NAnimationTarget& operator=(NAnimationTarget const&) noexcept { return *this; }
  ~NAnimationTarget() override;

 private:
  virtual boost::intrusive_ptr<core::attribute::NAttributeHost> GetTargetImpl() const = 0;

  std::uint64_t const m_creationNumber;
};

}  // namespace corvanta::data::domain::animation
