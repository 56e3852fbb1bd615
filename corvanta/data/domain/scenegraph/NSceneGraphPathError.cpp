#include "corvanta/data/domain/scenegraph/NSceneGraphPathError.h"

#include "corvanta/data/error_code/error_code.h"

namespace corvanta::data::domain::scenegraph {

NSceneGraphPathError::~NSceneGraphPathError() = default;

wchar_t const* NSceneGraphPathError::GetErrorCodeImpl() const {
  return error_code::NE_SCENE_GRAPH_PATH;
}

}  // namespace corvanta::data::domain::scenegraph
