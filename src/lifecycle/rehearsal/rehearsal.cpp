#include "lifecycle/rehearsal/rehearsal.hpp"

#include <algorithm>
#include <functional>
#include <optional>
#include <set>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "creation/command_text.hpp"
#include "lifecycle/rehearsal/folder_names.hpp"
#include "lifecycle/rehearsal/rehearsed_directory.hpp"
#include "lifecycle/rehearsal/rehearsed_query.hpp"
#include "lifecycle/rehearsal/rehearsed_security.hpp"
#include "lifecycle/rehearsal/trial_directory.hpp"
#include "platform/adsi.hpp"
#include "platform/foreseen_write.hpp"
#include "platform/network_path.hpp"
#include "platform/share_name.hpp"
#include "records/terminal_server_rows.hpp"

namespace twk::lifecycle {
namespace {

using platform::FileEntry;

class Nowhere final : public platform::AppendFile {
 public:
  void write(std::string_view /*bytes*/) override {}
};

std::string folded_folder(std::string_view path) {
  std::string text = base::upper(path);
  while (text.ends_with('\\'))
    text.pop_back();
  return text;
}

/// Texts of which only their 64-bit hashes are kept: a file of 100,000 users makes that many folders.
class HashedTexts {
 public:
  void insert(std::string_view text) { hashes_.insert(hash_(text)); }
  void erase(std::string_view text) { hashes_.erase(hash_(text)); }
  [[nodiscard]] bool contains(std::string_view text) const { return hashes_.contains(hash_(text)); }

 private:
  std::hash<std::string_view> hash_;
  std::unordered_set<std::size_t> hashes_;
};

/// Shares that would be made or be gone, and how to reach the folders of the new ones until then.
class RehearsedShares {
 public:
  /// Without the list, which would take most of the memory and which no run reads back.
  struct Share {
    std::string name;
    std::string path;
    std::string remark;
    std::int32_t max_uses = -1;
  };

  void add(std::string_view server, const platform::ShareInfo502& share) {
    changed_[key(server, share.shi502_netname)] =
        Share{share.shi502_netname, share.shi502_path, share.shi502_remark, share.shi502_max_uses};
  }
  void remove(std::string_view server, std::string_view name) { changed_[key(server, name)] = std::nullopt; }
  /// Null for a share that is as it was; one without a value would be gone.
  [[nodiscard]] const std::optional<Share>* find(std::string_view server, std::string_view name) const {
    const auto found = changed_.find(key(server, name));
    return found == changed_.end() ? nullptr : &found->second;
  }
  /// The path itself, unless it begins with a new share.
  [[nodiscard]] std::string way_of(std::string_view path) const {
    if (changed_.empty())
      return std::string(path);
    const platform::NetworkPath parts = platform::take_apart(path);
    const std::optional<Share>* const share = find(parts.server, parts.share);
    if (share == nullptr || !*share || (*share)->path.size() < 2 || (*share)->path[1] != ':')
      return std::string(path);
    const std::string& folder = (*share)->path;
    return "\\\\" + std::string(parts.server) + "\\" + folder.substr(0, 1) + "$" + folder.substr(2) +
           std::string(parts.tail);
  }

 private:
  static std::string key(std::string_view server, std::string_view share) {
    server.remove_prefix(std::min(server.find_first_not_of('\\'), server.size()));
    return base::upper(server) + "\\" + base::upper(share);
  }

  std::unordered_map<std::string, std::optional<Share>> changed_;
};

/// "WTSInitialProgram = menu.exe"
std::string shown(platform::WtsConfigClass setting, const platform::WtsConfigValue& value) {
  const auto* const row =
      std::ranges::find(records::kTerminalServerRows, setting, &records::TerminalServerRow::setting);
  const auto* const text = std::get_if<std::string>(&value);
  return (row == records::kTerminalServerRows.end()
              ? "setting " + base::to_text(static_cast<std::int64_t>(setting))
              : std::string(row->name)) +
         " = " + (text != nullptr ? *text : base::to_text(std::get<std::uint32_t>(value)));
}

/// Remembers the folders that would be made, removed and renamed.
class RehearsedFiles final : public platform::Files {
 public:
  RehearsedFiles(platform::Files& real, const RehearsedShares& shares, const Rehearsal::Tell& tell)
      : real_(real), shares_(shares), tell_(tell), names_(real) {}

