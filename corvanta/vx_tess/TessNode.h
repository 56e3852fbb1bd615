#pragma once

#include "corvanta/core/reference_countable/NReferenceCountable.h"
#include "corvanta/export.h"
#include "corvanta/vx_tess/fwd.h"

namespace VX_Tess {

/// The counted base of surfaces and curves. Hold them by `boost::intrusive_ptr`.
class CORVANTA_API TessNode : public corvanta::core::reference_countable::NReferenceCountable {
 protected:
  TessNode() noexcept = default;
  TessNode(TessNode const&) noexcept = default;
  TessNode& operator=(TessNode const&) = delete;
  ~TessNode() override;
};

inline void intrusive_ptr_add_ref(TessNode const* node) noexcept { node->AddRef(); }
inline void intrusive_ptr_release(TessNode const* node) noexcept { node->Release(); }

}  // namespace VX_Tess
