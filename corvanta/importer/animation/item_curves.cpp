#include "corvanta/importer/animation/item_curves.h"

#include "corvanta/vx_math/Vec3.h"

namespace corvanta::importer {

using data::domain::animation::NAnimationContext;
using data::domain::animation::NAnimationNode;
using data::domain::animation::NNodeAnimationTarget;
using data::operators::animation::NKeyFrameAnimation;
using VX_Math::Vec3;

NItemCurves const* NCurvesByItem::Find(Item const& item) const {
  auto const entry = m_entries.find(&item);
  return entry == m_entries.end() ? nullptr : &entry->second;
}

NItemCurves* NCurvesByItem::Add(Item& item) {
  auto const [entry, isNew] = m_entries.try_emplace(&item);
  if (!isNew) return nullptr;
  entry->second.target =
      new NNodeAnimationTarget(core::node::NNodeReference<data::domain::NNode>(item));
  return &entry->second;
}

std::array<NItemCurves::Curve, 3> AddCurves(
    NAnimationNode& animation, boost::intrusive_ptr<NNodeAnimationTarget> const& target,
    NAttributeNames const& names, NTripleKeys const& keys) {
  std::array<NItemCurves::Curve, 3> curves;
  if (keys.empty()) return curves;
  for (std::size_t axis = 0; axis != 3; ++axis) {
    curves[axis] = new NKeyFrameAnimation;
    for (NKey<3> const& key : keys) curves[axis]->AddKey({key.time, key.values[axis], 0});
    animation.AddAnimation(NAnimationContext(names[axis], target), *curves[axis]);
  }
  return curves;
}

VX_Math::Matrix GetTransform(NCurvesByItem::Item const& item, NItemCurves const* curves,
                             double frame) {
  if (curves == nullptr) return item.GetTransform();
  auto const evaluate = [&](std::size_t kind, double x, double y, double z) {
    auto const& three = curves->curves[kind];
    if (!three[0]) {
      return Vec3(static_cast<float>(x), static_cast<float>(y), static_cast<float>(z));
    }
    return Vec3(static_cast<float>(three[0]->CalculateValue(frame)),
                static_cast<float>(three[1]->CalculateValue(frame)),
                static_cast<float>(three[2]->CalculateValue(frame)));
  };
  return data::domain::scenegraph::item::CalcTransformMatrix(
      evaluate(2, item.GetScaleX(), item.GetScaleY(), item.GetScaleZ()),
      Vec3(static_cast<float>(item.GetRotationPivotX()),
           static_cast<float>(item.GetRotationPivotY()),
           static_cast<float>(item.GetRotationPivotZ())),
      evaluate(1, item.GetRotationX(), item.GetRotationY(), item.GetRotationZ()),
      evaluate(0, item.GetTranslationX(), item.GetTranslationY(), item.GetTranslationZ()));
}

}  // namespace corvanta::importer
