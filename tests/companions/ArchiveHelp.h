#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <archive.h>
#include <archive_entry.h>

/// One entry of an archive that a test packs.
struct PackedEntry {
    QString strName;
    QByteArray Content = "x";
    unsigned nType = AE_IFREG;
    QString strLink = {};
};

struct Packing {
    bool bTar = false;
    const char* szCharset = "UTF-8";
    bool bEncrypted = false;
};

/// An archive in memory.
inline QByteArray Pack(const QList<PackedEntry>& entries, const Packing& packing = {}) {
    QByteArray bytes(1024 * 1024, '\0');
    size_t nUsed = 0;
    archive* pArchive = archive_write_new();
    packing.bTar ? archive_write_set_format_pax_restricted(pArchive) : archive_write_set_format_zip(pArchive);
    const QByteArray charset = QByteArray("hdrcharset=") + packing.szCharset;
    archive_write_set_options(pArchive, charset.constData());
    if (packing.bEncrypted) {
        archive_write_set_options(pArchive, "zip:encryption=traditional");
        archive_write_set_passphrase(pArchive, "p");
    }
    archive_write_open_memory(pArchive, bytes.data(), size_t(bytes.size()), &nUsed);
    for (const PackedEntry& packed : entries) {
        archive_entry* pEntry = archive_entry_new();
        archive_entry_set_pathname_utf8(pEntry, packed.strName.toUtf8().constData());
        archive_entry_set_filetype(pEntry, packed.nType);
        archive_entry_set_perm(pEntry, 0777);
        if (packed.nType == AE_IFLNK)
            archive_entry_set_symlink_utf8(pEntry, packed.strLink.toUtf8().constData());
        else if (!packed.strLink.isEmpty())
            archive_entry_set_hardlink_utf8(pEntry, packed.strLink.toUtf8().constData());
        const bool bHasContent = packed.nType == AE_IFREG && packed.strLink.isEmpty();
        archive_entry_set_size(pEntry, bHasContent ? packed.Content.size() : 0);
        if (archive_write_header(pArchive, pEntry) != ARCHIVE_OK)
            qFatal("%s", archive_error_string(pArchive));
        if (bHasContent)
            archive_write_data(pArchive, packed.Content.constData(), size_t(packed.Content.size()));
        archive_entry_free(pEntry);
    }
    archive_write_close(pArchive);
    archive_write_free(pArchive);
    return bytes.first(qsizetype(nUsed));
}
