#pragma once

#include <cstddef>
#include <unordered_map>

#include "corvanta/data/history/NChangeSet.h"

namespace corvanta::data::history::detail {

/// The changes since the begin of an open transaction, or of what is committed with it.
class NLevel {
 public:
  /// Of the outermost level the attributes bear a mark, which is cheaper than a look-up; of all
  /// others, and of hosts that no document knows, an index says whether they are in.
  explicit NLevel(bool isMarking) noexcept : m_isMarking(isMarking) {}
  NLevel(NLevel&& other) noexcept;
  NLevel& operator=(NLevel&& other) noexcept;
  ~NLevel() { ClearMarks(); }

  /// Does nothing for an attribute that is in.
  /// Fails: throws std::bad_alloc, without a change.
  void Add(core::attribute::NAttribute& attribute, core::node::NNode* node, bool isOutside,
           core::variant::NVariant&& before);
  void Add(NChange&& change) { m_data.changes.push_back(std::move(change)); }
  /// Takes in what was committed inside this one.
  /// Fails: throws std::bad_alloc; some of it may be in then.
  void Append(NLevel&& inner);
  bool IsEmpty() const noexcept { return m_data.attributes.empty() && m_data.changes.empty(); }

  /// Ends the level: gives the attributes their values of now, and drops those that have come back
  /// to the same.
  /// Fails: throws std::bad_alloc.
  NChangeSet Close(NChangeOrigin origin);

  /// Whoever takes the attributes back records them anew.
  void ClearMarks() noexcept;
  void SetIsMissing() noexcept { m_data.isComplete = false; }
  NChangeSet::Data& GetData() noexcept { return m_data; }

  void const* owner = nullptr;  // the transaction
  bool isEnded = false;         // its owner has gone before what is above it

 private:
  bool IsIn(core::attribute::NAttribute const& attribute, bool isOutside) const noexcept;

  bool m_isMarking;
  NChangeSet::Data m_data;
  std::unordered_map<core::attribute::NAttribute const*, bool> m_index;  // whether it is outside
};

}  // namespace corvanta::data::history::detail
