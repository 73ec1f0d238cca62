#pragma once

#include <QDialog>
#include <QPointer>

#include <functional>
#include <initializer_list>
#include <optional>
#include <type_traits>

class QBoxLayout;
class QKeyEvent;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

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

/// A text for the tip at the mouse, where it shows as it is, whatever it holds; empty for an empty one.
QString TipOf(const QString& strText);

/// A text that can be reached by Tab, read and copied, on the ground of what can't be typed into. Enter and
/// Escape stay the dialog's.
QPlainTextEdit* ReadOnlyText(QWidget* pParent);

/// The text of a field as it shows itself: a line break that was pasted is a blank.
QString TextOf(const QLineEdit& field);

/// The button whose letter the key is, of those that can be pressed; null for none. In a view whose letters
/// are those of menus as well.
QPushButton* ButtonOfLetter(const QKeyEvent& key, std::initializer_list<QPushButton*> buttons);

/// Adds "确定" and "取消", named "ok" and "cancel", which end the dialog. Gives back the default button.
enum class EDefaultButton { Ok, Cancel };
QPushButton* AddOkAndCancel(QDialog& dialog, QBoxLayout& layout, EDefaultButton button = EDefaultButton::Ok);

/// Runs a dialog that was made for this, and reads what was entered; nothing when it was cancelled. The
/// window over which it stands may go while it is open, and takes the dialog with it: nothing then, too.
template <typename CDialog, typename CReader>
std::optional<std::invoke_result_t<CReader, CDialog&>> Run(CDialog* pNew, CReader read) {
    const QPointer<CDialog> pDialog(pNew);
    const bool bAccepted = pDialog->exec() == QDialog::Accepted;
    if (!pDialog)
        return std::nullopt;
    std::optional<std::invoke_result_t<CReader, CDialog&>> answer;
    if (bAccepted)
        answer = std::invoke(read, *pDialog);
    delete pDialog;
    return answer;
}

} // namespace DialogParts
