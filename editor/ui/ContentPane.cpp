#include "editor/ui/ContentPane.h"

#include "content/Texts.h"
#include "editor/NodeFile.h"
#include "editor/Texts.h"
#include "editor/ui/ContentWindow.h"
#include "editor/ui/OfferBar.h"
#include "platform/base/FileOpening.h"
#include "platform/base/NativePath.h"
#include "platform/ui/AccessRules.h"
#include "platform/ui/MediaKinds.h"
#include "platform/ui/MediaView.h"
#include "platform/ui/QtPeople.h"
#include "platform/ui/SurfaceUrls.h"
#include "platform/ui/ThreadHeld.h"
#include "platform/ui/WebBrowser.h"

#include <QPointer>
#include <QStackedWidget>
#include <QTimer>
#include <QUrl>
#include <QVBoxLayout>

namespace {

constexpr int c_nRetryMs = 200;
const QLatin1StringView c_strBlank("about:blank");

} // namespace

CContentPane::CContentPane(QWidget* pParent)
    : QWidget(pParent), m_pStack(new QStackedWidget(this)), m_pBrowser(new CWebBrowser2Ex(m_pStack)),
      m_pOffer(new COfferBar(this)) {
    setObjectName(QStringLiteral("contentPane"));
    m_pBrowser->setObjectName(QStringLiteral("content"));
    m_pBrowser->setAccessibleName(EditorTexts::c_strContent);
    m_pStack->addWidget(m_pBrowser);
    auto* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->setSpacing(0);
    pLayout->addWidget(m_pOffer);
    pLayout->addWidget(m_pStack, 1);
    setFocusProxy(m_pBrowser);
    m_pOffer->Serve(*m_pBrowser);
    connect(m_pOffer, &COfferBar::FileWanted, this, &CContentPane::OpenForPage);
    connect(m_pOffer, &COfferBar::NotOpened, this, &CContentPane::SayNotOpened);
    // The engine has looked into a file of a kind that nobody knows.
    connect(m_pBrowser, &CWebBrowser2Ex::FileNotShown, this, [this](const QString& strPath) {
        if (!m_bCleared && strPath == m_strShownPath)
            ShowAsFile(strPath);
    });
}

void CContentPane::Show(const QString& strTarget, const QStringList& allowedFolders, bool bNetwork) {
    m_pOffer->hide();
    m_bCleared = false;
    m_allowedFolders = allowedFolders;
    m_strTarget = strTarget;
    const QString strPath = SurfaceUrls::UrlToPath(SurfaceUrls::EngineUrl(strTarget));
    m_strShownPath = strPath;
    if (!strPath.isEmpty() && MediaKinds::OfFile(strPath).Way != MediaKinds::EWay::Browser) {
        ShowAsFile(strPath);
        return;
    }
    m_pStack->setCurrentWidget(m_pBrowser);
    setFocusProxy(m_pBrowser);
    m_pBrowser->SetAllowedFolders(allowedFolders, false);
    m_pBrowser->SetNetworkAllowed(bNetwork);
    const QPointer<CContentPane> pSelf(this);
    m_pBrowser->NavigateAndWait(strTarget);
    // Also a page of the web: not every one can be used here.
    if (pSelf != nullptr && !m_bCleared && m_strTarget == strTarget &&
        CAccessRules::IsForDesktop(QUrl(strTarget)))
        m_pOffer->OfferToStay(strTarget);
}

void CContentPane::ShowAsFile(const QString& strPath) {
    if (m_pMedia == nullptr) {
        m_pMedia = new CMediaView(m_pStack);
        m_pStack->addWidget(m_pMedia);
        connect(m_pMedia, &CMediaView::OpenOutside, this, &CContentPane::OpenInProgram);
        connect(m_pMedia, &CMediaView::CopyWanted, this, &CContentPane::SaveCopy);
    }
    m_pStack->setCurrentWidget(m_pMedia);
    setFocusProxy(m_pMedia);
    m_pMedia->ShowFile(strPath, m_strFileName);
    // The page of before is out of sight, not yet out of hearing.
    ClearPage();
}

void CContentPane::Clear() {
    m_bCleared = true;
    m_pOffer->hide();
    // What comes next may not be a film.
    m_pStack->setCurrentWidget(m_pBrowser);
    if (m_pMedia != nullptr)
        m_pMedia->Clear();
    ClearPage();
}

/// Loading waits, so that it is done from the event loop, and when no other surface is waiting.
void CContentPane::ClearPage() {
    QString strUrl;
    const bool bIdle = m_bCleared || m_pStack->currentWidget() != m_pBrowser;
    if (!bIdle || !m_pBrowser->GetURL(strUrl) || strUrl == c_strBlank)
        return;
    if (IsThreadHeld())
        QTimer::singleShot(c_nRetryMs, this, &CContentPane::ClearPage);
    else
        m_pBrowser->NavigateAndWait(c_strBlank);
}

void CContentPane::OpenForPage(const QString& strUrl) {
    if (!m_bCleared)
        CContentWindow::OpenForPage(m_strTitle, strUrl, m_allowedFolders, window());
}

void CContentPane::OpenInProgram(const QString& strPath) {
    if (!Platform::OpenWithVerb(strPath))
        SayNotOpened(Platform::ToShown(strPath));
}

// By value: another file may show behind the box.
void CContentPane::SaveCopy(QString strPath, QString strName) {
    CQtPeople people;
    people.SetParent(this);
    NodeFile::SaveCopy(strPath, strName, people);
}

void CContentPane::SayNotOpened(const QString& strWhat) {
    CQtPeople people;
    people.SetParent(this);
    people.Error(ContentText::c_strFileNotOpened.arg(strWhat));
}
