#pragma once

#include "foundation/CodePage.h"

#include <QDirIterator>
#include <QFile>
#include <QMultiMap>
#include <QRegularExpression>
#include <QUrl>

#include <functional>

/// A link checker, on its own feet: it knows pages by their text alone, and letter case counts.

using Attributes = QMultiMap<QString, QString>;

/// Calls visit for each tag of a page, with its name and attributes in lower case.
inline void ForEachTag(const QString& strPage,
                       const std::function<void(const QString& strTag, const Attributes&)>& visit) {
    QFile file(strPage);
    if (!file.open(QIODevice::ReadOnly))
        return;
    const QByteArray bytes = file.readAll();
    QString strText = QString::fromUtf8(bytes);
    if (strText.contains(QChar::ReplacementCharacter))
        strText = CodePage::Decode(bytes);
    static const QRegularExpression tag(QStringLiteral("<([a-z][^\\s/>]*)((?:\"[^\"]*\"|'[^']*'|[^'\">])*)>"),
                                        QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression attribute(
        QStringLiteral("([^\\s=\"'/]+)\\s*=\\s*(?|\"([^\"]*)\"|'([^']*)'|([^\\s>]+))"));
    for (const auto& match : tag.globalMatch(strText)) {
        Attributes attributes;
        for (const auto& one : attribute.globalMatch(match.captured(2)))
            attributes.insert(one.captured(1).toLower(),
                              one.captured(2).replace(QStringLiteral("&amp;"), QStringLiteral("&")));
        visit(match.captured(1).toLower(), attributes);
    }
}

/// Whether a fragment names a place of the page or film, or a slide where the page is the viewer of a
/// presentation.
inline bool HasPlace(const QString& strPage, const QString& strFragment) {
    bool bFound = strFragment == QLatin1String("top") ||
                  (strPage.endsWith(QLatin1String(".mp4")) && strFragment.startsWith(QLatin1String("t="))) ||
                  (strPage.endsWith(QLatin1String("frame.htm")) &&
                   QFileInfo(QFileInfo(strPage).path() + u'/' + strFragment).isFile());
    ForEachTag(strPage, [&](const QString& strTag, const Attributes& attributes) {
        bFound = bFound || attributes.contains(QStringLiteral("id"), strFragment) ||
                 (strTag == QLatin1String("a") && attributes.contains(QStringLiteral("name"), strFragment));
    });
    return bFound;
}

/// Calls visit for every reference of every page below a folder: the page, and what it refers to.
inline void
ForEachReference(const QString& strFolder,
                 const std::function<void(const QString& strPage, const QString& strReference)>& visit) {
    QDirIterator walk(strFolder, {QStringLiteral("*.htm*")}, QDir::Files, QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        const QString strPage = walk.next();
        ForEachTag(strPage, [&](const QString&, const Attributes& attributes) {
            for (const char* szName : {"href", "src", "data", "background"}) {
                for (const QString& strReference : attributes.values(QString::fromLatin1(szName)))
                    visit(strPage, strReference);
            }
        });
    }
}

inline qsizetype CountLinks(const QString& strFolder) {
    qsizetype nCount = 0;
    ForEachReference(strFolder, [&](const QString&, const QString&) { ++nCount; });
    return nCount;
}

/// Every reference of every page below a folder that leads to no file there, or to no place in that file, as
/// "page: reference", one a line.
inline std::string DeadLinks(const QString& strFolder) {
    std::string dead;
    ForEachReference(strFolder, [&](const QString& strPage, const QString& strReference) {
        const QUrl target = QUrl::fromLocalFile(strPage).resolved(QUrl(strReference));
        if (target.scheme() != QLatin1String("file"))
            return;
        const QString strFile = target.toLocalFile(), strFragment = target.fragment(QUrl::FullyDecoded);
        if (!QFileInfo(strFile).isFile() || (!strFragment.isEmpty() && !HasPlace(strFile, strFragment)))
            dead += strPage.toStdString() + ": " + strReference.toStdString() + '\n';
    });
    return dead;
}
