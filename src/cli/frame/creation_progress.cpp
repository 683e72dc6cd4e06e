#include "cli/frame/creation_progress.hpp"

#include "session/session.hpp"

namespace twk::cli {

void CreationProgress::status(std::string_view text) {
  session_.status.panel1 = std::string(text);
}

void CreationProgress::step(std::string_view caption) {
  // An import shows how far it is instead, a rehearsal its steps.
  if (!session_.import.Importing && !session_.import.rehearsed)
    progress_.show(caption);
}

void CreationProgress::password_set(std::string_view account, std::string_view password) {
  if (take_password_)
    take_password_(account, password);
}

void CreationProgress::pace(std::string_view text) {
  progress_.show(text);
}

}  // namespace twk::cli
