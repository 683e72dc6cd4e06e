#include <gtest/gtest.h>

#include <functional>

#include "fuzz/rpc_answers.hpp"
#include "live/ldap/ldap_errors.hpp"
#include "live/rpc/ndr.hpp"
#include "live/rpc/server_service.hpp"
#include "support/number_of.hpp"

namespace twk::live {
namespace {

using test::kGroup;
using test::kLocal;
using test::kUser;
using test::number_of;
using test::open_session;
using test::RpcAnswers;
using test::words;

const base::Bytes kHandle = words({0, 1, 2, 3, 4, 0});

RpcAnswers with_session(RpcAnswers more) {
  RpcAnswers answers = open_session();
  answers.insert(answers.end(), more.begin(), more.end());
  return answers;
}

RpcAnswers with_domain(const base::Bytes& identifier) {
  RpcAnswers answers = open_session();
  answers[2] = identifier;
  return answers;
}

/// Each answer has the form that the protocol's description allows, but announces what it does not contain.
TEST(HostileAccountService, AnswersThatHoldLessThanTheyAnnounceAreRefused) {
  const struct {
    const char* what;
    RpcAnswers answers;
    std::function<void(AccountService&)> call;
  } cases[] = {
      {"a domain without an identifier", with_domain(words({0, 0})), [](auto& s) { s.sid_of(kUser); }},
      {"a domain whose identifier has no room",
       with_domain(words({1, 15, 0xF01, 0x05000000, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 0})),
       [](auto& s) { s.sid_of(kUser); }},
      {"domains without names", {kHandle, words({0, 1, 2, 0, 2, 0})}, [](auto& s) { s.sid_of(kUser); }},
      {"a name's number that is not there", with_session({words({1, 0, 1, 0, 0})}),
       [](auto& s) { s.find("Jo"); }},
      {"a user without fields", with_session({kHandle, words({0, 0}), kHandle}),
       [](auto& s) { s.read_user(1001); }},
      {"users without names", with_session({words({0, 1, 2, 0, 2, 0})}),
       [](auto& s) { s.enumerate(true, false, [](const SamAccount&) { return true; }); }},
      {"a list of users without them", with_session({words({0, 0, 1, 3, 0, 0})}),
       [](auto& s) { s.list_users(); }},
      {"a group without fields", with_session({kHandle, words({0, 0}), kHandle}),
       [](auto& s) { s.group_description(kGroup); }},
      {"a local group without fields", with_session({kHandle, words({0, 0}), kHandle}),
       [](auto& s) { s.group_description(kLocal); }},
      {"members without numbers", with_session({kHandle, words({1, 3, 0, 0, 0}), kHandle}),
       [](auto& s) { s.members(kGroup); }},
      {"members without identifiers", with_session({kHandle, words({1, 1, 1, 0, 0}), kHandle}),
       [](auto& s) { s.members(kLocal); }},
      {"no list of members", with_session({kHandle, words({3, 0, 0}), kHandle}),
       [](auto& s) { s.members(kLocal); }},
      {"groups without numbers", with_session({kHandle, words({1, 3, 0, 0}), kHandle}),
       [](auto& s) { s.identifiers_of(kUser); }},
      {"local groups without numbers",
       with_session({kHandle, words({1, 0, 0, 0}), kHandle, words({3, 0, 0})}),
       [](auto& s) { s.identifiers_of(kUser); }},
      {"more names than were asked for",
       with_session({words({1, 1, 1, 1001, 1, 1, 1, 1, 0}),
                     words({3, 1, 3, 0, 0, 0, 0, 0, 0, 0, 0, 0, 3, 1, 3, 1, 1, 1, 0})}),
       [](auto& s) { s.find("Jo"); }},
  };
  for (const auto& one : cases) {
    RpcAnswers answers = one.answers;
    AccountService service(test::pipe_of(answers, RpcInterface::kAccounts));
    EXPECT_EQ(number_of([&] { one.call(service); }), kBadStub) << one.what;
  }
}

TEST(HostileServer, ListsWithoutAnEndAreLeft) {
  const base::Bytes names = words({0, 1, 1, 1, 1, 1001, 0, 0, 1, 0x105});
  RpcAnswers accounts = with_session(RpcAnswers(1000, names));
  AccountService service(test::pipe_of(accounts, RpcInterface::kAccounts));
  EXPECT_EQ(number_of([&] { service.enumerate(true, false, [](const SamAccount&) { return true; }); }),
            kProtocolError);
  RpcAnswers lists(1000, words({502, 502, 1, 1, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 5, 234}));
  ServerService shares(test::pipe_of(lists, RpcInterface::kServerService));
  EXPECT_EQ(number_of([&] { shares.all(); }), kProtocolError);
}

}  // namespace
}  // namespace twk::live
