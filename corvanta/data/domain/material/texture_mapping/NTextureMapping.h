#pragma once

#include "corvanta/core/reference_countable/NReferenceCountableWithWeakReference.h"
#include "corvanta/export.h"

namespace corvanta::data::domain::material::texture_mapping {

/// The kind of a mapping.
enum NTextureMappingType : int {
  NTMT_PROJECTION = 0,  // computed from projection nodes: NProjectionMapping
  NTMT_UVW = 1,         // carried by the surface: NUVWMapping
};

/// Says how the coordinates of a texture on a material come about. Shared by the materials that
/// hold it; hold it by `boost::intrusive_ptr`.
class CORVANTA_API NTextureMapping
    : public virtual core::reference_countable::NReferenceCountableWithWeakReference {
 public:
  ~NTextureMapping() override;

  NTextureMappingType GetType() const { return GetTypeImpl(); }

 protected:
  NTextureMapping() noexcept = default;
  NTextureMapping(NTextureMapping const&) noexcept = default;
  NTextureMapping& operator=(NTextureMapping const&) noexcept { return *this; }

 private:
  virtual NTextureMappingType GetTypeImpl() const = 0;
};

}  // namespace corvanta::data::domain::material::texture_mapping
