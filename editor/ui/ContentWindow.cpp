#include "editor/ui/ContentWindow.h"

#include "platform/ui/WebBrowser.h"

#include <QKeyEvent>
#include <QVBoxLayout>

namespace {
constexpr QSize c_normalSize(900, 650);
}

CContentWindow::CContentWindow(QWidget* pOpener)
    : QWidget(pOpener, Qt::Window), m_pBrowser(new CWebBrowser2Ex(this)) {
    setObjectName(QStringLiteral("contentWindow"));
    setAttribute(Qt::WA_DeleteOnClose);
    m_pBrowser->setObjectName(QStringLiteral("content"));
    auto* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->addWidget(m_pBrowser);
    resize(c_normalSize);
}

void CContentWindow::Open(const QString& strTitle, const QString& strTarget,
                          const QStringList& allowedFolders, bool bNetwork, DisplayRules::EWindowForm form,
                          QWidget* pOpener) {
    auto* pWindow = new CContentWindow(pOpener);
    pWindow->setWindowTitle(strTitle);
    switch (form) {
    case DisplayRules::EWindowForm::Normal:
        pWindow->show();
        break;
    case DisplayRules::EWindowForm::Maximised:
        pWindow->showMaximized();
        break;
    case DisplayRules::EWindowForm::FullScreen:
        pWindow->showFullScreen();
        break;
    }
    pWindow->m_pBrowser->SetAllowedFolders(allowedFolders, false);
    pWindow->m_pBrowser->SetNetworkAllowed(bNetwork);
    // Nothing of the window is touched behind this: it may be gone.
    pWindow->m_pBrowser->NavigateAndWait(strTarget);
}

void CContentWindow::keyPressEvent(QKeyEvent* pEvent) {
    // A full screen without a frame needs a way out that doesn't depend on the desktop.
    if (pEvent->key() == Qt::Key_Escape && isFullScreen())
        close();
    else
        QWidget::keyPressEvent(pEvent);
}
