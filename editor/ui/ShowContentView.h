#pragma once

#include "content/ui/BookShowView.h"

class CContentPane;

/// Shows a node's content, or opens it in a window of its own when the node says so.
class CShowContentView : public CBookShowView {
    Q_OBJECT
public:
    CShowContentView(INodeViewHost& host, QWidget* pParent);

    void ShowNode() override;

protected:
    void hideEvent(QHideEvent* pEvent) override;

private:
    void ShowContent();
    void ShowFile(EViewKind kind);
    QStringList AllowedFolders() const;

    CContentPane* m_pPane;
};
