#include "course/Course.h"
#include "course/ProjectFile.h"
#include "foundation/IniFile.h"
#include "tests/support/CourseFakes.h"

namespace {

/// Starts with a course on the disk that has two nodes of its own.
class CourseTest : public testing::Test {
protected:
    void SetUp() override {
        World.Write(World.Template(u"Skin\\readme.txt"_s), u"a plain file of the skin"_s);
        Record.InitialNodes = {{u"课程介绍"_s, -1, 1, u""_s, true}, {u"教师"_s, -1, -1, u"页"_s, true}};
        Course.Create(Record);
    }
    std::string OpenMessage() {
        return MessageOf([&] { CCourse(World.ProjectPath(), World.Services).Open(); });
    }
    std::string CreateMessage() {
        return MessageOf([&] { Course.Create(Record); });
    }
    void Remove(const QString& strBelow) {
        QFile::remove(World.Folder.Native(strBelow));
        QDir(World.Folder.Native(strBelow)).removeRecursively();
    }
    QString Titles() {
        QString strTitles;
        for (qint32 nId = 1; nId <= Course.GetDatabase()->GetNodeCount(); ++nId)
            strTitles += Course.GetDatabase()->GetNode(nId).Title + u' ';
        return strTitles;
    }
    /// What the server was told last.
    QString Report() {
        const auto& report = World.Session.Reports.back();
        const CourseFigures& figures = report.Figures;
        return u"%1 %2: %3 %4 %5"_s.arg(report.nType)
            .arg(report.bPrompt)
            .arg(figures.Count)
            .arg(figures.Size)
            .arg(figures.Changed);
    }
    QString LastStatuses(qsizetype nCount) const { return World.People.Statuses.last(nCount).join(u'|'); }

