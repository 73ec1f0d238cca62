// What compile.sh compiles.
//   bench_make_texts FOLDER SEED_DATABASE PAGES [MATERIAL...]
// FOLDER/course: a course with PAGES pages in chapters of sections (20 by 25), each with its own text;
// FOLDER/program: its installation; FOLDER/hugo/content: the same tree with the same texts for Hugo. Each
// MATERIAL becomes a node of one more chapter of the course alone: a folder with an index.html an imported
// site, a file an external file.
#include "course/BookDatabase.h"
#include "course/TitleCipher.h"
#include "foundation/CodePage.h"
#include "foundation/SysInfo.h"
#include "platform/base/NativePath.h"

#include <SQLiteCpp/SQLiteCpp.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

using namespace Qt::StringLiterals;

namespace {

constexpr int c_nCourse = 77;
constexpr int c_nChapters = 20;
constexpr int c_nSections = 25;

void Write(const QString& strPath, const QByteArray& bytes) {
    QDir().mkpath(QFileInfo(strPath).path());
    QFile file(strPath);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        std::fprintf(stderr, "can't write %s\n", qPrintable(strPath));
        std::exit(2);
    }
}

QString TextOf(int nPage) {
    static const QStringList sentences{u"本节介绍课程的主要内容，并说明它与前后各章的联系。"_s,
                                       u"请先阅读教材中的有关部分，再完成后面的练习。"_s,
                                       u"线性表是最简单的数据结构，它的元素之间是一对一的关系。"_s,
                                       u"实验报告应当写明目的、步骤、结果和分析。"_s,
                                       u"讨论：在什么情况下这一方法不再适用？"_s};
    QString strText = u"<h2 id=\"a\">第 %1 页的要点</h2>\n"_s.arg(nPage);
    for (int i = 0; i < 4; ++i) {
        strText += u"<p>"_s;
        for (int n = 0; n < 5; ++n)
            strText += sentences[(nPage * 7 + i * 3 + n) % sentences.size()];
        strText += u"（%1）</p>\n"_s.arg(nPage * 4 + i);
    }
    return strText + u"<ul><li>要点一</li><li>要点二</li><li><b>要点三</b></li></ul>\n"_s;
}

class CTexts {
public:
    CTexts(const QString& strFolder, const QString& strSeed)
        : m_strFolder(strFolder), m_strResources(strFolder + "/course/Data/Courseware/NodeResource/"_L1),
          m_strStore(strFolder + "/course/Data/DataBase/VorelCourse.mdb"_L1) {
        Write(strFolder + "/program/AppInfo.ini"_L1,
              CodePage::Encode(u"[System]\r\nProvince=11\r\nSchoolName=示范大学\r\n"_s));
        CSysInfo::Reset(Platform::FromNative(strFolder + "/program/Vorel"_L1));
        Write(strFolder + "/course/course.vcp"_L1,
              CodePage::Encode(u"[Course]\r\nId=77\r\nName=数据结构\r\nTeacherName=李老师\r\n[Template]\r\n"
                               "Name=t\r\n"_s));
        QDir().mkpath(QFileInfo(m_strStore).path());
        QFile::copy(strSeed, m_strStore);
        QFile(m_strStore).setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    }

