#include "lifecycle/rehearsal/rehearsed_directory.hpp"

#include <algorithm>
#include <array>
#include <vector>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "lifecycle/rehearsal/new_object.hpp"
#include "platform/adsi.hpp"

namespace twk::lifecycle {
namespace {

using platform::ObjectPtr;
using platform::Value;
namespace ads_error = platform::ads_error;

bool is_flat(std::string_view path) {
  return base::starts_with_fold(path, "WinNT:");
}

/// The place of the comma that ends the first part of a distinguished name.
std::size_t end_of_first_part(std::string_view dn) {
  std::size_t end = 0;
  while (end < dn.size() && dn[end] != ',')
    end += dn[end] == '\\' ? 2 : 1;
  return std::min(end, dn.size());
}

/// A path in two: "LDAP://OU=Staff" and "CN=jo", "WinNT://TWK" and "jo".
struct SplitPath {
  std::string container;
  std::string name;
};

SplitPath split(std::string_view path) {
  const std::size_t slash = path.rfind('/', path.find('='));
  std::string_view name = path.substr(slash + 1);
  if (is_flat(path))
    return {std::string(path.substr(0, slash)), std::string(name.substr(0, name.find(',')))};
  const std::size_t end = end_of_first_part(name);
  return {std::string(path.substr(0, slash + 1)) + std::string(name.substr(std::min(end + 1, name.size()))),
          std::string(name.substr(0, end))};
}

class RehearsedObject final : public platform::DirectoryObject {
 public:
  RehearsedObject(RehearsedDirectory& directory, ObjectPtr real)
      : directory_(directory), real_(std::move(real)) {}

  [[nodiscard]] std::string Name() const override { return real_->Name(); }
  [[nodiscard]] std::string Class() const override { return real_->Class(); }
  [[nodiscard]] std::string ADsPath() const override { return real_->ADsPath(); }
  [[nodiscard]] std::string Parent() const override { return real_->Parent(); }
  Value Get(std::string_view attribute) override { return real_->Get(attribute); }

  /// Staged on the real object, which refuses a value that the schema refuses; it is never written.
  void Put(std::string_view attribute, const Value& value) override {
    real_->Put(attribute, value);
    staged_.push_back(std::string(attribute) + " = " + value.text());
  }
  void PutEx(int control, std::string_view attribute, const Value& value) override {
    real_->PutEx(control, attribute, value);
    staged_.push_back(std::string(attribute) + (control == 1 ? " cleared" : " changed"));
  }
  void SetInfo() override {
    foresee_write(*real_);
    for (const std::string& change : staged_)
      directory_.tell("Set on " + ADsPath() + ": " + change);
    staged_.clear();
  }
  void SetPassword(std::string_view password) override {
    foresee_password(*real_, password);
    directory_.tell("Set the password of " + ADsPath());
  }

  void enumerate(std::span<const std::string> classes,
                 const std::function<bool(const ObjectPtr&)>& visit) override {
    real_->enumerate(classes, [&](const ObjectPtr& child) {
      return directory_.is_gone(child->ADsPath()) || visit(directory_.wrap(child));
    });
  }
  ObjectPtr GetObject(std::string_view object_class, std::string_view name) override {
    const ObjectPtr made = directory_.find_made(real_, name, path_of_child(name));
    return made != nullptr ? made : directory_.wrap(real_->GetObject(object_class, name));
  }
  ObjectPtr Create(std::string_view object_class, std::string_view name) override {
    return new_object(directory_, real_->Create(object_class, name), nullptr);
  }
  void Delete(std::string_view object_class, std::string_view name) override {
    const ObjectPtr child = real_->GetObject(object_class, name);
    foresee_deletion(*child);
    directory_.tell("Delete the " + deleted_kind(object_class) + " " + child->ADsPath());
    directory_.forget(child->ADsPath());
  }
  ObjectPtr MoveHere(std::string_view source, const std::optional<std::string>& name) override {
    ObjectPtr moved = directory_.GetObject(source);
    const std::string target = path_of_child(name.value_or(moved->Name()));
    if (!base::equals_fold(target, source) && directory_.has(target))
      base::raise(ads_error::kObjectExists, "There is an object " + target + " already");
    if (directory_.made().find(source) == nullptr)
      foresee_move(*real_, source);
    directory_.tell(moved_text(source, ADsPath(), name));
    return moved;
  }
  void Add(std::string_view path) override {
    require_addable(path);
    directory_.tell("Add " + std::string(path) + " to the group " + ADsPath());
  }
  void Remove(std::string_view path) override {
    foresee_members(*real_);
    directory_.tell("Remove " + std::string(path) + " from the group " + ADsPath());
  }
  bool IsMember(std::string_view path) override {
    if (directory_.made().find(path) == nullptr)
      return real_->IsMember(path);
    return directory_.made().state_of(path)->groups.contains(base::upper(ADsPath()));
  }
  std::vector<ObjectPtr> Members() override { return wrapped(real_->Members()); }
  std::vector<ObjectPtr> Groups() override { return wrapped(real_->Groups()); }
  std::string Syntax() override { return real_->Syntax(); }
  bool MultiValued() override { return real_->MultiValued(); }

