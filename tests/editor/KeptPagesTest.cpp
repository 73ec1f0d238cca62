#include "content/BookNode.h"
#include "editor/KeptPageOffer.h"
#include "editor/PageKeeper.h"
#include "tests/content/CourseOnDisk.h"

#include <QProcess>
#include <QThread>

#include <csignal>

using BoxAnswer = CScriptedPeople::BoxAnswer;

namespace {

const QString c_strAsk = u"上次编辑栏目“%1”时程序没有正常结束，%2 保留下了尚未保存的内容。\n"
                         "您要打开该栏目，继续编辑这些内容吗？\n\n"
                         "选“是”，内容放回编辑器，由您检查后保存；选“否”，放弃这些内容。"_s;
const QString c_strChanged = u"\n\n注意：此后该栏目的网页又改动过，保存时将被这些内容替换。"_s;

bool WaitFor(const std::function<bool()>& done) {
    QElapsedTimer waited;
    waited.start();
    while (!done() && waited.elapsed() < 10000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    return done();
}

/// Long enough that a write can be cut in two.
QString TextOf(int n) {
    return u"<p>第 %1 句</p>\n"_s.arg(n).repeated(20000);
}

class KeptPagesTest : public ::testing::Test {
protected:
    std::unique_ptr<CBookNode> MakePage(const QString& strTitle) {
        auto pNode = CBookNode::Root(*m_world.pCourse)->AddChild(strTitle);
        pNode->CreateEditorPage(0);
        return pNode;
    }
    KeptPage About(const CBookNode& node, const QString& strHtml = {}) const {
        KeptPage page;
        page.strPath = KeptPages::NewPath(Paths(), node.GetId());
        page.nNode = node.GetId();
        page.strTitle = node.GetTitle();
        page.Time = QDateTime::currentDateTime();
        page.PageHash = KeptPages::HashOfPage(node.GetContentPath());
        page.strHtml = strHtml;
        return page;
    }
    const CCoursePaths& Paths() const { return m_world.pCourse->GetPaths(); }
    QString Question(const KeptPage& page) const {
        return c_strAsk.arg(page.strTitle, page.Time.toString(u"yyyy-MM-dd HH:mm"_s));
    }
    std::optional<KeptPage> Offer(std::optional<qint32> only = std::nullopt) {
        return OfferKeptPages(*m_world.pCourse, m_world.People, only);
    }

    CCourseOnDisk m_world;
};

TEST_F(KeptPagesTest, ATextIsKeptWhileItIsAnotherThanThePages) {
    const auto pNode = MakePage(u"一"_s);
    CPageKeeper::Text live{u"as loaded"_s, false};
    int nAsked = 0;
    CPageKeeper keeper(
        [&](const CPageKeeper::Answer& answer) {
            ++nAsked;
            QMetaObject::invokeMethod(
                qApp, [=] { answer(live); }, Qt::QueuedConnection);
        },
        [](const QString& strFailure) { ADD_FAILURE() << strFailure; });
    keeper.SetDelay(1);
    const auto kept = [&] { return KeptPages::Read(Paths()); };
    const auto change = [&](const QString& strTo) {
        live.strHtml = strTo;
        keeper.Touch();
    };
    keeper.Open(About(*pNode, live.strHtml));
    keeper.Touch();
    EXPECT_SOON(nAsked == 1);
    change(u"第一 <b>句</b> 😀 -->"_s);
    EXPECT_SOON(kept().size() == 1);
    EXPECT_EQ(kept().first().strHtml, live.strHtml);
    EXPECT_EQ(kept().first().strTitle, u"一"_s);
    change(u"as loaded"_s);
    EXPECT_SOON(kept().isEmpty()) << "all was undone";
    live.bInSource = true;
    change(u"<p clas"_s);
    EXPECT_SOON(kept().size() == 1 && kept().first().bInSource);
    keeper.Saved(live.strHtml, "hash");
    EXPECT_SOON(kept().isEmpty());
    // The newest text is the one that was known last, asked for or not.
    keeper.Know({u"gone without a decision"_s, false});
    keeper.Close();
    ASSERT_EQ(kept().size(), 1);
    EXPECT_EQ(kept().first().strHtml, u"gone without a decision"_s);
    EXPECT_EQ(kept().first().PageHash, "hash");
    keeper.Open(About(*pNode));
    keeper.TakeUp(kept().first());
    keeper.Drop();
    EXPECT_TRUE(kept().isEmpty());
}

TEST_F(KeptPagesTest, WhatCannotBeKeptIsToldOnceAndTriedAgain) {
    const auto pNode = MakePage(u"一"_s);
    CPageKeeper::Text live;
    QStringList failures;
    CPageKeeper keeper([&](const CPageKeeper::Answer& answer) { answer(live); },
                       [&](const QString& strFailure) { failures.append(strFailure); });
    keeper.SetDelay(1);
    keeper.Open(About(*pNode));
    // A file in the folder's place: nothing can be written, whoever runs the test.
    m_world.Folder.Write(CCourseWorld::InCourse(u"Data\\Unsaved"_s), "");
    for (int n = 0; n < 3; ++n) {
        live.strHtml = QString::number(n);
        keeper.Touch();
        EXPECT_SOON(!failures.isEmpty());
    }
    QFile::remove(m_world.Folder.Native(CCourseWorld::InCourse(u"Data\\Unsaved"_s)));
    EXPECT_TRUE(WaitFor([&] {
        live.strHtml += u'x';
        keeper.Touch();
        return !KeptPages::Read(Paths()).isEmpty();
    }));
    EXPECT_EQ(failures.size(), 1);
    keeper.Drop();
}

TEST_F(KeptPagesTest, ThePersonDecides) {
    const auto pNode = MakePage(u"一 %2"_s), pOther = MakePage(u"二"_s);
    KeptPage old = About(*pNode, u"old"_s), fresh = About(*pOther, u"fresh"_s);
    old.Time = old.Time.addDays(-1);
    KeptPages::Write(old);
    KeptPages::Write(fresh);
    KeptPages::Write(About(*pNode, ReadTextFile(pNode->GetContentPath())));
    m_world.Folder.Write(CCourseWorld::InCourse(u"Data\\Unsaved\\N9.htm"_s),
                         "<!DOCTYPE html><p>no kept page");
    m_world.People.Expect(Question(fresh), BoxAnswer::No);
    m_world.People.Expect(Question(old), BoxAnswer::Yes);
    EXPECT_EQ(Offer()->strHtml, u"old"_s);
    EXPECT_EQ(KeptPages::Read(Paths()).size(), 1) << "the first equals its page";
    pNode->SaveContent(u"changed since"_s);
    EXPECT_FALSE(Offer(pOther->GetId()));
    m_world.People.Expect(Question(old) + c_strChanged, BoxAnswer::Yes);
    EXPECT_EQ(Offer(pNode->GetId())->strPath, old.strPath);
}

TEST_F(KeptPagesTest, TheTextOfANodeThatIsGoneIsPutBesideTheCourse) {
    auto pNode = MakePage(u"甲/乙"_s);
    KeptPage page = About(*pNode, QString());
    const QString strPictures = KeptPages::PicturesFolder(page.strPath);
    const QString strNative = Platform::ToNative(strPictures);
    ASSERT_TRUE(QDir().mkpath(strNative));
    ASSERT_TRUE(QFile::copy(QStringLiteral(VOREL_DELIVERED_DATA "/Images/Help.gif"), strNative + u"a.gif"_s));
    page.strHtml = u"<p><img src=\"file:///Z:"_s + strNative + u"a.gif\">全部</p>"_s;
    KeptPages::Write(page);
    pNode->Delete();
    const QString strPlace = m_world.Folder.Native(CCourseWorld::InCourse(u"未保存的网页/甲_乙.htm"_s));
    m_world.People.Expect(u"栏目“甲/乙”已不存在，或者不再是网页。%1 保留下的未保存内容已另存为：\n%2"_s.arg(
        page.Time.toString(u"yyyy-MM-dd HH:mm"_s), strPlace));
    EXPECT_FALSE(Offer());
    EXPECT_TRUE(KeptPages::Read(Paths()).isEmpty());
    QFile file(strPlace);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QString strText = QString::fromUtf8(file.readAll());
    // Its pictures come along.
    EXPECT_TRUE(strText.endsWith(u"<p><img src=\"%E7%94%B2_%E4%B9%99.files/a.gif\">全部</p>"_s)) << strText;
    EXPECT_TRUE(QFile::exists(QString(strPlace).replace(u".htm"_s, u".files/a.gif"_s)));
    EXPECT_FALSE(QDir(strNative).exists());
}

TEST_F(KeptPagesTest, PicturesStayAsLongAsASavedPageOrAKeptTextRefersToThem) {
    const auto pNode = MakePage(u"页"_s);
    const KeptPage page = About(*pNode, u"<p>x</p>"_s);
    const QString strFolder = KeptPages::PicturesFolder(page.strPath);
    const QDir folder(Platform::ToNative(strFolder));
    ASSERT_TRUE(QDir().mkpath(folder.path()));
    // A disk that was full at the save left the page with the reference as it was.
    KeptPages::RemovePictures(page.strPath,
                              u"<img src=\"file:///Z:/x/"_s + folder.dirName() + u"/a.png\">"_s);
    EXPECT_TRUE(folder.exists());
    // Another program may be editing that page since today.
    KeptPages::RemoveOrphans(Paths());
    EXPECT_TRUE(folder.exists());
    KeptPages::RemovePictures(page.strPath, u"<p>x</p>"_s);
    EXPECT_FALSE(folder.exists());
}

TEST_F(KeptPagesTest, ManyTextsOfAStrangersCourseAreToldInOneBox) {
    const auto pHere = MakePage(u"在"_s);
    const KeptPage own = About(*pHere, u"<p>own</p>"_s);
    KeptPages::Write(own);
    KeptPage gone = About(*pHere, u"<p>x</p>"_s);
    gone.Time = QDateTime(QDate(2020, 1, 2), QTime(3, 4));
    for (int n = 0; n < 120; ++n) {
        gone.nNode = 1000 + n;
        gone.strTitle = u"无"_s.repeated(500);
        gone.strPath = KeptPages::NewPath(Paths(), gone.nNode);
        KeptPages::Write(gone);
    }
    // The others are neither read nor told of where one page is opened.
    m_world.People.Expect(Question(own), BoxAnswer::No);
    EXPECT_FALSE(Offer(pHere->GetId()));
    const QString strLine = u"无"_s.repeated(60) + u"（2020-01-02 03:04）\n"_s;
    m_world.People.Expect(
        u"有 100 份保留下的未保存内容，其栏目已不存在，或者不再是网页。这些内容已另存到：\n%1\n\n%2……"_s.arg(
            m_world.Folder.Native(CCourseWorld::InCourse(u"未保存的网页"_s)), strLine.repeated(10)));
    EXPECT_FALSE(Offer());
    EXPECT_EQ(KeptPages::Read(Paths()).size(), 20) << "another time";
}

/// Runs in a process of its own, which the test below kills.
TEST(KeptPagesVictim, DISABLED_KeepsOnKeeping) {
    KeptPage about;
    about.strPath = KeptPages::NewPath(CCoursePaths(qEnvironmentVariable("VOREL_KEPT_COURSE")), 5);
    about.nNode = 5;
    int n = 0;
    CPageKeeper keeper(
        [&](const CPageKeeper::Answer& answer) {
            answer(CPageKeeper::Text{TextOf(++n), false});
        },
        [](const QString&) {});
    keeper.SetDelay(0);
    keeper.Open(about);
    for (;;) {
        keeper.Touch();
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 10);
    }
}

TEST_F(KeptPagesTest, WhenTheProgramIsKilledAWholeTextStands) {
    for (int nTry = 0; nTry < 5; ++nTry) {
        QProcess victim;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"VOREL_KEPT_COURSE"_s, Paths().GetProjectPath());
        victim.setProcessEnvironment(environment);
        victim.start(QCoreApplication::applicationFilePath(),
                     {u"--gtest_also_run_disabled_tests"_s, u"--gtest_filter=KeptPagesVictim.*"_s});
        ASSERT_SOON(!KeptPages::Read(Paths()).isEmpty());
        QThread::msleep(static_cast<unsigned long>(10 + nTry * 7));
        ::kill(static_cast<pid_t>(victim.processId()), SIGKILL);
        ASSERT_TRUE(victim.waitForFinished());
        const auto kept = KeptPages::Read(Paths());
        ASSERT_EQ(kept.size(), 1);
        const int n = kept.first().strHtml.section(u' ', 1, 1).toInt();
        EXPECT_GE(n, 1);
        EXPECT_EQ(kept.first().strHtml, TextOf(n));
        KeptPages::Remove(kept.first().strPath);
    }
}

} // namespace
