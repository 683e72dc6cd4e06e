#include "world/snapshot.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <set>
#include <unordered_set>

#include "ads/dn.hpp"
#include "ads/schema.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "lab/making/lab_create.hpp"
#include "lab/store/ldif.hpp"
#include "local/replace_file.hpp"

namespace twk::world {
namespace {

constexpr std::string_view kWanted =
    "(|(objectClass=domainDNS)(objectClass=organizationalUnit)(objectClass=container)"
    "(objectClass=builtinDomain)(objectClass=group)"
    "(&(objectCategory=person)(|(objectClass=user)(objectClass=contact))))";

/// Secrets, large values that nobody reads, and what the lab computes by itself.
constexpr std::array<std::string_view, 20> kLeftOut = {"supplementalCredentials",
                                                       "unicodePwd",
                                                       "userPassword",
                                                       "userPKCS12",
                                                       "userCert",
                                                       "userCertificate",
                                                       "jpegPhoto",
                                                       "photo",
                                                       "thumbnailLogo",
                                                       "thumbnailPhoto",
                                                       "userSMIMECertificate",
                                                       "memberOf",
                                                       "distinguishedName",
                                                       "canonicalName",
                                                       "tokenGroups",
                                                       "primaryGroupToken",
                                                       "msDS-PrincipalName",
                                                       "nTSecurityDescriptor",
                                                       "dSCorePropagationData",
                                                       "wellKnownObjects"};

constexpr std::int64_t kMinutesOfDay = 1440;
constexpr std::int32_t kComplexPasswords = 1;  // DOMAIN_PASSWORD_COMPLEX, [MS-SAMR] 2.2.3.9

/// The maximum number of file servers named in paths; more are left out.
constexpr std::size_t kMostServers = 50;
constexpr std::size_t kLongestServer = 15;  // of a NetBIOS name, which a server of a lab has

std::vector<std::string> wanted_attributes() {
  std::vector<std::string> names = {"minPwdLength", "pwdProperties",   "lockoutThreshold",
                                    "maxPwdAge",    "lockoutDuration", "lockOutObservationWindow"};
  for (const ads::AttributeSchema& attribute : ads::all_attributes()) {
    if (std::find(kLeftOut.begin(), kLeftOut.end(), attribute.name) == kLeftOut.end())
      names.emplace_back(attribute.name);
  }
  return names;
}

class Copy {
 public:
  explicit Copy(RealDomain& domain) : domain_(domain), names_(domain.directory_names()) {}

  /// False when `progress` asks to stop.
  bool read(const std::function<bool(std::size_t)>& progress) {
    const std::string system = "," + ads::normalize_dn("CN=System," + names_.root_dn);
    bool going_on = true;
    std::size_t count = 0;
    domain_.read(std::string(kWanted), wanted_attributes(), [&](RealDomain::Entry&& entry) {
      if (!(ads::normalize_dn(entry.dn)).ends_with(system))
        take(std::move(entry));
      going_on = progress(++count);
      return going_on;
    });
    if (going_on)
      put_into_order();
    return going_on;
  }

  [[nodiscard]] const Snapshot& counts() const { return counts_; }

  [[nodiscard]] std::string ldif() const {
    std::string text = "version: 1\n\n";
    for (const Item& item : items_)
      lab::append_ldif(text, item.record);
    return text;
  }

  [[nodiscard]] lab::LabPlan plan() {
    lab::LabPlan plan;
    plan.domain = base::lower(names_.domain);
    plan.netbios = names_.netbios;
    plan.kind = value_of_domain("nTMixedDomain") == 1 ? lab::DomainKind::kMixed : lab::DomainKind::kNative;
    plan.users = plan.groups = plan.ous = 0;
    plan.exchange.reset();
    plan.servers.clear();
    for (const std::string& server : servers_)
      plan.servers.push_back({server, {"C", "D"}});
    return plan;
  }

  [[nodiscard]] lab::LabConfig configuration(const lab::LabConfig& made) {
    lab::LabConfig config = made;
    const std::string& host = names_.controller;
    config.controller = base::upper(host.substr(0, host.find('.')));
    config.passwords.minimum_length = value_of_domain("minPwdLength");
    config.passwords.complexity = (value_of_domain("pwdProperties") & kComplexPasswords) != 0;
    config.passwords.lockout_threshold = value_of_domain("lockoutThreshold");
    config.passwords.maximum_age = static_cast<int>(minutes_of_domain("maxPwdAge") / kMinutesOfDay);
    config.passwords.lockout_duration = static_cast<int>(minutes_of_domain("lockoutDuration"));
    config.passwords.lockout_window = static_cast<int>(minutes_of_domain("lockOutObservationWindow"));
    base::Trap trap;
    return trap([&] { lab::check_lab_config(config); }) ? config : made;
  }

