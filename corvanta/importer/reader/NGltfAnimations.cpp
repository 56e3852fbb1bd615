#include "corvanta/importer/reader/NGltfAnimations.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <iterator>
#include <string_view>
#include <system_error>
#include <tuple>
#include <utility>

#include "corvanta/importer/NImportError.h"

namespace corvanta::importer::reader {

namespace {

constexpr char kPointer[] = "KHR_animation_pointer";
constexpr double kMilliseconds = 1000.0;
constexpr double kTolerance = 1e-4;   // of what a spline spans
constexpr double kMostParts = 256.0;  // between two keys

// A sampler of `N` numbers a key that is made linear.
template <std::size_t N>
class Sampler {
 public:
  using Values = std::array<double, N>;
  using Keys = std::vector<std::pair<double, Values>>;  // seconds

  Sampler(std::vector<float> const& times, std::vector<float> const& values, bool isCubic)
      : m_times(times), m_values(values), m_isCubic(isCubic) {
    if (times.empty() || values.size() != times.size() * N * (isCubic ? 3 : 1)) {
      throw NImportError("a sampler whose times and values don't match");
    }
  }

  Keys GetKeys(bool isStep) const {
    Keys keys;
    double const size = m_isCubic ? GetSize() : 0.0;
    for (std::size_t i = 0; i != m_times.size(); ++i) {
      if (i != 0 && isStep) keys.push_back({m_times[i], keys.back().second});
      if (i != 0 && m_isCubic) AddParts(Span(*this, i), size, keys);
      keys.push_back({m_times[i], Get(i)});
    }
    return keys;
  }

 private:
  // The cubic between two keys, by Hermite's basis.
  struct Span {
    Span(Sampler const& sampler, std::size_t end)
        : from(sampler.m_times[end - 1]),
          length(sampler.m_times[end] - from),
          a(sampler.Get(end - 1)),
          b(sampler.Get(end)),
          leaving(sampler.Get(end - 1, 1)),
          arriving(sampler.Get(end, -1)) {
      for (std::size_t k = 0; k != N; ++k) {
        leaving[k] *= length;
        arriving[k] *= length;
      }
    }

    Values At(double u) const {
      double const toB = u * u * (3.0 - 2.0 * u);
      Values values;
      for (std::size_t k = 0; k != N; ++k) {
        values[k] = a[k] + toB * (b[k] - a[k]) + u * (1.0 - u) * (1.0 - u) * leaving[k] -
                    u * u * (1.0 - u) * arriving[k];
      }
      return values;
    }
    // The largest second derivative; it is linear in u.
    double GetBend() const {
      Values atA, atB;
      for (std::size_t k = 0; k != N; ++k) {
        double const way = 6.0 * (b[k] - a[k]);
        atA[k] = way - 4.0 * leaving[k] - 2.0 * arriving[k];
        atB[k] = -way + 2.0 * leaving[k] + 4.0 * arriving[k];
      }
      return std::max(Length(atA), Length(atB));
    }

    double from, length;
    Values a, b, leaving, arriving;  // these two by the length of the span
  };

  static double Length(Values const& values) {
    double sum = 0.0;
    for (double const value : values) sum += value * value;
    return std::sqrt(sum);
  }

  // `part`: -1 for the tangent before the key, 1 for that behind it.
  Values Get(std::size_t key, int part = 0) const {
    std::size_t const at = m_isCubic ? 3 * key + static_cast<std::size_t>(1 + part) : key;
    Values values;
    std::copy_n(m_values.begin() + static_cast<std::ptrdiff_t>(at * N), N, values.begin());
    return values;
  }

  // What is spanned between two keys at most.
  double GetSize() const {
    if (N == 4) return 1.0;
    double size = 0.0;
    for (std::size_t i = 1; i != m_times.size(); ++i) {
      Span const span(*this, i);
      Values way;
      for (std::size_t k = 0; k != N; ++k) way[k] = span.b[k] - span.a[k];
      size = std::max(size, Length(way) + Length(span.leaving) + Length(span.arriving));
    }
    return size;
  }

