#include "world/real/live_ground.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "live/domain/change_password_right.hpp"
#include "live/live.hpp"
#include "live/logon/network_probe.hpp"
#include "platform/adsi.hpp"
#include "platform/directory.hpp"
#include "platform/security.hpp"
#include "world/real_domains.hpp"

namespace twk::world {
namespace {

/// "Cannot change password", which the access list says, as a flag.
void note_change_of_password(live::LdapEntry& entry) {
  bool denied = false;
  base::Trap not_a_descriptor;
  not_a_descriptor(
      [&] { denied = live::denies_change_of_password(entry.first(live::kDescriptorAttribute)); });
  for (live::LdapAttribute& attribute : entry.attributes) {
    if (denied && base::equals_fold(attribute.name, "userAccountControl"))
      attribute.values = {
          base::to_text(base::val(attribute.values.front()) | platform::kFlagCannotChangePassword)};
  }
  std::erase_if(entry.attributes, [](const live::LdapAttribute& attribute) {
    return base::equals_fold(attribute.name, live::kDescriptorAttribute);
  });
}

class LiveGround final : public Ground, public RealDomain {
 public:
  LiveGround(live::LiveSettings settings, live::Prompts prompts, const live::Folders& folders,
             std::optional<base::RuntimeError> refusal)
      : folders_(folders),
        live_(std::move(settings), std::move(prompts), folders),
        refusal_(std::move(refusal)) {}

  platform::Platform platform(platform::Dialogs& dialogs) override { return live_.platform(dialogs); }
  platform::RegistryListing& registry_listing() override { return live_.registry_listing(); }
  [[nodiscard]] std::string settings_folder() const override { return live::registry_folder(folders_); }
  [[nodiscard]] std::string database_path() const override { return live_.database_path(); }
  [[nodiscard]] std::string domain_name() const override { return domain().settings().domain; }
  [[nodiscard]] bool has_one_domain() const override { return !domain_name().empty(); }
  DomainNames names() override {
    connect();
    const bool directory = domain().has_directory();
    return {domain_name(), directory ? domain().netbios() : domain_name(), directory};
  }
  void connect() override {
    if (refusal_)
      throw base::RuntimeError(*refusal_);
    if (domain_name().empty())
      base::raise(platform::ads_error::kNoSuchDomain,
                  "There is no domain to work in: none is named, and "
                  "this computer is in none");
    if (domain().has_directory())
      domain().ldap().open();
    else
      live::resolve_host(domain().controller());
  }
  RealDomain* real() override { return this; }

  Names directory_names() override {
    connect();
    if (!domain().has_directory())
      base::raise(platform::ads_error::kNotImplementedByProvider, "An NT domain has no directory to copy");
    return {domain_name(), domain().netbios(), domain().controller(), domain().root_dn()};
  }
  void read(const std::string& filter, const std::vector<std::string>& attributes,
            const std::function<bool(Entry&& entry)>& visit) override {
    live::LdapSearch search;
    search.base = domain().root_dn();
    search.filter = filter;
    search.attributes = attributes;
    search.attributes.emplace_back(live::kDescriptorAttribute);
    search.descriptor_parts = platform::security_information::kDacl;
    domain().ldap().search(search,
                           [&](live::LdapEntry&& entry) { return visit(complete(std::move(entry))); });
  }

 private:
  [[nodiscard]] live::LiveDomain& domain() const { return live_.domain(); }

  Entry complete(live::LdapEntry&& read) {
    note_change_of_password(read);
    Entry entry;
    for (live::LdapAttribute& attribute : read.attributes) {
      // A long list comes in ranges: "member;range=0-1499".
      const std::string name = attribute.name.substr(0, attribute.name.find(";range="));
      if (name != attribute.name)
        attribute.values = live::read_links(domain().ldap(), read.dn, name);
      entry.attributes.push_back({name, std::move(attribute.values)});
    }
    entry.dn = std::move(read.dn);
    return entry;
  }

  live::Folders folders_;
  mutable live::Live live_;
  std::optional<base::RuntimeError> refusal_;  ///< of the options
};

}  // namespace

std::unique_ptr<Ground> make_live_ground(live::LiveSettings settings, live::Prompts prompts,
                                         const live::Folders& folders,
                                         std::optional<base::RuntimeError> refusal) {
  return std::make_unique<LiveGround>(std::move(settings), std::move(prompts), folders, std::move(refusal));
}

}  // namespace twk::world
