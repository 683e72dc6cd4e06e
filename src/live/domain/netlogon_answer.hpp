#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace twk::live {

/// What a controller says of itself, and of who asks, without a logon.
struct NetlogonAnswer {
  std::string domain;    ///< DNS name
  std::string host;      ///< DNS name of the controller
  std::string site;      ///< the controller's
  std::string own_site;  ///< that of the address which asked; empty when no subnet of the directory has it
};

/// None for bytes that are not such an answer. They come from anyone who answers, so names are only what
/// someone says, but no bytes make this read outside of them or without an end.
std::optional<NetlogonAnswer> parse_netlogon_answer(std::string_view bytes);

}  // namespace twk::live
