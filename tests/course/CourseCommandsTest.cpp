#include "course/Companions.h"
#include "course/SetTemplate.h"
#include "tests/support/CourseFakes.h"

namespace {

class CourseCommandsTest : public testing::Test {
protected:
    void SetUp() override {
        World.Write(World.Template(u"背景色.txt"_s, u"模板二"_s), u"#0000ff"_s);
        World.Write(World.Template(u"Skin\\images\\top.gif"_s, u"模板二"_s), u"new skin"_s);
        World.MakeCourse();
        for (const QString& str : {u"images\\gone.gif"_s, u"images\\deep\\.hidden"_s, u"fonts\\a.ttf"_s})
            World.Write(Skin + str, u"old skin"_s);
        Course.emplace(World.ProjectPath(), World.Services);
        ASSERT_TRUE(Course->Open());
        World.Templates.Choice = u"模板二"_s;
    }
    void SetTemplate(const QString& strAnswer) {
        if (!strAnswer.isEmpty())
            World.People.Expect(strAnswer);
        RunSetTemplate(*Course, World.People, World.Templates, [this](quint32 nColor) { Color = nColor; });
    }
    CCourseWorld World;
    const QString Skin = World.InCourse(u"Data\\Courseware\\NodeResource\\"_s);
    std::optional<CCourse> Course;
    quint32 Color = 1;
};

TEST_F(CourseCommandsTest, SettingATemplateReplacesNameColourAndSkin) {
    World.Write(World.Template(u"Skin\\n4\\Content.htm"_s, u"模板二"_s), u"x"_s);
    World.Write(Skin + u"N4\\Content.htm"_s, u"the teacher's page"_s);
    SetTemplate(u"模板修改成功！"_s);
    EXPECT_EQ(Course->GetTemplateName(), u"模板二"_s);
    EXPECT_EQ(Color, 0xFF0000U);
    EXPECT_EQ(World.Folder.Read(Skin + u"images\\top.gif"_s), "new skin")
        << "though the old one stays in part";
    EXPECT_FALSE(World.Folder.Exists(Skin + u"images\\gone.gif"_s));
    EXPECT_TRUE(World.Folder.Exists(Skin + u"fonts\\a.ttf"_s)) << "the new skin has no such folder";
    EXPECT_EQ(World.Folder.Read(Skin + u"N4\\Content.htm"_s), "the teacher's page");
}

TEST_F(CourseCommandsTest, AnotherTreeIsRefusedAndAFailedCopyTold) {
    World.Write(World.Template(u"InitialNodes.txt"_s, u"模板二"_s), u"a,-1,-1,,1"_s);
    SetTemplate(u"源模板和目标模板栏目不同，如果您要选择该模板，请使用如下方法:\r\n1. "
                "选择教师名节点，右键，导出。\r\n2.新建课程，选择新的模板\r\n3.选择教师名节点，导入。"_s);
    EXPECT_EQ(World.People.Boxes.back().Icon, CScriptedPeople::BoxIcon::Warning);
    World.Templates.Choice.reset();
    SetTemplate(QString());
    World.Templates.Choice = u"模板一"_s;
    SetTemplate(QString());
    EXPECT_EQ(Course->GetTemplateName(), u"模板一"_s);
    EXPECT_EQ(Color, 1U);

    World.Write(World.Template(u"Skin\\blocked\\a.gif"_s, u"模板三"_s), u"x"_s);
    World.Write(Skin + u"blocked"_s, u"a file in the way"_s);
    World.Templates.Choice = u"模板三"_s;
    SetTemplate(u"拷贝Skin相关文件夹失败！"_s);
    EXPECT_EQ(Course->GetTemplateName(), u"模板三"_s) << "the change of name stands";
}

TEST_F(CourseCommandsTest, CompanionFindsAClosedDatabaseAndItsCommandLine) {
    const QString strDatabase = World.Folder.Native(World.InCourse(u"Data\\DataBase"_s));
    const auto run = [&](const QString& strLine) {
        Companions::Run(strLine, *Course->GetDatabase(), World.People);
    };
    Course->GetDatabase()->AddNode(3, u"a"_s);
    run(u"Z:\\bin\\sh -c \"ls '%1' > '%2'\""_s.arg(strDatabase, World.Folder.Native(u"note"_s)));
    EXPECT_EQ(World.Folder.Read(u"note"_s), "VorelCourse.mdb\n") << "one file, no log beside it";
    run(u"Z:\\none\\VorelCompiler.exe \"x\""_s);
    // A program folder with a blank: its path is not quoted, and that it does not start is told to nobody.
    World.Folder.WriteProgram(u"a tool"_s, "#!/bin/sh\ntouch \"$0.ran\"\n");
    run(World.Folder.Path(u"a tool.exe"_s) + u" \"x\""_s);
    EXPECT_FALSE(World.Folder.Exists(u"a tool.ran"_s));
    EXPECT_EQ(Course->GetDatabase()->AddNode(3, u"b"_s), 5);
    EXPECT_EQ(World.People.nInputStops, 1);
    using Companions::ECompileForm;
    const std::pair<ECompileForm, QString> forms[] = {
        {ECompileForm::Site, u""_s}, {ECompileForm::Html, u"|H"_s}, {ECompileForm::Classroom, u"|S"_s}};
    for (const auto& [form, strMark] : forms)
        EXPECT_EQ(Companions::CompilerCommandLine(u"Z:\\my p"_s, u"Z:\\课 一.vcp"_s, form),
                  u"Z:\\my p\\VorelCompiler.exe \"Z:\\课 一.vcp%1\""_s.arg(strMark));
    EXPECT_EQ(Companions::DocExportCommandLine(u"Z:\\p"_s, u"Z:\\课 一.vcp"_s),
              u"Z:\\p\\VorelDocExport.exe \"Z:\\课 一.vcp\""_s);
    // A name may hold a quote here: as the arguments are taken apart it stays whole.
    EXPECT_EQ(Companions::DocExportCommandLine(u"Z:\\p"_s, u"Z:\\a\\\"b\" c.vcp"_s),
              u"Z:\\p\\VorelDocExport.exe \"Z:\\a\\\\\\\"b\\\" c.vcp\""_s);
}

} // namespace
