#include <ORNHearingTestSDK/results/ResultSubmission.h>

#include <utility>

#include <ORNHearingTestSDK/platform/PerPlatform.h>

namespace orn {
namespace {

std::vector<TestSubmission>& store() {
  static PerPlatform<std::vector<TestSubmission>> tests;
  return *tests.get([] { return std::make_shared<std::vector<TestSubmission>>(); });
}

}  // namespace

void ResultSubmission::listenTestWithLeft(EarResult left, EarResult right, std::optional<std::string> earPlugModel,
                                          Completion /*completion*/) {
  store().push_back({std::move(left), std::move(right), std::move(earPlugModel)});
}

const std::vector<TestSubmission>& ResultSubmission::waiting() { return store(); }

}  // namespace orn
