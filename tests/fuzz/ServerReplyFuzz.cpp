// What a server may send: the headers up to the first zero byte, the body behind it.
#include "foundation/Exceptions.h"
#include "server/HttpMessage.h"
#include "server/Protocol.h"
#include "server/TemplateDownload.h"
#include "tests/support/FuzzCheck.h"

namespace {

template <typename Step>
void Tolerate(Step step) {
    try {
        step();
    } catch (const Torvane::CRunException& failure) {
        Check(!failure.GetMessage().isEmpty());
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    const QByteArray input = FuzzBytes(pData, nSize);
    const qsizetype nZero = input.indexOf('\0');
    const QByteArray headers = nZero < 0 ? input : input.first(nZero);
    const QByteArray body = nZero < 0 ? input : input.sliced(nZero + 1);

    const Protocol::ReplyState state = Protocol::ParseReplyState(headers);
    Check(!state.strOperation.isEmpty() || (!state.bSuccessful && state.nErrorCode == 128));
    Torvane::Net::ParseStatus(headers);
    Torvane::Net::ParseContentLength(headers);
    Tolerate([&] { Protocol::ParseCourseList(body); });
    Tolerate([&] { Protocol::ParsePasswordReply(body); });
    Tolerate([&] {
        const Torvane::Net::HttpUrl url = Torvane::Net::SplitUrl(input);
        Check(url.strPath.startsWith('/') && url.strPath.size() <= 1024 && !url.strPath.contains('\n') &&
              !url.strPath.contains('\r') && !url.strHost.isEmpty() && url.nPort != 0);
    });
    CTemplateDownload::SplitNames(QString::fromLatin1(body));
    return 0;
}
