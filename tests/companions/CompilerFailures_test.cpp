#include "companions/compiler/SiteCompiler.h"
#include "foundation/Exceptions.h"
#include "tests/companions/SampleCourse.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/// What the compiler says when it fails; empty when it doesn't.
QString MessageOf(const CSampleCourse& course) {
    try {
        CompileSite({course.ProjectPath(), ESiteForm::Site});
    } catch (const Torvane::CRunException& failure) {
        return failure.GetMessage();
    }
    return QString();
}

} // namespace

TEST(CompilerFailures, SaysWhatIsWrongWithTheCourse) {
    const QString strProject = CSampleCourse::Below(u"课程.vcp"_s);
    const QString strStore = CSampleCourse::Below(u"Data\\DataBase\\VorelCourse.mdb"_s);
    const struct {
        const char* szWhat;
        std::function<void(const CSampleCourse&)> harm;
        QString strMessage;
    } rows[] = {
        {"no project", [&](const auto& course) { QFile::remove(course.Folder().Native(strProject)); },
         u"找不到课程文件"_s},
        {"empty project", [&](const auto& course) { course.Folder().Write(strProject, ""); },
         u"读取课程文件"_s},
        {"no store", [&](const auto& course) { QFile::remove(course.Folder().Native(strStore)); },
         u"找不到课程数据库"_s},
        {"garbage", [&](const auto& course) { course.Folder().Write(strStore, QByteArray(9000, 'x')); },
         u"数据库已损坏"_s},
        {"cut short",
         [&](const auto& course) {
             course.Folder().Write(strStore, course.Folder().Read(strStore).left(5000));
         },
         u"数据库已损坏"_s},
        {"another database", [](const auto& course) { course.Damage("DROP TABLE Book"); }, u"数据库已损坏"_s},
        {"no root", [](const auto& course) { course.Damage("DELETE FROM Book WHERE Id = 3"); },
         u"没有课程的根栏目"_s},
    };
    for (const auto& row : rows) {
        const CSampleCourse course;
        row.harm(course);
        EXPECT_TRUE(MessageOf(course).contains(row.strMessage))
            << row.szWhat << ": " << MessageOf(course).toStdString();
        EXPECT_FALSE(course.Folder().Exists(CSampleCourse::Site(u"index.html"_s))) << row.szWhat;
    }
}

TEST(CompilerFailures, SaysThatTheStoreIsLocked) {
    const CSampleCourse course;
    SQLite::Database other(
        course.Folder().Native(CSampleCourse::Below(u"Data\\DataBase\\VorelCourse.mdb"_s)).toStdString(),
        SQLite::OPEN_READWRITE);
    other.exec("BEGIN EXCLUSIVE");
    EXPECT_TRUE(MessageOf(course).contains(u"正被其他程序使用"_s)) << MessageOf(course).toStdString();
}

TEST(CompilerFailures, ReadsItsArgument) {
    const struct {
        QString strArgument;
        QString strPath;
        ESiteForm form;
    } rows[] = {
        {u"/home/li/课程 一/a.vcp"_s, u"Z:\\home\\li\\课程 一\\a.vcp"_s, ESiteForm::Site},
        {u"/home/li/a.vcp|H"_s, u"Z:\\home\\li\\a.vcp"_s, ESiteForm::Html},
        {u"/home/a|b/a.vcp"_s, u"Z:\\home\\a|b\\a.vcp"_s, ESiteForm::Site},
        {u"Z:\\home\\li\\a.vcp|S"_s, u"Z:\\home\\li\\a.vcp"_s, ESiteForm::Classroom},
    };
    for (const auto& row : rows) {
        const CompileRequest request = ReadArgument(row.strArgument);
        EXPECT_EQ(request.ProjectPath.toStdString(), row.strPath.toStdString());
        EXPECT_EQ(request.Form, row.form);
    }
    for (const QString& strBad : {u"a.vcp|X"_s, u"a.vcp|"_s, u"|H"_s, QString()})
        EXPECT_THROW(ReadArgument(strBad), Torvane::CRunException) << strBad.toStdString();
}
