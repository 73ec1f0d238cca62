#pragma once

#include "course/Course.h"

#include <QList>
#include <QString>

#include <memory>

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
    /// The content's absolute path; a link as it stands.
    QString GetContentPath() const;
    qint32 GetOpenType() const;

    QList<NodeHeader> GetChildren() const;
    bool ChildExists(const QString& strTitle) const;
    /// Id -1 when there is none.
    NodeHeader FindChild(const QString& strTitle) const;

    /// Adds the row and the folder as one step: neither stays without the other.
    std::unique_ptr<CBookNode> AddChild(const QString& strTitle);
    /// Stores and takes the title; false when the store refused.
    bool SetTitle(const QString& strTitle);
    /// The node with all below it, children first, each row with its folder.
    bool Delete();

    /// Clears the folder, makes "res", copies the page, writes the row. False when there is no page to copy.
    bool InitFromTemplatePage(const QString& strTemplate, const QString& strPage);
    /// Kind 0 of the content wizard: an editor page from the template's general page.
    void CreateEditorPage(qint32 nOpenType);
    bool ClearContent();
    /// Replaces "Content.htm" as a whole and refreshes the size. Throws when it can't be written: the page on
    /// disk is then what it was.
    bool SaveContent(const QString& strHtml);
    void UpdateSize();

private:
    CCourse& m_course;
    qint32 m_nId;
    QString m_strTitle;
    qint32 m_nType;
};

/// Makes a new course's nodes; joins course/ to the nodes of this floor.
class CNodeMakerFactory : public INodeMakerFactory {
public:
    std::unique_ptr<IInitialNodeMaker> MakeFor(CCourse& course) override;
};
