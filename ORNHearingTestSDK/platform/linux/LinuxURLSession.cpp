#include <ORNHearingTestSDK/platform/linux/LinuxURLSession.h>

#include <csignal>
#include <utility>

#include <ORNHearingTestSDK/platform/linux/TransferQueue.h>

namespace orn {
namespace {

/// A TLS library may write to a connection that is gone, and the signal of that would end the whole application.
void blockBrokenPipes() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGPIPE);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

}  // namespace

LinuxURLSession::LinuxURLSession() = default;

LinuxURLSession::~LinuxURLSession() {
  if (!thread_.joinable()) return;
  queue_->end();
  if (thread_.get_id() == std::this_thread::get_id()) {
    thread_.detach();
  } else {
    thread_.join();
  }
}

void LinuxURLSession::dataTask(URLRequest request, CompletionHandler completionHandler) {
  std::call_once(started_, [this] { start(); });
  queue_->add(std::move(request), std::move(completionHandler));
}

void LinuxURLSession::start() {
  queue_ = std::make_shared<TransferQueue>();
  thread_ = std::thread([queue = queue_] {
    blockBrokenPipes();
    queue->run();
  });
}

}  // namespace orn
