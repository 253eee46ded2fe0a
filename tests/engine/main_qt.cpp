#include "support/temp_folder.h"

#include <QApplication>

#include <cstdlib>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  // Nothing is heard on the machine that runs the tests, and its user's folders stay as they are:
  // there is no sound server, no PipeWire and no ALSA device.
  const kv::TempFolder home;
  setenv("HOME", home.Path().c_str(), 1);
  setenv("PULSE_SERVER", ("unix:" + home.Path("nobody")).c_str(), 1);
  setenv("ALSA_CONFIG_PATH", "/dev/null", 1);
  unsetenv("XDG_RUNTIME_DIR");
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
