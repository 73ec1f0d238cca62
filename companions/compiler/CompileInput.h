#pragma once

#include "companions/compiler/CompileRequest.h"
#include "companions/compiler/SiteModel.h"
#include "companions/compiler/SitePlan.h"
#include "companions/compiler/SourceTree.h"

#include <future>
#include <memory>
#include <vector>

/// All that a course is compiled from, read once, and what tells whether it is still the same in the next
/// run.
class CCompileInput {
public:
    /// Reads who the course is and its tree of nodes, and begins to list its files. Throws
    /// Torvane::CRunException with a message.
    explicit CCompileInput(const CompileRequest& request);
    CCompileInput(const CCompileInput&) = delete;
    CCompileInput& operator=(const CCompileInput&) = delete;

    const CSiteModel& Model() const { return *m_pModel; }

    /// Waits for the files and plans the pages; what follows is there then.
    void Plan(ESiteForm form);
    const CSourceTree& Tree() const { return *m_pTree; }
    const CSitePlan& Plan() const { return *m_pPlan; }

    /// What a file of the site is made of, beside what any page may show: files of the course, and those that
    /// some nodes in a row show.
    struct Sources {
        QStringList Files = {};
        int FirstNode = 0;
        int EndNode = 0;
    };
    /// A sum over what any page may show (the tree of nodes, the names of all files, the form, and this
    /// program itself) and over the states of sources, and of more files. No sum comes twice for a file that
    /// changed just before this run.
    quint64 Sum(const Sources& sources, const QStringList& more = {}) const;
    quint64 Sum() const;
    /// A sum over the states of files alone.
    quint64 SumOfFiles(const QStringList& files) const;

private:
    void SumUp(ESiteForm form);
    quint64 SumOfNode(int nNode) const;
    QStringList FilesOf(int nNode) const;

    /// In nanoseconds since 1970.
    const qint64 m_nBegin;
    std::unique_ptr<CSiteModel> m_pModel;
    std::future<std::unique_ptr<CSourceTree>> m_listing;
    std::unique_ptr<CSourceTree> m_pTree;
    std::unique_ptr<CSitePlan> m_pPlan;
    quint64 m_nStructure = 0;
    /// Of the files that each node shows.
    std::vector<quint64> m_fileSums;
};
