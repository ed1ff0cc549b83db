#include "hearing-app/ProfileScreen.h"

#include <chrono>
#include <optional>
#include <utility>

#include <QtCore/QRegularExpression>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QRadioButton>
#include <QtWidgets/QVBoxLayout>

#include <ORNHearingTestSDK/results/UserProfile.h>
#include <ORNHearingTestSDK/screens/ORNScreenUtils.h>

#include "hearing-app/Form.h"

namespace orn {
namespace {

constexpr int kLongestText = 60;

std::optional<std::chrono::system_clock::time_point> birthdayIn(const QLineEdit& field) {
  return UserProfile::birthdayOf(field.text().trimmed().toStdString());
}

bool isPhone(const QString& text) {
  static const QRegularExpression form(QStringLiteral("^\\+?[0-9][0-9 -]{4,18}$"));
  return form.match(text.trimmed()).hasMatch();
}

}  // namespace

ProfileScreen::ProfileScreen() = default;
ProfileScreen::~ProfileScreen() = default;

std::shared_ptr<ProfileScreen> ProfileScreen::init() { return std::shared_ptr<ProfileScreen>(new ProfileScreen); }

QWidget* ProfileScreen::firstFocus() const { return name_; }

void ProfileScreen::viewDidLoad() {
  setTitle(QStringLiteral("个人资料"));
  QVBoxLayout* column = makeForm(view(), topBars());
  addText(column, QStringLiteral("结果的评分与年龄和性别有关，测试记录按用户保存。只需填写一次。"));
  column->addSpacing(10);
  addFields(column);
  column->addStretch(1);
}

void ProfileScreen::addFields(QVBoxLayout* column) {
  name_ = addField(column, QStringLiteral("姓名"), QStringLiteral("可不填"));
  addSexes(column);
  birthday_ = addField(column, QStringLiteral("出生日期"), QStringLiteral("例如 1980-03-05"));
  phone_ = addField(column, QStringLiteral("手机号码"), QStringLiteral("例如 13800000000"));
  complaint_ = addComplaint(column);
  QPushButton* button = addButton(column, QStringLiteral("完成"));
  QObject::connect(button, &QPushButton::clicked, view(), [this] { done(); });
  for (QLineEdit* one : {name_.data(), birthday_.data(), phone_.data()}) {
    one->setMaxLength(kLongestText);
    QObject::connect(one, &QLineEdit::returnPressed, view(), [this] { done(); });
    QObject::connect(one, &QLineEdit::textEdited, complaint_, &QLabel::clear);
  }
  for (QRadioButton* one : {man_.data(), woman_.data()}) {
    QObject::connect(one, &QRadioButton::toggled, complaint_, &QLabel::clear);
  }
}

void ProfileScreen::addSexes(QVBoxLayout* column) {
  addText(column, QStringLiteral("性别"));
  auto* row = new QHBoxLayout;
  man_ = new QRadioButton(QStringLiteral("男"));
  woman_ = new QRadioButton(QStringLiteral("女"));
  for (QRadioButton* one : {man_.data(), woman_.data()}) {
    one->setFont(ORNScreenUtils::systemFontOfSize(16));
    one->setAccessibleName(one->text());
    row->addWidget(one);
    row->addSpacing(24);
  }
  row->addStretch(1);
  column->addLayout(row);
  column->addSpacing(6);
}

ProfileScreen::Complaint ProfileScreen::complaint() const {
  if (!man_->isChecked() && !woman_->isChecked()) return {QStringLiteral("请选择性别。"), man_};
  if (!birthdayIn(*birthday_)) return {QStringLiteral("请填写出生日期，例如 1980-03-05。"), birthday_};
  if (!isPhone(phone_->text())) return {QStringLiteral("请填写手机号码。"), phone_};
  return {};
}

void ProfileScreen::done() {
  const auto [wrong, field] = complaint();
  complaint_->setText(wrong);
  if (field) return field->setFocus();
  const auto alive = shared_from_this();
  const Profile profile{name_->text().trimmed(), woman_->isChecked(), *birthdayIn(*birthday_),
                        phone_->text().trimmed()};
  if (const auto told = std::exchange(onDone, nullptr)) told(profile);
}

}  // namespace orn
