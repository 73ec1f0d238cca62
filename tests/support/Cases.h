#pragma once

#include "tests/support/Testing.h"

/// One case out of a file of them: what it is, and its texts.
struct SCase {
    QString strWhat;
    QStringList Texts;
};

/// Reads a file of cases, its path as CMake names it: for texts that would drown in C++'s quotes: "== what it
/// is" begins a case, a line "--" parts its texts. Line breaks within a text are its own. What nobody could
/// see is written as in C++: \r, \t, \u200B and \\.
inline QList<SCase> ReadCases(const char* szFile) {
    static const QRegularExpression s_escape(u"\\\\(?:u([0-9A-F]{4})|(.))"_s);
    QList<SCase> cases;
    for (QString strRest = QString::fromUtf8(ReadTestFile(szFile)).chopped(1).prepend(u'\n');
         const QString& strCase : strRest.split(u"\n== "_s).mid(1)) {
        const qsizetype nEnd = strCase.indexOf(u'\n');
        SCase next{strCase.left(nEnd), strCase.mid(nEnd + 1).split(u"\n--\n"_s)};
        for (QString& strText : next.Texts) {
            for (auto match = s_escape.match(strText); match.hasMatch();
                 match = s_escape.match(strText, match.capturedStart() + 1)) {
                const QString strLetter = match.captured(2);
                const QChar c = strLetter == u"r"     ? QChar(u'\r')
                                : strLetter == u"t"   ? QChar(u'\t')
                                : strLetter.isEmpty() ? QChar(match.captured(1).toUShort(nullptr, 16))
                                                      : strLetter[0];
                strText.replace(match.capturedStart(), match.capturedLength(), c);
            }
        }
        cases.append(next);
    }
    return cases;
}
