#pragma once

#include "content/ViewKind.h"

#include <QWidget>

/// Base of the right-hand views.
class CBookShowView : public QWidget {
    Q_OBJECT
public:
    explicit CBookShowView(INodeViewHost& host, QWidget* pParent = nullptr)
        : QWidget(pParent), m_host(host) {}

    /// The view is about to be left; false keeps it.
    virtual bool LeaveNode(bool /*bCanCancel*/) { return true; }
    /// The view has just been given a node.
    virtual void ShowNode() = 0;

    /// Set by ShowNodeView before ShowNode; not owned, lives as long as the course is open.
    CBookNode* m_pNode = nullptr;
    int m_pViewParam = 0;

protected:
    INodeViewHost& m_host;
};
