#include "server/HttpTransfer.h"

#include "foundation/Exceptions.h"
#include "platform/base/Module.h"
#include "server/Texts.h"

#include <chrono>
#include <future>

namespace Torvane::Net {

namespace {

constexpr std::chrono::milliseconds c_wait(20);

struct LoadedModule {
    TransferFunction pRun = nullptr;
    QString strReason;
};

LoadedModule Load(Platform::CModule module) {
    const auto pRun = reinterpret_cast<TransferFunction>(module.Load(c_szTransferFunction));
    if (pRun) {
        TransferReply reply;
        QString strError;
        pRun({}, {}, reply, strError);
    }
    return {pRun, module.Reason()};
}

/// From a slow disk the library with all that it needs takes a while, so that the windows are painted
/// meanwhile.
TransferFunction Library(const CHttpClient::WaitStep& waitStep) {
    static const std::shared_future<LoadedModule> s_loading =
        std::async(std::launch::async, &Load, Platform::CModule(QStringLiteral("vorelhttp"))).share();
    while (s_loading.wait_for(c_wait) != std::future_status::ready) {
        if (waitStep && !waitStep())
            throw CCancelledException(ServerText::c_strGivenUp);
    }
    if (!s_loading.get().pRun)
        throw CHttpClientException(ServerText::c_strNoTransfer.arg(s_loading.get().strReason));
    return s_loading.get().pRun;
}

} // namespace

TransferReply RunTransfer(const TransferRequest& request, const CHttpClient::WaitStep& waitStep) {
    TransferReply reply;
    QString strError;
    bool bGivenUp = false;
    const auto step = [&] {
        bGivenUp = waitStep && !waitStep();
        return !bGivenUp;
    };
    Library(waitStep)(request, step, reply, strError);
    if (bGivenUp)
        throw CCancelledException(strError);
    // An interim reply that no other one follows is the server's answer.
    const bool bInterimAlone = reply.bHeadersEnded && ParseStatus(reply.Headers) / 100 == 1;
    if (!strError.isEmpty() && !bInterimAlone)
        throw CHttpClientException(strError);
    return reply;
}

} // namespace Torvane::Net
