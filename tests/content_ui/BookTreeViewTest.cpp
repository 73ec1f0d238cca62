#include "content/ui/BookTreeView.h"

#include "content/Texts.h"
#include "tests/content/CourseOnDisk.h"

#include <QApplication>
#include <QBuffer>
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

/// A frame whose right-hand pane only notes what it is told to show.
class CNotingHost : public INodeViewHost {
public:
    struct Shown {
        EViewKind Kind;
        qint32 nId;
        bool operator==(const Shown&) const = default;
    };
    std::vector<Shown> Switches;
    bool bRefuse = false;
    bool bEditor = false;
    int nAsked = 0;

    bool ShowNodeView(EViewKind kind, CBookNode* pNode, int) override {
        if (!bRefuse)
            Switches.push_back({kind, pNode->GetId()});
        return !bRefuse;
    }
    bool LeaveCurrentView(bool) override {
        ++nAsked;
        return !bRefuse;
    }
    bool IsEditorShowing() const override { return bEditor; }
    void SelectNode(qint32) override {}
    void RunCommand(int) override {}

    Shown Last() const { return Switches.empty() ? Shown{EViewKind::Empty, -1} : Switches.back(); }
};

class BookTreeViewTest : public ::testing::Test {
protected:
    CCourseOnDisk m_disk;
    CNotingHost m_host;
    std::unique_ptr<CBookTreeView> m_pTree;
    qint32 m_nOne, m_nTwo, m_nSection, m_nPoint, m_nDetail;

    /// 一 (节 (点 (细))), 二: a node of each depth, and one without anything below.
    BookTreeViewTest() {
        for (const int nImage : {136, 139, 140, 141, 339, 142})
            PutImage(nImage);
        const auto pRoot = CBookNode::Root(*m_disk.pCourse);
        const auto pOne = pRoot->AddChild(u"一"_s);
        const auto pSection = pOne->AddChild(u"节"_s);
        const auto pPoint = pSection->AddChild(u"点"_s);
        m_nOne = pOne->GetId();
        m_nSection = pSection->GetId();
        m_nPoint = pPoint->GetId();
        m_nDetail = pPoint->AddChild(u"细"_s)->GetId();
        m_nTwo = pRoot->AddChild(u"二"_s)->GetId();

        m_pTree = std::make_unique<CBookTreeView>(m_host, m_disk.People);
        m_pTree->resize(300, 400);
        m_pTree->show();
        m_pTree->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(m_pTree.get()));
        m_pTree->LoadTree(*m_disk.pCourse);
        QApplication::processEvents();
    }

    /// Each resource is a square of a colour of its own, so that a line tells which one it shows.
    static QColor ColorOf(int nImage) { return QColor(nImage % 251, 80, 120); }
    static void PutImage(int nImage) {
        QImage image(18, 18, QImage::Format_RGB32);
        image.fill(ColorOf(nImage));
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        image.save(&buffer, "PNG");
        CCourseOnDisk::Put(CSysInfo::Instance().GetSysDataFolder(true) +
                               u"Images\\Resource\\%1.png"_s.arg(nImage),
                           buffer.data());
    }
    static bool Shows(const QTreeWidgetItem* pItem, int nImage) {
        return pItem->icon(0).pixmap(18, 18).toImage().pixelColor(9, 9) == ColorOf(nImage);
    }

    QTreeWidgetItem* Root() { return m_pTree->topLevelItem(2); }
    QTreeWidgetItem* Line(int nRow) { return Root()->child(nRow); }
    QStringList RootTitles() {
        QStringList titles;
        for (int nRow = 0; nRow < Root()->childCount(); ++nRow)
            titles.append(Line(nRow)->text(0));
        return titles;
    }
    QStringList StoredTitles() {
        QStringList titles;
        for (const NodeHeader& header : CBookNode::Root(*m_disk.pCourse)->GetChildren())
            titles.append(header.Title);
        return titles;
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
    EXPECT_EQ(m_pTree->topLevelItem(1)->text(0), u"物理"_s);
    EXPECT_EQ(Root()->text(0), u"王老师"_s);
    EXPECT_EQ(RootTitles(), (QStringList{u"一"_s, u"二"_s}));
    EXPECT_TRUE(Root()->isExpanded());
    EXPECT_EQ(SelectedId(), c_nRootNodeId);
    EXPECT_EQ(m_host.Last(), (CNotingHost::Shown{EViewKind::ChildrenList, c_nRootNodeId}));
    EXPECT_EQ(m_pTree->palette().color(QPalette::Base), QColor(0x10, 0x20, 0x30));
    EXPECT_EQ(m_pTree->visualItemRect(Line(0)).height(), 22);

    QTreeWidgetItem* pOne = Line(0);
    ASSERT_EQ(pOne->childCount(), 1);
    EXPECT_EQ(pOne->child(0)->childCount(), 0);
    EXPECT_TRUE(Shows(pOne, 141));
    EXPECT_TRUE(Shows(Line(1), 142));
    m_pTree->expandItem(pOne);
    EXPECT_EQ(pOne->child(0)->childCount(), 1);
    EXPECT_TRUE(Shows(pOne, 339));
    EXPECT_TRUE(Shows(pOne->child(0), 141));
    m_pTree->collapseItem(pOne);
    EXPECT_TRUE(Shows(pOne, 141));

    m_pTree->ResetTree();
    EXPECT_EQ(m_pTree->topLevelItemCount(), 0);
    EXPECT_EQ(m_pTree->GetSelectedNode(), nullptr);
    EXPECT_FALSE(m_pTree->IsCommandEnabled(TreeCommand::c_nAddChild));
}

