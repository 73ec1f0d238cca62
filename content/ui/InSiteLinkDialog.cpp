#include "content/ui/InSiteLinkDialog.h"

#include "content/PagePlaces.h"
#include "content/Texts.h"
#include "content/ui/PlaceList.h"
#include "content/ui/TitleDelegate.h"
#include "foundation/Exceptions.h"
#include "foundation/Paths.h"
#include "foundation/SysInfo.h"
#include "platform/base/NativePath.h"
#include "platform/ui/DialogParts.h"
#include "platform/ui/MediaKinds.h"
#include "platform/ui/QtPeople.h"
#include "platform/ui/SurfaceUrls.h"
#include "platform/ui/ThreadHeld.h"
#include "platform/ui/WebBrowser.h"

#include <QFrame>
#include <QFuture>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPromise>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QShortcut>
#include <QSplitter>
#include <QThreadPool>
#include <QTreeView>
#include <QVBoxLayout>

#include <utility>

using namespace Torvane::Dialog::MFC;

namespace {

constexpr QSize c_imageSize(18, 18);
// In lines of text, so that larger letters get a larger dialog.
constexpr QSize c_sizeInLines(60, 42);
constexpr int c_nTreeLines = 16;
constexpr int c_nPlaceLines = 12;
/// A page may move as often as it likes; the line follows at this pace.
constexpr int c_nFollowMs = 100;
/// While another surface waits for its engine.
constexpr int c_nRetryMs = 50;

/// A selected line shines over the whole pane, and stays where it was scrolled to sideways.
class CNodesView : public QTreeView {
public:
    using QTreeView::QTreeView;
    void scrollTo(const QModelIndex& index, ScrollHint hint) override {
        const int nBefore = horizontalScrollBar()->value();
        QTreeView::scrollTo(index, hint);
        horizontalScrollBar()->setValue(nBefore);
    }

protected:
    void resizeEvent(QResizeEvent* pEvent) override {
        header()->setMinimumSectionSize(viewport()->width());
        QTreeView::resizeEvent(pEvent);
    }
};

} // namespace

CInSiteLinkDialog::CInSiteLinkDialog(const CBookNode& self, IPeople& people, QWidget* pParent,
                                     const QString& strPresent)
    : QDialog(pParent), m_people(people), m_nSelf(self.GetId()),
      m_selection(
          &m_tree, [this](const QModelIndex& index) { return !IsHeadItem(m_tree.LineOf(index)); },
          [this] { OnSelected(); }) {
    m_tree.Load(self.GetCourse());
    setObjectName(QStringLiteral("CInSiteLinkDialog"));
    setWindowTitle(ContentText::c_strInSiteLinkDialog);
    m_toShow.setSingleShot(true);
    connect(&m_toShow, &QTimer::timeout, this, [this] { Guarded([this] { ShowPreview(); }); });
    m_toFollow.setSingleShot(true);
    m_toFollow.setInterval(c_nFollowMs);
    connect(&m_toFollow, &QTimer::timeout, this, &CInSiteLinkDialog::Follow);
    m_toOpen.setSingleShot(true);
    connect(&m_toOpen, &QTimer::timeout, this, &CInSiteLinkDialog::OpenHere);
    m_toGo.setSingleShot(true);
    connect(&m_toGo, &QTimer::timeout, this, &CInSiteLinkDialog::GoToChosen);
    m_toAccept.setSingleShot(true);
    connect(&m_toAccept, &QTimer::timeout, this, &CInSiteLinkDialog::accept);
    m_pTree = MakeTree();
    m_pPreview = MakePreview();
    m_pPlaces = MakePlaces();
    LayOut();
    m_pPreview->SetAllowedFolders(
        {self.GetCourse().GetPaths().GetCourseFolder(false), CSysInfo::Instance().GetSysDataFolder(false)},
        false);
    SelectFirst(strPresent);
}

CInSiteLinkDialog::~CInSiteLinkDialog() {
    // Model and selection go before the window that shows them.
    m_pTree->disconnect(this);
    m_pTree->setModel(nullptr);
}

QTreeView* CInSiteLinkDialog::MakeTree() {
    auto* pTree = DialogParts::Named<QTreeView>(new CNodesView(this), "nodes", ContentText::c_strTreeName);
    pTree->setModel(&m_tree);
    const std::unique_ptr<QItemSelectionModel> pToolkitsOwn(pTree->selectionModel());
    pTree->setSelectionModel(&m_selection);
    pTree->setHeaderHidden(true);
    pTree->header()->setStretchLastSection(false);
    pTree->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    pTree->setUniformRowHeights(true);
    pTree->setIconSize(c_imageSize);
    pTree->setEditTriggers(QAbstractItemView::NoEditTriggers);
    // A click has opened the branch already.
    pTree->setExpandsOnDoubleClick(false);
    pTree->setItemDelegate(new CTitleDelegate(CSysInfo::Instance().GetSysDataFolder(false), pTree,
                                              TreeImage::c_choiceResources));
    connect(pTree, &QTreeView::expanded, this,
            [this](const QModelIndex& index) { Guarded([&] { m_tree.LoadAhead(index); }); });
    connect(pTree, &QTreeView::collapsed, this, &CInSiteLinkDialog::SelectWhatHides);
    return pTree;
}

