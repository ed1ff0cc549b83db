#pragma once

#include <QtCore/QPointer>

#include <ORNHearingTestSDK/screens/Screen.h>
#include <ORNHearingTestSDK/screens/TableView.h>

namespace orn {

/// A screen that is a table, and its source. Main thread.
class ORN_SCREENS_EXPORT TableScreen : public Screen, public TableViewSource {
 public:
  ~TableScreen() override;

  /// Null while the screen has no view.
  TableView* tableView() const { return tableView_; }

  QWidget* firstFocus() const override;

 protected:
  QWidget* loadView(QWidget* parent) override;
  void layOut() override;

  /// Reloads the table at the loop's next turn. Any thread.
  void reloadDataOnMainThread();

 private:
  void setTopInset();

  QPointer<TableView> tableView_;
};

}  // namespace orn
