#include "live/domain/connection_check.hpp"

#include <cstdlib>
#include <ctime>
#include <optional>

#include "ads/dn.hpp"
#include "ads/schema.hpp"
#include "base/dates.hpp"
#include "base/text.hpp"
#include "live/domain/delegated_rights.hpp"
#include "live/domain/live_domain.hpp"
#include "live/domain/locate_controller.hpp"
#include "live/domain/netlogon_ping.hpp"
#include "live/logon/network_probe.hpp"
#include "platform/directory.hpp"

namespace twk::live {
namespace {

constexpr std::uint16_t kFileSharingPort = 445;  // of SMB, the way to reach an NT domain

constexpr const char* kAboutNames =
    ". Check the name, and whether this workstation asks the domain's own name service (resolv.conf)";
constexpr const char* kAboutPorts =
    ". Check that this is the server's name and port, that it is on, and that no firewall is between";

/// What a step found: its detail and its outcome when it passes.
struct Finding {
  std::string detail;
  StepOutcome outcome = StepOutcome::kPassed;
};

/// "CN=DC1,CN=Servers,CN=London,CN=Sites,…" is in "London".
std::string site_of_server(std::string_view dn) {
  constexpr std::size_t kSite = 2;
  const std::vector<std::string_view> parts = ads::split_dn(dn);
  return parts.size() > kSite ? ads::parse_rdn(parts[kSite]).value : std::string();
}

/// Seconds since 1970 of a directory's time, "20260131093000.0Z"; none for anything else.
std::optional<std::int64_t> seconds_of(const std::string& time) {
  constexpr std::int64_t kPerSecond = 10'000'000;
  constexpr std::int64_t kSeconds1601To1970 = 11'644'473'600;
  const platform::Value moment = ads::to_value(ads::find_attribute("whenCreated"), time);
  const auto* const date = std::get_if<base::Date>(&moment.data);
  return date == nullptr ? std::nullopt
                         : std::optional(base::to_filetime(*date) / kPerSecond - kSeconds1601To1970);
}

/// "2 min 5 s"
std::string span_text(std::int64_t seconds) {
  constexpr std::int64_t kMinute = 60;
  return base::to_text(seconds / kMinute) + " min " + base::to_text(seconds % kMinute) + " s";
}

std::string count_text(std::size_t count) {
  return base::to_text(static_cast<std::int64_t>(count)) + (count == 1 ? " controller" : " controllers");
}

class Check {
 public:
  Check(const LiveSettings& settings, const Prompts& prompts, std::string place, bool delegated,
        const std::function<void(const CheckStep&)>& tell)
      : domain_(settings, prompts), place_(std::move(place)), delegated_(delegated), tell_(tell) {}

