#pragma once

#include <algorithm>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "stores/side_tables.hpp"
#include "support/faulty_directory.hpp"
#include "support/world.hpp"

namespace twk::resources {

/// A session in a WinNT domain whose security calls are watched, with its log open. "jo" and "staff" have
/// accounts.
class ResourcesWorld : public test::TestWorld {
 protected:
  ResourcesWorld() {
    session.DomainName = "twk.test";
    session.NTDomainName = "TWK";
    session.DnsServerName = "dc1.twk.test";
    environment.variables["LOGONSERVER"] = "\\\\DC2";
    security.accounts.insert({{"JO", *platform::Sid::parse("S-1-5-21-1-2-3-1001")},
                              {"STAFF", *platform::Sid::parse("S-1-5-21-1-2-3-1002")}});
    session.log.open();
  }

  void table(std::string_view file, const std::vector<records::PermissionRecord>& rows) {
    stores::write_permissions(session, file, rows);
  }
  /// "Log.txt" with line feeds.
  [[nodiscard]] std::string log() const {
    std::string text = test::get_file(database / "Log.txt");
    std::erase(text, '\r');
    return text;
  }
  /// The calls of one kind, in order.
  [[nodiscard]] std::vector<std::string> calls(std::string_view operation) const {
    std::vector<std::string> found;
    for (const std::string& call : security.calls) {
      if (call.starts_with(operation))
        found.push_back(call);
    }
    return found;
  }
  /// Raises at the n-th call (from 1) of an operation.
  void fail_at(std::string operation, int n, std::uint32_t number) {
    security.before = test::fail_at(std::move(operation), n, number);
  }
};

/// A list of tests/tools/access_lists.py by its name.
inline base::Bytes list_named(const std::string& name) {
  std::ifstream file(TWK_SOURCE_DIR "/tests/resources/access_lists.txt");
  for (std::string line; std::getline(file, line);) {
    if (!line.starts_with(name + ": "))
      continue;
    base::Bytes bytes;
    for (std::size_t i = name.size() + 2; i + 1 < line.size(); i += 2)
      bytes.push_back(
          static_cast<std::uint8_t>(*base::hex_digit(line[i]) * 16 + *base::hex_digit(line[i + 1])));
    return bytes;
  }
  ADD_FAILURE() << "no list " << name;
  return {};
}

}  // namespace twk::resources
