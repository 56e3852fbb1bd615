#include "app/play/NTimeLinePlayer.h"

#include <utility>

#include "corvanta/core/text/convert.h"

namespace corvanta::app {

using core::text::ToNarrow;
using data::domain::animation::NAnimationNode;

NTimeLinePlayer::NTimeLinePlayer(NAnimationNode& animation, bool isReverse, bool repeats,
                                 std::shared_ptr<importer::NDeformer> deformer)
    : m_animation(&animation),
      m_timeline(
          new data::timeline::NTimeLine(core::node::NNodeReference<NAnimationNode>(animation))),
      m_deformer(std::move(deformer)) {
  m_timeline->SetIsReverseFlag(isReverse);
  m_timeline->SetRepeatsFlag(repeats);
  for (auto const& [context, curve] : animation.GetAnimations()) {
    auto const host = context.target ? context.target->GetTarget() : nullptr;
    auto const* const attribute = host ? host->QueryAttribute(context.attributeName) : nullptr;
    if (attribute == nullptr) continue;
    auto const* const node = dynamic_cast<core::node::NNode const*>(host.get());
    m_channels.push_back(
        {node != nullptr ? ToNarrow(node->GetName()) : "", ToNarrow(context.attributeName)});
    m_hosts.push_back(host);
    m_attributes.push_back(attribute);
  }
}

std::vector<double> NTimeLinePlayer::Sample() const {
  std::vector<double> values;
  values.reserve(m_attributes.size());
  for (auto const* const attribute : m_attributes)
    values.push_back(attribute->GetValue().GetDouble());
  return values;
}

std::string NTimeLinePlayer::GetTitle() const { return ToNarrow(m_animation->GetName()); }

double NTimeLinePlayer::GetLength() const {
  return static_cast<double>(m_animation->GetEndFrame() - m_animation->GetStartFrame()) /
         m_animation->GetFps();
}

double NTimeLinePlayer::GetMoment() const {
  return m_timeline->GetCurrentFrame() / m_animation->GetFps();
}

void NTimeLinePlayer::Begin() {
  m_timeline->SetCurrentFrame(static_cast<double>(
      m_timeline->IsReverse() ? m_animation->GetEndFrame() : m_animation->GetStartFrame()));
  if (m_deformer) m_deformer->Update();
}

void NTimeLinePlayer::Advance(double seconds) {
  double const start = static_cast<double>(m_animation->GetStartFrame());
  double const end = static_cast<double>(m_animation->GetEndFrame());
  double const frame = m_timeline->GetCurrentFrame();
  bool const isReverse = m_timeline->IsReverse();
  if (IsReached(seconds * m_animation->GetFps(), isReverse ? frame - start : end - frame)) {
    m_timeline->SetCurrentFrame(m_timeline->Repeats() == isReverse ? end : start);
  } else {
    Update(*m_timeline, seconds);
  }
  if (m_deformer) m_deformer->Update();
}

}  // namespace corvanta::app
