#include "hearing-app/ServiceNotices.h"

#include <algorithm>
#include <cctype>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/platform/UserDefaults.h>
#include <ORNHearingTestSDK/results/ServiceRequest.h>

namespace orn {
namespace {

bool isTo(const std::string& url, const char* endpoint) { return url.find(endpoint) != std::string::npos; }

bool isAccepted(const std::string& body) {
  const auto reply = nlohmann::json::parse(body, nullptr, false);
  const auto code = reply.is_object() ? reply.find("rspCode") : reply.end();
  return reply.is_object() && code != reply.end() && (*code == 0 || *code == "0");
}

}  // namespace

bool isCalibrationReply(const std::string& url) { return isTo(url, "/user/findSdkDeviceValue"); }

std::optional<QString> noticeOfReply(const std::string& url, const URLReply& reply) {
  if (isCalibrationReply(url) && !reply.body) {
    return QStringLiteral("连接不上测听服务器，无法获取设备的校准数据。请检查网络后再试。");
  }
  if (isTo(url, "/user/sdkJonDiagnose2")) {
    if (!reply.body) return QStringLiteral("连接不上测听服务器，本次测试结果没有保存到测试记录。");
    if (!isAccepted(*reply.body)) return QStringLiteral("测听服务器没有接受本次测试结果，它没有保存到测试记录。");
  }
  return std::nullopt;
}

QString noticeOfRegistration(const Error& error) {
  return error.domain == "transport"
             ? QStringLiteral("连接不上测听服务器，您的资料还没有登记，下次打开时会再试。")
             : QStringLiteral("测听服务器的回答无法识别，您的资料还没有登记，下次打开时会再试。");
}

std::optional<QString> noticeOfMissingHost() {
  const auto value = Platform::current().userDefaults->value(kServiceHostDefault);
  const auto* host = value ? std::get_if<std::string>(&*value) : nullptr;
  if (host && isServiceHost(*host)) return std::nullopt;
  return QStringLiteral("还没有设置测听服务器，无法测试。\n请用 --host 服务器地址 打开一次，以后会记住。");
}

bool isServiceHost(const std::string& text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](unsigned char c) {
    return std::isalnum(c) || c == '.' || c == '-' || c == ':' || c == '[' || c == ']';
  });
}

}  // namespace orn
