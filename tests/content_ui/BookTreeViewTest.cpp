#include "content/ui/BookTreeView.h"

#include "content/Texts.h"
#include "platform/ui/Pictures.h"
#include "tests/content/CourseOnDisk.h"
#include "tests/content_ui/RecordingHost.h"

#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;
using BoxAnswer = CScriptedPeople::BoxAnswer;

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

    static bool Shows(const QTreeWidgetItem* pItem, int nImage) {
        const QIcon icon = Pictures::ResourceIcon(CSysInfo::Instance().GetSysDataFolder(false), nImage);
        return pItem->icon(0).pixmap(18, 18).toImage() == icon.pixmap(18, 18).toImage();
    }

    QTreeWidgetItem* Root() { return m_pTree->topLevelItem(2); }
    QTreeWidgetItem* Line(int nRow) { return Root()->child(nRow); }
    /// What stands below the root, in the tree and in the store alike.
    QStringList Titles() {
        QStringList shown, stored;
        for (int nRow = 0; nRow < Root()->childCount(); ++nRow)
            shown.append(Line(nRow)->text(0));
        for (const NodeHeader& header : CBookNode::Root(*m_disk.pCourse)->GetChildren())
            stored.append(header.Title);
        EXPECT_EQ(shown, stored);
        return stored;
    }
    qint32 SelectedId() { return m_pTree->GetSelectedNode() ? m_pTree->GetSelectedNode()->GetId() : -1; }
    void Click(QTreeWidgetItem* pItem) {
        QTest::mouseClick(m_pTree->viewport(), Qt::LeftButton, {}, m_pTree->visualItemRect(pItem).center());
        QApplication::processEvents();
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
    /// Does a step in the modal dialog that comes next, and presses one of its buttons.
    void InDialog(const QString& strName, std::function<void(QWidget&)> step, const QString& strButton) {
        QTimer::singleShot(0, [=] {
            QWidget* pDialog = QApplication::activeModalWidget();
            ASSERT_NE(pDialog, nullptr);
            EXPECT_EQ(pDialog->objectName(), strName);
            step(*pDialog);
            pDialog->findChild<QPushButton*>(strButton)->click();
        });
    }
};

TEST_F(BookTreeViewTest, LoadsOneLevelMoreThanIsSeen) {
    ASSERT_EQ(m_pTree->topLevelItemCount(), 3);
    EXPECT_EQ(Titles(), (QStringList{u"一"_s, u"二"_s}));
    EXPECT_TRUE(Root()->isExpanded());
    EXPECT_EQ(SelectedId(), c_nRootNodeId);
    EXPECT_EQ(m_host.Last(), (Shown{EViewKind::ChildrenList, c_nRootNodeId}));
    QTreeWidgetItem* pOne = Line(0);
    ASSERT_EQ(pOne->childCount(), 1);
    EXPECT_EQ(pOne->child(0)->childCount(), 0);
    EXPECT_TRUE(Shows(pOne, 141));
    EXPECT_TRUE(Shows(Line(1), 142));
    m_pTree->expandItem(pOne);
    EXPECT_EQ(pOne->child(0)->childCount(), 1);
    EXPECT_TRUE(Shows(pOne, 339));
    EXPECT_TRUE(Shows(pOne->child(0), 141));
    m_pTree->SelectNode(m_nDetail);
    EXPECT_EQ(SelectedId(), m_nDetail);
    EXPECT_TRUE(pOne->child(0)->child(0)->isExpanded());
}

TEST_F(BookTreeViewTest, AViewThatRefusesKeepsTheSelection) {
    Click(Line(1));
    EXPECT_EQ(SelectedId(), m_nTwo);
    EXPECT_TRUE(Line(1)->font(0).bold());
    EXPECT_FALSE(Root()->font(0).bold());
    EXPECT_EQ(m_host.Last(), (Shown{EViewKind::Nothing, m_nTwo}));

    m_host.bRefuse = true;
    m_host.nAsked = 0;
    Click(Line(0));
    EXPECT_EQ(m_host.nAsked, 1);
    QTest::keyClick(m_pTree.get(), Qt::Key_Up);
    // A heading is never selected, so that nobody is asked for it.
    Click(m_pTree->topLevelItem(0));
    EXPECT_EQ(m_host.nAsked, 2);
    EXPECT_EQ(m_pTree->selectedItems(), QList<QTreeWidgetItem*>{Line(1)});
    EXPECT_TRUE(Line(1)->font(0).bold() && !Line(0)->font(0).bold());

    m_host.bRefuse = false;
    QTest::keyClick(m_pTree.get(), Qt::Key_Up);
    EXPECT_EQ(SelectedId(), m_nOne);
}

