// A compile at every degree of fullness of the disk, from none left to enough: each of its steps fails once.
#include "companions/VRM/FilmRun.h"
#include "companions/compiler/Lecture.h"
#include "foundation/Exceptions.h"
#include "tests/companions/SampleCourse.h"
#include "tests/support/SmallDisk.h"

namespace {

constexpr int c_nDiskKilobytes = 2048;
constexpr qint64 c_nBlock = 4096;

using Site = QMap<QString, QByteArray>;

/// What visitors see of it.
Site Read(const QString& strFolder) {
    Site site;
    QDirIterator walk(strFolder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        QFile file(walk.next());
        if (!walk.filePath().contains("/.vorel-"_L1) && file.open(QIODevice::ReadOnly))
            site.insert(walk.filePath().mid(strFolder.size()), file.readAll());
    }
    return site;
}

/// The pages hold a text, and a file beside each is named after it.
void ChangePages(const CSampleCourse& course, const QList<qint32>& pages, const QString& strText) {
    for (const qint32 nPage : pages) {
        const QString strRes = CSampleCourse::Resource(u"N%1\\res"_s.arg(nPage));
        QDir(course.Folder.Native(strRes)).removeRecursively();
        course.Folder.Write(strRes + u'\\' + strText.left(1) + u".bin"_s, QByteArray(9000, 'r'));
        course.WriteResource(nPage, u"Content.htm"_s, CodePage::Encode(u"<p>%1</p>"_s.arg(strText)));
    }
}

} // namespace

TEST(CompilerDisk, AFullDiskCostsNothingOfTheSite) {
    const CSmallDisk disk(c_nDiskKilobytes);
    if (!disk.Failure().empty())
        GTEST_SKIP() << disk.Failure();
    CSampleCourse course;
    QList<qint32> pages;
    for (int i = 0; i < 6; ++i)
        pages.append(course.AddPage(c_nRootNodeId, u"第%1讲"_s.arg(i + 1), u"<p>a</p>"_s));
    const QString strSmall = disk.Path() + u"/网站"_s;
    const auto compileTo = [&](const QString& strFolder) {
        CompileSite({course.Folder.Path(course.strProject), ESiteForm::Site, strFolder});
        return Read(strFolder);
    };
    const QString strOld = u"旧"_s + QString(3000, u'文');
    const QString strNew = u"新"_s + QString(5000, u'字');
    ChangePages(course, pages, strNew);
    const Site after = compileTo(strSmall);
    ChangePages(course, pages, strOld);
    const Site before = compileTo(strSmall);
    int nFailed = 0;
    for (qint64 nFree = 0;; nFree += c_nBlock) {
        ChangePages(course, pages, strNew);
        disk.LeaveFree(nFree);
        std::string strMessage;
        try {
            compileTo(strSmall);
        } catch (const Torvane::CRunException& failure) {
            strMessage = failure.GetMessage().toStdString();
        }
        disk.MakeRoom();
        const Site left = Read(strSmall);
        for (auto it = left.begin(); it != left.end(); ++it)
            EXPECT_TRUE(*it == before.value(it.key()) || *it == after.value(it.key())) << it.key();
        for (const QString& strName : before.keys())
            EXPECT_TRUE(left.contains(strName) || !after.contains(strName)) << strName;
        if (strMessage.empty()) {
            EXPECT_EQ(left, after);
            break;
        }
        ++nFailed;
        EXPECT_NE(strMessage.find("磁盘空间不足"), std::string::npos) << strMessage;
        EXPECT_NE(strMessage.find(strSmall.toStdString()), std::string::npos) << strMessage;
        EXPECT_EQ(compileTo(strSmall), after) << "with room again it is made whole, with nothing left over";
        // And back, for the next degree.
        ChangePages(course, pages, strOld);
        EXPECT_EQ(compileTo(strSmall), before);
    }
    EXPECT_GT(nFailed, 10);

    const QString strFilm = strSmall + u"/film.mp4"_s;
    for (const qint64 nFree : {qint64{0}, c_nBlock, 2 * c_nBlock, qint64{256} << 10}) {
        if (FilmProgram().isEmpty())
            break;
        disk.LeaveFree(nFree);
        const bool bEnough = nFree > 2 * c_nBlock;
        EXPECT_EQ(MakePlayable(FilmProgram(), QStringLiteral(VOREL_FILM), strFilm, [] { return true; }),
                  bEnough ? EFilmEnd::Made : EFilmEnd::DiskFull)
            << nFree;
        EXPECT_EQ(QFile::exists(strFilm), bEnough) << "half a film is none";
        QFile::remove(strFilm);
        const QString strPart = QStringLiteral(VOREL_FILM);
        EXPECT_EQ(JoinFilms({strPart, strPart}, {}, strFilm, [] { return true; }), bEnough) << nFree;
        EXPECT_EQ(QFile::exists(strFilm), bEnough) << "the parts would be taken for superfluous";
        disk.MakeRoom();
    }
}
