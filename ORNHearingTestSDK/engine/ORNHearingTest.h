#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include <ORNHearingTestSDK/common/EarResult.h>
#include <ORNHearingTestSDK/engine/ORNHearingTestDelegate.h>
#include <ORNHearingTestSDK/platform/URLSession.h>

namespace orn {

class ORNManualHearingTest;
struct AudioSessionObserver;

/// A hearing test as its host drives it, and the library's class-level front.
///
/// A session is used on the main thread alone, which runs the platform's loop; only the audio thread enters it besides,
/// for samples. No operation reports an error; one that does not fit the session's state acts as far as it can. The
/// order of a test: initWithTestType, setDelegate, calibration, setTestHzs, startTest for one ear, listened at each
/// tone heard, startTest for the other ear on oneEarCompleteWithResult.
///
/// In this class every operation of an instance is a stub; the classes derived from it hold the behaviour.
class ORN_EXPORT ORNHearingTest : public std::enable_shared_from_this<ORNHearingTest> {
 public:
  using CompletionHandler = std::function<void(std::optional<Error>)>;  ///< Told an error or nothing.

  /// A new session: 1 a manual test, 2 a standard test, anything else an automatic test. It observes neither
  /// interruptions nor route changes; a host that wants to pause on a lost device observes those itself.
  static std::shared_ptr<ORNHearingTest> initWithTestType(std::int32_t testType);

  virtual ~ORNHearingTest();
  ORNHearingTest(const ORNHearingTest&) = delete;
  ORNHearingTest& operator=(const ORNHearingTest&) = delete;

  /// Not owned.
  std::shared_ptr<ORNHearingTestDelegate> delegate() const { return delegate_.lock(); }
  void setDelegate(std::weak_ptr<ORNHearingTestDelegate> delegate) { delegate_ = std::move(delegate); }

  /// Model of the earphones in use; goes with the result when no audiometer is in use.
  const std::optional<std::string>& earPlugModel() const { return earPlugModel_; }
  void setEarPlugModel(std::optional<std::string> earPlugModel) { earPlugModel_ = std::move(earPlugModel); }

  /// Dropped, in every session.
  virtual void setNosiseValue(std::optional<double> nosiseValue);

  /// Changes nothing: the library writes no log.
  virtual void setLogEnable(bool enabled);

  /// Progress of the current ear, normally 0 to 1; above 1 from the retest of the standard test to the ear's end.
  virtual float getTestProgress() const;

  /// Takes the audiometer's address and gets its calibration; nothing from this class itself.
  virtual void setKV50MAC(const std::string& KV50MAC, CompletionHandler completionHandler);

  /// The frequency keys in test order, such as "1000hz". Call it before the first tone. A key that repeats counts once.
  virtual void setTestHzs(std::vector<std::string> hzs);

  /// Starts one ear: true left, false right.
  virtual void startTest(bool isLeft);
  virtual void pauseTest();     ///< Falls silent at once; a timed test stops its clock.
  virtual void continueTest();  ///< Goes on after a pause; a timed test judges its tone at once.

  /// Ends the test for good: it falls silent, its clock stops, no tone that was due still comes, and nothing starts it
  /// again. For a host that leaves in mid-test. Thresholds found so far stay readable.
  virtual void endTest();

  /// The ear under test.
  virtual bool isTestLeft() const;

  /// The user has pressed.
  virtual void listened();

  /// The thresholds of one ear so far; nothing from this class itself.
  virtual std::optional<EarResult> getTestResult(bool isLeft) const;

  /// Presents one cell of the grid, such as "1000hz" and "40db" or "40". A cell that is not there changes nothing.
  virtual void playAtHz(const std::string& hz, const std::string& db);

  /// This session as the class below it, with operations such as those for earphones; null for this class itself. For
  /// hosts built without RTTI, in place of a cast.
  virtual ORNManualHearingTest* manualTest();

  /// Makes this instance observe the audio session. Sessions from the factory don't.
  void setupNotifications();

  /// Sets the audio session up again when an interruption has ended (type 0); the test itself takes no notice.
  void handleInterruptionNotification(std::int32_t type);
  void handleRouteChangeNotification(std::int32_t reason);  ///< Does nothing.

  // Class operations that other units own.

  /// AudioRoute::load, which has run by the time the host's code starts, and AudioRoute::config.
  static void load();
  static void config();  ///< Sets the audio session up for playback.
  static void configAudioSession();
  static void configAudioSessionToPlayAndRecord();  ///< The same with the microphone allowed.
  static bool hasHeadset();                         ///< Whether earphones are connected.
  /// The address of the audiometer that is connected; nothing if none is.
  static std::optional<std::string> getKV50Mac();
  static std::string platform();  ///< The machine's model.

  /// orn::registerAppKey and orn::setHttpHeader.
  static void registerAppKey(const std::string& appKey);
  static void setHttpHeader(URLRequest& request);  ///< Adds the common headers to a request.

  /// UserProfile::setAppUserID.
  static void setAppUserID(std::optional<std::string> appUserID, std::optional<std::string> username, bool isWomen,
                           std::optional<std::chrono::system_clock::time_point> birthday,
                           std::optional<std::string> phone, CompletionHandler completionHandler);

  /// ResultSubmission::listenTestWithLeft and TestHistory::getListenTestWithCompletion.
  static void listenTestWithLeft(const EarResult& left, const EarResult& right,
                                 const std::optional<std::string>& earPlugModel,
                                 std::function<void(std::nullptr_t, std::optional<Error>)> completion);
  /// The tests that the service has stored.
  static void getListenTestWithCompletion(
      std::function<void(std::optional<Error>, const nlohmann::json& listenTests)> completion);

  /// HearingScore::computeEarTestResult and HearingScore::computeResultString.
  static std::int64_t computeEarTestResult(const EarResult& earResult);
  static std::string computeResultString(std::int64_t loss);  ///< What to say of a loss in dB, in Chinese.

 protected:
  ORNHearingTest();

  /// This session as its own class, held alive.
  template <class Session>
  std::shared_ptr<Session> self(Session* session) {
    return {shared_from_this(), session};
  }

  /// A delegate's operation, which is empty if there is no delegate or it does not implement it. A copy, since the
  /// call may let go of the delegate.
  template <class Operation>
  Operation delegateOperation(Operation ORNHearingTestDelegate::*operation) const {
    const auto told = delegate_.lock();
    return told ? (*told).*operation : Operation{};
  }

  /// Calls a delegate's operation, if it has it, with this session held alive.
  template <class Operation, class... Arguments>
  void tellDelegate(Operation ORNHearingTestDelegate::*operation, const Arguments&... arguments) {
    const Operation told = delegateOperation(operation);
    if (!told) return;
    const auto alive = shared_from_this();
    ++callsUnderWay_;
    told(*this, arguments...);
    --callsUnderWay_;
  }

  /// Whether a call to the delegate has not ended yet; it may run a loop of its own meanwhile.
  bool isTelling() const { return callsUnderWay_ > 0; }

 private:
  std::weak_ptr<ORNHearingTestDelegate> delegate_;
  std::optional<std::string> earPlugModel_;
  std::shared_ptr<AudioSessionObserver> observer_;
  int callsUnderWay_ = 0;
};

}  // namespace orn
