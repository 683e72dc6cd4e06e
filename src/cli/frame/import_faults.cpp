#include "cli/frame/import_faults.hpp"

#include "cli/terminal/failures.hpp"

namespace twk::cli {

bool tell_import_faults(Context& context, session::Session& session, const batch::ImportOrder& order) {
  bool stops = false;
  for (const batch::ImportFault& fault : batch::check_import(session, order)) {
    const std::string light(fault.stops ? session::kRed : session::kYellow);
    stops = stops || fault.stops;
    if (context.output().json()) {
      context.output().result(
          {{"check", fault.subject}, {"light", light}, {"message", fault.message}, {"remedy", fault.remedy}},
          {});
    }
    complain(light + ": " + fault.message + "; " + fault.remedy);
  }
  if (stops)
    complain("nothing is imported, because every line would fail");
  return stops;
}

}  // namespace twk::cli
