#include "lifecycle/rehearsal/rehearsed_directory.hpp"

#include <vector>

#include "base/errors.hpp"
#include "base/text.hpp"

namespace twk::lifecycle {
namespace {

using platform::ObjectPtr;
using platform::Value;

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
    for (const std::string& change : staged_)
      directory_.tell("Set on " + ADsPath() + ": " + change);
    staged_.clear();
  }
  void SetPassword(std::string_view /*password*/) override {
    directory_.tell("Set the password of " + ADsPath());
  }

  void enumerate(std::span<const std::string> classes,
                 const std::function<bool(const ObjectPtr&)>& visit) override {
    real_->enumerate(classes, [&](const ObjectPtr& child) {
      return directory_.is_gone(child->ADsPath()) || visit(directory_.wrap(child));
    });
  }
  ObjectPtr GetObject(std::string_view object_class, std::string_view name) override {
    return directory_.wrap(real_->GetObject(object_class, name));
  }
  ObjectPtr Create(std::string_view object_class, std::string_view name) override {
    directory_.tell("Make the " + std::string(object_class) + " " + std::string(name) + " in " + ADsPath());
    return directory_.wrap(real_->Create(object_class, name));
  }
  void Delete(std::string_view object_class, std::string_view name) override {
    const ObjectPtr child = real_->GetObject(object_class, name);
    const bool share = base::equals_fold(object_class, "fileshare");
    directory_.tell((share ? "Delete the share " : "Delete the account ") + child->ADsPath());
    directory_.forget(child->ADsPath());
  }
  ObjectPtr MoveHere(std::string_view source, const std::optional<std::string>& name) override {
    directory_.tell("Rename " + std::string(source) + " to " + name.value_or(std::string()));
    return directory_.GetObject(source);
  }
  void Add(std::string_view path) override {
    directory_.tell("Add " + std::string(path) + " to the group " + ADsPath());
  }
  void Remove(std::string_view path) override {
    directory_.tell("Remove " + std::string(path) + " from the group " + ADsPath());
  }
  bool IsMember(std::string_view path) override { return real_->IsMember(path); }
  std::vector<ObjectPtr> Members() override { return wrapped(real_->Members()); }
  std::vector<ObjectPtr> Groups() override { return wrapped(real_->Groups()); }
  std::string Syntax() override { return real_->Syntax(); }
  bool MultiValued() override { return real_->MultiValued(); }

 private:
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
  return wrap(real_.GetObject(path));
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
