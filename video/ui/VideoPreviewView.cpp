#include "video/ui/VideoPreviewView.h"

#include "editor/ui/ShowFailure.h"
#include "foundation/SysInfo.h"
#include "platform/ui/DialogParts.h"
#include "platform/ui/MediaPlayer.h"
#include "platform/ui/WebBrowser.h"
#include "video/Outline.h"
#include "video/PreviewRules.h"
#include "video/Recording.h"
#include "video/Texts.h"

#include <QHideEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QListView>
#include <QPointer>
#include <QPushButton>
#include <QStringListModel>

using Torvane::CRunException;
using Torvane::Dialog::MFC::BoxButtons;
using Torvane::Dialog::MFC::BoxIcon;

namespace {

/// The ids of the controls on form 287.
constexpr int c_nPlayer = 1131;
constexpr int c_nOutline = 1132;
constexpr int c_nSlides = 1133;
constexpr int c_nPlay = 1134;
constexpr int c_nPause = 1135;
constexpr int c_nStop = 1136;
constexpr int c_nFullScreen = 1137;
constexpr int c_nHeading = 1145;
constexpr int c_nStatus = 1148;

/// 0xFFFAF4 with red in the low byte.
constexpr QColor c_background(0xF4, 0xFA, 0xFF);
constexpr int c_nFailureMargin = 8;
constexpr int c_nTimeMilliseconds = 1000;
/// How soon a script is tried again that another call into the engine kept from running.
constexpr int c_nAgainMilliseconds = 30;
/// More waiting scripts than a page that answers ever has.
constexpr qsizetype c_nMaxCalled = 200;

template <class CControl>
CControl* WithId(CControl* pControl, int nId, const char* szName, const QString& strLabel) {
    DialogParts::SetNames(pControl, szName, strLabel);
    pControl->setProperty("controlId", nId);
    return pControl;
}

} // namespace

CVideoPreviewView::CVideoPreviewView(INodeViewHost& host, Torvane::Dialog::MFC::IPeople& people,
                                     QWidget* pParent)
    : CBookShowView(host, pParent), m_people(people) {
    setObjectName(QStringLiteral("CVideoPreviewView"));
    QPalette colours = palette();
    colours.setColor(QPalette::Window, c_background);
    colours.setColor(QPalette::WindowText, Qt::black);
    setPalette(colours);
    setAutoFillBackground(true);
    MakeControls();
    ConnectPlayer();
    connect(m_pSlides, &CWebBrowser2Ex::NavigateComplete2, this, &CVideoPreviewView::OnNavigated);
    connect(m_pOutline->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &CVideoPreviewView::ChooseEntry);
    // Back to the beginning of the one that is on.
    connect(m_pOutline, &QListView::clicked, this, [this] {
        if (!m_bChosen)
            ChooseEntry();
    });
    m_pOutline->viewport()->installEventFilter(this);
    m_time.setObjectName(QStringLiteral("timer_1"));
    m_time.setInterval(c_nTimeMilliseconds);
    connect(&m_time, &QTimer::timeout, this, [this] {
        ShowStatus(PreviewRules::TimeText(m_pPlayer->GetPosition(), m_pPlayer->GetDuration()));
    });
    m_runSoon.setSingleShot(true);
    connect(&m_runSoon, &QTimer::timeout, this, &CVideoPreviewView::RunCalled);
}

CVideoPreviewView::~CVideoPreviewView() = default;

void CVideoPreviewView::MakeControls() {
    m_pPlayer = WithId(new CMediaPlayer(this), c_nPlayer, "player", VideoText::c_strFilmName);
    m_pFailure = DialogParts::Named(new QLabel(m_pPlayer), "failure", VideoText::c_strStatusName);
    m_pFailure->setTextFormat(Qt::PlainText);
    m_pFailure->setWordWrap(true);
    m_pFailure->setAlignment(Qt::AlignCenter);
    m_pFailure->setMargin(c_nFailureMargin);
    m_pFailure->hide();
    m_pStatus = WithId(new QLabel(VideoText::c_strFirstStatus, this), c_nStatus, "status",
                       VideoText::c_strStatusName);
    m_pStatus->setTextFormat(Qt::PlainText);
    QPalette colours = m_pStatus->palette();
    colours.setColor(QPalette::Window, Qt::black);
    colours.setColor(QPalette::WindowText, Qt::white);
    m_pStatus->setPalette(colours);
    m_pFailure->setPalette(colours);
    m_pStatus->setAutoFillBackground(true);
    m_pHeading = WithId(new QLabel(VideoText::c_strOutline, this), c_nHeading, "outlineHeading",
                        VideoText::c_strOutline);
    m_pOutline = WithId(new QListView(this), c_nOutline, "outline", VideoText::c_strOutline);
    m_pHeading->setBuddy(m_pOutline);
    m_pOutline->setEditTriggers(QListView::NoEditTriggers);
    // However many entries there are, only those in sight are measured.
    m_pOutline->setUniformItemSizes(true);
    m_pOutline->setPalette(QPalette());
    m_pNames = new QStringListModel(m_pOutline);
    m_pOutline->setModel(m_pNames);
    m_pSlides = WithId(new CWebBrowser2Ex(this), c_nSlides, "slides", VideoText::c_strSlidesName);
    m_buttons = {AddButton(c_nPlay, "play", VideoText::c_strPlay, &CMediaPlayer::Play),
                 AddButton(c_nPause, "pause", VideoText::c_strPause, &CMediaPlayer::Pause),
                 AddButton(c_nStop, "stop", VideoText::c_strStop, &CMediaPlayer::Stop),
                 AddButton(c_nFullScreen, "fullScreen", VideoText::c_strFullScreen, nullptr)};
    connect(m_buttons.back(), &QPushButton::clicked, this, &CVideoPreviewView::FillScreen);
}

