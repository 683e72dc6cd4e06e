#include "world/lab_check.hpp"

#include <algorithm>
#include <memory>
#include <optional>
#include <set>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "creation/paths.hpp"
#include "platform/adsi.hpp"
#include "platform/ldap_text.hpp"
#include "session/session_settings.hpp"
#include "stores/site_store.hpp"
#include "stores/template_store.hpp"
#include "world/sample_lab.hpp"
#include "world/world.hpp"

namespace twk::world {
namespace {

namespace fs = std::filesystem;
using live::CheckStep;
using live::StepOutcome;

std::string list_text(const std::vector<std::string>& faults) {
  std::string text;
  for (const std::string& fault : faults)
    text += (text.empty() ? "" : "; ") + fault;
  return text;
}

std::string count_text(std::size_t count, const char* one, const char* several) {
  return std::to_string(count) + " " + (count == 1 ? one : several);
}

std::string remedy_for(const std::string& server) {
  return "`twk lab server add " + server + "`";
}

class LabCheck {
 public:
  LabCheck(fs::path folder, platform::Dialogs& dialogs, const std::function<void(const CheckStep&)>& tell)
      : folder_(std::move(folder)), dialogs_(dialogs), tell_(tell) {}

  std::vector<CheckStep> run() {
    step("configuration", true, [this] { return open_lab(); });
    step("directory", world_ != nullptr, [this] { return open_directory(); });
    step("Exchange", world_ != nullptr, [this] { return open_exchange(); });
    step("file servers", world_ != nullptr, [this] { return look_at_servers(); });
    step("database", world_ != nullptr, [this] { return read_database(); });
    step("sites", session_ != nullptr, [this] { return look_at_sites(); });
    step("templates", session_ != nullptr && directory_is_open_, [this] { return look_at_templates(); });
    return std::move(steps_);
  }

 private:
  /// What a step found: faults make it a warning.
  struct Finding {
    std::string detail;
    std::vector<std::string> faults = {};
  };

  void step(const char* name, bool reached, const std::function<Finding()>& look) {
    CheckStep step{name, StepOutcome::kSkipped, "not reached"};
    if (reached) {
      try {
        const Finding finding = look();
        step.outcome = finding.faults.empty() ? StepOutcome::kPassed : StepOutcome::kWarning;
        step.detail = finding.faults.empty() ? finding.detail : list_text(finding.faults);
      } catch (const base::RuntimeError& failure) {
        step.outcome = StepOutcome::kFailed;
        step.detail = failure.description();
      }
    }
    tell_(step);
    steps_.push_back(std::move(step));
  }

  Finding open_lab() {
    auto world = std::make_unique<World>(folder_, dialogs_,
                                         [this](const std::string& text) { repairs_.push_back(text); });
    world->choose_domain_and_database({});
    const lab::LabConfig& config = world->lab().config();
    world_ = std::move(world);
    return {lab::domain_name(config) + ", " + kind_text(config.kind) + ", controller " + config.controller};
  }

  Finding open_directory() {
    world_->lab().open_directory();
    directory_is_open_ = true;
    return {"domain.ldif and its journal read", std::exchange(repairs_, {})};
  }

  Finding open_exchange() {
    std::vector<std::string> names = names_in("exchange");
    std::erase_if(names, [](const std::string& name) {
      return !name.ends_with(".ldif") || name.ends_with(".journal.ldif");
    });
    for (std::string& name : names) {
      name.resize(name.size() - std::string_view(".ldif").size());
      mail_servers_.insert(base::upper(name));
      // The names of its entries are read with it.
      static_cast<void>(services().directory.GetObject("LDAP://" + name)->Class());
    }
    return {names.empty() ? "none" : list_text(names), std::exchange(repairs_, {})};
  }

  Finding look_at_servers() {
    Finding finding;
    const std::vector<std::string> names = names_in("servers");
    std::size_t shares = 0;
    for (const std::string& name : names) {
      servers_.insert(base::upper(name));
      shares += look_at_server(name, finding.faults);
    }
    finding.detail =
        count_text(names.size(), "server", "servers") + ", " + count_text(shares, "share", "shares");
    std::ranges::move(std::exchange(repairs_, {}), std::back_inserter(finding.faults));
    return finding;
  }

  /// The number of its shares, those of whole drives included.
  std::size_t look_at_server(const std::string& name, std::vector<std::string>& faults) {
    std::size_t shares = 0;
    std::size_t drives = 0;
    services()
        .directory.GetObject(platform::shares_path(name))
        ->enumerate({}, [&](const platform::ObjectPtr& share) {
          ++shares;
          const std::string share_name = share->Name();
          drives += share_name.size() == 2 && share_name.ends_with('$') ? 1 : 0;
          if (!services().files.is_directory("\\\\" + name + "\\" + share_name + "\\"))
            faults.push_back("\\\\" + name + "\\" + share_name + " leads to " +
                             platform::text_or_empty(*share, "Path") +
                             ", which is not there: make the folder or delete "
                             "the share");
          return true;
        });
    if (drives == 0)
      faults.push_back("\\\\" + name + " has no drive: make a folder such as servers/" + name + "/D");
    return shares;
  }

