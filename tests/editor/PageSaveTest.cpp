#include "editor/PageSave.h"

#include "foundation/Exceptions.h"
#include "foundation/TextFile.h"
#include "tests/editor/FakePage.h"
#include "tests/support/ScriptedPeople.h"

#include <QThread>

#include <atomic>
#include <limits>

namespace {

const QString c_strAsk = u"该文件内容已改变，您需要保存已修改的内容吗？"_s;

class PageSaveTest : public ::testing::Test {
protected:
    /// A page that is loaded with this text in the surface while the file holds strFile.
    void Open(const QString& strFile, const QString& strLoaded) {
        m_temp.Write(u"NodeResource\\N5\\Content.htm"_s, strFile.toUtf8());
        m_temp.Write(u"图 1.gif"_s, "picture");
        m_temp.MakeFolder(u"NodeResource\\N5\\res"_s);
        m_page.strHtml = strLoaded;
        m_page.strUrl = u"file://"_s + PagePath();
        m_saver.Open(PagePath(), m_temp.Path(u"NodeResource\\"_s), [this](const QString& strHtml) {
            if (m_bThrow)
                throw Torvane::CRunException(u"磁盘已满"_s);
            if (m_bRefuse)
                return false;
            m_written.append(strHtml);
            const bool bWritten = WriteTextFile(PagePath(), strHtml);
            if (m_bThrowBehind)
                throw Torvane::CRunException(u"磁盘已满"_s);
            return bWritten;
        });
    }
    QString PagePath() const { return m_temp.Path(u"NodeResource\\N5\\Content.htm"_s); }
    QString Picture() const {
        return u"file:///"_s + m_temp.Path(u"图 1.gif"_s).replace(u'\\', u'/').replace(u' ', u"%20"_s);
    }
    QStringList ResFiles() const {
        return QDir(m_temp.Native(u"NodeResource\\N5\\res"_s)).entryList(QDir::Files);
    }
    void InsertPicture() {
        m_page.strHtml = u"<img src=\"" + Picture() + u"\">";
        m_page.Images = {Picture()};
    }

    /// Is asked at once whether to give up, or as soon as a test says.
    struct CHastyPeople : CScriptedPeople {
        std::atomic<bool> bMayAsk = true;
        /// The status knew of it too.
        bool bSeen = true;
        qint64 GetPatience() override {
            return std::exchange(bSeen, bMayAsk) ? 0 : std::numeric_limits<qint64>::max();
        }
    };

