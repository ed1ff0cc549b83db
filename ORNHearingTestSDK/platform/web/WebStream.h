#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <system_error>

#include <ORNHearingTestSDK/platform/RunLoop.h>
#include <ORNHearingTestSDK/platform/StereoGain.h>

namespace orn {

/// What an output and its streams share, which outlives the output. Main thread.
struct WebOutputState {
  std::shared_ptr<RunLoop> runLoop;
  bool isOpen = true;
  std::uint64_t lapses = 0;
};

/// One mono stream into the page's sound. The audio thread holds what the stream was fed ahead of time and reports how
/// far it has played, so the stream outlasts stalls of the main thread that are shorter than that. One that ran dry is
/// silent until the run loop has made the calls that became due meanwhile, which may stop it. Main thread.
class WebStream {
 public:
  struct Samples {
    std::span<const std::int16_t> samples;
    bool isLast = false;
  };
  /// The next samples to play, no more than that many; empty if there are none now.
  using Source = std::function<Samples(std::size_t most)>;

  /// `ahead` is how many frames it is fed before they are due.
  WebStream(std::shared_ptr<WebOutputState> output, std::size_t ahead, Source source);
  ~WebStream();
  WebStream(const WebStream&) = delete;
  WebStream& operator=(const WebStream&) = delete;

  /// Whether there is a device for it to sound on.
  std::error_code device() const;

  std::error_code play();
  void pause();
  void clear();  ///< Drops what it was fed.
  void setGain(StereoGain gain);

  /// Asks the source for as much as is due. Does nothing while it does not play.
  void feed();

  bool isPlaying() const { return isPlaying_; }

  /// The audio thread reports progress while it plays: the time for whatever must not come from within another call.
  std::function<void()> onProgress;
  /// Called when it has played its last sample, and is stopped and empty.
  std::function<void()> onEnd;

  /// The page's reports: how many frames a stream has played since its last clear(), and that the device has gone.
  static void reported(int id, int turn, double played, int timesDry, bool hasEnded);
  static void deviceHasGone();

  /// Stops all streams of an output.
  static void silence(const WebOutputState& output);

 private:
  static void goOnAfterDryness(int id);

  std::shared_ptr<WebOutputState> output_;
  std::size_t ahead_;
  Source source_;
  int id_;
  int turn_ = 0;  // calls of clear() so far
  double fed_ = 0, played_ = 0;
  bool isPlaying_ = false;
};

}  // namespace orn
