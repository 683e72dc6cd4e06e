#include "ads/winnt_object.hpp"

#include "ads/object_rules.hpp"
#include "ads/winnt_properties.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "platform/adsi.hpp"

namespace twk::ads {

namespace ads_error = platform::ads_error;

bool is_new_user(std::string_view object_class, std::string_view name) {
  const bool user = base::equals_fold(object_class, kWinntUser);
  if (!user && !base::equals_fold(object_class, kWinntGroup))
    base::raise(ads_error::kUnwilling, "An object of class " + std::string(object_class) + " cannot be made");
  check_account_name(name, user);
  return user;
}

void raise_no_account(std::string_view object_class, std::string_view name) {
  base::raise(
      base::equals_fold(object_class, kWinntGroup) ? ads_error::kGroupNotFound : ads_error::kUserNotFound,
      "The domain has no account " + std::string(name));
}

std::string WinntDomainObject::ADsPath() const {
  return platform::winnt_path(name_);
}

std::string WinntAccountObject::ADsPath() const {
  return platform::winnt_path(domain_name_, Name());
}

std::string WinntAccountObject::Parent() const {
  return platform::winnt_path(domain_name_);
}

platform::Value WinntAccountObject::Get(std::string_view property) {
  platform::Value value = get_winnt(attributes(), property);
  if (value.is_empty())
    base::raise(ads_error::kPropertyNotFound, Name() + " has no value for " + std::string(property));
  return value;
}

void WinntAccountObject::Put(std::string_view property, const platform::Value& value) {
  put_winnt(attributes(), property, value);
}

void WinntAccountObject::PutEx(int control, std::string_view property, const platform::Value& value) {
  constexpr int kReplace = 2;
  if (control == kReplace)
    return Put(property, value);
  put_ex_winnt(attributes(), control, property, value);
}

}  // namespace twk::ads
