#include "lifecycle/rehearsal/new_object.hpp"

#include <algorithm>
#include <array>
#include <utility>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "platform/foreseen_write.hpp"

namespace twk::lifecycle {
namespace {

using platform::ObjectPtr;
using platform::Value;
namespace ads_error = platform::ads_error;

constexpr int kClear = 1;
constexpr int kReplace = 2;
constexpr std::int32_t kDomainUsers = 513;
constexpr std::string_view kAskedFor = "PROMPT";

bool is_flags(std::string_view attribute) {
  return base::equals_fold(attribute, "UserFlags") || base::equals_fold(attribute, "userAccountControl");
}

bool is_primary_group(std::string_view attribute) {
  return base::equals_fold(attribute, "primaryGroupID");
}

std::int32_t group_rid(platform::DirectoryService& directory, const std::string& path) {
  std::uint32_t rid = 0;
  base::Trap unknown;
  unknown([&] {
    const base::Bytes sid = directory.GetObject(path)->Get("objectSID").bytes();
    for (std::size_t i = 0; i < 4 && sid.size() >= 4; ++i)
      rid = (rid << 8U) | sid[sid.size() - 1 - i];
  });
  return static_cast<std::int32_t>(rid);
}

class NewObject final : public platform::DirectoryObject {
 public:
  NewObject(ReportingDirectory& directory, ObjectPtr draft, std::shared_ptr<MadeState> state)
      : directory_(directory), draft_(std::move(draft)), state_(std::move(state)) {}

  [[nodiscard]] std::string Name() const override { return draft_->Name(); }
  [[nodiscard]] std::string Class() const override { return draft_->Class(); }
  [[nodiscard]] std::string ADsPath() const override { return draft_->ADsPath(); }
  [[nodiscard]] std::string Parent() const override { return draft_->Parent(); }

  Value Get(std::string_view attribute) override {
    if (!is_flags(attribute) || !state_)
      return draft_->Get(attribute);
    const auto put = std::find_if(staged_.rbegin(), staged_.rend(),
                                  [](const Staging& staging) { return is_flags(staging.attribute); });
    return put == staged_.rend() ? state_->flags : put->value;
  }
  void Put(std::string_view attribute, const Value& value) override { PutEx(kReplace, attribute, value); }
  void PutEx(int control, std::string_view attribute, const Value& value) override {
    if (!is_primary_group(attribute))
      draft_->PutEx(control, attribute, value);
    staged_.push_back({control, std::string(attribute), value});
  }
  void SetInfo() override {
    check();
    write();
  }
  bool SetInfoWithPassword(std::string_view password) override {
    base::Trap refused;
    refused([&] {
      check();
      foresee_password(*draft_, password);
    });
    if (refused.number() == ads_error::kServerDown)
      base::raise(refused.number(), refused.description());
    if (state_ || refused.number() != 0)
      return false;
    write();
    SetPassword(password);
    return true;
  }
  void SetPassword(std::string_view password) override {
    foresee_password(*draft_, password);
    directory_.tell("Set the password of " + ADsPath() +
                    (is_asked_for(password) ? ", which is asked for" : ""));
  }

  void enumerate(std::span<const std::string> classes,
                 const std::function<bool(const ObjectPtr&)>& visit) override {
    draft_->enumerate(classes, visit);
  }
  ObjectPtr GetObject(std::string_view object_class, std::string_view name) override {
    return draft_->GetObject(object_class, name);
  }
  ObjectPtr Create(std::string_view object_class, std::string_view name) override {
    return new_object(directory_, draft_->Create(object_class, name), nullptr);
  }
  void Delete(std::string_view object_class, std::string_view name) override {
    draft_->Delete(object_class, name);
  }
  ObjectPtr MoveHere(std::string_view source, const std::optional<std::string>& name) override {
    directory_.tell(moved_text(source, ADsPath(), name));
    return directory_.GetObject(source);
  }
  void Add(std::string_view path) override {
    directory_.tell("Add " + std::string(path) + " to the group " + ADsPath());
  }
  void Remove(std::string_view path) override {
    directory_.tell("Remove " + std::string(path) + " from the group " + ADsPath());
  }
  bool IsMember(std::string_view /*path*/) override { return false; }
  std::vector<ObjectPtr> Members() override { return {}; }
  std::vector<ObjectPtr> Groups() override {
    std::vector<ObjectPtr> groups;
    if (state_) {
      for (const std::string& path : state_->groups)
        groups.push_back(directory_.GetObject(path));
    }
    return groups;
  }
  std::string Syntax() override { return draft_->Syntax(); }
  bool MultiValued() override { return draft_->MultiValued(); }

