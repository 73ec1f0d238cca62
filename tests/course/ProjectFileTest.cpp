#include "course/ProjectFile.h"
#include "foundation/CodePage.h"
#include "tests/support/Testing.h"

namespace {

class ProjectFileTest : public testing::Test {
protected:
    void Write(const QString& strText) const { Folder.Write(u"a.vcp"_s, CodePage::Encode(strText)); }
    /// The lines of a file, joined by "|".
    std::string Lines(const QString& strBelow) const {
        const QString strText = CodePage::Decode(Folder.Read(strBelow)).remove(u'\r');
        return strText.split(u'\n', Qt::SkipEmptyParts).join(u'|').toStdString();
    }
    CTempFolder Folder;
    const QString Path = Folder.Path(u"a.vcp"_s);
    const CCourseInfo Info{7, u"高等数学"_s, u"李老师"_s};
    CProjectFile File;
};

TEST_F(ProjectFileTest, NewFileHasEveryKeyInItsOrder) {
    EXPECT_EQ(ProjectFileFilter(), u"课程文件 (*.vcp)|*.vcp||"_s);
    EXPECT_FALSE(File.SetPath(u""_s) || File.SetCourseInfo({0, u"a"_s, u"b"_s}) ||
                 File.SetTemplateName(u""_s));
    ASSERT_TRUE(File.SetPath(Path) && File.Save()) << "validity is not asked";
    ASSERT_TRUE(File.SetCourseInfo(Info) && File.SetTemplateName(u"模板一"_s) && File.Save());
    EXPECT_EQ(Lines(u"a.vcp"_s), "[Course]|Id=7|Name=高等数学|TeacherName=李老师|[Template]|Name=模板一|"
                                 "[OndrelSynchro]|Server=|UserName=|[Compile]|LastDir=");
}

TEST_F(ProjectFileTest, OnlyAValidIdentityLoads) {
    ASSERT_TRUE(File.SetPath(Path));
    EXPECT_FALSE(File.Load());
    EXPECT_FALSE(Folder.Exists(u"a.vcp"_s));
    const std::pair<QString, bool> cases[] = {{u"[COURSE]\nid=1\nNAME=a\nteachername=b\n"_s, true},
                                              {u"[Course]\nId=0\nName=a\nTeacherName=b\n"_s, false},
                                              {u"[Course]\nId=-3\nName=a\nTeacherName=b\n"_s, false},
                                              {u"[Course]\nId=1\nName=\nTeacherName=b\n"_s, false},
                                              {u"[Course]\nId=1\nName=a\nTeacherName=\n"_s, false},
                                              {u""_s, false}};
    for (const auto& [strText, bValid] : cases) {
        Write(strText);
        EXPECT_EQ(File.Load(), bValid) << strText;
    }
}

TEST_F(ProjectFileTest, ChangingOneValueKeepsTheCompanions) {
    const QString strText =
        u"; 说明\r\n[Course]\r\nId=1\r\nName=a\r\nTeacherName=b\r\nExtra=1\r\n[Template]\r\n"
        "Name=old\r\n[OndrelSynchro]\r\nServer=10.0.0.1\r\nUserName=u\r\n[Compile]\r\n"
        "LastDir=Z:\\网站\\%1\r\n[Own]\r\nKey=7\r\n"_s.arg(QString(5000, u'd'));
    Write(strText);
    ASSERT_TRUE(File.SetPath(Path) && File.Load() && File.SetTemplateName(u"新模板"_s) && File.Save());
    EXPECT_EQ(CodePage::Decode(Folder.Read(u"a.vcp"_s)), QString(strText).replace(u"old"_s, u"新模板"_s));
}

TEST_F(ProjectFileTest, RecorderProjectIsMadeAfresh) {
    Folder.Write(u"Template.prj"_s, "[OutputStream]\r\nFileName=old\r\n");
    ASSERT_TRUE(WriteRecorderProject(Folder.Path(), Info));
    EXPECT_EQ(Lines(u"Template.prj"_s), "[Project]|Name=Template|[Course]|Name=高等数学|TeacherName=李老师");
    EXPECT_FALSE(WriteRecorderProject(Folder.Path(u"none"_s), Info));
}

} // namespace
