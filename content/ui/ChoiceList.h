#pragma once

#include <QKeyEvent>
#include <QListWidget>

/// A list from which one line is chosen with the keyboard alone: as long as none is, the first key of the
/// cursor takes the first line, or the last for End. A plain list passes over the first, and from a list of
/// one line nothing could be chosen that way.
class CChoiceList : public QListWidget {
    Q_OBJECT
public:
    using QListWidget::QListWidget;

protected:
    void keyPressEvent(QKeyEvent* pEvent) override {
        const bool bMoves = pEvent->key() >= Qt::Key_Home && pEvent->key() <= Qt::Key_PageDown;
        if (bMoves && count() > 0 && selectedItems().isEmpty())
            setCurrentRow(pEvent->key() == Qt::Key_End ? count() - 1 : 0);
        else
            QListWidget::keyPressEvent(pEvent);
    }
};
