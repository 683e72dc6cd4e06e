#pragma once

#include <nlohmann/json.hpp>

#include "base/precompiled.hpp"