TEST_F(BookTreeViewTest, ANewChildIsNamedInPlace) {
    Click(Line(1));
    ASSERT_TRUE(m_pTree->RunCommand(TreeCommand::c_nAddChild));
    ASSERT_EQ(Line(1)->childCount(), 1);
    EXPECT_EQ(Line(1)->child(0)->text(0), u"新建栏目"_s);
    EXPECT_TRUE(Shows(Line(1), 339));
    TypeTitle("Intro", Qt::Key_Return);
    EXPECT_EQ(Line(1)->child(0)->text(0), u"Intro"_s);
    EXPECT_EQ(m_disk.Store().GetNode(SelectedId()).Title, u"Intro"_s);

    ASSERT_TRUE(m_pTree->RunCommand(TreeCommand::c_nAddNode));
    TypeTitle("dropped", Qt::Key_Escape);
    EXPECT_EQ(Line(1)->child(1)->text(0), u"新建栏目"_s);
    EXPECT_EQ(m_pTree->currentItem(), Line(1)->child(1));
}

TEST_F(BookTreeViewTest, RenamingRefusesASiblingsTitleAndTakesAnother) {
    Click(Line(1));
    m_pTree->RunCommand(TreeCommand::c_nRename);
    TypeTitle("Same", Qt::Key_Return);
    Click(Line(0));
    m_pTree->RunCommand(TreeCommand::c_nRename);
    m_disk.People.Expect(u"对不起，父栏目下已有同名栏目存在！"_s);
    TypeTitle("Same", Qt::Key_Return);
    EXPECT_EQ(Titles(), (QStringList{u"一"_s, u"Same"_s}));
    m_pTree->RunCommand(TreeCommand::c_nRename);
    m_disk.Store().Close();
    m_disk.People.Expect(ContentText::c_strTitleNotStored);
    TypeTitle("New", Qt::Key_Return);
    EXPECT_EQ(Line(0)->text(0), u"一"_s);
}

TEST_F(BookTreeViewTest, AChildBelowContentIsAskedFor) {
    Click(Line(1));
    m_pTree->RunCommand(TreeCommand::c_nCreateContent);
    EXPECT_EQ(m_host.Last(), (Shown{EViewKind::Editor, m_nTwo}));
    EXPECT_EQ(m_disk.pCourse->GetChanges(), 1);
    EXPECT_EQ(m_disk.Store().GetNode(m_nTwo).Type, NodeType::c_nEditorPage);
    m_disk.People.Expect(ContentText::c_strChildBelowContent, BoxAnswer::Cancel);
    m_pTree->RunCommand(TreeCommand::c_nAddChild);
    EXPECT_EQ(m_disk.Store().GetChildrenCount(m_nTwo), 0);
    m_disk.People.Expect(ContentText::c_strOverwriteContent, BoxAnswer::Cancel);
    m_pTree->RunCommand(TreeCommand::c_nCreateContentInTree);
    m_disk.People.Expect(ContentText::c_strClearContent);
    m_pTree->RunCommand(TreeCommand::c_nClearContent);
    EXPECT_EQ(m_host.Last(), (Shown{EViewKind::Nothing, m_nTwo}));
}

TEST_F(BookTreeViewTest, SeveralChildrenInOneGo) {
    Click(Line(1));
    m_disk.People.Expect(ContentText::c_strNewTitleTaken.arg(u"a"_s));
    InDialog(
        u"askTitles"_s,
        [](QWidget& dialog) {
            auto* pTitles = dialog.findChild<QLineEdit*>(u"titles"_s);
            EXPECT_EQ(pTitles->selectedText(), u"新建栏目"_s);
            pTitles->setText(u"a， b,,a"_s);
        },
        u"ok"_s);
    m_pTree->RunCommand(TreeCommand::c_nAddManyChildren);
    ASSERT_EQ(Line(1)->childCount(), 2);
    EXPECT_EQ(Line(1)->child(1)->text(0), u"b"_s);
    EXPECT_EQ(m_host.Last(), (Shown{EViewKind::ChildrenList, m_nTwo}));
}