QPushButton* CVideoPreviewView::AddButton(int nId, const char* szName, const QString& strText,
                                          void (CMediaPlayer::*pStep)()) {
    auto* pButton = WithId(new QPushButton(strText, this), nId, szName, strText);
    pButton->setPalette(QPalette());
    if (pStep != nullptr)
        connect(pButton, &QPushButton::clicked, m_pPlayer, pStep);
    return pButton;
}

void CVideoPreviewView::ConnectPlayer() {
    connect(m_pPlayer, &CMediaPlayer::StatusChanged, this, [this] { ShowStatus(m_pPlayer->GetStatus()); });
    connect(m_pPlayer, &CMediaPlayer::Failed, m_pFailure, [this](const QString& strText) {
        m_pFailure->setText(strText);
        m_pFailure->show();
    });
    connect(m_pPlayer, &CMediaPlayer::StateChanged, this, &CVideoPreviewView::OnPlayState);
    connect(m_pPlayer, &CMediaPlayer::PositionChanged, this, &CVideoPreviewView::OnPosition);
    // Else the person would be left with a black screen.
    connect(m_pPlayer, &CMediaPlayer::Ended, m_pPlayer, [this] { m_pPlayer->SetFullScreen(false); });
}

bool CVideoPreviewView::LeaveNode(bool) {
    m_pPlayer->Stop();
    return true;
}

void CVideoPreviewView::ShowNode() {
    if (m_pNode != nullptr)
        ShowFailure(this, [this] { ShowVideo(); });
}

void CVideoPreviewView::Clear() {
    m_pPlayer->Unload();
    m_pFailure->hide();
    m_clock.SetCommands({});
    m_called.clear();
    m_scripts = {};
    m_pNames->setStringList({});
    m_bSlidesShow = false;
    m_pStatus->setText(VideoText::c_strFirstStatus);
}

bool CVideoPreviewView::LoadScripts(const QString& strFolder) {
    const QPointer<CVideoPreviewView> pSelf(this);
    try {
        m_scripts = ReadVideoScripts(strFolder, CVideoKey(CSysInfo::Instance().GetSchoolName()));
        return true;
    } catch (const CRunException& e) {
        m_people.Ask(e.GetMessage(), VideoText::c_strScriptFailureTitle, BoxButtons::Ok, BoxIcon::None);
    }
    if (pSelf != nullptr)
        m_people.Error(VideoText::c_strScriptsNotLoaded);
    return false;
}

bool CVideoPreviewView::LoadOutline(const QString& strFolder) {
    QStringList names;
    if (!ReadOutline(strFolder + OutlineFileBelow(), names)) {
        m_people.Error(VideoText::c_strOutlineNotLoaded);
        return false;
    }
    m_pNames->setStringList(names);
    return true;
}

void CVideoPreviewView::ShowVideo() {
    Clear();
    const QString strFolder = m_pNode->GetContentPath();
    if (!LoadScripts(strFolder) || !LoadOutline(strFolder))
        return;
    const QString strFilm = FilmPath(strFolder);
    if (strFilm.isEmpty()) {
        m_people.Error(VideoText::c_strNoFilmNamed);
        return;
    }
    m_pPlayer->Load(strFilm);
    m_clock.SetCommands(ReadAsfScript(strFilm).Commands);
    m_pSlides->SetAllowedFolders({m_pNode->GetCourse().GetPaths().GetCourseFolder(false),
                                  CSysInfo::Instance().GetSysDataFolder(false)},
                                 false);
    const QPointer<CVideoPreviewView> pSelf(this);
    const CBookNode* const pNode = m_pNode;
    const bool bSlides = m_pSlides->NavigateAndWait(strFolder + QStringLiteral("\\ppt.htm"));
    if (pSelf == nullptr || m_pNode != pNode)
        return;
    m_bSlidesShow = bSlides;
    // A film is worth seeing without its slides, too.
    if (!bSlides)
        m_pPlayer->Play();
    RunCalled();
}

