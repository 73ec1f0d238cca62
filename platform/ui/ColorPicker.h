#pragma once

#include <QColor>
#include <QPushButton>

#include <optional>

class QLineEdit;

namespace Torvane::Control::MFC {

/// A button that shows the colour named in the text box that it was given, and writes a chosen one into it.
class CColorPicker : public QPushButton {
    Q_OBJECT
public:
    explicit CColorPicker(QWidget* pParent = nullptr);

    /// The box is not owned; it lives as long as the button.
    void SetBuddy(QLineEdit& edit);

    /// The colour dialog, with shown as its first colour; nothing when cancelled.
    static std::optional<QColor> Ask(const QColor& shown, QWidget* pParent);

protected:
    void changeEvent(QEvent* pEvent) override;

private:
    void ShowColour();
    void Pick();

    QLineEdit* m_pBuddy = nullptr;
};

} // namespace Torvane::Control::MFC
