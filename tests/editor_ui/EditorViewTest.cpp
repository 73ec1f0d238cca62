#include "editor/ui/SourceBox.h"
#include "tests/editor_ui/EditorFixture.h"
#include "tests/support/WindowHelp.h"

#include <QTextBlock>

namespace {

using EditorViewTest = CEditorFixture;
using BoxAnswer = CScriptedPeople::BoxAnswer;

TEST_F(EditorViewTest, WhatIsChosenAtTheCaretHoldsForWhatIsTypedThere) {
    Open("<p>x</p>");
    Type(u"前"_s);
    Action(32779).trigger();
    EXPECT_TRUE(Action(32779).isChecked());
    Type(u"粗"_s);
    EXPECT_TRUE(Action(32779).isChecked());
    Action(32779).trigger();
    EXPECT_FALSE(Action(32779).isChecked());
    Type(u"细"_s);
    auto* pFonts = m_view.findChild<QComboBox*>(u"box_32785"_s);
    pFonts->setFocus();
    pFonts->setCurrentIndex(1);
    Q_EMIT pFonts->activated(1);
    Type(u"黑"_s);
    EXPECT_TRUE(Html().startsWith(u"<p>前<b>粗</b>细<font face=\"黑体\">黑</font>"_s)) << Html();
}

TEST_F(EditorViewTest, APageTakesKeysBeforeTheFirstClick) {
    for (int nRound = 0; nRound < 2; ++nRound) {
        Open("<p>x</p>");
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_A);
        EXPECT_SOON(Html() == u"<p>ax</p>"_s) << Html();
        Tab(c_nSource);
        Source().setPlainText(u"<p>y</p>"_s);
        Tab(c_nDesign);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_B);
        EXPECT_SOON(Html() == u"<p>by</p>"_s) << Html();
        LeaveWith(BoxAnswer::No);
    }
}

TEST_F(EditorViewTest, WhatIsSwitchedAtALinesEndHoldsInTheNextLine) {
    const std::pair<int, QString> rows[] = {{32779, u"b"_s}, {32780, u"i"_s}, {32781, u"u"_s}};
    for (const auto& [nCommand, strTag] : rows) {
        Open("<p>x</p>");
        Action(nCommand).trigger();
        Type(u"开"_s);
        Action(nCommand).trigger();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        Type(u"关"_s);
        EXPECT_EQ(Html(), u"<p><%1>开</%1></p><p>关x</p>"_s.arg(strTag));
        LeaveWith(BoxAnswer::No);
    }
    Open("<h1>x</h1>");
    Type(u"题"_s);
    Surface("design").ExecuteIHTMLDocumentCmd(u"SelectAll"_s, false, {});
    Surface("design").ExecuteIHTMLDocumentCmd(u"UnSelect"_s, false, {});
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    Type(u"文"_s);
    EXPECT_EQ(Html(), u"<h1>题x</h1><p>文</p>"_s) << "a heading's weight is its own";
}

TEST_F(EditorViewTest, WhatWouldDoNothingAtTheCaretIsNotOffered) {
    constexpr int c_nCut = 32795, c_nCopy = 32793, c_nUndo = 32821, c_nRedo = 32822, c_nAll = 32823,
                  c_nUnselect = 32824, c_nUnlink = EditorCommands::Id::c_nUnlink;
    const auto offered = [this] {
        QList<int> ids;
        for (const int nId : {c_nUndo, c_nRedo, c_nCut, c_nCopy, c_nUnselect, c_nUnlink})
            if (Action(nId).isEnabled())
                ids.append(nId);
        return ids;
    };
    const auto expect = [&](const char* szWhat, const QList<int>& ids) {
        EXPECT_SOON(offered() == ids) << szWhat;
        // What needs no caret, or says itself what it needs.
        for (const int nId : {32838, 32850, 32796, 32820, c_nAll})
            EXPECT_TRUE(Action(nId).isEnabled()) << szWhat << nId;
    };
    Open("<p>x<a href=\"http://h/\">y</a></p>");
    expect("at first", {});
    Type(u"前"_s);
    expect("typed", {c_nUndo});
    Action(c_nUndo).trigger();
    expect("undone", {c_nRedo});
    EXPECT_TRUE(m_view.RunCommand(c_nUndo)) << "a key is not held up by what shows";
    Action(c_nAll).trigger();
    expect("all chosen", {c_nRedo, c_nCut, c_nCopy, c_nUnselect, c_nUnlink});
    Action(c_nUnlink).trigger();
    expect("no link any more", {c_nUndo});
    EXPECT_EQ(Html(), u"<p>xy</p>"_s);
    Tab(c_nSource);
    EXPECT_EQ(offered(), QList<int>());
    Tab(c_nDesign);
    expect("back", {c_nUndo});
    LeaveWith(BoxAnswer::No);
    OpenAgain();
    expect("another page", {});
    EXPECT_TRUE(m_view.LeaveNode(true));
}

