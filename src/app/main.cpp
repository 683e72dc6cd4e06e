#include <QCommandLineParser>

#include "screens/application.hpp"
#include "screens/main_window.hpp"
#include "screens/qt_dialogs.hpp"
#include "screens/text.hpp"
#include "session/start_up.hpp"
#include "world/world.hpp"

namespace {

int run(const QString& lab) {
  twk::screens::QtDialogs dialogs;
  twk::world::World world(lab.toStdString(), dialogs,
                          [](const std::string& warning) { qWarning("%s", warning.c_str()); });
  world.choose_domain_and_database({});
  twk::session::Session session(world.services(), "", world.program_directory());
  dialogs.set_session(session);
  if (twk::session::start_session(session) != twk::session::StartUp::kReady)
    return 77;
  twk::screens::MainWindow window(session);
  window.show();
  return twk::screens::Application::exec();
}

}  // namespace

int main(int argc, char** argv) {
  const twk::screens::Application application(argc, argv);
  QCommandLineParser parser;
  const QCommandLineOption lab("lab", "Folder of the lab to work in.", "DIR");
  parser.addOption(lab);
  parser.process(application);
  return run(parser.value(lab));
}
