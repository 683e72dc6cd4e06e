#include "lab/exchange/exchange_rules.hpp"

#include <functional>
#include <optional>

#include "ads/dn.hpp"
#include "base/bytes.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "lab/domain/account_rules.hpp"
#include "lab/domain/entry_view.hpp"
#include "lab/making/exchange_schema.hpp"
#include "lab/store/draft.hpp"
#include "lab/store/errors.hpp"
#include "platform/security_descriptor.hpp"

namespace twk::lab {
namespace {

[[noreturn]] void constraint(std::string_view attribute, const std::string& what) {
  raise(ads_error::kConstraint, "The value of " + std::string(attribute) + " " + what);
}

const ads::AttributeSchema& writable_attribute(std::string_view name) {
  const ads::AttributeSchema* const attribute = find_exchange_attribute(name);
  if (attribute == nullptr)
    raise(ads_error::kNoSuchAttribute, "The Exchange schema has no attribute " + std::string(name));
  if (attribute->system_only)
    raise(ads_error::kUnwilling, "Only the directory itself writes " + std::string(attribute->name));
  return *attribute;
}

base::Bytes bytes_of_digits(const ads::AttributeSchema& attribute, std::string_view digits) {
  base::Bytes bytes;
  if (digits.size() % 2 != 0)
    constraint(attribute.name, "is not hexadecimal text");
  for (std::size_t i = 0; i < digits.size(); i += 2) {
    const auto high = base::hex_digit(digits[i]);
    const auto low = base::hex_digit(digits[i + 1]);
    if (!high || !low)
      constraint(attribute.name, "is not hexadecimal text");
    bytes.push_back(static_cast<std::uint8_t>(*high << 4U | *low));
  }
  return bytes;
}

void check_descriptor(const ads::AttributeSchema& attribute, const base::Bytes& bytes) {
  base::Trap trap;
  if (!trap([&] { static_cast<void>(platform::SecurityDescriptor::decode(bytes)); }))
    constraint(attribute.name, "is not a security descriptor");
}

void check_account(const ads::AttributeSchema& attribute, const base::Bytes& bytes) {
  const auto sid = platform::Sid::decode(bytes);
  if (!sid || sid->size() != bytes.size())
    constraint(attribute.name, "is not an account's identifier");
}

void check_bytes(const ads::AttributeSchema& attribute, std::string_view digits) {
  const base::Bytes bytes = bytes_of_digits(attribute, digits);
  if (attribute.name == "Assoc-NT-Account")
    check_account(attribute, bytes);
  if (attribute.name == "NT-Security-Descriptor")
    check_descriptor(attribute, bytes);
}

std::vector<Modification> checked(const Entry* entry, const std::vector<ads::StagedChange>& changes) {
  std::vector<Modification> out;
  for (const ads::StagedChange& change : changes) {
    const ads::AttributeSchema& attribute = writable_attribute(change.attribute);
    out.push_back(to_modification(entry, attribute, change));
    if (attribute.syntax != ads::Syntax::kOctetString)
      continue;
    for (const std::string& value : out.back().values)
      check_bytes(attribute, value);
  }
  return out;
}

/// The container of that name holds what the server needs, and whatever is below it.
bool is_configuration(std::string_view dn) {
  for (std::string_view name = dn; !name.empty(); name = ads::parent_dn(name)) {
    const std::string_view above = ads::parent_dn(name);
    if (base::equals_fold(ads::parse_rdn(ads::first_rdn(name)).value, "Configuration") && !above.empty() &&
        base::equals_fold(ads::parse_rdn(ads::first_rdn(above)).type, "ou"))
      return true;
  }
  return false;
}

void check_place(const EntryStore& store, const ExchangeClass& object_class, std::string_view parent) {
  const Entry& entry = require_exchange_entry(store, parent);
  const bool container = has_class(entry, "Container") && !is_configuration(parent);
  const bool site = has_class(entry, "organizationalUnit") && object_class.name == "Container";
  if (!container && !site) {
    raise(ads_error::kUnwilling,
          std::string(parent) + " cannot hold an object of class " + std::string(object_class.name));
  }
}

/// An object to be made, and what must hold at that moment.
struct NewRecipient {
  Draft draft;
  std::function<void()> check;
};

NewRecipient drafted(const EntryStore& store, std::string_view object_class, const std::string& dn,
                     const std::vector<ads::StagedChange>& values) {
  const ExchangeClass* const schema = find_exchange_class(object_class);
  if (schema == nullptr)
    raise(ads_error::kUnwilling, "An object of class " + std::string(object_class) + " cannot be made");
  const std::string name = ads::parse_rdn(ads::first_rdn(dn)).value;
  NewRecipient recipient;
  Draft& draft = recipient.draft;
  draft.set("objectClass", base::split(schema->chain, ' '));
  draft.set("cn", name);
  draft.set("rdn", name);
  for (const Modification& change : checked(nullptr, values))
    draft.apply(change);
  if (schema->name == "Remote-Address" && !draft.value("Target-Address"))
    raise(ads_error::kConstraint, "A custom recipient needs a Target-Address");
  recipient.check = [&store, schema, dn] {
    check_place(store, *schema, ads::parent_dn(dn));
    if (store.find(dn) != nullptr)
      raise(ads_error::kObjectExists, "The name is in use: " + dn);
  };
  return recipient;
}

}  // namespace

const Entry& require_exchange_entry(const EntryStore& store, std::string_view dn) {
  const Entry* const entry = store.find(dn);
  if (entry == nullptr)
    raise(ads_error::kNoSuchObject, "There is no such object: " + std::string(dn));
  return *entry;
}

void add_exchange_object(EntryStore& store, std::string_view object_class, const std::string& dn,
                         const std::vector<ads::StagedChange>& values) {
  NewRecipient recipient = drafted(store, object_class, dn, values);
  store.add(dn, recipient.draft.take(), recipient.check);
}

void check_exchange_object(EntryStore& store, std::string_view object_class, const std::string& dn,
                           const std::vector<ads::StagedChange>& values) {
  store.refresh();
  drafted(store, object_class, dn, values).check();
}

void modify_exchange_object(EntryStore& store, const std::string& dn,
                            const std::vector<ads::StagedChange>& changes) {
  store.refresh();
  const std::vector<Modification> modifications = checked(&require_exchange_entry(store, dn), changes);
  if (!modifications.empty())
    store.modify(dn, modifications, {});
}

void check_exchange_changes(EntryStore& store, const std::string& dn,
                            const std::vector<ads::StagedChange>& changes) {
  store.refresh();
  static_cast<void>(checked(&require_exchange_entry(store, dn), changes));
}

void delete_exchange_object(EntryStore& store, const std::string& dn) {
  store.remove(dn, [&] {
    const Entry& entry = require_exchange_entry(store, dn);
    if (is_configuration(dn))
      raise(ads_error::kUnwilling, "The server needs " + entry.dn());
    store.children(
        entry, [&](const Entry&) -> bool { raise(ads_error::kNotOnNonLeaf, dn + " still holds objects"); });
  });
}

}  // namespace twk::lab
