#include "editor/ui/CardViews.h"

#include "content/ContentBuilder.h"
#include "content/VideoMaker.h"
#include "editor/DisplayRules.h"
#include "editor/NodeFile.h"
#include "editor/Texts.h"
#include "editor/ui/ContentWindow.h"
#include "editor/ui/ShowFailure.h"
#include "foundation/SysInfo.h"
#include "platform/base/NativePath.h"
#include "platform/ui/DialogParts.h"

#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPixmap>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr int c_nCommandCreate = 32814;
constexpr int c_nCardWidth = 520;
constexpr int c_nMargin = 24;
constexpr int c_nTextMargin = 6;
constexpr int c_nValueWidth = 300;
constexpr int c_nCommentLines = 5;
/// 16775924 with red in the low byte.
constexpr QColor c_paleBlue(0xF4, 0xFA, 0xFF);

void PaintWith(QWidget& widget, const QColor& colour) {
    QPalette palette = widget.palette();
    palette.setColor(QPalette::Window, colour);
    palette.setColor(QPalette::WindowText, Qt::black);
    widget.setPalette(palette);
    widget.setAutoFillBackground(true);
}

/// The group box that stays in the middle of the view, at whatever size.
QVBoxLayout* MakeCard(QWidget& view) {
    auto* pBox = new QGroupBox(&view);
    pBox->setObjectName(QStringLiteral("card"));
    pBox->setFixedWidth(c_nCardWidth);
    // The desktop's style would fill it with a shade of its own.
    pBox->setStyleSheet(QStringLiteral("QGroupBox { border: 1px solid palette(mid); border-radius: 2px; }"));
    auto* pOuter = new QGridLayout(&view);
    pOuter->addWidget(pBox, 0, 0, Qt::AlignCenter);
    auto* pInner = new QVBoxLayout(pBox);
    pInner->setContentsMargins(c_nMargin, c_nMargin, c_nMargin, c_nMargin);
    pInner->setSpacing(c_nMargin);
    return pInner;
}

/// A name of any length in one line; the middle goes first, and the whole shows under the mouse.
void ShowInOneLine(QLabel& label, const QString& strText) {
    const QString strShown = label.fontMetrics().elidedText(strText, Qt::ElideMiddle, c_nValueWidth);
    label.setText(strShown);
    label.setToolTip(strShown == strText ? QString() : DialogParts::TipOf(strText));
    label.setAccessibleName(strText);
}

QLabel* AddValue(QFormLayout& form, const QString& strLabel, const char* szName) {
    auto* pValue = new QLabel;
    pValue->setObjectName(QLatin1StringView(szName));
    pValue->setTextFormat(Qt::PlainText);
    form.addRow(new QLabel(strLabel), pValue);
    return pValue;
}

/// A long text keeps a distance from the button's edges.
void GiveRoom(QPushButton& button) {
    button.setMinimumWidth(button.fontMetrics().horizontalAdvance(DialogParts::NameOf(button.text())) +
                           2 * c_nMargin);
}

QLabel* MakePrompt(QVBoxLayout& layout) {
    auto* pLabel = new QLabel;
    pLabel->setObjectName(QStringLiteral("prompt"));
    pLabel->setTextFormat(Qt::PlainText);
    pLabel->setWordWrap(true);
    pLabel->setAlignment(Qt::AlignCenter);
    layout.addWidget(pLabel);
    return pLabel;
}

} // namespace

CEmptyView::CEmptyView(INodeViewHost& host, QWidget* pParent) : CBookShowView(host, pParent) {
    setObjectName(QStringLiteral("CEmptyView"));
    PaintWith(*this, c_paleBlue);
}

void CEmptyView::ShowNode() {
    CContentWindow::CloseAll(window());
}

CNothingView::CNothingView(INodeViewHost& host, QWidget* pParent) : CBookShowView(host, pParent) {
    setObjectName(QStringLiteral("CNothingView"));
    PaintWith(*this, c_paleBlue);
    QVBoxLayout* pCard = MakeCard(*this);

    auto* pPicture = new QLabel;
    pPicture->setObjectName(QStringLiteral("sorry"));
    pPicture->setPixmap(QPixmap(Platform::ToNative(CSysInfo::Instance().GetSysDataFolder(false) +
                                                   QStringLiteral("\\Images\\sorry.jpg"))));
    pCard->addWidget(pPicture, 0, Qt::AlignHCenter);
    MakePrompt(*pCard)->setText(EditorTexts::c_strNoContentPrompt);
    auto* pCreate = new QPushButton(EditorTexts::c_strCreateContent);
    DialogParts::SetNames(pCreate, "createContent", EditorTexts::c_strCreateContent);
    GiveRoom(*pCreate);
    pCard->addWidget(pCreate, 0, Qt::AlignHCenter);
    connect(pCreate, &QPushButton::clicked, this, [this] { m_host.RunCommand(c_nCommandCreate); });
}

