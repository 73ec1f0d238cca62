#include "editor/PageSave.h"

#include "foundation/Exceptions.h"
#include "foundation/TextFile.h"
#include "tests/support/ScriptedPeople.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

namespace {

const QString c_strAsk = QStringLiteral("该文件内容已改变，您需要保存已修改的内容吗？");

class CFakePage : public ILivePage {
public:
    QString strHtml, strUrl;
    QStringList Images, Embeds, Anchors;
    QString strFailing;
    bool bInSource = false;

    bool IsInSource() const override { return bInSource; }
    bool GetCurrentHtml(QString& strOut) override { return Give(u"html", strOut, strHtml); }
    bool SetCurrentHtml(const QString& strNew) override { return Give(u"set", strHtml, strNew); }
    bool GetAllImageSrc(QStringList& list) override { return Give(u"images", list, Images); }
    bool GetAllEmbededSrc(QStringList& list) override { return Give(u"embeds", list, Embeds); }
    bool GetAllAnchorHref(QStringList& list) override { return Give(u"anchors", list, Anchors); }
    bool GetURL(QString& strOut) override { return Give(u"url", strOut, strUrl); }

private:
    template <class T>
    bool Give(QStringView strWhat, T& out, const T& value) {
        if (strFailing == strWhat)
            return false;
        out = value;
        return true;
    }
};

class PageSaveTest : public ::testing::Test {
protected:
    /// A page that is loaded with this text in the surface while the file holds strFile.
    void Open(const QString& strFile, const QString& strLoaded) {
        m_temp.Write(QStringLiteral("NodeResource\\N5\\Content.htm"), strFile.toUtf8());
        m_temp.Write(QStringLiteral("图 1.gif"), "picture");
        m_temp.MakeFolder(QStringLiteral("NodeResource\\N5\\res"));
        m_page.strHtml = strLoaded;
        m_page.strUrl = QStringLiteral("file://") + PagePath();
        m_saver.Open(PagePath(), m_temp.Path(QStringLiteral("NodeResource\\")),
                     [this](const QString& strHtml) {
                         if (m_bThrow)
                             throw Torvane::CRunException(QStringLiteral("磁盘已满"));
                         if (m_bRefuse)
                             return false;
                         m_written.append(strHtml);
                         return WriteTextFile(PagePath(), strHtml);
                     });
    }
    QString PagePath() const { return m_temp.Path(QStringLiteral("NodeResource\\N5\\Content.htm")); }
    QString Picture() const {
        return QStringLiteral("file:///") + m_temp.Path(QStringLiteral("图 1.gif"))
                                                .replace(u'\\', u'/')
                                                .replace(u' ', QStringLiteral("%20"));
    }
    QStringList ResFiles() const {
        return QDir(m_temp.Native(QStringLiteral("NodeResource\\N5\\res"))).entryList(QDir::Files);
    }
    void InsertPicture() {
        m_page.strHtml = u"<img src=\"" + Picture() + u"\">";
        m_page.Images = {Picture()};
    }

