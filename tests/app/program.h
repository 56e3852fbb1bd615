#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/types.h>

#include <functional>
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

/// Starts the program in the folder of `files`, and waits for one that was started there.
pid_t StartProgram(support::TemporaryFiles const& files, std::vector<std::string> arguments);
/// Waits until `isThere`, and fails if the program ends before.
void AwaitFromProgram(pid_t program, std::function<bool()> const& isThere);
Result WaitForProgram(support::TemporaryFiles const& files, pid_t program);
/// Does both.
Result RunProgram(support::TemporaryFiles const& files, std::vector<std::string> arguments);

/// Runs the program in a folder of its own.
class ProgramTest : public testing::Test {
 protected:
  /// The arguments are what stands between blanks.
  Result Run(std::string const& line) const;
  /// The same, and it has to end well.
  Result RunWell(std::string const& line) const;
  nlohmann::json RunJson(std::string const& line) const { return RunWell(line + " --json").Json(); }
  std::string Read(std::string const& name) const { return support::ReadBytes(m_files.At(name)); }

  /// The files that are there, without what Run writes itself.
  std::vector<std::string> GetNames() const;

  struct Refusal {
    std::string arguments;
    std::string reason, subject = "options";
    int status = 2;
  };
  /// Each ends with one line on stderr and nothing on stdout.
  void ExpectRefused(std::string const& command, std::vector<Refusal> const& rows) const;
  void ExpectOptionsRefused(std::string const& command,
                            std::initializer_list<char const*> const& rows) const {
    for (char const* const row : rows) ExpectRefused(command, {{row, ""}});
  }

  support::TemporaryFiles const m_files;
};

/// How often `part` stands in `text`.
std::size_t Count(std::string const& text, std::string const& part);

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
/// Adds an animation to such a file. Values stand one behind the other: three or, for "rotation",
/// four (x, y, z, w) a time.
struct Channel {
  int node;
  std::string path;
  std::vector<float> times;
  std::vector<float> values;
  std::string interpolation = "LINEAR";
};
std::string AddAnimation(std::string const& gltf, std::string const& name,
                         std::vector<Channel> const& channels);
std::string ToBase64(std::string const& bytes);
/// Numbers as they are in memory.
template <class Number>
std::string ToBytes(std::vector<Number> const& numbers) {
  return {reinterpret_cast<char const*>(numbers.data()), numbers.size() * sizeof(Number)};
}
/// The nodes of a file with one mesh.
inline nlohmann::json const kOneNode = nlohmann::json::array({{{"name", "only"}, {"mesh", 0}}});

/// A PNG file of one pixel.
std::string MakePng();

/// The element of a JSON list whose "name" is `name`; null if there is none.
nlohmann::json Named(nlohmann::json const& list, std::string const& name);

}  // namespace corvanta::app_tests
