#include <gtest/gtest.h>

#include "screens/application.hpp"

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  testing::InitGoogleTest(&argc, argv);
  twk::screens::Application application(argc, argv);
  application.on_failure = [](const std::exception& failure) { ADD_FAILURE() << failure.what(); };
  // Nothing of one test is to be seen by the next, or by the person's own program.
  QCoreApplication::setOrganizationName("tarnwick-tests");
  return RUN_ALL_TESTS();
}
