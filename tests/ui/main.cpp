#include <gtest/gtest.h>

#include <QApplication>

// The window's tests need an application; without a display it draws into memory.
int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  const bool hasDisplay =
      qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
  if (!hasDisplay) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
