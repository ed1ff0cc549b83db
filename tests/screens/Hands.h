#pragma once

#include <QtCore/QProcess>
#include <QtGui/QAccessible>
#include <QtGui/QWindow>
#include <QtTest/QTest>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <gmock/gmock.h>

#include <ORNHearingTestSDK/screens/NavigationWindow.h>

namespace orn {

/// Eyes, ears and hands of a user in front of a window: what is on it, what a screen reader says of it, and real events
/// of mouse, fingers and keys to it.
struct Hands {
  virtual ~Hands() = default;
  virtual NavigationWindow& shown() const = 0;

  /// Does whatever Qt has to do now; no time of the platform passes.
  static void settle() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
  }

  template <class Widget>
  QStringList textsOf(const QString& objectName = {}) const {
    QStringList all;
    for (const QWidget* one : shown().findChildren<QWidget*>(objectName)) {
      const auto* shown = dynamic_cast<const Widget*>(one);
      if (shown && one->isVisible() && !shown->text().isEmpty()) all << shown->text();
    }
    return all;
  }
  QString title() const { return textsOf<QLabel>("title").join('|'); }
  /// "title|message|button|..." of the alert on top; empty if there is none. All of its text must be visible.
  QString alert() const {
    for (const QLabel* one : shown().findChildren<QLabel*>("alert")) {
      EXPECT_TRUE(!one->isVisible() || one->height() >= one->heightForWidth(one->width())) << one->text().toStdString();
    }
    return (textsOf<QLabel>("alert") + textsOf<QAbstractButton>("alert")).join('|');
  }
  QStringList texts() const { return textsOf<QLabel>(QString()); }
  bool sees(const QString& part) const { return texts().join('\n').contains(part); }

  /// The names of all that a screen reader finds, from the top down; over its bus where there is one.
  QStringList spoken() const {
    const QString reader = qEnvironmentVariable("ORN_SPOKEN_TREE");
    return reader.isEmpty() ? spokenOf(QAccessible::queryAccessibleInterface(&shown())) : spokenOnBus(reader);
  }
  static QStringList spokenOnBus(const QString& reader) {
    constexpr int kPatience = 20'000;  // milliseconds, for a slow machine
    QProcess process;
    const auto read = [&] {
      process.start(reader, {QCoreApplication::applicationName()});
      return QTest::qWaitFor([&] { return process.state() == QProcess::NotRunning; }, kPatience) &&
             process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    };
    EXPECT_TRUE(QTest::qWaitFor(read, kPatience)) << "the application is on the bus";
    return QString::fromUtf8(process.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
  }
  static QStringList spokenOf(const QAccessibleInterface* thing) {
    if (!thing || thing->state().invisible) return {};
    const QString name = thing->text(QAccessible::Name);
    QStringList all;
    if (!name.isEmpty()) all << name;
    for (int index = 0; index < thing->childCount(); ++index) all += spokenOf(thing->child(index));
    return all;
  }

  QAbstractButton* button(const QString& name) const {
    QAbstractButton* newest = nullptr;  // the button of an alert goes before one that it covers
    for (QAbstractButton* one : shown().findChildren<QAbstractButton*>()) {
      if (one->isVisible() && one->accessibleName() == name) newest = one;
    }
    return newest;
  }

  /// Clicks go to whatever is on top at that place.
  void clickAt(QPoint place) {
    QTest::mouseClick(shown().windowHandle(), Qt::LeftButton, {}, place);
    settle();
  }
  void click(const QWidget* widget) {
    ASSERT_TRUE(widget && widget->isVisible());
    clickAt(widget->mapTo(&shown(), widget->rect().center()));
  }
  void click(const QString& buttonName) {
    SCOPED_TRACE(buttonName.toStdString());
    isByFinger ? touch(button(buttonName)) : click(button(buttonName));
  }
  /// Replaces the field's text.
  void type(const QString& field, const QString& text) {
    for (QLineEdit* one : shown().findChildren<QLineEdit*>()) {
      if (!one->isVisible() || one->accessibleName() != field) continue;
      click(one);
      one->selectAll();
      QTest::keyClick(one, Qt::Key_Delete);
      QTest::keyClicks(one, text);
    }
  }

  void touch(const QWidget* widget) {
    const QPoint place = widget->mapTo(&shown(), widget->rect().center());
    drag(place, place);
  }
  /// Drags one finger, in steps.
  void drag(QPoint from, QPoint to) {
    static QPointingDevice* screen = QTest::createTouchDevice();
    QTest::touchEvent(&shown(), screen).press(0, from, &shown());
    for (int step = 1; step <= 10 && from != to; ++step) {
      QTest::touchEvent(&shown(), screen).move(0, from + (to - from) * step / 10, &shown());
    }
    QTest::touchEvent(&shown(), screen).release(0, to, &shown());
    settle();
  }

  void key(Qt::Key key) {
    QTest::keyClick(shown().windowHandle(), key);
    settle();
  }

  bool isByFinger = false;  ///< How the buttons are pressed whose names are given.
};

}  // namespace orn