 private:
  [[nodiscard]] bool is_flat() const { return base::starts_with_fold(ADsPath(), "WinNT:"); }
  [[nodiscard]] std::string account() const {
    return is_flat() ? Name() : platform::text_or_empty(*draft_, "sAMAccountName");
  }
  /// An account that was made has its name, although the draft asks for it again; the draft does not know of
  /// a container that was made.
  void foresee() const {
    base::Trap refused;
    refused([&] { foresee_write(*draft_); });
    const bool own_name = state_ && is_flat() && refused.number() == ads_error::kUserExists;
    const bool in_made =
        refused.number() == ads_error::kNoSuchObject && directory_.made().find(Parent()) != nullptr;
    if (refused.number() != 0 && !own_name && !in_made)
      base::raise(refused.number(), refused.description());
  }
  void check() const {
    foresee();
    const auto taken = is_flat() ? ads_error::kUserExists : ads_error::kObjectExists;
    const MadeObjects::Names* const made = directory_.made().find(ADsPath());
    if (!state_ && directory_.has(ADsPath()))
      base::raise(taken, "The name is in use: " + ADsPath());
    const std::string name = account();
    const bool own = state_ && made != nullptr && base::equals_fold(made->account, name);
    if (!own && !name.empty() && directory_.made().has_account(name))
      base::raise(taken, "The account name " + name + " is in use");
    for (const Staging& staging : staged_) {
      if (is_primary_group(staging.attribute))
        require_member(staging.value.integer());
    }
  }
  void require_member(std::int32_t rid) const {
    const auto has_rid = [&](const std::string& path) { return group_rid(directory_, path) == rid; };
    if (rid != kDomainUsers && !(state_ && std::ranges::any_of(state_->groups, has_rid))) {
      base::raise(ads_error::kUnwilling,
                  ADsPath() + " is not a member of the group that is to be its primary one");
    }
  }
  void write() {
    MadeObjects& made = directory_.made();
    const std::string path = ADsPath();
    const std::string name = account();
    if (!state_) {
      directory_.tell("Make the " + kind_of(Class()) + " " + Name() + " in " + Parent());
      made.add(path, {Class(), name});
      state_ = made.state_of(path);
    } else if (const auto* const names = made.find(path); names != nullptr && names->account != name) {
      made.rename_account(path, name);
    }
    const std::string principal =
        is_flat() ? std::string() : platform::text_or_empty(*draft_, "userPrincipalName");
    if (!principal.empty())
      made.add_principal(principal);
    for (Staging& staging : staged_) {
      directory_.tell("Set on " + path + ": " + staged_text(staging));
      if (is_flags(staging.attribute))
        state_->flags = staging.value.integer();
      state_->written.push_back(std::move(staging));
    }
    staged_.clear();
  }

  ReportingDirectory& directory_;
  ObjectPtr draft_;
  std::shared_ptr<MadeState> state_;
  std::vector<Staging> staged_;
};

}  // namespace

std::string kind_of(std::string_view object_class) {
  constexpr std::array<std::pair<std::string_view, std::string_view>, 4> kWords = {
      {{"OrganizationalPerson", "mailbox"},
       {"Remote-Address", "custom recipient"},
       {"organizationalUnit", "organizational unit"},
       {"fileshare", "share"}}};
  for (const auto& [one, word] : kWords) {
    if (base::equals_fold(one, object_class))
      return std::string(word);
  }
  return base::lower(object_class);
}

std::string deleted_kind(std::string_view object_class) {
  return base::equals_fold(object_class, "user") ? "account" : kind_of(object_class);
}

std::string staged_text(const Staging& staging) {
  if (staging.control == kClear)
    return staging.attribute + " cleared";
  if (staging.control != kReplace || staging.value.is_list())
    return staging.attribute + " changed";
  const auto* const bytes = std::get_if<base::Bytes>(&staging.value.data);
  return staging.attribute + " = " +
         (bytes == nullptr ? staging.value.text()
                           : base::to_text(static_cast<std::int64_t>(bytes->size())) + " bytes");
}

std::string moved_text(std::string_view source, const std::string& target,
                       const std::optional<std::string>& name) {
  return name ? "Rename " + std::string(source) + " to " + *name
              : "Move " + std::string(source) + " to " + target;
}

bool is_asked_for(std::string_view password) {
  return base::equals_fold(password, kAskedFor);
}

void foresee_write(platform::DirectoryObject& object) {
  if (auto* const foreseen = dynamic_cast<platform::ForeseenWrite*>(&object))
    foreseen->foresee_write();
}

void foresee_password(platform::DirectoryObject& object, std::string_view password) {
  auto* const foreseen = dynamic_cast<platform::ForeseenWrite*>(&object);
  if (foreseen == nullptr)
    return;
  foreseen->foresee_reset();
  if (!is_asked_for(password))
    foreseen->foresee_password(password);
}

void foresee_deletion(platform::DirectoryObject& object) {
  if (auto* const foreseen = dynamic_cast<platform::ForeseenWrite*>(&object))
    foreseen->foresee_deletion();
}

void foresee_members(platform::DirectoryObject& group) {
  if (auto* const foreseen = dynamic_cast<platform::ForeseenWrite*>(&group))
    foreseen->foresee_members();
}

void foresee_move(platform::DirectoryObject& container, std::string_view source) {
  if (auto* const foreseen = dynamic_cast<platform::ForeseenWrite*>(&container))
    foreseen->foresee_move(source);
}

ObjectPtr new_object(ReportingDirectory& directory, ObjectPtr draft, std::shared_ptr<MadeState> state) {
  return std::make_shared<NewObject>(directory, std::move(draft), std::move(state));
}

}  // namespace twk::lifecycle
