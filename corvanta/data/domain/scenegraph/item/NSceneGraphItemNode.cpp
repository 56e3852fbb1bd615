#include "corvanta/data/domain/scenegraph/item/NSceneGraphItemNode.h"

#include <algorithm>
#include <array>
#include <vector>

#include "corvanta/core/detail/scope_exit.h"
#include "corvanta/core/reference_countable/hold.h"
#include "corvanta/core/string_table/string_table.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphGroupNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphReferenceNode.h"
#include "corvanta/data/domain/scenegraph/item/detail/block.h"
#include "corvanta/data/domain/scenegraph/item/detail/default_name.h"
#include "corvanta/vx_math/TransformInfo.h"
#include "corvanta/vx_math/euler_angles.h"

namespace corvanta::data::domain::scenegraph::item {

namespace {

using scenegraph::detail::NChildIndex;
using VX_Math::Matrix;
using VX_Math::Vec3;

constexpr std::size_t kIndexFrom = 32;
constexpr unsigned kAttributeCount = 0
#define CORVANTA_ROWS_COUNT
#include "corvanta/data/domain/scenegraph/item/item_attributes.def"
    ;

}  // namespace

#define CORVANTA_ROWS_BODIES NSceneGraphItemNode
#include "corvanta/data/domain/scenegraph/item/item_attributes.def"

NSceneGraphItemNode::NSceneGraphItemNode(core::node::NNodeID const& id,
                                         core::domain::NDomainBase* domain,
                                         events::attribute_change::NMultiplexer const* multiplexer,
                                         std::wstring const& typeName)
    : NNode(id, domain, multiplexer, detail::MakeDefaultName(typeName)),
      m_block((ReserveAttributes(kAttributeCount), new Block{*this})) {}

NSceneGraphItemNode::~NSceneGraphItemNode() {
  for (auto const& child : m_block->children) {
    --child->m_block->listCount;
    if (child->m_block->parent == this) child->m_block->parent = nullptr;
  }
  // A worklist, so that the end of a deep hierarchy doesn't recurse.
  thread_local Children* pending = nullptr;
  if (pending != nullptr) {
    pending->splice(pending->end(), m_block->children);
    return;
  }
  Children work(std::move(m_block->children));
  pending = &work;
  while (!work.empty()) {
    boost::intrusive_ptr<NSceneGraphItemNode> const item = std::move(work.front());
    work.pop_front();
  }
  pending = nullptr;
}

Matrix const& NSceneGraphItemNode::GetTransform() const {
  Block& block = *m_block;
  if (block.isTransformDirty) {
    block.transform = CalcTransformMatrix(
        VX_Math::Narrow(GetScaleX(), GetScaleY(), GetScaleZ()),
        VX_Math::Narrow(GetRotationPivotX(), GetRotationPivotY(), GetRotationPivotZ()),
        VX_Math::Narrow(GetRotationX(), GetRotationY(), GetRotationZ()),
        VX_Math::Narrow(GetTranslationX(), GetTranslationY(), GetTranslationZ()));
    block.isTransformDirty = false;
  }
  return block.transform;
}

void NSceneGraphItemNode::OnAttributeChangeImpl(core::attribute::NAttribute const& attribute) {
  // Listeners run before the caches are marked, and the marking happens also when one throws.
  core::detail::ScopeExit const mark([this, &attribute] {
    auto const effects = core::attribute::detail::GetNameEffects(attribute.GetNameIndex());
    if (effects & domain::detail::NAE_LOCAL) m_block->isTransformDirty = true;
    if (effects & domain::detail::NAE_BOX) DirtyBoundingBox();
  });
  NNode::OnAttributeChangeImpl(attribute);
}

bool NSceneGraphItemNode::AddChild(NSceneGraphItemNode& child) {
  if (IsChild(child) || child.m_block->parent != nullptr || IsOrStandsBelow(child)) return false;
  Insert(child, m_block->children.end());
  return true;
}

bool NSceneGraphItemNode::AddChild(NSceneGraphItemNode& child, unsigned int index) {
  if (index >= m_block->children.size()) return AddChild(child);
  if (IsChild(child) || child.GetDomain() != GetDomain() || IsOrStandsBelow(child)) return false;
  Insert(child, std::next(m_block->children.begin(), index));
  return true;
}

bool NSceneGraphItemNode::IsChild(NSceneGraphItemNode const& child) const {
  Block const& block = *m_block;
  if (child.m_block->listCount == 0) return false;
  if (block.childIndex) return block.childIndex->count(&child) != 0;
  return std::any_of(block.children.begin(), block.children.end(),
                     [&child](auto const& entry) { return entry.get() == &child; });
}

/// Visits what stands below an item by its parent links, one entry of a list of children a step.
class NSceneGraphItemNode::Descent {
 public:
  explicit Descent(NSceneGraphItemNode const& top) { Open(top); }

