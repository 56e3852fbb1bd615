#pragma once

#include "corvanta/core/domain/detail/link.h"
#include "corvanta/core/domain/fwd.h"
#include "corvanta/core/node/NNodeReference.h"
#include "corvanta/data/domain/fwd.h"
#include "corvanta/export.h"

/// The process-wide table of how many models of each domain manager show a material. May be used
/// from any thread, also by destructors of statics.
namespace corvanta::data::domain::material::detail {

using MaterialReference = core::node::NNodeReference<NMaterialNode>;

/// Counts one model more.
/// Requires: a reference that isn't empty.
CORVANTA_API void AddUse(core::domain::NDomainManager const& manager,
                         MaterialReference const& material);
/// Counts one model less, also for a material that has gone. Without a manager it does so for every
/// manager. A count of 0 stays 0.
CORVANTA_API void RemoveUse(core::domain::NDomainManager const* manager,
                            MaterialReference const& material) noexcept;
/// A model that is counted ahead of showing the material, so that no memory is needed then.
class CORVANTA_API NUse {
 public:
  /// Without a manager or a material it counts nothing.
  NUse(core::domain::NDomainManager const* manager, MaterialReference const& material);
  /// Takes the count back unless it was kept.
  ~NUse();
  NUse(NUse const&) = delete;
  NUse& operator=(NUse const&) = delete;

  /// Leaves the count to a model of `manager`.
  /// Fails: false for another manager than the one that it was counted for, and for none.
  bool Keep(core::domain::NDomainManager const* manager) noexcept;

 private:
  core::domain::detail::NLinkPointer<core::domain::NDomainManager const> m_manager;
  MaterialReference const m_material;
};

/// Whether some model counts. A manager that has gone counts nothing, also for another one that
/// stands where it stood.
CORVANTA_API bool HasUse(core::domain::NDomainManager const& manager,
                         MaterialReference const& material);

}  // namespace corvanta::data::domain::material::detail
