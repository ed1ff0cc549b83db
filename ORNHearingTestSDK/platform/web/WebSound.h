#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <system_error>

namespace orn {

// The sound of the page, which there is one of. WebSound.js opens it and watches it: it counts as gone while the page
// is hidden or frozen, the browser has suspended or interrupted it, its clock stands still, or the output has been
// changed. Main thread.

/// Why nothing sounds, in the order of WebSound.js.
enum class WebSilence { None, Closed, Suspended, Interrupted, Hidden, Frozen, Stalled };
WebSilence webSilence();

/// no_such_device while the sound is gone, timed_out while its clock stands still.
std::error_code webSoundStatus();

/// Looks at the sound's clock now, rather than at the next tenth of a second.
void watchWebSound();

/// Told when the sound goes or is back, as long as somebody else keeps the observer alive.
using WebSoundObserver = std::function<void(bool isAvailable)>;
void observeWebSound(std::weak_ptr<const WebSoundObserver> observer);

/// Hears left and right samples in turn that have left the page's output, and how long ago, which may be long on a busy
/// main thread; from now on and until it is heard by another one. An empty listener hears nothing. The sound must be
/// open.
using WebSoundListener = std::function<void(std::span<const std::int16_t> samples, std::chrono::nanoseconds ago)>;
void listenToWebSound(WebSoundListener listener);

}  // namespace orn
