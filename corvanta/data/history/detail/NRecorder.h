#pragma once

#include <boost/intrusive_ptr.hpp>
#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "corvanta/core/name/NNamespace.h"
#include "corvanta/core/observer/detail/NObservableImpl.h"
#include "corvanta/data/document/NDocument.h"
#include "corvanta/data/events/detail/NModelRecorder.h"
#include "corvanta/data/history/NChangeSet.h"
#include "corvanta/data/history/NChangeSetListener.h"
#include "corvanta/data/history/detail/NLevel.h"

namespace corvanta::data::history {
class NHistory;
}

namespace corvanta::data::history::detail {

/// Writes down what changes in a document: into the open transactions, or as a set for each change
/// outside of them. One a document; the document holds it. It hears nothing while nobody asks.
class NRecorder final : public events::detail::NModelRecorder {
 public:
  /// Fails: throws std::bad_alloc.
  static boost::intrusive_ptr<NRecorder> Of(document::NDocument& document);

  /// Opens a transaction; `owner` is its key.
  /// Fails: throws std::bad_alloc, without a change.
  void Open(void const* owner);
  bool IsOpen(void const* owner) const noexcept;
  bool IsInnermost(void const* owner) const noexcept;
  /// End the innermost one.
  void Commit(std::wstring const& name, std::wstring const& mergeKey);
  bool Rollback();

  bool AddListener(NChangeSetListener& listener);
  bool RemoveListener(NChangeSetListener& listener);
  void AddHistory(NHistory& history);
  void RemoveHistory(NHistory& history) noexcept;

  /// Whether an undo may run now.
  bool IsIdle() const noexcept {
    return m_document != nullptr && m_depth == 0 && m_levels.empty() && !m_isDelivering;
  }
  /// Applies all of `set`, or nothing; `moved` is called between the change and its delivery, and
  /// with false if answers of listeners couldn't be taken back.
  /// Requires: IsIdle.
  /// Fails: false, and no change, if something refuses; passes on what listeners throw at the end.
  bool Replay(NChangeSet const& set, bool isForward, NHistory& history,
              std::function<void(bool isExact)> const& moved);
  bool Note(core::attribute::NAttributeHost& host, core::attribute::NAttribute const& attribute,
            core::variant::NVariant const& previous);

  void BeginGroup() noexcept override;
  void EndGroup() override;
  void OnAttribute(core::node::NNode& node,
                   core::attribute::NAttribute const& attribute) noexcept override;
  void OnAttribute(domain::light_env::NLamp& lamp,
                   core::attribute::NAttribute const& attribute) noexcept override;
  void OnSetName(core::name::NNamedObject& object, std::wstring const& previous) noexcept override;
  void OnAddNode(core::domain::NDomainBase& domain, core::node::NNode& node,
                 core::node::NNode* next) noexcept override;
  void OnRemoveNode(core::domain::NDomainBase& domain, core::node::NNode& node,
                    core::node::NNode* next) noexcept override;
  void OnReference(core::node::NNode& node, events::NReferenceKind kind,
                   events::detail::NAnyReference const& previous,
                   events::detail::NAnyReference const& now) noexcept override;
  void OnEnvironmentMapType(core::node::NNode& node, long previous, long now) noexcept override;
  void OnLocator(core::node::NNode& node, core::locator::NLocator const& previous,
                 core::locator::NLocator const& now) noexcept override;
  void OnChild(bool isAdded, domain::scenegraph::item::NSceneGraphItemNode& parent,
               domain::scenegraph::item::NSceneGraphItemNode& child,
               domain::scenegraph::item::NSceneGraphItemNode* next,
               domain::scenegraph::item::NSceneGraphItemNode* previousParent) noexcept override;
  void OnTexture(bool isAdded, domain::material::NMaterialNode& material, unsigned int index,
                 events::detail::NAnyReference const& texture,
                 domain::material::texture_mapping::NTextureMapping* mapping) noexcept override;
  void OnLightEnv(bool isAdded, domain::environment::NEnvironmentNode& environment,
                  unsigned int index,
                  events::detail::NAnyReference const& lightEnv) noexcept override;
  void OnLamp(bool isAdded, domain::light_env::NLightEnvNode& lightEnv,
              domain::light_env::NLamp& lamp, unsigned int index) noexcept override;
  void OnSurface(bool isAdded, domain::geometry::NGeometryNode& geometry,
                 domain::geometry::NSurface& surface) noexcept override;
  void OnContents(core::reference_countable::NReferenceCountable& object,
                  events::detail::NContents const& contents) noexcept override;
  void OnMissing() noexcept override;
  void OnDocumentEnd() noexcept override;

 private:
  class NReplay;

  explicit NRecorder(document::NDocument& document);
  ~NRecorder() override;

  void UpdateSlots() noexcept;
  /// Whether nobody tells of the host's changes: it is neither a node nor a lamp of a node.
  static bool IsOutside(core::attribute::NAttributeHost const& host) noexcept;
  template <class Fill>
  void RecordChange(NChangeKind kind, NKept&& subject, bool isChange, Fill const& fill) noexcept;
  void RecordAttribute(core::attribute::NAttribute const& attribute, core::node::NNode* node,
                       bool isOutside, core::variant::NVariant&& previous) noexcept;
  /// Ends a level that is committed: into the one outside it, or as a set.
  void Keep(NLevel&& level, NChangeOrigin origin, NHistory const* without) noexcept;
  void Queue(NChangeSet const& set, NHistory const* without) noexcept;
  void KeepBoth(NLevel&& first, NLevel&& second) noexcept;
  NLevel TakeInnermost() noexcept;
  std::optional<NLevel> TakeLevel(void const* owner) noexcept;
  void CloseEnded() noexcept;
  void Deliver(bool isSilent);
  void OnFinished() override { Deliver(std::uncaught_exceptions() != 0); }

  document::NDocument* m_document;                    // null once it has gone
  std::vector<core::name::NNamespace*> m_namespaces;  // of the domains, which the document holds
  NChangeSet const m_missing;                         // empty and incomplete
  std::vector<NLevel> m_levels;                       // the open transactions, outermost first
  std::vector<NHistory*> m_histories;
  core::observer::detail::NObservableImpl m_listeners;
  std::deque<NChangeSet> m_queue;  // to be delivered; m_hasFinished says whether there is one
  std::size_t m_expected = 0;      // attributes of a transaction, going by the last one
  NReplay* m_replay = nullptr;     // while changes are taken back or repeated
  unsigned m_joinedGroups = 0;     // groups within an open level
  bool m_isDelivering = false;
};

}  // namespace corvanta::data::history::detail
