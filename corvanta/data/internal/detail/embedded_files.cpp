#include "corvanta/data/internal/detail/embedded_files.h"

#include "corvanta/platform/temporary.h"

namespace corvanta::data::internal::detail {

core::uri::NPath WriteResourceFile(std::wstring const& name, void const* bytes,
                                   std::size_t length) {
  return platform::WriteTemporaryFile(name, bytes, length);
}

}  // namespace corvanta::data::internal::detail
