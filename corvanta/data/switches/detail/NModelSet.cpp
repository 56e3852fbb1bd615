#include "corvanta/data/switches/detail/NModelSet.h"

namespace corvanta::data::switches::detail {

NModelSet::NModelSet() = default;
NModelSet::NModelSet(NModelSet const& other) = default;
NModelSet::~NModelSet() = default;

}  // namespace corvanta::data::switches::detail