  static void AddParts(Span const& span, double size, Keys& keys) {
    double least = size;
    // Only the direction of a quaternion counts: one that is shorter turns faster.
    if (N == 4) least = std::min({Length(span.a), Length(span.b), Length(span.At(0.5))});
    // A chord strays by an eighth of the second derivative.
    double const parts = std::ceil(std::sqrt(span.GetBend() / (8.0 * kTolerance * least)));
    if (!(parts > 1.0)) return;
    int const count = static_cast<int>(std::min(parts, kMostParts));
    for (int i = 1; i != count; ++i) {
      double const u = static_cast<double>(i) / count;
      keys.push_back({span.from + u * span.length, span.At(u)});
    }
  }

  std::vector<float> const& m_times;
  std::vector<float> const& m_values;
  bool const m_isCubic;
};

// Puts keys in the place of those that a channel has.
template <std::size_t N, class Key>
void SetKeys(std::vector<std::pair<double, std::array<double, N>>> const& from,
             std::vector<Key>& keys) {
  keys.clear();
  for (auto const& [seconds, values] : from) {
    Key& key = keys.emplace_back();
    key.time = seconds * kMilliseconds;
    for (std::size_t i = 0; i != N; ++i) key.value[i] = static_cast<float>(values[i]);
  }
}

template <std::size_t N>
std::array<double, N> Rest(std::vector<double> const& values, std::array<double, N> rest) {
  if (values.size() == N) std::copy(values.begin(), values.end(), rest.begin());
  return rest;
}

// The node and the path of "/nodes/3/rotation". Fails: -1.
std::pair<int, std::string> ParsePointer(std::string const& text) {
  constexpr std::string_view kNodes = "/nodes/";
  if (text.compare(0, kNodes.size(), kNodes) != 0) return {-1, ""};
  char const* const begin = text.data() + kNodes.size();
  char const* const end = text.data() + text.size();
  int node = -1;
  auto const [rest, fault] = std::from_chars(begin, end, node);
  if (fault != std::errc() || rest == end || *rest != '/') return {-1, ""};
  std::string const path(rest + 1, end);
  for (char const* const known : {"translation", "rotation", "scale", "weights"}) {
    if (path == known) return {node, path};
  }
  return {-1, ""};
}

}  // namespace

NGltfAnimations::NGltfAnimations(tinygltf::Model const& model, NGltfAccessors const& accessors)
    : m_model(model), m_accessors(accessors) {
  for (std::size_t i = 0; i != model.animations.size(); ++i) {
    auto const& animation = model.animations[i];
    m_animations.push_back(ReadAnimation(animation, GetName(animation.name, "animations", i)));
  }
}

NGltfAnimations::Animation NGltfAnimations::ReadAnimation(tinygltf::Animation const& animation,
                                                          std::string const& name) const {
  Animation result;
  std::map<int, Channel> channels;
  WeightsByNode weights;
  for (std::size_t i = 0; i != animation.channels.size(); ++i) {
    try {
      ReadChannel(animation, animation.channels[i], channels, weights);
    } catch (NImportError const& error) {
      if (result.faultCount++ != 0) continue;
      result.firstFault = '"' + name + "\", channel " + std::to_string(i) + ": " + error.what();
    }
  }
  for (auto& [node, channel] : channels) result.channels.push_back(std::move(channel));
  for (auto& [node, list] : weights) {
    std::move(list.begin(), list.end(), std::back_inserter(result.weights));
  }
  return result;
}

void NGltfAnimations::ReadChannel(tinygltf::Animation const& animation,
                                  tinygltf::AnimationChannel const& source,
                                  std::map<int, Channel>& channels, WeightsByNode& weights) const {
  int node = source.target_node;
  std::string path = source.target_path;
  if (auto const* const pointer = FindExtension(source.target_extensions, kPointer)) {
    auto const& place = pointer->Get("pointer");
    std::string const text = place.IsString() ? place.Get<std::string>() : "";
    std::tie(node, path) = ParsePointer(text);
    if (node < 0) throw NImportError("a pointer to \"" + text + '"');
  }
  if (node < 0) return;  // means nothing
  if (!IsIn(m_model.nodes, node) || !IsIn(animation.samplers, source.sampler)) {
    throw NImportError("it is of what isn't there");
  }
  auto const& sampler = animation.samplers[static_cast<std::size_t>(source.sampler)];
  if (path == "weights") {
    weights.insert_or_assign(node, ReadWeights(sampler, node));
    return;
  }
  auto const known = channels.find(node);
  Channel channel = known == channels.end() ? CreateChannel(node) : known->second;
  ReadSampler(sampler, path, channel);
  channels.insert_or_assign(node, std::move(channel));
}

std::vector<NGltfAnimations::Weights> NGltfAnimations::ReadWeights(
    tinygltf::AnimationSampler const& sampler, int node) const {
  int const mesh = m_model.nodes[static_cast<std::size_t>(node)].mesh;
  std::size_t count = 0;
  if (IsIn(m_model.meshes, mesh)) {
    for (auto const& primitive : m_model.meshes[static_cast<std::size_t>(mesh)].primitives) {
      count = std::max(count, primitive.targets.size());
    }
  }
  if (count == 0) throw NImportError("weights of a node without morph targets");
  bool const isCubic = sampler.interpolation == "CUBICSPLINE";
  auto const times = ReadNumbers(sampler.input, 1);
  auto const values = ReadNumbers(sampler.output, 1);
  std::size_t const rows = times.size() * (isCubic ? 3 : 1);
  if (values.size() % count != 0 || values.size() / count != rows) {
    throw NImportError("a sampler whose times and values don't match");
  }
  std::vector<Weights> weights;
  for (std::size_t target = 0; target != std::min(count, neutral::kMostTargets); ++target) {
    std::vector<float> own(rows);
    for (std::size_t row = 0; row != rows; ++row) own[row] = values[row * count + target];
    weights.push_back({node, static_cast<std::uint32_t>(target), {}});
    Sampler<1> const linear(times, own, isCubic);
    for (auto const& [seconds, value] : linear.GetKeys(sampler.interpolation == "STEP")) {
      weights.back().keys.push_back({seconds * kMilliseconds, value[0]});
    }
  }
  return weights;
}

std::vector<float> NGltfAnimations::ReadNumbers(int accessor, std::size_t width) const {
  return m_accessors.GetNumbers(accessor, width, NGltfAccessors::kFractions).GetAll();
}

void NGltfAnimations::ReadSampler(tinygltf::AnimationSampler const& sampler,
                                  std::string const& path, Channel& channel) const {
  bool const isStep = sampler.interpolation == "STEP";
  bool const isCubic = sampler.interpolation == "CUBICSPLINE";
  bool const isTurn = path == "rotation";
  auto const times = ReadNumbers(sampler.input, 1);
  auto const values = ReadNumbers(sampler.output, isTurn ? 4 : 3);
  if (isTurn) {
    SetKeys(Sampler<4>(times, values, isCubic).GetKeys(isStep), channel.rotations);
  } else if (path == "translation") {
    SetKeys(Sampler<3>(times, values, isCubic).GetKeys(isStep), channel.positions);
  } else if (path == "scale") {
    SetKeys(Sampler<3>(times, values, isCubic).GetKeys(isStep), channel.scales);
  } else {
    throw NImportError("a channel of an unknown kind");
  }
}

NGltfAnimations::Channel NGltfAnimations::CreateChannel(int number) const {
  tinygltf::Node const& node = m_model.nodes[static_cast<std::size_t>(number)];
  Channel channel{number, {}, {}, {}};
  // What a matrix holds stays with the item.
  if (node.matrix.size() == 16) return channel;
  SetKeys<3>({{0.0, Rest<3>(node.translation, {0.0, 0.0, 0.0})}}, channel.positions);
  SetKeys<4>({{0.0, Rest<4>(node.rotation, {0.0, 0.0, 0.0, 1.0})}}, channel.rotations);
  SetKeys<3>({{0.0, Rest<3>(node.scale, {1.0, 1.0, 1.0})}}, channel.scales);
  return channel;
}

}  // namespace corvanta::importer::reader
