#include "lifecycle/rehearsal/trial_directory.hpp"

#include <utility>
#include <vector>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "lifecycle/rehearsal/new_object.hpp"
#include "platform/adsi.hpp"

namespace twk::lifecycle {
namespace {

using platform::ObjectPtr;
using platform::Value;

class TriedObject final : public platform::DirectoryObject {
 public:
  TriedObject(ObjectPtr object, const TrialDirectory::Tell& tell, bool is_new = false)
      : object_(std::move(object)), tell_(tell), is_new_(is_new) {}

  [[nodiscard]] std::string Name() const override { return object_->Name(); }
  [[nodiscard]] std::string Class() const override { return object_->Class(); }
  [[nodiscard]] std::string ADsPath() const override { return object_->ADsPath(); }
  [[nodiscard]] std::string Parent() const override { return object_->Parent(); }
  Value Get(std::string_view attribute) override { return object_->Get(attribute); }

  void Put(std::string_view attribute, const Value& value) override {
    object_->Put(attribute, value);
    staged_.push_back({kReplaced, std::string(attribute), value});
  }
  void PutEx(int control, std::string_view attribute, const Value& value) override {
    object_->PutEx(control, attribute, value);
    staged_.push_back({control, std::string(attribute), value});
  }
  void SetInfo() override {
    object_->SetInfo();
    tell_staged();
  }
  bool SetInfoWithPassword(std::string_view password) override {
    base::Trap refused;
    const bool asked_for = is_asked_for(password);
    bool written = asked_for;
    if (!refused([&] {
          if (asked_for)
            object_->SetInfo();
          else
            written = object_->SetInfoWithPassword(password);
        }) ||
        !written)
      return false;
    tell_staged();
    tell_password(asked_for);
    return true;
  }
  /// One that is asked for is not known.
  void SetPassword(std::string_view password) override {
    const bool asked_for = is_asked_for(password);
    if (!asked_for)
      object_->SetPassword(password);
    tell_password(asked_for);
  }

  void enumerate(std::span<const std::string> classes,
                 const std::function<bool(const ObjectPtr&)>& visit) override {
    object_->enumerate(classes, [&](const ObjectPtr& child) { return visit(tried(child)); });
  }
  ObjectPtr GetObject(std::string_view object_class, std::string_view name) override {
    return tried(object_->GetObject(object_class, name));
  }
  ObjectPtr Create(std::string_view object_class, std::string_view name) override {
    return std::make_shared<TriedObject>(object_->Create(object_class, name), tell_, true);
  }
  void Delete(std::string_view object_class, std::string_view name) override {
    const std::string path = object_->GetObject(object_class, name)->ADsPath();
    object_->Delete(object_class, name);
    tell_("Delete the " + deleted_kind(object_class) + " " + path);
  }
  ObjectPtr MoveHere(std::string_view source, const std::optional<std::string>& name) override {
    ObjectPtr moved = object_->MoveHere(source, name);
    tell_(moved_text(source, ADsPath(), name));
    return tried(std::move(moved));
  }
  void Add(std::string_view path) override {
    object_->Add(path);
    tell_("Add " + std::string(path) + " to the group " + ADsPath());
  }
  void Remove(std::string_view path) override {
    object_->Remove(path);
    tell_("Remove " + std::string(path) + " from the group " + ADsPath());
  }
  bool IsMember(std::string_view path) override { return object_->IsMember(path); }
  std::vector<ObjectPtr> Members() override { return all_tried(object_->Members()); }
  std::vector<ObjectPtr> Groups() override { return all_tried(object_->Groups()); }
  std::string Syntax() override { return object_->Syntax(); }
  bool MultiValued() override { return object_->MultiValued(); }

 private:
  static constexpr int kReplaced = 2;

  [[nodiscard]] ObjectPtr tried(ObjectPtr object) const {
    return std::make_shared<TriedObject>(std::move(object), tell_);
  }
  [[nodiscard]] std::vector<ObjectPtr> all_tried(std::vector<ObjectPtr> objects) const {
    for (ObjectPtr& object : objects)
      object = tried(std::move(object));
    return objects;
  }
  void tell_staged() {
    if (std::exchange(is_new_, false))
      tell_("Make the " + kind_of(Class()) + " " + Name() + " in " + Parent());
    for (const Staging& staging : std::exchange(staged_, {}))
      tell_("Set on " + ADsPath() + ": " + staged_text(staging));
  }
  void tell_password(bool asked_for) const {
    tell_("Set the password of " + ADsPath() + (asked_for ? ", which is asked for" : ""));
  }

  ObjectPtr object_;
  const TrialDirectory::Tell& tell_;
  std::vector<Staging> staged_;
  bool is_new_;
};

bool is_of_file_server(std::string_view path) {
  return base::starts_with_fold(path, "WinNT:") && base::find_fold(path, "/lanmanserver") != base::npos;
}

}  // namespace

ObjectPtr TrialDirectory::GetObject(std::string_view path) {
  if (is_of_file_server(path))
    return shares_.GetObject(path);
  return std::make_shared<TriedObject>(forgetful_.GetObject(path), tell_);
}

ObjectPtr TrialDirectory::OpenDSObject(std::string_view path, std::string_view user,
                                       std::string_view password) {
  if (is_of_file_server(path))
    return shares_.OpenDSObject(path, user, password);
  return std::make_shared<TriedObject>(forgetful_.OpenDSObject(path, user, password), tell_);
}

}  // namespace twk::lifecycle
