#include "course/ProjectFile.h"
#include "course/Companions.h"
#include "foundation/CodePage.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

const CCourseInfo c_info{7, u"高等数学"_s, u"李老师"_s};

class ProjectFileTest : public testing::Test {
protected:
    QString Path() const { return Folder.Path(u"a.vcp"_s); }
    void Write(const QString& strText) const { Folder.Write(u"a.vcp"_s, CodePage::Encode(strText)); }
    QString Text() const { return CodePage::Decode(Folder.Read(u"a.vcp"_s)); }
    CTempFolder Folder;
};

TEST_F(ProjectFileTest, NewFileHasEveryKeyInItsOrder) {
    CProjectFile file;
    ASSERT_TRUE(file.SetPath(Path()) && file.SetCourseInfo(c_info) && file.SetTemplateName(u"模板一"_s));
    ASSERT_TRUE(file.Save());
    QString strText = Text();
    strText.remove(u'\r');
    QStringList lines = strText.split(u'\n', Qt::SkipEmptyParts);
    EXPECT_EQ(lines.join(u'|').toStdString(),
              "[Course]|Id=7|Name=高等数学|TeacherName=李老师|[Template]|Name=模板一|[OndrelSynchro]|Server=|"
              "UserName=|[Compile]|LastDir=");
    CProjectFile fresh;
    ASSERT_TRUE(fresh.SetPath(Folder.Path(u"b.vcp"_s)) && fresh.Save()) << "validity is not asked";
    EXPECT_TRUE(Folder.Read(u"b.vcp"_s).contains("Id=0"));
}

TEST_F(ProjectFileTest, OnlyAValidIdentityLoads) {
    const struct {
        QString strText;
        bool bValid;
    } cases[] = {
        {u"[COURSE]\nid=1\nNAME=a\nteachername=b\n"_s, true},
        {u"[Course]\nId=0\nName=a\nTeacherName=b\n"_s, false},
        {u"[Course]\nId=-3\nName=a\nTeacherName=b\n"_s, false},
        {u"[Course]\nId=1\nName=\nTeacherName=b\n"_s, false},
        {u"[Course]\nId=1\nName=a\nTeacherName=\n"_s, false},
        {u"[Course]\nName=a\nTeacherName=b\n"_s, false},
        {u""_s, false},
    };
    for (const auto& one : cases) {
        Write(one.strText);
        CProjectFile file;
        ASSERT_TRUE(file.SetPath(Path()));
        EXPECT_EQ(file.Load(), one.bValid) << one.strText.toStdString();
    }
    CProjectFile missing;
    EXPECT_FALSE(missing.SetPath(u""_s));
    ASSERT_TRUE(missing.SetPath(Folder.Path(u"none.vcp"_s)));
    EXPECT_FALSE(missing.Load());
    EXPECT_FALSE(Folder.Exists(u"none.vcp"_s));
}

TEST_F(ProjectFileTest, ChangingOneValueKeepsTheCompanions) {
    const QString strLastDir = u"Z:\\网站\\"_s + QString(5000, u'd');
    Write(u"; 说明\r\n[Course]\r\nId=1\r\nName=a\r\nTeacherName=b\r\nExtra=1\r\n[Template]\r\nName=old\r\n"
          u"[OndrelSynchro]\r\nServer=10.0.0.1\r\nUserName=u\r\n[Compile]\r\nLastDir="_s +
          strLastDir + u"\r\n[Own]\r\nKey=7\r\n"_s);
    CProjectFile file;
    ASSERT_TRUE(file.SetPath(Path()) && file.Load() && file.SetTemplateName(u"新模板"_s) && file.Save());
    EXPECT_EQ(file.GetLastDir(), strLastDir);
    const QString strText = Text();
    for (const QString& strKept :
         {u"; 说明"_s, u"Extra=1"_s, u"Server=10.0.0.1"_s, u"UserName=u"_s,
          QString(u"LastDir="_s + strLastDir), u"[Own]"_s, u"Key=7"_s, u"Name=新模板"_s})
        EXPECT_TRUE(strText.contains(strKept)) << strKept.left(40).toStdString();
    EXPECT_FALSE(strText.contains(u"old"_s));
}

TEST_F(ProjectFileTest, ValuesForgeNoKeys) {
    const CCourseInfo forged{7, u"a\r\n[Compile]\r\nLastDir=/etc"_s, u"b\nId=99\x01"_s};
    CProjectFile file;
    ASSERT_TRUE(file.SetPath(Path()) && file.SetCourseInfo(forged) && file.SetTemplateName(u"t"_s));
    file.Save();
    CProjectFile read;
    ASSERT_TRUE(read.SetPath(Path()) && read.Load());
    EXPECT_EQ(read.GetCourseInfo().Id, 7);
    EXPECT_EQ(read.GetLastDir(), QString());
}

TEST_F(ProjectFileTest, RecorderProjectIsMadeAfresh) {
    Folder.Write(u"Template.prj"_s, "[OutputStream]\r\nFileName=old\r\n");
    ASSERT_TRUE(WriteRecorderProject(Folder.Path(), c_info));
    QByteArray text = Folder.Read(u"Template.prj"_s);
    EXPECT_EQ(CodePage::Decode(text.replace("\r\n", "|").replace("||", "|")).toStdString(),
              "[Project]|Name=Template|[Course]|Name=高等数学|TeacherName=李老师|");
    EXPECT_FALSE(WriteRecorderProject(Folder.Path(u"none"_s), c_info));
}

TEST(CompanionsTest, CommandLinesQuoteTheProjectAlone) {
    const QString strProject = u"Z:\\课程\\数学 一.vcp"_s;
    using Companions::ECompileForm;
    const std::pair<ECompileForm, QString> cases[] = {
        {ECompileForm::Site, u""_s}, {ECompileForm::Html, u"|H"_s}, {ECompileForm::Classroom, u"|S"_s}};
    for (const auto& [form, strMark] : cases)
        EXPECT_EQ(Companions::CompilerCommandLine(u"Z:\\my p"_s, strProject, form),
                  u"Z:\\my p\\VorelCompiler.exe \"Z:\\课程\\数学 一.vcp%1\""_s.arg(strMark));
    EXPECT_EQ(Companions::DocExportCommandLine(u"Z:\\p"_s, strProject),
              u"Z:\\p\\VorelDocExport.exe \"Z:\\课程\\数学 一.vcp\""_s);
    EXPECT_EQ(ProjectFileFilter(), u"课程文件 (*.vcp)|*.vcp||"_s);
}

} // namespace
