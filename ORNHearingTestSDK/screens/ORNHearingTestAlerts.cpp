// The alerts of the test screen, and what their answers do.
#include <ORNHearingTestSDK/screens/AudiogramSummary.h>
#include <ORNHearingTestSDK/screens/NavigationWindow.h>
#include <ORNHearingTestSDK/screens/ORNHearingTestViewController.h>

namespace orn {
namespace {

QString noticeTitle() { return QStringLiteral("温馨提示"); }

QString whyMissing(ToneMissingReason reason) {
  switch (reason) {
    case ToneMissingReason::Calibration:
      return QStringLiteral("没有测试设备的校准数据，无法进行测试");
    case ToneMissingReason::Recording:
      return QStringLiteral("没有测试音的录音文件，无法进行测试");
    case ToneMissingReason::Output:
    default:
      return QStringLiteral("测试设备没有播放声音，无法继续测试。请检查设备的连接后重新测试");
  }
}

}  // namespace

void ORNHearingTestViewController::toneMissing(ORNHearingTest& /*hearingTest*/, ToneMissingReason reason,
                                               bool /*isLeft*/) {
  isUnderWay_ = false;
  showAlert({kToneMissingAlert, noticeTitle(), whyMissing(reason), {QStringLiteral("我知道了")}});
}

void ORNHearingTestViewController::showTishi() {
  showAlert({kInstructionAlert,
             QStringLiteral("操作提示"),
             QStringLiteral("系统将在左耳/右耳播放不同的声音。您每次听到声音的时候请立即按\"听到了\"按钮。"),
             {QStringLiteral("准备好了，开始测试")}});
}

void ORNHearingTestViewController::showEndAlert() {
  withTest([](ORNHearingTest& session) { session.pauseTest(); });
  showAlert({kEndAlert,
             noticeTitle(),
             QStringLiteral("请确认结束测试？\n测试数据将不保存"),
             {QStringLiteral("取消"), QStringLiteral("结束测试")},
             0});
}

void ORNHearingTestViewController::showOneEarEndToast() {
  // The blank at the end is part of the text.
  const QString message = QStringLiteral("%1测试结束\n开始%2测试 ").arg(earName(isTestLeft()), earName(!isTestLeft()));
  showAlert({kChangeEarAlert, noticeTitle(), message, {QStringLiteral("准备好了，继续测试")}});
}

void ORNHearingTestViewController::showDuankaiTishi() {
  isUnderWay_ = false;
  withTest([](ORNHearingTest& session) { session.pauseTest(); });
  showAlert({kDisconnectedAlert,
             noticeTitle(),
             QStringLiteral("您的测试设备已断开，请连接后重新测试"),
             {QStringLiteral("我知道了")}});
}

void ORNHearingTestViewController::endTest() {
  isUnderWay_ = false;
  const QPointer<NavigationWindow> closing = closesWindow_ ? window() : nullptr;
  cancelButtonClicked();
  if (closing) closing->close();
}

void ORNHearingTestViewController::alertView(int tag, int buttonIndex) {
  switch (tag) {
    case kInstructionAlert:
      isUnderWay_ = true;
      withTest([&](ORNHearingTest& session) { session.startTest(!isFirstRight_); });
      break;
    case kChangeEarAlert:
      changeToAnother();
      break;
    case kEndAlert:
      if (buttonIndex == 1) {
        endTest();
      } else {
        closesWindow_ = false;
        withTest([](ORNHearingTest& session) { session.continueTest(); });
      }
      break;
    case kDisconnectedAlert:
    case kToneMissingAlert:
      cancelButtonClicked();
      break;
    case kReservedAlert:
    default:
      break;
  }
}

}  // namespace orn
