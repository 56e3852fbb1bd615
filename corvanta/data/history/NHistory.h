#pragma once

#include <boost/intrusive_ptr.hpp>
#include <cstddef>
#include <deque>

#include "corvanta/core/variant/NVariant.h"
#include "corvanta/data/history/NChangeSet.h"
#include "corvanta/export.h"

namespace corvanta::core::attribute {
class NAttribute;
class NAttributeHost;
}  // namespace corvanta::core::attribute
namespace corvanta::data::document {
class NDocument;
}
namespace corvanta::data::history::detail {
class NRecorder;
}

namespace corvanta::data::history {

/// What can be undone and redone in a document: its change sets since this object was made, the
/// newest first.
///
/// What left the document is held by the sets, and comes back as the same objects, at the same
/// places, under the same ids and names. An undo leads to the state before exactly: what listeners
/// change in answer to it is taken back with it, over as many as 16 rounds.
class CORVANTA_API NHistory {
 public:
  /// Fails: throws std::bad_alloc.
  explicit NHistory(document::NDocument& document);
  NHistory(NHistory const&) = delete;
  NHistory& operator=(NHistory const&) = delete;
  ~NHistory();

  /// Takes the newest set back, as a transaction of its own.
  /// Raises: the events of the inverse changes, then OnChangeSet of origin NCO_UNDO.
  /// Fails: false, and no change: without a set, within an event, a delivery of a set or a
  /// transaction, once the document has gone, and if some change can't be taken back because
  /// something that isn't recorded stands against it. What listeners throw doesn't stop it; the
  /// first exception passes at the end.
  bool Undo();
  /// Repeats the set that was undone last. An edit after an undo drops what could be redone.
  bool Redo();

  std::size_t GetUndoCount() const noexcept { return m_undo.size(); }
  std::size_t GetRedoCount() const noexcept { return m_redo.size(); }
  /// The set that is undone or redone at that step, 0 being the next one.
  /// Requires: a step below the count.
  NChangeSet const& GetUndo(std::size_t step) const noexcept {
    return m_undo[m_undo.size() - 1 - step];
  }
  NChangeSet const& GetRedo(std::size_t step) const noexcept {
    return m_redo[m_redo.size() - 1 - step];
  }

  /// Ends the merging of sets: the next one stands for itself. A set is merged with the one before
  /// it if both were committed by the same merge key, which isn't empty, and are of the same
  /// attributes alone: the steps of a slider's drag.
  void EndMerge() noexcept { m_isMergeable = false; }

  /// Drops the oldest sets while all of them hold more; what a set brings back counts with it.
  /// Units: bytes, 256 MiB at first.
  void SetByteLimit(std::size_t bytes);
  std::size_t GetByteLimit() const noexcept { return m_byteLimit; }
  std::size_t GetBytes() const noexcept { return m_bytes; }
  /// Drops all sets.
  void Clear() noexcept;
  /// Whether sets are kept, as they are at first. While a host plays an animation, for one, they
  /// aren't; what was kept before stays.
  void SetIsKeeping(bool isKeeping) noexcept { m_isKeeping = isKeeping; }
  bool IsKeeping() const noexcept { return m_isKeeping; }

  /// Says that `attribute` of `host` had the value `previous` before it was written silently, so
  /// that it belongs to the open transaction or makes a set of its own. Takes hosts outside of the
  /// document too, such as views and timelines, whose changes nobody else records.
  /// Fails: false for an attribute of another host, a node of another document, and once the
  /// document has gone.
  bool Note(core::attribute::NAttributeHost& host, core::attribute::NAttribute const& attribute,
            core::variant::NVariant const& previous);

 private:
  friend class detail::NRecorder;

  using Sets = std::deque<NChangeSet>;

  bool Move(Sets& from, Sets& to, bool isForward);
  void Keep(NChangeSet const& set) noexcept;
  void KeepWithinLimit() noexcept;
  void Drop(Sets& sets) noexcept;

  boost::intrusive_ptr<detail::NRecorder> const m_recorder;
  Sets m_undo;
  Sets m_redo;
  std::size_t m_bytes = 0;
  std::size_t m_byteLimit = std::size_t{256} << 20;
  bool m_isMergeable = false;
  bool m_isMoving = false;    // an undo or a redo runs
  bool m_isClearing = false;  // and all sets go with its end
  bool m_isKeeping = true;
};

}  // namespace corvanta::data::history
