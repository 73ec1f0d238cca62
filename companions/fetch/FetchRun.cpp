#include "companions/fetch/FetchRun.h"

#include "companions/fetch/Texts.h"

#include <QLocale>

#include <exception>

FetchOutcome RunFetch(const FetchRequest& request, FetchProgress& progress, const FetchLimits& limits) {
    using EEnd = FetchOutcome::EEnd;
    try {
        const int nFiles = FetchTemplate(request, progress, limits);
        return {EEnd::Done, FetchText::c_strDone.arg(request.TemplateName, QString::number(nFiles))};
    } catch (const CFetchCancelled& cancelled) {
        return {EEnd::Cancelled, cancelled.GetMessage()};
    } catch (const Torvane::CException& failure) {
        return {EEnd::Failed, FetchText::c_strFailed.arg(failure.GetMessage())};
    } catch (const std::exception& failure) {
        const QString strWhat = FetchText::c_strUnexpected.arg(QString::fromLocal8Bit(failure.what()));
        return {EEnd::Failed, FetchText::c_strFailed.arg(strWhat)};
    }
}

QString DescribeProgress(const FetchProgress& progress) {
    const auto size = [](qint64 nBytes) {
        return QLocale::c().formattedDataSize(nBytes, 1, QLocale::DataSizeTraditionalFormat);
    };
    if (progress.Stage == FetchProgress::EStage::Replacing)
        return FetchText::c_strReplacing;
    if (progress.bCancelled)
        return FetchText::c_strCancelling;
    if (progress.Stage == FetchProgress::EStage::Unpacking)
        return FetchText::c_strUnpacking.arg(progress.nFiles);
    if (progress.Stage == FetchProgress::EStage::Connecting)
        return FetchText::c_strConnecting;
    return progress.nTotal > 0
               ? FetchText::c_strReceivedOf.arg(size(progress.nReceived), size(progress.nTotal))
               : FetchText::c_strReceived.arg(size(progress.nReceived));
}
