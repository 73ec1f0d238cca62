#include "content/Texts.h"
#include "tests/journey/ContentSteps.h"
#include "tests/journey/Journey.h"

using namespace Qt::StringLiterals;

namespace {

/// Makes a node of each kind with the wizard.
class CMaker : public CContentSteps {
public:
    using CContentSteps::CContentSteps;

    void Run() {
        OpenCourse();
        for (const Made& made : Contents()) {
            Make(made);
            if (made.nKind == 0)
                LeaveEditor();
        }
        GiveUp({u"转换中取消"_s, 1, {{u"externalFile"_s, m_strMaterial + u"/长演示.odp"_s}}, true});
        for (const Made& made : Contents()) {
            ClickLine(c_strTree, made.strTitle);
            m_robot.WaitFor("the selected node", [&] { return Selected(c_strTree) == made.strTitle; });
            m_robot.Shot(made.strTitle + u"-again"_s);
        }
        Close();
    }

private:
    QList<Made> Contents() const {
        const QString strM = m_strMaterial + u'/';
        return {
            {u"内部编辑器"_s, 0, {}},
            {u"外部文件"_s,
             1,
             {{u"externalFile"_s, strM + u"说明 文字.txt"_s}, {u"comment"_s, u"课前阅读"_s}}},
            {u"网页连同图片"_s, 1, {{u"externalFile"_s, strM + u"网页.htm"_s}}},
            {u"文档转网页"_s, 1, {{u"externalFile"_s, strM + u"讲义.doc"_s}}, true},
            {u"表格转网页"_s, 1, {{u"externalFile"_s, strM + u"成绩.xls"_s}}, true},
            {u"演示转网页"_s, 1, {{u"externalFile"_s, strM + u"演示.ppt"_s}}, true},
            {u"新建文档"_s, 2, {{u"office0"_s, {}}}},
            {u"新建文档网页"_s, 2, {{u"office0"_s, {}}, {u"saveAsHtml"_s, {}}}},
            {u"新建演示网页"_s, 2, {{u"office1"_s, {}}, {u"saveAsHtml"_s, {}}}},
            {u"新建表格"_s, 2, {{u"office2"_s, {}}}},
            {u"站点"_s,
             3,
             {{u"siteFolder"_s, strM + u"站点"_s}, {u"homePage"_s, strM + u"站点/首页/index.html"_s}}},
            {u"外部链接"_s, 4, {{u"linkUrl"_s, u"http://127.0.0.1/kc?a=1&b=2"_s}}},
            {u"课件"_s, 5, {{u"coursewareFolder"_s, strM + u"课件"_s}}},
            {u"目录"_s, 7, {{u"importFolder"_s, strM + u"目录"_s}}},
            {u"站内链接"_s, 8, {{u"setLink"_s, u"站点"_s}}},
        };
    }

    /// Long work, given up: the node is as empty as it was.
    void GiveUp(const Made& made) {
        Enter(made);
        m_robot.WaitForWidget(u"statusCancel"_s, u"statusWindow"_s);
        m_robot.Shot(made.strTitle + u"-running"_s);
        m_robot.Click(u"statusCancel"_s, u"statusWindow"_s);
        AnswerBox(ContentText::c_strCancelled, u"ok"_s);
        m_robot.WaitForWidget(u"CNothingView"_s);
        Note(u"made"_s, made.strTitle);
    }
};

} // namespace

void MakeKinds(const QString& strFolder) {
    CMaker(strFolder, qEnvironmentVariable("VOREL_JOURNEY_MATERIAL")).Run();
}
