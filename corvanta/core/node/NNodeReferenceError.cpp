#include "corvanta/core/node/NNodeReferenceError.h"

namespace corvanta::core::node {

NNodeReferenceError::~NNodeReferenceError() = default;

wchar_t const* NNodeReferenceError::GetErrorCodeImpl() const { return L"Node Reference Error"; }

}  // namespace corvanta::core::node
