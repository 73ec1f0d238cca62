#pragma once

#include <QPointer>
#include <QSplitter>

/// The main frame's two panes side by side. A mouse moves the bar between them from 150 pixels off the left
/// edge to half of the width; whatever else changes the window's width leaves the left pane as it is.
class CPaneSplitter : public QSplitter {
    Q_OBJECT
public:
    explicit CPaneSplitter(QWidget* pParent);

protected:
    QSplitterHandle* createHandle() override;
};

/// A frame around the pane that the keyboard has been taken to, while the focus stays there. Lies over the
/// window and takes no input.
class CPaneMark : public QWidget {
    Q_OBJECT
public:
    explicit CPaneMark(QWidget* pWindow);

    /// The pane must stand in the window.
    void ShowAround(QWidget* pPane);

protected:
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;
    void paintEvent(QPaintEvent* pEvent) override;

private:
    void Place();
    void Drop();

    QPointer<QWidget> m_pPane;
};
