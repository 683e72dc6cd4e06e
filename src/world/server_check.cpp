#include "world/server_check.hpp"

#include <algorithm>
#include <memory>
#include <set>
#include <string>

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "live/terms/error_numbers.hpp"
#include "session/session.hpp"
#include "session/session_settings.hpp"
#include "stores/site_store.hpp"
#include "stores/template_store.hpp"
#include "world/template_places.hpp"

namespace twk::world {
namespace {

using live::CheckStep;
using live::StepOutcome;

/// "\\FS1\D$\Users" of "D:\Users" on FS1.
std::string administrative_path(const std::string& server, const std::string& folder) {
  return "\\\\" + server + "\\" + folder.substr(0, 1) + "$" + folder.substr(2);
}

class ServerCheck {
 public:
  ServerCheck(World& world, const std::function<void(const CheckStep&)>& tell) : world_(world), tell_(tell) {}

  std::vector<CheckStep> run() {
    base::Trap unread;
    if (!unread([&] { read_database(); })) {
      add({"file servers", StepOutcome::kFailed,
           "the database cannot be read: " + base::in_words(unread.number(), unread.description())});
      return std::move(steps_);
    }
    for (const std::string& server : servers_)
      look_at(server);
    if (servers_.empty())
      add({"file servers", StepOutcome::kSkipped, "no site of the database names one"});
    return std::move(steps_);
  }

 private:
  void add(CheckStep step) {
    tell_(step);
    steps_.push_back(std::move(step));
  }

  void read_database() {
    session::Session session(services(), "", world_.program_directory());
    session::read_session_settings(session);
    std::set<std::string> known;
    for (const records::SiteRecord& site : stores::read_sites(session)) {
      std::string_view server = base::trim(site.NTServer);
      server.remove_prefix(std::min(server.find_first_not_of('\\'), server.size()));
      if (!server.empty() && known.insert(base::upper(server)).second)
        servers_.emplace_back(server);
    }
    known.clear();
    stores::each_template(session, [&](const records::TemplateRecord& record) {
      makes_shares_ =
          makes_shares_ || !base::trim(record.HomeShare).empty() || !base::trim(record.ProfileShare).empty();
      for (TemplatePlace& place : places_of_template(record)) {
        if (known.insert(base::upper(place.folder + "|" + place.share)).second)
          places_.push_back(std::move(place));
      }
      return false;
    });
  }

  void look_at(const std::string& server) {
    CheckStep step{"file server " + server, StepOutcome::kPassed, {}};
    base::Trap trap;
    std::set<std::string> shares;
    if (!trap([&] { shares = shares_of(server); })) {
      if (trap.number() == live::kStopped)
        return add({step.name, StepOutcome::kSkipped, "stopped"});
      step.outcome = StepOutcome::kFailed;
      step.detail = "its shares cannot be read: " + base::in_words(trap.number(), trap.description());
      return add(std::move(step));
    }
    std::vector<std::string> faults;
    std::size_t drives = 0;
    if (!trap([&] { drives = look_at_drives(server, faults); }))
      faults.push_back("its folders cannot be looked at: " +
                       base::in_words(trap.number(), trap.description()));
    look_at_shares(server, shares, faults);
    if (makes_shares_ && !trap([&] { services().network.require_share_rights(server); }))
      faults.push_back(base::in_words(trap.number(), trap.description()));
    step.outcome = faults.empty() ? StepOutcome::kPassed : StepOutcome::kWarning;
    step.detail = "logged on";
    if (faults.empty() && !places_.empty())
      step.detail += "; the folders and shares of the templates are there";
    if (faults.empty() && drives == 0)
      step.detail += "; no template says which drives are used";
    for (const std::string& fault : faults)
      step.detail += "; " + fault;
    add(std::move(step));
  }

  std::set<std::string> shares_of(const std::string& server) {
    std::set<std::string> names;
    for (const platform::ShareInfo502& share : services().network.NetShareEnum(server))
      names.insert(base::upper(share.shi502_netname));
    return names;
  }

  /// The number of drives that templates name; each is tried once, and its folders only if it opens.
  std::size_t look_at_drives(const std::string& server, std::vector<std::string>& faults) {
    std::set<std::string> open;
    std::set<std::string> tried;
    for (const TemplatePlace& place : places_) {
      if (place.folder.size() < 2 || place.folder[1] != ':')
        continue;
      const std::string drive = administrative_path(server, base::upper(place.folder.substr(0, 2)));
      if (tried.insert(drive).second && opens(drive, faults))
        open.insert(drive);
      const std::string folder = administrative_path(server, place.folder);
      if (open.contains(drive) && !services().files.is_directory(folder))
        faults.push_back("there is no folder " + folder + ": make it, or import with --make-parents");
    }
    return tried.size();
  }

  bool opens(const std::string& drive, std::vector<std::string>& faults) {
    base::Trap trap;
    if (trap([&] { static_cast<void>(services().files.list(drive)); }))
      return true;
    const std::string reason = base::in_words(trap.number(), trap.description());
    faults.push_back(
        drive + " does not open: " + reason +
        ". New folders are made through it: log on as an administrator of the server; on a Samba "
        "server it must be defined in its configuration");
    return false;
  }

  void look_at_shares(const std::string& server, const std::set<std::string>& shares,
                      std::vector<std::string>& faults) {
    for (const TemplatePlace& place : places_) {
      if (!place.share.empty() && !shares.contains(base::upper(place.share))) {
        faults.push_back("there is no share " + place.share + ": twk share add " + server + " '" +
                         place.share + "' '" + place.folder + "'");
      }
    }
  }

  [[nodiscard]] const platform::Platform& services() const { return world_.services(); }

  World& world_;
  const std::function<void(const CheckStep&)>& tell_;
  std::vector<CheckStep> steps_;
  std::vector<std::string> servers_;
  std::vector<TemplatePlace> places_;
  bool makes_shares_ = false;  ///< a template makes some for each user
};

}  // namespace

std::vector<CheckStep> check_servers(World& world, const std::function<void(const CheckStep&)>& tell) {
  return ServerCheck(world, tell).run();
}

}  // namespace twk::world
