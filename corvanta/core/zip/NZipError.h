#pragma once

#include "corvanta/core/error/NException.h"

namespace corvanta::core::zip {

/// An entry of an archive can't be unpacked: the archive or the entry is missing, broken or too
/// large. Code "Zip Error".
class CORVANTA_API NZipError : public error::NException {
 public:
  ~NZipError() override;

 private:
  wchar_t const* GetErrorCodeImpl() const override;
};

/// An encrypted entry doesn't open with the pass that was given. Code "Zip Pass Error".
class CORVANTA_API NZipPassError : public NZipError {
 public:
  ~NZipPassError() override;

 private:
  wchar_t const* GetErrorCodeImpl() const override;
};

}  // namespace corvanta::core::zip
