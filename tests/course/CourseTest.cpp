#include "course/Course.h"
#include "course/DataInfo.h"
#include "course/ProjectFile.h"
#include "foundation/IniFile.h"
#include "tests/support/CourseFakes.h"

#include <filesystem>

using namespace Qt::StringLiterals;

namespace {

class CourseTest : public testing::Test {
protected:
    CCourseWorld World;
    const QString Seed = u"程序\\SysData\\Data\\DataBase\\VorelCourse.mdb"_s;
    const QString Database = World.InCourse(u"Data\\DataBase\\VorelCourse.mdb"_s);
    const QString DataInfo = World.InCourse(u"Data\\DataInfo.dti"_s);
    const QString Skin = World.InCourse(u"Data\\Courseware\\NodeResource\\"_s);

    std::string OpenMessage() {
        return MessageOf([&] { CCourse(World.ProjectPath(), World.Services).Open(); });
    }
    std::string CreateMessage() {
        return MessageOf([&] { World.MakeCourse(); });
    }
    void Remove(const QString& strBelow) {
        std::filesystem::remove_all(World.Folder.Native(strBelow).toStdString());
    }
    std::string Titles(CCourse& course) {
        QString strTitles;
        for (qint32 nId = 1; nId <= course.GetDatabase()->GetNodeCount(); ++nId)
            strTitles += course.GetDatabase()->GetNode(nId).Title + u' ';
        return strTitles.toStdString();
    }
    std::string LastFigures() {
        const CourseFigures& figures = World.Session.Reports.back().Figures;
        return u"%1 %2 %3"_s.arg(figures.Count).arg(figures.Size).arg(figures.Changed).toStdString();
    }
    QString LastStatuses(qsizetype nCount) const { return World.People.Statuses.last(nCount).join(u'|'); }
};

TEST_F(CourseTest, CreatedCourseIsWhole) {
    World.Write(World.Template(u"Skin\\readme.txt"_s), u"a plain file of the skin"_s);
    CreateRecord record = World.Record();
    record.InitialNodes = {{u"课程介绍"_s, -1, 1, u""_s, true}, {u"教师"_s, -1, -1, u"页"_s, true}};
    CCourse course(World.ProjectPath(), World.Services);
    course.Create(record);
    EXPECT_TRUE(!course.IsOpen() && course.GetDatabase() == nullptr);
    EXPECT_EQ(LastStatuses(3), u"正在建立数据文件...|正在记录课程信息...|正在建立初始栏目..."_s);
    for (const QString& strMade : {u"课程网站"_s, u"申报网站"_s, u"合成"_s, u"Data\\SelfDefineTitle.ini"_s,
                                   u"Data\\Courseware\\NodeResource\\images\\top.gif"_s, u"数学.vcp"_s})
        EXPECT_TRUE(World.Folder.Exists(World.InCourse(strMade))) << strMade.toStdString();
    EXPECT_FALSE(World.Folder.Exists(Skin + u"readme.txt"_s));
    EXPECT_FALSE(World.Folder.Exists(DataInfo)) << "made at the first close";
    EXPECT_EQ(World.Nodes.Pages, (QStringList{u"课程介绍"_s, u"页"_s}));
    ASSERT_TRUE(course.Open());
    EXPECT_EQ(LastStatuses(4),
              u"正在读取课程信息...|正在连接课程数据库...|正在验证课程信息...|正在检查模板文件..."_s);
    EXPECT_EQ(course.GetInfo(), World.Record().Info);
    EXPECT_EQ(Titles(course), "测试大学 高等数学 李老师 课程介绍 教师 ");
}

TEST_F(CourseTest, CreatingOverACourseTakesNothingOfIt) {
    World.MakeCourse();
    {
        CBookDatabase old(World.Folder.Path(Database), 42);
        ASSERT_TRUE(old.Open());
        old.AddNode(3, u"old"_s);
        // As if the program had been killed: the log stays beside the file.
        const QByteArray log = World.Folder.Read(Database + u"-wal"_s);
        ASSERT_FALSE(log.isEmpty());
        old.Close();
        World.Folder.Write(Database + u"-wal"_s, log);
    }
    World.Write(World.Template(u"SelfDefineTitle.ini"_s), u"[Id]\r\n"_s);
    World.MakeCourse();
    CCourse course(World.ProjectPath(), World.Services);
    ASSERT_TRUE(course.Open());
    EXPECT_EQ(course.GetDatabase()->GetNodeCount(), 3);
    EXPECT_EQ(World.Folder.Read(World.InCourse(u"Data\\SelfDefineTitle.ini"_s)), "[Id]\r\n");
}

TEST_F(CourseTest, EachFailureOfCreationHasItsText) {
    const std::pair<QString, const char*> inTheWay[] = {{u"课程"_s, "创建课程文件夹失败!"},
                                                        {World.InCourse(u"Data"_s), "拷贝初始数据失败！"},
                                                        {Skin + u"images"_s, "拷贝Skin文件夹失败！"}};
    for (const auto& [strFile, pszMessage] : inTheWay) {
        World.Folder.Write(strFile, "a file in the way");
        EXPECT_EQ(CreateMessage(), pszMessage);
        Remove(u"课程"_s);
    }
    Remove(u"程序\\SysData\\SelfDefineTitle.ini"_s);
    EXPECT_EQ(CreateMessage(), "拷贝自定义标题配置文件失败！");
    World.Write(World.Template(u"SelfDefineTitle.ini"_s), u"[Id]"_s);
    CreateRecord record = World.Record();
    record.Info.TeacherName.clear();
    CCourse course(World.ProjectPath(), World.Services);
    EXPECT_EQ(MessageOf([&] { course.Create(record); }), "记录课程信息失败!");
    World.Folder.Write(Seed, "no database");
    EXPECT_EQ(CreateMessage(), "打开课程数据库失败！");
    World.CopySeed(Seed);
    record = World.Record();
    record.InitialNodes = {{u"a"_s, -1, 1, u""_s, true}, {u"b"_s, -1, -1, u""_s, true}};
    World.Nodes.FailAt = u"b"_s;
    EXPECT_EQ(MessageOf([&] { course.Create(record); }), "建立初始栏目失败!");
    ASSERT_NE(course.GetDatabase(), nullptr);
    EXPECT_EQ(course.GetDatabase()->GetChildrenCount(3), 2) << "what was made stays";
}

TEST_F(CourseTest, OpeningReportsWhatWaits) {
    World.MakeCourse();
    const std::pair<QByteArray, const char*> cases[] = {
        {"12,3", "3 0 -1"},     {"12,3,4567.000000", "12 4567 3"},
        {"-1,5,10.5", "3 0 5"}, {"12,5,-1.000000", "3 0 5"},
        {"1,2,3,4", "3 0 -1"},  {"7,-1,0.000000\r\n", "7 0 -1"},
        {"1,2,3\n4", "3 0 -1"}, {"1,2,3" + QByteArray(9000, '0'), "3 0 -1"}};
    for (const auto& [text, pszFigures] : cases) {
        World.Folder.Write(DataInfo, text);
        CCourse course(World.ProjectPath(), World.Services);
        ASSERT_TRUE(course.Open());
        EXPECT_TRUE(World.Session.Reports.back().nType == 264 && World.Session.Reports.back().bPrompt);
        EXPECT_EQ(LastFigures(), pszFigures) << text.left(20).toStdString();
    }
    Remove(DataInfo);
    EXPECT_EQ(OpenMessage(), "nothing was thrown");
    EXPECT_EQ(LastFigures(), "3 0 -1");
}

TEST_F(CourseTest, EachFailureOfOpeningHasItsText) {
    EXPECT_EQ(OpenMessage(), "找不到课程文件，该课程可能已被移动或删除!");
    World.MakeCourse();
    World.Folder.Write(DataInfo, "12,3,45.000000");
    World.Session.Answer = false;
    CCourse refused(World.ProjectPath(), World.Services);
    EXPECT_FALSE(refused.Open() || refused.IsOpen());
    World.Session.OnReport = [](CCourse&) { throw 7; };
    EXPECT_EQ(OpenMessage(), "打开课程时发生错误，请您重试!");
    World.Session.OnReport = [](CCourse&) { throw Torvane::CRunException(u"its own"_s); };
    EXPECT_EQ(OpenMessage(), "its own");
    Remove(Database);
    EXPECT_EQ(OpenMessage(), "连接课程数据库失败!");
    EXPECT_FALSE(World.Folder.Exists(Database));
    World.Folder.Write(Database, "no database");
    EXPECT_EQ(OpenMessage(), "连接课程数据库失败!");
    World.Folder.Write(World.InCourse(u"数学.vcp"_s), "[Course]\r\nId=0\r\n");
    EXPECT_EQ(OpenMessage(), "读取课程文件失败！");
    EXPECT_EQ(World.Folder.Read(DataInfo), "12,3,45.000000") << "a failed opening changes nothing";
}

TEST_F(CourseTest, ClosingKeepsWhatTheServerDidNotHear) {
    World.MakeCourse();
    CCourse course(World.ProjectPath(), World.Services);
    ASSERT_TRUE(course.Open());
    course.CountChange();
    course.CountChange();
    course.GetDatabase()->SetSize(course.GetDatabase()->AddNode(3, u"a"_s), 1234.0);
    World.Session.Answer = false;
    EXPECT_TRUE(course.Close());
    EXPECT_TRUE(!course.IsOpen() && course.GetDatabase() == nullptr);
    EXPECT_TRUE(World.Session.Reports.back().nType == 520 && !World.Session.Reports.back().bPrompt);
    EXPECT_EQ(LastStatuses(2), u"正在关闭课程...|更新服务器信息失败。"_s);
    EXPECT_EQ(World.Folder.Read(DataInfo), "4,2,1234.000000");
    World.Session.Answer = true;
    ASSERT_TRUE(course.Open());
    EXPECT_EQ(LastFigures(), "4 1234 2");
    EXPECT_TRUE(course.GetChanges() == 0 && course.Close());
    EXPECT_EQ(World.Folder.Read(DataInfo), "4,-1,1234.000000");
    EXPECT_TRUE(course.Close()) << "a closed course closes in silence";
    EXPECT_EQ(World.Session.Reports.size(), 4U);
}

TEST_F(CourseTest, NothingKeepsAPersonFromLeaving) {
    World.MakeCourse();
    CCourse course(World.ProjectPath(), World.Services);
    ASSERT_TRUE(course.Open());
    course.GetDatabase()->SetSize(course.GetDatabase()->AddNode(3, u"video"_s), 5e9);
    EXPECT_TRUE(course.Close());
    EXPECT_EQ(World.Folder.Read(DataInfo), "4,-1,-1.000000");
    ASSERT_TRUE(course.Open()) << "a course beyond what the total can say opens again";
    World.Session.OnReport = [](CCourse&) { throw 7; };
    course.CountChange();
    EXPECT_TRUE(course.Close());
    EXPECT_EQ(World.Folder.Read(DataInfo), "4,1,-1.000000") << "not heard, so it waits";
    World.Session.OnReport = nullptr;
    ASSERT_TRUE(course.Open());
    Remove(u"课程"_s);
    World.Session.OnReport = [](CCourse&) { throw 7; };
    EXPECT_TRUE(course.Close());
    EXPECT_TRUE(!course.IsOpen() && course.GetDatabase() == nullptr);
}

TEST_F(CourseTest, MissingTemplateIsAskedFor) {
    World.MakeCourse();
    WriteProfileString(u"Compile"_s, u"LastDir"_s, u"/tmp/网站"_s, World.ProjectPath());
    QDir().rename(World.Folder.Native(World.Template(u""_s)),
                  World.Folder.Native(World.Template(u""_s, u"模板二"_s)));
    for (const bool bChosen : {false, true}) {
        World.People.Expect(u"系统检测到课程模板不存在，可能是模板文件夹被更名或移动，\n请您重新选择"_s);
        if (bChosen)
            World.Templates.Choice = u"模板二"_s;
        CCourse course(World.ProjectPath(), World.Services);
        EXPECT_EQ(course.Open(), bChosen);
    }
    EXPECT_EQ(World.People.Boxes.back().strTitle, u"提示"_s);
    EXPECT_EQ(World.People.Boxes.back().Icon, CScriptedPeople::BoxIcon::Warning);
    CProjectFile file;
    ASSERT_TRUE(file.SetPath(World.ProjectPath()) && file.Load());
    EXPECT_EQ(file.GetTemplateName() + file.GetLastDir(), u"模板二/tmp/网站"_s);
}

TEST_F(CourseTest, ServerRenamesCourseAndTeacher) {
    World.MakeCourse();
    World.Session.OnReport = [](CCourse& course) {
        course.TakeServerInfo({43, u"线性代数"_s, u"王老师"_s});
        course.TakeServerInfo({42, u""_s, u"nobody"_s});
    };
    CCourse course(World.ProjectPath(), World.Services);
    ASSERT_TRUE(course.Open());
    const CCourseInfo expected{42, u"线性代数"_s, u"王老师"_s};
    EXPECT_EQ(course.GetInfo(), expected) << "the id keys the titles and stays";
    EXPECT_EQ(Titles(course), "测试大学 线性代数 王老师 ");
    CProjectFile file;
    ASSERT_TRUE(file.SetPath(World.ProjectPath()) && file.Load());
    EXPECT_TRUE(file.GetCourseInfo() == expected && file.GetTemplateName() == u"模板一"_s);
}

} // namespace
