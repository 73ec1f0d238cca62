// What open.sh opens.
//   bench_make_courses course PROGRAM_FOLDER ID PROJECT_FILE SHAPE NODES
//     a whole course, as the program leaves it when it closes it: made by the house's own creation for the
//     course that the school's server knows by this id, with NODES nodes below the root, a folder for each,
//     and a page in every second one that has no children
//   bench_make_courses document FILE SHAPE NODES
//     a document of CherryTree with the same tree, the same titles, and a short text for each page
//   bench_make_courses password PROGRAM_FOLDER ID PASSWORD
//     proves the course's password to the server, as the person does who is asked for it
// SHAPE is "book" (20 chapters of 25 sections of pages, and what is left below the pages) or "flat".
#include "bench/Nobody.h"
#include "content/BookNode.h"
#include "course/TemplateStore.h"
#include "course/TitleCipher.h"
#include "foundation/Exceptions.h"
#include "foundation/SysInfo.h"
#include "platform/base/NativePath.h"
#include "server/CourseServer.h"

#include <SQLiteCpp/SQLiteCpp.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdio>
#include <stdexcept>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

/// A node of the tree, behind its parent. Rows count from 1.
struct Leaf {
    int nParent; // -1 for the root
    int nRow;
    int nDepth;
    bool bHasChildren;
    QString strTitle;
};

constexpr int c_nPagesInSection = 19;
constexpr int c_nPagesInPage = 10;

int MostChildren(const QString& strShape, int nDepth, int nNodes) {
    if (strShape == "flat"_L1)
        return nDepth == 0 ? nNodes : 0;
    constexpr int c_most[] = {20, 25, c_nPagesInSection};
    return nDepth < 3 ? c_most[nDepth] : c_nPagesInPage;
}

QString Title(int nDepth, int nRow, int nNode) {
    static const QStringList subjects{
        u"绪论与发展概况"_s, u"基本概念和术语"_s, u"线性结构的存储"_s, u"典型例题讲解"_s, u"算法的效率分析"_s,
        u"课堂讨论与思考"_s, u"实验指导"_s,       u"习题与解答"_s,     u"拓展阅读材料"_s, u"本节小结"_s};
    static const QStringList kinds{u"第%1章 "_s, u"第%1节 "_s, u"知识点%1 "_s, u"资料%1 "_s};
    return kinds[std::min<int>(nDepth, 3)].arg(nRow) + subjects[nNode % subjects.size()];
}

/// Level by level, each parent's children together.
std::vector<Leaf> MakeTree(const QString& strShape, int nNodes) {
    std::vector<Leaf> tree;
    tree.reserve(static_cast<std::size_t>(nNodes));
    for (int nParent = -1; std::ssize(tree) < nNodes; ++nParent) {
        const int nDepth = nParent < 0 ? 0 : tree[static_cast<std::size_t>(nParent)].nDepth + 1;
        const int nMost = MostChildren(strShape, nDepth, nNodes);
        for (int nRow = 1; nRow <= nMost && std::ssize(tree) < nNodes; ++nRow) {
            const int nNode = static_cast<int>(tree.size());
            tree.push_back({nParent, nRow, nDepth, false, Title(nDepth, nRow, nNode)});
            if (nParent >= 0)
                tree[static_cast<std::size_t>(nParent)].bHasChildren = true;
        }
    }
    return tree;
}

bool HasPage(const std::vector<Leaf>& tree, std::size_t nNode) {
    return !tree[nNode].bHasChildren && nNode % 2 == 0;
}

CCourseServer& Server(CCourseServer& server) {
    server.SetBaseUrl(CSysInfo::Instance().GetServerURL());
    return server;
}

CCourseInfo FindCourse(CCourseServer& server, int nId) {
    const CSysInfo& settings = CSysInfo::Instance();
    for (const CCourseInfo& info : server.GetCourseList(settings.GetProvince(), settings.GetSchoolName())) {
        if (info.Id == nId)
            return info;
    }
    throw std::runtime_error("the server knows no such course");
}

