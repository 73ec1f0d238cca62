#pragma once

#include <QFile>
#include <QStringList>

/// The lines of the table written by hand that begin with the word, split into fields and without the word.
/// VOREL_COMMANDS names the file; what can't be read ends the test.
inline QList<QStringList> WrittenCommands(const QString& strWord) {
    QFile file(QStringLiteral(VOREL_COMMANDS));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("the written table is not there");
    QList<QStringList> lines;
    for (const QString& strLine :
         QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        const QStringList fields = strLine.split(QLatin1Char('\t'));
        if (fields.first() == strWord)
            lines.append(fields.mid(1));
    }
    return lines;
}
