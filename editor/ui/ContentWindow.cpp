#include "editor/ui/ContentWindow.h"

#include "editor/ui/ContentPane.h"
#include "platform/ui/MediaKinds.h"
#include "platform/ui/SurfaceUrls.h"
#include "platform/ui/ThreadHeld.h"

#include <QScreen>
#include <QShortcut>
#include <QTimer>
#include <QUrl>
#include <QVBoxLayout>

namespace {
constexpr QSize c_normalSize(900, 650);
constexpr int c_nRetryMs = 100;

/// All of them hang on the main window, whichever a page of theirs stands in.
QWidget* MainWindowOf(QWidget* pWindow) {
    while (pWindow->parentWidget() != nullptr)
        pWindow = pWindow->parentWidget()->window();
    return pWindow;
}

} // namespace

CContentWindow::CContentWindow(QWidget* pOpener)
    : QWidget(pOpener, Qt::Window), m_pPane(new CContentPane(this)) {
    setObjectName(QStringLiteral("contentWindow"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowIcon(pOpener->windowIcon());
    auto* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->addWidget(m_pPane);
    const QRect screen = pOpener->screen()->availableGeometry();
    QRect place(QPoint(), c_normalSize.boundedTo(screen.size()));
    place.moveCenter(pOpener->frameGeometry().center());
    setGeometry(place & screen);
    setFocusProxy(m_pPane);
    // A full screen without a frame needs a way out that doesn't depend on the desktop, and on the page.
    for (const QKeySequence& keys : {QKeySequence(Qt::Key_Escape), QKeySequence(Qt::ALT | Qt::Key_F4)}) {
        auto* pLeave = new QShortcut(keys, this);
        connect(pLeave, &QShortcut::activated, this, [this] {
            if (isFullScreen())
                close();
        });
    }
}

void CContentWindow::Open(const Names& names, const QString& strTarget, const QStringList& allowedFolders,
                          bool bNetwork, DisplayRules::EWindowForm form, QWidget* pOpener) {
    auto* pWindow = new CContentWindow(MainWindowOf(pOpener));
    pWindow->setWindowTitle(names.strTitle);
    pWindow->m_pPane->SetNames(names.strTitle, names.strFile);
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
    // Nothing of the window is touched behind this: it may be gone.
    pWindow->Load(strTarget, allowedFolders, bNetwork);
}

void CContentWindow::OpenForPage(const QString& strTitle, const QString& strUrl,
                                 const QStringList& allowedFolders, QWidget* pOpener) {
    const QString strPath = SurfaceUrls::UrlToPath(QUrl(strUrl));
    if (strPath.isEmpty())
        return;
    QWidget* pMain = MainWindowOf(pOpener);
    if (MediaKinds::OfFile(strPath).Way == MediaKinds::EWay::Browser) {
        Open({strTitle, {}}, strUrl, allowedFolders, false, DisplayRules::EWindowForm::Normal, pMain);
        return;
    }
    CContentWindow* pMedia = nullptr;
    for (CContentWindow* pWindow : pMain->findChildren<CContentWindow*>(Qt::FindDirectChildrenOnly)) {
        if (pWindow->m_bMediaOfPage)
            pMedia = pWindow;
    }
    if (pMedia == nullptr) {
        pMedia = new CContentWindow(pMain);
        pMedia->m_bMediaOfPage = true;
    }
    pMedia->setWindowTitle(strTitle);
    pMedia->show();
    pMedia->raise();
    pMedia->activateWindow();
    pMedia->Load(strUrl, allowedFolders, false);
}

/// A surface that waits for its engine would refuse another's page, and the window would stay empty.
void CContentWindow::Load(const QString& strTarget, const QStringList& allowedFolders, bool bNetwork) {
    if (IsThreadHeld())
        QTimer::singleShot(c_nRetryMs, this, [=, this] { Load(strTarget, allowedFolders, bNetwork); });
    else
        m_pPane->Show(strTarget, allowedFolders, bNetwork);
}

void CContentWindow::CloseAll(QWidget* pOpener) {
    for (CContentWindow* pWindow :
         MainWindowOf(pOpener)->findChildren<CContentWindow*>(Qt::FindDirectChildrenOnly))
        pWindow->close();
}
