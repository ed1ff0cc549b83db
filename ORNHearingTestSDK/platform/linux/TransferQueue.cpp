#include <ORNHearingTestSDK/platform/linux/TransferQueue.h>

#include <stdexcept>
#include <utility>

#include <ORNHearingTestSDK/platform/linux/LibCurl.h>
#include <ORNHearingTestSDK/platform/linux/Transfer.h>

namespace orn {
namespace {

// In milliseconds. Any long time will do: libcurl shortens it to the next timeout, and add() and end() cut it short.
constexpr int kLongestPoll = 1'000'000;

CURLM* newMulti() {
  static const CURLcode ready = libcurl().curl_global_init(CURL_GLOBAL_DEFAULT);
  return ready == CURLE_OK ? libcurl().curl_multi_init() : nullptr;
}

}  // namespace

void TransferQueue::Release::operator()(void* multi) const { libcurl().curl_multi_cleanup(multi); }

TransferQueue::TransferQueue() : multi_(newMulti()) {
  if (!multi_ || libcurl().curl_multi_wakeup(multi_.get()) != CURLM_OK) {
    throw std::runtime_error("libcurl can't be started");
  }
}

TransferQueue::~TransferQueue() = default;

void TransferQueue::add(URLRequest request, URLSession::CompletionHandler completionHandler) {
  auto transfer = std::make_unique<Transfer>(std::move(request), std::move(completionHandler));
  const std::lock_guard lock(mutex_);
  added_.push_back(std::move(transfer));
  libcurl().curl_multi_wakeup(multi_.get());
}

void TransferQueue::end() {
  const std::lock_guard lock(mutex_);
  ended_ = true;
  libcurl().curl_multi_wakeup(multi_.get());
}

void TransferQueue::run() {
  while (!hasEnded()) {
    for (auto& transfer : takeAdded()) begin(std::move(transfer));
    int count = 0;
    CURLMcode code = libcurl().curl_multi_perform(multi_.get(), &count);
    answerFinished();
    if (code == CURLM_OK) code = libcurl().curl_multi_poll(multi_.get(), nullptr, 0, kLongestPoll, nullptr);
    if (code != CURLM_OK) failRunning(libcurl().curl_multi_strerror(code));
  }
  failAll("the session has ended");
}

bool TransferQueue::hasEnded() {
  const std::lock_guard lock(mutex_);
  return ended_;
}

TransferQueue::Transfers TransferQueue::takeAdded() {
  const std::lock_guard lock(mutex_);
  return std::exchange(added_, {});
}

void TransferQueue::begin(std::unique_ptr<Transfer> transfer) {
  if (auto complaint = transfer->prepare()) {
    transfer->fail(std::move(*complaint));
  } else if (const CURLMcode code = libcurl().curl_multi_add_handle(multi_.get(), transfer->handle());
             code != CURLM_OK) {
    transfer->fail(transportError(0, libcurl().curl_multi_strerror(code)));
  } else {
    running_.emplace(transfer->handle(), std::move(transfer));
  }
}

void TransferQueue::answerFinished() {
  int left = 0;
  while (const CURLMsg* const message = libcurl().curl_multi_info_read(multi_.get(), &left)) {
    if (message->msg != CURLMSG_DONE) continue;
    const int result = message->data.result;  // the message is freed with the handle
    const auto transfer = std::move(running_.extract(message->easy_handle).mapped());
    libcurl().curl_multi_remove_handle(multi_.get(), transfer->handle());
    transfer->finish(result);
  }
}

void TransferQueue::failRunning(const std::string& message) {
  for (auto& [handle, transfer] : std::exchange(running_, {})) {
    libcurl().curl_multi_remove_handle(multi_.get(), handle);
    transfer->fail(transportError(0, message));
  }
}

void TransferQueue::failAll(const std::string& message) {
  failRunning(message);
  // A handler may have asked for more.
  for (auto added = takeAdded(); !added.empty(); added = takeAdded()) {
    for (auto& transfer : added) transfer->fail(transportError(0, message));
  }
}

}  // namespace orn
