#include "lab/lab_security.hpp"

#include "lab/errors.hpp"

namespace twk::lab {
namespace {

[[noreturn]] void not_yet() {
  raise(ads_error::kNotImplementedByProvider, "The lab does not do that");
}

}  // namespace

platform::AccountSid LabSecurity::LookupAccountName(std::string_view, std::string_view) {
  not_yet();
}
std::string LabSecurity::LookupAccountSid(std::string_view, const platform::Sid&) {
  not_yet();
}
std::vector<platform::Sid> LabSecurity::account_identifiers(std::string_view) {
  not_yet();
}
platform::SecurityDescriptor LabSecurity::GetFileSecurity(std::string_view, std::uint32_t, std::size_t) {
  not_yet();
}
void LabSecurity::SetFileSecurity(std::string_view, std::uint32_t, const platform::SecurityDescriptor&) {
  not_yet();
}
std::unique_ptr<platform::ProcessToken> LabSecurity::OpenProcessToken() {
  raise(ads_error::kNotImplementedByProvider, domain_.root_dn);
}
std::uint64_t LabSecurity::LookupPrivilegeValue(std::string_view) {
  not_yet();
}

}  // namespace twk::lab
