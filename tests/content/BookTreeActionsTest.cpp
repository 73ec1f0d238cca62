// The tree's commands by their questions and messages, to the letter and in order, and what they leave.
#include "course/CustomTitles.h"
#include "foundation/IniFile.h"
#include "tests/content/TreeOnDisk.h"

namespace {

const QString c_strNoList =
    u"系统默认的自动显示下级栏目功能将被自动关闭，您的用户将只能通过树型目录访问本栏目"
    u"的子栏目。如果您以后希望恢复系统提供的自动显示下级栏目功能，请选择\"编辑\""
    u"菜单中的\"清空栏目内容\"功能。"_s;
const QString c_strChildBelow =
    u"?本栏目已经拥有内容，当您为本栏目添加了下级栏目（子栏目）后，"_s + c_strNoList;
const QString c_strContentAbove =
    u"?本栏目已经拥有下级栏目（子栏目），当您为本栏目输入内容后，"_s + c_strNoList;
const QString c_strOverwrite = u"?该栏目已有内容，再次创建将覆盖已有内容，您要继续吗？"_s;
const QString c_strAdvised = u"k0您选择的栏目是%1, 我们建议您采用内部编辑器形势；"_s;
const QString c_strNotStored = u"x数据库操作失败！可能是父栏目下有同名栏目存在！"_s;
const QString c_strNotDeleted = u"x数据库操作失败！"_s;
const QString c_strNotMoved = u"x数据库操作失败!"_s;
const QString c_strTaken = u"!父栏目下已有名为\"%1\"的栏目存在。"_s;
const QString c_strLeafList = u"d<该栏目没有有内容的子栏目>"_s;
const QString c_strList = u"d节\r\n点\r\n"_s;
const QString c_strDelete = u"?删除栏目将不可恢复，您确认删除吗？"_s;
const QString c_strClear = u"¿清空栏目内容后，栏目现有内容将无法恢复，您确定继续吗？"_s;
const QString c_strLong(41, u'章');
/// What a script begins a box with that the person cancels.
constexpr QChar c_cCancel = u'~';

/// The nodes that each case begins with; a star marks a page.
const QString c_strBase = u"一(节(点)) 二* 三 点"_s;

struct Case {
    QString strAt;
    int nCommand;
    /// The boxes and dialogs that come, in order.
    QStringList script;
    QString strLeft = c_strBase;
    /// What is typed into a dialog or a title.
    QString strTyped = {};
    /// Where to drop it; no command then.
    QString strTarget = {};
    bool bStoreRefuses = false;
    int nPieces = 1000;
};

class CScriptedTree : public CTreeOnDisk {
public:
    /// The boxes and dialogs that come next, in order.
    QStringList Script;

    CScriptedTree() {
        const auto pRoot = CBookNode::Root(*Disk.pCourse);
        pRoot->AddChild(u"一"_s)->AddChild(u"节"_s)->AddChild(u"点"_s);
        pRoot->AddChild(u"二"_s)->CreateEditorPage(0);
        pRoot->AddChild(u"三"_s);
        pRoot->AddChild(u"点"_s);
        Open();
    }
    BoxAnswer OnBox(const QString& strBox) override {
        return Next(strBox) ? BoxAnswer::Ok : BoxAnswer::Cancel;
    }
    bool ConfirmDeletion(const QString& strTitles) override { return Next(u'd' + strTitles); }
    std::optional<qint32> AskOpenType(qint32 nPresent) override {
        return Next(u'o' + QString::number(nPresent)) ? std::optional<qint32>(3) : std::nullopt;
    }
    std::optional<QString> AskTitles(const QString& strPreset) override {
        return Next(u't' + strPreset) ? std::optional(m_strTyped) : std::nullopt;
    }
    /// The kind that was preset.
    std::optional<CNodeFileParams> AskContent(const ContentPreset& preset, CBookNode&) override {
        if (!Next(u"k%1"_s.arg(static_cast<int>(preset.Kind)) + preset.strAdvice))
            return std::nullopt;
        CNodeFileParams params;
        params.Kind = preset.Kind;
        params.LinkUrl = m_strTyped;
        return params;
    }
    std::optional<QStringList> AskCustomTitles(const QStringList& titles, bool bIntroduction) override {
        const bool bOk = Next((bIntroduction ? u"c"_s : u"c, no introduction: "_s) + titles.join(u'|'));
        return bOk ? std::optional(m_strTyped.split(u'|')) : std::nullopt;
    }

