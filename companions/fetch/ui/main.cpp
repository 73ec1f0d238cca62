#include "companions/common/ui/Program.h"
#include "companions/fetch/FetchRun.h"
#include "companions/fetch/Texts.h"
#include "companions/fetch/ui/FetchWindow.h"

#include <QApplication>
#include <QTextStream>

#include <chrono>
#include <future>

namespace {

constexpr int c_nDone = 0;
constexpr int c_nFailed = 1;
constexpr auto c_lineEvery = std::chrono::seconds(1);

FetchRequest ReadArguments() {
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 2)
        throw Torvane::CRunException(FetchText::c_strUsage);
    return ReadFetchArgument(arguments[1]);
}

int RunInWindow() {
    try {
        CFetchWindow window(ReadArguments());
        return window.exec() == QDialog::Accepted ? c_nDone : c_nFailed;
    } catch (const Torvane::CException& failure) {
        CompanionProgram::ShowFault(FetchText::c_strTitle, failure.GetMessage());
        return c_nFailed;
    }
}

int RunInTerminal() {
    FetchProgress progress;
    QTextStream out(stdout);
    try {
        const FetchRequest request = ReadArguments();
        out << FetchText::c_strFetching.arg(request.TemplateName) << Qt::endl;
        auto run = std::async(std::launch::async, [&] { return RunFetch(request, progress); });
        QString strLast;
        while (run.wait_for(c_lineEvery) != std::future_status::ready) {
            const QString strLine = DescribeProgress(progress);
            if (strLine != strLast)
                out << strLine << Qt::endl;
            strLast = strLine;
        }
        const FetchOutcome outcome = run.get();
        if (outcome.eEnd == FetchOutcome::EEnd::Done) {
            out << outcome.strText << Qt::endl;
            return c_nDone;
        }
        CompanionProgram::SayFault(outcome.strText);
    } catch (const Torvane::CException& failure) {
        CompanionProgram::SayFault(failure.GetMessage());
    }
    return c_nFailed;
}

} // namespace

int main(int argc, char** argv) {
    if (!CompanionProgram::HasScreen()) {
        const QCoreApplication application(argc, argv);
        return RunInTerminal();
    }
    const QApplication application(argc, argv);
    CompanionProgram::PrepareWindows();
    return RunInWindow();
}
