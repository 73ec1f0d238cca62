#include "foundation/Token.h"

#include "foundation/BigNumber.h"

#include <QByteArrayList>

#include <algorithm>
#include <array>
#include <cstdio>
#include <vector>

using namespace BigNumber;

namespace {

constexpr BN_ULONG c_nFirstExponent = 0xC351;
constexpr int c_nSieveWindow = 1000;
constexpr int c_nSievePrimes = 200;
constexpr std::array<BN_ULONG, 4> c_witnesses{2, 3, 5, 7};
constexpr qsizetype c_nMessageWords = 7;
/// Far more words than any key of ours has; a longer text is no token.
constexpr qsizetype c_nMaxTokenWords = 1024;
constexpr std::array<qsizetype, 5> c_pieceLengths{7, 7, 7, 7, 4};

constexpr char c_szDigits[] = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";

std::vector<BN_ULONG> SmallPrimes() {
    std::vector<BN_ULONG> primes;
    for (BN_ULONG n = 2; primes.size() < c_nSievePrimes; ++n) {
        if (std::none_of(primes.begin(), primes.end(), [&](BN_ULONG nPrime) { return n % nPrime == 0; }))
            primes.push_back(n);
    }
    return primes;
}

// Miller-Rabin for one base: whether the odd candidate passes as prime.
bool Passes(const BIGNUM* pCandidate, BN_ULONG nBase, BN_CTX* pContext) {
    const Number less = NewNumber();
    BN_copy(less.get(), pCandidate);
    BN_sub_word(less.get(), 1);
    int nTwos = 0;
    while (BN_is_bit_set(less.get(), nTwos) == 0)
        ++nTwos;
    const Number odd = NewNumber();
    BN_rshift(odd.get(), less.get(), nTwos);
    const Number power = NewNumber();
    BN_mod_exp(power.get(), NewNumber(nBase).get(), odd.get(), pCandidate, pContext);
    if (BN_is_one(power.get()) || BN_cmp(power.get(), less.get()) == 0)
        return true;
    for (int i = 1; i < nTwos; ++i) {
        BN_mod_sqr(power.get(), power.get(), pCandidate, pContext);
        if (BN_cmp(power.get(), less.get()) == 0)
            return true;
    }
    return false;
}

bool IsPrime(const BIGNUM* pCandidate, BN_CTX* pContext) {
    return std::all_of(c_witnesses.begin(), c_witnesses.end(), [&](BN_ULONG nBase) {
        return BN_is_word(pCandidate, nBase) || Passes(pCandidate, nBase, pContext);
    });
}

// The next prime at or above the number.
void GoToPrime(BIGNUM* pNumber, BN_CTX* pContext) {
    static const std::vector<BN_ULONG> s_primes = SmallPrimes();
    if (BN_num_bits(pNumber) < 2)
        BN_set_word(pNumber, 2);
    for (;;) {
        std::array<bool, c_nSieveWindow> composite{};
        const BN_ULONG nStart = BN_num_bits(pNumber) <= 32 ? BN_get_word(pNumber) : 0;
        for (const BN_ULONG nPrime : s_primes) {
            const BN_ULONG nRest = BN_mod_word(pNumber, nPrime);
            for (BN_ULONG n = nRest == 0 ? 0 : nPrime - nRest; n < c_nSieveWindow; n += nPrime)
                composite[n] = nStart + n != nPrime;
        }
        for (const bool bComposite : composite) {
            if (!bComposite && IsPrime(pNumber, pContext))
                return;
            BN_add_word(pNumber, 1);
        }
    }
}

struct Key {
    Number p = NewNumber();
    Number q = NewNumber();
    Number pLess = NewNumber();
    Number qLess = NewNumber();
    Number modulus = NewNumber();
    Number exponent = NewNumber(c_nFirstExponent);
};

bool IsCoprime(const BIGNUM* pA, const BIGNUM* pB, BN_CTX* pContext) {
    const Number divisor = NewNumber();
    BN_gcd(divisor.get(), pA, pB, pContext);
    return BN_is_one(divisor.get());
}

Key MakeKey(QByteArrayView one, QByteArrayView two, BN_CTX* pContext) {
    Key key;
    const auto makePrime = [&](QByteArrayView text, BIGNUM* pPrime, BIGNUM* pLess) {
        BN_bin2bn(reinterpret_cast<const uchar*>(text.data()), static_cast<int>(text.size()), pPrime);
        GoToPrime(pPrime, pContext);
        BN_copy(pLess, pPrime);
        BN_sub_word(pLess, 1);
    };
    makePrime(one, key.p.get(), key.pLess.get());
    makePrime(two, key.q.get(), key.qLess.get());
    BN_mul(key.modulus.get(), key.p.get(), key.q.get(), pContext);
    while (!IsCoprime(key.exponent.get(), key.pLess.get(), pContext) ||
           !IsCoprime(key.exponent.get(), key.qLess.get(), pContext))
        BN_add_word(key.exponent.get(), 2);
    return key;
}

// message to the power d modulo one prime, d being the exponent's inverse.
Number PowerModulo(const BIGNUM* pMessage, const Key& key, const BIGNUM* pPrime, const BIGNUM* pLess,
                   BN_CTX* pContext) {
    const Number inverse = NewNumber();
    BN_mod_inverse(inverse.get(), key.exponent.get(), pLess, pContext);
    Number power = NewNumber();
    BN_mod_exp(power.get(), pMessage, inverse.get(), pPrime, pContext);
    return power;
}

// The secret power by the Chinese remainders of the two primes.
Number SecretPower(const BIGNUM* pMessage, const Key& key, BN_CTX* pContext) {
    Number result = PowerModulo(pMessage, key, key.q.get(), key.qLess.get(), pContext);
    const Number step = PowerModulo(pMessage, key, key.p.get(), key.pLess.get(), pContext);
    const Number inverse = NewNumber();
    BN_mod_inverse(inverse.get(), key.q.get(), key.p.get(), pContext);
    BN_mod_sub(step.get(), step.get(), result.get(), key.p.get(), pContext);
    BN_mod_mul(step.get(), step.get(), inverse.get(), key.p.get(), pContext);
    BN_mul(step.get(), step.get(), key.q.get(), pContext);
    BN_add(result.get(), result.get(), step.get());
    return result;
}

QByteArray WordText(quint32 nWord) {
    QByteArray text;
    do {
        text.prepend(c_szDigits[nWord % 36]);
        nWord /= 36;
    } while (nWord != 0);
    return text;
}

QByteArray TokenText(const BIGNUM* pNumber) {
    QByteArrayList words;
    const Number rest = NewNumber();
    BN_copy(rest.get(), pNumber);
    while (!BN_is_zero(rest.get())) {
        const Number low = NewNumber();
        BN_copy(low.get(), rest.get());
        BN_mask_bits(low.get(), 32);
        words.append(WordText(static_cast<quint32>(BN_get_word(low.get()))));
        BN_rshift(rest.get(), rest.get(), 32);
    }
    return words.join('.');
}

Number NumberOfWords(const std::vector<quint32>& words) {
    Number number = NewNumber();
    for (auto it = words.rbegin(); it != words.rend(); ++it) {
        BN_lshift(number.get(), number.get(), 32);
        BN_add_word(number.get(), *it);
    }
    return number;
}

std::optional<quint32> WordOfText(QByteArrayView text) {
    if (text.isEmpty() || text.size() > 7)
        return std::nullopt;
    quint64 nWord = 0;
    for (const char c : text) {
        const char* pDigit = std::find(c_szDigits, c_szDigits + 36, c);
        if (pDigit == c_szDigits + 36)
            return std::nullopt;
        nWord = nWord * 36 + static_cast<quint64>(pDigit - c_szDigits);
    }
    return nWord <= 0xFFFFFFFFU ? std::optional(static_cast<quint32>(nWord)) : std::nullopt;
}

std::optional<std::vector<quint32>> WordsOfToken(QByteArrayView token) {
    if (token.size() > c_nMaxTokenWords * 8)
        return std::nullopt;
    std::vector<quint32> words;
    for (const QByteArray& piece : token.toByteArray().split('.')) {
        const auto word = WordOfText(piece);
        if (!word)
            return std::nullopt;
        words.push_back(*word);
    }
    return words;
}

// The words of an opened message; nothing when the number is too large for one.
std::optional<std::array<quint32, c_nMessageWords>> MessageWords(const BIGNUM* pNumber) {
    constexpr int c_nBytes = c_nMessageWords * 4;
    std::array<uchar, c_nBytes> bytes{};
    if (BN_bn2lebinpad(pNumber, bytes.data(), c_nBytes) != c_nBytes)
        return std::nullopt;
    std::array<quint32, c_nMessageWords> words{};
    for (size_t i = 0; i < bytes.size(); ++i)
        words[i / 4] |= static_cast<quint32>(bytes[i]) << (8 * (i % 4));
    return words;
}

} // namespace

