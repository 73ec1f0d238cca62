#include "companions/fetch/FetchRun.h"
#include "companions/fetch/Texts.h"
#include "companions/fetch/ui/FetchWindow.h"
#include "foundation/SysInfo.h"
#include "platform/base/NativePath.h"

#include <QApplication>
#include <QIcon>
#include <QMessageBox>
#include <QPushButton>
#include <QTextStream>

#include <chrono>
#include <future>

namespace {

constexpr int c_nDone = 0;
constexpr int c_nFailed = 1;
constexpr auto c_lineEvery = std::chrono::seconds(1);

bool HasScreen() {
    for (const char* szVariable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
        if (!qEnvironmentVariableIsEmpty(szVariable))
            return true;
    }
    return false;
}

QIcon ProgramIcon() {
    const QString strFolder = Platform::ToNativeExact(CSysInfo::Instance().GetSysDataFolder(true) +
                                                      QStringLiteral("Images\\Resource\\"));
    QIcon icon;
    for (const int nSize : {16, 32, 48})
        icon.addFile(strFolder + QStringLiteral("128-%1.png").arg(nSize), QSize(nSize, nSize));
    return icon;
}

FetchRequest ReadArguments() {
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 2)
        throw Torvane::CRunException(FetchText::c_strUsage);
    return ReadFetchArgument(arguments[1]);
}

void SayFault(const QString& strMessage) {
    QTextStream(stderr) << strMessage << Qt::endl;
}

int RunInWindow() {
    try {
        CFetchWindow window(ReadArguments());
        return window.exec() == QDialog::Accepted ? c_nDone : c_nFailed;
    } catch (const Torvane::CException& failure) {
        SayFault(failure.GetMessage());
        QMessageBox box(QMessageBox::Critical, FetchText::c_strTitle, failure.GetMessage());
        box.setTextFormat(Qt::PlainText);
        box.addButton(FetchText::c_strClose, QMessageBox::RejectRole);
        box.exec();
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
        SayFault(outcome.strText);
    } catch (const Torvane::CException& failure) {
        SayFault(failure.GetMessage());
    }
    return c_nFailed;
}

} // namespace

int main(int argc, char** argv) {
    if (!HasScreen()) {
        const QCoreApplication application(argc, argv);
        return RunInTerminal();
    }
    const QApplication application(argc, argv);
    QApplication::setWindowIcon(ProgramIcon());
    return RunInWindow();
}
