#pragma once

#include "content/BookNode.h"
#include "content/ViewKind.h"

#include <functional>
#include <vector>

/// A frame that only notes what a view or the tree asks of it, and lets go of its own view as told.
class CRecordingHost : public INodeViewHost {
public:
    struct Shown {
        EViewKind kind = EViewKind::Empty;
        qint32 nId = -1;
        int nParam = 0;
        bool operator==(const Shown&) const = default;
    };
    std::vector<Shown> Views;
    QList<qint32> Selected;
    QList<int> Commands;
    std::function<void()> OnShow;
    bool bRefuse = false;
    int nAsked = 0;

    bool ShowNodeView(EViewKind kind, CBookNode* pNode, int nParam) override {
        if (!bRefuse)
            Views.push_back({kind, pNode->GetId(), nParam});
        if (OnShow)
            OnShow();
        return !bRefuse;
    }
    bool LeaveCurrentView(bool) override { return ++nAsked, !bRefuse; }
    bool IsEditorShowing() const override { return false; }
    bool IsShowing(const CBookNode*) const override { return true; }
    void SelectNode(qint32 nId) override { Selected.append(nId); }
    void RunCommand(int nId) override { Commands.append(nId); }
    Shown Last() const { return Views.empty() ? Shown() : Views.back(); }
};
