#pragma once

#include "course/BookDatabase.h"
#include "course/CourseInfo.h"
#include "course/CoursePaths.h"
#include "course/InitialNodes.h"
#include "platform/base/People.h"

#include <QList>
#include <QString>

#include <memory>
#include <optional>

class CCourse;

/// What a course needs of the course server.
class ICourseSession {
public:
    virtual ~ICourseSession() = default;
    /// True when the server confirmed. bPrompt: the person may be asked and told; otherwise every failure is
    /// silent. May change the course's identity through CCourse::TakeServerInfo. Does not throw.
    virtual bool ReportStatus(CCourse& course, int nType, const CourseFigures& figures, bool bPrompt) = 0;
};

/// Asks the person for a template.
class ITemplateChooser {
public:
    virtual ~ITemplateChooser() = default;
    virtual std::optional<QString> ChooseTemplate(const QString& strCurrent) = 0;
};

/// Makes the nodes of a new course.
class INodeMakerFactory {
public:
    virtual ~INodeMakerFactory() = default;
    virtual std::unique_ptr<IInitialNodeMaker> MakeFor(CCourse& course) = 0;
};

/// What a course works with; outlives every course.
struct CourseServices {
    Torvane::Dialog::MFC::IPeople& People;
    ICourseSession& Session;
    ITemplateChooser& Templates;
    INodeMakerFactory& Nodes;
};

/// What the new-course wizard gives to creation.
struct CreateRecord {
    CCourseInfo Info;
    QString FileTitle;
    QString Folder;
    QList<InitialNode> InitialNodes;
    QString TemplateName;
};

/// The open course: its identity, its folders and its store. Creating, opening and closing are long; each
/// shows where it stands in a status window. Failures are exceptions of the CRunException family with a
/// finished message.
class CCourse {
public:
    CCourse(const QString& strProjectPath, const CourseServices& services);
    ~CCourse();
    CCourse(const CCourse&) = delete;
    CCourse& operator=(const CCourse&) = delete;

    /// From a record to a closed, complete course on disk. Nothing is undone on failure.
    void Create(const CreateRecord& record);
    /// False when the person or the server refused, which has been told already.
    bool Open();
    /// Always succeeds: the person may always leave.
    bool Close();

    QString GetProjectPath() const { return m_paths.GetProjectPath(); }
    const CCoursePaths& GetPaths() const { return m_paths; }
    const CCourseInfo& GetInfo() const { return m_info; }
    QString GetTemplateName() const { return m_strTemplateName; }
    /// Null when closed. During Create it is there while nodes are made.
    CBookDatabase* GetDatabase() const { return m_pDatabase.get(); }
    bool IsOpen() const { return m_bOpen; }

    /// Writes the name to the project file unless it is the present one. False when a step failed; the name
    /// in memory stays changed.
    bool SetTemplateName(const QString& strName);

    /// The server knows the course under another name or teacher: stores it here, in the project file and in
    /// the seed titles.
    void TakeServerInfo(const CCourseInfo& info);

    /// A content edit begins.
    void CountChange() { ++m_nChanges; }
    qint32 GetChanges() const { return m_nChanges; }

private:
    using Status = Torvane::Dialog::MFC::CShowStatusDlg;
    void CreateFolders(const CreateRecord& record);
    void CreateData(const QString& strTemplate);
    void RecordInfo(const CreateRecord& record);
    void MakeInitialNodes(const CreateRecord& record);
    void OpenDatabase(const QString& strFailure);
    void ReadProject();
    bool CheckTemplate();
    bool SaveProject(const QString* pTemplateName);
    CourseFigures CountFigures();
    CourseFigures FiguresToReport();
    void ReportClosing(Status& status);
    void WaitPainting(int nMilliseconds);

    CCoursePaths m_paths;
    CourseServices m_services;
    CCourseInfo m_info;
    QString m_strTemplateName;
    bool m_bOpen = false;
    qint32 m_nChanges = 0;
    std::unique_ptr<CBookDatabase> m_pDatabase;
};
