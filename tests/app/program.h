#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/support/temporary_files.h"

namespace corvanta::app_tests {

struct Result {
  int status = -1;  // -1 when a signal ended the program
  std::string out;
  std::string err;

  nlohmann::json Json() const { return nlohmann::json::parse(out); }
  std::vector<std::string> Lines() const;
  /// Whether there is exactly one line on stderr, with both texts in it.
  bool HasOneError(std::string const& subject, std::string const& reason) const;
};

/// Runs the program in a folder of its own and waits for it.
Result RunProgram(support::TemporaryFiles const& files, std::vector<std::string> arguments);

/// A glTF file under construction; what isn't given is left out.
struct Mesh {
  std::vector<float> coords;
  std::vector<unsigned> indices;
  std::vector<float> normals;
  std::vector<std::vector<float>> uvs;  // two floats a vertex
  int material = -1;
};
Mesh Triangle();
/// The nodes stand in the scene as they are; node 0 is the root. `more` is merged in.
std::string MakeGltf(std::vector<Mesh> const& meshes, nlohmann::json const& nodes,
                     nlohmann::json const& more = nlohmann::json::object());
std::string ToBase64(std::string const& bytes);

/// A PNG file of one pixel.
std::string MakePng();

/// The element of a JSON list whose "name" is `name`; null if there is none.
nlohmann::json Named(nlohmann::json const& list, std::string const& name);

}  // namespace corvanta::app_tests
