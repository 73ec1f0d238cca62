#include "video/VideoScripts.h"

#include "foundation/Ciphers.h"
#include "foundation/CodePage.h"
#include "foundation/Exceptions.h"
#include "foundation/Paths.h"
#include "foundation/Text.h"
#include "foundation/TextFile.h"
#include "video/Texts.h"

#include <QtEndian>

using namespace Qt::StringLiterals;
using Torvane::CRunException;

namespace {

constexpr quint16 c_nTrailerMask = 0x3AD5;
constexpr qsizetype c_nTrailer = 2;
constexpr qsizetype c_nBlock = 16;
/// A file of nothing but separators would otherwise fill the memory.
constexpr qsizetype c_nMaxItems = 1'000'000;

QByteArray ReadScriptFile(const QString& strPath) {
    QByteArray bytes;
    try {
        bytes = ReadFileBytes(strPath, c_nMaxScriptBytes + 1);
    } catch (const CRunException&) {
        throw CRunException(VideoText::c_strNotOpened);
    }
    if (bytes.size() < c_nTrailer || bytes.size() > c_nMaxScriptBytes)
        throw CRunException(VideoText::c_strBadFormat);
    return bytes;
}

QStringList Items(const QByteArray& text) {
    if (text.count(';') >= c_nMaxItems)
        throw CRunException(VideoText::c_strBadFormat);
    QStringList items;
    SplitText(CodePage::Decode(text), items, u';');
    return items;
}

/// Each item with the separator behind it.
QByteArray Joined(const QStringList& items) {
    QByteArray text;
    for (const QString& strItem : items)
        text += CodePage::Encode(QString(strItem).remove(u';')) + ';';
    return text;
}

} // namespace

QString SVideoScripts::Called(const QString& strParameter) const {
    const qint64 nNumber = ParseInt(strParameter);
    if (nNumber < 0)
        return First.value(-nNumber - 1);
    return nNumber < Second.size() - 1 ? Second[nNumber] : QString();
}

QString ScriptFileBelow() {
    return u"\\CourseInfo\\s.esf"_s;
}

SVideoScripts ReadVideoScripts(const QString& strFolder, const CVideoKey& key) {
    const QByteArray bytes = ReadScriptFile(strFolder + ScriptFileBelow());
    const qsizetype nBody = bytes.size() - c_nTrailer;
    const auto nWord = qFromLittleEndian<quint16>(bytes.constData() + nBody);
    const qsizetype nSecret = qsizetype{quint16(nWord ^ c_nTrailerMask)} * c_nBlock;
    if (nSecret > nBody)
        throw CRunException(VideoText::c_strBadFormat);
    const QByteArrayView body = QByteArrayView(bytes).first(nBody);
    SVideoScripts scripts;
    scripts.Second = Items(UnscrambleBytes(body.chopped(nSecret), key.GetSeed()));
    for (QString& strPlace : scripts.Second)
        strPlace.prepend(u"MoveMouse"_s);
    scripts.First = Items(DecodeHex(key.Decipher(body.last(nSecret))));
    return scripts;
}

QByteArray MakeVideoScripts(const QStringList& calls, const QStringList& places, const SRecorderKey& key) {
    const QByteArray secret = EncipherBlocks(Joined(calls), key.Modulus);
    const qsizetype nBlocks = secret.size() / c_nBlock;
    if ((secret.isEmpty() && !calls.isEmpty()) || nBlocks > 0xFFFF)
        throw CRunException(VideoText::c_strNoKey);
    QByteArray bytes = ScrambleBytes(Joined(places), key.nSeed) + secret;
    const quint16 nWord = qToLittleEndian(quint16(quint16(nBlocks) ^ c_nTrailerMask));
    return bytes.append(reinterpret_cast<const char*>(&nWord), c_nTrailer);
}
