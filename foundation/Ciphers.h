#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <memory>

/// Digests, encodings and ciphers over bytes in the code page. Empty input gives empty output.

/// MD5 (RFC 1321), 32 lower-case hexadecimal characters.
QByteArray Md5Hex(QByteArrayView text);

/// Two upper-case hexadecimal characters a byte.
QByteArray EncodeHex(QByteArrayView bytes);

/// Half as many bytes; a character that is no hexadecimal digit counts as 0, an odd last character is
/// dropped.
QByteArray DecodeHex(QByteArrayView text);

/// Base64 (RFC 4648) with "(" and ")" for the last two characters of the alphabet and ";" for padding.
QByteArray EncodeBase64Paren(QByteArrayView bytes);

/// A byte stream with feedback over the plain text; the two undo each other for the same seed.
QByteArray ScrambleBytes(QByteArrayView bytes, quint32 nSeed);
QByteArray UnscrambleBytes(QByteArrayView bytes, quint32 nSeed);

/// DES (FIPS 46) in ECB mode, zero padded to whole blocks of 8 bytes; a key text of 9 bytes or more, cut at
/// 16, gives two-key triple DES. Decrypting leaves the padding: a text ends at its first zero byte. Input
/// that is no whole number of blocks is padded with zeros there too.
QByteArray EncryptDes(QByteArrayView text, QByteArrayView key);
QByteArray DecryptDes(QByteArrayView bytes, QByteArrayView key);

/// EncryptDes, then EncodeHex.
QByteArray EncryptDesHex(QByteArrayView text, QByteArrayView key);
/// DecodeHex, then DecryptDes, cut at the first zero byte.
QByteArray DecryptDesHex(QByteArrayView text, QByteArrayView key);

/// The text ciphers with the key expanded once, for many texts under one key.
class CDesKey {
public:
    explicit CDesKey(QByteArrayView key);
    ~CDesKey();
    CDesKey(const CDesKey&) = delete;
    CDesKey& operator=(const CDesKey&) = delete;

    QByteArray Encrypt(QByteArrayView text) const;
    QByteArray Decrypt(QByteArrayView bytes) const;
    QByteArray EncryptHex(QByteArrayView text) const;
    QByteArray DecryptHex(QByteArrayView text) const;

private:
    struct Schedule;
    std::unique_ptr<Schedule> m_pSchedule;
};
