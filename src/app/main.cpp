#include "app/command_line.hpp"
#include "app/program.hpp"
#include "local/private_memory.hpp"
#include "local/refused_writes.hpp"
#include "screens/widgets/application.hpp"
#include "screens/widgets/icons.hpp"

int main(int argc, char** argv) {
  using namespace twk;
  if (const auto code = app::answer_without_screen(argc, argv))
    return *code;
  local::keep_memory_private();
  local::outlive_refused_writes();
  screens::Application application(argc, argv);
  QApplication::setWindowIcon(screens::icon("tarnwick"));
  app::Options options;
  if (const auto code = app::parse(argc, argv, options))
    return *code;
  return app::run(options);
}
