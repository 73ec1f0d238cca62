#pragma once

#include <QtGlobal>

#include <openssl/bn.h>

#include <memory>

/// The library's numbers, freed and wiped by themselves. Whoever includes this links the library.
namespace BigNumber {

struct Free {
    void operator()(BIGNUM* p) const { BN_clear_free(p); }
    void operator()(BN_CTX* p) const { BN_CTX_free(p); }
    void operator()(BN_MONT_CTX* p) const { BN_MONT_CTX_free(p); }
};
using Number = std::unique_ptr<BIGNUM, Free>;
using Context = std::unique_ptr<BN_CTX, Free>;
using Reduction = std::unique_ptr<BN_MONT_CTX, Free>;

inline Number NewNumber(BN_ULONG nValue = 0) {
    Number number(BN_new());
    Q_CHECK_PTR(number.get());
    BN_set_word(number.get(), nValue);
    return number;
}

inline Context NewContext() {
    Context context(BN_CTX_new());
    Q_CHECK_PTR(context.get());
    return context;
}

} // namespace BigNumber
