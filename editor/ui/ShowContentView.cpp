#include "editor/ui/ShowContentView.h"

#include "content/InSiteLink.h"
#include "editor/DisplayRules.h"
#include "editor/NodeFile.h"
#include "editor/ui/ContentPane.h"
#include "editor/ui/ContentWindow.h"
#include "editor/ui/ShowFailure.h"
#include "foundation/SysInfo.h"
#include "platform/ui/MediaKinds.h"

#include <QHideEvent>
#include <QPointer>
#include <QTimer>
#include <QVBoxLayout>

CShowContentView::CShowContentView(INodeViewHost& host, QWidget* pParent)
    : CBookShowView(host, pParent), m_pPane(new CContentPane(this)) {
    setObjectName(QStringLiteral("CShowContentView"));
    auto* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->addWidget(m_pPane);
}

QStringList CShowContentView::AllowedFolders() const {
    return {m_pNode->GetCourse().GetPaths().GetCourseFolder(false),
            CSysInfo::Instance().GetSysDataFolder(false)};
}

void CShowContentView::ShowNode() {
    if (m_pNode != nullptr)
        ShowFailure(this, [this] { ShowContent(); });
}

/// The pane would stay empty for a file that neither browser nor player shows: it goes back to what else can
/// be done with the file.
void CShowContentView::ShowFile(EViewKind kind) {
    CBookNode* const pNode = m_pNode;
    const QPointer<CShowContentView> pSelf(this);
    if (m_pViewParam == ContentCode::c_nDownload) {
        CQtPeople people;
        people.SetParent(this);
        NodeFile::SaveCopy(*pNode, people);
    }
    if (pSelf != nullptr && m_pNode == pNode)
        m_host.ShowNodeView(kind, pNode);
}

void CShowContentView::ShowContent() {
    const EViewKind kind = KindView(*m_pNode);
    // A film is played, and the pane has a button that saves it.
    if (kind == EViewKind::ToolButtons && m_pNode->GetType() == NodeType::c_nExternalFile &&
        MediaKinds::OfFile(m_pNode->GetContentPath()).Way != MediaKinds::EWay::Player) {
        ShowFile(kind);
        return;
    }
    const auto [strTarget, bNetwork] = InSiteLink::AddressOf(*m_pNode);
    const QString strFileName = m_pNode->GetCourse().GetDatabase()->GetFileName(m_pNode->GetId());
    if (const auto form = DisplayRules::WindowFormOf(m_pNode->GetOpenType())) {
        const QStringList folders = AllowedFolders();
        const QString strTitle = m_pNode->GetTitle();
        m_host.ShowNodeView(EViewKind::Prompt, m_pNode, PromptCode::c_nNewWindow);
        CContentWindow::Open({strTitle, strFileName}, strTarget, folders, bNetwork, *form, window());
        return;
    }
    m_pPane->SetNames(m_pNode->GetTitle(), strFileName);
    m_pPane->Show(strTarget, AllowedFolders(), bNetwork);
}

void CShowContentView::hideEvent(QHideEvent* pEvent) {
    CBookShowView::hideEvent(pEvent);
    // Not when the whole window is minimised.
    if (pEvent->spontaneous())
        return;
    QTimer::singleShot(0, this, [this] {
        if (!isVisible())
            m_pPane->Clear();
    });
}
