#pragma once

#include <QtCore/QPointer>
#include <QtWidgets/QLabel>

#include <ORNHearingTestSDK/screens/TableCell.h>

namespace orn {

/// A plain cell with room for an image, a title and a detail, for host applications. The cell takes over what is set.
class ORN_SCREENS_EXPORT ORNErJiTableViewCell final : public TableCell {
 public:
  using TableCell::TableCell;  ///< For rows of a kind.

  QLabel* erjiImage() const { return erjiImage_; }                       ///< The picture; not owned.
  void setErjiImage(QLabel* erjiImage) { keep(erjiImage_, erjiImage); }  ///< Takes the picture.
  QLabel* title() const { return title_; }                               ///< The title; not owned.
  void setTitle(QLabel* title) { keep(title_, title); }                  ///< Takes the title.
  QLabel* detail() const { return detail_; }                             ///< The text below it; not owned.
  void setDetail(QLabel* detail) { keep(detail_, detail); }              ///< Takes that text.

 private:
  void keep(QPointer<QLabel>& slot, QLabel* label) {
    if (slot != label) delete slot;
    slot = label;
    if (label) label->setParent(this);
  }

  QPointer<QLabel> erjiImage_, title_, detail_;
};

}  // namespace orn
