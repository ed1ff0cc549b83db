#pragma once

#include <memory>
#include <mutex>
#include <thread>

#include <ORNHearingTestSDK/platform/URLSession.h>

namespace orn {

class TransferQueue;

/// HTTP/1.1 by libcurl, any number of requests at the same time, on one thread that starts at the first request.
///
/// A request to an http:// address goes unencrypted, one to an https:// address by TLS 1.2 or newer only: the server
/// must show a certificate for that name, still valid, from an authority that the system trusts or that is in the file
/// that the environment variable SSL_CERT_FILE names. Nothing turns that off.
///
/// A request goes out once, on a connection of its own: method, path, headers and body exactly as given, with nothing
/// added but Host and Content-Length. There are no redirects, proxies, cookies, stored passwords, compression or other
/// schemes, and whatever the status says, the body is the reply. The timeout is for the whole of a request, and one of
/// 0 or below ends it at once.
///
/// Errors have the domain "transport" and libcurl's code, or the code 0 where it is this class that objects: to an
/// address without a scheme, to a method or header that can't be sent as given, to a reply without a body or above 16
/// MiB, and to requests that have not been answered at the session's end.
class ORN_EXPORT LinuxURLSession final : public URLSession {
 public:
  LinuxURLSession();

  /// Ends all requests that are under way, each with an error, and returns when their handlers have returned. Called
  /// from within a handler it returns at once, and the other handlers are called after that one.
  ~LinuxURLSession() override;
  LinuxURLSession(const LinuxURLSession&) = delete;
  LinuxURLSession& operator=(const LinuxURLSession&) = delete;

  /// Handlers are called one at a time on the session's thread and must not throw. The first request loads libcurl, and
  /// throws std::runtime_error if the machine has none, or if no thread or no means of waking it can be had.
  void dataTask(URLRequest request, CompletionHandler completionHandler) override;

 private:
  void start();

  std::once_flag started_;
  std::shared_ptr<TransferQueue> queue_;  // shared with the thread, which may outlive this object
  std::thread thread_;
};

}  // namespace orn
