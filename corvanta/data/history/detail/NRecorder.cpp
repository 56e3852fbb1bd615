#include "corvanta/data/history/detail/NRecorder.h"

#include <algorithm>
#include <new>
#include <utility>

#include "corvanta/core/reference_countable/hold.h"
#include "corvanta/data/domain/environment/NEnvironmentNode.h"
#include "corvanta/data/domain/geometry/NGeometryNode.h"
#include "corvanta/data/domain/geometry/NSurface.h"
#include "corvanta/data/domain/light_env/NLightEnvNode.h"
#include "corvanta/data/domain/material/NMaterialNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphItemNode.h"
#include "corvanta/data/history/NHistory.h"
#include "corvanta/data/history/detail/NReplay.h"

namespace corvanta::data::history::detail {

using core::attribute::NAttribute;
using core::attribute::NAttributeHost;
using core::locator::NLocator;
using core::variant::NVariant;
using domain::light_env::NLamp;
using domain::scenegraph::item::NSceneGraphItemNode;
using events::detail::NAnyReference;

namespace {

/// Room for so many attributes at most is made ahead.
constexpr std::size_t kAhead = 1 << 16;

NChangeSet MakeMissing() {
  auto const data = std::make_shared<NChangeSet::Data>();
  data->isComplete = false;
  return NChangeSet(data);
}

std::shared_ptr<NChange::Texts const> MakeNames(std::wstring const& before,
                                                std::wstring const& after) {
  auto const texts = std::make_shared<NChange::Texts>();
  texts->nameBefore = before;
  texts->nameAfter = after;
  return texts;
}

}  // namespace

boost::intrusive_ptr<NRecorder> NRecorder::Of(document::NDocument& document) {
  if (!document.m_recorder) document.m_recorder = new NRecorder(document);
  return static_cast<NRecorder*>(document.m_recorder.get());
}

NRecorder::NRecorder(document::NDocument& document)
    : m_document(&document), m_missing(MakeMissing()) {
  for (auto const& domain : document) {
    m_namespaces.push_back(dynamic_cast<core::name::NNamespace*>(domain.get()));
  }
}

NRecorder::~NRecorder() = default;

/// The document's nodes ask one pointer for their recorder, and its domains one each.
void NRecorder::UpdateSlots() noexcept {
  if (m_document == nullptr) return;
  bool const isNeeded = !m_levels.empty() || !m_histories.empty() || !m_listeners.IsEmpty();
  NRecorder* const recorder = isNeeded ? this : nullptr;
  m_document->GetEvents().GetAttributeChangeEventMultiplexer().SetRecorder(recorder);
  for (auto const& domain : *m_document) domain->SetRecorder(recorder);
  for (auto* const space : m_namespaces) space->SetRecorder(recorder);
}

void NRecorder::OnDocumentEnd() noexcept {
  auto const held = core::reference_countable::Hold(*this);
  m_levels.clear();
  m_joinedGroups = 0;
  m_queue.clear();
  m_hasFinished = false;
  for (NHistory* const history : m_histories) history->Clear();
  m_histories.clear();
  auto* const document = m_document;
  m_document = nullptr;
  document->GetEvents().GetAttributeChangeEventMultiplexer().SetRecorder(nullptr);
  for (auto const& domain : *document) domain->SetRecorder(nullptr);
  for (auto* const space : m_namespaces) space->SetRecorder(nullptr);
}

bool NRecorder::AddListener(NChangeSetListener& listener) {
  bool const isNew = m_listeners.AddObserver(listener, &listener);
  UpdateSlots();
  return isNew;
}

bool NRecorder::RemoveListener(NChangeSetListener& listener) {
  bool const isRemoved = m_listeners.RemoveObserver(listener);
  UpdateSlots();
  return isRemoved;
}

void NRecorder::AddHistory(NHistory& history) {
  m_histories.push_back(&history);
  UpdateSlots();
}

void NRecorder::RemoveHistory(NHistory& history) noexcept {
  std::erase(m_histories, &history);
  UpdateSlots();
}

// Transactions.

void NRecorder::Open(void const* owner) {
  m_levels.emplace_back(m_levels.empty()).owner = owner;
  if (m_levels.size() != 1) return;
  try {
    m_levels.back().GetData().attributes.reserve(std::min(m_expected, kAhead));
  } catch (std::bad_alloc const&) {
    // It grows then.
  }
  UpdateSlots();
}

bool NRecorder::IsOpen(void const* owner) const noexcept {
  return std::any_of(m_levels.begin(), m_levels.end(),
                     [owner](NLevel const& level) { return level.owner == owner; });
}

bool NRecorder::IsInnermost(void const* owner) const noexcept {
  return !m_levels.empty() && m_levels.back().owner == owner;
}

NLevel NRecorder::TakeInnermost() noexcept {
  NLevel level = std::move(m_levels.back());
  m_levels.pop_back();
  return level;
}

void NRecorder::Commit(std::wstring const& name, std::wstring const& mergeKey) {
  auto const held = core::reference_countable::Hold(*this);
  auto& data = m_levels.back().GetData();
  if (!name.empty()) data.name = name;
  data.mergeKey = mergeKey;
  Keep(TakeInnermost(), NCO_EDIT, nullptr);
  CloseEnded();
  UpdateSlots();
  Deliver(false);
}

/// A level is empty of marks before what follows it is recorded.
void NRecorder::Keep(NLevel&& level, NChangeOrigin origin, NHistory const* without) noexcept {
  bool const isComplete = level.GetData().isComplete;
  bool const isHeard = !m_levels.empty() || !m_listeners.IsEmpty() ||
                       std::any_of(m_histories.begin(), m_histories.end(),
                                   [without](NHistory* history) { return history != without; });
  if (!isHeard) return;
  try {
    if (!m_levels.empty()) {
      m_levels.back().Append(std::move(level));
    } else {
      m_expected = level.GetData().attributes.size();
      NChangeSet const set = level.Close(origin);
      if (!set.IsEmpty() || !isComplete) Queue(set, without);
    }
  } catch (std::bad_alloc const&) {
    OnMissing();
  }
}

void NRecorder::Queue(NChangeSet const& set, NHistory const* without) noexcept {
  for (NHistory* const history : m_histories) {
    if (history != without) history->Keep(set);
  }
  if (m_listeners.IsEmpty()) return;
  try {
    m_queue.push_back(set);
    m_hasFinished = true;
  } catch (std::bad_alloc const&) {
    if (!m_queue.empty()) m_queue.back() = m_missing;
  }
}

/// Ends the level of `owner`, and with it those that listeners have left open inside it.
/// Fails: none if the document has ended it.
std::optional<NLevel> NRecorder::TakeLevel(void const* owner) noexcept {
  if (!IsOpen(owner)) return std::nullopt;
  while (!IsInnermost(owner)) Keep(TakeInnermost(), NCO_EDIT, nullptr);
  return TakeInnermost();
}

bool NRecorder::Rollback() {
  auto const held = core::reference_countable::Hold(*this);
  NLevel level = TakeInnermost();
  level.ClearMarks();
  bool isDone = false;
  std::exception_ptr exception;
  if (level.GetData().isComplete) {
    NReplay replay(*this);
    Open(&replay);  // in the room of the level that was
    auto const& data = level.GetData();
    isDone = replay.Apply(data.attributes, data.changes, false, true) && !replay.HasLeftOver();
    exception = replay.GetException();
    auto taken = TakeLevel(&replay);
    // What can't be taken back remains, with all that was done meanwhile.
    if (taken && !isDone) KeepBoth(std::move(level), std::move(*taken));
  } else if (m_document != nullptr) {
    Keep(std::move(level), NCO_EDIT, nullptr);
  }
  CloseEnded();
  UpdateSlots();
  Deliver(exception != nullptr);
  if (exception) std::rethrow_exception(exception);
  return isDone;
}

void NRecorder::KeepBoth(NLevel&& first, NLevel&& second) noexcept {
  try {
    NLevel both(m_levels.empty());
    both.Append(std::move(first));
    both.Append(std::move(second));
    Keep(std::move(both), NCO_EDIT, nullptr);
  } catch (std::bad_alloc const&) {
    OnMissing();
  }
}

void NRecorder::CloseEnded() noexcept {
  while (!m_levels.empty() && m_levels.back().isEnded) {
    Keep(TakeInnermost(), NCO_EDIT, nullptr);
  }
}

void NRecorder::BeginGroup() noexcept {
  ++m_depth;
  if (m_levels.empty()) {
    try {
      Open(&m_joinedGroups);
      return;
    } catch (std::bad_alloc const&) {
      // Each change is a set of its own then.
    }
  }
  ++m_joinedGroups;
}

void NRecorder::EndGroup() {
  if (m_joinedGroups != 0) {
    --m_joinedGroups;
  } else if (IsInnermost(&m_joinedGroups)) {
    Keep(TakeInnermost(), NCO_EDIT, nullptr);
    UpdateSlots();
  } else if (IsOpen(&m_joinedGroups)) {
    m_levels.front().isEnded = true;  // a listener has left a transaction open
    m_levels.front().owner = nullptr;
  }
  if (--m_depth == 0 && m_hasFinished) OnFinished();
}

void NRecorder::Deliver(bool isSilent) {
  if (m_isDelivering || m_depth != 0) return;
  auto const held = core::reference_countable::Hold(*this);
  std::exception_ptr first;
  m_isDelivering = true;
  while (!m_queue.empty()) {
    NChangeSet const set = std::move(m_queue.front());
    m_queue.pop_front();
    try {
      m_listeners.Deliver<NChangeSetListener>(
          [&set](NChangeSetListener& listener) { listener.SignalChangeSet(set); });
    } catch (...) {
      if (!first) first = std::current_exception();
    }
  }
  m_isDelivering = false;
  m_hasFinished = false;
  if (first && !isSilent) std::rethrow_exception(first);
}

bool NRecorder::Replay(NChangeSet const& set, bool isForward, NHistory& history,
                       std::function<void(bool isExact)> const& moved) {
  auto const held = core::reference_countable::Hold(*this);
  NChangeSet const replayed = set;  // a listener may drop it
  std::wstring name = set.GetName();
  NChangeSet::AttributeChanges room;
  room.reserve(set.GetAttributeChanges().size());
  bool isDone = false;
  std::exception_ptr exception;
  std::optional<NLevel> made;
  {
    NReplay replay(*this);
    Open(&replay);
    m_levels.back().GetData().name = std::move(name);
    m_levels.back().GetData().attributes = std::move(room);
    isDone = replay.Apply(replayed.GetAttributeChanges(), replayed.GetChanges(), isForward, false);
    made = TakeLevel(&replay);
    if (made && !isDone) {
      made->ClearMarks();
      Open(&replay);  // in the room of the level that was
      replay.Apply(made->GetData().attributes, made->GetData().changes, false, true);
      TakeLevel(&replay);
    }
    exception = replay.GetException();
    if (made && isDone) moved(!replay.HasLeftOver() && made->GetData().isComplete);
  }
  if (made && isDone) Keep(std::move(*made), isForward ? NCO_REDO : NCO_UNDO, &history);
  UpdateSlots();
  Deliver(exception != nullptr);
  if (exception) std::rethrow_exception(exception);
  return isDone && made;
}

void NRecorder::OnMissing() noexcept {
  if (m_document == nullptr) return;
  if (!m_levels.empty()) return m_levels.back().SetIsMissing();
  Queue(m_missing, nullptr);
}

// Changes.

bool NRecorder::IsOutside(NAttributeHost const& host) noexcept {
  return dynamic_cast<core::node::NNode const*>(&host) == nullptr &&
         dynamic_cast<NLamp const*>(&host) == nullptr;
}

bool NRecorder::Note(NAttributeHost& host, NAttribute const& attribute, NVariant const& previous) {
  if (m_document == nullptr || &attribute.GetHost() != &host) return false;
  auto* const node = dynamic_cast<core::node::NNode*>(&host);
  auto* const lamp = dynamic_cast<NLamp*>(&host);
  auto const* const owner = lamp ? lamp->GetOwner() : dynamic_cast<domain::NNode*>(node);
  bool const isOfOthers = (node || lamp) && (!owner || owner->GetRecorder() != this);
  if (isOfOthers) return false;
  core::detail::NChangeScope const change(this);
  RecordAttribute(attribute, node, IsOutside(host), NVariant(previous));
  return true;
}

void NRecorder::RecordAttribute(NAttribute const& attribute, core::node::NNode* node,
                                bool isOutside, NVariant&& previous) noexcept {
  if (m_document == nullptr) return;
  auto& written = const_cast<NAttribute&>(attribute);
  try {
    for (NReplay* replay = m_replay; replay != nullptr; replay = replay->GetOuter()) {
      if (!replay->IsAnswer(&attribute, kAttribute)) continue;
      replay->GetAnswers().Add(written, node, isOutside, NVariant(previous));
    }
    if (!m_levels.empty()) {
      return m_levels.back().Add(written, node, isOutside, std::move(previous));
    }
    NLevel level(false);
    level.Add(written, node, isOutside, std::move(previous));
    NChangeSet const set = level.Close(NCO_EDIT);
    if (!set.IsEmpty()) Queue(set, nullptr);
  } catch (std::bad_alloc const&) {
    OnMissing();
  }
}

void NRecorder::OnAttribute(core::node::NNode& node, NAttribute const& attribute) noexcept {
  bool const isPlain = m_levels.size() == 1 && m_replay == nullptr;
  if (isPlain && attribute.IsRecorded()) return;
  try {
    if (isPlain) {
      m_levels.front().Add(const_cast<NAttribute&>(attribute), &node, false,
                           attribute.GetPreviousValue());
    } else {
      RecordAttribute(attribute, &node, false, attribute.GetPreviousValue());
    }
  } catch (std::bad_alloc const&) {
    OnMissing();
  }
}

void NRecorder::OnAttribute(NLamp&, NAttribute const& attribute) noexcept {
  try {
    RecordAttribute(attribute, nullptr, false, attribute.GetPreviousValue());
  } catch (std::bad_alloc const&) {
    OnMissing();
  }
}

/// `fill` makes the rest of the change, unless there is none.
template <class Fill>
void NRecorder::RecordChange(NChangeKind kind, NKept&& subject, bool isChange,
                             Fill const& fill) noexcept {
  if (m_document == nullptr) return;
  try {
    NChange change;
    change.kind = kind;
    change.subject = std::move(subject);
    if (isChange) fill(change);
    for (NReplay* replay = m_replay; replay != nullptr; replay = replay->GetOuter()) {
      bool const isAnswer = replay->IsAnswer(change.subject.GetObject(), GetGroup(kind));
      if (isChange && isAnswer) replay->GetAnswers().Add(NChange(change));
    }
    if (!isChange) return;
    if (!m_levels.empty()) return m_levels.back().Add(std::move(change));
    NLevel level(false);
    level.Add(std::move(change));
    Queue(level.Close(NCO_EDIT), nullptr);
  } catch (std::bad_alloc const&) {
    OnMissing();
  }
}

namespace {

NKept KeepObject(core::reference_countable::NReferenceCountable& object) noexcept {
  auto* const node = dynamic_cast<core::node::NNode*>(&object);
  return node != nullptr ? NKept(node) : NKept(&object);
}

}  // namespace

void NRecorder::OnSetName(core::name::NNamedObject& object, std::wstring const& previous) noexcept {
  RecordChange(NCK_NAME, KeepObject(object), true,
               [&](NChange& change) { change.texts = MakeNames(previous, object.GetName()); });
}

void NRecorder::OnAddNode(core::domain::NDomainBase& domain, core::node::NNode& node,
                          core::node::NNode* next) noexcept {
  if (auto const* const weak = node.FindWeakReference()) weak->SetIsWithdrawn(false);
  RecordChange(NCK_NODE_ADDED, NKept(&domain), true, [&](NChange& change) {
    change.element = &node;
    change.next = next;
    change.texts = MakeNames(node.GetName(), node.GetName());
  });
}

void NRecorder::OnRemoveNode(core::domain::NDomainBase& domain, core::node::NNode& node,
                             core::node::NNode* next) noexcept {
  RecordChange(NCK_NODE_REMOVED, NKept(&domain), true, [&](NChange& change) {
    change.element = &node;
    change.next = next;
    change.texts = MakeNames(node.GetName(), node.GetName());
    node.GetWeakReference()->SetIsWithdrawn(true);
  });
}

void NRecorder::OnReference(core::node::NNode& node, events::NReferenceKind kind,
                            NAnyReference const& previous, NAnyReference const& now) noexcept {
  RecordChange(NCK_REFERENCE, &node, !previous.Equals(now), [&](NChange& change) {
    change.reference = kind;
    change.before = previous;
    change.after = now;
  });
}

void NRecorder::OnEnvironmentMapType(core::node::NNode& node, long previous, long now) noexcept {
  RecordChange(NCK_ENVIRONMENT_MAP_TYPE, &node, previous != now, [&](NChange& change) {
    change.typeBefore = previous;
    change.typeAfter = now;
  });
}

void NRecorder::OnLocator(core::node::NNode& node, NLocator const& previous,
                          NLocator const& now) noexcept {
  RecordChange(NCK_LOCATOR, &node, previous != now, [&](NChange& change) {
    auto const texts = std::make_shared<NChange::Texts>();
    texts->locatorBefore = previous;
    texts->locatorAfter = now;
    change.texts = texts;
  });
}

void NRecorder::OnChild(bool isAdded, NSceneGraphItemNode& parent, NSceneGraphItemNode& child,
                        NSceneGraphItemNode* next, NSceneGraphItemNode* previousParent) noexcept {
  RecordChange(isAdded ? NCK_CHILD_ADDED : NCK_CHILD_REMOVED, &parent, true, [&](NChange& change) {
    change.element = &child;
    change.next = next;
    change.previousParent = previousParent;
  });
}

void NRecorder::OnTexture(bool isAdded, domain::material::NMaterialNode& material,
                          unsigned int index, NAnyReference const& texture,
                          domain::material::texture_mapping::NTextureMapping* mapping) noexcept {
  RecordChange(isAdded ? NCK_TEXTURE_ADDED : NCK_TEXTURE_REMOVED, &material, true,
               [&](NChange& change) {
                 change.element = NKept(mapping);
                 change.index = index;
                 change.after = texture;
               });
}

void NRecorder::OnLightEnv(bool isAdded, domain::environment::NEnvironmentNode& environment,
                           unsigned int index, NAnyReference const& lightEnv) noexcept {
  RecordChange(isAdded ? NCK_LIGHT_ENV_ADDED : NCK_LIGHT_ENV_REMOVED, &environment, true,
               [&](NChange& change) {
                 change.index = index;
                 change.after = lightEnv;
               });
}

void NRecorder::OnLamp(bool isAdded, domain::light_env::NLightEnvNode& lightEnv, NLamp& lamp,
                       unsigned int index) noexcept {
  RecordChange(isAdded ? NCK_LAMP_CREATED : NCK_LAMP_DELETED, &lightEnv, true,
               [&](NChange& change) {
                 change.element = NKept(&lamp);
                 change.index = index;
                 change.texts = MakeNames(lamp.GetName(), lamp.GetName());
               });
}

void NRecorder::OnSurface(bool isAdded, domain::geometry::NGeometryNode& geometry,
                          domain::geometry::NSurface& surface) noexcept {
  RecordChange(isAdded ? NCK_SURFACE_ADDED : NCK_SURFACE_REMOVED, &geometry, true,
               [&](NChange& change) { change.element = NKept(&surface); });
}

void NRecorder::OnContents(core::reference_countable::NReferenceCountable& object,
                           events::detail::NContents const& contents) noexcept {
  RecordChange(NCK_CONTENTS, KeepObject(object), true, [&](NChange& change) {
    change.contents = std::make_shared<events::detail::NContents const>(contents);
  });
}

}  // namespace corvanta::data::history::detail
