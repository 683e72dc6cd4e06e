#include <ldap.h>
#include <openldap.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "ads/schema.hpp"
#include "base/errors.hpp"
#include "live/ldap/ldap_connection.hpp"
#include "live/ldap/ldap_errors.hpp"
#include "live/ldap/subschema.hpp"
#include "platform/sid.hpp"

namespace {

using namespace twk;
using live::LdapEntry;

/// A message around what the server answers, with its number (RFC 4511 4.1.1).
std::string message_of(int number, std::string_view operation) {
  constexpr char kSequence = 0x30;
  const std::string inner = std::string{0x02, 0x01, static_cast<char>(number)} + std::string(operation);
  return std::string{kSequence, '\x82', static_cast<char>(inner.size() >> 8U),
                     static_cast<char>(inner.size())} +
         inner;
}

/// What the server sends: the bytes as they are, or, after an odd first byte, operations preceded by two
/// bytes of size, which become whole messages. A result ends the answer to one request.
std::string stream_of(std::string_view bytes) {
  constexpr char kResult = 0x65;
  if (bytes.empty() || (bytes.front() & 1) == 0)
    return std::string(bytes.substr(std::min<std::size_t>(bytes.size(), 1)));
  std::string stream;
  int number = 1;
  for (bytes.remove_prefix(1); bytes.size() > 2;) {
    const auto high = static_cast<unsigned char>(bytes[0]);
    const std::size_t size =
        std::min<std::size_t>(high % 16U * 256U + static_cast<unsigned char>(bytes[1]), bytes.size() - 2);
    const std::string_view operation = bytes.substr(2, size);
    stream += message_of(number, operation);
    number += operation.starts_with(kResult) && number < 0x7F ? 1 : 0;
    bytes.remove_prefix(2 + size);
  }
  return stream;
}

/// What readers make of an entry.
void use(const LdapEntry& entry) {
  std::vector<std::string> all;
  static_cast<void>(live::join_range(entry, "member", all));
  for (const live::LdapAttribute& attribute : entry.attributes) {
    static_cast<void>(ads::to_value(ads::find_attribute(attribute.name), attribute.values));
    for (const std::string& value : attribute.values)
      static_cast<void>(platform::Sid::decode(base::Bytes(value.begin(), value.end())));
  }
  if (const auto* const types = entry.find("attributeTypes"))
    static_cast<void>(live::Subschema(*types).find("sn"));
}

/// The pages of a search, as a connection takes them.
void search(LDAP* connection) {
  live::LdapSearch wanted;
  wanted.base = "DC=twk,DC=test";
  wanted.page_size = 3;
  const live::LdapPageRequest request(wanted, 1);
  live::LdapProgress progress;
  std::string cookie;
  do {
    const auto number = request.send(connection, cookie);
    if (!number)
      return;
    live::LdapPage page;
    const int result = request.receive(
        connection, *number, [] { return true; }, page);
    if (result != LDAP_SUCCESS)
      live::raise_ldap_error(result, "0000052D: SvcErr: data 52e, v1", live::LdapRequest::kRead, "Search");
    for (const LdapEntry& entry : page.entries)
      use(entry);
    progress.require(wanted, page);
    cookie = page.cookie;
  } while (!cookie.empty());
}

}  // namespace

#ifdef TWK_FUZZ
/// The library leaks the request of a connection that breaks in the middle of an answer. The look for leaks
/// after each would take nearly all of the time; the runs of the first inputs look for those of our own.
extern "C" const char* __asan_default_options() {
  return "detect_leaks=0";
}
#endif

/// What a server answers to a search, through the library and the reader of pages.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string stream = stream_of({reinterpret_cast<const char*>(data), size});
  int ends[2] = {-1, -1};
  LDAP* connection = nullptr;
  if (socketpair(AF_UNIX, SOCK_STREAM, 0, ends) != 0 ||
      write(ends[1], stream.data(), stream.size()) != static_cast<ssize_t>(stream.size()) ||
      shutdown(ends[1], SHUT_WR) != 0 ||
      ldap_init_fd(ends[0], LDAP_PROTO_IPC, nullptr, &connection) != LDAP_SUCCESS)
    std::abort();
  const int version = LDAP_VERSION3;
  ldap_set_option(connection, LDAP_OPT_PROTOCOL_VERSION, &version);
  ldap_set_option(connection, LDAP_OPT_REFERRALS, LDAP_OPT_OFF);  // as every connection of the program has it
  live::limit_messages(connection);
  base::Trap trap;
  trap([&] { search(connection); });
  ldap_unbind_ext_s(connection, nullptr, nullptr);
  close(ends[1]);
  return 0;
}
