#include "companions/docexport/Package.h"

#include "companions/common/FileFault.h"
#include "companions/docexport/PrintedPage.h"
#include "companions/docexport/Texts.h"
#include "foundation/Exceptions.h"
#include "platform/base/FileCalls.h"

#include <QFile>

#include <archive.h>
#include <archive_entry.h>

using namespace Qt::StringLiterals;

namespace Package {
namespace {

constexpr size_t c_nBlock = size_t{64} * 1024;
constexpr int c_nMode = 0644;

[[noreturn]] void ThrowUnwritable(const QString& strPath, archive* pArchive) {
    const int nError = archive_errno(pArchive);
    throw Torvane::CRunException(DocText::c_strCannotWrite.arg(
        strPath,
        nError > 0 ? Platform::SystemErrorText(nError) : QString::fromUtf8(archive_error_string(pArchive))));
}

} // namespace

void ArchiveCloser::operator()(archive* p) const {
    archive_free(p);
}

CWriter::CWriter(const QString& strPath) : m_strPath(strPath), m_out(archive_write_new()) {
    archive_write_set_format_zip(m_out.get());
    archive_write_set_options(m_out.get(), "zip:compression=deflate");
    Check(archive_write_open_filename(m_out.get(), QFile::encodeName(strPath).constData()));
}

void CWriter::Add(const Part& part) {
    Begin(part.Name, part.Bytes.size());
    Take(part.Bytes);
}

void CWriter::AddFile(const QByteArray& name, const QString& strFile) {
    QFile file(strFile);
    if (!file.open(QIODevice::ReadOnly))
        throw Torvane::CRunException(DocText::c_strCannotRead.arg(strFile, FileFaultText(file)));
    Begin(name, file.size());
    while (!file.atEnd())
        Take(file.read(c_nBlock));
}

void CWriter::Close() {
    Check(archive_write_close(m_out.get()));
}

void CWriter::Begin(const QByteArray& name, qint64 nSize) {
    const std::unique_ptr<archive_entry, decltype(&archive_entry_free)> entry(archive_entry_new(),
                                                                              &archive_entry_free);
    archive_entry_set_pathname(entry.get(), name.constData());
    archive_entry_set_size(entry.get(), nSize);
    archive_entry_set_filetype(entry.get(), AE_IFREG);
    archive_entry_set_perm(entry.get(), c_nMode);
    Check(archive_write_header(m_out.get(), entry.get()));
}

void CWriter::Take(const QByteArray& bytes) {
    if (archive_write_data(m_out.get(), bytes.constData(), size_t(bytes.size())) != bytes.size())
        ThrowUnwritable(m_strPath, m_out.get());
}

void CWriter::Check(int nResult) {
    if (nResult < ARCHIVE_WARN)
        ThrowUnwritable(m_strPath, m_out.get());
}

CReader::CReader(const QString& strPath) : m_in(archive_read_new()) {
    archive_read_support_format_zip(m_in.get());
    m_bGood = archive_read_open_filename(m_in.get(), QFile::encodeName(strPath).constData(), c_nBlock) ==
              ARCHIVE_OK;
}

bool CReader::Next() {
    archive_entry* pEntry = nullptr;
    const int nResult = m_bGood ? archive_read_next_header(m_in.get(), &pEntry) : ARCHIVE_FATAL;
    m_bGood = nResult == ARCHIVE_OK || nResult == ARCHIVE_EOF;
    if (nResult == ARCHIVE_OK)
        m_name = archive_entry_pathname(pEntry);
    return nResult == ARCHIVE_OK;
}

QByteArray CReader::Block() {
    QByteArray block(qsizetype(c_nBlock), Qt::Uninitialized);
    const la_ssize_t nRead = archive_read_data(m_in.get(), block.data(), size_t(block.size()));
    m_bGood = m_bGood && nRead >= 0;
    block.resize(qMax<la_ssize_t>(nRead, 0));
    return block;
}

QByteArray CReader::Rest() {
    QByteArray bytes;
    for (QByteArray block = Block(); !block.isEmpty(); block = Block())
        bytes += block;
    return bytes;
}

void AppendFiltered(CReader& in, const QString& strPath, const Filter& filter) {
    QFile file(strPath);
    bool bWritten = file.open(QIODevice::Append);
    for (bool bLast = false; bWritten && !bLast;) {
        const QByteArray block = in.Block();
        bLast = block.isEmpty();
        const QByteArray bytes = filter(block);
        bWritten = file.write(bytes) == bytes.size();
    }
    if (!bWritten || !file.flush())
        throw Torvane::CRunException(DocText::c_strCannotWrite.arg(strPath, FileFaultText(file)));
}

void Write(const QString& strPath, const QList<Part>& parts) {
    CWriter writer(strPath);
    for (const Part& part : parts)
        writer.Add(part);
    writer.Close();
}

QByteArray Read(const QString& strPath, const QByteArray& name) {
    QByteArray bytes;
    const bool bWhole = ReadBlocks(strPath, name, [&](const QByteArray& block) { bytes += block; });
    return bWhole ? bytes : QByteArray();
}

bool ReadBlocks(const QString& strPath, const QByteArray& name,
                const std::function<void(const QByteArray&)>& take) {
    CReader in(strPath);
    bool bFound = false;
    while (in.Next()) {
        bFound = bFound || in.Name() == name;
        const bool bWanted = in.Name() == name;
        for (QByteArray block = in.Block(); !block.isEmpty(); block = in.Block()) {
            if (bWanted)
                take(block);
        }
    }
    return bFound && in.IsGood();
}

void Rewrite(const QString& strFrom, const QString& strTo, const Change& change) {
    CWriter writer(strTo);
    CReader in(strFrom);
    while (in.Next()) {
        if (in.Name() == change.LargePart) {
            const QString strFile = strTo + u".part"_s;
            QFile::remove(strFile);
            AppendFiltered(in, strFile, change.Large);
            writer.AddFile(in.Name(), strFile);
            QFile::remove(strFile);
            continue;
        }
        Part part{in.Name(), in.Rest()};
        change.Other(part);
        writer.Add(part);
    }
    if (!in.IsGood())
        throw Torvane::CRunException(DocText::c_strBrokenDocument);
    writer.Close();
}

QByteArray ReferencePart(const QString& strName) {
    QFile resource(u":/docexport/reference/"_s + strName);
    return resource.open(QIODevice::ReadOnly) ? resource.readAll() : QByteArray();
}

QList<Part> ReferenceDocument(const QString& strHeader, const QSet<QByteArray>& colors) {
    QByteArray styles;
    for (const QByteArray& color : colors)
        styles += "<w:style w:type=\"character\" w:customStyle=\"1\" w:styleId=\"Color" + color +
                  "\"><w:name w:val=\"Color " + color +
                  "\"/><w:basedOn w:val=\"DefaultParagraphFont\"/><w:rPr><w:color w:val=\"" + color +
                  "\"/></w:rPr></w:style>";
    styles += "</w:styles>";
    return {{"[Content_Types].xml", ReferencePart(u"content-types.xml"_s)},
            {"_rels/.rels", ReferencePart(u"rels.xml"_s)},
            {"word/_rels/document.xml.rels", ReferencePart(u"document.xml.rels"_s)},
            {"word/document.xml", ReferencePart(u"document.xml"_s)},
            {"word/styles.xml", ReferencePart(u"styles.xml"_s).replace("</w:styles>", styles)},
            {"word/settings.xml", ReferencePart(u"settings.xml"_s)},
            {"word/header1.xml", ReferencePart(u"header1.xml"_s).replace("@HEADER@", MarkupText(strHeader))},
            {"word/footer1.xml", ReferencePart(u"footer1.xml"_s)}};
}

} // namespace Package
