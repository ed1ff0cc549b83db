#pragma once

#include <atomic>
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
  Listening listening = {};
  std::string database = ":memory:";  ///< A file, or ":memory:" for one that ends with the service.
  Misbehaviour misbehaviour = {};
  /// Dates the submitted tests; called on any thread, on several at once.
  std::function<std::chrono::system_clock::time_point()> now = std::chrono::system_clock::now;
  Log log = {};  ///< Told of every request and refusal; may be empty.
  LogDetail detail = LogDetail::NoPersons;
  /// Whether the service is to end while its constructor still waits for the database; the constructor then throws.
  std::function<bool()> isEnding = [] { return false; };
};

/// The cloud service that the library talks to. It runs from its constructor to its destructor.
class HearingService {
 public:
  /// Throws std::runtime_error if it can't listen as told, or if the database can't be opened.
  explicit HearingService(ServiceOptions options = {});

  /// Sends delayed replies at once, and refuses requests that still wait for a database held by another process.
  ~HearingService();

  std::uint16_t port() const { return server_.port(); }

  /// For all requests from here on. Any thread.
  void misbehave(Misbehaviour how);

 private:
  HttpReply answer(const Request& request);
  Misbehaviour misbehaviour();
  void wait(std::chrono::milliseconds time);

  std::atomic<bool> isStopping_ = false;
  TestStore store_;
  std::function<std::chrono::system_clock::time_point()> now_;
  Log log_;
  LogDetail detail_;
  std::mutex mutex_;
  std::condition_variable stopping_;
  Misbehaviour misbehaviour_;
  HttpServer server_;  // last: it answers from its construction on
};

}  // namespace orn::service
