#pragma once

#include <boost/intrusive_ptr.hpp>
#include <list>
#include <memory>
#include <string>

#include "corvanta/core/name/NNamedObject.h"
#include "corvanta/core/name/NStrictNamespace.h"
#include "corvanta/core/observer/NObservable.h"
#include "corvanta/data/switches/NModelSwitchListener.h"
#include "corvanta/data/switches/detail/NModelSet.h"
#include "corvanta/export.h"

namespace corvanta::data::switches {

/// A named, ordered list of model sets to choose from. It owns its sets, and their names are unique
/// in it. Applying a choice is for the caller. Hold it by `boost::intrusive_ptr`.
class CORVANTA_API NModelSwitch
    : public core::name::NStrictNamespace,
      public core::name::NNamedObject,
      public core::observer::NObservable<NModelSwitch, NModelSwitchListener> {
 public:
  NModelSwitch();
  ~NModelSwitch() override;

  /// Inserts before the set now at `index`.
  /// Raises: SignalAddModelSet.
  /// Fails: false if `index` is greater than the number of sets, and for a set whose name is taken,
  /// that is here, or that is in another namespace.
  bool AddModelSet(detail::NModelSet& set, unsigned int index);
  /// Raises: SignalRemoveModelSet, while the set is in the list; it leaves also when a listener
  /// throws.
  /// Fails: false if the set isn't here.
  bool RemoveModelSet(detail::NModelSet& set);
  /// The same for the set at `index`.
  /// Fails: false if there is none.
  bool RemoveModelSet(unsigned int index);
  /// Fails: 0xFFFFFFFF if the set isn't here.
  unsigned int GetModelSetIndex(detail::NModelSet const& set) const;
  unsigned int GetModelSetCount() const;
  std::list<boost::intrusive_ptr<detail::NModelSet>> const& GetModelSets() const noexcept;

 private:
  struct Block;
  struct Removal;

  std::unique_ptr<Block> const m_block;
};

/// The first set of `modelSwitch` with that name.
/// Fails: null if there is none.
CORVANTA_API boost::intrusive_ptr<detail::NModelSet> FindModelSet(NModelSwitch const& modelSwitch,
                                                                  std::wstring const& name);

}  // namespace corvanta::data::switches