    CTempFolder m_temp;
    CFakePage m_page;
    CScriptedPeople m_people;
    QStringList m_written;
    bool m_bThrow = false;
    bool m_bRefuse = false;
    CPageSaver m_saver{m_page, m_people, [](const QString&, const QString&) { return false; }};
};

using BoxAnswer = CScriptedPeople::BoxAnswer;
using BoxButtons = CScriptedPeople::BoxButtons;
using BoxIcon = CScriptedPeople::BoxIcon;

TEST_F(PageSaveTest, AnUntouchedPageIsNeverWrittenAndAsksNothing) {
    // As the file says, and as the surface makes of it.
    for (const QString& strLoaded : {QStringLiteral("<P>a"), QStringLiteral("<p>a</p>")}) {
        Open(QStringLiteral("<P>a"), strLoaded);
        EXPECT_TRUE(m_saver.MayLeave(true));
        EXPECT_EQ(m_saver.SavePage(true, false, true), ESaveResult::Saved);
        EXPECT_TRUE(m_written.isEmpty());
        EXPECT_TRUE(m_people.Statuses.isEmpty());
    }
}

TEST_F(PageSaveTest, WhatThePageOnceWasIsAChangeAfterASave) {
    Open(QStringLiteral("<P>a"), QStringLiteral("<p>a</p>"));
    m_page.strHtml = QStringLiteral("<p>b</p>");
    EXPECT_EQ(m_saver.SavePage(true, false, true), ESaveResult::Saved);
    m_page.strHtml = QStringLiteral("<p>a</p>");
    EXPECT_EQ(m_saver.SavePage(true, false, true), ESaveResult::Saved);
    EXPECT_EQ(m_written, QStringList({QStringLiteral("<p>b</p>"), QStringLiteral("<p>a</p>")}));
}

TEST_F(PageSaveTest, TheQuestionDecides) {
    const struct {
        bool bCanCancel;
        BoxAnswer answer;
        bool bLeaves;
        int nWrites;
    } rows[] = {{true, BoxAnswer::Yes, true, 1},
                {true, BoxAnswer::No, true, 0},
                {true, BoxAnswer::Cancel, false, 0},
                {false, BoxAnswer::Yes, true, 1},
                {false, BoxAnswer::No, true, 0}};
    for (const auto& row : rows) {
        Open(QStringLiteral("a"), QStringLiteral("a"));
        InsertPicture();
        m_written.clear();
        const auto nFiles = ResFiles().size();
        m_people.Expect(c_strAsk, row.answer);
        EXPECT_EQ(m_saver.MayLeave(row.bCanCancel), row.bLeaves);
        EXPECT_EQ(m_written.size(), row.nWrites);
        EXPECT_EQ(ResFiles().size(), nFiles + row.nWrites);
        EXPECT_EQ(m_people.Boxes.back().Buttons,
                  row.bCanCancel ? BoxButtons::YesNoCancel : BoxButtons::YesNo);
        EXPECT_EQ(m_people.Boxes.back().Icon, BoxIcon::Question);
    }
}

TEST_F(PageSaveTest, SavingMovesThePictureInAndWritesBack) {
    Open(QStringLiteral("a"), QStringLiteral("a"));
    InsertPicture();
    EXPECT_EQ(m_saver.SavePage(true, false, true), ESaveResult::Saved);
    ASSERT_EQ(ResFiles().size(), 1);
    EXPECT_EQ(m_page.strHtml, QString(u"<img src=\"res/" + ResFiles().first() + u"\">"));
    EXPECT_EQ(m_written, QStringList(m_page.strHtml));
    EXPECT_EQ(m_people.Statuses, QStringList(QStringLiteral("正在保存...")));
    EXPECT_EQ(m_temp.Read(QStringLiteral("NodeResource\\N5\\res\\") + ResFiles().first()), "picture");
}

TEST_F(PageSaveTest, APictureThatCannotBeFetchedKeepsItsReferenceAndIsNamed) {
    Open(QStringLiteral("a"), QStringLiteral("a"));
    const QString strUrl = QStringLiteral("http://h/x.gif");
    m_page.strHtml = Picture() + u' ' + strUrl;
    m_page.Images = {strUrl, Picture(), strUrl};
    m_people.Expect(QStringLiteral("以下文件没有复制到课程中，网页仍然引用它们原来的位置：\n") + strUrl);
    EXPECT_EQ(m_saver.SavePage(true, false, true), ESaveResult::Saved);
    ASSERT_EQ(ResFiles().size(), 1);
    EXPECT_EQ(ReadTextFile(PagePath()), QString(u"res/" + ResFiles().first() + u' ' + strUrl));
}

TEST_F(PageSaveTest, EachFailureHasItsMessagesAndWritesNothing) {
    const QString strLast = QStringLiteral("处理编辑器外部资源失败！");
    const struct {
        const char16_t* szFailing;
        QStringList messages;
    } rows[] = {{u"html", {QStringLiteral("获得编辑器内容失败！")}},
                {u"images", {QStringLiteral("获取图片路径失败!"), strLast}},
                {u"embeds", {QStringLiteral("获取嵌入资源路径失败!"), strLast}},
                {u"anchors", {QStringLiteral("获取链接路径失败!"), strLast}}};
    for (const auto& row : rows) {
        Open(QStringLiteral("a"), QStringLiteral("a"));
        InsertPicture();
        m_page.strFailing = QString::fromUtf16(row.szFailing);
        for (const QString& strMessage : row.messages)
            m_people.Expect(strMessage);
        EXPECT_EQ(m_saver.SavePage(false, true, true), ESaveResult::NotSaved);
        EXPECT_EQ(m_people.Boxes.back().Icon, BoxIcon::Stop);
        EXPECT_TRUE(m_written.isEmpty() && ResFiles().isEmpty());
    }
}

TEST_F(PageSaveTest, TheTextOfALostSurfaceNeverReplacesThePage) {
    Open(QStringLiteral("full"), QStringLiteral("full"));
    m_temp.Write(QStringLiteral("NodeResource\\N5\\res\\a.gif"), "x");
    m_page.strUrl = QStringLiteral("about:blank");
    for (const QString& strText : {QString(), QStringLiteral("<p>The page could not be shown.")}) {
        m_page.strHtml = strText;
        m_people.Expect(QStringLiteral("获得编辑器内容失败！"));
        EXPECT_EQ(m_saver.SavePage(true, false, true), ESaveResult::NotSaved);
    }
    EXPECT_FALSE(m_saver.ClearGarbage());
    EXPECT_EQ(ResFiles().size(), 1);
    // What stands in the source box is the teacher's own, and so is an emptied page that the surface holds.
    m_page.bInSource = true;
    m_page.strHtml = QStringLiteral("typed");
    m_page.strFailing = QStringLiteral("images");
    EXPECT_EQ(m_saver.SavePage(true, false, true), ESaveResult::Saved);
    m_page.bInSource = false;
    m_page.strFailing.clear();
    m_page.strHtml.clear();
    m_page.strUrl = QStringLiteral("file://") + PagePath();
    EXPECT_EQ(m_saver.SavePage(true, false, true), ESaveResult::Saved);
    EXPECT_EQ(m_written, QStringList({QStringLiteral("typed"), QString()}));
    EXPECT_TRUE(m_saver.ClearGarbage());
    EXPECT_TRUE(ResFiles().isEmpty());
}

TEST_F(PageSaveTest, APageThatCannotBeWrittenHoldsWhoeverMayStay) {
    for (const bool bCanCancel : {true, false}) {
        for (const bool bThrow : {true, false}) {
            Open(QStringLiteral("a"), QStringLiteral("a"));
            m_page.strHtml = QStringLiteral("b");
            m_bThrow = bThrow;
            m_bRefuse = !bThrow;
            m_people.Expect(c_strAsk, BoxAnswer::Yes);
            m_people.Expect(bThrow ? QStringLiteral("磁盘已满") : QStringLiteral("保存文件失败！"));
            EXPECT_EQ(m_saver.MayLeave(bCanCancel), !bCanCancel);
            EXPECT_EQ(m_people.Boxes.back().strTitle, QStringLiteral("错误"));
        }
    }
}

TEST_F(PageSaveTest, AFailedWriteBackIsToldAfterThePageIsWritten) {
    Open(QStringLiteral("a"), QStringLiteral("a"));
    InsertPicture();
    m_page.strFailing = QStringLiteral("set");
    m_people.Expect(QStringLiteral("更新编辑器源码失败！！"));
    EXPECT_EQ(m_saver.SavePage(true, false, true), ESaveResult::NotSaved);
    EXPECT_EQ(ReadTextFile(PagePath()), QString(u"<img src=\"res/" + ResFiles().first() + u"\">"));
}

} // namespace
