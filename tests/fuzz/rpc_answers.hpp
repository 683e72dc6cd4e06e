#pragma once

#include <algorithm>
#include <cstdint>
#include <deque>
#include <initializer_list>
#include <utility>

#include "base/bytes.hpp"
#include "live/rpc/account_service.hpp"
#include "live/rpc/rpc_pipe.hpp"
#include "live/rpc/samba_headers.hpp"
#include "platform/little_endian.hpp"

namespace twk::test {

/// What a server answers to the calls of a pipe, one after the other; then it is gone. The library parses
/// these bytes like those of a connection.
using RpcAnswers = std::deque<base::Bytes>;

namespace detail {

struct AnswerState {
  RpcAnswers* answers;
};

struct CallState {
  std::uint8_t* bytes;
  std::size_t size;
};

inline constexpr std::uint32_t kConnectionGone = 0xC000020D;  // STATUS_CONNECTION_RESET

inline tevent_req* answer_send(TALLOC_CTX* memory, tevent_context* events, dcerpc_binding_handle* binding,
                               const GUID* /*object*/, std::uint32_t /*operation*/, std::uint32_t /*flags*/,
                               const std::uint8_t* /*arguments*/, std::size_t /*size*/) {
  CallState* state = nullptr;
  tevent_req* const request = tevent_req_create(memory, &state, CallState);
  *state = {};
  RpcAnswers& answers = *static_cast<AnswerState*>(_dcerpc_binding_handle_data(binding))->answers;
  if (answers.empty()) {
    tevent_req_error(request, kConnectionGone);
  } else {
    const base::Bytes& next = answers.front();
    state->size = next.size();
    // A separate block, so that reads past its end are detected.
    state->bytes = static_cast<std::uint8_t*>(talloc_size(state, next.size()));
    std::copy(next.begin(), next.end(), state->bytes);
    answers.pop_front();
    tevent_req_done(request);
  }
  return tevent_req_post(request, events);
}

inline NTSTATUS answer_receive(tevent_req* request, TALLOC_CTX* memory, std::uint8_t** bytes,
                               std::size_t* size, std::uint32_t* flags) {
  tevent_req_state kind{};
  std::uint64_t error = 0;
  if (tevent_req_is_error(request, &kind, &error))
    return live::to_status(static_cast<std::uint32_t>(error));
  const CallState* const state = static_cast<CallState*>(_tevent_req_data(request));
  *bytes = static_cast<std::uint8_t*>(_talloc_steal_loc(memory, state->bytes, "here"));
  *size = state->size;
  *flags = 0;
  tevent_req_received(request);
  return live::to_status(0);
}

inline bool is_connected(dcerpc_binding_handle* /*binding*/) {
  return true;
}
inline std::uint32_t set_timeout(dcerpc_binding_handle* /*binding*/, std::uint32_t seconds) {
  return seconds;
}

}  // namespace detail

/// A pipe to that server.
inline live::RpcPipe pipe_of(RpcAnswers& answers, live::RpcInterface interface) {
  static const dcerpc_binding_handle_ops kCalls = [] {
    dcerpc_binding_handle_ops calls{};
    calls.name = "answers";
    calls.is_connected = detail::is_connected;
    calls.set_timeout = detail::set_timeout;
    calls.raw_call_send = detail::answer_send;
    calls.raw_call_recv = detail::answer_receive;
    return calls;
  }();
  return live::RpcPipe(
      [&answers](void* memory) {
        detail::AnswerState* state = nullptr;
        dcerpc_binding_handle* const binding = dcerpc_binding_handle_create(
            memory, &kCalls, nullptr, &ndr_table_samr, &state, detail::AnswerState, "here");
        state->answers = &answers;
        return binding;
      },
      interface);
}

/// An answer of whole words.
inline base::Bytes words(std::initializer_list<std::uint32_t> numbers) {
  base::Bytes bytes;
  for (const std::uint32_t number : numbers)
    platform::append_u32(bytes, number);
  return bytes;
}

inline const live::SamAccount kUser{
    .name = "u", .kind = live::SamAccount::Kind::kUser, .builtin = false, .rid = 1001};
inline const live::SamAccount kGroup{
    .name = "g", .kind = live::SamAccount::Kind::kGlobalGroup, .builtin = false, .rid = 513};
inline const live::SamAccount kLocal{
    .name = "l", .kind = live::SamAccount::Kind::kLocalGroup, .builtin = true, .rid = 544};

/// What an account service answers while its session is opened: its domain TW (S-1-5-21-7) and Builtin.
inline RpcAnswers open_session() {
  const base::Bytes handle = words({0, 1, 2, 3, 4, 0});
  return {handle,
          words({0, 1, 2,          1, 2, 0, 0x00040004, 1,          1,          0x000e000e, 1, 2,
                 0, 2, 0x00570054, 7, 0, 7, 0x00750042, 0x006c0069, 0x00690074, 0x0000006e, 2, 0}),
          words({1, 2, 0x00000201, 0x05000000, 21, 7, 0}),
          handle,
          words({1, 1, 0x00000101, 0x05000000, 32, 0}),
          handle};
}

}  // namespace twk::test
