#include "hearing-app-tools/SimulationPanel.h"

#include <utility>

#include <QtWidgets/QCheckBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

#include "hearing-app-tools/ScreenListener.h"
#include "hearing-app-tools/SimulatedHost.h"

namespace orn {
namespace {

constexpr int kWidth = 220;
constexpr std::int32_t kBegins = 1;

}  // namespace

SimulationPanel::SimulationPanel(SimulatedHost& host, ScreenListener& listener) {
  setWindowTitle(QStringLiteral("模拟设备"));
  setFixedWidth(kWidth);
  setAttribute(Qt::WA_QuitOnClose, false);  // the application ends with its own window
  auto* column = new QVBoxLayout(this);
  SimulatedAudioSession& session = *host.machine().audioSession;
  addButton(column, QStringLiteral("连接听力检测仪"), [&host] { host.plugAudiometer(); });
  addButton(column, QStringLiteral("插入耳机"), [&session] { session.plugEarphones(); });
  addButton(column, QStringLiteral("断开设备"), [&session] { session.unplug(); });
  addCheck(column, QStringLiteral("来电中断"),
           [&session](bool isOn) { session.interrupt(isOn ? kBegins : kAudioSessionInterruptionTypeEnded); });
  addCheck(column, QStringLiteral("虚拟听者代为按键"), [&listener](bool isOn) { listener.setListening(isOn); });
  auto* note = new QLabel(QStringLiteral("虚拟听者只听输出的声音，听到了就按“听到了”。"));
  note->setWordWrap(true);
  column->addWidget(note);
}

void SimulationPanel::addButton(QVBoxLayout* column, const QString& text, std::function<void()> action) {
  auto* button = new QPushButton(text);
  connect(button, &QPushButton::clicked, this, std::move(action));
  column->addWidget(button);
}

void SimulationPanel::addCheck(QVBoxLayout* column, const QString& text, std::function<void(bool)> action) {
  auto* check = new QCheckBox(text);
  connect(check, &QCheckBox::toggled, this, std::move(action));
  column->addWidget(check);
}

}  // namespace orn
