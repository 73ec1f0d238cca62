// A branch of 1,000 nodes with small files leaves a course and comes into it, beside cp -r of the same
// folders, and for the import the rows as the engine alone inserts them. Usage: bench_subtree FOLDER [nodes]
#include "bench/Rounds.h"
#include "content/SubtreeTransfer.h"
#include "tests/content/CourseOnDisk.h"

#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>

#include <QProcess>

#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

constexpr double c_dLimit = 1.5;
constexpr int c_nSections = 25;

void MustHold(bool bHolds, const char* szWhat) {
    if (!bHolds) {
        std::fprintf(stderr, "failed: %s\n", szWhat);
        std::exit(2);
    }
}

void RunTool(const QString& strTool, const QStringList& arguments) {
    MustHold(QProcess::execute(strTool, arguments) == 0, qPrintable(strTool));
}

std::unique_ptr<CBookNode> MakeBranch(CCourseOnDisk& disk, int nNodes) {
    CBookDatabase::CTransaction transaction(disk.Store());
    auto pBranch = CBookNode::Root(*disk.pCourse)->AddChild(u"教材"_s);
    std::unique_ptr<CBookNode> pChapter;
    for (int n = 0; n < nNodes - 1; ++n) {
        if (n % c_nSections == 0)
            pChapter = pBranch->AddChild(u"第%1章"_s.arg(n));
        const auto pNode = n % c_nSections == 0 ? std::make_unique<CBookNode>(*pChapter)
                                                : pChapter->AddChild(u"第%1节 课程内容"_s.arg(n));
        const qint32 nId = pNode->GetId();
        disk.Folder.Write(disk.NodePath(nId, u"Content.htm"_s), QByteArray(2000 + n % 3000, 'p'));
        for (int nFile = 0; nFile < 3; ++nFile)
            disk.Folder.Write(disk.NodePath(nId, u"res\\图片%1.png"_s.arg(nFile)),
                              QByteArray(500 + n * 7 % 9000, 'x'));
        disk.Store().SetContent(nId, {0, u"N%1\\Content.htm"_s.arg(nId), 0, {}, {}});
    }
    transaction.Commit();
    return pBranch;
}

/// Rows of the same length in a store of the same kind.
void InsertRows(const QString& strStore, int nNodes) {
    SQLite::Database store(strStore.toStdString(), SQLite::OPEN_READWRITE);
    store.exec("PRAGMA synchronous = FULL");
    SQLite::Transaction transaction(store);
    SQLite::Statement insert(store,
                             "INSERT INTO Book (Title, ParentId, [Index], Type, Path, TimeLastModified) "
                             "VALUES (?, 3, ?, 0, ?, '2026-01-05 08:00:00')");
    for (int n = 0; n < nNodes; ++n) {
        insert.bind(1, std::string(40, 'A') + std::to_string(n));
        insert.bind(2, n + 10);
        insert.bind(3, "N" + std::to_string(n) + "\\Content.htm");
        insert.exec();
        insert.reset();
    }
    transaction.commit();
}

} // namespace

int main(int argc, char** argv) {
    MustHold(argc > 1, "usage: bench_subtree FOLDER [nodes]");
    qputenv("TMPDIR", argv[1]);
    const int nNodes = argc > 2 ? std::atoi(argv[2]) : 1000;
    CCourseOnDisk disk;
    const auto pBranch = MakeBranch(disk, nNodes);
    std::unique_ptr<CBookNode> pTarget;
    const auto copyFrom = [&](const QString& strFrom) {
        RunTool(u"cp"_s, {u"-r"_s, disk.Folder.Native(strFrom), disk.Folder.Native(u"抄"_s)});
    };
    const auto remove = [&](const QString& strFolder) {
        RunTool(u"rm"_s, {u"-rf"_s, disk.Folder.Native(strFolder)});
    };
    const auto transfer = [&](CBookNode& node, CSubtreeTransfer::EMode eMode) {
        MustHold(CSubtreeTransfer(disk.People, node, disk.Folder.Path(u"导出"_s), eMode).Run(), "transfer");
    };
    const QString strNodes = u"课程\\Data\\Courseware\\NodeResource"_s;
    bool bKept =
        Run({"subtree export", c_dLimit, [&] { transfer(*pBranch, CSubtreeTransfer::EMode::Export); },
             [&] { copyFrom(strNodes); },
             [&] {
                 remove(u"导出"_s);
                 remove(u"抄"_s);
                 disk.Folder.MakeFolder(u"导出"_s);
             }});
    remove(u"导出"_s);
    disk.Folder.MakeFolder(u"导出"_s);
    transfer(*pBranch, CSubtreeTransfer::EMode::Export);
    const QString strStore = disk.Folder.Native(u"store.mdb"_s);
    bKept &= Run({"subtree import", c_dLimit, [&] { transfer(*pTarget, CSubtreeTransfer::EMode::Import); },
                  [&] {
                      copyFrom(u"导出"_s);
                      InsertRows(strStore, nNodes);
                  },
                  [&] {
                      remove(u"抄"_s);
                      if (pTarget)
                          pTarget->Delete();
                      pTarget = CBookNode::Root(*disk.pCourse)->AddChild(u"导入"_s);
                      QFile::remove(strStore);
                      QFile::copy(Platform::ToNative(CSysInfo::Instance().GetSysDataFolder(true)) +
                                      u"Data/DataBase/VorelCourse.mdb"_s,
                                  strStore);
                  }});
    return bKept ? 0 : 1;
}