    CTempFolder m_temp;
    CFakePage m_page;
    CHastyPeople m_people;
    QStringList m_written;
    bool m_bThrow = false;
    bool m_bThrowBehind = false;
    bool m_bRefuse = false;
    CPageSaver::FetchFile m_fetch;
    CPageSaver m_saver{m_page, m_people,
                       [this](const QString& strUrl, const QString& strPath, const auto& goOn) {
                           return m_fetch && m_fetch(strUrl, strPath, goOn);
                       }};
};

using BoxAnswer = CScriptedPeople::BoxAnswer;
using BoxButtons = CScriptedPeople::BoxButtons;

TEST_F(PageSaveTest, TheQuestionDecides) {
    using enum BoxAnswer;
    for (const auto& [bCanCancel, answer] :
         {std::pair(true, Yes), std::pair(true, No), std::pair(true, Cancel), std::pair(false, Yes),
          std::pair(false, No)}) {
        Open(u"a"_s, u"a"_s);
        InsertPicture();
        const auto nFiles = ResFiles().size();
        const auto nWritten = m_written.size();
        m_people.Expect(c_strAsk, answer);
        EXPECT_EQ(m_saver.MayLeave(bCanCancel), answer != Cancel);
        const int nSaves = answer == Yes ? 1 : 0;
        EXPECT_EQ(m_written.size(), nWritten + nSaves);
        EXPECT_EQ(ResFiles().size(), nFiles + nSaves);
        EXPECT_EQ(m_people.Boxes.back().Buttons, bCanCancel ? BoxButtons::YesNoCancel : BoxButtons::YesNo);
    }
}

TEST_F(PageSaveTest, AnUntouchedPageWhoseFileAnotherProgramTookOrChangedIsAskedAbout) {
    const auto leave = [this](const std::function<void()>& meanwhile) {
        m_written.clear();
        Open(u"<P>old"_s, u"<p>old</p>"_s);
        meanwhile();
        m_people.Expect(c_strAsk, BoxAnswer::Yes);
        EXPECT_TRUE(m_saver.MayLeave(true));
        EXPECT_EQ(m_written, QStringList{u"<p>old</p>"_s});
    };
    leave([this] { QFile::remove(m_temp.Native(u"NodeResource\\N5\\Content.htm"_s)); });
    leave([this] { m_temp.Write(u"NodeResource\\N5\\Content.htm"_s, "<p>theirs</p>"); });
    Open(u"<P>old"_s, u"<p>old</p>"_s);
    EXPECT_TRUE(m_saver.MayLeave(true)) << "nobody changed anything";
}

TEST_F(PageSaveTest, APictureThatCannotBeHadKeepsItsReferenceAndIsNamed) {
    Open(u"a"_s, u"a"_s);
    const QString strUrl = u"http://h/x.gif"_s;
    const QString strDeep = QString(70, u'深') + u'\\' + QString(70, u'处') + u"\\a.gif"_s;
    m_temp.Write(strDeep, "x");
    const QString strDeepUrl = u"file:///"_s + m_temp.Path(strDeep).replace(u'\\', u'/');
    const QString strRest = u' ' + strUrl + u' ' + strDeepUrl;
    m_page.strHtml = Picture() + strRest;
    // The last two stand in the text as relative ones.
    m_page.Images = {strUrl, Picture(), strUrl, strDeepUrl, u"http://h/base/y.gif"_s, strDeepUrl + u"f"_s};
    m_temp.Write(strDeep + u"f"_s, "x");
    m_people.Expect(u"以下文件没有复制到课程中，网页仍然引用它们原来的位置：\n"_s + strUrl + u'\n' +
                    m_temp.Native(strDeep) + u"（文件名或路径太长）"_s);
    EXPECT_EQ(m_saver.SavePage(true, false, true), ESaveResult::Saved);
    ASSERT_EQ(ResFiles().size(), 1);
    EXPECT_EQ(ReadTextFile(PagePath()), QString(u"res/" + ResFiles().first() + strRest));
    m_page.Images.removeOne(Picture());
    EXPECT_TRUE(m_saver.MayLeave(true)) << "nobody changed anything";
}

TEST_F(PageSaveTest, WhoGivesUpTheCopiesHasTheOldPageUnlessItHasToBeLeft) {
    const QString strUrl = u"http://h/x.gif"_s;
    m_fetch = [this](const QString&, const QString&, const std::function<bool()>& goOn) {
        m_people.bMayAsk = true;
        while (goOn())
            QThread::msleep(1);
        return false;
    };
    for (const bool bMayStay : {true, false}) {
        m_people.bMayAsk = m_people.bSeen = false;
        Open(u"old"_s, u"a"_s);
        m_page.strHtml = Picture() + u' ' + strUrl;
        m_page.Images = {Picture(), strUrl, strUrl};
        m_people.GiveUps = {true};
        m_people.Expect(c_strAsk, BoxAnswer::Yes);
        m_people.Expect(bMayStay ? u"您取消了保存，网页没有写入，您的修改仍在编辑器中。"_s
                                 : u"以下文件没有复制到课程中，网页仍然引用它们原来的位置：\n"_s + strUrl);
        EXPECT_EQ(m_saver.MayLeave(bMayStay), !bMayStay);
        const QStringList files = ResFiles();
        ASSERT_EQ(files.size(), bMayStay ? 0 : 1);
        EXPECT_EQ(ReadTextFile(PagePath()),
                  bMayStay ? u"old"_s : QString(u"res/" + files.first() + u' ' + strUrl));
        EXPECT_TRUE(m_people.Statuses.contains(u"正在下载："_s + strUrl));
    }
}

TEST_F(PageSaveTest, APictureThatGoesAwayBetweenPlanAndCopyKeepsItsReference) {
    Open(u"a"_s, u"a"_s);
    const QString strUrl = u"http://h/x.gif"_s;
    m_page.strHtml = strUrl + u' ' + Picture();
    m_page.Images = {strUrl, Picture()};
    m_fetch = [this](const QString&, const QString& strPath, const auto&) {
        QFile::remove(m_temp.Native(u"图 1.gif"_s));
        return WriteTextFile(strPath, u"x"_s);
    };
    m_people.Expect(u"以下文件没有复制到课程中，网页仍然引用它们原来的位置：\n"_s +
                    m_temp.Native(u"图 1.gif"_s));
    EXPECT_EQ(m_saver.SavePage(true, false, true), ESaveResult::Saved);
    ASSERT_EQ(ResFiles().size(), 1);
    EXPECT_EQ(m_page.strHtml, QString(u"res/" + ResFiles().first() + u' ' + Picture()));
}

TEST_F(PageSaveTest, CopiesStayIfThePageThatRefersToThemIsOnTheDisk) {
    for (const bool bWritten : {true, false}) {
        Open(u"a"_s, u"a"_s);
        InsertPicture();
        m_bThrow = !bWritten;
        m_bThrowBehind = bWritten;
        const auto nFiles = ResFiles().size();
        m_people.Expect(u"磁盘已满"_s);
        EXPECT_EQ(m_saver.SavePage(true, false, true),
                  bWritten ? ESaveResult::Saved : ESaveResult::NotWritten);
        EXPECT_EQ(ResFiles().size(), nFiles + (bWritten ? 1 : 0));
        EXPECT_EQ(m_page.strHtml.contains(u"res/"_s), bWritten);
    }
}

TEST_F(PageSaveTest, EachFailureHasItsMessagesAndWritesNothing) {
    const QString strLast = u"处理编辑器外部资源失败！"_s;
    const std::pair<QString, QStringList> rows[] = {{u"html"_s, {u"获得编辑器内容失败！"_s}},
                                                    {u"images"_s, {u"获取图片路径失败!"_s, strLast}},
                                                    {u"embeds"_s, {u"获取嵌入资源路径失败!"_s, strLast}},
                                                    {u"anchors"_s, {u"获取链接路径失败!"_s, strLast}}};
    for (const auto& [strFailing, messages] : rows) {
        Open(u"a"_s, u"a"_s);
        InsertPicture();
        m_page.strFailing = strFailing;
        for (const QString& strMessage : messages)
            m_people.Expect(strMessage);
        EXPECT_EQ(m_saver.SavePage(false, true, true), ESaveResult::NotSaved);
        EXPECT_TRUE(m_written.isEmpty() && ResFiles().isEmpty());
    }
}

TEST_F(PageSaveTest, TheTextOfALostSurfaceNeverReplacesThePage) {
    Open(u"full"_s, u"full"_s);
    m_temp.Write(u"NodeResource\\N5\\res\\a.gif"_s, "x");
    m_page.strUrl = u"about:blank"_s;
    for (const QString& strText : {QString(), u"<p>The page could not be shown."_s}) {
        m_page.strHtml = strText;
        m_people.Expect(u"获得编辑器内容失败！"_s);
        EXPECT_EQ(m_saver.SavePage(true, false, true), ESaveResult::NotSaved);
    }
    EXPECT_FALSE(m_saver.ClearGarbage());
    EXPECT_EQ(ResFiles().size(), 1);
    // What stands in the source box is the teacher's own.
    m_page.bInSource = true;
    m_page.strHtml = u"typed"_s;
    EXPECT_EQ(m_saver.SavePage(true, false, true), ESaveResult::Saved);
    EXPECT_EQ(m_written, QStringList{u"typed"_s});
}

// Whoever declines to save goes back to the page on the disk.
TEST_F(PageSaveTest, CleaningSparesWhatThePageOnTheDiskNames) {
    Open(u"<img src=\"res/a.gif\">"_s, u"<p>the picture taken out</p>"_s);
    for (const QString& strName : {u"a.gif"_s, u"b.gif"_s})
        m_temp.Write(u"NodeResource\\N5\\res\\"_s + strName, "x");
    EXPECT_TRUE(m_saver.ClearGarbage());
    EXPECT_EQ(ResFiles(), QStringList{u"a.gif"_s});
}

TEST_F(PageSaveTest, ATextThatMemoryDoesNotHoldKeepsThePageOpen) {
    struct : CFakePage {
        bool GetCurrentHtml(QString&) override { throw std::bad_alloc(); }
    } page;
    CPageSaver saver(page, m_people, {});
    m_people.Expect(u"字段太长！"_s);
    EXPECT_FALSE(saver.MayLeave(true));
}

TEST_F(PageSaveTest, APageThatCannotBeWrittenHoldsWhoeverMayStay) {
    for (const bool bCanCancel : {true, false}) {
        for (const bool bThrow : {true, false}) {
            Open(u"a"_s, u"a"_s);
            m_page.strHtml = u"b"_s;
            m_bThrow = bThrow;
            m_bRefuse = !bThrow;
            m_people.Expect(c_strAsk, BoxAnswer::Yes);
            m_people.Expect(bThrow ? u"磁盘已满"_s : u"保存文件失败！"_s);
            EXPECT_EQ(m_saver.MayLeave(bCanCancel), !bCanCancel);
            EXPECT_EQ(m_people.Boxes.back().strTitle, u"错误"_s);
        }
    }
}

} // namespace
