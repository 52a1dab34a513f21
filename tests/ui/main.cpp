#include <gtest/gtest.h>

#include <QApplication>

// Read by the thread sanitizer: Qt's own locks and queues are not built for it.
extern "C" const char* __tsan_default_suppressions() {  // NOLINT(bugprone-reserved-identifier)
  return "called_from_lib:libQt6Core.so\n"
         "race_top:QMetaCallEvent\nrace_top:QEvent\nrace_top:operator delete\n";
}

// The window's tests need an application; without a display it draws into memory.
int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  const bool hasDisplay =
      qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
  if (!hasDisplay) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