/// The rows as the store writes them, but without its count of the siblings before each: 100,000 in one
/// folder would take minutes.
void WriteRows(CCourse& course, const std::vector<Leaf>& tree, const QByteArray& page) {
    const CTitleCipher cipher(course.GetInfo().Id);
    SQLite::Database database(Platform::ToNative(course.GetPaths().GetDatabasePath()).toStdString(),
                              SQLite::OPEN_READWRITE);
    SQLite::Transaction transaction(database);
    SQLite::Statement insert(database,
                             "INSERT INTO Book (Id, ParentId, [Index], Title, Type, Path, [Size], "
                             "TimeLastModified) VALUES (?, ?, ?, ?, ?, ?, ?, '2026-01-05 08:00:00')");
    for (std::size_t nNode = 0; nNode < tree.size(); ++nNode) {
        const Leaf& leaf = tree[nNode];
        const int nId = c_nRootNodeId + 1 + static_cast<int>(nNode);
        const bool bPage = HasPage(tree, nNode);
        insert.bind(1, nId);
        insert.bind(2, leaf.nParent < 0 ? c_nRootNodeId : c_nRootNodeId + 1 + leaf.nParent);
        insert.bind(3, leaf.nRow);
        insert.bind(4, cipher.Stored(leaf.strTitle).toStdString());
        insert.bind(5, bPage ? NodeType::c_nEditorPage : NodeType::c_nEmpty);
        insert.bind(6, bPage ? u"N%1\\Content.htm"_s.arg(nId).toStdString() : std::string());
        insert.bind(7, bPage ? static_cast<double>(page.size()) : 0.0);
        insert.exec();
        insert.reset();
    }
    transaction.commit();
}

/// Straight on the file system: the house's own calls look for each new name in other letter cases first,
/// which takes minutes where 100,000 stand.
void WriteFolders(const CCourse& course, const std::vector<Leaf>& tree, const QByteArray& page) {
    const QString strResources = Platform::ToNative(course.GetPaths().GetNodeResourceFolder(false));
    for (std::size_t nNode = 0; nNode < tree.size(); ++nNode) {
        const QString strFolder = strResources + u"/N%1"_s.arg(c_nRootNodeId + 1 + nNode);
        QDir().mkdir(strFolder);
        if (!HasPage(tree, nNode))
            continue;
        QDir().mkdir(strFolder + "/res"_L1);
        QFile file(strFolder + "/Content.htm"_L1);
        if (!file.open(QIODevice::WriteOnly) || file.write(page) != page.size())
            throw std::runtime_error("can't write to the place of the courses");
    }
}

void MakeCourse(int nId, const QString& strProject, const std::vector<Leaf>& tree) {
    CNobody people;
    CNoSession session;
    CNodeMakerFactory nodes;
    const CourseServices services{people, session, session, nodes};
    QStringList templates;
    CTemplateStore(CSysInfo::Instance().GetTemplatesFolder(false)).ListTemplates(templates);
    CCourseServer server;
    const QFileInfo file(strProject);
    CreateRecord record;
    record.Info = FindCourse(Server(server), nId);
    record.FileTitle = file.completeBaseName();
    record.Folder = Platform::FromNative(file.absolutePath());
    record.TemplateName = templates.value(0);
    const QString strPath = Platform::FromNative(file.absoluteFilePath());
    CCourse(strPath, services).Create(record);

    const QByteArray page("<p>本节介绍课程的主要内容。</p>\r\n");
    CCourse course(strPath, services);
    course.Open();
    WriteRows(course, tree, page);
    WriteFolders(course, tree, page);
    course.Close();
}

