// The entry of test programs that need the toolkit: without a screen, unless one is asked for.
#include <QApplication>

#include <clocale>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
  // Set here and not by the test runner, which also starts the program to list its tests.
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  // The texts and number formats that the tests expect.
  qputenv("LC_ALL", "C.UTF-8");
  qunsetenv("LANGUAGE");
  // A test must not reach the desktop of whoever runs it.
  qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
  ::testing::InitGoogleTest(&argc, argv);
  const QApplication application(argc, argv);
  std::setlocale(LC_NUMERIC, "C");
  return RUN_ALL_TESTS();
}
