#include <ORNHearingTestSDK/platform/web/WebSound.h>

#include <emscripten/emscripten.h>

#include <algorithm>
#include <utility>
#include <vector>

#include <ORNHearingTestSDK/platform/web/WebStream.h>

extern "C" {
int orn_web_why();
void orn_web_watch();
void orn_web_listen();
}

namespace orn {
namespace {

std::vector<std::weak_ptr<const WebSoundObserver>>& observers() {
  static std::vector<std::weak_ptr<const WebSoundObserver>> all;
  return all;
}

WebSoundListener& listener() {
  static WebSoundListener one;
  return one;
}

}  // namespace

WebSilence webSilence() { return static_cast<WebSilence>(std::max(orn_web_why(), 0)); }

std::error_code webSoundStatus() {
  const WebSilence silence = webSilence();
  if (silence == WebSilence::None) return {};
  return std::make_error_code(silence == WebSilence::Stalled ? std::errc::timed_out : std::errc::no_such_device);
}

void watchWebSound() { orn_web_watch(); }

void observeWebSound(std::weak_ptr<const WebSoundObserver> observer) {
  std::erase_if(observers(), [](const auto& one) { return one.expired(); });
  observers().push_back(std::move(observer));
}

void listenToWebSound(WebSoundListener heard) {
  listener() = std::move(heard);
  orn_web_listen();
}

}  // namespace orn

extern "C" {

EMSCRIPTEN_KEEPALIVE void orn_web_reported(int id, int turn, double played, int timesDry, int hasEnded) {
  orn::WebStream::reported(id, turn, played, timesDry, hasEnded != 0);
}

EMSCRIPTEN_KEEPALIVE void orn_web_available(int isAvailable) {
  if (isAvailable == 0) orn::WebStream::deviceHasGone();
  for (const auto& one : std::vector(orn::observers())) {
    if (const auto observer = one.lock()) (*observer)(isAvailable != 0);
  }
}

EMSCRIPTEN_KEEPALIVE void orn_web_heard(const std::int16_t* samples, int count, double secondsAgo) {
  const auto ago = std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::duration<double>(secondsAgo));
  if (orn::listener()) orn::listener()({samples, static_cast<std::size_t>(count)}, ago);
}
}
