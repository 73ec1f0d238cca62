#include "companions/compiler/SiteModel.h"

#include "companions/compiler/SourceFile.h"
#include "companions/compiler/Texts.h"
#include "course/BookDatabase.h"
#include "course/ProjectFile.h"
#include "foundation/Exceptions.h"
#include "foundation/IniFile.h"
#include "platform/base/NativePath.h"

#include <QHash>
#include <QSet>

#include <utility>

using namespace Qt::StringLiterals;

namespace {
constexpr qint32 c_nSchoolId = 1;
constexpr qint32 c_nCourseId = 2;
} // namespace

CSiteModel::CSiteModel(const QString& strProjectPath) : m_paths(strProjectPath) {
    const QString strShown = Platform::ToNativeExact(strProjectPath);
    CheckReadable(Platform::ToNative(strProjectPath), CompilerText::c_strNoProject);
    CProjectFile project;
    if (!project.SetPath(strProjectPath) || !project.Load())
        throw Torvane::CRunException(CompilerText::c_strBadProject.arg(strShown));
    m_info = project.GetCourseInfo();
    m_strLastDir = project.GetLastDir();
    m_strLastCourseDir = ReadProfileString(u"Compile"_s, u"CourseDir"_s, {}, strProjectPath);
    QList<StoreRow> rows = ReadStore(m_paths.GetDatabasePath(), m_info.Id);
    TakeSeedTitles(rows);
    BuildTree(std::move(rows));
    if (m_nodes[0].Row.Title.isEmpty())
        m_nodes[0].Row.Title = m_strTeacher.isEmpty() ? m_strCourse : m_strTeacher;
}

void CSiteModel::TakeSeedTitles(const QList<StoreRow>& rows) {
    m_strCourse = m_info.Name;
    m_strTeacher = m_info.TeacherName;
    for (const StoreRow& row : rows) {
        if (row.Title.isEmpty())
            continue;
        if (row.Id == c_nSchoolId)
            m_strSchool = row.Title;
        else if (row.Id == c_nCourseId)
            m_strCourse = row.Title;
        else if (row.Id == c_nRootNodeId)
            m_strTeacher = row.Title;
    }
}

void CSiteModel::BuildTree(QList<StoreRow> rows) {
    QHash<qint32, QList<qsizetype>> children;
    qsizetype nRoot = -1;
    for (qsizetype i = 0; i < rows.size(); ++i) {
        if (rows[i].Id == c_nRootNodeId)
            nRoot = i;
        else if (rows[i].Id > c_nRootNodeId)
            children[rows[i].ParentId].append(i);
    }
    if (nRoot < 0)
        throw Torvane::CRunException(CompilerText::c_strNoRoot);

    // Depth first by hand: a chain of any length must not exhaust the stack.
    struct Step {
        qsizetype nRow;
        int nParent;
    };
    QList<Step> pending = {{nRoot, -1}};
    QSet<qint32> seen;
    seen.reserve(rows.size());
    m_nodes.reserve(rows.size());
    while (!pending.isEmpty()) {
        const Step step = pending.takeLast();
        const qint32 nId = rows[step.nRow].Id;
        if (seen.contains(nId))
            continue;
        seen.insert(nId);
        const int nNode = int(m_nodes.size());
        const int nDepth = step.nParent < 0 ? 0 : m_nodes[step.nParent].Depth + 1;
        m_nodes.append({std::move(rows[step.nRow]), step.nParent, nDepth, {}});
        if (step.nParent >= 0)
            m_nodes[step.nParent].Children.append(nNode);
        const QList<qsizetype> below = children.value(nId);
        for (auto it = below.crbegin(); it != below.crend(); ++it)
            pending.append({*it, nNode});
    }
    for (const StoreRow& row : std::as_const(rows))
        m_nUnreachable += row.Id > c_nRootNodeId && !seen.contains(row.Id);
}
