#include "creation/share_rights.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "creation/creation_run.hpp"
#include "platform/directory.hpp"
#include "platform/security.hpp"
#include "session/session.hpp"
#include "stores/site_store.hpp"
#include "stores/template_store.hpp"

namespace twk::creation {
namespace {

constexpr std::uint32_t kLogonFailure = 1326;  // ERROR_LOGON_FAILURE, [MS-ERREF] 2.2

void require_rights(session::Session& session, const TemplateValues& values, const std::string& server) {
  if (server.empty() || (values.HomeShare.empty() && values.ProfileShare.empty()))
    return;
  if (const std::string why = refusal_of_shares(session, server); !why.empty())
    base::raise(platform::security_error::kAccessDenied, why);
}

}  // namespace

std::string refusal_of_shares(session::Session& session, const std::string& server) {
  base::Trap trap;
  trap([&] { session.platform.network.require_share_rights(server); });
  const bool refused = trap.number() == platform::security_error::kAccessDenied ||
                       trap.number() == kLogonFailure || trap.number() == platform::ads_error::kLogonFailure;
  return refused ? trap.description() : std::string();
}

void RequireShareRights(CreationRun& run) {
  if (run.request.stages.shares)
    require_rights(run.session, run.user_template, run.site.server);
}

void require_share_rights(session::Session& session, std::string_view template_name,
                          std::string_view site_name) {
  const auto site = stores::live_site(session, base::trim(site_name));
  if (!site)
    return;
  stores::each_template(session, [&](const records::TemplateRecord& record) {
    const bool found = base::equals_fold(base::trim(record.Name), base::trim(template_name));
    if (found)
      require_rights(session, values_of(record), values_of(*site).server);
    return found;
  });
}

}  // namespace twk::creation
