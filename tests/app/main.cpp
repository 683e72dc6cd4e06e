#include <gtest/gtest.h>

#include "app/server_trial.hpp"
#include "screens/widgets/application.hpp"
#include "support/temporary_directory.hpp"

namespace {

// The platform's own screen is narrower than the program needs.
constexpr const char* kScreen =
    R"({"screens": [{"name": "one", "x": 0, "y": 0, "width": 1280, "height": 900, "logicalDpi": 96, "dpr": 1}]})";

}  // namespace

int main(int argc, char** argv) {
  // Its own server, as the program is.
  if (const auto code = twk::app::answer_server_trial(argc, argv))
    return *code;
  // Instances, settings and labs of the person who runs the tests must not be seen or touched.
  const twk::test::TemporaryDirectory home;
  twk::test::put_file(home / "screen.json", kScreen);
  qputenv("QT_QPA_PLATFORM", QByteArray("offscreen:configfile=") + (home / "screen.json").c_str());
  for (const char* const name : {"HOME", "XDG_RUNTIME_DIR", "XDG_CONFIG_HOME", "XDG_DATA_HOME"})
    qputenv(name, home.path().c_str());
  qunsetenv("TWK_LAB");
  qputenv("KRB5CCNAME", "FILE:/nonexistent/ticket");
  qputenv("KRB5_CONFIG", "/dev/null");
  testing::InitGoogleTest(&argc, argv);
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const twk::screens::Application application(argc, argv);
  return RUN_ALL_TESTS();
}
