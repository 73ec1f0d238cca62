#pragma once

#include <QPlainTextEdit>

/// The box for a page's source. The text comes out as it went in and was typed, hard blanks included; only
/// within the box are long lines folded (SourceLines.h).
class CSourceBox : public QPlainTextEdit {
    Q_OBJECT
public:
    explicit CSourceBox(QWidget* pParent = nullptr);

    /// Whether the box has room for the text.
    static bool Fits(const QString& strText);
    /// For a text that fits.
    void SetText(const QString& strText);
    /// The same, but as one step that can be undone, in which what is the same stays: the caret keeps its
    /// place, and the box what it shows.
    void ChangeText(const QString& strText);
    QString GetText() const;

Q_SIGNALS:
    /// What was typed or pasted was more than the box has room for, and went no further than that.
    void Full();

protected:
    QMimeData* createMimeDataFromSelection() const override;
    void insertFromMimeData(const QMimeData* pSource) override;

private:
    QString GetShown() const;
    void CutAt(int nPosition, int nAdded);
    void KeepOffFold();

    QChar m_mark;
    /// What the program writes is not cut.
    bool m_bOwnChange = false;
    /// Where the caret stood last.
    int m_nCaret = 0;
};
