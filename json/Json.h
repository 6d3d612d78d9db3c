// JSON values that can be destroyed when memory is short: nlohmann's, in the form that JsonForward.h gives them.
#pragma once

#include <nlohmann/json.hpp>

#include "json/JsonForward.h"
