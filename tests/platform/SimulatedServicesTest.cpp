#include <chrono>
#include <csignal>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <ORNHearingTestSDK/platform/simulated/SimulatedPlatform.h>

namespace orn {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

using Bytes = std::vector<std::uint8_t>;

/// Writes down what it is told: the reason of a route change, or the type of an interruption above 100.
std::shared_ptr<AudioSessionObserver> observerInto(std::vector<int>& told) {
  return std::make_shared<AudioSessionObserver>(
      AudioSessionObserver{[&told](std::int32_t reason) { told.push_back(reason); },
                           [&told](std::int32_t type) { told.push_back(100 + type); }});
}

TEST(SimulatedAudioSession, PluggingChangesTheRouteAndTellsWhy) {
  SimulatedAudioSession session;
  std::vector<int> told;
  const auto observer = observerInto(told), silent = std::make_shared<AudioSessionObserver>();
  session.addObserver(silent);
  session.addObserver(observer);
  const auto route = [&] { return session.currentRoute().outputs.at(0).portName + "/" + *session.routeText(); };
  session.plugAudiometer("KV50-1234", "AA:BB:CC:DD:EE:FF");
  EXPECT_EQ(route(), "KV50-1234/HeadsetBT");
  EXPECT_EQ(session.currentRoute().outputs[0].UID.rfind("AA:BB:CC:DD:EE:FF-", 0), 0U);
  session.unplug();
  EXPECT_EQ(route(), "Speaker/Speaker");
  session.plugEarphones();
  EXPECT_EQ(route(), "Headphones/Headphone");
  session.interrupt(1);
  session.interrupt(kAudioSessionInterruptionTypeEnded);
  session.setRoute({}, std::nullopt, 7);
  EXPECT_EQ(session.routeText(), std::nullopt);
  EXPECT_THAT(
      told, ElementsAre(SimulatedAudioSession::kNewDeviceAvailable, kAudioSessionRouteChangeReasonOldDeviceUnavailable,
                        SimulatedAudioSession::kNewDeviceAvailable, 101, 100, 7));
}

TEST(SimulatedURLSession, RepliesByScriptAfterItsDelay) {
  const auto loop = std::make_shared<SimulatedRunLoop>();
  SimulatedURLSession session(loop);
  session.script("/app", {"general", {}});
  session.script("/app/score", {"score", {}}, 250ms);
  session.script("/app/late", {"late", {}}, 10001ms);
  session.script("/app/broken", {{}, Error{"json", 5, "broken"}});
  const struct {
    const char* url;
    std::chrono::milliseconds at;
    const char* reply;
  } table[] = {{"http://host/app/history", 10ms, "general"},
               {"http://host/app/score", 250ms, "score"},
               {"http://host/app/late", 10000ms, "transport"},
               {"http://host/app/broken", 10ms, "json"},
               {"http://host/other", 0ms, "transport"}};
  for (const auto& [url, at, reply] : table) {
    std::vector<std::string> replies;
    const auto asked = loop->now();
    std::chrono::nanoseconds answered{};
    session.dataTask({.url = url, .method = "Get", .headers = {}, .body = {}}, [&](const URLReply& got) {
      EXPECT_NE(got.body.has_value(), got.error.has_value());
      replies.push_back(got.error ? got.error->domain : *got.body);
      answered = loop->now() - asked;
    });
    EXPECT_THAT(replies, IsEmpty()) << url;  // never from within the call
    loop->runFor(1min);
    EXPECT_THAT(replies, ElementsAre(reply)) << url;
    EXPECT_EQ(answered, at) << url;
  }
  EXPECT_EQ(session.requests().size(), 5U);
  EXPECT_EQ(session.requests().back().url, "http://host/other");
}

/// A folder of files that goes with the test.
class SimulatedFiles : public testing::Test {
 protected:
  std::size_t entries() const {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder_), {}));
  }

  SimulatedFileManager files_;
  const std::string folder_ = files_.documentsDirectory();
  const std::string path_ = folder_ + "/record";
  const Bytes old_{'o', 'l', 'd'};
};

TEST_F(SimulatedFiles, AreWrittenWholeReadAndRemoved) {
  for (const Bytes& bytes : {old_, Bytes(300'000, 7), Bytes{}, Bytes{0, 255, 10, 13, 0}}) {
    EXPECT_TRUE(files_.writeAtomically(path_, bytes));
    EXPECT_EQ(files_.contents(path_), bytes);
    EXPECT_EQ(entries(), 1U);
  }
  EXPECT_TRUE(files_.removeFile(path_));
  EXPECT_EQ(files_.contents(path_), std::nullopt);
}

TEST_F(SimulatedFiles, AWriteThatBreaksOffLeavesTheOldFileAndNoOther) {
  files_.writeAtomically(path_, old_);
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  const rlimit small{1000, before.rlim_max};
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  setrlimit(RLIMIT_FSIZE, &small);  // the disk is full after 1000 bytes
  const bool written = files_.writeAtomically(path_, Bytes(5000, 'n'));
  setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, handler);
  EXPECT_FALSE(written);
  EXPECT_EQ(files_.contents(path_), old_);
  EXPECT_EQ(entries(), 1U);
}

TEST(SimulatedAudioSession, AnObserverThatWentAwayHearsNothing) {
  SimulatedAudioSession session;
  std::vector<int> gone, told;
  auto going = observerInto(gone), goingInTheMiddle = observerInto(gone);
  const auto ends =
      std::make_shared<AudioSessionObserver>(AudioSessionObserver{[&](std::int32_t) { goingInTheMiddle.reset(); }, {}});
  const auto stays = observerInto(told);
  for (const auto& one : {going, std::shared_ptr(ends), goingInTheMiddle, stays}) session.addObserver(one);
  going.reset();
  session.unplug();
  session.unplug();
  EXPECT_THAT(gone, IsEmpty());
  EXPECT_THAT(told, ElementsAre(2, 2));
}

}  // namespace
}  // namespace orn