 private:
  [[nodiscard]] std::string path_of_child(std::string_view name) const {
    const std::string path = ADsPath();
    if (is_flat(path))
      return path + "/" + std::string(name);
    const std::size_t slash = path.rfind('/', path.find('='));
    return path.substr(0, slash + 1) + std::string(name) + "," + path.substr(slash + 1);
  }
  void require_addable(std::string_view path) {
    constexpr std::array<std::string_view, 5> kNoGroups = {"user", "contact", "computer",
                                                           "organizationalUnit", "container"};
    for (const std::string_view one : kNoGroups) {
      if (base::equals_fold(Class(), one))
        base::raise(ads_error::kUnwilling, ADsPath() + " is not a group");
    }
    if (!directory_.has(path))
      base::raise(ads_error::kNoSuchObject, "There is no " + std::string(path));
    if (IsMember(path)) {
      base::raise(is_flat(ADsPath()) ? ads_error::kMemberInGroup : ads_error::kObjectExists,
                  std::string(path) + " is a member of " + ADsPath() + " already");
    }
    foresee_members(*real_);
    if (directory_.made().find(path) != nullptr)
      directory_.made().state_of(path)->groups.insert(base::upper(ADsPath()));
  }
  std::vector<ObjectPtr> wrapped(std::vector<ObjectPtr> objects) {
    for (ObjectPtr& object : objects)
      object = directory_.wrap(object);
    return objects;
  }

  RehearsedDirectory& directory_;
  ObjectPtr real_;
  std::vector<std::string> staged_;
};

}  // namespace

ObjectPtr RehearsedDirectory::wrap(ObjectPtr object) {
  return std::make_shared<RehearsedObject>(*this, std::move(object));
}

ObjectPtr RehearsedDirectory::GetObject(std::string_view path) {
  if (is_gone(path))
    base::raise(platform::ads_error::kNoSuchObject, std::string(path) + " would be gone");
  if (made_.find(path) == nullptr)
    return wrap(real_.GetObject(path));
  const SplitPath parts = split(path);
  return find_made(draft_of(parts.container), parts.name, path);
}

ObjectPtr RehearsedDirectory::draft_of(std::string_view path) {
  const MadeObjects::Names* const names = made_.find(path);
  if (names == nullptr)
    return real_.GetObject(path);
  const SplitPath parts = split(path);
  return draft_of(parts.container)->Create(names->object_class, parts.name);
}

ObjectPtr RehearsedDirectory::find_made(const ObjectPtr& container, std::string_view name,
                                        std::string_view path) {
  const MadeObjects::Names* const names = made_.find(path);
  if (names == nullptr)
    return nullptr;
  const ObjectPtr draft = container->Create(is_flat(path) ? "User" : names->object_class, name);
  std::shared_ptr<MadeState> state = made_.state_of(path);
  if (!is_flat(path)) {
    for (const Staging& staging : state->written)
      draft->PutEx(staging.control, staging.attribute, staging.value);
  }
  if (!is_flat(path) && state->written.empty() && !names->account.empty())
    draft->Put("sAMAccountName", names->account);
  return new_object(*this, draft, std::move(state));
}

bool RehearsedDirectory::has(std::string_view path) {
  if (is_gone(path) || made_.find(path) != nullptr)
    return !is_gone(path);
  base::Trap absent;
  return absent([&] { static_cast<void>(real_.GetObject(path)); });
}

ObjectPtr RehearsedDirectory::OpenDSObject(std::string_view path, std::string_view user,
                                           std::string_view password) {
  return wrap(real_.OpenDSObject(path, user, password));
}

void RehearsedDirectory::forget(const std::string& path) {
  gone_.insert(base::upper(path));
}

bool RehearsedDirectory::is_gone(std::string_view path) const {
  return gone_.contains(base::upper(path));
}

}  // namespace twk::lifecycle
