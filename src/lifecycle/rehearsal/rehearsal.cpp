#include "lifecycle/rehearsal/rehearsal.hpp"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "creation/command_text.hpp"
#include "lifecycle/rehearsal/rehearsed_directory.hpp"

namespace twk::lifecycle {
namespace {

using platform::FileEntry;

class Nowhere final : public platform::AppendFile {
 public:
  void write(std::string_view /*bytes*/) override {}
};

std::string folded(std::string_view path) {
  std::string text = base::upper(path);
  while (text.ends_with('\\'))
    text.pop_back();
  return text;
}

/// Shares that would be made, and how to reach their folders until then.
class RehearsedShares {
 public:
  void add(std::string_view server, const platform::ShareInfo502& share) {
    const std::string& folder = share.shi502_path;
    if (folder.size() < 2 || folder[1] != ':')
      return;
    std::string host(server);
    host.erase(0, host.find_first_not_of('\\'));
    const std::string way = "\\\\" + host + "\\";
    ways_[folded(way + share.shi502_netname) + "\\"] = way + folder.substr(0, 1) + "$" + folder.substr(2);
  }
  /// The path itself, unless it begins with such a share.
  [[nodiscard]] std::string way_of(std::string_view path) const {
    const std::string text = folded(path) + "\\";
    for (const auto& [share, way] : ways_) {
      if (text.starts_with(share))
        return way + std::string(path.substr(std::min(path.size(), share.size() - 1)));
    }
    return std::string(path);
  }

 private:
  std::map<std::string, std::string> ways_;
};

/// Remembers the folders that would be made, removed and renamed.
class RehearsedFiles final : public platform::Files {
 public:
  RehearsedFiles(platform::Files& real, const RehearsedShares& shares, const Rehearsal::Tell& tell)
      : real_(real), shares_(shares), tell_(tell) {}

  bool exists(std::string_view path) override {
    const std::string way = shares_.way_of(path);
    const auto place = now(way);
    return made_.contains(folded(way)) || (place && real_.exists(*place));
  }
  bool is_directory(std::string_view path) override {
    const std::string way = shares_.way_of(path);
    const auto place = now(way);
    return made_.contains(folded(way)) || (place && real_.is_directory(*place));
  }
  void make_directory(std::string_view path) override {
    const std::size_t slash = path.find_last_of('\\');
    if (slash != base::npos && !is_directory(path.substr(0, slash)))
      base::raise(base::error::kPathNotFound, "There is no folder " + std::string(path.substr(0, slash)));
    tell_("Make the folder " + std::string(path));
    made_.insert(folded(shares_.way_of(path)));
  }
  std::vector<FileEntry> list(std::string_view path) override {
    const std::string way = shares_.way_of(path);
    return made_.contains(folded(way)) ? std::vector<FileEntry>() : real_.list(now(way).value_or(way));
  }
  FileEntry status(std::string_view path) override {
    const std::string way = shares_.way_of(path);
    if (made_.contains(folded(way)))
      return FileEntry{.name = {}, .directory = true};
    const auto place = now(way);
    if (!place)
      base::raise(base::error::kFileNotFound, std::string(path) + " would be gone");
    return real_.status(*place);
  }
  void remove_directory(std::string_view path) override {
    tell_("Remove the folder " + std::string(path));
    made_.erase(folded(path));
    gone_.insert(folded(path));
  }
  std::string read(std::string_view path) override { return real_.read(path); }
  void write(std::string_view path, std::string_view /*bytes*/) override {
    tell_("Write the file " + std::string(path));
  }
  void remove(std::string_view path) override { tell_("Remove the file " + std::string(path)); }
  bool copy_file(std::string_view from, std::string_view to, bool /*replace*/,
                 const platform::CopyProgress& /*progress*/) override {
    tell_("Copy the file " + std::string(from) + " to " + std::string(to));
    return true;
  }
  void rename(std::string_view from, std::string_view to, bool /*replace*/) override {
    tell_("Rename " + std::string(from) + " to " + std::string(to));
    renamed_.emplace_back(from, to);
  }
  std::unique_ptr<platform::AppendFile> open_append(std::string_view /*path*/, bool /*truncate*/) override {
    return std::make_unique<Nowhere>();
  }
  std::unique_ptr<platform::RandomFile> open_random(std::string_view path) override {
    return real_.open_random_read(path);
  }
  std::unique_ptr<platform::RandomFile> open_random_read(std::string_view path) override {
    return real_.open_random_read(path);
  }

