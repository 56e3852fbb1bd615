#include "corvanta/data/operators/animation/NKeyFrameAnimation.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <utility>
#include <vector>

#include "corvanta/data/error_code/error_code.h"
#include "corvanta/data/operators/animation/NInterpolator.h"
#include "corvanta/data/operators/animation/NInterpolatorError.h"
#include "corvanta/data/operators/animation/NKeyFrameAnimationError.h"
#include "corvanta/data/operators/animation/detail/NTimeIndex.h"

namespace corvanta::data::operators::animation {

struct NKeyFrameAnimation::Block {
  void Leave(double time) noexcept;

  std::map<unsigned int, NKeyData> keys;
  std::map<double, unsigned int> times;  // how many keys stand at each
  unsigned int lastHandle = INVALID_KEY_HANDLE;
};

/// Takes a key away from `time`.
void NKeyFrameAnimation::Block::Leave(double time) noexcept {
  auto const found = times.find(time);
  if (--found->second == 0) times.erase(found);
}

NKeyFrameAnimation::NKeyFrameAnimation() : m_block(new Block) {}

NKeyFrameAnimation::~NKeyFrameAnimation() = default;

unsigned int NKeyFrameAnimation::AddKey(NKeyData const& data) {
  Block& block = *m_block;
  if (std::isnan(data.time) || block.times.count(data.time) != 0) return INVALID_KEY_HANDLE;
  auto const key = block.keys.emplace_hint(block.keys.end(), block.lastHandle + 1, data);
  try {
    block.times.emplace(data.time, 1);
  } catch (...) {
    block.keys.erase(key);
    throw;
  }
  m_isFresh = false;
  return ++block.lastHandle;
}

bool NKeyFrameAnimation::RemoveKey(unsigned int handle) {
  Block& block = *m_block;
  auto const found = block.keys.find(handle);
  if (found == block.keys.end()) return false;
  block.Leave(found->second.time);
  block.keys.erase(found);
  m_isFresh = false;
  return true;
}

bool NKeyFrameAnimation::ModifyKey(unsigned int handle, NKeyData const& data) {
  Block& block = *m_block;
  auto const found = block.keys.find(handle);
  if (found == block.keys.end() || std::isnan(data.time)) return false;
  NKeyData& key = found->second;
  if (data.time != key.time) {
    ++block.times[data.time];
    block.Leave(key.time);
  }
  key = data;
  m_isFresh = false;
  return true;
}

void NKeyFrameAnimation::UpdateSpans() const {
  auto const& keys = m_block->keys;
  if (keys.empty()) {
    static char text[] = "NKeyFrameAnimation::CalculateValue";
    throw static_cast<char*>(text);
  }
  if (m_block->times.size() != keys.size()) throw NInterpolatorError();
  std::vector<std::pair<double, double>> sorted;
  sorted.reserve(keys.size());
  for (auto const& [handle, key] : keys) sorted.emplace_back(key.time, key.value);
  std::sort(sorted.begin(), sorted.end(),
            [](auto const& a, auto const& b) { return a.first < b.first; });
  std::vector<double> freshTimes;
  std::vector<double> freshValues;
  freshTimes.reserve(sorted.size());
  freshValues.reserve(sorted.size());
  for (auto const& [time, value] : sorted) {
    freshTimes.push_back(time);
    freshValues.push_back(value);
  }
  m_index = detail::NTimeIndex(std::move(freshTimes));
  m_values = std::move(freshValues);
  m_isFresh = true;
}

/// The same value as from the spans, where there is no memory for them.
double NKeyFrameAnimation::SearchValue(double time) const {
  NKeyData const* left = nullptr;
  NKeyData const* right = nullptr;
  for (auto const& [handle, key] : m_block->keys) {
    if (key.time < time) {
      if (left == nullptr || left->time < key.time) left = &key;
    } else if (right == nullptr || key.time < right->time) {
      right = &key;
    }
  }
  if (left == nullptr) return right->value;
  if (right == nullptr) return left->value;
  double const l = left->time;
  double const r = right->time;
  return ((r - time) * left->value + (time - l) * right->value) / (r - l);
}

double NKeyFrameAnimation::CalculateValue(double time) const {
  if (!m_isFresh) {
    try {
      UpdateSpans();
    } catch (std::bad_alloc const&) {
      return SearchValue(time);
    }
  }
  std::vector<double> const& times = m_index.GetTimes();
  std::size_t const right = m_index.LowerBound(time);
  if (right == 0) return m_values.front();
  if (right == times.size()) return m_values.back();
  double const l = times[right - 1];
  double const r = times[right];
  return ((r - time) * m_values[right - 1] + (time - l) * m_values[right]) / (r - l);
}

std::map<unsigned int, NKeyData> const& NKeyFrameAnimation::GetKeyData() const noexcept {
  return m_block->keys;
}

NInterpolator::NInterpolator(double left, double right) : m_left(left), m_right(right) {
  if (left == right) throw NInterpolatorError();
}

NInterpolator::~NInterpolator() = default;

NInterpolatorError::~NInterpolatorError() = default;

wchar_t const* NInterpolatorError::GetErrorCodeImpl() const { return error_code::NE_INTERPOLATOR; }

NKeyFrameAnimationError::~NKeyFrameAnimationError() = default;

wchar_t const* NKeyFrameAnimationError::GetErrorCodeImpl() const {
  return error_code::NE_KEY_FRAME_ANIMATION;
}

}  // namespace corvanta::data::operators::animation
