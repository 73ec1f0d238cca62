#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <memory>
#include <optional>

/// What the recorder is given of a school's key: all that it takes to write a script file, and nothing that
/// opens one.
struct SRecorderKey {
    /// Scrambles the list of pointer places, 0 to 255.
    quint32 nSeed = 0;
    /// The modulus, upper-case hexadecimal.
    QByteArray Modulus;
};

/// The key of a school, derived from its name alone: courses of one school share it. Opens the script files
/// of lectures that were recorded under that name.
class CVideoKey {
public:
    /// A name that is empty in the code page gives no valid key.
    explicit CVideoKey(const QString& strSchoolName);
    ~CVideoKey();
    CVideoKey(const CVideoKey&) = delete;
    CVideoKey& operator=(const CVideoKey&) = delete;

    bool IsValid() const { return m_pNumbers != nullptr; }
    quint32 GetSeed() const { return m_nSeed; }
    /// Nothing when the key isn't valid.
    std::optional<SRecorderKey> GetRecorderKey() const;

    /// Opens blocks of 16 bytes, each a big-endian number: the opened numbers in upper-case hexadecimal
    /// without leading zeros, one behind the other. What follows the last whole block is passed over, and a
    /// key that isn't valid opens nothing.
    QByteArray Decipher(QByteArrayView blocks) const;

private:
    struct Numbers;
    std::unique_ptr<Numbers> m_pNumbers;
    quint32 m_nSeed = 0;
};

/// How many bytes of text a block of 16 holds. Less than a modulus ever has, so that each text fits.
constexpr qsizetype c_nPlainBlock = 15;

/// Closes a text in blocks that the modulus' key opens. Its bytes below 16, which would come out as one digit
/// where a block begins, become blanks. Empty when the modulus is no number of more than 120 bits and at most
/// 128.
QByteArray EncipherBlocks(QByteArrayView text, QByteArrayView modulusHex);
