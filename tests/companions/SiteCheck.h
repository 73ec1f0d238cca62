#pragma once

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QUrl>

/// The values of a page's attributes of these names ("href|src").
inline QStringList AttributeValues(const QString& strPage, const QString& strNames) {
    QFile file(strPage);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QRegularExpression attribute(QStringLiteral("\\s(?:%1)\\s*=\\s*[\"']?([^\"'\\s>]*)").arg(strNames),
                                       QRegularExpression::CaseInsensitiveOption);
    QStringList values;
    for (const auto& match : attribute.globalMatch(QString::fromUtf8(file.readAll())))
        values.append(match.captured(1).replace(QStringLiteral("&amp;"), QStringLiteral("&")));
    return values;
}

/// Every reference of every page below a folder that leads to no file there, as "page: reference", one a
/// line. Letter case counts. Fragments are looked up in the page that they name.
inline std::string DeadLinks(const QString& strFolder) {
    std::string dead;
    QDirIterator walk(strFolder, {QStringLiteral("*.htm*")}, QDir::Files, QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        const QString strPage = walk.next();
        for (const QString& strReference : AttributeValues(strPage, QStringLiteral("href|src"))) {
            const QUrl target = QUrl::fromLocalFile(strPage).resolved(QUrl(strReference));
            if (target.scheme() != QLatin1String("file"))
                continue;
            const QString strFile = target.toLocalFile(), strFragment = target.fragment(QUrl::FullyDecoded);
            if (!QFileInfo(strFile).isFile() ||
                (!strFragment.isEmpty() &&
                 !AttributeValues(strFile, QStringLiteral("id|name")).contains(strFragment)))
                dead += strPage.toStdString() + ": " + strReference.toStdString() + '\n';
        }
    }
    return dead;
}
