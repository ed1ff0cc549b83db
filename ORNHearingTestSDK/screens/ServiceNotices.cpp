#include <ORNHearingTestSDK/screens/ServiceNotices.h>

#include <ORNHearingTestSDK/results/ServiceRequest.h>

namespace orn {
namespace {

bool isUnreachable(const Error& error) { return error.domain == "transport"; }

}  // namespace

QString noticeOfCalibration(const Error& error) {
  return isUnreachable(error)
             ? QStringLiteral("连接不上测听服务器，无法获取设备的校准数据。请检查网络和服务器地址后再试。")
             : QStringLiteral("测听服务器没有这台设备的校准数据，无法测试。");
}

QString noticeOfRegistration(const Error& error) {
  const QString why = isUnreachable(error)             ? QStringLiteral("连接不上测听服务器")
                      : error.domain == kServiceDomain ? QStringLiteral("测听服务器没有接受您的资料")
                                                       : QStringLiteral("测听服务器的回答无法识别");
  return why + QStringLiteral("，您的资料还没有登记，下次打开时会再试。");
}

QString noticeOfSubmission(const Error& error, bool isKept) {
  const QString why = isUnreachable(error) ? QStringLiteral("连接不上测听服务器，测试结果没有保存到测试记录")
                                           : QStringLiteral("测听服务器没有接受测试结果，它没有保存到测试记录");
  return why + (isKept ? QStringLiteral("，下次打开时可以再提交。") : QStringLiteral("。"));
}

}  // namespace orn
