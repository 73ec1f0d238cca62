#pragma once

#include "companions/compiler/StoreReader.h"
#include "course/CourseInfo.h"
#include "course/CoursePaths.h"

#include <QList>
#include <QString>

/// A node of the course as the site shows it. Nodes know each other by their place in CSiteModel::Nodes.
struct SiteNode {
    StoreRow Row;
    int Parent = -1;
    int Depth = 0;
    QList<int> Children;
};

/// The course to be compiled, read once: who it is, and its tree. A store that is broken in structure gives
/// what can be reached from the root; a node is never met twice, so that a circle ends.
class CSiteModel {
public:
    /// strProjectPath is in backslash form. Throws Torvane::CRunException with a message.
    explicit CSiteModel(const QString& strProjectPath);

    const CCoursePaths& Paths() const { return m_paths; }
    qint32 CourseId() const { return m_info.Id; }
    QString School() const { return m_strSchool; }
    QString Course() const { return m_strCourse; }
    QString Teacher() const { return m_strTeacher; }
    /// What the project file says of the last output folder; empty for none.
    QString LastDir() const { return m_strLastDir; }
    /// Where the course's folder was then; empty where that is not known.
    QString LastCourseDir() const { return m_strLastCourseDir; }

    /// In tree order, each parent before its children; the first is the root.
    const QList<SiteNode>& Nodes() const { return m_nodes; }
    /// Rows that can't be reached from the root.
    int UnreachableCount() const { return m_nUnreachable; }

private:
    void TakeSeedTitles(const QList<StoreRow>& rows);
    void BuildTree(QList<StoreRow> rows);

    CCoursePaths m_paths;
    CCourseInfo m_info;
    QString m_strSchool;
    QString m_strCourse;
    QString m_strTeacher;
    QString m_strLastDir;
    QString m_strLastCourseDir;
    QList<SiteNode> m_nodes;
    int m_nUnreachable = 0;
};
