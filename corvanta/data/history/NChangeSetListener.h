#pragma once

#include "corvanta/core/reference_countable/NReferenceCountableWithWeakReference.h"
#include "corvanta/data/history/NChangeSet.h"
#include "corvanta/export.h"

namespace corvanta::data::document {
class NDocument;
}

namespace corvanta::data::history {

/// Is notified of what changed in a document, once for each outermost transaction and for each
/// change outside of all, when the change is over: caches are marked and all event listeners have
/// run. An empty set isn't delivered.
///
/// What a listener changes makes a set of its own, delivered after the running one. What it throws
/// ends the delivery of that set, and reaches whoever closed the transaction or made the change.
/// Held weakly: hold it by `boost::intrusive_ptr`.
class CORVANTA_API NChangeSetListener
    : public virtual core::reference_countable::NReferenceCountableWithWeakReference {
 public:
  void SignalChangeSet(NChangeSet const& set) { OnChangeSet(set); }

 protected:
  NChangeSetListener() noexcept = default;
  NChangeSetListener(NChangeSetListener const&) noexcept = default;
  ~NChangeSetListener() override;

 private:
  virtual void OnChangeSet(NChangeSet const& set) = 0;
};

/// Fails: false if `listener` is registered already; throws std::bad_alloc.
CORVANTA_API bool AddChangeSetListener(document::NDocument& document, NChangeSetListener& listener);
/// Fails: false if `listener` isn't registered.
CORVANTA_API bool RemoveChangeSetListener(document::NDocument& document,
                                          NChangeSetListener& listener);

}  // namespace corvanta::data::history
