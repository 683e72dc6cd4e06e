#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/errors.hpp"
#include "live/rpc/rpc_pipe.hpp"
#include "live/rpc/sam_account.hpp"
#include "platform/sid.hpp"

namespace twk::live {

class AccountSession;

/// The accounts of the domain that a server holds, and of its "Builtin", through its account service,
/// [MS-SAMR] 3.1.5. Every call raises what `RpcPipe` raises, and numbers of [MS-ERREF] 2.2: 2220 no such
/// group, 2221 no such user, 2223 and 2224 a group's or user's name in use, 1320 and 1321 a member that is
/// already in, or is not in, the group, 2245 a password that the policy refuses, 5.
///
/// A call whose connection broke is repeated on a new one.
class AccountService {
 public:
  AccountService(std::shared_ptr<Credentials> credentials, std::string_view server);
  explicit AccountService(RpcPipe pipe);
  AccountService(const AccountService&) = delete;
  AccountService& operator=(const AccountService&) = delete;
  ~AccountService();

  /// The domain's own name and identifier.
  std::string domain_name();
  platform::Sid domain_sid();
  platform::Sid sid_of(const SamAccount& account);

  /// By name, which folds case; computers and other domains do not count as accounts.
  std::optional<SamAccount> find(std::string_view name);
  /// For an identifier of the domain or of Builtin.
  std::optional<SamAccount> find(const platform::Sid& sid);
  /// Users without computers, then global groups, then local groups of both domains, each kind only if
  /// requested.
  void enumerate(bool users, bool groups, const std::function<bool(const SamAccount&)>& visit);

  /// The users without computers, with the fields of one list: name, full name, description, flags.
  /// Of a service that refuses such a list, the names alone.
  std::vector<SamUser> list_users();

  SamUser read_user(std::uint32_t rid);
  void write_user(std::uint32_t rid, const SamUserChange& change);
  /// Raises 2245 for one that the policy refuses.
  void set_password(std::uint32_t rid, std::string_view password);
  /// Whether the user's access list lets the person change the password, [MS-SAMR] 2.2.1.7.
  bool cannot_change_password(std::uint32_t rid);
  void set_cannot_change_password(std::uint32_t rid, bool cannot);

  /// A user is disabled and without a password at first, as the service makes it.
  SamAccount create(std::string_view name, SamAccount::Kind kind);
  void remove(const SamAccount& account);

  std::string group_description(const SamAccount& group);
  /// Writes the parts that are present, the name last.
  void write_group(const SamAccount& group, const std::optional<std::string>& name,
                   const std::optional<std::string>& description);
  void add_member(const SamAccount& group, const SamAccount& member);
  void remove_member(const SamAccount& group, const SamAccount& member);
  /// Direct members; of a local group, those from these two domains. A global group's members are also
  /// those whose primary group it is.
  std::vector<SamAccount> members(const SamAccount& group);
  /// Direct groups of a user, the primary one first.
  std::vector<SamAccount> groups_of(const SamAccount& user);
  /// The identifiers that a logon of the user has: its own, those of its global groups, and those of the
  /// local groups that contain one of these.
  std::vector<platform::Sid> identifiers_of(const SamAccount& user);

 private:
  /// The current session of the pipe; a new one after the pipe broke.
  AccountSession& session();
  /// Runs `step` on the session, and once more on a new one when the pipe broke.
  template <typename Step>
  auto repeat(Step&& step) {
    try {
      return std::forward<Step>(step)(session());
    } catch (const base::RuntimeError& failure) {
      if (failure.number() != kRpcLost)
        throw;
    }
    session_.reset();
    return std::forward<Step>(step)(session());
  }
  /// The same for a write that the second run may find done: it is then refused with `already`.
  template <typename Step>
  void repeat_write(std::uint32_t already, Step&& step) {
    int runs = 0;
    try {
      repeat([&](AccountSession& session) {
        ++runs;
        step(session);
      });
    } catch (const base::RuntimeError& failure) {
      if (runs < 2 || failure.number() != already)
        throw;
    }
  }

  RpcPipe pipe_;
  std::unique_ptr<AccountSession> session_;
};

}  // namespace twk::live