  std::vector<CheckStep> run() {
    const bool directory = domain_.has_directory();
    const bool ticket = settings().logon == LiveSettings::Logon::kTicket;
    bool reached = step([&] { return look_up(); }, kAboutNames);
    reached = needs(reached) && step([&] { return try_port(); }, kAboutPorts);
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
    else if (needs(true))
      reached = step([&] { return look_at_ticket(); }) && reached;
    reached = needs(reached) && step([&] { return bind(); });
    for (const auto look :
         {&Check::look_at_rights, &Check::compare_clocks, &Check::look_at_site, &Check::try_catalogue}) {
      if (needs(reached))
        step([&] { return (this->*look)(); });
    }
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
  /// Skips the next step when an earlier one failed, or the person has had enough.
  bool needs(bool reached) {
    const bool stopped = domain_.credentials().is_stopped();
    if (!reached || stopped)
      skip(stopped ? "stopped" : "not reached");
    return reached && !stopped;
  }

  /// A failure says what it is, and `remedy`.
  bool step(const std::function<Finding()>& look, const std::string& remedy = {}) {
    base::Trap trap;
    Finding finding;
    if (!trap([&] { finding = look(); })) {
      add(StepOutcome::kFailed, trap.description() + remedy);
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
    if (ticket.is_about_to_end()) {
      return {ticket.principal() + ", which ends at " + ticket.end_text() +
                  ": file servers want one that lasts five minutes more. Renew it with `kinit`",
              StepOutcome::kWarning};
    }
    return {ticket.principal() + ", until " + ticket.end_text()};
  }

  Finding bind() {
    domain_.ldap().open();
    const bool ticket = settings().logon == LiveSettings::Logon::kTicket;
    return {"logged on as " + (ticket ? domain_.credentials().ticket().principal() : settings().user)};
  }

  Finding look_at_rights() {
    const std::string place = place_.empty() ? "CN=Users," + domain_.root_dn() : place_;
    Rights rights;
    base::Trap trap;
    if (!trap([&] { rights = read_rights(domain_.ldap(), place); })) {
      const bool missing = trap.number() == platform::ads_error::kNoSuchObject;
      base::raise(trap.number(),
                  missing ? "there is no " + place + "; `twk ou list` shows the units" : trap.description());
    }
    if (!rights.user.empty()) {
      rights.deletes = domain_.deletes(rights.user);
      rights.sets_password = domain_.sets_password(rights.user);
    }
    const std::string text = in_words(rights, place);
    if (rights.creates("user") || (delegated_ && !rights.are_none()))
      return {text};
    return {"may read the domain, but has too few rights to create users in " + place +
                (rights.are_none() ? std::string() : "; " + text),
            StepOutcome::kWarning};
  }

  /// Kerberos refuses clocks that differ by more than five minutes.
  Finding compare_clocks() {
    constexpr std::int64_t kFew = 60;
    const std::string there = domain_.ldap().read("", {"currentTime"}).first("currentTime");
    const auto seconds = seconds_of(there);
    if (!seconds)
      return {host_ + " does not tell the time", StepOutcome::kWarning};
    const std::int64_t ahead = *seconds - std::time(nullptr);
    if (std::abs(ahead) < kFew)
      return {"differs from that of " + host_ + " by less than a minute"};
    return {
        "the clock of " + host_ + " is " + span_text(std::abs(ahead)) +
            (ahead > 0 ? " ahead of" : " behind") +
            " that of this workstation; Kerberos refuses more than 5 minutes: let both take their time from "
            "the same source",
        StepOutcome::kWarning};
  }

  /// The site of the controller, and whether the name service knows its controllers.
  Finding look_at_site() {
    const std::string server = domain_.ldap().read("", {"serverName"}).first("serverName");
    const std::string site = site_of_server(server);
    if (site.empty())
      return {host_ + " does not tell its site", StepOutcome::kWarning};
    SrvAnswer how{};
    const std::string record = "_ldap._tcp." + site + "._sites.dc._msdcs." + settings().domain;
    const std::size_t count = look_up_srv(record, &how).size();
    const auto answer = ping_controllers({host_}, settings().domain).front();
    std::string where = host_ + " is in the site " + site;
    if (answer && !answer->own_site.empty() && !base::equals_fold(answer->own_site, site))
      where = "this workstation is in the site " + answer->own_site + "; " + where;
    if (how == SrvAnswer::kNone) {
      return {where + ", for which the name service has no controller: the record " + record + " is missing",
              StepOutcome::kWarning};
    }
    return {how == SrvAnswer::kSilence ? where + "; no name service was asked for its controllers"
                                       : where + ", in which the name service has " + count_text(count)};
  }

  Finding try_catalogue() {
    const std::string port = base::to_text(domain_.catalogue_port());
    const std::string why = why_no_answer(host_, domain_.catalogue_port(), connect_timeout(settings()));
    if (why.empty())
      return {"port " + port + " answers"};
    return {"no answer from the global catalogue of " + host_ + " on port " + port + ": " + why +
                ". Users and groups are loaded from the directory itself, other domains of the forest not at "
                "all; "
                "open the port or name another controller",
            StepOutcome::kWarning};
  }

  LiveDomain domain_;
  std::string place_;
  bool delegated_;
  const std::function<void(const CheckStep&)>& tell_;
  std::string host_;
  std::vector<CheckStep> steps_;
};

}  // namespace

std::vector<CheckStep> check_connection(const LiveSettings& settings, const Prompts& prompts,
                                        const CheckedPlace& place,
                                        const std::function<void(const CheckStep&)>& tell) {
  return Check(settings, prompts, place.dn, place.delegated, tell).run();
}

}  // namespace twk::live
