#include "content/ui/BookTreeView.h"

#include "content/ui/TitleDelegate.h"
#include "platform/ui/Pictures.h"
#include "tests/content/CourseOnDisk.h"
#include "tests/content_ui/RecordingHost.h"
#include "tests/support/WindowHelp.h"

#include <QAccessible>
#include <QScrollBar>
#include <QWindow>

namespace {

using Shown = CRecordingHost::Shown;

class BookTreeViewTest : public ::testing::Test {
protected:
    CCourseOnDisk m_disk;
    CRecordingHost m_host;
    std::unique_ptr<CBookTreeView> m_pTree;
    qint32 m_nOne, m_nTwo, m_nDetail;

    /// 一 (节 (点 (细))), 二: a node of each depth, and one without anything below.
    BookTreeViewTest() {
        const auto pRoot = CBookNode::Root(*m_disk.pCourse);
        const auto pOne = pRoot->AddChild(u"一"_s);
        m_nOne = pOne->GetId();
        m_nDetail = pOne->AddChild(u"节"_s)->AddChild(u"点"_s)->AddChild(u"细"_s)->GetId();
        m_nTwo = pRoot->AddChild(u"二"_s)->GetId();

        m_pTree = std::make_unique<CBookTreeView>(m_host, m_disk.People);
        m_pTree->resize(300, 400);
        m_pTree->show();
        m_pTree->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(m_pTree.get()));
        m_pTree->LoadTree(*m_disk.pCourse);
        QApplication::processEvents();
    }

    /// A line as it is drawn.
    QStyleOptionViewItem Drawn(const QModelIndex& index) {
        QStyleOptionViewItem option;
        option.state.setFlag(QStyle::State_Open, m_pTree->isExpanded(index));
        static_cast<const CTitleDelegate*>(m_pTree->itemDelegate())->initStyleOption(&option, index);
        return option;
    }
    bool Shows(const QModelIndex& index, int nImage) {
        const QIcon icon = Pictures::ResourceIcon(CSysInfo::Instance().GetSysDataFolder(false), nImage);
        return Drawn(index).icon.pixmap(18, 18).toImage() == icon.pixmap(18, 18).toImage();
    }

