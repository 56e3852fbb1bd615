#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "corvanta/data/history/NAttributeChange.h"
#include "corvanta/data/history/NChange.h"
#include "corvanta/export.h"

namespace corvanta::data::history {

/// What made a change set.
enum NChangeOrigin : int {
  NCO_EDIT,
  NCO_UNDO,
  NCO_REDO,
};

/// What happened to a document in a transaction, or by one change outside of all. A value: copies
/// share the changes, which stay as they are.
///
/// Attributes are merged: each is in once, in the order of their first writes, with the value
/// before the first and after the last; where both are the same, it is left out. All else is in the
/// order in which it happened. To repeat a set on another document, take the structure first, then
/// the attributes; to go back, the attributes first, then the structure from its end.
class CORVANTA_API NChangeSet {
 public:
  using AttributeChanges = std::vector<NAttributeChange>;
  using Changes = std::vector<NChange>;
  struct Data {
    std::wstring name;
    std::wstring mergeKey;
    NChangeOrigin origin = NCO_EDIT;
    bool isComplete = true;
    std::size_t bytes = 0;
    AttributeChanges attributes;
    Changes changes;
  };

  /// An empty one.
  NChangeSet();
  explicit NChangeSet(std::shared_ptr<Data const> data) noexcept : m_data(std::move(data)) {}

  /// The name that its transaction was committed by; empty outside of one.
  std::wstring const& GetName() const noexcept { return m_data->name; }
  std::wstring const& GetMergeKey() const noexcept { return m_data->mergeKey; }
  NChangeOrigin GetOrigin() const noexcept { return m_data->origin; }
  /// Whether nothing is missing. Something is when memory ran out while it was recorded.
  bool IsComplete() const noexcept { return m_data->isComplete; }
  bool IsEmpty() const noexcept { return m_data->attributes.empty() && m_data->changes.empty(); }
  AttributeChanges const& GetAttributeChanges() const noexcept { return m_data->attributes; }
  Changes const& GetChanges() const noexcept { return m_data->changes; }
  /// About how much memory the set holds, with what left the document by it.
  std::size_t GetBytes() const noexcept { return m_data->bytes; }

  /// This set and then `other` as one, if both are of the attributes of the same hosts and of
  /// nothing else, which are the same in both.
  /// Fails: none if they aren't; throws std::bad_alloc.
  std::optional<NChangeSet> MergedWith(NChangeSet const& other) const;

 private:
  std::shared_ptr<Data const> m_data;
};

}  // namespace corvanta::data::history
