#include "corvanta/importer/animation/NEffort.h"

#include <string>

#include "corvanta/importer/NImportError.h"

namespace corvanta::importer {

void NEffort::Refuse(std::size_t most, char const* what) {
  throw NImportError("its cameras and animations take more than " + std::to_string(most) + ' ' +
                     what);
}

}  // namespace corvanta::importer
