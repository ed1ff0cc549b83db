#pragma once

#include <QtCore/QString>

class QLabel;
class QLineEdit;
class QPushButton;
class QVBoxLayout;
class QWidget;

namespace orn {

// The application's own forms: a column of texts, fields and buttons, in the colours of the screens. Main thread.

/// Makes a screen's view a form, below its bars. Returns the column to add to, from the top.
QVBoxLayout* makeForm(QWidget* view, int topBars);

QLabel* addText(QVBoxLayout* form, const QString& text);

/// A field under its title.
QLineEdit* addField(QVBoxLayout* form, const QString& title, const QString& hint);

/// Says what is wrong with an answer.
QLabel* addComplaint(QVBoxLayout* form);

QPushButton* addButton(QVBoxLayout* form, const QString& title);

/// One with an outline alone, for what is chosen less often.
QPushButton* addQuietButton(QVBoxLayout* form, const QString& title);

}  // namespace orn