CPromptView::CPromptView(INodeViewHost& host, QWidget* pParent) : CBookShowView(host, pParent) {
    setObjectName(QStringLiteral("CPromptView"));
    QVBoxLayout* pCard = MakeCard(*this);
    m_pText = MakePrompt(*pCard);
    // Behind the text alone; around it the desktop's own colour.
    PaintWith(*m_pText, Qt::white);
    m_pText->setMargin(c_nTextMargin);
    m_pRefresh = new QPushButton(EditorTexts::c_strRefresh);
    DialogParts::SetNames(m_pRefresh, "refresh", EditorTexts::c_strRefresh);
    GiveRoom(*m_pRefresh);
    pCard->addWidget(m_pRefresh, 0, Qt::AlignHCenter);
    connect(m_pRefresh, &QPushButton::clicked, this, &CPromptView::Refresh);
}

void CPromptView::ShowNode() {
    const auto prompt = DisplayRules::PromptOf(m_pViewParam);
    m_pText->setText(prompt.strText);
    if (prompt.bButton)
        m_pRefresh->setVisible(*prompt.bButton);
}

void CPromptView::Refresh() {
    if (m_pNode == nullptr)
        return;
    ShowFailure(this, [this] {
        const bool bFile = m_pNode->GetType() == NodeType::c_nExternalFile;
        m_host.ShowNodeView(bFile ? EViewKind::ShowContent : KindView(*m_pNode), m_pNode);
    });
}

CToolBtnView::CToolBtnView(INodeViewHost& host, Torvane::Dialog::MFC::IPeople& people, IVideoMaker& videos,
                           QWidget* pParent)
    : CBookShowView(host, pParent), m_people(people), m_videos(videos) {
    setObjectName(QStringLiteral("CToolBtnView"));
    PaintWith(*this, c_paleBlue);
    QVBoxLayout* pCard = MakeCard(*this);

    auto* pForm = new QFormLayout;
    m_pKind = AddValue(*pForm, EditorTexts::c_strKindLabel, "fileKind");
    m_pFileName = AddValue(*pForm, EditorTexts::c_strFileNameLabel, "fileName");
    m_pComment =
        DialogParts::Named(DialogParts::ReadOnlyText(this), "fileComment", EditorTexts::c_strCommentLabel);
    const double dEdges = 2 * (m_pComment->document()->documentMargin() + m_pComment->frameWidth());
    m_pComment->setFixedHeight(m_pComment->fontMetrics().lineSpacing() * c_nCommentLines + qRound(dEdges));
    pForm->addRow(DialogParts::LabelFor(EditorTexts::c_strCommentLabel, m_pComment), m_pComment);
    pCard->addLayout(pForm);

    m_pDownload = AddButton(QStringLiteral("download"), &CToolBtnView::Download);
    m_pEdit = AddButton(QStringLiteral("edit"), &CToolBtnView::Edit);
    m_pToHtml = AddButton(QStringLiteral("toHtml"), &CToolBtnView::ConvertToHtml);
    m_pToHtml->setText(EditorTexts::c_strToHtml);
    GiveRoom(*m_pToHtml);
    auto* pButtons = new QHBoxLayout;
    pButtons->addStretch(1);
    for (QPushButton* pButton : {m_pDownload, m_pEdit, m_pToHtml})
        pButtons->addWidget(pButton);
    pButtons->addStretch(1);
    pCard->addLayout(pButtons);
    setTabOrder(m_pToHtml, m_pComment);
}

