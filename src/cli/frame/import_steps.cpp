#include "cli/frame/import_steps.hpp"

#include "cli/terminal/display.hpp"

namespace twk::cli {

ImportSteps::ImportSteps(Context& context) : context_(context) {
  context.rehearse([this](const std::string& step) {
    if (session_ != nullptr)
      steps_.push_back(session_->log.concealed(step));
  });
  // A run's questions are reported, and answered with Yes.
  if (context.dialogs().asks_person())
    context.dialogs().set_asking(Asking::kYes);
}

void ImportSteps::print(std::int32_t line) {
  const std::string number = line == 0 ? std::string() : std::to_string(line);
  for (const std::string& step : steps_)
    context_.output().result({{"line", line}, {"step", step}}, pad(number, 6) + printable(step));
  steps_.clear();
}

}  // namespace twk::cli