    void Run(const Case& test) {
        const QString strCase = test.strAt + u" %1 "_s.arg(test.nCommand) + test.strTyped + test.strTarget;
        SCOPED_TRACE(strCase);
        Script = test.script;
        m_strTyped = test.strTyped;
        nPieces = test.nPieces;
        Actions.SelectNode(IdOf(test.strAt));
        if (test.bStoreRefuses)
            RefuseChangesOf(IdOf(u"三"_s));
        if (test.strTarget.isEmpty())
            EXPECT_TRUE(Actions.Run(test.nCommand));
        else
            Actions.Drop(Line(test.strAt), Line(test.strTarget));
        if (Edited.isValid() && !test.strTyped.isEmpty())
            Actions.FinishRename(Edited, test.strTyped);
        EXPECT_EQ(Script, QStringList()) << "never came";
        EXPECT_EQ(Left(), test.strLeft);
    }

    QModelIndex Line(const QString& strTitle) const {
        if (strTitle == u"course"_s)
            return Tree.index(1, 0);
        for (const auto& [line, bSeen] : Lines()) {
            if (line.data() == strTitle || (strTitle == u"root"_s && line == Tree.GetRoot()))
                return line;
        }
        return {};
    }
    qint32 IdOf(const QString& strTitle) const {
        const CBookNode* pNode = Tree.NodeOf(Line(strTitle));
        return pNode == nullptr ? -1 : pNode->GetId();
    }
    /// The whole tree, which must be that of the store.
    QString Left() {
        EXPECT_EQ(StoreFault() + TreeFault(), QString());
        return Below(Tree.GetRoot());
    }

private:
    /// One step of the script.
    bool Next(const QString& strBox) {
        const QString strExpected = Script.isEmpty() ? u"nothing"_s : Script.takeFirst();
        const bool bOk = !strExpected.startsWith(c_cCancel);
        EXPECT_EQ(strBox, strExpected.sliced(bOk ? 0 : 1));
        return bOk;
    }
    QString Below(const QModelIndex& parent) {
        Tree.LoadAhead(parent);
        QStringList texts;
        for (int nRow = 0; nRow < Tree.rowCount(parent); ++nRow) {
            const QModelIndex line = Tree.index(nRow, 0, parent);
            const QString strBelow = Below(line);
            texts.append(line.data().toString() + (Tree.NodeOf(line)->HasContent() ? u"*"_s : QString()) +
                         (strBelow.isEmpty() ? QString() : u'(' + strBelow + u')'));
        }
        return texts.join(u' ');
    }

