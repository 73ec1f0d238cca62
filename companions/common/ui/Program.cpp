#include "companions/common/ui/Program.h"

#include "companions/common/ui/Texts.h"
#include "foundation/SysInfo.h"
#include "platform/base/NativePath.h"

#include <QApplication>
#include <QIcon>
#include <QLibraryInfo>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>
#include <QTranslator>

using namespace Qt::StringLiterals;

void CompanionProgram::PrepareWindows() {
    auto* pChinese = new QTranslator(qApp);
    if (pChinese->load(QLocale(QLocale::Chinese, QLocale::China), u"qtbase"_s, u"_"_s,
                       QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(pChinese);
    const QString strFolder =
        Platform::ToNativeExact(CSysInfo::Instance().GetSysDataFolder(true) + u"Images\\Resource\\"_s);
    QIcon icon;
    for (const int nSize : {16, 32, 48})
        icon.addFile(strFolder + u"128-%1.png"_s.arg(nSize), QSize(nSize, nSize));
    QApplication::setWindowIcon(icon);
}

void CompanionProgram::ShowFault(const QString& strTitle, const QString& strMessage) {
    SayFault(strMessage);
    QMessageBox box(QMessageBox::Critical, strTitle, strMessage);
    box.setTextFormat(Qt::PlainText);
    box.setWindowFlag(Qt::WindowStaysOnTopHint);
    box.addButton(CompanionText::c_strClose, QMessageBox::RejectRole);
    box.exec();
}
