#include "cli/parser/field_checks.hpp"

#include "base/text.hpp"
#include "platform/logon_hours.hpp"
#include "records/records.hpp"

namespace twk::cli {

Check at_most(std::size_t characters) {
  return Check([characters](const std::string& text) {
    return base::length(text) <= characters
               ? std::string()
               : "longer than " + std::to_string(characters) + " characters: " + text;
  });
}

Check logon_hours() {
  return Check([](const std::string& text) {
    const bool digits = text.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos;
    return digits && text.size() == 2 * platform::kLogonHoursSize ? std::string()
                                                                  : "not 42 hexadecimal digits: " + text;
  });
}

}  // namespace twk::cli
