#pragma once

#include "ads/share_object.hpp"
#include "base/errors.hpp"
#include "platform/directory.hpp"

namespace twk::lab {

namespace ads_error = platform::ads_error;

using ads::kBadNetPath;
using ads::kShareExists;
using ads::kShareNotFound;
using base::raise;

}  // namespace twk::lab
