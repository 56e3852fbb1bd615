#include "tests/app/program.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <iterator>
#include <set>
#include <sstream>
#include <thread>

namespace corvanta::app_tests {

namespace {

void Redirect(std::filesystem::path const& path, int descriptor) {
  int const file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  dup2(file, descriptor);
  close(file);
}

template <class T>
std::string Bytes(std::vector<T> const& values) {
  return {reinterpret_cast<char const*>(values.data()), values.size() * sizeof(T)};
}

// The buffer of a glTF file and what describes its parts.
struct Buffer {
  std::size_t number = 0;
  std::string bytes;
  nlohmann::json views = nlohmann::json::array();
  nlohmann::json accessors = nlohmann::json::array();

  template <class T>
  std::size_t Add(std::vector<T> const& values, std::size_t perElement, char const* type) {
    bool const isFloat = std::is_same_v<T, float>;
    views.push_back({{"buffer", number},
                     {"byteOffset", bytes.size()},
                     {"byteLength", values.size() * sizeof(T)}});
    accessors.push_back({{"bufferView", views.size() - 1},
                         {"componentType", isFloat ? 5126 : 5125},
                         {"count", values.size() / perElement},
                         {"type", type}});
    bytes += Bytes(values);
    return accessors.size() - 1;
  }
  nlohmann::json Describe() const {
    return {{"byteLength", bytes.size()},
            {"uri", "data:application/octet-stream;base64," + ToBase64(bytes)}};
  }
};

}  // namespace

std::vector<std::string> Result::Lines() const {
  std::vector<std::string> lines;
  std::istringstream stream(out);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

bool Result::HasOneError(std::string const& subject, std::string const& reason) const {
  return err.find('\n') == err.size() - 1 && !err.empty() &&
         err.find(subject) != std::string::npos && err.find(reason) != std::string::npos;
}

pid_t StartProgram(support::TemporaryFiles const& files, std::vector<std::string> arguments) {
  auto const out = files.GetFolder() / "stdout";
  auto const err = files.GetFolder() / "stderr";
  arguments.insert(arguments.begin(), CORVANTA_PROGRAM);
  std::vector<char*> argv;
  for (std::string& argument : arguments) argv.push_back(argument.data());
  argv.push_back(nullptr);

  pid_t const child = fork();
  if (child == 0) {
    Redirect(out, STDOUT_FILENO);
    Redirect(err, STDERR_FILENO);
    if (chdir(files.GetFolder().c_str()) == 0) execv(argv[0], argv.data());
    _exit(127);
  }
  return child;
}

void AwaitFromProgram(pid_t program, std::function<bool()> const& isThere) {
  while (!isThere()) {
    siginfo_t ended = {};
    waitid(P_PID, static_cast<id_t>(program), &ended, WEXITED | WNOHANG | WNOWAIT);
    ASSERT_EQ(ended.si_pid, 0) << "it has ended";
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
}

Result WaitForProgram(support::TemporaryFiles const& files, pid_t program) {
  int status = 0;
  waitpid(program, &status, 0);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, support::ReadBytes(files.At("stdout")),
          support::ReadBytes(files.At("stderr"))};
}

Result RunProgram(support::TemporaryFiles const& files, std::vector<std::string> arguments) {
  return WaitForProgram(files, StartProgram(files, std::move(arguments)));
}

Result ProgramTest::Run(std::string const& line) const {
  std::istringstream words(line);
  return RunProgram(m_files, {std::istream_iterator<std::string>(words), {}});
}

Result ProgramTest::RunWell(std::string const& line) const {
  Result result = Run(line);
  EXPECT_EQ(result.status, 0) << line << '\n' << result.err;
  return result;
}

void ProgramTest::ExpectRefused(std::string const& command,
                                std::vector<Refusal> const& rows) const {
  for (Refusal const& row : rows) {
    Result const result = Run(command + ' ' + row.arguments);
    EXPECT_EQ(result.status, row.status) << row.arguments;
    EXPECT_EQ(result.out, "") << row.arguments;
    EXPECT_TRUE(result.HasOneError(row.subject, row.reason)) << row.arguments << '\n' << result.err;
  }
}

std::vector<std::string> ProgramTest::GetNames() const {
  std::set<std::string> names;
  for (auto const& entry : std::filesystem::directory_iterator(m_files.GetFolder())) {
    if (!entry.is_directory()) names.insert(entry.path().filename());
  }
  for (char const* const own : {"stdout", "stderr"}) names.erase(own);
  return {names.begin(), names.end()};
}

std::size_t Count(std::string const& text, std::string const& part) {
  std::size_t count = 0;
  for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

Mesh Triangle() { return {{0, 0, 0, 1, 0, 0, 0, 1, 0}, {0, 1, 2}, {}, {}, -1}; }

std::string MakeGltf(std::vector<Mesh> const& meshes, nlohmann::json const& nodes,
                     nlohmann::json const& more) {
  Buffer buffer;
  nlohmann::json list = nlohmann::json::array();
  for (Mesh const& mesh : meshes) {
    nlohmann::json attributes = {{"POSITION", buffer.Add(mesh.coords, 3, "VEC3")}};
    if (!mesh.normals.empty()) attributes["NORMAL"] = buffer.Add(mesh.normals, 3, "VEC3");
    for (std::size_t set = 0; set != mesh.uvs.size(); ++set) {
      attributes["TEXCOORD_" + std::to_string(set)] = buffer.Add(mesh.uvs[set], 2, "VEC2");
    }
    nlohmann::json primitive = {{"attributes", attributes},
                                {"indices", buffer.Add(mesh.indices, 1, "SCALAR")}};
    if (mesh.material >= 0) primitive["material"] = mesh.material;
    list.push_back({{"name", "mesh" + std::to_string(list.size())},
                    {"primitives", nlohmann::json::array({primitive})}});
  }
  nlohmann::json file = {{"asset", {{"version", "2.0"}}},
                         {"scene", 0},
                         {"scenes", nlohmann::json::array({{{"nodes", {0}}}})},
                         {"nodes", nodes}};
  if (!meshes.empty()) {
    file["meshes"] = list;
    file["accessors"] = buffer.accessors;
    file["bufferViews"] = buffer.views;
    file["buffers"] = nlohmann::json::array({buffer.Describe()});
  }
  file.update(more);
  return file.dump();
}

std::string AddAnimation(std::string const& gltf, std::string const& name,
                         std::vector<Channel> const& channels) {
  nlohmann::json file = nlohmann::json::parse(gltf);
  Buffer buffer{file["buffers"].size(), "", file["bufferViews"], file["accessors"]};
  nlohmann::json animation = {{"name", name}};
  for (Channel const& channel : channels) {
    bool const isTurn = channel.path == "rotation";
    auto const times = buffer.Add(channel.times, 1, "SCALAR");
    auto const values = buffer.Add(channel.values, isTurn ? 4 : 3, isTurn ? "VEC4" : "VEC3");
    animation["channels"].push_back({{"sampler", animation["samplers"].size()},
                                     {"target", {{"node", channel.node}, {"path", channel.path}}}});
    animation["samplers"].push_back(
        {{"input", times}, {"output", values}, {"interpolation", channel.interpolation}});
  }
  file["animations"].push_back(animation);
  file["buffers"].push_back(buffer.Describe());
  file["bufferViews"] = buffer.views;
  file["accessors"] = buffer.accessors;
  return file.dump();
}

std::string ToBase64(std::string const& bytes) {
  constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    std::uint32_t group = 0;
    for (std::size_t k = i; k != i + 3; ++k) {
      group = group << 8 | (k < bytes.size() ? static_cast<unsigned char>(bytes[k]) : 0u);
    }
    for (int shift = 18; shift >= 0; shift -= 6) text += kDigits[group >> shift & 63u];
  }
  std::size_t const excess = (3 - bytes.size() % 3) % 3;
  return text.replace(text.size() - excess, excess, excess, '=');
}

std::string MakePng() {
  constexpr unsigned char kBytes[] = {
      0x89, 'P',  'N',  'G',  0x0D, 0x0A, 0x1A, 0x0A, 0,    0,    0,    0x0D, 'I',  'H',
      'D',  'R',  0,    0,    0,    1,    0,    0,    0,    1,    8,    2,    0,    0,
      0,    0x90, 0x77, 0x53, 0xDE, 0,    0,    0,    0x0C, 'I',  'D',  'A',  'T',  0x78,
      0x9C, 0x63, 0xF8, 0xCF, 0xC0, 0,    0,    3,    1,    1,    0,    0xC9, 0xFE, 0x92,
      0xEF, 0,    0,    0,    0,    'I',  'E',  'N',  'D',  0xAE, 0x42, 0x60, 0x82};
  return {reinterpret_cast<char const*>(kBytes), sizeof kBytes};
}

nlohmann::json Named(nlohmann::json const& list, std::string const& name) {
  for (auto const& element : list) {
    if (element["name"] == name) return element;
  }
  return nullptr;
}

}  // namespace corvanta::app_tests
