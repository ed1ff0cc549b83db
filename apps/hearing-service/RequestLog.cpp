#include "hearing-service/RequestLog.h"

#include <memory>
#include <mutex>
#include <nlohmann/json.hpp>
#include <poll.h>
#include <unistd.h>

#include <ORNHearingTestSDK/common/OneLine.h>

#include "hearing-service/Endpoints.h"

namespace orn::service {

std::string logLine(const Request& request, unsigned status, const nlohmann::json& reply,
                    std::chrono::steady_clock::duration took, LogDetail detail) {
  const bool isPersonal = detail == LogDetail::Persons;
  const int code = reply.at("rspCode").get<int>();
  std::string line = oneLine(request.method) + " ";
  line += isPersonal ? oneLine(request.target) : pathOfNobody(request.target);
  line += " " + std::to_string(status) + " rspCode=" + std::to_string(code) + " ";
  line += std::to_string(std::chrono::duration_cast<std::chrono::milliseconds>(took).count()) + " ms";
  if (code != 0) line += ": " + oneLine(reply.at("rspDesc").get<std::string>());
  if (isPersonal && !request.body.empty()) line += " | " + oneLine(request.body);
  return line;
}

Log standardErrorLog() {
  return [mutex = std::make_shared<std::mutex>()](const std::string& line) {
    const std::string bytes = line + "\n";
    const std::lock_guard lock(*mutex);
    pollfd error{.fd = STDERR_FILENO, .events = POLLOUT, .revents = 0};  // a pipe then has room for a line
    if (poll(&error, 1, 0) > 0) static_cast<void>(!write(STDERR_FILENO, bytes.data(), bytes.size()));
  };
}

}  // namespace orn::service