 private:
  static bool lies_in(std::string_view path, std::string_view folder) {
    return (folded(path) + "\\").starts_with(folded(folder) + "\\");
  }
  /// Where a path leads while nothing has been renamed; none for what would be gone.
  [[nodiscard]] std::optional<std::string> now(const std::string& path) const {
    if (gone_.contains(folded(path)))
      return std::nullopt;
    std::string place = path;
    for (auto one = renamed_.rbegin(); one != renamed_.rend(); ++one) {
      if (lies_in(place, one->second))
        place = one->first + place.substr(one->second.size());
      else if (lies_in(place, one->first))
        return std::nullopt;
    }
    return place;
  }

  platform::Files& real_;
  const RehearsedShares& shares_;
  const Rehearsal::Tell& tell_;
  std::set<std::string> made_;
  std::set<std::string> gone_;
  std::vector<std::pair<std::string, std::string>> renamed_;  ///< from and to, in order
};

class RehearsedNetwork final : public platform::Network {
 public:
  RehearsedNetwork(platform::Network& real, RehearsedShares& shares, const Rehearsal::Tell& tell)
      : real_(real), shares_(shares), tell_(tell) {}

  std::string NetGetDCName(std::string_view server, std::string_view domain) override {
    return real_.NetGetDCName(server, domain);
  }
  void NetShareAdd(std::string_view server, const platform::ShareInfo502& share) override {
    tell_("Make the share " + share.shi502_netname + " on " + std::string(server) + " for " +
          share.shi502_path);
    shares_.add(server, share);
    changed_[key(server, share.shi502_netname)] = share;
  }
  platform::ShareInfo502 NetShareGetInfo(std::string_view server, std::string_view name) override {
    const auto changed = changed_.find(key(server, name));
    if (changed == changed_.end())
      return real_.NetShareGetInfo(server, name);
    if (!changed->second)
      base::raise(platform::network_error::kShareNotFound,
                  "The share " + std::string(name) + " would be gone");
    return *changed->second;
  }
  std::vector<platform::ShareInfo502> NetShareEnum(std::string_view server) override {
    return real_.NetShareEnum(server);
  }
  void NetShareDel(std::string_view server, std::string_view name) override {
    tell_("Delete the share " + std::string(name) + " on " + std::string(server));
    changed_[key(server, name)] = std::nullopt;
  }
  void WTSSetUserConfig(std::string_view /*server*/, std::string_view user,
                        platform::WtsConfigClass /*setting*/,
                        const platform::WtsConfigValue& /*value*/) override {
    tell_("Set a terminal-server setting of " + std::string(user));
  }
  platform::WtsConfigValue WTSQueryUserConfig(std::string_view server, std::string_view user,
                                              platform::WtsConfigClass setting) override {
    return real_.WTSQueryUserConfig(server, user, setting);
  }

 private:
  static std::string key(std::string_view server, std::string_view share) {
    return base::upper(server) + "\\" + base::upper(share);
  }

  platform::Network& real_;
  RehearsedShares& shares_;
  const Rehearsal::Tell& tell_;
  std::map<std::string, std::optional<platform::ShareInfo502>> changed_;  ///< none for one that would be gone
};

/// A folder that would be made has no list to read yet.
class RehearsedSecurity final : public platform::Security {
 public:
  RehearsedSecurity(platform::Security& real, platform::Files& files, const Rehearsal::Tell& tell)
      : real_(real), files_(files), tell_(tell) {}

