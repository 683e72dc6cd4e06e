#pragma once

#include "base/precompiled.hpp"
