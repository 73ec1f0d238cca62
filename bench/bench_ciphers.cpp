// Deciphering a course's titles against a bare loop of the library over the same bytes.
#include "bench/Rounds.h"
#include "foundation/Ciphers.h"
#include "foundation/CodePage.h"

#define OPENSSL_SUPPRESS_DEPRECATED
#include <openssl/des.h>

#include <QList>
#include <QString>

#include <cstring>

namespace {

constexpr int c_nTitles = 10000;

} // namespace

int main() {
    const QByteArray keyText = "0123456789abcdef";
    QList<QByteArray> titles;
    QList<QByteArray> bytes;
    for (int i = 0; i < c_nTitles; ++i) {
        titles.append(
            EncryptDesHex(CodePage::Encode(QStringLiteral("第%1章 课程标题的文字").arg(i)), keyText));
        bytes.append(DecodeHex(titles.last()));
    }

    DES_cblock keys[2];
    std::memcpy(keys, keyText.constData(), sizeof keys);
    DES_key_schedule first;
    DES_key_schedule second;
    DES_set_key_unchecked(&keys[0], &first);
    DES_set_key_unchecked(&keys[1], &second);

    qsizetype nOurs = 0;
    unsigned nTheirs = 0;
    const auto ours = [&] {
        const CDesKey key(keyText);
        for (const QByteArray& title : titles)
            nOurs += key.DecryptHex(title).size();
    };
    const auto theirs = [&] {
        for (const QByteArray& title : bytes) {
            for (qsizetype i = 0; i < title.size(); i += 8) {
                DES_cblock in;
                DES_cblock out;
                std::memcpy(in, title.constData() + i, sizeof in);
                DES_ecb2_encrypt(&in, &out, &first, &second, DES_DECRYPT);
                nTheirs += out[0];
            }
        }
    };
    const bool bKept = Run({"10,000 titles deciphered", 1.5, ours, theirs, {}, 21});
    // The sums keep the compiler from dropping the work.
    return bKept && nOurs > 0 && nTheirs > 0 ? 0 : 1;
}
