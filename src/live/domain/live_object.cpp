#include "live/domain/live_object.hpp"

#include <algorithm>
#include <array>

#include "ads/dn.hpp"
#include "ads/object_rules.hpp"
#include "ads/password_rules.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "platform/adsi.hpp"
#include "platform/ldap_text.hpp"
#include "platform/utf16.hpp"

namespace twk::live {
namespace {

using platform::ObjectPtr;
using platform::Value;
namespace ads_error = platform::ads_error;

/// Computed on request, so "all attributes" does not include them.
constexpr std::array<std::string_view, 5> kComputed = {"primaryGroupToken",
                                                       "msDS-User-Account-Control-Computed", "canonicalName",
                                                       "tokenGroups", "nTSecurityDescriptor"};

bool is_computed(std::string_view attribute) {
  return std::any_of(kComputed.begin(), kComputed.end(),
                     [&](std::string_view one) { return base::equals_fold(one, attribute); });
}

/// "unicodePwd", [MS-ADTS] 3.1.1.3.1.5.1: the password in double quotes, UTF-16LE.
std::string encode_password(std::string_view password) {
  base::Bytes bytes = platform::to_utf16("\"" + std::string(password) + "\"");
  return {bytes.begin(), bytes.end()};
}

void require_creation(LiveDomain& domain, std::string_view container, std::string_view object_class,
                      const std::string& dn) {
  if (!domain.may_create(std::string(container), object_class))
    base::raise(ads_error::kAccessDenied, "Create " + dn + ": the account has too few rights (no " +
                                              std::string(object_class) + " may be created in " +
                                              std::string(container) + ")");
}

void require_removal(LiveDomain& domain, const std::string& what, const std::string& dn,
                     const std::string& object_class) {
  if (!domain.deletes(dn).value_or(true))
    base::raise(ads_error::kAccessDenied,
                what + " " + dn + ": the account has too few rights (neither \"Delete\" on it nor \"Delete " +
                    object_class + " objects\" in " + std::string(ads::parent_dn(dn)) + ")");
}

}  // namespace

LdapConnection& Origin::ldap() const {
  return connection != nullptr ? *connection : domain->ldap(server, provider == ads::Provider::kGc);
}

const ads::AttributeSchema* Origin::attribute(std::string_view name) const {
  const Subschema* const foreign = domain->foreign_schema(server, ldap());
  return foreign == nullptr ? domain->attribute(name) : foreign->find(name);
}

std::string_view Origin::attribute_name(std::string_view name) const {
  return is_foreign() ? name : platform::ldap_attribute(name);
}

void require_attribute_right(LiveDomain& domain, const std::string& dn, std::string_view attribute) {
  if (!domain.may_write(dn, attribute))
    base::raise(ads_error::kAccessDenied, "Change " + dn + ": the account has too few rights (" +
                                              std::string(attribute) + " may not be written)");
}

LiveEntry::LiveEntry(Origin origin, LdapEntry stored, std::string object_class)
    : origin_(std::move(origin)),
      dn_(stored.dn),
      object_class_(std::move(object_class)),
      fetched_(std::move(stored)) {}

void LiveEntry::fetch() {
  if (!fetched_)
    fetched_ = origin_.ldap().read(dn_, {});
}

std::vector<std::string> LiveEntry::links(std::string_view attribute) {
  return read_links(origin_.ldap(), dn_, attribute);
}

std::vector<std::string> LiveEntry::stored(std::string_view attribute) {
  if (new_)
    return {};
  if (base::equals_fold(attribute, "member") || base::equals_fold(attribute, "memberOf"))
    return links(attribute);
  if (is_computed(attribute)) {
    const LdapEntry entry = origin_.ldap().read(dn_, {std::string(attribute)});
    const auto* const values = entry.find(attribute);
    return values == nullptr ? std::vector<std::string>{} : *values;
  }
  fetch();
  const auto* const values = fetched_->find(attribute);
  return values == nullptr ? std::vector<std::string>{} : *values;
}

std::vector<std::string> LiveEntry::attribute_names() {
  std::vector<std::string> names;
  if (new_)
    return names;
  fetch();
  for (const LdapAttribute& attribute : fetched_->attributes)
    names.push_back(attribute.name.substr(0, attribute.name.find(';')));
  return names;
}

Value LiveEntry::get(std::string_view attribute) {
  if (staged_.hides_stored(attribute))
    return staged_.over(attribute, {});
  const std::vector<std::string> values = stored(attribute);
  if (values.empty())
    return staged_.over(attribute, {});
  return staged_.over(attribute, ads::to_value(origin_.attribute(attribute), values).list());
}

void LiveEntry::stage(int control, std::string_view attribute, const Value& value) {
  staged_.stage(control, attribute, value);
}

std::vector<std::string> LiveEntry::raw_values(const ads::StagedChange& change) {
  const ads::AttributeSchema* const schema = origin_.attribute(change.attribute);
  if (schema == nullptr)
    base::raise(ads_error::kNoSuchAttribute, "The directory has no attribute " + change.attribute);
  std::vector<std::string> raw;
  const bool user = !base::equals_fold(object_class_, "group");
  const bool foreign = origin_.is_foreign();
  for (const Value& value : change.values) {
    raw.push_back(ads::to_raw(*schema, value));
    if (!foreign)
      ads::check_value(schema->name, raw.back(), user);
  }
  if (raw.size() > 1 && !schema->multi_valued)
    base::raise(ads_error::kConstraint, change.attribute + " holds a single value and not a list");
  return raw;
}

std::vector<LdapChange> LiveEntry::staged_requests() {
  std::vector<LdapChange> changes;
  for (const ads::StagedChange& change : staged_.changes()) {
    const LdapChangeKind kind = change.kind == ads::ChangeKind::kAdd      ? LdapChangeKind::kAdd
                                : change.kind == ads::ChangeKind::kDelete ? LdapChangeKind::kDelete
                                                                          : LdapChangeKind::kReplace;
    std::vector<std::string> values = raw_values(change);
    // A new password is current anyway: saying so again would cost a request.
    if (has_new_password_ && base::equals_fold(change.attribute, "pwdLastSet") &&
        values == std::vector<std::string>{"-1"})
      continue;
    changes.push_back({kind, change.attribute, std::move(values)});
  }
  return changes;
}

/// Servers differ in whether an absent attribute can be cleared, and some in whether one can be replaced by
/// nothing, so after a refusal such a clear is left out, and any other is a deletion.
void LiveEntry::write_changes() {
  std::vector<LdapChange> changes = staged_requests();
  has_new_password_ = false;
  if (changes.empty())
    return;
  try {
    origin_.ldap().modify(dn_, changes);
  } catch (const base::RuntimeError& failure) {
    if (failure.number() == ads_error::kConstraint && origin_.is_foreign() && keep_naming_value(changes))
      return origin_.ldap().modify(dn_, changes);
    const bool clears = std::any_of(changes.begin(), changes.end(),
                                    [](const LdapChange& change) { return change.values.empty(); });
    if (!clears || (failure.number() != ads_error::kUnwilling && failure.number() != ads_error::kConstraint))
      throw;
    fetched_.reset();
    std::erase_if(changes, [&](const LdapChange& change) {
      return change.values.empty() && stored(change.attribute).empty();
    });
    for (LdapChange& change : changes)
      change.kind = change.values.empty() ? LdapChangeKind::kDelete : change.kind;
    if (!changes.empty())
      origin_.ldap().modify(dn_, changes);
  }
}

/// An entry's name contains an attribute's value, which a server must not remove (RFC 4511 4.6).
bool LiveEntry::keep_naming_value(std::vector<LdapChange>& changes) const {
  const ads::Rdn name = ads::parse_rdn(ads::first_rdn(dn_));
  for (LdapChange& change : changes) {
    const bool missing =
        std::find(change.values.begin(), change.values.end(), name.value) == change.values.end();
    if (change.kind == LdapChangeKind::kReplace && base::equals_fold(change.attribute, name.type) &&
        missing) {
      change.values.push_back(name.value);
      return true;
    }
  }
  return false;
}

std::vector<LdapAttribute> LiveEntry::new_attributes() {
  std::vector<LdapAttribute> attributes = {{"objectClass", {object_class_}}};
  for (const ads::StagedChange& change : staged_.changes()) {
    if (change.kind != ads::ChangeKind::kDelete && !change.values.empty())
      attributes.push_back({change.attribute, raw_values(change)});
  }
  return attributes;
}

bool LiveEntry::is_user() const {
  return base::equals_fold(object_class_, "user") && !origin_.is_foreign();
}

void LiveEntry::commit() {
  if (new_) {
    origin_.ldap().add(dn_, new_attributes());
    new_ = false;
    awaits_password_ = is_user();
  } else {
    write_changes();
  }
  staged_.clear();
  fetched_.reset();
}

void LiveEntry::foresee() {
  if (new_) {
    static_cast<void>(new_attributes());
    if (!origin_.is_foreign())
      require_creation(*origin_.domain, ads::parent_dn(dn_), object_class_, dn_);
  } else {
    for (const LdapChange& change : staged_requests())
      require_writing(change.attribute);
  }
  const Value account = staged_.over("sAMAccountName", {});
  if (account.is_empty() || origin_.is_foreign())
    return;
  const auto holder = origin_.domain->find_account(account.text(), {"objectClass"});
  if (holder && (new_ || ads::normalize_dn(holder->dn) != ads::normalize_dn(dn_)))
    base::raise(ads_error::kObjectExists, "The account name " + account.text() + " is in use");
}

void LiveEntry::require_writing(std::string_view attribute) const {
  if (!origin_.is_foreign())
    require_attribute_right(*origin_.domain, dn_, attribute);
}

void LiveEntry::require_reset() const {
  if (!new_ && !origin_.is_foreign() && !origin_.domain->sets_password(dn_).value_or(true))
    base::raise(
        ads_error::kAccessDenied,
        "Set the password of " + dn_ + ": the account has too few rights (\"Reset password\" is missing)");
}

void LiveEntry::require_deletion() const {
  if (!new_ && !origin_.is_foreign())
    require_removal(*origin_.domain, "Delete", dn_, object_class_);
}

void LiveEntry::require_access_list_right() const {
  if (!new_ && !origin_.domain->writes_access_list(dn_).value_or(true))
    base::raise(ads_error::kAccessDenied,
                "Change " + dn_ + ": the account has too few rights (\"Modify permissions\" is missing)");
}

void LiveEntry::set_password(std::string_view password) {
  std::vector<LdapChange> changes = {{LdapChangeKind::kReplace, "unicodePwd", {encode_password(password)}}};
  if (awaits_password_) {
    changes.push_back(
        {LdapChangeKind::kReplace, "userAccountControl", {base::to_text(platform::kFlagNormalAccount)}});
  }
  origin_.ldap().modify(dn_, changes, LdapRequest::kPassword);
  awaits_password_ = false;
  has_new_password_ = true;
  fetched_.reset();
}

bool LiveEntry::add_with_password(std::string_view password) {
  if (!new_ || !is_user())
    return false;
  base::Trap trap;
  trap([&] {
    std::vector<LdapAttribute> attributes = new_attributes();
    attributes.push_back({"unicodePwd", {encode_password(password)}});
    const auto& staged = staged_.changes();
    const bool sets_flags = std::any_of(staged.begin(), staged.end(), [](const ads::StagedChange& change) {
      return base::equals_fold(change.attribute, "userAccountControl");
    });
    if (!sets_flags)
      attributes.push_back({"userAccountControl", {base::to_text(platform::kFlagNormalAccount)}});
    origin_.ldap().add(dn_, attributes);
  });
  if (trap.number() == ads_error::kServerDown)
    base::raise(trap.number(), trap.description());
  if (trap.number() != 0)
    return false;
  new_ = false;
  has_new_password_ = true;
  staged_.clear();
  return true;
}

ObjectPtr LiveObject::make(std::string dn, std::string object_class, bool is_new) const {
  return std::make_shared<LiveObject>(
      LiveEntry(entry_.origin(), std::move(dn), std::move(object_class), is_new));
}

void LiveObject::SetInfo() {
  require_writable();
  entry_.commit();
}

void LiveObject::SetPassword(std::string_view password) {
  require_writable();
  entry_.set_password(password);
}

bool LiveObject::SetInfoWithPassword(std::string_view password) {
  require_writable();
  return entry_.add_with_password(password);
}

void LiveObject::foresee_write() {
  require_writable();
  entry_.foresee();
}

void LiveObject::foresee_password(std::string_view password) {
  require_writable();
  if (entry_.origin().is_foreign())
    return;
  // Whether an account's name may be part of its password, servers do not agree.
  LiveDomain& domain = *entry_.origin().domain;
  const auto rules = entry_.is_new() ? domain.password_rules() : domain.password_rules_of(entry_.dn());
  const std::string why = rules ? ads::why_password_is_refused(*rules, password, {}) : std::string();
  if (!why.empty())
    base::raise(ads_error::kPasswordPolicy, "The password " + why);
}

void LiveObject::foresee_move(std::string_view source_path) {
  require_writable();
  if (entry_.origin().is_foreign())
    return;
  LiveDomain& domain = *entry_.origin().domain;
  const std::string source = dn_of_path(domain, source_path);
  if (ads::normalize_dn(ads::parent_dn(source)) != ads::normalize_dn(entry_.dn())) {
    const std::string object_class = class_of(ldap().read(source, {"objectClass"}));
    require_creation(domain, entry_.dn(), object_class, source);
    require_removal(domain, "Move", source, object_class);
  }
  if (!domain.may_write(source, "name") && !domain.may_write(source, "cn"))
    base::raise(ads_error::kAccessDenied,
                "Move " + source + ": the account has too few rights (its name may not be written)");
}

void LiveObject::enumerate(std::span<const std::string> classes,
                           const std::function<bool(const ObjectPtr&)>& visit) {
  LdapSearch search;
  search.base = entry_.dn();
  search.scope = platform::Scope::kOneLevel;
  search.attributes = {"objectClass"};
  ldap().search(search, [&](LdapEntry&& child) {
    std::string object_class = class_of(child);
    return !ads::is_wanted(classes, object_class) || visit(make(child.dn, std::move(object_class)));
  });
}

std::string LiveObject::stored_child(std::string_view relative_name) const {
  if (ads::split_dn(relative_name).size() != 1)
    base::raise(ads_error::kInvalidDn, "Not a relative name: " + std::string(relative_name));
  return std::string(relative_name) + "," + entry_.dn();
}

std::string LiveObject::existing_child(std::string_view object_class, const std::string& dn) const {
  const LdapEntry child = ldap().read(dn, {"objectClass"});
  const auto* const classes = child.find("objectClass");
  const bool fits =
      object_class.empty() ||
      (classes != nullptr && std::any_of(classes->begin(), classes->end(), [&](const auto& one) {
         return base::equals_fold(one, object_class);
       }));
  if (!fits)
    base::raise(ads_error::kNoSuchObject, dn + " is not of class " + std::string(object_class));
  return class_of(child);
}

ObjectPtr LiveObject::GetObject(std::string_view object_class, std::string_view relative_name) {
  std::string dn = stored_child(relative_name);
  std::string found_class = existing_child(object_class, dn);
  return make(std::move(dn), std::move(found_class));
}

ObjectPtr LiveObject::Create(std::string_view object_class, std::string_view relative_name) {
  require_writable();
  return make(ads::child_dn(object_class, relative_name, entry_.dn()), std::string(object_class), true);
}

void LiveObject::Delete(std::string_view object_class, std::string_view relative_name) {
  require_writable();
  const std::string dn = stored_child(relative_name);
  existing_child(object_class, dn);
  ldap().remove(dn);
}

ObjectPtr LiveObject::MoveHere(std::string_view source_path, const std::optional<std::string>& new_name) {
  require_writable();
  const std::string source = dn_of_path(*entry_.origin().domain, source_path);
  std::string object_class = class_of(ldap().read(source, {"objectClass"}));
  std::string target =
      ads::child_dn(object_class, new_name ? *new_name : std::string(ads::first_rdn(source)), entry_.dn());
  const bool stays = ads::normalize_dn(ads::parent_dn(source)) == ads::normalize_dn(entry_.dn());
  ldap().rename(source, std::string(ads::first_rdn(target)), stays ? std::string() : entry_.dn());
  return make(std::move(target), std::move(object_class));
}

void LiveObject::Add(std::string_view path) {
  require_writable();
  add_member(ldap(), entry_.dn(), dn_of_path(*entry_.origin().domain, path));
}

bool LiveObject::write_members(LdapChangeKind kind, LdapRequest request, std::span<const std::string> paths) {
  require_writable();
  base::Trap trap;
  const bool written = trap([&] {
    std::vector<std::string> members;
    members.reserve(paths.size());
    for (const std::string& path : paths)
      members.push_back(dn_of_path(*entry_.origin().domain, path));
    ldap().modify(entry_.dn(), {{kind, "member", std::move(members)}}, request);
  });
  if (trap.number() == ads_error::kServerDown)
    base::raise(trap.number(), trap.description());
  return written;
}

bool LiveObject::AddTogether(std::span<const std::string> paths) {
  return write_members(LdapChangeKind::kAdd, LdapRequest::kAddMember, paths);
}

void LiveObject::Remove(std::string_view path) {
  require_writable();
  remove_member(ldap(), entry_.dn(), dn_of_path(*entry_.origin().domain, path));
}

bool LiveObject::RemoveTogether(std::span<const std::string> paths) {
  return write_members(LdapChangeKind::kDelete, LdapRequest::kRemoveMember, paths);
}

bool LiveObject::IsMember(std::string_view path) {
  LiveDomain& domain = *entry_.origin().domain;
  if (entry_.origin().is_foreign()) {
    const std::string wanted = ads::normalize_dn(dn_of_path(domain, path));
    const std::vector<std::string> members = entry_.links("member");
    return std::any_of(members.begin(), members.end(),
                       [&](const std::string& dn) { return ads::normalize_dn(dn) == wanted; });
  }
  return is_member(domain, ldap(), entry_.dn(), dn_of_path(domain, path));
}

std::unordered_map<std::string, std::string> LiveObject::classes_of_members(std::size_t count) const {
  constexpr std::size_t kMostAtOnce = 10'000;
  std::unordered_map<std::string, std::string> classes;
  LdapSearch search;
  search.base = entry_.origin().domain->root_dn();
  search.filter = "(memberOf=" + platform::escape_filter_value(entry_.dn()) + ")";
  search.attributes = {"objectClass"};
  const auto keep = [&](LdapEntry&& entry) {
    std::string object_class = class_of(entry);
    classes.emplace(std::move(entry.dn), std::move(object_class));
    return true;
  };
  if (count <= kMostAtOnce)
    ldap().search_at_once(search, keep);
  else
    ldap().search(search, keep);
  return classes;
}

std::string LiveObject::class_of_member(const std::string& dn) const {
  try {
    return class_of(ldap().read(dn, {"objectClass"}));
  } catch (const base::RuntimeError& failure) {
    if (failure.number() == ads_error::kServerDown)
      throw;
    return {};
  }
}

std::vector<ObjectPtr> LiveObject::Members() {
  constexpr std::size_t kFew = 3;
  std::vector<std::string> names = entry_.links("member");
  std::unordered_map<std::string, std::string> classes;
  if (names.size() > kFew && !entry_.origin().is_foreign())
    classes = classes_of_members(names.size());
  std::vector<ObjectPtr> members;
  members.reserve(names.size());
  for (std::string& dn : names) {
    const auto known = classes.find(dn);
    std::string object_class = known != classes.end() ? std::move(known->second) : class_of_member(dn);
    members.push_back(make(std::move(dn), std::move(object_class)));
  }
  return members;
}

std::vector<ObjectPtr> LiveObject::Groups() {
  std::vector<ObjectPtr> groups;
  for (std::string& dn : entry_.links("memberOf"))
    groups.push_back(make(std::move(dn), "group"));
  return groups;
}

std::string dn_of_path(LiveDomain& domain, std::string_view path) {
  const ads::AdsPath parsed = ads::parse_ads_path(path);
  if (parsed.kind == ads::AdsPath::Kind::kEntry)
    return parsed.name.empty() ? domain.root_dn() : parsed.name;
  if (parsed.kind != ads::AdsPath::Kind::kAccount)
    base::raise(ads_error::kBadPathname, "Not the path of an account: " + std::string(path));
  auto account = domain.find_account(parsed.name, {"objectClass"});
  if (!account)
    base::raise(ads_error::kUserNotFound, "The domain has no account " + parsed.name);
  return std::move(account->dn);
}

void add_member(LdapConnection& connection, const std::string& group_dn, const std::string& member_dn) {
  connection.modify(group_dn, {{LdapChangeKind::kAdd, "member", {member_dn}}}, LdapRequest::kAddMember);
}

void remove_member(LdapConnection& connection, const std::string& group_dn, const std::string& member_dn) {
  connection.modify(group_dn, {{LdapChangeKind::kDelete, "member", {member_dn}}}, LdapRequest::kRemoveMember);
}

bool is_member(LiveDomain& domain, LdapConnection& connection, const std::string& group_dn,
               const std::string& member_dn) {
  const std::string wanted = ads::normalize_dn(group_dn);
  const LdapEntry member = connection.read(member_dn, {"memberOf", "primaryGroupID"});
  if (const auto* const groups = member.find("memberOf")) {
    for (const std::string& group : *groups) {
      if (ads::normalize_dn(group) == wanted)
        return true;
    }
  }
  const std::string primary = member.first("primaryGroupID");
  return !primary.empty() &&
         domain.ldap().read(group_dn, {"primaryGroupToken"}).first("primaryGroupToken") == primary;
}

}  // namespace twk::live