TEST_F(BookTreeViewTest, DeletingAsksTwiceForWhatHoldsSomething) {
    Click(Line(0));
    InDialog(
        u"confirmDeletion"_s,
        [](QWidget& dialog) {
            EXPECT_EQ(dialog.findChild<QPlainTextEdit*>(u"titles"_s)->toPlainText(), u"节\n点\n细\n"_s);
            EXPECT_TRUE(dialog.findChild<QPushButton*>(u"cancel"_s)->isDefault());
        },
        u"ok"_s);
    m_disk.People.Expect(ContentText::c_strDelete);
    m_pTree->RunCommand(TreeCommand::c_nDelete);
    EXPECT_EQ(Titles(), QStringList{u"二"_s});
    EXPECT_EQ(SelectedId(), m_nTwo);
    // The last child: its parent is selected, and shows itself as a course without nodes.
    m_disk.People.Expect(ContentText::c_strDelete);
    m_pTree->RunCommand(TreeCommand::c_nDelete);
    EXPECT_EQ(SelectedId(), c_nRootNodeId);
    EXPECT_EQ(m_host.Last(), (Shown{EViewKind::ChildrenList, c_nRootNodeId}));
}

TEST_F(BookTreeViewTest, MovingKeepsSelectionAndOpenBranches) {
    m_pTree->expandItem(Line(0));
    m_pTree->expandItem(Line(0)->child(0));
    Click(Line(1));
    m_pTree->RunCommand(TreeCommand::c_nMoveUp);
    EXPECT_EQ(Titles(), (QStringList{u"二"_s, u"一"_s}));
    EXPECT_EQ(SelectedId(), m_nTwo);
    EXPECT_TRUE(Line(1)->isExpanded() && Line(1)->child(0)->isExpanded());
    m_disk.People.Expect(ContentText::c_strFirstNode);
    m_pTree->RunCommand(TreeCommand::c_nMoveUp);
    m_pTree->RunCommand(TreeCommand::c_nMoveDown);
    m_disk.People.Expect(ContentText::c_strLastNode);
    m_pTree->RunCommand(TreeCommand::c_nMoveDown);
    EXPECT_EQ(Titles(), (QStringList{u"一"_s, u"二"_s}));
}

TEST_F(BookTreeViewTest, ACourseThatClosesBehindAQuestionEndsTheCommand) {
    Click(Line(1));
    struct CClosing : CScriptedPeople {
        CBookTreeView* pTree = nullptr;
        BoxAnswer Ask(const QString&, const QString&, BoxButtons, BoxIcon) override {
            pTree->ResetTree();
            return BoxAnswer::Ok;
        }
    } people;
    CBookTreeView tree(m_host, people);
    people.pTree = &tree;
    for (const int nCommand : {TreeCommand::c_nDelete, TreeCommand::c_nClearContentInTree}) {
        tree.LoadTree(*m_disk.pCourse);
        tree.SelectNode(m_nDetail);
        EXPECT_TRUE(tree.RunCommand(nCommand));
        EXPECT_EQ(tree.topLevelItemCount(), 0);
    }
    EXPECT_EQ(m_disk.Store().GetNode(m_nDetail).Title, u"细"_s);
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
    const auto menuAt = [&](QTreeWidgetItem* pItem) {
        const QPoint at = m_pTree->visualItemRect(pItem).center();
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, m_pTree->viewport()->mapToGlobal(at));
        QApplication::sendEvent(m_pTree->viewport(), &event);
        return m_pTree->findChild<QMenu*>(u"treeMenu"_s);
    };
    EXPECT_EQ(menuAt(m_pTree->topLevelItem(0)), nullptr);
    EXPECT_EQ(menuAt(Line(0)), nullptr); // it has children
    EXPECT_EQ(SelectedId(), m_nOne);
    const QMenu* pMenu = menuAt(Line(1));
    ASSERT_NE(pMenu, nullptr);
    EXPECT_EQ(SelectedId(), m_nTwo);
    EXPECT_FALSE(pMenu->findChild<QAction*>(u"command_32914"_s)->isEnabled());
    EXPECT_TRUE(pMenu->findChild<QAction*>(u"command_32909"_s)->isEnabled());
}

} // namespace