CWebBrowser2Ex* CInSiteLinkDialog::MakePreview() {
    auto* pPreview = DialogParts::Named(new CWebBrowser2Ex(this), "preview", ContentText::c_strInSitePreview);
    connect(pPreview, &CWebBrowser2Ex::NavigateComplete2, this, [this] {
        if (!m_toFollow.isActive())
            m_toFollow.start();
    });
    connect(pPreview, &CWebBrowser2Ex::NewWindowRequested, this,
            [this](const QString& strUrl, bool bByPerson) {
                if (!bByPerson)
                    return;
                if (!strUrl.startsWith(QLatin1StringView("file:")))
                    return Tell(ContentText::c_strNoPlaceChosen);
                m_toAccept.stop();
                m_strToOpen = strUrl;
                m_toOpen.start(0);
            });
    connect(pPreview, &CWebBrowser2Ex::LinkMissing, this, &CInSiteLinkDialog::TellMissing);
    return pPreview;
}

CPlaceList* CInSiteLinkDialog::MakePlaces() {
    auto* pPlaces = DialogParts::Named(new CPlaceList(this), "places", ContentText::c_strInSitePlaces);
    connect(pPlaces, &CPlaceList::Chosen, this, &CInSiteLinkDialog::ChoosePlace);
    return pPlaces;
}

/// The root, or the node to which the present link leads.
void CInSiteLinkDialog::SelectFirst(const QString& strPresent) {
    m_selection.Select(m_tree.GetRoot());
    const qint32 nId = InSiteLink::NodeOf(strPresent, NodeResourceFolder());
    if (nId < 0 || nId == m_nSelf)
        return;
    try {
        const QModelIndex line = m_tree.Reveal(nId);
        if (!line.isValid() || !m_selection.Select(line))
            return;
        m_strPresent = strPresent;
        m_pTree->scrollTo(line, QAbstractItemView::PositionAtCenter);
    } catch (const Torvane::CRunException&) {
        // The node is gone.
    }
}

void CInSiteLinkDialog::LayOut() {
    auto* pPrompt = new QLabel(ContentText::c_strInSiteLinkPrompt, this);
    pPrompt->setWordWrap(true);
    m_pPlace = DialogParts::Named(new QLineEdit(this), "location", ContentText::c_strInSiteLocation);
    m_pPlace->setReadOnly(true);
    QPalette palette = m_pPlace->palette();
    palette.setColor(QPalette::Base, palette.color(QPalette::Window));
    m_pPlace->setPalette(palette);
    m_pNote = new QLabel(this);
    m_pNote->setObjectName(QStringLiteral("note"));
    m_pNote->setTextFormat(Qt::PlainText);
    m_pNote->setWordWrap(true);
    // The name of a file has no place to break at.
    m_pNote->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_pNote->hide();

    // Tree and page have frames of one kind.
    auto* pFrame = new QFrame(this);
    pFrame->setFrameStyle(m_pTree->frameStyle());
    auto* pFramed = new QVBoxLayout(pFrame);
    pFramed->setContentsMargins(0, 0, 0, 0);
    pFramed->addWidget(m_pPreview);
    auto* pLower = new QWidget(this);
    auto* pListed = new QVBoxLayout(pLower);
    pListed->setContentsMargins(0, 0, 0, 0);
    pListed->addWidget(DialogParts::LabelFor(ContentText::c_strInSitePlaces, m_pPlaces));
    pListed->addWidget(m_pPlaces);
    auto* pRight = new QSplitter(Qt::Vertical, this);
    pRight->setChildrenCollapsible(false);
    pRight->addWidget(pFrame);
    pRight->addWidget(pLower);
    pRight->setStretchFactor(0, 1);
    auto* pPanes = new QSplitter(this);
    pPanes->setChildrenCollapsible(false);
    pPanes->addWidget(m_pTree);
    pPanes->addWidget(pRight);
    pPanes->setStretchFactor(1, 1);

    auto* pPlaceLine = new QHBoxLayout;
    pPlaceLine->addWidget(DialogParts::LabelFor(ContentText::c_strInSiteLocation, m_pPlace));
    pPlaceLine->addWidget(m_pPlace);
    auto* pLayout = new QVBoxLayout(this);
    pLayout->addWidget(pPrompt);
    pLayout->addWidget(pPanes, 1);
    pLayout->addLayout(pPlaceLine);
    pLayout->addWidget(m_pNote);
    DialogParts::AddOkAndCancel(*this, *pLayout);
    // A page keeps the key to itself.
    new QShortcut(Qt::Key_Escape, this, this, &QDialog::reject);

    const int nLine = fontMetrics().lineSpacing();
    resize((c_sizeInLines * nLine).boundedTo(screen()->availableSize() * 9 / 10));
    pPanes->setSizes({c_nTreeLines * nLine, width()});
    pRight->setSizes({height(), c_nPlaceLines * nLine});
    m_pTree->setFocus();
}

