#include "app/ui/AboutDialog.h"

#include "app/Texts.h"
#include "foundation/SysInfo.h"
#include "platform/ui/Pictures.h"

#include <QLabel>

namespace {

constexpr int c_nSplashPicture = 369;

/// The version as four numbers.
QString BuildNumber() {
    QStringList numbers = QStringLiteral(VOREL_VERSION).split(QLatin1Char('.'));
    while (numbers.size() < 4)
        numbers.append(QStringLiteral("0"));
    return numbers.mid(0, 4).join(QLatin1Char('.'));
}

} // namespace

CAboutDialog::CAboutDialog(QWidget* pParent) : QDialog(pParent) {
    setObjectName(QStringLiteral("CAboutDialog"));
    setWindowTitle(AppTexts::c_strAboutTitle);
    auto* pPicture = new QLabel(this);
    pPicture->setPixmap(Pictures::Resource(CSysInfo::Instance().GetSysDataFolder(false), c_nSplashPicture));
    pPicture->adjustSize();
    setFixedSize(pPicture->size().expandedTo(QSize(320, 160)));
    auto* pBuild = new QLabel(AppTexts::c_strBuild.arg(BuildNumber()), this);
    pBuild->setObjectName(QStringLiteral("build"));
    pBuild->setStyleSheet(QStringLiteral("color: white"));
    pBuild->adjustSize();
    pBuild->move(16, height() - pBuild->height() - 12);
}

void CAboutDialog::mousePressEvent(QMouseEvent* /*pEvent*/) {
    accept();
}
