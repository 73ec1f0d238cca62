// Bytes from the wire and from damaged stores: decoding never fails badly, and what encodes decodes.
#include "foundation/Ciphers.h"
#include "foundation/CodePage.h"
#include "foundation/Token.h"
#include "tests/support/FuzzCheck.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    const QByteArray bytes = FuzzBytes(pData, nSize);
    const QByteArray key = bytes.left(static_cast<qsizetype>(nSize) % 20);

    Check(DecodeHex(EncodeHex(bytes)) == bytes);
    Check(DecodeHex(bytes).size() == bytes.size() / 2);
    Check(DecryptDes(EncryptDes(bytes, key), key).left(bytes.size()) == bytes);
    DecryptDesHex(bytes, key);
    Check(UnscrambleBytes(ScrambleBytes(bytes, 7), 7) == bytes);
    Check(EncodeBase64Paren(bytes).size() == (bytes.size() + 2) / 3 * 4);

    const QString strText = CodePage::Decode(bytes);
    Check(CodePage::Decode(CodePage::Encode(strText)) == strText);
    Check(CodePage::ByteLength(CodePage::Cut(strText, 10)) <= 10);

    // A fixed key, since making one takes longer than everything else here.
    const auto opened = OpenToken(bytes, "7f3c90be12d4a8", "c05519ee02b67d");
    if (opened)
        Check(opened->digest.size() == 32);
    return 0;
}
