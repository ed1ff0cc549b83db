#include <ORNHearingTestSDK/screens/ChannelCheckPage.h>

#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

#include <ORNHearingTestSDK/screens/Appearance.h>

namespace orn {
namespace {

constexpr int kWidest = 480;
constexpr int kSpacing = 12;

QString mainButtonStyle() {
  return QStringLiteral(
             "QPushButton { border: none; outline: none; border-radius: 10px; padding: 12px 6px; background: %1; "
             "color: white; }"
             "QPushButton:pressed, QPushButton:focus { background: %2; }")
      .arg(kAccentColour.name(), kAccentColour.darker(130).name());
}

}  // namespace

ChannelCheckPage::ChannelCheckPage(const QString& heading, const QString& text, QWidget* parent)
    : QWidget(parent), column_(new QVBoxLayout(this)) {
  setMaximumWidth(kWidest);
  column_->setContentsMargins(0, 0, 0, 0);
  column_->setSpacing(kSpacing);
  if (!heading.isEmpty()) addLabel(heading, systemFont(20, QFont::DemiBold));
  addLabel(text, systemFont(15));
  note_ = addLabel({}, systemFont(15));
  note_->setStyleSheet(QStringLiteral("color: #b3261e;"));  // and not by a palette, which a host's sheet would undo
  note_->hide();
  column_->addSpacing(kSpacing);
  column_->addStretch(1);
}

QLabel* ChannelCheckPage::addLabel(const QString& text, const QFont& font) {
  auto* label = new QLabel(text);
  label->setTextFormat(Qt::PlainText);
  label->setFont(font);
  label->setWordWrap(true);
  column_->addWidget(label);
  return label;
}

QPushButton* ChannelCheckPage::makeButton(const Choice& choice) {
  auto* button = new QPushButton(choice.title);
  button->setAccessibleName(choice.title);
  button->setAutoDefault(true);
  button->setCursor(Qt::PointingHandCursor);
  connect(button, &QPushButton::clicked, this, choice.action);
  return button;
}

void ChannelCheckPage::addRow(const std::vector<Choice>& choices) {
  auto* row = new QHBoxLayout;
  row->setSpacing(kSpacing);
  for (const Choice& one : choices) {
    QPushButton* button = makeButton(one);
    button->setFont(systemFont(17, QFont::DemiBold));
    button->setStyleSheet(mainButtonStyle());
    button->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);  // all of a row as wide as each other
    row->addWidget(button, 1);
    if (!first_) first_ = button;
  }
  column_->insertLayout(column_->count() - 1, row);
}

void ChannelCheckPage::addQuiet(const Choice& choice) {
  QPushButton* button = makeButton(choice);
  button->setFont(systemFont(15));
  makeTextButton(button);
  button->setMinimumHeight(44);
  column_->insertWidget(column_->count() - 1, button);
}

void ChannelCheckPage::setNote(const QString& note) {
  note_->setText(note);
  note_->setVisible(!note.isEmpty());
}

}  // namespace orn
