#pragma once

#include <memory>
#include <optional>
#include <string>

#include <ORNHearingTestSDK/platform/URLSession.h>

struct curl_slist;

namespace orn {

/// An error of the domain "transport", its message made one line.
Error transportError(int code, const std::string& message);

/// One request on its way. It ends in one call of finish() or fail(), which calls the handler. All of it but the
/// constructor belongs to the session's thread.
class Transfer {
 public:
  Transfer(URLRequest request, URLSession::CompletionHandler completionHandler);
  ~Transfer();
  Transfer(const Transfer&) = delete;
  Transfer& operator=(const Transfer&) = delete;

  /// Makes the handle; gives back what is wrong with the request, if anything is.
  std::optional<Error> prepare();
  void* handle() const { return handle_.get(); }

  /// The result is libcurl's CURLcode.
  void finish(int result);
  void fail(Error error);

 private:
  struct Release {
    void operator()(void* handle) const;
    void operator()(curl_slist* list) const;
  };

  template <class Value>
  void set(int option, Value value);
  void setRequest();
  void setManners();
  void setProof();
  void setHeaders();
  void addHeader(const std::string& line);
  static std::size_t receive(char* bytes, std::size_t size, std::size_t count, void* transfer) noexcept;
  URLReply reply(int result);

  URLRequest request_;
  URLSession::CompletionHandler completionHandler_;
  std::string authorities_;
  std::unique_ptr<curl_slist, Release> headers_;
  std::unique_ptr<void, Release> handle_;
  std::string explanation_;  // libcurl's own message, padded with NULs
  int refusal_ = 0;          // the code of the first option that libcurl refused
  std::string body_;
  bool tooLarge_ = false;
};

}  // namespace orn