QByteArray SignToken(QByteArrayView digest, quint32 nTick, quint32 nRandom, QByteArrayView keyOne,
                     QByteArrayView keyTwo) {
    std::vector<quint32> words;
    qsizetype nAt = 0;
    for (const qsizetype nLength : c_pieceLengths) {
        const qsizetype nFrom = std::min(nAt, digest.size());
        words.push_back(
            digest.sliced(nFrom, std::min(nLength, digest.size() - nFrom)).toByteArray().toUInt(nullptr, 16));
        nAt += nLength;
    }
    words.push_back(nTick);
    words.push_back(nRandom);

    const Context context = NewContext();
    const Key key = MakeKey(keyOne, keyTwo, context.get());
    // Two equal primes have no Chinese remainders, and make no key.
    if (BN_cmp(key.p.get(), key.q.get()) == 0)
        return {};
    return TokenText(SecretPower(NumberOfWords(words).get(), key, context.get()).get());
}

std::optional<OpenedToken> OpenToken(QByteArrayView token, QByteArrayView keyOne, QByteArrayView keyTwo) {
    const auto tokenWords = WordsOfToken(token);
    if (!tokenWords)
        return std::nullopt;
    const Context context = NewContext();
    const Key key = MakeKey(keyOne, keyTwo, context.get());
    const Number number = NumberOfWords(*tokenWords);
    if (BN_cmp(number.get(), key.modulus.get()) >= 0)
        return std::nullopt;
    const Number message = NewNumber();
    BN_mod_exp(message.get(), number.get(), key.exponent.get(), key.modulus.get(), context.get());
    const auto words = MessageWords(message.get());
    if (!words)
        return std::nullopt;
    for (size_t i = 0; i < c_pieceLengths.size(); ++i) {
        if ((quint64{(*words)[i]} >> (4 * static_cast<quint64>(c_pieceLengths[i]))) != 0)
            return std::nullopt;
    }
    OpenedToken opened;
    std::array<char, 33> digest{};
    std::snprintf(digest.data(), digest.size(), "%07x%07x%07x%07x%04x", (*words)[0], (*words)[1], (*words)[2],
                  (*words)[3], (*words)[4]);
    opened.digest = QByteArray(digest.data());
    opened.nTick = (*words)[5];
    opened.nRandom = (*words)[6];
    return opened;
}
