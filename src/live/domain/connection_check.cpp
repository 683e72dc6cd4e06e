#include "live/domain/connection_check.hpp"

#include <algorithm>
#include <optional>

#include "base/text.hpp"
#include "live/domain/live_domain.hpp"
#include "live/logon/network_probe.hpp"
#include "platform/directory.hpp"

namespace twk::live {
namespace {

constexpr std::uint16_t kFileSharingPort = 445;  // of SMB, the way to reach an NT domain

/// What a step found: its detail and its outcome when it passes.
struct Finding {
  std::string detail;
  StepOutcome outcome = StepOutcome::kPassed;
};

class Check {
 public:
  Check(const LiveSettings& settings, const Prompts& prompts, std::string place,
        const std::function<void(const CheckStep&)>& tell)
      : domain_(settings, prompts), place_(std::move(place)), tell_(tell) {}

  std::vector<CheckStep> run() {
    const bool directory = domain_.has_directory();
    const bool ticket = settings().logon == LiveSettings::Logon::kTicket;
    bool reached = step([&] { return look_up(); });
    reached = needs(reached) && step([&] { return try_port(); });
    if (!directory) {
      skip_rest("an NT domain has no directory");
      return std::move(steps_);
    }
    if (ticket)
      skip("not used: the ticket seals the connection");
    else
      reached = needs(reached) && step([&] { return try_tls(); });
    if (!ticket)
      skip("not used: user and password log on");
    else
      reached = step([&] { return look_at_ticket(); }) && reached;
    reached = needs(reached) && step([&] { return bind(); });
    if (needs(reached))
      step([&] { return look_at_rights(); });
    return std::move(steps_);
  }

 private:
  [[nodiscard]] const LiveSettings& settings() { return domain_.settings(); }
  [[nodiscard]] std::uint16_t port() {
    return domain_.has_directory() ? ldap_port(settings(), settings().port) : kFileSharingPort;
  }

  void add(StepOutcome outcome, std::string detail) {
    steps_.push_back({check_step_names().at(steps_.size()), outcome, std::move(detail)});
    if (tell_)
      tell_(steps_.back());
  }
  void skip(const std::string& why) { add(StepOutcome::kSkipped, why); }
  void skip_rest(const std::string& why) {
    while (steps_.size() < check_step_names().size())
      skip(why);
  }
  /// Skips the next step when an earlier one failed.
  bool needs(bool reached) {
    if (!reached)
      skip("not reached");
    return reached;
  }

  bool step(const std::function<Finding()>& look) {
    base::Trap trap;
    Finding finding;
    if (!trap([&] { finding = look(); })) {
      add(StepOutcome::kFailed, trap.description());
      return false;
    }
    add(finding.outcome, finding.detail);
    return true;
  }

  Finding look_up() {
    const bool located = domain_.has_directory() || !settings().server.empty();
    host_ = located ? domain_.controller() : settings().domain;
    const std::vector<std::string> addresses = resolve_host(host_);
    std::string text = host_ + " is";
    for (const std::string& address : addresses) {
      if (text.find(" " + address) == base::npos)
        text += " " + address;
    }
    return {text};
  }

  Finding try_port() {
    const std::string why = why_no_answer(host_, port(), connect_timeout(settings()));
    if (!why.empty())
      base::raise(platform::ads_error::kServerDown,
                  "No answer from " + host_ + " on port " + base::to_text(port()) + ": " + why);
    return {"port " + base::to_text(port()) + " answers"};
  }

  Finding try_tls() {
    connect_ldap(settings(), host_, settings().port);
    return {std::string(settings().tls == LiveSettings::Tls::kLdaps ? "LDAPS" : "StartTLS") +
            ", the certificate is good"};
  }

  Finding look_at_ticket() {
    const Ticket& ticket = domain_.credentials().ticket();
    return {ticket.principal() + ", until " + ticket.end_text()};
  }

  Finding bind() {
    domain_.ldap().open();
    const bool ticket = settings().logon == LiveSettings::Logon::kTicket;
    return {"logged on as " + (ticket ? domain_.credentials().ticket().principal() : settings().user)};
  }

  Finding look_at_rights() {
    const std::string place = place_.empty() ? "CN=Users," + domain_.root_dn() : place_;
    const LdapEntry entry = domain_.ldap().read(place, {"allowedChildClassesEffective"});
    const auto* const classes = entry.find("allowedChildClassesEffective");
    if (classes != nullptr && std::find(classes->begin(), classes->end(), "user") != classes->end())
      return {"may create users in " + place};
    return {"may read the domain, but has too few rights to create users in " + place, StepOutcome::kWarning};
  }

  LiveDomain domain_;
  std::string place_;
  const std::function<void(const CheckStep&)>& tell_;
  std::string host_;
  std::vector<CheckStep> steps_;
};

}  // namespace

std::vector<CheckStep> check_connection(const LiveSettings& settings, const Prompts& prompts,
                                        const std::string& place,
                                        const std::function<void(const CheckStep&)>& tell) {
  return Check(settings, prompts, place, tell).run();
}

}  // namespace twk::live
