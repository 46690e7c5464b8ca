#include <gtest/gtest.h>

#include <QGuiApplication>

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  // Also when the tests are only listed, and there is no display.
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QCoreApplication::setAttribute(Qt::AA_Use96Dpi);
  const QGuiApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
