#include <cstdint>
#include <cstdlib>
#include <functional>

#include "base/errors.hpp"
#include "fuzz/rpc_answers.hpp"
#include "live/rpc/logon_service.hpp"
#include "live/rpc/server_service.hpp"

namespace {

using namespace twk::live;
using twk::test::kGroup;
using twk::test::kLocal;
using twk::test::kUser;
using twk::test::RpcAnswers;

constexpr std::uint8_t kOpened =
    0x80;  // the session of the accounts is opened, and its answers do not come from the input

/// Answers preceded by two bytes of size.
RpcAnswers take_answers(std::span<const std::uint8_t> bytes, RpcAnswers answers) {
  while (bytes.size() > 2) {
    const std::size_t size = std::min<std::size_t>(twk::platform::read_u16(bytes, 0), bytes.size() - 2);
    answers.emplace_back(bytes.begin() + 2, bytes.begin() + 2 + static_cast<std::ptrdiff_t>(size));
    bytes = bytes.subspan(2 + size);
  }
  return answers;
}

/// A failure is raised by a number.
void run(const std::function<void()>& call) {
  twk::base::Trap trap;
  trap(call);
}

void call_accounts(RpcAnswers answers, std::uint8_t which) {
  AccountService service(twk::test::pipe_of(answers, RpcInterface::kAccounts));
  const std::function<void()> calls[] = {
      [&] { service.sid_of(kUser); },
      [&] { service.find("Jo"); },
      [&] {
        service.find(twk::platform::Sid(5, {21, 7, 1001}));
      },
      [&] { service.enumerate(true, true, [](const SamAccount&) { return true; }); },
      [&] { service.read_user(kUser.rid); },
      [&] { service.cannot_change_password(kUser.rid); },
      [&] { service.set_cannot_change_password(kUser.rid, true); },
      [&] { service.create("Jo", SamAccount::Kind::kUser); },
      [&] { service.remove(kGroup); },
      [&] { service.group_description(kGroup); },
      [&] { service.group_description(kLocal); },
      [&] { service.members(kGroup); },
      [&] { service.members(kLocal); },
      [&] { service.groups_of(kUser); },
      [&] { service.identifiers_of(kUser); },
      [&] { service.add_member(kLocal, kUser); }};
  run(calls[which % std::size(calls)]);
}

void call_shares(RpcAnswers answers, bool all) {
  ServerService service(twk::test::pipe_of(answers, RpcInterface::kServerService));
  run([&] {
    if (all)
      service.all();
    else
      service.get("Users");
  });
}

}  // namespace

/// What servers answer to remote calls: the first byte says which call, the rest are the answers.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0)
    return 0;
  const bool opened = (data[0] & kOpened) != 0;
  const std::uint8_t which = data[0] % 0x20U;
  const RpcAnswers answers =
      take_answers(std::span(data, size).subspan(1), opened ? twk::test::open_session() : RpcAnswers{});
  if (which < 0x10) {
    call_accounts(answers, which);
  } else if (which < 0x12) {
    call_shares(answers, which == 0x10);
  } else {
    RpcAnswers left = answers;
    LogonService service(twk::test::pipe_of(left, RpcInterface::kLogon));
    run([&] { service.get_dc_name("TW"); });
  }
  return 0;
}
