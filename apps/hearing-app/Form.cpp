#include "hearing-app/Form.h"

#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

#include <ORNHearingTestSDK/screens/ORNScreenUtils.h>

namespace orn {
namespace {

constexpr int kMargin = 24;
constexpr int kWidest = 480;
constexpr int kLongestAnswer = 255;  // in characters; no host's name is longer

// The colours of the screens.
constexpr auto kStyle =
    "#form { background: white; }"
    "QLabel, QRadioButton { color: #555555; }"
    "QLineEdit { border: 1px solid #d8dcda; border-radius: 8px; padding: 9px 10px; background: white; color: black;"
    " selection-background-color: #178a69; }"
    "QLineEdit:focus { border: 2px solid #178a69; padding: 8px 9px; }"
    "QRadioButton::indicator { width: 16px; height: 16px; border-radius: 9px; border: 1px solid #8f9a96; }"
    "QRadioButton::indicator:checked { border: 5px solid #178a69; width: 8px; height: 8px; }"
    "QRadioButton:focus { color: #178a69; text-decoration: underline; }"
    "QPushButton { border: none; border-radius: 10px; padding: 12px; background: #178a69; color: white; }"
    "QPushButton:pressed, QPushButton:focus { background: #0f6b51; }"
    "#quiet { background: white; color: #178a69; border: 1px solid #178a69; padding: 11px; }"
    "#quiet:pressed, #quiet:focus { background: #e6eeeb; border: 2px solid #178a69; padding: 10px; }"
    "#complaint { color: #b3261e; }";

}  // namespace

QVBoxLayout* makeForm(QWidget* view, int topBars) {
  view->setObjectName(QStringLiteral("form"));
  view->setAttribute(Qt::WA_StyledBackground);
  view->setStyleSheet(QString::fromLatin1(kStyle));
  auto* form = new QWidget;
  form->setMaximumWidth(kWidest);
  auto* middle = new QHBoxLayout(view);
  middle->setContentsMargins(kMargin, topBars + kMargin, kMargin, kMargin);
  middle->addWidget(form);
  auto* column = new QVBoxLayout(form);
  column->setContentsMargins(0, 0, 0, 0);
  return column;
}

QLabel* addText(QVBoxLayout* form, const QString& text) {
  auto* label = new QLabel(text);
  label->setFont(ORNScreenUtils::systemFontOfSize(14));
  label->setWordWrap(true);
  form->addWidget(label);
  return label;
}

QLineEdit* addField(QVBoxLayout* form, const QString& title, const QString& hint) {
  addText(form, title);
  auto* field = new QLineEdit;
  field->setFont(ORNScreenUtils::systemFontOfSize(16));
  field->setPlaceholderText(hint);
  field->setAccessibleName(title);
  field->setMaxLength(kLongestAnswer);
  form->addWidget(field);
  form->addSpacing(6);
  return field;
}

QLabel* addComplaint(QVBoxLayout* form) {
  QLabel* complaint = addText(form, {});
  complaint->setObjectName(QStringLiteral("complaint"));
  return complaint;
}

QPushButton* addButton(QVBoxLayout* form, const QString& title) {
  auto* button = new QPushButton(title);
  button->setAutoDefault(true);
  button->setFont(ORNScreenUtils::systemFontOfSize(16));
  button->setAccessibleName(title);
  form->addWidget(button);
  return button;
}

QPushButton* addQuietButton(QVBoxLayout* form, const QString& title) {
  QPushButton* button = addButton(form, title);
  button->setObjectName(QStringLiteral("quiet"));
  return button;
}

}  // namespace orn
