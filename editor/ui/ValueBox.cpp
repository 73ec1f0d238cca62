#include "editor/ui/ValueBox.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QWheelEvent>

namespace {

/// Names of fonts are compared as the engine reads them: a tab is a blank, however it is written.
QString Bare(QString strValue) {
    return strValue.replace(QLatin1String("&#9;"), QLatin1String(" ")).simplified().toCaseFolded();
}

} // namespace

CValueBox::CValueBox(std::span<const EditorCommands::BoxRow> rows, int nWidth, QWidget* pParent)
    : QComboBox(pParent), m_nWidth(nWidth) {
    // A tab would be drawn as wide as half the list.
    for (const EditorCommands::BoxRow& row : rows)
        addItem(row.strShown.toString().replace(u'\t', u' '), row.strValue.toString());
    setSizeAdjustPolicy(AdjustToContents);
    setMaxVisibleItems(count());
    connect(this, &QComboBox::activated, this, [this](int nRow) {
        Q_EMIT ValueChosen(itemData(nRow).toString());
        if (!m_bStepping)
            Q_EMIT Left();
    });
}

void CValueBox::ShowValue(const QString& strValue) {
    // What is being chosen now doesn't change under the hand.
    if (hasFocus() || view()->isVisible())
        return;
    int nRow = -1;
    for (int i = 0; i < count() && nRow < 0; ++i)
        nRow = Bare(itemData(i).toString()) == Bare(strValue) ? i : -1;
    setPlaceholderText(strValue);
    setCurrentIndex(nRow);
}

QSize CValueBox::sizeHint() const {
    return QComboBox::sizeHint().expandedTo(QSize(m_nWidth, 0));
}

void CValueBox::keyPressEvent(QKeyEvent* pEvent) {
    switch (pEvent->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Escape:
        Q_EMIT Left();
        return;
    default:
        m_bStepping = true;
        QComboBox::keyPressEvent(pEvent);
        m_bStepping = false;
    }
}

void CValueBox::wheelEvent(QWheelEvent* pEvent) {
    // A wheel that only passes over it must not change the text.
    pEvent->ignore();
}
