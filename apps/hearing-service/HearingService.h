#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>

#include "hearing-service/HttpServer.h"
#include "hearing-service/Misbehaviour.h"
#include "hearing-service/TestStore.h"

namespace orn::service {

struct ServiceOptions {
  std::uint16_t port = 0;             ///< 0 takes a free one.
  std::string database = ":memory:";  ///< A file, or ":memory:" for one that ends with the service.
  Misbehaviour misbehaviour;
  /// Dates the submitted tests; called on any thread, many at once.
  std::function<std::chrono::system_clock::time_point()> now = std::chrono::system_clock::now;
};

/// The cloud service that the library talks to, on 127.0.0.1: from its constructor to its destructor.
class HearingService {
 public:
  /// Throws std::runtime_error if the port or the database can't be had.
  explicit HearingService(ServiceOptions options = {});

  /// Lets delayed replies go at once.
  ~HearingService();

  std::uint16_t port() const { return server_.port(); }

  /// For all requests from here on. Any thread.
  void misbehave(Misbehaviour how);

 private:
  HttpReply answer(const Request& request);
  Misbehaviour misbehaviour();
  void wait(std::chrono::milliseconds time);

  TestStore store_;
  std::function<std::chrono::system_clock::time_point()> now_;
  std::mutex mutex_;
  std::condition_variable stopping_;
  bool isStopping_ = false;
  Misbehaviour misbehaviour_;
  HttpServer server_;  // last: it answers from its construction on
};

}  // namespace orn::service
