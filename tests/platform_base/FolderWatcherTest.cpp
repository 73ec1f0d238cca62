#include "platform/base/FolderWatcher.h"
#include "tests/support/Testing.h"

using Platform::CFolderWatcher;

namespace {

class CFolderWatching : public ::testing::Test {
protected:
    CFolderWatching() {
        m_folder.MakeFolder(u"N5\\res"_s);
        m_folder.Write(u"N5\\a.doc"_s, "old");
        m_folder.Write(u"outside\\sub\\b"_s, "old");
        m_folder.Link(m_folder.Native(u"outside"_s), u"N5\\link"_s);
    }
    bool Move(const QString& strFrom, const QString& strTo) const {
        return QFile::rename(m_folder.Native(strFrom), m_folder.Native(strTo));
    }
    /// What happens outside is told to the witness and not to the watcher.
    void ExpectNothingOf(const QString& strFolder, const std::function<void()>& change) {
        int nSeen = 0;
        const CFolderWatcher witness(m_folder.Path(strFolder), [&nSeen] { return ++nSeen > 0; });
        m_nTold = 0;
        change();
        ASSERT_SOON(nSeen > 0);
        QCoreApplication::processEvents();
        EXPECT_EQ(m_nTold, 0);
    }

    CTempFolder m_folder;
    int m_nTold = 0;
};

// Each of these changes the size that a node shows; a program may save by any of them.
TEST_F(CFolderWatching, TellsOfEveryKindOfChange) {
    const CFolderWatcher watcher(m_folder.Path(u"N5"_s), [this] { return ++m_nTold > 0; });
    const std::function<bool()> changes[] = {
        [this] { return m_folder.Write(u"N5\\a.doc"_s, "longer"), true; },
        [this] { return m_folder.Write(u"N5\\res\\p.png"_s, "new"), true; },
        [this] { return Move(u"N5\\res\\p.png"_s, u"N5\\res\\q.png"_s); },
        [this] { return m_folder.Write(u"N5\\new\\deep\\r"_s, "new"), true; },
        [this] { return m_folder.Write(u"N5\\new\\deep\\r"_s, "longer"), true; },
        [this] { return Move(u"N5\\new"_s, u"N5\\moved"_s); },
        [this] { return m_folder.Write(u"N5\\moved\\deep\\r"_s, "longest"), true; },
        [this] { return QFile::remove(m_folder.Native(u"N5\\moved\\deep\\r"_s)); },
    };
    int nChange = 0;
    for (const auto& change : changes) {
        m_nTold = 0;
        ASSERT_TRUE(change());
        EXPECT_SOON(m_nTold > 0) << "change " << nChange;
        ++nChange;
    }
}

// A save is dozens of changes and one walk through the folder; a download that goes on for minutes must show
// its growth all the same. No turn of the loop lasts as long as the queue of changes.
TEST_F(CFolderWatching, GathersChangesAndTellsWhileTheyGoOn) {
    const CFolderWatcher watcher(m_folder.Path(u"N5"_s), [this] { return ++m_nTold > 0; });
    for (int n = 0; n < 200; ++n)
        m_folder.Write(u"N5\\f%1"_s.arg(n), "x");
    ASSERT_SOON(m_nTold > 0);
    QCoreApplication::processEvents();
    EXPECT_EQ(m_nTold, 1);

    m_nTold = 0;
    EXPECT_TRUE(WaitFor([this] {
        m_folder.Write(u"N5\\a.doc"_s, "again and again");
        return m_nTold > 0;
    }));
}

// More changes than the system keeps: a folder whose making was lost is watched as well.
TEST_F(CFolderWatching, SurvivesAnOverflow) {
    QFile limit(u"/proc/sys/fs/inotify/max_queued_events"_s);
    ASSERT_TRUE(limit.open(QIODevice::ReadOnly));
    const int nLimit = limit.readAll().trimmed().toInt();
    if (nLimit > 100000)
        GTEST_SKIP() << "the queue is too long to be filled";
    const CFolderWatcher watcher(m_folder.Path(u"N5"_s), [this] { return ++m_nTold > 0; });
    const QString strA = m_folder.Native(u"N5\\a"_s);
    const QString strB = m_folder.Native(u"N5\\b"_s);
    m_folder.Write(u"N5\\a"_s, "x");
    for (int n = 0; n < nLimit / 2 + 10; ++n) {
        QFile::rename(strA, strB);
        QFile::rename(strB, strA);
    }
    m_folder.MakeFolder(u"N5\\late"_s);
    ASSERT_SOON(m_nTold > 0);
    m_nTold = 0;
    m_folder.Write(u"N5\\late\\c"_s, "x");
    EXPECT_SOON(m_nTold > 0);
}

// A link in a stranger's course would have the whole disk watched; a folder dragged out of the node is no
// part of it any more.
TEST_F(CFolderWatching, KeepsToItsFolder) {
    const CFolderWatcher watcher(m_folder.Path(u"N5"_s), [this] { return ++m_nTold > 0; });
    const auto write = [this] { m_folder.Write(u"outside\\sub\\b"_s, "longer"); };
    ExpectNothingOf(u"outside"_s, write);
    ASSERT_TRUE(Move(u"N5\\res"_s, u"outside\\res"_s));
    ASSERT_SOON(m_nTold > 0);
    ExpectNothingOf(u"outside"_s, [this] { m_folder.Write(u"outside\\res\\p"_s, "new"); });
    const CFolderWatcher ofLink(m_folder.Path(u"N5\\link"_s), [this] { return ++m_nTold > 0; });
    const CFolderWatcher ofNothing(m_folder.Path(u"none"_s), [this] { return ++m_nTold > 0; });
    ExpectNothingOf(u"outside"_s, write);
}

// The course is lent to a companion when the change comes: its size is booked when it is back.
TEST_F(CFolderWatching, TellsAgainUntilItIsHeard) {
    const CFolderWatcher watcher(m_folder.Path(u"N5"_s), [this] { return ++m_nTold == 2; });
    m_folder.Write(u"N5\\a.doc"_s, "longer");
    EXPECT_SOON(m_nTold == 2);
}

// The node is cleared: its watcher has ended, and a listener that ends the watcher itself is safe.
TEST_F(CFolderWatching, EndsWithTheFolderAndInItsOwnCallback) {
    const CFolderWatcher watcher(m_folder.Path(u"N5"_s), [this] { return ++m_nTold > 0; });
    EXPECT_TRUE(watcher.IsWatching());
    ASSERT_TRUE(QDir(m_folder.Native(u"N5"_s)).removeRecursively());
    ExpectNothingOf(u"outside"_s, [this] { m_folder.Write(u"outside\\sub\\b"_s, "x"); });
    EXPECT_FALSE(watcher.IsWatching());
    m_folder.MakeFolder(u"N5"_s);
    ExpectNothingOf(u"N5"_s, [this] { m_folder.Write(u"N5\\again"_s, "x"); });

    std::unique_ptr<CFolderWatcher> pOwn;
    bool bTold = false;
    pOwn = std::make_unique<CFolderWatcher>(m_folder.Path(u"N5"_s), [&] {
        pOwn.reset();
        return !(bTold = true);
    });
    m_folder.Write(u"N5\\again"_s, "longer");
    EXPECT_SOON(bTold);
}

} // namespace