void MakeDocument(const QString& strFile, const std::vector<Leaf>& tree) {
    SQLite::Database database(strFile.toStdString(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    // The tables in its own words.
    database.exec(
        "CREATE TABLE node (node_id INTEGER UNIQUE,name TEXT,txt TEXT,syntax TEXT,tags TEXT,is_ro INTEGER,"
        "is_richtxt INTEGER,has_codebox INTEGER,has_table INTEGER,has_image INTEGER,level INTEGER,"
        "ts_creation INTEGER,ts_lastsave INTEGER);"
        "CREATE TABLE codebox (node_id INTEGER,offset INTEGER,justification TEXT,txt TEXT,syntax TEXT,"
        "width INTEGER,height INTEGER,is_width_pix INTEGER,do_highl_bra INTEGER,do_show_linenum INTEGER);"
        "CREATE TABLE grid (node_id INTEGER,offset INTEGER,justification TEXT,txt TEXT,col_min INTEGER,"
        "col_max INTEGER);"
        "CREATE TABLE image (node_id INTEGER,offset INTEGER,justification TEXT,anchor TEXT,png BLOB,"
        "filename TEXT,link TEXT,time INTEGER);"
        "CREATE TABLE children (node_id INTEGER UNIQUE,father_id INTEGER,sequence INTEGER);"
        "CREATE TABLE bookmark (node_id INTEGER UNIQUE,sequence INTEGER)");
    SQLite::Transaction transaction(database);
    SQLite::Statement node(database,
                           "INSERT INTO node VALUES "
                           "(?, ?, ?, 'custom-colors', '', 0, 1, 0, 0, 0, ?, 1767600000, 1767600000)");
    SQLite::Statement place(database, "INSERT INTO children VALUES (?, ?, ?)");
    const std::string head = R"(<?xml version="1.0" encoding="UTF-8"?>)"
                             "\n<node>";
    for (std::size_t nNode = 0; nNode < tree.size(); ++nNode) {
        const Leaf& leaf = tree[nNode];
        const int nId = static_cast<int>(nNode) + 1;
        node.bind(1, nId);
        node.bind(2, leaf.strTitle.toStdString());
        node.bind(3, head + (HasPage(tree, nNode) ? "<rich_text>本节介绍课程的主要内容。</rich_text></node>"
                                                  : "</node>"));
        node.bind(4, leaf.nDepth);
        node.exec();
        node.reset();
        place.bind(1, nId);
        place.bind(2, leaf.nParent + 1);
        place.bind(3, leaf.nRow);
        place.exec();
        place.reset();
    }
    transaction.commit();
}

void ProvePassword(int nId, const QString& strPassword) {
    CCourseServer server;
    CCourseInfo info = FindCourse(Server(server), nId);
    qint32 nRights = 0;
    if (!server.CheckPassword(info, strPassword, nRights))
        throw std::runtime_error("the password is wrong");
}

int Run(const QStringList& arguments) {
    const QString strWhat = arguments.value(1);
    if (strWhat == "document"_L1 && arguments.size() == 5) {
        MakeDocument(arguments[2], MakeTree(arguments[3], arguments[4].toInt()));
        return 0;
    }
    CSysInfo::Reset(Platform::FromNative(QFileInfo(arguments.value(2)).absoluteFilePath()) + "\\Vorel"_L1);
    if (strWhat == "course"_L1 && arguments.size() == 7)
        MakeCourse(arguments[3].toInt(), arguments[4], MakeTree(arguments[5], arguments[6].toInt()));
    else if (strWhat == "password"_L1 && arguments.size() == 5)
        ProvePassword(arguments[3].toInt(), arguments[4]);
    else
        throw std::runtime_error("usage: see the head of bench/make_courses.cpp");
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    try {
        return Run(application.arguments());
    } catch (const Torvane::CException& failure) {
        std::fprintf(stderr, "bench_make_courses: %s\n", qPrintable(failure.GetMessage()));
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "bench_make_courses: %s\n", failure.what());
    }
    return 1;
}
