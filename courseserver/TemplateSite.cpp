#include "courseserver/TemplateSite.h"

#include "foundation/CodePage.h"
#include "foundation/Text.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QTemporaryFile>

#include <archive.h>
#include <archive_entry.h>

namespace {

constexpr qint64 c_nCopyBlock = qint64{64} * 1024;

HttpReply NotFound() {
    HttpReply reply;
    reply.nStatus = 404;
    return reply;
}

/// The raw value of a query's parameter. The last one stands as it is, separators included.
QByteArray Value(const QByteArray& query, const QByteArray& name, bool bLast) {
    const QByteArray key = '&' + name + '=';
    const QByteArray text = '&' + query;
    const qsizetype nAt = text.indexOf(key);
    if (nAt < 0)
        return {};
    const QByteArray rest = text.sliced(nAt + key.size());
    const qsizetype nEnd = bLast ? -1 : rest.indexOf('&');
    return nEnd < 0 ? rest : rest.first(nEnd);
}

struct ArchiveCloser {
    void operator()(archive* p) const { archive_write_free(p); }
};
struct EntryCloser {
    void operator()(archive_entry* p) const { archive_entry_free(p); }
};

bool AddFile(archive* pArchive, const QString& strFile, const QString& strName) {
    QFile file(strFile);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const std::unique_ptr<archive_entry, EntryCloser> entry(archive_entry_new());
    archive_entry_set_pathname_utf8(entry.get(), strName.toUtf8().constData());
    archive_entry_set_filetype(entry.get(), AE_IFREG);
    archive_entry_set_perm(entry.get(), 0644);
    archive_entry_set_size(entry.get(), file.size());
    archive_entry_set_mtime(entry.get(), QFileInfo(file).lastModified().toSecsSinceEpoch(), 0);
    if (archive_write_header(pArchive, entry.get()) != ARCHIVE_OK)
        return false;
    for (QByteArray block = file.read(c_nCopyBlock); !block.isEmpty(); block = file.read(c_nCopyBlock)) {
        if (archive_write_data(pArchive, block.constData(), static_cast<size_t>(block.size())) !=
            block.size())
            return false;
    }
    return true;
}

} // namespace

std::shared_ptr<QFile> PackFolder(const QString& strFolder) {
    auto pFile = std::make_shared<QTemporaryFile>(QDir::tempPath() + QStringLiteral("/course-server-XXXXXX"));
    if (!pFile->open())
        return nullptr;
    const std::unique_ptr<archive, ArchiveCloser> packed(archive_write_new());
    archive_write_set_format_zip(packed.get());
    archive_write_set_options(packed.get(), "zip:hdrcharset=UTF-8");
    if (archive_write_open_fd(packed.get(), pFile->handle()) != ARCHIVE_OK)
        return nullptr;
    const QDir root(strFolder);
    QDirIterator files(strFolder, QDir::Files | QDir::NoSymLinks, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString strFile = files.next();
        if (!AddFile(packed.get(), strFile, root.relativeFilePath(strFile)))
            return nullptr;
    }
    if (archive_write_close(packed.get()) != ARCHIVE_OK || !pFile->seek(0))
        return nullptr;
    return pFile;
}

QString CTemplateSite::TypeFolder(const QString& strType) const {
    if (m_strFolder.isEmpty() || strType.isEmpty() || strType.startsWith(QLatin1Char('.')) ||
        strType.contains(QLatin1Char('/')) || strType.contains(QChar(0)))
        return {};
    const QString strFolder = m_strFolder + QLatin1Char('/') + strType;
    if (QFileInfo(strFolder).isDir())
        return strFolder;
    return strType == QLatin1String("ReportTemplates") ? m_strFolder : QString();
}

QStringList CTemplateSite::ListTemplates(const QString& strType) const {
    const QString strFolder = TypeFolder(strType);
    if (strFolder.isEmpty())
        return {};
    QStringList names = QDir(strFolder).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    // The list has no escape for its separator.
    names.removeIf([](const QString& strName) { return strName.contains(QLatin1Char(',')); });
    return names;
}

HttpReply CTemplateSite::List(const QByteArray& query) const {
    HttpReply reply;
    const QString strType = CodePage::Decode(Value(query, "Type", true));
    reply.Body = CodePage::Encode(ListTemplates(strType).join(QLatin1Char(',')));
    return reply;
}

HttpReply CTemplateSite::Download(const QByteArray& query) const {
    const QString strType = CodePage::Decode(Value(query, "Type", false));
    const QString strName = CodePage::Decode(Value(query, "Name", true));
    if (!ListTemplates(strType).contains(strName))
        return NotFound();
    HttpReply reply;
    reply.strContentType = "application/zip";
    reply.pFile = PackFolder(TypeFolder(strType) + QLatin1Char('/') + strName);
    if (!reply.pFile)
        reply.nStatus = 500;
    return reply;
}

std::optional<HttpReply> CTemplateSite::Preview(const QString& strPath) const {
    // "/<type>/<name>/Preview.jpg"
    const QStringList pieces = strPath.split(QLatin1Char('/'));
    if (pieces.size() != 4 || !EqualsIgnoringCase(pieces[3], u"Preview.jpg"))
        return std::nullopt;
    if (!ListTemplates(pieces[1]).contains(pieces[2]))
        return NotFound();
    auto pFile = std::make_shared<QFile>(TypeFolder(pieces[1]) + QLatin1Char('/') + pieces[2] +
                                         QStringLiteral("/Preview.jpg"));
    if (!pFile->open(QIODevice::ReadOnly))
        return NotFound();
    HttpReply reply;
    reply.strContentType = "image/jpeg";
    reply.pFile = std::move(pFile);
    return reply;
}

std::optional<HttpReply> CTemplateSite::Answer(const HttpRequest& request) const {
    const QString strPath = CodePage::Decode(request.Path());
    if (EqualsIgnoringCase(strPath, u"/Down/TemplateList.asp"))
        return List(request.Query());
    if (EqualsIgnoringCase(strPath, u"/Down/DownTemplate.asp"))
        return Download(request.Query());
    return Preview(strPath);
}
