#pragma once

#include "corvanta/core/error/NException.h"

namespace corvanta::core::error {

/// A file can't be opened or read. Code "File Error".
class CORVANTA_API NFileError : public NException {
 public:
  ~NFileError() override;

 private:
  wchar_t const* GetErrorCodeImpl() const override;
};

}  // namespace corvanta::core::error
