#include "foundation/IniFile.h"

#include "foundation/CodePage.h"
#include "foundation/Exceptions.h"
#include "foundation/Paths.h"
#include "foundation/Text.h"
#include "platform/base/FileCalls.h"
#include "platform/base/NativePath.h"

#include <cerrno>
#include <optional>

namespace {

// No INI file of the system comes near this. A larger one is garbage: what is beyond is not looked at, and
// such a file is never written, since that would cut it.
constexpr qint64 c_nMaxFileBytes = qint64{16} * 1024 * 1024;

// One line of the file: where it stands, and where its line end begins.
struct Line {
    qsizetype nBegin = 0;
    qsizetype nEnd = 0;
    qsizetype nNext = 0;
};

bool IsBlank(char c) {
    return c == ' ' || c == '\t';
}

QByteArrayView Trimmed(QByteArrayView text) {
    while (!text.isEmpty() && IsBlank(text.front()))
        text = text.sliced(1);
    while (!text.isEmpty() && IsBlank(text.back()))
        text.chop(1);
    return text;
}

QByteArrayView Unquoted(QByteArrayView text) {
    const bool bQuoted =
        text.size() >= 2 && (text.front() == '"' || text.front() == '\'') && text.front() == text.back();
    return bQuoted ? text.sliced(1, text.size() - 2) : text;
}

bool SameName(QByteArrayView a, QByteArrayView b) {
    // As characters: the second byte of a character may look like a letter.
    return a.size() == b.size() && EqualsIgnoringCase(CodePage::Decode(a), CodePage::Decode(b));
}

// Goes through the file line by line. Bytes are enough: no second byte of a character is a line end, "=" or a
// blank, and "]" and ";" count only where a character begins.
class CLines {
public:
    explicit CLines(const QByteArray& bytes) : m_bytes(bytes) {
        if (bytes.startsWith("\xEF\xBB\xBF"))
            m_nAt = 3;
    }

    bool Next(Line& line) {
        if (m_nAt >= m_bytes.size())
            return false;
        line.nBegin = m_nAt;
        while (m_nAt < m_bytes.size() && m_bytes[m_nAt] != '\n' && m_bytes[m_nAt] != '\r')
            ++m_nAt;
        line.nEnd = m_nAt;
        if (m_nAt < m_bytes.size())
            m_nAt += m_bytes.mid(m_nAt, 2) == "\r\n" ? 2 : 1;
        line.nNext = m_nAt;
        return true;
    }

