#include "cli/terminal/failures.hpp"

#include <cstdio>
#include <new>

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "cli/terminal/display.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "live/terms/error_numbers.hpp"
#include "local/regedit.hpp"
#include "platform/acl.hpp"
#include "platform/directory.hpp"
#include "session/activity_log.hpp"

namespace twk::cli {
namespace {

/// HRESULTs of FACILITY_WIN32, [MS-ERREF] 2.1: what a directory or a server answered.
bool is_refusal_of_server(std::uint32_t number) {
  return number >> 16U == 0x8007;
}

int exit_code_of_error(std::uint32_t number) {
  switch (number) {
    case base::error::kPermissionDenied:
    case base::error::kPathFileAccess:
    case platform::ads_error::kAccessDenied:
    case platform::ads_error::kLogonFailure:
      return kExitNotPermitted;
    case live::kStopped:
      return kExitYellow;
    case base::error::kBadFileName:
    case base::error::kFileNotFound:
    case base::error::kPathNotFound:
    case local::kInvalidFileFormat:
    case platform::security_error::kInvalidSid:
    case platform::security_error::kInvalidDescriptor:
      return kExitBadData;
    case platform::ads_error::kBadPathname:  // a directory name that no path can contain
    case live::kBadStub:
      return kExitRed;
    default:
      return is_refusal_of_server(number) ? kExitRed : kExitFault;
  }
}

}  // namespace

int exit_code_of_light(std::string_view light) {
  if (light == session::kGreen)
    return kExitGreen;
  return light == session::kYellow ? kExitYellow : kExitRed;
}

void complain(std::string_view text) {
  std::fprintf(stderr, "twk: %s\n", printable(text).c_str());
}

int report_failure() {
  try {
    throw;
  } catch (const UsageError& failure) {
    complain(failure.what());
    return kExitUsage;
  } catch (const BadInput& failure) {
    complain(failure.what());
    return kExitBadData;
  } catch (const Refused& failure) {
    complain(failure.what());
    return kExitRed;
  } catch (const base::RuntimeError& failure) {
    const std::string_view words = base::words_of_error(failure.number());
    complain(failure.description() + " (error " + error_number_text(failure.number()) +
             (words.empty() ? "" : ": " + std::string(words)) + ")");
    return exit_code_of_error(failure.number());
  } catch (const std::bad_alloc&) {
    complain("out of memory");
    return kExitFault;
  } catch (const std::exception& failure) {
    complain(std::string("unexpected fault: ") + failure.what());
    return kExitFault;
  } catch (...) {
    complain("unexpected fault");
    return kExitFault;
  }
}

}  // namespace twk::cli