TEST_F(BookTreeViewTest, AViewThatRefusesKeepsTheSelection) {
    Click(Line(1));
    EXPECT_EQ(SelectedId(), m_nTwo);
    EXPECT_TRUE(Line(1)->font(0).bold());
    EXPECT_FALSE(Root()->font(0).bold());
    EXPECT_EQ(m_host.Last(), (CNotingHost::Shown{EViewKind::Nothing, m_nTwo}));

    m_host.bRefuse = true;
    m_host.nAsked = 0;
    Click(Line(0));
    EXPECT_EQ(m_host.nAsked, 1);
    QTest::keyClick(m_pTree.get(), Qt::Key_Up);
    EXPECT_EQ(m_host.nAsked, 2);
    EXPECT_EQ(SelectedId(), m_nTwo);
    EXPECT_EQ(m_pTree->selectedItems(), QList<QTreeWidgetItem*>{Line(1)});
    EXPECT_TRUE(Line(1)->font(0).bold());
    EXPECT_FALSE(Line(0)->font(0).bold());

    m_host.bRefuse = false;
    QTest::keyClick(m_pTree.get(), Qt::Key_Up);
    EXPECT_EQ(SelectedId(), m_nOne);
}

TEST_F(BookTreeViewTest, HeadingsAreNeverSelected) {
    m_host.nAsked = 0;
    Click(m_pTree->topLevelItem(0));
    QTest::keyClick(m_pTree.get(), Qt::Key_Up);
    QTest::keyClick(m_pTree.get(), Qt::Key_Home);
    EXPECT_EQ(m_host.nAsked, 0);
    EXPECT_EQ(SelectedId(), c_nRootNodeId);
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
    EXPECT_EQ(m_disk.Store().FindChild(m_nTwo, u"Intro"_s).Id, SelectedId());

    ASSERT_TRUE(m_pTree->RunCommand(TreeCommand::c_nAddNode));
    TypeTitle("dropped", Qt::Key_Escape);
    EXPECT_EQ(Line(1)->child(1)->text(0), u"新建栏目"_s);
    EXPECT_EQ(m_pTree->currentItem(), Line(1)->child(1));
}

