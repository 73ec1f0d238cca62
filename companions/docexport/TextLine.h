#pragma once

#include <QByteArray>
#include <QString>

#include <gumbo.h>

#include <utility>

/// What a stretch of text looks like, of all that a printed text keeps.
struct RunStyle {
    bool Bold = false;
    bool Italic = false;
    bool Underlined = false;
    bool Struck = false;
    bool Lowered = false;
    bool Raised = false;
    bool Code = false;
    /// As "RRGGBB"; empty for the document's own.
    QByteArray Color;
    QString Link;

    bool operator==(const RunStyle&) const = default;

    /// Adds what an element says by its name and its own style.
    void Take(const GumboElement& element, const QByteArray& name);

private:
    void TakeColor(const QString& strColor);
};

/// A property of an element's own style, in lower case; empty for none.
QString StyleValue(const GumboElement& element, const QString& strProperty);
/// "left", "center", "right", "justify", or empty.
QByteArray AlignmentOf(const GumboElement& element);
/// A comment, or text of blanks alone.
bool IsBlank(const GumboNode* pNode);
/// All text below the node, breaks as line ends.
QString TextBelow(const GumboNode* pNode);

/// Text and pictures on their way into a paragraph. Marks are closed and opened between runs, so that they
/// are well nested however the page had them.
class CTextLine {
public:
    /// Blanks are drawn together as browsers do it; a line end between two Chinese characters is none.
    void AddText(const QString& strText, const RunStyle& style);
    void AddPicture(const QByteArray& markup, const RunStyle& style);
    /// Without the looks of the text around it.
    void AddFormula(const QByteArray& markup);
    bool HasPicture() const { return m_bPicture; }
    /// Something without looks. Within code it would be lost.
    void AddMarkup(const QByteArray& markup);

    /// The line's markup, which begins anew. Empty for one that would only be a blank line; a mark without
    /// looks then waits for the next.
    QByteArray Take();
    /// The marks that still wait for a line.
    QByteArray TakeMarks() { return std::exchange(m_marks, QByteArray()); }

private:
    void Begin(const RunStyle& style);
    void AddObject(const QByteArray& markup, const RunStyle& style);

    QByteArray m_markup;
    /// What has no looks of it.
    QByteArray m_marks;
    QByteArray m_open;
    RunStyle m_style;
    bool m_bAny = false;
    bool m_bPicture = false;
    bool m_bBlank = false;
    bool m_bLineEnd = false;
    QChar m_last;
};
