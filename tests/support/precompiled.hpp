#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/precompiled.hpp"
