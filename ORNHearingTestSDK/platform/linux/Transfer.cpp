#include <ORNHearingTestSDK/platform/linux/Transfer.h>

#include <strings.h>

#include <algorithm>
#include <chrono>
#include <climits>
#include <cstdlib>
#include <new>
#include <utility>

#include <ORNHearingTestSDK/platform/linux/LibCurl.h>
#include <ORNHearingTestSDK/platform/linux/RequestCheck.h>

namespace orn {
namespace {

constexpr std::size_t kLargestBody = 16 * 1024 * 1024;

long curlTimeout(std::chrono::milliseconds timeout) {
  // 0 would mean no timeout.
  return static_cast<long>(std::clamp<std::int64_t>(timeout.count(), 1, LONG_MAX));
}

/// The file of authorities to trust besides the system's, from the variable that OpenSSL and the curl program use. A
/// program that runs in its caller's environment with another user's rights takes none.
std::string authoritiesFor(const std::string& url) {
  const char* const file = url.starts_with("https:") ? secure_getenv("SSL_CERT_FILE") : nullptr;
  return file ? file : "";
}

}  // namespace

Error transportError(int code, const std::string& message) {
  std::string line = message.substr(0, message.find_last_not_of(" \r\n") + 1);
  std::replace_if(
      line.begin(), line.end(), [](char c) { return c == '\r' || c == '\n'; }, ' ');
  return {"transport", code, std::move(line)};
}

void Transfer::Release::operator()(void* handle) const { libcurl().curl_easy_cleanup(handle); }
void Transfer::Release::operator()(curl_slist* list) const { libcurl().curl_slist_free_all(list); }

Transfer::Transfer(URLRequest request, URLSession::CompletionHandler completionHandler)
    : request_(std::move(request)),
      completionHandler_(std::move(completionHandler)),
      authorities_(authoritiesFor(request_.url)) {}

Transfer::~Transfer() = default;

template <class Value>
void Transfer::set(int option, Value value) {
  const CURLcode code = libcurl().curl_easy_setopt(handle_.get(), static_cast<CURLoption>(option), value);
  if (refusal_ == CURLE_OK) refusal_ = code;
}

std::optional<Error> Transfer::prepare() {
  if (const auto complaint = complaintAbout(request_)) return transportError(0, *complaint);
  handle_.reset(libcurl().curl_easy_init());
  if (!handle_) return transportError(CURLE_FAILED_INIT, libcurl().curl_easy_strerror(CURLE_FAILED_INIT));
  setRequest();
  setHeaders();
  setManners();
  setProof();
  if (refusal_ == CURLE_OK) return std::nullopt;
  return transportError(refusal_, libcurl().curl_easy_strerror(static_cast<CURLcode>(refusal_)));
}

void Transfer::setRequest() {
  set(CURLOPT_URL, request_.url.c_str());
  set(CURLOPT_PATH_AS_IS, 1L);
  set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(request_.body.size()));
  set(CURLOPT_POSTFIELDS, request_.body.data());
  set(CURLOPT_CUSTOMREQUEST, request_.method.c_str());
  set(CURLOPT_TIMEOUT_MS, curlTimeout(request_.timeout));
  set(CURLOPT_WRITEFUNCTION, &Transfer::receive);
  set(CURLOPT_WRITEDATA, static_cast<void*>(this));
  explanation_.assign(CURL_ERROR_SIZE, '\0');
  set(CURLOPT_ERRORBUFFER, explanation_.data());
}

void Transfer::setManners() {
  set(CURLOPT_PROTOCOLS_STR, "http,https");
  set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
  set(CURLOPT_FOLLOWLOCATION, 0L);
  set(CURLOPT_PROXY, "");
  set(CURLOPT_NETRC, static_cast<long>(CURL_NETRC_IGNORED));
  set(CURLOPT_DISALLOW_USERNAME_IN_URL, 1L);  // it would become a header
  // On a kept connection that turns out dead, libcurl sends a request a second time.
  set(CURLOPT_FRESH_CONNECT, 1L);
  set(CURLOPT_FORBID_REUSE, 1L);
  set(CURLOPT_NOSIGNAL, 1L);
  // Without this a name that is slow to resolve holds up the thread, and with it every other request.
  set(CURLOPT_QUICK_EXIT, 1L);
}

/// The server of an https:// address must prove its name, and nothing turns that off.
void Transfer::setProof() {
  set(CURLOPT_SSL_VERIFYPEER, 1L);
  set(CURLOPT_SSL_VERIFYHOST, 2L);
  set(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));  // or newer
  if (!authorities_.empty()) set(CURLOPT_CAINFO, authorities_.c_str());
}

void Transfer::setHeaders() {
  for (const char* added : {"Accept", "Content-Type", "Expect"}) {
    const auto isAdded = [&](const auto& header) { return strcasecmp(header.first.c_str(), added) == 0; };
    if (std::none_of(request_.headers.begin(), request_.headers.end(), isAdded)) addHeader(std::string(added) + ":");
  }
  // libcurl leaves out a header with nothing behind its colon, and sends an empty one for a semicolon.
  for (const auto& [name, value] : request_.headers) addHeader(value.empty() ? name + ";" : name + ": " + value);
  set(CURLOPT_HTTPHEADER, headers_.get());
}

void Transfer::addHeader(const std::string& line) {
  curl_slist* const longer = libcurl().curl_slist_append(headers_.get(), line.c_str());
  if (!longer) throw std::bad_alloc();
  (void)headers_.release();
  headers_.reset(longer);
}

std::size_t Transfer::receive(char* bytes, std::size_t size, std::size_t count, void* transfer) noexcept {
  auto& self = *static_cast<Transfer*>(transfer);
  self.tooLarge_ = self.body_.size() + size * count > kLargestBody;
  if (self.tooLarge_) return 0;
  self.body_.append(bytes, size * count);
  return size * count;
}

void Transfer::finish(int result) { std::exchange(completionHandler_, nullptr)(reply(result)); }

void Transfer::fail(Error error) { std::exchange(completionHandler_, nullptr)({std::nullopt, std::move(error)}); }

URLReply Transfer::reply(int result) {
  if (tooLarge_) return {std::nullopt, transportError(0, "the reply is larger than 16 MiB")};
  if (result != CURLE_OK) {
    const std::string own = explanation_.substr(0, explanation_.find('\0'));
    return {std::nullopt,
            transportError(result, own.empty() ? libcurl().curl_easy_strerror(static_cast<CURLcode>(result)) : own)};
  }
  if (body_.empty()) return {std::nullopt, transportError(0, "the reply has no body")};
  return {std::move(body_), std::nullopt};
}

}  // namespace orn
