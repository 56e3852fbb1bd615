#include "corvanta/data/domain/scenegraph/NSceneGraphWalkError.h"

#include "corvanta/data/error_code/error_code.h"

namespace corvanta::data::domain::scenegraph {

NSceneGraphWalkError::~NSceneGraphWalkError() = default;

char const* NSceneGraphWalkError::what() const noexcept {
  return m_reason == kTooManyVisits
             ? "Scene Graph Walk Error: more visits than the budget of a walk allows"
             : "Scene Graph Walk Error: references are nested deeper than the stack carries";
}

wchar_t const* NSceneGraphWalkError::GetErrorCodeImpl() const {
  return error_code::NE_SCENE_GRAPH_WALK;
}

}  // namespace corvanta::data::domain::scenegraph
