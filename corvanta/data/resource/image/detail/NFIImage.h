#pragma once

#include <memory>

#include "corvanta/core/uri/NPath.h"
#include "corvanta/data/resource/image/NImage.h"
#include "corvanta/export.h"

namespace corvanta::platform {
class NPicture;
}

namespace corvanta::data::resource::image::detail {

/// A decoded image.
class CORVANTA_API NFIImage : public NImage {
 public:
  /// Fails: throws NFIImageError.
  explicit NFIImage(core::uri::NPath const& path);
  ~NFIImage() override;

 private:
  void const* GetDataImpl() const override;
  unsigned int GetDataByteLengthImpl() const override;
  NImageType GetTypeImpl() const override { return NIT_BITMAP; }

  std::unique_ptr<platform::NPicture const> const m_picture;
};

}  // namespace corvanta::data::resource::image::detail