template <class Step>
void CInSiteLinkDialog::Guarded(Step step) {
    try {
        step();
    } catch (const Torvane::CRunException& exception) {
        m_people.Error(exception.GetMessage());
    }
}

/// A selected line in a closed branch would be seen by nobody.
void CInSiteLinkDialog::SelectWhatHides(const QModelIndex& index) {
    QModelIndex above = m_selection.currentIndex().parent();
    while (above.isValid() && above != index)
        above = above.parent();
    if (above.isValid() && m_selection.Select(index))
        m_pTree->collapse(index);
}

void CInSiteLinkDialog::OnSelected() {
    const QModelIndex selected = m_selection.currentIndex();
    if (m_tree.rowCount(selected) > 0)
        m_pTree->expand(selected);
    // Behind the event that has selected it, and only for the last of several.
    m_toOpen.stop();
    m_toAccept.stop();
    m_toShow.start(0);
}

void CInSiteLinkDialog::ShowPreview() {
    if (IsThreadHeld()) {
        m_toShow.start(c_nRetryMs);
        return;
    }
    const CBookNode* pNode = m_tree.NodeOf(m_selection.currentIndex());
    if (pNode == nullptr)
        return;
    if (pNode->GetId() == m_nSelf) {
        m_toAccept.stop();
        m_people.Ask(ContentText::c_strInSiteSelf, ContentText::c_strTip, BoxButtons::Ok, BoxIcon::None);
        return;
    }
    const QString strPresent = std::exchange(m_strPresent, QString());
    m_preview =
        strPresent.isEmpty() ? InSiteLink::PreviewOf(*pNode) : InSiteLink::PreviewAt(*pNode, strPresent);
    SetPlace(m_preview.strPlace);
    m_pPreview->SetNetworkAllowed(m_preview.bNetwork);
    const QPointer<CInSiteLinkDialog> pAlive(this);
    if (!m_preview.strTarget.isEmpty()) {
        m_pPreview->NavigateAndWait(m_preview.strTarget);
        if (pAlive)
            Follow();
    } else {
        m_pPreview->NavigateAndWait(QStringLiteral("about:blank"));
        if (pAlive)
            m_pPreview->SetBrowserBodyInnerHTML(m_preview.strText);
    }
    if (pAlive)
        OrderTabs();
}

/// What takes the keys of a page is made with it, and would come last in the order of the controls.
void CInSiteLinkDialog::OrderTabs() {
    QWidget* pKeys = m_pPreview;
    while (pKeys->focusProxy() != nullptr)
        pKeys = pKeys->focusProxy();
    setTabOrder(m_pTree, pKeys);
    setTabOrder(pKeys, m_pPlaces);
}

void CInSiteLinkDialog::Follow() {
    if (CWebBrowser2Ex::IsCallRunning()) {
        m_toFollow.start();
        return;
    }
    // Where it stands now is no news.
    if (m_toGo.isActive())
        return;
    QString strUrl;
    m_pPreview->GetURL(strUrl);
    const bool bFile = strUrl.startsWith(QLatin1StringView("file:"));
    // What shows in place of a page stands nowhere.
    if (m_preview.strTarget.isEmpty() || (!bFile && !strUrl.startsWith(QLatin1StringView("http"))))
        return;
    QString strSlide;
    const QPointer<CInSiteLinkDialog> pAlive(this);
    const bool bTold = !bFile || m_pPreview->GetSlideFrameLocation(strSlide);
    // A page that gives no answer and hasn't moved may yet show the slide that the line tells.
    if (pAlive && (std::exchange(m_strFollowed, strUrl) != strUrl || bTold))
        SetPlace(InSiteLink::PlaceOf(strUrl, strSlide));
}