TEST_F(BookTreeViewTest, RenamingRefusesASiblingsTitleAndTakesAnother) {
    Click(Line(1));
    QTest::keyClick(m_pTree.get(), Qt::Key_F2);
    TypeTitle("Same", Qt::Key_Return);
    Click(Line(0));
    QTest::keyClick(m_pTree.get(), Qt::Key_F2);
    m_disk.People.Expect(u"对不起，父栏目下已有同名栏目存在！"_s);
    TypeTitle("Same", Qt::Key_Return);
    EXPECT_EQ(RootTitles(), (QStringList{u"一"_s, u"Same"_s}));
    EXPECT_EQ(StoredTitles(), RootTitles());
    EXPECT_EQ(SelectedId(), m_nOne);

    // The root's line is fixed.
    Click(Root());
    QTest::keyClick(m_pTree.get(), Qt::Key_F2);
    EXPECT_EQ(m_pTree->findChild<QLineEdit*>(u"titleEdit"_s), nullptr);
}

TEST_F(BookTreeViewTest, ATitleThatCannotBeStoredStaysAsItWas) {
    Click(Line(1));
    m_pTree->RunCommand(TreeCommand::c_nRename);
    m_disk.Store().Close();
    m_disk.People.Expect(ContentText::c_strTitleNotStored);
    TypeTitle("New", Qt::Key_Return);
    EXPECT_EQ(Line(1)->text(0), u"二"_s);
}

TEST_F(BookTreeViewTest, AChildBelowContentIsAskedFor) {
    Click(Line(1));
    m_pTree->RunCommand(TreeCommand::c_nCreateContent);
    EXPECT_EQ(m_host.Last(), (CNotingHost::Shown{EViewKind::Editor, m_nTwo}));
    EXPECT_EQ(m_disk.pCourse->GetChanges(), 1);
    EXPECT_EQ(m_disk.Store().GetNode(m_nTwo).Type, NodeType::c_nEditorPage);
    m_disk.People.Expect(ContentText::c_strChildBelowContent, BoxAnswer::Cancel);
    m_pTree->RunCommand(TreeCommand::c_nAddChild);
    EXPECT_EQ(Line(1)->childCount(), 0);
    EXPECT_EQ(m_disk.Store().GetChildrenCount(m_nTwo), 0);

    m_disk.People.Expect(ContentText::c_strOverwriteContent, BoxAnswer::Cancel);
    m_pTree->RunCommand(TreeCommand::c_nCreateContentInTree);
    m_disk.People.Expect(ContentText::c_strClearContent);
    m_pTree->RunCommand(TreeCommand::c_nClearContent);
    EXPECT_EQ(m_host.Last(), (CNotingHost::Shown{EViewKind::Nothing, m_nTwo}));
    EXPECT_FALSE(m_pTree->IsCommandEnabled(TreeCommand::c_nClearContent));
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
    EXPECT_TRUE(Line(1)->isExpanded());
    EXPECT_EQ(m_host.Last(), (CNotingHost::Shown{EViewKind::ChildrenList, m_nTwo}));
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
    EXPECT_EQ(RootTitles(), QStringList{u"二"_s});
    EXPECT_EQ(StoredTitles(), RootTitles());
    EXPECT_EQ(SelectedId(), m_nTwo);

    // The last child: its parent is selected, and shows itself as a course without nodes.
    m_disk.People.Expect(ContentText::c_strDelete);
    m_pTree->RunCommand(TreeCommand::c_nDelete);
    EXPECT_EQ(SelectedId(), c_nRootNodeId);
    EXPECT_EQ(m_host.Last(), (CNotingHost::Shown{EViewKind::ChildrenList, c_nRootNodeId}));
}

