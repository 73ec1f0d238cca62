#include "editor/PastedPictures.h"

#include "editor/KeptPages.h"
#include "editor/Texts.h"
#include "foundation/Exceptions.h"
#include "foundation/Files.h"
#include "foundation/Paths.h"
#include "foundation/TextFile.h"
#include "platform/base/NativePath.h"

#include <QCryptographicHash>
#include <QUrl>

using namespace Qt::StringLiterals;
using namespace Torvane::File;

namespace {

constexpr qint64 c_nMaxPicture = 50 * 1024 * 1024;
constexpr qint64 c_nMaxAll = 200 * 1024 * 1024;
constexpr qsizetype c_nMaxCount = 500;

/// By what a picture's file begins with; empty for what no page shows.
QString EndingOf(const QByteArray& bytes) {
    if (bytes.startsWith("\x89PNG\r\n\x1A\n"))
        return u".png"_s;
    if (bytes.startsWith("\xFF\xD8\xFF"))
        return u".jpg"_s;
    if (bytes.startsWith("GIF8"))
        return u".gif"_s;
    if (bytes.startsWith("RIFF") && bytes.mid(8, 4) == "WEBP")
        return u".webp"_s;
    return bytes.startsWith("BM") && bytes.size() > 26 ? u".bmp"_s : QString();
}

/// The bytes of a picture that is its own text; empty when the text is damaged.
QByteArray BytesOfData(const QString& strReference) {
    const qsizetype nComma = strReference.indexOf(u',');
    if (nComma < 0 || !strReference.first(nComma).contains(u";base64", Qt::CaseInsensitive))
        return {};
    QByteArray text = QByteArray::fromPercentEncoding(strReference.sliced(nComma + 1).toLatin1());
    text.removeIf([](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; });
    const auto result = QByteArray::fromBase64Encoding(text, QByteArray::AbortOnBase64DecodingErrors);
    return result ? result.decoded : QByteArray();
}

/// The path of a file's address, with a drive or without; empty for another machine's.
QString PathOf(const QString& strReference) {
    const QUrl url(strReference);
    if (!url.host().isEmpty() && url.host() != u"localhost")
        return {};
    QString strPath = url.path(QUrl::FullyDecoded);
    if (strPath.size() < 2)
        return {};
    if (strPath.size() > 3 && strPath[1].isLetter() && strPath[2] == u':')
        return strPath.sliced(1).replace(u'/', u'\\');
    return Platform::FromNative(strPath);
}

} // namespace

CPastedPictures::CPastedPictures(QString strFolder, QString strCourseFolder)
    : m_strFolder(std::move(strFolder)), m_strCourseFolder(std::move(strCourseFolder)) {}

QString CPastedPictures::Name(const QString& strReference) {
    const auto begins = [&](const QString& strHead) {
        return strReference.startsWith(strHead, Qt::CaseInsensitive);
    };
    if (begins(u"data:"_s))
        return Keep(BytesOfData(strReference));
    if (begins(u"file:"_s)) {
        const QString strPath = PathOf(strReference);
        QString strTaken = TakeFile(strPath);
        if (strTaken.isEmpty())
            Miss(strPath);
        return strTaken;
    }
    // The save fetches what it can; the page is not shown with it until then.
    if (begins(u"http://"_s) || begins(u"https://"_s))
        return strReference;
    return begins(u"//"_s) ? u"https:"_s + strReference : QString();
}

void CPastedPictures::Miss(const QString& strPath) {
    if (m_strFailure.isEmpty())
        m_strFailure = EditorTexts::c_strPictureGone.arg(BareName(strPath));
}

QString CPastedPictures::TakeFile(const QString& strPath) {
    if (strPath.isEmpty() || !IsFile(strPath))
        return {};
    try {
        if (EndingOf(ReadFileBytes(strPath, 64)).isEmpty())
            return {};
        if (IsPathUnder(m_strFolder, strPath, u'\\') ||
            (IsPathUnder(m_strCourseFolder, strPath, u'\\') && !KeptPages::IsInPictures(strPath)))
            return strPath;
        return Keep(ReadFileBytes(strPath, c_nMaxPicture + 1));
    } catch (const Torvane::CRunException&) {
        return {};
    }
}

QString CPastedPictures::Keep(const QByteArray& bytes) {
    const QString strEnding = EndingOf(bytes);
    if (strEnding.isEmpty())
        return {};
    const QByteArray hash = QCryptographicHash::hash(bytes, QCryptographicHash::Sha1);
    if (const auto it = m_paths.constFind(hash); it != m_paths.constEnd())
        return *it;
    if (bytes.size() > c_nMaxPicture || m_nBytes + bytes.size() > c_nMaxAll || m_made.size() == c_nMaxCount) {
        m_strFailure = EditorTexts::c_strPicturesTooLarge;
        return {};
    }
    QString strPath = m_strFolder + QString::fromLatin1(hash.toHex()) + strEnding;
    // An earlier paste may have brought it. What could not be written once is not tried for each place.
    if (!IsFile(strPath) && !Write(strPath, bytes))
        strPath.clear();
    m_paths.insert(hash, strPath);
    return strPath;
}

bool CPastedPictures::Write(const QString& strPath, const QByteArray& bytes) {
    try {
        TryMakeFolder(WithoutBackslash(ParentFolder(WithoutBackslash(m_strFolder))));
        TryMakeFolder(WithoutBackslash(m_strFolder));
        ReplaceFile(strPath, bytes);
    } catch (const Torvane::CRunException& failure) {
        m_strFailure = failure.GetMessage();
        return false;
    }
    m_nBytes += bytes.size();
    m_made.append(strPath);
    return true;
}

void CPastedPictures::RemoveMade() {
    for (const QString& strPath : std::as_const(m_made))
        KeptPages::Remove(strPath);
    m_made.clear();
    m_paths.clear();
    m_strFailure.clear();
    m_nBytes = 0;
}
