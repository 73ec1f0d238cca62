#pragma once

#include <QLineEdit>

/// A field for a path: shows it in native form, takes either form, and a file that is dropped on it.
class CPathField : public QLineEdit {
    Q_OBJECT
public:
    explicit CPathField(QWidget* pParent) : QLineEdit(pParent) {}

    /// In backslash form, without blanks that came along and needless separators; empty when nothing is
    /// entered.
    QString GetPath() const;
    void SetPath(const QString& strPath);

protected:
    void dragEnterEvent(QDragEnterEvent* pEvent) override;
    void dragMoveEvent(QDragMoveEvent* pEvent) override;
    void dropEvent(QDropEvent* pEvent) override;
};

/// A field for an address of the web, which begins with "http://". Who pastes a whole address behind that
/// means the one pasted.
class CUrlField : public QLineEdit {
    Q_OBJECT
public:
    explicit CUrlField(QWidget* pParent);

protected:
    void focusInEvent(QFocusEvent* pEvent) override;

private:
    void TakeWhole(const QString& strText);
};
