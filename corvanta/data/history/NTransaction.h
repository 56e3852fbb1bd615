#pragma once

#include <boost/intrusive_ptr.hpp>
#include <string>

#include "corvanta/export.h"

namespace corvanta::data::document {
class NDocument;
}
namespace corvanta::data::history::detail {
class NRecorder;
}

namespace corvanta::data::history {

/// A scope whose changes to a document are one: committed together, or taken back.
///
/// Events go out as always and reads are current; only the change set waits for the end of the
/// outermost scope. A transaction inside another one joins it: what it commits belongs to the
/// outer, and what it takes back is what was changed since it began.
class CORVANTA_API NTransaction {
 public:
  /// Fails: throws std::bad_alloc.
  explicit NTransaction(document::NDocument& document);
  NTransaction(NTransaction const&) = delete;
  NTransaction& operator=(NTransaction const&) = delete;
  /// Takes the changes back if neither Commit nor Rollback did, those of transactions inside it
  /// too. What a listener throws meanwhile is lost: call Rollback where it matters.
  ~NTransaction();

  /// Ends the scope and keeps its changes. The outermost one's name becomes the set's, or the last
  /// given inside if it is empty. For `mergeKey` see NHistory.
  /// Raises: the outermost one, OnChangeSet, unless nothing has changed.
  /// Fails: false, and no change, if it has ended, the document has gone, or a transaction inside
  /// this one is open. Passes on what a listener throws; the transaction is committed then.
  bool Commit(std::wstring const& name = {}, std::wstring const& mergeKey = {});

  /// Ends the scope and takes its changes back, in reverse order, with events. What listeners
  /// change in answer is taken back too; what they throw doesn't stop it, and the first exception
  /// passes at the end.
  /// Fails: as Commit; also false, with all changes kept as if committed, if memory ran out while
  /// they were recorded, or if some of them can't be taken back, which are left as they are.
  bool Rollback();

  /// Whether neither Commit nor Rollback, nor the document's end, has ended it.
  bool IsOpen() const noexcept;

 private:
  bool IsInnermost() const noexcept;

  boost::intrusive_ptr<detail::NRecorder> m_recorder;
};

}  // namespace corvanta::data::history
