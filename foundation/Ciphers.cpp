#include "foundation/Ciphers.h"

// MD5 and DES are what the stored data is made of. The library keeps both but calls them outdated, and its
// newer interface offers single DES only where an extra provider is installed.
#define OPENSSL_SUPPRESS_DEPRECATED
#include <openssl/des.h>
#include <openssl/md5.h>

#include <algorithm>
#include <array>

namespace {

constexpr qsizetype c_nBlock = 8;
constexpr qsizetype c_nMaxKey = 16;

constexpr char c_szHexUpper[] = "0123456789ABCDEF";
constexpr char c_szHexLower[] = "0123456789abcdef";

QByteArray Hex(QByteArrayView bytes, const char* szDigits) {
    QByteArray hex(bytes.size() * 2, Qt::Uninitialized);
    char* p = hex.data();
    for (const char c : bytes) {
        *p++ = szDigits[static_cast<uchar>(c) >> 4U];
        *p++ = szDigits[static_cast<uchar>(c) & 15U];
    }
    return hex;
}

constexpr std::array<uchar, 256> MakeHexValues() {
    std::array<uchar, 256> values{};
    for (uchar i = 0; i < 10; ++i)
        values['0' + i] = i;
    for (uchar i = 0; i < 6; ++i)
        values['a' + i] = values['A' + i] = static_cast<uchar>(10 + i);
    return values;
}

constexpr std::array<uchar, 256> c_hexValues = MakeHexValues();

uchar HexValue(char c) {
    return c_hexValues[static_cast<uchar>(c)];
}

// One step of the scrambler's state.
quint32 NextState(quint32 nState, uchar nPlain) {
    return ((nPlain + nState) & 255U) * 51787U + 20411U;
}

} // namespace

QByteArray Md5Hex(QByteArrayView text) {
    if (text.isEmpty())
        return {};
    std::array<uchar, MD5_DIGEST_LENGTH> digest{};
    MD5(reinterpret_cast<const uchar*>(text.data()), static_cast<size_t>(text.size()), digest.data());
    return Hex(QByteArrayView(digest.data(), MD5_DIGEST_LENGTH), c_szHexLower);
}

QByteArray EncodeHex(QByteArrayView bytes) {
    return Hex(bytes, c_szHexUpper);
}

QByteArray DecodeHex(QByteArrayView text) {
    QByteArray bytes(text.size() / 2, Qt::Uninitialized);
    const char* pDigit = text.data();
    for (char& c : bytes) {
        c = static_cast<char>(HexValue(pDigit[0]) * 16 + HexValue(pDigit[1]));
        pDigit += 2;
    }
    return bytes;
}

QByteArray EncodeBase64Paren(QByteArrayView bytes) {
    QByteArray text = QByteArray::fromRawData(bytes.data(), bytes.size()).toBase64();
    return text.replace('+', '(').replace('/', ')').replace('=', ';');
}

QByteArray ScrambleBytes(QByteArrayView bytes, quint32 nSeed) {
    QByteArray out(bytes.size(), Qt::Uninitialized);
    quint32 nState = nSeed;
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const auto nPlain = static_cast<uchar>(bytes[i]);
        out[i] = static_cast<char>(nPlain ^ static_cast<uchar>(nState >> 8U));
        nState = NextState(nState, nPlain);
    }
    return out;
}

QByteArray UnscrambleBytes(QByteArrayView bytes, quint32 nSeed) {
    QByteArray out(bytes.size(), Qt::Uninitialized);
    quint32 nState = nSeed;
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const auto nPlain =
            static_cast<uchar>(static_cast<uchar>(bytes[i]) ^ static_cast<uchar>(nState >> 8U));
        out[i] = static_cast<char>(nPlain);
        nState = NextState(nState, nPlain);
    }
    return out;
}

struct CDesKey::Schedule {
    DES_key_schedule first{};
    DES_key_schedule second{};
    bool bTriple = false;
};

namespace {

// Works on the blocks where they stand, padded to whole ones.
template <typename TSchedule>
QByteArray RunDes(QByteArray bytes, TSchedule& schedule, int nDirection) {
    if (const qsizetype nOver = bytes.size() % c_nBlock)
        bytes.append(c_nBlock - nOver, '\0');
    auto* pBytes = reinterpret_cast<uchar*>(bytes.data());
    for (qsizetype i = 0; i < bytes.size(); i += c_nBlock) {
        auto* pBlock = reinterpret_cast<DES_cblock*>(pBytes + i);
        if (schedule.bTriple)
            DES_ecb2_encrypt(pBlock, pBlock, &schedule.first, &schedule.second, nDirection);
        else
            DES_ecb_encrypt(pBlock, pBlock, &schedule.first, nDirection);
    }
    return bytes;
}

template <typename TSchedule>
void Expand(QByteArrayView key, TSchedule& schedule) {
    std::array<uchar, c_nMaxKey> padded{};
    const qsizetype nUsed = std::min<qsizetype>(key.size(), c_nMaxKey);
    std::copy_n(key.data(), nUsed, padded.begin());
    DES_set_key_unchecked(reinterpret_cast<DES_cblock*>(padded.data()), &schedule.first);
    DES_set_key_unchecked(reinterpret_cast<DES_cblock*>(padded.data() + c_nBlock), &schedule.second);
    schedule.bTriple = nUsed > c_nBlock;
}

} // namespace

CDesKey::CDesKey(QByteArrayView key) : m_pSchedule(std::make_unique<Schedule>()) {
    Expand(key, *m_pSchedule);
}

CDesKey::~CDesKey() = default;

QByteArray CDesKey::Encrypt(QByteArrayView text) const {
    return RunDes(text.toByteArray(), *m_pSchedule, DES_ENCRYPT);
}

QByteArray CDesKey::Decrypt(QByteArrayView bytes) const {
    return RunDes(bytes.toByteArray(), *m_pSchedule, DES_DECRYPT);
}

QByteArray CDesKey::EncryptHex(QByteArrayView text) const {
    return EncodeHex(Encrypt(text));
}

QByteArray CDesKey::DecryptHex(QByteArrayView text) const {
    QByteArray bytes = RunDes(DecodeHex(text), *m_pSchedule, DES_DECRYPT);
    if (const qsizetype n = bytes.indexOf('\0'); n >= 0)
        bytes.truncate(n);
    return bytes;
}

QByteArray EncryptDes(QByteArrayView text, QByteArrayView key) {
    return CDesKey(key).Encrypt(text);
}

QByteArray DecryptDes(QByteArrayView bytes, QByteArrayView key) {
    return CDesKey(key).Decrypt(bytes);
}

QByteArray EncryptDesHex(QByteArrayView text, QByteArrayView key) {
    return CDesKey(key).EncryptHex(text);
}

QByteArray DecryptDesHex(QByteArrayView text, QByteArrayView key) {
    return CDesKey(key).DecryptHex(text);
}
