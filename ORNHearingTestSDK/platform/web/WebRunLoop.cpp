#include <ORNHearingTestSDK/platform/web/WebRunLoop.h>

#include <emscripten/emscripten.h>

#include <algorithm>
#include <utility>

// clang-format off
EM_JS(int, orn_web_timer, (void* loop, double milliseconds), {
  return setTimeout(() => _orn_web_turn(loop), milliseconds);
});
EM_JS(void, orn_web_no_timer, (int timer), { clearTimeout(timer); });
// clang-format on

extern "C" EMSCRIPTEN_KEEPALIVE void orn_web_turn(void* loop) { static_cast<orn::WebRunLoop*>(loop)->turn(); }

namespace orn {

using std::chrono::nanoseconds;

WebRunLoop::WebRunLoop() = default;

WebRunLoop::~WebRunLoop() {
  isInTurn_ = true;  // nothing that is destroyed with it asks for a turn
  orn_web_no_timer(timer_);
}

void WebRunLoop::turn() {
  constexpr std::chrono::milliseconds longestTurn{8};  // the page has to draw and to take presses too
  timer_ = 0;
  asked_ = distantFuture;
  isInTurn_ = true;
  const auto end = now() + longestTurn;
  bool isDone = false;
  while (!isDone && now() < end) isDone = !makeDueCall();
  isInTurn_ = false;
  if (!isDone) return askFor(now());
  if (const auto due = nextDue()) askFor(*due);
}

void WebRunLoop::wake() { askFor(now()); }

void WebRunLoop::dueChanged() {
  if (const auto due = nextDue()) askFor(*due);
}

void WebRunLoop::askFor(nanoseconds time) {
  if (isInTurn_ || (timer_ != 0 && asked_ <= time)) return;
  if (timer_ != 0) orn_web_no_timer(timer_);
  asked_ = time;
  const nanoseconds present = now();
  const std::chrono::duration<double, std::milli> wait = std::max(time, present) - present;
  // The page counts in 31 bits of whole milliseconds, and cuts off what is below one.
  timer_ = orn_web_timer(this, std::min(wait.count() + 0.999, 1e9));
}

}  // namespace orn