    void Make(int nPages, const QStringList& material) {
        const CTitleCipher cipher(c_nCourse);
        SQLite::Database store(m_strStore.toStdString(), SQLite::OPEN_READWRITE);
        SQLite::Transaction transaction(store);
        const auto add = [&](int nParent, int nIndex, const QString& strTitle, int nType,
                             const QString& strContent = {}) {
            SQLite::Statement insert(store, "INSERT INTO Book (Id, ParentId, [Index], Title, Type, Path) "
                                            "VALUES (?, ?, ?, ?, ?, ?)");
            const int nId = ++m_nLast;
            insert.bind(1, nId);
            insert.bind(2, nParent);
            insert.bind(3, nIndex);
            insert.bind(4, cipher.Stored(strTitle).toStdString());
            insert.bind(5, nType);
            insert.bind(6, strContent.isEmpty() ? std::string()
                                                : u"N%1\\%2"_s.arg(nId).arg(strContent).toStdString());
            insert.exec();
            return nId;
        };
        const int nSections = c_nChapters * c_nSections;
        int nPage = 0;
        for (int nChapter = 0; nChapter < c_nChapters; ++nChapter) {
            const QString strChapter = u"第%1章"_s.arg(nChapter + 1);
            const int nChapterId = add(c_nRootNodeId, nChapter + 1, strChapter, NodeType::c_nEmpty);
            const QString strChapterFolder = u"/c%1"_s.arg(nChapter + 1);
            WriteHugo(strChapterFolder + "/_index.html"_L1, strChapter, nChapter + 1, {});
            for (int nSection = 0; nSection < c_nSections; ++nSection) {
                const QString strSection = u"第%1节"_s.arg(nSection + 1);
                const int nSectionId = add(nChapterId, nSection + 1, strSection, NodeType::c_nEmpty);
                const QString strFolder = strChapterFolder + u"/s%1"_s.arg(nSection + 1);
                WriteHugo(strFolder + "/_index.html"_L1, strSection, nSection + 1, {});
                const int nEnd = nPages * (nChapter * c_nSections + nSection + 1) / nSections;
                for (int nRow = 1; nPage < nEnd; ++nPage, ++nRow) {
                    const QString strTitle = u"知识点%1 数据结构"_s.arg(nPage + 1);
                    const int nId =
                        add(nSectionId, nRow, strTitle, NodeType::c_nEditorPage, u"Content.htm"_s);
                    const QString strText = TextOf(nPage);
                    Write(m_strResources + u"N%1/Content.htm"_s.arg(nId), CodePage::Encode(strText));
                    WriteHugo(strFolder + u"/p%1.html"_s.arg(nPage + 1), strTitle, nRow, strText);
                }
            }
        }
        int nRow = 0;
        const int nChapterId =
            material.isEmpty() ? 0 : add(c_nRootNodeId, c_nChapters + 1, u"资料"_s, NodeType::c_nEmpty);
        for (const QString& strMaterial : material) {
            const QFileInfo source(strMaterial);
            const QString strName = source.fileName();
            const int nId =
                source.isDir()
                    ? add(nChapterId, ++nRow, strName, NodeType::c_nSite, strName + u"\\index.html"_s)
                    : add(nChapterId, ++nRow, strName, NodeType::c_nExternalFile, strName);
            Copy(strMaterial, m_strResources + u"N%1"_s.arg(nId));
        }
        transaction.commit();
    }

private:
    static void Copy(const QString& strSource, const QString& strFolder) {
        QDir().mkpath(strFolder);
        const std::filesystem::path source(strSource.toStdString());
        std::filesystem::copy(source, std::filesystem::path(strFolder.toStdString()) / source.filename(),
                              std::filesystem::copy_options::recursive);
    }

    void WriteHugo(const QString& strFile, const QString& strTitle, int nWeight, const QString& strText) {
        const QString strPage =
            u"---\ntitle: \"%1\"\nweight: %2\n---\n"_s.arg(strTitle).arg(nWeight) + strText;
        Write(m_strFolder + "/hugo/content"_L1 + strFile, strPage.toUtf8());
    }

    const QString m_strFolder;
    const QString m_strResources;
    const QString m_strStore;
    int m_nLast = c_nRootNodeId;
};

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 4) {
        std::fprintf(stderr, "usage: bench_make_texts FOLDER SEED_DATABASE PAGES [MATERIAL...]\n");
        return 2;
    }
    CTexts(arguments[1], arguments[2]).Make(arguments[3].toInt(), arguments.mid(4));
    return 0;
}
