#include "live/rpc/logon_service.hpp"

#include "base/errors.hpp"
#include "live/rpc/ndr.hpp"
#include "platform/network.hpp"

namespace twk::live {

std::string LogonService::get_dc_name(std::string_view domain) {
  constexpr std::uint32_t kNetrGetDCName = 11;
  NdrWriter writer;
  writer.text("\\\\" + pipe_.host());
  writer.pointer(!domain.empty());
  if (!domain.empty())
    writer.text(domain);
  const base::Bytes answer = pipe_.call_again(kNetrGetDCName, writer.bytes());
  NdrReader reader(answer);
  std::string name;
  if (reader.pointer())
    name = reader.text();
  if (reader.number() != 0 || name.empty()) {
    base::raise(platform::network_error::kControllerNotFound,
                "There is no domain controller for " + std::string(domain));
  }
  return name;
}

}  // namespace twk::live
