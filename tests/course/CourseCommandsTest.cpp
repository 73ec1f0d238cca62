#include "course/Companions.h"
#include "course/CustomTitles.h"
#include "course/SetTemplate.h"
#include "foundation/IniFile.h"
#include "tests/support/CourseFakes.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

class SetTemplateTest : public testing::Test {
protected:
    void SetUp() override {
        World.Write(World.Template(u"背景色.txt"_s, u"模板二"_s), u"#0000ff"_s);
        World.Write(World.Template(u"Skin\\images\\top.gif"_s, u"模板二"_s), u"new skin"_s);
        World.MakeCourse();
        World.Write(Skin + u"images\\old only.gif"_s, u"old skin"_s);
        World.Write(Skin + u"fonts\\a.ttf"_s, u"old skin"_s);
        Course.emplace(World.ProjectPath(), World.Services);
        ASSERT_TRUE(Course->Open());
        World.Templates.Choice = u"模板二"_s;
    }
    void Run() {
        RunSetTemplate(*Course, World.People, World.Templates, [this](quint32 nColor) { Color = nColor; });
    }
    CCourseWorld World;
    const QString Skin = World.InCourse(u"Data\\Courseware\\NodeResource\\"_s);
    std::optional<CCourse> Course;
    quint32 Color = 1;
};

TEST_F(SetTemplateTest, ReplacesNameColourAndSkin) {
    World.People.Expect(u"模板修改成功！"_s);
    Run();
    EXPECT_EQ(Course->GetTemplateName(), u"模板二"_s);
    EXPECT_EQ(Color, 0xFF0000U);
    EXPECT_EQ(World.Folder.Read(Skin + u"images\\top.gif"_s), "new skin");
    EXPECT_FALSE(World.Folder.Exists(Skin + u"images\\old only.gif"_s));
    EXPECT_TRUE(World.Folder.Exists(Skin + u"fonts\\a.ttf"_s)) << "the new skin has no such folder";
}

TEST_F(SetTemplateTest, CancelAndTheSameNameEndInSilence) {
    World.Templates.Choice.reset();
    Run();
    World.Templates.Choice = u"模板一"_s;
    Run();
    EXPECT_EQ(Color, 1U);
}

TEST_F(SetTemplateTest, AnotherTreeIsRefused) {
    World.Write(World.Template(u"InitialNodes.txt"_s, u"模板二"_s), u"a,-1,-1,,1"_s);
    World.People.Expect(
        u"源模板和目标模板栏目不同，如果您要选择该模板，请使用如下方法:\r\n1. "
        u"选择教师名节点，右键，导出。\r\n2.新建课程，选择新的模板\r\n3.选择教师名节点，导入。"_s);
    Run();
    EXPECT_EQ(World.People.Boxes.back().Icon, CScriptedPeople::BoxIcon::Warning);
    EXPECT_EQ(Course->GetTemplateName(), u"模板一"_s);
}

TEST_F(SetTemplateTest, SkinNeverTakesTheFolderOfANode) {
    World.Write(World.Template(u"Skin\\n4\\Content.htm"_s, u"模板二"_s), u"x"_s);
    World.Write(World.Template(u"Skin\\N4\\Content.htm"_s, u"模板二"_s), u"x"_s);
    World.Write(Skin + u"N4\\Content.htm"_s, u"the teacher's page"_s);
    World.People.Expect(u"模板修改成功！"_s);
    Run();
    EXPECT_EQ(World.Folder.Read(Skin + u"N4\\Content.htm"_s), "the teacher's page");
}

TEST_F(SetTemplateTest, FailedCopyIsTold) {
    World.Write(World.Template(u"Skin\\blocked\\a.gif"_s, u"模板二"_s), u"x"_s);
    World.Write(Skin + u"blocked"_s, u"a file in the way"_s);
    World.People.Expect(u"拷贝Skin相关文件夹失败！"_s);
    Run();
    EXPECT_EQ(Course->GetTemplateName(), u"模板二"_s) << "the change of name stands";
}

TEST(CompanionsTest, CompanionFindsAClosedDatabase) {
    CCourseWorld world;
    world.MakeCourse();
    CCourse course(world.ProjectPath(), world.Services);
    ASSERT_TRUE(course.Open());
    course.GetDatabase()->AddNode(3, u"a"_s);
    const QString strNote = world.Folder.Native(u"note.txt"_s);
    const QString strDatabase = world.Folder.Native(world.InCourse(u"Data\\DataBase"_s));
    Companions::Run(u"Z:\\bin\\sh -c \"ls '%1' > '%2'\""_s.arg(strDatabase, strNote), *course.GetDatabase(),
                    world.People);
    EXPECT_EQ(world.Folder.Read(u"note.txt"_s), "VorelCourse.mdb\n") << "one file, no log beside it";
    EXPECT_EQ(course.GetDatabase()->AddNode(3, u"b"_s), 5);
    Companions::Run(u"Z:\\none\\VorelCompiler.exe \"x\""_s, *course.GetDatabase(), world.People);
    EXPECT_EQ(course.GetDatabase()->GetChildrenCount(3), 2);
}

TEST(CustomTitlesTest, AppliesWhatHasANodeInTheTree) {
    const CCourseWorld world;
    world.Write(u"t.ini"_s,
                u"[Id]\r\n主讲教师一=5\r\n主讲教师二=0\r\n主讲教师三=9\r\n课程介绍=-1\r\n课程录像三=7\r\n"
                u"[Title]\r\n主讲教师二=old\r\n"_s);
    const QString strPath = world.Folder.Path(u"t.ini"_s);
    QStringList titles = CustomTitles::ReadTitles(strPath);
    EXPECT_EQ(titles, (QStringList{u""_s, u"old"_s, u""_s, u""_s, u""_s, u""_s, u""_s, u""_s}));
    EXPECT_EQ(CustomTitles::ReadNodeId(strPath, CustomTitles::c_nIntroduction), -1);
    titles = {u"张老师"_s, u"new"_s, u"gone"_s, u"four"_s, u"intro"_s, u""_s, u""_s, u"第三讲"_s};
    QStringList renamed;
    CustomTitles::Apply(strPath, titles, [&](qint32 nId, const QString& strTitle) {
        renamed.append(QString::number(nId) + strTitle);
        return nId != 9;
    });
    EXPECT_EQ(renamed, (QStringList{u"5张老师"_s, u"9gone"_s, u"7第三讲"_s}));
    EXPECT_EQ(CustomTitles::ReadTitles(strPath),
              (QStringList{u"张老师"_s, u"old"_s, u""_s, u""_s, u""_s, u""_s, u""_s, u"第三讲"_s}));
}

} // namespace
