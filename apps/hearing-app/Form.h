#pragma once

#include <QtCore/QString>

class QLabel;
class QLineEdit;
class QPushButton;
class QVBoxLayout;
class QWidget;

namespace orn {

// The application's own forms: a column of texts, fields and buttons, in the colours of the screens. Main thread.

/// Makes a form of a screen's view, below its bars; the column to add to, from above.
QVBoxLayout* makeForm(QWidget* view, int topBars);

QLabel* addText(QVBoxLayout* form, const QString& text);

/// A field under its title.
QLineEdit* addField(QVBoxLayout* form, const QString& title, const QString& hint);

/// Where what is wrong is said.
QLabel* addComplaint(QVBoxLayout* form);

QPushButton* addButton(QVBoxLayout* form, const QString& title);

/// One that is nothing but its text.
QPushButton* addQuietButton(QVBoxLayout* form, const QString& title);

}  // namespace orn
