#include "support/faulty_directory.hpp"

#include "base/errors.hpp"
#include "platform/account_listing.hpp"
#include "platform/foreseen_write.hpp"

namespace twk::test {
namespace {

using platform::ObjectPtr;
using platform::Value;

class FaultyObject : public platform::DirectoryObject, public platform::ForeseenWrite {
 public:
  FaultyObject(FaultyDirectory& directory, ObjectPtr real) : directory_(directory), real_(std::move(real)) {}

  [[nodiscard]] std::string Name() const override { return real_->Name(); }
  [[nodiscard]] std::string Class() const override { return real_->Class(); }
  [[nodiscard]] std::string ADsPath() const override { return real_->ADsPath(); }
  [[nodiscard]] std::string Parent() const override { return real_->Parent(); }
  Value Get(std::string_view attribute) override { return at("Get")->Get(attribute); }
  void Put(std::string_view attribute, const Value& value) override { real_->Put(attribute, value); }
  void PutEx(int control, std::string_view attribute, const Value& value) override {
    real_->PutEx(control, attribute, value);
  }
  void SetInfo() override { at("SetInfo")->SetInfo(); }
  void SetPassword(std::string_view password) override { at("SetPassword")->SetPassword(password); }
  bool SetInfoWithPassword(std::string_view password) override {
    return directory_.writes_at_once && at("SetInfoWithPassword")->SetInfoWithPassword(password);
  }
  void foresee_write() override {
    if (auto* const foreseen = dynamic_cast<platform::ForeseenWrite*>(real_.get()))
      foreseen->foresee_write();
  }
  void foresee_password(std::string_view password) override {
    if (auto* const foreseen = dynamic_cast<platform::ForeseenWrite*>(real_.get()))
      foreseen->foresee_password(password);
  }
  void enumerate(std::span<const std::string> classes,
                 const std::function<bool(const ObjectPtr&)>& visit) override {
    at("enumerate")->enumerate(classes, [&](const ObjectPtr& child) {
      return visit(directory_.wrap(child));
    });
  }
  ObjectPtr GetObject(std::string_view object_class, std::string_view name) override {
    return directory_.wrap(at("GetObject")->GetObject(object_class, name));
  }
  ObjectPtr Create(std::string_view object_class, std::string_view name) override {
    return directory_.wrap(at("Create")->Create(object_class, name));
  }
  void Delete(std::string_view object_class, std::string_view name) override {
    at("Delete")->Delete(object_class, name);
  }
  ObjectPtr MoveHere(std::string_view source, const std::optional<std::string>& name) override {
    return directory_.wrap(at("MoveHere")->MoveHere(source, name));
  }
  void Add(std::string_view path) override { at("Add")->Add(path); }
  void Remove(std::string_view path) override { at("Remove")->Remove(path); }
  bool IsMember(std::string_view path) override { return at("IsMember")->IsMember(path); }
  std::vector<ObjectPtr> Members() override { return wrapped(at("Members")->Members()); }
  std::vector<ObjectPtr> Groups() override { return wrapped(at("Groups")->Groups()); }
  std::string Syntax() override { return real_->Syntax(); }
  bool MultiValued() override { return real_->MultiValued(); }

 private:
  ObjectPtr& at(std::string_view operation) {
    directory_.step(operation, real_->ADsPath());
    return real_;
  }
  std::vector<ObjectPtr> wrapped(std::vector<ObjectPtr> objects) {
    for (ObjectPtr& object : objects)
      object = directory_.wrap(object);
    return objects;
  }

  FaultyDirectory& directory_;
  ObjectPtr real_;
};

/// A domain of WinNT; its list counts as "enumerate", too.
class FaultyDomain final : public FaultyObject, public platform::AccountListing {
 public:
  FaultyDomain(FaultyDirectory& directory, const ObjectPtr& real, platform::AccountListing& listing)
      : FaultyObject(directory, real), directory_(directory), listing_(listing) {}

  void list_users(const std::function<bool(const platform::ListedUser&)>& visit) override {
    directory_.step("enumerate", ADsPath());
    listing_.list_users(visit);
  }

 private:
  FaultyDirectory& directory_;
  platform::AccountListing& listing_;
};

}  // namespace

ObjectPtr FaultyDirectory::wrap(ObjectPtr object) {
  if (auto* const listing = dynamic_cast<platform::AccountListing*>(object.get()))
    return std::make_shared<FaultyDomain>(*this, object, *listing);
  return std::make_shared<FaultyObject>(*this, std::move(object));
}

ObjectPtr FaultyDirectory::GetObject(std::string_view path) {
  step("GetObject", path);
  return wrap(real_.GetObject(path));
}

ObjectPtr FaultyDirectory::OpenDSObject(std::string_view path, std::string_view user,
                                        std::string_view password) {
  step("OpenDSObject", path);
  return wrap(real_.OpenDSObject(path, user, password));
}

void FaultyDirectory::end_batch() {
  step("end_batch", "");
  real_.end_batch();
}

FaultyDirectory::Before fail_at(std::string operation, int n, std::uint32_t number) {
  auto left = std::make_shared<int>(n);
  return [operation = std::move(operation), left, number](std::string_view name, std::string_view path) {
    if (name != operation || --*left != 0)
      return;
    throw base::RuntimeError(number, "refused by the test: " + operation + " of " + std::string(path));
  };
}

}  // namespace twk::test