 private:
  struct Item {
    std::size_t depth = 0;
    std::string key;  ///< normalized name
    lab::LdifRecord record;
  };

  void take(RealDomain::Entry&& entry) {
    Item item;
    item.key = ads::normalize_dn(entry.dn);
    item.depth = ads::split_dn(entry.dn).size();
    for (lab::LdifAttribute& attribute : entry.attributes) {
      if (!attribute.values.empty() && attribute.name.find(';') == base::npos) {
        note_server(attribute);
        item.record.attributes.push_back(std::move(attribute));
      }
    }
    item.record.dn = std::move(entry.dn);
    items_.push_back(std::move(item));
  }

  /// A rehearsal makes folders where the real ones are: "FS1" of "\\FS1\Users\jo". A lab's server cannot
  /// have a host name with dots.
  void note_server(const lab::LdifAttribute& attribute) {
    if (!base::equals_fold(attribute.name, "homeDirectory") &&
        !base::equals_fold(attribute.name, "profilePath"))
      return;
    const std::string_view path = attribute.values.front();
    if (!path.starts_with("\\\\") || servers_.size() >= kMostServers)
      return;
    const std::string_view rest = path.substr(2);
    const std::string name = base::upper(rest.substr(0, rest.find('\\')));
    const bool fits = !name.empty() && name.size() <= kLongestServer &&
                      name.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_") == base::npos;
    if (fits)
      servers_.insert(name);
  }

  /// Parents first; an entry without a parent here is left out with everything below it.
  void put_into_order() {
    std::stable_sort(items_.begin(), items_.end(),
                     [](const Item& a, const Item& b) { return a.depth < b.depth; });
    const std::string root = ads::normalize_dn(names_.root_dn);
    std::unordered_set<std::string> there;
    std::erase_if(items_, [&](const Item& item) {
      const bool fits =
          item.key == root || there.count(ads::normalize_dn(ads::parent_dn(item.record.dn))) != 0;
      if (fits)
        there.insert(item.key);
      return !fits;
    });
    for (const Item& item : items_)
      count(item.record);
  }

  void count(const lab::LdifRecord& record) {
    ++counts_.entries;
    for (const lab::LdifAttribute& attribute : record.attributes) {
      if (!base::equals_fold(attribute.name, "objectClass"))
        continue;
      const std::string& object_class = attribute.values.back();
      counts_.users += base::equals_fold(object_class, "user") ? 1 : 0;
      counts_.groups += base::equals_fold(object_class, "group") ? 1 : 0;
      counts_.ous += base::equals_fold(object_class, "organizationalUnit") ? 1 : 0;
    }
  }

  [[nodiscard]] std::string text_of_domain(std::string_view name) const {
    if (items_.empty())
      return {};
    for (const lab::LdifAttribute& attribute : items_.front().record.attributes) {
      if (base::equals_fold(attribute.name, name))
        return attribute.values.front();
    }
    return {};
  }
  [[nodiscard]] std::int32_t value_of_domain(std::string_view name) const {
    return base::val(text_of_domain(name));
  }
  /// Of a rule that is a negative count of 100-nanosecond steps; 0 for none, and for one of all time.
  [[nodiscard]] std::int64_t minutes_of_domain(std::string_view name) const {
    constexpr std::int64_t kMinute = 600'000'000;
    const std::string text = text_of_domain(name);
    std::int64_t steps = 0;
    std::from_chars(text.data(), text.data() + text.size(), steps);
    return steps >= 0 || steps == INT64_MIN ? 0 : -steps / kMinute;
  }

  RealDomain& domain_;
  RealDomain::Names names_;
  std::vector<Item> items_;
  Snapshot counts_;
  std::set<std::string> servers_ = {"FS1"};
};

}  // namespace

std::optional<Snapshot> take_snapshot(RealDomain& domain, const std::filesystem::path& folder,
                                      const std::function<bool(std::size_t entries)>& progress) {
  Copy copy(domain);
  if (!copy.read(progress))
    return std::nullopt;
  const bool was_there = std::filesystem::exists(folder);
  lab::create_lab(folder, copy.plan());
  try {
    local::replace_file((folder / "domain.ldif").string(), copy.ldif(), local::Access::kPrivate);
    const std::filesystem::path config = folder / "lab.conf";
    lab::write_lab_config(config, copy.configuration(lab::read_lab_config(config)));
  } catch (...) {
    std::filesystem::remove_all(folder);
    if (was_there)
      std::filesystem::create_directory(folder);
    throw;
  }
  return copy.counts();
}

}  // namespace twk::world