    QByteArrayView Text(const Line& line) const {
        return Trimmed(QByteArrayView(m_bytes).sliced(line.nBegin, line.nEnd - line.nBegin));
    }

private:
    const QByteArray& m_bytes;
    qsizetype m_nAt = 0;
};

// The name in brackets; nothing when the line is no section.
std::optional<QByteArrayView> SectionName(QByteArrayView text) {
    if (text.isEmpty() || text.front() != '[')
        return std::nullopt;
    const qsizetype nEnd = text.lastIndexOf(']');
    return Trimmed(text.sliced(1, (nEnd < 0 ? text.size() : nEnd) - 1));
}

struct Place {
    bool bSection = false;
    bool bKey = false;
    Line key;
    /// Behind the last line of the section that is not blank.
    qsizetype nSectionEnd = 0;
};

Place FindPlace(const QByteArray& bytes, QByteArrayView section, QByteArrayView key) {
    Place place;
    CLines lines(bytes);
    Line line;
    while (lines.Next(line)) {
        const QByteArrayView text = lines.Text(line);
        if (const auto name = SectionName(text)) {
            if (place.bSection)
                break;
            if (!SameName(*name, section))
                continue;
            place.bSection = true;
            place.nSectionEnd = line.nNext;
        } else if (place.bSection && !text.isEmpty()) {
            place.nSectionEnd = line.nNext;
            const qsizetype nEqual = text.indexOf('=');
            if (text.front() != ';' && nEqual >= 0 && SameName(Trimmed(text.first(nEqual)), key)) {
                place.bKey = true;
                place.key = line;
                break;
            }
        }
    }
    return place;
}

std::optional<QString> FindValue(const QString& strSection, const QString& strKey, const QString& strPath) {
    const QString strCut = CodePage::Cut(strPath, Torvane::File::c_nMaxPathBytes);
    QByteArray bytes;
    if (Platform::ReadFileBytes(Platform::NativeBytes(strCut), bytes, c_nMaxFileBytes) != 0)
        return std::nullopt;
    const Place place = FindPlace(bytes, CodePage::Encode(strSection), CodePage::Encode(strKey));
    if (!place.bKey)
        return std::nullopt;
    const QByteArrayView line =
        QByteArrayView(bytes).sliced(place.key.nBegin, place.key.nEnd - place.key.nBegin);
    return CodePage::Decode(Unquoted(Trimmed(line.sliced(line.indexOf('=') + 1))));
}

// As it reads back the same: breaks would forge keys, and a reader takes blanks and quotes at the ends away.
QByteArray WrittenValue(const QString& strValue) {
    QString str = strValue;
    for (QChar& c : str) {
        if (c == u'\r' || c == u'\n' || c == u'\0')
            c = u' ';
    }
    const QByteArray value = CodePage::Encode(str);
    return Unquoted(Trimmed(value)) == value ? value : '"' + value + '"';
}

QByteArray WithKey(const QByteArray& bytes, const QByteArray& section, const QByteArray& key,
                   const QByteArray& value) {
    const Place place = FindPlace(bytes, section, key);
    const qsizetype nFirstEnd = bytes.indexOf('\n');
    const QByteArray lineEnd =
        nFirstEnd == 0 || (nFirstEnd > 0 && bytes[nFirstEnd - 1] != '\r') ? "\n" : "\r\n";
    if (place.bKey) {
        const qsizetype nEqual = bytes.indexOf('=', place.key.nBegin);
        return bytes.left(nEqual + 1) + value + bytes.mid(place.key.nEnd);
    }
    QByteArray added = key + '=' + value + lineEnd;
    qsizetype nAt = place.nSectionEnd;
    if (!place.bSection) {
        added.prepend('[' + section + ']' + lineEnd);
        nAt = bytes.size();
    }
    if (nAt > 0 && bytes[nAt - 1] != '\n' && bytes[nAt - 1] != '\r')
        added.prepend(lineEnd);
    return bytes.left(nAt) + added + bytes.mid(nAt);
}

[[noreturn]] void ThrowSystemError(int nError) {
    throw Torvane::CRunException(Torvane::File::FormatSystemError(nError));
}

} // namespace

QString ReadProfileString(const QString& strSection, const QString& strKey, const QString& strDefault,
                          const QString& strPath) {
    return FindValue(strSection, strKey, strPath).value_or(strDefault);
}

qint32 ReadProfileInt(const QString& strSection, const QString& strKey, qint32 nDefault,
                      const QString& strPath) {
    const auto value = FindValue(strSection, strKey, strPath);
    return value ? ParseInt(*value) : nDefault;
}

void WriteProfileString(const QString& strSection, const QString& strKey, const QString& strValue,
                        const QString& strPath) {
    WriteProfileStrings({{strSection, strKey, strValue}}, strPath);
}

void WriteProfileStrings(const QList<ProfileEntry>& entries, const QString& strPath) {
    if (CodePage::ByteLength(strPath) > Torvane::File::c_nMaxPathBytes)
        ThrowSystemError(ENAMETOOLONG);
    const QByteArray path = Platform::NativeBytes(strPath);
    QByteArray old;
    const int nError = Platform::ReadFileBytes(path, old, c_nMaxFileBytes + 1);
    if (nError != 0 && nError != ENOENT)
        ThrowSystemError(nError);
    if (old.size() > c_nMaxFileBytes)
        ThrowSystemError(EFBIG);
    QByteArray changed = old;
    for (const ProfileEntry& entry : entries)
        changed = WithKey(changed, CodePage::Encode(entry.strSection), CodePage::Encode(entry.strKey),
                          WrittenValue(entry.strValue));
    if (nError == 0 && changed == old)
        return;
    if (const int nWriteError = Platform::ReplaceFileBytes(path, changed))
        ThrowSystemError(nWriteError);
}