  Finding read_database() {
    auto session = std::make_unique<session::Session>(services(), "", world_->program_directory());
    session::read_session_settings(*session);
    sites_ = stores::read_sites(*session);
    stores::each_template(*session, [this](const records::TemplateRecord& /*record*/) {
      ++templates_;
      return false;
    });
    session_ = std::move(session);
    return {count_text(sites_.size(), "site", "sites") + ", " +
            count_text(templates_, "template", "templates")};
  }

  Finding look_at_sites() {
    Finding finding{count_text(sites_.size(), "site", "sites")};
    for (const records::SiteRecord& site : sites_) {
      const auto miss = [&](const std::string& what) {
        finding.faults.push_back("site \"" + std::string(base::trim(site.Name)) + "\": " + what);
      };
      const std::string server(base::trim(site.NTServer));
      if (!server.empty() && !has_server(server))
        miss(std::string("there is no file server ").append(server).append(": ").append(remedy_for(server)));
      const std::string mail(base::trim(site.ExchangeServer));
      if (!mail.empty() && !has_mail_server(mail, site.Exchange2000))
        miss("there is no Exchange server " + mail);
    }
    return finding;
  }

  Finding look_at_templates() {
    Finding finding{count_text(templates_, "template", "templates")};
    stores::each_template(*session_, [&](const records::TemplateRecord& one) {
      std::vector<std::string> names(one.Groups.begin(), one.Groups.begin() + one.GroupCount);
      names.push_back(one.PrimaryGroup);
      std::sort(names.begin(), names.end());
      names.erase(std::unique(names.begin(), names.end()), names.end());
      for (const std::string& group : names) {
        if (!base::trim(group).empty() && !has_group(group))
          finding.faults.push_back("template \"" + one.Name + "\": there is no group \"" + group + "\"");
      }
      for (const std::string* const path :
           {&one.ProfilePath, &one.HomeDir, &one.ProfileDirPath, &one.HomeDirPath}) {
        const std::string server = creation::Get_Server_Name(*path);
        if (!server.empty() && server.find('%') == base::npos && !has_server(server))
          finding.faults.push_back(std::string("template \"")
                                       .append(one.Name)
                                       .append("\": ")
                                       .append(*path)
                                       .append(" names the file server ")
                                       .append(server)
                                       .append(", which is not there: ")
                                       .append(remedy_for(server)));
      }
      return false;
    });
    return finding;
  }

  [[nodiscard]] bool has_server(std::string_view name) const {
    while (name.starts_with('\\'))
      name.remove_prefix(1);
    return servers_.contains(base::upper(name));
  }

  bool has_mail_server(const std::string& name, bool in_directory) {
    if (!in_directory)
      return mail_servers_.contains(base::upper(name));
    return finds("CN=Configuration,",
                 "(&(objectClass=msExchExchangeServer)(cn=" + platform::escape_filter_value(name) + "))");
  }

  bool has_group(const std::string& name) {
    if (!is_active_directory()) {
      base::Trap absent;
      return absent([&] {
        static_cast<void>(services().directory.GetObject(
            platform::winnt_path(world_->domain_names().nt_name, base::trim(name)) + ",group"));
      });
    }
    const std::string value = platform::escape_filter_value(base::trim(name));
    return finds("", "(&(objectClass=group)(|(cn=" + value + ")(sAMAccountName=" + value + ")))");
  }

  /// True when the directory has such an entry at the domain or, with a prefix, at a naming context below it.
  bool finds(const std::string& prefix, const std::string& filter) {
    const std::string name = world_->domain_names().name;
    std::string dn = prefix;
    for (const std::string& label : base::split(name, '.'))
      dn += (dn.empty() || dn.ends_with(',') ? "DC=" : ",DC=") + label;
    return !services()
                .query.execute({"LDAP://" + name + "/" + dn, filter, {"cn"}, platform::Scope::kSubtree}, {})
                ->at_eof();
  }

  [[nodiscard]] bool is_active_directory() const { return world_->domain_names().active_directory; }
  [[nodiscard]] const platform::Platform& services() const { return world_->services(); }

  /// What a folder of the lab holds; nothing for a folder that it lacks.
  [[nodiscard]] std::vector<std::string> names_in(const char* part) const {
    std::vector<std::string> names;
    std::error_code failed;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder_ / part, failed))
      names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
  }

  fs::path folder_;
  platform::Dialogs& dialogs_;
  const std::function<void(const CheckStep&)>& tell_;
  std::vector<CheckStep> steps_;
  std::vector<std::string> repairs_;
  std::unique_ptr<World> world_;
  bool directory_is_open_ = false;
  std::unique_ptr<session::Session> session_;
  std::set<std::string> servers_;  ///< in capitals, like the next
  std::set<std::string> mail_servers_;
  std::vector<records::SiteRecord> sites_;
  std::size_t templates_ = 0;
};

}  // namespace

std::vector<CheckStep> check_lab(const fs::path& folder, platform::Dialogs& dialogs,
                                 const std::function<void(const CheckStep&)>& tell) {
  return LabCheck(folder, dialogs, tell).run();
}

}  // namespace twk::world
