#pragma once

#include "course/Course.h"
#include "foundation/CodePage.h"
#include "foundation/Exceptions.h"
#include "foundation/SysInfo.h"
#include "tests/support/ScriptedPeople.h"
#include "tests/support/Testing.h"

/// A course server that answers at once, always the same, and remembers what it was told.
class CFakeSession : public ICourseSession {
public:
    struct Report {
        int nType;
        CourseFigures Figures;
        bool bPrompt;
    };
    bool Answer = true;
    std::vector<Report> Reports;
    std::function<void(CCourse&)> OnReport;

    bool ReportStatus(CCourse& course, int nType, const CourseFigures& figures, bool bPrompt) override {
        Reports.push_back({nType, figures, bPrompt});
        if (OnReport)
            OnReport(course);
        return Answer;
    }
};

/// Chooses the same template whenever it is asked; nothing by default, which is a cancel.
class CFakeTemplateChooser : public ITemplateChooser {
public:
    std::optional<QString> Choice;
    int nAsked = 0;

    std::optional<QString> ChooseTemplate(const QString&) override {
        ++nAsked;
        return Choice;
    }
};

/// Makes the rows of initial nodes, and notes the pages instead of copying them.
class CFakeNodeMakerFactory : public INodeMakerFactory {
public:
    QStringList Pages;
    /// The page at which making fails; none while empty.
    QString FailAt;

    std::unique_ptr<IInitialNodeMaker> MakeFor(CCourse& course) override {
        class CMaker : public IInitialNodeMaker {
        public:
            CMaker(CCourse& owner, CFakeNodeMakerFactory& factory) : m_course(owner), m_factory(factory) {}
            qint32 AddChild(qint32 nParentId, const QString& strTitle) override {
                return m_course.GetDatabase()->AddNode(nParentId, strTitle);
            }
            bool InitFromTemplatePage(qint32, const QString&, const QString& strPage) override {
                m_factory.Pages.append(strPage);
                return m_factory.FailAt.isEmpty() || strPage != m_factory.FailAt;
            }

        private:
            CCourse& m_course;
            CFakeNodeMakerFactory& m_factory;
        };
        return std::make_unique<CMaker>(course, *this);
    }
};

/// The message with which a step fails.
inline std::string MessageOf(const std::function<void()>& step) {
    try {
        step();
    } catch (const Torvane::CRunException& failure) {
        return failure.GetMessage().toStdString();
    }
    return "nothing was thrown";
}

/// A whole installation in a folder of its own, with one template, "模板一", and everything that a course
/// works with faked. Its program needs VOREL_SEED_DATA (target vorel_seed_data).
template <typename CNodes>
class CCourseWorldOf {
public:
    CTempFolder Folder;
    CScriptedPeople People;
    CFakeSession Session;
    CFakeTemplateChooser Templates;
    CNodes Nodes;
    CourseServices Services{People, Session, Templates, Nodes};

    explicit CCourseWorldOf(const QString& strPlace = QDir::tempPath()) : Folder(strPlace) {
        Write(u"程序\\AppInfo.ini"_s, u"[SysInfo]\r\nProvince=11\r\nSchoolName=测试大学\r\n"_s);
        CopySeed(u"程序\\SysData\\Data\\DataBase\\VorelCourse.mdb"_s);
        Folder.MakeFolder(u"程序\\SysData\\Data\\Courseware\\NodeResource"_s);
        Write(u"程序\\SysData\\SelfDefineTitle.ini"_s, u"[Id]\r\n课程介绍=4\r\n"_s);
        Write(Template(u"Skin\\images\\top.gif"_s), u"old skin"_s);
        Write(Template(u"eht\\htm\\通用页面.htm"_s), u"<p></p>"_s);
        CSysInfo::Reset(Folder.Path(u"程序\\Vorel"_s));
    }

    /// A path of this world's template, below the folder.
    static QString Template(const QString& strBelow, const QString& strName = u"模板一"_s) {
        return u"程序\\SysData\\VorelTemplates\\%1\\%2"_s.arg(strName, strBelow);
    }
    void Write(const QString& strBelow, const QString& strText) const {
        Folder.Write(strBelow, CodePage::Encode(strText));
    }
    void CopySeed(const QString& strBelow) const {
        QFile seed(QStringLiteral(VOREL_SEED_DATA "/DataBase/VorelCourse.mdb"));
        if (!seed.open(QIODevice::ReadOnly))
            qFatal("no seed database");
        Folder.Write(strBelow, seed.readAll());
    }

    QString ProjectPath() const { return Folder.Path(u"课程\\数学.vcp"_s); }
    /// A path of the course, below the folder.
    static QString InCourse(const QString& strBelow) { return u"课程\\"_s + strBelow; }
    CreateRecord Record() const {
        return {{42, u"高等数学"_s, u"李老师"_s}, u"数学"_s, Folder.Path(u"课程\\"_s), {}, u"模板一"_s};
    }
    void MakeCourse() const { CCourse(ProjectPath(), Services).Create(Record()); }
};
using CCourseWorld = CCourseWorldOf<CFakeNodeMakerFactory>;
