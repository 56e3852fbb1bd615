#pragma once

#include <list>
#include <memory>

#include "corvanta/core/name/NNamedObject.h"
#include "corvanta/core/node/NNodeReference.h"
#include "corvanta/data/domain/fwd.h"
#include "corvanta/export.h"

namespace corvanta::data::switches {

/// A named, ordered list of environments to choose from. Which one is chosen is for the caller to
/// hold. Raises nothing. Hold it by `boost::intrusive_ptr`.
///
/// An environment may be in it several times, and may have gone.
class CORVANTA_API NEnvironmentSwitch : public core::name::NNamedObject {
 public:
  NEnvironmentSwitch();
  ~NEnvironmentSwitch() override;

  std::list<core::node::NNodeReference<domain::environment::NEnvironmentNode>> const&
  GetEnvironments() const noexcept;
  /// Inserts before the entry now at `index`.
  /// Fails: false if `index` is greater than the number of entries.
  bool AddEnvironment(
      core::node::NNodeReference<domain::environment::NEnvironmentNode> const& environment,
      unsigned int index);
  /// Fails: false if there is no entry at `index`.
  bool RemoveEnvironment(unsigned int index);

 private:
  struct Block;
  std::unique_ptr<Block> const m_block;
};

}  // namespace corvanta::data::switches