TEST_F(EditorViewTest, AnUntouchedPageIsLeftWithoutAQuestionWhateverItsMarkup) {
    for (const QByteArray html :
         {"<P ALIGN=center>a<BR>b\r\n<img src=res/x.gif></P>\r\n\r\n",
          "<html><head><title>t</title></head><body><p>whole</body></html>\r\n", ""}) {
        Open(html);
        Tab(c_nSource);
        Tab(c_nDesign);
        EXPECT_TRUE(m_view.LeaveNode(true));
        EXPECT_EQ(m_world.Folder.Read(PageFile()), html);
    }
}

TEST_F(EditorViewTest, TheSourceBoxGivesBackWhatItWasGiven) {
    QString strLine = u"<p>hard\u00A0blank \u2028 \u2064 𠀀</p>"_s;
    while (strLine.size() < 100'000)
        strLine += u"<b>一二三四五</b>𠀀𠀀"_s;
    Open("");
    Tab(c_nSource);
    auto& box = static_cast<CSourceBox&>(Source());
    const QStringList texts = {strLine, QString(100'000, u'x'), u"\n\n%1\n%1\n\n"_s.arg(strLine)};
    for (const QString& strText : texts) {
        box.SetText(strText);
        EXPECT_TRUE(box.document()->blockCount() > 20) << "a line that is laid out as a whole at every key";
        EXPECT_EQ(box.GetText(), QString(strText).replace(QChar(0x2028), u"&#8232;"_s));
        // Typed and copied over the folds.
        box.selectAll();
        box.copy();
        EXPECT_SOON(QApplication::clipboard()->text() == box.GetText());
        const int nFold = box.document()->findBlockByNumber(3).position();
        for (const int nPlace : {nFold - 2, nFold - 1, nFold + 1}) {
            const QString strBefore = box.GetText();
            QTextCursor cursor(box.document());
            cursor.setPosition(nPlace);
            cursor.insertText(u"[\n]"_s);
            EXPECT_EQ(box.GetText().remove(u"[\n]"_s), strBefore) << nPlace - nFold;
            box.document()->undo();
            ASSERT_EQ(box.GetText(), strBefore);
        }
        QTextCursor caret(box.document());
        caret.setPosition(nFold - 3);
        box.setTextCursor(caret);
        QTest::keyClick(&box, Qt::Key_Right);
        QTest::keyClick(&box, Qt::Key_Right);
        EXPECT_EQ(box.textCursor().position(), nFold + 1) << "one step over the fold";
        QTest::keyClick(&box, Qt::Key_Left);
        EXPECT_EQ(box.textCursor().position(), nFold - 2);
        box.selectAll();
        box.paste();
        EXPECT_EQ(box.GetText(), QString(strText).replace(QChar(0x2028), u"&#8232;"_s));
    }
    box.SetText({});
    EXPECT_TRUE(m_view.LeaveNode(true));
}

TEST_F(EditorViewTest, TheLiveTextFollowsTheTabs) {
    Open("<p>one</p>");
    Tab(c_nSource);
    EXPECT_EQ(Source().toPlainText(), u"<p>one</p>"_s);
    Source().setPlainText(u"<p>two\u00A0</p>\n<!-- 二 -->"_s);
    Tab(c_nPreview);
    EXPECT_EQ(Html("preview"), u"<p>two&nbsp;</p>\n<!-- 二 -->"_s);
    EXPECT_EQ(Html(), u"<p>one</p>"_s);
    // Keys in the preview reach no text that is out of sight.
    const QWidget* pFocus = QApplication::focusWidget();
    EXPECT_TRUE(pFocus && Surface("preview").isAncestorOf(pFocus));
    EXPECT_FALSE(Source().isEnabled() || Surface("design").isEnabled());
    Tab(c_nSource);
    Tab(c_nPreview);
    Tab(c_nDesign);
    EXPECT_EQ(Html(), u"<p>two&nbsp;</p>\n<!-- 二 -->"_s);

    Tab(c_nSource);
    m_view.RunCommand(32825);
    EXPECT_EQ(OnDisk(), u"<p>two&nbsp;</p>\r\n<!-- 二 -->"_s);
    EXPECT_TRUE(m_view.LeaveNode(true));
}

// As if the surface had had it; and the box stays where it is.
TEST_F(EditorViewTest, PicturesTypedIntoTheSourceComeIntoTheCourse) {
    m_world.Folder.Write(u"图 & 1.gif"_s, "x");
    Open("<p>one</p>");
    Tab(c_nSource);
    const QString strTyped =
        u"<META charset=big5><IMG alt=a src='file://%1'>\n<!-- <img src=\"%2\"> -->\n<p>here</p>\n<img "
        u"src=\"%2\">\n"
        u"<a href=\"file:///%3#a&amp;b\">x</a><img src=\"file:///Z:/gone 1.gif\"><img src=res/a.gif>"_s.arg(
            m_world.Folder.Native(u"图 & 1.gif"_s).replace(u'&', u"&amp;"_s),
            m_world.Folder.Path(u"图 & 1.gif"_s),
            m_world.Folder.Path(PageFile(u"res\\b.htm"_s)).replace(u'\\', u'/'));
    QTextCursor(Source().document()).insertText(strTyped);
    QTextCursor caret = Source().document()->find(u"here"_s);
    Source().setTextCursor(caret);
    ASSERT_TRUE(m_view.RunCommand(32825));

    const QString strSaved = Source().toPlainText();
    EXPECT_EQ(OnDisk().replace(u"\r\n"_s, u"\n"_s), strSaved);
    EXPECT_EQ(QDir(m_world.Folder.Native(PageFile(u"res"_s))).count(), 4U) << "two of them folders";
    EXPECT_TRUE(strSaved.contains(u"<IMG alt=a src=\"res/"_s)) << strSaved;
    EXPECT_EQ(strSaved.count(u"\"res/"_s), 3) << strSaved;
    EXPECT_TRUE(strSaved.contains(u"<a href=\"res/b.htm#a&amp;b\">"_s)) << strSaved;
    EXPECT_TRUE(strSaved.startsWith(u"<IMG"_s)) << "the declaration, which is not true";
    EXPECT_TRUE(strSaved.contains(m_world.Folder.Path(u"图 & 1.gif"_s))) << "the comment's";
    EXPECT_EQ(Source().textCursor().selectedText(), u"here"_s);
    Source().undo();
    EXPECT_TRUE(Source().toPlainText().startsWith(strTyped));
    Source().redo();
    ASSERT_TRUE(m_view.RunCommand(32825));
    EXPECT_EQ(Source().toPlainText(), strSaved);
    EXPECT_TRUE(m_view.LeaveNode(true));
}

TEST_F(EditorViewTest, ALargePageIsWholeBeforeAllOfItIsLaidOut) {
    const QByteArray paragraph = "<p>word word word word</p>\n";
    const QByteArray page = paragraph.repeated(20000).trimmed();
    const auto key = [](Qt::Key nKey, Qt::KeyboardModifiers modifiers) {
        QTest::keyClick(QApplication::focusWidget(), nKey, modifiers);
    };
    Open(page);
    EXPECT_EQ(Html(), QString::fromLatin1(page));
    key(Qt::Key_End, Qt::ControlModifier);
    key(Qt::Key_Q, {});
    EXPECT_SOON(Html().endsWith(u"wordq</p>"_s));
    m_view.RunCommand(32821);
    EXPECT_TRUE(m_view.LeaveNode(true));
    OpenAgain();
    key(Qt::Key_A, Qt::ControlModifier);
    key(Qt::Key_Delete, {});
    EXPECT_SOON(!Html().contains(u"word"_s));
    m_view.RunCommand(32821);
    EXPECT_EQ(Html(), QString::fromLatin1(page));
    // What is typed in its place, too, comes at once, and is undone with it.
    key(Qt::Key_A, Qt::ControlModifier);
    Type(u"汉字"_s);
    EXPECT_EQ(Html(), u"<p>汉字</p>"_s);
    m_view.RunCommand(32821);
    EXPECT_EQ(Html(), QString::fromLatin1(page));
    EXPECT_TRUE(m_view.LeaveNode(true));
}

TEST_F(EditorViewTest, ATextThatNestsTooDeepIsSavedAsItWasTyped) {
    for (const QString& strText : {u"<div>"_s.repeated(50000), u"<span><p></span></p>"_s.repeated(20000)}) {
        Open("<p>x</p>");
        Tab(c_nSource);
        Source().setPlainText(strText);
        EXPECT_TRUE(m_view.RunCommand(32825));
        EXPECT_EQ(OnDisk(), strText);
        EXPECT_TRUE(m_view.LeaveNode(true));
    }
}

TEST_F(EditorViewTest, ALinkIntoTheCourseNeedsASelection) {
    Open("<p>x</p>");
    m_world.People.Expect(u"对不起，请您先选中一段内容！"_s);
    EXPECT_TRUE(m_view.RunCommand(32920));
    EXPECT_EQ(Html(), u"<p>x</p>"_s);
}

TEST_F(EditorViewTest, TemplatesComeFromTheCoursesOwnFolderAloneAndGarbageGoes) {
    Open("<p>old</p>");
    m_world.People.Expect(u"重新设置模板将丢失已有的内容，您继续吗？"_s);
    m_world.People.Files.push_back(
        m_world.Folder.Path(u"程序\\SysData\\VorelTemplates\\红\\eht\\htm2\\简介.htm"_s));
    m_world.People.Expect(u"对不起，您选择的模板不合法，请您重新选择!"_s);
    m_view.RunCommand(32871);
    EXPECT_EQ(Html(), u"<p>old</p>"_s);
    m_world.Folder.Write(PageFile(u"res\\a.gif"_s), "x");
    m_world.People.Expect(u"清除垃圾资源文件成功"_s);
    m_view.RunCommand(32940);
    EXPECT_FALSE(m_world.Folder.Exists(PageFile(u"res\\a.gif"_s)));
}

} // namespace
