#include "lab/lab_mailboxes.hpp"

#include <algorithm>

#include "ads/dn.hpp"
#include "base/text.hpp"
#include "lab/entry_view.hpp"
#include "lab/errors.hpp"

namespace twk::lab {
namespace {

constexpr std::string_view kStoreClass = "msExchPrivateMDB";
constexpr std::size_t kGuidBytes = 16;

std::string text_of(platform::DirectoryObject& user, std::string_view attribute) {
  std::string text;
  base::Trap absent;
  absent([&] { text = user.Get(attribute).text(); });
  return text;
}

/// An account's name as the part of an address before the "@".
std::string nickname_of(std::string_view account) {
  std::string name(account);
  std::replace(name.begin(), name.end(), ' ', '_');
  return name;
}

/// The entry that is so many places above one.
std::string_view above(std::string_view dn, int places) {
  for (int i = 0; i < places; ++i)
    dn = ads::parent_dn(dn);
  return dn;
}

class LabMailbox final : public platform::IMailboxStore {
 public:
  LabMailbox(LabDomain& domain, platform::ObjectPtr user) : domain_(domain), user_(std::move(user)) {}

  void CreateMailbox(std::string_view store_path) override {
    domain_.store.refresh();
    if (!text_of(*user_, "homeMDB").empty())
      raise(ads_error::kObjectExists, user_->ADsPath() + " has a mailbox");
    const Entry& store = require_store(store_path);
    const std::string nickname = nickname_of(text_of(*user_, "sAMAccountName"));
    user_->Put("homeMDB", store.dn());
    user_->Put("msExchMailboxGuid", guid());
    put_when_absent("mailNickname", nickname);
    put_server(store.dn(), nickname);
    put_addresses(nickname);
  }

 private:
  const Entry& require_store(std::string_view path) const {
    static constexpr std::string_view kProvider = "LDAP://";
    if (base::starts_with_fold(path, kProvider))
      path.remove_prefix(kProvider.size());
    const Entry& entry = require_entry(domain_, path);
    if (!has_class(entry, kStoreClass))
      raise(ads_error::kNoSuchObject, "Not a mailbox store: " + entry.dn());
    return entry;
  }

  platform::Value guid() const {
    const std::string bytes = random_bytes(domain_, kGuidBytes);
    return base::Bytes(bytes.begin(), bytes.end());
  }

  void put_when_absent(std::string_view attribute, const std::string& text) {
    if (text_of(*user_, attribute).empty())
      user_->Put(attribute, text);
  }

  /// A store stands below a storage group, which stands below the information store of its server.
  void put_server(std::string_view store, const std::string& nickname) {
    const std::string_view server = above(store, 3);
    const Entry* const entry = server.empty() ? nullptr : domain_.store.find(server);
    if (entry == nullptr)
      return;
    if (const auto legacy = entry->value("legacyExchangeDN"))
      user_->Put("msExchHomeServerName", *legacy);
    const Entry* const agent = domain_.store.find("CN=Microsoft MTA," + entry->dn());
    if (agent != nullptr)
      user_->Put("homeMTA", agent->dn());
    const Entry* const group = domain_.store.find(above(server, 2));
    if (const auto legacy = group == nullptr ? std::nullopt : group->value("legacyExchangeDN"))
      user_->Put("legacyExchangeDN", *legacy + "/cn=Recipients/cn=" + nickname);
  }

  void put_addresses(const std::string& nickname) {
    put_when_absent("mail", nickname + "@" + domain_.config.domain);
    put_when_absent("proxyAddresses", "SMTP:" + text_of(*user_, "mail"));
  }

  LabDomain& domain_;
  platform::ObjectPtr user_;
};

}  // namespace

std::unique_ptr<platform::IMailboxStore> LabMailboxes::mailbox_store(const platform::ObjectPtr& user) {
  if (user == nullptr || !base::equals_fold(user->Class(), "user") ||
      !base::starts_with_fold(user->ADsPath(), "LDAP://")) {
    raise(ads_error::kNotImplementedByProvider,
          "Only a user of Active Directory can have a mailbox in a mailbox store");
  }
  return std::make_unique<LabMailbox>(domain_, user);
}

}  // namespace twk::lab