    CCourseWorld World;
    CreateRecord Record = World.Record();
    CCourse Course{World.ProjectPath(), World.Services};
    const QString Seed = u"程序\\SysData\\Data\\DataBase\\VorelCourse.mdb"_s;
    const QString Database = World.InCourse(u"Data\\DataBase\\VorelCourse.mdb"_s);
    const QString DataInfo = World.InCourse(u"Data\\DataInfo.dti"_s);
    const QString Skin = World.InCourse(u"Data\\Courseware\\NodeResource\\"_s);
};

TEST_F(CourseTest, CreatedCourseIsWhole) {
    EXPECT_TRUE(!Course.IsOpen() && Course.GetDatabase() == nullptr);
    EXPECT_EQ(LastStatuses(3), u"正在建立数据文件...|正在记录课程信息...|正在建立初始栏目..."_s);
    EXPECT_EQ(QDir(World.Folder.Native(u"课程"_s)).entryList({u"*站"_s, u"合成"_s}, QDir::Dirs).size(), 3);
    EXPECT_TRUE(World.Folder.Exists(Skin + u"images\\top.gif"_s));
    EXPECT_FALSE(World.Folder.Exists(Skin + u"readme.txt"_s));
    EXPECT_FALSE(World.Folder.Exists(DataInfo)) << "made at the first close";
    EXPECT_EQ(World.Nodes.Pages.join(u' '), u"课程介绍 页"_s);
    ASSERT_TRUE(Course.Open());
    EXPECT_EQ(LastStatuses(4),
              u"正在读取课程信息...|正在连接课程数据库...|正在验证课程信息...|正在检查模板文件..."_s);
    EXPECT_EQ(Course.GetInfo(), Record.Info);
    EXPECT_EQ(Titles(), u"测试大学 高等数学 李老师 课程介绍 教师 "_s);
    Course.TakeServerInfo({43, u"线性代数"_s, u"王老师"_s});
    Course.TakeServerInfo({42, u""_s, u"nobody"_s});
    EXPECT_EQ(Titles(), u"测试大学 线性代数 王老师 课程介绍 教师 "_s) << "the server's word";
    EXPECT_EQ(Course.GetInfo().Id, 42) << "the id keys the titles and stays";
}

TEST_F(CourseTest, CreatingOverACourseTakesNothingOfIt) {
    ASSERT_TRUE(Course.Open());
    Course.GetDatabase()->AddNode(3, u"old"_s);
    // As if the program had been killed: the log stays beside the file.
    const QByteArray log = World.Folder.Read(Database + u"-wal"_s);
    ASSERT_FALSE(log.isEmpty());
    Course.Close();
    World.Folder.Write(Database + u"-wal"_s, log);
    World.Write(World.Template(u"SelfDefineTitle.ini"_s), u"[Id]\r\n"_s);
    Record.InitialNodes.clear();
    Course.Create(Record);
    ASSERT_TRUE(Course.Open());
    EXPECT_EQ(Course.GetDatabase()->GetNodeCount(), 3);
    EXPECT_EQ(World.Folder.Read(World.InCourse(u"Data\\SelfDefineTitle.ini"_s)), "[Id]\r\n");
}

TEST_F(CourseTest, EachFailureOfCreationHasItsText) {
    const std::pair<QString, const char*> inTheWay[] = {{u"课程"_s, "创建课程文件夹失败!"},
                                                        {World.InCourse(u"Data"_s), "拷贝初始数据失败！"},
                                                        {Skin + u"images"_s, "拷贝Skin文件夹失败！"}};
    for (const auto& [strFile, pszMessage] : inTheWay) {
        Remove(u"课程"_s);
        World.Folder.Write(strFile, "a file in the way");
        EXPECT_EQ(CreateMessage(), pszMessage);
    }
    Remove(u"课程"_s);
    World.Nodes.FailAt = u"页"_s;
    EXPECT_EQ(CreateMessage(), "建立初始栏目失败!");
    EXPECT_EQ(Course.GetDatabase()->GetChildrenCount(3), 2) << "what was made stays";
    World.Folder.Write(Seed, "no database");
    EXPECT_EQ(CreateMessage(), "打开课程数据库失败！");
    Record.Info.TeacherName.clear();
    EXPECT_EQ(CreateMessage(), "记录课程信息失败!");
    Remove(u"程序\\SysData\\SelfDefineTitle.ini"_s);
    EXPECT_EQ(CreateMessage(), "拷贝自定义标题配置文件失败！");
}

TEST_F(CourseTest, OpeningReportsWhatWaits) {
    const std::pair<QByteArray, const char16_t*> cases[] = {
        {"12,3,4567.000000", u"264 1: 12 4567 3"},
        {"12,3", u"264 1: 5 0 -1"},
        {"-1,5,10.5", u"264 1: 5 0 5"},
        {"12,5,-1.000000", u"264 1: 5 0 5"},
        {"7,-1,0.000000\r\n", u"264 1: 7 0 -1"},
        {"1,2,3\n4", u"264 1: 5 0 -1"},
        {"1,2,3" + QByteArray(9000, '0'), u"264 1: 5 0 -1"}};
    for (const auto& [text, pszReport] : cases) {
        World.Folder.Write(DataInfo, text);
        EXPECT_EQ(OpenMessage(), "nothing was thrown");
        EXPECT_EQ(Report(), QString::fromUtf16(pszReport));
    }
}

TEST_F(CourseTest, EachFailureOfOpeningHasItsText) {
    World.Folder.Write(DataInfo, "12,3,45.000000");
    World.Session.Answer = false;
    EXPECT_FALSE(Course.Open() || Course.IsOpen());
    World.Session.OnReport = [](CCourse&) { throw 7; };
    EXPECT_EQ(OpenMessage(), "打开课程时发生错误，请您重试!");
    World.Session.OnReport = [](CCourse&) { throw Torvane::CRunException(u"its own"_s); };
    EXPECT_EQ(OpenMessage(), "its own");
    Remove(Database);
    EXPECT_EQ(OpenMessage(), "连接课程数据库失败!");
    EXPECT_FALSE(World.Folder.Exists(Database));
    World.Folder.Write(World.InCourse(u"数学.vcp"_s), "[Course]\r\nId=0\r\n");
    EXPECT_EQ(OpenMessage(), "读取课程文件失败！");
    EXPECT_EQ(World.Folder.Read(DataInfo), "12,3,45.000000") << "a failed opening changes nothing";
    Remove(World.InCourse(u"数学.vcp"_s));
    EXPECT_EQ(OpenMessage(), "找不到课程文件，该课程可能已被移动或删除!");
}

TEST_F(CourseTest, ClosingKeepsWhatTheServerDidNotHear) {
    ASSERT_TRUE(Course.Open());
    Course.CountChange();
    Course.GetDatabase()->SetSize(4, 1234.0);
    World.Session.Answer = false;
    EXPECT_TRUE(Course.Close());
    EXPECT_TRUE(!Course.IsOpen() && Course.GetDatabase() == nullptr);
    EXPECT_EQ(Report(), u"520 0: 5 1234 1"_s);
    EXPECT_EQ(LastStatuses(2), u"正在关闭课程...|更新服务器信息失败。"_s);
    EXPECT_EQ(World.Folder.Read(DataInfo), "5,1,1234.000000");
    World.Session.Answer = true;
    ASSERT_TRUE(Course.Open());
    EXPECT_EQ(Report(), u"264 1: 5 1234 1"_s);
    // A total beyond what it can say keeps nobody from leaving, nor from coming again.
    Course.GetDatabase()->SetSize(4, 5e9);
    EXPECT_TRUE(Course.GetChanges() == 0 && Course.Close());
    EXPECT_EQ(World.Folder.Read(DataInfo), "5,-1,-1.000000");
    ASSERT_TRUE(Course.Open());
    Remove(u"课程"_s);
    World.Session.OnReport = [](CCourse&) { throw 7; };
    EXPECT_TRUE(Course.Close());
    EXPECT_TRUE(!Course.IsOpen() && Course.GetDatabase() == nullptr);
    EXPECT_TRUE(Course.Close()) << "a closed course closes in silence";
    EXPECT_EQ(World.Session.Reports.size(), 6U);
}

TEST_F(CourseTest, MissingTemplateIsAskedFor) {
    WriteProfileString(u"Compile"_s, u"LastDir"_s, u"/tmp/网站"_s, World.ProjectPath());
    QDir().rename(World.Folder.Native(World.Template(u""_s)),
                  World.Folder.Native(World.Template(u""_s, u"模板二"_s)));
    for (const bool bChosen : {false, true}) {
        World.People.Expect(u"系统检测到课程模板不存在，可能是模板文件夹被更名或移动，\n请您重新选择"_s);
        if (bChosen)
            World.Templates.Choice = u"模板二"_s;
        EXPECT_EQ(Course.Open(), bChosen);
    }
    EXPECT_EQ(World.People.Boxes.back().strTitle, u"提示"_s);
    EXPECT_EQ(World.People.Boxes.back().Icon, CScriptedPeople::BoxIcon::Warning);
    CProjectFile file;
    ASSERT_TRUE(file.SetPath(World.ProjectPath()) && file.Load());
    EXPECT_EQ(file.GetTemplateName() + file.GetLastDir(), u"模板二/tmp/网站"_s);
}

} // namespace
