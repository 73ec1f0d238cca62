#include "course/BookDatabase.h"
#include "tests/support/CourseFakes.h"

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <random>

using namespace Qt::StringLiterals;

namespace {

/// Changes the tree at random until the process is killed.
[[noreturn]] void ChangeForever(const QString& strPath, unsigned nSeed) {
    CBookDatabase database(strPath, 42);
    database.Open();
    std::mt19937 random(nSeed);
    std::vector<qint32> nodes{3};
    for (;;) {
        const qint32 nOne = nodes[random() % nodes.size()], nOther = nodes[random() % nodes.size()];
        const auto nChoice = random() % 4;
        if (nOne == 3 || nodes.size() < 8) {
            CBookDatabase::CTransaction transaction(database);
            nodes.push_back(database.AddNode(nOther, u"甲"_s));
            nodes.push_back(database.AddNode(nOther, u"乙"_s));
            transaction.Commit();
        } else if (nChoice == 0 && database.GetChildrenCount(nOne) == 0) {
            database.DeleteNode(nOne);
            std::erase(nodes, nOne);
        } else {
            nChoice == 1   ? database.MoveUp(nOne)
            : nChoice == 2 ? database.MoveDown(nOne)
                           : database.MoveTo(nOne, nOther);
        }
    }
}

TEST(StoreKillTest, KilledProgramLeavesAWholeTree) {
    const CCourseWorld world;
    const QString strPath = world.Folder.Path(u"a.mdb"_s);
    qint32 nMost = 0;
    for (unsigned nRound = 0; nRound < 12; ++nRound) {
        world.CopySeed(u"a.mdb"_s);
        const pid_t nChild = fork();
        ASSERT_GE(nChild, 0) << "never kill(-1)";
        if (nChild == 0)
            ChangeForever(strPath, nRound);
        usleep(20'000 + 17'000 * nRound);
        kill(nChild, SIGKILL);
        int nStatus = 0;
        waitpid(nChild, &nStatus, 0);
        ASSERT_TRUE(WIFSIGNALED(nStatus) && WTERMSIG(nStatus) == SIGKILL);
        CBookDatabase database(strPath, 42);
        ASSERT_TRUE(database.Open());
        // Every sibling list counts 1, 2, 3, and every node hangs in the tree.
        qint32 nMet = 3;
        for (QList<qint32> open{3}; !open.isEmpty();) {
            const QList<qint32> children = database.GetChildIds(open.takeLast());
            for (qsizetype n = 0; n < children.size(); ++n)
                EXPECT_EQ(database.GetField(children[n], u"Index"_s).toInt(), n + 1);
            nMet += static_cast<qint32>(children.size());
            open += children;
        }
        EXPECT_EQ(nMet, database.GetNodeCount());
        nMost = std::max(nMost, nMet);
    }
    EXPECT_GT(nMost, 10) << "else nothing was interrupted";
}

} // namespace