  bool exists(std::string_view path) override {
    const std::string way = shares_.way_of(path);
    const auto place = now(way);
    const bool found = made_.contains(folded_folder(way)) ||
                       (place && !names_.is_surely_absent(*place) && real_.exists(*place));
    absent_ = found ? std::string_view() : path;
    return found;
  }
  bool is_directory(std::string_view path) override {
    const std::string way = shares_.way_of(path);
    const auto place = now(way);
    return made_.contains(folded_folder(way)) || (place && real_.is_directory(*place));
  }
  void make_directory(std::string_view path) override {
    require_new(path);
    tell_("Make the folder " + std::string(path));
    const std::string place = folded_folder(shares_.way_of(path));
    made_.insert(place);
    absent_.clear();
    made_names_.insert(name_on_server(place));
  }
  /// True for a folder of a server, by its path there. One that was made through another share is known by
  /// its last part.
  bool has_folder(std::string_view server, const std::string& folder) {
    if (folder.size() < 2 || folder[1] != ':')
      return true;
    const std::string host(server.substr(std::min(server.find_first_not_of('\\'), server.size())));
    const std::string way = "\\\\" + host + "\\" + folder.substr(0, 1) + "$" + folder.substr(2);
    return is_directory(way) || made_names_.contains(name_on_server(folded_folder(way)));
  }
  std::vector<FileEntry> list(std::string_view path) override {
    const std::string way = shares_.way_of(path);
    return made_.contains(folded_folder(way)) ? std::vector<FileEntry>() : real_.list(now(way).value_or(way));
  }
  FileEntry status(std::string_view path) override {
    const std::string way = shares_.way_of(path);
    if (made_.contains(folded_folder(way)))
      return FileEntry{.name = {}, .directory = true};
    const auto place = now(way);
    if (!place)
      base::raise(base::error::kFileNotFound, std::string(path) + " would be gone");
    return real_.status(*place);
  }
  void remove_directory(std::string_view path) override {
    tell_("Remove the folder " + std::string(path));
    made_.erase(folded_folder(path));
    answering_ = {};
    gone_.insert(folded_folder(path));
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
    answering_ = {};
    absent_.clear();
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
  /// "\\FS1\JO" of "\\FS1\D$\USERS\JO".
  static std::string name_on_server(const std::string& folded_path) {
    const std::size_t server_end = std::min(folded_path.find('\\', 2), folded_path.size());
    return folded_path.substr(0, server_end) + folded_path.substr(folded_path.rfind('\\'));
  }
  /// Raises what the server says about a path: that it is none, that it cannot be reached, that it is taken.
  void require_new(std::string_view path) {
    // Whoever makes a folder has asked for it just now.
    if (path != absent_ && exists(path))
      base::raise(base::error::kPathFileAccess, std::string(path) + " exists already");
    const std::string above = folded_folder(path.substr(0, path.find_last_of('\\')));
    if (answering_.contains(above))
      return;
    const auto place = now(shares_.way_of(path));
    base::Trap absent;
    if (place && absent([&] { static_cast<void>(real_.status(*place)); }))
      base::raise(base::error::kPathFileAccess, std::string(path) + " exists already");
    const bool missing = !place || absent.number() == base::error::kFileNotFound ||
                         absent.number() == base::error::kPathNotFound;
    const std::size_t slash = path.find_last_of('\\');
    const bool has_parent = slash == base::npos || is_directory(path.substr(0, slash));
    if (has_parent && !missing)
      base::raise(absent.number(), absent.description());
    if (!has_parent)
      base::raise(base::error::kPathNotFound, "There is no folder " + std::string(path.substr(0, slash)));
    answering_.insert(above);
  }
  static bool lies_in(std::string_view path, std::string_view folder) {
    return (folded_folder(path) + "\\").starts_with(folded_folder(folder) + "\\");
  }
  /// Where a path leads while nothing has been renamed; none for what would be gone.
  [[nodiscard]] std::optional<std::string> now(const std::string& path) const {
    if (!gone_.empty() && gone_.contains(folded_folder(path)))
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
  FolderNames names_;
  std::string absent_;  ///< the path that was asked for last, when nothing had it
  HashedTexts made_;
  HashedTexts made_names_;
  HashedTexts answering_;  ///< folders in which a name was looked for, and not found, without a fault
  std::set<std::string> gone_;
  std::vector<std::pair<std::string, std::string>> renamed_;  ///< from and to, in order
};

class RehearsedNetwork final : public platform::Network {
 public:
  RehearsedNetwork(platform::Network& real, RehearsedShares& shares, RehearsedFiles& files,
                   RehearsedDirectory& directory, const Rehearsal::Tell& tell)
      : real_(real), shares_(shares), files_(files), directory_(directory), tell_(tell) {}

  std::string NetGetDCName(std::string_view server, std::string_view domain) override {
    return real_.NetGetDCName(server, domain);
  }
  void NetShareAdd(std::string_view server, const platform::ShareInfo502& share) override {
    require_new(server, share);
    tell_("Make the share " + share.shi502_netname + " on " + std::string(server) + " for " +
          share.shi502_path);
    shares_.add(server, share);
  }
  void require_share_rights(std::string_view server) override { real_.require_share_rights(server); }
  platform::ShareInfo502 NetShareGetInfo(std::string_view server, std::string_view name) override {
    const std::optional<RehearsedShares::Share>* const changed = shares_.find(server, name);
    if (changed == nullptr)
      return real_.NetShareGetInfo(server, name);
    if (!*changed)
      base::raise(platform::network_error::kShareNotFound,
                  "The share " + std::string(name) + " would be gone");
    platform::ShareInfo502 info;
    info.shi502_netname = (*changed)->name;
    info.shi502_path = (*changed)->path;
    info.shi502_remark = (*changed)->remark;
    info.shi502_max_uses = (*changed)->max_uses;
    return info;
  }
  std::vector<platform::ShareInfo502> NetShareEnum(std::string_view server) override {
    return real_.NetShareEnum(server);
  }
  void NetShareDel(std::string_view server, std::string_view name) override {
    tell_("Delete the share " + std::string(name) + " on " + std::string(server));
    shares_.remove(server, name);
  }
  void WTSSetUserConfig(std::string_view server, std::string_view user, platform::WtsConfigClass setting,
                        const platform::WtsConfigValue& value) override {
    if (!directory_.made().has_account(user))
      foresee_user_config(server, user, setting, value);
    tell_("Set the terminal-server settings of " + std::string(user) + ": " + shown(setting, value));
  }
  platform::WtsConfigValue WTSQueryUserConfig(std::string_view server, std::string_view user,
                                              platform::WtsConfigClass setting) override {
    return real_.WTSQueryUserConfig(server, user, setting);
  }

 private:
  void foresee_user_config(std::string_view server, std::string_view user, platform::WtsConfigClass setting,
                           const platform::WtsConfigValue& value) {
    if (auto* const foreseen = dynamic_cast<platform::ForeseenUserConfig*>(&real_))
      foreseen->foresee_user_config(server, user, setting, value);
    else
      static_cast<void>(real_.WTSQueryUserConfig(server, user, setting));
  }
  /// The same refusals as the server's.
  void require_new(std::string_view server, const platform::ShareInfo502& share) {
    namespace network_error = platform::network_error;
    const std::string& name = share.shi502_netname;
    if (const std::string fault = platform::share_name_fault(name); !fault.empty())
      base::raise(network_error::kInvalidName, "The share name \"" + name + "\" " + fault);
    base::Trap trap;
    const bool taken = trap([&] { static_cast<void>(NetShareGetInfo(server, name)); });
    if (taken && !directory_.is_gone(platform::share_path(server, name)))
      base::raise(network_error::kDuplicateShare, "The server has a share " + name + " already");
    if (!taken && trap.number() != network_error::kShareNotFound)
      base::raise(trap.number(), trap.description());
    if (!files_.has_folder(server, share.shi502_path))
      base::raise(network_error::kUnknownDirectory, "The server has no folder " + share.shi502_path);
  }
  platform::Network& real_;
  RehearsedShares& shares_;
  RehearsedFiles& files_;
  RehearsedDirectory& directory_;
  const Rehearsal::Tell& tell_;
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
  Services(const platform::Platform& real_services, Tell teller, Changes of_directory)
      : tell(std::move(teller)),
        changes(of_directory),
        real(real_services),
        registry(real.registry),
        directory(real.directory, tell),
        query(real.query, directory),
        trial(real.directory, directory, tell),
        files(real.files, shares, tell),
        network(real.network, shares, files, directory, tell),
        security(real.security, files, directory, tell),
        process(real.process, tell) {}

  Tell tell;
  Changes changes;
  platform::Platform real;
  RehearsedRegistry registry;
  RehearsedDirectory directory;
  RehearsedQuery query;
  TrialDirectory trial;
  RehearsedShares shares;
  RehearsedFiles files;
  RehearsedNetwork network;
  RehearsedSecurity security;
  RehearsedProcess process;
};

Rehearsal::Rehearsal(const platform::Platform& services, Tell tell, Changes changes)
    : rehearsed_(std::make_unique<Services>(services, std::move(tell), changes)) {}

Rehearsal::~Rehearsal() = default;

platform::Platform Rehearsal::services() {
  Services& rehearsed = *rehearsed_;
  platform::DirectoryService* directory = &rehearsed.directory;
  platform::QueryService* query = &rehearsed.query;
  if (rehearsed.changes == Changes::kTried) {
    directory = &rehearsed.trial;
    query = &rehearsed.real.query;
  }
  return {rehearsed.registry,
          *directory,
          *query,
          rehearsed.files,
          rehearsed.network,
          rehearsed.security,
          rehearsed.real.mailboxes,
          rehearsed.process,
          rehearsed.real.environment,
          rehearsed.real.clock,
          rehearsed.real.dialogs};
}

}  // namespace twk::lifecycle