  platform::AccountSid LookupAccountName(std::string_view server, std::string_view account) override {
    return real_.LookupAccountName(server, account);
  }
  std::string LookupAccountSid(std::string_view server, const platform::Sid& sid) override {
    return real_.LookupAccountSid(server, sid);
  }
  std::vector<platform::Sid> account_identifiers(std::string_view account) override {
    return real_.account_identifiers(account);
  }
  platform::SecurityDescriptor GetFileSecurity(std::string_view path, std::uint32_t parts,
                                               std::size_t buffer) override {
    return files_.exists(path) ? real_.GetFileSecurity(path, parts, buffer) : platform::SecurityDescriptor{};
  }
  void SetFileSecurity(std::string_view path, std::uint32_t parts,
                       const platform::SecurityDescriptor& /*descriptor*/) override {
    std::string text =
        (parts == platform::security_information::kOwner ? "Set the owner of " : "Set permissions on ") +
        std::string(path);
    if (text == told_)
      return;
    tell_(text);
    told_ = std::move(text);
  }
  std::unique_ptr<platform::ProcessToken> OpenProcessToken() override { return real_.OpenProcessToken(); }
  std::uint64_t LookupPrivilegeValue(std::string_view name) override {
    return real_.LookupPrivilegeValue(name);
  }

 private:
  platform::Security& real_;
  platform::Files& files_;
  const Rehearsal::Tell& tell_;
  std::string told_;  ///< last report; each row of a table rewrites the list of the same folder
};

class RehearsedProcess final : public platform::Process {
 public:
  RehearsedProcess(platform::Process& real, const Rehearsal::Tell& tell) : real_(real), tell_(tell) {}
  std::string cannot_start(const std::vector<std::string>& words) override {
    return real_.cannot_start(words);
  }
  platform::ProgramResult run(const std::vector<std::string>& words, bool /*wait*/,
                              std::int16_t /*window_style*/) override {
    if (std::string refusal = cannot_start(words); !refusal.empty())
      return {0, std::move(refusal)};
    tell_("Run " + creation::shown_command(words));
    return {.number = 1};
  }

 private:
  platform::Process& real_;
  const Rehearsal::Tell& tell_;
};

/// Settings stay as they are; no report is needed.
class RehearsedRegistry final : public platform::RegistryAccess {
 public:
  explicit RehearsedRegistry(platform::RegistryAccess& real) : real_(real) {}
  bool Reg_Read(std::uint32_t hive, std::string_view key, std::string_view name,
                std::string& value) override {
    return real_.Reg_Read(hive, key, name, value);
  }
  bool Reg_Write(std::uint32_t /*hive*/, std::string_view /*key*/, std::string_view /*name*/,
                 std::string_view /*value*/) override {
    return true;
  }

 private:
  platform::RegistryAccess& real_;
};

}  // namespace

struct Rehearsal::Services {
  Services(const platform::Platform& real_services, Tell teller)
      : tell(std::move(teller)),
        real(real_services),
        registry(real.registry),
        directory(real.directory, tell),
        files(real.files, shares, tell),
        network(real.network, shares, tell),
        security(real.security, real.files, tell),
        process(real.process, tell) {}

  Tell tell;
  platform::Platform real;
  RehearsedRegistry registry;
  RehearsedDirectory directory;
  RehearsedShares shares;
  RehearsedFiles files;
  RehearsedNetwork network;
  RehearsedSecurity security;
  RehearsedProcess process;
};

Rehearsal::Rehearsal(const platform::Platform& services, Tell tell)
    : rehearsed_(std::make_unique<Services>(services, std::move(tell))) {}

Rehearsal::~Rehearsal() = default;

platform::Platform Rehearsal::services() {
  Services& rehearsed = *rehearsed_;
  return {rehearsed.registry,         rehearsed.directory,  rehearsed.real.query,     rehearsed.files,
          rehearsed.network,          rehearsed.security,   rehearsed.real.mailboxes, rehearsed.process,
          rehearsed.real.environment, rehearsed.real.clock, rehearsed.real.dialogs};
}

}  // namespace twk::lifecycle
