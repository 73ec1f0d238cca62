#include "companions/fetch/Unpack.h"

#include "companions/fetch/EntryNames.h"
#include "companions/fetch/FileFaults.h"

#include <QDir>
#include <QFile>
#include <QLocale>

#include <archive.h>
#include <archive_entry.h>

#include <array>
#include <cerrno>
#include <clocale>
#include <memory>

using Torvane::CRunException;

namespace {

constexpr size_t c_nBlock = size_t{64} * 1024;

struct ReadCloser {
    void operator()(archive* p) const { archive_read_free(p); }
};
struct WriteCloser {
    void operator()(archive* p) const { archive_write_free(p); }
};
struct EntryCloser {
    void operator()(archive_entry* p) const { archive_entry_free(p); }
};

class CWorkingFolder {
public:
    explicit CWorkingFolder(const QString& strFolder) : m_strBefore(QDir::currentPath()) {
        if (!QDir::setCurrent(strFolder))
            ThrowFileFault(strFolder, ENOENT);
    }
    ~CWorkingFolder() { QDir::setCurrent(m_strBefore); }
    Q_DISABLE_COPY_MOVE(CWorkingFolder)

private:
    QString m_strBefore;
};

/// The archive library converts names through the thread's locale, whatever the person's is.
class CUtf8Locale {
public:
    CUtf8Locale()
        : m_locale(::newlocale(LC_CTYPE_MASK, "C.UTF-8", locale_t{})), m_before(::uselocale(m_locale)) {}
    ~CUtf8Locale() {
        ::uselocale(m_before);
        if (m_locale != locale_t{})
            ::freelocale(m_locale);
    }
    Q_DISABLE_COPY_MOVE(CUtf8Locale)

private:
    locale_t m_locale;
    locale_t m_before;
};

class CUnpacking {
public:
    CUnpacking(const QString& strTargetFolder, FetchProgress& progress, const UnpackLimits& limits)
        : m_strTargetFolder(strTargetFolder), m_names(strTargetFolder), m_progress(progress),
          m_limits(limits) {}

    void Run(const QString& strArchive) {
        OpenArchive(strArchive);
        for (int nEntries = 0;; ++nEntries) {
            archive_entry* pEntry = nullptr;
            const int nResult = archive_read_next_header(m_in.get(), &pEntry);
            if (nResult == ARCHIVE_EOF)
                break;
            if (nResult < ARCHIVE_WARN)
                ThrowReadFault(nEntries == 0);
            if (m_progress.bCancelled)
                throw CFetchCancelled();
            if (nEntries == m_limits.nMaxEntries)
                ThrowTooMany();
            TakeEntry(pEntry);
        }
        if (archive_write_close(m_out.get()) != ARCHIVE_OK)
            ThrowWriteFault();
    }

private:
    void OpenArchive(const QString& strArchive) {
        archive_read_support_filter_gzip(m_in.get());
        archive_read_support_format_tar(m_in.get());
        // By its directory at the end alone: one that is cut off must not pass for a small one.
        archive_read_support_format_zip_seekable(m_in.get());
        archive_read_set_options(m_in.get(), "hdrcharset=GB18030");
        archive_write_disk_set_options(m_out.get(), ARCHIVE_EXTRACT_SECURE_NODOTDOT |
                                                        ARCHIVE_EXTRACT_SECURE_SYMLINKS |
                                                        ARCHIVE_EXTRACT_SECURE_NOABSOLUTEPATHS);
        if (archive_read_open_filename(m_in.get(), QFile::encodeName(strArchive).constData(), c_nBlock) !=
            ARCHIVE_OK)
            throw CRunException(FetchText::c_strNotArchive);
    }

    void TakeEntry(archive_entry* pEntry) {
        const char* szName = archive_entry_pathname_utf8(pEntry);
        const QString strName = QString::fromUtf8(szName);
        if (szName == nullptr)
            throw CRunException(FetchText::c_strDamaged);
        if (archive_entry_is_encrypted(pEntry) != 0)
            throw CRunException(FetchText::c_strEncrypted);
        const auto nType = archive_entry_filetype(pEntry);
        if ((nType != AE_IFREG && nType != AE_IFDIR) || archive_entry_hardlink(pEntry) != nullptr)
            throw Refusal(FetchText::c_strNotPlain, strName);
        const bool bFolder = nType == AE_IFDIR;
        const QString strPath = m_names.Accept(strName, bFolder);
        if (strPath.isEmpty())
            return;
        if (m_names.Count() > m_limits.nMaxEntries)
            ThrowTooMany();

        // Of the entry nothing but name and kind is taken over: no owner, no rights, no attributes.
        const std::unique_ptr<archive_entry, EntryCloser> entry(archive_entry_new());
        archive_entry_copy_pathname(entry.get(), strPath.toUtf8().constData());
        archive_entry_set_filetype(entry.get(), nType);
        archive_entry_set_perm(entry.get(), bFolder ? 0755 : 0644);
        if (archive_write_header(m_out.get(), entry.get()) != ARCHIVE_OK)
            ThrowWriteFault();
        if (!bFolder) {
            CopyContent();
            ++m_progress.nFiles;
        }
        if (archive_write_finish_entry(m_out.get()) != ARCHIVE_OK)
            ThrowWriteFault();
    }

    void CopyContent() {
        for (;;) {
            const la_ssize_t nRead = archive_read_data(m_in.get(), m_block.data(), m_block.size());
            if (nRead == 0)
                return;
            if (nRead < 0)
                ThrowReadFault(false);
            if (m_progress.bCancelled)
                throw CFetchCancelled();
            m_nBytes += nRead;
            if (m_nBytes > m_limits.nMaxBytes)
                throw CRunException(FetchText::c_strTooLarge.arg(QLocale::c().formattedDataSize(
                    m_limits.nMaxBytes, 0, QLocale::DataSizeTraditionalFormat)));
            if (archive_write_data(m_out.get(), m_block.data(), static_cast<size_t>(nRead)) != nRead)
                ThrowWriteFault();
        }
    }

    [[noreturn]] void ThrowTooMany() {
        throw CRunException(FetchText::c_strTooManyEntries.arg(m_limits.nMaxEntries));
    }
    [[noreturn]] void ThrowReadFault(bool bFirst) {
        if (archive_read_has_encrypted_entries(m_in.get()) > 0)
            throw CRunException(FetchText::c_strEncrypted);
        const bool bUnknown = bFirst && archive_format(m_in.get()) == 0;
        throw CRunException(bUnknown ? FetchText::c_strNotArchive : FetchText::c_strDamaged);
    }
    [[noreturn]] void ThrowWriteFault() { ThrowFileFault(m_strTargetFolder, archive_errno(m_out.get())); }

    QString m_strTargetFolder;
    CEntryNames m_names;
    FetchProgress& m_progress;
    const UnpackLimits& m_limits;
    const std::unique_ptr<archive, ReadCloser> m_in{archive_read_new()};
    const std::unique_ptr<archive, WriteCloser> m_out{archive_write_disk_new()};
    std::array<char, c_nBlock> m_block{};
    qint64 m_nBytes = 0;
};

} // namespace

void Unpack(const QString& strArchive, const QString& strFolder, const QString& strTargetFolder,
            FetchProgress& progress, const UnpackLimits& limits) {
    progress.nFiles = 0;
    progress.Stage = FetchProgress::EStage::Unpacking;
    const CUtf8Locale locale;
    const CWorkingFolder folder(strFolder);
    std::make_unique<CUnpacking>(strTargetFolder, progress, limits)->Run(strArchive);
}
