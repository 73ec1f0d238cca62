#include "editor/ui/EditorToolBars.h"

#include "editor/EditorCommands.h"
#include "foundation/SysInfo.h"
#include "platform/ui/Pictures.h"

#include <QAction>
#include <QComboBox>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

using namespace EditorCommands;

namespace {

constexpr QSize c_imageSize(16, 15);
constexpr int c_nFontBoxWidth = 107;
constexpr int c_nSizeBoxWidth = 47;
/// Room for the arrow beside the text, which the widths don't count.
constexpr int c_nArrowWidth = 24;

} // namespace

CEditorToolBars::CEditorToolBars(QWidget* pParent) : QWidget(pParent) {
    setObjectName(QStringLiteral("editorToolBars"));
    auto* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->setSpacing(0);
    pLayout->addWidget(AddBar(QStringLiteral("formatBar"), FormatBar()));
    pLayout->addWidget(AddBar(QStringLiteral("insertBar"), InsertBar()));
    pLayout->addWidget(AddBar(QStringLiteral("editBar"), EditBar()));
}

QToolBar* CEditorToolBars::AddBar(const QString& strName, std::span<const int> ids) {
    auto* pBar = new QToolBar(this);
    pBar->setObjectName(strName);
    pBar->setIconSize(c_imageSize);
    pBar->setMovable(false);
    // Only the last bar's page commands have a text, which stands beside the picture.
    pBar->setToolButtonStyle(Qt::ToolButtonIconOnly);
    for (const int nId : ids) {
        if (nId == 0)
            pBar->addSeparator();
        else if (Find(nId)->Family == EFamily::Box)
            AddBox(*pBar, nId);
        else
            AddCommand(*pBar, nId);
    }
    return pBar;
}

void CEditorToolBars::AddCommand(QToolBar& bar, int nId) {
    const Command& command = *Find(nId);
    const QString strTooltip = command.strTooltip.toString();
    auto* pAction = new QAction(
        Pictures::EditorIcon(CSysInfo::Instance().GetSysDataFolder(false), command.strBitmap.toString()),
        command.strLabel.isEmpty() ? strTooltip : command.strLabel.toString(), this);
    pAction->setObjectName(QStringLiteral("command_%1").arg(nId));
    pAction->setCheckable(command.Family == EFamily::Toggle);
    pAction->setToolTip(strTooltip);
    pAction->setStatusTip(command.strHint.isEmpty() ? strTooltip : command.strHint.toString());
    bar.addAction(pAction);
    if (auto* pButton = qobject_cast<QToolButton*>(bar.widgetForAction(pAction))) {
        pButton->setObjectName(QStringLiteral("button_%1").arg(nId));
        // A bar's buttons are out of the keyboard's reach by themselves.
        pButton->setFocusPolicy(Qt::TabFocus);
        if (!command.strLabel.isEmpty())
            pButton->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    }
    connect(pAction, &QAction::triggered, this, [this, nId] { Q_EMIT CommandTriggered(nId); });
    m_actions.insert(nId, pAction);
}

void CEditorToolBars::AddBox(QToolBar& bar, int nId) {
    const bool bFonts = nId == Id::c_nFontBox;
    auto* pBox = new QComboBox(&bar);
    pBox->setObjectName(QStringLiteral("box_%1").arg(nId));
    pBox->setAccessibleName(Find(nId)->strTooltip.toString());
    pBox->setToolTip(pBox->accessibleName());
    pBox->setStatusTip(pBox->accessibleName());
    pBox->setFixedWidth((bFonts ? c_nFontBoxWidth : c_nSizeBoxWidth) + c_nArrowWidth);
    for (const BoxRow& row : bFonts ? Fonts() : Sizes())
        pBox->addItem(row.strShown.toString(), row.strValue.toString());
    pBox->setCurrentIndex(bFonts ? c_nFirstFont : c_nFirstSize);
    bar.addWidget(pBox);
    connect(pBox, &QComboBox::activated, this,
            [this, nId, pBox](int nRow) { Q_EMIT ValueChosen(nId, pBox->itemData(nRow).toString()); });
    m_boxes.insert(nId, pBox);
}

void CEditorToolBars::UpdateEnabled(const std::function<bool(int)>& isEnabled) {
    for (auto it = m_actions.cbegin(); it != m_actions.cend(); ++it)
        it.value()->setEnabled(isEnabled(it.key()));
    for (auto it = m_boxes.cbegin(); it != m_boxes.cend(); ++it)
        it.value()->setEnabled(isEnabled(it.key()));
}

void CEditorToolBars::ShowStates(const QMap<QString, bool>& states) {
    for (auto it = m_actions.cbegin(); it != m_actions.cend(); ++it)
        it.value()->setChecked(states.value(Find(it.key())->strName.toString()));
}
