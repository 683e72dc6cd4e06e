#include "lifecycle/trees/file_owner.hpp"

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "session/session.hpp"

namespace twk::lifecycle {
namespace {

constexpr std::uint32_t kOwner = platform::security_information::kOwner;
constexpr std::size_t kOwnerBuffer = 4096;

}  // namespace

OwnerKeeper::OwnerKeeper(session::Session& session) : session_(session), switched_(switch_privilege(true)) {}

OwnerKeeper::~OwnerKeeper() {
  if (switched_)
    switch_privilege(false);
}

bool OwnerKeeper::switch_privilege(bool on) {
  platform::Security& security = session_.platform.security;
  base::Trap trap;
  return trap([&] {
    security.OpenProcessToken()->AdjustTokenPrivileges(
        security.LookupPrivilegeValue(platform::privilege::kRestore), on);
  });
}

void OwnerKeeper::keep(const std::string& from, const std::string& to) {
  if (!refusal_.empty())
    return;
  platform::Security& security = session_.platform.security;
  base::Trap trap;
  trap([&] {
    const auto wanted = security.GetFileSecurity(from, kOwner, kOwnerBuffer);
    const auto there = security.GetFileSecurity(to, kOwner, kOwnerBuffer);
    if (wanted.owner && wanted.owner != there.owner)
      security.SetFileSecurity(to, kOwner, wanted);
  });
  if (trap.number() != 0)
    refusal_ = to + ": " + base::in_words(trap.number(), trap.description());
}

}  // namespace twk::lifecycle
