#pragma once

#include <algorithm>
#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include <QtCore/QPointer>
#include <QtCore/QString>
#include <QtWidgets/QAbstractScrollArea>

#include <ORNHearingTestSDK/screens/ScreensExport.h>
#include <ORNHearingTestSDK/screens/TableCell.h>

namespace orn {

class TableView;

/// Where a row is.
struct IndexPath {
  int section = 0;                                     ///< From 0.
  int row = 0;                                         ///< Within its section, from 0.
  auto operator<=>(const IndexPath&) const = default;  ///< By section, then by row.
};

/// What a table shows and what its rows do.
class ORN_SCREENS_EXPORT TableViewSource {
 public:
  virtual ~TableViewSource() = default;

  virtual int numberOfSectionsInTableView(TableView& tableView) = 0;         ///< How many sections there are.
  virtual int numberOfRowsInSection(TableView& tableView, int section) = 0;  ///< How many rows a section has.

  /// Heights in points. A height of 0 means that there is no heading.
  virtual int heightForRowAtIndexPath(TableView& tableView, IndexPath indexPath) = 0;
  virtual int heightForHeaderInSection(TableView& tableView, int section);  ///< In points; 0 for none.

  /// A new view, which the table takes over.
  virtual QWidget* viewForHeaderInSection(TableView& tableView, int section);

  /// A cell that is filled for the row: one that dequeueReusableCell() has given, or a new one, which the table takes
  /// over.
  virtual TableCell* cellForRowAtIndexPath(TableView& tableView, IndexPath indexPath) = 0;

  virtual void didSelectRowAtIndexPath(TableView& tableView, IndexPath indexPath);  ///< The user has chosen a row.

 private:
  friend class TableView;
  std::shared_ptr<void> life_ = std::make_shared<char>();
};

/// A list of sections with rows, whose cells are made only for what is in view and used again. The heading of the
/// section at the top stays in view. Goes by wheel, finger and keyboard: the arrow keys move from row to row, and the
/// tabulator key finds the rows, not the table. On a wide window the rows stand in a column in its middle. Main thread.
class ORN_SCREENS_EXPORT TableView final : public QAbstractScrollArea {
 public:
  explicit TableView(QWidget* parent);  ///< In a parent.
  ~TableView() override;

  static constexpr int kWidestColumn = 640;  ///< Of the rows, in points.

  /// Not owned. With null, or when the source goes, the table becomes empty at its next reload, and no row comes into
  /// view until then.
  void setSource(TableViewSource* source);

  /// The width that rows and headings have, in points.
  int columnWidth() const { return std::min(viewport()->width(), kWidestColumn); }

  /// Views above the first section and below the last one, at their own heights and as wide as the table, which takes
  /// them over. Null means that there is none.
  void setTableHeaderView(QWidget* view) { setEdgeView(header_, view); }
  void setTableFooterView(QWidget* view) { setEdgeView(footer_, view); }  ///< Below all rows; the table owns it.

  /// Room that stays free at the top, such as for a bar.
  void setTopInset(int inset);

  /// Room beneath each section.
  void setSectionSpacing(int spacing) { sectionSpacing_ = spacing; }

  /// Asks the source for everything anew. A cell in view goes back to its own row first.
  void reloadData();

  /// A cell that is out of use, the row's own one if possible; null if there is none.
  TableCell* dequeueReusableCell(const QString& identifier, IndexPath indexPath);

  /// The cell of a row that is in view; null otherwise.
  TableCell* cellForRow(IndexPath indexPath) const;

  void deselectRow(IndexPath indexPath);  ///< Draws it as not chosen.

  /// How many cells there are in all.
  std::size_t cellCount() const { return cells_.size() + pool_.size(); }

 protected:
  void resizeEvent(QResizeEvent* event) override;  ///< Qt's; handled here.
  void showEvent(QShowEvent* event) override;      ///< Qt's; handled here.
  void scrollContentsBy(int dx, int dy) override;  ///< Qt's; handled here.
  void keyPressEvent(QKeyEvent* event) override;   ///< Qt's; handled here.

 private:
  struct Row {
    IndexPath indexPath;
    int top, height;
  };
  struct Section {
    int top, headerHeight, bottom;
  };
  struct PooledCell {
    IndexPath lastRow;
    TableCell* cell;
  };

  TableViewSource* source() const { return life_.expired() ? nullptr : source_; }
  QRect inColumn(int top, int height) const;
  void setEdgeView(QPointer<QWidget>& slot, QWidget* view);
  void measure();
  void arrange();
  bool arrangeRows(int top, int bottom);
  void arrangeHeaders(int top, int bottom);
  void arrangeEdges(int top);
  void orderForTabulator();
  void recycle(std::map<IndexPath, TableCell*>::iterator cell);
  TableCell* makeCell(IndexPath indexPath);
  void select(IndexPath indexPath);
  bool moveFocus(int key);
  void scrollIntoView(const Row& row);

  TableViewSource* source_ = nullptr;
  std::weak_ptr<void> life_;  // the source's
  QPointer<QWidget> header_, footer_;
  std::vector<Section> sections_;
  std::vector<Row> rows_;
  std::map<IndexPath, TableCell*> cells_;
  std::map<int, QWidget*> headings_;
  std::vector<PooledCell> pool_;
  std::optional<IndexPath> selected_;
  int contentHeight_ = 0;
  int sectionSpacing_ = 0;
  bool isArranging_ = false;
};

}  // namespace orn
