#pragma once

#include <QList>
#include <QString>

/// A line of "InitialNodes.txt": the tree that a template suggests, as a first-child, next-sibling list.
/// Numbers are line numbers from 0, negative for none.
struct InitialNode {
    QString Title;
    qint32 FirstChild = -1;
    qint32 NextSibling = -1;
    QString PageName;
    bool Selected = false;
};

/// Reads a list; false at the first line that has not exactly five fields, with the lines before it in the
/// list, and for a file that can't be read.
bool ReadInitialNodes(const QString& strPath, QList<InitialNode>& list);

/// Reads the list of a template, or "VorelInitialNodes.txt" of the delivered data where the template has
/// none.
bool LoadInitialNodes(const QString& strTemplate, QList<InitialNode>& list);

/// What the making of initial nodes needs of whoever owns nodes and their content.
class IInitialNodeMaker {
public:
    virtual ~IInitialNodeMaker() = default;
    /// Adds a node below the parent, with its folder; its Id.
    virtual qint32 AddChild(qint32 nParentId, const QString& strTitle) = 0;
    /// Gives the node a page of the template; false when it could not.
    virtual bool InitFromTemplatePage(qint32 nId, const QString& strTemplate, const QString& strPage) = 0;
};

/// Turns the selected lines into nodes below the parent, beginning with line 0. False at the first step that
/// fails, for an empty list, and for a list whose lines lead in a circle.
bool CreateInitialNodes(const QString& strTemplate, const QList<InitialNode>& list, qint32 nParentId,
                        IInitialNodeMaker& maker);
