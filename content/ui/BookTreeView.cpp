#include "content/ui/BookTreeView.h"

#include "content/Texts.h"
#include "content/ui/TitleDelegate.h"
#include "course/TemplateStore.h"
#include "foundation/SysInfo.h"

#include <QDrag>
#include <QHeaderView>
#include <QScrollBar>

#include <utility>

namespace {

constexpr quint32 c_nFirstBackColor = 0xFFFAF4;
constexpr QSize c_imageSize(18, 18);
/// So much of a title tells which it is.
constexpr int c_nEnoughLetters = 5;
/// A title is written in no less than this, in pixels, where the pane is as wide.
constexpr int c_nEditWidth = 180;

} // namespace

CBookTreeView::CBookTreeView(INodeViewHost& host, Torvane::Dialog::MFC::IPeople& people, QWidget* pParent)
    : QTreeView(pParent), m_dialogs(people, this), m_actions(m_tree, *this, m_dialogs, host, people) {
    setObjectName(QStringLiteral("CBookTreeView"));
    setAccessibleName(ContentText::c_strTreeName);
    setModel(&m_tree);
    const std::unique_ptr<QItemSelectionModel> pToolkitsOwn(selectionModel());
    setSelectionModel(&m_actions.GetSelection());
    setHeaderHidden(true);
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    header()->setResizeContentsPrecision(0); // the visible lines alone
    setUniformRowHeights(true);
    setIconSize(c_imageSize);
    setEditTriggers(NoEditTriggers);
    setAcceptDrops(true);
    setDropIndicatorShown(false); // paintEvent frames the line that would take the dragged one
    m_rest.setSingleShot(true);
    connect(&m_rest, &QTimer::timeout, this, &CBookTreeView::OpenUnderDrag);
    SetBackColor(c_nFirstBackColor);

    auto* pDelegate = new CTitleDelegate(CSysInfo::Instance().GetSysDataFolder(false), this);
    setItemDelegate(pDelegate);
    connect(pDelegate, &CTitleDelegate::TitleTyped, this,
            [this](const QString& strTitle) { m_typedTitle = strTitle; });

    connect(this, &QTreeView::expanded, this,
            [this](const QModelIndex& index) { m_actions.LoadAhead(index); });
    connect(this, &QTreeView::collapsed, this, &CBookTreeView::SelectWhatHides);
    connect(selectionModel(), &QItemSelectionModel::currentChanged, this, &CBookTreeView::SelectionMoved);
    connect(&m_tree, &QAbstractItemModel::rowsMoved, this, &CBookTreeView::FollowMoved);
    // Lines that scroll by below a resting mouse.
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, [this] {
        if (m_dragged.isValid())
            Aim(viewport()->mapFromGlobal(QCursor::pos()));
    });
}

CBookTreeView::~CBookTreeView() {
    // Model and selection go before the window's own part, which must not ask them any more.
    disconnect(&m_tree, nullptr, this, nullptr);
    disconnect(selectionModel(), nullptr, this, nullptr);
    m_actions.Close();
    setModel(nullptr);
}

void CBookTreeView::SetBackColor(quint32 nColor) {
    const auto byte = [nColor](int nShift) { return static_cast<int>(nColor >> nShift & 0xFF); };
    const QColor back(byte(0), byte(8), byte(16));
    QPalette colors = palette();
    colors.setColor(QPalette::Base, back);
    // A template may be dark.
    colors.setColor(QPalette::Text, qGray(back.rgb()) < 128 ? Qt::white : Qt::black);
    setPalette(colors);
}

void CBookTreeView::initViewItemOption(QStyleOptionViewItem* pOption) const {
    QTreeView::initViewItemOption(pOption);
    // The arrows of branches, and not those of the scroll bars, go with the colour of the template.
    for (const QPalette::ColorRole role : {QPalette::ButtonText, QPalette::WindowText})
        pOption->palette.setColor(role, palette().color(QPalette::Text));
}

void CBookTreeView::LoadTree(CCourse& course) {
    ResetTree();
    const CTemplateStore templates(CSysInfo::Instance().GetTemplatesFolder(false));
    SetBackColor(templates.GetBackColor(course.GetTemplateName()));
    m_actions.Open(course);
    setFocus();
}

void CBookTreeView::ResetTree() {
    // What the mouse still holds is gone.
    if (m_dragged.isValid())
        QDrag::cancel();
    m_edited = m_pressed = m_dragged = m_under = m_dropTarget = QPersistentModelIndex();
    m_typedTitle.reset();
    m_actions.Close();
}

void CBookTreeView::scrollTo(const QModelIndex& index, ScrollHint hint) {
    // The toolkit looks at the whole column, and would go back to its left edge with every line.
    const int nBefore = horizontalScrollBar()->value();
    QTreeView::scrollTo(index, hint);
    horizontalScrollBar()->setValue(nBefore);
    const int nTelling = iconSize().width() + c_nEnoughLetters * fontMetrics().height();
    ShowSideways(index, std::min(nTelling, sizeHintForIndex(index).width()));
}

void CBookTreeView::ShowSideways(const QModelIndex& index, int nEnough) {
    const QRect line = visualRect(index);
    const int nPane = viewport()->width();
    if (line.isEmpty() || (line.left() >= 0 && line.left() + std::min(nEnough, line.width()) <= nPane))
        return;
    // As much of it as there is room for; from the left with its arrow.
    const int nRight = line.left() + std::max(nEnough, sizeHintForIndex(index).width());
    const int nStep = line.left() < 0 ? line.left() - indentation() : std::min(line.left(), nRight - nPane);
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() + nStep);
}

void CBookTreeView::FollowMoved(const QModelIndex& from, int, int, const QModelIndex& to) {
    // What was dropped is shown by whoever drops it.
    if (from == to)
        scrollTo(currentIndex());
}

bool CBookTreeView::RunCommand(int nCommand) {
    FinishTyping();
    return m_actions.Run(nCommand);
}

void CBookTreeView::FinishTyping() {
    if (m_edited.isValid())
        setFocus();
}

void CBookTreeView::EditTitle(const QModelIndex& index) {
    m_typedTitle.reset();
    m_edited = index;
    scrollTo(index);
    ShowSideways(index, c_nEditWidth);
    edit(index);
}

void CBookTreeView::closeEditor(QWidget* pEditor, QAbstractItemDelegate::EndEditHint) {
    // Neither Tab nor an arrow goes on to edit the next title.
    QTreeView::closeEditor(pEditor, QAbstractItemDelegate::NoHint);
    const QModelIndex edited = std::exchange(m_edited, QPersistentModelIndex());
    if (edited.isValid())
        m_actions.FinishRename(edited, std::exchange(m_typedTitle, std::nullopt));
}
