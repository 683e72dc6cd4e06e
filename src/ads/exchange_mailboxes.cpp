#include "ads/exchange_mailboxes.hpp"

#include <algorithm>

#include "ads/dn.hpp"
#include "base/errors.hpp"
#include "base/random.hpp"
#include "base/text.hpp"
#include "platform/adsi.hpp"

namespace twk::ads {
namespace {

using platform::ObjectPtr;
using platform::readable_text;
namespace ads_error = platform::ads_error;

constexpr std::string_view kProvider = "LDAP://";
constexpr std::string_view kStoreClass = "msExchPrivateMDB";
constexpr std::size_t kGuidBytes = 16;

/// An account's name as the part of an address before the "@".
std::string nickname_of(std::string_view account) {
  std::string name(account);
  std::replace(name.begin(), name.end(), ' ', '_');
  return name;
}

/// The entry that many levels above.
std::string_view above(std::string_view dn, int places) {
  for (int i = 0; i < places; ++i)
    dn = parent_dn(dn);
  return dn;
}

class ExchangeMailbox final : public platform::IMailboxStore {
 public:
  ExchangeMailbox(platform::DirectoryService& directory, const std::string& domain, ObjectPtr user)
      : directory_(directory), domain_(domain), user_(std::move(user)) {}

  void CreateMailbox(std::string_view store_path) override {
    if (!readable_text(user_, "homeMDB").empty())
      base::raise(ads_error::kObjectExists, user_->ADsPath() + " has a mailbox");
    if (base::starts_with_fold(store_path, kProvider))
      store_path.remove_prefix(kProvider.size());
    require_store(store_path);
    const std::string nickname = nickname_of(readable_text(user_, "sAMAccountName"));
    user_->Put("homeMDB", std::string(store_path));
    user_->Put("msExchMailboxGuid", base::random_bytes(kGuidBytes));
    put_when_absent("mailNickname", nickname);
    put_server(store_path, nickname);
    put_addresses(nickname);
  }

 private:
  void require_store(std::string_view dn) {
    if (dn.find('=') == base::npos)  // otherwise it would be taken for a server's name
      base::raise(ads_error::kInvalidDn, "Not the name of a mailbox store: " + std::string(dn));
    const ObjectPtr store = directory_.GetObject(std::string(kProvider) + std::string(dn));
    if (!base::equals_fold(store->Class(), kStoreClass))
      base::raise(ads_error::kNoSuchObject, "Not a mailbox store: " + std::string(dn));
  }

  /// Null when nothing has that name.
  ObjectPtr find(std::string_view dn) {
    ObjectPtr object;
    base::Trap absent;
    if (!dn.empty())
      absent([&] { object = directory_.GetObject(std::string(kProvider) + std::string(dn)); });
    return object;
  }

  void put_when_absent(std::string_view attribute, const std::string& text) {
    if (readable_text(user_, attribute).empty())
      user_->Put(attribute, text);
  }

  /// A store is below a storage group, which is below the information store of its server.
  void put_server(std::string_view store, const std::string& nickname) {
    const std::string_view server = above(store, 3);
    const std::string legacy_server = readable_text(find(server), "legacyExchangeDN");
    if (!legacy_server.empty())
      user_->Put("msExchHomeServerName", legacy_server);
    const std::string agent = "CN=Microsoft MTA," + std::string(server);
    if (find(agent) != nullptr)
      user_->Put("homeMTA", agent);
    const std::string legacy_group = readable_text(find(above(server, 2)), "legacyExchangeDN");
    if (!legacy_group.empty())
      user_->Put("legacyExchangeDN", legacy_group + "/cn=Recipients/cn=" + nickname);
  }

  void put_addresses(const std::string& nickname) {
    put_when_absent("mail", nickname + "@" + domain_);
    put_when_absent("proxyAddresses", "SMTP:" + readable_text(user_, "mail"));
  }

  platform::DirectoryService& directory_;
  const std::string& domain_;
  ObjectPtr user_;
};

}  // namespace

std::unique_ptr<platform::IMailboxStore> ExchangeMailboxes::mailbox_store(const ObjectPtr& user) {
  if (user == nullptr || !base::equals_fold(user->Class(), "user") ||
      !base::starts_with_fold(user->ADsPath(), kProvider)) {
    base::raise(ads_error::kNotImplementedByProvider,
                "Only a user of Active Directory can have a mailbox in a mailbox store");
  }
  return std::make_unique<ExchangeMailbox>(directory_, domain_, user);
}

}  // namespace twk::ads
