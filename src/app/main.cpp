#include <cstdlib>

#include "app/command_line.hpp"
#include "app/errand.hpp"
#include "app/program.hpp"
#include "app/server_trial.hpp"
#include "local/private_memory.hpp"
#include "local/refused_writes.hpp"
#include "screens/widgets/application.hpp"
#include "screens/widgets/icons.hpp"

namespace {

int run(int argc, char** argv) {
  using namespace twk;
  screens::Application application(argc, argv);
  QApplication::setWindowIcon(screens::icon("tarnwick"));
  app::Options options;
  if (const auto code = app::parse(argc, argv, options))
    return *code;
  return app::run(options);
}

}  // namespace

int main(int argc, char** argv) {
  using namespace twk;
  local::keep_memory_private();
  local::outlive_refused_writes();
  if (const auto code = app::answer_server_trial(argc, argv))
    return *code;
  if (const auto code = app::answer_without_screen(argc, argv))
    return *code;
  const int code = run(argc, argv);
  // A test of a connection that was cancelled may still wait for its server, with the libraries that it uses.
  if (app::Errand::is_any_left())
    std::quick_exit(code);
  return code;
}