void CVideoPreviewView::OnNavigated() {
    // Not for the page that a view out of sight is left with.
    if (m_pNode == nullptr)
        return;
    if (const int nMarker = m_pPlayer->GetMarker(); nMarker > 0) {
        m_bByProgram = true;
        m_pOutline->setCurrentIndex(m_pNames->index(nMarker - 1));
        m_bByProgram = false;
    }
    m_pPlayer->Play();
}

void CVideoPreviewView::OnPlayState() {
    if (m_pPlayer->GetState() == EMediaState::Playing)
        m_time.start();
    else
        m_time.stop();
}

void CVideoPreviewView::OnPosition() {
    // A film that stands calls nothing; once it runs again, it has gone to that place.
    if (m_pPlayer->GetState() != EMediaState::Playing)
        return;
    for (const QString& strParameter : m_clock.MoveTo(m_pPlayer->GetPosition())) {
        if (const QString strScript = m_scripts.Called(strParameter); !strScript.isEmpty())
            m_called.append(strScript);
    }
    if (m_called.size() > c_nMaxCalled)
        m_called.remove(0, m_called.size() - c_nMaxCalled);
    RunCalled();
}

/// One after the other: the film runs on while a script does.
void CVideoPreviewView::RunCalled() {
    if (m_bRunning || !m_bSlidesShow)
        return;
    const QPointer<CVideoPreviewView> pSelf(this);
    m_bRunning = true;
    while (!m_called.isEmpty() && m_bSlidesShow && !CWebBrowser2Ex::IsCallRunning()) {
        m_pSlides->ExecuteScript(QStringLiteral("javascript: ") + m_called.takeFirst());
        if (pSelf == nullptr)
            return;
    }
    m_bRunning = false;
    if (!m_called.isEmpty())
        m_runSoon.start(c_nAgainMilliseconds);
}

void CVideoPreviewView::ShowStatus(const QString& strText) {
    const QString strShown =
        m_pStatus->fontMetrics().elidedText(strText, Qt::ElideRight, m_pStatus->contentsRect().width());
    m_pStatus->setText(strShown);
    m_pStatus->setToolTip(strShown == strText ? QString() : strText);
}

void CVideoPreviewView::ChooseEntry() {
    const QModelIndex entry = m_pOutline->currentIndex();
    if (m_bByProgram || !entry.isValid())
        return;
    m_bChosen = true;
    m_pPlayer->GoToMarker(entry.row() + 1);
    m_pPlayer->Play();
}

bool CVideoPreviewView::eventFilter(QObject* pWatched, QEvent* pEvent) {
    if (pEvent->type() == QEvent::MouseButtonPress)
        m_bChosen = false;
    return CBookShowView::eventFilter(pWatched, pEvent);
}

void CVideoPreviewView::FillScreen() {
    if (m_pPlayer->GetState() != EMediaState::Stopped)
        m_pPlayer->SetFullScreen(true);
}

QPushButton* CVideoPreviewView::ButtonFor(const QKeyEvent& key) const {
    return DialogParts::ButtonOfLetter(key, {m_buttons[0], m_buttons[1], m_buttons[2], m_buttons[3]});
}

// The letters are those of menus as well. While the person is in the view they are the view's.
bool CVideoPreviewView::event(QEvent* pEvent) {
    if (pEvent->type() == QEvent::ShortcutOverride && ButtonFor(static_cast<const QKeyEvent&>(*pEvent))) {
        pEvent->accept();
        return true;
    }
    return CBookShowView::event(pEvent);
}

void CVideoPreviewView::keyPressEvent(QKeyEvent* pEvent) {
    if (QPushButton* pButton = ButtonFor(*pEvent)) {
        pButton->setFocus(Qt::ShortcutFocusReason);
        pButton->click();
    } else {
        CBookShowView::keyPressEvent(pEvent);
    }
}

void CVideoPreviewView::resizeEvent(QResizeEvent* pEvent) {
    CBookShowView::resizeEvent(pEvent);
    const PreviewRules::Layout layout = PreviewRules::LayoutFor(size());
    if (!m_pPlayer->isWindow())
        m_pPlayer->setGeometry(layout.Player);
    m_pFailure->resize(layout.Player.size());
    m_pStatus->setGeometry(layout.Status);
    m_pHeading->adjustSize();
    m_pHeading->move(layout.OutlineHeading);
    m_pOutline->setGeometry(layout.Outline);
    m_pSlides->setGeometry(layout.Slides);
    for (size_t i = 0; i < m_buttons.size(); ++i)
        m_buttons[i]->setGeometry(layout.Buttons[i]);
}

void CVideoPreviewView::hideEvent(QHideEvent* pEvent) {
    CBookShowView::hideEvent(pEvent);
    // Not when the whole window is minimised.
    if (pEvent->spontaneous())
        return;
    m_pPlayer->SetFullScreen(false);
    m_pPlayer->Unload();
    m_bSlidesShow = false;
    m_called.clear();
    m_pSlides->ClearLater();
}
