#include <ORNHearingTestSDK/screens/AudiogramSummary.h>

#include <QtCore/QStringList>

namespace orn {

QString earName(bool isLeft) { return isLeft ? QStringLiteral("左耳") : QStringLiteral("右耳"); }

QString audiogramSummary(const EarResult& ear, bool isLeft) {
  QStringList parts;
  for (const auto& [hz, db] : ear) {
    if (intValue(db) == -1) continue;
    parts << QStringLiteral("%1赫兹%2分贝").arg(intValue(hz)).arg(intValue(db));
  }
  const QString found = parts.isEmpty() ? QStringLiteral("没有结果") : parts.join(QStringLiteral("，"));
  return earName(isLeft) + QStringLiteral("听力图：") + found;
}

}  // namespace orn
