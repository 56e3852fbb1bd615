#include "app/import/NEffort.h"

#include <string>

#include "app/import/NImportError.h"

namespace corvanta::app {

void NEffort::Refuse(std::size_t most, char const* what) {
  throw NImportError("its cameras and animations take more than " + std::to_string(most) + ' ' +
                     what);
}

}  // namespace corvanta::app
