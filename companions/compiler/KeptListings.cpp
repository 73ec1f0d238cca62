#include "companions/compiler/KeptListings.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <charconv>
#include <optional>
#include <utility>

using namespace Platform;

namespace {

// The file is a row of texts, each ended by a zero, which no name holds: the head; for each folder its path,
// its number and time, its entries with their kind before the name, and an empty text; and an empty text at
// the end, without which the file was cut off.
constexpr char c_kind[] = "VorelListings 1 ";
constexpr qint64 c_nMaxFile = qint64{256} << 20;
/// A folder that changed so short a time ago may change again without its time telling.
constexpr qint64 c_nClockStep = 2'000'000'000;

char LetterOf(EEntryType eType) {
    switch (eType) {
    case EEntryType::File:
        return 'f';
    case EEntryType::Folder:
        return 'd';
    case EEntryType::Link:
        return 'l';
    default:
        return 'o';
    }
}

EEntryType TypeOf(char letter) {
    return letter == 'f'   ? EEntryType::File
           : letter == 'd' ? EEntryType::Folder
           : letter == 'l' ? EEntryType::Link
                           : EEntryType::Other;
}

/// Takes texts off the front of a row.
class CTexts {
public:
    explicit CTexts(const QByteArray& bytes) : m_rest(bytes) {}
    /// Nothing behind the last one.
    std::optional<QByteArrayView> Next() {
        const qsizetype nEnd = m_rest.indexOf('\0');
        if (nEnd < 0)
            return std::nullopt;
        const QByteArrayView text = m_rest.first(nEnd);
        m_rest = m_rest.sliced(nEnd + 1);
        return text;
    }
    const char* At() const { return m_rest.data(); }
    bool IsAtEnd() const { return m_rest.isEmpty(); }

private:
    QByteArrayView m_rest;
};

bool ReadNumbers(QByteArrayView text, quint64& nInode, qint64& nChanged) {
    const char* const pEnd = text.data() + text.size();
    const auto [pBlank, error] = std::from_chars(text.data(), pEnd, nInode);
    return error == std::errc() && pBlank != pEnd && std::from_chars(pBlank + 1, pEnd, nChanged).ptr == pEnd;
}

} // namespace

CKeptListings::CKeptListings(const QString& strFile, const QByteArray& folder, const CFolder& open)
    : m_head(c_kind + folder + '\0'), m_nBegin(QDateTime::currentMSecsSinceEpoch() * 1'000'000) {
    CFileState state;
    if (strFile.isEmpty() || !open.TellsOfChanges() || open.GetOwnState(state) != 0)
        return;
    m_strFile = strFile;
    m_nDevice = state.nDevice;
    if (ReadFileBytes(QFile::encodeName(strFile), m_bytes, c_nMaxFile) != 0 || !Read())
        m_kept.clear();
}

bool CKeptListings::Read() {
    if (!m_bytes.startsWith(m_head))
        return false;
    constexpr qsizetype c_nUsual = 48;
    m_kept.reserve(m_bytes.size() / c_nUsual);
    CTexts texts(m_bytes);
    texts.Next();
    for (;;) {
        const char* const pBegin = texts.At();
        const std::optional<QByteArrayView> path = texts.Next();
        if (!path || path->isEmpty())
            return path && texts.IsAtEnd();
        Kept kept;
        const std::optional<QByteArrayView> numbers = texts.Next();
        if (!numbers || !ReadNumbers(*numbers, kept.Folder.nInode, kept.Folder.nChanged))
            return false;
        std::optional<QByteArrayView> entry = texts.Next();
        for (; entry && !entry->isEmpty(); entry = texts.Next()) {
            const QByteArrayView name = entry->sliced(1);
            kept.Folder.Entries.push_back(
                {QByteArray::fromRawData(name.data(), name.size()), TypeOf(entry->front())});
        }
        if (!entry)
            return false;
        kept.Lines = QByteArrayView(pBegin, texts.At());
        m_kept.insert(*path, std::move(kept));
    }
}

const CKeptListings::Listing* CKeptListings::Find(const CFolder& open, const QByteArray& path) {
    const auto found = m_kept.find(path);
    CFileState now;
    if (found == m_kept.end() || open.GetState(path, now, false) != 0 || !now.bFolder ||
        now.nDevice != m_nDevice || now.nInode != found->Folder.nInode ||
        now.nChanged != found->Folder.nChanged)
        return nullptr;
    found->bFound = true;
    return &found->Folder;
}

QByteArray CKeptListings::LinesOf(const QByteArray& path, const CFileState& before,
                                  const Listing& listing) const {
    if (!Keeps() || before.nDevice != m_nDevice || before.nChanged > m_nBegin - c_nClockStep)
        return {};
    QByteArray lines =
        path + '\0' + QByteArray::number(before.nInode) + ' ' + QByteArray::number(before.nChanged) + '\0';
    for (const CFolderEntry& entry : listing.Entries)
        lines += LetterOf(entry.eType) + entry.name + '\0';
    return lines + '\0';
}

void CKeptListings::Write(const std::vector<QByteArray>& lines) const {
    if (!Keeps() || lines.empty())
        return;
    QByteArray bytes = m_head;
    for (const Kept& kept : m_kept) {
        if (kept.bFound)
            bytes += kept.Lines;
    }
    for (const QByteArray& folder : lines)
        bytes += folder;
    bytes += '\0';
    // Beside and then moved, and never waited for: it can be made again.
    const QFileInfo file(m_strFile);
    QDir().mkpath(file.path());
    CFolder place;
    if (place.Open(QFile::encodeName(file.path())) != 0)
        return;
    const QByteArray name = QFile::encodeName(file.fileName());
    const QByteArray beside = name + '.' + QByteArray::number(QCoreApplication::applicationPid());
    CFileState written;
    if (place.WriteFile(beside, bytes, written) != 0 || place.Rename(beside, name) != 0)
        place.RemoveFile(beside);
}
