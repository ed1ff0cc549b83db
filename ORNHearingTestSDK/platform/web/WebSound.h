#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <system_error>

namespace orn {

// The page's one sound. WebSound.js opens it and watches it: it counts as gone while the page is hidden or frozen, the
// browser has suspended or interrupted it, its clock stands still, or the output has been changed. Main thread.

/// Why nothing sounds, in the order of WebSound.js.
enum class WebSilence { None, Closed, Suspended, Interrupted, Hidden, Frozen, Stalled };
WebSilence webSilence();

/// no_such_device while the sound is gone; timed_out while its clock stands still.
std::error_code webSoundStatus();

/// Checks the sound's clock now rather than within the next tenth of a second.
void watchWebSound();

/// Told when the sound goes and when it is back, as long as somebody else keeps the observer alive.
using WebSoundObserver = std::function<void(bool isAvailable)>;
void observeWebSound(std::weak_ptr<const WebSoundObserver> observer);

/// Is given the interleaved left and right samples that have left the page's output, and how long ago that was: long,
/// if the main thread is busy. A new listener replaces the old one; an empty one hears nothing. The sound must be
/// open.
using WebSoundListener = std::function<void(std::span<const std::int16_t> samples, std::chrono::nanoseconds ago)>;
void listenToWebSound(WebSoundListener listener);

}  // namespace orn
