#pragma once

#include <gtest/gtest.h>

#include <QDir>
#include <QTest>
#include <QWidget>

namespace spectrane::testing_windows {

/// A picture of a widget for a person to judge, in the folder that SPECTRANE_PICTURES names. Cases that take
/// some are disabled: --gtest_also_run_disabled_tests runs them, QT_SCALE_FACTOR=2 as on a dense screen.
inline void Shoot(QWidget& widget, const QString& name) {
  widget.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&widget));
  QCoreApplication::processEvents();
  const QString folder = qEnvironmentVariable("SPECTRANE_PICTURES");
  ASSERT_TRUE(QDir().mkpath(folder));
  const qreal scale = widget.devicePixelRatioF();
  const QString dense = scale == 1 ? QString() : QStringLiteral("-%1").arg(scale * 100);
  EXPECT_TRUE(widget.grab().save(folder + u'/' + name + dense + QStringLiteral(".png")));
}
inline void Shoot(QWidget& widget, const char* name) {
  Shoot(widget, QString::fromLatin1(name));
}

}  // namespace spectrane::testing_windows
