#pragma once

#include <memory>

#include <nlohmann/json_fwd.hpp>

#include <ORNHearingTestSDK/platform/URLSession.h>
#include <ORNHearingTestSDK/screens/TableScreen.h>

namespace orn {

class BusyNotice;
class ORNListenTest;

/// The user's stored tests in the service's order, fetched once when the screen loads; a tap opens one of them. Rows
/// are made, read and scored only as they come into view. Says so while they are on their way. Main thread.
class ORN_SCREENS_EXPORT ORNTestHistoryViewController final : public TableScreen {
 public:
  static std::shared_ptr<ORNTestHistoryViewController> init();  ///< A new screen.
  ~ORNTestHistoryViewController() override;

  /// The records as the service sent them; null until they have come.
  const nlohmann::json& tests() const { return *tests_; }

  /// Makes the bar items whose titles are given and pushes the screen.
  void showTestHistoryViewControllerByNavigation(const std::shared_ptr<NavigationController>& navigation,
                                                 const std::optional<QString>& leftBarTitle, Action leftBarAction,
                                                 const std::optional<QString>& rightBarTitle, Action rightBarAction);

  int numberOfSectionsInTableView(TableView& tableView) override;
  int numberOfRowsInSection(TableView& tableView, int section) override;
  int heightForRowAtIndexPath(TableView& tableView, IndexPath indexPath) override;
  int heightForHeaderInSection(TableView& tableView, int section) override;
  QWidget* viewForHeaderInSection(TableView& tableView, int section) override;
  TableCell* cellForRowAtIndexPath(TableView& tableView, IndexPath indexPath) override;
  void didSelectRowAtIndexPath(TableView& tableView, IndexPath indexPath) override;

 protected:
  void viewDidLoad() override;

 private:
  ORNTestHistoryViewController();

  void fetched(const std::optional<Error>& error, const nlohmann::json& listenTests);
  void showNotice(const QString& message);
  int count() const;
  std::shared_ptr<ORNListenTest> testOfSection(int section) const;

  std::unique_ptr<nlohmann::json> tests_;
  QPointer<BusyNotice> busy_;
};

}  // namespace orn