    QString m_strTyped;
};

const QList<Case>& Cases() {
    static const QList<Case> cases{
        {u"三"_s, 32772, {}, u"一(节(点)) 二* 三 点 新建栏目"_s},
        {u"节"_s, 32910, {}, u"一(节(点) 名) 二* 三 点"_s, u"名"_s},
        {u"root"_s, 32772, {}},
        {u"root"_s, 32909, {}, c_strBase + u" 新建栏目"_s},
        {u"一"_s, 32773, {}, u"一(节(点) 新建栏目) 二* 三 点"_s},
        {u"二"_s, 32773, {u'~' + c_strChildBelow}},
        {u"二"_s, 32909, {c_strChildBelow}, u"一(节(点)) 二*(新建栏目) 三 点"_s},

        {u"节"_s,
         32869,
         {u"t新建栏目"_s, c_strTaken.arg(u"甲"_s),
          u"!栏目名称最多为40个字符, \""_s + c_strLong + u"\"超出了限制，无法创建。"_s,
          c_strTaken.arg(u"节"_s), c_strTaken.arg(u"%1"_s)},
         u"一(节(点) 甲 乙 %1) 二* 三 点"_s,
         u"甲，, 乙 ,甲，"_s + c_strLong + u",节,%1,%1，\t"_s},
        {u"三"_s, 32869, {u"t新建栏目"_s}, c_strBase, u"，"_s},
        {u"三"_s, 32870, {u"~t新建栏目"_s}},
        {u"三"_s, 32870, {u"t新建栏目"_s}, u"一(节(点)) 二* 三(甲 乙) 点"_s, u"甲,乙,丙"_s, {}, false, 1},
        {u"二"_s, 32870, {u'~' + c_strChildBelow}},
        {u"二"_s, 32870, {c_strChildBelow, u"t新建栏目"_s}, u"一(节(点)) 二*(甲) 三 点"_s, u"甲"_s},

        {u"三"_s, 32775, {}, u"一(节(点)) 二* 新 点"_s, u"新"_s},
        {u"三"_s, 32912, {u"!对不起，父栏目下已有同名栏目存在！"_s}, c_strBase, u"一"_s},
        {u"三"_s, 32775, {u"!对不起，栏目名称最大为40个字符！"_s}, c_strBase, c_strLong},
        {u"三"_s, 32775, {c_strNotStored}, c_strBase, u"新"_s, {}, true},
        {u"root"_s, 32775, {}, c_strBase, u"新"_s},

        {u"一"_s, 32774, {u'~' + c_strList}},
        {u"一"_s, 32774, {c_strList, u'~' + c_strDelete}},
        {u"一"_s, 32911, {c_strList, c_strDelete}, u"二* 三 点"_s},
        {u"一"_s, 32911, {c_strList, c_strDelete}, u"一(节) 二* 三 点"_s, {}, {}, false, 1},
        {u"二"_s, 32774, {c_strLeafList, c_strDelete}, u"一(节(点)) 三 点"_s},
        {u"三"_s, 32774, {c_strDelete}, u"一(节(点)) 二* 点"_s},
        {u"二"_s, 32774, {c_strLeafList, c_strDelete, c_strNotDeleted}, c_strBase, {}, {}, true},
        {u"root"_s, 32774, {}},

        {u"二"_s, 32919, {u'~' + c_strClear}},
        {u"二"_s, 32918, {c_strClear}, u"一(节(点)) 二 三 点"_s},
        {u"root"_s, 32918, {c_strClear}},
        {u"二"_s, 32913, {u'~' + c_strOverwrite}},
        {u"二"_s, 32814, {c_strOverwrite, c_strAdvised.arg(u"二"_s)}},
        {u"一"_s, 32814, {u'~' + c_strContentAbove}},
        {u"一"_s, 32874, {c_strContentAbove, u"k0"_s}, u"一*(节(点)) 二* 三 点"_s},
        {u"三"_s, 32814, {c_strAdvised.arg(u"三"_s)}, u"一(节(点)) 二* 三* 点"_s},
        {u"三"_s, 32917, {u"~k8"_s}},
        {u"三"_s, 32877, {u"k4"_s}, u"一(节(点)) 二* 三* 点"_s, u"http://a"_s},

        {u"二"_s, 32934, {u"~o0"_s}},

        {u"一"_s, 32816, {u"i该栏目为第一个栏目，无法上移!"_s}},
        {u"点"_s, 32916, {u"i该栏目为最后一个栏目，无法下移!"_s}},
        {u"三"_s, 32915, {}, u"一(节(点)) 三 二* 点"_s},
        {u"一"_s, 32817, {}, u"二* 一(节(点)) 三 点"_s},
        {u"三"_s, 32816, {c_strNotMoved}, c_strBase, {}, {}, true},

        {u"三"_s, 0, {}, c_strBase, {}, u"root"_s},
        {u"三"_s, 0, {}, c_strBase, {}, u"三"_s},
        {u"三"_s, 0, {}, c_strBase, {}, u"course"_s},
        {u"一"_s, 0, {}, c_strBase, {}, u"节"_s},
        {u"root"_s, 0, {}, c_strBase, {}, u"三"_s},
        {u"三"_s, 0, {}, u"一(三 节(点)) 二* 点"_s, {}, u"一"_s},
        {u"一"_s, 0, {}, u"二* 三(一(节(点))) 点"_s, {}, u"三"_s},
        {u"点"_s, 0, {u"!父栏目下已有同名栏目存在！"_s}, c_strBase, {}, u"节"_s},
        {u"三"_s, 0, {u'~' + c_strChildBelow}, c_strBase, {}, u"二"_s},
        {u"三"_s, 0, {c_strChildBelow}, u"一(节(点)) 二*(三) 点"_s, {}, u"二"_s},
        {u"三"_s, 0, {c_strNotMoved}, c_strBase, {}, u"一"_s, true},
    };
    return cases;
}

TEST(BookTreeActionsTest, EachCommandAsksWarnsAndLeaves) {
    for (const Case& test : Cases())
        CScriptedTree().Run(test);
}

TEST(BookTreeActionsTest, MenusAndViewsFollowTheLine) {
    CScriptedTree tree;
    const auto menuAt = [&](const QString& strTitle) {
        return tree.Actions.MenuOf(tree.Line(strTitle)).data();
    };
    EXPECT_EQ(menuAt(u"course"_s), nullptr);
    EXPECT_EQ(menuAt(u"一"_s), nullptr);
    EXPECT_EQ(menuAt(u"root"_s), TreeCommand::RootMenu().data());
    EXPECT_EQ(menuAt(u"二"_s), TreeCommand::NodeMenu().data());
    EXPECT_FALSE(tree.Actions.Run(32882));
    for (const auto& [strTitle, kind] :
         {std::pair(u"一"_s, EViewKind::ChildrenList), std::pair(u"二"_s, EViewKind::ShowContent),
          std::pair(u"三"_s, EViewKind::Nothing), std::pair(u"root"_s, EViewKind::ChildrenList)}) {
        tree.Actions.SelectNode(tree.IdOf(strTitle));
        EXPECT_EQ(tree.Host.Last().kind, kind);
    }
    // A view that refuses to be left keeps the selection, and no title opens behind its back.
    tree.Actions.SelectNode(tree.IdOf(u"三"_s));
    tree.Host.bRefuse = true;
    EXPECT_TRUE(tree.Actions.Run(32772));
    EXPECT_FALSE(tree.Edited.isValid());
    EXPECT_EQ(tree.Actions.GetSelectedNode()->GetTitle(), u"三"_s);
    EXPECT_EQ(tree.Left(), c_strBase + u" 新建栏目"_s);
}

TEST(BookTreeActionsTest, TheOpenTypeIsStoredAndShown) {
    CScriptedTree tree;
    tree.Actions.SelectNode(7);
    const size_t nShown = tree.Host.Views.size();
    tree.Run({u"二"_s, 32934, {u"o0"_s}});
    EXPECT_EQ(tree.Disk.Store().GetOpenType(7), 3);
    EXPECT_EQ(tree.Host.Views.size(), nShown + 1);
}

TEST(BookTreeActionsTest, CustomTitlesRenameTheNodesThatAreLoaded) {
    CScriptedTree tree;
    const QString strIni = tree.Disk.pCourse->GetPaths().GetCustomTitlesPath();
    const auto write = [&](const QString& strSection, size_t nRole, const QString& strText) {
        WriteProfileString(strSection, CustomTitles::Roles()[nRole].strKey, strText, strIni);
    };
    // One is not read yet, the root keeps its name; one is gone, one role has no node, one field is emptied.
    const int ids[]{5, 6, c_nRootNodeId, 8, 7, 99, 0, 9};
    for (size_t nRole = 0; nRole < CustomTitles::c_nRoles; ++nRole)
        write(u"Id"_s, nRole, QString::number(ids[nRole]));
    write(u"Title"_s, 7, u"旧"_s);
    tree.Actions.SelectNode(4);
    tree.Host.nAsked = 0;
    const size_t nShown = tree.Host.Views.size();
    // A title that a sibling has draws its message, and is stored for the dialog all the same.
    const QString strLeft = u"一(甲(点)) 丁* 三 点"_s;
    tree.Run({u"一"_s,
              32939,
              {u"c|||||||旧"_s, u"!对不起，父栏目下已有同名栏目存在！"_s},
              strLeft,
              u"甲|乙|丙|二|丁|戊|己|"_s});
    EXPECT_EQ(tree.Disk.Store().GetNode(c_nRootNodeId).Title, u"李老师"_s);
    EXPECT_EQ(tree.Host.nAsked, 0) << "nobody has to leave for a title";
    EXPECT_EQ(tree.Host.Views.size(), nShown + 1) << "the list of children shows the new ones";
    write(u"Id"_s, CustomTitles::c_nIntroduction, u"-1"_s);
    tree.Run({u"一"_s, 32939, {u"~c, no introduction: 甲||丙|二|丁|||旧"_s}, strLeft});
}

TEST(BookTreeActionsTest, ANameFromTheServerReachesTheRootAsItIs) {
    CScriptedTree tree;
    tree.Disk.pCourse->TakeServerInfo({7, u"新课"_s, u"李老师"_s});
    tree.Tree.ShowCourseInfo();
    EXPECT_EQ(tree.Tree.index(1, 0).data(), u"新课"_s);
    EXPECT_EQ(tree.Tree.GetRoot().data(), u"李老师"_s);
    EXPECT_EQ(tree.Tree.NodeOf(tree.Tree.GetRoot())->GetTitle(), u"李老师"_s);
    EXPECT_EQ(tree.Disk.Store().GetNode(c_nRootNodeId).Title, u"李老师"_s);
}

TEST(BookTreeActionsTest, ALineThatCouldNotBeReadStillGuardsItsChildren) {
    CScriptedTree tree;
    const QModelIndex one = tree.Line(u"一"_s);
    tree.Raw().exec("ALTER TABLE Book RENAME TO Away");
    tree.Script = {u"xIDispatch error #3092"_s};
    tree.Expand(one);
    tree.Raw().exec("ALTER TABLE Away RENAME TO Book");
    tree.Run({u"节"_s, 32774, {u"~d点\r\n"_s}});
    tree.Run({u"点"_s, 0, {u"!父栏目下已有同名栏目存在！"_s}, c_strBase, {}, u"节"_s});
}

} // namespace
