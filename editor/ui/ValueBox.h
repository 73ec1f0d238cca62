#pragma once

#include "editor/EditorCommands.h"

#include <QComboBox>

/// A toolbar's combo box, which runs a command with the chosen value. It follows the caret without running
/// anything, and a person may walk through its rows with the arrow keys without being taken into the text.
class CValueBox : public QComboBox {
    Q_OBJECT
public:
    /// At least nWidth pixels wide, and wide enough for its rows in the desktop's font.
    CValueBox(std::span<const EditorCommands::BoxRow> rows, int nWidth, QWidget* pParent);

    QSize sizeHint() const override;
    /// A bar without room for it shows it elsewhere, and doesn't squeeze it.
    QSize minimumSizeHint() const override { return sizeHint(); }

    /// Shows the row with this value, or the value itself where no row has it.
    void ShowValue(const QString& strValue);

Q_SIGNALS:
    /// Chosen by the person, also when it is the one that shows.
    void ValueChosen(const QString& strValue);
    /// The person is done with the box.
    void Left();

protected:
    void keyPressEvent(QKeyEvent* pEvent) override;
    void wheelEvent(QWheelEvent* pEvent) override;

private:
    int m_nWidth;
    bool m_bStepping = false;
};
