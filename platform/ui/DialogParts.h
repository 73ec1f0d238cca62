#pragma once

#include <QString>

class QLabel;
class QPlainTextEdit;
class QWidget;

/// What dialogs are put together from, so that no control is without its names.
namespace DialogParts {

/// A label's words as a name for assistive technology: without access key, colon and dots.
QString NameOf(const QString& strLabel);

/// Names a control: for tests, and by its label for assistive technology.
void SetNames(QWidget* pControl, const char* pszName, const QString& strLabel);

template <typename CControl>
CControl* Named(CControl* pControl, const char* pszName, const QString& strLabel) {
    SetNames(pControl, pszName, strLabel);
    return pControl;
}

/// A label beside the control; its access key leads there.
QLabel* LabelFor(const QString& strText, QWidget* pControl);

/// A text that can be reached by Tab, read and copied, on the ground of what can't be typed into. Enter and
/// Escape stay the dialog's.
QPlainTextEdit* ReadOnlyText(QWidget* pParent);

} // namespace DialogParts
