#pragma once

#include "corvanta/core/reference_countable/NReferenceCountable.h"

namespace corvanta::data::resource::image {

/// What the bytes of an image are.
enum NImageType : int {
  NIT_BITMAP = 0,  ///< a device-independent bitmap: info header, palette, rows from the bottom up
  NIT_RAW = 1,     ///< the content of an image file as it stands
};

/// A picture in memory as a block of bytes. Hold it by `boost::intrusive_ptr`.
class CORVANTA_API NImage : public core::reference_countable::NReferenceCountable {
 public:
  ~NImage() override;

  /// The first byte of the block; null if it is empty.
  void const* GetData() const { return GetDataImpl(); }
  unsigned int GetDataByteLength() const { return GetDataByteLengthImpl(); }
  NImageType GetType() const { return GetTypeImpl(); }

 private:
  virtual void const* GetDataImpl() const = 0;
  virtual unsigned int GetDataByteLengthImpl() const = 0;
  virtual NImageType GetTypeImpl() const = 0;
};

}  // namespace corvanta::data::resource::image
