#include "hearing-service/HttpServer.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <utility>
#include <vector>

#include <ORNHearingTestSDK/common/OneLine.h>

#include "hearing-service/LibMicrohttpd.h"
#include "hearing-service/ListenAddress.h"

namespace orn::service {
namespace {

constexpr unsigned kMostConnections = 256;
constexpr unsigned kIdleSeconds = 60;
const std::string kPriorities = "NORMAL:-VERS-ALL:+VERS-TLS1.3:+VERS-TLS1.2";
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

/// Called with the first line of a request: the only call that gets the target as it was sent.
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

sockaddr* addressOf(ListenAddress& address) { return reinterpret_cast<sockaddr*>(&address.bytes); }

}  // namespace

/// What libmicrohttpd hands to its callbacks.
struct HttpServer::Answering {
  Handler handler;
  Log log;
  std::string firstWords;  ///< What libmicrohttpd says first, at the start: why it fails.
  std::atomic<bool> isUp = false;

  void say(const std::string& line) const {
    if (log) log(line);
  }

  static void hear(void* answering, const char* format, va_list values);
  static MHD_Result continueExchange(void* answering, MHD_Connection* connection, const char*, const char* method,
                                     const char*, const char* bytes, std::size_t* count, void** state);
};

void HttpServer::Answering::hear(void* answering, const char* format, va_list values) {
  constexpr std::size_t kLongest = 512;
  std::array<char, kLongest> words{};
  std::vsnprintf(words.data(), words.size(), format, values);
  std::string line = oneLine(words.data());
  line.erase(line.find_last_not_of(' ') + 1);
  auto& self = *static_cast<Answering*>(answering);
  if (self.isUp) {
    self.say("connection: " + line);
  } else if (self.firstWords.empty()) {
    self.firstWords = line;
  }
}

/// Called once with the headers, then with every piece of the body, then at its end.
MHD_Result HttpServer::Answering::continueExchange(void* answering, MHD_Connection* connection, const char*,
                                                   const char* method, const char*, const char* bytes,
                                                   std::size_t* count, void** state) {
  const auto& self = *static_cast<Answering*>(answering);
  auto* const exchange = static_cast<Exchange*>(*state);
  if (!exchange) return MHD_NO;
  try {
    if (!std::exchange(exchange->hasHeaders, true)) {
      exchange->request.method = method;
      return MHD_YES;
    }
    if (*count == 0) return send(connection, self.handler(exchange->request));
    if (exchange->take(bytes, std::exchange(*count, 0))) return MHD_YES;
    self.say("connection: cut off, since a body is larger than 16 MiB");
  } catch (...) {  // nothing may be thrown into C
    self.say("connection: cut off, since there is no memory for a reply");
  }
  return MHD_NO;
}

void HttpServer::Stopping::operator()(MHD_Daemon* daemon) const { libmicrohttpd().MHD_stop_daemon(daemon); }

HttpServer::HttpServer(const Listening& listening, Handler handler, Log log)
    : answering_(new Answering{std::move(handler), std::move(log), {}}) {
  auto address = ListenAddress::parse(listening.address, listening.port);
  if (!address) throw std::runtime_error("'" + listening.address + "' is not a numeric address");
  // Of the ways to poll, select() alone leaves clients beyond the limit waiting; the others close their connections.
  unsigned flags = MHD_USE_INTERNAL_POLLING_THREAD | MHD_USE_THREAD_PER_CONNECTION | MHD_USE_ERROR_LOG;
  if (address->isIPv6()) flags |= MHD_USE_IPv6;
  std::vector<MHD_OptionItem> security;
  if (listening.isSecure()) {
    flags |= MHD_USE_TLS;
    const auto add = [&](MHD_OPTION option, const std::string& text) {
      security.push_back({option, 0, const_cast<char*>(text.c_str())});
    };
    add(MHD_OPTION_HTTPS_MEM_CERT, listening.certificate);
    add(MHD_OPTION_HTTPS_MEM_KEY, listening.key);
    add(MHD_OPTION_HTTPS_PRIORITIES, kPriorities);
  }
  security.push_back({MHD_OPTION_END, 0, nullptr});
  errno = 0;
  daemon_.reset(libmicrohttpd().MHD_start_daemon(
      flags, listening.port, nullptr, nullptr, Answering::continueExchange, answering_.get(),
      MHD_OPTION_EXTERNAL_LOGGER, Answering::hear, answering_.get(), MHD_OPTION_SOCK_ADDR, addressOf(*address),
      MHD_OPTION_URI_LOG_CALLBACK, beginExchange, nullptr, MHD_OPTION_NOTIFY_COMPLETED, endExchange, nullptr,
      MHD_OPTION_CONNECTION_LIMIT, kMostConnections, MHD_OPTION_CONNECTION_TIMEOUT, kIdleSeconds, MHD_OPTION_ARRAY,
      security.data(), MHD_OPTION_END));
  if (!daemon_) {
    const std::string& words = answering_->firstWords;
    throw std::runtime_error("can't listen on " + address->text + ":" + std::to_string(listening.port) + ": " +
                             (words.empty() ? std::strerror(errno) : words));
  }
  answering_->isUp = true;
  const MHD_DaemonInfo* const info = libmicrohttpd().MHD_get_daemon_info(daemon_.get(), MHD_DAEMON_INFO_BIND_PORT);
  if (!info || info->port == 0) throw std::runtime_error("can't tell the port");
  port_ = info->port;
}

HttpServer::~HttpServer() = default;

}  // namespace orn::service
