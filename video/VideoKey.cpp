#include "video/VideoKey.h"

#include "foundation/BigNumber.h"
#include "foundation/Ciphers.h"
#include "foundation/CodePage.h"

#include <array>

using namespace BigNumber;

namespace {

constexpr char c_szSalt[] = "Qm9u^FT&3#";
constexpr qsizetype c_nSaltedBytes = 32;
constexpr BN_ULONG c_nPublicExponent = 65537;
constexpr qsizetype c_nWordDigits = 8;
constexpr qsizetype c_nLastWindow = 24;
constexpr qsizetype c_nBlock = 16;

quint32 Word(QByteArrayView hex, qsizetype nFrom) {
    return hex.sliced(nFrom, c_nWordDigits).toUInt(nullptr, 16);
}

/// A prime of 64 bits that follows from a digest's text. Whoever made the first keys tried each candidate
/// with a few random bases; what passes is a prime either way, so the library's own test finds the same one,
/// and the same in every run.
Number PrimeOf(QByteArray digest, BN_CTX* pContext) {
    const quint32 nHigh = Word(digest, 0) | 0x80000000U;
    Number candidate = NewNumber();
    for (qsizetype nWindow = 1;; ++nWindow) {
        if (nWindow > c_nLastWindow) {
            digest = Md5Hex(digest);
            nWindow = 0;
        }
        BN_set_word(candidate.get(), (quint64{nHigh} << 32U) | Word(digest, nWindow) | 3U);
        if (BN_check_prime(candidate.get(), pContext, nullptr) == 1)
            return candidate;
    }
}

Reduction ReductionBy(const BIGNUM* pModulus, BN_CTX* pContext) {
    Reduction reduction(BN_MONT_CTX_new());
    Q_CHECK_PTR(reduction.get());
    BN_MONT_CTX_set(reduction.get(), pModulus, pContext);
    return reduction;
}

/// text to the power of an exponent, over and over with one modulus.
void Power(BIGNUM* pResult, const BIGNUM* pBase, const BIGNUM* pExponent, const BIGNUM* pModulus,
           BN_CTX* pContext, BN_MONT_CTX* pReduction) {
    Number reduced = NewNumber();
    BN_nnmod(reduced.get(), pBase, pModulus, pContext);
    BN_mod_exp_mont(pResult, reduced.get(), pExponent, pModulus, pContext, pReduction);
}

const uchar* Bytes(QByteArrayView bytes) {
    return reinterpret_cast<const uchar*>(bytes.data());
}

QByteArray HexWithoutZeros(const BIGNUM* pNumber) {
    std::array<uchar, c_nBlock> bytes{};
    BN_bn2binpad(pNumber, bytes.data(), c_nBlock);
    const QByteArray hex = EncodeHex(QByteArrayView(bytes.data(), c_nBlock));
    qsizetype nZeros = 0;
    while (nZeros < hex.size() - 1 && hex[nZeros] == '0')
        ++nZeros;
    return hex.sliced(nZeros);
}

} // namespace

struct CVideoKey::Numbers {
    Number modulus = NewNumber();
    Number secretExponent = NewNumber();
};

CVideoKey::CVideoKey(const QString& strSchoolName) {
    const QByteArray name = CodePage::Encode(strSchoolName);
    const QByteArray first = Md5Hex(name);
    if (first.isEmpty())
        return;
    const QByteArray second = Md5Hex(QByteArray(c_szSalt + name).left(c_nSaltedBytes));
    const Context context = NewContext();
    const Number p = PrimeOf(first, context.get());
    const Number q = PrimeOf(second, context.get());
    auto pNumbers = std::make_unique<Numbers>();
    BN_mul(pNumbers->modulus.get(), p.get(), q.get(), context.get());
    BN_sub_word(p.get(), 1);
    BN_sub_word(q.get(), 1);
    const Number phi = NewNumber();
    BN_mul(phi.get(), p.get(), q.get(), context.get());
    // One name in thousands of millions has primes for which there is no inverse.
    if (BN_mod_inverse(pNumbers->secretExponent.get(), NewNumber(c_nPublicExponent).get(), phi.get(),
                       context.get()) == nullptr)
        return;
    m_nSeed = first.first(2).toUInt(nullptr, 16);
    m_pNumbers = std::move(pNumbers);
}

CVideoKey::~CVideoKey() = default;

std::optional<SRecorderKey> CVideoKey::GetRecorderKey() const {
    if (!IsValid())
        return std::nullopt;
    return SRecorderKey{m_nSeed, HexWithoutZeros(m_pNumbers->modulus.get())};
}

QByteArray CVideoKey::Decipher(QByteArrayView blocks) const {
    if (!IsValid())
        return {};
    const BIGNUM* pModulus = m_pNumbers->modulus.get();
    const Context context = NewContext();
    const Reduction reduction = ReductionBy(pModulus, context.get());
    const Number number = NewNumber();
    QByteArray hex;
    for (qsizetype nAt = 0; nAt + c_nBlock <= blocks.size(); nAt += c_nBlock) {
        BN_bin2bn(Bytes(blocks.sliced(nAt)), c_nBlock, number.get());
        Power(number.get(), number.get(), m_pNumbers->secretExponent.get(), pModulus, context.get(),
              reduction.get());
        hex += HexWithoutZeros(number.get());
    }
    return hex;
}

QByteArray EncipherBlocks(QByteArrayView text, QByteArrayView modulusHex) {
    BIGNUM* pParsed = nullptr;
    const QByteArray digits = modulusHex.toByteArray();
    const int nRead = BN_hex2bn(&pParsed, digits.constData());
    const Number modulus(pParsed);
    if (nRead != digits.size() || modulus == nullptr || BN_is_negative(modulus.get()) != 0 ||
        BN_is_odd(modulus.get()) == 0 || BN_num_bits(modulus.get()) <= c_nPlainBlock * 8 ||
        BN_num_bits(modulus.get()) > c_nBlock * 8)
        return {};
    const Context context = NewContext();
    const Reduction reduction = ReductionBy(modulus.get(), context.get());
    const Number exponent = NewNumber(c_nPublicExponent);
    const Number number = NewNumber();
    QByteArray plain = text.toByteArray();
    for (char& c : plain)
        c = static_cast<uchar>(c) < 16 ? ' ' : c;
    QByteArray blocks((plain.size() + c_nPlainBlock - 1) / c_nPlainBlock * c_nBlock, '\0');
    auto* pOut = reinterpret_cast<uchar*>(blocks.data());
    for (qsizetype nAt = 0; nAt < plain.size(); nAt += c_nPlainBlock, pOut += c_nBlock) {
        const qsizetype nTaken = qMin(c_nPlainBlock, plain.size() - nAt);
        BN_bin2bn(Bytes(plain) + nAt, static_cast<int>(nTaken), number.get());
        Power(number.get(), number.get(), exponent.get(), modulus.get(), context.get(), reduction.get());
        BN_bn2binpad(number.get(), pOut, c_nBlock);
    }
    return blocks;
}
