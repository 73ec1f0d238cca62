// A save at every degree of fullness of the disk, from none left to enough: each of its steps fails once.
#include "editor/Download.h"
#include "editor/PageSave.h"
#include "tests/content/CourseOnDisk.h"
#include "tests/editor/FakePage.h"
#include "tests/support/SmallDisk.h"
#include "tests/support/StrangeServer.h"

#include <iostream>

namespace {

constexpr int c_nDiskKilobytes = 4096;
constexpr qint64 c_nPage = 4096;

struct CNotingPeople : CScriptedPeople {
    QStringList Said;
    BoxAnswer Ask(const QString& strText, const QString&, BoxButtons, BoxIcon, BoxDefault) override {
        Said.append(strText);
        return BoxAnswer::Ok;
    }
};

struct Outcome {
    bool bNewPage = false;
    int nLocalised = 0;
};

class CSaveOnFullDisk {
public:
    explicit CSaveOnFullDisk(const CSmallDisk& disk)
        : m_disk(disk), m_world(QString(), disk.Path()),
          m_pNode(CBookNode::Root(*m_world.pCourse)->AddChild(u"页"_s)) {
        m_pNode->CreateEditorPage(0);
        m_outside.Write(u"图 1.gif"_s, m_picture);
        m_strPicture =
            u"file:///"_s + m_outside.Path(u"图 1.gif"_s).replace(u'\\', u'/').replace(u' ', u"%20"_s);
        m_strRemote = QString::fromLatin1(m_server.Url("/b.gif"));
        m_page.strHtml =
            u"<img src=\"%1\"><img src=\"%2\">"_s.arg(m_strPicture, m_strRemote) + QString(9'000, u'新');
        m_page.Images = {m_strPicture, m_strRemote};
    }

    /// One save; what it left must hold together, whatever was too much.
    Outcome With(qint64 nFree) {
        const QString strTyped = m_page.strHtml;
        m_pNode->SaveContent(u"旧"_s);
        m_page.strUrl = u"file://"_s + m_pNode->GetContentPath();
        CNotingPeople people;
        CPageSaver saver(m_page, people, &DownloadUrlToFile);
        m_page.strHtml = u"旧"_s;
        saver.Open(m_pNode->GetContentPath(), m_world.pCourse->GetPaths().GetNodeResourceFolder(true),
                   [this](const QString& strHtml) { return m_pNode->SaveContent(strHtml); });
        m_page.strHtml = strTyped;
        m_disk.LeaveFree(nFree);
        const ESaveResult result = saver.SavePage(true, false, true);
        m_disk.MakeRoom();
        const Outcome outcome = Judge(result, strTyped, people.Said);
        m_page.strHtml = strTyped;
        QDir(ResFolder()).removeRecursively();
        QDir().mkpath(ResFolder());
        return outcome;
    }

private:
    QString ResFolder() const {
        return m_world.Folder.Native(CCourseOnDisk::NodePath(m_pNode->GetId(), u"res"_s));
    }

    Outcome Judge(ESaveResult result, const QString& strTyped, const QStringList& said) const {
        Outcome outcome;
        const QString strPage = ReadTextFile(m_pNode->GetContentPath());
        outcome.bNewPage = strPage != u"旧"_s;
        QString strAsTyped = strPage;
        const QStringList files = QDir(ResFolder()).entryList(QDir::Files);
        for (const QString& strFile : files) {
            EXPECT_TRUE(strPage.contains(u"res/"_s + strFile)) << "litter: " << strFile;
            QFile file(ResFolder() + u'/' + strFile);
            const bool bFirst = strPage.indexOf(strFile) < strPage.lastIndexOf(u"<img"_s);
            EXPECT_TRUE(file.open(QIODevice::ReadOnly) && file.readAll() == (bFirst ? m_picture : m_fetched));
            strAsTyped.replace(u"res/"_s + strFile, bFirst ? m_strPicture : m_strRemote);
            ++outcome.nLocalised;
        }
        EXPECT_EQ(strAsTyped, outcome.bNewPage ? strTyped : u"旧"_s);
        EXPECT_EQ(result, outcome.bNewPage ? ESaveResult::Saved : ESaveResult::NotWritten);
        // The text on the screen is what was written, or what was typed.
        EXPECT_EQ(m_page.strHtml, outcome.bNewPage ? strPage : strTyped);
        EXPECT_EQ(said.isEmpty(), outcome.bNewPage && outcome.nLocalised == 2) << said.join(u'\n');
        const QStringList beside = QFileInfo(ResFolder()).dir().entryList(QDir::Files);
        EXPECT_EQ(beside, QStringList{u"Content.htm"_s});
        return outcome;
    }

    const CSmallDisk& m_disk;
    const QByteArray m_picture = QByteArray(3 * c_nPage, 'p');
    const QByteArray m_fetched = QByteArray(10 * c_nPage, 'f');
    const CStrangeServer m_server{"HTTP/1.0 200 OK\r\n\r\n" + m_fetched};
    CTempFolder m_outside;
    QString m_strPicture, m_strRemote;
    CCourseOnDisk m_world;
    std::unique_ptr<CBookNode> m_pNode;
    CFakePage m_page;
};

TEST(FullDisk, ThePageIsTheOldOneOrTheNewOneAndRefersToWhatIsThere) {
    const CSmallDisk disk(c_nDiskKilobytes);
    if (!disk.Failure().empty()) {
        std::cerr << "NOT TESTED: a save on a full disk (" << disk.Failure() << ")\n";
        GTEST_SKIP() << disk.Failure();
    }
    CSaveOnFullDisk save(disk);
    int nOld = 0, nPartial = 0, nWhole = 0;
    for (qint64 nFree = 0; nFree <= 25 * c_nPage && !testing::Test::HasFailure(); nFree += c_nPage) {
        SCOPED_TRACE(nFree);
        const Outcome outcome = save.With(nFree);
        ++(!outcome.bNewPage ? nOld : outcome.nLocalised < 2 ? nPartial : nWhole);
    }
    EXPECT_TRUE(nOld > 0 && nPartial > 0 && nWhole > 0) << nOld << ' ' << nPartial << ' ' << nWhole;
}

} // namespace
