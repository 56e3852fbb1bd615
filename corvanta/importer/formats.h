#pragma once

#include <string>
#include <vector>

#include "corvanta/export.h"

namespace corvanta::importer {

/// A format of model files that can be read. All texts are in UTF-8.
struct NModelFormat {
  std::string name;
  std::vector<std::string> extensions;  // of its files, in lower case, without a point
  std::string reader;                   // the library that reads it
};

/// The formats of model files that ImportModel reads, as the program that reads them knows them.
/// Fails: throws NImportError where that program can't be started.
CORVANTA_API std::vector<NModelFormat> GetModelFormats();

}  // namespace corvanta::importer
