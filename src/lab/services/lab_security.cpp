#include "lab/services/lab_security.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "lab/domain/account_identity.hpp"
#include "lab/services/lab_files.hpp"
#include "lab/store/errors.hpp"

namespace twk::lab {
namespace {

using platform::SecurityDescriptor;
using platform::Sid;
namespace access = platform::access;
namespace information = platform::security_information;
namespace security_error = platform::security_error;

constexpr std::uint64_t kFirstPrivilege = 2;

class Token final : public platform::ProcessToken {
 public:
  explicit Token(ProcessIdentity& identity) : identity_(identity) {}

  void AdjustTokenPrivileges(std::uint64_t number, bool enable) override {
    const auto names = known_privileges();
    const std::uint64_t place = number - kFirstPrivilege;
    if (place >= names.size() || !identity_.holds(names[place]))
      raise(security_error::kNotAllAssigned, "Not all privileges are assigned to the caller");
    identity_.enable(names[place], enable);
  }

 private:
  ProcessIdentity& identity_;
};

ServerPath require_place(FileServers& servers, platform::Files& files, std::string_view path) {
  auto place = locate(servers, path);
  if (!place) {
    raise(ads_error::kNotImplementedByProvider,
          "Files of the workstation have no security descriptor: " + std::string(path));
  }
  if (!files.exists(path))
    raise(base::error::kFileNotFound, "There is no file or folder " + std::string(path));
  return *std::move(place);
}

[[noreturn]] void deny(std::string_view path) {
  raise(security_error::kAccessDenied, "Access is denied: " + std::string(path));
}

SecurityDescriptor part_of(const SecurityDescriptor& whole, std::uint32_t parts) {
  SecurityDescriptor part;
  part.control = whole.control;
  if ((parts & information::kOwner) != 0)
    part.owner = whole.owner;
  if ((parts & information::kGroup) != 0)
    part.group = whole.group;
  if ((parts & information::kDacl) != 0) {
    part.dacl_present = whole.dacl_present;
    part.dacl = whole.dacl;
  }
  return part;
}

}  // namespace

platform::AccountSid LabSecurity::LookupAccountName(std::string_view server, std::string_view account) {
  return look_up_account(domain_, server, account);
}

std::string LabSecurity::LookupAccountSid(std::string_view server, const Sid& sid) {
  return account_text(domain_, server, sid);
}

std::vector<Sid> LabSecurity::account_identifiers(std::string_view account) {
  return logon_identifiers(domain_, look_up_account(domain_, {}, account).sid);
}

SecurityDescriptor LabSecurity::GetFileSecurity(std::string_view path, std::uint32_t parts,
                                                std::size_t buffer) {
  const ServerPath place = require_place(domain_.servers, files_, path);
  const SecurityDescriptor whole = place.server.descriptors().effective(place.path);
  if ((rights_by(identity_, place, whole) & access::kReadControl) == 0)
    deny(path);
  SecurityDescriptor part = part_of(whole, parts);
  const std::size_t size = part.encode().size();
  if (size > buffer) {
    raise(security_error::kInsufficientBuffer, "The descriptor of " + std::string(path) + " takes " +
                                                   base::to_text(static_cast<std::int64_t>(size)) +
                                                   " bytes, more than the buffer has");
  }
  return part;
}

void LabSecurity::require_settable_owner(const Sid& owner) {
  if (identity_.is_enabled(platform::privilege::kRestore))
    return;
  if (owner != identity_.default_owner() && owner != identity_.account())
    raise(security_error::kInvalidOwner, "This security ID may not be assigned as the owner of this object");
}

void LabSecurity::SetFileSecurity(std::string_view path, std::uint32_t parts,
                                  const SecurityDescriptor& descriptor) {
  const ServerPath place = require_place(domain_.servers, files_, path);
  FolderDescriptors& descriptors = place.server.descriptors();
  if (descriptors.is_locked(place.path))
    raise(security_error::kSharingViolation, "The file is open in another program: " + std::string(path));
  SecurityDescriptor whole = descriptors.effective(place.path);
  std::uint32_t needed = 0;
  if ((parts & (information::kOwner | information::kGroup)) != 0)
    needed |= access::kWriteOwner;
  if ((parts & information::kDacl) != 0)
    needed |= access::kWriteDac;
  if ((rights_by(identity_, place, whole) & needed) != needed)
    deny(path);
  if ((parts & information::kOwner) != 0) {
    if (!descriptor.owner)
      raise(security_error::kInvalidDescriptor, "The descriptor names no owner");
    require_settable_owner(*descriptor.owner);
    whole.owner = descriptor.owner;
  }
  if ((parts & information::kGroup) != 0)
    whole.group = descriptor.group;
  if ((parts & information::kDacl) != 0) {
    whole.control = descriptor.control;
    whole.dacl_present = descriptor.dacl_present;
    whole.dacl = descriptor.dacl;
  }
  descriptors.store(place.path, whole);
}

std::unique_ptr<platform::ProcessToken> LabSecurity::OpenProcessToken() {
  return std::make_unique<Token>(identity_);
}

std::uint64_t LabSecurity::LookupPrivilegeValue(std::string_view name) {
  const auto names = known_privileges();
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (base::equals_fold(names[i], name))
      return kFirstPrivilege + i;
  }
  raise(security_error::kNoSuchPrivilege, "A specified privilege does not exist: " + std::string(name));
}

}  // namespace twk::lab