TEST_F(BookTreeViewTest, MovingKeepsSelectionAndOpenBranches) {
    m_pTree->expandItem(Line(0));
    m_pTree->expandItem(Line(0)->child(0));
    Click(Line(1));
    const size_t nSwitches = m_host.Switches.size();
    m_pTree->RunCommand(TreeCommand::c_nMoveUp);
    EXPECT_EQ(RootTitles(), (QStringList{u"二"_s, u"一"_s}));
    EXPECT_EQ(StoredTitles(), RootTitles());
    EXPECT_EQ(SelectedId(), m_nTwo);
    EXPECT_TRUE(Line(1)->isExpanded() && Line(1)->child(0)->isExpanded());
    EXPECT_TRUE(Shows(Line(1), 339));
    EXPECT_EQ(m_host.Switches.size(), nSwitches);
    m_disk.People.Expect(ContentText::c_strFirstNode);
    m_pTree->RunCommand(TreeCommand::c_nMoveUp);
    m_pTree->RunCommand(TreeCommand::c_nMoveDown);
    EXPECT_EQ(StoredTitles(), (QStringList{u"一"_s, u"二"_s}));
    m_disk.People.Expect(ContentText::c_strLastNode);
    m_pTree->RunCommand(TreeCommand::c_nMoveDown);
    EXPECT_EQ(RootTitles(), StoredTitles());
}

TEST_F(BookTreeViewTest, AnyNodeIsFoundFromOutside) {
    m_pTree->SelectNode(m_nDetail);
    EXPECT_EQ(SelectedId(), m_nDetail);
    EXPECT_TRUE(Line(0)->child(0)->child(0)->isExpanded());
    EXPECT_TRUE(m_disk.People.Boxes.empty());
}

TEST_F(BookTreeViewTest, AFailureOfTheStoreIsShown) {
    Click(Line(1));
    const QStringList titles = RootTitles();
    m_disk.Folder.Write(m_disk.NodePath(m_nTwo + 1).chopped(1), "in the way");
    const auto nBoxes = m_disk.People.Boxes.size();
    m_disk.People.Expect(
        ContentText::c_strFolderNotUsable.arg(m_disk.Folder.Native(m_disk.NodePath(m_nTwo + 1))));
    m_pTree->RunCommand(TreeCommand::c_nAddNode);
    EXPECT_EQ(m_disk.People.Boxes.size(), nBoxes + 1);
    EXPECT_EQ(RootTitles(), titles);
    EXPECT_EQ(StoredTitles(), titles);
}

TEST_F(BookTreeViewTest, ACourseThatClosesBehindAQuestionEndsTheCommand) {
    Click(Line(1));
    QTimer timer;
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
    EXPECT_EQ(StoredTitles(), (QStringList{u"一"_s, u"二"_s}));
    // A store that can't be read leaves no half tree.
    m_disk.Store().Close();
    EXPECT_THROW(m_pTree->LoadTree(*m_disk.pCourse), Torvane::CRunException);
    EXPECT_EQ(m_pTree->topLevelItemCount(), 0);
}

TEST_F(BookTreeViewTest, TheMenuOffersWhatIsBuiltAndFits) {
    const auto menuAt = [&](QTreeWidgetItem* pItem) {
        const QPoint at = m_pTree->visualItemRect(pItem).center();
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, m_pTree->viewport()->mapToGlobal(at));
        QApplication::sendEvent(m_pTree->viewport(), &event);
        return m_pTree->findChild<QMenu*>(u"treeMenu"_s);
    };
    EXPECT_EQ(menuAt(m_pTree->topLevelItem(0)), nullptr);
    EXPECT_EQ(menuAt(Line(0)), nullptr); // it has children
    EXPECT_EQ(SelectedId(), m_nOne);
    QMenu* pMenu = menuAt(Line(1));
    ASSERT_NE(pMenu, nullptr);
    EXPECT_EQ(SelectedId(), m_nTwo);
    // An empty node has nothing to edit or to clear, and transfer is not built.
    for (const QAction* pAction : pMenu->actions()) {
        static const QStringList off{u"编辑栏目文件"_s, u"导出(&X)"_s, u"导入(&I)"_s, u"清空栏目内容"_s};
        EXPECT_EQ(pAction->isEnabled(), !off.contains(pAction->text())) << pAction->text().toStdString();
    }
    EXPECT_EQ(pMenu->actions().size(), 12);
    pMenu->close();
    EXPECT_FALSE(m_pTree->RunCommand(TreeCommand::c_nExport));
    EXPECT_FALSE(m_pTree->RunCommand(1));
}

} // namespace
