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

#include "corvanta/corvanta.h"

namespace corvanta {

using core::node::NNodeID;
using core::node::NNodeReference;
using testing::ElementsAre;
using testing::IsEmpty;
using VX_Math::Box3;
using VX_Math::Matrix;
using VX_Math::Quaternion;
using VX_Math::Vec2;
using VX_Math::Vec3;

template <class T>
using Pointer = boost::intrusive_ptr<T>;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

}  // namespace corvanta
