#pragma once

#include "content/BookNode.h"
#include "content/ContentBuilder.h"
#include "content/ImportPlan.h"
#include "content/StatusTask.h"

#include <QSet>

#include <optional>
#include <utility>
#include <vector>

/// Makes a node of each file and each folder below a folder. First the whole of it is planned and the person
/// is asked; then the files go beside, and the rows follow them. Nothing is rolled back: what was made stays,
/// and each node has its files whole. A cancel ends it in silence. What can't be imported is told at the end,
/// and costs the rest nothing.
class CDirectoryImport : public CStatusTask {
public:
    /// The people and the node must outlive this, the node as long as isThere says so.
    CDirectoryImport(Torvane::Dialog::MFC::IPeople& people, CBookNode& node, const CNodeFileParams& params,
                     CNodeContentBuilder::IsThere isThere);

private:
    /// What becomes of an entry.
    struct Made {
        /// -1 for none: its title is taken, or its folder has no node.
        qint32 nId = -1;
        qint32 nChildren = 0;
        bool bAsWebPage = false;
        /// Why it could not be imported; empty for no failure.
        QString strFailure;
        /// What its folder of files has lost, in native form.
        QStringList passedOver;
        /// What shows, below the node's folder.
        QString strBelow;
        double dSize = 0;
    };

    void Work() override;
    void Plan();

    void Decide();
    bool HasPlace(const ImportEntry& entry);
    bool TakeTitle(qint32 nParentId, const QString& strTitle);
    bool BecomesWebPage(const QString& strPath);
    template <typename Box>
    auto AskThere(Box box);

    void MakeNodes();
    void MakeFiles(qsizetype nEntry, Torvane::File::IWalkFilter* pFilter);
    void MakeNodeFolder(qint32 nId) const;
    void AddRows();
    void AddRow(qsizetype nEntry);
    void Commit();
    void RemoveFoldersWithoutRows();

    QString StatusOf(qsizetype nEntry) const;

    QString FolderOf(qint32 nId) const { return m_node.GetCourse().GetPaths().GetNodeFolder(nId); }
    CBookDatabase& Store() const { return *m_node.GetCourse().GetDatabase(); }
    /// nEntry of -1 is the node that is imported into.
    Made& At(qsizetype nEntry) { return m_made[static_cast<std::size_t>(nEntry + 1)]; }

    CBookNode& m_node;
    const CNodeFileParams m_params;
    CNodeContentBuilder::IsThere m_isThere;
    ImportPlan m_plan;
    /// The node's own, and one for each entry of the plan.
    std::vector<Made> m_made;
    /// Titles that are taken, by the parent.
    QSet<std::pair<qint32, QString>> m_titles;
    /// How many entries have their rows, and how many have them for good.
    qsizetype m_nRows = 0;
    qsizetype m_nCommitted = 0;
    std::optional<CBookDatabase::CTransaction> m_transaction;
};
