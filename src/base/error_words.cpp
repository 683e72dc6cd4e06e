#include "base/error_words.hpp"

#include <algorithm>
#include <array>

#include "base/errors.hpp"
#include "base/text.hpp"

namespace twk::base {
namespace {

struct Words {
  std::uint32_t number;
  std::string_view words;
};

/// Numbers of the system, [MS-ERREF] 2.2, and from 2100 on of its network functions; those below 80 are also
/// the runtime's, with the same meaning. The runtime's 58 and 75 are not here: our own guards
/// raise them, and give the reason themselves.
constexpr std::array kWords = {
    Words{5, "access is denied; use an account that has the right, or have it granted"},
    Words{32, "a file is in use; close it and try again"},
    Words{53, "no server answers by that name; check the name, and that the server is on and reachable"},
    Words{61, "the disk is full; make room and try again"},
    Words{64, "the connection was lost; try again"},
    Words{70, "access is denied or the file is in use; close it, or use an account that has the right"},
    Words{76, "there is no such folder; check the path"},
    Words{112, "the disk is full; make room and try again"},
    Words{122, "the list of rights is too long; shorten or replace it"},
    Words{123, "the name cannot be used; check its spelling"},
    Words{1300,
          "the privilege is missing; use an account of the server's administrators or backup operators"},
    Words{1307, "that account cannot be made owner without the privilege to restore files"},
    Words{1321, "the account is not in the group; nothing needs to be done"},
    Words{1326, "user name or password is wrong; log on again"},
    Words{1332, "no account has that name; check its spelling, or put the domain before it"},
    Words{1355,
          "there is no such domain, or none of its controllers answers; check its name and the network"},
    Words{1378, "the account is already in the group; nothing needs to be done"},
    Words{1722, "the server does not answer; check that it is on and that its services run"},
    Words{2116, "the folder to share does not exist; create it first"},
    Words{2118,
          "the server already has a share of that name; choose another name, or remove that share first"},
    Words{2202, "the user name cannot be used; check length and characters"},
    Words{2220, "there is no such group; check its name, or create it"},
    Words{2221, "there is no such user; check the name"},
    Words{2223, "there is already a group of that name; choose another name"},
    Words{2224, "there is already an account of that name; choose another name"},
    Words{2236, "the account is already in the group; nothing needs to be done"},
    Words{2245,
          "the password does not meet the domain's policy; choose a longer one, with several kinds of "
          "characters, that was not used before"},
    Words{2310, "the server has no share of that name; check the name, or create the share"},
    Words{2453, "no controller of the domain was found; check the domain's name and the network"},
    Words{5010, "the name is already in use; choose another one"},
    Words{8202, "the directory does not know the attribute; check its name"},
    Words{8213, "there are objects below it; move or delete those first"},
    Words{8239, "a value breaks a rule of the directory; check its length and form"},
    Words{8240, "there is no such object; it may have been moved or deleted"},
    Words{8242, "the name breaks the syntax of names; check its characters"},
    Words{8245,
          "the server refuses; usually the password breaks the policy, the connection is not encrypted, or "
          "the system protects the account"},
    Words{8250, "no server answers; check the network and that a controller is on"},
};

constexpr std::uint32_t kSystem = 0x80070000;  // FACILITY_WIN32, [MS-ERREF] 2.1
constexpr std::uint32_t kCode = 0xFFFF;
constexpr std::uint32_t kNotImplemented = 0x80004001;
constexpr std::uint32_t kNoValue = 0x8000500D;

}  // namespace

std::string_view words_of_error(std::uint32_t number) {
  if (number == kNotImplemented)
    return "this kind of server or domain does not offer that";
  if (number == kNoValue)
    return "the object has no such value, or it may not be read";
  const std::uint32_t code = (number & ~kCode) == kSystem ? number & kCode : number;
  const auto found =
      std::find_if(kWords.begin(), kWords.end(), [code](const Words& one) { return one.number == code; });
  return found == kWords.end() ? std::string_view() : found->words;
}

std::string in_words(std::uint32_t number, std::string_view description) {
  std::string_view said = trim(description);
  if (said.ends_with('.'))
    said.remove_suffix(1);
  const std::string_view words = words_of_error(number);
  if (said.empty())
    return words.empty() ? "error " + to_text(number) : std::string(words);
  return words.empty() ? std::string(said) : std::string(said) + " (" + std::string(words) + ")";
}

std::string in_words(const RuntimeError& failure) {
  return in_words(failure.number(), failure.description());
}

}  // namespace twk::base
