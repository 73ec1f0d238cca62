// What one durable operation on the tree costs: bench_tree_ops FOLDER_ON_A_DISK [NODES...].
//
// Each operation is one transaction of the store, synchronised with the disk, in a course shaped like a book
// (20 chapters of 25 sections of pages) and in one with all nodes below the root. In turns with them the disk
// alone does as much: the same numbers of bytes are appended to a file in the same folder, each synchronised.
// Medians and 95th percentiles are printed. An operation in a book may take 1 ms. In a flat course the dense
// order of the siblings forces all rows to be written that follow the node, so its figures have no limit.
#include "course/BookDatabase.h"
#include "foundation/SysInfo.h"
#include "platform/base/NativePath.h"

#include <fcntl.h>
#include <unistd.h>

#include <QByteArray>
#include <QFile>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <random>
#include <vector>

namespace {

constexpr double c_dLimitMilliseconds = 1.0;
constexpr int c_nChapters = 20;
constexpr int c_nSections = 25;
constexpr int c_nTimes = 300;
constexpr int c_nTimesFlat = 30;
/// The two sides take turns by so many: the file that grows keeps the file system's journal busy, which the
/// step behind it would wait for.
constexpr int c_nInARow = 15;

[[noreturn]] void Fail(const char* pszWhat) {
    std::fprintf(stderr, "bench_tree_ops: %s\n", pszWhat);
    std::exit(2);
}

double MillisecondsOf(const std::function<void()>& step) {
    const auto start = std::chrono::steady_clock::now();
    step();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

/// The bytes that this process has handed to the system so far.
qint64 BytesWritten() {
    QFile io(QStringLiteral("/proc/self/io"));
    if (!io.open(QIODevice::ReadOnly))
        Fail("the system does not count what a process writes");
    for (const QByteArray& line : io.readAll().split('\n')) {
        if (line.startsWith("wchar:"))
            return line.mid(6).trimmed().toLongLong();
    }
    Fail("the system does not count what a process writes");
}

/// A file that only grows, synchronised after each piece.
class CBareLog {
public:
    explicit CBareLog(const QString& strPath)
        : m_strPath(strPath),
          m_nFile(::open(QFile::encodeName(strPath), O_WRONLY | O_CREAT | O_TRUNC, 0600)) {
        if (m_nFile < 0)
            Fail("can't write to the folder");
    }
    ~CBareLog() {
        ::close(m_nFile);
        QFile::remove(m_strPath);
    }
    CBareLog(const CBareLog&) = delete;
    CBareLog& operator=(const CBareLog&) = delete;

    double Append(qint64 nBytes) {
        const QByteArray bytes(nBytes, 'x');
        return MillisecondsOf([&] {
            if (::write(m_nFile, bytes.constData(), static_cast<std::size_t>(nBytes)) != nBytes ||
                ::fdatasync(m_nFile) != 0)
                Fail("can't write to the folder");
        });
    }

private:
    QString m_strPath;
    int m_nFile;
};

/// One course of a shape, and the numbers to pick nodes by. Leaves and their parents.
struct Course {
    CBookDatabase& Store;
    std::vector<qint32> Parents;
    std::vector<qint32> Leaves;
    std::mt19937 Random{7};

    qint32 AnyParent() { return Parents[Random() % Parents.size()]; }
    qint32 AnotherParent() { return Parents.size() > 1 ? AnyParent() : TakeLeaf(); }
    qint32 AnyLeaf() { return Leaves[Random() % Leaves.size()]; }
    qint32 TakeLeaf() {
        std::swap(Leaves[Random() % Leaves.size()], Leaves.back());
        const qint32 nLeaf = Leaves.back();
        Leaves.pop_back();
        return nLeaf;
    }
};

void Fill(Course& course, int nNodes, bool bFlat) {
    CBookDatabase::CTransaction transaction(course.Store);
    int nMade = 0;
    const auto add = [&](qint32 nParentId) {
        return course.Store.AddNode(nParentId, QStringLiteral("第%1节 课程内容").arg(++nMade));
    };
    const auto addLeaves = [&](qint32 nParentId, int nLeaves) {
        course.Parents.push_back(nParentId);
        for (int n = 0; n < nLeaves; ++n)
            course.Leaves.push_back(add(nParentId));
    };
    if (bFlat)
        addLeaves(c_nRootNodeId, nNodes);
    for (int nChapter = 0; !bFlat && nChapter < c_nChapters; ++nChapter) {
        const qint32 nChapterId = add(c_nRootNodeId);
        for (int nSection = 0; nSection < c_nSections; ++nSection)
            addLeaves(add(nChapterId), nNodes / (c_nChapters * c_nSections) - 1);
    }
    transaction.Commit();
}

struct Operation {
    const char* pszName;
    std::function<bool(Course&)> run;
};

const Operation c_operations[] = {
    {"AddNode", [](Course& c) { return c.Store.AddNode(c.AnyParent(), QStringLiteral("新建栏目")) > 0; }},
    {"SetTitle", [](Course& c) { return c.Store.SetTitle(c.AnyLeaf(), QStringLiteral("另一个标题")); }},
    {"MoveUp", [](Course& c) { return c.Store.MoveUp(c.AnyLeaf()); }},
    {"MoveDown", [](Course& c) { return c.Store.MoveDown(c.AnyLeaf()); }},
    // Once only, and to a parent that is no leaf to come: below its own parent nobody moves a node.
    {"MoveTo", [](Course& c) { return c.Store.MoveTo(c.TakeLeaf(), c.AnotherParent()); }},
    {"DeleteNode", [](Course& c) { return c.Store.DeleteNode(c.TakeLeaf()); }},
    {"SetContent",
     [](Course& c) {
         return c.Store.SetContent(c.AnyLeaf(), {0, QStringLiteral("N4\\Content.htm"), 0, {}, {}});
     }},
    {"SetSize", [](Course& c) { return c.Store.SetSize(c.AnyLeaf(), c.Random() % 100'000); }},
};

double Quantile(std::vector<double>& values, double dPart) {
    std::sort(values.begin(), values.end());
    return values[static_cast<std::size_t>(dPart * static_cast<double>(values.size() - 1))];
}

bool Measure(Course& course, const Operation& operation, const QString& strShape, CBareLog& log, bool bFlat) {
    std::vector<double> ours, disk;
    qint64 nAllBytes = 0;
    const int nTimes = bFlat ? c_nTimesFlat : c_nTimes;
    for (int n = 0; n < nTimes; n += c_nInARow) {
        std::vector<qint64> bytes;
        for (int i = 0; i < c_nInARow; ++i) {
            const qint64 nBefore = BytesWritten();
            ours.push_back(MillisecondsOf([&] {
                if (!operation.run(course))
                    Fail("an operation was refused");
            }));
            bytes.push_back(BytesWritten() - nBefore);
        }
        for (const qint64 nBytes : bytes) {
            nAllBytes += nBytes;
            disk.push_back(log.Append(nBytes));
        }
    }
    const QByteArray name = strShape.toLatin1() + '_' + operation.pszName;
    const double dOurs = Quantile(ours, 0.5), dDisk = Quantile(disk, 0.5);
    std::printf("%s: ours %.2f ms (95 %%: %.2f), disk alone %.2f ms (95 %%: %.2f), %.0f KiB each\n",
                name.constData(), dOurs, Quantile(ours, 0.95), dDisk, Quantile(disk, 0.95),
                static_cast<double>(nAllBytes) / 1024 / nTimes);
    if (bFlat)
        std::printf("ratio %s: %.2f (no limit)\n", name.constData(), dOurs / dDisk);
    else
        std::printf("ratio %s: %.2f (limit: %.0f ms, took %.2f)\n", name.constData(), dOurs / dDisk,
                    c_dLimitMilliseconds, dOurs);
    std::fflush(stdout);
    return bFlat || dOurs <= c_dLimitMilliseconds;
}

bool MeasureCourse(const QString& strFolder, int nNodes, bool bFlat) {
    const QString strPath = strFolder + QStringLiteral("/tree.mdb");
    QFile::remove(strPath);
    if (!QFile::copy(QStringLiteral(VOREL_SEED_DATA "/DataBase/VorelCourse.mdb"), strPath))
        Fail("can't write to the folder");
    bool bKept = true;
    {
        CBookDatabase store(Platform::FromNative(strPath), 42);
        store.Open();
        Course course{store, {}, {}};
        Fill(course, nNodes, bFlat);
        // As a course that is opened to be worked on.
        store.Close();
        store.Open();
        CBareLog log(strFolder + QStringLiteral("/bare.log"));
        const QString strShape = QStringLiteral("tree_%1_%2").arg(bFlat ? u"flat" : u"book").arg(nNodes);
        for (const Operation& operation : c_operations)
            bKept = Measure(course, operation, strShape, log, bFlat) && bKept;
    }
    QFile::remove(strPath);
    return bKept;
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2)
        Fail("usage: bench_tree_ops FOLDER_ON_A_DISK [NODES...]");
    const QString strFolder = QString::fromLocal8Bit(argv[1]);
    CSysInfo::Reset(Platform::FromNative(strFolder) + QStringLiteral("\\Vorel"));
    std::vector<int> sizes;
    for (int n = 2; n < argc; ++n)
        sizes.push_back(std::max(1000, std::atoi(argv[n])));
    if (sizes.empty())
        sizes = {10'000, 100'000};
    bool bKept = true;
    for (const int nNodes : sizes) {
        for (const bool bFlat : {false, true})
            bKept = MeasureCourse(strFolder, nNodes, bFlat) && bKept;
    }
    return bKept ? 0 : 1;
}
