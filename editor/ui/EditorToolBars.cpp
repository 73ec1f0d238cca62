#include "editor/ui/EditorToolBars.h"

#include "editor/Texts.h"
#include "editor/ui/ValueBox.h"
#include "foundation/SysInfo.h"
#include "platform/ui/Pictures.h"

#include <QAction>
#include <QMenu>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

using namespace EditorCommands;

namespace {

constexpr QSize c_imageSize(16, 15);
constexpr int c_nFontBoxWidth = 107;
constexpr int c_nSizeBoxWidth = 47;
/// The toolkit's own name for the button that shows what a narrow bar has no room for.
const QLatin1StringView c_strMoreButton("qt_toolbar_ext_button");
/// The menu that stands in for a combo box.
const QLatin1StringView c_strRows("rows");

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
    if (auto* pMore = pBar->findChild<QToolButton*>(c_strMoreButton))
        SetUpMore(*pBar, *pMore);
    return pBar;
}

void CEditorToolBars::SetUpMore(QToolBar& bar, QToolButton& more) {
    more.setToolTip(EditorTexts::c_strMore);
    more.setAccessibleName(EditorTexts::c_strMore);
    more.setFocusPolicy(Qt::TabFocus);
    // The bar's own menu would leave the boxes out.
    auto* pMenu = new QMenu(&bar);
    more.setMenu(pMenu);
    connect(pMenu, &QMenu::aboutToShow, this, [pMenu, &bar] {
        pMenu->clear();
        for (QAction* pAction : bar.actions()) {
            const QWidget* pShown = bar.widgetForAction(pAction);
            if (pShown == nullptr || pShown->isVisible())
                continue;
            if (auto* pRows = pShown->findChild<QMenu*>(c_strRows))
                pMenu->addMenu(pRows);
            else
                pMenu->addAction(pAction);
        }
    });
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
    const auto rows = bFonts ? Fonts() : Sizes();
    auto* pBox = new CValueBox(rows, bFonts ? c_nFontBoxWidth : c_nSizeBoxWidth, &bar);
    const QString strName = Find(nId)->strTooltip.toString();
    pBox->setObjectName(QStringLiteral("box_%1").arg(nId));
    pBox->setAccessibleName(strName);
    pBox->setToolTip(strName);
    pBox->setStatusTip(strName);
    pBox->setCurrentIndex(bFonts ? c_nFirstFont : c_nFirstSize);
    bar.addWidget(pBox);
    // Where the bar is too narrow for the box, its rows are a menu.
    auto* pRows = new QMenu(strName, pBox);
    pRows->setObjectName(c_strRows);
    for (int nRow = 0; nRow < pBox->count(); ++nRow)
        connect(pRows->addAction(pBox->itemText(nRow)), &QAction::triggered, this,
                [this, nId, strValue = pBox->itemData(nRow).toString()] {
                    Q_EMIT ValueChosen(nId, strValue);
                    Q_EMIT BoxLeft();
                });
    connect(pBox, &CValueBox::ValueChosen, this,
            [this, nId](const QString& strValue) { Q_EMIT ValueChosen(nId, strValue); });
    connect(pBox, &CValueBox::Left, this, &CEditorToolBars::BoxLeft);
    m_boxes.insert(nId, pBox);
}

void CEditorToolBars::UpdateEnabled(const std::function<bool(int)>& isEnabled) {
    for (auto it = m_actions.cbegin(); it != m_actions.cend(); ++it)
        it.value()->setEnabled(isEnabled(it.key()));
    for (auto it = m_boxes.cbegin(); it != m_boxes.cend(); ++it)
        it.value()->setEnabled(isEnabled(it.key()));
}

void CEditorToolBars::ShowStates(const QStringList& pressed) {
    for (auto it = m_actions.cbegin(); it != m_actions.cend(); ++it)
        it.value()->setChecked(pressed.contains(Find(it.key())->strName));
}

void CEditorToolBars::ShowFont(const QString& strFont, const QString& strSize) {
    m_boxes.value(Id::c_nFontBox)->ShowValue(strFont);
    m_boxes.value(Id::c_nSizeBox)->ShowValue(strSize);
}

QList<QAction*> CEditorToolBars::ActionsOf(std::span<const int> ids) {
    QList<QAction*> actions;
    for (const int nId : ids) {
        auto* pAction = m_actions.value(nId);
        if (pAction == nullptr) {
            pAction = new QAction(this);
            pAction->setSeparator(true);
        }
        actions.append(pAction);
    }
    return actions;
}
