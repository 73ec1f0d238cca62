#include "editor/KeptPages.h"

#include "content/TreeRules.h"
#include "editor/Texts.h"
#include "foundation/Ciphers.h"
#include "foundation/Exceptions.h"
#include "foundation/Files.h"
#include "foundation/FolderWalk.h"
#include "foundation/Paths.h"
#include "foundation/TextFile.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QUrl>
#include <QUuid>

#include <algorithm>
#include <exception>

using namespace Qt::StringLiterals;
using namespace Torvane::File;

namespace KeptPages {

namespace {

const QByteArray c_head = "<!DOCTYPE html><meta charset=utf-8><!-- vorel-unsaved ";
const QByteArray c_headEnd = " -->\n";
/// A course comes from anybody: no more is read at a time, in files and in bytes.
constexpr qsizetype c_nMaxFiles = 100;
constexpr quint64 c_nMaxBytes = 200 * 1024 * 1024;
const QString c_strPicturesEnding = u".files"_s;
/// No editing lasts for so long.
constexpr qint64 c_nOrphanMilliseconds = qint64{48} * 60 * 60 * 1000;
/// A title becomes a file's name, and stands in a box.
constexpr qsizetype c_nMaxTitle = 60;

QString PrefixOf(qint32 nNode) {
    return u"N%1-"_s.arg(nNode);
}

QString FolderOf(const CCoursePaths& paths) {
    return paths.GetDataFolder(true) + u"Unsaved\\"_s;
}

QByteArray HeadOf(const KeptPage& page) {
    const QJsonObject about{{u"node"_s, page.nNode},
                            {u"title"_s, page.strTitle},
                            {u"time"_s, page.Time.toUTC().toString(Qt::ISODate)},
                            {u"page"_s, QString::fromLatin1(page.PageHash)},
                            {u"source"_s, page.bInSource}};
    return c_head + QJsonDocument(about).toJson(QJsonDocument::Compact) + c_headEnd;
}

std::optional<KeptPage> ReadOne(const QString& strPath) {
    QByteArray bytes;
    try {
        bytes = ReadFileBytes(strPath);
    } catch (const Torvane::CRunException&) {
        return std::nullopt;
    }
    const qsizetype nEnd = bytes.indexOf(c_headEnd);
    if (!bytes.startsWith(c_head) || nEnd < 0)
        return std::nullopt;
    const QJsonObject about =
        QJsonDocument::fromJson(bytes.sliced(c_head.size(), nEnd - c_head.size())).object();
    KeptPage page;
    page.strPath = strPath;
    page.nNode = about[u"node"].toInt(-1);
    page.strTitle = about[u"title"].toString().left(c_nMaxTitle);
    page.Time = QDateTime::fromString(about[u"time"].toString(), Qt::ISODate).toLocalTime();
    page.PageHash = about[u"page"].toString().toLatin1();
    page.bInSource = about[u"source"].toBool();
    page.strHtml = QString::fromUtf8(QByteArrayView(bytes).sliced(nEnd + c_headEnd.size()));
    if (page.nNode < 0 || !page.Time.isValid())
        return std::nullopt;
    return page;
}

/// The text with the references into one folder led into another one beside it.
QString WithPicturesIn(const QString& strHtml, const QString& strFolder, const QString& strOther) {
    const QRegularExpression reference(u"file:[^\"'<>]*/"_s + QRegularExpression::escape(strFolder) + u'/');
    const QString strNew = QString::fromLatin1(QUrl::toPercentEncoding(strOther)) + u'/';
    return QString(strHtml).replace(reference, strNew);
}

class CCollector : public IFileVisitor {
public:
    explicit CCollector(const QString& strPrefix) : m_strPrefix(strPrefix) {}