QPushButton* CToolBtnView::AddButton(const QString& strName, void (CToolBtnView::*pStep)(CBookNode&)) {
    auto* pButton = new QPushButton(this);
    pButton->setObjectName(strName);
    connect(pButton, &QPushButton::clicked, this, [this, pStep] {
        // A screen reader presses buttons without any input, a long step or not.
        if (m_pNode != nullptr && !CQtPeople::IsKeepingPainting())
            ShowFailure(this, [this, pStep] { (this->*pStep)(*m_pNode); });
    });
    return pButton;
}

void CToolBtnView::ShowNode() {
    ShowFailure(this, [this] { ShowCard(); });
}

void CToolBtnView::ShowCard() {
    const auto card = m_pNode == nullptr ? std::nullopt : NodeFile::CardOf(*m_pNode);
    if (!card)
        return;
    m_pKind->setText(card->strKind);
    if (card->FileName)
        ShowInOneLine(*m_pFileName, *card->FileName);
    if (card->Comment)
        m_pComment->setPlainText(*card->Comment);
    m_pDownload->setText(card->strFirstButton);
    m_pEdit->setText(card->strSecondButton);
    m_pToHtml->setVisible(card->bOffice);
    for (QPushButton* pButton : {m_pDownload, m_pEdit, m_pToHtml})
        pButton->setAccessibleName(DialogParts::NameOf(pButton->text()));
}

QPushButton* CToolBtnView::ButtonFor(const QKeyEvent& key) const {
    return DialogParts::ButtonOfLetter(key, {m_pDownload, m_pEdit, m_pToHtml});
}

// The letters are those of menus as well. While the person is in the view they are the view's.
bool CToolBtnView::event(QEvent* pEvent) {
    if (pEvent->type() == QEvent::ShortcutOverride && ButtonFor(static_cast<const QKeyEvent&>(*pEvent))) {
        pEvent->accept();
        return true;
    }
    return CBookShowView::event(pEvent);
}

void CToolBtnView::keyPressEvent(QKeyEvent* pEvent) {
    if (QPushButton* pButton = ButtonFor(*pEvent)) {
        pButton->setFocus(Qt::ShortcutFocusReason);
        pButton->click();
    } else {
        CBookShowView::keyPressEvent(pEvent);
    }
}

void CToolBtnView::PreviewVideo(CBookNode& node) {
    const QString strObstacle = NodeFile::VideoObstacle(false, m_videos.HasPlayer(), m_videos.HasEncoder());
    if (strObstacle.isEmpty())
        m_host.ShowNodeView(EViewKind::VideoPreview, &node);
    else
        m_people.Notice(strObstacle);
}

void CToolBtnView::RecordAgain(CBookNode& node) {
    INodeViewHost& host = m_host;
    CBookNode* const pNode = &node;
    if (!host.ShowNodeView(EViewKind::Prompt, pNode, PromptCode::c_nRecorder))
        return;
    const QString strObstacle = NodeFile::VideoObstacle(true, m_videos.HasPlayer(), m_videos.HasEncoder());
    // The course may be closed behind a box.
    const auto isThere = [&host, pNode] { return host.IsShowing(pNode); };
    if (strObstacle.isEmpty()) {
        CNodeFileParams params;
        params.Kind = EContentKind::Video;
        params.OpenType = node.GetOpenType();
        CNodeContentBuilder(node, m_people, isThere, &m_videos).Create(params);
    } else {
        m_people.Notice(strObstacle);
    }
    if (isThere())
        host.ShowNodeView(KindView(*pNode), pNode);
}

void CToolBtnView::Download(CBookNode& node) {
    if (node.GetType() == NodeType::c_nVideo)
        return PreviewVideo(node);
    m_host.ShowNodeView(EViewKind::ShowContent, &node, ContentCode::c_nDownload);
}

void CToolBtnView::Edit(CBookNode& node) {
    if (node.GetType() == NodeType::c_nVideo)
        return RecordAgain(node);
    if (m_host.ShowNodeView(EViewKind::Prompt, &node, PromptCode::c_nExternalEditor) &&
        !NodeFile::OpenInProgram(node, m_people))
        m_host.ShowNodeView(KindView(node), &node);
}

void CToolBtnView::ConvertToHtml(CBookNode& node) {
    const QPointer<CToolBtnView> pSelf(this);
    const auto isThere = [pSelf, pNode = &node] { return pSelf != nullptr && pSelf->m_pNode == pNode; };
    if (NodeFile::ConvertToHtml(node, m_people, isThere) && isThere())
        m_host.ShowNodeView(KindView(node), &node);
}
