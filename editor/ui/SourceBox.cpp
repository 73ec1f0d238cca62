#include "editor/ui/SourceBox.h"

#include "editor/SourceLines.h"

#include <QFontDatabase>
#include <QMimeData>
#include <QScopedValueRollback>
#include <QTextCursor>

#include <algorithm>
#include <utility>

namespace {

/// More characters than this the box can't show in bearable time.
constexpr int c_nMaxCharacters = 8'000'000;

/// Replaces what differs between the text at a place of a document and another one.
void ReplaceAt(QTextCursor& cursor, qsizetype nPlace, QStringView was, QStringView wanted) {
    const auto [itWas, itWanted] = std::mismatch(was.begin(), was.end(), wanted.begin(), wanted.end());
    qsizetype nSame = itWas - was.begin();
    // The halves of a character go together.
    if (nSame > 0 && was[nSame - 1].isHighSurrogate())
        --nSame;
    was = was.sliced(nSame);
    wanted = wanted.sliced(nSame);
    const auto [itWasEnd, itWantedEnd] =
        std::mismatch(was.rbegin(), was.rend(), wanted.rbegin(), wanted.rend());
    qsizetype nSameEnd = itWasEnd - was.rbegin();
    if (nSameEnd > 0 && was[was.size() - nSameEnd].isLowSurrogate())
        --nSameEnd;
    if (was.size() == nSameEnd && wanted.size() == nSameEnd)
        return;
    cursor.setPosition(static_cast<int>(nPlace + nSame));
    cursor.setPosition(static_cast<int>(nPlace + nSame + was.size() - nSameEnd), QTextCursor::KeepAnchor);
    cursor.insertText(wanted.chopped(nSameEnd).toString());
}

} // namespace

CSourceBox::CSourceBox(QWidget* pParent) : QPlainTextEdit(pParent), m_mark(SourceLines::MarkFor(QString())) {
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setFrameShape(QFrame::NoFrame);
    connect(this, &QPlainTextEdit::cursorPositionChanged, this, &CSourceBox::KeepOffFold);
    // Cut behind the change: in the middle of it the box must be left alone.
    connect(document(), &QTextDocument::contentsChange, this, [this](int nPosition, int, int nAdded) {
        if (!m_bOwnChange)
            QMetaObject::invokeMethod(
                this, [this, nPosition, nAdded] { CutAt(nPosition, nAdded); }, Qt::QueuedConnection);
    });
}

/// The caret goes over a fold in one step, and home and end stay on their side of it.
void CSourceBox::KeepOffFold() {
    QTextCursor cursor = textCursor();
    const int nAt = cursor.position();
    const int nFrom = std::exchange(m_nCaret, nAt);
    int nTo = nAt;
    if (m_mark.isNull())
        return;
    if (nAt > 0 && document()->characterAt(nAt - 1) == m_mark)
        nTo = nFrom == nAt - 1 ? nAt + 2 : nAt - 1;
    else if (document()->characterAt(nAt) == SourceLines::SecondMark(m_mark))
        nTo = nFrom == nAt + 1 ? nAt - 2 : nAt + 1;
    if (nTo == nAt || nTo < 0 || nTo >= document()->characterCount())
        return;
    m_nCaret = nTo;
    cursor.setPosition(nTo, cursor.hasSelection() ? QTextCursor::KeepAnchor : QTextCursor::MoveAnchor);
    setTextCursor(cursor);
}

bool CSourceBox::Fits(const QString& strText) {
    return strText.size() <= c_nMaxCharacters &&
           (!SourceLines::MarkFor(strText).isNull() || !SourceLines::HasLongLine(strText));
}

void CSourceBox::SetText(const QString& strText) {
    m_mark = SourceLines::MarkFor(strText);
    const QString strShown = SourceLines::WithReferences(strText);
    setPlainText(m_mark.isNull() ? strShown : SourceLines::Fold(strShown, m_mark));
}

void CSourceBox::ChangeText(const QString& strText) {
    if (m_mark.isNull() || !Fits(strText) || strText.contains(m_mark) ||
        strText.contains(SourceLines::SecondMark(m_mark)))
        return SetText(strText);
    const QString strWas = GetShown();
    const QString strWanted = SourceLines::Fold(SourceLines::WithReferences(strText), m_mark);
    const QList<QStringView> was = QStringView(strWas).split(u'\n');
    const QList<QStringView> wanted = QStringView(strWanted).split(u'\n');
    QTextCursor cursor(document());
    cursor.beginEditBlock();
    if (was.size() != wanted.size()) {
        ReplaceAt(cursor, 0, strWas, strWanted);
    } else {
        // From the end, where nothing moves the lines that are still to come.
        for (qsizetype n = was.size() - 1; n >= 0; --n)
            ReplaceAt(cursor, was[n].begin() - QStringView(strWas).begin(), was[n], wanted[n]);
    }
    // The change is told here.
    const QScopedValueRollback<bool> own(m_bOwnChange, true);
    cursor.endEditBlock();
}

/// With the folds.
QString CSourceBox::GetShown() const {
    // The box's plain text would turn hard blanks into ordinary ones.
    QString strText = document()->toRawText();
    strText.replace(QChar::ParagraphSeparator, u'\n').replace(QChar::LineSeparator, u'\n');
    return strText;
}

QString CSourceBox::GetText() const {
    return SourceLines::Unfold(GetShown(), m_mark);
}

QMimeData* CSourceBox::createMimeDataFromSelection() const {
    auto* pData = new QMimeData;
    QString strText = textCursor().selectedText();
    strText.replace(QChar::ParagraphSeparator, u'\n').replace(QChar::LineSeparator, u'\n');
    pData->setText(SourceLines::Unfold(strText, m_mark));
    return pData;
}

void CSourceBox::insertFromMimeData(const QMimeData* pSource) {
    if (!pSource->hasText() || m_mark.isNull())
        return QPlainTextEdit::insertFromMimeData(pSource);
    const QString strText = pSource->text().replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    // Marks of another text are nothing to see, and would be taken for this one's.
    textCursor().insertText(SourceLines::Fold(SourceLines::Unfold(strText, m_mark), m_mark));
    ensureCursorVisible();
}

/// What stood there before stays. The program's own text comes as a whole, also where only a part of it is
/// new.
void CSourceBox::CutAt(int nPosition, int nAdded) {
    const int nTotal = document()->characterCount() - 1;
    const int nCut = qMin(nTotal - c_nMaxCharacters, nAdded);
    if (nAdded >= nTotal || nCut <= 0 || nPosition + nAdded > nTotal)
        return;
    QTextCursor cursor(document());
    cursor.setPosition(nPosition + nAdded - nCut);
    cursor.setPosition(nPosition + nAdded, QTextCursor::KeepAnchor);
    cursor.removeSelectedText();
    Q_EMIT Full();
}
