#include "platform/ui/FileFilter.h"

#include "platform/ui/Texts.h"

#include <QRegularExpression>

namespace FileFilter {

namespace {

QString Label(const QString& strText) {
    static const QRegularExpression s_patterns(QStringLiteral("\\s*\\([^()]*\\*[^()]*\\)\\s*$"));
    return QString(strText).remove(s_patterns).trimmed();
}

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
            filters.append(Label(pieces[i]) + QStringLiteral(" (") + strPatterns + u')');
    }
    if (filters.isEmpty())
        filters.append(Label(UiTexts::c_strAllFiles) + QStringLiteral(" (*)"));
    return filters;
}

} // namespace FileFilter
