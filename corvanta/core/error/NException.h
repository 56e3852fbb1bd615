#pragma once

#include <exception>

#include "corvanta/export.h"

namespace corvanta::core::error {

/// What every exception of the library derives from. Each class has one code: the text that names
/// it.
class CORVANTA_API NException : public std::exception {
 public:
  NException() noexcept;
  NException(NException const&) noexcept;
  NException& operator=(NException const&) noexcept;
  ~NException() override;

  /// The code of the exception's class. It lives as long as the program.
  wchar_t const* GetErrorCode() const { return GetErrorCodeImpl(); }

  /// The code in UTF-8. It lives as long as the program.
  char const* what() const noexcept override;

 private:
  virtual wchar_t const* GetErrorCodeImpl() const = 0;
};

}  // namespace corvanta::core::error
