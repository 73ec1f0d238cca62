#include "content/NewCourse.h"
#include "tests/support/Testing.h"

namespace {

TEST(NewCourseTest, TheFolderIsCheckedAndMade) {
    const CTempFolder folder;
    CCourseFolderStep step;
    folder.Write(u"满\\x.txt"_s, "x");
    folder.MakeFolder(u"空"_s);
    struct Case {
        QString strName, strFolder, strWarning;
    };
    for (const Case& c :
         {Case{{}, {}, u"请您填写课程名"_s}, Case{u"课"_s, {}, u"请您填写课程路径"_s},
          Case{u"C/C++"_s, folder.Path(u"空"_s), u"课程名不能包含“\\”和“/”，请您修改！"_s},
          Case{u"课"_s, folder.Path(u"满"_s),
               u"您输入的课程文件夹已经存在，并且非空，请您删除或重新选择！"_s},
          Case{u"课"_s, folder.Path(u"满\\\\\\"_s),
               u"您输入的课程文件夹已经存在，并且非空，请您删除或重新选择！"_s},
          Case{u"课"_s, folder.Path(u"满\\x.txt"_s), u"创建课程文件夹失败，请您重试!"_s},
          Case{u"课"_s, folder.Path(u"满\\x.txt\\y"_s), u"创建课程文件夹失败，请您重试!"_s},
          Case{u"课"_s, u"只有名字"_s, u"创建课程文件夹失败，请您重试!"_s},
          Case{u"课"_s, folder.Path(u"空"_s), {}}, Case{u"课"_s, folder.Path(u"新\\深\\"_s), {}},
          Case{u"课"_s, folder.Path(u"新\\深"_s), {}}}) {
        step.strName = c.strName;
        step.strFolder = c.strFolder;
        EXPECT_EQ(step.Next().strWarning, c.strWarning) << c.strFolder;
    }
    EXPECT_TRUE(folder.Exists(u"新\\深"_s));
}

TEST(NewCourseTest, AListThatIsNoTreeHasNoRows) {
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
