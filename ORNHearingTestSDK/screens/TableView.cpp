#include <ORNHearingTestSDK/screens/TableView.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include <QtGui/QKeyEvent>
#include <QtGui/QResizeEvent>
#include <QtGui/QShowEvent>
#include <QtWidgets/QScrollBar>

#include <ORNHearingTestSDK/screens/Appearance.h>

namespace orn {
namespace {

constexpr int kLineStep = 40;

}  // namespace

int TableViewSource::heightForHeaderInSection(TableView& /*tableView*/, int /*section*/) { return 0; }
QWidget* TableViewSource::viewForHeaderInSection(TableView& /*tableView*/, int /*section*/) { return nullptr; }
void TableViewSource::didSelectRowAtIndexPath(TableView& /*tableView*/, IndexPath /*indexPath*/) {}

TableView::TableView(QWidget* parent) : QAbstractScrollArea(parent) {
  makePhoneScrolling(this);
  setFocusPolicy(Qt::ClickFocus);  // the keyboard waits here for a row; nothing shows that
  viewport()->setObjectName(QLatin1String(kGroundName));
  viewport()->setAutoFillBackground(true);
}

TableView::~TableView() = default;

void TableView::setTopInset(int inset) { setViewportMargins(0, inset, 0, 0); }

void TableView::setSource(TableViewSource* source) {
  source_ = source;
  life_ = source ? source->life_ : std::shared_ptr<void>();
}

void TableView::setEdgeView(QPointer<QWidget>& slot, QWidget* view) {
  delete slot;
  slot = view;
  if (view) {
    view->setParent(viewport());
    view->show();
  }
  measure();
  arrange();
  orderForTabulator();
}

void TableView::reloadData() {
  const auto focused =
      std::find_if(cells_.begin(), cells_.end(), [](const auto& one) { return one.second->hasFocus(); });
  const auto row = focused == cells_.end() ? std::nullopt : std::optional(focused->first);
  while (!cells_.empty()) recycle(cells_.begin());
  for (const auto& [section, heading] : std::exchange(headings_, {})) heading->deleteLater();
  measure();
  arrange();
  if (TableCell* cell = row ? cellForRow(*row) : nullptr) cell->setFocus(Qt::OtherFocusReason);
}

void TableView::measure() {
  sections_.clear();
  rows_.clear();
  int y = header_ ? header_->height() : 0;
  TableViewSource* const source = this->source();
  const int count = source ? source->numberOfSectionsInTableView(*this) : 0;
  for (int section = 0; section < count; ++section) {
    const int headerHeight = source->heightForHeaderInSection(*this, section);
    sections_.push_back({y, headerHeight, 0});
    y += headerHeight;
    for (int row = 0; row < source->numberOfRowsInSection(*this, section); ++row) {
      rows_.push_back({{section, row}, y, source->heightForRowAtIndexPath(*this, {section, row})});
      y += rows_.back().height;
    }
    sections_.back().bottom = y;
    y += sectionSpacing_;
  }
  contentHeight_ = y + (footer_ ? footer_->height() : 0);
  verticalScrollBar()->setPageStep(viewport()->height());
  verticalScrollBar()->setSingleStep(kLineStep);
  verticalScrollBar()->setRange(0, std::max(contentHeight_ - viewport()->height(), 0));
}

void TableView::arrange() {
  if (std::exchange(isArranging_, true)) return;
  const int top = verticalScrollBar()->value(), bottom = top + viewport()->height();
  const bool hasOtherRows = arrangeRows(top, bottom);
  arrangeHeaders(top, bottom);
  arrangeEdges(top);
  if (hasOtherRows) orderForTabulator();
  isArranging_ = false;
}

/// The tabulator key goes down the rows as they are seen, whatever was made first.
void TableView::orderForTabulator() {
  QWidget* last = this;
  const auto append = [&last](QWidget* next) {
    if (next->focusPolicy() == Qt::NoFocus) return;
    setTabOrder(last, next);
    last = next;
  };
  for (const auto& [indexPath, cell] : cells_) append(cell);
  if (!footer_) return;
  for (QWidget* one : footer_->findChildren<QWidget*>()) append(one);
}

/// Tells whether other rows show than before.
bool TableView::arrangeRows(int top, int bottom) {
  bool hasOtherRows = false;
  const auto first =
      std::partition_point(rows_.begin(), rows_.end(), [&](const Row& row) { return row.top + row.height <= top; });
  const auto last = std::partition_point(first, rows_.end(), [&](const Row& row) { return row.top < bottom; });
  for (auto cell = cells_.begin(); cell != cells_.end();) {
    const auto next = std::next(cell);
    if (first == last || cell->first < first->indexPath || std::prev(last)->indexPath < cell->first) {
      recycle(cell);
      hasOtherRows = true;
    }
    cell = next;
  }
  for (auto row = first; row != last; ++row) {
    TableCell*& cell = cells_[row->indexPath];
    const QRect frame = inColumn(row->top - top, row->height);
    if (!cell) {
      cell = makeCell(row->indexPath);
      if (!cell) {
        cells_.erase(row->indexPath);
        continue;
      }
      cell->setGeometry(frame);
      cell->setSelected(selected_ == row->indexPath);
      cell->show();
      hasOtherRows = true;
    } else {
      cell->setGeometry(frame);
    }
  }
  return hasOtherRows;
}

void TableView::arrangeHeaders(int top, int bottom) {
  for (auto one = headings_.begin(); one != headings_.end();) {
    const auto index = static_cast<std::size_t>(one->first);
    if (index < sections_.size() && sections_[index].bottom > top && sections_[index].top < bottom) {
      ++one;
      continue;
    }
    one->second->deleteLater();
    one->second->hide();
    one = headings_.erase(one);
  }
  const auto first =
      std::partition_point(sections_.begin(), sections_.end(), [&](const Section& one) { return one.bottom <= top; });
  for (auto section = first; section != sections_.end() && section->top < bottom; ++section) {
    if (section->headerHeight <= 0) continue;
    const int index = static_cast<int>(section - sections_.begin());
    QWidget*& heading = headings_[index];
    if (!heading) {
      heading = source() ? source()->viewForHeaderInSection(*this, index) : nullptr;
      if (!heading) {
        headings_.erase(index);
        continue;
      }
      heading->setParent(viewport());
      heading->show();
    }
    const int pinned = std::clamp(top, section->top, section->bottom - section->headerHeight);
    heading->setGeometry(inColumn(pinned - top, section->headerHeight));
    heading->raise();
  }
}

QRect TableView::inColumn(int top, int height) const {
  return {(viewport()->width() - columnWidth()) / 2, top, columnWidth(), height};
}

void TableView::arrangeEdges(int top) {
  if (header_) header_->setGeometry(0, -top, viewport()->width(), header_->height());
  if (footer_) {
    footer_->setGeometry(0, contentHeight_ - footer_->height() - top, viewport()->width(), footer_->height());
  }
}

TableCell* TableView::makeCell(IndexPath indexPath) {
  TableCell* cell = source() ? source()->cellForRowAtIndexPath(*this, indexPath) : nullptr;
  if (!cell) return nullptr;
  cell->setParent(viewport());
  cell->disconnect(this);
  connect(cell, &TableCell::clicked, this, [this, cell, indexPath] {
    if (cell->isUserInteractionEnabled()) select(indexPath);  // a screen reader's press comes only this way
  });
  return cell;
}

void TableView::recycle(std::map<IndexPath, TableCell*>::iterator cell) {
  if (cell->second->hasFocus()) setFocus();
  cell->second->hide();
  pool_.push_back({cell->first, cell->second});
  cells_.erase(cell);
}

TableCell* TableView::dequeueReusableCell(const QString& identifier, IndexPath indexPath) {
  const auto isFit = [&](const PooledCell& one) { return one.cell->reuseIdentifier() == identifier; };
  auto found = std::find_if(pool_.begin(), pool_.end(),
                            [&](const PooledCell& one) { return isFit(one) && one.lastRow == indexPath; });
  if (found == pool_.end()) found = std::find_if(pool_.begin(), pool_.end(), isFit);
  if (found == pool_.end()) return nullptr;
  TableCell* cell = found->cell;
  pool_.erase(found);
  return cell;
}

TableCell* TableView::cellForRow(IndexPath indexPath) const {
  const auto found = cells_.find(indexPath);
  return found == cells_.end() ? nullptr : found->second;
}

void TableView::select(IndexPath indexPath) {
  if (selected_) deselectRow(*selected_);
  selected_ = indexPath;
  if (TableCell* cell = cellForRow(indexPath)) cell->setSelected(true);
  if (source()) source()->didSelectRowAtIndexPath(*this, indexPath);
}

void TableView::deselectRow(IndexPath indexPath) {
  if (selected_ == indexPath) selected_.reset();
  if (TableCell* cell = cellForRow(indexPath)) cell->setSelected(false);
}

void TableView::resizeEvent(QResizeEvent* /*event*/) {
  measure();
  arrange();
}

/// Rows that are made while Qt takes a picture of the window with the table hidden have their painting switched off,
/// and would keep that.
void TableView::showEvent(QShowEvent* /*event*/) {
  for (QWidget* one : viewport()->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
    one->setUpdatesEnabled(true);
  }
}

void TableView::scrollContentsBy(int /*dx*/, int /*dy*/) { arrange(); }

void TableView::keyPressEvent(QKeyEvent* event) {
  if (!moveFocus(event->key())) QAbstractScrollArea::keyPressEvent(event);
}

bool TableView::moveFocus(int key) {
  if (rows_.empty() || (key != Qt::Key_Up && key != Qt::Key_Down && key != Qt::Key_Home && key != Qt::Key_End)) {
    return false;
  }
  const auto focused =
      std::find_if(cells_.begin(), cells_.end(), [](const auto& one) { return one.second->hasFocus(); });
  const int top = verticalScrollBar()->value();
  const auto firstInView =
      std::partition_point(rows_.begin(), rows_.end(), [&](const Row& one) { return one.top < top; });
  auto row = firstInView == rows_.end() ? std::prev(rows_.end()) : firstInView;
  if (focused != cells_.end()) {
    row = std::lower_bound(rows_.begin(), rows_.end(), focused->first,
                           [](const Row& one, const IndexPath& indexPath) { return one.indexPath < indexPath; });
    if (key == Qt::Key_Up && row != rows_.begin()) --row;
    if (key == Qt::Key_Down && std::next(row) != rows_.end()) ++row;
  }
  if (key == Qt::Key_Home) row = rows_.begin();
  if (key == Qt::Key_End) row = std::prev(rows_.end());
  scrollIntoView(*row);
  if (TableCell* cell = cellForRow(row->indexPath)) cell->setFocus(Qt::TabFocusReason);
  return true;
}

void TableView::scrollIntoView(const Row& row) {
  const int top = verticalScrollBar()->value(), height = viewport()->height();
  const int heading = sections_[static_cast<std::size_t>(row.indexPath.section)].headerHeight;
  if (row.top - heading < top) {
    verticalScrollBar()->setValue(row.top - heading);
  } else if (row.top + row.height > top + height) {
    verticalScrollBar()->setValue(row.top + row.height - height);
  }
}

}  // namespace orn
