#pragma once

#include <memory>

#include <ORNHearingTestSDK/engine/TimedHearingTest.h>

namespace orn {

/// The automatic test, which needs nothing but a press at each tone heard. The search goes 10 dB up or down until the
/// answer changes and closes the gap by 5 dB, so no level is presented twice in a search.
class ORN_EXPORT ORNAutoHearingTest final : public TimedHearingTest {
 public:
  static std::shared_ptr<ORNAutoHearingTest> init();  ///< A new session.

  void targetItem(const Item& item) override;
  void hasListened() override;  ///< Goes on after a tone that was heard.
  void notListened() override;  ///< Goes on after a tone that was not heard.
  Item getNextColnTestItem() override;

 private:
  ORNAutoHearingTest() = default;

  void goOn(const Item& judged, bool isHeard);
};

}  // namespace orn
