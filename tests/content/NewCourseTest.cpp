#include "content/NewCourse.h"

#include "foundation/SysInfo.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class NewCourseTest : public ::testing::Test {
protected:
    CTempFolder m_folder;
    CCourseFolderStep m_step;

    NewCourseTest() { CSysInfo::Reset(m_folder.Path(u"程序\\Vorel.exe"_s)); }
};

TEST_F(NewCourseTest, AnotherCoursePresetsTheFieldsAnew) {
    const QString strProjects = CSysInfo::Instance().GetProjectsFolder(true);
    m_step.Enter(u"物理"_s);
    EXPECT_EQ(m_step.strName, u"物理"_s);
    EXPECT_EQ(m_step.strFolder, strProjects + u"物理\\申报网站"_s);
    m_step.strName = u"力学"_s;
    m_step.TakePicked(u"Z:\\d"_s);
    EXPECT_EQ(m_step.strFolder, u"Z:\\d\\力学\\申报网站"_s);
    m_step.Enter(u"物理"_s);
    EXPECT_EQ(m_step.strName, u"力学"_s);
    m_step.Enter(u"化学"_s);
    EXPECT_EQ(m_step.strFolder, strProjects + u"化学\\申报网站"_s);
}

TEST_F(NewCourseTest, TheFolderIsCheckedAndMade) {
    m_folder.Write(u"满\\x.txt"_s, "x");
    m_folder.MakeFolder(u"空"_s);
    struct Case {
        QString strName;
        QString strFolder;
        QString strWarning;
    };
    for (const Case& c :
         {Case{{}, {}, u"请您填写课程名"_s}, Case{u"课"_s, {}, u"请您填写课程路径"_s},
          Case{u"C/C++"_s, m_folder.Path(u"空"_s), u"课程名不能包含“\\”和“/”，请您修改！"_s},
          Case{u"课"_s, m_folder.Path(u"满"_s),
               u"您输入的课程文件夹已经存在，并且非空，请您删除或重新选择！"_s},
          Case{u"课"_s, m_folder.Path(u"满\\\\\\"_s),
               u"您输入的课程文件夹已经存在，并且非空，请您删除或重新选择！"_s},
          Case{u"课"_s, m_folder.Path(u"满\\x.txt"_s), u"创建课程文件夹失败，请您重试!"_s},
          Case{u"课"_s, m_folder.Path(u"满\\x.txt\\y"_s), u"创建课程文件夹失败，请您重试!"_s},
          Case{u"课"_s, u"只有名字"_s, u"创建课程文件夹失败，请您重试!"_s},
          Case{u"课"_s, m_folder.Path(u"空"_s), {}}, Case{u"课"_s, m_folder.Path(u"新\\深\\"_s), {}},
          Case{u"课"_s, m_folder.Path(u"新\\深"_s), {}}}) {
        m_step.strName = c.strName;
        m_step.strFolder = c.strFolder;
        EXPECT_EQ(m_step.Next().strWarning, c.strWarning) << c.strFolder.toStdString();
    }
    EXPECT_TRUE(m_folder.Exists(u"新\\深"_s));
}

TEST_F(NewCourseTest, ATemplateWithoutItsOwnListTakesTheProgramsNodes) {
    m_folder.Write(u"程序\\SysData\\VorelTemplates\\红\\InitialNodes.txt"_s, "a,-1,1,,1\r\nb,-1,-1,p,0\r\n");
    m_folder.Write(u"程序\\SysData\\VorelInitialNodes.txt"_s, "d,-1,-1,,1\r\n");
    CreateRecord record{{9, u"物理"_s, u"王"_s}, u"课"_s, u"Z:\\d"_s, {}, u"红"_s};
    CompleteRecord(record);
    EXPECT_EQ(record.Folder, u"Z:\\d\\"_s);
    ASSERT_EQ(record.InitialNodes.size(), 2);
    EXPECT_FALSE(record.InitialNodes.at(1).Selected);
    record.TemplateName = u"没有表"_s;
    CompleteRecord(record);
    ASSERT_EQ(record.InitialNodes.size(), 1);
    EXPECT_EQ(record.InitialNodes.at(0).Title, u"d"_s);
}

TEST_F(NewCourseTest, AListThatIsNoTreeHasNoRows) {
    const auto shape = [](const QList<std::pair<qint32, qint32>>& lines) {
        QList<InitialNode> list;
        for (const auto& [nChild, nSibling] : lines)
            list.append({u"n"_s, nChild, nSibling, {}, true});
        QString strRows = u"none"_s;
        if (const auto rows = NodeRows(list)) {
            strRows.clear();
            for (const NodeRow& row : *rows)
                strRows += u"%1<%2 "_s.arg(row.nLine).arg(row.nParentLine);
        }
        return strRows;
    };
    QList<std::pair<qint32, qint32>> deep;
    for (qint32 n = 1; n < 1000; ++n)
        deep.append({n, -1});
    deep.append({-1, -1});
    EXPECT_EQ(shape({{2, 1}, {-1, 0}, {0, 3}, {-1, -1}}), u"0<-1 2<0 3<0 1<-1 "_s) << "0 leads nowhere";
    EXPECT_EQ(shape({}), u""_s);
    for (const auto& lines : {deep, {{1, -1}, {1, -1}}, {{2, 1}, {2, -1}, {-1, -1}}, {{-1, 7}}})
        EXPECT_EQ(shape(lines), u"none"_s);
}

} // namespace
