#include "companions/docexport/Package.h"

#include "companions/docexport/PrintedPage.h"
#include "companions/docexport/Texts.h"
#include "foundation/Exceptions.h"

#include <QFile>

#include <archive.h>
#include <archive_entry.h>

#include <cerrno>
#include <memory>

using namespace Qt::StringLiterals;

namespace Package {
namespace {

constexpr size_t c_nBlock = size_t{64} * 1024;
constexpr int c_nMode = 0644;

struct Closer {
    void operator()(archive* p) const { archive_free(p); }
    void operator()(archive_entry* p) const { archive_entry_free(p); }
};
using Archive = std::unique_ptr<archive, Closer>;
using Entry = std::unique_ptr<archive_entry, Closer>;

[[noreturn]] void ThrowUnwritable(const QString& strPath, archive* pArchive) {
    const int nError = archive_errno(pArchive);
    throw Torvane::CRunException(DocText::c_strCannotWrite.arg(
        strPath, nError == ENOSPC || nError == EDQUOT ? DocText::c_strDiskFull
                                                      : QString::fromUtf8(archive_error_string(pArchive))));
}

class CWriter {
public:
    explicit CWriter(const QString& strPath) : m_strPath(strPath), m_out(archive_write_new()) {
        archive_write_set_format_zip(m_out.get());
        archive_write_set_options(m_out.get(), "zip:compression=deflate");
        Check(archive_write_open_filename(m_out.get(), QFile::encodeName(strPath).constData()));
    }
    void Add(const Part& part) {
        const Entry entry(archive_entry_new());
        archive_entry_set_pathname(entry.get(), part.Name.constData());
        archive_entry_set_size(entry.get(), part.Bytes.size());
        archive_entry_set_filetype(entry.get(), AE_IFREG);
        archive_entry_set_perm(entry.get(), c_nMode);
        Check(archive_write_header(m_out.get(), entry.get()));
        if (archive_write_data(m_out.get(), part.Bytes.constData(), size_t(part.Bytes.size())) !=
            part.Bytes.size())
            ThrowUnwritable(m_strPath, m_out.get());
    }
    void Close() { Check(archive_write_close(m_out.get())); }

private:
    void Check(int nResult) {
        if (nResult < ARCHIVE_WARN)
            ThrowUnwritable(m_strPath, m_out.get());
    }

    QString m_strPath;
    Archive m_out;
};

/// Goes over the parts; false when the package can't be read to its end.
bool ForEachPart(const QString& strPath, const std::function<bool(const QByteArray&)>& isWanted,
                 const std::function<void(Part&)>& take) {
    const Archive in(archive_read_new());
    archive_read_support_format_zip(in.get());
    if (archive_read_open_filename(in.get(), QFile::encodeName(strPath).constData(), c_nBlock) != ARCHIVE_OK)
        return false;
    archive_entry* pEntry = nullptr;
    int nResult = ARCHIVE_OK;
    while ((nResult = archive_read_next_header(in.get(), &pEntry)) == ARCHIVE_OK) {
        Part part{archive_entry_pathname(pEntry), {}};
        if (!isWanted(part.Name))
            continue;
        QByteArray block(qsizetype(c_nBlock), Qt::Uninitialized);
        la_ssize_t nRead = 0;
        while ((nRead = archive_read_data(in.get(), block.data(), size_t(block.size()))) > 0)
            part.Bytes.append(block.constData(), nRead);
        if (nRead < 0)
            return false;
        take(part);
    }
    return nResult == ARCHIVE_EOF;
}

} // namespace

void Write(const QString& strPath, const QList<Part>& parts) {
    CWriter writer(strPath);
    for (const Part& part : parts)
        writer.Add(part);
    writer.Close();
}

QByteArray Read(const QString& strPath, const QByteArray& name) {
    QByteArray bytes;
    const bool bWhole = ForEachPart(
        strPath, [&](const QByteArray& part) { return part == name; },
        [&](Part& part) { bytes = part.Bytes; });
    return bWhole ? bytes : QByteArray();
}

void Rewrite(const QString& strFrom, const QString& strTo, const std::function<void(Part&)>& change) {
    CWriter writer(strTo);
    const bool bWhole = ForEachPart(
        strFrom, [](const QByteArray&) { return true; },
        [&](Part& part) {
            change(part);
            writer.Add(part);
        });
    if (!bWhole)
        throw Torvane::CRunException(DocText::c_strBrokenDocument);
    writer.Close();
}

QList<Part> ReferenceDocument(const QString& strHeader) {
    const auto file = [](const QString& strName) {
        QFile resource(u":/docexport/reference/"_s + strName);
        return resource.open(QIODevice::ReadOnly) ? resource.readAll() : QByteArray();
    };
    return {{"[Content_Types].xml", file(u"content-types.xml"_s)},
            {"_rels/.rels", file(u"rels.xml"_s)},
            {"word/_rels/document.xml.rels", file(u"document.xml.rels"_s)},
            {"word/document.xml", file(u"document.xml"_s)},
            {"word/styles.xml", file(u"styles.xml"_s)},
            {"word/settings.xml", file(u"settings.xml"_s)},
            {"word/header1.xml", file(u"header1.xml"_s).replace("@HEADER@", MarkupText(strHeader))},
            {"word/footer1.xml", file(u"footer1.xml"_s)}};
}

} // namespace Package
