#pragma once

// What every test includes: the framework, and the library as its users include it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <boost/intrusive_ptr.hpp>
#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <limits>
#include <map>
#include <memory>
#include <numeric>
#include <optional>
#include <random>
#include <set>
#include <stdexcept>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "corvanta/names.h"

namespace corvanta {

using core::attribute::NAttribute;
using core::attribute::NAttributeHost;
using core::locator::NLocator;
using core::uri::NPath;
using core::uri::NUri;
using core::variant::NVariant;
using data::structs::UVW;
using data::structs::XYZ;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::SizeIs;
using VX_Math::Box3;
using VX_Math::Line;
using VX_Math::Matrix;
using VX_Math::Plane;
using VX_Math::Quaternion;
using VX_Math::Vec2;
using VX_Math::Vec3;

namespace item = data::domain::scenegraph::item;
namespace scenegraph = data::domain::scenegraph;
namespace tree = data::domain::scenegraph::tree;

template <class T>
using Pointer = boost::intrusive_ptr<T>;

template <class T, class... Arguments>
Pointer<T> New(Arguments&&... arguments) {
  return Pointer<T>(new T(std::forward<Arguments>(arguments)...));
}

/// Starts anew in every run; a failure tells the seed.
class Random : public std::mt19937 {
 public:
  explicit Random(unsigned seed = std::random_device()())
      : std::mt19937(seed), m_trace(__FILE__, __LINE__, "seed " + std::to_string(seed)) {}

 private:
  testing::ScopedTrace const m_trace;
};

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

}  // namespace corvanta
