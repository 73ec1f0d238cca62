#pragma once

#include "content/BookNode.h"
#include "content/NodeInfo.h"
#include "content/StatusTask.h"

#include <vector>

/// Takes a node with all its descendants to a folder, or from one into a node, maybe of another course. A
/// folder holds the index and, by the number of each record, a copy of that node's folder. Nothing is rolled
/// back: however it ends, what was made so far stays, and the tree is whole.
class CSubtreeTransfer : public CStatusTask {
public:
    enum class EMode { Import = 0, Export = 1 };

    /// The node and the people must outlive this.
    CSubtreeTransfer(Torvane::Dialog::MFC::IPeople& people, CBookNode& node, const QString& strFolder,
                     EMode eMode);

    /// Whether anything was changed, by however small a part.
    bool HasBegun() const { return m_bBegun; }

private:
    void Work() override;

    void Export();
    QList<NodeInfoRecord> ReadRecords();
    void ExportFiles(const QList<NodeInfoRecord>& records, const QString& strIndex);
    void TellPassedOver();
    QString FolderOf(const NodeInfoRecord& record) const;

    void Import();
    QList<NodeInfoRecord> ReadIndex();
    /// The node that a step fills. None where the target has no such child; nothing below it has a place
    /// then.
    struct Imported {
        CBookNode* pNode = nullptr;
        std::unique_ptr<CBookNode> pFound;
        /// By the import itself.
        std::unique_ptr<CBookNode> pMade;
    };
    void ImportSome(const QList<NodeInfoRecord>& records, const QList<NodeInfoStep>& steps,
                    std::vector<Imported>& nodes);
    Imported PlaceFor(const NodeInfoStep& step, const NodeInfoRecord& record,
                      const std::vector<Imported>& nodes);

    CBookNode& m_node;
    QString m_strFolder;
    EMode m_eMode;
    /// The root takes no new nodes: it refills those that it has, by their titles.
    bool m_bRootTarget;
    bool m_bBegun = false;
    /// Native paths of what the copies passed over.
    QStringList m_passedOver;
};
