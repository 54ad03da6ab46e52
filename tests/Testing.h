// What every test includes, compiled once for all: the frameworks, the standard library, the system's types, and the
// house's names.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <random>
#include <span>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

namespace scenedetect::testing_support {}
using namespace scenedetect;
using namespace scenedetect::testing_support;
using namespace testing;

/// Names the cases of a suite by their field `name`.
inline constexpr auto kByName = [](const auto& each) { return std::string(each.param.name); };
