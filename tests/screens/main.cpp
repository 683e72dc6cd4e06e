#include <gtest/gtest.h>

#include "screens/widgets/application.hpp"
#include "support/temporary_directory.hpp"

int main(int argc, char** argv) {
  // Settings of the person who runs the tests, and of tests that run at the same time, must not be seen.
  const twk::test::TemporaryDirectory home;
  for (const char* const name : {"HOME", "XDG_RUNTIME_DIR", "XDG_CONFIG_HOME"})
    qputenv(name, home.path().c_str());
  qputenv("QT_QPA_PLATFORM", "offscreen");
  testing::InitGoogleTest(&argc, argv);
  twk::screens::Application application(argc, argv);
  application.on_failure = [](const std::exception& failure) { ADD_FAILURE() << failure.what(); };
  return RUN_ALL_TESTS();
}
