#include "cli/frame/resource_session.hpp"

#include "base/errors.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "directory/operations.hpp"
#include "platform/network.hpp"
#include "session/activity_log.hpp"

namespace twk::cli {
namespace {

namespace security_error = platform::security_error;

constexpr std::uint32_t kLogonFailure = 1326;  // ERROR_LOGON_FAILURE, [MS-ERREF] 2.2

/// True for a number that `report_failure` has an exit code for.
bool has_exit_code(std::uint32_t number) {
  switch (number) {
    case base::error::kBadFileName:
    case base::error::kFileNotFound:
    case base::error::kPathNotFound:
    case base::error::kPermissionDenied:
    case base::error::kPathFileAccess:
    case platform::ads_error::kAccessDenied:
    case platform::ads_error::kLogonFailure:
    case platform::ads_error::kServerDown:
      return true;
    default:
      return false;
  }
}

[[noreturn]] void raise_plainly(const base::RuntimeError& failure, const std::string& account) {
  if (failure.number() == security_error::kNoneMapped && !account.empty())
    throw Refused("There is no account \"" + account + "\".");
  switch (failure.number()) {
    case security_error::kAccessDenied:
    case security_error::kInvalidOwner:
      throw base::RuntimeError(platform::ads_error::kAccessDenied, failure.description());
    case kLogonFailure:
      throw base::RuntimeError(platform::ads_error::kLogonFailure, failure.description());
    case security_error::kInvalidSid:
    case security_error::kInvalidDescriptor:
      throw BadInput(failure.description());
    default:
      if (has_exit_code(failure.number()))
        throw base::RuntimeError(failure.number(), failure.description());
      throw Refused(failure.description());
  }
}

}  // namespace

session::Session& resource_session(Context& context) {
  session::Session& session = context.session(Depth::kDatabases);
  session.DirectoryMode = directory::Determine_Mode(session, session.DomainName);
  return session;
}

void in_plain_words(const std::function<void()>& calls, const std::string& account) {
  try {
    calls();
  } catch (const base::RuntimeError& failure) {
    raise_plainly(failure, account);
  }
}

void in_log_block(session::Session& session, const std::function<void()>& work) {
  session.log.begin_block();
  try {
    work();
  } catch (const std::runtime_error& failure) {
    session.log.line(failure.what());
    session.log.close();
    throw;
  }
  session.log.close();
}

std::string with_reasons(session::Session& session, std::string message) {
  const char* separator = ": ";
  for (const std::string& reason : session.log.take_reasons()) {
    message += separator + reason;
    separator = "; ";
  }
  return message;
}

int tell_light(Context& context, std::string_view light, const std::string& message, const Json& further) {
  if (context.rehearses() && light == session::kGreen)
    return kExitGreen;
  Json result = {{"light", light}, {"message", message}};
  result.update(further);
  context.output().result(result, context.output().light(light) + "  " + message);
  return exit_code_of_light(light);
}

}  // namespace twk::cli
