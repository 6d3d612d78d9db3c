// What nearly every test includes, compiled once; Precompiled.cpp makes the code of the JSON type for all of them.
#pragma once

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

extern template class nlohmann::basic_json<nlohmann::ordered_map>;
