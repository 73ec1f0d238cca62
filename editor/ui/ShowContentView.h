#pragma once

#include "content/ui/BookShowView.h"

class CWebBrowser2Ex;
class QPushButton;

/// Shows a node's content in the browser surface, or opens it in a window of its own when the node says so.
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
    void TakeNewWindow(const QString& strUrl);
    void ClearWhenHidden();

    CWebBrowser2Ex* m_pBrowser;
    /// Offers an address of the web that the page asked for.
    QPushButton* m_pOpenOutside;
    QString m_strOutsideUrl;
};
