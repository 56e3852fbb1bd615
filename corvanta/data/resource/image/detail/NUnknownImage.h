#pragma once

#include <vector>

#include "corvanta/core/uri/NPath.h"
#include "corvanta/data/resource/image/NImage.h"
#include "corvanta/export.h"

namespace corvanta::data::resource::image::detail {

/// The bytes of an image file as they are.
class CORVANTA_API NUnknownImage : public NImage {
 public:
  /// Fails: throws core::error::NFileError, also for a file of more bytes than an unsigned int
  /// counts.
  explicit NUnknownImage(core::uri::NPath const& path);
  ~NUnknownImage() override;

 private:
  void const* GetDataImpl() const override { return m_bytes.empty() ? nullptr : m_bytes.data(); }
  unsigned int GetDataByteLengthImpl() const override {
    return static_cast<unsigned int>(m_bytes.size());
  }
  NImageType GetTypeImpl() const override { return NIT_RAW; }

  std::vector<unsigned char> m_bytes;
};

}  // namespace corvanta::data::resource::image::detail
