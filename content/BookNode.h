#pragma once

#include "content/ContentRecipe.h"
#include "content/ContentStage.h"
#include "course/Course.h"
#include "foundation/FolderWalk.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <functional>
#include <memory>

namespace Platform {
class CFolderWatcher;
}

/// Asked before each step of a deletion: how many nodes are gone, of how many. False ends it between two
/// nodes. Called outside of any transaction, also during the removal of large folders.
using DeleteProgress = std::function<bool(int nDone, int nTotal)>;

/// What a deletion did, whole or not.
struct Deletion {
    /// Rows and folders that went, in order. A folder that can't be removed stays behind as litter.
    QList<qint32> Gone;
    /// The store refused or failed; what is not in Gone stands as it was.
    bool bFailed = false;
};

/// A node in memory: its row in the store and its folder. Shared by the tree and the right-hand views; owned
/// by the tree while a course is open. Operations raise exceptions of the CRunException family with a
/// finished message.
class CBookNode {
public:
    CBookNode(CCourse& course, const NodeHeader& header);

    /// The node with Id 3.
    static std::unique_ptr<CBookNode> Root(CCourse& course);

    CCourse& GetCourse() const { return m_course; }
    qint32 GetId() const { return m_nId; }
    QString GetTitle() const { return m_strTitle; }
    qint32 GetType() const { return m_nType; }
    bool HasContent() const { return m_nType != NodeType::c_nEmpty; }

    /// "…\N<id>\"
    QString GetFolder() const;
    /// The content's path as the store holds it.
    QString GetStoredPath() const;
    /// The content's absolute path; a link as it stands.
    QString GetContentPath() const;
    qint32 GetOpenType() const;

    QList<NodeHeader> GetChildren() const;
    /// All nodes below this one, depth first, parents before their children.
    QList<NodeHeader> GetDescendants() const;
    bool ChildExists(const QString& strTitle) const;
    /// Id -1 when there is none.
    NodeHeader FindChild(const QString& strTitle) const;

    /// Adds the row and the folder as one step: neither stays without the other. The title is not checked.
    std::unique_ptr<CBookNode> AddChild(const QString& strTitle);
    /// Stores and takes the title; false when the store refused.
    bool SetTitle(const QString& strTitle);
    /// Takes the title anew from the store, where the root's may have come from the server.
    void ReadTitle() { m_strTitle = Store().GetNode(m_nId).Title; }
    /// The node with all below it, children first. However it ends, the rest of the tree is whole. The three
    /// rows that every course has are refused.
    Deletion Delete(const DeleteProgress& mayGoOn = {});
    /// Among the siblings; false when the store refused.
    bool MoveUp();
    bool MoveDown();
    /// As the first child of another node; false when the store refused.
    bool MoveBelow(qint32 nNewParentId);
    bool SetOpenType(qint32 nOpenType);

    /// An editor page from the template's page, or its general page where it has no such page. False, with
    /// nothing changed, when there is no page to copy.
    bool InitFromTemplatePage(const QString& strTemplate, const QString& strPage);
    /// An editor page from the general page of the course's template, without a "Content.htm" where the
    /// template has none.
    void CreateEditorPage(qint32 nOpenType);
    /// What is built in the stage takes the place of all that the node holds, and the row says so. The path
    /// is that of what shows, below the node's folder, or a link where the row holds one. The old content
    /// stands in the stage then. Throws with the old content as it was.
    void TakeContent(CContentStage& stage, NodeContent row, const QString& strBelow, double dSize);
    /// The content's path as the store holds it, by what shows, below the node's folder.
    static QString PathBelow(qint32 nId, const QString& strBelow);
    /// Empties the folder and the row; the children and the stored size stay.
    bool ClearContent();
    /// Replaces "Content.htm" as a whole and refreshes the size. Throws when it can't be written: the page on
    /// disk is then what it was.
    bool SaveContent(const QString& strHtml);
    void UpdateSize();
    /// Opens the content's file in the program that edits it, and from then on keeps the stored size true.
    /// False when nothing could be started.
    bool OpenExternalFile();

    /// Copies the node's files into a folder of an export, which is made where it does not stand. Looks at
    /// files alone, so that another thread may call it. Native paths of what is passed over come into the
    /// last argument.
    void ExportTo(const QString& strFolder, Torvane::File::IWalkFilter* pFilter,
                  QStringList* pPassedOver = nullptr) const;
    /// The same the other way: what comes replaces files of the same names, and no others.
    void ImportFiles(const QString& strFolder, Torvane::File::IWalkFilter* pFilter,
                     QStringList* pPassedOver = nullptr) const;
    /// The node's row as it stood in the course that it comes from; the path is led into this node's folder.
    /// The children and the stored size stay. False when the store refused. The type is taken once the row is
    /// there for good.
    bool ImportContent(qint32 nType, const QString& strPath, qint32 nOpenType) const;
    void TakeType(qint32 nType) { m_nType = nType; }
    /// Makes the node's folder where it has vanished.
    void EnsureFolder() const;

private:
    CBookDatabase& Store() const;
    /// In one step or not at all; the order stays dense.
    void DeleteRows(const QList<qint32>& ids) const;
    void Build(const ContentRecipe& recipe);
    void Watch();

    CCourse& m_course;
    qint32 m_nId;
    QString m_strTitle;
    qint32 m_nType;
    /// Over the folder of an external file that was opened, as long as the course is open.
    std::shared_ptr<Platform::CFolderWatcher> m_pWatcher;
};

/// Makes a new course's nodes; joins course/ to the nodes of this floor.
class CNodeMakerFactory : public INodeMakerFactory {
public:
    std::unique_ptr<IInitialNodeMaker> MakeFor(CCourse& course) override;
};
