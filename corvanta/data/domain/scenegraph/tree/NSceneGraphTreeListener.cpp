#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeListener.h"

namespace corvanta::data::domain::scenegraph::tree {

NSceneGraphTreeListener::~NSceneGraphTreeListener() = default;

}  // namespace corvanta::data::domain::scenegraph::tree
