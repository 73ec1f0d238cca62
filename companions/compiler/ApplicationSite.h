#pragma once

#include "companions/compiler/CompileInput.h"
#include "companions/compiler/CompileProgress.h"
#include "companions/compiler/OutputFolder.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>
#include <utility>

/// The site with which a course is declared: what it comprises, in figures and as a table of all its
/// contents, for those who judge it. It leads into the course's site, which lies beside it; both are handed
/// in together.
class CApplicationSite {
public:
    /// strSite is the name of the course's site, which lies in the same folder. All must outlive the object.
    CApplicationSite(const CCompileInput& input, const QString& strSite, COutputFolder& output,
                     CompileProgress& progress);

    /// Throws Torvane::CRunException with a message.
    void Run();

private:
    int PageCount() const;
    static QString PageName(int nPage);
    /// The nodes on a page of the table: from the first to before the second.
    std::pair<int, int> NodesOn(int nPage) const;
    void Write(const QString& strName, std::pair<int, int> nodes, const std::function<QByteArray()>& make);
    void Number();
    QByteArray Frame(const QString& strTitle, const QByteArray& main) const;
    QByteArray StartPage() const;
    QByteArray FigureTable() const;
    QByteArray ChapterList() const;
    QByteArray ContentsPage(int nPage) const;
    QByteArray Row(int nNode) const;
    QByteArray Pager(int nPage) const;
    QByteArray LinkTo(int nNode) const;
    qint64 SizeOf(int nNode) const;

    const CCompileInput& m_input;
    const CSiteModel& m_model;
    const CSitePlan& m_plan;
    const QString m_strSite;
    COutputFolder& m_output;
    CompileProgress& m_progress;
    /// "2.3.1" for each node.
    QStringList m_numbers;
    /// How many nodes stand below each.
    QList<int> m_below;
    /// Of what each node holds, in bytes.
    QList<qint64> m_sizes;
};
