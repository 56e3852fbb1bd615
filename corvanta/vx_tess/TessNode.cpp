#include "corvanta/vx_tess/TessNode.h"

namespace VX_Tess {

TessNode::~TessNode() = default;

}  // namespace VX_Tess
