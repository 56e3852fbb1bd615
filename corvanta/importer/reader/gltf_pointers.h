#pragma once

#include <string>

namespace corvanta::importer::reader {

/// A glTF file with a node that isn't there, -1, for each animation channel that has a pointer in
/// its place: the library that parses them drops channels without a node.
/// Fails: empty where no channel has a pointer.
std::string GetWithPointedNodes(std::string const& bytes);

}  // namespace corvanta::importer::reader
