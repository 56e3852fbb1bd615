#include "corvanta/vx_math/MatrixStack.h"

namespace VX_Math {

MatrixStack::MatrixStack() : m_matrices(1) {}

}  // namespace VX_Math
