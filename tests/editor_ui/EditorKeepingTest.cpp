// Nothing of a page is lost: not to the engine's own way of writing markup, and not with the engine.
#include "editor/KeptPages.h"
#include "tests/editor_ui/EditorFixture.h"

#include <csignal>

using BoxAnswer = CScriptedPeople::BoxAnswer;

namespace {

class EditorKeepingTest : public CEditorFixture {
protected:
    QList<KeptPage> Kept() const { return KeptPages::Read(m_world.pCourse->GetPaths()); }
    void WaitUntilKept(const QString& strPart) {
        EXPECT_SOON(!Kept().isEmpty() && Kept().first().strHtml.contains(strPart));
    }

    /// As if the program had ended while this was being written into the page that was opened last.
    void TakeUp(const QString& strHtml, bool bInSource) {
        KeptPage kept;
        kept.nNode = m_pNode->GetId();
        kept.strPath = KeptPages::NewPath(m_world.pCourse->GetPaths(), kept.nNode);
        kept.Time = QDateTime(QDate(2020, 1, 2), QTime(3, 4));
        kept.bInSource = bInSource;
        kept.strHtml = strHtml;
        KeptPages::Write(kept);
        m_view.TakeUpNext(kept);
    }
    /// Ends the engine's processes that show pages of this program: they are made by the one that it starts.
    static void KillEngine() {
        int nKilled = 0;
        for (const QString& strName : QDir(u"/proc"_s).entryList({u"[1-9]*"_s}, QDir::Dirs)) {
            const int nProcess = strName.toInt();
            if (ParentOf(ParentOf(nProcess)) == ::getpid() && ::kill(nProcess, SIGKILL) == 0)
                ++nKilled;
        }
        EXPECT_GT(nKilled, 0);
    }

private:
    static int ParentOf(int nProcess) {
        QFile file(u"/proc/%1/stat"_s.arg(nProcess));
        if (nProcess <= 0 || !file.open(QIODevice::ReadOnly))
            return 0;
        const QByteArray text = file.readAll();
        return text.mid(text.lastIndexOf(')') + 2).split(' ').at(1).toInt();
    }
};

TEST_F(EditorKeepingTest, AFramePageStaysOne) {
    m_world.Folder.Write(CViewWorld::NodePath(4, u"left.htm"_s), "left");
    Open("<HTML><HEAD><TITLE>t</TITLE></HEAD><FRAMESET cols=30%,*><FRAME src=left.htm name=l>"
         "<FRAME src=left.htm></FRAMESET></HTML>");
    const QString strFrames = u"<frameset cols=\"30%,*\"><frame src=\"left.htm\" name=\"l\">"
                              "<frame src=\"left.htm\"></frameset>"_s;
    EXPECT_EQ(Html(), strFrames);
    EXPECT_TRUE(m_view.LeaveNode(true));
    OpenAgain();
    Tab(c_nSource);
    Source().setPlainText(QString(strFrames).replace(u"30%"_s, u"40%"_s));
    Tab(c_nDesign);
    m_view.RunCommand(32825);
    EXPECT_TRUE(m_view.LeaveNode(true));
    OpenAgain();
    EXPECT_EQ(Html(), QString(strFrames).replace(u"30%"_s, u"40%"_s));
    // Between frames there is no place for anything.
    for (const int nCommand : {32779, 32823, 32829, 32839, 32845, 32846, 32847, 32820})
        m_view.RunCommand(nCommand);
    EXPECT_EQ(Html(), QString(strFrames).replace(u"30%"_s, u"40%"_s));
    ASSERT_TRUE(Surface("design").SetBrowserBodyInnerHTML(u"<p>no frames</p>"_s));
    EXPECT_EQ(Html(), u"<p>no frames</p>"_s);
    m_view.RunCommand(32821);
    EXPECT_EQ(Html(), QString(strFrames).replace(u"30%"_s, u"40%"_s));
    m_view.RunCommand(32822);
    EXPECT_EQ(Html(), u"<p>no frames</p>"_s);
    LeaveWith(BoxAnswer::No);
}

TEST_F(EditorKeepingTest, APageTooLargeForTheEditorOrTheSourceBoxIsSaidToBeSo) {
    m_world.People.Expect(
        u"该栏目的网页太大，无法在编辑器中打开，网页保持原样。\n系统建议您拆分成较小的页面。"_s);
    Open(QByteArray(21 << 20, 'x'));
    EXPECT_TRUE(m_view.LeaveNode(true));
    EXPECT_EQ(m_world.Folder.Read(PageFile()).size(), 21 << 20);
    Open(QByteArray(9 << 20, 'x'));
    m_world.People.Expect(u"对不起，您填写的内容过长，无法编辑源文件。\n系统建议您拆分成较小的页面。"_s);
    Tab(c_nSource);
    EXPECT_TRUE(Surface("design").isEnabled());
    EXPECT_TRUE(m_view.LeaveNode(true));
}

TEST_F(EditorKeepingTest, WhenTheEngineIsKilledThePageComesBackWithItsText) {
    const QString strRecovered = u"显示网页的组件意外停止，已重新启动，正在编辑的内容已经恢复。\n"
                                 "最后几秒的改动可能没有包括在内，请您检查后保存。"_s;
    Open("<p>old</p>");
    Type(u"甲乙"_s);
    WaitUntilKept(u"甲乙"_s);
    m_world.People.Expect(strRecovered);
    KillEngine();
    ASSERT_SOON(m_world.People.Boxes.size() == 1);
    EXPECT_EQ(Html(), u"<p>甲乙old</p>"_s);
    Type(u"丙"_s);
    // So soon again, it is the page that does it: its text goes where no engine is needed.
    WaitUntilKept(u"丙"_s);
    m_world.People.Expect(u"显示网页的组件意外停止，没有能够重新启动。\n"
                          "正在编辑的内容已放在“源文件”中，您可以在那里保存。"_s);
    KillEngine();
    ASSERT_SOON(m_world.People.Boxes.size() == 2);
    EXPECT_TRUE(Source().toPlainText().contains(u"丙"_s)) << Source().toPlainText();
    LeaveWith(BoxAnswer::Yes);
    EXPECT_TRUE(OnDisk().contains(u"丙"_s));
    EXPECT_TRUE(Kept().isEmpty());
}

TEST_F(EditorKeepingTest, AKeptTextGoesOnInTheEditorUntilThePersonDecides) {
    for (const bool bInSource : {false, true}) {
        Open("<p>saved</p>");
        EXPECT_TRUE(m_view.LeaveNode(true));
        const QString strKept = bInSource ? u"<p>half a ta<"_s : u"<p>not saved</p>"_s;
        TakeUp(strKept, bInSource);
        OpenAgain();
        EXPECT_EQ(bInSource ? Source().toPlainText() : Html(), strKept);
        EXPECT_EQ(OnDisk(), u"<p>saved</p>"_s);
        EXPECT_EQ(Kept().size(), 1);
        LeaveWith(bInSource ? BoxAnswer::No : BoxAnswer::Yes);
        EXPECT_EQ(OnDisk(), bInSource ? u"<p>saved</p>"_s : strKept);
        EXPECT_TRUE(Kept().isEmpty());
    }
}

TEST_F(EditorKeepingTest, AKeptTextThatTheSourceBoxHasNoRoomForIsPutBesideTheCourse) {
    Open("<p>saved</p>");
    EXPECT_TRUE(m_view.LeaveNode(true));
    TakeUp(QString(9'000'000, u'x'), true);
    const QString strTitle = m_pNode->GetTitle();
    const QString strPlace = CCourseWorld::InCourse(u"未保存的网页\\%1.htm"_s.arg(strTitle));
    m_world.People.Expect(
        u"栏目“%1”于 2020-01-02 03:04 保留下的未保存内容过长，无法放回编辑器，已另存为：\n%2"_s.arg(
            strTitle, m_world.Folder.Native(strPlace)));
    OpenAgain();
    EXPECT_EQ(Html(), u"<p>saved</p>"_s);
    EXPECT_TRUE(m_world.Folder.Read(strPlace).endsWith("xxx"));
    EXPECT_TRUE(Kept().isEmpty());
    EXPECT_TRUE(m_view.LeaveNode(true));
    EXPECT_EQ(OnDisk(), u"<p>saved</p>"_s);
}

} // namespace
