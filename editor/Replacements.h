#pragma once

#include <QList>
#include <QString>

namespace ResourceText {

/// One change of a text: every occurrence of strFrom, telling case, becomes strTo.
struct Replacement {
    QString strFrom;
    QString strTo;
    /// Index of the planned resource that strTo names; -1 for a link.
    qsizetype nCopy = -1;
};

/// The changes one after the other, each over the whole text as the ones before have left it; but read once,
/// however many changes there are, as long as each strFrom holds a colon, as every absolute reference does.
QString ApplyReplacements(const QString& strText, const QList<Replacement>& replacements);

/// Of each change, whether the text holds its strFrom before any change is made; found in one reading
/// likewise.
QList<bool> FindOccurring(const QString& strText, const QList<Replacement>& replacements);

} // namespace ResourceText
