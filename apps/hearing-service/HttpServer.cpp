#include "hearing-service/HttpServer.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <utility>
#include <netinet/in.h>

#include "hearing-service/LibMicrohttpd.h"

namespace orn::service {
namespace {

constexpr unsigned kMostConnections = 256;
constexpr unsigned kIdleSeconds = 60;
constexpr std::size_t kMostBytesRead = 16 * kLargestBody;  // a client that sends more is cut off unanswered

/// One request on its way in.
struct Exchange {
  Request request;
  std::size_t bytesRead = 0;
  bool hasHeaders = false;

  bool take(const char* bytes, std::size_t count) {
    bytesRead += count;
    request.body.append(bytes, std::min(count, kLargestBody + 1 - request.body.size()));
    return bytesRead <= kMostBytesRead;
  }
};

/// Called with the first line of a request, the only place that tells the target as it was sent.
void* beginExchange(void*, const char* target, MHD_Connection*) {
  try {
    return new Exchange{.request = {.method = {}, .target = target, .body = {}}};
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

void endExchange(void*, MHD_Connection*, void** state, MHD_RequestTerminationCode) {
  delete static_cast<Exchange*>(std::exchange(*state, nullptr));
}

ssize_t readReply(void* state, std::uint64_t position, char* buffer, std::size_t space) {
  const auto& reply = *static_cast<const HttpReply*>(state);
  const std::size_t from = position;
  const std::size_t end = reply.breaksAfter.value_or(reply.body.size() + reply.padding);
  if (from >= end) return MHD_CONTENT_READER_END_WITH_ERROR;
  const std::size_t count = std::min(space, end - from);
  const std::size_t ofBody = from < reply.body.size() ? reply.body.copy(buffer, count, from) : 0;
  std::fill(buffer + ofBody, buffer + count, ' ');
  return static_cast<ssize_t>(count);
}

void freeReply(void* state) { delete static_cast<HttpReply*>(state); }

MHD_Result send(MHD_Connection* connection, HttpReply reply) {
  constexpr std::size_t blockSize = 65'536;
  auto owned = std::make_unique<HttpReply>(std::move(reply));
  const unsigned status = owned->status;
  MHD_Response* const response = libmicrohttpd().MHD_create_response_from_callback(
      owned->body.size() + owned->padding, blockSize, readReply, owned.get(), freeReply);
  if (!response) return MHD_NO;
  static_cast<void>(owned.release());
  libmicrohttpd().MHD_add_response_header(response, MHD_HTTP_HEADER_CONTENT_TYPE, "application/json");
  const MHD_Result result = libmicrohttpd().MHD_queue_response(connection, status, response);
  libmicrohttpd().MHD_destroy_response(response);  // the connection holds it from here on
  return result;
}

/// Called once with the headers, then with every piece of the body, then at its end.
MHD_Result continueExchange(void* handler, MHD_Connection* connection, const char*, const char* method, const char*,
                            const char* bytes, std::size_t* count, void** state) {
  auto* const exchange = static_cast<Exchange*>(*state);
  if (!exchange) return MHD_NO;
  try {
    if (!std::exchange(exchange->hasHeaders, true)) {
      exchange->request.method = method;
      return MHD_YES;
    }
    if (*count == 0) return send(connection, (*static_cast<HttpServer::Handler*>(handler))(exchange->request));
    return exchange->take(bytes, std::exchange(*count, 0)) ? MHD_YES : MHD_NO;
  } catch (...) {  // nothing may be thrown into C
    return MHD_NO;
  }
}

sockaddr_in loopback(std::uint16_t port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

}  // namespace

void HttpServer::Stopping::operator()(MHD_Daemon* daemon) const { libmicrohttpd().MHD_stop_daemon(daemon); }

HttpServer::HttpServer(std::uint16_t port, Handler handler) : handler_(std::move(handler)) {
  const sockaddr_in address = loopback(port);
  daemon_.reset(libmicrohttpd().MHD_start_daemon(
      MHD_USE_AUTO_INTERNAL_THREAD | MHD_USE_THREAD_PER_CONNECTION, port, nullptr, nullptr, continueExchange, &handler_,
      MHD_OPTION_SOCK_ADDR, &address, MHD_OPTION_URI_LOG_CALLBACK, beginExchange, nullptr, MHD_OPTION_NOTIFY_COMPLETED,
      endExchange, nullptr, MHD_OPTION_CONNECTION_LIMIT, kMostConnections, MHD_OPTION_CONNECTION_TIMEOUT, kIdleSeconds,
      MHD_OPTION_END));
  if (!daemon_) throw std::runtime_error("can't listen on port " + std::to_string(port) + ": " + std::strerror(errno));
  const MHD_DaemonInfo* const info = libmicrohttpd().MHD_get_daemon_info(daemon_.get(), MHD_DAEMON_INFO_BIND_PORT);
  if (!info || info->port == 0) throw std::runtime_error("can't tell the port");
  port_ = info->port;
}

}  // namespace orn::service
