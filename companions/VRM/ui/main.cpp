#include "companions/VRM/RecorderRequest.h"
#include "companions/VRM/Texts.h"
#include "companions/VRM/ui/RecorderWindow.h"
#include "companions/common/ui/Program.h"
#include "foundation/Exceptions.h"
#include "foundation/Paths.h"
#include "foundation/SysInfo.h"
#include "platform/base/Process.h"

#include <QApplication>

int main(int argc, char** argv) {
    constexpr int c_nFailed = 1;
    if (!CompanionProgram::HasScreen()) {
        CompanionProgram::SayFault(RecorderText::c_strUsage);
        return c_nFailed;
    }
    const QApplication application(argc, argv);
    // Its data is the application's, in the folder above.
    using Torvane::File::ParentFolder;
    CSysInfo::Reset(ParentFolder(ParentFolder(Platform::OwnProgramPath())) +
                    QStringLiteral("\\VorelRecorder"));
    CompanionProgram::PrepareWindows();
    try {
        CRecorderWindow window(ReadRecorderRequest(QCoreApplication::arguments().mid(1)));
        return window.exec() == QDialog::Accepted ? 0 : c_nFailed;
    } catch (const Torvane::CException& failure) {
        CompanionProgram::ShowFault(RecorderText::c_strTitle, failure.GetMessage());
        return c_nFailed;
    }
}
