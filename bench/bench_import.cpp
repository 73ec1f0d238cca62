// A folder of 5,000 files becomes nodes, beside cp -r of the same folder and the rows as the engine alone
// inserts them; once spread over folders, once all in one. Usage: bench_import FOLDER [files]
#include "bench/BenchCourse.h"
#include "bench/Rounds.h"
#include "content/ContentBuilder.h"

#include <QTemporaryDir>

namespace {

constexpr double c_dLimit = 1.5;

/// Lessons as teachers keep them: pages, texts and pictures of some kilobytes.
void MakeSource(const QString& strFolder, int nFiles, int nInFolder) {
    static const QStringList c_endings{u"htm"_s, u"txt"_s, u"jpg"_s, u"pdf"_s};
    for (int n = 0; n < nFiles; ++n) {
        const QString strPlace = strFolder + u"/第%1章"_s.arg(n / nInFolder);
        if (n % nInFolder == 0)
            QDir().mkpath(strPlace);
        Write(strPlace + u"/第%1节 课程内容.%2"_s.arg(n).arg(c_endings[n % 4]), 500 + n * 7 % 9000);
    }
}

} // namespace

int main(int argc, char** argv) {
    MustHold(argc > 1, "usage: bench_import FOLDER [files]");
    const QTemporaryDir folder(QString::fromLocal8Bit(argv[1]) + u"/vorel-bench-XXXXXX"_s);
    MustHold(folder.isValid(), "the work folder");
    const int nFiles = argc > 2 ? std::atoi(argv[2]) : 5000;
    CNobody people;
    CNoSession session;
    CNodeMakerFactory makers;
    const auto pCourse = MakeCourse(folder.path(), {people, session, session, makers});
    const QString strCopy = folder.filePath(u"copy"_s), strStore = folder.filePath(u"store.mdb"_s);
    std::unique_ptr<CBookNode> pTarget;
    bool bKept = true;
    for (const int nInFolder : {100, nFiles}) {
        const QString strSource = folder.filePath(u"source%1"_s.arg(nInFolder));
        MakeSource(strSource, nFiles, nInFolder);
        CNodeFileParams params;
        params.Kind = EContentKind::Folder;
        params.ImportFolder = Platform::FromNative(strSource);
        params.ImportFilter = u"*.*"_s;
        const auto import = [&] {
            MustHold(CNodeContentBuilder(*pTarget, people, [] { return true; }).Create(params), "import");
        };
        const auto copyAndInsert = [&] {
            RunTool(u"cp"_s, {u"-r"_s, strSource, strCopy});
            InsertRows(strStore, nFiles + nFiles / nInFolder);
        };
        const auto prepare = [&] {
            RunTool(u"rm"_s, {u"-rf"_s, strCopy});
            if (pTarget)
                pTarget->Delete();
            pTarget = CBookNode::Root(*pCourse)->AddChild(u"导入"_s);
            QFile::remove(strStore);
            QFile::copy(QStringLiteral(VOREL_SEED_DATA "/DataBase/VorelCourse.mdb"), strStore);
        };
        const char* szName = nInFolder == nFiles ? "directory import, one folder" : "directory import";
        bKept &= Run({szName, c_dLimit, import, copyAndInsert, prepare});
        prepare();
        import();
        MustHold(pTarget->GetDescendants().size() == nFiles + nFiles / nInFolder, "all nodes");
    }
    return bKept ? 0 : 1;
}
