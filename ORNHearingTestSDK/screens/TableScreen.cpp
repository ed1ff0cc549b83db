#include <ORNHearingTestSDK/screens/TableScreen.h>

#include <ORNHearingTestSDK/platform/MainQueue.h>
#include <ORNHearingTestSDK/screens/NavigationController.h>

namespace orn {

TableScreen::~TableScreen() {
  if (tableView_) tableView_->setSource(nullptr);  // it may live on for the event that is under way
}

QWidget* TableScreen::firstFocus() const { return tableView_; }

QWidget* TableScreen::loadView(QWidget* parent) {
  tableView_ = new TableView(parent);
  setTopInset();
  return tableView_;
}

/// The table begins beneath a bar that its view reaches up under.
void TableScreen::setTopInset() {
  const auto navigation = navigationController();
  tableView_->setTopInset(navigation && navigation->isTranslucent() ? topBars() : 0);
}

void TableScreen::layOut() {
  if (!tableView_) return;
  setTopInset();
  tableView_->reloadData();
}

void TableScreen::reloadDataOnMainThread() {
  MainQueue::current().dispatchAsync([self = weakSelf(this)] {
    const auto screen = self.lock();
    if (screen && screen->tableView_) screen->tableView_->reloadData();
  });
}

}  // namespace orn
