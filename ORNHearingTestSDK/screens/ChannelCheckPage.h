#pragma once

#include <functional>
#include <vector>

#include <QtCore/QString>
#include <QtWidgets/QWidget>

class QLabel;
class QPushButton;
class QVBoxLayout;

namespace orn {

/// A page of the check: a heading, a text, a note, rows of large buttons and one quiet button.
class ChannelCheckPage : public QWidget {
 public:
  struct Choice {
    QString title;
    std::function<void()> action;
  };

  ChannelCheckPage(const QString& heading, const QString& text, QWidget* parent);

  /// Side by side; the first one of all rows is what the keyboard is at.
  void addRow(const std::vector<Choice>& choices);
  void addQuiet(const Choice& choice);

  /// Something that has gone wrong.
  void setNote(const QString& note);

  QWidget* first() const { return first_; }

 private:
  QPushButton* makeButton(const Choice& choice);
  QLabel* addLabel(const QString& text, const QFont& font);

  QVBoxLayout* column_;
  QLabel* note_;
  QWidget* first_ = nullptr;
};

}  // namespace orn
