#include "platform/ui/FileFilter.h"

#include "platform/ui/Texts.h"

namespace FileFilter {

namespace {

QString Patterns(const QString& strText) {
    QStringList patterns;
    for (const QString& strPattern : strText.split(u';', Qt::SkipEmptyParts)) {
        const QString strTrimmed = strPattern.trimmed();
        if (!strTrimmed.isEmpty())
            patterns.append(strTrimmed == QLatin1String("*.*") ? QStringLiteral("*") : strTrimmed);
    }
    return patterns.join(u' ');
}

} // namespace

QStringList ToNameFilters(const QString& strNotation) {
    QStringList filters;
    const QStringList pieces = strNotation.split(u'|');
    for (qsizetype i = 0; i + 1 < pieces.size(); i += 2) {
        const QString strPatterns = Patterns(pieces[i + 1]);
        if (!strPatterns.isEmpty())
            filters.append(pieces[i].trimmed() + QStringLiteral(" (") + strPatterns + u')');
    }
    if (filters.isEmpty())
        filters.append(UiTexts::c_strAllFiles + QStringLiteral(" (*)"));
    return filters;
}

} // namespace FileFilter
