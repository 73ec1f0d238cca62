#include "editor/SourceLines.h"

#include <algorithm>
#include <array>

namespace SourceLines {

QChar SecondMark(QChar mark) {
    return QChar(static_cast<char16_t>(mark.unicode() + 1));
}

namespace {

constexpr qsizetype c_nLongLine = 8000;
constexpr qsizetype c_nPiece = 2000;
/// Characters that are drawn nowhere, each with the one behind it.
constexpr std::array<char16_t, 2> c_marks = {0x2063, 0x2061};
constexpr std::array<char16_t, 5> c_strange = {u'\r', 0x2028, 0x2029, 0xFDD0, 0xFDD1};

/// Where the piece of a line ends that begins at nStart and could go to nLimit.
qsizetype EndOfPiece(const QString& strText, qsizetype nStart, qsizetype nLimit) {
    for (qsizetype n = nLimit; n > nStart + (nLimit - nStart) / 2; --n) {
        if (strText.at(n - 1) == u'>' || strText.at(n - 1) == u' ')
            return n;
    }
    return strText.at(nLimit - 1).isHighSurrogate() ? nLimit - 1 : nLimit;
}

/// Takes the break of a fold away, if a person has left it. nFirst is where the first mark stood; below zero
/// if she has taken that away.
void DropBreak(QString& strText, qsizetype nFirst) {
    const qsizetype nBreak = nFirst < 0 ? strText.size() - 1 : strText.lastIndexOf(u'\n');
    if (nBreak >= qMax<qsizetype>(nFirst, 0) && strText.at(nBreak) == u'\n')
        strText.remove(nBreak, 1);
}

} // namespace

QChar MarkFor(const QString& strText) {
    const auto* const it = std::find_if(c_marks.begin(), c_marks.end(), [&](char16_t c) {
        return !strText.contains(QChar(c)) && !strText.contains(SecondMark(QChar(c)));
    });
    return it == c_marks.end() ? QChar() : QChar(*it);
}

bool HasLongLine(const QString& strText) {
    for (qsizetype nStart = 0; strText.size() - nStart > c_nLongLine;) {
        const qsizetype nEnd = strText.lastIndexOf(u'\n', nStart + c_nLongLine);
        if (nEnd < nStart)
            return true;
        nStart = nEnd + 1;
    }
    return false;
}

QString Fold(const QString& strText, QChar mark) {
    QString strFolded;
    strFolded.reserve(strText.size() + strText.size() / (c_nPiece / 4));
    for (qsizetype nStart = 0; nStart < strText.size();) {
        const qsizetype nBreak = strText.indexOf(u'\n', nStart);
        const qsizetype nEnd = nBreak < 0 ? strText.size() : nBreak + 1;
        if (nEnd - nStart > c_nLongLine) {
            while (nEnd - nStart > c_nPiece) {
                const qsizetype nPieceEnd = EndOfPiece(strText, nStart, nStart + c_nPiece);
                strFolded.append(QStringView(strText).sliced(nStart, nPieceEnd - nStart));
                strFolded.append(mark).append(u'\n').append(SecondMark(mark));
                nStart = nPieceEnd;
            }
        }
        strFolded.append(QStringView(strText).sliced(nStart, nEnd - nStart));
        nStart = nEnd;
    }
    return strFolded;
}

QString Unfold(const QString& strText, QChar mark) {
    if (mark.isNull() || !(strText.contains(mark) || strText.contains(SecondMark(mark))))
        return strText;
    QString strUnfolded;
    strUnfolded.reserve(strText.size());
    qsizetype nFirst = -1;
    const auto endWithoutSecond = [&] {
        if (nFirst >= 0 && nFirst < strUnfolded.size() && strUnfolded.at(nFirst) == u'\n')
            strUnfolded.remove(nFirst, 1);
    };
    for (const QChar c : strText) {
        if (c == mark) {
            endWithoutSecond();
            nFirst = strUnfolded.size();
        } else if (c == SecondMark(mark)) {
            DropBreak(strUnfolded, nFirst);
            nFirst = -1;
        } else {
            strUnfolded.append(c);
        }
    }
    endWithoutSecond();
    return strUnfolded;
}

QString WithReferences(QString strText) {
    for (const char16_t c : c_strange) {
        if (strText.contains(QChar(c)))
            strText.replace(QChar(c), QStringLiteral("&#%1;").arg(static_cast<uint>(c)));
    }
    return strText;
}

} // namespace SourceLines
