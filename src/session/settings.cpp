#include "session/settings.hpp"

namespace twk::session {
namespace {

std::string key_of(std::string_view sub_key) {
  return std::string(kTree) + "\\" + std::string(sub_key);
}

}  // namespace

std::string read_setting(Session& session, std::string_view sub_key, std::string_view name,
                         std::uint32_t hive) {
  std::string value;
  session.LastRegResult = session.platform.registry.Reg_Read(hive, key_of(sub_key), name, value);
  return value;
}

void write_setting(Session& session, std::string_view sub_key, std::string_view name, std::string_view value,
                   std::uint32_t hive) {
  session.LastRegResult = session.platform.registry.Reg_Write(hive, key_of(sub_key), name, value);
}

void write_yes_no(Session& session, std::string_view sub_key, std::string_view name, bool value) {
  write_setting(session, sub_key, name, value ? "Yes" : "No");
}

}  // namespace twk::session