  /// The item reached by the next step; null for a step that reaches none.
  NSceneGraphItemNode const* Next() {
    Level& level = m_levels.back();
    if (level.next == level.parent->m_block->children.end()) {
      m_levels.pop_back();
      return nullptr;
    }
    NSceneGraphItemNode const& child = **level.next++;
    // An entry that an insert elsewhere left behind isn't below this parent.
    if (child.m_block->parent != level.parent) return nullptr;
    Open(child);
    return &child;
  }
  bool IsDone() const { return m_levels.empty(); }

 private:
  struct Level {
    NSceneGraphItemNode const* parent;
    Children::const_iterator next;
  };

  void Open(NSceneGraphItemNode const& item) {
    Children const& children = item.m_block->children;
    if (!children.empty()) m_levels.push_back({&item, children.begin()});
  }

  std::vector<Level> m_levels;
};

/// Whether this item would be its own ancestor, were `item` put below it.
///
/// Searches up from here and down from `item` in turn, so that the shorter way decides the cost: a
/// small group put below a deep item, and a deep hierarchy put below a root.
bool NSceneGraphItemNode::IsOrStandsBelow(NSceneGraphItemNode const& item) const {
  if (&item == this) return true;
  if (item.m_block->children.empty() || m_block->parent == nullptr) return false;
  Descent descent(item);
  for (NSceneGraphItemNode const* i = m_block->parent; i != nullptr; i = i->m_block->parent) {
    if (i == &item) return true;
    if (descent.Next() == this) return true;
    if (descent.IsDone()) return false;
  }
  return false;
}

void NSceneGraphItemNode::Insert(NSceneGraphItemNode& child, Children::const_iterator before) {
  Block& block = *m_block;
  if (!block.childIndex && block.children.size() + 1 >= kIndexFrom) {
    auto index = std::make_unique<Block::ChildIndex>();
    for (auto i = block.children.cbegin(); i != block.children.cend(); ++i) {
      index->emplace(i->get(), i);
    }
    block.childIndex = std::move(index);
  }
  Children entry;
  entry.emplace_back();  // not counted before nothing can fail any more
  if (block.childIndex) block.childIndex->emplace(&child, entry.cbegin());
  entry.front().reset(&child);
  block.children.splice(before, entry);
  ++child.m_block->listCount;
  if (child.m_block->parent != nullptr) NChildIndex::Drop(*child.m_block->parent);
  child.m_block->parent = this;
  if (block.boxIndex) {
    auto const place = std::prev(before);
    NChildIndex::OnInsert(*this, child,
                          place == block.children.begin() ? nullptr : std::prev(place)->get(),
                          before == block.children.end() ? nullptr : before->get());
  }
  DirtyBoundingBox();
  boost::intrusive_ptr<NSceneGraphItemNode> const held(&child);
  NotifyObservers([&](auto& listener) { listener.SignalAddChild(*this, child); });
}

bool NSceneGraphItemNode::RemoveChild(NSceneGraphItemNode& child) {
  if (!IsChild(child)) return false;
  Block& block = *m_block;
  boost::intrusive_ptr<NSceneGraphItemNode> const held(&child);
  NChildIndex::OnRemove(*this, child);
  if (block.childIndex) {
    auto const entry = block.childIndex->find(&child);
    block.children.erase(entry->second);
    block.childIndex->erase(entry);
    if (block.children.size() < kIndexFrom / 2) block.childIndex.reset();
  } else {
    block.children.remove(held);
  }
  --child.m_block->listCount;
  child.m_block->parent = nullptr;
  DirtyBoundingBox();
  NotifyObservers([&](auto& listener) { listener.SignalRemoveChild(*this, child); });
  return true;
}

NSceneGraphItemNode::Children const& NSceneGraphItemNode::GetChildren() const {
  return m_block->children;
}

boost::intrusive_ptr<NSceneGraphItemNode> NSceneGraphItemNode::GetParent() const {
  NSceneGraphItemNode* const parent = m_block->parent;
  return {parent != nullptr && parent->TryAddRef() ? parent : nullptr, false};
}

bool NSceneGraphItemNode::IsReferredFrom(NSceneGraphReferenceNode const& reference) const {
  auto const held = core::reference_countable::Hold(*this);
  auto const heldReference = core::reference_countable::Hold(reference);
  reference.VerifyReference();
  return IsReferrer(reference);
}

namespace {

struct SerialLess {
  template <class Referrer>
  bool operator()(Referrer const& referrer, std::uint64_t serial) const noexcept {
    return referrer.weak->GetSerial() < serial;
  }
};

}  // namespace

bool NSceneGraphItemNode::IsReferrer(NSceneGraphReferenceNode const& reference) const {
  auto const& referrers = m_block->referrers;
  if (referrers.empty()) return false;
  auto const weak = reference.GetWeakReference();
  auto const place =
      std::lower_bound(referrers.begin(), referrers.end(), weak->GetSerial(), SerialLess());
  return place != referrers.end() && place->weak == weak;
}

bool NSceneGraphItemNode::AddReferrer(NSceneGraphReferenceNode const& reference) const {
  auto& referrers = m_block->referrers;
  auto weak = reference.GetWeakReference();
  auto const place =
      std::lower_bound(referrers.begin(), referrers.end(), weak->GetSerial(), SerialLess());
  if (place != referrers.end() && place->weak == weak) return false;
  referrers.insert(place, Block::Referrer{std::move(weak), &reference});
  NoteCleaning();  // the reference's box may be clean while this one is dirty
  return true;
}

bool NSceneGraphItemNode::RemoveReferrer(NSceneGraphReferenceNode const& reference) const {
  auto& referrers = m_block->referrers;
  auto const weak = reference.GetWeakReference();
  auto const place =
      std::lower_bound(referrers.begin(), referrers.end(), weak->GetSerial(), SerialLess());
  if (place == referrers.end() || place->weak != weak) return false;
  referrers.erase(place);
  return true;
}

void NSceneGraphItemNode::RemoveStrayReferrers() const noexcept {
  std::erase_if(m_block->referrers, [this](Block::Referrer const& referrer) {
    if (!referrer.weak->GetReference()) return true;
    auto const& reference = static_cast<NSceneGraphReferenceNode const&>(*referrer.item);
    auto const tree = reference.GetSceneGraphRef().Get();
    return !tree || tree->GetRoot() != this;
  });
}

void NSceneGraphItemNode::TryTransform(Matrix const& matrix) {
  VX_Math::TransformInfo info;
  VX_Math::GetTransformInfo_Degree(matrix, info);
  Block& block = *m_block;
  block.AN_TRANSLATION_X.TrySilently(info.translation.x);
  block.AN_TRANSLATION_Y.TrySilently(info.translation.y);
  block.AN_TRANSLATION_Z.TrySilently(info.translation.z);
  block.AN_ROTATION_X.TrySilently(info.rotation.x);
  block.AN_ROTATION_Y.TrySilently(info.rotation.y);
  block.AN_ROTATION_Z.TrySilently(info.rotation.z);
  block.AN_SCALE_X.TrySilently(info.scale.x);
  block.AN_SCALE_Y.TrySilently(info.scale.y);
  block.AN_SCALE_Z.TrySilently(info.scale.z);
  block.isTransformDirty = true;
  DirtyBoundingBox();
}

namespace {

using TransformValues = std::array<double, 12>;

TransformValues GetTransformValues(NSceneGraphItemNode const& item) {
  return {item.GetTranslationX(),   item.GetTranslationY(),   item.GetTranslationZ(),
          item.GetRotationX(),      item.GetRotationY(),      item.GetRotationZ(),
          item.GetRotationPivotX(), item.GetRotationPivotY(), item.GetRotationPivotZ(),
          item.GetScaleX(),         item.GetScaleY(),         item.GetScaleZ()};
}

}  // namespace

void NSceneGraphItemNode::CopyTo(NSceneGraphItemNode& target) const {
  auto const held = core::reference_countable::Hold(target);
  // The caches go with the values: listeners of the target may edit either item meanwhile.
  auto referrers = m_block->referrers;
  TransformValues const values = GetTransformValues(*this);
  bool const isTransformDirty = m_block->isTransformDirty;
  Matrix const transform = m_block->transform;
  bool const isBoxDirty = m_block->isBoxDirty;
  VX_Math::Box3 const box = m_block->box;
  CopyNodeTo(target);
  Block& to = *target.m_block;
  to.isTransformDirty = isTransformDirty || GetTransformValues(target) != values;
  to.transform = transform;
  to.isBoxDirty = isBoxDirty;
  to.box = box;
  if (&target != this) to.referrers.swap(referrers);
  NoteCleaning();
  NChildIndex::OnChange(target);
}

unsigned int GetChildIndex(NSceneGraphItemNode& parent, NSceneGraphItemNode& child) {
  unsigned int index = 0;
  for (auto const& entry : parent.GetChildren()) {
    if (entry.get() == &child) return index;
    ++index;
  }
  return static_cast<unsigned int>(-1);
}

void SetTransform(NSceneGraphItemNode& item, Matrix const& matrix) {
  auto const held = core::reference_countable::Hold(item);
  VX_Math::TransformInfo info;
  VX_Math::GetTransformInfo_Degree(matrix, info);
  item.SetTranslationX(info.translation.x);
  item.SetTranslationY(info.translation.y);
  item.SetTranslationZ(info.translation.z);
  item.SetRotationX(info.rotation.x);
  item.SetRotationY(info.rotation.y);
  item.SetRotationZ(info.rotation.z);
  item.SetScaleX(info.scale.x);
  item.SetScaleY(info.scale.y);
  item.SetScaleZ(info.scale.z);
}

Matrix CalcTransformMatrix(Vec3 const& scale, Vec3 const& pivot, Vec3 const& rotation,
                           Vec3 const& translation) {
  Matrix result;
  Matrix step;
  result.SetScale(scale);
  step.SetTranslate(-pivot);
  result *= step;
  result *= Matrix(VX_Math::CreateQuaternion(rotation, false));
  step.SetTranslate(pivot + translation);
  result *= step;
  return result;
}

NSceneGraphGroupNode::NSceneGraphGroupNode(
    core::node::NNodeID const& id, core::domain::NDomainBase* domain,
    events::attribute_change::NMultiplexer const* multiplexer)
    : NSceneGraphItemNode(id, domain, multiplexer,
                          core::string_table::GetString(core::string_table::DATA_GROUP)) {}

NSceneGraphGroupNode::~NSceneGraphGroupNode() = default;

void NSceneGraphGroupNode::CopyTo(NSceneGraphGroupNode& target) const {
  NSceneGraphItemNode::CopyTo(target);
}

wchar_t const* NSceneGraphGroupNode::GetSceneGraphItemTypeImpl() const { return SGIT_GROUP; }

}  // namespace corvanta::data::domain::scenegraph::item
