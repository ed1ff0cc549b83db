#include "hearing-app/ServiceScreen.h"

#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

#include <ORNHearingTestSDK/results/ServiceHost.h>

#include "hearing-app/Form.h"

namespace orn {

ServiceScreen::ServiceScreen(const std::string& host) : host_(host) {}
ServiceScreen::~ServiceScreen() = default;

std::shared_ptr<ServiceScreen> ServiceScreen::initWithHost(const std::string& host) {
  return std::shared_ptr<ServiceScreen>(new ServiceScreen(host));
}

QWidget* ServiceScreen::firstFocus() const { return address_; }

void ServiceScreen::viewDidLoad() {
  setTitle(QStringLiteral("测听服务器"));
  QVBoxLayout* form = makeForm(view(), topBars());
  addText(form, QStringLiteral("设备的校准数据和测试记录都来自测听服务器，没有它不能测试。"
                               "请填写为您提供测听服务的机构给出的地址，以后不用再填。"));
  form->addSpacing(10);
  address_ = addField(form, QStringLiteral("服务器地址"), QStringLiteral("例如 https://hearing.example.com"));
  address_->setInputMethodHints(Qt::ImhUrlCharactersOnly | Qt::ImhNoAutoUppercase);
  address_->setText(QString::fromStdString(host_));
  complaint_ = addComplaint(form);
  QPushButton* button = addButton(form, QStringLiteral("确定"));
  QObject::connect(button, &QPushButton::clicked, view(), [this] { done(); });
  QObject::connect(address_, &QLineEdit::returnPressed, view(), [this] { done(); });
  QObject::connect(address_, &QLineEdit::textEdited, complaint_, &QLabel::clear);
  if (onSimulation) offerSimulation(form);
  form->addStretch(1);
}

void ServiceScreen::offerSimulation(QVBoxLayout* form) {
  form->addSpacing(24);
  addText(form, QStringLiteral("还没有服务器或设备？模拟演示自带一切，没有真实的声音，结果也不会发送给任何机构。"));
  QPushButton* button = addQuietButton(form, QStringLiteral("看模拟演示"));
  QObject::connect(button, &QPushButton::clicked, view(), [this] { onSimulation(); });
}

void ServiceScreen::done() {
  const std::string host = address_->text().trimmed().toStdString();
  if (complaintAboutServiceHost(host)) {
    complaint_->setText(
        QStringLiteral("请填写主机名，例如 hearing.example.com、127.0.0.1:8089 或 "
                       "https://hearing.example.com，后面不带路径。"));
    return address_->setFocus();
  }
  const auto alive = shared_from_this();
  if (const auto told = onDone) told(host);
}

}  // namespace orn
