#include "editor/ui/CardViews.h"

#include "editor/DisplayRules.h"
#include "editor/Texts.h"
#include "editor/ui/ShowFailure.h"
#include "foundation/SysInfo.h"
#include "platform/base/NativePath.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPixmap>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr int c_nCommandCreate = 32814;
constexpr int c_nCardWidth = 420;
constexpr int c_nMargin = 24;
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
    auto* pOuter = new QGridLayout(&view);
    pOuter->addWidget(pBox, 0, 0, Qt::AlignCenter);
    auto* pInner = new QVBoxLayout(pBox);
    pInner->setContentsMargins(c_nMargin, c_nMargin, c_nMargin, c_nMargin);
    pInner->setSpacing(c_nMargin);
    return pInner;
}

QLabel* MakePrompt(QVBoxLayout& layout) {
    auto* pLabel = new QLabel;
    pLabel->setObjectName(QStringLiteral("prompt"));
    pLabel->setTextFormat(Qt::PlainText);
    pLabel->setWordWrap(true);
    layout.addWidget(pLabel);
    return pLabel;
}

} // namespace

CEmptyView::CEmptyView(INodeViewHost& host, QWidget* pParent) : CBookShowView(host, pParent) {
    setObjectName(QStringLiteral("CEmptyView"));
    PaintWith(*this, c_paleBlue);
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
    pCreate->setObjectName(QStringLiteral("createContent"));
    pCard->addWidget(pCreate, 0, Qt::AlignHCenter);
    connect(pCreate, &QPushButton::clicked, this, [this] { m_host.RunCommand(c_nCommandCreate); });
}

CPromptView::CPromptView(INodeViewHost& host, QWidget* pParent) : CBookShowView(host, pParent) {
    setObjectName(QStringLiteral("CPromptView"));
    PaintWith(*this, Qt::white);
    QVBoxLayout* pCard = MakeCard(*this);
    m_pText = MakePrompt(*pCard);
    m_pRefresh = new QPushButton(EditorTexts::c_strRefresh);
    m_pRefresh->setObjectName(QStringLiteral("refresh"));
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
