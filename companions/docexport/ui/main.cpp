#include "companions/docexport/DocExport.h"
#include "companions/docexport/Texts.h"
#include "companions/docexport/ui/ExportWindow.h"
#include "companions/docexport/ui/PictureFiles.h"
#include "foundation/SysInfo.h"
#include "platform/base/NativePath.h"

#include <QApplication>
#include <QFileInfo>
#include <QIcon>
#include <QLibraryInfo>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>
#include <QTextStream>
#include <QTranslator>

#include <algorithm>
#include <memory>

namespace {

constexpr int c_nDone = 0;
constexpr int c_nFailed = 1;
constexpr char c_silent[] = "--silent";

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

PictureTaker TakerFor(const QString& strFolder) {
    auto pPictures = std::make_shared<CPictureFiles>(strFolder);
    return [pPictures](const QString& strPath) { return pPictures->Take(strPath); };
}

void SayFault(const QString& strMessage) {
    QTextStream(stderr) << strMessage << Qt::endl;
}

int RunSilently(QStringList arguments) {
    arguments.removeAll(QLatin1String(c_silent));
    if (arguments.isEmpty() || arguments.size() > 2) {
        SayFault(DocText::c_strUsage);
        return c_nFailed;
    }
    const QString strProject = ReadProjectArgument(arguments[0]);
    const QString strTarget =
        arguments.size() > 1 ? QFileInfo(arguments[1]).absoluteFilePath() : DefaultTarget(strProject);
    DocProgress progress;
    const DocOutcome outcome = ExportDocument({strProject, strTarget}, TakerFor, progress);
    if (outcome.End != DocOutcome::EEnd::Done) {
        SayFault(outcome.Text);
        return c_nFailed;
    }
    QTextStream out(stdout);
    for (const QString& strNote : outcome.Notes)
        out << strNote << '\n';
    out << outcome.Text << Qt::endl;
    return c_nDone;
}

int RunInWindow(const QStringList& arguments) {
    try {
        if (arguments.size() != 1)
            throw Torvane::CRunException(DocText::c_strUsage);
        const QString strProject = ReadProjectArgument(arguments[0]);
        CExportWindow window(strProject, NameOfCourse(strProject), TakerFor);
        return window.exec() == QDialog::Accepted ? c_nDone : c_nFailed;
    } catch (const Torvane::CException& failure) {
        SayFault(failure.GetMessage());
        QMessageBox box(QMessageBox::Critical, DocText::c_strTitle, failure.GetMessage());
        box.setTextFormat(Qt::PlainText);
        box.setWindowFlag(Qt::WindowStaysOnTopHint);
        box.addButton(DocText::c_strClose, QMessageBox::RejectRole);
        box.exec();
        return c_nFailed;
    }
}

} // namespace

int main(int argc, char** argv) {
    const bool bSilent = std::any_of(
        argv + 1, argv + argc, [](const char* szArgument) { return qstrcmp(szArgument, c_silent) == 0; });
    if (bSilent || !HasScreen()) {
        const QCoreApplication application(argc, argv);
        return RunSilently(QCoreApplication::arguments().mid(1));
    }
    const QApplication application(argc, argv);
    // The file dialog and the buttons of questions.
    QTranslator chinese;
    if (chinese.load(QLocale(QLocale::Chinese, QLocale::China), QStringLiteral("qtbase"), QStringLiteral("_"),
                     QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&chinese);
    QApplication::setWindowIcon(ProgramIcon());
    return RunInWindow(QCoreApplication::arguments().mid(1));
}
