#pragma once

#include "ads/ads_path.hpp"
#include "platform/directory.hpp"

namespace twk::live {

class LiveDomain;

/// "WinNT://FS1/lanmanserver" with or without a share after it. Raises kBadNetPath, kShareNotFound.
platform::ObjectPtr bind_shares(LiveDomain& domain, const ads::AdsPath& path);

}  // namespace twk::live