    QModelIndex Root() { return m_pTree->model()->index(2, 0); }
    QModelIndex Line(int nRow) { return Below(Root(), nRow); }
    QModelIndex Below(const QModelIndex& parent, int nRow) {
        return m_pTree->model()->index(nRow, 0, parent);
    }
    int Rows(const QModelIndex& index) { return m_pTree->model()->rowCount(index); }
    /// What stands below the root.
    QStringList Titles() {
        QStringList shown;
        for (int nRow = 0; nRow < Rows(Root()); ++nRow)
            shown.append(Line(nRow).data().toString());
        return shown;
    }
    qint32 SelectedId() { return m_pTree->GetSelectedNode() ? m_pTree->GetSelectedNode()->GetId() : -1; }
    void Click(const QModelIndex& index) {
        QTest::mouseClick(m_pTree->viewport(), Qt::LeftButton, {}, m_pTree->visualRect(index).center());
        QApplication::processEvents();
    }
    /// A true drag with the mouse; at the target the key is pressed, if any, and then the mouse let go.
    void Drag(const QModelIndex& source, const QModelIndex& target, Qt::Key key = {}) {
        QWindow* pWindow = m_pTree->windowHandle();
        const auto middle = [&](const QModelIndex& index) {
            return m_pTree->viewport()->mapTo(m_pTree.get(), m_pTree->visualRect(index).center());
        };
        const QPoint from = middle(source);
        const QPoint to = middle(target);
        // The drag has an event loop of its own, out of which the rest of the way comes.
        QTimer::singleShot(100, m_pTree.get(), [=] {
            QTest::mouseMove(pWindow, to - QPoint(3, 0));
            QTest::mouseMove(pWindow, to);
            if (key != Qt::Key())
                QTest::keyClick(pWindow, key);
            QTest::mouseRelease(pWindow, Qt::LeftButton, {}, to);
        });
        QTest::mousePress(pWindow, Qt::LeftButton, {}, from);
        QTest::mouseMove(pWindow, from + QPoint(QApplication::startDragDistance() + 1, 0));
        QTest::qWait(200);
    }
    /// Types into the title that is being edited, and ends with the key.
    void TypeTitle(const char* pszText, Qt::Key key) {
        auto* pEdit = m_pTree->findChild<QLineEdit*>(u"titleEdit"_s);
        ASSERT_NE(pEdit, nullptr);
        QTest::keyClicks(pEdit, QString::fromLatin1(pszText));
        QTest::keyClick(pEdit, key);
        QApplication::processEvents();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
};

TEST_F(BookTreeViewTest, DrawsLinesAsTheyAre) {
    ASSERT_EQ(m_pTree->model()->rowCount(), 3);
    EXPECT_EQ(Titles(), (QStringList{u"一"_s, u"二"_s}));
    EXPECT_TRUE(m_pTree->isExpanded(Root()));
    EXPECT_TRUE(m_pTree->hasFocus());
    EXPECT_EQ(m_host.Last(), (Shown{EViewKind::ChildrenList, c_nRootNodeId}));
    EXPECT_TRUE(Shows(Root(), 140) && Shows(Line(0), 141) && Shows(Line(1), 142));
    const QModelIndex one = Line(0);
    m_pTree->expand(one);
    EXPECT_TRUE(Shows(one, 339));
    // One level more than is seen.
    EXPECT_TRUE(Shows(Below(one, 0), 141));
    m_pTree->SelectNode(m_nDetail);
    EXPECT_EQ(SelectedId(), m_nDetail);
    EXPECT_TRUE(m_pTree->isExpanded(Below(one, 0)));
    EXPECT_TRUE(Drawn(m_pTree->currentIndex()).font.bold());
    EXPECT_FALSE(Drawn(Root()).font.bold());
}

TEST_F(BookTreeViewTest, AViewThatRefusesKeepsTheSelection) {
    Click(Line(1));
    EXPECT_EQ(SelectedId(), m_nTwo);
    EXPECT_EQ(m_host.Last(), (Shown{EViewKind::Nothing, m_nTwo}));

    m_host.bRefuse = true;
    m_host.nAsked = 0;
    Click(Line(0));
    EXPECT_EQ(m_host.nAsked, 1);
    QTest::keyClick(m_pTree.get(), Qt::Key_Up);
    // A heading is never selected, so that nobody is asked for it.
    Click(m_pTree->model()->index(0, 0));
    EXPECT_EQ(m_host.nAsked, 2);
    EXPECT_EQ(m_pTree->selectionModel()->selectedIndexes(), QModelIndexList{Line(1)});

    m_host.bRefuse = false;
    QTest::keyClick(m_pTree.get(), Qt::Key_Up);
    EXPECT_EQ(SelectedId(), m_nOne);
}

TEST_F(BookTreeViewTest, APressedMouseThatLeavesItsLineSelectsNothing) {
    const QPoint from = m_pTree->visualRect(Root()).center();
    QTest::mousePress(m_pTree->viewport(), Qt::LeftButton, {}, m_pTree->visualRect(Line(1)).center());
    EXPECT_EQ(SelectedId(), c_nRootNodeId);
    QTest::mouseRelease(m_pTree->viewport(), Qt::LeftButton, {}, from);
    EXPECT_EQ(SelectedId(), c_nRootNodeId);
    EXPECT_EQ(m_host.nAsked, 1);
}

TEST_F(BookTreeViewTest, ANewChildIsNamedInPlace) {
    Click(Line(1));
    ASSERT_TRUE(m_pTree->RunCommand(TreeCommand::c_nAddChild));
    EXPECT_TRUE(Shows(Line(1), 339));
    TypeTitle("Intro", Qt::Key_Return);
    EXPECT_EQ(Below(Line(1), 0).data(), u"Intro"_s);
    EXPECT_EQ(m_disk.Store().GetNode(SelectedId()).Title, u"Intro"_s);

    ASSERT_TRUE(m_pTree->RunCommand(TreeCommand::c_nAddNode));
    TypeTitle("dropped", Qt::Key_Escape);
    EXPECT_EQ(Below(Line(1), 1).data(), u"新建栏目"_s);
    EXPECT_EQ(m_pTree->currentIndex(), Below(Line(1), 1));
}

TEST_F(BookTreeViewTest, ADroppedBranchStaysOpenAndThePageStaysAlone) {
    m_pTree->expand(Line(0));
    m_pTree->expand(Below(Line(0), 0));
    Click(Line(1));
    m_host.nAsked = 0;
    const QPersistentModelIndex branch(Below(Line(0), 0));
    Drag(branch, Root());
    EXPECT_EQ(Titles(), (QStringList{u"节"_s, u"一"_s, u"二"_s}));
    EXPECT_EQ(branch, Line(0));
    EXPECT_TRUE(m_pTree->isExpanded(branch));
    EXPECT_TRUE(Shows(Line(1), 142));
    // Into a leaf, which opens.
    Drag(branch, Line(1));
    EXPECT_EQ(branch.parent(), Line(0));
    EXPECT_TRUE(m_pTree->isExpanded(Line(0)) && m_pTree->isExpanded(branch));
    EXPECT_EQ(SelectedId(), m_nTwo);
    EXPECT_EQ(m_host.nAsked, 0);
}

TEST_F(BookTreeViewTest, ADragThatEndsNowhereChangesNothing) {
    m_pTree->expand(Line(0));
    const QModelIndex child = Below(Line(0), 0);
    Drag(Line(0), child);
    Drag(child, Root().siblingAtRow(1));
    Drag(Root(), Line(1));
    Drag(child, Line(1), Qt::Key_Escape);
    EXPECT_EQ(Titles(), (QStringList{u"一"_s, u"二"_s}));
    EXPECT_EQ(Rows(Line(0)) + Rows(Line(1)), 1);
    EXPECT_EQ(SelectedId(), c_nRootNodeId);
    // The mouse is free again.
    Click(Line(1));
    EXPECT_EQ(SelectedId(), m_nTwo);
}

TEST_F(BookTreeViewTest, ACourseThatClosesTakesTheDragAlong) {
    QTimer::singleShot(50, m_pTree.get(), [&] { m_pTree->ResetTree(); });
    Drag(Line(1), Line(0));
    EXPECT_EQ(m_pTree->model()->rowCount(), 0);
    EXPECT_EQ(CBookNode::Root(*m_disk.pCourse)->GetChildren().size(), 2);
}

TEST_F(BookTreeViewTest, ABranchThatClosesOverTheSelectionTakesIt) {
    m_pTree->SelectNode(m_nDetail);
    m_pTree->collapse(Line(0));
    EXPECT_EQ(SelectedId(), m_nOne);
    EXPECT_FALSE(m_pTree->isExpanded(Line(0)));
    // Where it may not, the keys go on from the branch.
    m_pTree->SelectNode(m_nDetail);
    m_host.bRefuse = true;
    m_pTree->collapse(Line(0));
    EXPECT_EQ(SelectedId(), m_nDetail);
    m_host.bRefuse = false;
    QTest::keyClick(m_pTree.get(), Qt::Key_Down);
    EXPECT_EQ(SelectedId(), m_nOne);
    QTest::keyClick(m_pTree.get(), Qt::Key_Down);
    EXPECT_EQ(SelectedId(), m_nTwo);
    QTest::keyClick(m_pTree.get(), Qt::Key_Home);
    EXPECT_EQ(SelectedId(), c_nRootNodeId);
}

TEST_F(BookTreeViewTest, ACourseMayCloseWhileANodeIsShown) {
    m_host.OnShow = [this] { m_pTree->ResetTree(); };
    Click(Line(0));
    EXPECT_EQ(m_pTree->model()->rowCount(), 0);
}

TEST_F(BookTreeViewTest, SelectingMovesNothingThatIsInSight) {
    m_pTree->resize(110, 400);
    m_pTree->SelectNode(m_nDetail);
    const QScrollBar& bar = *m_pTree->horizontalScrollBar();
    EXPECT_GT(bar.value(), 0);
    EXPECT_GE(m_pTree->visualRect(m_pTree->currentIndex()).left(), 0);
    const int nPlace = bar.value();
    const QModelIndex above = m_pTree->currentIndex().parent();
    QTest::mouseClick(m_pTree->viewport(), Qt::LeftButton, {},
                      m_pTree->visualRect(above).topLeft() + QPoint(40, 5));
    EXPECT_EQ(m_pTree->currentIndex(), above);
    EXPECT_EQ(bar.value(), nPlace);
    // Nor does a key do something else because of it.
    QTest::keyClick(m_pTree.get(), Qt::Key_Left);
    EXPECT_EQ(m_pTree->currentIndex(), above);
    EXPECT_FALSE(m_pTree->isExpanded(above));
    QTest::keyClick(m_pTree.get(), Qt::Key_Left);
    EXPECT_EQ(m_pTree->currentIndex(), above.parent());
    QTest::keyClick(m_pTree.get(), Qt::Key_Home);
    EXPECT_GE(m_pTree->visualRect(Root()).left(), 0);
}

TEST_F(BookTreeViewTest, SpeaksOfItsLines) {
    m_pTree->expand(Line(0));
    QAccessibleInterface* pTree = QAccessible::queryAccessibleInterface(m_pTree.get());
    const struct {
        QString strName;
        bool bBranch, bOpen, bSelected;
    } lines[]{{u"李老师"_s, true, true, true},
              {u"一"_s, true, true, false},
              {u"节"_s, true, false, false},
              {u"二"_s, false, false, false}};
    int nLine = 3; // behind the hidden header and the headings
    for (const auto& line : lines) {
        QAccessibleInterface* pLine = pTree->child(nLine++);
        ASSERT_NE(pLine, nullptr);
        const QAccessible::State state = pLine->state();
        EXPECT_EQ(pLine->role(), QAccessible::TreeItem);
        EXPECT_EQ(pLine->text(QAccessible::Name), line.strName);
        EXPECT_EQ(state.expandable, line.bBranch) << nLine;
        EXPECT_EQ(state.expanded, line.bOpen) << nLine;
        EXPECT_EQ(state.selected, line.bSelected) << nLine;
    }
}

TEST_F(BookTreeViewTest, ACourseThatClosesWhileATitleIsTypedLeavesNothingBehind) {
    Click(Line(1));
    m_pTree->RunCommand(TreeCommand::c_nRename);
    QTest::keyClicks(m_pTree->findChild<QLineEdit*>(u"titleEdit"_s), u"half"_s);
    m_pTree->ResetTree();
    QApplication::processEvents();
    EXPECT_EQ(m_disk.Store().GetNode(m_nTwo).Title, u"二"_s);
}

TEST_F(BookTreeViewTest, TheMenuComesForALeafAndSelectsIt) {
    const auto menuAt = [&](const QModelIndex& index) {
        const QPoint at = m_pTree->visualRect(index).center();
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, m_pTree->viewport()->mapToGlobal(at));
        QApplication::sendEvent(m_pTree->viewport(), &event);
        return m_pTree->findChild<QMenu*>(u"treeMenu"_s);
    };
    EXPECT_EQ(menuAt(m_pTree->model()->index(0, 0)), nullptr);
    EXPECT_EQ(menuAt(Line(0)), nullptr); // it has children
    EXPECT_EQ(SelectedId(), m_nOne);
    const QMenu* pMenu = menuAt(Line(1));
    ASSERT_NE(pMenu, nullptr);
    EXPECT_EQ(SelectedId(), m_nTwo);
    EXPECT_FALSE(pMenu->findChild<QAction*>(u"command_32914"_s)->isEnabled());
    EXPECT_TRUE(pMenu->findChild<QAction*>(u"command_32909"_s)->isEnabled());
}

} // namespace
