#include "live/rpc/server_service.hpp"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <thread>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "live/ldap/ldap_errors.hpp"
#include "live/rpc/ndr.hpp"

namespace twk::live {
namespace {

using platform::ShareInfo502;
namespace network_error = platform::network_error;

// Operations, [MS-SRVS] 3.1.4.
constexpr std::uint32_t kNetrShareAdd = 14;
constexpr std::uint32_t kNetrShareEnum = 15;
constexpr std::uint32_t kNetrShareGetInfo = 16;
constexpr std::uint32_t kNetrShareSetInfo = 17;
constexpr std::uint32_t kNetrShareDel = 18;

constexpr std::uint32_t kLevel = 502;
constexpr std::uint32_t kLevelWithoutList = 2;
/// More than any server has.
constexpr std::size_t kMostShares = 1'000'000;
constexpr std::uint32_t kWholeAnswer = 0xFFFFFFFF;
constexpr std::uint32_t kMoreData = 234;         // ERROR_MORE_DATA
constexpr std::uint32_t kBadNetName = 67;        // ERROR_BAD_NET_NAME
constexpr std::uint32_t kInvalidParameter = 87;  // ERROR_INVALID_PARAMETER
constexpr std::uint32_t kPathNotFound = 3;       // ERROR_PATH_NOT_FOUND
constexpr std::uint32_t kFileExists = 80;        // ERROR_FILE_EXISTS
constexpr std::uint32_t kFileNotFound = 2;       // ERROR_FILE_NOT_FOUND

/// The server's name, which begins every operation.
NdrWriter begin(const RpcPipe& pipe) {
  NdrWriter writer;
  writer.pointer(true);
  writer.text("\\\\" + pipe.host());
  return writer;
}

/// SHARE_INFO_502_I after its level and pointer, [MS-SRVS] 2.2.4.26, or SHARE_INFO_2, 2.2.4.24.
void write_share(NdrWriter& writer, const ShareInfo502& share, std::uint32_t level = kLevel) {
  base::Bytes descriptor;
  if (share.shi502_security_descriptor && level == kLevel)
    descriptor = share.shi502_security_descriptor->encode();
  writer.number(level);
  writer.number(level);
  writer.pointer(true);
  writer.pointer(true);
  writer.number(share.shi502_type);
  writer.pointer(true);
  writer.number(share.shi502_permissions);
  writer.number(static_cast<std::uint32_t>(share.shi502_max_uses));
  writer.number(share.shi502_current_uses);
  writer.pointer(true);
  writer.pointer(!share.shi502_passwd.empty());
  if (level == kLevel) {
    writer.number(static_cast<std::uint32_t>(descriptor.size()));
    writer.pointer(!descriptor.empty());
  }
  writer.text(share.shi502_netname);
  writer.text(share.shi502_remark);
  writer.text(share.shi502_path);
  if (!share.shi502_passwd.empty())
    writer.text(share.shi502_passwd);
  if (!descriptor.empty())
    writer.array(descriptor);
  // Where the server puts the wrong parameter.
  writer.pointer(true);
  writer.number(0);
}

/// The part of a SHARE_INFO_502_I after its fixed part.
struct Pointers {
  bool name = false;
  bool remark = false;
  bool path = false;
  bool password = false;
  bool descriptor = false;
};

Pointers read_fixed(NdrReader& reader, ShareInfo502& share) {
  Pointers pointers;
  pointers.name = reader.pointer();
  share.shi502_type = reader.number();
  pointers.remark = reader.pointer();
  share.shi502_permissions = reader.number();
  share.shi502_max_uses = static_cast<std::int32_t>(reader.number());
  share.shi502_current_uses = reader.number();
  pointers.path = reader.pointer();
  pointers.password = reader.pointer();
  reader.number();
  pointers.descriptor = reader.pointer();
  return pointers;
}

void read_rest(NdrReader& reader, const Pointers& pointers, ShareInfo502& share) {
  if (pointers.name)
    share.shi502_netname = reader.text();
  if (pointers.remark)
    share.shi502_remark = reader.text();
  if (pointers.path)
    share.shi502_path = reader.text();
  if (pointers.password)
    share.shi502_passwd = reader.text();
  if (!pointers.descriptor)
    return;
  const base::Bytes descriptor = reader.array();
  try {
    share.shi502_security_descriptor = platform::SecurityDescriptor::decode(descriptor);
  } catch (const base::RuntimeError& failure) {
    base::raise(platform::security_error::kInvalidDescriptor,
                "The server sent a security descriptor of the share " + share.shi502_netname +
                    " that cannot be read: " + failure.description());
  }
}

/// One answer of an enumeration, and the handle for the next one; 0 at the end.
struct SharePart {
  std::vector<ShareInfo502> shares;
  std::uint32_t resume = 0;
};

SharePart read_part(const base::Bytes& answer) {
  NdrReader reader(answer);
  reader.number();
  reader.number();
  SharePart part;
  if (reader.pointer()) {
    const std::uint32_t count = reader.number();
    if (reader.pointer()) {
      reader.number();
      std::vector<Pointers> pointers;
      for (std::uint32_t i = 0; i < count; ++i)
        pointers.push_back(read_fixed(reader, part.shares.emplace_back()));
      for (std::uint32_t i = 0; i < count; ++i)
        read_rest(reader, pointers[i], part.shares[i]);
    }
  }
  reader.number();
  part.resume = reader.pointer() ? reader.number() : 0;
  return part;
}

/// The number that an operation ends with.
std::uint32_t result_of(const base::Bytes& answer) {
  constexpr std::size_t kSize = 4;
  const std::span<const std::uint8_t> bytes(answer);
  return NdrReader(bytes.last(std::min(bytes.size(), kSize))).number();
}

/// The number for an invalid share name, whatever the server calls it.
std::uint32_t not_found_number(std::uint32_t number) {
  const bool unknown =
      number == kInvalidParameter || number == kBadNetName || number == network_error::kInvalidName;
  return unknown ? network_error::kShareNotFound : number;
}

/// Refuses a character that no share name may have: the server would do something else, and Samba passes
/// names to a command.
bool is_share_name(std::string_view name) {
  static constexpr std::string_view kForbidden = "\"/\\[]:|<>+=;,*?";
  return !name.empty() && base::is_valid_utf8(name) && name.find_first_of(kForbidden) == base::npos &&
         !base::find_control_character(name);
}

}  // namespace

void ServerService::check(std::uint32_t number, std::string_view name) const {
  if (number == 0)
    return;
  base::raise(number, "The share " + base::to_valid_utf8(name) + " of " + pipe_.host() + ": error " +
                          base::to_text(static_cast<std::int64_t>(number)));
}

void ServerService::add(const ShareInfo502& share) {
  if (!is_share_name(share.shi502_netname))
    check(network_error::kInvalidName, share.shi502_netname);
  // A Samba server would replace a share that it made a moment ago by the new one.
  if (has(share.shi502_netname))
    check(network_error::kDuplicateShare, share.shi502_netname);
  NdrWriter writer = begin(pipe_);
  write_share(writer, share);
  bool repeated = false;
  std::uint32_t number = result_of(pipe_.call_again(kNetrShareAdd, writer.bytes(), &repeated));
  // The interrupted call had made the share.
  if (repeated && number == network_error::kDuplicateShare &&
      get(share.shi502_netname).shi502_path == share.shi502_path)
    return;
  if (number == kPathNotFound || number == kFileNotFound)
    number = network_error::kUnknownDirectory;
  if (number == kFileExists)
    number = network_error::kDuplicateShare;
  check(number, share.shi502_netname);
  wait_until(share.shi502_netname, true);
  const ShareInfo502 kept = get(share.shi502_netname);
  if (share.shi502_security_descriptor && !kept.shi502_security_descriptor) {
    remove(share.shi502_netname);
    base::raise(platform::security_error::kAccessDenied,
                "The share " + share.shi502_netname + " of " + pipe_.host() +
                    ": the server stored no access list for it, so it was removed again. A Samba server "
                    "stores one only for its superuser");
  }
  keep_limit(share, kept);
}

void ServerService::require_rights() {
  // The right is looked at before the name, and no server makes a share of this name or of this folder.
  ShareInfo502 impossible;
  impossible.shi502_netname = "?";
  impossible.shi502_path = "?";
  NdrWriter writer = begin(pipe_);
  write_share(writer, impossible);
  const std::uint32_t number = result_of(pipe_.call_again(kNetrShareAdd, writer.bytes()));
  if (number == platform::security_error::kAccessDenied) {
    base::raise(number,
                pipe_.host() +
                    " does not let this account make shares: log on as an administrator of that server. "
                    "On a Samba server the account needs the privilege SeDiskOperatorPrivilege, and the "
                    "server an \"add share command\"");
  }
  // Who may not open the lists of a Samba server reads none, and writes none.
  const std::vector<ShareInfo502> shares = all();
  const auto is_plain = [](const ShareInfo502& share) { return share.shi502_type == 0; };
  const auto has_list = [](const ShareInfo502& share) {
    return share.shi502_security_descriptor.has_value();
  };
  if (std::ranges::any_of(shares, is_plain) && std::ranges::none_of(shares, has_list)) {
    base::raise(
        platform::security_error::kAccessDenied,
        pipe_.host() +
            " keeps the access lists of its shares from this account, so a new share would be open to "
            "everyone. A Samba server stores them for its superuser alone: log on as the account that its "
            "\"username map\" makes root, or create users without shares of their own "
            "(twk settings set UM CreateShares No)");
  }
}

void ServerService::keep_limit(const ShareInfo502& share, const ShareInfo502& kept) {
  if (kept.shi502_max_uses == share.shi502_max_uses)
    return;
  NdrWriter writer = begin(pipe_);
  writer.text(share.shi502_netname);
  write_share(writer, share, kLevelWithoutList);
  check(result_of(pipe_.call_again(kNetrShareSetInfo, writer.bytes())), share.shi502_netname);
}

void ServerService::wait_until(std::string_view name, bool there) {
  constexpr int kTries = 40;
  constexpr std::chrono::milliseconds kPause(50);
  for (int i = 0; i < kTries && has(name) != there; ++i) {
    pipe_.close();
    if (i > 0)
      std::this_thread::sleep_for(kPause);
  }
}

bool ServerService::has(std::string_view name) {
  base::Trap trap;
  trap([&] { get(name); });
  if (trap.number() != 0 && trap.number() != network_error::kShareNotFound)
    base::raise(trap.number(), trap.description());
  return trap.number() == 0;
}

ShareInfo502 ServerService::get(std::string_view name) {
  if (!is_share_name(name))
    check(network_error::kShareNotFound, name);
  NdrWriter writer = begin(pipe_);
  writer.text(name);
  writer.number(kLevel);
  const base::Bytes answer = pipe_.call_again(kNetrShareGetInfo, writer.bytes());
  check(not_found_number(result_of(answer)), name);
  NdrReader reader(answer);
  ShareInfo502 share;
  reader.number();
  if (reader.pointer()) {
    const Pointers pointers = read_fixed(reader, share);
    read_rest(reader, pointers, share);
  }
  return share;
}

std::vector<ShareInfo502> ServerService::all() {
  std::vector<ShareInfo502> shares;
  std::uint32_t resume = 0;
  for (;;) {
    NdrWriter writer = begin(pipe_);
    writer.number(kLevel);
    writer.number(kLevel);
    writer.pointer(true);
    writer.number(0);
    writer.pointer(false);
    writer.number(kWholeAnswer);
    writer.pointer(true);
    writer.number(resume);
    const base::Bytes answer = pipe_.call_again(kNetrShareEnum, writer.bytes());
    const std::uint32_t number = result_of(answer);
    if (number != kMoreData)
      check(number, "list");
    SharePart part = read_part(answer);
    const bool empty = part.shares.empty();
    std::move(part.shares.begin(), part.shares.end(), std::back_inserter(shares));
    if (number != kMoreData || empty || part.resume == 0)
      return shares;
    if (part.resume == resume || shares.size() > kMostShares)
      base::raise(kProtocolError, pipe_.host() + " never finishes sending its shares");
    resume = part.resume;
    pipe_.require_going_on();
  }
}

void ServerService::remove(std::string_view name) {
  if (!is_share_name(name))
    check(network_error::kShareNotFound, name);
  NdrWriter writer = begin(pipe_);
  writer.text(name);
  writer.number(0);
  bool repeated = false;
  const std::uint32_t number =
      not_found_number(result_of(pipe_.call_again(kNetrShareDel, writer.bytes(), &repeated)));
  if (repeated && number == network_error::kShareNotFound)
    return;
  check(number, name);
  wait_until(name, false);
}

void ServerService::change(const ShareInfo502& share) {
  NdrWriter writer = begin(pipe_);
  writer.text(share.shi502_netname);
  write_share(writer, share);
  check(result_of(pipe_.call_again(kNetrShareSetInfo, writer.bytes())), share.shi502_netname);
  keep_limit(share, get(share.shi502_netname));
}

}  // namespace twk::live
