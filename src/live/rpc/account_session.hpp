#pragma once

#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/errors.hpp"
#include "live/rpc/ndr.hpp"
#include "live/rpc/rpc_pipe.hpp"
#include "live/rpc/sam_account.hpp"
#include "live/rpc/samba_headers.hpp"
#include "platform/sid.hpp"

/// What the parts of `AccountService` share: handles of the service and the calls on them.
namespace twk::live {

/// The handles from a pipe. They are useless after it broke.
class AccountSession {
 public:
  struct Domain {
    std::string name;
    policy_handle handle{};
    dom_sid sid{};
  };

  explicit AccountSession(RpcPipe& pipe);

  /// Raises kStopped when the person asks to stop: between the parts of a long answer.
  void require_going_on() const { pipe_.require_going_on(); }

  [[nodiscard]] Domain& domain(bool builtin) { return builtin ? builtin_ : own_; }

  /// The operation's own status, [MS-ERREF] 2.3.
  template <typename Call>
  std::uint32_t ask(std::uint32_t operation, Call& call, const Memory& memory) {
    pipe_.call(operation, &call, memory.get());
    return NT_STATUS_V(call.out.result);
  }
  /// Raises the number for a status other than success.
  template <typename Call>
  void run(std::uint32_t operation, Call& call, const Memory& memory, std::string_view what) {
    check(ask(operation, call, memory), what);
  }
  static void check(std::uint32_t status, std::string_view what);

 private:
  void open(Domain& domain);

  RpcPipe& pipe_;
  policy_handle connection_{};
  Domain own_;
  Domain builtin_;
};

/// An open account, closed with the object.
class OpenAccount {
 public:
  OpenAccount(AccountSession& session, const SamAccount& account);
  OpenAccount(const OpenAccount&) = delete;
  OpenAccount& operator=(const OpenAccount&) = delete;
  ~OpenAccount();

  [[nodiscard]] policy_handle* handle() { return &handle_; }
  /// The server has closed it by itself, as after a deletion.
  void release() { open_ = false; }

 private:
  AccountSession& session_;
  policy_handle handle_{};
  bool open_ = true;
};

/// What an answer points to. Raises kBadStub for an answer without it, which the protocol's syntax
/// allows.
template <typename Part>
Part& part_of(Part* part) {
  if (part == nullptr)
    base::raise(kBadStub, "The server's answer is malformed: a part is missing");
  return *part;
}
/// The items of a list whose count the answer gives. Raises the same.
template <typename Item>
std::span<Item> items_of(Item* first, std::size_t count) {
  if (count != 0)
    part_of(first);
  return {first, count};
}

/// A text that is sent; `text` must outlive the call.
lsa_String to_lsa(const std::string& text);
std::string from_lsa(const lsa_String& text);
dom_sid to_dom_sid(const platform::Sid& sid);
platform::Sid from_dom_sid(const dom_sid& sid);

/// The accounts with these names among the domain's; none for an unknown name.
std::optional<SamAccount> look_up_name(AccountSession& session, std::string_view name, bool builtin);
std::vector<SamAccount> look_up_rids(AccountSession& session, std::vector<std::uint32_t> rids, bool builtin);

/// All rights that the caller has, MAXIMUM_ALLOWED of [MS-DTYP] 2.4.3.
inline constexpr std::uint32_t kMaximumAllowed = 0x02000000;

// Statuses of [MS-ERREF] 2.3 that are not a failure of an enumeration or a look-up.
inline constexpr std::uint32_t kMoreEntries = 0x00000105;
inline constexpr std::uint32_t kNoMoreEntries = 0x8000001A;
inline constexpr std::uint32_t kSomeNotMapped = 0x00000107;
inline constexpr std::uint32_t kNoneMappedStatus = 0xC0000073;

}  // namespace twk::live