    void Visit(const QString& strPath, const FindRecord& record) override {
        if (Paths.size() == c_nMaxFiles || !record.strName.startsWith(m_strPrefix) || !IsHtmlFile(strPath) ||
            record.nSize > c_nMaxBytes - m_nBytes)
            return;
        m_nBytes += record.nSize;
        Paths.append(strPath);
    }
    QStringList Paths;

private:
    QString m_strPrefix;
    quint64 m_nBytes = 0;
};

} // namespace

QString NewPath(const CCoursePaths& paths, qint32 nNode) {
    return FolderOf(paths) + PrefixOf(nNode) + QUuid::createUuid().toString(QUuid::Id128).left(8) + u".htm"_s;
}

QString PicturesFolder(const QString& strPath) {
    return AddBackslash(AddBackslash(ParentFolder(strPath)) + FileTitle(strPath) + c_strPicturesEnding);
}

bool IsInPictures(const QString& strPath) {
    static const QRegularExpression folder(u"\\\\Unsaved\\\\N\\d+-[0-9a-f]+\\.files\\\\"_s,
                                           QRegularExpression::CaseInsensitiveOption);
    return strPath.contains(folder);
}

bool HasPictures(const QString& strPath) {
    return IsFolder(WithoutBackslash(PicturesFolder(strPath)));
}

bool RefersToPictures(const QString& strText, const QString& strPath) {
    return strText.contains(BareName(WithoutBackslash(PicturesFolder(strPath))));
}

void RemovePictures(const QString& strPath, const QString& strSavedText) {
    if (HasPictures(strPath) && !RefersToPictures(strSavedText, strPath))
        TryDeleteFolder(WithoutBackslash(PicturesFolder(strPath)));
}

void RemoveOrphans(const CCoursePaths& paths) {
    static const QRegularExpression name(u"^N(\\d+)-[0-9a-f]+\\.files$"_s);
    QList<FolderEntry> entries;
    ListFolder(FolderOf(paths), entries);
    for (const FolderEntry& entry : entries) {
        constexpr qint64 c_nNanosecondsEach = 1'000'000;
        const auto match = name.match(entry.strName);
        const qint64 nAge = QDateTime::currentMSecsSinceEpoch() - entry.nBorn / c_nNanosecondsEach;
        const QString strText = FolderOf(paths) + FileTitle(entry.strName) + u".htm"_s;
        if (!entry.bFolder || !match.hasMatch() || nAge < c_nOrphanMilliseconds || IsFile(strText))
            continue;
        const qint32 nNode = match.captured(1).toInt();
        RemovePictures(strText, ReadTextFile(paths.GetNodeFolder(nNode) + u"Content.htm"_s));
    }
}

void Write(const KeptPage& page) {
    TryMakeFolder(WithoutBackslash(ParentFolder(page.strPath)));
    ReplaceFile(page.strPath, HeadOf(page) + page.strHtml.toUtf8());
}

QList<KeptPage> Read(const CCoursePaths& paths, std::optional<qint32> onlyNode) {
    CCollector files(onlyNode ? PrefixOf(*onlyNode) : u"N"_s);
    WalkFolder(FolderOf(paths), &files, nullptr, nullptr, false, nullptr, true);
    QList<KeptPage> pages;
    for (const QString& strPath : files.Paths) {
        const auto page = ReadOne(strPath);
        if (page && page->nNode == onlyNode.value_or(page->nNode))
            pages.append(*page);
    }
    std::stable_sort(pages.begin(), pages.end(),
                     [](const KeptPage& a, const KeptPage& b) { return a.Time > b.Time; });
    return pages;
}

void Remove(const QString& strPath) {
    try {
        DeleteOneFile(strPath, true);
    } catch (const Torvane::CRunException&) {
        return;
    } catch (const std::exception&) {
        return;
    }
}

QByteArray HashOfPage(const QString& strPagePath) {
    try {
        return Md5Hex(ReadFileBytes(strPagePath));
    } catch (const Torvane::CRunException&) {
        return {};
    }
}

QString PutBeside(const KeptPage& page, const CCoursePaths& paths) {
    const QString strFolder = paths.GetCourseFolder(true) + EditorTexts::c_strRescueFolder;
    TryMakeFolder(strFolder);
    const QString strName = MakeUniqueName(FolderNameOf(page.strTitle) + u".htm"_s, strFolder);
    const QString strPath = AddBackslash(strFolder) + strName;
    QString strHtml = page.strHtml;
    const QString strPictures = WithoutBackslash(PicturesFolder(page.strPath));
    if (!page.strPath.isEmpty() && IsFolder(strPictures)) {
        const QString strOwn = FileTitle(strName) + c_strPicturesEnding;
        ForceCopyFolder(strPictures, AddBackslash(strFolder) + strOwn, false);
        strHtml = WithPicturesIn(strHtml, BareName(strPictures), strOwn);
    }
    ReplaceFile(strPath, "<!DOCTYPE html><meta charset=utf-8>\n" + strHtml.toUtf8());
    return strPath;
}

} // namespace KeptPages