/// What a page opens in a window of its own is chosen like any other place.
void CInSiteLinkDialog::OpenHere() {
    if (IsThreadHeld()) {
        m_toOpen.start(c_nRetryMs);
        return;
    }
    const QString strPath = SurfaceUrls::UrlToPath(SurfaceUrls::EngineUrl(m_strToOpen));
    // A card stands for a file that is missing, too.
    if (!Torvane::File::IsFile(strPath))
        return TellMissing(strPath);
    const QPointer<CInSiteLinkDialog> pAlive(this);
    if (MediaKinds::OfFile(strPath).Way == MediaKinds::EWay::Browser &&
        m_pPreview->NavigateAndWait(m_strToOpen))
        return;
    // The preview can't show the file, and mostly goes on showing the page that links to it.
    if (pAlive) {
        m_toFollow.stop();
        SetPlace(strPath);
    }
}

void CInSiteLinkDialog::Tell(const QString& strText) {
    m_pNote->setText(strText);
    m_pNote->setToolTip(strText.toHtmlEscaped());
    m_pNote->setVisible(!strText.isEmpty());
}

void CInSiteLinkDialog::TellMissing(const QString& strPath) {
    Tell(ContentText::c_strLinkMissing.arg(Platform::ToShown(strPath)));
}

void CInSiteLinkDialog::SetPlace(const QString& strPlace) {
    Tell({});
    m_strPlace = strPlace;
    // The end tells the page and its anchor.
    m_pPlace->setText(InSiteLink::ShownPlace(strPlace));
    m_pPlace->setToolTip(m_pPlace->text());
    const QString strPage = PagePlaces::PageOf(strPlace);
    if (strPage != m_strListed)
        ReadPlaces(strPage);
    else
        m_pPlaces->ShowPlace(strPlace);
}

/// Beside the event loop: a page may be large, and a presentation has many files.
void CInSiteLinkDialog::ReadPlaces(const QString& strPage) {
    m_strListed = strPage;
    if (!PagePlaces::MayHave(strPage)) {
        m_pPlaces->SetPlaces({}, ContentText::c_strNoPagePlaces);
        return;
    }
    m_pPlaces->SetPlaces({}, {});
    const auto pPromise = std::make_shared<QPromise<PagePlaces::Found>>();
    pPromise->start();
    pPromise->future().then(this, [this, strPage](const PagePlaces::Found& found) {
        if (strPage != m_strListed)
            return;
        m_pPlaces->SetPlaces(found.places, found.strWhyNone);
        m_pPlaces->ShowPlace(m_strPlace);
    });
    QThreadPool::globalInstance()->start([pPromise, strPage] {
        pPromise->addResult(PagePlaces::Of(strPage));
        pPromise->finish();
    });
}

/// As if the person had clicked a link there.
void CInSiteLinkDialog::ChoosePlace(const QString& strName) {
    m_strChosen = strName;
    m_toFollow.stop();
    SetPlace(strName.isEmpty() ? m_strListed : m_strListed + u'#' + strName);
    m_toGo.start(0);
}

void CInSiteLinkDialog::GoToChosen() {
    if (IsThreadHeld()) {
        m_toGo.start(c_nRetryMs);
        return;
    }
    // A page that has no name for the whole of it is loaded anew.
    if (m_strChosen.isEmpty())
        m_pPreview->NavigateAndWait(m_strListed);
    else
        m_pPreview->GoTo(m_strChosen);
}

QString CInSiteLinkDialog::NodeResourceFolder() const {
    return m_tree.GetCourse()->GetPaths().GetNodeResourceFolder(true);
}

void CInSiteLinkDialog::accept() {
    // The line still tells of another page: what was pressed holds for the one that comes.
    if (m_toShow.isActive() || m_toOpen.isActive() || CWebBrowser2Ex::IsCallRunning()) {
        Tell(ContentText::c_strInSiteWait);
        m_toAccept.start(c_nRetryMs);
        return;
    }
    if (m_toFollow.isActive()) {
        m_toFollow.stop();
        const QPointer<CInSiteLinkDialog> pAlive(this);
        Follow();
        if (!pAlive)
            return;
    }
    const std::optional<QString> link = InSiteLink::LinkTo(m_strPlace, NodeResourceFolder());
    if (!link) {
        m_people.Ask(ContentText::c_strNoPlaceChosen, ContentText::c_strTip, BoxButtons::Ok, BoxIcon::None);
        return;
    }
    m_strLink = *link;
    QDialog::accept();
}

std::optional<QString> AskInSiteLink(CBookNode& self, QWidget* pParent, const QString& strPresent) {
    CQtPeople people;
    people.SetParent(pParent);
    try {
        return DialogParts::Run(new CInSiteLinkDialog(self, people, pParent, strPresent),
                                &CInSiteLinkDialog::GetLink);
    } catch (const Torvane::CRunException& exception) {
        people.Error(exception.GetMessage());
        return std::nullopt;
    }
}
