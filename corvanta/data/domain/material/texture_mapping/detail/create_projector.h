#pragma once

#include <memory>
#include <string>

#include "corvanta/data/operators/projector/NProjector.h"

namespace corvanta::data::domain::material::texture_mapping::detail {

/// A projector of the method, one of the PM_ texts.
/// Fails: null for any other text.
std::unique_ptr<data::operators::projector::NProjector> CreateProjector(std::wstring const& method);

}  // namespace corvanta::data::domain::material::texture_mapping::detail
