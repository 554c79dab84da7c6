#pragma once
// Binds control models to widgets, one line each. The rules that hold for every panel stand here
// and nowhere else: links navy or grey, the whole text selected when a box gets the focus, lists
// that complete what is typed and open on Enter. A binding ends with its widget; models outlive
// widgets.

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRadioButton>

#include "common/controls.h"

namespace norvane {

class Link_Button;
class Value_Label;

/// `caption` is the control's name for those who cannot see the form.
void Bind(QLineEdit& edit, Text_Box& model, const QString& caption);
void Bind(QPlainTextEdit& edit, Text_Box& model, const QString& caption);
void Bind(QComboBox& list, Combo_Box& model, const QString& caption);
/// Makes the list editable. A text that is the beginning of an entry is given by taking the
/// completed part away (Backspace or Delete).
void Bind(QComboBox& list, Text_Combo& model, const QString& caption);
/// The caption is the check box's own text.
void Bind(QCheckBox& box, Check_Box& model);
/// The caption is the button's own text. Options of one choice are children of one widget, and of
/// no other choice.
void Bind(QRadioButton& button, Option_Button& model);
/// Fills `patch` with the colour.
void Bind(QFrame& patch, Swatch& model, const QString& caption);
void Bind(Value_Label& value, Label& model, const QString& caption);
/// A caption that the model gives ("Gate" of a field definition).
void Bind(QLabel& caption, Label& model);
/// A caption that is usable with its figure, and shown with it.
void Bind_Caption(QLabel& caption, Control& follows);
void Bind(Link_Button& link, Link& model);
void Bind(QAction& action, Menu_Command& model);

/// Calls `run` at every change of `model`, until `widget` is gone; once at once.
void Follow(QObject& widget, Control& model, const std::function<void()>& run);
/// Ends `connection` with `owner`.
void Keep(QObject& owner, const Connection& connection);

}  // namespace norvane
