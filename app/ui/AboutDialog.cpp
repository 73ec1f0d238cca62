#include "app/ui/AboutDialog.h"

#include "app/Texts.h"
#include "foundation/SysInfo.h"
#include "platform/ui/Pictures.h"

#include <QKeyEvent>
#include <QLabel>

namespace {

constexpr int c_nSplashPicture = 369;
constexpr int c_nTextLeft = 38;
constexpr int c_nTextBelow = 32;

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
    pPicture->setObjectName(QStringLiteral("picture"));
    pPicture->setAccessibleName(LoadResString(SharedText::c_nProductTitle));
    pPicture->setPixmap(Pictures::Resource(CSysInfo::Instance().GetSysDataFolder(false), c_nSplashPicture));
    pPicture->setScaledContents(true);
    setFixedSize(pPicture->sizeHint().expandedTo(QSize(320, 160)));
    pPicture->setGeometry(rect());
    auto* pBuild = new QLabel(AppTexts::c_strBuild.arg(BuildNumber()), this);
    pBuild->setObjectName(QStringLiteral("build"));
    QPalette white = pBuild->palette();
    white.setColor(QPalette::WindowText, Qt::white);
    pBuild->setPalette(white);
    // In line with the picture's own texts.
    pBuild->adjustSize();
    pBuild->move(c_nTextLeft, height() - pBuild->height() - c_nTextBelow);
    setAccessibleName(windowTitle());
    setAccessibleDescription(pBuild->text());
}

void CAboutDialog::mousePressEvent(QMouseEvent* /*pEvent*/) {
    accept();
}

// There is no button that the key could press.
void CAboutDialog::keyPressEvent(QKeyEvent* pEvent) {
    if (pEvent->key() == Qt::Key_Return || pEvent->key() == Qt::Key_Enter || pEvent->key() == Qt::Key_Space)
        accept();
    else
        QDialog::keyPressEvent(pEvent);
}
