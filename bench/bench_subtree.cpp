// A branch of 1,000 nodes with small files leaves a course and comes into it, beside cp -r of the same
// folders, and for the import the rows as the engine alone inserts them. Usage: bench_subtree FOLDER [nodes]
#include "bench/BenchCourse.h"
#include "bench/Rounds.h"
#include "content/SubtreeTransfer.h"

#include <QTemporaryDir>

namespace {

constexpr double c_dLimit = 1.5;
constexpr int c_nSections = 25;

std::unique_ptr<CBookNode> MakeBranch(CCourse& course, int nNodes) {
    CBookDatabase& store = *course.GetDatabase();
    CBookDatabase::CTransaction transaction(store);
    auto pBranch = CBookNode::Root(course)->AddChild(u"教材"_s);
    std::unique_ptr<CBookNode> pChapter;
    for (int n = 0; n < nNodes - 1; ++n) {
        if (n % c_nSections == 0)
            pChapter = pBranch->AddChild(u"第%1章"_s.arg(n));
        const auto pNode = n % c_nSections == 0 ? std::make_unique<CBookNode>(*pChapter)
                                                : pChapter->AddChild(u"第%1节 课程内容"_s.arg(n));
        const QString strNode = Platform::ToNativeExact(pNode->GetFolder());
        QDir().mkpath(strNode + u"/res"_s);
        Write(strNode + u"/Content.htm"_s, 2000 + n % 3000);
        for (int nFile = 0; nFile < 3; ++nFile)
            Write(strNode + u"/res/图片%1.png"_s.arg(nFile), 500 + n * 7 % 9000);
        store.SetContent(pNode->GetId(), {0, u"N%1\\Content.htm"_s.arg(pNode->GetId()), 0, {}, {}});
    }
    transaction.Commit();
    return pBranch;
}

} // namespace

int main(int argc, char** argv) {
    MustHold(argc > 1, "usage: bench_subtree FOLDER [nodes]");
    const QTemporaryDir folder(QString::fromLocal8Bit(argv[1]) + u"/vorel-bench-XXXXXX"_s);
    MustHold(folder.isValid(), "the work folder");
    const int nNodes = argc > 2 ? std::atoi(argv[2]) : 1000;
    CNobody people;
    CNoSession session;
    CNodeMakerFactory makers;
    const auto pCourse = MakeCourse(folder.path(), {people, session, session, makers});
    const auto pBranch = MakeBranch(*pCourse, nNodes);
    std::unique_ptr<CBookNode> pTarget;
    const QString strOut = folder.filePath(u"out"_s), strCopy = folder.filePath(u"copy"_s);
    const QString strStore = folder.filePath(u"store.mdb"_s);
    const auto copy = [&](const QString& strFrom) { RunTool(u"cp"_s, {u"-r"_s, strFrom, strCopy}); };
    const auto remove = [](const QString& strPath) { RunTool(u"rm"_s, {u"-rf"_s, strPath}); };
    const auto transfer = [&](CBookNode& node, CSubtreeTransfer::EMode eMode) {
        MustHold(CSubtreeTransfer(people, node, Platform::FromNative(strOut), eMode).Run(), "transfer");
    };
    const auto prepareExport = [&] {
        remove(strOut);
        remove(strCopy);
        QDir().mkpath(strOut);
    };
    const auto prepareImport = [&] {
        remove(strCopy);
        if (pTarget)
            pTarget->Delete();
        pTarget = CBookNode::Root(*pCourse)->AddChild(u"导入"_s);
        QFile::remove(strStore);
        QFile::copy(QStringLiteral(VOREL_SEED_DATA "/DataBase/VorelCourse.mdb"), strStore);
    };
    bool bKept = Run(
        {"subtree export", c_dLimit, [&] { transfer(*pBranch, CSubtreeTransfer::EMode::Export); },
         [&] { copy(Platform::ToNative(pCourse->GetPaths().GetNodeResourceFolder(false))); }, prepareExport});
    prepareExport();
    transfer(*pBranch, CSubtreeTransfer::EMode::Export);
    bKept &= Run({"subtree import", c_dLimit, [&] { transfer(*pTarget, CSubtreeTransfer::EMode::Import); },
                  [&] {
                      copy(strOut);
                      InsertRows(strStore, nNodes);
                  },
                  prepareImport});
    return bKept ? 0 : 1;
}
