#include "corvanta/data/animation/KnotMap.h"

namespace corvanta::data::animation {

KnotMap::KnotMap(std::vector<double> const& times) : m_index(times) {}

}  // namespace corvanta::data::animation
